#include "examples/cell/Spindle.h"

#include <BRepPrimAPI_MakeSphere.hxx>

#include <cmath>

#include "examples/cell/Forms.h"
#include "examples/cell/Livery.h"

namespace vrn::examples {

namespace {

using namespace livery;
using namespace spindle;

constexpr double housing = 58;     // radius of the spindle
constexpr double ballRadius = 16;  // of the grinding ball
constexpr double probeBall = 9;

TopoDS_Shape Ball(double x, double z, double radius) {
    return BRepPrimAPI_MakeSphere(gp_Pnt(x, 0, z), radius).Shape();
}

/// Turned about the line along X at height `z`.
TopoDS_Shape TurnedAt(double z, const std::vector<gp_Pnt2d>& halfSection) {
    return Moved(TurnedAboutX(halfSection), {0, 0, z});
}

PaintedBody MakeHolder() {
    const TopoDS_Shape adapter = Chamfered(CylinderAt({0, 0, 0}, {0, 0, 22}, 80), 3, AtHeight(22));
    const TopoDS_Shape block = RoundedPlateAlongY(
        {{-36, 40, 26}, {44, 40, 26}, {44, 196, 26}, {-36, 196, 26}}, -84, 84, 12);
    const TopoDS_Shape arm = RoundedPlateAlongY(
        {{-20, 190, 22}, {24, 190, 22}, {24, probeZ, 30}, {-20, probeZ, 30}}, -34, 34, 8);
    std::vector<TopoDS_Shape> tools{CylinderAt({-200, 0, cutterZ}, {400, 0, 0}, housing),
                                    CylinderAt({-200, 0, probeZ}, {400, 0, 0}, 20)};
    const TopoDS_Shape bolts = Compound(CylindersIn({{0, 0, 22}, {0, 0, 8}, 62.5, 8, 8, 0}));
    return Painted("spindle_holder",
                   {{Cut(Fused({adapter, block, arm}), tools), graphite}, {bolts, steel}});
}

PaintedBody MakeMotor() {
    const TopoDS_Shape body = TurnedAt(cutterZ, {{-206, 0},
                                                 {-206, 46},
                                                 {-198, 54},
                                                 {-150, 54},
                                                 {-150, housing},
                                                 {150, housing},
                                                 {158, 54},
                                                 {176, 40},
                                                 {196, 36},
                                                 {196, 0}});
    const TopoDS_Shape ring =
        TurnedAt(cutterZ, {{96, housing}, {96, housing + 5}, {120, housing + 5}, {120, housing}});
    const TopoDS_Shape nut =
        TurnedAt(cutterZ, {{196, 0}, {196, 26}, {222, 26}, {230, 17}, {240, 15}, {240, 0}});
    const TopoDS_Shape shank = CylinderAt({240, 0, cutterZ}, {cutterX - 240 - ballRadius, 0, 0}, 7);
    // From the back of the spindle into the holder, whose side it enters.
    const auto hose = [](double y, double radius) {
        return HoseThrough({{-200, y, cutterZ + 12},
                            {-258, y, cutterZ + 6},
                            {-286, y, cutterZ - 44},
                            {-236, y, cutterZ - 92},
                            {-120, y, 36},
                            {-50, y, 40}},
                           radius);
    };
    return Painted("spindle", {{body, steel},
                               {ring, petrol},
                               {nut, darkSteel},
                               {shank, steel},
                               {Ball(cutterX - ballRadius, cutterZ, ballRadius), warning},
                               {Compound({hose(22, 13), hose(-20, 9)}), graphite}});
}

PaintedBody MakeProbe() {
    const TopoDS_Shape body = TurnedAt(
        probeZ,
        {{-70, 0}, {-70, 16}, {-66, 20}, {56, 20}, {56, 26}, {104, 26}, {116, 12}, {116, 0}});
    const TopoDS_Shape stem = CylinderAt({116, 0, probeZ}, {probeX - 116, 0, 0}, 3.5);
    return Painted("touch_probe",
                   {{body, steel}, {stem, ivory}, {Ball(probeX, probeZ, probeBall), ruby}});
}

}  // namespace

std::vector<PaintedBody> MakeSpindle() { return {MakeHolder(), MakeMotor(), MakeProbe()}; }

}  // namespace vrn::examples
