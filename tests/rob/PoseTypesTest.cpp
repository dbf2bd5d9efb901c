#include "suite/rob/PoseTypes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <numbers>
#include <stdexcept>
#include <vector>

namespace {

using namespace vrn::rob;
using Rot = RotationTemplate<double>;
using Vec = Vec3Template<double>;
using Pose = PoseTemplate<double>;

constexpr double pi = std::numbers::pi;

template <class T>
constexpr bool isQuaternionInOrder =
    offsetof(T, w) == 0 && offsetof(T, x) == sizeof(T) / 4 && offsetof(T, y) == sizeof(T) / 2 &&
    offsetof(T, z) == sizeof(T) / 4 * 3;
static_assert(isQuaternionInOrder<RotationTemplate<float>>);
static_assert(isQuaternionInOrder<RotationTemplate<double>>);
static_assert(isQuaternionInOrder<OrientTemplate<double>>);
static_assert(offsetof(PoseTemplate<float>, position) == 0);
static_assert(offsetof(PoseTemplate<float>, rotation) == 12 && sizeof(PoseTemplate<float>) == 28);

void ExpectNear(const Vec& got, const Vec& wanted) {
    EXPECT_NEAR(got.x, wanted.x, 1e-12);
    EXPECT_NEAR(got.y, wanted.y, 1e-12);
    EXPECT_NEAR(got.z, wanted.z, 1e-12);
}

TEST(RotationTemplate, FourNumbersAreTakenWithWFirst) {
    const Rot q(0.5, 0.1, 0.2, 0.3);
    EXPECT_EQ(q.w, 0.5);
    EXPECT_EQ(q.x, 0.1);
    EXPECT_EQ(q.y, 0.2);
    EXPECT_EQ(q.z, 0.3);
    EXPECT_EQ(Rot(), Rot(1, 0, 0, 0));
}

TEST(RotationTemplate, QuarterTurnAboutZTakesXToY) {
    const Rot q(pi / 2, Vec{0, 0, 1});
    ExpectNear(q * Vec{1, 0, 0}, {0, 1, 0});
    ExpectNear((q * DirTemplate<double>{1, 0, 0}).asVec3(), {0, 1, 0});
    ExpectNear((q * PosTemplate<double>{1, 0, 0}).asVec3(), {0, 1, 0});
    ExpectNear(q.rotateDir({1, 0, 0}).asVec3(), {0, 1, 0});
    EXPECT_EQ(q, Rot(pi / 2, DirTemplate<double>{0, 0, 1}));
}

TEST(RotationTemplate, ProductAppliesTheRightFactorFirst) {
    const Rot aboutX(pi / 2, Vec{1, 0, 0}), aboutZ(pi / 2, Vec{0, 0, 1});
    ExpectNear((aboutZ * aboutX) * Vec{0, 1, 0}, {0, 0, 1});  // y to z, which z leaves
    ExpectNear((aboutX * aboutZ) * Vec{0, 1, 0}, {-1, 0, 0});
}

TEST(RotationTemplate, ThreeAnglesTurnAboutFixedXThenYThenZ) {
    const Rot q(pi / 2, pi / 2, 0.0);
    ExpectNear(q * Vec{0, 1, 0}, {1, 0, 0});  // x turns y to z, y turns that to x
    EXPECT_TRUE(Rot(0.0, 0.0, 0.4).isApprox(Rot(0.4, Vec{0, 0, 1})));
}

TEST(RotationTemplate, InverseUndoesTheTurn) {
    const Rot q(0.7, Vec{1, 2, 3}.normalized());
    EXPECT_TRUE((q * q.inverse()).isApprox(Rot()));
    ExpectNear(q.inverse() * (q * Vec{4, 5, 6}), {4, 5, 6});
}

TEST(RotationTemplate, NegatedQuaternionIsTheSameTurn) {
    const Rot q(0.7, Vec{0, 0, 1});
    EXPECT_TRUE(q.isApprox(Rot(-q.w, -q.x, -q.y, -q.z)));
    EXPECT_FALSE(q.isApprox(Rot(0.70001, Vec{0, 0, 1})));
}

TEST(RotationTemplate, From2DirsTakesOneToTheOther) {
    const Vec from = Vec{1, 2, 3}.normalized(), to = Vec{-2, 1, 5}.normalized();
    ExpectNear(Rot::From2Dirs(from, to) * from, to);
    EXPECT_TRUE(Rot::From2Dirs(from, from).isApprox(Rot()));
}

TEST(RotationTemplate, From2DirsTurnsOppositeOnesHalfWayAround) {
    for (const Vec& dir : std::vector<Vec>{{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, 0, 1}}) {
        const Rot q = Rot::From2Dirs(dir, -dir);
        ExpectNear(q * dir, -dir);
        EXPECT_NEAR(q.w, 0, 1e-12);
        EXPECT_NEAR(q.x * q.x + q.y * q.y + q.z * q.z, 1, 1e-12);
    }
}

TEST(RotationTemplate, From2DirsOfAlmostOppositeOnesStaysAUnitQuaternion) {
    const RotationTemplate<float> q = RotationTemplate<float>::From2Dirs(
        Vec3Template<float>{0, 0, 1}, Vec3Template<float>{1e-4f, 0, -1});
    EXPECT_NEAR(q.w * q.w + q.x * q.x + q.y * q.y + q.z * q.z, 1, 1e-5);
}

TEST(RotationTemplate, From2DirsRefusesAZeroVector) {
    EXPECT_THROW((void)Rot::From2Dirs(Vec{}, Vec{0, 0, 1}), std::overflow_error);
}

TEST(RotationTemplate, FromAxesTakesTheUnitAxesToTheGivenOnes) {
    // One turn for each component that can be the largest: w, x, y, z.
    for (const Rot& q : {Rot(0.3, Vec{0, 0, 1}), Rot(3.0, Vec{1, 0, 0}), Rot(3.0, Vec{0, 1, 0}),
                         Rot(3.0, Vec{0, 0, 1})}) {
        const Rot back = Rot::FromAxes(q * Vec{1, 0, 0}, q * Vec{0, 1, 0}, q * Vec{0, 0, 1});
        EXPECT_TRUE(back.isApprox(q));
    }
}

TEST(PoseTemplate, PointIsTurnedThenMoved) {
    const Pose pose({10, 0, 0}, Rot(pi / 2, Vec{0, 0, 1}));
    ExpectNear(TransformPoint(pose, PosTemplate<double>{1, 0, 0}).asVec3(), {10, 1, 0});
}

TEST(PoseTemplate, NarrowingRoundsAllSevenNumbers) {
    const PoseTemplate<float> narrow(Pose({0.1, 0.2, 0.3}, Rot(0.4, 0.5, 0.6, 0.7)));
    EXPECT_EQ(narrow, (PoseTemplate<float>({0.1f, 0.2f, 0.3f}, {0.4f, 0.5f, 0.6f, 0.7f})));
}

}  // namespace
