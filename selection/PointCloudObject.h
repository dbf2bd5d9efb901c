#pragma once

#include "selection/SelectableObject.h"

namespace vrn::visual {
class PointCloudVisual;
}

namespace vrn::selection {

/// A point cloud in the picking world. Its box bounds all its points, selected and drawn or not, a
/// unit wider on each side. Thread: render.
class VRN_VISUAL_API PointCloudObject : public SelectableObject {
public:
    explicit PointCloudObject(visual::PointCloudVisual* cloudVisual);

    void updateWorldBox() override;

private:
    [[nodiscard]] visual::Box cloudBox() const;

    const visual::PointCloudVisual* cloud;
    visual::Box localBox;
};

}  // namespace vrn::selection
