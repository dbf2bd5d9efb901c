#include <gp_Mat.hxx>
#include <gp_Quaternion.hxx>
#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "examples/cell/Arm.h"

namespace vrn::examples {

namespace {

constexpr double degree = std::numbers::pi / 180;

/// Axes 2 and 3 for a wrist centre `forward` of axis 2 and `up` from it: a triangle of the lower
/// arm and the line from axis 3 to the wrist.
std::optional<std::array<double, 2>> ReachWith(double forward, double up) {
    const double lower = arm::lowerLength;
    const double upper = std::hypot(arm::upperLength, arm::elbowRise);
    const double distance = std::hypot(forward, up);
    const double atShoulder =
        (lower * lower + distance * distance - upper * upper) / (2 * lower * distance);
    const double atElbow =
        (lower * lower + upper * upper - distance * distance) / (2 * lower * upper);
    if (!(std::abs(atShoulder) < 1) || !(std::abs(atElbow) < 1)) return std::nullopt;
    // Axis 2 counts from upright, forward; the elbow stays above the line to the wrist.
    const double second = std::atan2(forward, up) - std::acos(atShoulder);
    const double bend = std::numbers::pi - std::acos(atElbow);
    // At zero the line to the wrist lies square to the lower arm, but for the elbow's rise.
    const double atZero = std::atan2(arm::upperLength, arm::elbowRise);
    return std::array{second, bend - atZero};
}

/// Axes 4 to 6 for a turn of the flange against the upper arm, as turns about X, Y and X.
std::array<double, 3> WristFor(const gp_Mat& turn, bool flipped) {
    const double sine = std::hypot(turn(1, 2), turn(1, 3)) * (flipped ? -1 : 1);
    const double sign = flipped ? -1 : 1;
    return {std::atan2(sign * turn(2, 1), -sign * turn(3, 1)), std::atan2(sine, turn(1, 1)),
            std::atan2(sign * turn(1, 2), sign * turn(1, 3))};
}

/// The wrist's centre for axes 2 and 3.
gp_Pnt2d WristAt(double second, double third) {
    const double whole = second + third;
    return {arm::shoulderForward + arm::lowerLength * std::sin(second) +
                arm::upperLength * std::cos(whole) + arm::elbowRise * std::sin(whole),
            arm::shoulderHeight + arm::lowerLength * std::cos(second) -
                arm::upperLength * std::sin(whole) + arm::elbowRise * std::cos(whole)};
}

gp_Quaternion About(const gp_Vec& axis, double angle) { return {axis, angle}; }

}  // namespace

std::optional<ArmPosture> PostureAt(const gp_Trsf& flange, bool wristFlipped) {
    const gp_Quaternion turn = flange.GetRotation();
    const gp_Vec outward = turn * gp_Vec(0, 0, 1);
    const gp_Vec wrist = gp_Vec(flange.TranslationPart()) - outward * arm::flangeDistance;
    const double first = std::atan2(wrist.Y(), wrist.X());
    const auto reach = ReachWith(std::hypot(wrist.X(), wrist.Y()) - arm::shoulderForward,
                                 wrist.Z() - arm::shoulderHeight);
    if (!reach) return std::nullopt;
    const gp_Vec x(1, 0, 0), y(0, 1, 0), z(0, 0, 1);
    const gp_Quaternion upperArm = About(z, first) * About(y, (*reach)[0] + (*reach)[1]);
    const gp_Quaternion mount = About(y, std::numbers::pi / 2);  // flange's frame on axis 6
    const gp_Quaternion rest = upperArm.Inverted() * turn * mount.Inverted();
    const std::array<double, 3> last = WristFor(rest.GetMatrix(), wristFlipped);
    ArmPosture posture{first, (*reach)[0], (*reach)[1], last[0], last[1], last[2]};
    for (std::size_t i = 0; i < posture.size(); ++i) {
        posture[i] /= degree;
        if (posture[i] < arm::limits[i].lowerDegrees || posture[i] > arm::limits[i].upperDegrees)
            return std::nullopt;
    }
    return posture;
}

std::vector<gp_Pnt2d> WristReach() {
    // Where lower and upper arm point one way.
    const double stretched = -std::atan2(arm::upperLength, arm::elbowRise);
    const AngleRange& second = arm::limits[1];
    std::vector<gp_Pnt2d> border;
    constexpr int steps = 100;
    for (int i = 0; i <= steps; ++i) {
        const double part = static_cast<double>(i) / steps;
        border.push_back(WristAt(
            (second.upperDegrees + (second.lowerDegrees - second.upperDegrees) * part) * degree,
            stretched));
    }
    return border;
}

}  // namespace vrn::examples
