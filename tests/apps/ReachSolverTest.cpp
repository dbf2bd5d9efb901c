#include "apps/vrnview/program/ReachSolver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

#include "apps/vrnview/readers/Content.h"
#include "tests/apps/ArmStation.h"

namespace vrn::host {
namespace {

constexpr double degree = std::numbers::pi / 180;

class ReachSolverTest : public testing::Test {
protected:
    static Kinematics arm() {
        return ReadStation(test::ArmStation(""), "/nowhere/x.station.json")
            .jointed.at(0)
            .kinematics;
    }
    /// Inside the limits, and each joint as near to the start as whole turns let it be.
    static void expectNotATurnTooMany(const JointValues& found, const JointValues& start) {
        const Kinematics kinematics = arm();
        for (std::size_t i = 0; i < found.size(); ++i) {
            const Joint& joint = kinematics.getJoints()[i];
            EXPECT_GE(found[i], *joint.lower - 1e-6);
            EXPECT_LE(found[i], *joint.upper + 1e-6);
            for (const double turn : {-2 * std::numbers::pi, 2 * std::numbers::pi}) {
                const double other = found[i] + turn;
                if (other < *joint.lower || other > *joint.upper) continue;
                EXPECT_LE(std::abs(found[i] - start[i]), std::abs(other - start[i]) + 1e-9);
            }
        }
    }
    static constexpr std::size_t hand = 6;
    const Pose pen{{120, 5, -3}, {std::cos(0.2), 0, std::sin(0.2), 0}};
};

/// Angles in degrees.
JointValues Values(std::initializer_list<double> degrees) {
    JointValues values;
    for (const double each : degrees) values.push_back(each * degree);
    return values;
}

double LargestDifference(const JointValues& a, const JointValues& b) {
    double largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        largest = std::max(largest, std::abs(a[i] - b[i]) / degree);
    return largest;
}

/// Some postures of the arm, wrist bent.
std::vector<JointValues> Postures() {
    std::vector<JointValues> postures;
    for (int i = 0; i < 40; ++i)
        postures.push_back(Values({-150.0 + 7 * i, -50.0 + 3 * i, -70.0 + 3 * i, -90.0 + 4.5 * i,
                                   (i % 2 == 0 ? 1 : -1) * (25.0 + i), 100.0 - 5 * i}));
    return postures;
}

TEST_F(ReachSolverTest, ToolIsWhereTheKinematicsTakeItsLink) {
    Kinematics kinematics = arm();
    const ReachSolver solver(kinematics, hand, pen);
    for (const JointValues& values : Postures()) {
        for (std::size_t i = 0; i < values.size(); ++i)
            kinematics.setValue(kinematics.getJoints()[i].name, values[i]);
        const Pose wanted = Compose(kinematics.linkPoses()[hand], pen);
        const PoseError error = DistanceOf(solver.toolAt(values), wanted);
        EXPECT_LT(error.mm, 1e-9);
        EXPECT_LT(error.degrees, 1e-6);
    }
}

TEST_F(ReachSolverTest, ToolOnALinkInTheMiddleLeavesTheJointsBehindItAlone) {
    const ReachSolver solver(arm(), 3, {{50, 0, 0}, {}});
    const JointValues start = Values({10, 20, 30, 40, 50, 60});
    JointValues moved = start;
    moved[1] += 0.1;
    const auto found = solver.follow(solver.toolAt(moved), start);
    ASSERT_TRUE(found);
    EXPECT_LT(LargestDifference(*found, moved), 1e-3);
}

TEST_F(ReachSolverTest, FollowFindsThePostureNextToItsStart) {
    const ReachSolver solver(arm(), hand, pen);
    for (const JointValues& values : Postures()) {
        JointValues start = values;
        for (double& each : start) each += 2 * degree;
        const auto found = solver.follow(solver.toolAt(values), start);
        ASSERT_TRUE(found);
        EXPECT_LT(LargestDifference(*found, values), 1e-3);
        const PoseError error = DistanceOf(solver.toolAt(*found), solver.toolAt(values));
        EXPECT_LT(error.mm, 1e-3);
        EXPECT_LT(error.degrees, 1e-3);
    }
}

TEST_F(ReachSolverTest, ReachFindsSomePostureFromFarAway) {
    const ReachSolver solver(arm(), hand, pen);
    int others = 0;  // that the way from the start does not lead to
    for (double turned = 190; turned < 350; turned += 30) {
        const JointValues start = Values({-100, 60, -120, turned, -60, -turned});
        for (const JointValues& values : Postures()) {
            const Pose wanted = solver.toolAt(values);
            if (!solver.follow(wanted, start)) ++others;
            const auto found = solver.reach(wanted, start);
            ASSERT_TRUE(found);
            EXPECT_LT(DistanceOf(solver.toolAt(*found), wanted).mm, 0.01);
            expectNotATurnTooMany(*found, start);
        }
    }
    EXPECT_GT(others, 0);
}

TEST_F(ReachSolverTest, AxisThatTurnsMoreThanOnceGoesTheShortWay) {
    const ReachSolver solver(arm(), hand, pen);
    const JointValues start = Values({0, 10, 10, 0, 60, 340});
    JointValues wanted = start;
    wanted[5] = 345 * degree;
    const auto found = solver.follow(solver.toolAt(wanted), start);
    ASSERT_TRUE(found);
    EXPECT_NEAR((*found)[5] / degree, 345, 1e-3);
}

TEST_F(ReachSolverTest, AxisAtItsEndUnwinds) {
    const ReachSolver solver(arm(), hand, pen);
    const JointValues start = Values({0, 10, 10, 0, 60, 349});
    JointValues beyond = start;
    beyond[5] = 355 * degree;
    const auto found = solver.follow(solver.toolAt(beyond), start);
    ASSERT_TRUE(found);
    EXPECT_NEAR((*found)[5] / degree, -5, 1e-3);
}

TEST_F(ReachSolverTest, LimitIsNotPassed) {
    const ReachSolver solver(arm(), hand, pen);
    const JointValues start = Values({169, 10, 10, 0, 60, 0});
    JointValues beyond = start;
    beyond[0] = 174 * degree;
    // The same place from the other side, overhead, is beyond the limits of axes 2 and 3.
    EXPECT_FALSE(solver.follow(solver.toolAt(beyond), start));
}

TEST_F(ReachSolverTest, NothingIsFoundOutOfReach) {
    const ReachSolver solver(arm(), hand, pen);
    const JointValues start = Values({0, 10, 10, 0, 60, 0});
    Pose wanted = solver.toolAt(start);
    wanted.position.x = 3000;
    EXPECT_FALSE(solver.follow(wanted, start));
    EXPECT_FALSE(solver.reach(wanted, start));
}

TEST_F(ReachSolverTest, SlidingJointsReachToo) {
    std::vector<Joint> joints(3);
    const std::array<rob::Vec3Template<double>, 3> axes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    for (std::size_t i = 0; i < 3; ++i) {
        joints[i].name = "s" + std::to_string(i);
        joints[i].kind = Joint::Kind::Sliding;
        joints[i].parent = i;
        joints[i].child = i + 1;
        joints[i].axis = axes[i];
        joints[i].upper = 1500;
        joints[i].lower = -1500;
    }
    const ReachSolver solver(Kinematics({"a", "b", "c", "d"}, joints), 3, {});
    const auto found = solver.follow({{700, -30, 12}, {}}, {0, 0, 0});
    ASSERT_TRUE(found);
    EXPECT_NEAR((*found)[0], 700, 1e-3);
    EXPECT_NEAR((*found)[1], -30, 1e-3);
    EXPECT_NEAR((*found)[2], 12, 1e-3);
    EXPECT_FALSE(solver.follow({{1600, 0, 0}, {}}, {0, 0, 0}));
    // It cannot turn.
    EXPECT_FALSE(solver.reach({{0, 0, 0}, {0, 1, 0, 0}}, {0, 0, 0}));
}

TEST_F(ReachSolverTest, WhatCannotRunIsRefused) {
    EXPECT_THROW(ReachSolver(arm(), 0, pen), std::runtime_error);  // the base
    std::vector<Joint> joints(2);
    joints[0].name = "a";
    joints[0].kind = Joint::Kind::Turning;
    joints[0].child = 1;
    joints[1] = joints[0];
    joints[1].name = "b";
    joints[1].parent = 1;
    joints[1].child = 2;
    joints[1].mimic = Joint::Mimic{"a", 1, 0};
    const Kinematics kinematics({"x", "y", "z"}, joints);
    EXPECT_NO_THROW(ReachSolver(kinematics, 1, pen));
    try {
        const ReachSolver solver(kinematics, 2, pen);
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(),
                     "joint 'b' follows joint 'a', and such robots cannot run programs");
    }
}

TEST(PoseDistance, IsThatOfPlacesAndTheAngleOfTheTurn) {
    const Pose a{{1, 2, 3}, {}};
    const Pose b{{1, 5, 7}, {std::cos(15 * degree), 0, std::sin(15 * degree), 0}};
    EXPECT_NEAR(DistanceOf(a, b).mm, 5, 1e-12);
    EXPECT_NEAR(DistanceOf(a, b).degrees, 30, 1e-9);
    Pose negated = a;
    negated.rotation = {-1, 0, 0, 0};
    EXPECT_NEAR(DistanceOf(a, negated).degrees, 0, 1e-9);
}

}  // namespace
}  // namespace vrn::host
