#include "visual/station/RobtargetVisual.h"

#include <format>

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "suite/sdf/SdfManager.h"
#include "visual/station/ModelPose.h"

namespace vrn::visual {

RobtargetVisual::RobtargetVisual(Visual* parent, std::uint32_t idIn)
    : InstanceFrameVisual(parent, idIn, SharedName{std::format("ROBTARGET_{}", idIn)},
                          VisualType::RobTarget, "InstanceRobTarget") {}

RobtargetVisual* RobtargetVisual::Build(Visual* parent, std::uint32_t idIn) {
    const rob::PoseTemplate<float> pose = ModelPose(*sdf::SdfManager::inst()->at(idIn));
    auto* target = new RobtargetVisual(parent, idIn);
    target->resetAppearance();
    Scene::Get()->visuals[target->id] = target;
    target->setPose(pose);
    selection::VisualSelection::Get()->addFrameVisual(target);
    return target;
}

void RobtargetVisual::preview() { resetAppearance(); }

void RobtargetVisual::cancelPreview() { resetAppearance(); }

}  // namespace vrn::visual
