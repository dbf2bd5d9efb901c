#pragma once

#include <vector>

#include "visual/Visual.h"

class TopoDS_Shape;

namespace vrn::visual {

class EdgeVisual;

/// One edge or wire, as an EdgeVisual for each edge below it; the curve is what is picked and
/// selected. Thread: render.
class VRN_VISUAL_API CurveVisual : public Visual {
public:
    ~CurveVisual() override;

    // Both builders enter the visual in the registry and in the selection, and never return null.
    // An edge that was never triangulated shows nothing. What is refused, null with
    // std::invalid_argument, leaves the tree as it was.

    /// A single edge, named as `parent` followed by "_curve_" and a transient id; contact tests do
    /// not see it. Throws Standard_TypeMismatch, "TopoDS::Edge", for anything else.
    static CurveVisual* Build(Visual* parent, const TopoDS_Shape& shape);
    /// A body of the station: a wire, its edges in the order in which they follow one another, or
    /// one edge. Throws Standard_TypeMismatch, "TopoDS::Wire", for anything else,
    /// std::bad_any_cast for a URI that is no text, and what IsDetectable throws.
    static CurveVisual* Build(Visual* parent, sdf::SdfNode* modelNode, const TopoDS_Shape& shape);

    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;

    /// On the last edge that is shown, or on the first: at the end of the curve, or at its start.
    /// Does nothing without edges; throws what EdgeVisual::addArrow throws.
    void addArrow(bool atEnd);
    /// Removes the arrows of all edges.
    void clearArrow();

    /// In the order of the curve, without those that a host has deleted.
    [[nodiscard]] const std::vector<EdgeVisual*>& getEdges() const { return edges; }

protected:
    void forgetChild(const Visual* child) override;

private:
    CurveVisual(const std::string& name, Visual* parent);
    CurveVisual(sdf::SdfNode* modelNode, Visual* parent);
    void addEdge(const std::string& name, const TopoDS_Shape& edge);
    void enter(const TopoDS_Shape& shape, bool detectable);

    /// Children. Kept beside the tree, whose order changes with removals.
    std::vector<EdgeVisual*> edges;
};

}  // namespace vrn::visual
