#pragma once

#include "visual/station/InstanceFrameVisual.h"

namespace vrn::visual {

/// A joint target, called "JOINTTARGET_{id}", as each is that shows the same one: selected and
/// highlighted it looks like a robot target. Thread: render.
class VRN_VISUAL_API JointTargetVisual : public InstanceFrameVisual {
public:
    JointTargetVisual(Visual* parent, std::uint32_t idIn,
                      const rob::PoseTemplate<float>* pose = nullptr);

    /// With id and pose of the model object, entered in the registry and in the selection. Throws
    /// std::invalid_argument for null, and what ModelPose and the constructor throw; then the tree
    /// is as it was.
    static JointTargetVisual* Build(Visual* parent, sdf::SdfNode* modelNode);
};

}  // namespace vrn::visual
