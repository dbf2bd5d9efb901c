#include "visual/station/MechanismFrame.h"

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "suite/sdf/SdfNode.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/ModelPose.h"

namespace vrn::visual {

void BuildMechanismFrame(Visual* parent, const sdf::SdfNode& modelNode, const std::string& name) {
    const rob::PoseTemplate<float> pose = ModelPose(modelNode);
    auto* frame = new FrameVisual(parent, modelNode.id, name, VisualType::Frame);
    Scene::Get()->visuals[frame->id] = frame;
    frame->setPose(pose);
    selection::VisualSelection::Get()->addLineVisual(frame);
}

}  // namespace vrn::visual
