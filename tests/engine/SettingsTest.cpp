#include <string>

#include <gtest/gtest.h>
#include <OgreCamera.h>
#include <OgreEntity.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "engine/SceneSettings.h"
#include "mesh/DynamicLines.h"
#include "suite/broker/SignalBroker.h"
#include "suite/layout/Frame.h"
#include "tests/support/EngineFixture.h"
#include "view/Camera.h"
#include "view/Grid.h"
#include "view/UpAxis.h"
#include "visual/station/FrameVisual.h"

namespace vrn::test {

using broker::SignalBroker;
using visual::FrameVisual;
using visual::Scene;
using visual::Visual;
using Mode = Scene::DisplayMode;

namespace {

float AxisLength(const Visual* frame) {
    return dynamic_cast<const FrameVisual&>(*frame).getLines().at(0)->getPoints().at(1).x;
}

}  // namespace

TEST(SceneSettings, FieldsStandInTheOrderOfTheInterface) {
    // Aggregate initialisation follows the order of declaration.
    const visual::SceneSettings s{1,     2,     3,     4,     5,     6,    {7, 8, 9}, {10, 11, 12},
                                  13.0f, 14.0f, 15.0f, 16.0f, 17.0f, true, false,     true,
                                  false, 18,    19.0f};
    EXPECT_EQ(s.frameSize, 1);
    EXPECT_EQ(s.wobjFrameSize, 2);
    EXPECT_EQ(s.robTargetFrameSize, 3);
    EXPECT_EQ(s.jointTargetFrameSize, 4);
    EXPECT_EQ(s.tcpFrameSize, 5);
    EXPECT_EQ(s.arrowSizeLevel, 6);
    EXPECT_EQ(s.targetPos, (rob::PosTemplate<float>{7, 8, 9}));
    EXPECT_EQ(s.fromPos, (rob::PosTemplate<float>{10, 11, 12}));
    EXPECT_EQ(s.nearClip, 13.0f);
    EXPECT_EQ(s.farClip, 14.0f);
    EXPECT_EQ(s.zoomMaxStep, 15.0f);
    EXPECT_EQ(s.zoomMinDistance, 16.0f);
    EXPECT_EQ(s.zoomReserve, 17.0f);
    EXPECT_TRUE(s.drawSegVisual);
    EXPECT_FALSE(s.drawPathArrow);
    EXPECT_TRUE(s.drawTargetZAxisOnly);
    EXPECT_FALSE(s.drawTargetVisual);
    EXPECT_EQ(s.verticalDir, 18);
    EXPECT_EQ(s.handleScale, 19.0f);
}

// --- display modes

class DisplayModes : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        solid = add(VisualType::Solid);
        wires = add(VisualType::WireFrame);
        other = add(VisualType::Mesh);
        below = new Visual(solid);
        below->type = VisualType::WireFrame;
    }
    void TearDown() override {
        EngineTest::TearDown();
        for (Ogre::Entity* entity : entities) scene().sceneManager->destroyEntity(entity);
    }
    void show(Mode mode) {
        scene().setDisplayMode(mode);
        pump();
    }
    static Ogre::PolygonMode polygonMode() {
        return visual::Camera::Get()->camera->getPolygonMode();
    }
    static bool isDrawn(const Visual* visual) {
        return visual->node->getAttachedObject(0)->getVisible();
    }

    Visual *solid = nullptr, *wires = nullptr, *other = nullptr, *below = nullptr;

private:
    Visual* add(VisualType type) {
        auto* visual = new Visual(scene().root);
        visual->type = type;
        entities.push_back(scene().sceneManager->createEntity("frame_axis_head"));
        visual->attachObject(entities.back());
        return visual;
    }
    std::vector<Ogre::Entity*> entities;
};

TEST(DisplayMode, NumbersArePartOfTheInterface) {
    EXPECT_EQ(static_cast<int>(Mode::Shaded), 0);
    EXPECT_EQ(static_cast<int>(Mode::ShadedWithEdges), 1);
    EXPECT_EQ(static_cast<int>(Mode::EdgesOnly), 2);
    EXPECT_EQ(static_cast<int>(Mode::TriangleWires), 3);
}

TEST_F(DisplayModes, ShadedShowsSolidsAndHidesWireFrames) {
    show(Mode::EdgesOnly);
    show(Mode::Shaded);
    EXPECT_EQ(polygonMode(), Ogre::PM_SOLID);
    EXPECT_TRUE(isDrawn(solid));
    EXPECT_FALSE(isDrawn(wires));
    EXPECT_FALSE(wires->visible);
}

TEST_F(DisplayModes, ShadedWithEdgesShowsBoth) {
    show(Mode::EdgesOnly);
    show(Mode::ShadedWithEdges);
    EXPECT_EQ(polygonMode(), Ogre::PM_SOLID);
    EXPECT_TRUE(isDrawn(solid));
    EXPECT_TRUE(isDrawn(wires));
}

