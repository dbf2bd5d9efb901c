#include "view/OrbitViewController.h"

#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "selection/VisualSelection.h"
#include "suite/broker/SignalBroker.h"
#include "suite/layout/PointCloud.h"
#include "tests/support/EngineFixture.h"
#include "view/Camera.h"
#include "visual/geometry/PointVisual.h"
#include "visual/Visual.h"

namespace vrn::test {

using broker::SignalBroker;
using visual::Camera;
using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using Rotation = rob::RotationTemplate<float>;

namespace {

constexpr float middleX = windowWidth / 2.0f;
constexpr float middleY = windowHeight / 2.0f;
constexpr float nearClip = 1.0f;

void ExpectNear(const Pos& is, const Pos& expected, float tolerance) {
    EXPECT_NEAR(is.x, expected.x, tolerance);
    EXPECT_NEAR(is.y, expected.y, tolerance);
    EXPECT_NEAR(is.z, expected.z, tolerance);
}

}  // namespace

/// Nothing but ground in sight: gestures hold on to the plane through the origin.
class OrbitViewController : public EngineTest {
protected:
    static visual::OrbitViewController& controller() { return *Camera::Get()->controller; }
    static Pos position() { return Camera::Get()->getWorldPosition(); }
    static Rotation rotation() { return Camera::Get()->getWorldRotation(); }
    static Pos inView(const Pos& world) {
        const Vec v = rotation().inverse() * (world - position());
        return {v.x, v.y, v.z};
    }
    static Vec forward() { return rotation() * Vec{0, 0, -1}; }
    /// At `from`, looking along `direction`.
    static void lookAlong(const Pos& from, const Vec& direction) {
        lookFrom(from, from + direction.normalized() * 100.0f);
    }
    /// The pivot is the one point that no turn moves in view.
    static void expectPivot(const Pos& pivot, float tolerance) {
        const Pos before = inView(pivot);
        controller().orbit(0.7f, 0.0f);
        ExpectNear(inView(pivot), before, tolerance);
        controller().orbit(0.0f, -0.4f);
        ExpectNear(inView(pivot), before, tolerance);
    }
};

// --- the pivot of turning

TEST_F(OrbitViewController, TurnsAboutTheGroundUnderTheCursor) {
    lookFrom({400, -600, 350}, {30, 40, 0});
    controller().startRotating(middleX, middleY);
    expectPivot({30, 40, 0}, 0.1f);
}

TEST_F(OrbitViewController, TurnsAboutTheGroundUnderAnyPixel) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    const Pos ground{120, -80, 0};
    const auto pixel = project(ground);
    controller().startRotating(pixel.x, pixel.y);
    expectPivot(ground, 0.1f);
}

TEST_F(OrbitViewController, ARayThatDoesNotComeDownSoonEnoughTurnsAboutAPointAheadOfIt) {
    for (const float vertical : {0.5f, 0.0f, -0.05f, -0.099f}) {
        lookAlong({0, 0, 200}, {0, std::sqrt(1 - vertical * vertical), vertical});
        controller().startRotating(middleX, middleY);
        // From the ray's origin, which lies on the near plane.
        expectPivot(position() + forward() * (100.0f + nearClip), 0.05f);
    }
}

TEST_F(OrbitViewController, ASteepEnoughRayTurnsAboutTheGroundAlsoWhereItLiesBehind) {
    lookAlong({0, 0, 200}, {0, std::sqrt(1 - 0.101f * 0.101f), -0.101f});
    controller().startRotating(middleX, middleY);
    expectPivot(position() + forward() * (200.0f / 0.101f), 2.0f);
    lookAlong({0, 0, -200}, {0, 0.8f, -0.6f});  // below the ground, looking further down
    controller().startRotating(middleX, middleY);
    expectPivot(position() - forward() * (200.0f / 0.6f), 0.1f);
}

TEST_F(OrbitViewController, GroundIsNormalToTheVerticalOfTheSettings) {
    scene().settings.verticalDir = 0;
    lookFrom({400, -600, 350}, {0, 40, 50});
    controller().startRotating(middleX, middleY);
    expectPivot({0, 40, 50}, 0.1f);
    scene().settings.verticalDir = 1;
    lookFrom({400, 600, 350}, {30, 0, 50});
    controller().startRotating(middleX, middleY);
    expectPivot({30, 0, 50}, 0.1f);
}

