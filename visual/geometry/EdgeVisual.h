#pragma once

#include <memory>
#include <string>
#include <vector>

#include <TopoDS_Edge.hxx>

#include "visual/Visual.h"

namespace vrn::visual {

class DynamicLines;
class MeshVisual;

/// One edge as a line strip, with an arrow at one of its ends if asked for. The strip runs as the
/// edge does: a reversed edge runs against its curve. Thread: render.
class VRN_VISUAL_API EdgeVisual : public Visual {
public:
    ~EdgeVisual() override;

    /// The edge under `parent`, named `name` followed by a transient id. `generated`: the visual is
    /// of type GeneratedEdge and stands in the registry, else it is of type Edge and does not.
    /// Returns null, and makes nothing, for an edge that was never triangulated or has no extent.
    /// A node that is not finite in single precision is passed over.
    static EdgeVisual* Build(Visual* parent, const std::string& name, const TopoDS_Edge& shownEdge,
                             const std::string& normal, const std::string& highlighted,
                             const std::string& selected, bool generated);

    /// Appends a point in the frame of the visual; update sends it to the graphics card.
    void addPoint(float x, float y, float z);
    void update() override;

    /// The arrow of MeshVisual::BuildArrow at the last point, or at the first, along the edge; an
    /// earlier one goes. Throws std::overflow_error, "0-length vector cannot be normalized.", where
    /// the two points there coincide or are missing, and then changes nothing.
    void addArrow(bool atEnd);
    /// Does nothing without an arrow.
    void clearArrow();
    void setRenderQueueGroup(unsigned char group);

    [[nodiscard]] const TopoDS_Edge& getEdge() const { return edge; }
    /// In the frame of the visual, in the order of the strip.
    [[nodiscard]] const std::vector<rob::PosTemplate<float>>& getPoints() const;
    /// Null without one.
    [[nodiscard]] MeshVisual* getArrow() const { return arrow; }

protected:
    void forgetChild(const Visual* child) override;

private:
    EdgeVisual(const std::string& name, const TopoDS_Edge& shownEdge, Visual* parent);

    TopoDS_Edge edge;
    std::unique_ptr<DynamicLines> lines;  ///< never null
    MeshVisual* arrow = nullptr;          ///< a child
};

}  // namespace vrn::visual
