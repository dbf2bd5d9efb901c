#include "view/Camera.h"

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>
#include <OgreCamera.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreViewport.h>

#include "selection/Plane.h"
#include "selection/Ray.h"
#include "suite/broker/SignalBroker.h"
#include "tests/support/EngineFixture.h"
#include "tests/view/OffscreenTarget.h"
#include "view/GlobalFrame.h"
#include "view/OrbitViewController.h"
#include "view/UpAxis.h"

namespace vrn::test {

using broker::SignalBroker;
using visual::Camera;
using visual::Plane;
using visual::Ray;
using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using Rotation = rob::RotationTemplate<float>;

/// Puts the camera's target, clip distances and angle back.
class CameraTest : public EngineTest {
protected:
    void TearDown() override {
        if (camera().renderTarget != &window()) camera().setRenderTarget(&window());
        camera().setHFOV(1.0471976f);
        camera().setClipDist(scene().settings.nearClip, scene().settings.farClip);
        EngineTest::TearDown();
    }
    static Camera& camera() { return *Camera::Get(); }
    std::unique_ptr<Camera> makeCamera() {
        return std::unique_ptr<Camera>(scene().createCamera("second camera"));
    }
    static float expectedVfov(float hfov, float width, float height) {
        return 2.0f * std::atan(std::tan(hfov / 2.0f) * height / width);
    }
};

// --- construction

TEST_F(CameraTest, StandsOnANodeOfItsNameUnderTheRoot) {
    const auto made = makeCamera();
    EXPECT_EQ(made->name, "second camera");
    EXPECT_EQ(made->node->getName(), "second camera");
    EXPECT_EQ(made->node->getParentSceneNode(), scene().sceneManager->getRootSceneNode());
    EXPECT_EQ(made->camera->getParentSceneNode(), made->node);
    EXPECT_FALSE(made->node->getInheritScale());
    EXPECT_FALSE(made->camera->getAutoAspectRatio());
    EXPECT_EQ(made->viewport, nullptr);
    EXPECT_EQ(made->renderTarget, nullptr);
    ASSERT_NE(made->controller, nullptr);
    ASSERT_NE(made->globalFrame, nullptr);
    EXPECT_EQ(made->globalFrame->getScale(), 1.5f);
}

TEST_F(CameraTest, TakesItsOpticsFromTheSettings) {
    scene().settings.nearClip = 3.0f;
    scene().settings.farClip = 4000.0f;
    const auto made = makeCamera();
    EXPECT_EQ(made->getHFOV(), 1.0471976f);
    EXPECT_EQ(made->camera->getNearClipDistance(), 3.0f);
    EXPECT_EQ(made->camera->getFarClipDistance(), 4000.0f);
    EXPECT_EQ(made->camera->getRenderingDistance(), 4000.0f);
}

TEST_F(CameraTest, StartsAtTheTurnedPositionAndLooksAtTheTarget) {
    scene().settings.fromPos = {300, -700, 500};
    scene().settings.targetPos = {10, 20, 30};
    const std::array<Pos, 3> starts{Pos{300, 700, -500}, Pos{-300, 700, 500}, Pos{300, -700, 500}};
    for (const int vertical : {0, 1, 2}) {
        scene().settings.verticalDir = vertical;
        const auto made = makeCamera();
        EXPECT_EQ(made->getWorldPosition(), starts[static_cast<std::size_t>(vertical)]);
        EXPECT_EQ(made->getFromPos(), (Pos{300, -700, 500}));
        EXPECT_EQ(made->getTargetPos(), (Pos{10, 20, 30}));
        const Vec forward = made->getWorldRotation() * Vec{0, 0, -1};
        const Vec wanted = (Pos{10, 20, 30} - made->getWorldPosition()).normalized();
        EXPECT_NEAR((forward - wanted).length(), 0.0f, 1e-5f) << vertical;
        const Vec right = made->getWorldRotation() * Vec{1, 0, 0};
        const Ogre::Vector3 up = visual::UpAxis(vertical);
        EXPECT_NEAR(right.dot({up.x, up.y, up.z}), 0.0f, 1e-5f) << vertical;
    }
}

TEST_F(CameraTest, StraightAboveItsTargetLooksDown) {
    scene().settings.fromPos = {0, 0, 900};
    scene().settings.targetPos = {0, 0, 0};
    const auto made = makeCamera();
    const Vec forward = made->getWorldRotation() * Vec{0, 0, -1};
    EXPECT_NEAR(forward.z, -1.0f, 1e-5f);
}

TEST_F(CameraTest, LeavesNothingInTheSceneWhenItGoes) {
    const std::size_t nodes = scene().sceneManager->getRootSceneNode()->numChildren();
    makeCamera();
    EXPECT_EQ(scene().sceneManager->getRootSceneNode()->numChildren(), nodes);
    EXPECT_FALSE(scene().sceneManager->hasCamera("second camera"));
    EXPECT_NO_THROW(makeCamera());
}

TEST_F(CameraTest, PositionsOfTheSettingsCanBeExchanged) {
    const auto made = makeCamera();
    made->setFromPos({1, 2, 3});
    made->setTargetPos({4, 5, 6});
    EXPECT_EQ(made->getFromPos(), (Pos{1, 2, 3}));
    EXPECT_EQ(made->getTargetPos(), (Pos{4, 5, 6}));
    EXPECT_NE(made->getWorldPosition(), (Pos{1, 2, 3}));
}

// --- field of view

TEST_F(CameraTest, FieldOfViewIsLimitedOnBothSides) {
    EXPECT_EQ(Camera::LimitFOV(0.0f), 0.001f);
    EXPECT_EQ(Camera::LimitFOV(-1.0f), 0.001f);
    EXPECT_EQ(Camera::LimitFOV(0.001f), 0.001f);
    EXPECT_EQ(Camera::LimitFOV(1.0f), 1.0f);
    EXPECT_EQ(Camera::LimitFOV(3.138451f), 3.138451f);
    EXPECT_EQ(Camera::LimitFOV(4.0f), 3.138451f);
    EXPECT_EQ(Camera::LimitFOV(std::numeric_limits<float>::infinity()), 3.138451f);
    EXPECT_EQ(Camera::LimitFOV(std::numeric_limits<float>::quiet_NaN()), 0.001f);
}

TEST_F(CameraTest, HorizontalFieldOfViewIsHeldAndTheVerticalOneFollows) {
    EXPECT_EQ(camera().getHFOV(), 1.0471976f);
    EXPECT_NEAR(camera().getVFOV(), expectedVfov(1.0471976f, windowWidth, windowHeight), 1e-6f);
    EXPECT_NEAR(camera().getAspectRatio(), 640.0f / 480.0f, 1e-6f);
    camera().setHFOV(0.8f);
    EXPECT_EQ(camera().getHFOV(), 0.8f);
    EXPECT_NEAR(camera().getVFOV(), expectedVfov(0.8f, windowWidth, windowHeight), 1e-6f);
}

TEST_F(CameraTest, ATallTargetKeepsTheHorizontalFieldOfViewAndRaisesTheVerticalOne) {
    const float before = camera().getVFOV();
    const OffscreenTarget tall("tall target", 200, 400);
    camera().setRenderTarget(tall.get());
    EXPECT_EQ(camera().getHFOV(), 1.0471976f);
    EXPECT_GT(camera().getVFOV(), before);
    EXPECT_NEAR(camera().getVFOV(), expectedVfov(1.0471976f, 200, 400), 1e-6f);
    EXPECT_NEAR(camera().getAspectRatio(), 0.5f, 1e-6f);
    EXPECT_EQ(camera().viewportWidth(), 200);
    EXPECT_EQ(camera().viewportHeight(), 400);
}

TEST_F(CameraTest, AnUnusableHorizontalAngleLeavesALimitedVerticalOne) {
    camera().setHFOV(0.0f);
    EXPECT_EQ(camera().getVFOV(), 0.001f);
    camera().setHFOV(3.2f);  // its half has a negative tangent
    EXPECT_EQ(camera().getVFOV(), 0.001f);
    camera().setHFOV(3.14159f);
    EXPECT_NEAR(camera().getVFOV(), 3.138451f, 1e-6f);
    EXPECT_EQ(camera().getHFOV(), 3.14159f);
}

TEST_F(CameraTest, WithoutAViewportTheAngleWaitsForOne) {
    camera().setRenderTarget(nullptr);
    const float before = camera().getVFOV();
    camera().setHFOV(0.5f);
    camera().updateFOV();
    EXPECT_EQ(camera().getVFOV(), before);
    camera().setRenderTarget(&window());
    EXPECT_NEAR(camera().getVFOV(), expectedVfov(0.5f, windowWidth, windowHeight), 1e-6f);
}

TEST_F(CameraTest, UpdatingMakesTheViewportFillTheTargetAgain) {
    camera().viewport->setDimensions(0.25f, 0.25f, 0.5f, 0.5f);
    camera().updateFOV();
    EXPECT_EQ(camera().viewportWidth(), windowWidth);
    EXPECT_EQ(camera().viewportHeight(), windowHeight);
    EXPECT_EQ(camera().viewport->getActualLeft(), 0);
}

TEST_F(CameraTest, FarDistanceIsTheRenderingDistanceToo) {
    camera().setClipDist(7.0f, 900.0f);
    EXPECT_EQ(camera().camera->getNearClipDistance(), 7.0f);
    EXPECT_EQ(camera().camera->getFarClipDistance(), 900.0f);
    EXPECT_EQ(camera().camera->getRenderingDistance(), 900.0f);
}

TEST_F(CameraTest, ClipDistancesThatAreNoneAreRefusedAndChangeNothing) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinite = std::numeric_limits<float>::infinity();
    camera().setClipDist(7.0f, 900.0f);
    EXPECT_THROW(camera().setClipDist(10, nan), std::invalid_argument);
    EXPECT_THROW(camera().setClipDist(10, -5), std::invalid_argument);
    EXPECT_THROW(camera().setClipDist(infinite, infinite), std::invalid_argument);
    EXPECT_THROW(camera().setClipDist(10, infinite), std::invalid_argument);
    EXPECT_THROW(camera().setClipDist(nan, 10), std::invalid_argument);
    EXPECT_EQ(camera().camera->getNearClipDistance(), 7.0f);
    EXPECT_EQ(camera().camera->getFarClipDistance(), 900.0f);
}

