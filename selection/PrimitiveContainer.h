#pragma once

#include "selection/BVHTree.h"
#include "selection/Result.h"
#include "suite/rob/ShapeTypes.h"
#include "visual/VrnVisualApi.h"

#include <functional>
#include <vector>

namespace vrn::selection {

class BVHPrimitive;

/// Owns primitives, in the order in which they were added, and a hierarchy over them, which its
/// owner builds. Without a hierarchy the queries find nothing. Thread: render.
class VRN_VISUAL_API PrimitiveContainer {
public:
    PrimitiveContainer() = default;
    PrimitiveContainer(const PrimitiveContainer&) = delete;
    PrimitiveContainer& operator=(const PrimitiveContainer&) = delete;
    /// Deletes the primitives, then the tree; null entries are passed over.
    virtual ~PrimitiveContainer();

    /// The nearest hit; of equally distant ones the one that is visited first.
    [[nodiscard]] Result bvhIntersect(const visual::Ray& ray) const;
    [[nodiscard]] Result bvhIntersect(const rob::LineTemplate<float>& line) const;
    /// The first hit that is found: a triangle only asks whether anything is touched.
    [[nodiscard]] Result bvhIntersect(const rob::TriangleTemplate<float>& triangle) const;
    /// Hands `visit` to each primitive whose box overlaps `region`.
    void forEachIntersection(const visual::Box& region,
                             std::function<void(unsigned int)> visit) const;

    /// Takes the first entry equal to `primitive` out, keeping the order of the others. Deletes
    /// nothing: the caller owns it from here, and builds the tree anew before the next query.
    /// Throws std::out_of_range if there is no such entry.
    void removePrimitive(BVHPrimitive* primitive);

    std::vector<BVHPrimitive*> primitives;  ///< owned
    BVHTree tree;
};

}  // namespace vrn::selection
