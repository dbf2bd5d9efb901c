#include "selection/Box.h"

#include "selection/Ray.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ostream>
#include <utility>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

// A direction component below this counts as parallel to the axis. Results near the edge of a box
// depend on the number.
constexpr float parallelLimit = 0.001f;

/// The slab test shared by rays and lines. The comparisons are written so that NaN ends in a miss.
bool MeetsSlabs(const Box& box, const Pos& origin, const rob::DirTemplate<float>& direction,
                float farLimit) {
    if (std::isnan(farLimit)) return false;
    float nearLimit = 0.0f;
    for (unsigned axis = 0; axis < 3; ++axis) {
        const float o = component(origin, axis), d = component(direction, axis);
        const float a = component(box.min, axis), b = component(box.max, axis);
        if (std::abs(d) < parallelLimit) {
            if (!((a <= o && o <= b) || (b <= o && o <= a))) return false;
            continue;
        }
        float first = (a - o) / d, second = (b - o) / d;
        if (!(d > 0.0f)) std::swap(first, second);
        nearLimit = first <= nearLimit ? nearLimit : first;
        farLimit = second >= farLimit ? farLimit : second;
        if (!(nearLimit <= farLimit)) return false;
    }
    return farLimit >= nearLimit;
}

Vec HalfExtents(const Box& box) {
    return {box.getExtent(0) * 0.5f, box.getExtent(1) * 0.5f, box.getExtent(2) * 0.5f};
}

/// True if `axis` shows a gap between a box of extents `extents` about the origin and the triangle.
bool EdgeAxisSeparates(const Vec& axis, const std::array<Vec, 3>& vertices, const Vec& extents) {
    const float p0 = vertices[0].dot(axis), p1 = vertices[1].dot(axis), p2 = vertices[2].dot(axis);
    const float r = 0.5f * (std::abs(axis.x) * extents.x + std::abs(axis.y) * extents.y +
                            std::abs(axis.z) * extents.z);
    return std::max(-std::max({p0, p1, p2}), std::min({p0, p1, p2})) > r;
}

bool BoxAxisSeparates(unsigned axis, const std::array<Vec, 3>& vertices, float half) {
    const float c0 = component(vertices[0], axis);
    const float c1 = component(vertices[1], axis);
    const float c2 = component(vertices[2], axis);
    return std::min({c0, c1, c2}) > half || std::max({c0, c1, c2}) < -half;
}

}  // namespace

void Box::addPoints(std::span<const Pos> points) {
    for (const Pos& point : points) addPoint(point);
}

unsigned Box::maxDim() const {
    const float dx = getExtent(0), dy = getExtent(1), dz = getExtent(2);
    if (dx > dy) return dx > dz ? 0 : 2;
    return dy > dz ? 1 : 2;
}

float Box::getExtent(unsigned axis) const { return component(max, axis) - component(min, axis); }

float Box::getArea() const {
    const float dx = getExtent(0), dy = getExtent(1), dz = getExtent(2);
    return 2.0f * (dx * dy + dx * dz + dy * dz);
}

float Box::getSurfaceArea() const {
    const Vec h = HalfExtents(*this);
    return 8.0f * (h.x * h.z + h.y * h.x + h.y * h.z);
}

bool Box::isPointInside(float x, float y, float z) const {
    return x >= min.x && x <= max.x && y >= min.y && y <= max.y && z >= min.z && z <= max.z;
}

Pos Box::getCorner(unsigned i) const {
    if (i > 7) return {};
    const unsigned side = i % 4;
    return {side == 1 || side == 2 ? max.x : min.x, side >= 2 ? max.y : min.y,
            i >= 4 ? max.z : min.z};
}

Box Box::transformed(const rob::PoseTemplate<float>& pose) const {
    Box result;
    // The corners of a box that is empty on an axis would span everything there is.
    if (!isValid()) return result;
    for (unsigned i = 0; i < 8; ++i) result.addPoint(TransformPoint(pose, getCorner(i)));
    result.updateCenter();
    return result;
}

void Box::transform(const rob::PoseTemplate<float>& pose) { *this = transformed(pose); }

bool Box::intersect(const Ray& ray) const {
    return MeetsSlabs(*this, ray.origin, ray.direction, ray.maxDistance);
}

bool Box::intersect(const rob::LineTemplate<float>& line) const {
    return MeetsSlabs(*this, line.start, line.getDirection(), line.getLength());
}

bool Box::intersect(const Box& other) const {
    return min.x <= other.max.x && max.x >= other.min.x && min.y <= other.max.y &&
           max.y >= other.min.y && min.z <= other.max.z && max.z >= other.min.z;
}

bool Box::intersect(const Vec& normal, const Pos& point) const {
    const Vec h = HalfExtents(*this);
    const Vec low{-h.x - point.x, -h.y - point.y, -h.z - point.z};
    const Vec high{h.x - point.x, h.y - point.y, h.z - point.z};
    const bool x = normal.x > 0.0f, y = normal.y > 0.0f, z = normal.z > 0.0f;
    const Vec nearVertex{x ? low.x : high.x, y ? low.y : high.y, z ? low.z : high.z};
    const Vec farVertex{x ? high.x : low.x, y ? high.y : low.y, z ? high.z : low.z};
    if (normal.dot(nearVertex) > 0.0f) return false;
    return normal.dot(farVertex) >= 0.0f;
}

bool Box::intersect(const rob::TriangleTemplate<float>& triangle) const {
    const std::array vertices{triangle.p0 - center, triangle.p1 - center, triangle.p2 - center};
    const std::array edges{vertices[1] - vertices[0], vertices[2] - vertices[1],
                           vertices[0] - vertices[2]};
    const Vec extents{getExtent(0), getExtent(1), getExtent(2)};
    for (const Vec& unit : {Vec{1, 0, 0}, Vec{0, 1, 0}, Vec{0, 0, 1}}) {
        for (const Vec& edge : edges) {
            if (EdgeAxisSeparates(unit.cross(edge), vertices, extents)) return false;
        }
    }
    // A NaN vertex goes through the tests above and ends here: its normal compares false.
    const Pos onPlane{vertices[0].x, vertices[0].y, vertices[0].z};
    if (!intersect(edges[0].cross(edges[1]), onPlane)) return false;
    for (unsigned axis = 0; axis < 3; ++axis) {
        if (BoxAxisSeparates(axis, vertices, component(extents, axis) * 0.5f)) return false;
    }
    return true;
}

void Box::dump(std::ostream& out) const {
    out << "box:\n" << min.x << ", " << min.y << ", " << min.z << '\n';
    out << max.x << ", " << max.y << ", " << max.z << std::endl;
}

std::ostream& operator<<(std::ostream& out, const Box& box) {
    box.dump(out);
    return out;
}

}  // namespace vrn::visual
