#include "selection/LassoSelector.h"

#include "selection/Box.h"
#include "selection/BVHNode.h"
#include "selection/BVHTree.h"
#include "selection/KeepFlagged.h"
#include "selection/PointCloudObject.h"
#include "selection/PolygonIndex.h"
#include "selection/SensitivePoints.h"
#include "selection/Workers.h"
#include "view/Camera.h"
#include "visual/geometry/PointCloudVisual.h"

// The compositor headers use what this one declares without including it.
#include <OgreTexture.h>

#include <OgreCamera.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <future>
#include <span>
#include <stdexcept>

namespace vrn::selection {

namespace {

using Pos = rob::PosTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using Point = LassoSelector::Point;
using AABB = LassoSelector::AABB;

// Segments whose directions have a smaller determinant count as parallel.
constexpr double parallel = 1e-10;

float Cross(const Point& a, const Point& b) { return a.x * b.y - a.y * b.x; }

Point Sub(const Point& a, const Point& b) { return {a.x - b.x, a.y - b.y}; }

bool SegmentsMeet(const Point& a0, const Point& a1, const Point& b0, const Point& b1) {
    const Point a = Sub(a1, a0), b = Sub(b1, b0), across = Sub(b0, a0);
    const float det = Cross(a, b);
    if (std::abs(static_cast<double>(det)) < parallel) return false;
    const float s = Cross(across, b) / det, t = Cross(across, a) / det;
    return s >= 0 && s <= 1 && t >= 0 && t <= 1;
}

std::array<Point, 4> CornersOf(const AABB& box) {
    return {Point{box.minX, box.minY}, Point{box.maxX, box.minY}, Point{box.maxX, box.maxY},
            Point{box.minX, box.maxY}};
}

bool LiesIn(const AABB& box, const Point& p) {
    return p.x >= box.minX && p.x <= box.maxX && p.y >= box.minY && p.y <= box.maxY;
}

/// True if a segment lies off one side of the box, where it cannot meet an edge of it. Exact, so
/// that what touches is kept.
bool Passes(const AABB& box, const Point& a, const Point& b) {
    return std::max(a.x, b.x) < box.minX || std::min(a.x, b.x) > box.maxX ||
           std::max(a.y, b.y) < box.minY || std::min(a.y, b.y) > box.maxY;
}

/// `contains`: whether a point lies in the polygon of `lasso`.
template <class Contains>
int Classify(const LassoSelector& lasso, const AABB& box, const Contains& contains) {
    const auto corners = CornersOf(box);
    const auto inside = std::ranges::count_if(corners, contains);
    if (inside == 4)
        return lasso.polygonIntersectsAABB(box) ? LassoSelector::Partly : LassoSelector::Inside;
    if (inside > 0) return LassoSelector::Partly;
    const bool cornerInBox =
        std::ranges::any_of(lasso.polygon, [&](const Point& p) { return LiesIn(box, p); });
    return cornerInBox || lasso.polygonIntersectsAABB(box) ? LassoSelector::Partly
                                                           : LassoSelector::Outside;
}

/// From the frame that `pose` carries into the world to clip space. Ogre computes both matrices
/// when they are asked for, so workers must not.
Ogre::Matrix4 ToClip(const visual::Camera& camera, const Pose& pose) {
    const Ogre::Affine3 toWorld(
        Ogre::Vector3(pose.position.x, pose.position.y, pose.position.z),
        Ogre::Quaternion(pose.rotation.w, pose.rotation.x, pose.rotation.y, pose.rotation.z));
    const Ogre::Camera& eye = *camera.camera;
    return eye.getProjectionMatrix() * eye.getViewMatrix(true) * toWorld;
}

float Row(const Ogre::Matrix4& m, std::size_t row, const Pos& p) {
    return m[row][0] * p.x + m[row][1] * p.y + m[row][2] * p.z + m[row][3];
}

template <class Contains>
int ClassifyBox(const LassoSelector& lasso, const visual::Box& box, const Ogre::Matrix4& toClip,
                const Contains& contains) {
    if (!box.isValid()) return LassoSelector::Outside;
    AABB bounds{FLT_MAX, FLT_MAX, -FLT_MAX, -FLT_MAX};
    unsigned behind = 0;
    for (unsigned i = 0; i < 8; ++i) {
        const Pos corner = box.getCorner(i);
        const float w = Row(toClip, 3, corner);
        if (!(w > 0)) {
            ++behind;
            continue;
        }
        const float x = Row(toClip, 0, corner) / w, y = Row(toClip, 1, corner) / w;
        bounds = {std::min(bounds.minX, x), std::min(bounds.minY, y), std::max(bounds.maxX, x),
                  std::max(bounds.maxY, y)};
    }
    // Dividing a point behind the eye by its w would mirror it to the front.
    if (behind != 0) return behind == 8 ? LassoSelector::Outside : LassoSelector::Partly;
    return Classify(lasso, bounds, contains);
}

/// The points of a chunk, turned into normalised device coordinates a batch at a time: an array a
/// coordinate, which is what vector instructions want.
class Batch {
public:
    static constexpr std::size_t size = PolygonIndex::batchSize;

