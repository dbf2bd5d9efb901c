#include "suite/geom/ShapeTools.h"

#include <Bnd_Box.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <BRepAdaptor_Curve.hxx>
#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <Geom_Curve.hxx>
#include <GeomAPI_ProjectPointOnSurf.hxx>
#include <gp_Quaternion.hxx>
#include <gp_Vec.hxx>
#include <Poly_Polygon3D.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TopAbs.hxx>
#include <TopExp.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Shape.hxx>
#include <TopTools_IndexedMapOfShape.hxx>

#include <algorithm>
#include <stdexcept>

namespace vrn::geometry {

namespace {

constexpr double relativeDeflection = 0.001;  // of the longest side
constexpr double smallestDeflection = 1e-4;   // a shape without extent still needs one above 0
constexpr double ownAngularDeflection = 0.35;

// The mesher's thread pool is a library that the thread sanitizer cannot look into: it would report
// every piece of memory that passes from one of its threads to another.
#ifdef __SANITIZE_THREAD__
constexpr bool meshInParallel = false;
#else
constexpr bool meshInParallel = true;
#endif

double OwnLinearDeflection(const TopoDS_Shape& shape) {
    Bnd_Box box;
    BRepBndLib::Add(shape, box, /*useTriangulation=*/false);
    if (box.IsVoid() || box.IsOpen()) return 1.0;
    double x0 = 0, y0 = 0, z0 = 0, x1 = 0, y1 = 0, z1 = 0;
    box.Get(x0, y0, z0, x1, y1, z1);
    return std::max(relativeDeflection * std::max({x1 - x0, y1 - y0, z1 - z0}), smallestDeflection);
}

/// Copies the edge's nodes out of the triangulation of a face that it bounds.
void AddPolygon3D(const TopoDS_Edge& edge) {
    TopLoc_Location polygonLocation;
    if (!BRep_Tool::Polygon3D(edge, polygonLocation).IsNull()) return;

    opencascade::handle<Poly_PolygonOnTriangulation> onFace;
    opencascade::handle<Poly_Triangulation> triangulation;
    TopLoc_Location location;
    BRep_Tool::PolygonOnTriangulation(edge, onFace, triangulation, location);
    if (onFace.IsNull() || triangulation.IsNull()) return;  // no face of it has been triangulated

    TColgp_Array1OfPnt nodes(1, onFace->NbNodes());
    for (int i = 1; i <= onFace->NbNodes(); ++i)
        nodes.SetValue(i, triangulation->Node(onFace->Node(i)));
    const opencascade::handle<Poly_Polygon3D> polygon = new Poly_Polygon3D(nodes);
    polygon->Deflection(onFace->Deflection());
    BRep_Builder().UpdateEdge(edge, polygon, location);
}

BRepAdaptor_Curve CurveOf(const TopoDS_Edge& edge) {
    double first = 0, last = 0;
    if (edge.IsNull() || BRep_Tool::Curve(edge, first, last).IsNull())
        throw std::invalid_argument("expected an edge with a curve");
    return BRepAdaptor_Curve(edge);
}

}  // namespace

void GenerateMesh(const TopoDS_Shape& shape, double linearDeflection, double angularDeflection) {
    if (shape.IsNull()) return;
    // Negated, so that NaN takes our choice too. The mesher refuses a deflection of 0.
    const double linear = !(linearDeflection > 0) ? OwnLinearDeflection(shape) : linearDeflection;
    const double angular = !(angularDeflection > 0) ? ownAngularDeflection : angularDeflection;
    const BRepMesh_IncrementalMesh mesher(shape, linear, /*isRelative=*/false, angular,
                                          meshInParallel);
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    for (int i = 1; i <= edges.Extent(); ++i) AddPolygon3D(TopoDS::Edge(edges(i)));
}

gp_Trsf PoseToTrsf(const rob::PoseTemplate<double>& pose) {
    const auto& r = pose.rotation;
    const auto& p = pose.position;
    gp_Trsf trsf;
    trsf.SetRotation(gp_Quaternion(r.x, r.y, r.z, r.w));  // its w comes last
    trsf.SetTranslationPart(gp_Vec(p.x, p.y, p.z));
    return trsf;
}

gp_Trsf PoseToTrsf(const rob::PoseTemplate<float>& pose) {
    return PoseToTrsf(rob::PoseTemplate<double>(pose));
}

std::optional<SurfacePoint> ProjectPoint(const gp_Pnt& point,
                                         const opencascade::handle<Geom_Surface>& surface) {
    if (surface.IsNull()) return std::nullopt;
    const GeomAPI_ProjectPointOnSurf projection(point, surface);
    if (projection.NbPoints() == 0) return std::nullopt;
    SurfacePoint nearest{projection.NearestPoint()};
    projection.LowerDistanceParameters(nearest.u, nearest.v);
    return nearest;
}

rob::PosTemplate<double> GetPointAtParameter(const TopoDS_Edge& edge, double parameter) {
    const gp_Pnt p = CurveOf(edge).Value(parameter);
    return {p.X(), p.Y(), p.Z()};
}

rob::Vec3Template<double> GetTangentAtParameter(const TopoDS_Edge& edge, double parameter) {
    gp_Vec v = CurveOf(edge).DN(parameter, 1);
    if (edge.Orientation() == TopAbs_REVERSED) v.Reverse();
    return {v.X(), v.Y(), v.Z()};
}

void GetEdgeStartPointInfo(const TopoDS_Edge& edge, rob::PosTemplate<float>& pos,
                           rob::DirTemplate<float>& dir) {
    double first = 0, last = 0;
    if (edge.IsNull() || BRep_Tool::Curve(edge, first, last).IsNull()) return;
    const double start = edge.Orientation() == TopAbs_REVERSED ? last : first;
    pos = rob::PosTemplate<float>(GetPointAtParameter(edge, start));
    const auto tangent = GetTangentAtParameter(edge, start);
    const bool hasTangent = tangent.length() > rob::zeroLength;
    dir = hasTangent ? rob::DirTemplate<float>(rob::Vec3Template<float>(tangent.normalized()))
                     : rob::DirTemplate<float>{};
}

}  // namespace vrn::geometry
