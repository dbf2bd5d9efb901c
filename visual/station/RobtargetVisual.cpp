#include "visual/station/RobtargetVisual.h"

#include <string>

#include "selection/VisualSelection.h"
#include "suite/sdf/SdfManager.h"
#include "suite/sdf/SdfNode.h"
#include "visual/station/ModelPose.h"

namespace vrn::visual {

RobtargetVisual::RobtargetVisual(Visual* parent, std::uint32_t idIn,
                                 const rob::PoseTemplate<float>* pose)
    : InstanceFrameVisual(parent, idIn, SharedName{"ROBTARGET_" + std::to_string(idIn)},
                          VisualType::RobTarget, "InstanceRobTarget", pose) {}

RobtargetVisual* RobtargetVisual::Build(Visual* parent, std::uint32_t idIn) {
    return Build(parent, *sdf::SdfManager::inst()->at(idIn));
}

RobtargetVisual* RobtargetVisual::Build(Visual* parent, const sdf::SdfNode& modelNode) {
    const rob::PoseTemplate<float> pose = ModelPose(modelNode);
    auto* target = new RobtargetVisual(parent, modelNode.id, &pose);
    target->resetAppearance();
    target->enterRegistry();
    selection::VisualSelection::Get()->addFrameVisual(target);
    return target;
}

void RobtargetVisual::preview() { resetAppearance(); }

void RobtargetVisual::cancelPreview() { resetAppearance(); }

}  // namespace vrn::visual
