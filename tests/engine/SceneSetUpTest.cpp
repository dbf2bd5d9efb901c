#include <array>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// The compositor headers use what these declare without including them.
#include <OgreIteratorWrapper.h>
#include <OgreRenderQueue.h>
#include <OgreTexture.h>

#include <OgreCompositionTargetPass.h>
#include <OgreCompositionTechnique.h>
#include <OgreCompositor.h>
#include <OgreCompositorChain.h>
#include <OgreCompositorInstance.h>
#include <OgreCompositorManager.h>
#include <OgreEntity.h>
#include <OgreInstanceBatch.h>
#include <OgreInstancedEntity.h>
#include <OgreInstanceManager.h>
#include <OgreMaterialManager.h>
#include <OgreMesh.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreViewport.h>

#include "engine/RenderEngine.h"
#include "mesh/DynamicLines.h"
#include "mesh/MeshManager.h"
#include "suite/common/AppLogger.h"
#include "tests/support/EngineFixture.h"
#include "view/Camera.h"
#include "view/Grid.h"
#include "visual/station/FrameVisual.h"

namespace vrn::test {

namespace {

constexpr const char* borderHighlight = "BorderHighlight";

using visual::Camera;
using visual::Visual;

struct ManagerRow {
    const char* key;
    const char* ogreName;
    const char* mesh;
    std::size_t instancesPerBatch;
};

constexpr std::array managerRows{
    ManagerRow{"VRN_FrameInstanceManager", "VRN_FrameInstanceManager", "VRN_FrameMesh", 5000},
    ManagerRow{"InstanceRobTargetHighlight", "RobTargetHighlight", "VRN_FrameMesh", 5000},
    ManagerRow{"InstanceRobTargetSelected", "RobTargetSelected", "VRN_FrameMesh", 5000},
    ManagerRow{"InstancePathArrow", "PathArrow", "path_arrow_head", 500},
};

int CountLines(const std::filesystem::path& file, const std::string& text) {
    std::ifstream in(file);
    int count = 0;
    for (std::string line; std::getline(in, line);) count += line.find(text) != std::string::npos;
    return count;
}

}  // namespace

// --- the scene

class SceneSetUp : public EngineTest {};

TEST_F(SceneSetUp, CarriesItsNameAndTheEnginesSceneManager) {
    EXPECT_EQ(scene().name, "Halvorn Scene");
    EXPECT_EQ(scene().sceneManager->getName(), "VRN_SceneManager");
    EXPECT_EQ(scene().root->type, VisualType::Root);
    EXPECT_EQ(scene().root->node, scene().sceneManager->getRootSceneNode());
    EXPECT_EQ(scene().attachedGui, nullptr);
    EXPECT_NE(scene().stateManager, nullptr);
    EXPECT_TRUE(scene().tempVisuals.empty());
}

TEST_F(SceneSetUp, EntersAWorldFrameOfTheSettingsSizeUnderItsOwnId) {
    ASSERT_EQ(scene().visuals.size(), 1u);
    const auto& [id, visual] = *scene().visuals.begin();
    EXPECT_EQ(visual->id, id);
    EXPECT_EQ(visual->type, VisualType::Frame);
    EXPECT_EQ(visual->getParent(), scene().root);
    const auto& axes = dynamic_cast<visual::FrameVisual&>(*visual).getLines();
    ASSERT_EQ(axes.size(), 3u);
    const auto size = static_cast<float>(scene().settings.frameSize);
    EXPECT_EQ(axes[0]->getPoints().at(1), (rob::PosTemplate<float>{size, 0, 0}));
    EXPECT_EQ(axes[1]->getPoints().at(1), (rob::PosTemplate<float>{0, size, 0}));
    EXPECT_EQ(axes[2]->getPoints().at(1), (rob::PosTemplate<float>{0, 0, size}));
}

TEST_F(SceneSetUp, CameraIsCamera0) {
    EXPECT_EQ(Camera::Get()->name, "camera0");
    EXPECT_EQ(Camera::Get(), visual::gCamera);
}

// --- instance managers

TEST_F(SceneSetUp, FourInstanceManagersStandUnderTheKeysOfTheVisuals) {
    EXPECT_EQ(scene().instanceManagers.size(), managerRows.size());
    for (const ManagerRow& row : managerRows) {
        ASSERT_TRUE(scene().instanceManagers.contains(row.key)) << row.key;
        Ogre::InstanceManager* manager = scene().instanceManagers.at(row.key);
        EXPECT_EQ(manager->getName(), row.ogreName);
        EXPECT_EQ(scene().sceneManager->getInstanceManager(row.ogreName), manager);
        EXPECT_EQ(manager->getInstancingTechnique(), Ogre::InstanceManager::HWInstancingBasic)
            << row.key;
    }
}

TEST_F(SceneSetUp, InstancesShowTheirManagersMeshAndFillBatchesOfItsSize) {
    for (const ManagerRow& row : managerRows) {
        Ogre::InstanceManager* manager = scene().instanceManagers.at(row.key);
        std::vector<Ogre::InstancedEntity*> instances;
        for (std::size_t i = 0; i <= row.instancesPerBatch; ++i)
            instances.push_back(manager->createInstancedEntity("BaseWhite"));
        Ogre::InstanceBatch* first = instances.front()->_getOwner();
        EXPECT_EQ(first->_getMeshRef()->getName(), row.mesh);
        EXPECT_EQ(instances[row.instancesPerBatch - 1]->_getOwner(), first) << row.key;
        EXPECT_NE(instances[row.instancesPerBatch]->_getOwner(), first) << row.key;
        for (auto* instance : instances) scene().sceneManager->destroyInstancedEntity(instance);
    }
    scene().cleanupInstanceBatches();
    const auto batches = [this](const ManagerRow& row) {
        return scene()
            .instanceManagers.at(row.key)
            ->getInstanceBatchIterator("BaseWhite")
            .hasMoreElements();
    };
    for (const ManagerRow& row : managerRows) EXPECT_TRUE(batches(row)) << row.key;
    pump();
    for (const ManagerRow& row : managerRows) EXPECT_FALSE(batches(row)) << row.key;
}

// --- grid

TEST_F(SceneSetUp, AskingForTheGridAgainKeepsTheOneOfTheStart) {
    visual::Grid* grid = scene().grid;
    ASSERT_NE(grid, nullptr);
    const std::size_t children = scene().root->getChildren().size();
    scene().setGrid(true);
    EXPECT_EQ(scene().grid, grid);
    EXPECT_EQ(scene().root->getChildren().size(), children);
    scene().setGrid(false);
    EXPECT_EQ(scene().grid, grid);
    EXPECT_TRUE(grid->visual->visible);
}

// --- what is drawn over the scene

/// White balls of radius 10, which go after the test.
class DepthClear : public EngineTest {
protected:
    void TearDown() override {
        EngineTest::TearDown();
        for (Ogre::Entity* ball : balls) scene().sceneManager->destroyEntity(ball);
    }
    Visual* addBall(const rob::PosTemplate<float>& at, Ogre::uint8 queueGroup,
                    const char* material) {
        visual::MeshManager::Get()->createSphereComponent("depth_clear_ball", 10.0f, 16, 16);
        auto* holder = new Visual(scene().root);
        Ogre::Entity* ball = scene().sceneManager->createEntity("depth_clear_ball");
        balls.push_back(ball);
        ball->setMaterialName(material);
        ball->setRenderQueueGroup(queueGroup);
        holder->attachObject(ball);
        holder->setPosition(at);
        return holder;
    }
    static bool isWhite(const headless::Picture& picture, const rob::PosTemplate<float>& at) {
        const auto pixel = project(at);
        return picture.at(static_cast<int>(pixel.x), static_cast<int>(pixel.y)) ==
               headless::Rgba{255, 255, 255, 255};
    }

private:
    std::vector<Ogre::Entity*> balls;
};

TEST_F(DepthClear, AnObjectOfGroup80StaysVisibleBehindASolid) {
    showBoxPart("wall");
    lookFrom({0, -1000, 0}, {0, 0, 0});
    const rob::PosTemplate<float> behind{0, 200, 0};
    Visual* ball = addBall(behind, 80, "BaseWhite");
    EXPECT_TRUE(isWhite(frame(), behind));
    static_cast<Ogre::Entity*>(ball->node->getAttachedObject(0))->setRenderQueueGroup(50);
    EXPECT_FALSE(isWhite(frame(), behind));
}

TEST_F(DepthClear, LaterGroupsStandOverTheSceneTooButNotOverGroup80) {
    showBoxPart("wall");
    lookFrom({0, -1000, 0}, {0, 0, 0});
    const rob::PosTemplate<float> behind{0, 200, 0};
    addBall(behind, 81, "BaseWhite");
    EXPECT_TRUE(isWhite(frame(), behind));
    addBall({0, -200, 0}, 80, "Body");  // nearer: the depth is cleared for group 80 alone
    EXPECT_FALSE(isWhite(frame(), behind));
}

TEST_F(DepthClear, ObjectsOfGroup80HideEachOtherByDepth) {
    lookFrom({0, -1000, 0}, {0, 0, 0});
    const rob::PosTemplate<float> far{0, 200, 0};
    addBall({0, 0, 0}, 80, "Body");
    addBall(far, 80, "BaseWhite");
    EXPECT_FALSE(isWhite(frame(), far));
}

// --- the outline round what is selected

class BorderHighlight : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        formerLog = AppLogger::inst()->file();
        AppLogger::inst()->setFile(log);
        removeChain();
    }
    void TearDown() override {
        AppLogger::inst()->setFile(formerLog);
        std::filesystem::remove(log);
        removeChain();
        EngineTest::TearDown();
    }
    static void removeChain() {
        Ogre::CompositorManager::getSingleton().removeCompositorChain(Camera::Get()->viewport);
    }
    static Ogre::CompositorInstance* instance() {
        return Ogre::CompositorManager::getSingleton()
            .getCompositorChain(Camera::Get()->viewport)
            ->getCompositor(borderHighlight);
    }
    const std::filesystem::path log = folder() / "border.log";

