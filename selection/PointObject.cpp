#include "selection/PointObject.h"

#include "visual/geometry/PointVisual.h"

namespace vrn::selection {

PointObject::PointObject(visual::PointVisual* pointVisual)
    : SelectableObject(pointVisual, ObjectKind::Point), point(pointVisual) {}

void PointObject::updateWorldBox() {
    if (!worldBoxDirty) return;
    updateWorldPose();
    updateBoudingBox();
    worldBoxDirty = false;
}

void PointObject::updateBoudingBox() {
    const rob::PosTemplate<float> p = point->getPntPos();
    box.set(p.x - reach, p.y - reach, p.z - reach, p.x + reach, p.y + reach, p.z + reach);
}

}  // namespace vrn::selection
