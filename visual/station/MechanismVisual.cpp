#include "visual/station/MechanismVisual.h"

#include "engine/Scene.h"
#include "suite/layout/Mechanism.h"
#include "visual/ModelNode.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/LinkVisual.h"
#include "visual/station/LocalFrame.h"

namespace vrn::visual {

namespace {

bool TakesPartInLooks(const Visual* child) {
    return child->type == VisualType::Frame ||
           (child->type == VisualType::Link && !child->attached);
}

template <class Action>
void ForEachLinkAndFrame(const Visual* mechanism, Action action) {
    for (Visual* child : mechanism->getChildren())
        if (TakesPartInLooks(child)) action(child);
}

}  // namespace

MechanismVisual::MechanismVisual(sdf::SdfNode* modelNode, Visual* parent)
    : Visual(&RequireModelNode(modelNode), parent) {}

// Delegates, so that the destructor takes the links along when a later step or a derived class
// throws.
MechanismVisual::MechanismVisual(sdf::SdfNode* modelNode, Visual* parent, bool buildChildren)
    : MechanismVisual(modelNode, parent) {
    const auto& model = dynamic_cast<const layout::Mechanism&>(*modelNode);
    for (layout::Link* link : model.links()) LinkVisual::Build(link, this, buildChildren);
    for (layout::MechanismNode* entry : model.nodes()) {
        auto* bare = new Visual(entry, this);
        Scene::Get()->visuals[bare->id] = bare;
    }
    baseFrame = new FrameVisual(this, 0, "Base Frame", VisualType::Frame);
    baseFrame->setVisible(false, /*cascade=*/true);
}

MechanismVisual::~MechanismVisual() { clearChildren(); }

void MechanismVisual::resetAppearance() {
    ForEachLinkAndFrame(this, [](Visual* child) { child->resetAppearance(); });
    HideOwnFrame(this, baseFrame);
}

void MechanismVisual::setSelected() {
    ForEachLinkAndFrame(this, [](Visual* child) { child->setSelected(); });
    ShowOwnFrame(this, baseFrame);
}

void MechanismVisual::setHighlighted() {
    ForEachLinkAndFrame(this, [](Visual* child) {
        const bool keepsLook = child->type == VisualType::Link && Scene::Get()->isSelected(child);
        if (!keepsLook) child->setHighlighted();
    });
}

void MechanismVisual::clearHighlightOrSelect() {
    ForEachLinkAndFrame(this, [](Visual* child) { child->clearHighlightOrSelect(); });
    HideOwnFrame(this, baseFrame);
}

}  // namespace vrn::visual
