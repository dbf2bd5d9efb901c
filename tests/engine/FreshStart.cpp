// Cases of starting the engine that each need a process in which nothing has started yet. The first
// argument names the case; what is wrong goes to standard error, and the exit status is how many
// things were.

#include <cmath>
#include <functional>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>

// The compositor headers use what these two declare without including them.
#include <OgreIteratorWrapper.h>
#include <OgreTexture.h>

#include <OgreCompositorManager.h>
#include <OgreEntity.h>
#include <OgreLight.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "engine/RenderEngine.h"
#include "engine/Scene.h"
#include "engine/SceneSettings.h"
#include "engine/visualapi.h"
#include "mesh/MeshManager.h"
#include "selection/VisualSelection.h"
#include "suite/common/Resources.h"
#include "view/Camera.h"
#include "view/Grid.h"
#include "visual/preview/PreviewVisualsHelper.h"
#include "visual/Visual.h"

namespace {

using vrn::visual::Camera;
using vrn::visual::PreviewVisualsHelper;
using vrn::visual::Scene;
using vrn::visual::SceneSettings;

int failures = 0;

void Check(bool holds, const std::string& what) {
    if (holds) return;
    ++failures;
    std::cerr << "not so: " << what << '\n';
}

template <class Exception>
void CheckThrows(const std::function<void()>& action, const std::string& what) {
    try {
        action();
    } catch (const Exception&) {
        return;
    }
    Check(false, what);
}

void Start(const SceneSettings& settings = {}) {
    vrn::selection::Init();
    vrn::visual::Init(320, 240, settings);
    Camera::Get()->setRenderTarget(vrn::visual::gRenderEngine->root->getRenderTarget("ogrewindow"));
}

void Frame() {
    Scene::Get()->processMsgs();
    vrn::selection::VisualSelection::Get()->update();
    Check(vrn::visual::gRenderEngine->root->renderOneFrame(), "the frame goes on to the next");
}

void DrawFrames() {
    Start();
    Frame();
    Frame();
    vrn::visual::ReleaseResources();
}

void CheckReleasedTwice() {
    Start();
    Scene* scene = Scene::Get();
    Check(PreviewVisualsHelper::Get() == vrn::visual::gPreviewVisualsHelper, "there is a helper");
    const std::size_t children = scene->root->getChildren().size();
    vrn::visual::ReleaseResources();
    vrn::visual::ReleaseResources();
    // Six crosses, three lines, two frames.
    Check(scene->root->getChildren().size() == children - 11, "the helper's visuals go with it");
    Check(!PreviewVisualsHelper::Get(), "no helper is handed out any more");
    Check(vrn::visual::gPreviewVisualsHelper != nullptr, "the pointer is not cleared");
    scene->removeAllPositionVisuals();
    Frame();
}

void CheckBeforeInit() {
    vrn::visual::ReleaseResources();
    Check(!Scene::Get(), "there is no scene before Init");
    Check(!Camera::Get(), "there is no camera before Init");
    Check(!vrn::visual::gRenderEngine, "there is no engine before Init");
    Check(!vrn::visual::gMeshMgr, "there is no mesh manager before Init");
    Check(!vrn::selection::VisualSelection::Get(), "there is no selection before its Init");
}

void CheckSelectionFirst() {
    CheckThrows<std::logic_error>([] { vrn::visual::Init(320, 240, {}); },
                                  "Init throws std::logic_error without the selection");
    Check(!vrn::visual::gRenderEngine, "the refused Init made no engine");
    DrawFrames();
}

void CheckSize() {
    vrn::selection::Init();
    for (const int size : {0, -1}) {
        CheckThrows<std::invalid_argument>([&] { vrn::visual::Init(size, 240, {}); },
                                           "a width is needed");
        CheckThrows<std::invalid_argument>([&] { vrn::visual::Init(320, size, {}); },
                                           "a height is needed");
    }
    DrawFrames();
}

void CheckWithoutPackage() {
    vrn::common::SetResourcePath("/nonexistent/resources.zip");
    Start();
    Scene* scene = Scene::Get();
    auto* holder = new vrn::visual::Visual(scene->root);
    holder->attachObject(scene->sceneManager->createEntity("frame_axis_head"));
    holder->setMaterial("Body", "BodySelected", "BodyHighlighted");
    holder->resetAppearance();
    scene->visuals[holder->id] = holder;
    scene->setVisualSelected(holder->id);
    Frame();
    Check(!Ogre::CompositorManager::getSingleton().hasCompositorChain(Camera::Get()->viewport),
          "a missing compositor is not added");
    Check(scene->isSelected(holder), "the selection holds without the outline");
}

bool IsClose(const Ogre::Vector3& a, const Ogre::Vector3& b) { return (a - b).length() < 1e-4f; }

/// `turned` takes a direction of a Z-up world to the tested one, `start` is the settings' start
/// position there.
void CheckVertical(int verticalDir, const std::function<Ogre::Vector3(Ogre::Vector3)>& turned,
                   const std::function<Ogre::Vector3(Ogre::Vector3)>& start) {
    SceneSettings settings;
    settings.verticalDir = verticalDir;
    settings.fromPos = {300, -700, 500};
    settings.targetPos = {10, 20, 30};
    Start(settings);
    Scene* scene = Scene::Get();
    const std::map<std::string, Ogre::Vector3> lights{{"light1", {-1.5f, 0.0f, 0.3f}},
                                                      {"light2", {0.5f, -1.0f, 1.0f}},
                                                      {"light3", {2.0f, 1.0f, 1.75f}},
                                                      {"light4", {0.0f, 0.0f, -1.0f}}};
    for (const auto& [name, direction] : lights)
        Check(IsClose(scene->sceneManager->getLight(name)->getDerivedDirection(),
                      turned(direction).normalisedCopy()),
              name + " is turned with the vertical");
    const Ogre::Vector3 up = turned({0, 0, 1});
    Check(IsClose(scene->grid->visual->node->getOrientation() * Ogre::Vector3::UNIT_Z, up),
          "the grid's normal is the vertical");

    const Ogre::SceneNode* camera = Camera::Get()->node;
    const Ogre::Vector3 expected = start({300, -700, 500});
    Check(IsClose(camera->getPosition(), expected), "the camera starts at its place");
    const Ogre::Vector3 forward = camera->getOrientation() * Ogre::Vector3::NEGATIVE_UNIT_Z;
    Check(IsClose(forward, (Ogre::Vector3(10, 20, 30) - expected).normalisedCopy()),
          "the camera looks at the target");
    Check(std::abs((camera->getOrientation() * Ogre::Vector3::UNIT_X).dotProduct(up)) < 1e-5f,
          "the horizon is level");
    Check((camera->getOrientation() * Ogre::Vector3::UNIT_Y).dotProduct(up) > 0,
          "the vertical points up");
    Frame();
}

}  // namespace

