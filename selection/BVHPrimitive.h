#pragma once

#include "selection/Box.h"
#include "suite/rob/ShapeTypes.h"
#include "visual/VrnVisualApi.h"

#include <functional>

namespace vrn::visual {
struct Ray;
}

namespace vrn::selection {

struct Result;

/// An element of a hierarchy: something with bounds that can be switched off. Its queries are in
/// the coordinate space of the container that holds it; a kind of primitive that does not answer
/// one keeps the default, which hits nothing. Thread: render.
class VRN_VISUAL_API BVHPrimitive {
public:
    BVHPrimitive() = default;
    BVHPrimitive(const BVHPrimitive&) = delete;
    BVHPrimitive& operator=(const BVHPrimitive&) = delete;

    [[nodiscard]] virtual Result intersect(const visual::Ray& ray);
    [[nodiscard]] virtual Result intersect(const rob::TriangleTemplate<float>& triangle);
    [[nodiscard]] virtual Result intersect(const rob::LineTemplate<float>& line);
    /// Calls `visit` with the number of each triangle whose box overlaps `region`.
    virtual void processIntersectionsWith(const visual::Box& region,
                                          std::function<void(unsigned int)> visit) const;
    virtual ~BVHPrimitive();

    /// The bounds, in the coordinate space of the container that holds the primitive.
    visual::Box box;
    /// What is switched off takes no part in queries.
    bool enabled = true;
};

}  // namespace vrn::selection