TEST_F(DisplayModes, EdgesOnlyHidesSolidsAndNotTheWireFrameBelowOne) {
    show(Mode::EdgesOnly);
    EXPECT_EQ(polygonMode(), Ogre::PM_SOLID);
    EXPECT_FALSE(isDrawn(solid));
    EXPECT_FALSE(solid->visible);
    EXPECT_TRUE(isDrawn(wires));
    EXPECT_TRUE(below->visible);  // no cascade
}

TEST_F(DisplayModes, TriangleWiresAreShadedButForThePolygonMode) {
    show(Mode::EdgesOnly);
    show(Mode::TriangleWires);
    EXPECT_EQ(polygonMode(), Ogre::PM_WIREFRAME);
    EXPECT_TRUE(isDrawn(solid));
    EXPECT_FALSE(isDrawn(wires));
    show(Mode::Shaded);
    EXPECT_EQ(polygonMode(), Ogre::PM_SOLID);
}

TEST_F(DisplayModes, OtherKindsAreLeftAlone) {
    for (const Mode mode :
         {Mode::EdgesOnly, Mode::TriangleWires, Mode::Shaded, Mode::ShadedWithEdges}) {
        show(mode);
        EXPECT_TRUE(isDrawn(other));
        EXPECT_TRUE(other->visible);
    }
}

TEST_F(DisplayModes, AttachedAndWalkStoppingVisualsAreReachedToo) {
    solid->setAttachState(true);
    solid->walkStop = true;
    show(Mode::EdgesOnly);
    EXPECT_FALSE(isDrawn(solid));
}

TEST_F(DisplayModes, ChangeInTheTaskAndNotOnTheCaller) {
    scene().setDisplayMode(Mode::TriangleWires);
    EXPECT_EQ(polygonMode(), Ogre::PM_SOLID);
    pump();
    EXPECT_EQ(polygonMode(), Ogre::PM_WIREFRAME);
}

// --- sizes

class Settings : public EngineTest {
protected:
    void TearDown() override {
        // The world frame stays from test to test.
        scene().setFrameSize(100, VisualType::Frame);
        pump();
        EngineTest::TearDown();
    }
    Visual* addFrame() {
        auto* frame = model.make<layout::Frame>("sized");
        scene().addFrame(frame);
        pump();
        return scene().visuals.at(frame->id);
    }
    Visual* addTcp() {
        auto* tcp = new FrameVisual(scene().root, nextId++, "tcp", VisualType::Tcp);
        scene().visuals[tcp->id] = tcp;
        return tcp;
    }
    const visual::SceneSettings& settings() { return scene().settings; }

private:
    std::uint32_t nextId = 700000;
};

TEST_F(Settings, FrameSizeReachesEveryFrameAndLaterOnes) {
    Visual* first = addFrame();
    EXPECT_EQ(AxisLength(first), 100.0f);
    scene().setFrameSize(250, VisualType::Frame);
    EXPECT_EQ(settings().frameSize, 100);  // only in the task
    pump();
    EXPECT_EQ(settings().frameSize, 250);
    EXPECT_EQ(AxisLength(first), 250.0f);
    EXPECT_EQ(AxisLength(addFrame()), 250.0f);
}

TEST_F(Settings, FrameSizeOfAKindThatNothingHasChangesNothing) {
    scene().setFrameSize(77, VisualType::Tcp);
    pump();
    EXPECT_EQ(settings().frameSize, 100);
    EXPECT_EQ(settings().tcpFrameSize, 40);
    for (const auto type : {VisualType::RobTarget, VisualType::JointTarget, VisualType::WObj,
                            VisualType::WObjUserFrame, VisualType::None, VisualType::Part}) {
        scene().setFrameSize(77, type);
        pump();
        EXPECT_EQ(settings().frameSize, 100);
        EXPECT_EQ(settings().robTargetFrameSize, 60);
        EXPECT_EQ(settings().jointTargetFrameSize, 50);
        EXPECT_EQ(settings().wobjFrameSize, 90);
    }
}

TEST_F(Settings, SizeOfTcpFramesIsRememberedAsThatOfPlainFrames) {
    Visual* tcp = addTcp();
    EXPECT_EQ(AxisLength(tcp), 40.0f);
    scene().setFrameSize(77, VisualType::Tcp);
    pump();
    EXPECT_EQ(AxisLength(tcp), 77.0f);
    EXPECT_EQ(settings().frameSize, 77);
    EXPECT_EQ(settings().tcpFrameSize, 40);
    EXPECT_EQ(AxisLength(addTcp()), 40.0f);
}

TEST_F(Settings, SizeOfOneKindLeavesTheOtherAlone) {
    Visual* tcp = addTcp();
    Visual* frame = addFrame();
    scene().setFrameSize(30, VisualType::Frame);
    pump();
    EXPECT_EQ(AxisLength(frame), 30.0f);
    EXPECT_EQ(AxisLength(tcp), 40.0f);
}

