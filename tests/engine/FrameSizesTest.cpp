#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <OgreInstancedEntity.h>
#include <OgreSceneNode.h>

#include "mesh/DynamicLines.h"
#include "suite/task/DataItem.h"
#include "tests/support/EngineFixture.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/JointTargetVisual.h"
#include "visual/station/RobtargetVisual.h"
#include "visual/station/TcpVisual.h"
#include "visual/station/WObjVisual.h"

namespace vrn::test {

using visual::FrameVisual;
using visual::InstanceFrameVisual;
using visual::JointTargetVisual;
using visual::RobtargetVisual;
using visual::TcpVisual;
using visual::Visual;
using visual::WObjVisual;

class FrameSizes : public EngineTest {
protected:
    void TearDown() override {
        // The world frame stays from test to test.
        scene().setFrameSize(100, VisualType::Frame);
        pump();
        EngineTest::TearDown();
    }
    RobtargetVisual* addRobTarget() {
        return RobtargetVisual::Build(scene().root, model.make<task::RobTargetDataItem>("p")->id);
    }
    JointTargetVisual* addJointTarget() {
        return JointTargetVisual::Build(scene().root, model.make<task::JointTargetDataItem>("j"));
    }
    FrameVisual* addTcp() {
        auto* item = model.make<task::ToolDataItem>("tcp");
        TcpVisual::Build(scene().root, item);
        return dynamic_cast<FrameVisual*>(scene().visuals.at(item->id));
    }
    WObjVisual* addWObj() {
        auto* item = model.make<task::WObjDataItem>("wobj");
        item->setObjectFrame(*model.make<task::ObjectFrame>("oframe"));
        WObjVisual::Build(scene().root, item);
        return dynamic_cast<WObjVisual*>(scene().visuals.at(item->id));
    }
    void resize(unsigned size, VisualType type) {
        scene().setFrameSize(size, type);
        pump();
    }
    static float sizeOf(const FrameVisual* frame) {
        return frame->getLines().at(0)->getPoints().at(1).x;
    }
    static Ogre::Vector3 scaleOf(const InstanceFrameVisual* target) {
        return dynamic_cast<Ogre::InstancedEntity*>(target->node->getAttachedObject(0))->getScale();
    }
    static const visual::SceneSettings& settings() { return scene().settings; }
};

TEST_F(FrameSizes, SizeOfRobotTargetsReachesThemAndLaterOnes) {
    const RobtargetVisual* target = addRobTarget();
    const JointTargetVisual* joint = addJointTarget();
    resize(25, VisualType::RobTarget);
    EXPECT_EQ(target->getFrameSize(), 25.0f);
    EXPECT_EQ(joint->getFrameSize(), 50.0f);
    EXPECT_EQ(settings().robTargetFrameSize, 25);
    EXPECT_EQ(addRobTarget()->getFrameSize(), 25.0f);
}

TEST_F(FrameSizes, SizeOfJointTargetsIsRememberedAsThatOfRobotTargets) {
    const RobtargetVisual* target = addRobTarget();
    const JointTargetVisual* joint = addJointTarget();
    resize(25, VisualType::JointTarget);
    EXPECT_EQ(joint->getFrameSize(), 25.0f);
    EXPECT_EQ(target->getFrameSize(), 60.0f);
    EXPECT_EQ(settings().robTargetFrameSize, 25);
    EXPECT_EQ(settings().jointTargetFrameSize, 50);
    EXPECT_EQ(addJointTarget()->getFrameSize(), 50.0f);
    EXPECT_EQ(addRobTarget()->getFrameSize(), 25.0f);
}

TEST_F(FrameSizes, SizeOfWorkObjectsReachesBothFrames) {
    const WObjVisual* wobj = addWObj();
    resize(25, VisualType::WObj);
    EXPECT_EQ(sizeOf(wobj->getUserFrame()), 25.0f);
    EXPECT_EQ(sizeOf(wobj->getObjectFrame()), 25.0f);
    EXPECT_EQ(settings().wobjFrameSize, 25);
    EXPECT_EQ(sizeOf(addWObj()->getObjectFrame()), 25.0f);
}

TEST_F(FrameSizes, TheFramesOfAWorkObjectHaveNoSizeOfTheirOwn) {
    const WObjVisual* wobj = addWObj();
    resize(25, VisualType::WObjUserFrame);
    resize(25, VisualType::WObjObjectFrame);
    EXPECT_EQ(sizeOf(wobj->getObjectFrame()), 90.0f);
    EXPECT_EQ(settings().wobjFrameSize, 90);
}

TEST_F(FrameSizes, ATcpBuiltAfterAChangeHasTheSettingOfTcps) {
    FrameVisual* tcp = addTcp();
    resize(77, VisualType::Tcp);
    EXPECT_EQ(sizeOf(tcp), 77.0f);
    EXPECT_EQ(settings().frameSize, 77);
    EXPECT_EQ(settings().tcpFrameSize, 40);
    EXPECT_EQ(sizeOf(addTcp()), 40.0f);
}

TEST_F(FrameSizes, ASizeForAKindThatNothingHasIsNotRemembered) {
    for (const auto type :
         {VisualType::Tcp, VisualType::RobTarget, VisualType::JointTarget, VisualType::WObj}) {
        resize(77, type);
        EXPECT_EQ(settings().frameSize, 100);
        EXPECT_EQ(settings().robTargetFrameSize, 60);
        EXPECT_EQ(settings().wobjFrameSize, 90);
    }
    EXPECT_EQ(addRobTarget()->getFrameSize(), 60.0f);
}

TEST_F(FrameSizes, AResizedTargetStaysPickableAndIsRegisteredOnce) {
    std::vector<RobtargetVisual*> targets;
    for (int i = 0; i < 10; ++i) targets.push_back(addRobTarget());
    resize(25, VisualType::RobTarget);
    for (const RobtargetVisual* target : targets) EXPECT_EQ(scaleOf(target), Ogre::Vector3(25));
}

TEST_F(FrameSizes, MovesThatShareATargetAllShowItsNewSize) {
    const std::uint32_t id = model.make<task::RobTargetDataItem>("shared")->id;
    std::vector<RobtargetVisual*> triads;
    for (int i = 0; i < 3; ++i) triads.push_back(RobtargetVisual::Build(scene().root, id));
    resize(25, VisualType::RobTarget);
    for (const RobtargetVisual* triad : triads) EXPECT_EQ(triad->getFrameSize(), 25.0f);
}

// --- z axes only

TEST_F(FrameSizes, MovesThatShareATargetAllShowItsZAxisOnly) {
    scene().settings.drawTargetVisual = true;
    const std::uint32_t id = model.make<task::RobTargetDataItem>("shared")->id;
    std::vector<RobtargetVisual*> triads;
    for (int i = 0; i < 3; ++i) triads.push_back(RobtargetVisual::Build(scene().root, id));
    scene().setDrawTargetZAxisOnly(true);
    pump();
    for (const RobtargetVisual* triad : triads)
        EXPECT_EQ(scaleOf(triad), Ogre::Vector3(0.01f, 0.01f, 60));
}

TEST_F(FrameSizes, ZAxesOnlyReachTargetsWhileTargetsAreDrawn) {
    scene().settings.drawTargetVisual = true;
    const RobtargetVisual* target = addRobTarget();
    const JointTargetVisual* joint = addJointTarget();
    scene().setDrawTargetZAxisOnly(true);
    EXPECT_TRUE(settings().drawTargetZAxisOnly);
    EXPECT_EQ(scaleOf(target), Ogre::Vector3(60));  // only in the task
    pump();
    EXPECT_EQ(scaleOf(target), Ogre::Vector3(0.01f, 0.01f, 60));
    EXPECT_EQ(scaleOf(joint), Ogre::Vector3(0.01f, 0.01f, 50));
    resize(25, VisualType::RobTarget);
    EXPECT_EQ(scaleOf(target), Ogre::Vector3(0.01f, 0.01f, 25));
    scene().setDrawTargetZAxisOnly(false);
    pump();
    EXPECT_EQ(scaleOf(target), Ogre::Vector3(25));
    EXPECT_EQ(scaleOf(joint), Ogre::Vector3(50));
}

TEST_F(FrameSizes, ZAxesOnlyWaitForLaterTargetsWhileNoneAreDrawn) {
    scene().settings.drawTargetVisual = false;
    const RobtargetVisual* target = addRobTarget();
    scene().setDrawTargetZAxisOnly(true);
    pump();
    EXPECT_EQ(scaleOf(target), Ogre::Vector3(60));
    EXPECT_EQ(scaleOf(addRobTarget()), Ogre::Vector3(0.01f, 0.01f, 60));
}

}  // namespace vrn::test
