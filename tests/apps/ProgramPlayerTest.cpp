#include "apps/vrnview/ProgramPlayer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "apps/vrnview/ContentScene.h"
#include "apps/vrnview/program/RobotProgram.h"
#include "apps/vrnview/program/SpeedColour.h"
#include "apps/vrnview/readers/ModelPoses.h"
#include "apps/vrnview/RenderLoop.h"
#include "suite/layout/Layout.h"
#include "suite/layout/Mechanism.h"
#include "suite/task/DataItem.h"
#include "suite/task/Task.h"
#include "tests/apps/ArmStation.h"
#include "tests/apps/ProgramStage.h"

namespace vrn::test {
namespace {

using host::Pose;
using host::ProgramPlayer;

class ProgramPlayerTest : public ProgramStage {
protected:
    /// Where a visual stands, as far as single precision tells.
    void expectAt(std::uint32_t id, const Pose& wanted) {
        const Pose there(scene().visuals.at(id)->getWorldPose());
        const host::PoseError error = host::DistanceOf(there, wanted);
        EXPECT_LT(error.mm, 0.01) << id;
        EXPECT_LT(error.degrees, 0.01) << id;
    }
};

TEST_F(ProgramPlayerTest, SceneHasEverythingWhereTheModelSaysItIs) {
    for (const task::RobTargetDataItem* target : content.targets)
        expectAt(target->id, host::WorldPose(content, target->id));
    const task::Task& task = *content.tasks.at(0);
    expectAt(task.getToolDataItems().at(0)->id,
             host::WorldPose(content, task.getToolDataItems()[0]->id));
    expectAt(content.ids.at("pen"), host::WorldPose(content, content.ids.at("pen")));
    for (const layout::Link* link : robot().links)
        expectAt(link->id, host::WorldPose(content, link->id));
}

TEST_F(ProgramPlayerTest, ToolInTheSceneFollowsThePlan) {
    ProgramPlayer player(robot(), plan);
    player.start();
    const std::uint32_t tip = content.tasks.at(0)->getToolDataItems().at(0)->id;
    for (const host::PlanPoint& point : plan.tracePoints(60)) {
        player.goTo(point.seconds);
        pump();
        expectAt(tip, point.tool);
    }
}

TEST_F(ProgramPlayerTest, RobotEndsAtItsTargetsInTheScene) {
    ProgramPlayer player(robot(), plan);
    const std::uint32_t tip = content.tasks.at(0)->getToolDataItems().at(0)->id;
    const auto& points = plan.getPoints();
    // The target of "linear to b" is the second of the station's.
    const std::uint32_t b = content.targets.at(1)->id;
    for (std::size_t i = 1; i < points.size(); ++i)
        if (points[i - 1].move == 3 && points[i].move == 4) player.goTo(points[i].seconds);
    pump();
    expectAt(tip, Pose(scene().visuals.at(b)->getWorldPose()));
}

TEST_F(ProgramPlayerTest, TraceGrowsWithTheProgram) {
    ProgramPlayer player(robot(), plan);
    player.start();
    pump();
    visual::TcpTraceVisual* trace = findTrace();
    ASSERT_NE(trace, nullptr);
    EXPECT_EQ(trace->getPointCount(), 0u);
    std::size_t before = 0;
    for (const double part : {0.4, 0.7, 1.0}) {
        player.goTo(part * plan.getSeconds());
        pump();
        EXPECT_GT(trace->getPointCount(), before);
        EXPECT_EQ(trace->getPointCount(), player.getTracePoints());
        before = trace->getPointCount();
    }
    EXPECT_EQ(before, plan.tracePoints().size());
    player.goTo(0);  // back, and nothing is drawn twice
    player.goTo(plan.getSeconds());
    pump();
    EXPECT_EQ(trace->getPointCount(), before);
}

TEST_F(ProgramPlayerTest, DrawingTheTraceLeavesTheRobotAlone) {
    const std::uint32_t hand = robot().links.back()->id;
    const auto pose = scene().visuals.at(hand)->getWorldPose();
    ProgramPlayer player(robot(), plan);
    player.start();
    player.drawTrace();
    pump();
    EXPECT_EQ(scene().visuals.at(hand)->getWorldPose(), pose);
    EXPECT_EQ(findTrace()->getPointCount(), plan.tracePoints().size());
}

TEST_F(ProgramPlayerTest, NewStartTakesTheTraceAway) {
    ProgramPlayer first(robot(), plan);
    first.start();
    first.drawTrace();
    pump();
    ProgramPlayer second(robot(), plan);
    second.start();
    pump();
    EXPECT_EQ(findTrace()->getPointCount(), 0u);
    second.clearTrace();
    pump();
    EXPECT_EQ(findTrace(), nullptr);
}

TEST_F(ProgramPlayerTest, NothingButLinksThatMoveIsPosted) {
    ProgramPlayer player(robot(), plan);
    player.goTo(0);
    int posted = 0;
    const auto count = broker::SignalBroker::onUpdateScene([&posted] { ++posted; });
    player.goTo(0);
    EXPECT_EQ(posted, 0);
    player.goTo(plan.getSeconds());
    EXPECT_GT(posted, 0);
    EXPECT_LE(posted, 6);  // the base stays
    pump();
}

TEST_F(ProgramPlayerTest, PlaysBesideTheRenderThread) {
    host::RenderLoop loop;
    std::size_t drawn = 0;
    loop.runBeside([&] {
        ProgramPlayer player(robot(), plan);
        player.start();
        for (int i = 0; i <= 100; ++i) player.goTo(plan.getSeconds() * i / 100);
        loop.ask([&] { drawn = findTrace()->getPointCount(); });
    });
    EXPECT_EQ(drawn, plan.tracePoints().size());
}

}  // namespace
}  // namespace vrn::test
