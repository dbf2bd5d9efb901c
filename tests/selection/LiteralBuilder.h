#pragma once

#include "selection/BVHNode.h"
#include "selection/BVHPrimitive.h"
#include "selection/PrimitiveContainer.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <memory>
#include <vector>

namespace vrn::selection {

/// A node of the tree that the rules ask for, made step by step, without a thought for speed.
struct LiteralNode {
    visual::Box box;
    unsigned axis = 0;
    std::unique_ptr<LiteralNode> left, right;  ///< none in a leaf
    std::vector<BVHPrimitive*> primitives;     ///< of a leaf
};

class LiteralBuilder {
public:
    explicit LiteralBuilder(const PrimitiveContainer& container) {
        for (BVHPrimitive* primitive : container.primitives)
            if (primitive->enabled) order.push_back(primitive);
    }
    [[nodiscard]] std::unique_ptr<LiteralNode> build() {
        return order.empty() ? nullptr : make(0, static_cast<unsigned>(order.size()));
    }

private:
    float centerOf(unsigned i, unsigned axis) {
        return visual::component(order[i]->box.getCenter(), axis);
    }

    std::unique_ptr<LiteralNode> make(unsigned first, unsigned last) {
        auto node = std::make_unique<LiteralNode>();
        if (last - first < 5) {
            for (unsigned i = first; i < last; ++i) {
                node->primitives.push_back(order[i]);
                node->box.addBox(order[i]->box);
            }
            return node;
        }
        visual::Box centroids;
        for (unsigned i = first; i < last; ++i) centroids.addPoint(order[i]->box.getCenter());
        centroids.updateCenter();
        node->axis = centroids.maxDim();
        const float width = centroids.getExtent(node->axis) * 0.125f;
        const unsigned middle =
            width < 5.0f
                ? (first + last) >> 1
                : cut(first, last, node->axis, visual::component(centroids.min, node->axis), width);
        node->left = make(first, middle);
        node->right = make(middle, last);
        node->box.addBox(node->left->box);
        node->box.addBox(node->right->box);
        return node;
    }

    unsigned cut(unsigned first, unsigned last, unsigned axis, float origin, float width) {
        std::vector<std::vector<BVHPrimitive*>> buckets(8);
        for (unsigned i = first; i < last; ++i) {
            const float position = (centerOf(i, axis) - origin) / width;
            const int index = std::isnan(position) ? 0 : static_cast<int>(std::trunc(position));
            buckets[std::clamp(index, 0, 7)].push_back(order[i]);
        }
        unsigned best = 0;
        float lowest = FLT_MAX;
        for (unsigned plane = 0; plane < 7; ++plane) {
            visual::Box left, right;
            unsigned leftCount = 0, rightCount = 0;
            for (unsigned b = 0; b < 8; ++b)
                for (BVHPrimitive* primitive : buckets[b]) {
                    (b <= plane ? left : right).addBox(primitive->box);
                    ++(b <= plane ? leftCount : rightCount);
                }
            const float cost = left.isValid() && right.isValid()
                                   ? static_cast<float>(leftCount) * left.getArea() +
                                         static_cast<float>(rightCount) * right.getArea()
                                   : FLT_MAX;
            if (cost < lowest) {
                lowest = cost;
                best = plane;
            }
        }
        const float split = static_cast<float>(best + 1) * width + origin;
        // Rounded onto the lowest centroid, the plane parts nothing.
        if (split <= origin) return (first + last) >> 1;
        return partition(first, last, axis, split);
    }

    unsigned partition(unsigned first, unsigned last, unsigned axis, float split) {
        unsigned i = first, j = last - 1;
        while (true) {
            while (i != last - 1 && centerOf(i, axis) < split) ++i;
            while (j != first && centerOf(j, axis) >= split) --j;
            if (i >= j) break;
            std::swap(order[i], order[j]);
            ++i;
            --j;
        }
        if (i == first) return first + 1;
        if (i == last) return last - 1;
        return i;
    }

    std::vector<BVHPrimitive*> order;
};

}  // namespace vrn::selection
