#include "selection/SensitiveFace.h"

#include "engine/visualapi.h"
#include "selection/BVHBuilder.h"
#include "selection/BVHNode.h"
#include "selection/Ray.h"
#include "selection/SensitiveTriangle.h"

#include <BRep_Tool.hxx>
#include <gp_Pnt.hxx>
#include <Poly_Triangulation.hxx>
#include <Standard_OutOfRange.hxx>
#include <TopLoc_Location.hxx>

#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

namespace vrn::selection {

namespace {

using Pos = rob::PosTemplate<float>;
using Triangle = rob::TriangleTemplate<float>;

bool IsFinite(const Pos& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// The numbers of a triangle's nodes, in the order in which they are stored.
std::array<int, 3> CornersOf(const Poly_Triangulation& triangulation, int triangle) {
    std::array<int, 3> corners{};
    triangulation.Triangle(triangle).Get(corners[0], corners[1], corners[2]);
    return corners;
}

Pos NodeOf(const Poly_Triangulation& triangulation, int number) {
    const gp_Pnt p = triangulation.Node(number);
    return Pos(rob::PosTemplate<double>(p.X(), p.Y(), p.Z()));
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
    // Each node once: several triangles share it.
    std::vector<Pos> nodes;
    nodes.reserve(static_cast<std::size_t>(triangulation->NbNodes()));
    for (int i = 1; i <= triangulation->NbNodes(); ++i) nodes.push_back(NodeOf(*triangulation, i));
    primitives.reserve(static_cast<std::size_t>(triangulation->NbTriangles()));
    for (int i = 1; i <= triangulation->NbTriangles(); ++i) {
        visual::Box bounds;
        bool isSound = true;
        for (const int corner : CornersOf(*triangulation, i)) {
            if (corner < 1 || corner > triangulation->NbNodes())
                throw Standard_OutOfRange("NCollection_AliasedArray::value(), out of range index");
            const Pos& node = nodes[static_cast<std::size_t>(corner) - 1];
            isSound = isSound && IsFinite(node);
            bounds.addPoint(node);
        }
        // A broken tessellation must not poison the bounds of the rest.
        if (!isSound) continue;
        auto triangle = std::make_unique<SensitiveIndexedTriangle>(static_cast<std::uint32_t>(i));
        bounds.expand();
        triangle->box = bounds;
        primitives.push_back(triangle.release());
    }
}

Result SensitiveFace::intersect(const visual::Ray& ray) { return Ask(*this, ray); }

Result SensitiveFace::intersect(const Triangle& triangle) { return Ask(*this, triangle); }

Result SensitiveFace::intersect(const rob::LineTemplate<float>& line) { return Ask(*this, line); }

Triangle SensitiveFace::getTriangleVertices(SensitiveTriangle* triangle) const {
    const auto number =
        static_cast<int>(static_cast<const SensitiveIndexedTriangle*>(triangle)->index);
    const auto [first, second, third] = CornersOf(*triangulation, number);
    return {NodeOf(*triangulation, third), NodeOf(*triangulation, second),
            NodeOf(*triangulation, first)};
}

}  // namespace vrn::selection
