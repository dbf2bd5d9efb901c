#include "examples/Gear.h"

#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepPrimAPI_MakePrism.hxx>

#include <algorithm>
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

/// Corners of one flank, outward: from the root circle radially to the base circle, then along the
/// involute and on past the tip circle, where the blank ends the tooth. `side` -1 is clockwise of
/// the tooth's middle.
std::vector<gp_Pnt> Flank(const Gear& gear, const Circles& r, double middle, int side) {
    constexpr int steps = 4;
    const auto at = [&](double radius, double angleRadius) {
        return Polar(radius, middle + side * HalfToothAngle(gear, r, angleRadius));
    };
    std::vector<gp_Pnt> corners{at(r.root, r.base)};
    for (int i = 0; i <= steps; ++i) {
        const double radius = r.base + (r.tip + 0.1 * gear.module - r.base) * i / steps;
        corners.push_back(at(radius, radius));
    }
    return corners;
}

/// All teeth, a little longer than they will be. Straight pieces, because flat faces are cut much
/// faster than curved ones and the triangles would be no finer.
TopoDS_Shape Toothed(const Gear& gear, const Circles& r) {
    const double pitchAngle = 2 * pi / gear.teeth;
    BRepBuilderAPI_MakePolygon outline;
    for (int i = 0; i < gear.teeth; ++i) {
        const double middle = i * pitchAngle;
        const std::vector<gp_Pnt> up = Flank(gear, r, middle, -1),
                                  down = Flank(gear, r, middle, +1);
        for (auto corner = up.begin(); corner != up.end(); ++corner) outline.Add(*corner);
        for (auto corner = down.rbegin(); corner != down.rend(); ++corner) outline.Add(*corner);
        outline.Add(Polar(r.root, middle + pitchAngle / 2));
    }
    outline.Close();
    return BRepPrimAPI_MakePrism(BRepBuilderAPI_MakeFace(outline.Wire(), /*OnlyPlane=*/true).Face(),
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
    // The many faces of the teeth come in last: what they go through costs most of the time.
    return Common(Cut(blank, tools), Toothed(gear, r));
}

}  // namespace vrn::examples