TEST_F(CameraTest, OnlyTheWordPerspectiveChoosesAProjection) {
    camera().camera->setProjectionType(Ogre::PT_ORTHOGRAPHIC);
    for (const char* word : {"", "Perspective", "perspective ", "orthographic"}) {
        camera().setCameraProjection(word);
        EXPECT_EQ(camera().camera->getProjectionType(), Ogre::PT_ORTHOGRAPHIC) << word;
    }
    camera().setCameraProjection("perspective");
    EXPECT_EQ(camera().camera->getProjectionType(), Ogre::PT_PERSPECTIVE);
    camera().setCameraProjection("orthographic");
    EXPECT_EQ(camera().camera->getProjectionType(), Ogre::PT_PERSPECTIVE);
}

// --- the target

TEST_F(CameraTest, ViewportIsClearedToGreyEachFrame) {
    const Ogre::Viewport* viewport = camera().viewport;
    ASSERT_NE(viewport, nullptr);
    EXPECT_EQ(viewport->getTarget(), &window());
    EXPECT_EQ(viewport->getBackgroundColour(), Ogre::ColourValue(0.45f, 0.45f, 0.45f, 1.0f));
    EXPECT_TRUE(viewport->getClearEveryFrame());
    EXPECT_EQ(viewport->getClearBuffers(), 3u);
    EXPECT_EQ(viewport->getZOrder(), 0);
    EXPECT_EQ(viewport->getCamera(), camera().camera);
}

