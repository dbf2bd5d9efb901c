#include "examples/cell/Forms.h"

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepOffsetAPI_MakePipe.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepPrimAPI_MakeRevol.hxx>
#include <GC_MakeArcOfCircle.hxx>
#include <Geom_BSplineCurve.hxx>
#include <GeomAPI_Interpolate.hxx>
#include <gp_Ax1.hxx>
#include <gp_Ax2.hxx>
#include <gp_Circ.hxx>
#include <gp_Quaternion.hxx>
#include <gp_Trsf.hxx>
#include <TColgp_HArray1OfPnt.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Wire.hxx>

#include <cmath>
#include <cstddef>
#include <numbers>
#include <stdexcept>

namespace vrn::examples {

namespace {

constexpr double samePlace = 1e-6;

/// The directions, as angles, in which the band leaves one disc and reaches the next.
double BandAngle(const Disc& from, const Disc& to) {
    const double du = to.u - from.u, dv = to.v - from.v, distance = std::hypot(du, dv);
    const double lean = (from.radius - to.radius) / distance;
    if (!(std::abs(lean) < 1)) throw std::invalid_argument("a disc lies inside the next one");
    // Straight ahead, then to the right by the angle whose cosine is the lean.
    return std::atan2(dv, du) - std::acos(lean);
}

gp_Pnt OnDisc(const Disc& disc, double angle) {
    return {disc.u + disc.radius * std::cos(angle), disc.v + disc.radius * std::sin(angle), 0};
}

/// The band round the discs as a face in the XY plane, looking up.
TopoDS_Face BandFace(const std::vector<Disc>& discs) {
    if (discs.size() < 2) throw std::invalid_argument("a band needs two discs");
    BRepBuilderAPI_MakeWire wire;
    for (std::size_t i = 0; i < discs.size(); ++i) {
        const Disc& before = discs[(i + discs.size() - 1) % discs.size()];
        const Disc& disc = discs[i];
        const Disc& after = discs[(i + 1) % discs.size()];
        const double in = BandAngle(before, disc), out = BandAngle(disc, after);
        const double turn =
            std::remainder(out - in - std::numbers::pi, 2 * std::numbers::pi) + std::numbers::pi;
        wire.Add(BRepBuilderAPI_MakeEdge(
            GC_MakeArcOfCircle(OnDisc(disc, in), OnDisc(disc, in + turn / 2), OnDisc(disc, out))
                .Value()));
        wire.Add(BRepBuilderAPI_MakeEdge(OnDisc(disc, out), OnDisc(after, out)));
    }
    return BRepBuilderAPI_MakeFace(wire.Wire(), /*OnlyPlane=*/true).Face();
}

TopoDS_Shape Transformed(const TopoDS_Shape& shape, const gp_Trsf& trsf) {
    return BRepBuilderAPI_Transform(shape, trsf).Shape();
}

EdgeFilter Either(const EdgeFilter& a, const EdgeFilter& b) {
    return [a, b](const gp_Pnt& first, const gp_Pnt& last) {
        return a(first, last) || b(first, last);
    };
}

}  // namespace

TopoDS_Shape PlateAlongZ(const std::vector<Disc>& discs, double z0, double z1) {
    return Moved(BRepPrimAPI_MakePrism(BandFace(discs), gp_Vec(0, 0, z1 - z0)).Shape(), {0, 0, z0});
}

TopoDS_Shape PlateAlongY(const std::vector<Disc>& discs, double y0, double y1) {
    // A quarter turn about X takes Y to Z and Z to -Y.
    gp_Trsf upright;
    upright.SetRotation(gp_Ax1(gp_Pnt(0, 0, 0), gp_Dir(1, 0, 0)), std::numbers::pi / 2);
    return Transformed(PlateAlongZ(discs, -y1, -y0), upright);
}

TopoDS_Shape RoundedPlateAlongY(const std::vector<Disc>& discs, double y0, double y1,
                                double radius) {
    return Filleted(PlateAlongY(discs, y0, y1), radius, Either(AtDepth(y0), AtDepth(y1)));
}

TopoDS_Shape RoundedPlateAlongZ(const std::vector<Disc>& discs, double z0, double z1,
                                double radius) {
    return Filleted(PlateAlongZ(discs, z0, z1), radius, Either(AtHeight(z0), AtHeight(z1)));
}

TopoDS_Shape TurnedUpright(const std::vector<gp_Pnt2d>& halfSection) {
    BRepBuilderAPI_MakePolygon polygon;
    for (const gp_Pnt2d& p : halfSection) polygon.Add(gp_Pnt(p.X(), 0, p.Y()));
    polygon.Close();
    const TopoDS_Face face = BRepBuilderAPI_MakeFace(polygon.Wire(), /*OnlyPlane=*/true).Face();
    return BRepPrimAPI_MakeRevol(face, gp_Ax1(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1))).Shape();
}

