#include "visual/station/WristVisual.h"

#include "engine/Scene.h"
#include "suite/sdf/SdfNode.h"
#include "visual/ModelNode.h"
#include "visual/station/ModelPose.h"

namespace vrn::visual {

WristVisual::WristVisual(Visual* parent, sdf::SdfNode* modelNode) : Visual(modelNode, parent) {
    type = VisualType::Wrist;
}

void WristVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    const rob::PoseTemplate<float> pose = ModelPose(RequireModelNode(modelNode));
    auto* wrist = new WristVisual(parent, modelNode);
    Scene::Get()->visuals[wrist->id] = wrist;
    wrist->setPose(pose);
}

}  // namespace vrn::visual
