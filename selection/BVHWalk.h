#pragma once

#include "selection/BVHNode.h"
#include "selection/BVHPrimitive.h"
#include "selection/BVHTree.h"
#include "selection/PlaneBoundedVolume.h"
#include "selection/Ray.h"
#include "selection/SlabTest.h"

#include <array>
#include <vector>

namespace vrn::selection {

/// The nodes that wait while a tree is walked: on the stack of the thread, but for trees of unusual
/// depth.
class NodeStack {
public:
    void push(const BVHNode* node) {
        if (count < fixed.size())
            fixed[count++] = node;
        else
            overflow.push_back(node);
    }
    /// Null when empty.
    [[nodiscard]] const BVHNode* pop() {
        if (!overflow.empty()) {
            const BVHNode* node = overflow.back();
            overflow.pop_back();
            return node;
        }
        return count == 0 ? nullptr : fixed[--count];
    }

private:
    std::array<const BVHNode*, 96> fixed;
    std::size_t count = 0;
    std::vector<const BVHNode*> overflow;
};

/// Depth first. `meets(box)` tells whether a node is entered, `yields(primitive)` which primitives
/// of a leaf are handed to `visit`, `leftFirst(axis)` which child is visited first; `visit` answers
/// whether to go on.
template <class Meets, class Yields, class LeftFirst, class Visit>
void WalkNodes(const BVHNode* root, const Meets& meets, const Yields& yields,
               const LeftFirst& leftFirst, Visit&& visit) {
    NodeStack stack;
    for (const BVHNode* node = root; node; node = stack.pop()) {
        if (!meets(node->box)) continue;
        if (node->type == BVHNode::Type::Leaf) {
            const auto* leaf = static_cast<const BVHLeaf*>(node);
            for (std::uint32_t i = 0; i < leaf->count; ++i)
                if (yields(*leaf->primitives[i]) && !visit(leaf->primitives[i])) return;
            continue;
        }
        const auto* inner = static_cast<const BVHInnerNode*>(node);
        const bool isLeftFirst = leftFirst(inner->axis);
        stack.push(isLeftFirst ? inner->right : inner->left);
        stack.push(isLeftFirst ? inner->left : inner->right);
    }
}

/// The candidates of a query, in the order of BVHTree::intersect, one by one: `visit(primitive)`
/// answers whether to go on.
template <class Visit>
void VisitSlabs(const BVHNode* root, const rob::PosTemplate<float>& origin,
                const rob::DirTemplate<float>& direction, float maxDistance, const auto& query,
                Visit&& visit) {
    const auto leftFirst = [&](unsigned axis) { return visual::component(direction, axis) > 0; };
    const SlabTest slabs(origin, direction, maxDistance);
    if (slabs.isDirect()) {
        WalkNodes(
            root, [&](const visual::Box& box) { return slabs.meets(box); },
            [&](const BVHPrimitive& primitive) { return slabs.meets(primitive.box); }, leftFirst,
            visit);
        return;
    }
    WalkNodes(
        root, [&](const visual::Box& box) { return box.intersect(query); },
        [&](const BVHPrimitive& primitive) { return primitive.box.intersect(query); }, leftFirst,
        visit);
}

template <class Visit>
void VisitCandidates(const BVHTree& tree, const visual::Ray& ray, Visit&& visit) {
    VisitSlabs(tree.root, ray.origin, ray.direction, ray.maxDistance, ray, visit);
}

/// Throws std::overflow_error for an empty line, unless the tree is empty.
template <class Visit>
void VisitCandidates(const BVHTree& tree, const rob::LineTemplate<float>& line, Visit&& visit) {
    if (!tree.root) return;
    VisitSlabs(tree.root, line.start, line.getDirection(), line.getLength(), line, visit);
}

template <class Visit>
void VisitCandidates(const BVHTree& tree, const rob::TriangleTemplate<float>& triangle,
                     Visit&& visit) {
    const rob::Vec3Template<float> normal =
        (triangle.p1 - triangle.p0).cross(triangle.p2 - triangle.p0);
    WalkNodes(
        tree.root, [&](const visual::Box& box) { return box.intersect(triangle); },
        [&](const BVHPrimitive& primitive) { return primitive.box.intersect(triangle); },
        [&](unsigned axis) { return visual::component(normal, axis) > 0; }, visit);
}

template <class Visit>
void VisitCandidates(const BVHTree& tree, const visual::Box& region, Visit&& visit) {
    WalkNodes(
        tree.root, [&](const visual::Box& box) { return box.intersect(region); },
        [&](const BVHPrimitive& primitive) { return primitive.box.intersect(region); },
        [](unsigned) { return true; }, visit);
}

/// A leaf that is not outside yields all that is enabled in it.
template <class Visit>
void VisitCandidates(const BVHTree& tree, const PlaneBoundedVolume& volume, Visit&& visit) {
    WalkNodes(
        tree.root,
        [&](const visual::Box& box) {
            return volume.intersect(box) != PlaneBoundedVolume::Outside;
        },
        [](const BVHPrimitive& primitive) { return primitive.enabled; },
        [](unsigned) { return false; }, visit);
}

}  // namespace vrn::selection
