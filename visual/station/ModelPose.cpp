#include "visual/station/ModelPose.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <format>
#include <stdexcept>

#include "suite/sdf/SdfNode.h"

namespace vrn::visual {

rob::PoseTemplate<float> ModelPose(const sdf::SdfNode& modelNode) {
    const rob::PoseTemplate<float> pose(modelNode.getPose());
    const auto& [p, r] = pose;
    const std::array numbers{p.x, p.y, p.z, r.w, r.x, r.y, r.z};
    if (!std::ranges::all_of(numbers, [](float number) { return std::isfinite(number); }))
        throw std::invalid_argument(
            std::format("the pose of \"{}\" (id {}) must be finite", modelNode.name, modelNode.id));
    return pose;
}

}  // namespace vrn::visual
