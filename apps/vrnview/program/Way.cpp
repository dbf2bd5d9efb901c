#include "apps/vrnview/program/Way.h"

#include <cmath>
#include <numbers>

namespace vrn::host {

namespace {

using Vec = rob::Vec3Template<double>;
using Rotation = rob::RotationTemplate<double>;

constexpr double tooFlat = 1e-9;  // sine of the angle of three points on a line

}  // namespace

Way::Way(const Pose& from, const Pose& to) : start(from), end(to) {
    lengthMm = (to.position - from.position).length();
    Rotation turn = from.rotation.inverse() * to.rotation;
    // Of the two quaternions of a turn the one of the shorter way.
    if (turn.w < 0) turn = {-turn.w, -turn.x, -turn.y, -turn.z};
    const Vec direction{turn.x, turn.y, turn.z};
    const double sine = direction.length();
    if (!(sine > 0)) return;
    angle = 2 * std::atan2(sine, turn.w);
    axis = direction * (1 / sine);
}

Way Way::Straight(const Pose& from, const Pose& to) { return {from, to}; }

std::optional<Way> Way::Arc(const Pose& from, const rob::PosTemplate<double>& via, const Pose& to) {
    const Vec a = from.position.asVec3(), b = via.asVec3(), c = to.position.asVec3();
    const Vec u = b - a, v = c - a;
    const Vec normal = u.cross(v);
    if (!(normal.length() > tooFlat * u.length() * v.length())) return std::nullopt;
    // Circumcentre of a triangle: Ericson, "Real-Time Collision Detection", 3.4.
    const double uu = u.dot(u), vv = v.dot(v), uv = u.dot(v);
    const double denominator = 2 * (uu * vv - uv * uv);
    Way way(from, to);
    way.centre = a + u * (vv * (uu - uv) / denominator) + v * (uu * (vv - uv) / denominator);
    way.x = a - way.centre;
    way.y = normal.normalized().cross(way.x);
    const Vec last = c - way.centre;
    way.sweep = std::atan2(last.dot(way.y), last.dot(way.x));
    // Seen along the normal the three points run counter-clockwise.
    if (way.sweep <= 0) way.sweep += 2 * std::numbers::pi;
    way.lengthMm = way.x.length() * way.sweep;
    return way;
}

Pose Way::at(double part) const {
    if (part <= 0) return start;
    if (part >= 1) return end;
    Pose pose;
    pose.rotation = start.rotation * Rotation(angle * part, axis);
    if (sweep > 0) {
        const Vec p = centre + x * std::cos(sweep * part) + y * std::sin(sweep * part);
        pose.position = {p.x, p.y, p.z};
    } else {
        pose.position = start.position + (end.position - start.position) * part;
    }
    return pose;
}

}  // namespace vrn::host
