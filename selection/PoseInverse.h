#pragma once

#include "suite/rob/PoseTypes.h"

namespace vrn::selection {

/// The pose that undoes `pose`: the inverse rotation, and the negated position turned by it.
/// Thread: pure.
[[nodiscard]] constexpr rob::PoseTemplate<float> InverseOf(const rob::PoseTemplate<float>& pose) {
    const rob::RotationTemplate<float> back = pose.rotation.inverse();
    const rob::PosTemplate<float>& p = pose.position;
    return {back * rob::PosTemplate<float>{-p.x, -p.y, -p.z}, back};
}

}  // namespace vrn::selection
