#include "visual/station/UserComponentVisual.h"

#include <algorithm>
#include <array>

#include "engine/Scene.h"
#include "suite/sdf/SdfManager.h"
#include "suite/sdf/SdfNode.h"
#include "visual/ModelNode.h"
#include "visual/process/SprayVisual.h"
#include "visual/station/Appearance.h"
#include "visual/station/AssemblyVisual.h"
#include "visual/station/DeviceVisual.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/LocalFrame.h"
#include "visual/station/PartVisual.h"
#include "visual/station/SensorVisual.h"
#include "visual/station/ToolVisual.h"

namespace vrn::visual {

namespace {

constexpr std::array admittedTypes{VisualType::Tool, VisualType::Device, VisualType::Assembly,
                                   VisualType::Part, VisualType::UserComponent};

void BuildChild(sdf::SdfNode* child) {
    Visual* parent = Scene::Get()->resolveParentVisual(child);
    switch (child->objectType) {
        case sdf::ObjectType::Assembly:
            return AssemblyVisual::Build(parent, child);
        case sdf::ObjectType::Part:
            return PartVisual::Build(parent, child);
        case sdf::ObjectType::Tool:
            return ToolVisual::Build(parent, child, /*buildChildren=*/true);
        case sdf::ObjectType::Device:
            return DeviceVisual::Build(parent, child, /*buildChildren=*/true);
        case sdf::ObjectType::UserComponent:
            return UserComponentVisual::Build(parent, child);
        case sdf::ObjectType::SprayComponent:
            SprayVisual::Build(parent, child);
            return;
        default:
            if (sdf::IsKindOf(child->objectType, sdf::ObjectType::Sensor))
                SensorVisual::Build(parent, child);
    }
}

}  // namespace

UserComponentVisual::UserComponentVisual(Visual* parent, sdf::SdfNode* modelNode)
    : Visual(modelNode, parent), localFrame(MakeLocalFrame(this)) {
    type = VisualType::UserComponent;
}

void UserComponentVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    auto& model = dynamic_cast<sdf::SdfContainer&>(RequireModelNode(modelNode));
    auto* component = new UserComponentVisual(parent, modelNode);
    Scene::Get()->visuals[component->id] = component;
    for (const std::uint32_t childId : model.getObjChildren())
        BuildChild(sdf::SdfManager::inst()->at(childId));
}

bool UserComponentVisual::canApplyMaterial(const Visual* child) {
    return std::find(admittedTypes.begin(), admittedTypes.end(), child->type) !=
           admittedTypes.end();
}

void UserComponentVisual::resetAppearance() {
    ForEachAdmittedChild(this, canApplyMaterial, [](Visual* child) { child->resetAppearance(); });
    HideOwnFrame(this, localFrame);
}

void UserComponentVisual::setSelected() {
    ForEachAdmittedChild(this, canApplyMaterial, [](Visual* child) { child->setSelected(); });
    ShowLocalFrame(this, localFrame);
}

void UserComponentVisual::setHighlighted() { HighlightChildren(this, canApplyMaterial); }

}  // namespace vrn::visual
