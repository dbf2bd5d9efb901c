#pragma once

#include "selection/BVHPrimitive.h"
#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace vrn::selection {

/// A triangle of a set. It is there to be bounded and found: the set tests its geometry.
class VRN_VISUAL_API SensitiveTriangle : public BVHPrimitive {
public:
    enum class Kind : std::int32_t { Indexed = 0, Valued = 1 };

    const Kind kind;

protected:
    explicit SensitiveTriangle(Kind triangleKind) : kind(triangleKind) {}
};

/// A triangle whose geometry its set knows by number. There are millions of them: they are kept
/// close together in memory.
class VRN_VISUAL_API SensitiveIndexedTriangle final : public SensitiveTriangle {
public:
    explicit SensitiveIndexedTriangle(std::uint32_t number)
        : SensitiveTriangle(Kind::Indexed), index(number) {}

    static void* operator new(std::size_t bytes);
    static void operator delete(void* triangle);

    /// From 0 in a SensitiveMesh, from 1 in a SensitiveFace.
    const std::uint32_t index;
};

/// A triangle that carries its geometry, for sets of the host's own. Its box is one unit wider than
/// the three points on each side.
class VRN_VISUAL_API SensitiveValuedTriangle final : public SensitiveTriangle {
public:
    SensitiveValuedTriangle(const rob::PosTemplate<float>& a, const rob::PosTemplate<float>& b,
                            const rob::PosTemplate<float>& c);

    const std::array<rob::PosTemplate<float>, 3> points;
};

}  // namespace vrn::selection