TEST_F(Settings, FrameSizePassesOverAVisualThatOnlyCallsItselfAFrame) {
    auto* pretender = new Visual(scene().root);
    pretender->type = VisualType::Tcp;
    scene().visuals[pretender->id] = pretender;
    scene().setFrameSize(77, VisualType::Tcp);
    EXPECT_NO_THROW(pump());
    EXPECT_EQ(settings().frameSize, 77);
}

TEST_F(Settings, ArrowSizeLevelIsStoredInTheTask) {
    const int before = settings().arrowSizeLevel;
    scene().setArrowSizeLevel(9);
    EXPECT_EQ(settings().arrowSizeLevel, before);
    pump();
    EXPECT_EQ(settings().arrowSizeLevel, 9);
}

// --- switches that are stored on the caller

TEST_F(Settings, HandleScaleIsStoredOnTheCallerAndAsksForAFrame) {
    int signals = 0;
    const auto subscription = SignalBroker::onUpdateScene([&] { ++signals; });
    scene().setHandleScale(2.5f);
    EXPECT_EQ(settings().handleScale, 2.5f);
    EXPECT_EQ(signals, 1);
    pump();
    EXPECT_EQ(signals, 1);
}

TEST_F(Settings, DrawFlagsAreStoredOnTheCaller) {
    for (const bool on : {true, false}) {
        scene().setDrawPathArrow(on);
        EXPECT_EQ(settings().drawPathArrow, on);
        scene().setDrawTargetVisual(on);
        EXPECT_EQ(settings().drawTargetVisual, on);
        scene().setDrawTargetZAxisOnly(on);
        EXPECT_EQ(settings().drawTargetZAxisOnly, on);
        scene().setDrawSegVisual(on);
        EXPECT_EQ(settings().drawSegVisual, on);
    }
}

TEST_F(Settings, ZAxisOnlyPostsNothingWhileTargetsAreNotDrawn) {
    scene().setDrawTargetVisual(false);
    pump();
    int signals = 0;
    const auto subscription = SignalBroker::onUpdateScene([&] { ++signals; });
    scene().setDrawTargetZAxisOnly(true);
    EXPECT_TRUE(settings().drawTargetZAxisOnly);
    EXPECT_EQ(signals, 0);
    scene().setDrawTargetVisual(true);
    EXPECT_EQ(signals, 1);
    scene().setDrawTargetZAxisOnly(false);
    EXPECT_EQ(signals, 2);
}

TEST_F(Settings, PostsOfSettingsAskForOneFrameEach) {
    int signals = 0;
    const auto subscription = SignalBroker::onUpdateScene([&] { ++signals; });
    scene().setFrameSize(100, VisualType::Frame);
    scene().setArrowSizeLevel(5);
    scene().setDrawTargetVisual(true);
    scene().setDrawPathArrow(false);
    scene().setGridNormalDir(2);
    scene().cleanupInstanceBatches();
    scene().setDisplayMode(Mode::Shaded);
    EXPECT_EQ(signals, 7);
    pump();
    EXPECT_EQ(signals, 7);
}

TEST_F(Settings, GridNormalIsStoredOnTheCallerAndTurnsTheGridInTheTask) {
    Ogre::SceneNode* grid = scene().grid->visual->node;
    for (const int dir : {0, 1, 2}) {
        const Ogre::Quaternion before = grid->getOrientation();
        scene().setGridNormalDir(dir);
        EXPECT_EQ(settings().verticalDir, dir);
        EXPECT_EQ(grid->getOrientation(), before);
        pump();
        EXPECT_EQ(grid->getOrientation(), visual::UpAxisTurn(dir));
    }
}

TEST_F(Settings, GridNormalTurnsTheAxisThatTheCameraKeepsUpright) {
    Ogre::SceneNode* camera = visual::Camera::Get()->node;
    const rob::PoseTemplate<float> before{visual::Camera::Get()->getWorldPosition(),
                                          visual::Camera::Get()->getWorldRotation()};
    for (const int dir : {0, 1, 2}) {
        scene().setGridNormalDir(dir);
        pump();
        camera->setPosition(300, 200, 500);
        camera->lookAt({0, 0, 0}, Ogre::Node::TS_WORLD, Ogre::Vector3::NEGATIVE_UNIT_Z);
        const Ogre::Vector3 right = camera->getOrientation() * Ogre::Vector3::UNIT_X;
        const Ogre::Vector3 up = camera->getOrientation() * Ogre::Vector3::UNIT_Y;
        EXPECT_NEAR(right.dotProduct(visual::UpAxis(dir)), 0.0f, 1e-5f) << dir;
        EXPECT_GT(up.dotProduct(visual::UpAxis(dir)), 0.0f) << dir;
    }
    visual::Camera::Get()->setWorldPosition(before.position);
    visual::Camera::Get()->setWorldRotation(before.rotation);
}

}  // namespace vrn::test