private:
    std::filesystem::path formerLog;
};

TEST_F(BorderHighlight, IsAddedOnceWithALineInTheLog) {
    scene().setBorderHighlightEnabled(true);
    EXPECT_EQ(CountLines(log, "addCompositor: BorderHighlight"), 1);
    EXPECT_EQ(CountLines(log, "trace"), 1);
    ASSERT_NE(instance(), nullptr);
    EXPECT_TRUE(instance()->getEnabled());
    scene().setBorderHighlightEnabled(false);
    EXPECT_FALSE(instance()->getEnabled());
    scene().setBorderHighlightEnabled(true);
    EXPECT_TRUE(instance()->getEnabled());
    EXPECT_EQ(CountLines(log, "addCompositor"), 1);
}

TEST_F(BorderHighlight, SwitchingItOffBeforeItWasEverOnAddsItSwitchedOff) {
    scene().setBorderHighlightEnabled(false);
    ASSERT_NE(instance(), nullptr);
    EXPECT_FALSE(instance()->getEnabled());
}

TEST_F(BorderHighlight, StandsBehindAHostsOwnCompositor) {
    auto& compositors = Ogre::CompositorManager::getSingleton();
    const auto own = compositors.create("HostOwn", Ogre::RGN_DEFAULT);
    own->createTechnique()->getOutputTargetPass()->setInputMode(
        Ogre::CompositionTargetPass::IM_PREVIOUS);
    Ogre::Viewport* viewport = Camera::Get()->viewport;
    ASSERT_NE(compositors.addCompositor(viewport, "HostOwn"), nullptr);
    scene().setBorderHighlightEnabled(true);
    auto* chain = compositors.getCompositorChain(viewport);
    EXPECT_EQ(chain->getCompositorPosition("HostOwn"), 0u);
    EXPECT_EQ(chain->getCompositorPosition(borderHighlight), 1u);
    removeChain();
    compositors.remove(own);
}

