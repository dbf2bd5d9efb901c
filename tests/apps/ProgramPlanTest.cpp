#include "apps/vrnview/program/ProgramPlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

#include "apps/vrnview/program/RobotProgram.h"
#include "apps/vrnview/readers/ModelPoses.h"
#include "suite/layout/Mechanism.h"
#include "suite/task/DataItem.h"
#include "suite/task/Task.h"
#include "tests/apps/ArmStation.h"

namespace vrn::host {
namespace {

using test::DrawMoves;
using test::DrawTask;
using test::MoveTo;

constexpr double degree = std::numbers::pi / 180;

Content StationOf(const std::string& task, const std::string& objects = "") {
    Content content = ReadStation(test::ArmStation(R"("tasks": [)" + task + "]", objects),
                                  "/nowhere/x.station.json");
    EXPECT_THAT(content.problems, testing::IsEmpty());
    return content;
}

std::string FailureOf(const std::string& task, const std::string& objects = "") {
    const Content content = StationOf(task, objects);
    try {
        (void)ProgramPlan::Make(ProgramOf(content, *content.tasks.at(0)));
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing";
}

class ProgramPlanTest : public testing::Test {
protected:
    const ProgramPlan& planOf(const std::string& moves) {
        content = StationOf(DrawTask(moves));
        plan = ProgramPlan::Make(ProgramOf(content, *content.tasks.at(0)));
        return plan;
    }
    /// Of the target of that name, in the world.
    [[nodiscard]] Pose target(const std::string& name) const {
        for (const task::RobTargetDataItem* item : content.targets)
            if (item->name == name) return WorldPose(content, item->id);
        throw std::out_of_range(name);
    }
    [[nodiscard]] std::vector<PlanPoint> pointsOf(std::size_t move) const {
        std::vector<PlanPoint> points;
        for (const PlanPoint& point : plan.getPoints())
            if (point.move == move) points.push_back(point);
        return points;
    }
    void expectEndsAt(std::size_t move, const std::string& name) const {
        const PoseError error = DistanceOf(pointsOf(move).back().tool, target(name));
        EXPECT_LT(error.mm, 0.1) << name;
        EXPECT_LT(error.degrees, 0.1) << name;
        // What the iteration promises is far below what is asked.
        EXPECT_LT(error.mm, 0.001) << name;
        EXPECT_LT(error.degrees, 0.001) << name;
    }

    Content content;
    ProgramPlan plan;
};

TEST_F(ProgramPlanTest, EveryMoveEndsAtItsTarget) {
    planOf(DrawMoves());
    EXPECT_EQ(plan.getMoveCount(), 7u);
    expectEndsAt(1, "high");
    expectEndsAt(2, "a");
    expectEndsAt(3, "b");
    expectEndsAt(4, "d");
    expectEndsAt(5, "e");
    EXPECT_LT(plan.getWorstError().mm, 0.001);
    EXPECT_LT(plan.getWorstError().degrees, 0.001);
    EXPECT_GT(plan.getWorstError().mm, 0);
}

TEST_F(ProgramPlanTest, JointTargetIsMetInItsValues) {
    planOf(DrawMoves());
    const JointValues values = pointsOf(6).back().values;
    const std::array<double, 6> wanted{0, -20, 30, 0, 50, 0};
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(values[i] / degree, wanted[i], 1e-9);
}

TEST_F(ProgramPlanTest, LinearMoveIsStraightBetweenItsPointsToo) {
    planOf(DrawMoves());
    const ReachSolver tool(content.jointed.at(0).kinematics, 6, {{120, 0, 0}, {}});
    const Pose robot = WorldPose(content, content.jointed[0].object->id);
    const auto points = pointsOf(3);
    const auto a = target("a").position, b = target("b").position;
    const auto along = (b - a).normalized();
    double worst = 0, worstTurn = 0, last = -1e-3;
    for (double t = points.front().seconds; t < points.back().seconds; t += 0.003) {
        const Pose pose = Compose(robot, tool.toolAt(plan.valuesAt(t)));
        const auto off = pose.position - a;
        const double way = off.dot(along);
        EXPECT_GE(way, last);
        last = way;
        worst = std::max(worst, (off - along * way).length());
        worstTurn = std::max(worstTurn, DistanceOf(pose, target("a")).degrees);
        // At its speed all the way.
        EXPECT_NEAR(way, 50 * (t - points.front().seconds), 0.05);
    }
    EXPECT_LT(worst, 0.1);
    EXPECT_LT(worstTurn, 0.1);
}

TEST_F(ProgramPlanTest, CircularMoveKeepsItsRadiusBetweenItsPointsToo) {
    planOf(DrawMoves());
    const ReachSolver tool(content.jointed.at(0).kinematics, 6, {{120, 0, 0}, {}});
    const Pose robot = WorldPose(content, content.jointed[0].object->id);
    const auto points = pointsOf(4);
    // b, c and d are corners of a square: the arc is half of the circle about its middle.
    const auto middle = target("e").position;
    const double radius = 100 * std::numbers::sqrt2;
    double worst = 0, toVia = 1e9;
    for (double t = points.front().seconds; t < points.back().seconds; t += 0.003) {
        const auto p = Compose(robot, tool.toolAt(plan.valuesAt(t))).position;
        worst = std::max(worst, std::abs((p - middle).length() - radius));
        worst = std::max(worst, std::abs(p.z - middle.z));
        toVia = std::min(toVia, (p - target("c").position).length());
    }
    EXPECT_LT(worst, 0.1);
    EXPECT_LT(toVia, 0.2);
    EXPECT_NEAR(points.back().seconds - points.front().seconds, std::numbers::pi * radius / 80,
                1e-6);
}

TEST_F(ProgramPlanTest, JointMoveGoesEvenlyInAllJoints) {
    planOf(DrawMoves());
    const auto points = pointsOf(1);
    const PlanPoint &first = points.front(), &last = points.back();
    double longest = 0;
    for (std::size_t i = 0; i < 6; ++i)
        longest = std::max(longest, std::abs(last.values[i] - first.values[i]) / degree);
    EXPECT_NEAR(last.seconds - first.seconds, longest / 30, 1e-9);
    for (const PlanPoint& point : points) {
        const double part = (point.seconds - first.seconds) / (last.seconds - first.seconds);
        for (std::size_t i = 0; i < 6; ++i)
            EXPECT_NEAR(point.values[i],
                        first.values[i] + (last.values[i] - first.values[i]) * part, 1e-9);
    }
}

TEST_F(ProgramPlanTest, SpeedsAreThoseOfTheTool) {
    planOf(DrawMoves());
    for (const PlanPoint& point : pointsOf(3)) EXPECT_NEAR(point.speed, 50, 0.01);
    for (const PlanPoint& point : pointsOf(2)) EXPECT_NEAR(point.speed, 100, 0.01);
    for (const PlanPoint& point : pointsOf(5)) EXPECT_NEAR(point.speed, defaultSpeed, 0.01);
    double fastest = 0;
    for (const PlanPoint& point : plan.getPoints()) fastest = std::max(fastest, point.speed);
    EXPECT_EQ(plan.getFastest(), fastest);
}

TEST_F(ProgramPlanTest, TimeGoesOnFromMoveToMove) {
    planOf(DrawMoves());
    double last = 0;
    for (const PlanPoint& point : plan.getPoints()) {
        EXPECT_GE(point.seconds, last);
        last = point.seconds;
    }
    EXPECT_EQ(plan.getSeconds(), last);
}

TEST_F(ProgramPlanTest, ValuesBeforeTheStartAndBehindTheEndAreThoseAtTheEnds) {
    planOf(DrawMoves());
    EXPECT_EQ(plan.valuesAt(-1), plan.getPoints().front().values);
    EXPECT_EQ(plan.valuesAt(plan.getSeconds() + 1), plan.getPoints().back().values);
    EXPECT_NEAR(plan.valuesAt(0)[4] / degree, 60, 1e-9);  // where the station has it
}

TEST_F(ProgramPlanTest, MoveToWhereTheToolIsTakesNoTime) {
    const double once = planOf(MoveTo("joint", "a") + ", " + MoveTo("linear", "b")).getSeconds();
    planOf(MoveTo("joint", "a") + ", " + MoveTo("linear", "b") + ", " + MoveTo("linear", "b") +
           ", " + MoveTo("joint", "b"));
    EXPECT_NEAR(plan.getSeconds(), once, 1e-3);
    EXPECT_TRUE(pointsOf(2).empty() || pointsOf(2).back().seconds - once < 1e-3);
}

TEST_F(ProgramPlanTest, TurningOnTheSpotTakesTheTimeToTurn) {
    content = StationOf(R"({"name": "turn", "robot": "arm",
        "workObjects": [{"name": "desk", "pose": {"position": [100, 800, 300], "rpy": [0, 0, 90]},
            "targets": [{"name": "a", "pose": {"rpy": [0, 90, 0]}},
                        {"name": "b", "pose": {"rpy": [45, 90, 0]}}]}],
        "paths": [{"moves": [{"type": "joint", "target": "a", "workObject": "desk"},
                             {"target": "b", "workObject": "desk"}]}]})");
    plan = ProgramPlan::Make(ProgramOf(content, *content.tasks.at(0)));
    const auto points = pointsOf(1);
    EXPECT_NEAR(points.back().seconds - points.front().seconds, 45 / ProgramPlan::turnSpeed, 1e-6);
    for (const PlanPoint& point : points)
        EXPECT_LT((point.tool.position - target("a").position).length(), 0.1);
}

TEST_F(ProgramPlanTest, CollinearCircularMoveGoesStraight) {
    planOf(MoveTo("joint", "a") + ", " + MoveTo("circular", "c", R"("circle": "e", "speed": 100)"));
    const auto points = pointsOf(1);
    EXPECT_NEAR(points.back().seconds - points.front().seconds, 2 * std::numbers::sqrt2, 1e-6);
    expectEndsAt(1, "c");
}

TEST_F(ProgramPlanTest, TraceLeavesOutTheWayToTheFirstTarget) {
    planOf(DrawMoves());
    const auto trace = plan.tracePoints();
    ASSERT_FALSE(trace.empty());
    EXPECT_EQ(trace.front().move, 1u);
    EXPECT_EQ(trace.back().seconds, plan.getSeconds());
}

TEST_F(ProgramPlanTest, TraceHasTheEndsOfEachMoveAndIsNoDenserThanItNeeds) {
    planOf(DrawMoves());
    const auto trace = plan.tracePoints(10);
    EXPECT_LT(trace.size(), plan.getPoints().size() / 2);
    for (std::size_t move = 1; move < 7; ++move) {
        const auto ofMove = [move](const PlanPoint& point) { return point.move == move; };
        const auto first = std::ranges::find_if(trace, ofMove);
        const auto last = std::find_if(trace.rbegin(), trace.rend(), ofMove);
        EXPECT_EQ(first->seconds, pointsOf(move).front().seconds);
        EXPECT_EQ(last->seconds, pointsOf(move).back().seconds);
    }
    for (std::size_t i = 1; i < trace.size(); ++i)
        EXPECT_LT((trace[i].tool.position - trace[i - 1].tool.position).length(), 25);
}

TEST_F(ProgramPlanTest, ArcIsTracedByTheChordsOfItsPath) {
    planOf(DrawMoves());
    std::vector<PlanPoint> arc;
    for (const PlanPoint& point : plan.tracePoints())
        if (point.move == 4) arc.push_back(point);
    ASSERT_EQ(arc.size(), 21u);
    const auto middle = target("e").position, start = target("b").position;
    for (std::size_t i = 0; i < arc.size(); ++i) {
        const auto x = start - middle, p = arc[i].tool.position - middle;
        const double angle = std::acos(std::clamp(x.dot(p) / x.dot(x), -1.0, 1.0)) / degree;
        EXPECT_NEAR(angle, 9.0 * static_cast<double>(i), 0.05);
    }
}

TEST_F(ProgramPlanTest, OneMoveLeavesNoTrace) {
    planOf(MoveTo("joint", "a"));
    EXPECT_TRUE(plan.tracePoints().empty());
    EXPECT_GT(plan.getSeconds(), 0);
}

TEST(ProgramFailure, TargetOutOfReachIsNamedWithItsMove) {
    EXPECT_EQ(FailureOf(DrawTask(MoveTo("joint", "a") + ", " + MoveTo("joint", "far"))),
              "task 'draw': path 'main', move 2 ('joint') to target 'far': out of reach");
}

TEST(ProgramFailure, WayOutOfReachTellsHowFarItGoes) {
    EXPECT_THAT(FailureOf(DrawTask(MoveTo("joint", "a") + ", " + MoveTo("linear", "far"))),
                testing::MatchesRegex("task 'draw': path 'main', move 2 \\('linear'\\) to target "
                                      "'far': the way there is out of reach after [0-9]+ percent"
                                      "(, in this posture)?"));
}

TEST(ProgramFailure, WhatIsNoProgramSaysWhy) {
    EXPECT_EQ(FailureOf(R"({"name": "t"})"), "task 't': it has no robot");
    EXPECT_EQ(FailureOf(R"({"name": "t", "robot": "arm"})"), "task 't': it has no move");
    EXPECT_EQ(FailureOf(DrawTask(MoveTo("joint", "a"), R"({"name": "x", "tool": "loose"})"),
                        R"({"type": "tool", "id": "loose"})"),
              "task 'draw': its robot does not carry the tool 'x'");
    EXPECT_EQ(FailureOf(R"({"name": "t", "robot": "arm",
                  "workObjects": [{"name": "w", "parent": "arm", "targets": [{"name": "p"}]}],
                  "paths": [{"name": "q", "moves": [{"target": "p", "workObject": "w"}]}]})"),
              "task 't': path 'q', move 1 ('linear') to target 'p': the work object 'w' moves with "
              "the robot");
}

TEST(ProgramFailure, WayThatNeverEndsIsRefused) {
    EXPECT_THAT(FailureOf(R"({"name": "t", "robot": "arm",
                  "workObjects": [{"name": "w", "pose": {"position": [1e9, 0, 0]},
                                   "targets": [{"name": "p"}]}],
                  "paths": [{"name": "q", "moves": [{"target": "p", "workObject": "w"}]}]})"),
                testing::EndsWith("the way there is too long"));
}

