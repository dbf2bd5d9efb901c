#include "visual/station/TcpVisual.h"

#include <format>

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "suite/sdf/SdfNode.h"
#include "visual/ModelNode.h"
#include "visual/station/ModelPose.h"

namespace vrn::visual {

TcpVisual::TcpVisual(Visual* parent, sdf::SdfNode* modelNode)
    : FrameVisual(parent, modelNode->id, std::format("TCP_{}", modelNode->id), VisualType::Tcp) {}

void TcpVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    const rob::PoseTemplate<float> pose = ModelPose(RequireModelNode(modelNode));
    auto* tcp = new TcpVisual(parent, modelNode);
    Scene::Get()->visuals[tcp->id] = tcp;
    tcp->setPose(pose);
    selection::VisualSelection::Get()->addLineVisual(tcp);
}

}  // namespace vrn::visual