int main(int argc, char** argv) {
    const std::map<std::string, std::function<void()>> cases{
        {"frame", DrawFrames},
        {"released", CheckReleasedTwice},
        {"before-init", CheckBeforeInit},
        {"no-selection", CheckSelectionFirst},
        {"no-size", CheckSize},
        {"no-package", CheckWithoutPackage},
        {"x-up",
         [] {
             CheckVertical(
                 0, [](Ogre::Vector3 v) { return Ogre::Vector3(v.z, v.x, v.y); },
                 [](Ogre::Vector3 p) { return Ogre::Vector3(p.x, -p.y, -p.z); });
         }},
        {"y-up",
         [] {
             CheckVertical(
                 1, [](Ogre::Vector3 v) { return Ogre::Vector3(v.y, v.z, v.x); },
                 [](Ogre::Vector3 p) { return Ogre::Vector3(-p.x, -p.y, p.z); });
         }},
        {"z-up",
         [] {
             CheckVertical(2, [](Ogre::Vector3 v) { return v; }, [](Ogre::Vector3 p) { return p; });
         }},
    };
    try {
        cases.at(argc > 1 ? argv[1] : "")();
    } catch (const std::exception& error) {
        Check(false, std::string("nothing is thrown, but: ") + error.what());
    }
    return failures;
}