TEST_F(CameraTest, TheSameTargetTwiceHasOneViewport) {
    camera().setRenderTarget(&window());
    camera().setRenderTarget(&window());
    EXPECT_EQ(window().getNumViewports(), 1);
    EXPECT_EQ(window().getViewport(0), camera().viewport);
}

TEST_F(CameraTest, ANewTargetTakesTheViewportFromTheFormerOne) {
    const OffscreenTarget other("other target", 100, 100);
    camera().setRenderTarget(other.get());
    EXPECT_EQ(window().getNumViewports(), 0);
    EXPECT_EQ(other.get()->getNumViewports(), 1);
    EXPECT_EQ(camera().renderTarget, other.get());
    camera().setRenderTarget(&window());
    EXPECT_EQ(other.get()->getNumViewports(), 0);
}

TEST_F(CameraTest, WithoutATargetThereAreNoPixelsAndNoRays) {
    camera().setRenderTarget(nullptr);
    EXPECT_EQ(window().getNumViewports(), 0);
    EXPECT_EQ(camera().viewport, nullptr);
    EXPECT_EQ(camera().viewportWidth(), 0);
    EXPECT_EQ(camera().viewportHeight(), 0);
    EXPECT_THROW((void)camera().getViewportRay(0, 0), std::logic_error);
    Pos origin;
    Vec direction;
    EXPECT_THROW(camera().cameraToViewportRay(0, 0, origin, direction), std::logic_error);
    camera().setRenderTarget(nullptr);
    EXPECT_EQ(camera().renderTarget, nullptr);
}

