#pragma once

#include "selection/Box.h"
#include "suite/rob/VectorTypes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vrn::selection {

/// Box::intersect for one ray or line and many boxes: the same answer to the bit for every box of
/// numbers, with what depends on the ray alone found once. One with a NaN may count as met.
/// Thread: pure.
class SlabTest {
public:
    /// Where the ray enters a box, if it meets it.
    struct Entry {
        bool isMet;
        float distance;
    };

    SlabTest(const rob::PosTemplate<float>& origin, const rob::DirTemplate<float>& direction,
             float maxDistance)
        : from{origin.x, origin.y, origin.z, 0},
          along{direction.x, direction.y, direction.z, 1},
          forward{direction.x > 0 ? -1 : 0, direction.y > 0 ? -1 : 0, direction.z > 0 ? -1 : 0, 0},
          farLimit(maxDistance),
          direct(IsDirect(origin, direction, maxDistance)) {}

    /// True for a ray without a parallel axis and without a number that is not finite: then it
    /// brings no NaN, and the order in which the axes narrow the limits does not matter.
    [[nodiscard]] bool isDirect() const { return direct; }

    /// Only for a direct ray.
    [[nodiscard]] Entry entryInto(const visual::Box& box) const {
        static_assert(offsetof(visual::Box, min) == 0 &&
                      offsetof(visual::Box, max) == 3 * sizeof(float) &&
                      sizeof(visual::Box) >= 7 * sizeof(float));
        // Four floats from each corner on: the last one is a neighbour, and counts for nothing.
        const auto* bytes = reinterpret_cast<const std::byte*>(&box);
        Floats low, high;
        std::memcpy(&low, bytes, sizeof low);
        std::memcpy(&high, bytes + 3 * sizeof(float), sizeof high);
        const Floats entry = ((forward ? low : high) - from) / along;
        const Floats exit = ((forward ? high : low) - from) / along;
        const float nearLimit = std::max(std::max(entry[0], entry[1]), std::max(entry[2], 0.0f));
        const float remaining = std::min(std::min(exit[0], exit[1]), std::min(exit[2], farLimit));
        return {remaining >= nearLimit, nearLimit};
    }

private:
    // Vectors of the compiler, on every processor that it knows.
    using Floats = float __attribute__((vector_size(16)));
    using Ints = std::int32_t __attribute__((vector_size(16)));

    static bool IsDirect(const rob::PosTemplate<float>& o, const rob::DirTemplate<float>& d,
                         float maxDistance) {
        constexpr float parallelLimit = 0.001f;
        const auto isSteep = [](float component) {
            return std::isfinite(component) && std::abs(component) >= parallelLimit;
        };
        return std::isfinite(o.x) && std::isfinite(o.y) && std::isfinite(o.z) && isSteep(d.x) &&
               isSteep(d.y) && isSteep(d.z) && !std::isnan(maxDistance);
    }

    Floats from, along;
    Ints forward;  ///< all bits where the direction is positive
    float farLimit;
    bool direct;
};

}  // namespace vrn::selection