std::vector<TopoDS_Shape> CylindersIn(const Ring& ring) {
    const gp_Ax2 axes(ring.centre, gp_Dir(ring.axis));
    std::vector<TopoDS_Shape> cylinders;
    for (int i = 0; i < ring.count; ++i) {
        const double angle =
            ring.firstDegrees * std::numbers::pi / 180 + 2 * std::numbers::pi * i / ring.count;
        const gp_Vec across = gp_Vec(axes.XDirection()) * std::cos(angle) +
                              gp_Vec(axes.YDirection()) * std::sin(angle);
        cylinders.push_back(CylinderAt(ring.centre.Translated(across * ring.ringRadius), ring.axis,
                                       ring.cylinderRadius));
    }
    return cylinders;
}

TopoDS_Shape HoseThrough(const std::vector<gp_Pnt>& points, double radius) {
    const Handle(TColgp_HArray1OfPnt) array =
        new TColgp_HArray1OfPnt(1, static_cast<int>(points.size()));
    for (int i = 1; i <= array->Length(); ++i)
        array->SetValue(i, points[static_cast<std::size_t>(i - 1)]);
    GeomAPI_Interpolate curve(array, /*PeriodicFlag=*/false, samePlace);
    curve.Perform();
    gp_Pnt start;
    gp_Vec along;
    curve.Curve()->D1(curve.Curve()->FirstParameter(), start, along);
    const TopoDS_Wire spine =
        BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(curve.Curve()).Edge()).Wire();
    const TopoDS_Wire round =
        BRepBuilderAPI_MakeWire(
            BRepBuilderAPI_MakeEdge(gp_Circ(gp_Ax2(start, gp_Dir(along)), radius)).Edge())
            .Wire();
    return BRepOffsetAPI_MakePipe(spine, BRepBuilderAPI_MakeFace(round).Face()).Shape();
}

TopoDS_Shape Motor(double radius, double length) {
    const double fin = radius, groove = radius - 5, cap = length - 0.28 * length;
    std::vector<gp_Pnt2d> section{{0, 0}, {radius, 0}, {radius, 14}, {groove, 14}};
    for (double z = 22; z + 12 < cap; z += 18) {
        section.insert(section.end(), {{groove, z}, {fin, z}, {fin, z + 10}, {groove, z + 10}});
    }
    section.insert(section.end(), {{groove, cap},
                                   {radius - 2, cap},
                                   {radius - 2, length - 10},
                                   {radius - 12, length},
                                   {0, length}});
    const double plug = radius * 0.42;
    const TopoDS_Shape plugs =
        SoftBox({radius - 20, -plug, cap + 4}, 50, 2 * plug, length - cap - 20, 8, 4);
    return Compound({TurnedUpright(section), plugs});
}

TopoDS_Shape SoftBox(const gp_Pnt& corner, double dx, double dy, double dz, double uprightRadius,
                     double topRadius) {
    return Filleted(Filleted(BoxAt(corner, dx, dy, dz), uprightRadius, IsUpright), topRadius,
                    AtHeight(corner.Z() + dz));
}

TopoDS_Shape Stood(const TopoDS_Shape& shape, const gp_Pnt& place, const gp_Vec& axis) {
    gp_Trsf trsf;
    trsf.SetRotation(gp_Quaternion(gp_Vec(0, 0, 1), axis));
    trsf.SetTranslationPart(gp_Vec(place.XYZ()));
    return Transformed(shape, trsf);
}

EdgeFilter AtDepth(double y) {
    return [y](const gp_Pnt& first, const gp_Pnt& last) {
        return std::abs(first.Y() - y) < samePlace && std::abs(last.Y() - y) < samePlace;
    };
}

}  // namespace vrn::examples
