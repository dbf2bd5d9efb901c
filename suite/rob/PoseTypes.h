#pragma once

#include "suite/rob/VectorTypes.h"

namespace vrn::rob {

/// A rotation as a unit quaternion, components in the order w, x, y, z.
///
/// Composition follows the usual product: (a * b) applied to v is a applied to (b applied to v).
/// Formulas: Shoemake, "Animating rotation with quaternion curves", SIGGRAPH 1985.
template <class T>
struct RotationTemplate {
    T w{1}, x{}, y{}, z{};

    constexpr RotationTemplate() = default;
    constexpr RotationTemplate(T wIn, T xIn, T yIn, T zIn) : w(wIn), x(xIn), y(yIn), z(zIn) {}
    template <class U>
    constexpr explicit RotationTemplate(const RotationTemplate<U>& o)
        : w(static_cast<T>(o.w)),
          x(static_cast<T>(o.x)),
          y(static_cast<T>(o.y)),
          z(static_cast<T>(o.z)) {}

    /// By `angle` radians about `axis`, which the caller promises to be of unit length.
    RotationTemplate(T angle, const DirTemplate<T>& axis)
        : RotationTemplate(angle, axis.asVec3()) {}
    RotationTemplate(T angle, const Vec3Template<T>& axis) {
        const T s = std::sin(angle / 2);
        w = std::cos(angle / 2);
        x = axis.x * s;
        y = axis.y * s;
        z = axis.z * s;
    }

    /// By `a` about x, then `b` about y, then `c` about z, all fixed axes, in radians.
    RotationTemplate(T a, T b, T c) {
        using V = Vec3Template<T>;
        *this = RotationTemplate(c, V{0, 0, 1}) * RotationTemplate(b, V{0, 1, 0}) *
                RotationTemplate(a, V{1, 0, 0});
    }

    /// The shortest turn that takes `from` to `to`; a half turn about some perpendicular axis when
    /// they are opposite. Throws std::overflow_error for a zero vector.
    static RotationTemplate From2Dirs(const Vec3Template<T>& from, const Vec3Template<T>& to) {
        const Vec3Template<T> a = from.normalized(), b = to.normalized();
        const T cosine = a.dot(b);
        if (cosine < T(-1) + T(1e-6)) {
            const Vec3Template<T> other =
                std::abs(a.x) < T(0.9) ? Vec3Template<T>{1, 0, 0} : Vec3Template<T>{0, 1, 0};
            const Vec3Template<T> axis = a.cross(other).normalized();
            return {0, axis.x, axis.y, axis.z};
        }
        const Vec3Template<T> c = a.cross(b);
        const T s = std::sqrt((1 + cosine) * 2);
        return {s / 2, c.x / s, c.y / s, c.z / s};
    }
    static RotationTemplate From2Dirs(const DirTemplate<T>& from, const DirTemplate<T>& to) {
        return From2Dirs(from.asVec3(), to.asVec3());
    }

    /// The rotation that takes the unit axes to the given orthonormal right-handed ones.
    static RotationTemplate FromAxes(const Vec3Template<T>& ax, const Vec3Template<T>& ay,
                                     const Vec3Template<T>& az) {
        // Shepperd's choice of the largest component keeps the division away from zero.
        const T trace = ax.x + ay.y + az.z;
        if (trace > 0) {
            const T s = std::sqrt(trace + 1) * 2;
            return {s / 4, (ay.z - az.y) / s, (az.x - ax.z) / s, (ax.y - ay.x) / s};
        }
        if (ax.x > ay.y && ax.x > az.z) {
            const T s = std::sqrt(1 + ax.x - ay.y - az.z) * 2;
            return {(ay.z - az.y) / s, s / 4, (ay.x + ax.y) / s, (az.x + ax.z) / s};
        }
        if (ay.y > az.z) {
            const T s = std::sqrt(1 + ay.y - ax.x - az.z) * 2;
            return {(az.x - ax.z) / s, (ay.x + ax.y) / s, s / 4, (az.y + ay.z) / s};
        }
        const T s = std::sqrt(1 + az.z - ax.x - ay.y) * 2;
        return {(ax.y - ay.x) / s, (az.x + ax.z) / s, (az.y + ay.z) / s, s / 4};
    }

    /// The opposite turn of a unit quaternion (its conjugate).
    [[nodiscard]] constexpr RotationTemplate inverse() const { return {w, -x, -y, -z}; }

    [[nodiscard]] constexpr Vec3Template<T> rotated(const Vec3Template<T>& v) const {
        const Vec3Template<T> u{x, y, z};
        const Vec3Template<T> t = u.cross(v) * T(2);
        return v + t * w + u.cross(t);
    }
    [[nodiscard]] constexpr DirTemplate<T> rotateDir(const DirTemplate<T>& dir) const {
        return DirTemplate<T>(rotated(dir.asVec3()));
    }

    /// Same turn within 1e-6 a component; q and -q are the same turn.
    [[nodiscard]] bool isApprox(const RotationTemplate& o) const {
        constexpr T tolerance = T(1e-6);
        const auto close = [&](T sign) {
            return std::abs(w - sign * o.w) <= tolerance && std::abs(x - sign * o.x) <= tolerance &&
                   std::abs(y - sign * o.y) <= tolerance && std::abs(z - sign * o.z) <= tolerance;
        };
        return close(T(1)) || close(T(-1));
    }

    friend constexpr RotationTemplate operator*(const RotationTemplate& a,
                                                const RotationTemplate& b) {
        return {a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z,
                a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
                a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
                a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w};
    }
    friend constexpr Vec3Template<T> operator*(const RotationTemplate& q,
                                               const Vec3Template<T>& v) {
        return q.rotated(v);
    }
    friend constexpr DirTemplate<T> operator*(const RotationTemplate& q, const DirTemplate<T>& d) {
        return q.rotateDir(d);
    }
    friend constexpr PosTemplate<T> operator*(const RotationTemplate& q, const PosTemplate<T>& p) {
        const Vec3Template<T> v = q.rotated(p.asVec3());
        return {v.x, v.y, v.z};
    }
    friend bool operator==(const RotationTemplate&, const RotationTemplate&) = default;
};

/// A quaternion as the model stores it, in the order w, x, y, z.
template <class T>
struct OrientTemplate {
    T w{1}, x{}, y{}, z{};
    friend bool operator==(const OrientTemplate&, const OrientTemplate&) = default;
};

/// Position and rotation: a point p of the posed frame stands at rotation * p + position.
template <class T>
struct PoseTemplate {
    PosTemplate<T> position{};
    RotationTemplate<T> rotation{};

    constexpr PoseTemplate() = default;
    constexpr PoseTemplate(const PosTemplate<T>& p, const RotationTemplate<T>& r)
        : position(p), rotation(r) {}
    /// Plain narrowing or widening, component by component.
    template <class U>
    constexpr explicit PoseTemplate(const PoseTemplate<U>& o)
        : position(o.position), rotation(o.rotation) {}

    friend bool operator==(const PoseTemplate&, const PoseTemplate&) = default;
};

/// `p` in the frame of `pose`, seen from the frame that `pose` is given in.
template <class T>
constexpr PosTemplate<T> TransformPoint(const PoseTemplate<T>& pose, const PosTemplate<T>& p) {
    return pose.rotation * p + pose.position.asVec3();
}

}  // namespace vrn::rob
