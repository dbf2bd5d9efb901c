#include "selection/Math.h"

#include "selection/SurfaceNormalNotAvailable.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <stdexcept>

namespace vrn::selection {

namespace {

using Pos = Math::Pos;
using Vec = Math::Vec;
using Vec2 = Math::Vec2;
using Triangle = Math::Triangle;
using Distances = std::array<float, 3>;
using Triangle2D = std::array<Vec2, 3>;

enum class Axis { X, Y, Z };

// The single-precision square of Math::tolerance.
constexpr float squaredTolerance = std::bit_cast<float>(std::uint32_t{0x358637BE});

float Cross(const Vec2& a, const Vec2& b) { return a.x * b.y - a.y * b.x; }

Vec2 Sub(const Vec2& a, const Vec2& b) { return {a.x - b.x, a.y - b.y}; }

Vec NormalOf(const Triangle& t) { return (t.p1 - t.p0).cross(t.p2 - t.p0); }

/// The axis to look along; x and y only as strict maxima.
Axis LargestAxis(const Vec& normal) {
    const float x = std::abs(normal.x), y = std::abs(normal.y), z = std::abs(normal.z);
    if (x > y && x > z) return Axis::X;
    return y > x && y > z ? Axis::Y : Axis::Z;
}

Vec2 Drop(const Pos& p, Axis axis) {
    if (axis == Axis::X) return {p.y, p.z};
    return axis == Axis::Y ? Vec2{p.x, p.z} : Vec2{p.x, p.y};
}

Triangle2D Drop(const Triangle& t, Axis axis) {
    return {Drop(t.p0, axis), Drop(t.p1, axis), Drop(t.p2, axis)};
}

bool AllOnOneSide(const Distances& d) {
    return (d[0] > 0 && d[1] > 0 && d[2] > 0) || (d[0] < 0 && d[1] < 0 && d[2] < 0);
}

bool AllZero(const Distances& d) { return d[0] == 0 && d[1] == 0 && d[2] == 0; }

/// The distances of the vertices to the plane of `plane`, in multiples of its normal's length; none
/// if all lie strictly on one side. The tolerance comes after that test: a triangle that stays off
/// the plane misses however near it is.
std::optional<Distances> DistancesTo(const Triangle& plane, const Vec& normal,
                                     const Triangle& vertices) {
    const float offset = normal.dot(plane.p0.asVec3());
    Distances result{normal.dot(vertices.p0.asVec3()) - offset,
                     normal.dot(vertices.p1.asVec3()) - offset,
                     normal.dot(vertices.p2.asVec3()) - offset};
    if (AllOnOneSide(result)) return std::nullopt;
    const float limit = normal.squaredLength() * squaredTolerance;
    for (float& s : result)
        if (s * s < limit) s = 0;
    return result;
}

/// Brings the largest distance to between 0.5 and 1. The interval test multiplies four of them and
/// a coordinate, which no float holds for triangles a metre wide; a power of two changes no digit.
Distances Scaled(const Distances& d) {
    const float largest = std::max({std::abs(d[0]), std::abs(d[1]), std::abs(d[2])});
    if (!std::isfinite(largest)) return d;
    int exponent = 0;
    (void)std::frexp(largest, &exponent);
    return {std::ldexp(d[0], -exponent), std::ldexp(d[1], -exponent), std::ldexp(d[2], -exponent)};
}

Distances Along(const Triangle& t, const Vec& direction) {
    const float x = std::abs(direction.x), y = std::abs(direction.y), z = std::abs(direction.z);
    if (z > std::max(x, y)) return {t.p0.z, t.p1.z, t.p2.z};
    return y > x ? Distances{t.p0.y, t.p1.y, t.p2.y} : Distances{t.p0.x, t.p1.x, t.p2.x};
}

Math::Interval IntervalOf(const Distances& along, const Distances& distances) {
    const Distances d = Scaled(distances);
    return Math::computeTrianIntervals(along[0], along[1], along[2], d[0], d[1], d[2],
                                       d[0] * d[1] > 0, d[0] * d[2] > 0);
}

bool Overlap(const Math::Interval& m, const Math::Interval& n) {
    const float xx = m.x0 * m.x1, yy = n.x0 * n.x1, xxyy = xx * yy;
    const auto end = [xxyy](const std::optional<float>& vertex, float a, float rest) {
        return vertex ? *vertex * xxyy : a * xxyy + rest;
    };
    float m0 = end(m.vertex0, m.a, m.b * m.x1 * yy), m1 = end(m.vertex1, m.a, m.c * m.x0 * yy);
    float n0 = end(n.vertex0, n.a, n.b * xx * n.x1), n1 = end(n.vertex1, n.a, n.c * xx * n.x0);
    Math::sort(m0, m1);
    Math::sort(n0, n1);
    return m1 >= n0 && n1 >= m0;  // never for a NaN
}

/// Newell's normal: the areas of the triangle seen along the three axes, doubled.
Vec NewellNormal(const Pos& a, const Pos& b, const Pos& c) {
    Vec sum;
    const auto add = [&sum](const Pos& i, const Pos& j) {
        sum.x += (i.y - j.y) * (i.z + j.z);
        sum.y += (i.z - j.z) * (i.x + j.x);
        sum.z += (i.x - j.x) * (i.y + j.y);
    };
    add(a, b);
    add(b, c);
    add(c, a);
    return sum;
}

Result HitAt(float distance) {
    Result result;
    result.hit = true;
    result.distance = distance;
    return result;
}

/// Segments on one line: the nearer end of the second on the first.
Result CollinearEdges(const Vec2& p1, const Vec2& p2, const Vec2& p3, const Vec2& p4) {
    const Vec2 along = Sub(p2, p1);
    const float offLine = Cross(along, Sub(p3, p1));
    if (!(offLine > -Math::tolerance && offLine < Math::tolerance)) return {};
    const bool byX = along.y > -Math::tolerance && along.y < Math::tolerance;
    float first = byX ? (p3.x - p1.x) / along.x : (p3.y - p1.y) / along.y;
    float last = byX ? (p4.x - p1.x) / along.x : (p4.y - p1.y) / along.y;
    // A first segment that is a point has no parameters.
    if (std::isnan(first) || std::isnan(last)) return {};
    Math::sort(first, last);
    if (last < 0 || first > 1) return {};
    return HitAt(std::max(first, 0.0f));
}

using Vertices = std::array<Pos, 3>;

std::optional<Pos> VertexInside(const Vertices& own, const Vertices& other) {
    for (const Pos& p : own)
        if (Math::isEqual(Math::DistancePointPlane(p, other[0], other[1], other[2]), 0) &&
            Math::pointInTriangle3D(p, other[0], other[1], other[2]))
            return p;
    return std::nullopt;
}

std::optional<Pos> EdgeThrough(const Vertices& own, const Vertices& other) {
    const auto distance = [&other](const Pos& p) {
        return Math::SignedDistancePointPlane(p, other[0], other[1], other[2]);
    };
    for (std::size_t i = 0; i < 3; ++i) {
        const Pos &start = own[i], &end = own[(i + 1) % 3];
        const float s0 = distance(start), s1 = distance(end);
        if (!((s0 < 0 && s1 > 0) || (s0 > 0 && s1 < 0))) continue;
        const Pos p = start + (end - start) * (-s0 / (s1 - s0));
        if (Math::pointInTriangle3D(p, other[0], other[1], other[2])) return p;
    }
    return std::nullopt;
}

}  // namespace

void Math::sort(float& a, float& b) {
    if (a > b) std::swap(a, b);
}

bool Math::isEqual(float a, float b) { return std::abs(a - b) < tolerance; }

bool Math::Intersect(const Triangle& first, const Triangle& second) {
    const Vec n1 = NormalOf(first);
    const auto d2 = DistancesTo(first, n1, second);
    if (!d2) return false;
    const Vec n2 = NormalOf(second);
    const auto d1 = DistancesTo(second, n2, first);
    if (!d1) return false;
    if (AllZero(*d1) || AllZero(*d2)) return trian2Trian2D(n1, first, second);
    const Vec direction = n1.cross(n2);
    return Overlap(IntervalOf(Along(first, direction), *d1),
                   IntervalOf(Along(second, direction), *d2));
}

Result Math::Intersect(const Line& line, const Triangle& triangle) {
    const Vec direction = line.getDirection().asVec3();
    const Vec e1 = triangle.p1 - triangle.p0, e2 = triangle.p2 - triangle.p0;
    const Vec s = line.start - triangle.p0;
    const Vec p = direction.cross(e2);
    const float det = e1.dot(p);
    if (det >= tolerance || det <= -tolerance) {
        const float length = line.getLength();
        const Vec q = s.cross(e1);
        const float u = s.dot(p) / det, v = direction.dot(q) / det, t = e2.dot(q) / det;
        if (!(u >= 0 && u <= 1 && v >= 0 && u + v <= 1 && t >= 0 && t <= length)) return {};
        Result result = HitAt(t / length);
        result.position = result.localPosition = line.start + direction * t;
        return result;
    }
    const float height = distanceOfPointToSurface(line.start, triangle.p0, e1.cross(e2));
    if (!(std::abs(height) <= tolerance)) return {};  // nor is a NaN near
    Result result = lineToTriangle2D(line, triangle);
    if (result.hit)
        result.position = result.localPosition =
            line.start + (line.end - line.start) * result.distance;
    return result;
}

Math::Interval Math::computeTrianIntervals(float p0, float p1, float p2, float d0, float d1,
                                           float d2, bool d0d1Positive, bool d0d2Positive) {
    // The first argument is the vertex that lies alone on its side.
    const auto from = [](float p, float d, float pa, float da, float pb, float db) {
        const auto vertex = [](float along, float distance) {
            return distance == 0 ? std::optional(along) : std::nullopt;
        };
        return Interval{p,      (pa - p) * d,   (pb - p) * d,  d - da,
                        d - db, vertex(pa, da), vertex(pb, db)};
    };
    if (d0d1Positive) return from(p2, d2, p0, d0, p1, d1);
    if (d0d2Positive) return from(p1, d1, p0, d0, p2, d2);
    if (d1 * d2 > 0 || d0 != 0) return from(p0, d0, p1, d1, p2, d2);
    if (d1 != 0) return from(p1, d1, p0, d0, p2, d2);
    if (d2 != 0) return from(p2, d2, p0, d0, p1, d1);
    throw std::logic_error("Two triangles are on the same plane");
}

bool Math::edge2Edge2D(const Vec2& a0, const Vec2& a1, const Vec2& b0, const Vec2& b1) {
    const Vec2 a = Sub(a1, a0), b = Sub(b0, b1), c = Sub(a0, b0);
    const float f = a.y * b.x - a.x * b.y;
    const float d = b.y * c.x - b.x * c.y, e = a.x * c.y - a.y * c.x;
    if (f > 0) return d >= 0 && d <= f && e >= 0 && e <= f;
    return f < 0 && d <= 0 && d >= f && e <= 0 && e >= f;
}

bool Math::edge2TrianEdges(const Vec2& a0, const Vec2& a1, const Vec2& t0, const Vec2& t1,
                           const Vec2& t2) {
    return edge2Edge2D(a0, a1, t0, t1) || edge2Edge2D(a0, a1, t1, t2) ||
           edge2Edge2D(a0, a1, t2, t0);
}

bool Math::pointInTriangle2D(const Vec2& p, const Vec2& a, const Vec2& b, const Vec2& c) {
    return AllOnOneSide(
        {Cross(Sub(b, a), Sub(p, a)), Cross(Sub(c, b), Sub(p, b)), Cross(Sub(a, c), Sub(p, c))});
}

bool Math::trian2Trian2D(const Vec& normal, const Triangle& first, const Triangle& second) {
    const Axis axis = LargestAxis(normal);
    const Triangle2D s = Drop(first, axis), t = Drop(second, axis);
    for (std::size_t i = 0; i < 3; ++i)
        if (edge2TrianEdges(s[i], s[(i + 1) % 3], t[0], t[1], t[2])) return true;
    return std::ranges::any_of(
               s, [&](const Vec2& p) { return pointInTriangle2D(p, t[0], t[1], t[2]); }) ||
           std::ranges::any_of(
               t, [&](const Vec2& p) { return pointInTriangle2D(p, s[0], s[1], s[2]); });
}

Result Math::edgeToEdge2D(const Vec2& p1, const Vec2& p2, const Vec2& p3, const Vec2& p4) {
    const Vec2 along = Sub(p2, p1), back = Sub(p3, p4), across = Sub(p3, p1);
    const float d = Cross(back, along);
    const float first = Cross(back, across), second = Cross(across, along);
    const auto between = [](float v, float low, float high) { return v >= low && v <= high; };
    if (d > 0) {
        if (between(first, 0, d) && between(second, 0, d)) return HitAt(first / d);
    } else if (d < 0) {
        if (between(first, d, 0) && between(second, d, 0)) return HitAt(first / d);
    } else if (d == 0 && first == 0) {
        return CollinearEdges(p1, p2, p3, p4);
    }
    return {};
}

Result Math::lineToTriangle2D(const Line& line, const Triangle& triangle) {
    const Axis axis = LargestAxis(NormalOf(triangle));
    const Vec2 start = Drop(line.start, axis), end = Drop(line.end, axis);
    const Triangle2D t = Drop(triangle, axis);
    if (pointInTriangle2D(start, t[0], t[1], t[2])) return HitAt(0);
    Result nearest;
    for (std::size_t i = 0; i < 3; ++i) {
        const Result hit = edgeToEdge2D(start, end, t[i], t[(i + 1) % 3]);
        if (hit.hit && (!nearest.hit || hit.distance < nearest.distance)) nearest = hit;
    }
    return nearest;
}

bool Math::pointInTriangle3D(const Pos& p, const Pos& a, const Pos& b, const Pos& c) {
    const Vec n = NewellNormal(a, b, c);
    const float x = std::abs(n.x), y = std::abs(n.y), z = std::abs(n.z);
    const Axis axis = x > y && x > z ? Axis::X : y > z && !(y < x) ? Axis::Y : Axis::Z;
    return pointInTriangle2D(Drop(p, axis), Drop(a, axis), Drop(b, axis), Drop(c, axis));
}

float Math::distanceOfPointToSurface(const Pos& p, const Pos& surfacePoint, const Vec& normal) {
    const float length = normal.length();
    if (length == 0) throw SurfaceNormalNotAvailable();
    return (p - surfacePoint).dot(normal) / length;
}

float Math::DistancePointLine(const Pos& p, const Pos& a, const Pos& b) {
    const Vec fromA = p - a, fromB = p - b;
    const bool nearB = fromB.squaredLength() < fromA.squaredLength();
    return (nearB ? fromB : fromA).cross((b - a).normalized()).length();
}

float Math::DistancePointLine(const Pos& p, const Pos& origin,
                              const rob::DirTemplate<float>& direction) {
    return (p - origin).cross(direction.asVec3().normalized()).length();
}

float Math::SignedDistancePointPlane(const Pos& p, const Pos& a, const Pos& b, const Pos& c) {
    return NewellNormal(a, b, c).normalized().dot(p - a);
}

float Math::DistancePointPlane(const Pos& p, const Pos& a, const Pos& b, const Pos& c) {
    return std::abs(SignedDistancePointPlane(p, a, b, c));
}

std::pair<bool, float> Math::PointOutsideOfPlane(const Pos& p, const Pos& a, const Pos& b,
                                                 const Pos& c) {
    constexpr double nothing = 0.001;
    const Vec n = (b - a).cross(c - a), w = p - a;
    // Also for a NaN, which is not below anything.
    const auto isLong = [](const Vec& v) { return static_cast<double>(v.length()) >= nothing; };
    if (!isLong(n) || !isLong(w)) return {false, 0.0f};
    const Vec unit = n.normalized();
    if (!(static_cast<double>(unit.dot(w.normalized())) > nothing)) return {false, 0.0f};
    return {true, unit.dot(w)};
}

bool Math::PointOutsideOfPlane(const Pos& p, const Pos& point, const Vec& normal) {
    return (p - point).dot(normal) > 0;
}

std::pair<bool, Pos> Math::GetIntersectionPoint(const Pos& a, const Pos& b, const Pos& c,
                                                const Pos& d, const Pos& e, const Pos& f) {
    const Vertices abc{a, b, c}, def{d, e, f};
    if (const auto p = VertexInside(abc, def)) return {true, *p};
    if (const auto p = VertexInside(def, abc)) return {true, *p};
    if (const auto p = EdgeThrough(abc, def)) return {true, *p};
    if (const auto p = EdgeThrough(def, abc)) return {true, *p};
    return {false, Pos{}};
}

}  // namespace vrn::selection
