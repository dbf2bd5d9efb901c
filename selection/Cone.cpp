#include "selection/Cone.h"

namespace vrn::visual {

bool Cone::isPointInside(const rob::PoseTemplate<float>& pose,
                         rob::Vec3Template<float> point) const {
    const rob::Vec3Template<float> axis = pose.rotation * rob::Vec3Template<float>{0, 0, 1};
    const rob::Vec3Template<float> v = point - pose.position.asVec3();
    const float h = v.dot(axis);
    if (h < 0.0f || h > height) return false;
    const float radial = (v - axis * h).length();
    // Without a height the quotient is NaN and the comparison false.
    return radial < nearRadius + (farRadius - nearRadius) * (h / height);
}

}  // namespace vrn::visual
