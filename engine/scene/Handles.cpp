// Handles: where they hang, and when they are shown.

#include <stdexcept>

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "visual/handle/DragHandle.h"

namespace vrn::visual {

namespace {

template <class VisualClass>
VisualClass* Require(VisualClass* visual) {
    if (!visual)
        throw std::invalid_argument("neither the handle nor what it hangs on must be null");
    return visual;
}

}  // namespace

void Scene::showDragHandle() {
    post([] { DragHandle::Get()->show(); });
}

void Scene::hideDragHandle() {
    post([] { DragHandle::Get()->hide(); });
}

void Scene::resetDragHandle() {
    post([] { DragHandle::Get()->resetMode(); });
}

void Scene::attachGuiTo(GuiVisual* gui, Visual* visual, const rob::PoseTemplate<float>& pose) {
    Require(gui);
    Require(visual);
    post([this, gui, visual, pose] { doAttachGui(gui, visual, pose); });
}

void Scene::attachGuiTo(GuiVisual* gui, unsigned int visualId,
                        const rob::PoseTemplate<float>& pose) {
    Require(gui);
    post([this, gui, visualId, pose] { doAttachGui(gui, visuals.at(visualId), pose); });
}

void Scene::doAttachGui(GuiVisual* gui, Visual* visual, const rob::PoseTemplate<float>& pose) {
    gui->attachTo(visual);
    gui->setPose(pose);
    attachedGui = gui;
}

void Scene::detachGui(GuiVisual* gui) {
    Require(gui);
    post([this, gui] {
        gui->detach();
        attachedGui = nullptr;
    });
}

bool Scene::releaseAttachedGui(const Visual* dying) {
    // The host keeps its handle: that goes on living, attached to nothing.
    const bool isHandle = attachedGui == dying;
    const Visual* above = attachedGui;
    while (above && above != dying) above = above->getParent();
    if (!above) return false;
    attachedGui->detach();
    selection::VisualSelection::Get()->setCompoundObjectEnabled(attachedGui, false);
    attachedGui = nullptr;
    return isHandle;
}

}  // namespace vrn::visual