TEST_F(OrbitViewController, PivotStaysWhereTheStartLeftIt) {
    lookFrom({400, -600, 350}, {30, 40, 0});
    controller().startRotating(middleX, middleY);
    for (int i = 0; i < 5; ++i) controller().rotateScene(40, 25);
    expectPivot({30, 40, 0}, 0.2f);
}

// --- turning

TEST_F(OrbitViewController, PivotStaysOnItsPixelAndAtItsDistance) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    const Pos ground{120, -80, 0};
    const auto before = project(ground);
    const float distance = (ground - position()).length();
    controller().startRotating(before.x, before.y);
    controller().rotateScene(37, -21);
    const auto after = project(ground);
    EXPECT_NEAR(after.x, before.x, 0.1f);
    EXPECT_NEAR(after.y, before.y, 0.1f);
    EXPECT_NEAR((ground - position()).length(), distance, 0.1f);
}

TEST_F(OrbitViewController, APixelIsFourThousandthsOfARadianAboutTheCamerasOwnAxes) {
    const auto turnOf = [](float dx, float dy) {
        lookFrom({400, -600, 350}, {0, 0, 0});
        controller().startRotating(middleX, middleY);
        const Rotation before = rotation();
        controller().rotateScene(dx, dy);
        return before.inverse() * rotation();
    };
    EXPECT_TRUE(turnOf(100, 0).isApprox(Rotation(-0.4f, Vec{0, 1, 0})));
    EXPECT_TRUE(turnOf(0, 100).isApprox(Rotation(-0.4f, Vec{1, 0, 0})));
    EXPECT_TRUE(turnOf(-50, 0).isApprox(Rotation(0.2f, Vec{0, 1, 0})));
    // Both at once: first about x, then about y, both of the camera as it was.
    EXPECT_TRUE(
        turnOf(100, 50).isApprox(Rotation(-0.4f, Vec{0, 1, 0}) * Rotation(-0.2f, Vec{1, 0, 0})));
}

TEST_F(OrbitViewController, OrbitTakesYawBeforePitch) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    controller().startRotating(middleX, middleY);
    const Rotation before = rotation();
    controller().orbit(/*yaw=*/0.3f, /*pitch=*/0.0f);
    EXPECT_TRUE((before.inverse() * rotation()).isApprox(Rotation(0.3f, Vec{0, 1, 0})));
}

TEST_F(OrbitViewController, TurningBackAndForthReturns) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    const Pos positionBefore = position();
    const Rotation rotationBefore = rotation();
    controller().startRotating(200, 300);
    for (const float dx : {80.0f, -80.0f}) controller().rotateScene(dx, 0);
    for (const float dy : {60.0f, -60.0f}) controller().rotateScene(0, dy);
    ExpectNear(position(), positionBefore, 0.05f);
    const Rotation left = rotationBefore.inverse() * rotation();
    EXPECT_NEAR(std::abs(left.w), 1.0f, 1e-6f);
}

TEST_F(OrbitViewController, AFullTurnInManyStepsReturns) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    const Pos before = position();
    controller().startRotating(middleX, middleY);
    constexpr int steps = 360;
    for (int i = 0; i < steps; ++i) controller().orbit(2.0f * 3.14159265f / steps, 0);
    ExpectNear(position(), before, 0.5f);
}

TEST_F(OrbitViewController, SignalsThePositionTheRotationAndTheScene) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    controller().startRotating(middleX, middleY);
    const Rotation before = rotation();
    std::string order;
    const auto moved = SignalBroker::onCameraMoved(
        [&] { order += rotation() == before ? "position " : "rotation "; });
    const auto updated = SignalBroker::onUpdateScene([&] { order += "scene "; });
    controller().orbit(0.1f, 0.2f);
    EXPECT_EQ(order, "position rotation scene ");
}

// --- zooming

TEST_F(OrbitViewController, AZoomStepIsSixteenHundredthsOfTheDistance) {
    const Pos ground{30, 40, 0};
    lookFrom({400, -600, 350}, ground);
    const float distance = (ground - position()).length();
    controller().zoom(middleX, middleY, 0, 1);
    EXPECT_NEAR((ground - position()).length(), distance * 0.84f, 0.1f);
    controller().zoom(middleX, middleY, 0, -1);
    EXPECT_NEAR((ground - position()).length(), distance * 0.84f * 1.16f, 0.1f);
}

