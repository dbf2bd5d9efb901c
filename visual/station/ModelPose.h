#pragma once

#include "suite/rob/PoseTypes.h"

namespace vrn::sdf {
class SdfNode;
}

namespace vrn::visual {

/// The object's stored pose in single precision. Throws std::bad_any_cast if what is stored is no
/// pose, and std::invalid_argument if it is not finite: a builder that asks before it makes a
/// visual leaves nothing behind. Thread: pure.
[[nodiscard]] rob::PoseTemplate<float> ModelPose(const sdf::SdfNode& modelNode);

}  // namespace vrn::visual
