#include "selection/SensitiveFace.h"

#include "engine/visualapi.h"
#include "selection/BVHBuilder.h"
#include "selection/BVHNode.h"
#include "selection/Ray.h"
#include "selection/SensitiveTriangle.h"

#include <BRep_Tool.hxx>
#include <gp_Pnt.hxx>
#include <TopLoc_Location.hxx>

#include <cmath>
#include <memory>

namespace vrn::selection {

namespace {

using Pos = rob::PosTemplate<float>;
using Triangle = rob::TriangleTemplate<float>;

bool IsFinite(const Pos& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

template <class Query>
Result Ask(const SensitiveFace& sensitive, const Query& query) {
    if (!sensitive.tree.root) return {};
    Result result = sensitive.intersectTriangles(
        sensitive.hasLocation ? query.transformed(sensitive.inverseLocation) : query);
    result.face = sensitive.face;
    return result;
}

}  // namespace

SensitiveFace::SensitiveFace(const TopoDS_Face& sensitiveFace, int number)
    : faceIndex(number), face(sensitiveFace) {
    if (face.IsNull()) return;
    TopLoc_Location faceLocation;
    triangulation = BRep_Tool::Triangulation(face, faceLocation);
    if (!faceLocation.IsIdentity()) {
        hasLocation = true;
        setLocation(visual::GP_Trsf2Posef(faceLocation.Transformation()));
    }
    if (triangulation.IsNull()) return;
    addTriangles();
    tree = BVHBuilder(this).build();
    if (tree.root) box = tree.root->box;
    if (tree.root && hasLocation) box.transform(location);
}

void SensitiveFace::addTriangles() {
    primitives.reserve(static_cast<std::size_t>(triangulation->NbTriangles()));
    for (int i = 1; i <= triangulation->NbTriangles(); ++i) {
        auto triangle = std::make_unique<SensitiveIndexedTriangle>(static_cast<std::uint32_t>(i));
        const Triangle vertices = getTriangleVertices(triangle.get());
        // A broken tessellation must not poison the bounds of the rest.
        if (!IsFinite(vertices.p0) || !IsFinite(vertices.p1) || !IsFinite(vertices.p2)) continue;
        triangle->box.addPoint(vertices.p0);
        triangle->box.addPoint(vertices.p1);
        triangle->box.addPoint(vertices.p2);
        triangle->box.expand();
        triangle->box.updateCenter();
        primitives.push_back(triangle.release());
    }
}

Result SensitiveFace::intersect(const visual::Ray& ray) { return Ask(*this, ray); }

Result SensitiveFace::intersect(const Triangle& triangle) { return Ask(*this, triangle); }

Result SensitiveFace::intersect(const rob::LineTemplate<float>& line) { return Ask(*this, line); }

Triangle SensitiveFace::getTriangleVertices(SensitiveTriangle* triangle) const {
    const auto number =
        static_cast<int>(static_cast<const SensitiveIndexedTriangle*>(triangle)->index);
    int first = 0, second = 0, third = 0;
    triangulation->Triangle(number).Get(first, second, third);
    const auto node = [this](int i) {
        const gp_Pnt p = triangulation->Node(i);
        return Pos(rob::PosTemplate<double>(p.X(), p.Y(), p.Z()));
    };
    return {node(third), node(second), node(first)};
}

}  // namespace vrn::selection
