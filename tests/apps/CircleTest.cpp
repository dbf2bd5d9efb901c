#include "apps/vrnview/drive/Circle.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <stdexcept>

namespace vrn::test {
namespace {

using host::Circle;
using host::CircleThrough;
using Pos = rob::PosTemplate<double>;

TEST(Circle, ThreePointsHaveTheirCircle) {
    const Circle circle = CircleThrough({7, 2, 5}, {2, 7, 5}, {-3, 2, 5});
    EXPECT_NEAR((circle.centre - Pos{2, 2, 5}).length(), 0, 1e-12);
    EXPECT_NEAR(circle.toStart.length(), 5, 1e-12);
    EXPECT_NEAR((circle.centre + circle.toStart - Pos{7, 2, 5}).length(), 0, 1e-12);
    EXPECT_NEAR(circle.normal.z, 1, 1e-12);
}

TEST(Circle, PointsOfAnObtuseTriangleHaveTheirCentreOutside) {
    const Circle circle = CircleThrough({0, 0, 3}, {0, 1, 2}, {0, 0, 1});
    EXPECT_NEAR((circle.centre - Pos{0, 0, 2}).length(), 0, 1e-12);
    const Circle flat = CircleThrough({-6, 8, 0}, {0, 10, 0}, {6, 8, 0});
    EXPECT_NEAR((flat.centre - Pos{0, 0, 0}).length(), 0, 1e-9);
    EXPECT_NEAR(flat.toStart.length(), 10, 1e-9);
}

TEST(Circle, PointsOnOneLineHaveNone) {
    EXPECT_THROW((void)CircleThrough({0, 0, 0}, {1, 1, 1}, {3, 3, 3}), std::runtime_error);
    EXPECT_THROW((void)CircleThrough({0, 0, 0}, {1, 1, 1}, {0, 0, 0}), std::runtime_error);
    EXPECT_THROW((void)CircleThrough({2, 2, 2}, {2, 2, 2}, {2, 2, 2}), std::runtime_error);
    EXPECT_THROW((void)CircleThrough({1e8, 0, 0}, {2e8, 1, 0}, {4e8, 3, 0}), std::runtime_error);
}

TEST(Circle, TheWholeArcIsNearlyClosedAndItsMiddleOppositeItsStart) {
    const Circle circle{{10, 20, 30}, {0, 8, 0}, {1, 0, 0}};
    const rob::TPCircle arc = WholeArc(circle);
    const auto start = arc.getPoint(0), middle = arc.getPoint(0.5), end = arc.getPoint(1);
    EXPECT_NEAR((start - middle).length(), 16, 1e-3);
    EXPECT_NEAR(arc.getLength(), 2 * std::numbers::pi * 8, 0.1);
    EXPECT_LT((start - end).length(), 0.1);
    EXPECT_NEAR(start.y, 28, 1e-4);
}

}  // namespace
}  // namespace vrn::test
