#include "selection/Cone.h"

#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace vrn::visual {

namespace {

using Pose = rob::PoseTemplate<float>;
using Rotation = rob::RotationTemplate<float>;
using Vec = rob::Vec3Template<float>;

const Cone widening{1.0, 3.0, 10.0};
const Pose here;

}  // namespace

TEST(Cone, EndDiscsBelongToIt) {
    EXPECT_TRUE(widening.isPointInside(here, {0, 0, 0}));
    EXPECT_TRUE(widening.isPointInside(here, {0, 0, 10}));
    EXPECT_FALSE(widening.isPointInside(here, {0, 0, -0.001f}));
    EXPECT_FALSE(widening.isPointInside(here, {0, 0, 10.001f}));
}

TEST(Cone, LateralSurfaceDoesNotBelongToIt) {
    EXPECT_FALSE(widening.isPointInside(here, {1, 0, 0}));
    EXPECT_TRUE(widening.isPointInside(here, {0.999f, 0, 0}));
    EXPECT_FALSE(widening.isPointInside(here, {0, 2, 5}));
    EXPECT_TRUE(widening.isPointInside(here, {0, 1.999f, 5}));
    EXPECT_FALSE(widening.isPointInside(here, {-3, 0, 10}));
    EXPECT_TRUE(widening.isPointInside(here, {-2.999f, 0, 10}));
}

TEST(Cone, LiesAlongTheZAxisOfThePose) {
    // Turned by a quarter about y the cone points along +x.
    const Pose pose{{100, 0, 0}, Rotation(std::numbers::pi_v<float> / 2, Vec{0, 1, 0})};
    EXPECT_TRUE(widening.isPointInside(pose, {105, 0, 1.9f}));
    EXPECT_FALSE(widening.isPointInside(pose, {105, 0, 2.1f}));
    EXPECT_FALSE(widening.isPointInside(pose, {99, 0, 0}));
    EXPECT_FALSE(widening.isPointInside(pose, {0, 0, 5}));
}

TEST(Cone, WithoutHeightContainsNothing) {
    EXPECT_FALSE((Cone{1.0, 1.0, 0.0}).isPointInside(here, {0, 0, 0}));
    EXPECT_FALSE((Cone{1.0, 1.0, -5.0}).isPointInside(here, {0, 0, -1}));
    EXPECT_FALSE(Cone().isPointInside(here, {0, 0, 0}));
}

TEST(Cone, ContainsNoNaN) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(widening.isPointInside(here, {nan, 0, 5}));
    EXPECT_FALSE(widening.isPointInside(here, {0, 0, nan}));
}

}  // namespace vrn::visual