    /// Takes up to `size` of the numbers; those that the cloud does not have are outside.
    void load(const std::vector<Pos>& points, std::span<const unsigned int> numbers) {
        count = std::min(numbers.size(), size);
        for (std::size_t i = 0; i < count; ++i) {
            const unsigned int number = numbers[i];
            const Pos p = number < points.size() ? points[number] : Pos{NAN, NAN, NAN};
            x[i] = p.x;
            y[i] = p.y;
            z[i] = p.z;
        }
    }
    void project(const Ogre::Matrix4& toClip) {
        // By value, so that the compiler need not fear that the arrays overlap it.
        const Ogre::Matrix4 m = toClip;
        for (std::size_t i = 0; i < count; ++i) {
            const Pos p{x[i], y[i], z[i]};
            const float w = Row(m, 3, p);
            const float ndcX = Row(m, 0, p) / w, ndcY = Row(m, 1, p) / w;
            // What is not before the eye is nowhere; no polygon holds a NaN.
            x[i] = w > 0 ? ndcX : NAN;
            y[i] = ndcY;
        }
    }
    void appendInside(const PolygonIndex& index, std::span<const unsigned int> numbers,
                      std::vector<unsigned int>& found) {
        index.contain(std::span(x).first(count), std::span(y).first(count),
                      std::span(inside).first(count));
        KeepFlagged<size>(
            count, [&](std::size_t i) { return numbers[i]; },
            [&](std::size_t i) { return inside[i]; }, found);
    }

private:
    std::size_t count = 0;
    std::array<float, size> x, y, z;
    std::array<std::uint8_t, size> inside;
};

/// Thread: any; only reads.
void AppendInside(const SensitivePoints& chunk, const Ogre::Matrix4& toClip,
                  const PolygonIndex& index, std::vector<unsigned int>& found) {
    const std::vector<Pos>& points = chunk.visual->getPoints();
    Batch batch;
    for (std::size_t i = 0; i < chunk.indices.size(); i += Batch::size) {
        const auto numbers = std::span(chunk.indices).subspan(i);
        batch.load(points, numbers);
        batch.project(toClip);
        batch.appendInside(index, numbers, found);
    }
}

/// Runs the tasks, which are deferred, on all processors: a thread a task would take ten times as
/// long as the tasks themselves.
void RunAll(std::vector<std::future<void>>& tasks) {
    ShareOut(tasks.size(), [&tasks](std::size_t i) { tasks[i].wait(); });
    for (auto& task : tasks) task.get();  // passes on what a task threw
}

}  // namespace

LassoSelector::LassoSelector(visual::Camera* lassoCamera, const std::vector<Pos>& pixels)
    : camera(lassoCamera) {
    if (!camera) throw std::invalid_argument("a lasso needs a camera");
    const auto width = static_cast<float>(camera->viewportWidth());
    const auto height = static_cast<float>(camera->viewportHeight());
    if (!(width > 0 && height > 0)) return;
    polygon.reserve(pixels.size());
    for (const Pos& p : pixels)
        polygon.push_back({2.0f * p.x / width - 1.0f, 1.0f - 2.0f * p.y / height});
}

bool LassoSelector::isPointInPolygon(const Point& point) const {
    if (polygon.size() < 3) return false;
    bool inside = false;
    const Point* a = &polygon.back();
    for (const Point& b : polygon) {
        if (PolygonIndex::flips(*a, b, point)) inside = !inside;
        a = &b;
    }
    return inside;
}

bool LassoSelector::polygonIntersectsAABB(const AABB& box) const {
    if (polygon.empty()) return false;
    const auto corners = CornersOf(box);
    const Point* a = &polygon.back();
    for (const Point& b : polygon) {
        const Point& start = *a;
        a = &b;
        if (Passes(box, start, b)) continue;
        for (std::size_t i = 0; i < 4; ++i)
            if (SegmentsMeet(start, b, corners[i], corners[(i + 1) % 4])) return true;
    }
    return false;
}

int LassoSelector::classifyAABBPolygon(const AABB& box) const {
    return Classify(*this, box, [this](const Point& p) { return isPointInPolygon(p); });
}

int LassoSelector::classifyBoxPolygon(const visual::Box& box, const Pose& pose) const {
    return ClassifyBox(*this, box, ToClip(*camera, pose),
                       [this](const Point& p) { return isPointInPolygon(p); });
}

std::vector<BVHPrimitive*> LassoSelector::selectBVH(const BVHTree& tree, const Pose& pose) const {
    std::vector<BVHPrimitive*> found;
    if (!tree.root) return found;
    const Ogre::Matrix4 toClip = ToClip(*camera, pose);
    const PolygonIndex index(polygon);
    const auto classify = [&](const visual::Box& box) {
        return ClassifyBox(*this, box, toClip, [&](const Point& p) { return index.contains(p); });
    };
    std::vector<BVHNode*> stack{tree.root};
    while (!stack.empty()) {
        BVHNode* const node = stack.back();
        stack.pop_back();
        const int outcome = classify(node->box);
        if (outcome == Outside) continue;
        if (outcome == Inside) {
            node->collectPrimitives(found);
        } else if (node->type == BVHNode::Type::Leaf) {
            const auto& leaf = static_cast<const BVHLeaf&>(*node);
            for (BVHPrimitive* primitive : std::span(leaf.primitives).first(leaf.count))
                if (classify(primitive->box) != Outside) found.push_back(primitive);
        } else {
            const auto& inner = static_cast<const BVHInnerNode&>(*node);
            stack.push_back(inner.left);
            stack.push_back(inner.right);
        }
    }
    return found;
}

void LassoSelector::selectPoints(const SensitivePoints* points,
                                 std::vector<unsigned int>& indices) const {
    if (!points) return;
    AppendInside(*points, ToClip(*camera, points->visual->getWorldPose()), PolygonIndex(polygon),
                 indices);
}

void LassoSelector::selectPointCloud(
    PointCloudObject* object,
    std::unordered_map<unsigned int, std::vector<unsigned long>>& result) const {
    if (!object) return;
    std::vector<const SensitivePoints*> chunks;
    for (BVHPrimitive* primitive : selectBVH(object->tree, object->worldPose))
        if (const auto* chunk = dynamic_cast<const SensitivePoints*>(primitive))
            chunks.push_back(chunk);

    // Before the workers start: both ask Ogre, which computes what it holds when it is asked.
    const Ogre::Matrix4 toClip = ToClip(*camera, object->visual->getWorldPose());
    const PolygonIndex index(polygon);
    std::vector<std::vector<unsigned int>> found(chunks.size());
    std::vector<std::future<void>> tasks;
    tasks.reserve(chunks.size());
    for (std::size_t i = 0; i < chunks.size(); ++i)
        tasks.push_back(std::async(std::launch::deferred,
                                   [&, i] { AppendInside(*chunks[i], toClip, index, found[i]); }));
    RunAll(tasks);

    std::size_t total = 0;
    for (const auto& part : found) total += part.size();
    if (total == 0) return;
    std::vector<unsigned long>& own = result[object->visual->id];
    own.reserve(own.size() + total);
    for (const auto& part : found) own.insert(own.end(), part.begin(), part.end());
}

}  // namespace vrn::selection
