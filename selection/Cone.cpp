#include "selection/Cone.h"

namespace vrn::visual {

bool Cone::isPointInside(const rob::PoseTemplate<float>& pose,
                         rob::Vec3Template<float> point) const {
    const rob::Vec3Template<float> axis = pose.rotation * rob::Vec3Template<float>{0, 0, 1};
    const rob::Vec3Template<float> v = point - pose.position.asVec3();
    const float h = v.dot(axis);
    return contains(h, (v - axis * h).length());
}

}  // namespace vrn::visual
