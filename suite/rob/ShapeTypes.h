#pragma once

#include <array>

#include "suite/rob/PoseTypes.h"

namespace vrn::rob {

/// A straight line between two points.
template <class T>
struct LineTemplate {
    PosTemplate<T> start{}, end{};

    /// True for a line of zero length (at most 1e-7).
    [[nodiscard]] bool isEmpty() const { return !(static_cast<double>(getLength()) > zeroLength); }
    [[nodiscard]] T getLength() const { return (end - start).length(); }
    /// Unit vector from start to end. Throws std::overflow_error for an empty line.
    [[nodiscard]] DirTemplate<T> getDirection() const {
        return DirTemplate<T>((end - start).normalized());
    }
    [[nodiscard]] LineTemplate transformed(const PoseTemplate<T>& pose) const {
        return {TransformPoint(pose, start), TransformPoint(pose, end)};
    }
    friend bool operator==(const LineTemplate&, const LineTemplate&) = default;
};

template <class T>
struct TriangleTemplate {
    PosTemplate<T> p0{}, p1{}, p2{};

    [[nodiscard]] TriangleTemplate transformed(const PoseTemplate<T>& pose) const {
        return {TransformPoint(pose, p0), TransformPoint(pose, p1), TransformPoint(pose, p2)};
    }
    friend bool operator==(const TriangleTemplate&, const TriangleTemplate&) = default;
};

/// The circular arc from the first of three points through the second to the third.
class TPCircle {
public:
    /// Throws std::overflow_error if two of the points coincide or all three lie on one line.
    TPCircle(const PosTemplate<float>& first, const PosTemplate<float>& via,
             const PosTemplate<float>& last) {
        using V = Vec3Template<double>;
        const V a{first.x, first.y, first.z}, b{via.x, via.y, via.z}, c{last.x, last.y, last.z};
        const V u = b - a, v = c - a;
        normal = u.cross(v).normalized();
        // Circumcentre of a triangle: Ericson, "Real-Time Collision Detection", 3.4.
        const double uu = u.dot(u), vv = v.dot(v), uv = u.dot(v);
        const double denominator = 2 * (uu * vv - uv * uv);
        const double s = vv * (uu - uv) / denominator, t = uu * (vv - uv) / denominator;
        centre = a + u * s + v * t;
        axisX = a - centre;
        axisY = normal.cross(axisX);
        const V end = c - centre;
        sweep = std::atan2(end.dot(axisY), end.dot(axisX));
        // The normal is that of first, via, last: the arc through the middle point runs
        // counter-clockwise.
        if (sweep <= 0) sweep += 2 * 3.14159265358979323846;
    }

    /// The point at `t` from 0 (first) to 1 (third).
    [[nodiscard]] PosTemplate<float> getPoint(double t) const {
        const auto p = centre + axisX * std::cos(sweep * t) + axisY * std::sin(sweep * t);
        return {static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
    }
    /// Unit tangent at `t`, towards the third point.
    [[nodiscard]] Vec3Template<float> getTangent(double t) const {
        const auto d = (axisY * std::cos(sweep * t) - axisX * std::sin(sweep * t)).normalized();
        return Vec3Template<float>(d);
    }
    /// Of the arc from the first to the third point.
    [[nodiscard]] double getLength() const { return axisX.length() * sweep; }

private:
    Vec3Template<double> centre, normal, axisX, axisY;
    double sweep = 0;
};

}  // namespace vrn::rob
