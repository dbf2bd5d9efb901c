// Handles: where they hang, and when they are shown.

#include <initializer_list>
#include <stdexcept>
#include <utility>

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "visual/handle/DragHandle.h"
#include "visual/handle/PathEndsHandle.h"
#include "visual/handle/VectorHandle.h"

namespace vrn::visual {

namespace {

template <class VisualClass>
VisualClass* Require(VisualClass* visual) {
    if (!visual)
        throw std::invalid_argument("neither the handle nor what it hangs on must be null");
    return visual;
}

void Release(GuiVisual* gui) {
    gui->detach();
    selection::VisualSelection::Get()->setCompoundObjectEnabled(gui, false);
}

// The library's own handles live as long as the process, also one that hangs where the host left it
// when it attached another.
bool ReleaseIfLasting(const Visual* dying) {
    for (GuiVisual* lasting :
         std::initializer_list<GuiVisual*>{DragHandle::Get(), gVectorHandle, gPathEndsHandle}) {
        if (lasting != dying) continue;
        Release(lasting);
        return true;
    }
    return false;
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
    const Visual* above = attachedGui;
    while (above && above != dying) above = above->getParent();
    // What the handle hangs on goes, the handle goes on living, attached to nothing.
    if (above) Release(std::exchange(attachedGui, nullptr));
    return dying->type == VisualType::Helper && ReleaseIfLasting(dying);
}

}  // namespace vrn::visual