TEST_F(OrbitViewController, ZoomKeepsThePointUnderTheCursorOnItsPixel) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    const Pos ground{120, -80, 0};
    const auto before = project(ground);
    controller().zoom(before.x, before.y, 0, 1);
    const auto after = project(ground);
    EXPECT_NEAR(after.x, before.x, 0.1f);
    EXPECT_NEAR(after.y, before.y, 0.1f);
}

TEST_F(OrbitViewController, OnlyTheSignOfTheWheelCounts) {
    const auto heightAfter = [](float a, float delta) {
        lookFrom({0, 0, 1000}, {0, 0, 0});
        controller().zoom(middleX, middleY, a, delta);
        return position().z;
    };
    EXPECT_NEAR(heightAfter(0, 0.001f), 840, 0.5f);
    EXPECT_EQ(heightAfter(0, 120), heightAfter(0, 0.001f));
    EXPECT_EQ(heightAfter(99, 120), heightAfter(-99, 120));
    EXPECT_NEAR(heightAfter(0, -0.001f), 1160, 0.5f);
    EXPECT_EQ(heightAfter(0, 0), heightAfter(0, -120));  // no wheel counts as away
}

TEST_F(OrbitViewController, AZoomStepNeverExceedsTheLargest) {
    ASSERT_EQ(scene().settings.zoomMaxStep, 5000.0f);
    lookFrom({0, 0, 90000}, {0, 0, 0});
    controller().zoom(middleX, middleY, 0, 1);
    EXPECT_NEAR(position().z, 85000, 1.0f);
    controller().zoom(middleX, middleY, 0, -1);
    EXPECT_NEAR(position().z, 90000, 1.0f);
}

TEST_F(OrbitViewController, ZoomOverEmptySpaceStopsAtTheLeastDistance) {
    ASSERT_EQ(scene().settings.zoomMinDistance, 10.0f);
    lookFrom({0, 0, 11}, {0, 0, 0});
    controller().zoom(middleX, middleY, 0, 1);
    EXPECT_NEAR(position().z, 10, 1e-3f);
    controller().zoom(middleX, middleY, 0, 1);
    EXPECT_NEAR(position().z, 10, 1e-3f);
    lookFrom({0, 0, 5}, {0, 0, 0});
    controller().zoom(middleX, middleY, 0, 1);
    EXPECT_NEAR(position().z, 10, 1e-3f);
}

TEST_F(OrbitViewController, ZoomAwayIsNeverLimited) {
    lookFrom({0, 0, 5}, {0, 0, 0});
    controller().zoom(middleX, middleY, 0, -1);
    EXPECT_NEAR(position().z, 5.8f, 1e-3f);
    lookFrom({0, 0, 99000}, {0, 0, 0});
    controller().zoom(middleX, middleY, 0, -1);
    EXPECT_GT(position().z, 103000);
}

TEST_F(OrbitViewController, ZoomOfARayThatMissesTheGroundGoesTowardsAFarPoint) {
    const float step = 0.16f * (5000.0f + nearClip);
    for (const Vec& direction : {Vec{0, 1, 0}, Vec{0, 0.9955f, -0.095f}, Vec{0, 0.8f, 0.6f}}) {
        const Pos start{0, 0, 200};
        lookAlong(start, direction);
        controller().zoom(middleX, middleY, 0, 1);
        ExpectNear(position(), start + direction.normalized() * step, 1.0f);
    }
    // From below, a ray up to the ground counts.
    lookAlong({0, 0, -100}, {0, 0.6f, 0.8f});
    controller().zoom(middleX, middleY, 0, 1);
    EXPECT_NEAR(position().z, -84, 0.1f);
}

TEST_F(OrbitViewController, ZoomMovesTheCameraOnceAndTurnsNothing) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    const Rotation before = rotation();
    int moves = 0;
    const auto subscription = SignalBroker::onCameraMoved([&] { ++moves; });
    controller().zoom(100, 400, 0, 1);
    EXPECT_EQ(moves, 1);
    EXPECT_EQ(rotation(), before);
}

// --- panning

