#include "selection/BVHTree.h"

#include "selection/Arena.h"
#include "selection/BVHWalk.h"

#include <utility>

namespace vrn::selection {

namespace {

template <class Query>
void Collect(const BVHTree& tree, const Query& query, std::vector<BVHPrimitive*>& found) {
    VisitCandidates(tree, query, [&found](BVHPrimitive* primitive) {
        found.push_back(primitive);
        return true;
    });
}

}  // namespace

BVHTree::BVHTree() : arena(new Arena) {}

BVHTree::~BVHTree() { delete arena; }

BVHTree::BVHTree(BVHTree&& other) noexcept
    : root(std::exchange(other.root, nullptr)), arena(std::exchange(other.arena, nullptr)) {}

BVHTree& BVHTree::operator=(BVHTree&& other) noexcept {
    std::swap(root, other.root);
    std::swap(arena, other.arena);
    return *this;
}

void BVHTree::intersect(const visual::Ray& ray, std::vector<BVHPrimitive*>& found) const {
    Collect(*this, ray, found);
}

void BVHTree::intersect(const rob::TriangleTemplate<float>& triangle,
                        std::vector<BVHPrimitive*>& found) const {
    Collect(*this, triangle, found);
}

void BVHTree::intersect(const rob::LineTemplate<float>& line,
                        std::vector<BVHPrimitive*>& found) const {
    Collect(*this, line, found);
}

void BVHTree::intersect(const visual::Box& region, std::vector<BVHPrimitive*>& found) const {
    Collect(*this, region, found);
}

void BVHTree::intersect(const PlaneBoundedVolume& volume, std::vector<BVHPrimitive*>& found) const {
    Collect(*this, volume, found);
}

}  // namespace vrn::selection
