#pragma once

#include <TopoDS_Shape.hxx>

#include "visual/Visual.h"

namespace vrn::visual {

class FrameVisual;

/// The region that a sensor watches: a parallelogram or a line, or a cylinder round it. The shape
/// follows from the sensor's properties, and all below the visual is made anew when they change.
/// The shape starts at the visual's own origin, so a sensor is moved without that. Thread: render.
class VRN_VISUAL_API SensorVisual : public Visual {
public:
    /// Without children yet.
    SensorVisual(Visual* parent, sdf::SdfNode* modelNode);

    /// Makes the visual under `parent` at the sensor's position, enters it in the registry and
    /// builds what it shows. The model object is looked up by its id: std::out_of_range,
    /// "unordered_map::at", if it is in no table, std::bad_cast if it is no sensor,
    /// std::invalid_argument for null; nothing is left then. Throws what buildChildren throws; the
    /// sensor then stays in the scene.
    static void Build(Visual* parent, sdf::SdfNode* modelNode);

    /// What there is to see, triangulated, from the visual's origin; a null shape for nothing: a
    /// plane whose sides are zero or parallel, a segment without length, and for a number that is
    /// not finite. Components up to 1e-7 count as zero; properties that are not set as well.
    /// A segment of radius 0.5 or more is a cylinder, a thinner one an edge. Throws
    /// std::bad_any_cast for a property of another type and what OpenCASCADE throws.
    [[nodiscard]] TopoDS_Shape getSensorShape() const;
    /// A frame at the origin, which shows until the next resetAppearance, and the shape. A hidden
    /// sensor hides both; the frame then waits for the next setSelected. Throws what getSensorShape
    /// throws.
    void buildChildren();

    /// Deletes all children, also what was attached, and builds them anew.
    void update() override;
    /// As Visual::setVisible; a shape that `cascade` hides is not picked.
    void setVisible(bool show, bool cascade) override;
    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;

    /// Null before buildChildren; replaced by every update.
    [[nodiscard]] FrameVisual* getLocalFrame() const { return localFrame; }

private:
    FrameVisual* localFrame = nullptr;  ///< a child
    sdf::SdfNode* node;  ///< the sensor in the model, not owned; the scene node is Visual::node
};

}  // namespace vrn::visual
