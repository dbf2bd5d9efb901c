#include "selection/Ray.h"

#include <gtest/gtest.h>
#include <cfloat>
#include <numbers>
#include <sstream>

namespace vrn::visual {

namespace {

using Pose = rob::PoseTemplate<float>;
using Rotation = rob::RotationTemplate<float>;
using Vec = rob::Vec3Template<float>;

const Pose quarterTurn{{10, 20, 30}, Rotation(std::numbers::pi_v<float> / 2, Vec{0, 0, 1})};

void ExpectTurned(const Ray& ray) {
    EXPECT_NEAR(ray.origin.x, 8, 1e-5);
    EXPECT_NEAR(ray.origin.y, 21, 1e-5);
    EXPECT_NEAR(ray.origin.z, 33, 1e-5);
    EXPECT_NEAR(ray.direction.x, -4, 1e-5);
    EXPECT_NEAR(ray.direction.y, 0, 1e-5);
    EXPECT_NEAR(ray.direction.z, 3, 1e-5);
}

}  // namespace

TEST(Ray, IsEndlessWhenNothingElseIsSaid) { EXPECT_EQ(Ray().maxDistance, FLT_MAX); }

TEST(Ray, TransformedMovesTheOriginTurnsTheDirectionAndForgetsTheEnd) {
    const Ray ray{{1, 2, 3}, {0, 4, 3}, 7.0f};
    const Ray moved = ray.transformed(quarterTurn);
    ExpectTurned(moved);  // length 5 stays: nothing normalises
    EXPECT_EQ(moved.maxDistance, FLT_MAX);
    EXPECT_EQ(ray.maxDistance, 7.0f);
}

TEST(Ray, TransformKeepsTheEnd) {
    Ray ray{{1, 2, 3}, {0, 4, 3}, 7.0f};
    ray.transform(quarterTurn);
    ExpectTurned(ray);
    EXPECT_EQ(ray.maxDistance, 7.0f);
}

TEST(Ray, DumpWritesOriginAndDirectionALineEach) {
    std::ostringstream out;
    Ray{{1, 2.5f, -3}, {0, 0, 1}, 5}.dump(out);
    EXPECT_EQ(out.str(), "origin: 1 2.5 -3\ndirection: 0 0 1\n");
}

}  // namespace vrn::visual
