#pragma once

#include "examples/cell/Paint.h"

namespace vrn::examples {

/// What stands about in the cell. Each in its own frame, standing on z = 0; millimetres.

/// The floor, its upper face at z = 0, with a painted border; the origin is the robot's place.
[[nodiscard]] PaintedBody MakeFloor();
/// A fence post, and a panel from the post at the origin to the next one along X.
[[nodiscard]] PaintedBody MakeFencePost();
[[nodiscard]] PaintedBody MakeFencePanel();
inline constexpr double fencePanelLength = 1060;
/// The robot's controller, its door towards -Y.
[[nodiscard]] PaintedBody MakeCabinet();
/// A low trestle to stand a workpiece on, its top at standHeight.
[[nodiscard]] PaintedBody MakeStand();
inline constexpr double standHeight = 420;

}  // namespace vrn::examples
