#include "visual/station/InstanceFrameVisual.h"

#include <array>
#include <utility>

// The instance manager uses what this declares without including it.
#include <OgreIteratorWrapper.h>

#include <OgreInstanceBatch.h>
#include <OgreInstancedEntity.h>
#include <OgreInstanceManager.h>

#include "engine/LiveSetting.h"
#include "engine/Scene.h"
#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "visual/station/FrameSize.h"
#include "visual/station/InstanceMaterial.h"

namespace vrn::visual {

namespace {

// Strings, since each target asks the scene for its manager.
const std::string mainManager = "VRN_FrameInstanceManager";
// Manager and material have one name.
const std::string highlightName = "InstanceRobTargetHighlight";
const std::string selectedName = "InstanceRobTargetSelected";

constexpr Ogre::uint8 lineQueueGroup = 60;
constexpr std::size_t colourParameter = 0;
// Asks for the colours of the mesh.
const Ogre::Vector4 vertexColours(0, 0, 0, -1);

// What is left of the x and y axes when only z is shown, whatever the size: too short to be seen.
constexpr float hiddenAxisLength = 0.01f;

Ogre::Vector3 ScaleOfSize(float size) {
    if (InstanceFrameVisual::showsZAxisOnly()) return {hiddenAxisLength, hiddenAxisLength, size};
    return {size, size, size};
}

}  // namespace

InstanceFrameVisual::InstanceFrameVisual(Visual* parent, std::uint32_t idIn,
                                         const std::string& name, VisualType frameType,
                                         std::string instanceMaterialName)
    : Visual(idIn, name, parent),
      instanceMaterial(std::move(instanceMaterialName)),
      frameSize(FrameSizeOfType(frameType)) {
    init(frameType);
}

InstanceFrameVisual::InstanceFrameVisual(Visual* parent, std::uint32_t idIn, const SharedName& name,
                                         VisualType frameType, std::string instanceMaterialName,
                                         const rob::PoseTemplate<float>* pose)
    : Visual(idIn, name, parent),
      instanceMaterial(std::move(instanceMaterialName)),
      frameSize(FrameSizeOfType(frameType)) {
    // First: the instance is placed in the world as soon as it is there, and then once is enough.
    if (pose) placeNew(*pose);
    init(frameType);
}

void InstanceFrameVisual::init(VisualType frameType) {
    type = frameType;
    mainEntity = createEntity(mainManager, instanceMaterial, frameSize);
}

void InstanceFrameVisual::enterRegistry() {
    Visual*& entry = Scene::Get()->visuals[id];
    older = dynamic_cast<InstanceFrameVisual*>(entry);
    if (older) {
        newer = std::exchange(older->newer, this);
        if (newer) newer->older = this;
    }
    entry = this;
}

void InstanceFrameVisual::leaveRegistry() {
    if (older) older->newer = newer;
    if (newer) newer->older = older;
    InstanceFrameVisual* other = newer ? newer : older;
    if (other) Scene::Get()->visuals.try_emplace(id, other);
}

InstanceFrameVisual::~InstanceFrameVisual() {
    leaveRegistry();
    auto* picking = selection::VisualSelection::Get();
    if (picking && picking->hasVisual(this)) picking->removeObject(this);
    for (Ogre::InstancedEntity* look : {mainEntity, highlightEntity, selectedEntity})
        if (look) look->_getOwner()->removeInstancedEntity(look);
}

Ogre::InstancedEntity* InstanceFrameVisual::createEntity(const std::string& managerKey,
                                                         const std::string& materialName,
                                                         float size) {
    RequireInstanceMaterial(materialName);
    Ogre::InstancedEntity* look =
        Scene::Get()->instanceManagers.at(managerKey)->createInstancedEntity(materialName);
    // A slot that an earlier target gave back keeps that one's visibility.
    look->setVisible(true);
    // A batch is drawn as one: its own queue group and colour count, those of the instance do not.
    look->_getOwner()->setRenderQueueGroup(lineQueueGroup);
    look->_getOwner()->setCustomParameter(colourParameter, vertexColours);
    attachObject(look);
    // Behind the attaching, which would work out the place in the world as well. The engine wants
    // it known from now on, and not only from the next frame.
    look->setScale(ScaleOfSize(size), /*doUpdate=*/true);
    return look;
}

bool InstanceFrameVisual::showsZAxisOnly() {
    return LoadLive(Scene::Get()->settings.drawTargetZAxisOnly);
}

void InstanceFrameVisual::setFrameSize(unsigned size) { scaleTo(static_cast<float>(size)); }

void InstanceFrameVisual::scaleTo(float size) {
    for (Ogre::InstancedEntity* look : {mainEntity, highlightEntity, selectedEntity})
        if (look) look->setScale(ScaleOfSize(size), /*doUpdate=*/true);
    auto* picking = selection::VisualSelection::Get();
    if (!picking->hasVisual(this)) return;
    const selection::SelectableObject* former = picking->getObject(this);
    const bool detectable = former->detectable;
    const bool enabled = former->enabled;
    // The target alone: what hangs below it has the size that it had.
    picking->removeObject(this);
    picking->addFrameVisual(this);
    picking->getObject(this)->detectable = detectable;
    picking->getObject(this)->enabled = enabled;
}

float InstanceFrameVisual::getFrameSize() const { return mainEntity->getScale().z; }

void InstanceFrameVisual::updateEntity(bool /*zAxisOnly*/) { scaleTo(FrameSizeOfType(type)); }

void InstanceFrameVisual::showOnly(const Ogre::InstancedEntity* look) {
    for (Ogre::InstancedEntity* each : {mainEntity, highlightEntity, selectedEntity})
        if (each) each->setVisible(each == look);
}

void InstanceFrameVisual::setVisible(bool show, bool cascade) {
    Visual::setVisible(show, cascade);
    if (show) InstanceFrameVisual::resetAppearance();
}

void InstanceFrameVisual::resetAppearance() { showOnly(mainEntity); }

void InstanceFrameVisual::setSelected() {
    if (!selectedEntity)
        selectedEntity = createEntity(selectedName, selectedName, FrameSizeOfType(type));
    showOnly(selectedEntity);
}

void InstanceFrameVisual::setHighlighted() {
    if (!highlightEntity)
        highlightEntity = createEntity(highlightName, highlightName, FrameSizeOfType(type));
    showOnly(highlightEntity);
}

void InstanceFrameVisual::clearHighlightOrSelect() { setVisible(visible, /*cascade=*/false); }

}  // namespace vrn::visual
