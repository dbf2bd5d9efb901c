#pragma once

#include <Geom_Surface.hxx>
#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>
#include <Standard_Handle.hxx>

#include <optional>
#include <vector>

#include "suite/rob/PoseTypes.h"
#include "suite/SuiteApi.h"

class TopoDS_Edge;
class TopoDS_Shape;

namespace vrn::geometry {

/// Triangulates `shape` in place, and leaves a Poly_Polygon3D on each of its edges as well: the
/// mesher gives faces' edges only the polygon on the triangulation, and who draws edges wants the
/// plain one.
///
/// `linearDeflection` in model units, `angularDeflection` in radians; 0, less or NaN stands for a
/// choice of our own: a thousandth of the shape's longest side, and 0.35. A triangulation that is
/// fine enough already is kept. A null shape is left alone. Throws what OpenCASCADE throws.
/// Thread: one at a time for shapes that share faces.
VRN_SUITE_API void GenerateMesh(const TopoDS_Shape& shape, double linearDeflection,
                                double angularDeflection);

/// The same placement as an OpenCASCADE transformation. The rotation must be a unit quaternion.
/// Thread: pure.
[[nodiscard]] VRN_SUITE_API gp_Trsf PoseToTrsf(const rob::PoseTemplate<double>& pose);
[[nodiscard]] VRN_SUITE_API gp_Trsf PoseToTrsf(const rob::PoseTemplate<float>& pose);

/// A point of a surface and where it lies in the surface's parameters.
struct SurfacePoint {
    gp_Pnt point;
    double u = 0;
    double v = 0;
};

/// The point of `surface` nearest to `point`; nothing if `surface` is null or no perpendicular foot
/// exists. Thread: pure.
[[nodiscard]] VRN_SUITE_API std::optional<SurfacePoint> ProjectPoint(
    const gp_Pnt& point, const opencascade::handle<Geom_Surface>& surface);

/// The point of the edge's curve at `parameter`, location applied. Throws std::invalid_argument if
/// the edge is null or has no curve. Thread: pure.
[[nodiscard]] VRN_SUITE_API rob::PosTemplate<double> GetPointAtParameter(const TopoDS_Edge& edge,
                                                                         double parameter);

/// The first derivative of the edge's curve at `parameter`, in the direction in which the edge is
/// run through (a reversed edge runs against its curve); not normalised. Throws as
/// GetPointAtParameter. Thread: pure.
[[nodiscard]] VRN_SUITE_API rob::Vec3Template<double> GetTangentAtParameter(const TopoDS_Edge& edge,
                                                                            double parameter);

/// Where the edge starts and in which direction it leaves; a reversed edge starts at its curve's
/// end. The direction is of unit length, or zero where the curve has no tangent. An edge without a
/// curve leaves both arguments as they are. Thread: pure.
VRN_SUITE_API void GetEdgeStartPointInfo(const TopoDS_Edge& edge, rob::PosTemplate<float>& pos,
                                         rob::DirTemplate<float>& dir);

/// Point sequences, each one a curve; model units.
struct PointList {
    std::vector<std::vector<rob::PosTemplate<double>>> sequences;
};

}  // namespace vrn::geometry
