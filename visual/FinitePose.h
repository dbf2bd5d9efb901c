#pragma once

#include <cmath>

#include "suite/rob/PoseTypes.h"

namespace vrn::visual {

/// Whether every component is a number. Thread: pure, as all of these.
[[nodiscard]] inline bool IsFinite(const rob::PosTemplate<float>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}
[[nodiscard]] inline bool IsFinite(const rob::RotationTemplate<float>& r) {
    return std::isfinite(r.w) && std::isfinite(r.x) && std::isfinite(r.y) && std::isfinite(r.z);
}
[[nodiscard]] inline bool IsFinite(const rob::PoseTemplate<float>& pose) {
    return IsFinite(pose.position) && IsFinite(pose.rotation);
}

/// The turn that a finite quaternion stands for, of length 1. A zero one would turn everything into
/// NaN: it counts as no turn. In double, where the squares of no float overflow or vanish.
[[nodiscard]] inline rob::RotationTemplate<float> UnitRotation(
    const rob::RotationTemplate<float>& r) {
    const double w = r.w, x = r.x, y = r.y, z = r.z;
    const double length = std::sqrt(w * w + x * x + y * y + z * z);
    if (!(length > 0)) return {};
    const auto unit = [length](double component) { return static_cast<float>(component / length); };
    return {unit(w), unit(x), unit(y), unit(z)};
}

}  // namespace vrn::visual
