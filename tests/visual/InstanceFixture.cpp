#include "tests/visual/InstanceFixture.h"

#include <OgreIteratorWrapper.h>

#include <OgreInstanceBatch.h>
#include <OgreInstancedEntity.h>
#include <OgreInstanceManager.h>
#include <OgreMaterial.h>
#include <OgreSceneNode.h>

namespace vrn::test {

void InstanceVisuals::TearDown() {
    StationVisuals::TearDown();
    EXPECT_EQ(instancesInUse(), 0u) << "the test left instances behind";
}

InstanceVisuals::Target* InstanceVisuals::addTarget(std::uint32_t id, VisualType type) {
    auto* target =
        new Target(root(), id, "target " + std::to_string(id), type, "InstanceRobTarget");
    scene().visuals[id] = target;
    return target;
}

std::map<std::string, Ogre::InstancedEntity*> InstanceVisuals::looksOf(const Target* target) {
    std::map<std::string, Ogre::InstancedEntity*> looks;
    for (Ogre::MovableObject* object : target->node->getAttachedObjects()) {
        auto* look = dynamic_cast<Ogre::InstancedEntity*>(object);
        looks[look->_getOwner()->getMaterial()->getName()] = look;
    }
    return looks;
}

std::vector<std::string> InstanceVisuals::shownLooks(const Target* target) {
    std::vector<std::string> shown;
    for (const auto& [material, look] : looksOf(target))
        if (look->getVisible()) shown.push_back(material);
    return shown;
}

Ogre::InstancedEntity* InstanceVisuals::mainOf(const Target* target) {
    return dynamic_cast<Ogre::InstancedEntity*>(target->node->getAttachedObject(0));
}

std::size_t InstanceVisuals::instancesInUse() {
    std::size_t count = 0;
    for (const auto& [key, manager] : scene().instanceManagers) {
        auto materials = manager->getInstanceBatchMapIterator();
        while (materials.hasMoreElements()) {
            for (Ogre::InstanceBatch* batch : materials.getNext()) {
                Ogre::InstanceBatch::InstancedEntityVec entities;
                Ogre::InstanceBatch::CustomParamsVec parameters;
                batch->getInstancedEntitiesInUse(entities, parameters);
                count += entities.size();
            }
        }
    }
    return count;
}

}  // namespace vrn::test