TEST_F(BorderHighlight, DoesNothingWithoutAViewport) {
    Camera::Get()->setRenderTarget(nullptr);
    scene().setBorderHighlightEnabled(true);
    EXPECT_EQ(CountLines(log, borderHighlight), 0);
    Camera::Get()->setRenderTarget(&window());
    EXPECT_FALSE(
        Ogre::CompositorManager::getSingleton().hasCompositorChain(Camera::Get()->viewport));
}

TEST_F(BorderHighlight, AMissingCompositorIsLoggedAndNothingElseHappens) {
    auto& compositors = Ogre::CompositorManager::getSingleton();
    const auto kept = compositors.getByName(borderHighlight, Ogre::RGN_AUTODETECT);
    ASSERT_NE(kept, nullptr);
    compositors.remove(kept);
    EXPECT_NO_THROW(scene().setBorderHighlightEnabled(true));
    EXPECT_EQ(CountLines(log, borderHighlight), 1);
    EXPECT_EQ(CountLines(log, "addCompositor"), 0);
    EXPECT_FALSE(compositors.hasCompositorChain(Camera::Get()->viewport));
    // Only a fresh parse brings a removed one back; the techniques are those of the package.
    auto& groups = Ogre::ResourceGroupManager::getSingleton();
    const auto script = groups.openResource("border.compositor", Ogre::RGN_DEFAULT);
    compositors.parseScript(const_cast<Ogre::DataStreamPtr&>(script), Ogre::RGN_DEFAULT);
    EXPECT_NE(compositors.getByName(borderHighlight, Ogre::RGN_AUTODETECT), nullptr);
}

TEST_F(BorderHighlight, SelectionTurnsItOnAndClearingTurnsItOff) {
    layout::Part* part = makeBoxPart("bordered");
    scene().addPart(part);
    scene().setVisualSelected(part->id);
    pump();
    ASSERT_NE(instance(), nullptr);
    EXPECT_TRUE(instance()->getEnabled());
    scene().clearSelectedVisuals();
    pump();
    EXPECT_FALSE(instance()->getEnabled());
    scene().setVisualsSelected({});
    pump();
    EXPECT_TRUE(instance()->getEnabled());
}

}  // namespace vrn::test
