#include "visual/station/ModelPose.h"

#include <format>
#include <stdexcept>

#include "suite/sdf/SdfNode.h"
#include "visual/FinitePose.h"

namespace vrn::visual {

rob::PoseTemplate<float> ModelPose(const sdf::SdfNode& modelNode) {
    const rob::PoseTemplate<float> pose(modelNode.getPose());
    if (!IsFinite(pose))
        throw std::invalid_argument(
            std::format("the pose of \"{}\" (id {}) must be finite", modelNode.name, modelNode.id));
    return pose;
}

}  // namespace vrn::visual
