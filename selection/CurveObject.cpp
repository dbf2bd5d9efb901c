#include "selection/CurveObject.h"

#include "selection/EdgePrimitives.h"
#include "selection/Ray.h"

namespace vrn::selection {

CurveObject::CurveObject(const TopoDS_Shape& curveShape, visual::Visual* curveVisual)
    : SelectableObject(curveVisual, ObjectKind::Curve), shape(curveShape) {}

void CurveObject::buildBVH() {
    clearPrimitives();
    AppendEdges(visual, primitives);
    buildTree();
}

void CurveObject::updateWorldBox() {
    updateLazily([this] { buildBVH(); });
}

Result CurveObject::intersect(const visual::Ray& ray) {
    Result result = bvhIntersect(ray.transformed(inverseWorldPose));
    if (!result.hit) return result;
    result.position = toWorld(result.position);
    result.visual = visual;
    result.pose = worldPose;
    result.shape = shape;
    return result;
}

}  // namespace vrn::selection
