#pragma once

#include <gp_Pnt2d.hxx>
#include <gp_Trsf.hxx>

#include <array>
#include <optional>
#include <vector>

#include "examples/cell/Linkage.h"

namespace vrn::examples {

/// Where the joints of the six-axis arm stand, in millimetres. With all joints at zero the lower
/// arm is upright and the upper arm points along X.
namespace arm {

inline constexpr double turntableHeight = 330;  // floor to the seat of the turntable
inline constexpr double shoulderForward = 300;  // axis 1 to axis 2, along X
inline constexpr double shoulderHeight = 780;   // floor to axis 2
inline constexpr double lowerLength = 1080;     // axis 2 to axis 3
inline constexpr double elbowRise = 140;        // axis 3 to axis 4, along Z
inline constexpr double upperLength = 1120;     // axis 3 to the wrist's centre, along X
inline constexpr double forearmStart = 366;     // axis 3 to the seat of the forearm, along X
inline constexpr double flangeDistance = 210;   // the wrist's centre to the flange

/// Of axis 1 to axis 6.
inline constexpr std::array<AngleRange, 6> limits{
    {{-185, 185}, {-75, 125}, {-175, 75}, {-350, 350}, {-125, 125}, {-350, 350}}};

}  // namespace arm

/// The arm, all joints at zero. Its base stands on the floor at the origin; the last link is the
/// flange, "tool0", whose frame has its Z out of the flange and its X down.
[[nodiscard]] Linkage MakeArm();

/// Joint values in degrees, axis 1 to axis 6.
using ArmPosture = std::array<double, 6>;

/// The values that take the flange to `flange`, given in the arm's frame: with the elbow above, the
/// robot facing the place, and axis 5 bent upward or downward as `wristFlipped` says. Nothing if it
/// is out of reach or beyond a joint's limit.
[[nodiscard]] std::optional<ArmPosture> PostureAt(const gp_Trsf& flange, bool wristFlipped = false);

/// How far out the wrist's centre comes with axis 1 at zero: x and z in the arm's frame, from below
/// in front of the arm over its head to its back, so that the outside is to the right.
[[nodiscard]] std::vector<gp_Pnt2d> WristReach();

}  // namespace vrn::examples
