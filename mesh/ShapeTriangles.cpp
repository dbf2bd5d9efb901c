#include "mesh/ShapeTriangles.h"

#include <BRep_Tool.hxx>
#include <BRepLib_ToolTriangulatedShape.hxx>
#include <gp_Dir.hxx>
#include <gp_Trsf.hxx>
#include <Poly_Connect.hxx>
#include <Poly_Triangulation.hxx>
#include <TopLoc_Location.hxx>

#include <algorithm>
#include <cmath>
#include <optional>

namespace vrn::visual {

namespace {

bool IsFinite(const rob::PosTemplate<float>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

rob::PosTemplate<float> Narrowed(const gp_Pnt& p) {
    return rob::PosTemplate<float>(rob::PosTemplate<double>(p.X(), p.Y(), p.Z()));
}

rob::Vec3Template<float> NodeNormal(const Poly_Triangulation& triangulation, int node,
                                    const std::optional<gp_Trsf>& move, bool reversed) {
    gp_Vec3f stored;
    triangulation.Normal(node, stored);
    gp_Dir normal(stored.x(), stored.y(), stored.z());
    if (move) normal.Transform(*move);
    const rob::Vec3Template<float> result(
        rob::Vec3Template<double>(normal.X(), normal.Y(), normal.Z()));
    return reversed ? -result : result;
}

/// Appends a vertex and a normal for each node; returns the nodes that no triangle may use.
std::vector<int> AppendNodes(const Poly_Triangulation& triangulation,
                             const std::optional<gp_Trsf>& move, bool reversed, Mesh& mesh) {
    std::vector<int> badNodes;
    for (int node = 1; node <= triangulation.NbNodes(); ++node) {
        gp_Pnt p = triangulation.Node(node);  // in whichever precision is stored
        if (move) p.Transform(*move);
        const rob::PosTemplate<float> position = Narrowed(p);
        const bool good = IsFinite(position);
        if (!good) badNodes.push_back(node);
        mesh.vertices.push_back(good ? position : rob::PosTemplate<float>{});
        mesh.normals.push_back(NodeNormal(triangulation, node, move, reversed));
    }
    return badNodes;
}

void AppendTriangles(const Poly_Triangulation& triangulation, const std::vector<int>& badNodes,
                     bool swapped, std::uint32_t base, Mesh& mesh) {
    const auto isBad = [&](int node) {
        return std::ranges::find(badNodes, node) != badNodes.end();
    };
    for (int t = 1; t <= triangulation.NbTriangles(); ++t) {
        int a = 0, b = 0, c = 0;
        triangulation.Triangle(t).Get(a, b, c);
        if (isBad(a) || isBad(b) || isBad(c)) continue;
        if (swapped) std::swap(a, b);
        for (const int node : {a, b, c})
            mesh.indices.push_back(base + static_cast<std::uint32_t>(node) - 1);
    }
}

}  // namespace

std::size_t AppendFaceTriangles(const TopoDS_Face& face, Mesh& mesh) {
    TopLoc_Location location;
    const Handle(Poly_Triangulation) & triangulation = BRep_Tool::Triangulation(face, location);
    if (triangulation.IsNull()) return 0;
    std::optional<gp_Trsf> move;
    if (!location.IsIdentity()) move = location.Transformation();
    if (!triangulation->HasNormals()) {
        Poly_Connect connect(triangulation);
        BRepLib_ToolTriangulatedShape::ComputeNormals(face, triangulation, connect);
    }
    const auto base = static_cast<std::uint32_t>(mesh.vertices.size());
    const std::vector<int> badNodes =
        AppendNodes(*triangulation, move, face.Orientation() == TopAbs_REVERSED, mesh);
    AppendTriangles(*triangulation, badNodes, face.Orientation() != TopAbs_FORWARD, base, mesh);
    return mesh.vertices.size() - base;
}

}  // namespace vrn::visual
