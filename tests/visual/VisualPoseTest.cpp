#include <cmath>
#include <functional>
#include <limits>
#include <memory>

#include <gmock/gmock.h>

#include <OgreSceneNode.h>

#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "tests/support/EngineFixture.h"
#include "visual/Visual.h"

namespace vrn::test {

namespace {

using Pos = rob::PosTemplate<float>;
using Rotation = rob::RotationTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using Vec = rob::Vec3Template<float>;
using visual::Visual;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();
const float half = std::sqrt(0.5f);
const Rotation quarterAboutZ{half, 0, 0, half};

void ExpectNear(const Pos& a, const Pos& b, float tolerance = 1e-4f) {
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

}  // namespace

class VisualPose : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        parent = new Visual("parent", scene().root);
        parent->setPose({{100, 0, 0}, quarterAboutZ});
        visual = new Visual("visual", parent);
        free = std::make_unique<Visual>("free visual");
    }

    Visual* parent = nullptr;
    Visual* visual = nullptr;
    std::unique_ptr<Visual> free;
};

TEST_F(VisualPose, LocalPartsAreStoredInTheParentsFrame) {
    visual->setPosition(Pos{1, 2, 3});
    EXPECT_EQ(visual->getPosition(), (Pos{1, 2, 3}));
    visual->setPosition(4, 5, 6);
    EXPECT_EQ(visual->getPosition(), (Pos{4, 5, 6}));
    visual->setRotation(quarterAboutZ);
    EXPECT_EQ(visual->getPosition(), (Pos{4, 5, 6}));
    EXPECT_TRUE(visual->getPose().rotation.isApprox(quarterAboutZ));
}

TEST_F(VisualPose, WorldPartsIncludeTheParents) {
    visual->setPose({{10, 0, 0}, quarterAboutZ});
    ExpectNear(visual->getWorldPosition(), {100, 10, 0});
    EXPECT_TRUE(visual->getWorldRotation().isApprox(Rotation{0, 0, 0, 1}));
    const Pose world = visual->getWorldPose();
    EXPECT_EQ(world.position, visual->getWorldPosition());
    EXPECT_EQ(world.rotation, visual->getWorldRotation());
}

TEST_F(VisualPose, GetPoseGivesTheLocalRotation) {
    visual->setPose({{1, 2, 3}, Rotation{0, 1, 0, 0}});
    EXPECT_EQ(visual->getPose(), (Pose{{1, 2, 3}, Rotation{0, 1, 0, 0}}));
}

TEST_F(VisualPose, WorldSettersReachTheirPlaceWhateverTheParent) {
    visual->setWorldPosition({7, 8, 9});
    ExpectNear(visual->getWorldPosition(), {7, 8, 9});
    ExpectNear(visual->getPosition(), {8, 93, 9});
    visual->setWorldPose({{1, 1, 1}, Rotation{}});
    ExpectNear(visual->getWorldPosition(), {1, 1, 1});
    EXPECT_TRUE(visual->getWorldRotation().isApprox(Rotation{}));
    EXPECT_TRUE(visual->getPose().rotation.isApprox(quarterAboutZ.inverse()));
}

TEST_F(VisualPose, WorldSettersActLocallyWithoutAParent) {
    free->setWorldPosition({1, 2, 3});
    EXPECT_EQ(free->getPosition(), (Pos{1, 2, 3}));
    free->setWorldPose({{4, 5, 6}, quarterAboutZ});
    EXPECT_EQ(free->getPosition(), (Pos{4, 5, 6}));
    EXPECT_TRUE(free->getPose().rotation.isApprox(quarterAboutZ));
}

TEST_F(VisualPose, OrientationsAreNarrowed) {
    const double h = std::sqrt(0.5);
    visual->setOrientation({h, 0, h, 0});
    EXPECT_TRUE(visual->getPose().rotation.isApprox({half, 0, half, 0}));
}

TEST_F(VisualPose, RotationsAreNormalised) {
    visual->setRotation({2, 0, 0, 2});
    EXPECT_TRUE(visual->getPose().rotation.isApprox(quarterAboutZ));
    visual->setPose({{}, {0, 0, -3, 0}});
    EXPECT_TRUE(visual->getPose().rotation.isApprox({0, 0, 1, 0}));
    visual->setWorldPose({{}, {0, 5, 0, 0}});
    EXPECT_TRUE(visual->getWorldRotation().isApprox({0, 1, 0, 0}));
}

