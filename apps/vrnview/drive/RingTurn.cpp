#include "apps/vrnview/drive/RingTurn.h"

#include <cmath>
#include <numbers>

namespace vrn::host {

namespace {

using Vec = rob::Vec3Template<double>;

}  // namespace

RingTurn::RingTurn(const rob::PosTemplate<double>& ringCentre, const Vec& ringAxis,
                   const rob::PosTemplate<double>& grabbed, const SightLine& from)
    : centre(ringCentre), start(grabbed), axis(ringAxis), sight(from.direction.normalized()) {
    const Vec arm = grabbed - centre;
    const Vec inPlane = arm - axis * arm.dot(axis);
    radius = inPlane.length();
    seenFromEdge = !(std::abs(sight.dot(axis)) >= edgeOn);
    if (seenFromEdge) {
        // Of the point that is nearest to the viewer.
        tangent = sight.cross(axis).normalized();
        return;
    }
    u = inPlane.normalized();
    v = axis.cross(u);
    (void)angleAt(from, lastAngle);
}

bool RingTurn::angleAt(const SightLine& line, double& angle) const {
    const Vec direction = line.direction.normalized();
    const double steepness = direction.dot(axis);
    if (!(std::abs(steepness) > rob::zeroLength)) return false;
    const double ahead = (centre - line.origin).dot(axis) / steepness;
    if (!(ahead > 0)) return false;
    const Vec arm = line.origin + direction * ahead - centre;
    angle = std::atan2(arm.dot(v), arm.dot(u));
    return true;
}

double RingTurn::wayAlong(const SightLine& to) const {
    const double ahead = (start - to.origin).dot(sight) / to.direction.dot(sight);
    return (to.origin + to.direction * ahead - start).dot(tangent);
}

double RingTurn::follow(const SightLine& to) {
    if (seenFromEdge) {
        if (radius > rob::zeroLength) total = wayAlong(to) / radius;
        return total;
    }
    double angle = 0;
    if (!angleAt(to, angle)) return total;
    total += std::remainder(angle - lastAngle, 2 * std::numbers::pi);
    lastAngle = angle;
    return total;
}

}  // namespace vrn::host
