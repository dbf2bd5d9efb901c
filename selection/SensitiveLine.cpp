#include "selection/SensitiveLine.h"

#include "selection/Ray.h"
#include "selection/Result.h"
#include "view/Camera.h"

#include <algorithm>
#include <cmath>

namespace vrn::selection {

namespace {

using Vec = rob::Vec3Template<float>;
using Pos = rob::PosTemplate<float>;

constexpr float nothing = 1e-6f;
/// How far away the box of a line still holds its pick tolerance, in model units.
constexpr float boxDistance = 10000.0f;

/// Two unit vectors across `along`; for a segment without length two fixed ones.
struct Across {
    Vec u{0, 0, 1}, w{0, -1, 0};

    explicit Across(const Vec& along) {
        const float length = along.length();
        if (!(length > nothing)) return;
        const Vec direction{along.x / length, along.y / length, along.z / length};
        u = direction.cross(std::abs(direction.x) < 0.9f ? Vec{1, 0, 0} : Vec{0, 1, 0});
        const float across = u.length();
        u = across > nothing ? Vec{u.x / across, u.y / across, u.z / across} : Vec{0, 1, 0};
        w = direction.cross(u);
    }
};

/// How far along the segment (0 to 1) and along the ray (from 0) the two come closest.
struct Approach {
    float s, t;
};

/// After Ericson, "Real-Time Collision Detection", 5.1.9, with the ray open at its far end.
Approach ClosestApproach(const Vec& segment, const Vec& u, const Vec& w) {
    constexpr float noSegment = 1e-12f;
    const float a = u.dot(u), b = segment.dot(u), c = w.dot(u);
    const float d = w.dot(segment), e = segment.dot(segment);
    const float denominator = e * a - b * b;
    const auto onSegment = [&] { return e < noSegment ? 0.0f : std::clamp(d / e, 0.0f, 1.0f); };
    if (denominator < nothing) {
        const float s = onSegment();
        // The sign of `c` is not that of the general case; what a ray along a line answers depends
        // on it.
        return {s, a < nothing ? 0.0f : std::max(0.0f, (s * b + c) / a)};
    }
    const float t = (d * b - c * e) / denominator;
    if (t < 0.0f) return {onSegment(), 0.0f};
    const float s = (d * a - c * b) / denominator;
    if (s < 0.0f) return {0.0f, std::max(0.0f, -c / a)};
    if (s > 1.0f) return {1.0f, std::max(0.0f, (b - c) / a)};
    return {s, t};
}

}  // namespace

SensitiveLine::SensitiveLine(const Pos& from, const Pos& to, double /*size*/)
    : start(from), end(to) {
    const Across across(end - start);
    const float margin = computeThreshold(boxDistance);
    for (const Pos& tip : {start, end})
        for (const float a : {-margin, margin})
            for (const float b : {-margin, margin}) box.addPoint(tip + across.u * a + across.w * b);
    box.updateCenter();
}

float SensitiveLine::computeThreshold(float distance) {
    constexpr float pixels = 5.0f, withoutView = 5.0f;
    const visual::Camera* camera = visual::Camera::Get();
    if (!camera || !camera->camera) return withoutView;
    const int height = camera->viewportHeight();
    if (height < 1) return withoutView;
    return (2.0f * distance) * std::tan(camera->getVFOV() / 2.0f) / static_cast<float>(height) *
           pixels;
}

Result SensitiveLine::intersect(const visual::Ray& ray) {
    const Vec segment = end - start;
    const Vec direction = ray.direction.asVec3();
    const Approach approach = ClosestApproach(segment, direction, ray.origin - start);
    const Pos onSegment = start + segment * approach.s;
    const Pos onRay = ray.origin + direction * approach.t;
    const float threshold = computeThreshold((onSegment - ray.origin).length());
    const Vec gap = onSegment - onRay;
    Result result;
    if (!(gap.dot(gap) < threshold * threshold)) return result;
    result.hit = true;
    result.position = onSegment;
    result.distance = approach.t;
    const float toStart = (onSegment - start).length(), toEnd = (onSegment - end).length();
    const float sum = toStart + toEnd;
    result.localPosition = start;
    if (sum > nothing) {
        const Vec p = start.asVec3() * (toEnd / sum) + end.asVec3() * (toStart / sum);
        result.localPosition = {p.x, p.y, p.z};
    }
    return result;
}

}  // namespace vrn::selection
