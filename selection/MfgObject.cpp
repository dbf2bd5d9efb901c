#include "selection/MfgObject.h"

#include "selection/EdgePrimitives.h"
#include "selection/Ray.h"

namespace vrn::selection {

MfgObject::MfgObject(visual::Visual* edgesVisual)
    : SelectableObject(edgesVisual, ObjectKind::Mfg) {}

void MfgObject::buildBVH() {
    clearPrimitives();
    AppendEdges(visual, primitives);
    buildTree();
}

void MfgObject::updateWorldBox() {
    updateLazily([this] { buildBVH(); });
}

Result MfgObject::intersect(const visual::Ray& ray) {
    Result result = bvhIntersect(ray.transformed(inverseWorldPose));
    if (!result.hit) return result;
    result.position = toWorld(result.position);
    result.visual = visual;
    result.pose = worldPose;
    return result;
}

}  // namespace vrn::selection
