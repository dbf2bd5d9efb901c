#include "selection/Plane.h"

#include <cmath>
#include <optional>
#include <stdexcept>

namespace vrn::visual {

namespace {

constexpr double parallelLimit = 0.001;

/// The parameter of the meeting point; nothing for a parallel line.
std::optional<float> LineParameter(const Plane& plane, const rob::PosTemplate<float>& origin,
                                   const rob::DirTemplate<float>& direction) {
    const rob::Vec3Template<float> normal = plane.normal.asVec3();
    const float denominator = normal.dot(direction.asVec3());
    if (std::abs(static_cast<double>(denominator)) < parallelLimit) return std::nullopt;
    return -((normal.dot(origin.asVec3()) - plane.d) / denominator);
}

}  // namespace

float Plane::distance(const rob::PosTemplate<float>& origin,
                      const rob::DirTemplate<float>& direction) const {
    return LineParameter(*this, origin, direction).value_or(0.0f);
}

rob::PosTemplate<float> Plane::intersection(const rob::PosTemplate<float>& origin,
                                            const rob::DirTemplate<float>& direction) const {
    const std::optional<float> t = LineParameter(*this, origin, direction);
    if (!t) throw std::logic_error("The line is parallel with the plane");
    return origin + direction.asVec3() * *t;
}

}  // namespace vrn::visual
