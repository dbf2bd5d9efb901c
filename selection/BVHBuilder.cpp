#include "selection/BVHBuilder.h"

#include "selection/Arena.h"
#include "selection/BVHNode.h"
#include "selection/BVHPrimitive.h"
#include "selection/PrimitiveContainer.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <limits>
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

/// `a` where it is smaller, else `b`, also for a NaN in either.
Quad Lower(const Quad& a, const Quad& b) {
#ifdef __SSE__
    return __builtin_ia32_minps(a, b);  // the compiler makes four instructions of the other
#else
    return a < b ? a : b;
#endif
}

/// `a` where it is larger, else `b`, also for a NaN in either.
Quad Higher(const Quad& a, const Quad& b) {
#ifdef __SSE__
    return __builtin_ia32_maxps(a, b);
#else
    return a > b ? a : b;
#endif
}

/// Bounds that grow as those of Box do: a NaN is passed over.
struct Bounds {
    Quad low{FLT_MAX, FLT_MAX, FLT_MAX, 0};
    Quad high{-FLT_MAX, -FLT_MAX, -FLT_MAX, 0};

    void add(const Quad& otherLow, const Quad& otherHigh) {
        low = Lower(otherLow, low);
        high = Higher(otherHigh, high);
    }
    void addPoint(const Quad& point) { add(point, point); }
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
        constexpr float last = bucketCount - 1;
        const float position = (center - origin) / width;
        return static_cast<unsigned>(std::min(position > 0.0f ? position : 0.0f, last));
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
        count += other.count;
        bounds.add(other.bounds.low, other.bounds.high);
    }
    /// Infinite for bounds that are none.
    [[nodiscard]] float cost() const {
        return bounds.isValid() ? static_cast<float>(count) * bounds.area()
                                : std::numeric_limits<float>::infinity();
    }
};
using Buckets = std::array<Share, bucketCount>;