TEST_F(VisualPose, TheLargestAndSmallestQuaternionsAreTurnsToo) {
    for (const float scale : {1e30f, 1e-30f, 3e38f, 1e-38f}) {
        visual->setRotation({scale, 0, 0, scale});
        EXPECT_TRUE(visual->getPose().rotation.isApprox(quarterAboutZ)) << scale;
    }
}

TEST_F(VisualPose, AZeroQuaternionIsNoTurn) {
    const Rotation zero{0, 0, 0, 0};
    visual->setRotation(quarterAboutZ);
    visual->setRotation(zero);
    EXPECT_EQ(visual->getPose().rotation, Rotation{});
    visual->setRotation(quarterAboutZ);
    visual->setPose({{1, 2, 3}, zero});
    EXPECT_EQ(visual->getPose(), (Pose{{1, 2, 3}, Rotation{}}));
    visual->setWorldPose({{1, 2, 3}, zero});
    EXPECT_TRUE(visual->getWorldRotation().isApprox(Rotation{}));
    visual->setOrientation({0, 0, 0, 0});
    EXPECT_EQ(visual->getPose().rotation, Rotation{});
    free->setWorldPose({{}, zero});
    EXPECT_EQ(free->getPose().rotation, Rotation{});
}

TEST_F(VisualPose, WhatIsNotFiniteIsRefusedAndChangesNothing) {
    const Pose before{{1, 2, 3}, Rotation{0, 0, 1, 0}};
    visual->setPose(before);
    for (const float bad : {nan, infinity, -infinity}) {
        EXPECT_THROW(visual->setPosition({bad, 0, 0}), std::invalid_argument);
        EXPECT_THROW(visual->setPosition(0, bad, 0), std::invalid_argument);
        EXPECT_THROW(visual->setWorldPosition({0, 0, bad}), std::invalid_argument);
        EXPECT_THROW(visual->setRotation({bad, 0, 0, 0}), std::invalid_argument);
        EXPECT_THROW(visual->setPose({{}, {1, bad, 0, 0}}), std::invalid_argument);
        EXPECT_THROW(visual->setPose({{0, bad, 0}, {}}), std::invalid_argument);
        EXPECT_THROW(visual->setWorldPose({{}, {1, 0, 0, bad}}), std::invalid_argument);
        EXPECT_THROW(visual->setOrientation({1, 0, bad, 0}), std::invalid_argument);
        EXPECT_THROW(visual->setScale(1, bad, 1), std::invalid_argument);
    }
    EXPECT_THROW(visual->setOrientation({1e60, 0, 0, 0}), std::invalid_argument);
    EXPECT_THROW(visual->setScale(1e60, 1, 1), std::invalid_argument);
    EXPECT_EQ(visual->getPose(), before);
    EXPECT_EQ(visual->node->getScale(), Ogre::Vector3::UNIT_SCALE);
}

TEST_F(VisualPose, ScalesAreNarrowed) {
    visual->setScale(0.1, 2, -3);
    EXPECT_EQ(visual->node->getScale(), Ogre::Vector3(0.1f, 2, -3));
}

struct Mover {
    const char* name;
    std::function<void(Visual&)> move;
};

class VisualMoves : public EngineTest, public testing::WithParamInterface<Mover> {};

TEST_P(VisualMoves, MarksTheVisualAndAllBelowIt) {
    auto* parent = new Visual("parent", scene().root);
    Visual* part = showBoxPart("pickable");
    parent->attachVisual(part);
    auto& selection = *selection::VisualSelection::Get();
    selection.update();
    const auto* object = selection.getObject(findBelow(part, VisualType::Mesh));
    ASSERT_FALSE(selection.dirty);
    ASSERT_FALSE(object->worldBoxDirty);
    GetParam().move(*parent);
    EXPECT_TRUE(selection.dirty);
    EXPECT_TRUE(object->worldBoxDirty);
}

TEST_P(VisualMoves, MarksNothingWhereNothingIsRegistered) {
    auto* visual = new Visual("visual", scene().root);
    GetParam().move(*visual);
    EXPECT_FALSE(selection::VisualSelection::Get()->dirty);
}

