#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

#include <gmock/gmock.h>
#include <OgreAxisAlignedBox.h>
#include <OgreCamera.h>
#include <OgreManualObject.h>
#include <OgreSceneManager.h>

#include "suite/sdf/SdfManager.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "tests/support/EngineFixture.h"
#include "tests/view/OffscreenTarget.h"
#include "view/Camera.h"
#include "visual/Visual.h"

namespace vrn::test {

using testing::StrEq;
using testing::ThrowsMessage;
using visual::Camera;
using visual::Visual;
using Dir = rob::DirTemplate<float>;
using Pos = rob::PosTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using Rotation = rob::RotationTemplate<float>;
using Vec = rob::Vec3Template<float>;

namespace {

Vec AxisX(const Pose& pose) { return pose.rotation * Vec{1, 0, 0}; }
Vec AxisY(const Pose& pose) { return pose.rotation * Vec{0, 1, 0}; }
Vec ViewAxis(const Pose& pose) { return pose.rotation * Vec{0, 0, -1}; }

void ExpectNear(const Vec& a, const Vec& b, float tolerance = 1e-4f) {
    EXPECT_LT((a - b).length(), tolerance)
        << a.x << ' ' << a.y << ' ' << a.z << " for " << b.x << ' ' << b.y << ' ' << b.z;
}

}  // namespace

class ViewPoses : public EngineTest {
protected:
    void TearDown() override {
        if (camera().renderTarget != &window()) camera().setRenderTarget(&window());
        camera().setHFOV(1.0471976f);
        EngineTest::TearDown();
    }
    static Camera& camera() { return *Camera::Get(); }
    static float narrowerFov() { return std::min(camera().getVFOV(), camera().getHFOV()); }
    static float distanceFor(float radius) { return radius / std::sin(narrowerFov() / 2); }
    /// A cube of side 100 round `centre`.
    Visual* showCube(const Pos& centre) {
        return showBoxPart("cube", {{centre.x, centre.y, centre.z}, {}});
    }
    static constexpr float cubeRadius = 86.60254f;
    /// A visual whose box Ogre takes for endless.
    Visual* showEndless() {
        auto* visual = new Visual(scene().root);
        auto* object = scene().sceneManager->createManualObject();
        object->setBoundingBox(Ogre::AxisAlignedBox::BOX_INFINITE);
        visual->attachObject(object);
        return visual;
    }
};

// --- distance and position

TEST_F(ViewPoses, AnEmptySceneIsASphereOfTenRoundTheOrigin) {
    for (const Dir& dir : {Dir{1, 0, 0}, Dir{0, 0, -1}, Dir{0, 0.6f, -0.8f}})
        ExpectNear(scene().getViewPoseForDir(dir).position.asVec3(),
                   dir.asVec3() * -distanceFor(10), 1e-3f);
    EXPECT_NEAR(scene().getViewAllPose().position.asVec3().length(), distanceFor(10), 1e-3f);
}

TEST_F(ViewPoses, ADirectionNeedsNoUnitLengthHoweverLongItIs) {
    const Pose pose = scene().getViewPoseForDir({1, 1, -1});
    for (const float length : {1e-3f, 1e10f, 1e30f}) {
        const Pose other = scene().getViewPoseForDir({length, length, -length});
        ExpectNear(other.position.asVec3(), pose.position.asVec3(), 1e-3f);
        EXPECT_TRUE(other.rotation.isApprox(pose.rotation));
    }
}

TEST_F(ViewPoses, TheSphereRoundTheBoxJustFits) {
    showCube({0, 0, 50});
    const Pose pose = scene().getViewPoseForDir({0, 1, 0});
    ExpectNear(pose.position.asVec3(), {0, -distanceFor(cubeRadius), 50}, 1e-2f);
}

TEST_F(ViewPoses, ASceneFarFromTheOriginIsFramedWhereItIs) {
    showCube({1e6f, -2e6f, 3e5f});
    const Pose pose = scene().getViewPoseForDir({1, 0, 0});
    ExpectNear(pose.position.asVec3(), {1e6f - distanceFor(cubeRadius), -2e6f, 3e5f}, 1.0f);
    ExpectNear(ViewAxis(pose), {1, 0, 0});
}

TEST_F(ViewPoses, TheNarrowerAngleOfViewCounts) {
    showCube({});
    const float wide = scene().getViewPoseForDir({1, 0, 0}).position.asVec3().length();
    EXPECT_NEAR(wide, cubeRadius / std::sin(camera().getVFOV() / 2), 1e-2f);
    const OffscreenTarget tall("tall target", 200, 400);
    camera().setRenderTarget(tall.get());
    camera().updateFOV();
    ASSERT_LT(camera().getHFOV(), camera().getVFOV());
    EXPECT_NEAR(scene().getViewPoseForDir({1, 0, 0}).position.asVec3().length(),
                cubeRadius / std::sin(camera().getHFOV() / 2), 1e-2f);
}

TEST_F(ViewPoses, TheFramedSceneTouchesNoSideOfThePicture) {
    showCube({500, 600, 700});
    const Pose pose = scene().getViewPoseForDir(Dir(Vec{1, 2, -1}.normalized()));
    scene().setCameraPose(pose);
    pump();
    for (int i = 0; i < 8; ++i) {
        const auto pixel = project({450.0f + 100.0f * static_cast<float>(i & 1),
                                    550.0f + 50.0f * static_cast<float>(i & 2),
                                    650.0f + 25.0f * static_cast<float>(i & 4)});
        EXPECT_GT(pixel.x, 0);
        EXPECT_LT(pixel.x, windowWidth);
        EXPECT_GT(pixel.y, 0);
        EXPECT_LT(pixel.y, windowHeight);
    }
}

TEST_F(ViewPoses, AnEndlessBoxCountsTenThousandRoundTheOrigin) {
    showCube({1e6f, 0, 0});
    showEndless();
    const Pose pose = scene().getViewPoseForDir({1, 0, 0});
    ExpectNear(pose.position.asVec3(), {-distanceFor(std::sqrt(3.0f) * 10000), 0, 0}, 1.0f);
}

TEST_F(ViewPoses, WhatIsHiddenDoesNotCount) {
    showCube({});
    Visual* far = showCube({1e5f, 0, 0});
    far->setVisible(false, /*cascade=*/true);
    EXPECT_NEAR(scene().getViewPoseForDir({1, 0, 0}).position.x, -distanceFor(cubeRadius), 1e-2f);
}

TEST_F(ViewPoses, HandlesAndPreviewsDoNotCount) {
    showCube({});
    Visual* far = showCube({1e5f, 0, 0});
    for (const VisualType type :
         {VisualType::Helper, VisualType::PreviewCurve, VisualType::UVIndicator}) {
        far->type = type;
        EXPECT_NEAR(scene().getViewPoseForDir({1, 0, 0}).position.x, -distanceFor(cubeRadius),
                    1e-2f);
    }
    far->type = VisualType::Part;
    EXPECT_LT(scene().getViewPoseForDir({1, 0, 0}).position.x, -1e4f);
}

TEST_F(ViewPoses, ADirectionNeedsNoUnitLengthButSome) {
    showCube({});
    const Pose unit = scene().getViewPoseForDir({1, 0, 0});
    const Pose longer = scene().getViewPoseForDir({7, 0, 0});
    ExpectNear(unit.position.asVec3(), longer.position.asVec3());
    EXPECT_TRUE(unit.rotation.isApprox(longer.rotation));
    EXPECT_THROW((void)scene().getViewPoseForDir({0, 0, 0}), std::overflow_error);
    EXPECT_THROW((void)scene().getViewPoseForDir({0, 0, 0}, {0, 0, 1}), std::overflow_error);
}

// --- rotation

TEST_F(ViewPoses, TheViewAxisPointsAlongTheDirectionWithTheVerticalUp) {
    for (const Vec& dir :
         {Vec{1, 0, 0}, Vec{0, 1, 0}, Vec{-1, 0, 0}, Vec{1, 2, -3}, Vec{0, -1, 5}}) {
        const Pose pose = scene().getViewPoseForDir(Dir(dir.normalized()));
        ExpectNear(ViewAxis(pose), dir.normalized());
        EXPECT_NEAR(AxisX(pose).z, 0, 1e-5f);
        EXPECT_GT(AxisY(pose).z, 0);
    }
}

TEST_F(ViewPoses, ThePresentDirectionNeedsNoTurn) {
    showCube({});
    const Pose pose = scene().getViewAllPose();
    EXPECT_LT((ViewAxis(pose) - Vec{camera().camera->getDerivedDirection().x,
                                    camera().camera->getDerivedDirection().y,
                                    camera().camera->getDerivedDirection().z})
                  .length(),
              1e-4f);
    ExpectNear(AxisX(pose), camera().getWorldRotation() * Vec{1, 0, 0});
}

TEST_F(ViewPoses, TheOppositeDirectionIsAHalfTurnAboutTheVertical) {
    lookFrom({-500, 0, 0}, {0, 0, 0});
    const Pose pose = scene().getViewPoseForDir({-1, 0, 0});
    ExpectNear(ViewAxis(pose), {-1, 0, 0});
    ExpectNear(AxisY(pose), {0, 0, 1});
    ExpectNear(AxisX(pose), camera().getWorldRotation() * Vec{-1, 0, 0});
}

TEST_F(ViewPoses, ARolledCameraIsLevelled) {
    const Rotation start = camera().getWorldRotation();
    camera().setWorldRotation(start * Rotation(0.7f, Vec{0, 0, 1}));
    const Pose pose = scene().getViewAllPose();
    EXPECT_NEAR(AxisX(pose).z, 0, 1e-4f);
    EXPECT_GT(AxisY(pose).z, 0);
}

TEST_F(ViewPoses, AlongTheVerticalTheCameraKeepsItsXAxis) {
    lookFrom({-500, -500, 300}, {0, 0, 0});
    const Vec x = camera().getWorldRotation() * Vec{1, 0, 0};
    for (const float z : {-1.0f, 1.0f}) {
        const Pose pose = scene().getViewPoseForDir({0, 0, z});
        ExpectNear(ViewAxis(pose), {0, 0, z});
        ExpectNear(AxisX(pose), x);
    }
}

TEST_F(ViewPoses, AlongTheVerticalACameraThatLiesOnItsSideStillGetsAPose) {
    camera().setWorldRotation(Rotation::FromAxes({0, 0, 1}, {0, 1, 0}, {-1, 0, 0}));
    const Pose pose = scene().getViewPoseForDir({0, 0, -1});
    ExpectNear(ViewAxis(pose), {0, 0, -1});
    EXPECT_NEAR(AxisX(pose).length(), 1, 1e-4f);
}

TEST_F(ViewPoses, TheVerticalIsThatOfTheSettings) {
    struct Row {
        int vertical;
        Dir dir;
        Vec up;
    };
    for (const Row& row : {Row{0, {0, 1, 0}, {1, 0, 0}}, Row{1, {0, 0, 1}, {0, 1, 0}}}) {
        scene().settings.verticalDir = row.vertical;
        ExpectNear(AxisY(scene().getViewPoseForDir(row.dir)), row.up);
    }
}

TEST_F(ViewPoses, AGivenUpDirectionIsUpOnThePicture) {
    showCube({});
    const Pose pose = scene().getViewPoseForDir({0, 0, -1}, {0, 1, 0});
    ExpectNear(ViewAxis(pose), {0, 0, -1});
    ExpectNear(AxisY(pose), {0, 1, 0});
    ExpectNear(pose.position.asVec3(), {0, 0, distanceFor(cubeRadius)}, 1e-2f);
    const Pose slanted = scene().getViewPoseForDir({1, 0, 0}, {1, 0, 1});
    ExpectNear(AxisY(slanted), {0, 0, 1});
}

TEST_F(ViewPoses, AnUpDirectionAlongTheViewIsRefused) {
    for (const Dir& up : {Dir{1, 0, 0}, Dir{-1, 0, 0}, Dir{0, 0, 0}})
        EXPECT_THROW((void)scene().getViewPoseForDir({1, 0, 0}, up), std::overflow_error);
}

// --- centre

TEST_F(ViewPoses, TheCentreViewTurnsTheCameraWhereItStands) {
    showCube({1000, 0, 0});
    lookFrom({0, 0, 0}, {0, 500, 0});
    const Pose pose = scene().getViewCenterPose();
    EXPECT_EQ(pose.position, (Pos{0, 0, 0}));
    ExpectNear(ViewAxis(pose), {1, 0, 0});
    ExpectNear(AxisY(pose), {0, 0, 1});
}

TEST_F(ViewPoses, TheCentreOfAnEmptySceneIsTheOrigin) {
    lookFrom({0, -300, 400}, {500, 0, 0});
    ExpectNear(ViewAxis(scene().getViewCenterPose()), {0, 0.6f, -0.8f});
}

TEST_F(ViewPoses, ACameraInTheCentreHasNowhereToTurn) {
    camera().setWorldPosition({0, 0, 0});
    EXPECT_THROW((void)scene().getViewCenterPose(), std::overflow_error);
}

// --- focus

TEST_F(ViewPoses, FocusFramesOneVisualAndKeepsTheRotation) {
    showCube({});
    Visual* other = showCube({5000, 0, 0});
    lookFrom({5000, -900, 0}, {5000, 0, 0});
    const Pose pose = scene().getVisualFocusPose(other->id);
    ExpectNear(pose.position.asVec3(), {5000, -distanceFor(cubeRadius), 0}, 1e-1f);
    EXPECT_EQ(pose.rotation, camera().getWorldRotation());
}

TEST_F(ViewPoses, FocusTakesInWhatHangsBelow) {
    Visual* part = showCube({});
    Visual* below = showCube({1000, 0, 0});
    part->attachVisual(below);
    lookFrom({0, -900, 0}, {0, 0, 0});
    const Pose pose = scene().getVisualFocusPose(part->id);
    EXPECT_NEAR(pose.position.x, 500, 1e-1f);
}

TEST_F(ViewPoses, FocusOnWhatIsHiddenStillFramesIt) {
    Visual* part = showCube({5000, 0, 0});
    part->setVisible(false, /*cascade=*/true);
    lookFrom({5000, -900, 0}, {5000, 0, 0});
    const Pose pose = scene().getVisualFocusPose(part->id);
    EXPECT_LT(std::abs(pose.position.x - 5000), 101);
    EXPECT_LT(pose.position.y, -distanceFor(cubeRadius) / 2);
}

TEST_F(ViewPoses, FocusOnWhatHasNoPictureGoesWhereItStands) {
    auto* visual = new Visual(scene().root);
    visual->setPosition(700, 0, 0);
    scene().visuals[visual->id] = visual;
    lookFrom({0, -900, 0}, {0, 0, 0});
    ExpectNear(scene().getVisualFocusPose(visual->id).position.asVec3(), {700, -distanceFor(10), 0},
               1e-2f);
}

TEST_F(ViewPoses, FocusOnAMoveIsOnItsTarget) {
    auto* wobj = model.make<task::WObjDataItem>("wobj");
    auto* target =
        model.make<task::RobTargetDataItem>("p", rob::PoseTemplate<double>{{10, 20, 30}, {}});
    auto* move = model.make<task::MoveInst>("move", sdf::ObjectType::LinearMove, *target, *wobj);
    auto* frame = new Visual(scene().root);
    frame->setPosition(1000, 0, 0);
    auto* visual = new Visual(move->id, frame);
    visual->type = VisualType::MoveInstruction;
    scene().visuals[visual->id] = visual;
    lookFrom({0, -900, 0}, {0, 0, 0});
    ExpectNear(scene().getVisualFocusPose(visual->id).position.asVec3(),
               {1010, 20 - distanceFor(10), 30}, 1e-2f);
}

TEST_F(ViewPoses, FocusOnAnUnknownIdThrowsToTheCaller) {
    EXPECT_THAT([] { (void)scene().getVisualFocusPose(123456789); },
                ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
}

// --- all of them

TEST_F(ViewPoses, QueriesMoveNoCamera) {
    Visual* part = showCube({500, 0, 0});
    const Pos position = camera().getWorldPosition();
    const Rotation rotation = camera().getWorldRotation();
    (void)scene().getViewPoseForDir({1, 0, 0});
    (void)scene().getViewPoseForDir({1, 0, 0}, {0, 0, 1});
    (void)scene().getViewAllPose();
    (void)scene().getViewCenterPose();
    (void)scene().getVisualFocusPose(part->id);
    pump();
    EXPECT_EQ(camera().getWorldPosition(), position);
    EXPECT_EQ(camera().getWorldRotation(), rotation);
}

}  // namespace vrn::test
