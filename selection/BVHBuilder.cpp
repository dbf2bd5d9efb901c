#include "selection/BVHBuilder.h"

#include "selection/Arena.h"
#include "selection/BVHNode.h"
#include "selection/BVHPrimitive.h"
#include "selection/PrimitiveContainer.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <new>
#include <ostream>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

namespace vrn::selection {

namespace {

using visual::Box;
/// x, y, z and one number that counts for nothing: a vector of the compiler.
using Quad = float __attribute__((vector_size(16)));

constexpr unsigned bucketCount = 8;
constexpr unsigned planeCount = bucketCount - 1;
/// Narrower buckets than this, in model units, are not worth a look: the range is halved.
constexpr float minBucketWidth = 5.0f;
constexpr std::size_t nodeAlignment = 8;

/// Bounds that grow as those of Box do: a NaN is passed over.
struct Bounds {
    Quad low{FLT_MAX, FLT_MAX, FLT_MAX, 0};
    Quad high{-FLT_MAX, -FLT_MAX, -FLT_MAX, 0};

    void add(const Quad& otherLow, const Quad& otherHigh) {
        low = otherLow < low ? otherLow : low;
        high = otherHigh > high ? otherHigh : high;
    }
    [[nodiscard]] bool isValid() const {
        return high[0] >= low[0] && high[1] >= low[1] && high[2] >= low[2];
    }
    /// As Box::getArea.
    [[nodiscard]] float area() const {
        const Quad extent = high - low;
        return 2.0f * (extent[0] * extent[1] + extent[0] * extent[2] + extent[1] * extent[2]);
    }
    [[nodiscard]] Box toBox() const { return {low[0], low[1], low[2], high[0], high[1], high[2]}; }
};

/// What the builder looks at of a primitive, kept close together while it sorts.
struct Item {
    Quad low, high, center;
};

Quad QuadOf(const rob::PosTemplate<float>& p) { return Quad{p.x, p.y, p.z, 0}; }

Item ItemOf(BVHPrimitive& primitive) {
    Box& box = primitive.box;
    return {QuadOf(box.min), QuadOf(box.max), QuadOf(box.getCenter())};
}

/// Equal buckets along the widest axis of some centroids.
struct Split {
    unsigned axis;
    float origin;
    float width;

    /// A centroid on the far end, or beyond it by rounding, belongs to the last bucket, a NaN to
    /// the first.
    [[nodiscard]] unsigned bucketOf(float center) const {
        const float position = (center - origin) / width;
        if (!(position > 0.0f)) return 0;
        return position < static_cast<float>(bucketCount) ? static_cast<unsigned>(position)
                                                          : bucketCount - 1;
    }
    /// Where the plane after bucket `i` cuts the axis.
    [[nodiscard]] float planeAfter(unsigned i) const {
        return static_cast<float>(i + 1) * width + origin;
    }
};

/// The primitives of a bucket, or on one side of a plane between two.
struct Share {
    std::uint32_t count = 0;
    Bounds bounds;

    void add(const Share& other) {
        if (other.count == 0) return;
        count += other.count;
        bounds.add(other.bounds.low, other.bounds.high);
    }
    [[nodiscard]] float cost() const { return static_cast<float>(count) * bounds.area(); }
};
using Buckets = std::array<Share, bucketCount>;

/// The bucket after which a cut costs least; of equal ones the first. A cut with an empty side
/// costs most.
unsigned CheapestPlane(const Buckets& buckets) {
    std::array<Share, planeCount> right;
    Share growing;
    for (unsigned i = planeCount; i-- > 0;) {
        growing.add(buckets[i + 1]);
        right[i] = growing;
    }
    growing = {};
    unsigned best = 0;
    float lowest = FLT_MAX;
    for (unsigned i = 0; i < planeCount; ++i) {
        growing.add(buckets[i]);
        if (!growing.bounds.isValid() || !right[i].bounds.isValid()) continue;
        const float cost = growing.cost() + right[i].cost();
        if (!(cost < lowest)) continue;
        lowest = cost;
        best = i;
    }
    return best;
}

/// One build: the order with what the builder looks at beside it.
class Build {
public:
    Build(const std::vector<BVHPrimitive*>& allPrimitives, std::span<unsigned int> range,
          Arena& nodeArena)
        : primitives(allPrimitives), order(range), arena(nodeArena) {
        items.reserve(order.size());
        for (const unsigned int index : order) items.push_back(ItemOf(*primitives[index]));
    }

