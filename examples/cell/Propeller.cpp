#include "examples/cell/Propeller.h"

#include <BRep_Tool.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepGProp.hxx>
#include <BRepOffsetAPI_ThruSections.hxx>
#include <BRepPrimAPI_MakeRevol.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_Surface.hxx>
#include <GeomAPI_Interpolate.hxx>
#include <gp_Ax1.hxx>
#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>
#include <GProp_GProps.hxx>
#include <TColgp_HArray1OfPnt.hxx>
#include <TColStd_HArray1OfReal.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Wire.hxx>

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <stdexcept>

#include "examples/cell/Forms.h"
#include "examples/cell/Livery.h"

namespace vrn::examples {

namespace {

/// A blade's section at one distance from the axis. Lengths are parts of the propeller's radius.
struct Section {
    double at, chord, thickness, sweep;
};

// Broadest at seven tenths of the radius, swept back towards the tip.
constexpr std::array<Section, 10> sections{{{0.124, 0.30, 0.094, 0.000},
                                            {0.22, 0.38, 0.077, 0.008},
                                            {0.32, 0.464, 0.063, 0.016},
                                            {0.44, 0.552, 0.050, 0.020},
                                            {0.58, 0.624, 0.038, 0.008},
                                            {0.72, 0.644, 0.028, -0.024},
                                            {0.84, 0.600, 0.021, -0.072},
                                            {0.92, 0.500, 0.016, -0.124},
                                            {0.97, 0.360, 0.013, -0.168},
                                            {1.00, 0.180, 0.010, -0.204}}};

constexpr int sectionPoints = 28;

/// The point of the section at `turn` from 0 to one round: trailing edge, upper side, leading edge,
/// lower side. Blade along X, in the plane x = radius of the section.
gp_Pnt SectionPoint(const Propeller& propeller, const Section& section, double turn) {
    const double r = section.at * propeller.radius;
    const double angle = 2 * std::numbers::pi * turn;
    const double half = section.chord * propeller.radius / 2;
    const double s = half * std::cos(angle);
    // Thickest towards the leading edge, on a mean line that is a flat arch.
    const double thickness = section.thickness * propeller.radius / 2;
    const double n = thickness * std::sin(angle) * (1 - 0.35 * std::cos(angle)) +
                     0.07 * half * (1 - std::cos(angle) * std::cos(angle));
    const double pitchAngle = std::atan2(propeller.pitch, 2 * std::numbers::pi * r);
    const double rake = 0.10 * r;
    return {r,
            s * std::cos(pitchAngle) - n * std::sin(pitchAngle) + section.sweep * propeller.radius,
            propeller.hubHeight / 2 + s * std::sin(pitchAngle) + n * std::cos(pitchAngle) + rake};
}

TopoDS_Wire SectionWire(const Propeller& propeller, const Section& section) {
    const Handle(TColgp_HArray1OfPnt) points = new TColgp_HArray1OfPnt(1, sectionPoints);
    for (int i = 0; i < sectionPoints; ++i)
        points->SetValue(i + 1,
                         SectionPoint(propeller, section, static_cast<double>(i) / sectionPoints));
    // The same parameters for all sections: the loft then needs no more knots than one of them has.
    const Handle(TColStd_HArray1OfReal) turns = new TColStd_HArray1OfReal(1, sectionPoints + 1);
    for (int i = 0; i <= sectionPoints; ++i)
        turns->SetValue(i + 1, static_cast<double>(i) / sectionPoints);
    GeomAPI_Interpolate curve(points, turns, /*PeriodicFlag=*/true, 1e-6);
    curve.Perform();
    return BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(curve.Curve()).Edge()).Wire();
}

TopoDS_Shape MakeBlade(const Propeller& propeller) {
    BRepOffsetAPI_ThruSections loft(/*isSolid=*/true, /*ruled=*/false);
    // All sections are made alike, point by point; matching them up once more would only bend them.
    loft.CheckCompatibility(false);
    for (const Section& section : sections) loft.AddWire(SectionWire(propeller, section));
    loft.Build();
    return loft.Shape();
}

/// The side of the blade, without the flat ends.
TopoDS_Face SideOf(const TopoDS_Shape& blade) {
    TopoDS_Face side;
    double largest = 0;
    for (TopExp_Explorer faces(blade, TopAbs_FACE); faces.More(); faces.Next()) {
        GProp_GProps area;
        BRepGProp::SurfaceProperties(faces.Current(), area);
        if (area.Mass() <= largest) continue;
        largest = area.Mass();
        side = TopoDS::Face(faces.Current());
    }
    return side;
}

/// Barrel-shaped, its two ends and the bore straight.
TopoDS_Shape MakeHub(const Propeller& propeller) {
    const double h = propeller.hubHeight, bore = propeller.boreRadius, r = propeller.radius;
    const std::array<gp_Pnt, 5> outline{gp_Pnt(0.19 * r, 0, 0), gp_Pnt(0.208 * r, 0, 0.25 * h),
                                        gp_Pnt(0.212 * r, 0, 0.5 * h),
                                        gp_Pnt(0.196 * r, 0, 0.78 * h), gp_Pnt(0.164 * r, 0, h)};
    const Handle(TColgp_HArray1OfPnt) points =
        new TColgp_HArray1OfPnt(1, static_cast<int>(outline.size()));
    for (std::size_t i = 0; i < outline.size(); ++i)
        points->SetValue(static_cast<int>(i) + 1, outline[i]);
    GeomAPI_Interpolate curve(points, /*PeriodicFlag=*/false, 1e-6);
    curve.Perform();
    const gp_Pnt foot(bore, 0, 0), top(bore, 0, h);
    BRepBuilderAPI_MakeWire wire(
        BRepBuilderAPI_MakeEdge(foot, outline.front()), BRepBuilderAPI_MakeEdge(curve.Curve()),
        BRepBuilderAPI_MakeEdge(outline.back(), top), BRepBuilderAPI_MakeEdge(top, foot));
    return BRepPrimAPI_MakeRevol(BRepBuilderAPI_MakeFace(wire.Wire(), /*OnlyPlane=*/true).Face(),
                                 gp_Ax1(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1)))
        .Shape();
}

