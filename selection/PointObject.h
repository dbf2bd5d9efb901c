#pragma once

#include "selection/SelectableObject.h"

namespace vrn::visual {
class PointVisual;
}

namespace vrn::selection {

/// A point visual in the picking world; it has no primitives. Contact tests never meet it.
/// Thread: render.
class VRN_VISUAL_API PointObject : public SelectableObject {
public:
    explicit PointObject(visual::PointVisual* pointVisual);

    void updateWorldBox() override;
    /// `reach` round the point on each axis. The point is taken as its visual tells it, in the
    /// visual's frame, and not moved by the visual's pose. (The spelling is part of the interface.)
    void updateBoudingBox();

    using SelectableObject::intersect;
    /// Hits if the ray's line passes within `tolerance` of the point where it stands in the world
    /// now. `position` is the point, `distance` how far along the direction it lies: below 0 behind
    /// the origin. Throws std::overflow_error for a direction without length.
    [[nodiscard]] Result intersect(const visual::Ray& ray) override;

    static constexpr float reach = 5.0f;
    static constexpr float tolerance = 2.0f;

private:
    const visual::PointVisual* point;
};

}  // namespace vrn::selection
