#include "apps/vrnview/Bounds.h"

#include <algorithm>
#include <cmath>

namespace vrn::host {

namespace {

bool IsFinite(const rob::PosTemplate<double>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

}  // namespace

Bounds::Bounds(const rob::PosTemplate<double>& a, const rob::PosTemplate<double>& b) {
    if (!IsFinite(a) || !IsFinite(b)) return;
    add(a);
    add(b);
}

rob::PosTemplate<double> Bounds::getCentre() const {
    return {(low.x + high.x) / 2, (low.y + high.y) / 2, (low.z + high.z) / 2};
}

double Bounds::getRadius() const {
    return std::hypot(high.x - low.x, high.y - low.y, high.z - low.z) / 2;
}

void Bounds::add(const rob::PosTemplate<double>& point) {
    if (!IsFinite(point)) return;
    if (empty) low = high = point;
    empty = false;
    low = {std::min(low.x, point.x), std::min(low.y, point.y), std::min(low.z, point.z)};
    high = {std::max(high.x, point.x), std::max(high.y, point.y), std::max(high.z, point.z)};
}

void Bounds::add(const Bounds& other) {
    if (other.empty) return;
    add(other.low);
    add(other.high);
}

}  // namespace vrn::host
