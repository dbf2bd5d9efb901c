#include "visual/station/JointTargetVisual.h"

#include <format>

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "suite/sdf/SdfNode.h"
#include "visual/station/ModelPose.h"

namespace vrn::visual {

JointTargetVisual::JointTargetVisual(Visual* parent, std::uint32_t idIn)
    : InstanceFrameVisual(parent, idIn, SharedName{std::format("JOINTTARGET_{}", idIn)},
                          VisualType::JointTarget, "InstanceFrame") {}

JointTargetVisual* JointTargetVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    const rob::PoseTemplate<float> pose = ModelPose(*modelNode);
    auto* target = new JointTargetVisual(parent, modelNode->id);
    target->resetAppearance();
    Scene::Get()->visuals[target->id] = target;
    target->setPose(pose);
    selection::VisualSelection::Get()->addFrameVisual(target);
    return target;
}

}  // namespace vrn::visual
