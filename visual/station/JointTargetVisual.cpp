#include "visual/station/JointTargetVisual.h"

#include <string>

#include "selection/VisualSelection.h"
#include "suite/sdf/SdfNode.h"
#include "visual/ModelNode.h"
#include "visual/station/ModelPose.h"

namespace vrn::visual {

JointTargetVisual::JointTargetVisual(Visual* parent, std::uint32_t idIn,
                                     const rob::PoseTemplate<float>* pose)
    : InstanceFrameVisual(parent, idIn, SharedName{"JOINTTARGET_" + std::to_string(idIn)},
                          VisualType::JointTarget, "InstanceFrame", pose) {}

JointTargetVisual* JointTargetVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    const rob::PoseTemplate<float> pose = ModelPose(RequireModelNode(modelNode));
    auto* target = new JointTargetVisual(parent, modelNode->id, &pose);
    target->resetAppearance();
    target->enterRegistry();
    selection::VisualSelection::Get()->addFrameVisual(target);
    return target;
}

}  // namespace vrn::visual
