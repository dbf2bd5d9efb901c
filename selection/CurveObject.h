#pragma once

#include "selection/SelectableObject.h"

#include <TopoDS_Shape.hxx>

namespace vrn::selection {

/// A curve in the picking world: the edge visuals that hung below its visual at the first
/// updateWorldBox, each in its own place there. Contact tests never meet it. Thread: render.
class VRN_VISUAL_API CurveObject : public SelectableObject {
public:
    CurveObject(const TopoDS_Shape& curveShape, visual::Visual* curveVisual);

    /// A SensitiveEdge for each edge visual below; what was built before goes.
    void buildBVH();
    void updateWorldBox() override;

    using SelectableObject::intersect;
    /// A hit tells the visual, the pose and the whole shape; `position` is in the world.
    [[nodiscard]] Result intersect(const visual::Ray& ray) override;

    TopoDS_Shape shape;
};

}  // namespace vrn::selection
