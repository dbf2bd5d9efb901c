#pragma once

#include <string>

namespace vrn::sdf {
class SdfNode;
}

namespace vrn::visual {

class Visual;

/// A frame of a tool or device under `parent`, with id and pose of its model object, in the
/// registry and in the selection. Several may carry one name. Throws what ModelPose throws, and
/// then leaves the tree as it was. Thread: render.
void BuildMechanismFrame(Visual* parent, const sdf::SdfNode& modelNode, const std::string& name);

}  // namespace vrn::visual