    [[nodiscard]] BVHNode* makeNode(unsigned first, unsigned last) {
        if (last - first <= BVHLeaf::maxCount) return makeLeaf(first, last);
        Bounds centroids;
        for (unsigned i = first; i < last; ++i) centroids.add(items[i].center, items[i].center);
        const Box extent = centroids.toBox();
        const unsigned axis = extent.maxDim();
        const float width = extent.getExtent(axis) * 0.125f;
        unsigned middle = (first + last) >> 1;
        // Coordinates whose difference is no float would be cut off one by one.
        if (!(width < minBucketWidth) && !std::isinf(width))
            middle = part(first, last, {axis, visual::component(extent.min, axis), width});
        BVHNode* left = makeNode(first, middle);
        BVHNode* right = makeNode(middle, last);
        return new (arena.allocate(sizeof(BVHInnerNode), nodeAlignment))
            BVHInnerNode(left, right, axis);
    }

private:
    BVHNode* makeLeaf(unsigned first, unsigned last) {
        auto* leaf = new (arena.allocate(sizeof(BVHLeaf), nodeAlignment)) BVHLeaf(last - first);
        Bounds bounds;
        for (unsigned i = first; i < last; ++i) {
            leaf->primitives[i - first] = primitives[order[i]];
            bounds.add(items[i].low, items[i].high);
        }
        leaf->box = bounds.toBox();
        return leaf;
    }

    /// Sorts the range into the two sides of the cheapest plane; answers where the second begins.
    /// Neither side is empty.
    unsigned part(unsigned first, unsigned last, const Split& split) {
        Buckets buckets;
        for (unsigned i = first; i < last; ++i) {
            Share& bucket = buckets[split.bucketOf(items[i].center[split.axis])];
            ++bucket.count;
            bucket.bounds.add(items[i].low, items[i].high);
        }
        return partAt(first, last, split.axis, split.planeAfter(CheapestPlane(buckets)));
    }

    /// Both scans stop before the other end, and do not look at what stands there.
    unsigned partAt(unsigned first, unsigned last, unsigned axis, float plane) {
        unsigned i = first, j = last - 1;
        for (;;) {
            while (i < last - 1 && items[i].center[axis] < plane) ++i;
            while (j > first && items[j].center[axis] >= plane) --j;
            if (i >= j) break;
            std::swap(items[i], items[j]);
            std::swap(order[i], order[j]);
            ++i;
            --j;
        }
        if (i == first) return first + 1;
        return i == last ? last - 1 : i;
    }

    const std::vector<BVHPrimitive*>& primitives;
    std::span<unsigned int> order;
    std::vector<Item> items;  ///< beside `order`
    Arena& arena;
};

template <class Node>
Node* Placed(const Node& node, Arena& arena) {
    return new (arena.allocate(sizeof(Node), nodeAlignment)) Node(node);
}

/// In the order of makeNode, so that it takes the same room.
BVHNode* Copied(const BVHNode& node, Arena& arena) {
    if (node.type == BVHNode::Type::Leaf) return Placed(static_cast<const BVHLeaf&>(node), arena);
    BVHInnerNode inner = static_cast<const BVHInnerNode&>(node);
    inner.left = Copied(*inner.left, arena);
    inner.right = Copied(*inner.right, arena);
    return Placed(inner, arena);
}

/// The tree in as much memory as it needs, where that is less than a block. A station has a
/// hierarchy for each face, edge and target; most take a few hundred bytes, and the rest of a
/// block apiece would be most of the memory of the station.
BVHTree Fitted(BVHTree tree) {
    const Arena::Block& block = *tree.arena->firstBlock();
    if (!tree.root || block.next) return tree;
    BVHTree fitted;
    fitted.arena->limitFirstBlock(block.used);
    fitted.root = Copied(*tree.root, *fitted.arena);
    return fitted;
}

}  // namespace

void BVHBuilder::BucketInfo::add(BVHPrimitive* primitive) {
    ++count;
    box.addBox(primitive->box);
}

void BVHBuilder::BucketInfo::dump(std::ostream& out) const {
    out << "Bucket count: " << count << '\n';
    box.dump(out);
}

BVHBuilder::BVHBuilder(PrimitiveContainer* primitiveContainer) : container(primitiveContainer) {}

BVHTree BVHBuilder::build() {
    BVHTree tree;
    const std::vector<BVHPrimitive*>& primitives = container->primitives;
    order.clear();
    order.reserve(primitives.size());
    for (unsigned int i = 0; i < primitives.size(); ++i)
        if (primitives[i] && primitives[i]->enabled) order.push_back(i);
    if (!order.empty()) tree.root = buildNodes(0, static_cast<unsigned>(order.size()), tree.arena);
    return Fitted(std::move(tree));
}

BVHNode* BVHBuilder::buildNodes(unsigned first, unsigned last, Arena* arena) {
    if (first == last) throw std::runtime_error("prim num = 0");
    if (first > last || last > order.size())
        throw std::out_of_range("the range of primitives does not lie in the order");
    const auto range = std::span(order).subspan(first, last - first);
    for (const unsigned int index : range) (void)container->primitives.at(index);
    return Build(container->primitives, range, *arena).makeNode(0, last - first);
}

}  // namespace vrn::selection
