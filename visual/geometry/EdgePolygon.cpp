#include "visual/geometry/EdgePolygon.h"

#include <BRep_Tool.hxx>
#include <Poly_Polygon3D.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS_Edge.hxx>

namespace vrn::visual {

namespace {

template <class NodeAt>
std::vector<gp_Pnt> Placed(int nodeCount, const TopLoc_Location& location, NodeAt nodeAt) {
    std::vector<gp_Pnt> points;
    points.reserve(static_cast<std::size_t>(nodeCount));
    for (int i = 1; i <= nodeCount; ++i) points.push_back(nodeAt(i));
    if (!location.IsIdentity())
        for (gp_Pnt& point : points) point.Transform(location.Transformation());
    return points;
}

}  // namespace

std::vector<gp_Pnt> EdgePolygon(const TopoDS_Edge& edge) {
    if (edge.IsNull() || BRep_Tool::Degenerated(edge)) return {};
    TopLoc_Location location;
    if (const Handle(Poly_Polygon3D) polygon = BRep_Tool::Polygon3D(edge, location);
        !polygon.IsNull())
        return Placed(polygon->NbNodes(), location,
                      [&](int i) { return polygon->Nodes().Value(i); });

    Handle(Poly_PolygonOnTriangulation) onFace;
    Handle(Poly_Triangulation) triangulation;
    BRep_Tool::PolygonOnTriangulation(edge, onFace, triangulation, location);
    if (onFace.IsNull() || triangulation.IsNull()) return {};
    return Placed(onFace->NbNodes(), location,
                  [&](int i) { return triangulation->Node(onFace->Node(i)); });
}

}  // namespace vrn::visual
