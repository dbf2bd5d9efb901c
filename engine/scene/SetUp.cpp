// Making the scene: camera, lights, instance managers, grid, outline.

#include <array>
#include <cmath>
#include <format>
#include <stdexcept>

// The headers below use what these two declare without including them.
#include <OgreIteratorWrapper.h>
#include <OgreTexture.h>

#include <OgreCompositorChain.h>
#include <OgreCompositorManager.h>
#include <OgreInstanceManager.h>
#include <OgreLight.h>
#include <OgreRenderQueueListener.h>
#include <OgreRenderSystem.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "engine/RenderEngine.h"
#include "engine/Scene.h"
#include "suite/broker/SignalBroker.h"
#include "suite/common/AppLogger.h"
#include "view/Camera.h"
#include "view/Grid.h"
#include "view/UpAxis.h"
#include "visual/station/FrameVisual.h"

namespace vrn::visual {

namespace {

constexpr Ogre::uint8 overlayQueueGroup = 80;

constexpr const char* borderHighlight = "BorderHighlight";

constexpr std::uint32_t defaultGridCells = 20;
constexpr std::uint32_t defaultGridCellSize = 1000;

// What is drawn from group 80 on stands over the scene, whatever its depth.
class DepthClearListener : public Ogre::RenderQueueListener {
public:
    void renderQueueStarted(Ogre::uint8 queueGroupId, const Ogre::String&, bool&) override {
        if (queueGroupId == overlayQueueGroup)
            Ogre::Root::getSingleton().getRenderSystem()->clearFrameBuffer(
                Ogre::FBT_DEPTH, Ogre::ColourValue::Black, /*depth=*/1.0f, /*stencil=*/0);
    }
};

struct InstanceManagerEntry {
    const char* key;
    const char* ogreName;
    const char* mesh;
    std::size_t instancesPerBatch;
};

constexpr std::array instanceManagerTable{
    InstanceManagerEntry{"VRN_FrameInstanceManager", "VRN_FrameInstanceManager", "VRN_FrameMesh",
                         5000},
    InstanceManagerEntry{"InstanceRobTargetHighlight", "RobTargetHighlight", "VRN_FrameMesh", 5000},
    InstanceManagerEntry{"InstanceRobTargetSelected", "RobTargetSelected", "VRN_FrameMesh", 5000},
    InstanceManagerEntry{"InstancePathArrow", "PathArrow", "path_arrow_head", 500},
};

struct LightEntry {
    const char* name;
    float diffuse;
    float specular;
    Ogre::Vector3 direction;  // of a Z-up world
};

const std::array lightTable{
    LightEntry{"light1", 0.3f, 0.3f, {-1.5f, 0.0f, 0.3f}},
    LightEntry{"light2", 0.4f, 0.3f, {0.5f, -1.0f, 1.0f}},
    LightEntry{"light3", 0.3f, 0.25f, {2.0f, 1.0f, 1.75f}},
    LightEntry{"light4", 0.1f, 0.0f, {0.0f, 0.0f, -1.0f}},
};

Ogre::ColourValue Grey(float level) { return Ogre::ColourValue(level, level, level); }

std::string LightName(int index) { return std::format("light{}", index); }

}  // namespace

Scene::Scene(std::string sceneName)
    : name(std::move(sceneName)),
      sceneManager(gRenderEngine->root->getSceneManager("VRN_SceneManager")),
      stateManager(std::make_unique<VisualStateManager>()) {
    sceneManager->addRenderQueueListener(new DepthClearListener);
    createInstanceManagers();
    root = new Visual(this);
}

void Scene::createInstanceManagers() {
    for (const InstanceManagerEntry& entry : instanceManagerTable)
        instanceManagers[entry.key] = sceneManager->createInstanceManager(
            entry.ogreName, entry.mesh, Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME,
            Ogre::InstanceManager::HWInstancingBasic, entry.instancesPerBatch, Ogre::IM_USEALL,
            /*subMeshIdx=*/0);
}

void Scene::Init(const SceneSettings& settingsIn) {
    Instance = new Scene("Halvorn Scene");
    Instance->settings = settingsIn;
    gCamera = Instance->createCamera("camera0");
    auto* worldFrame =
        new FrameVisual(Instance->root, static_cast<float>(Instance->settings.frameSize));
    Instance->visuals[worldFrame->id] = worldFrame;
    Instance->sceneManager->setAmbientLight(Grey(0.3f));
    Instance->createLights();
}

Camera* Scene::createCamera(const std::string& cameraName) { return new Camera(cameraName, this); }

void Scene::createLights() {
    const Ogre::Quaternion turn = UpAxisTurn(settings.verticalDir);
    for (const LightEntry& entry : lightTable) {
        Ogre::Light* light = sceneManager->createLight(entry.name, Ogre::Light::LT_DIRECTIONAL);
        light->setDiffuseColour(Grey(entry.diffuse));
        light->setSpecularColour(Grey(entry.specular));
        Ogre::SceneNode* node = sceneManager->getRootSceneNode()->createChildSceneNode();
        node->attachObject(light);
        node->setDirection(turn * entry.direction, Ogre::Node::TS_PARENT,
                           Ogre::Vector3::NEGATIVE_UNIT_Z);
    }
}

void Scene::setAmbientLight(const Ogre::ColourValue& colour) {
    sceneManager->setAmbientLight(colour);
    broker::SignalBroker::updateScene();
}

void Scene::setLightDir(int index, float x, float y, float z) {
    Ogre::SceneNode* node = sceneManager->getLight(LightName(index))->getParentSceneNode();
    // A node that is turned to nowhere takes the bounds of the whole scene along, and the engine
    // stops.
    const Ogre::Vector3 direction(x, y, z);
    if (!std::isfinite(direction.squaredLength()))
        throw std::invalid_argument("the direction of a light must be finite");
    node->setDirection(direction, Ogre::Node::TS_PARENT, Ogre::Vector3::NEGATIVE_UNIT_Z);
    broker::SignalBroker::updateScene();
}

void Scene::setLightEnable(int index, bool on) {
    sceneManager->getLight(LightName(index))->setVisible(on);
    broker::SignalBroker::updateScene();
}

void Scene::setLightDiffuse(int index, float r, float g, float b) {
    sceneManager->getLight(LightName(index))->setDiffuseColour(Ogre::ColourValue(r, g, b));
    broker::SignalBroker::updateScene();
}

void Scene::setLightSpecular(int index, float r, float g, float b) {
    sceneManager->getLight(LightName(index))->setSpecularColour(Ogre::ColourValue(r, g, b));
    broker::SignalBroker::updateScene();
}

void Scene::setBorderHighlightEnabled(bool on) {
    if (!gCamera || !gCamera->viewport) return;
    auto& compositors = Ogre::CompositorManager::getSingleton();
    // Adding or enabling one that does not exist throws, and each selection would end its batch.
    if (!compositors.getByName(borderHighlight, Ogre::RGN_AUTODETECT)) {
        AppLogger::inst()->trace(
            std::format("{}: no such compositor; check the resource package", borderHighlight));
        return;
    }
    Ogre::Viewport* viewport = gCamera->viewport;
    // A host's own compositor makes a chain without ours.
    const bool present = compositors.hasCompositorChain(viewport) &&
                         compositors.getCompositorChain(viewport)->getCompositorPosition(
                             borderHighlight) != Ogre::CompositorChain::NPOS;
    if (!present) {
        AppLogger::inst()->trace(std::format("addCompositor: {}", borderHighlight));
        // Null when the graphics card supports none of its techniques; Ogre has logged why.
        if (!compositors.addCompositor(viewport, borderHighlight, /*addPosition=*/-1)) return;
    }
    compositors.setCompositorEnabled(viewport, borderHighlight, on);
}

void Scene::setGrid(bool on) {
    if (!on || grid) return;
    gridCells = defaultGridCells;
    gridCellSize = defaultGridCellSize;
    grid = new Grid(this, gridCells, gridCellSize);
}

}  // namespace vrn::visual
