#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <OgreSceneNode.h>

#include "suite/layout/Frame.h"
#include "suite/layout/Layout.h"
#include "suite/smart/StationLogic.h"
#include "tests/support/EngineFixture.h"
#include "view/Camera.h"
#include "visual/Visual.h"

namespace vrn::test {

using layout::Layout;
using visual::Camera;
using visual::Visual;
using Posed = rob::PoseTemplate<double>;

/// The station of the layout is empty before and after a test.
class StationLoad : public EngineTest {
protected:
    void TearDown() override {
        Layout::inst()->clear();
        EngineTest::TearDown();
    }
    void load() {
        scene().LoadStation();
        pump();
    }
    layout::Part* addPart(const std::string& name, const Posed& pose = {}) {
        layout::Part* part = makeBoxPart(name, pose);
        Layout::inst()->add(*part);
        return part;
    }
    layout::Frame* addFrame(const std::string& name) {
        auto* frame = model.make<layout::Frame>(name);
        Layout::inst()->add(*frame);
        return frame;
    }
    static Visual* shown(const sdf::SdfNode* object) { return scene().visuals.at(object->id); }
};

TEST_F(StationLoad, RunsInTheTaskAndNotOnTheCaller) {
    layout::Part* part = addPart("later");
    scene().LoadStation();
    EXPECT_FALSE(scene().visuals.contains(part->id));
    pump();
    EXPECT_TRUE(scene().visuals.contains(part->id));
}

TEST_F(StationLoad, GoesFromAssembliesOverPartsToFrames) {
    // Entered the other way round.
    layout::Frame* frame = addFrame("frame");
    layout::Part* part = addPart("part");
    auto* assembly = model.make<layout::Assembly>("assembly");
    Layout::inst()->add(*assembly);
    const std::size_t before = scene().root->getChildren().size();
    load();
    const std::vector<Visual*> children = scene().root->getChildren();
    ASSERT_EQ(children.size(), before + 3);
    EXPECT_EQ(children[before], shown(assembly));
    EXPECT_EQ(children[before + 1], shown(part));
    EXPECT_EQ(children[before + 2], shown(frame));
}

TEST_F(StationLoad, LeavesPartsInsideACompoundToIt) {
    auto* assembly = model.make<layout::Assembly>("assembly");
    layout::Part* inner = addPart("inner");
    assembly->addChild(*inner);
    Layout::inst()->add(*assembly);
    load();
    EXPECT_EQ(shown(inner)->getParent(), shown(assembly));
}

TEST_F(StationLoad, TakesFramesInsideACompoundToo) {
    layout::Part* part = addPart("carrier");
    layout::Frame* frame = addFrame("carried");
    part->addChild(*frame);
    ASSERT_FALSE(frame->isStandalone());
    load();
    EXPECT_EQ(shown(frame)->getParent(), shown(part));
}

TEST_F(StationLoad, ParentIsTheRootForNoneForTheStationLogicAndForOneWithoutVisual) {
    layout::Part* free = addPart("free");
    layout::Part* logic = addPart("logic");
    layout::Frame* orphan = addFrame("orphan");
    logic->parentId = smartcomp::StationLogic::inst()->id;
    orphan->parentId = 123456789;
    load();
    EXPECT_EQ(shown(free)->getParent(), scene().root);
    EXPECT_EQ(shown(logic)->getParent(), scene().root);
    EXPECT_EQ(shown(orphan)->getParent(), scene().root);
    EXPECT_EQ(scene().resolveParentVisual(free), scene().root);
    free->parentId = orphan->id;
    EXPECT_EQ(scene().resolveParentVisual(free), shown(orphan));
}

TEST_F(StationLoad, AttachesInTheOrderOfTheList) {
    layout::Part* tool = addPart("tool");
    layout::Part* flange = addPart("flange", {{100, 0, 0}, {}});
    layout::Part* other = addPart("other", {{0, 300, 0}, {}});
    Layout::inst()->addAttachment({tool->id, other->id, {{1, 1, 1}, {}}});
    Layout::inst()->addAttachment({tool->id, flange->id, {{0, 0, 5}, {}}});
    load();
    EXPECT_EQ(shown(tool)->getParent(), shown(flange));
    EXPECT_TRUE(shown(tool)->attached);
    EXPECT_EQ(shown(tool)->getPosition(), (rob::PosTemplate<float>{0, 0, 5}));
    EXPECT_EQ(shown(tool)->getWorldPosition(), (rob::PosTemplate<float>{100, 0, 5}));
}

TEST_F(StationLoad, AnAttachmentToNothingThrowsOutOfTheBatch) {
    layout::Part* tool = addPart("tool");
    Layout::inst()->addAttachment({tool->id, 123456789, {}});
    scene().LoadStation();
    EXPECT_THROW(scene().processMsgs(), std::out_of_range);
    EXPECT_EQ(shown(tool)->getParent(), scene().root);
    EXPECT_FALSE(shown(tool)->attached);
}

TEST_F(StationLoad, LoadTasksFindTheAttachmentsDoneAndTheHiddenStillShown) {
    layout::Part* tool = addPart("tool");
    layout::Part* flange = addPart("flange");
    Layout::inst()->addAttachment({tool->id, flange->id, {}});
    Layout::inst()->setHidden(flange->id, true);
    bool attached = false, visible = false;
    scene().addLoadTask([&] {
        attached = shown(tool)->attached;
        visible = shown(flange)->visible;
    });
    load();
    EXPECT_TRUE(attached);
    EXPECT_TRUE(visible);
    EXPECT_FALSE(shown(flange)->visible);
}

TEST_F(StationLoad, LoadTasksFindTheCameraPlaced) {
    Layout::inst()->setLastViewPointPose({{1, 2, 3}, {}});
    rob::PosTemplate<float> seen{};
    scene().addLoadTask([&] { seen = Camera::Get()->getWorldPosition(); });
    load();
    EXPECT_EQ(seen, (rob::PosTemplate<float>{1, 2, 3}));
}

TEST_F(StationLoad, WhatIsHiddenAtTheStartIsHiddenInTheSameBatch) {
    layout::Part* hidden = addPart("hidden");
    layout::Part* seen = addPart("seen");
    Layout::inst()->setHidden(hidden->id, true);
    load();
    EXPECT_FALSE(shown(hidden)->visible);
    EXPECT_TRUE(shown(seen)->visible);
}

// --- the camera's place

class ViewPoint : public StationLoad {
protected:
    void SetUp() override {
        StationLoad::SetUp();
        position = Camera::Get()->getWorldPosition();
        rotation = Camera::Get()->getWorldRotation();
    }
    void loadFrom(const Posed& saved) {
        Layout::inst()->setLastViewPointPose(saved);
        load();
    }
    static constexpr rob::RotationTemplate<double> halfTurn{0, 0, 0, 1};

