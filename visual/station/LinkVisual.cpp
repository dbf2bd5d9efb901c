#include "visual/station/LinkVisual.h"

#include "engine/Scene.h"
#include "suite/layout/Mechanism.h"
#include "visual/ModelNode.h"
#include "visual/station/Appearance.h"
#include "visual/station/AssemblyVisual.h"
#include "visual/station/PartVisual.h"

namespace vrn::visual {

namespace {

void BuildChild(sdf::SdfNode* child) {
    Visual* parent = Scene::Get()->resolveParentVisual(child);
    if (child->objectType == sdf::ObjectType::Part) PartVisual::Build(parent, child);
    if (child->objectType == sdf::ObjectType::Assembly) AssemblyVisual::Build(parent, child);
}

}  // namespace

LinkVisual::LinkVisual(sdf::SdfNode* modelNode, Visual* parent) : Visual(modelNode, parent) {
    type = VisualType::Link;
}

LinkVisual* LinkVisual::Build(sdf::SdfNode* modelNode, Visual* parent, bool buildChildren) {
    auto& model = dynamic_cast<layout::Link&>(RequireModelNode(modelNode));
    auto* link = new LinkVisual(modelNode, parent);
    Scene::Get()->visuals[link->id] = link;
    if (buildChildren)
        for (sdf::SdfObject* child : model.getChildren()) BuildChild(child);
    return link;
}

bool LinkVisual::canApplyMaterial(const Visual* child) {
    return child->type == VisualType::Assembly || child->type == VisualType::Part;
}

void LinkVisual::resetAppearance() {
    ForEachAdmittedChild(this, canApplyMaterial, [](Visual* child) { child->resetAppearance(); });
}

void LinkVisual::setSelected() {
    ForEachAdmittedChild(this, canApplyMaterial, [](Visual* child) { child->setSelected(); });
}

void LinkVisual::setHighlighted() { HighlightChildren(this, canApplyMaterial); }

void LinkVisual::clearHighlightOrSelect() {
    ForEachAdmittedChild(this, canApplyMaterial,
                         [](Visual* child) { child->clearHighlightOrSelect(); });
}

}  // namespace vrn::visual
