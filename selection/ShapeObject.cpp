#include "selection/ShapeObject.h"

#include "selection/Ray.h"
#include "selection/SensitiveFace.h"
#include "visual/geometry/SolidVisual.h"

#include <BRep_Tool.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>

#include <memory>

namespace vrn::selection {

namespace {

bool HasTriangles(const TopoDS_Face& face) {
    if (face.IsNull()) return false;  // asking it for its triangulation would crash
    TopLoc_Location location;
    return !BRep_Tool::Triangulation(face, location).IsNull();
}

}  // namespace

ShapeObject::ShapeObject(const TopoDS_Shape& solidShape, visual::SolidVisual* solidVisual)
    : SelectableObject(solidVisual, ObjectKind::Shape), shape(solidShape), solid(solidVisual) {}

std::string ShapeObject::getName() const { return visual->getName(); }

void ShapeObject::buildBVH() {
    clearPrimitives();
    const visual::FaceMap& faces = solid->getFaceMap();
    for (int number = 1; number <= faces.Extent(); ++number) {
        if (!solid->isFaceVisible(static_cast<unsigned long>(number))) continue;
        const TopoDS_Face& face = TopoDS::Face(faces.FindKey(number));
        if (!HasTriangles(face)) continue;
        auto sensitive = std::make_unique<SensitiveFace>(face, number);
        primitives.push_back(sensitive.get());
        (void)sensitive.release();
    }
    buildTree();
}

void ShapeObject::prepareBuild() { static_cast<void>(solid->getFaceMap()); }

void ShapeObject::updateWorldBox() {
    updateLazily([this] { buildBVH(); });
}

Result ShapeObject::intersect(const visual::Ray& ray) {
    Result result = bvhIntersect(ray.transformed(inverseWorldPose));
    if (!result.hit) return result;
    result.position = toWorld(result.position);
    result.visual = visual;
    result.pose = worldPose;
    result.shape = shape;
    return result;
}

Result ShapeObject::intersect(const rob::TriangleTemplate<float>& triangle) {
    Result result = bvhIntersect(triangle.transformed(inverseWorldPose));
    if (result.hit) result.visual = visual;
    return result;
}

Result ShapeObject::intersect(const rob::LineTemplate<float>& line) {
    Result result = bvhIntersect(line.transformed(inverseWorldPose));
    if (!result.hit) return result;
    result.position = toWorld(result.position);
    result.visual = visual;
    return result;
}

}  // namespace vrn::selection