/// The bucket after which a cut costs least; of equal ones the first. A cut with an empty side
/// costs most. Behind an empty bucket a cut parts the same as the one before, so it is passed over.
unsigned CheapestPlane(const Buckets& buckets) {
    std::array<float, planeCount> rightCosts;
    Share growing;
    float rightCost = growing.cost();
    for (unsigned i = planeCount; i-- > 0;) {
        if (buckets[i + 1].count > 0) {
            growing.add(buckets[i + 1]);
            rightCost = growing.cost();
        }
        rightCosts[i] = rightCost;
    }
    growing = {};
    unsigned best = 0;
    float lowest = FLT_MAX;
    for (unsigned i = 0; i < planeCount; ++i) {
        if (buckets[i].count == 0) continue;
        growing.add(buckets[i]);
        const float cost = growing.cost() + rightCosts[i];
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
        for (const unsigned int index : order) items.push_back(ItemOf(*primitives.at(index)));
    }

    [[nodiscard]] BVHNode* makeRoot() {
        const auto last = static_cast<unsigned>(order.size());
        return makeNode(0, last, centroidsOf(0, last),
                        arena.allocate(sizeOf(0, last), nodeAlignment));
    }

private:
    /// A range in two, neither of them empty, with the bounds of the centroids of each.
    struct Halves {
        unsigned middle;  ///< where the second begins
        Bounds left, right;
    };

    static std::size_t sizeOf(unsigned first, unsigned last) {
        return last - first <= BVHLeaf::maxCount ? sizeof(BVHLeaf) : sizeof(BVHInnerNode);
    }
    [[nodiscard]] Bounds centroidsOf(unsigned first, unsigned last) const {
        Bounds centroids;
        for (unsigned i = first; i < last; ++i) centroids.addPoint(items[i].center);
        return centroids;
    }

    /// `place`: memory of sizeOf the range.
    BVHNode* makeNode(unsigned first, unsigned last, const Bounds& centroids, void* place) {
        if (last - first <= BVHLeaf::maxCount) return makeLeaf(first, last, place);
        const Box extent = centroids.toBox();
        const unsigned axis = extent.maxDim();
        const float width = extent.getExtent(axis) * 0.125f;
        // Coordinates whose difference is no float would be cut off one by one.
        const bool isWide = !(width < minBucketWidth) && !std::isinf(width);
        const Halves halves =
            isWide ? part(first, last, {axis, visual::component(extent.min, axis), width})
                   : halved(first, last);
        // Side by side, since a query that comes by looks at both.
        const std::size_t leftSize = sizeOf(first, halves.middle);
        auto* both = static_cast<std::byte*>(
            arena.allocate(leftSize + sizeOf(halves.middle, last), nodeAlignment));
        BVHNode* left = makeNode(first, halves.middle, halves.left, both);
        BVHNode* right = makeNode(halves.middle, last, halves.right, both + leftSize);
        return new (place) BVHInnerNode(left, right, axis);
    }

    BVHNode* makeLeaf(unsigned first, unsigned last, void* place) {
        auto* leaf = new (place) BVHLeaf(last - first);
        Bounds bounds;
        for (unsigned i = first; i < last; ++i) {
            leaf->primitives[i - first] = primitives[order[i]];
            bounds.add(items[i].low, items[i].high);
        }
        leaf->box = bounds.toBox();
        return leaf;
    }

    /// In the order as it stands.
    [[nodiscard]] Halves halved(unsigned first, unsigned last) const {
        const unsigned middle = (first + last) >> 1;
        return {middle, centroidsOf(first, middle), centroidsOf(middle, last)};
    }

    /// Sorted into the two sides of the cheapest plane.
    Halves part(unsigned first, unsigned last, const Split& split) {
        Buckets buckets;
        for (unsigned i = first; i < last; ++i) {
            Share& bucket = buckets[split.bucketOf(items[i].center[split.axis])];
            ++bucket.count;
            bucket.bounds.add(items[i].low, items[i].high);
        }
        const float plane = split.planeAfter(CheapestPlane(buckets));
        // So far out that rounding puts the plane on the lowest centroid it parts nothing: they
        // would be cut off one by one, as deep as they are many.
        if (!(plane > split.origin)) return halved(first, last);
        return partAt(first, last, split.axis, plane);
    }

    /// Both scans stop before the other end, and do not look at what stands there.
    Halves partAt(unsigned first, unsigned last, unsigned axis, float plane) {
        Bounds left, right;
        unsigned i = first, j = last - 1;
        for (;;) {
            while (i < last - 1 && items[i].center[axis] < plane) left.addPoint(items[i++].center);
            while (j > first && items[j].center[axis] >= plane) right.addPoint(items[j--].center);
            if (i >= j) break;
            std::swap(items[i], items[j]);
            std::swap(order[i], order[j]);
            left.addPoint(items[i++].center);
            right.addPoint(items[j--].center);
        }
        // Where the scans met is what neither took.
        if (i == j) (i == first ? left : right).addPoint(items[i].center);
        if (i == first) return {first + 1, left, right};
        return {i == last ? last - 1 : i, left, right};
    }

    const std::vector<BVHPrimitive*>& primitives;
    std::span<unsigned int> order;
    std::vector<Item> items;  ///< beside `order`
    Arena& arena;
};

std::size_t SizeOf(const BVHNode& node) {
    return node.type == BVHNode::Type::Leaf ? sizeof(BVHLeaf) : sizeof(BVHInnerNode);
}

/// In the order of makeNode, so that it takes the same room. `place`: memory of SizeOf the node.
BVHNode* Copied(const BVHNode& node, Arena& arena, void* place) {
    if (node.type == BVHNode::Type::Leaf)
        return new (place) BVHLeaf(static_cast<const BVHLeaf&>(node));
    auto* inner = new (place) BVHInnerNode(static_cast<const BVHInnerNode&>(node));
    const std::size_t leftSize = SizeOf(*inner->left);
    auto* both =
        static_cast<std::byte*>(arena.allocate(leftSize + SizeOf(*inner->right), nodeAlignment));
    inner->left = Copied(*inner->left, arena, both);
    inner->right = Copied(*inner->right, arena, both + leftSize);
    return inner;
}

/// The tree in as much memory as it needs, where that is less than a block. A station has a
/// hierarchy for each face, edge and target; most take a few hundred bytes, and the rest of a
/// block apiece would be most of the memory of the station.
BVHTree Fitted(BVHTree tree) {
    const Arena::Block& block = *tree.arena->firstBlock();
    if (!tree.root || block.next) return tree;
    BVHTree fitted;
    fitted.arena->limitFirstBlock(block.used);
    void* place = fitted.arena->allocate(SizeOf(*tree.root), nodeAlignment);
    fitted.root = Copied(*tree.root, *fitted.arena, place);
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
    return Build(container->primitives, range, *arena).makeRoot();
}

}  // namespace vrn::selection
