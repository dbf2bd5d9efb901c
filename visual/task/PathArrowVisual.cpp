#include "visual/task/PathArrowVisual.h"

#include <stdexcept>

// The instance manager uses what this declares without including it.
#include <OgreIteratorWrapper.h>

#include <OgreInstanceBatch.h>
#include <OgreInstancedEntity.h>
#include <OgreInstanceManager.h>

#include "engine/Scene.h"
#include "visual/station/InstanceMaterial.h"

namespace vrn::visual {

namespace {

constexpr const char* materialName = "InstanceArrow";

}  // namespace

PathArrowVisual::PathArrowVisual(Visual* parent) : Visual(parent) {
    Ogre::InstanceManager* arrows = Scene::Get()->instanceManagers.at("InstancePathArrow");
    RequireInstanceMaterial(materialName);
    entity = arrows->createInstancedEntity(materialName);
    if (!entity) throw std::runtime_error("no instance is left for an arrow on a path");
    // A slot that an earlier arrow gave back keeps that one's visibility and scale.
    entity->setVisible(true);
    entity->setScale(Ogre::Vector3::UNIT_SCALE, /*doUpdate=*/true);
    attachObject(entity);
}

PathArrowVisual::~PathArrowVisual() { entity->_getOwner()->removeInstancedEntity(entity); }

void PathArrowVisual::setVisible(bool show, bool /*cascade*/) { entity->setVisible(show); }

void PathArrowVisual::setScale(double x, double y, double z) {
    entity->setScale(Ogre::Vector3(static_cast<Ogre::Real>(x), static_cast<Ogre::Real>(y),
                                   static_cast<Ogre::Real>(z)),
                     /*doUpdate=*/true);
}

}  // namespace vrn::visual
