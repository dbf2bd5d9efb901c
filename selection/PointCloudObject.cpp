#include "selection/PointCloudObject.h"

#include "selection/BVHNode.h"
#include "selection/Ray.h"
#include "selection/SensitivePoints.h"
#include "visual/geometry/PointCloudVisual.h"
#include "visual/geometry/PointPicture.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <stdexcept>

namespace vrn::selection {

namespace {

using Pos = rob::PosTemplate<float>;
using Points = std::vector<Pos>;

float& Component(Pos& p, unsigned axis) { return axis == 0 ? p.x : axis == 1 ? p.y : p.z; }

/// What is drawn of the cloud, and what is not: without the latter, points that are hidden when the
/// object is built would all lie to one side.
visual::Box BoundsOf(const visual::PointCloudVisual& cloud) {
    visual::Box bounds = cloud.getBoundingBox();
    for (const Pos& p : cloud.getPoints())
        if (visual::IsDrawable(p)) bounds.addPoint(p);
    bounds.updateCenter();
    return bounds;
}

bool AllCoincide(const Points& points, std::span<const unsigned int> indices) {
    const Pos& first = points[indices.front()];
    return std::ranges::all_of(indices, [&](unsigned int i) { return points[i] == first; });
}

/// Moves the indices of the points below `middle` to the front, both sides in their order; answers
/// how many they are.
std::size_t Part(const Points& points, std::span<unsigned int> indices, unsigned axis, float middle,
                 std::vector<unsigned int>& spare) {
    spare.clear();
    std::size_t below = 0;
    for (const unsigned int i : indices) {
        if (visual::component(points[i], axis) < middle)
            indices[below++] = i;
        else
            spare.push_back(i);
    }
    std::ranges::copy(spare, indices.begin() + static_cast<std::ptrdiff_t>(below));
    return below;
}

}  // namespace

PointCloudObject::PointCloudObject(visual::PointCloudVisual* cloudVisual)
    : SelectableObject(cloudVisual, ObjectKind::PointCloud), cloud(cloudVisual) {}

void PointCloudObject::buildBVH() {
    clearPrimitives();
    std::vector<unsigned int> indices(cloud->getPoints().size());
    std::iota(indices.begin(), indices.end(), 0u);
    buildPrimitives(cloud->getPoints(), std::move(indices), BoundsOf(*cloud));
    buildTree();
    box = tree.root ? tree.root->box : visual::Box();
}

void PointCloudObject::buildPrimitives(const Points& points, std::vector<unsigned int> indices,
                                       const visual::Box& bounds) {
    if (std::ranges::any_of(indices, [&](unsigned int i) { return i >= points.size(); }))
        throw std::out_of_range("an index of the cloud is past its points");
    std::vector<unsigned int> spare;
    spare.reserve(indices.size());
    bisect(points, indices, bounds, spare);
}

void PointCloudObject::bisect(const Points& points, std::span<unsigned int> indices,
                              const visual::Box& bounds, std::vector<unsigned int>& spare) {
    if (indices.size() <= chunkSize) return addChunk(points, indices);
    const unsigned axis = bounds.maxDim();
    const float low = visual::component(bounds.min, axis);
    const float high = visual::component(bounds.max, axis);
    const float middle = (low + high) * 0.5f;
    const std::size_t below = Part(points, indices, axis, middle, spare);
    const bool parted = below != 0 && below != indices.size();
    // A box of single floats stops shrinking at last, and points at one place never part: halving
    // on would only take long, or for ever.
    const bool shrinks = middle > low && middle < high;
    if (!parted && (!shrinks || AllCoincide(points, indices))) return addRuns(points, indices);
    visual::Box left = bounds, right = bounds;
    Component(left.max, axis) = middle;
    Component(right.min, axis) = middle;
    if (below != 0) bisect(points, indices.first(below), left, spare);
    if (below != indices.size()) bisect(points, indices.subspan(below), right, spare);
}

void PointCloudObject::addRuns(const Points& points, std::span<const unsigned int> indices) {
    for (std::size_t i = 0; i < indices.size(); i += chunkSize)
        addChunk(points, indices.subspan(i, std::min(chunkSize, indices.size() - i)));
}

void PointCloudObject::addChunk(const Points& points, std::span<const unsigned int> indices) {
    if (indices.empty()) return;
    auto chunk = std::make_unique<SensitivePoints>(
        cloud, std::vector<unsigned int>(indices.begin(), indices.end()));
    for (const unsigned int i : indices) chunk->box.addPoint(points[i]);
    for (int i = 0; i < chunkMargin; ++i) chunk->box.expand();
    chunk->box.updateCenter();
    primitives.push_back(chunk.get());
    (void)chunk.release();
}

void PointCloudObject::updateWorldBox() {
    updateLazily([this] { buildBVH(); });
}

Result PointCloudObject::intersect(const visual::Ray& ray) {
    Result result = bvhIntersect(ray.transformed(inverseWorldPose));
    if (result.hit) result.position = toWorld(result.position);
    return result;
}

}  // namespace vrn::selection