// --- moving

TEST_F(CameraTest, EachMoveSignalsOnceAlsoWhereNothingChanges) {
    int signals = 0;
    const auto subscription = SignalBroker::onCameraMoved([&] { ++signals; });
    camera().setWorldPosition({1, 2, 3});
    EXPECT_EQ(signals, 1);
    camera().setWorldPosition({1, 2, 3});
    EXPECT_EQ(signals, 2);
    camera().setWorldRotation({0, 1, 0, 0});
    EXPECT_EQ(signals, 3);
    camera().setWorldRotation({0, 1, 0, 0});
    EXPECT_EQ(signals, 4);
}

TEST_F(CameraTest, PoseIsReadBackAsItWasSet) {
    const Rotation rotation(0.7f, Vec{0.6f, 0.0f, 0.8f});
    camera().setWorldPosition({1, 2, 3});
    camera().setWorldRotation(rotation);
    EXPECT_EQ(camera().getWorldPosition(), (Pos{1, 2, 3}));
    EXPECT_TRUE(camera().getWorldRotation().isApprox(rotation));
    const Ogre::Quaternion& q = camera().node->getOrientation();
    EXPECT_NEAR(q.w, rotation.w, 1e-6f);
    EXPECT_NEAR(q.x, rotation.x, 1e-6f);
    EXPECT_NEAR(q.z, rotation.z, 1e-6f);
}

TEST_F(CameraTest, RotationsAreNormalisedAndAZeroQuaternionIsTheIdentity) {
    camera().setWorldRotation({0, 5, 0, 0});
    EXPECT_TRUE(camera().getWorldRotation().isApprox({0, 1, 0, 0}));
    camera().setWorldRotation({0, 0, 0, 0});
    EXPECT_TRUE(camera().getWorldRotation().isApprox({}));
    for (const float length : {1e-25f, 1e25f}) {
        camera().setWorldRotation({0, length, 0, 0});
        EXPECT_TRUE(camera().getWorldRotation().isApprox({0, 1, 0, 0})) << length;
    }
}

TEST_F(CameraTest, APoseThatIsNotFiniteThrowsAndChangesNothing) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinite = std::numeric_limits<float>::infinity();
    const Pos position = camera().getWorldPosition();
    const Rotation rotation = camera().getWorldRotation();
    int signals = 0;
    const auto subscription = SignalBroker::onCameraMoved([&] { ++signals; });
    EXPECT_THROW(camera().setWorldPosition({nan, 0, 0}), std::invalid_argument);
    EXPECT_THROW(camera().setWorldPosition({0, infinite, 0}), std::invalid_argument);
    EXPECT_THROW(camera().setWorldPosition({0, 0, -infinite}), std::invalid_argument);
    EXPECT_THROW(camera().setWorldRotation({nan, 0, 0, 0}), std::invalid_argument);
    EXPECT_THROW(camera().setWorldRotation({1, 0, 0, infinite}), std::invalid_argument);
    EXPECT_EQ(camera().getWorldPosition(), position);
    EXPECT_EQ(camera().getWorldRotation(), rotation);
    EXPECT_EQ(signals, 0);
}