TEST(Program, SeveralPathsAndToolsRunOneAfterTheOther) {
    const Content content = StationOf(R"({"name": "t", "robot": "arm",
        "workObjects": [{"name": "desk", "pose": {"position": [100, 800, 300], "rpy": [0, 0, 90]},
                         "targets": [{"name": "a", "pose": {"rpy": [0, 90, 0]}}]}],
        "tools": [{"name": "short", "tool": "pen", "pose": {"position": [50, 0, 0]}},
                  {"name": "long", "tool": "pen", "pose": {"position": [120, 0, 0]}}],
        "paths": [{"name": "p", "moves": [{"type": "joint", "target": "a", "workObject": "desk"},
                                          {"type": "action", "name": "on"}]},
                  {"name": "q", "moves": [{"type": "joint", "target": "a", "workObject": "desk",
                                           "tool": "long"}]}]})");
    const RobotProgram program = ProgramOf(content, *content.tasks.at(0));
    ASSERT_EQ(program.moves.size(), 2u);
    ASSERT_EQ(program.tools.size(), 2u);
    EXPECT_EQ(program.moves[0].tool, 0u);
    EXPECT_EQ(program.moves[1].tool, 1u);
    const ProgramPlan plan = ProgramPlan::Make(program);
    // The longer tool to the same place: the hand goes back by the difference.
    const Pose goal = WorldPose(content, content.targets.at(0)->id);
    EXPECT_LT(DistanceOf(plan.getPoints().back().tool, goal).mm, 0.1);
    EXPECT_GT(plan.getSeconds(), 0);
}

