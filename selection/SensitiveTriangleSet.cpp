#include "selection/SensitiveTriangleSet.h"

#include "selection/BVHWalk.h"
#include "selection/Math.h"
#include "selection/PoseInverse.h"
#include "selection/SensitiveTriangle.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vrn::selection {

namespace {

using Vec = rob::Vec3Template<float>;
using Pos = rob::PosTemplate<float>;
using Triangle = rob::TriangleTemplate<float>;

/// Where a ray meets a triangle: the parameter and the weights of the vertices.
struct TriangleHit {
    float t, u, v, w;
};

/// The part of the watertight test that depends on the ray alone: its main axis becomes z, and the
/// space is sheared so that the ray runs along it.
class ShearedRay {
public:
    explicit ShearedRay(const visual::Ray& ray) : origin(ray.origin) {
        const Vec d = ray.direction.asVec3();
        const float x = std::abs(d.x), y = std::abs(d.y), z = std::abs(d.z);
        kz = x > y && x > z ? 0 : y > z ? 1 : 2;
        kx = (kz + 1) % 3;
        ky = (kz + 2) % 3;
        shearX = -visual::component(d, kx) / visual::component(d, kz);
        shearY = -visual::component(d, ky) / visual::component(d, kz);
        scaleZ = 1.0f / visual::component(d, kz);
    }

    /// False for a miss, and for a ray exactly through an edge or a vertex.
    bool meets(const Triangle& triangle, TriangleHit& hit) const {
        const Vertex a = sheared(triangle.p0), b = sheared(triangle.p1), c = sheared(triangle.p2);
        hit.u = c.x * b.y - c.y * b.x;
        hit.v = a.x * c.y - a.y * c.x;
        hit.w = b.x * a.y - b.y * a.x;
        const bool isInside =
            (hit.u > 0 && hit.v > 0 && hit.w > 0) || (hit.u < 0 && hit.v < 0 && hit.w < 0);
        if (!isInside) return false;
        const float total = hit.u + hit.v + hit.w;
        hit.u /= total;
        hit.v /= total;
        hit.w /= total;
        hit.t = hit.u * a.z + hit.v * b.z + hit.w * c.z;
        return true;
    }

private:
    struct Vertex {
        float x, y, z;
    };
    [[nodiscard]] Vertex sheared(const Pos& p) const {
        const Vec v = p - origin;
        const float z = visual::component(v, kz);
        return {visual::component(v, kx) + shearX * z, visual::component(v, ky) + shearY * z,
                scaleZ * z};
    }

    Pos origin;
    unsigned kx, ky, kz;
    float shearX, shearY, scaleZ;
};

Pos Weighted(const Triangle& triangle, const TriangleHit& hit) {
    const Vec p =
        triangle.p0.asVec3() * hit.u + triangle.p1.asVec3() * hit.v + triangle.p2.asVec3() * hit.w;
    return {p.x, p.y, p.z};
}

/// Coordinates up to here, in model units, leave the margin of a box whole.
constexpr float maxPrunedReach = 1e6f;

/// The largest number that a query adds or takes away.
float ReachOf(const visual::Ray& ray, const visual::Box& bounds) {
    const Pos& o = ray.origin;
    return std::max({std::abs(o.x), std::abs(o.y), std::abs(o.z), std::abs(bounds.min.x),
                     std::abs(bounds.min.y), std::abs(bounds.min.z), std::abs(bounds.max.x),
                     std::abs(bounds.max.y), std::abs(bounds.max.z)});
}

SensitiveTriangle* AsTriangle(BVHPrimitive* primitive) {
    return static_cast<SensitiveTriangle*>(primitive);
}

}  // namespace

void SensitiveTriangleSet::setLocation(const rob::PoseTemplate<float>& pose) {
    location = pose;
    inverseLocation = InverseOf(pose);
}

Result SensitiveTriangleSet::intersectTriangles(const visual::Ray& ray) const {
    Result best;
    if (!tree.root) return best;
    const ShearedRay sheared(ray);
    // The box of a triangle is a unit wider than the triangle: one that begins behind the best hit
    // holds no nearer one, and far less so with a slack that is above what rounding does. Where a
    // float tells no unit any more nothing is left out.
    const float reach = ReachOf(ray, tree.root->box);
    constexpr float slack = 1e-5f;
    float limit = std::numeric_limits<float>::infinity();
    VisitCandidates(
        tree, ray, [&] { return limit; },
        [&](BVHPrimitive* candidate) {
            const Triangle triangle = getTriangleVertices(AsTriangle(candidate));
            TriangleHit hit;
            if (sheared.meets(triangle, hit) && 0 < hit.t && hit.t < best.distance) {
                best.hit = true;
                best.distance = hit.t;
                best.localPosition = Weighted(triangle, hit);
                if (reach < maxPrunedReach) limit = hit.t + slack * (hit.t + reach);
            }
            return true;
        });
    if (best.hit && hasLocation) best.localPosition = TransformPoint(location, best.localPosition);
    best.position = best.localPosition;
    return best;
}

Result SensitiveTriangleSet::intersectTriangles(const Triangle& triangle) const {
    Result touched;
    VisitCandidates(tree, triangle, [&](BVHPrimitive* candidate) {
        touched.hit = Math::Intersect(triangle, getTriangleVertices(AsTriangle(candidate)));
        return !touched.hit;
    });
    return touched;
}

Result SensitiveTriangleSet::intersectTriangles(const rob::LineTemplate<float>& line) const {
    Result best;
    VisitCandidates(tree, line, [&](BVHPrimitive* candidate) {
        Result result = Math::Intersect(line, getTriangleVertices(AsTriangle(candidate)));
        if (result.hit && result.distance < best.distance) best = std::move(result);
        return true;
    });
    if (best.hit && hasLocation)
        best.position = best.localPosition = TransformPoint(location, best.localPosition);
    return best;
}

void SensitiveTriangleSet::intersectTriangles(
    const visual::Box& region, const std::function<void(unsigned int)>& visit) const {
    VisitCandidates(tree, region, [&](BVHPrimitive* candidate) {
        const SensitiveTriangle* triangle = AsTriangle(candidate);
        if (triangle->kind == SensitiveTriangle::Kind::Indexed)
            visit(static_cast<const SensitiveIndexedTriangle*>(triangle)->index);
        return true;
    });
}

}  // namespace vrn::selection