TEST_F(CameraTest, PoseFromTheSceneIsPostedAndSignalsTwice) {
    const Pos before = camera().getWorldPosition();
    int signals = 0;
    const auto subscription = SignalBroker::onCameraMoved([&] { ++signals; });
    scene().setCameraPose({{1, 2, 3}, {0, 0, 0, 1}});
    EXPECT_EQ(camera().getWorldPosition(), before);
    pump();
    EXPECT_EQ(camera().getWorldPosition(), (Pos{1, 2, 3}));
    EXPECT_TRUE(camera().getWorldRotation().isApprox({0, 0, 0, 1}));
    EXPECT_EQ(signals, 2);
}

// --- rays

/// What a pinhole camera would answer, from the pose and the horizontal angle alone.
struct PinholeRay {
    Vec direction;  // of depth 1
    PinholeRay(const Camera& camera, float x, float y, float width, float height) {
        const float t = std::tan(camera.getHFOV() / 2.0f);
        const Vec inView{t * (2.0f * x / width - 1.0f),
                         t * height / width * (1.0f - 2.0f * y / height), -1.0f};
        direction = camera.getWorldRotation() * inView;
    }
};

class CameraRays : public CameraTest, public testing::WithParamInterface<std::array<float, 2>> {
protected:
    void SetUp() override {
        CameraTest::SetUp();
        camera().setWorldPosition({120, -340, 560});
        camera().setWorldRotation(Rotation(1.1f, Vec{0.48f, 0.6f, 0.64f}));
    }
};

TEST_P(CameraRays, RunFromTheNearPlaneThroughThePixel) {
    const auto [x, y] = GetParam();
    const PinholeRay expected(camera(), x, y, windowWidth, windowHeight);
    const Ray ray = camera().getViewportRay(x, y);
    const Pos origin = camera().getWorldPosition() + expected.direction * scene().settings.nearClip;
    EXPECT_NEAR((ray.origin - origin).length(), 0.0f, 2e-3f);
    EXPECT_NEAR((ray.direction.asVec3() - expected.direction.normalized()).length(), 0.0f, 2e-4f);
    EXPECT_NEAR(ray.direction.asVec3().length(), 1.0f, 1e-6f);
    EXPECT_EQ(ray.maxDistance, std::numeric_limits<float>::max());
}

TEST_P(CameraRays, AreTheSameInTheFormWithTwoResults) {
    const auto [x, y] = GetParam();
    Pos origin;
    Vec direction;
    camera().cameraToViewportRay(x, y, origin, direction);
    const Ray ray = camera().getViewportRay(x, y);
    EXPECT_EQ(origin, ray.origin);
    EXPECT_NEAR((direction.normalized() - ray.direction.asVec3()).length(), 0.0f, 1e-6f);
}

TEST_P(CameraRays, MeetTheWorldWhereItIsDrawn) {
    const auto [x, y] = GetParam();
    const Ray ray = camera().getViewportRay(x, y);
    const auto pixel = project(ray.origin + ray.direction.asVec3() * 500.0f);
    EXPECT_NEAR(pixel.x, x, 0.05f);
    EXPECT_NEAR(pixel.y, y, 0.05f);
}

INSTANTIATE_TEST_SUITE_P(Pixels, CameraRays,
                         testing::Values(std::array{320.0f, 240.0f}, std::array{0.0f, 0.0f},
                                         std::array{640.0f, 0.0f}, std::array{0.0f, 480.0f},
                                         std::array{640.0f, 480.0f}, std::array{100.5f, 333.25f},
                                         std::array{-200.0f, 700.0f}));

// --- points on planes

