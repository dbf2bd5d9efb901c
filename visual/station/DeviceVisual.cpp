#include "visual/station/DeviceVisual.h"

#include "engine/Scene.h"
#include "suite/layout/Mechanism.h"
#include "visual/ModelNode.h"
#include "visual/station/MechanismFrame.h"

namespace vrn::visual {

DeviceVisual::DeviceVisual(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren)
    : MechanismVisual(modelNode, parent, buildChildren) {
    type = VisualType::Device;
}

void DeviceVisual::Build(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren) {
    const auto& model = dynamic_cast<const layout::Device&>(RequireModelNode(modelNode));
    auto* device = new DeviceVisual(parent, modelNode, buildChildren);
    Scene* scene = Scene::Get();
    scene->visuals[device->id] = device;
    for (const layout::Frame* frame : model.frames())
        BuildMechanismFrame(scene->visuals.at(frame->parentId), *frame, "Device Frame");
}

}  // namespace vrn::visual
