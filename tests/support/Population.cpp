#include "tests/support/Population.h"

#include <OgreEntity.h>
#include <OgreInstanceBatch.h>
#include <OgreInstanceManager.h>
#include <OgreIteratorWrapper.h>
#include <OgreManualObject.h>
#include <OgreMaterialManager.h>
#include <OgreMeshManager.h>
#include <OgreSceneManager.h>
#include <OgreTextureManager.h>

#include "engine/Scene.h"
#include "mesh/MeshManager.h"
#include "selection/VisualSelection.h"

namespace vrn::test {

namespace {

struct SceneLists : Ogre::SceneManager {
    static auto nodes() { return &SceneLists::mSceneNodes; }
};

struct MeshLists : visual::MeshManager {
    static auto global() { return &MeshLists::globalMeshes; }
    static auto brought() { return &MeshLists::meshes; }
    static auto ofShapes() { return &MeshLists::shapeMeshRefs; }
};

std::size_t CountResources(Ogre::ResourceManager& manager) {
    std::size_t count = 0;
    for (auto it = manager.getResourceIterator(); it.hasMoreElements(); it.moveNext()) ++count;
    return count;
}

std::size_t CountBatches(const Ogre::InstanceManager& manager) {
    std::size_t count = 0;
    for (auto it = manager.getInstanceBatchMapIterator(); it.hasMoreElements();)
        count += it.getNext().size();
    return count;
}

}  // namespace

std::map<std::string, std::size_t> Population() {
    visual::Scene& scene = *visual::Scene::Get();
    Ogre::SceneManager& engine = *scene.sceneManager;
    const visual::MeshManager& meshes = *visual::MeshManager::Get();
    std::map<std::string, std::size_t> counts{
        {"Ogre meshes", CountResources(Ogre::MeshManager::getSingleton())},
        {"Ogre materials", CountResources(Ogre::MaterialManager::getSingleton())},
        {"Ogre textures", CountResources(Ogre::TextureManager::getSingleton())},
        {"scene nodes", (engine.*SceneLists::nodes()).size()},
        {"entities", engine.getMovableObjects("Entity").size()},
        {"manual objects", engine.getMovableObjects("ManualObject").size()},
        {"visuals", scene.visuals.size()},
        {"temporary visuals", scene.tempVisuals.size()},
        {"pickable objects", selection::VisualSelection::Get()->objects.size()},
        {"global mesh records", (meshes.*MeshLists::global()).size()},
        {"mesh records", (meshes.*MeshLists::brought()).size()},
        {"meshes of shapes", (meshes.*MeshLists::ofShapes()).size()},
    };
    for (const auto& [key, manager] : scene.instanceManagers)
        counts["batches of " + key] = CountBatches(*manager);
    return counts;
}

}  // namespace vrn::test
