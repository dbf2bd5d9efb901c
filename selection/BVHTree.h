#pragma once

#include "suite/rob/ShapeTypes.h"
#include "visual/VrnVisualApi.h"

#include <vector>

namespace vrn::visual {
class Box;
struct Ray;
}  // namespace vrn::visual

namespace vrn::selection {

class Arena;
class BVHNode;
class BVHPrimitive;
class PlaneBoundedVolume;

/// A bounding-volume hierarchy over the primitives of a container. Built once and never changed: a
/// change builds a new tree. The queries append the primitives whose bounds pass, in the order in
/// which they are visited; no primitive is asked. Several threads may query a built tree at once.
class VRN_VISUAL_API BVHTree {
public:
    /// Empty: no root, an arena of its own.
    BVHTree();
    ~BVHTree();
    BVHTree(BVHTree&& other) noexcept;
    /// Swaps, so that the former tree dies with `other`.
    BVHTree& operator=(BVHTree&& other) noexcept;

    /// Near children first, by the sign of the ray's direction.
    void intersect(const visual::Ray& ray, std::vector<BVHPrimitive*>& found) const;
    void intersect(const rob::TriangleTemplate<float>& triangle,
                   std::vector<BVHPrimitive*>& found) const;
    void intersect(const rob::LineTemplate<float>& line, std::vector<BVHPrimitive*>& found) const;
    void intersect(const visual::Box& region, std::vector<BVHPrimitive*>& found) const;
    /// Yields every enabled primitive of a leaf that is not outside, also one whose own box is:
    /// callers filter.
    void intersect(const PlaneBoundedVolume& volume, std::vector<BVHPrimitive*>& found) const;

    BVHNode* root = nullptr;  ///< null for an empty tree
    Arena* arena;             ///< owned; null in a tree that was moved from
};

}  // namespace vrn::selection
