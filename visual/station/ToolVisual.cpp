#include "visual/station/ToolVisual.h"

#include "engine/Scene.h"
#include "suite/layout/Mechanism.h"
#include "visual/ModelNode.h"
#include "visual/station/MechanismFrame.h"

namespace vrn::visual {

ToolVisual::ToolVisual(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren)
    : MechanismVisual(modelNode, parent, buildChildren) {
    type = VisualType::Tool;
}

void ToolVisual::Build(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren) {
    const auto& model = dynamic_cast<const layout::Tool&>(RequireModelNode(modelNode));
    auto* tool = new ToolVisual(parent, modelNode, buildChildren);
    Scene::Get()->visuals[tool->id] = tool;
    for (const layout::Frame* frame : model.frames())
        BuildMechanismFrame(tool, *frame, "Tool Frame");
}

}  // namespace vrn::visual