TEST_P(VisualMoves, WhatHangsBelowIsKnownToHaveMovedBeforeTheNextFrame) {
    auto* parent = new Visual("parent", scene().root);
    parent->setPose({{100, 0, 0}, quarterAboutZ});
    auto* visual = new Visual("visual", parent);
    auto* child = new Visual("child", visual);
    auto* grandchild = new Visual("grandchild", child);
    child->setPosition(10, 0, 0);
    grandchild->setPosition(0, 20, 0);
    visual->setPose({{7, 7, 7}, Rotation(1.0f, Vec{1, 0, 0})});
    frame();
    static_cast<void>(grandchild->getWorldPose());  // now the engine holds it
    GetParam().move(*visual);
    const Pose place = visual->getWorldPose(), below = grandchild->getWorldPose();
    ExpectNear(below.position, rob::TransformPoint(place, Pos{10, 20, 0}));
    EXPECT_TRUE(below.rotation.isApprox(place.rotation));
    frame();
    ExpectNear(grandchild->getWorldPosition(), below.position);
}

INSTANTIATE_TEST_SUITE_P(
    Setters, VisualMoves,
    testing::Values(Mover{"SetPosition", [](Visual& v) { v.setPosition({1, 2, 3}); }},
                    Mover{"SetPositionByNumbers", [](Visual& v) { v.setPosition(1, 2, 3); }},
                    Mover{"SetWorldPosition", [](Visual& v) { v.setWorldPosition({1, 2, 3}); }},
                    Mover{"SetRotation", [](Visual& v) { v.setRotation(quarterAboutZ); }},
                    Mover{"SetOrientation", [](Visual& v) { v.setOrientation({0, 1, 0, 0}); }},
                    Mover{"SetPose", [](Visual& v) { v.setPose({}); }},
                    Mover{"SetWorldPose", [](Visual& v) { v.setWorldPose({}); }}),
    [](const auto& row) { return row.param.name; });

TEST_F(VisualPose, WhatMovesWithItsParentIsPickedAtItsNewPlace) {
    Visual* part = showBoxPart("pickable");
    lookFrom({10, 20, 400}, {10, 20, 0});
    frame();
    const auto pickMiddle = [] {
        return selection::VisualSelection::Get()->select(windowWidth / 2.0f, windowHeight / 2.0f);
    };
    ASSERT_NEAR(pickMiddle().position.z, 50, 0.01f);
    part->setPosition(0, 0, 30);
    selection::VisualSelection::Get()->update();
    EXPECT_NEAR(pickMiddle().position.z, 80, 0.01f);
    frame();
    EXPECT_NEAR(pickMiddle().position.z, 80, 0.01f);
}

TEST_F(VisualPose, WhatHangsElsewhereIsKnownThereWithAllBelow) {
    auto* child = new Visual("child", visual);
    frame();
    static_cast<void>(child->getWorldPose());
    auto* other = new Visual("other", scene().root);
    other->setPosition(0, 0, 500);
    other->attachVisual(visual);
    ExpectNear(child->getWorldPosition(), visual->getWorldPosition());
    ExpectNear(child->getWorldPosition(), {0, 0, 500});
}

TEST_F(VisualPose, ScalingMarksNothing) {
    Visual* part = showBoxPart("pickable");
    selection::VisualSelection::Get()->update();
    part->setScale(2, 2, 2);
    EXPECT_FALSE(selection::VisualSelection::Get()->dirty);
}

TEST_F(VisualPose, WhatIsRefusedMarksNothing) {
    Visual* part = showBoxPart("pickable");
    selection::VisualSelection::Get()->update();
    EXPECT_THROW(part->setPosition(nan, 0, 0), std::invalid_argument);
    EXPECT_FALSE(selection::VisualSelection::Get()->dirty);
}

TEST_F(VisualPose, UnderAParentOfNoExtentAWorldPositionIsTheParentsThere) {
    auto* flat = new Visual("flat", scene().root);
    flat->setPosition(10, 20, 30);
    flat->setScale(0, 2, 1);
    auto* child = new Visual("child", flat);
    child->setWorldPose({{100, 200, 300}, {}});
    ExpectNear(child->getPosition(), {0, 90, 270});
    ExpectNear(child->getWorldPosition(), {10, 200, 300});
    child->setWorldPosition({-5, 20, 30});
    ExpectNear(child->getPosition(), {0, 0, 0});
    frame();
}

}  // namespace vrn::test
