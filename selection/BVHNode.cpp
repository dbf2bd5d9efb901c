#include "selection/BVHNode.h"

#include "selection/Ray.h"

namespace vrn::selection {

bool BVHNode::intersect(const visual::Ray& ray) const { return box.intersect(ray); }

bool BVHNode::intersect(const rob::TriangleTemplate<float>& triangle) const {
    return box.intersect(triangle);
}

bool BVHNode::intersect(const rob::LineTemplate<float>& line) const { return box.intersect(line); }

bool BVHNode::intersect(const visual::Box& other) const { return box.intersect(other); }

void BVHInnerNode::collectPrimitives(std::vector<BVHPrimitive*>& found) {
    left->collectPrimitives(found);
    right->collectPrimitives(found);
}

void BVHLeaf::collectPrimitives(std::vector<BVHPrimitive*>& found) {
    found.insert(found.end(), primitives.begin(), primitives.begin() + count);
}

}  // namespace vrn::selection
