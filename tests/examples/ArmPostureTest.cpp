#include <gtest/gtest.h>
#include <gp_Quaternion.hxx>

#include <cmath>
#include <cstddef>
#include <numbers>

#include "examples/cell/Arm.h"

namespace vrn::examples {
namespace {

constexpr double degree = std::numbers::pi / 180;

/// The arm's joints alone.
Linkage BareArm(const ArmPosture& posture) {
    static const Linkage arm = MakeArm();
    Linkage bare{arm.name, {}, {}, {}};
    for (const LinkBodies& link : arm.links) bare.links.push_back({link.name, link.joint, {}});
    bare.valuesDegrees.assign(posture.begin(), posture.end());
    bare.valuesDegrees.push_back(0);
    return bare;
}

gp_Trsf FlangeAt(const ArmPosture& posture) { return LinkPlaces(BareArm(posture)).back(); }

double TurnBetween(const gp_Trsf& a, const gp_Trsf& b) {
    return (a.Inverted() * b).GetRotation().GetRotationAngle();
}

void ExpectSamePlace(const gp_Trsf& a, const gp_Trsf& b) {
    EXPECT_NEAR((a.TranslationPart() - b.TranslationPart()).Modulus(), 0, 1e-6);
    EXPECT_NEAR(std::remainder(TurnBetween(a, b), 2 * std::numbers::pi), 0, 1e-6);
}

TEST(CellArm, StandsUprightAtZero) {
    const gp_Trsf flange = FlangeAt({});
    EXPECT_NEAR(flange.TranslationPart().X(),
                arm::shoulderForward + arm::upperLength + arm::flangeDistance, 1e-9);
    EXPECT_NEAR(flange.TranslationPart().Y(), 0, 1e-9);
    EXPECT_NEAR(flange.TranslationPart().Z(),
                arm::shoulderHeight + arm::lowerLength + arm::elbowRise, 1e-9);
    EXPECT_NEAR(gp_Dir(0, 0, 1).Transformed(flange).X(), 1, 1e-12);
    EXPECT_NEAR(gp_Dir(1, 0, 0).Transformed(flange).Z(), -1, 1e-12);
}

TEST(CellArm, ReachesTwoAndAHalfMetres) {
    const double reach =
        arm::shoulderForward + arm::lowerLength + std::hypot(arm::upperLength, arm::elbowRise);
    EXPECT_NEAR(reach, 2500, 20);
}

TEST(CellArm, EachAxisTurnsWhatComesAfterItOnly) {
    const std::vector<gp_Trsf> before = LinkPlaces(BareArm({}));
    for (std::size_t axis = 0; axis < 6; ++axis) {
        ArmPosture posture{};
        posture[axis] = 20;
        const std::vector<gp_Trsf> after = LinkPlaces(BareArm(posture));
        for (std::size_t i = 0; i < before.size(); ++i)
            EXPECT_NEAR(TurnBetween(before[i], after[i]), i > axis ? 20 * degree : 0, 1e-7)
                << "axis " << axis + 1 << ", link " << i;
        // The link's own joint stays where it is.
        EXPECT_NEAR(
            (before[axis + 1].TranslationPart() - after[axis + 1].TranslationPart()).Modulus(), 0,
            1e-9);
    }
}

TEST(CellArm, PositiveSecondAndThirdAxisLeanForwardAndDown) {
    EXPECT_GT(FlangeAt({0, 20, 0, 0, 0, 0}).TranslationPart().X(),
              FlangeAt({}).TranslationPart().X());
    EXPECT_LT(FlangeAt({0, 0, 20, 0, 0, 0}).TranslationPart().Z(),
              FlangeAt({}).TranslationPart().Z());
}

TEST(ArmPosture, LeadsBackToThePlaceItWasMadeFor) {
    for (const ArmPosture& posture :
         {ArmPosture{10, 20, 30, 40, 50, 60}, ArmPosture{-120, -30, 10, -100, 35, -170},
          ArmPosture{75, 80, -20, 15, -60, 5}, ArmPosture{0, 5, 5, 179, 90, 10}}) {
        const gp_Trsf flange = FlangeAt(posture);
        for (const bool flipped : {false, true}) {
            const std::optional<ArmPosture> found = PostureAt(flange, flipped);
            ASSERT_TRUE(found);
            ExpectSamePlace(FlangeAt(*found), flange);
            EXPECT_EQ((*found)[4] < 0, flipped);
        }
    }
}

TEST(ArmPosture, FindsTheValuesThemselves) {
    const ArmPosture wanted{10, 20, 30, 40, 50, 60};
    const std::optional<ArmPosture> found = PostureAt(FlangeAt(wanted));
    ASSERT_TRUE(found);
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR((*found)[i], wanted[i], 1e-6);
}

TEST(ArmPosture, StraightWristIsReachedToo) {
    const gp_Trsf flange = FlangeAt({15, 10, 20, 0, 0, 0});
    const std::optional<ArmPosture> found = PostureAt(flange);
    ASSERT_TRUE(found);
    ExpectSamePlace(FlangeAt(*found), flange);
}

TEST(ArmPosture, PlacesOutOfReachGiveNothing) {
    gp_Trsf far = FlangeAt({});
    far.SetTranslationPart({4000, 0, 1000});
    EXPECT_FALSE(PostureAt(far));
    gp_Trsf close = FlangeAt({});
    close.SetTranslationPart({arm::shoulderForward + arm::flangeDistance, 0, arm::shoulderHeight});
    EXPECT_FALSE(PostureAt(close));
}

TEST(ArmPosture, PlacesBeyondALimitGiveNothing) {
    // Axis 5 would have to bend further than it can.
    const gp_Trsf flange = FlangeAt({0, 30, 0, 0, arm::limits[4].upperDegrees + 5, 0});
    EXPECT_FALSE(PostureAt(flange));
    EXPECT_TRUE(PostureAt(FlangeAt({0, 30, 0, 0, arm::limits[4].upperDegrees - 5, 0})));
}

TEST(CellArm, WristReachIsAsFarAsTheStretchedArm) {
    const auto border = WristReach();
    ASSERT_GT(border.size(), 50u);
    const double reach = arm::lowerLength + std::hypot(arm::upperLength, arm::elbowRise);
    const gp_Pnt2d shoulder(arm::shoulderForward, arm::shoulderHeight);
    for (const gp_Pnt2d& at : border) EXPECT_NEAR(at.Distance(shoulder), reach, 1e-9);
    // From below in front to behind, so that the outside is to the right.
    EXPECT_GT(border.front().X(), 1500);
    EXPECT_LT(border.front().Y(), arm::shoulderHeight);
    EXPECT_LT(border.back().X(), -1000);
    // The arm itself gets there, and no farther.
    const gp_Trsf flange =
        FlangeAt({0, arm::limits[1].upperDegrees,
                  -std::atan2(arm::upperLength, arm::elbowRise) / degree, 0, 0, 0});
    const gp_Vec outward = flange.GetRotation() * gp_Vec(0, 0, 1);
    const gp_Vec wrist = gp_Vec(flange.TranslationPart()) - outward * arm::flangeDistance;
    EXPECT_NEAR(wrist.X(), border.front().X(), 1e-6);
    EXPECT_NEAR(wrist.Z(), border.front().Y(), 1e-6);
}

}  // namespace
}  // namespace vrn::examples
