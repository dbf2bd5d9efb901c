#include "selection/PointCloudObject.h"

#include "visual/geometry/PointCloudVisual.h"

namespace vrn::selection {

PointCloudObject::PointCloudObject(visual::PointCloudVisual* cloudVisual)
    : SelectableObject(cloudVisual, ObjectKind::PointCloud), cloud(cloudVisual) {}

void PointCloudObject::updateWorldBox() {
    if (!worldBoxDirty) return;
    if (!bvhBuilt) {
        localBox = cloudBox();
        bvhBuilt = true;
    }
    updateWorldPose();
    box = localBox;
    box.transform(worldPose);
    worldBoxDirty = false;
}

visual::Box PointCloudObject::cloudBox() const {
    visual::Box result;
    result.addPoints(cloud->getPoints());
    if (result.isValid()) result.expand();
    result.updateCenter();
    return result;
}

}  // namespace vrn::selection
