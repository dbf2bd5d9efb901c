#include "examples/Gear.h"

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <GC_MakeArcOfCircle.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <GeomAPI_PointsToBSpline.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TopoDS_Edge.hxx>

#include <cmath>
#include <numbers>
#include <stdexcept>
#include <vector>

#include "examples/Shapes.h"

namespace vrn::examples {

namespace {

constexpr int minTeeth = 18;
constexpr double pi = std::numbers::pi;

/// The radii of a gear with standard tooth heights: addendum 1, dedendum 1.25 modules.
struct Circles {
    explicit Circles(const Gear& gear)
        : pitch(gear.module * gear.teeth / 2),
          base(pitch * std::cos(gear.pressureAngleDegrees * pi / 180)),
          tip(pitch + gear.module),
          root(pitch - 1.25 * gear.module) {}
    double pitch, base, tip, root;
};

gp_Pnt Polar(double radius, double angle) {
    return {radius * std::cos(angle), radius * std::sin(angle), 0};
}

/// Angle between the start of the involute of the circle `base` and its point at `radius`: tan a -
/// a with cos a = base / radius (the involute function, for example Litvin, "Gear Geometry and
/// Applied Theory").
double InvoluteAngle(double base, double radius) {
    const double a = std::acos(std::min(1.0, base / radius));
    return std::tan(a) - a;
}

/// Half the angle that a tooth takes at `radius`; on the pitch circle tooth and gap are equal.
double HalfToothAngle(const Gear& gear, const Circles& r, double radius) {
    return pi / 2 / gear.teeth + InvoluteAngle(r.base, r.pitch) - InvoluteAngle(r.base, radius);
}

/// One flank from the base circle to the tip circle; `side` -1 is clockwise of the tooth's middle.
TopoDS_Edge Flank(const Gear& gear, const Circles& r, double middle, int side) {
    constexpr int count = 9;
    TColgp_Array1OfPnt points(1, count);
    for (int i = 0; i < count; ++i) {
        // The clockwise flank runs outward, the other one back inward.
        const double t = static_cast<double>(side < 0 ? i : count - 1 - i) / (count - 1);
        const double radius = r.base + t * (r.tip - r.base);
        points.SetValue(i + 1, Polar(radius, middle + side * HalfToothAngle(gear, r, radius)));
    }
    const Handle(Geom_BSplineCurve) curve =
        GeomAPI_PointsToBSpline(points, 3, 5, GeomAbs_C2, 1e-4).Curve();
    return BRepBuilderAPI_MakeEdge(curve, points.First(), points.Last()).Edge();
}

TopoDS_Edge Line(const gp_Pnt& from, const gp_Pnt& to) {
    return BRepBuilderAPI_MakeEdge(from, to).Edge();
}

TopoDS_Edge Arc(double radius, double from, double to) {
    const Handle(Geom_TrimmedCurve) arc =
        GC_MakeArcOfCircle(Polar(radius, from), Polar(radius, (from + to) / 2), Polar(radius, to))
            .Value();
    return BRepBuilderAPI_MakeEdge(arc).Edge();
}

/// Root arc, radial line up to the base circle, flank, tip arc, flank, radial line down; once a
/// tooth.
TopoDS_Shape Toothed(const Gear& gear, const Circles& r) {
    const double pitchAngle = 2 * pi / gear.teeth;
    const double atBase = HalfToothAngle(gear, r, r.base), atTip = HalfToothAngle(gear, r, r.tip);
    BRepBuilderAPI_MakeWire wire;
    for (int i = 0; i < gear.teeth; ++i) {
        const double middle = i * pitchAngle;
        wire.Add(Line(Polar(r.root, middle - atBase), Polar(r.base, middle - atBase)));
        wire.Add(Flank(gear, r, middle, -1));
        wire.Add(Arc(r.tip, middle - atTip, middle + atTip));
        wire.Add(Flank(gear, r, middle, +1));
        wire.Add(Line(Polar(r.base, middle + atBase), Polar(r.root, middle + atBase)));
        wire.Add(Arc(r.root, middle + atBase, middle + pitchAngle - atBase));
    }
    return BRepPrimAPI_MakePrism(BRepBuilderAPI_MakeFace(wire.Wire(), /*OnlyPlane=*/true).Face(),
                                 gp_Vec(0, 0, gear.width))
        .Shape();
}

/// Above and below the web, between hub and rim.
TopoDS_Shape Recess(const Gear& gear, double rim, double z, double depth) {
    const gp_Vec up(0, 0, depth);
    return Cut(CylinderAt({0, 0, z}, up, rim), {CylinderAt({0, 0, z}, up, gear.hubRadius)});
}

}  // namespace

TopoDS_Shape MakeGear(const Gear& gear) {
    if (gear.teeth < minTeeth) throw std::invalid_argument("an example gear has at least 18 teeth");
    const Circles r(gear);
    const auto noSeam = [](const gp_Pnt& a, const gp_Pnt& b) { return !IsUpright(a, b); };
    const gp_Vec through(0, 0, gear.width);

    // A chamfered disc takes the sharp ends off all teeth at once.
    const TopoDS_Shape blank =
        Chamfered(CylinderAt({0, 0, 0}, through, r.tip), gear.module * 0.4, noSeam);
    const double rim = r.root - 1.6 * gear.module;
    const double depth = (gear.width - gear.webWidth) / 2;
    const double keyWidth = gear.boreRadius * 0.55;
    std::vector<TopoDS_Shape> tools{
        Recess(gear, rim, gear.width - depth, depth), Recess(gear, rim, 0, depth),
        CylinderAt({0, 0, 0}, through, gear.boreRadius),
        BoxAt({0, -keyWidth / 2, 0}, gear.boreRadius + keyWidth * 0.45, keyWidth, gear.width)};
    for (int i = 0; i < gear.webHoles; ++i) {
        const double between = (rim + gear.hubRadius) / 2;
        tools.push_back(CylinderAt(Polar(between, 2 * pi * (i + 0.5) / gear.webHoles), through,
                                   (rim - gear.hubRadius) * 0.32));
    }
    return Cut(Common(Toothed(gear, r), blank), tools);
}

}  // namespace vrn::examples
