#pragma once

#include "selection/Box.h"
#include "suite/rob/VectorTypes.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>

namespace vrn::selection {

/// Box::intersect for one ray or line and many boxes: the same answer to the bit, with what depends
/// on the ray alone found once. Thread: pure.
class SlabTest {
public:
    SlabTest(const rob::PosTemplate<float>& origin, const rob::DirTemplate<float>& direction,
             float maxDistance)
        : from{origin.x, origin.y, origin.z, 0},
          along{direction.x, direction.y, direction.z, 1},
          forward{direction.x > 0, direction.y > 0, direction.z > 0},
          farLimit(maxDistance),
          direct(IsDirect(origin, direction, maxDistance)) {}

    /// True for a ray without a parallel axis and without a number that is not finite: then no NaN
    /// can arise, and the order in which the axes narrow the limits does not matter.
    [[nodiscard]] bool isDirect() const { return direct; }

    /// Only for a direct ray.
    [[nodiscard]] bool meets(const visual::Box& box) const {
        std::array<float, 4> low, high;
        static_assert(offsetof(visual::Box, min) == 0 &&
                      offsetof(visual::Box, max) == 3 * sizeof(float) &&
                      sizeof(visual::Box) >= 7 * sizeof(float));
        const auto* bytes = reinterpret_cast<const std::byte*>(&box);
        std::memcpy(low.data(), bytes, sizeof low);
        std::memcpy(high.data(), bytes + 3 * sizeof(float), sizeof high);
        std::array<float, 4> first, second;
        for (int i = 0; i < 4; ++i) {
            first[i] = (low[i] - from[i]) / along[i];
            second[i] = (high[i] - from[i]) / along[i];
        }
        float nearLimit = 0.0f, remaining = farLimit;
        for (int i = 0; i < 3; ++i) {
            const float entry = forward[i] ? first[i] : second[i];
            const float exit = forward[i] ? second[i] : first[i];
            nearLimit = entry > nearLimit ? entry : nearLimit;
            remaining = exit < remaining ? exit : remaining;
        }
        return remaining >= nearLimit;
    }

private:
    static bool IsDirect(const rob::PosTemplate<float>& o, const rob::DirTemplate<float>& d,
                         float maxDistance) {
        constexpr float parallelLimit = 0.001f;
        const auto isSteep = [](float component) {
            return std::isfinite(component) && std::abs(component) >= parallelLimit;
        };
        return std::isfinite(o.x) && std::isfinite(o.y) && std::isfinite(o.z) && isSteep(d.x) &&
               isSteep(d.y) && isSteep(d.z) && !std::isnan(maxDistance);
    }

    std::array<float, 4> from, along;
    std::array<bool, 3> forward;
    float farLimit;
    bool direct;
};

}  // namespace vrn::selection