gp_Trsf ToBlade(const Propeller& propeller, int blade) {
    gp_Trsf turn;
    turn.SetRotation(gp_Ax1(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1)),
                     2 * std::numbers::pi * blade / propeller.blades);
    return turn;
}

SurfacePlace PlaceAt(const Geom_Surface& surface, double u, double v) {
    gp_Pnt point;
    gp_Vec alongU, alongV;
    surface.D1(u, v, point, alongU, alongV);
    gp_Vec normal = alongU ^ alongV;
    if (normal.Z() < 0) normal.Reverse();  // the upper side looks up
    return {point, gp_Dir(normal), gp_Dir(alongU)};
}

}  // namespace

PaintedBody MakePropeller(const Propeller& propeller) {
    const TopoDS_Shape blade = MakeBlade(propeller);
    std::vector<TopoDS_Shape> pieces{MakeHub(propeller)};
    for (int i = 0; i < propeller.blades; ++i)
        pieces.push_back(TurnedAboutZ(blade, {0, 0, 0}, 360.0 * i / propeller.blades));
    const TopoDS_Shape keyway =
        BoxAt({0, -9, -1}, propeller.boreRadius + 8, 18, propeller.hubHeight + 2);
    const TopoDS_Shape whole = Cut(Fused(pieces), {keyway});
    TopExp_Explorer solids(whole, TopAbs_SOLID);
    if (!solids.More()) throw std::runtime_error("the propeller is no solid");
    PaintedBody body{"propeller", solids.Current(), livery::bronze, {}};
    solids.Next();
    if (solids.More()) throw std::runtime_error("a blade does not join the propeller's hub");
    PaintFaces(body, livery::brightBronze, [&](const FaceLook& face) {
        return (face.isPlane && std::abs(face.normal.Z()) > 0.99) ||
               (face.isCylinder && std::abs(face.radius - propeller.boreRadius) < 1e-3);
    });
    return body;
}

std::vector<SurfaceRow> RowsOnBlade(const Propeller& propeller, int blade, int rows,
                                    int placesPerRow) {
    const Handle(Geom_Surface) surface = BRep_Tool::Surface(SideOf(MakeBlade(propeller)));
    double u0 = 0, u1 = 0, v0 = 0, v1 = 0;
    surface->Bounds(u0, u1, v0, v1);
    const gp_Trsf turn = ToBlade(propeller, blade);
    std::vector<SurfaceRow> result;
    for (int i = 0; i < rows; ++i) {
        // Clear of the root, where the hub is, and of the tip's flat end.
        const double v = v0 + (v1 - v0) * (0.22 + 0.70 * i / (rows - 1));
        SurfaceRow row;
        for (int k = 0; k < placesPerRow; ++k) {
            // The upper side is the first half of the section.
            const double u = u0 + (u1 - u0) * (0.04 + 0.42 * k / (placesPerRow - 1));
            const SurfacePlace place = PlaceAt(*surface, u, v);
            row.push_back({place.point.Transformed(turn), place.normal.Transformed(turn),
                           place.along.Transformed(turn)});
        }
        result.push_back(std::move(row));
    }
    return result;
}

}  // namespace vrn::examples
