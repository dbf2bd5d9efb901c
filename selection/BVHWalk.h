#pragma once

#include "selection/BVHNode.h"
#include "selection/BVHPrimitive.h"
#include "selection/BVHTree.h"
#include "selection/PlaneBoundedVolume.h"
#include "selection/Ray.h"
#include "selection/SlabTest.h"

#include <array>
#include <limits>
#include <vector>

namespace vrn::selection {

/// The nodes that wait while a tree is walked, each with how far along the ray it begins: on the
/// stack of the thread, but for trees of unusual depth.
class NodeStack {
public:
    struct Waiting {
        const BVHNode* node;
        float distance;
    };

    void push(const BVHNode* node, float distance = 0) {
        if (count < fixed.size())
            fixed[count++] = {node, distance};
        else
            overflow.push_back({node, distance});
    }
    /// A null node when empty.
    [[nodiscard]] Waiting pop() {
        if (!overflow.empty()) {
            const Waiting waiting = overflow.back();
            overflow.pop_back();
            return waiting;
        }
        return count == 0 ? Waiting{nullptr, 0} : fixed[--count];
    }

private:
    std::array<Waiting, 96> fixed;
    std::size_t count = 0;
    std::vector<Waiting> overflow;
};

/// Depth first. `meets(box)` tells whether a node is entered, `yields(primitive)` which primitives
/// of a leaf are handed to `visit`, `leftFirst(axis)` which child is visited first; `visit` answers
/// whether to go on.
template <class Meets, class Yields, class LeftFirst, class Visit>
void WalkNodes(const BVHNode* root, const Meets& meets, const Yields& yields,
               const LeftFirst& leftFirst, Visit&& visit) {
    NodeStack stack;
    for (const BVHNode* node = root; node; node = stack.pop().node) {
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

/// Asks for the memory that a node's turn will need.
inline void FetchBelow(const BVHNode& node) {
    if (node.type == BVHNode::Type::Leaf) {
        const auto& leaf = static_cast<const BVHLeaf&>(node);
        for (std::uint32_t i = 0; i < leaf.count; ++i) __builtin_prefetch(leaf.primitives[i]);
    } else {
        const auto& inner = static_cast<const BVHInnerNode&>(node);
        __builtin_prefetch(inner.left);
        __builtin_prefetch(inner.right);
    }
}

/// WalkNodes for a direct ray. Both children are looked at before the first is entered, so that
/// they come from memory together, and what begins behind `limit()` is passed over.
template <class Limit, class Visit>
void WalkSlabs(const BVHNode* root, const rob::DirTemplate<float>& direction, const SlabTest& slabs,
               const Limit& limit, Visit&& visit) {
    if (!root || !slabs.entryInto(root->box).isMet) return;
    NodeStack stack;
    for (NodeStack::Waiting next{root, 0}; next.node; next = stack.pop()) {
        if (next.distance > limit()) continue;
        if (next.node->type == BVHNode::Type::Leaf) {
            const auto* leaf = static_cast<const BVHLeaf*>(next.node);
            for (std::uint32_t i = 0; i < leaf->count; ++i) {
                const SlabTest::Entry entry = slabs.entryInto(leaf->primitives[i]->box);
                if (!entry.isMet || entry.distance > limit()) continue;
                if (!visit(leaf->primitives[i])) return;
            }
            continue;
        }
        const auto* inner = static_cast<const BVHInnerNode*>(next.node);
        const SlabTest::Entry left = slabs.entryInto(inner->left->box);
        const SlabTest::Entry right = slabs.entryInto(inner->right->box);
        const bool isLeftFirst = visual::component(direction, inner->axis) > 0;
        if (right.isMet) FetchBelow(*inner->right);
        if (left.isMet) FetchBelow(*inner->left);
        if (right.isMet && isLeftFirst) stack.push(inner->right, right.distance);
        if (left.isMet) stack.push(inner->left, left.distance);
        if (right.isMet && !isLeftFirst) stack.push(inner->right, right.distance);
    }
}

/// The candidates of a query, in the order of BVHTree::intersect, one by one: `visit(primitive)`
/// answers whether to go on. Those that begin behind `limit()`, in lengths of the direction, may be
/// left out.
template <class Limit, class Visit>
void VisitSlabs(const BVHNode* root, const rob::PosTemplate<float>& origin,
                const rob::DirTemplate<float>& direction, float maxDistance, const auto& query,
                const Limit& limit, Visit&& visit) {
    const SlabTest slabs(origin, direction, maxDistance);
    if (slabs.isDirect()) return WalkSlabs(root, direction, slabs, limit, visit);
    WalkNodes(
        root, [&](const visual::Box& box) { return box.intersect(query); },
        [&](const BVHPrimitive& primitive) { return primitive.box.intersect(query); },
        [&](unsigned axis) { return visual::component(direction, axis) > 0; }, visit);
}

constexpr auto noLimit = [] { return std::numeric_limits<float>::infinity(); };

template <class Visit>
void VisitCandidates(const BVHTree& tree, const visual::Ray& ray, Visit&& visit) {
    VisitSlabs(tree.root, ray.origin, ray.direction, ray.maxDistance, ray, noLimit, visit);
}

/// The same, without some that begin behind `limit()`.
template <class Limit, class Visit>
void VisitCandidates(const BVHTree& tree, const visual::Ray& ray, const Limit& limit,
                     Visit&& visit) {
    VisitSlabs(tree.root, ray.origin, ray.direction, ray.maxDistance, ray, limit, visit);
}

/// Throws std::overflow_error for an empty line, unless the tree is empty.
template <class Visit>
void VisitCandidates(const BVHTree& tree, const rob::LineTemplate<float>& line, Visit&& visit) {
    if (!tree.root) return;
    VisitSlabs(tree.root, line.start, line.getDirection(), line.getLength(), line, noLimit, visit);
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
    // Box::intersect, here because a call for each box takes longer than its comparisons.
    const auto meets = [low = region.min, high = region.max](const visual::Box& box) {
        return box.min.x <= high.x && box.max.x >= low.x && box.min.y <= high.y &&
               box.max.y >= low.y && box.min.z <= high.z && box.max.z >= low.z;
    };
    WalkNodes(
        tree.root, meets, [&](const BVHPrimitive& primitive) { return meets(primitive.box); },
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
