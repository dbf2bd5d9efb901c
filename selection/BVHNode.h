#pragma once

#include "selection/Box.h"
#include "suite/rob/ShapeTypes.h"
#include "visual/VrnVisualApi.h"

#include <array>
#include <cstdint>
#include <vector>

namespace vrn::visual {
struct Ray;
}

namespace vrn::selection {

class BVHPrimitive;

/// A node of a hierarchy. Nodes live in the arena of their tree, own nothing and are never
/// destroyed one by one. Thread: pure, once built.
class VRN_VISUAL_API BVHNode {
public:
    enum class Type : std::int32_t { Inner = 0, Leaf = 1 };

    /// Appends the primitives below, from left to right.
    virtual void collectPrimitives(std::vector<BVHPrimitive*>& found) = 0;

    [[nodiscard]] bool intersect(const visual::Ray& ray) const;
    [[nodiscard]] bool intersect(const rob::TriangleTemplate<float>& triangle) const;
    [[nodiscard]] bool intersect(const rob::LineTemplate<float>& line) const;
    [[nodiscard]] bool intersect(const visual::Box& other) const;

    Type type;
    visual::Box box;  ///< of everything below, in the space of the container

protected:
    explicit BVHNode(Type nodeType) : type(nodeType) {}
    ~BVHNode() = default;
};

class VRN_VISUAL_API BVHInnerNode final : public BVHNode {
public:
    /// `splitAxis`: 0 x, 1 y, 2 z. The children must not be null.
    BVHInnerNode(BVHNode* leftChild, BVHNode* rightChild, unsigned splitAxis)
        : BVHNode(Type::Inner), axis(splitAxis), left(leftChild), right(rightChild) {
        box.addBox(left->box);
        box.addBox(right->box);
    }
    void collectPrimitives(std::vector<BVHPrimitive*>& found) override;

    std::uint32_t axis;  ///< first, since there is room for it behind the box
    BVHNode* left;
    BVHNode* right;
};

class VRN_VISUAL_API BVHLeaf final : public BVHNode {
public:
    static constexpr unsigned maxCount = 4;

    /// `primitiveCount`: 1 to 4; the builder fills `primitives` and `box`.
    explicit BVHLeaf(unsigned primitiveCount) : BVHNode(Type::Leaf), count(primitiveCount) {}
    void collectPrimitives(std::vector<BVHPrimitive*>& found) override;

    std::uint32_t count;  ///< first, since there is room for it behind the box
    std::array<BVHPrimitive*, maxCount> primitives{};
};

}  // namespace vrn::selection
