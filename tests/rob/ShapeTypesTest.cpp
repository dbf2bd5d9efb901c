#include "suite/rob/ShapeTypes.h"

#include <gtest/gtest.h>

#include <numbers>
#include <stdexcept>

namespace {

using namespace vrn::rob;
using Pos = PosTemplate<float>;
using Line = LineTemplate<float>;

constexpr double pi = std::numbers::pi;

void ExpectNear(const Pos& got, const Pos& wanted) {
    EXPECT_NEAR(got.x, wanted.x, 1e-5);
    EXPECT_NEAR(got.y, wanted.y, 1e-5);
    EXPECT_NEAR(got.z, wanted.z, 1e-5);
}

TEST(LineTemplate, LineWithoutLengthIsEmptyAndHasNoDirection) {
    const Line line{{1, 2, 3}, {1, 2, 3}};
    EXPECT_TRUE(line.isEmpty());
    EXPECT_EQ(line.getLength(), 0.0f);
    EXPECT_THROW((void)line.getDirection(), std::overflow_error);
}

TEST(LineTemplate, DirectionRunsFromStartToEnd) {
    const Line line{{1, 0, 0}, {1, 0, 5}};
    EXPECT_FALSE(line.isEmpty());
    EXPECT_EQ(line.getLength(), 5.0f);
    EXPECT_EQ(line.getDirection(), (DirTemplate<float>{0, 0, 1}));
}

TEST(LineTemplate, TransformedLineHasBothEndsMoved) {
    const PoseTemplate<float> pose({10, 0, 0}, {});
    EXPECT_EQ((Line{{1, 0, 0}, {2, 0, 0}}.transformed(pose)), (Line{{11, 0, 0}, {12, 0, 0}}));
}

TEST(TriangleTemplate, TransformedTriangleHasAllCornersMoved) {
    const PoseTemplate<float> pose({0, 0, 1}, {});
    const TriangleTemplate<float> moved =
        TriangleTemplate<float>{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}.transformed(pose);
    EXPECT_EQ(moved, (TriangleTemplate<float>{{0, 0, 1}, {1, 0, 1}, {0, 1, 1}}));
}

TEST(TPCircle, HalfCircleRunsThroughItsThreePoints) {
    const TPCircle circle({1, 0, 0}, {0, 1, 0}, {-1, 0, 0});
    ExpectNear(circle.getPoint(0), {1, 0, 0});
    ExpectNear(circle.getPoint(0.5), {0, 1, 0});
    ExpectNear(circle.getPoint(1), {-1, 0, 0});
    EXPECT_NEAR(circle.getLength(), pi, 1e-6);
}

TEST(TPCircle, ArcLongerThanAHalfCircleGoesTheLongWay) {
    const TPCircle circle({0, 2, 0}, {2, 0, 0}, {-2, 0, 0});
    ExpectNear(circle.getPoint(1), {-2, 0, 0});
    ExpectNear(circle.getPoint(1.0 / 3), {2, 0, 0});
    EXPECT_NEAR(circle.getLength(), 2 * 1.5 * pi, 1e-5);
}

TEST(TPCircle, TangentPointsTowardsTheThirdPoint) {
    const TPCircle circle({1, 0, 5}, {0, 1, 5}, {-1, 0, 5});
    const auto t = circle.getTangent(0.5);
    EXPECT_NEAR(t.x, -1, 1e-6);
    EXPECT_NEAR(t.y, 0, 1e-6);
    EXPECT_NEAR(t.z, 0, 1e-6);
}

TEST(TPCircle, PointsOnOneLineAreRefused) {
    EXPECT_THROW(TPCircle({0, 0, 0}, {1, 0, 0}, {2, 0, 0}), std::overflow_error);
    EXPECT_THROW(TPCircle({0, 0, 0}, {0, 0, 0}, {2, 0, 0}), std::overflow_error);
}

}  // namespace
