#include "selection/PrimitiveContainer.h"

#include "selection/BVHWalk.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace vrn::selection {

namespace {

template <class Query>
Result Nearest(const BVHTree& tree, const Query& query) {
    Result best;
    VisitCandidates(tree, query, [&](BVHPrimitive* candidate) {
        Result result = candidate->intersect(query);
        if (result.hit && best.distance > result.distance) best = std::move(result);
        return true;
    });
    return best;
}

}  // namespace

PrimitiveContainer::~PrimitiveContainer() {
    for (BVHPrimitive* primitive : primitives) delete primitive;
}

Result PrimitiveContainer::bvhIntersect(const visual::Ray& ray) const { return Nearest(tree, ray); }

Result PrimitiveContainer::bvhIntersect(const rob::LineTemplate<float>& line) const {
    return Nearest(tree, line);
}

Result PrimitiveContainer::bvhIntersect(const rob::TriangleTemplate<float>& triangle) const {
    Result touched;
    VisitCandidates(tree, triangle, [&](BVHPrimitive* candidate) {
        Result result = candidate->intersect(triangle);
        if (result.hit) touched = std::move(result);
        return !touched.hit;
    });
    return touched;
}

void PrimitiveContainer::forEachIntersection(const visual::Box& region,
                                             std::function<void(unsigned int)> visit) const {
    VisitCandidates(tree, region, [&](BVHPrimitive* candidate) {
        candidate->processIntersectionsWith(region, visit);
        return true;
    });
}

void PrimitiveContainer::removePrimitive(BVHPrimitive* primitive) {
    const auto entry = std::ranges::find(primitives, primitive);
    if (entry == primitives.end()) throw std::out_of_range("the primitive is not in the container");
    primitives.erase(entry);
}

}  // namespace vrn::selection
