#pragma once

#include "suite/rob/VectorTypes.h"

namespace vrn::host {

/// The colour of a speed: from blue, at rest, over green and yellow to red at `fastest`. What is
/// not above 0 counts as rest. Thread: pure.
[[nodiscard]] rob::ColorTemplate<float> SpeedColour(double speed, double fastest);

}  // namespace vrn::host
