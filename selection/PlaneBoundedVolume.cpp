#include "selection/PlaneBoundedVolume.h"

#include "selection/Box.h"
#include "selection/KeepFlagged.h"
#include "selection/PointCloudObject.h"
#include "selection/Workers.h"
#include "view/Camera.h"
#include "visual/geometry/PointCloudVisual.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <thread>

namespace vrn::selection {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec3 = Ogre::Vector<3, float>;

// Far enough along a ray of the screen to span a plane with the eye.
constexpr float farAway = 100.0f;

/// The ray under a pixel, by two points on it.
struct ScreenRay {
    Vec3 origin, far;
};

ScreenRay RayAt(float x, float y) {
    if (!visual::gCamera) throw std::logic_error("there is no camera to cast a ray from");
    Pos origin;
    rob::Vec3Template<float> direction;
    visual::gCamera->cameraToViewportRay(x, y, origin, direction);
    const Vec3 start(origin.x, origin.y, origin.z);
    return {start, start + farAway * Vec3(direction.x, direction.y, direction.z)};
}

/// Above 0 on the plane's positive side.
float Distance(const Plane& plane, float x, float y, float z) {
    return plane.normal[0] * x + plane.normal[1] * y + plane.normal[2] * z + plane.d;
}

/// What a worker reads: nothing else may touch it until all have ended.
struct PointTest {
    std::span<const Pos> points;
    rob::PoseTemplate<float> pose;
    std::span<const Plane> planes;

    static constexpr std::size_t batchSize = 1024;

    void run(std::size_t first, std::size_t last, std::vector<unsigned int>& found) const {
        for (std::size_t i = first; i < last; i += batchSize)
            runBatch(i, std::min(batchSize, last - i), found);
    }

    /// A plane at a time over all points of the batch, an array a coordinate: the compiler turns
    /// that into vector instructions. Each point meets the same sums as it would alone; that the
    /// planes after the one that rejects it are asked as well changes nothing.
    void runBatch(std::size_t first, std::size_t count, std::vector<unsigned int>& found) const {
        std::array<float, batchSize> x, y, z;
        for (std::size_t i = 0; i < count; ++i) {
            const Pos world = rob::TransformPoint(pose, points[first + i]);
            x[i] = world.x;
            y[i] = world.y;
            z[i] = world.z;
        }
        std::array<std::uint32_t, batchSize> inside;
        std::fill_n(inside.begin(), count, 1u);
        for (const Plane& each : planes) {
            const Plane plane = each;  // a copy, which the arrays cannot overlap
            for (std::size_t i = 0; i < count; ++i)
                inside[i] = Distance(plane, x[i], y[i], z[i]) > 0 ? 0u : inside[i];
        }
        KeepFlagged<batchSize>(
            count, [&](std::size_t i) { return static_cast<unsigned int>(first + i); },
            [&](std::size_t i) { return inside[i]; }, found);
    }
};

}  // namespace

Plane::Plane(const Vec3& p0, const Vec3& p1, const Vec3& p2)
    : normal((p1 - p0).crossProduct(p2 - p0)) {
    const float length = normal.length();
    if (length > 0) normal /= length;
    d = -normal.dotProduct(p0);
}

int Plane::intersect(const visual::Box& box) const {
    const Pos center{(box.min.x + box.max.x) * 0.5f, (box.min.y + box.max.y) * 0.5f,
                     (box.min.z + box.max.z) * 0.5f};
    const float s = Distance(*this, center.x, center.y, center.z);
    const float r = std::abs(normal[0] * ((box.max.x - box.min.x) * 0.5f)) +
                    std::abs(normal[1] * ((box.max.y - box.min.y) * 0.5f)) +
                    std::abs(normal[2] * ((box.max.z - box.min.z) * 0.5f));
    if (s < -r) return Negative;
    return s > r ? Positive : Both;
}

int Plane::intersect(const Pos& point) const {
    const float s = Distance(*this, point.x, point.y, point.z);
    if (s < 0) return Negative;
    return s > 0 ? Positive : Both;
}

PlaneBoundedVolume::PlaneBoundedVolume(float x0, float y0, float x1, float y1) {
    const float left = std::min(x0, x1), right = std::max(x0, x1);
    const float top = std::min(y0, y1), bottom = std::max(y0, y1);
    const ScreenRay a = RayAt(left, top), b = RayAt(right, top);
    const ScreenRay c = RayAt(left, bottom), e = RayAt(right, bottom);
    addPlane(a.origin, b.origin, b.far);
    addPlane(c.origin, a.origin, a.far);
    addPlane(e.origin, c.origin, c.far);
    addPlane(b.origin, e.origin, e.far);
}

PlaneBoundedVolume::PlaneBoundedVolume(std::vector<Pos> polygon) {
    if (polygon.size() < 3) return;
    const Pos &p0 = polygon[0], &p1 = polygon[1], &p2 = polygon[2];
    const float cross = (p1.x - p0.x) * (p2.y - p0.y) - (p2.x - p0.x) * (p1.y - p0.y);
    if (cross > 0) std::ranges::reverse(polygon);
    std::vector<ScreenRay> rays;
    rays.reserve(polygon.size());
    for (const Pos& p : polygon) rays.push_back(RayAt(p.x, p.y));
    for (std::size_t i = 0; i < rays.size(); ++i) {
        const ScreenRay& next = rays[(i + 1) % rays.size()];
        addPlane(rays[i].origin, next.far, next.origin);
    }
}

void PlaneBoundedVolume::addPlane(const Vec3& p0, const Vec3& p1, const Vec3& p2) {
    planes.emplace_back(p0, p1, p2);
}

int PlaneBoundedVolume::intersect(const visual::Box& box) const {
    bool inside = true;
    for (const Plane& plane : planes) {
        const int side = plane.intersect(box);
        if (side == Plane::Positive) return Outside;
        inside = inside && side == Plane::Negative;
    }
    return inside ? Inside : Partly;
}

bool PlaneBoundedVolume::intersect(PointCloudObject* object,
                                   std::vector<unsigned long>& indices) const {
    const auto* cloud =
        object ? dynamic_cast<const visual::PointCloudVisual*>(object->visual) : nullptr;
    if (!cloud) return false;
    const std::vector<Pos>& points = cloud->getPoints();
    const PointTest test{points, cloud->getWorldPose(), planes};

    const std::size_t count = ThreadCount(), chunk = points.size() / count;
    std::vector<std::vector<unsigned int>> found(count);
    std::vector<std::jthread> threads;  // joins also when a later one cannot start
    threads.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t first = i * chunk, last = i + 1 < count ? first + chunk : points.size();
        threads.emplace_back([&test, &own = found[i], first, last] { test.run(first, last, own); });
    }
    for (std::jthread& thread : threads) thread.join();

    std::size_t total = 0;
    for (const auto& part : found) total += part.size();
    indices.reserve(indices.size() + total);
    for (const auto& part : found) indices.insert(indices.end(), part.begin(), part.end());
    return total != 0;
}

}  // namespace vrn::selection