    rob::PosTemplate<float> position;
    rob::RotationTemplate<float> rotation;
};

TEST_F(ViewPoint, AtTheOriginWithoutATurnWasNeverSaved) {
    loadFrom({});
    EXPECT_EQ(Camera::Get()->getWorldPosition(), position);
    EXPECT_EQ(Camera::Get()->getWorldRotation(), rotation);
}

TEST_F(ViewPoint, AtTheOriginWithATurnIsRestored) {
    loadFrom({{0, 0, 0}, halfTurn});
    EXPECT_EQ(Camera::Get()->getWorldPosition(), (rob::PosTemplate<float>{0, 0, 0}));
    EXPECT_TRUE(Camera::Get()->getWorldRotation().isApprox({0, 0, 0, 1}));
}

TEST_F(ViewPoint, AwayFromTheOriginWithoutATurnIsRestored) {
    loadFrom({{10, 20, 30}, {}});
    EXPECT_EQ(Camera::Get()->getWorldPosition(), (rob::PosTemplate<float>{10, 20, 30}));
    EXPECT_TRUE(Camera::Get()->getWorldRotation().isApprox({}));
}

TEST_F(ViewPoint, SquaredDistanceBelowTheLimitCountsAsTheOrigin) {
    loadFrom({{0.003, 0, 0}, {}});  // squared 9e-6, below 1e-5
    EXPECT_EQ(Camera::Get()->getWorldPosition(), position);
    loadFrom({{0.0032, 0, 0}, {}});  // 1.02e-5
    EXPECT_NEAR(Camera::Get()->getWorldPosition().x, 0.0032f, 1e-8f);
}

TEST_F(ViewPoint, ATurnWithinTheToleranceCountsAsNone) {
    loadFrom({{0, 0, 0}, {1, 5e-7, 0, 0}});
    EXPECT_EQ(Camera::Get()->getWorldPosition(), position);
    loadFrom({{0, 0, 0}, {-1, 0, 0, 0}});  // the same turn as the identity
    EXPECT_EQ(Camera::Get()->getWorldPosition(), position);
}

// --- single objects

TEST_F(StationLoad, AddedPartsAssembliesAndFramesHangUnderTheirParents) {
    auto* assembly = model.make<layout::Assembly>("group");
    scene().addAssembly(assembly);
    layout::Part* part = makeBoxPart("single");
    part->parentId = assembly->id;
    scene().addPart(part);
    auto* frame = model.make<layout::Frame>("tip");
    frame->parentId = part->id;
    scene().addFrame(frame);
    EXPECT_FALSE(scene().visuals.contains(assembly->id));
    pump();
    EXPECT_EQ(shown(assembly)->getParent(), scene().root);
    EXPECT_EQ(shown(part)->getParent(), shown(assembly));
    EXPECT_EQ(shown(frame)->getParent(), shown(part));
}

TEST_F(StationLoad, NullIsRefusedInTheTaskThatWouldShowIt) {
    scene().addPart(nullptr);
    EXPECT_THROW(pump(), std::invalid_argument);
    scene().addAssembly(nullptr);
    EXPECT_THROW(pump(), std::invalid_argument);
    scene().addMechanism(nullptr, true);
    EXPECT_THROW(pump(), std::invalid_argument);
    scene().addSmartComponent(nullptr);
    EXPECT_THROW(pump(), std::invalid_argument);
    scene().addPointCloud(nullptr);
    EXPECT_THROW(pump(), std::invalid_argument);
    scene().addFrame(nullptr);
    EXPECT_THROW(pump(), std::invalid_argument);
    scene().addWObj(nullptr);
    EXPECT_THROW(pump(), std::invalid_argument);
}

TEST_F(StationLoad, AnAddedFrameWithoutTheVisualOfItsParentHangsUnderTheRoot) {
    auto* frame = model.make<layout::Frame>("tip");
    frame->parentId = 123456789;
    scene().addFrame(frame);
    pump();
    EXPECT_EQ(shown(frame)->getParent(), scene().root);
}

TEST_F(StationLoad, ATaskFrameStandsUnderTheRootAtItsPose) {
    scene().addTaskFrame(4711, {{1, 2, 3}, {0, 0, 0, 1}});
    pump();
    Visual* frame = scene().visuals.at(4711);
    EXPECT_EQ(frame->getParent(), scene().root);
    EXPECT_EQ(frame->type, VisualType::Frame);
    EXPECT_EQ(frame->getWorldPosition(), (rob::PosTemplate<float>{1, 2, 3}));
    EXPECT_TRUE(frame->getWorldRotation().isApprox({0, 0, 0, 1}));
}

TEST_F(StationLoad, TaskFramesOfTwoControllersStandSideBySide) {
    scene().addTaskFrame(4711, {});
    scene().addTaskFrame(4712, {});
    EXPECT_NO_THROW(pump());
    EXPECT_EQ(scene().visuals.at(4711)->getName(), scene().visuals.at(4712)->getName());
}

}  // namespace vrn::test