TEST_F(OrbitViewController, PanningKeepsThePointUnderTheCursor) {
    const Pos ground{30, 40, 0};
    lookFrom({400, -600, 350}, ground);
    controller().translateScene(middleX, middleY, 50, -30);
    const auto pixel = project(ground);
    EXPECT_NEAR(pixel.x, middleX + 50, 0.1f);
    EXPECT_NEAR(pixel.y, middleY - 30, 0.1f);
}

TEST_F(OrbitViewController, PanningMovesInThePlaneOfTheView) {
    lookFrom({0, 0, 1000}, {0, 0, 0});
    const float halfWidth = 1000.0f * std::tan(Camera::Get()->getHFOV() / 2);
    controller().translateScene(middleX, middleY, 64, 0);  // a tenth of the window
    ExpectNear(position(), {-0.2f * halfWidth, 0, 1000}, 0.2f);
    lookFrom({0, 0, 1000}, {0, 0, 0});
    controller().translateScene(middleX, middleY, 0, 48);
    ExpectNear(position(), {0, 0.2f * halfWidth * 480 / 640, 1000}, 0.2f);
}

TEST_F(OrbitViewController, PanningNearThePivotMovesAsAtDistanceTen) {
    // One unit above the ground: the near plane's point stands on it.
    lookFrom({0, 0, 1}, {0, 0, 0});
    controller().translateScene(middleX, middleY, 64, 0);
    EXPECT_NEAR(position().x, -0.2f * 10 * std::tan(Camera::Get()->getHFOV() / 2), 1e-3f);
}

TEST_F(OrbitViewController, PanningAlongANearlyLevelRayTakesTheWorldOriginAsItsPivot) {
    for (const float vertical : {0.095f, 0.0f, -0.05f, -0.099f}) {
        const Pos start{0, -300, 400};  // 500 from the origin
        lookAlong(start, {0, std::sqrt(1 - vertical * vertical), vertical});
        controller().translateScene(middleX, middleY, 64, 0);
        EXPECT_NEAR(position().x, -0.2f * 500 * std::tan(Camera::Get()->getHFOV() / 2), 0.05f)
            << vertical;
    }
}

TEST_F(OrbitViewController, PanningAlongARisingRayTakesTheGroundBehind) {
    lookAlong({0, 0, 100}, {0, std::sqrt(0.75f), 0.5f});
    controller().translateScene(middleX, middleY, 64, 0);
    EXPECT_NEAR(position().x, -0.2f * 200 * std::tan(Camera::Get()->getHFOV() / 2), 0.1f);
}

TEST_F(OrbitViewController, PanningBackAndForthReturns) {
    lookFrom({0, 0, 1000}, {0, 0, 0});
    const Pos before = position();
    controller().translateScene(200, 100, 33, -44);
    EXPECT_NE(position(), before);
    controller().translateScene(200, 100, -33, 44);
    ExpectNear(position(), before, 0.05f);
}

// --- gestures on what is under the cursor

/// A box of 100 round the world origin, shown and ready to be picked. The two triangles of a side
/// meet on its diagonal, where a ray hits neither: no test aims there.
class OrbitViewControllerOnABox : public OrbitViewController {
protected:
    void SetUp() override {
        OrbitViewController::SetUp();
        box = showBoxPart("box");
        lookFrom({400, -600, 350}, {0, 0, 0});
    }
    void showCloud(std::vector<Pos> points) {
        scene().addPointCloud(model.make<layout::PointCloud>("scan", std::move(points)));
        pump();
    }
    static void startRotatingAt(const Pos& world) {
        const auto pixel = project(world);
        controller().startRotating(pixel.x, pixel.y);
    }
    static void zoomAt(const Pos& world, float delta) {
        const auto pixel = project(world);
        controller().zoom(pixel.x, pixel.y, 0, delta);
    }
    static void panAt(const Pos& world, float dx, float dy) {
        const auto pixel = project(world);
        controller().translateScene(pixel.x, pixel.y, dx, dy);
    }
    static float panFactor() { return 0.2f * std::tan(Camera::Get()->getHFOV() / 2); }

    visual::Visual* box = nullptr;
};

