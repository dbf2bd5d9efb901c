#include "examples/cell/Arm.h"

#include <gp_Quaternion.hxx>

#include <cmath>
#include <numbers>

#include "examples/cell/Forms.h"
#include "examples/cell/Livery.h"
#include "examples/Shapes.h"

namespace vrn::examples {

namespace {

using namespace livery;

/// A cover on a joint, standing on z = 0: a stepped disc with a ring of bolts.
std::vector<Coloured> Cover(double radius, double height, const char* colour) {
    const TopoDS_Shape disc = TurnedUpright({{0, 0},
                                             {radius, 0},
                                             {radius, height - 5},
                                             {radius - 5, height},
                                             {radius * 0.62, height},
                                             {radius * 0.58, height - 4},
                                             {0, height - 4}});
    const TopoDS_Shape bolts =
        Compound(CylindersIn({{0, 0, height}, {0, 0, 5}, radius * 0.81, 6.5, 8, 22.5}));
    return {{disc, colour}, {bolts, bolt}};
}

std::vector<Coloured> StoodAll(std::vector<Coloured> pieces, const gp_Pnt& place,
                               const gp_Vec& axis) {
    for (Coloured& piece : pieces) piece.shape = Stood(piece.shape, place, axis);
    return pieces;
}

void Append(std::vector<Coloured>& to, const std::vector<Coloured>& pieces) {
    to.insert(to.end(), pieces.begin(), pieces.end());
}

/// A motor behind its gear's housing, standing on z = 0.
std::vector<Coloured> GearedMotor(double housingRadius, double housingHeight, double motorRadius,
                                  double motorLength) {
    const TopoDS_Shape housing = TurnedUpright({{0, 0},
                                                {housingRadius, 0},
                                                {housingRadius, housingHeight - 10},
                                                {housingRadius - 10, housingHeight},
                                                {0, housingHeight}});
    return {{housing, petrol},
            {Moved(Motor(motorRadius, motorLength), {0, 0, housingHeight}), graphite}};
}

// ---- base and turntable

TopoDS_Shape BaseCasting() {
    const TopoDS_Shape foot = SoftBox({-330, -310, 0}, 640, 620, 44, 95, 8);
    const TopoDS_Shape body = TurnedUpright({{0, 30},
                                             {272, 30},
                                             {262, 60},
                                             {236, 120},
                                             {222, 190},
                                             {222, 268},
                                             {256, 290},
                                             {256, 326},
                                             {0, 326}});
    const TopoDS_Shape plugs = SoftBox({-420, -150, 30}, 260, 300, 210, 22, 16);
    std::vector<TopoDS_Shape> holes;
    for (const double x : {-280.0, 260.0})
        for (const double y : {-255.0, 255.0})
            holes.push_back(CylinderAt({x, y, -1}, {0, 0, 60}, 17));
    return Cut(Fused({foot, body, plugs}), holes);
}

std::vector<PaintedBody> MakeBase() {
    std::vector<TopoDS_Shape> sockets;
    for (const double y : {-90.0, 0.0, 90.0})
        sockets.push_back(CylinderAt({-420, y, 165}, {-26, 0, 0}, 32));
    for (const double y : {-105.0, -35.0, 35.0, 105.0})
        sockets.push_back(CylinderAt({-420, y, 85}, {-18, 0, 0}, 17));
    PaintedBody body = Painted("arm_base", {{BaseCasting(), ivory}, {Compound(sockets), graphite}});
    // The machined seat of the turntable's bearing.
    PaintFaces(body, steel, [](const FaceLook& face) {
        return face.isPlane && std::abs(face.centre.Z() - 326) < 1e-3;
    });
    PaintFaces(body, petrol, [](const FaceLook& face) {
        return face.isCylinder && std::abs(face.radius - 256) < 1e-3;
    });
    return {body};
}

TopoDS_Shape TurntableCasting() {
    const TopoDS_Shape plate =
        RoundedPlateAlongZ({{0, 0, 262}, {-110, 215, 92}, {-150, 0, 130}}, 2, 62, 12);
    const double height = arm::shoulderHeight - arm::turntableHeight;
    const TopoDS_Shape shoulder = RoundedPlateAlongY(
        {{-150, 112, 92}, {150, 112, 92}, {arm::shoulderForward, height, 172}}, -132, 132, 34);
    const TopoDS_Shape boss = CylinderAt({arm::shoulderForward, -140, height}, {0, 280, 0}, 148);
    return Fused({plate, shoulder, boss});
}

std::vector<PaintedBody> MakeTurntable() {
    const double height = arm::shoulderHeight - arm::turntableHeight;
    std::vector<Coloured> motor =
        StoodAll(GearedMotor(134, 44, 92, 250), {arm::shoulderForward, 140, height}, {0, 1, 0});
    std::vector<Coloured> turning =
        StoodAll(GearedMotor(84, 26, 72, 235), {-110, 215, 62}, {0, 0, 1});
    std::vector<Coloured> drives = motor;
    Append(drives, turning);
    PaintedBody casting = Painted("arm_turntable", {{TurntableCasting(), ivory}});
    PaintFaces(casting, petrol, [](const FaceLook& face) {
        return face.isCylinder && std::abs(face.radius - 262) < 1e-3;
    });
    PaintFaces(casting, steel, [](const FaceLook& face) {
        return face.isPlane && std::abs(std::abs(face.centre.Y()) - 140) < 1e-3;
    });
    return {casting, Painted("arm_turntable_drives", drives)};
}

// ---- lower arm

constexpr double lowerInner = -150, lowerOuter = -298;  // along Y

TopoDS_Shape LowerCasting() {
    const double length = arm::lowerLength;
    const TopoDS_Shape web =
        RoundedPlateAlongY({{0, 0, 146}, {0, length, 112}}, lowerOuter + 12, lowerInner - 14, 38);
    const auto boss = [&](double z, double radius) {
        return Filleted(CylinderAt({0, lowerOuter, z}, {0, lowerInner - lowerOuter, 0}, radius), 12,
                        AtDepth(lowerOuter));
    };
    const TopoDS_Shape pocket =
        PlateAlongY({{0, 285, 76}, {0, length - 250, 58}}, lowerOuter - 10, lowerOuter + 34);
    return Cut(Fused({web, boss(0, 168), boss(length, 134)}), {pocket});
}

std::vector<Coloured> LowerHoses() {
    const double y = (lowerInner + lowerOuter) / 2;
    std::vector<TopoDS_Shape> hoses;
    for (const double shift : {-26.0, 26.0}) {
        hoses.push_back(HoseThrough({{-130, y + shift, -60},
                                     {-178, y + shift, 120},
                                     {-176, y + shift, 420},
                                     {-164, y + shift, 760},
                                     {-178, y + shift, 1010},
                                     {-196, y + shift + 60, 1130}},
                                    17));
    }
    std::vector<TopoDS_Shape> clamps;
    for (const double z : {200.0, 520.0, 850.0}) {
        const double reach = z > 700 ? 108 : 118;
        clamps.push_back(SoftBox({-204, y - 58, z}, 204 - reach + 26, 116, 44, 8, 4));
    }
    return {{Compound(hoses), graphite}, {Compound(clamps), darkSteel}};
}

std::vector<PaintedBody> MakeLowerArm() {
    PaintedBody casting = Painted("arm_lower", {{LowerCasting(), ivory}});
    PaintFaces(casting, petrol, [](const FaceLook& face) {
        return face.isPlane && std::abs(face.centre.Y() - (lowerOuter + 34)) < 1e-3;
    });
    std::vector<Coloured> fittings{
        {CylinderAt({0, lowerInner, 0}, {0, 10, 0}, 138), darkSteel},
        {CylinderAt({0, lowerInner, arm::lowerLength}, {0, 10, 0}, 112), darkSteel}};
    Append(fittings, StoodAll(Cover(128, 18, petrol), {0, lowerOuter, 0}, {0, -1, 0}));
    Append(fittings,
           StoodAll(Cover(102, 18, petrol), {0, lowerOuter, arm::lowerLength}, {0, -1, 0}));
    Append(fittings, LowerHoses());
    return {casting, Painted("arm_lower_fittings", fittings)};
}

// ---- upper arm and forearm

constexpr double upperPocket = 122;  // depth of its floor, along -Y

std::vector<PaintedBody> MakeUpperArm() {
    const double rise = arm::elbowRise;
    const TopoDS_Shape elbow =
        RoundedPlateAlongY({{0, 0, 146}, {215, rise, 116}, {-205, rise, 124}}, -132, 132, 36);
    const TopoDS_Shape neck = CylinderAt({180, 0, rise}, {arm::forearmStart - 180, 0, 0}, 122);
    const TopoDS_Shape boss = CylinderAt({0, -140, 0}, {0, 272, 0}, 122);
    const TopoDS_Shape back = CylinderAt({-200, 0, rise}, {-142, 0, 0}, 112);
    const TopoDS_Shape pocket =
        PlateAlongY({{-175, rise, 66}, {150, rise, 58}}, -142, -upperPocket);
    PaintedBody casting =
        Painted("arm_upper", {{Cut(Fused({elbow, neck, boss, back}), {pocket}), ivory}});
    PaintFaces(casting, petrol, [](const FaceLook& face) {
        return (face.isCylinder && std::abs(face.radius - 112) < 1e-3) ||
               (face.isPlane && std::abs(face.centre.Y() + upperPocket) < 1e-3);
    });
    std::vector<Coloured> drives;
    for (const gp_Pnt2d& at : {gp_Pnt2d(-52, 34), gp_Pnt2d(52, 34), gp_Pnt2d(0, -56)}) {
        drives.push_back(
            {Stood(Motor(43, 150), {-342, at.X(), rise + at.Y()}, {-1, 0, 0}), graphite});
    }
    Append(drives, StoodAll(GearedMotor(112, 36, 80, 215), {0, 132, 0}, {0, 1, 0}));
    return {casting, Painted("arm_upper_drives", drives)};
}

constexpr double forkLength = arm::upperLength - arm::forearmStart;  // seat to wrist centre
constexpr double cheek = 102, gap = 62;                              // of the fork, along Y

TopoDS_Shape ForearmCasting() {
    const TopoDS_Shape tube = TurnedAboutX(
        {{3, 0}, {3, 124}, {34, 124}, {44, 112}, {64, 108}, {430, 86}, {452, 80}, {452, 0}});
    const TopoDS_Shape fork =
        RoundedPlateAlongY({{420, 0, 84}, {forkLength, 0, 84}}, -cheek, cheek, 24);
    const TopoDS_Shape slot = Filleted(
        BoxAt({forkLength - 122, -gap, -200}, 400, 2 * gap, 400), 22,
        [](const gp_Pnt& a, const gp_Pnt& b) { return IsUpright(a, b) && a.X() < forkLength; });
    return Cut(Fused({tube, fork}), {slot});
}

std::vector<PaintedBody> MakeForearm() {
    PaintedBody casting = Painted("arm_forearm", {{ForearmCasting(), ivory}});
    PaintFaces(casting, petrol, [](const FaceLook& face) {
        return face.isCylinder && std::abs(face.radius - 124) < 1e-3;
    });
    std::vector<Coloured> covers =
        StoodAll(Cover(62, 14, petrol), {forkLength, -cheek, 0}, {0, -1, 0});
    Append(covers, StoodAll(Cover(62, 14, petrol), {forkLength, cheek, 0}, {0, 1, 0}));
    return {casting, Painted("arm_forearm_covers", covers)};
}

// ---- wrist

std::vector<PaintedBody> MakeWristBody() {
    const TopoDS_Shape hub =
        Filleted(CylinderAt({0, -gap + 2, 0}, {0, 2 * gap - 4, 0}, 74), 8,
                 [](const gp_Pnt& a, const gp_Pnt& b) { return AtDepth(a.Y())(a, b); });
    const TopoDS_Shape neck =
        TurnedAboutX({{0, 0}, {0, 54}, {84, 54}, {92, 66}, {116, 66}, {120, 62}, {120, 0}});
    PaintedBody body = Painted("arm_wrist", {{Fused({hub, neck}), ivory}});
    PaintFaces(body, petrol, [](const FaceLook& face) {
        return face.isCylinder && std::abs(face.radius - 66) < 1e-3;
    });
    return {body};
}

std::vector<PaintedBody> MakeFlange() {
    const double face = arm::flangeDistance;
    const TopoDS_Shape turned = TurnedAboutX(
        {{123, 0}, {123, 58}, {168, 58}, {172, 80}, {face - 3, 80}, {face, 77}, {face, 0}});
    std::vector<TopoDS_Shape> tools = CylindersIn({{face - 24, 0, 0}, {30, 0, 0}, 62.5, 5.5, 8, 0});
    tools.push_back(CylinderAt({face - 8, 0, 0}, {20, 0, 0}, 25));
    PaintedBody body = Painted("arm_flange", {{Cut(turned, tools), darkSteel}});
    PaintFaces(body, steel, [&](const FaceLook& look) {
        return look.isPlane && std::abs(look.centre.X() - face) < 1e-3;
    });
    return {body};
}

}  // namespace

Linkage MakeArm() {
    const gp_Dir x(1, 0, 0), y(0, 1, 0), z(0, 0, 1);
    // From X along the arm to Z out of the flange.
    const gp_Quaternion outward(gp_Vec(0, 1, 0), std::numbers::pi / 2);
    const double rise = arm::shoulderHeight - arm::turntableHeight;
    return {"arm",
            MakeBase(),
            {{"turntable",
              {"axis_1", {0, 0, arm::turntableHeight}, z, arm::limits[0]},
              MakeTurntable()},
             {"lower_arm",
              {"axis_2", {arm::shoulderForward, 0, rise}, y, arm::limits[1]},
              MakeLowerArm()},
             {"upper_arm", {"axis_3", {0, 0, arm::lowerLength}, y, arm::limits[2]}, MakeUpperArm()},
             {"forearm",
              {"axis_4", {arm::forearmStart, 0, arm::elbowRise}, x, arm::limits[3]},
              MakeForearm()},
             {"wrist", {"axis_5", {forkLength, 0, 0}, y, arm::limits[4]}, MakeWristBody()},
             {"flange", {"axis_6", {0, 0, 0}, x, arm::limits[5]}, MakeFlange()},
             {"tool0", {"mount", {arm::flangeDistance, 0, 0}, x, {}, outward}, {}}},
            {0, 0, 0, 0, 0, 0, 0}};
}

}  // namespace vrn::examples
