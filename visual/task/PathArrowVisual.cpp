#include "visual/task/PathArrowVisual.h"

#include <stdexcept>

// The instance manager uses what this declares without including it.
#include <OgreIteratorWrapper.h>

#include <OgreInstanceBatch.h>
#include <OgreInstancedEntity.h>
#include <OgreInstanceManager.h>

#include "engine/Scene.h"
#include "visual/geometry/PointPicture.h"
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
    // The engine takes a bound that is no number for a bug of its own, and stops.
    if (!IsDrawable(rob::PosTemplate<double>(x, y, z)))
        throw std::invalid_argument(
            "the scale of an arrow on a path must be finite and not beyond 1e15");
    entity->setScale(Ogre::Vector3(static_cast<Ogre::Real>(x), static_cast<Ogre::Real>(y),
                                   static_cast<Ogre::Real>(z)),
                     /*doUpdate=*/true);
}

}  // namespace vrn::visual