TEST_F(OrbitViewControllerOnABox, TurnsAboutTheSurfaceUnderTheCursor) {
    for (const Pos& surface : {Pos{20, 10, 50}, Pos{-30, -50, 15}, Pos{50, 35, -40}}) {
        lookFrom({400, -600, 350}, {0, 0, 0});
        startRotatingAt(surface);
        expectPivot(surface, 0.1f);
    }
}

TEST_F(OrbitViewControllerOnABox, TurnsAboutTheGroundBesideTheSurface) {
    startRotatingAt({120, -80, 0});
    expectPivot({120, -80, 0}, 0.1f);
}

TEST_F(OrbitViewControllerOnABox, APickedPivotStaysOnItsPixelThroughADrag) {
    const Pos surface{-30, -50, 15};
    const auto before = project(surface);
    controller().startRotating(before.x, before.y);
    for (int i = 0; i < 40; ++i) {
        controller().rotateScene(7, -3);
        pump();
        const auto after = project(surface);
        ASSERT_NEAR(after.x, before.x, 0.2f);
        ASSERT_NEAR(after.y, before.y, 0.2f);
    }
}

TEST_F(OrbitViewControllerOnABox, ALevelRayThatHitsTurnsAboutTheSurface) {
    lookFrom({0, -400, 20}, {0, 0, 20});
    controller().startRotating(middleX, middleY);
    expectPivot({0, -50, 20}, 0.05f);
}

TEST_F(OrbitViewControllerOnABox, WithoutASurfaceAPointOfACloudIsThePivot) {
    showCloud({{200, 100, 80}, {-150, 0, 120}});
    startRotatingAt({200, 100, 80});
    expectPivot({200, 100, 80}, 0.1f);
    lookFrom({400, -600, 350}, {0, 0, 0});
    const float distance = (Pos{-150, 0, 120} - position()).length();
    zoomAt({-150, 0, 120}, 1);
    EXPECT_NEAR((Pos{-150, 0, 120} - position()).length(), distance * 0.84f, 0.1f);
    lookFrom({0, 0, 1120}, {-150, 0, 120});
    const Pos before = position();
    panAt({-150, 0, 120}, 64, 0);
    EXPECT_NEAR((position() - before).length(), panFactor() * (Pos{-150, 0, 120} - before).length(),
                0.2f);
}

TEST_F(OrbitViewControllerOnABox, ASurfaceComesBeforeANearerPointOfACloud) {
    lookFrom({10, 20, 400}, {10, 20, 0});
    showCloud({{10, 20, 200}});
    controller().startRotating(middleX, middleY);
    expectPivot({10, 20, 50}, 0.05f);
}

TEST_F(OrbitViewControllerOnABox, BeforeTheSelectionIsUpToDateTheGroundIsThePivot) {
    lookFrom({0, 0, 400}, {20, 30, 0});
    box->setPosition(0, 0, 10);
    ASSERT_TRUE(selection::VisualSelection::Get()->dirty);
    controller().startRotating(middleX, middleY);
    expectPivot({20, 30, 0}, 0.05f);
    selection::VisualSelection::Get()->update();
    lookFrom({10, 20, 400}, {10, 20, 0});
    controller().startRotating(middleX, middleY);
    expectPivot({10, 20, 60}, 0.05f);
}

TEST_F(OrbitViewControllerOnABox, WhatIsGoneIsNoPivot) {
    scene().deleteVisual(box);
    pump();
    lookFrom({10, 20, 400}, {10, 20, 0});
    controller().startRotating(middleX, middleY);
    expectPivot({10, 20, 0}, 0.05f);
}

TEST_F(OrbitViewControllerOnABox, ZoomGoesTowardsTheSurfaceUnderTheCursor) {
    const Pos surface{50, 35, -40};
    const auto before = project(surface);
    const float distance = (surface - position()).length();
    controller().zoom(before.x, before.y, 0, 1);
    EXPECT_NEAR((surface - position()).length(), distance * 0.84f, 0.1f);
    EXPECT_NEAR(project(surface).x, before.x, 0.1f);
    EXPECT_NEAR(project(surface).y, before.y, 0.1f);
    zoomAt(surface, -1);
    EXPECT_NEAR((surface - position()).length(), distance * 0.84f * 1.16f, 0.1f);
}

