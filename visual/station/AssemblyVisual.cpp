#include "visual/station/AssemblyVisual.h"

#include "engine/Scene.h"
#include "suite/sdf/SdfManager.h"
#include "suite/sdf/SdfNode.h"
#include "visual/ModelNode.h"
#include "visual/station/Appearance.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/LocalFrame.h"
#include "visual/station/PartVisual.h"

namespace vrn::visual {

AssemblyVisual::AssemblyVisual(Visual* parent, sdf::SdfNode* modelNode)
    : Visual(modelNode, parent), localFrame(MakeLocalFrame(this)) {
    type = VisualType::Assembly;
}

void AssemblyVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    auto& model = dynamic_cast<sdf::SdfContainer&>(RequireModelNode(modelNode));
    auto* assembly = new AssemblyVisual(parent, modelNode);
    Scene* scene = Scene::Get();
    scene->visuals[assembly->id] = assembly;
    for (const std::uint32_t childId : model.getObjChildren()) {
        sdf::SdfNode* child = sdf::SdfManager::inst()->at(childId);
        Visual* childParent = scene->resolveParentVisual(child);
        if (child->objectType == sdf::ObjectType::Assembly)
            AssemblyVisual::Build(childParent, child);
        else
            PartVisual::Build(childParent, child);
    }
}

bool AssemblyVisual::CanApplyMaterial(const Visual* child) {
    return child->type == VisualType::Assembly || child->type == VisualType::Part;
}

void AssemblyVisual::resetAppearance() {
    ForEachAdmittedChild(this, CanApplyMaterial, [](Visual* child) { child->resetAppearance(); });
    HideOwnFrame(this, localFrame);
}

void AssemblyVisual::setSelected() {
    ForEachAdmittedChild(this, CanApplyMaterial, [](Visual* child) { child->setSelected(); });
    ShowLocalFrame(this, localFrame);
}

void AssemblyVisual::setHighlighted() { HighlightChildren(this, CanApplyMaterial); }

void AssemblyVisual::clearHighlightOrSelect() {
    ForEachAdmittedChild(this, CanApplyMaterial,
                         [](Visual* child) { child->clearHighlightOrSelect(); });
    HideOwnFrame(this, localFrame);
}

}  // namespace vrn::visual
