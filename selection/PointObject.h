#pragma once

#include "selection/SelectableObject.h"

namespace vrn::visual {
class PointVisual;
}

namespace vrn::selection {

/// A point visual in the picking world. Thread: render.
class VRN_VISUAL_API PointObject : public SelectableObject {
public:
    explicit PointObject(visual::PointVisual* pointVisual);

    void updateWorldBox() override;
    /// `reach` round the point on each axis. The point is taken as its visual tells it, in the
    /// visual's frame, and not moved by the visual's pose. (The spelling is part of the interface.)
    void updateBoudingBox();

    static constexpr float reach = 5.0f;

private:
    const visual::PointVisual* point;
};

}  // namespace vrn::selection
