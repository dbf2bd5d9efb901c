#pragma once

#include <algorithm>
#include <cmath>
#include <stdexcept>

/// Math value types of the suite. All are small structures passed by value or const reference;
/// lengths are in the model's unit (millimetres in the bundled host), angles in radians. Thread:
/// pure, all of them.
namespace vrn::rob {

/// Lengths at most this are taken for zero by every normalisation of the suite.
inline constexpr double zeroLength = 1e-7;

template <class T>
struct XYZTemplate {
    T x{}, y{}, z{};
    friend bool operator==(const XYZTemplate&, const XYZTemplate&) = default;
};

/// A free vector.
template <class T>
struct Vec3Template {
    T x{}, y{}, z{};

    constexpr Vec3Template() = default;
    constexpr Vec3Template(T xIn, T yIn, T zIn) : x(xIn), y(yIn), z(zIn) {}
    template <class U>
    constexpr explicit Vec3Template(const Vec3Template<U>& other)
        : x(static_cast<T>(other.x)), y(static_cast<T>(other.y)), z(static_cast<T>(other.z)) {}

    [[nodiscard]] constexpr T dot(const Vec3Template& b) const {
        return x * b.x + y * b.y + z * b.z;
    }
    [[nodiscard]] constexpr Vec3Template cross(const Vec3Template& b) const {
        return {y * b.z - z * b.y, z * b.x - x * b.z, x * b.y - y * b.x};
    }
    [[nodiscard]] constexpr T squaredLength() const { return dot(*this); }
    [[nodiscard]] T length() const { return std::sqrt(squaredLength()); }

    /// The same direction with length 1. Throws std::overflow_error for a length of at most 1e-7.
    [[nodiscard]] Vec3Template normalized() const {
        const T len = length();
        const T most = std::max({std::abs(x), std::abs(y), std::abs(z)});
        // Only the square of the length is too large for a number.
        if (std::isinf(len) && !std::isinf(most))
            return Vec3Template{x / most, y / most, z / most}.normalized();
        if (!(static_cast<double>(len) > zeroLength))
            throw std::overflow_error("0-length vector cannot be normalized.");
        return {x / len, y / len, z / len};
    }

    constexpr Vec3Template operator-() const { return {-x, -y, -z}; }
    friend constexpr Vec3Template operator+(const Vec3Template& a, const Vec3Template& b) {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend constexpr Vec3Template operator-(const Vec3Template& a, const Vec3Template& b) {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend constexpr Vec3Template operator*(const Vec3Template& a, T s) {
        return {a.x * s, a.y * s, a.z * s};
    }
    friend constexpr Vec3Template operator*(T s, const Vec3Template& a) { return a * s; }
    friend bool operator==(const Vec3Template&, const Vec3Template&) = default;
};

/// A direction; unit length is the caller's promise.
template <class T>
struct DirTemplate {
    T x{}, y{}, z{};

    constexpr DirTemplate() = default;
    constexpr DirTemplate(T xIn, T yIn, T zIn) : x(xIn), y(yIn), z(zIn) {}
    constexpr explicit DirTemplate(const Vec3Template<T>& v) : x(v.x), y(v.y), z(v.z) {}
    template <class U>
    constexpr explicit DirTemplate(const DirTemplate<U>& other)
        : x(static_cast<T>(other.x)), y(static_cast<T>(other.y)), z(static_cast<T>(other.z)) {}

    [[nodiscard]] constexpr Vec3Template<T> asVec3() const { return {x, y, z}; }
    friend bool operator==(const DirTemplate&, const DirTemplate&) = default;
};

/// A point.
template <class T>
struct PosTemplate {
    T x{}, y{}, z{};

    constexpr PosTemplate() = default;
    constexpr PosTemplate(T xIn, T yIn, T zIn) : x(xIn), y(yIn), z(zIn) {}
    template <class U>
    constexpr explicit PosTemplate(const PosTemplate<U>& other)
        : x(static_cast<T>(other.x)), y(static_cast<T>(other.y)), z(static_cast<T>(other.z)) {}

    /// The vector from the origin to the point.
    [[nodiscard]] constexpr Vec3Template<T> asVec3() const { return {x, y, z}; }

    friend constexpr Vec3Template<T> operator-(const PosTemplate& a, const PosTemplate& b) {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend constexpr PosTemplate operator+(const PosTemplate& p, const Vec3Template<T>& v) {
        return {p.x + v.x, p.y + v.y, p.z + v.z};
    }
    friend constexpr PosTemplate operator-(const PosTemplate& p, const Vec3Template<T>& v) {
        return {p.x - v.x, p.y - v.y, p.z - v.z};
    }
    friend bool operator==(const PosTemplate&, const PosTemplate&) = default;
};

/// A screen or parameter vector.
template <class T>
struct Vec2Template {
    T x{}, y{};
    friend bool operator==(const Vec2Template&, const Vec2Template&) = default;
};

/// Red, green, blue, each 0 to 1. Alpha is never in it; operations take it as a separate number.
template <class T>
struct ColorTemplate {
    T r{}, g{}, b{};
    friend bool operator==(const ColorTemplate&, const ColorTemplate&) = default;
};

}  // namespace vrn::rob
