#include "selection/Ray.h"

#include <ostream>

namespace vrn::visual {

Ray Ray::transformed(const rob::PoseTemplate<float>& pose) const {
    return {TransformPoint(pose, origin), pose.rotation.rotateDir(direction), FLT_MAX};
}

void Ray::transform(const rob::PoseTemplate<float>& pose) {
    origin = TransformPoint(pose, origin);
    direction = pose.rotation.rotateDir(direction);
}

void Ray::dump(std::ostream& out) const {
    out << "origin: " << origin.x << ' ' << origin.y << ' ' << origin.z << '\n';
    out << "direction: " << direction.x << ' ' << direction.y << ' ' << direction.z << '\n';
}

}  // namespace vrn::visual
