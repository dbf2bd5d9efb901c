#include "selection/Result.h"

#include "suite/geom/ShapeTools.h"

#include <BRep_Tool.hxx>
#include <BRepAdaptor_Curve.hxx>
#include <Extrema_ExtPC.hxx>
#include <Geom_Curve.hxx>
#include <Geom_Surface.hxx>
#include <GeomAPI_ProjectPointOnCurve.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>

#include <cmath>
#include <limits>

namespace vrn::selection {

namespace {

using Pos = rob::PosTemplate<float>;

bool IsOf(const TopoDS_Shape& shape, TopAbs_ShapeEnum type) {
    return !shape.IsNull() && shape.ShapeType() == type;
}

bool IsFinite(const Pos& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// The hit in the frame that the shapes are in.
gp_Pnt ToShapeFrame(const Result& result) {
    const rob::Vec3Template<float> fromOrigin = result.position - result.pose.position;
    const auto p = result.pose.rotation.inverse() * fromOrigin;
    return {p.x, p.y, p.z};
}

/// The foot on the surface: the hit lies on a triangle, which is a little off it. A surface that
/// has no foot for it leaves it where it is.
gp_Pnt OnSurface(const gp_Pnt& point, const TopoDS_Face& face) {
    const auto foot = geometry::ProjectPoint(point, BRep_Tool::Surface(face));
    return foot ? foot->point : point;
}

struct Nearest {
    double distance = std::numeric_limits<double>::max();
    double param = 0;

    void offer(double otherDistance, double otherParam) {
        if (otherDistance < distance) *this = {otherDistance, otherParam};
    }
};

bool HasCurve(const TopoDS_Edge& edge) {
    return !BRep_Tool::Degenerated(edge) && BRep_Tool::IsGeometric(edge);
}

}  // namespace

std::optional<EdgePoint> Result::getFaceEdge() const {
    // The casts below do not look at null shapes, nor do the tools: they would read through them.
    if (!IsOf(face, TopAbs_FACE) || !IsFinite(position)) return std::nullopt;
    const gp_Pnt point = OnSurface(ToShapeFrame(*this), TopoDS::Face(face));
    double best = std::numeric_limits<double>::max();
    EdgePoint nearest;
    for (TopExp_Explorer edges(face, TopAbs_EDGE); edges.More(); edges.Next()) {
        const TopoDS_Edge& candidate = TopoDS::Edge(edges.Current());
        double first = 0, last = 0;
        const opencascade::handle<Geom_Curve> curve = BRep_Tool::Curve(candidate, first, last);
        if (curve.IsNull()) continue;  // a degenerated edge, such as the pole of a sphere
        const GeomAPI_ProjectPointOnCurve feet(point, curve, first, last);
        if (feet.NbPoints() == 0 || !(feet.LowerDistance() < best)) continue;
        best = feet.LowerDistance();
        nearest = {candidate, feet.LowerDistanceParameter()};
    }
    if (nearest.edge.IsNull() || best > snapReach) return std::nullopt;
    return nearest;
}

std::optional<double> Result::getEdgeParam() const {
    if (!IsOf(edge, TopAbs_EDGE) || !IsFinite(position)) return std::nullopt;
    const TopoDS_Edge& ownEdge = TopoDS::Edge(edge);
    if (!HasCurve(ownEdge)) return std::nullopt;
    const BRepAdaptor_Curve curve(ownEdge);
    const gp_Pnt point = ToShapeFrame(*this);
    const Extrema_ExtPC search(point, curve);
    Nearest nearest;
    // A search without a foot between the ends is not done, and asking it for their number throws.
    if (search.IsDone())
        for (int i = 1; i <= search.NbExt(); ++i)
            nearest.offer(search.SquareDistance(i), search.Point(i).Parameter());
    // The nearer end stands in where the foot lies beyond it. On an arc the only foot may be the
    // far side.
    const double first = curve.FirstParameter(), last = curve.LastParameter();
    for (const double end : {first, last})
        if (std::isfinite(end)) nearest.offer(point.SquareDistance(curve.Value(end)), end);
    if (nearest.distance == std::numeric_limits<double>::max()) return std::nullopt;
    return nearest.param;
}

}  // namespace vrn::selection
