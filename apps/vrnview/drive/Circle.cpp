#include "apps/vrnview/drive/Circle.h"

#include <numbers>
#include <stdexcept>

namespace vrn::host {

namespace {

using Pos = rob::PosTemplate<double>;
using Vec = rob::Vec3Template<double>;

/// In radians, left open where the arc would meet itself: a hundredth of the radius.
constexpr double gap = 0.01;
/// The sine of the flattest corner that still makes a circle.
constexpr double flattest = 1e-6;

}  // namespace

Circle CircleThrough(const Pos& a, const Pos& b, const Pos& c) {
    const Vec u = b - a, v = c - a;
    const Vec across = u.cross(v);
    if (!(across.length() > flattest * u.length() * v.length()))
        throw std::runtime_error("the three points lie on one line");
    // Circumcentre of a triangle: Ericson, "Real-Time Collision Detection", 3.4.
    const Vec toCentre = (u * v.squaredLength() - v * u.squaredLength()).cross(across) *
                         (-0.5 / across.squaredLength());
    return {a + toCentre, -toCentre, across * (1 / across.length())};
}

rob::TPCircle WholeArc(const Circle& circle) {
    const auto at = [&circle](double angle) {
        const rob::RotationTemplate<double> turn(angle, circle.normal);
        return rob::PosTemplate<float>(circle.centre + turn * circle.toStart);
    };
    return {at(0), at(std::numbers::pi), at(2 * std::numbers::pi - gap)};
}

}  // namespace vrn::host
