#include "visual/handle/FixedSizeHandle.h"

#include <cmath>

#include <OgreSceneNode.h>

#include "engine/LiveSetting.h"
#include "engine/Scene.h"
#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "view/Camera.h"
#include "visual/VisualIterator.h"

namespace vrn::visual {

namespace {

constexpr double scalePerDistance = 0.00025;
constexpr float leastHandleScale = 0.5f;
constexpr float mostHandleScale = 10.0f;

float HandleScale() {
    const float wanted = LoadLive(Scene::Get()->settings.handleScale);
    return wanted >= leastHandleScale && wanted <= mostHandleScale ? wanted : 1.0f;
}

// A handle that cannot be picked is no reason to take picking out of date: the drag handle is
// registered from the start, and each move of the camera would. Its boxes follow at the next
// update, which comes at the latest when it is enabled.
void NoteNewSize(Visual* handle) {
    auto* const selection = selection::VisualSelection::Get();
    bool canBePicked = false;
    for (ForestIterator<Visual> it(handle); it.next();) {
        const auto entry = selection->objects.find(it.value());
        if (entry == selection->objects.end()) continue;
        entry->second->worldBoxDirty = true;
        canBePicked = canBePicked || entry->second->enabled;
    }
    if (canBePicked) selection->markDirty(handle);
}

}  // namespace

void FixedSizeHandle::CameraListener::cameraPreRenderScene(Ogre::Camera* /*camera*/) {
    handle->updateScale();
}

FixedSizeHandle::FixedSizeHandle(const std::string& name, Visual* parent)
    : GuiVisual(name), cameraListener(std::make_unique<CameraListener>(this)) {
    if (parent) attachTo(parent);
    if (gCamera) gCamera->camera->addListener(cameraListener.get());
}

FixedSizeHandle::~FixedSizeHandle() {
    if (isRegisteredInSelection()) unregisterFromSelection();
    if (gCamera) gCamera->camera->removeListener(cameraListener.get());
}

void FixedSizeHandle::updateScale() {
    if (!gCamera || !node) return;
    const float distance = (gCamera->getWorldPosition() - getWorldPosition()).length();
    const auto scale =
        static_cast<float>(static_cast<double>(distance) * scalePerDistance * HandleScale());
    // Every picture comes by here: a mark each time would keep picking from ever being up to date,
    // and what is refused would end it.
    const Ogre::Vector3 wanted(scale, scale, scale);
    if (node->getScale() == wanted || !std::isfinite(scale)) return;
    setScale(scale, scale, scale);
    if (isRegisteredInSelection()) NoteNewSize(this);
}

void FixedSizeHandle::registerToSelection(bool priority) {
    if (registeredInSelection) return;
    selection::VisualSelection::Get()->addMeshVisual(this, /*detectable=*/false, priority);
    registeredInSelection = true;
}

void FixedSizeHandle::unregisterFromSelection() {
    if (!registeredInSelection) return;
    selection::VisualSelection::Get()->removeCompoundObject(this);
    registeredInSelection = false;
}

}  // namespace vrn::visual
