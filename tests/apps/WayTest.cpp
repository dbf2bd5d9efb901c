#include "apps/vrnview/program/Way.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace vrn::host {
namespace {

constexpr double pi = std::numbers::pi;

Pose At(double x, double y, double z) { return {{x, y, z}, {}}; }

TEST(Way, StraightOneGoesEvenly) {
    const Way way = Way::Straight(At(10, 0, 0), At(10, 40, 30));
    EXPECT_FALSE(way.isArc());
    EXPECT_DOUBLE_EQ(way.length(), 50);
    EXPECT_EQ(way.turnRad(), 0);
    const auto middle = way.at(0.25).position;
    EXPECT_NEAR(middle.x, 10, 1e-12);
    EXPECT_NEAR(middle.y, 10, 1e-12);
    EXPECT_NEAR(middle.z, 7.5, 1e-12);
}

TEST(Way, EndsAreAnsweredAsTheyWereGiven) {
    const Pose from{{0.1, 0.2, 0.3}, {std::cos(1), std::sin(1), 0, 0}};
    const Pose to{{7, 8, 9}, {std::cos(2), 0, std::sin(2), 0}};
    const Way way = Way::Straight(from, to);
    EXPECT_EQ(way.at(0), from);
    EXPECT_EQ(way.at(1), to);
    EXPECT_EQ(way.at(-1), from);
    EXPECT_EQ(way.at(2), to);
}

TEST(Way, ToolTurnsEvenlyTheShorterWay) {
    const auto about = [](double angle) {
        return rob::RotationTemplate<double>(angle, rob::Vec3Template<double>{0, 0, 1});
    };
    const Way way = Way::Straight({{}, about(0)}, {{}, about(1.5 * pi)});
    EXPECT_NEAR(way.turnRad(), pi / 2, 1e-12);
    EXPECT_TRUE(way.at(0.5).rotation.isApprox(about(-pi / 4)));
    EXPECT_EQ(way.length(), 0);
}

TEST(Way, ArcGoesThroughItsMiddlePointOnOneRadius) {
    const auto way = Way::Arc(At(100, 0, 5), {0, 100, 5}, At(-100, 0, 5));
    ASSERT_TRUE(way);
    EXPECT_TRUE(way->isArc());
    EXPECT_NEAR(way->length(), 100 * pi, 1e-9);
    for (int i = 0; i <= 20; ++i) {
        const auto p = way->at(i / 20.0).position;
        EXPECT_NEAR(std::hypot(p.x, p.y), 100, 1e-9);
        EXPECT_GE(p.y, -1e-9);
        EXPECT_NEAR(p.z, 5, 1e-9);
    }
    EXPECT_NEAR(way->at(0.5).position.y, 100, 1e-9);
}

TEST(Way, ArcMayGoMostOfTheWayRound) {
    const auto way = Way::Arc(At(100, 0, 0), {-100, 0, 0}, At(0, -100, 0));
    ASSERT_TRUE(way);
    EXPECT_NEAR(way->length(), 150 * pi, 1e-9);
    EXPECT_NEAR(way->at(1.0 / 3).position.y, 100, 1e-9);
}

TEST(Way, ThreePointsOnALineAreNoArc) {
    EXPECT_FALSE(Way::Arc(At(0, 0, 0), {5, 0, 0}, At(10, 0, 0)));
    EXPECT_FALSE(Way::Arc(At(0, 0, 0), {0, 0, 0}, At(10, 0, 0)));
    EXPECT_FALSE(Way::Arc(At(0, 0, 0), {10, 0, 0}, At(10, 0, 0)));
    EXPECT_FALSE(Way::Arc(At(0, 0, 0), {10, 0, 0}, At(0, 0, 0)));
}

}  // namespace
}  // namespace vrn::host