TEST(Program, WithoutToolDataTheWristGoesToTheTargets) {
    const Content content = StationOf(DrawTask(MoveTo("joint", "high"), ""));
    const ProgramPlan plan = ProgramPlan::Make(ProgramOf(content, *content.tasks.at(0)));
    const ReachSolver wrist(content.jointed.at(0).kinematics, 6, {});
    const Pose robot = WorldPose(content, content.jointed[0].object->id);
    const Pose hand = Compose(robot, wrist.toolAt(plan.getPoints().back().values));
    EXPECT_LT(DistanceOf(hand, WorldPose(content, content.targets.at(5)->id)).mm, 0.1);
}

TEST(Program, TargetsFollowWhatCarriesTheirWorkObject) {
    const std::string device = R"({"type": "device", "id": "table",
        "pose": {"position": [100, 800, 200]},
        "links": [{"name": "foot"}, {"name": "plate"}],
        "joints": [{"name": "turn", "parent": "foot", "child": "plate",
                    "origin": {"position": [0, 0, 100]}}],
        "jointValues": {"turn": 90}}, {"type": "frame", "id": "corner", "parent": "table",
        "pose": {"position": [0, 0, 100]}})";
    const Content content = StationOf(R"({"name": "t", "robot": "arm",
        "workObjects": [{"name": "w", "parent": "corner", "fixed": false,
                         "pose": {"position": [7, 7, 7]}, "objectFrame": {"position": [0, 0, 5]},
                         "targets": [{"name": "a", "pose": {"position": [10, 0, 0]}}]}]})",
                                      device);
    const Pose pose = WorldPose(content, content.targets.at(0)->id);
    EXPECT_NEAR(pose.position.x, 110, 1e-9);
    EXPECT_NEAR(pose.position.y, 800, 1e-9);
    EXPECT_NEAR(pose.position.z, 305, 1e-9);
}

}  // namespace
}  // namespace vrn::host