TEST_F(CameraTest, PointOnAPlaneIsWhereTheRayMeetsIt) {
    camera().setWorldPosition({100, 50, 400});
    camera().setWorldRotation({});  // looks along -Z
    const Plane ground{{0, 0, 1}, 0};
    Pos point;
    ASSERT_TRUE(camera().getWorldPointOnPlane(320, 240, ground, point));
    EXPECT_NEAR((point - Pos{100, 50, 0}).length(), 0.0f, 0.05f);
    ASSERT_TRUE(camera().getWorldPointOnPlane(640, 240, ground, point));
    EXPECT_NEAR(point.x, 100 + 400 * std::tan(1.0471976f / 2), 0.2f);
    const Plane lifted{{0, 0, 1}, 150};
    ASSERT_TRUE(camera().getWorldPointOnPlane(320, 240, lifted, point));
    EXPECT_NEAR(point.z, 150, 0.05f);
}

TEST_F(CameraTest, PointOnAPlaneBehindTheCameraIsAnAnswerToo) {
    camera().setWorldPosition({0, 0, -400});
    camera().setWorldRotation({});
    Pos point;
    ASSERT_TRUE(camera().getWorldPointOnPlane(320, 240, Plane{{0, 0, 1}, 0}, point));
    EXPECT_NEAR(point.z, 0, 0.05f);
}

TEST_F(CameraTest, ARayAlongAPlaneHasNoPointAndLeavesTheResultAlone) {
    camera().setWorldPosition({0, 0, 400});
    camera().setWorldRotation({});
    Pos point{1, 2, 3};
    EXPECT_FALSE(camera().getWorldPointOnPlane(320, 240, Plane{{1, 0, 0}, 5}, point));
    EXPECT_EQ(point, (Pos{1, 2, 3}));
    // 0.0009 and 0.0011 off the plane's direction: the limit is 0.001.
    const auto tilted = [](float sine) { return Plane{{std::sqrt(1 - sine * sine), 0, sine}, 5}; };
    EXPECT_FALSE(camera().getWorldPointOnPlane(320, 240, tilted(0.0009f), point));
    EXPECT_TRUE(camera().getWorldPointOnPlane(320, 240, tilted(0.0011f), point));
    EXPECT_TRUE(camera().getWorldPointOnPlane(320, 240, tilted(-0.0011f), point));
}

// --- gestures

TEST_F(CameraTest, GesturesArePostedOneTaskEach) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    int posts = 0;
    const auto subscription = SignalBroker::onUpdateScene([&] { ++posts; });
    const Pos before = camera().getWorldPosition();
    camera().startRotating(320, 240);
    EXPECT_EQ(posts, 1);
    camera().rotateScene(10, 0);
    EXPECT_EQ(posts, 2);
    camera().translateScene(320, 240, 5, 5);
    EXPECT_EQ(posts, 3);
    camera().zoom(320, 240, 0, 1);
    EXPECT_EQ(posts, 4);
    EXPECT_EQ(camera().getWorldPosition(), before);
    pump();
    EXPECT_NE(camera().getWorldPosition(), before);
    EXPECT_EQ(posts, 5);  // orbiting signals too
}

TEST_F(CameraTest, GesturesAreNeverMerged) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    int moves = 0;
    camera().zoom(320, 240, 0, 1);
    camera().zoom(320, 240, 0, 1);
    const auto subscription = SignalBroker::onCameraMoved([&] { ++moves; });
    pump();
    EXPECT_EQ(moves, 2);
}

TEST_F(CameraTest, GesturesDoWhatTheControllerDoes) {
    const auto poseAfter = [&](const auto& gesture) {
        lookFrom({400, -600, 350}, {0, 0, 0});
        gesture();
        pump();
        return rob::PoseTemplate<float>{camera().getWorldPosition(), camera().getWorldRotation()};
    };
    visual::OrbitViewController& controller = *camera().controller;
    EXPECT_EQ(
        poseAfter([&] { camera().startRotating(200, 300), camera().rotateScene(30, 20); }),
        poseAfter([&] { controller.startRotating(200, 300), controller.rotateScene(30, 20); }));
    EXPECT_EQ(poseAfter([&] { camera().translateScene(200, 300, 30, 20); }),
              poseAfter([&] { controller.translateScene(200, 300, 30, 20); }));
    EXPECT_EQ(poseAfter([&] { camera().zoom(200, 300, 5, -1); }),
              poseAfter([&] { controller.zoom(200, 300, 5, -1); }));
}

}  // namespace vrn::test
