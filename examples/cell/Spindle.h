#pragma once

#include <gp_Vec.hxx>

#include <vector>

#include "examples/cell/Paint.h"

namespace vrn::examples {

/// A grinding spindle with a touch probe beside it, in the flange's frame: Z out of the flange, the
/// tools towards +X. Millimetres.
namespace spindle {

/// Tip of the grinding ball and centre of the probe's; both tool frames have their Z along +X.
inline constexpr double cutterX = 318, cutterZ = 138;
inline constexpr double probeX = 214, probeZ = 262;

}  // namespace spindle

[[nodiscard]] std::vector<PaintedBody> MakeSpindle();

}  // namespace vrn::examples
