#include "examples/cell/Positioner.h"

#include <cmath>

#include "examples/cell/Forms.h"
#include "examples/cell/Livery.h"

namespace vrn::examples {

namespace {

using namespace livery;
using namespace positioner;

constexpr double columnFront = 724, columnBack = 980;  // along Y
constexpr double plateRadius = 300;

PaintedBody MakeColumn() {
    const TopoDS_Shape foot = RoundedPlateAlongZ(
        {{-250, 660, 60}, {250, 660, 60}, {250, 1020, 60}, {-250, 1020, 60}}, 0, 40, 8);
    const TopoDS_Shape column = RoundedPlateAlongY(
        {{-170, 90, 78}, {170, 90, 78}, {0, tiltHeight, 196}}, columnFront + 14, columnBack, 36);
    const TopoDS_Shape seat = CylinderAt({0, columnFront, tiltHeight}, {0, 60, 0}, 176);
    const TopoDS_Shape drive = Stood(Motor(98, 190), {0, columnBack, tiltHeight}, {0, 1, 0});
    std::vector<TopoDS_Shape> bolts;
    for (const double x : {-255.0, 255.0})
        for (const double y : {665.0, 1015.0})
            bolts.push_back(CylinderAt({x, y, 40}, {0, 0, 16}, 15));
    PaintedBody body =
        Painted("positioner_column",
                {{Fused({foot, column, seat}), ivory}, {drive, graphite}, {Compound(bolts), bolt}});
    PaintFaces(body, petrol, [](const FaceLook& face) {
        return face.isCylinder && std::abs(face.radius - 176) < 1e-3;
    });
    return body;
}

PaintedBody MakeCradle() {
    const TopoDS_Shape seat = CylinderAt({0, 676, 0}, {0, 46, 0}, 168);
    const TopoDS_Shape side =
        RoundedPlateAlongY({{-120, -292, 70}, {120, -292, 70}, {0, 0, 172}}, 600, 680, 22);
    const TopoDS_Shape table =
        RoundedPlateAlongZ({{0, 0, 210}, {120, 590, 88}, {-120, 590, 88}}, -362, -272, 22);
    const TopoDS_Shape boss = CylinderAt({0, 0, -362}, {0, 0, 362 - plateBelowTilt - 4}, 190);
    const TopoDS_Shape gear = CylinderAt({0, 0, -430}, {0, 0, 80}, 150);
    const TopoDS_Shape drive = Stood(Motor(88, 200), {0, 0, -430}, {0, 0, -1});
    PaintedBody body =
        Painted("positioner_cradle",
                {{Fused({seat, side, table, boss}), petrol}, {gear, ivory}, {drive, graphite}});
    PaintFaces(body, steel, [](const FaceLook& face) {
        return face.isCylinder &&
               (std::abs(face.radius - 168) < 1e-3 || std::abs(face.radius - 190) < 1e-3);
    });
    return body;
}

PaintedBody MakeFaceplate() {
    const TopoDS_Shape blank = TurnedUpright({{0, 0},
                                              {plateRadius - 30, 0},
                                              {plateRadius, 12},
                                              {plateRadius, plateThickness - 4},
                                              {plateRadius - 4, plateThickness},
                                              {0, plateThickness}});
    std::vector<TopoDS_Shape> slots;
    // Three of them for the fixture's jaws.
    for (int i = 0; i < 6; ++i) {
        const TopoDS_Shape slot = PlateAlongZ({{190, 0, 9}, {plateRadius + 40, 0, 9}},
                                              plateThickness - 18, plateThickness + 1);
        slots.push_back(TurnedAboutZ(slot, {0, 0, 0}, 30 + 60 * i));
    }
    const TopoDS_Shape mark = Cut(CylinderAt({0, 0, plateThickness - 1.5}, {0, 0, 3}, 246),
                                  {CylinderAt({0, 0, plateThickness - 3}, {0, 0, 6}, 240)});
    slots.push_back(mark);
    PaintedBody body = Painted("positioner_faceplate", {{Cut(blank, slots), steel}});
    PaintFaces(body, darkSteel, [](const FaceLook& face) {
        return face.isPlane && face.normal.Z() > 0.5 && face.centre.Z() < plateThickness - 1e-3;
    });
    PaintFaces(body, petrol, [](const FaceLook& face) {
        return face.isCylinder && std::abs(face.radius - plateRadius) < 1e-3;
    });
    return body;
}

/// A stepped jaw along +X, standing on z = 0.
TopoDS_Shape Jaw() {
    const TopoDS_Shape foot = Filleted(BoxAt({118, -34, 0}, 150, 68, 52), 8, IsUpright);
    const TopoDS_Shape head = Filleted(BoxAt({118, -34, 0}, 60, 68, 104), 8, IsUpright);
    const TopoDS_Shape slot = PlateAlongZ({{206, 0, 10}, {246, 0, 10}}, -1, 60);
    const TopoDS_Shape counterbore = PlateAlongZ({{206, 0, 17}, {246, 0, 17}}, 30, 60);
    return Cut(Fused({foot, head}), {slot, counterbore});
}

}  // namespace

Linkage MakePositioner() {
    return {"positioner",
            {MakeColumn()},
            {{"cradle", {"tilt", {0, 0, tiltHeight}, {0, 1, 0}, {{-110, 110}}}, {MakeCradle()}},
             {"faceplate",
              {"turn", {0, 0, -plateBelowTilt}, {0, 0, 1}, {{-360, 360}}},
              {MakeFaceplate()}}},
            {0, 0}};
}

TopoDS_Shape MakeFixture() {
    const TopoDS_Shape arbor = TurnedUpright({{0, 0},
                                              {150, 0},
                                              {150, 24},
                                              {146, 28},
                                              {112, 28},
                                              {88, 60},
                                              {78, fixtureSeat},
                                              {44, fixtureSeat},
                                              {44, fixtureSeat + 226},
                                              {38, fixtureSeat + 232},
                                              {0, fixtureSeat + 232}});
    std::vector<TopoDS_Shape> pieces{arbor};
    for (int i = 0; i < 3; ++i) pieces.push_back(TurnedAboutZ(Jaw(), {0, 0, 0}, 30 + 120.0 * i));
    return Fused(pieces);
}

}  // namespace vrn::examples
