#pragma once

#include "selection/SelectableObject.h"

namespace vrn::selection {

/// Edges without a shape behind them in the picking world, as a CurveObject has them. Nothing in
/// the library makes one: a host with a visual of its own over edge visuals may, and hand it to a
/// container. Thread: render.
class VRN_VISUAL_API MfgObject : public SelectableObject {
public:
    explicit MfgObject(visual::Visual* edgesVisual);

    /// A SensitiveEdge for each edge visual below; what was built before goes.
    void buildBVH();
    void updateWorldBox() override;

    using SelectableObject::intersect;
    /// A hit tells the visual and the pose; `position` is in the world.
    [[nodiscard]] Result intersect(const visual::Ray& ray) override;
};

}  // namespace vrn::selection