TEST_F(OrbitViewControllerOnABox, ZoomEndsInFrontOfTheSurfaceHoweverOften) {
    lookFrom({10, 20, 600}, {10, 20, 0});
    for (int i = 0; i < 60; ++i) controller().zoom(middleX, middleY, 0, 1);
    const float distance = position().z - 50;
    EXPECT_GE(distance, 10.0f);
    EXPECT_LT(distance * 0.84f, 10.0f);
}

TEST_F(OrbitViewControllerOnABox, ZoomOnASurfaceCloserThanTheLeastDistanceDoesNotMove) {
    ASSERT_EQ(scene().settings.zoomMinDistance, 10.0f);
    for (const float gap : {2.0f, 5.0f, 9.9f, 11.9f}) {  // the last would come to 9.996
        lookFrom({10, 20, 50 + gap}, {10, 20, 0});
        const Pos before = position();
        int moves = 0;
        const auto subscription = SignalBroker::onCameraMoved([&] { ++moves; });
        controller().zoom(middleX, middleY, 0, 1);
        EXPECT_EQ(moves, 0);
        EXPECT_EQ(position(), before);
    }
    lookFrom({10, 20, 62}, {10, 20, 0});
    controller().zoom(middleX, middleY, 0, 1);
    EXPECT_NEAR(position().z, 60.08f, 1e-3f);
}

TEST_F(OrbitViewControllerOnABox, ZoomAwayFromACloseSurfaceMoves) {
    lookFrom({10, 20, 55}, {10, 20, 0});
    controller().zoom(middleX, middleY, 0, -1);
    EXPECT_NEAR(position().z, 55.8f, 1e-3f);
}

TEST_F(OrbitViewControllerOnABox, AZoomStepTowardsAFarSurfaceNeverExceedsTheLargest) {
    lookFrom({10, 20, 60050}, {10, 20, 0});
    controller().zoom(middleX, middleY, 0, 1);
    EXPECT_NEAR(position().z, 55050, 0.1f);
    controller().zoom(middleX, middleY, 0, -1);
    EXPECT_NEAR(position().z, 60050, 0.1f);
}

TEST_F(OrbitViewControllerOnABox, OnItsPivotTheCameraStaysOrCannotTellWhereAwayIs) {
    // Points are hit in front of the near plane and a little behind it: the camera can stand on
    // one.
    const Pos point{300, 300, 300};
    selection::VisualSelection::Get()->addPointVisual(
        visual::PointVisual::Build(scene().root, point), /*detectable=*/false);
    lookFrom(point, {300, 300, 900});
    pump();
    ASSERT_EQ(selection::VisualSelection::Get()->select(middleX, middleY).position, point);
    EXPECT_NO_THROW(controller().zoom(middleX, middleY, 0, 1));
    EXPECT_EQ(position(), point);
    EXPECT_THROW(controller().zoom(middleX, middleY, 0, -1), std::overflow_error);
    EXPECT_EQ(position(), point);
}

TEST_F(OrbitViewControllerOnABox, PanningKeepsThePointOfTheSurfaceUnderTheCursor) {
    const Pos surface{10, 20, 50};
    lookFrom({400, -600, 350}, surface);
    controller().translateScene(middleX, middleY, 50, -30);
    EXPECT_NEAR(project(surface).x, middleX + 50, 0.1f);
    EXPECT_NEAR(project(surface).y, middleY - 30, 0.1f);
}

TEST_F(OrbitViewControllerOnABox, PanningOnASurfaceAtDistanceOneMovesAsAtDistanceTen) {
    Camera::Get()->setClipDist(0.25f, 100000.0f);
    lookFrom({10, 20, 51}, {10, 20, 0});
    controller().translateScene(middleX, middleY, 64, 0);
    Camera::Get()->setClipDist(nearClip, 100000.0f);
    EXPECT_NEAR(position().x, 10 - 10 * panFactor(), 1e-3f);
}

TEST_F(OrbitViewControllerOnABox, PostedGesturesHoldOnToTheSurface) {
    const Pos surface{-30, -50, 15};
    const auto before = project(surface);
    Camera::Get()->startRotating(before.x, before.y);
    Camera::Get()->rotateScene(60, 25);
    pump();
    EXPECT_NEAR(project(surface).x, before.x, 0.2f);
    EXPECT_NEAR(project(surface).y, before.y, 0.2f);
    expectPivot(surface, 0.1f);
}

}  // namespace vrn::test
