#include "selection/PointObject.h"

#include "selection/Math.h"
#include "selection/Ray.h"
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

Result PointObject::intersect(const visual::Ray& ray) {
    // Read afresh: the point follows its visual also while the box is out of date.
    const rob::PosTemplate<float> p = TransformPoint(visual->getWorldPose(), point->getPntPos());
    const rob::Vec3Template<float> direction = ray.direction.asVec3();
    Result result;
    if (!(Math::DistancePointLine(p, ray.origin, ray.origin + direction) < tolerance))
        return result;
    result.hit = true;
    result.position = p;
    result.visual = visual;
    result.distance = (p - ray.origin).dot(direction);
    return result;
}

}  // namespace vrn::selection
