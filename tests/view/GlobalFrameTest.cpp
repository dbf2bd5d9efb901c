#include "view/GlobalFrame.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <OgreEntity.h>
#include <OgreMaterial.h>
#include <OgreMesh.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "engine/RenderEngine.h"
#include "tests/support/EngineFixture.h"
#include "tests/view/OffscreenTarget.h"
#include "view/Camera.h"
#include "view/Grid.h"
#include "visual/Visual.h"

namespace vrn::test {

using headless::Picture;
using headless::Rgba;
using visual::Camera;
using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

namespace {

constexpr std::array axisNames{"AxisX", "AxisY", "AxisZ"};
constexpr std::array parts{"Shaft", "Head", "Letter"};
constexpr std::uint16_t storedCentre = 72;
constexpr float centrePx = 108;  // where the axes start, from the left and from below
constexpr int cornerPx = 220;    // square in the lower left corner that holds them

/// Which axis a pixel belongs to: 0 red, 1 green, 2 blue, -1 none.
int HueOf(const Rgba& p) {
    const std::array<int, 3> c{p.r, p.g, p.b};
    for (std::size_t i = 0; i < 3; ++i) {
        const int rest = std::max(c[(i + 1) % 3], c[(i + 2) % 3]);
        if (c[i] > rest + 30) return static_cast<int>(i);
    }
    return -1;
}

struct Hue {
    int count = 0;
    float x = 0, y = 0;  // mean, from the axes' origin, y upwards
    float reach = 0;     // of the farthest pixel
};

std::array<Hue, 3> HuesInCorner(const Picture& picture, float originX = centrePx,
                                float originY = centrePx) {
    std::array<Hue, 3> hues;
    for (int fromBottom = 0; fromBottom < cornerPx; ++fromBottom) {
        for (int x = 0; x < cornerPx; ++x) {
            const int hue = HueOf(picture.at(x, picture.getHeight() - 1 - fromBottom));
            if (hue < 0) continue;
            Hue& h = hues[static_cast<std::size_t>(hue)];
            const float dx = static_cast<float>(x) + 0.5f - originX;
            const float dy = static_cast<float>(fromBottom) + 0.5f - originY;
            ++h.count;
            h.x += dx;
            h.y += dy;
            h.reach = std::max(h.reach, std::hypot(dx, dy));
        }
    }
    for (Hue& h : hues) {
        h.x /= static_cast<float>(std::max(h.count, 1));
        h.y /= static_cast<float>(std::max(h.count, 1));
    }
    return hues;
}

}  // namespace

/// An empty scene: neither grid nor world frame colour the corner.
class GlobalFrame : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        scene().grid->visual->setVisible(false, /*cascade=*/false);
        scene().setFrameVisualVisible(false);
    }
    void TearDown() override {
        scene().grid->visual->setVisible(true, /*cascade=*/false);
        scene().setFrameVisualVisible(true);
        axes().setCenter(storedCentre, storedCentre);
        axes().setScale(1.5f);
        Camera::Get()->setClipDist(scene().settings.nearClip, scene().settings.farClip);
        if (Camera::Get()->renderTarget != &window()) Camera::Get()->setRenderTarget(&window());
        EngineTest::TearDown();
    }
    static visual::GlobalFrame& axes() { return *Camera::Get()->globalFrame; }
    static Ogre::SceneNode* nodeOf(const std::string& name) {
        return scene().sceneManager->getSceneNode(name);
    }
    static Ogre::SubEntity* partOf(const std::string& name) {
        return static_cast<Ogre::Entity*>(nodeOf(name)->getAttachedObject(0))->getSubEntity(0);
    }
    static Vec axisInView(std::size_t axis) {
        const std::array<Vec, 3> units{Vec{1, 0, 0}, Vec{0, 1, 0}, Vec{0, 0, 1}};
        return Camera::Get()->getWorldRotation().inverse() * units[axis];
    }
    static void expectAxesAlong(const Picture& picture) {
        const auto hues = HuesInCorner(picture);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const Vec inView = axisInView(axis);
            const float length = std::hypot(inView.x, inView.y);
            if (length < 0.3f) continue;  // it points at the viewer
            const Hue& hue = hues[axis];
            ASSERT_GT(hue.count, 20) << axisNames[axis];
            const float along = (hue.x * inView.x + hue.y * inView.y) / length;
            EXPECT_GT(along, 0.9f * std::hypot(hue.x, hue.y)) << axisNames[axis];
            EXPECT_GT(along, 5.0f) << axisNames[axis];
        }
    }
};

TEST_F(GlobalFrame, EachAxisHasShaftHeadAndLetterInTheSameMaterial) {
    for (const std::string axis : axisNames) {
        for (const std::string part : parts) {
            const Ogre::SubEntity* entity = partOf(axis + part);
            EXPECT_EQ(entity->getMaterial()->getName(), "GlobalFrame") << axis << part;
            EXPECT_EQ(entity->getParent()->getRenderQueueGroup(), 80) << axis << part;
            EXPECT_TRUE(entity->getParent()->getBoundingBox().isInfinite()) << axis << part;
            EXPECT_EQ(entity->getCustomParameter(0), partOf(axis + "Shaft")->getCustomParameter(0));
        }
    }
    EXPECT_NE(partOf("AxisXShaft")->getCustomParameter(0),
              partOf("AxisYShaft")->getCustomParameter(0));
    EXPECT_NE(partOf("AxisYShaft")->getCustomParameter(0),
              partOf("AxisZShaft")->getCustomParameter(0));
}

TEST_F(GlobalFrame, PointsWhereTheWorldsAxesPoint) {
    for (const Pos& from : {Pos{400, -600, 350}, Pos{-500, -400, 200}, Pos{300, 700, -400},
                            Pos{0, -900, 10}, Pos{-10, 20, 800}}) {
        lookFrom(from, {0, 0, 0});
        SCOPED_TRACE(testing::Message() << "from " << from.x << ' ' << from.y << ' ' << from.z);
        expectAxesAlong(frame());
    }
}

TEST_F(GlobalFrame, DoesNotMoveWithTheCameraAndKeepsItsSize) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    const auto near = HuesInCorner(frame());
    Camera::Get()->setWorldPosition({40000, -60000, 35000});
    const auto far = HuesInCorner(frame());
    for (std::size_t axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(near[axis].count, far[axis].count);
        EXPECT_EQ(near[axis].x, far[axis].x);
    }
}

TEST_F(GlobalFrame, NodeStandsBeforeTheCameraInverselyTurned) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    (void)frame();
    const Ogre::SceneNode* root = nodeOf("AxisX")->getParentSceneNode();
    EXPECT_EQ(root->getPosition(), Ogre::Vector3(0, 0, -800));
    const Ogre::Quaternion rest = root->getOrientation() * Camera::Get()->node->getOrientation();
    EXPECT_NEAR(std::abs(rest.w), 1.0f, 1e-5f);
}

TEST_F(GlobalFrame, LettersFaceTheViewerWhicheverWayTheCameraTurns) {
    for (const Pos& from : {Pos{400, -600, 350}, Pos{-500, 400, -200}}) {
        lookFrom(from, {0, 0, 0});
        (void)frame();
        for (const std::string axis : axisNames) {
            const Ogre::Quaternion turn = nodeOf(axis + "Letter")->_getDerivedOrientation();
            EXPECT_NEAR(std::abs(turn.w), 1.0f, 1e-5f) << axis;
        }
    }
}

TEST_F(GlobalFrame, ALetterStandsBeyondTheTipOfItsArrow) {
    lookFrom({0, -900, 0}, {0, 0, 0});  // X to the right, Z up
    const auto whole = HuesInCorner(frame());
    for (const char* name : {"AxisXLetter", "AxisZLetter"})
        nodeOf(name)->setScale(0.001f, 0.001f, 0.001f);
    const auto bare = HuesInCorner(frame());
    for (const char* name : {"AxisXLetter", "AxisZLetter"}) nodeOf(name)->setScale(1, 1, 1);
    for (const std::size_t axis : {0u, 2u}) {
        EXPECT_GT(whole[axis].reach, bare[axis].reach + 4) << axisNames[axis];
        EXPECT_GT(whole[axis].count, bare[axis].count + 15) << axisNames[axis];
    }
}

TEST_F(GlobalFrame, KeepsItsLettersInThePictureWhicheverWayItPoints) {
    for (const Pos& from : {Pos{0, -900, 0}, Pos{0, 900, 0}, Pos{900, 0, 0}, Pos{-900, 0, 0},
                            Pos{0, -10, 900}, Pos{0, -10, -900}}) {
        lookFrom(from, {0, 0, 0});
        const Picture picture = frame();
        for (int i = 0; i < cornerPx; ++i) {
            EXPECT_EQ(HueOf(picture.at(i, windowHeight - 1)), -1);
            EXPECT_EQ(HueOf(picture.at(0, windowHeight - 1 - i)), -1);
        }
    }
}

TEST_F(GlobalFrame, StandsInFrontOfWhateverFillsTheCorner) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    const auto empty = HuesInCorner(frame());
    layout::Part* wall = makeBoxPart("wall", {}, {-4000, -300, -4000}, {4000, -200, 4000});
    scene().addPart(wall);
    const auto covered = HuesInCorner(frame());
    for (std::size_t axis = 0; axis < 3; ++axis)
        EXPECT_NEAR(covered[axis].count, empty[axis].count,
                    0.1f * static_cast<float>(empty[axis].count));
}

TEST_F(GlobalFrame, IsNotCutByTheCamerasPlanes) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    const auto before = HuesInCorner(frame());
    struct Clip {
        float near, far;
    };
    for (const Clip& clip : {Clip{1, 100}, Clip{1000, 2000}, Clip{0.01f, 1e6f}}) {
        Camera::Get()->setClipDist(clip.near, clip.far);
        const auto hues = HuesInCorner(frame());
        for (std::size_t axis = 0; axis < 3; ++axis)
            EXPECT_EQ(hues[axis].count, before[axis].count) << clip.near << " to " << clip.far;
    }
}

TEST_F(GlobalFrame, StandsInTheLowerLeftCornerOfATextureToo) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    const OffscreenTarget tall("corner target", 240, 500);
    Camera::Get()->setRenderTarget(tall.get());
    visual::gRenderEngine->root->renderOneFrame();
    expectAxesAlong(Picture::readBack(*tall.get()));
}

// --- centre and scale

TEST_F(GlobalFrame, StartsOneAndAHalfTimesItsStoredCentreFromTheEdges) {
    EXPECT_EQ(axes().getScale(), 1.5f);
    EXPECT_EQ(axes().getCenter(), (rob::Vec2Template<std::uint16_t>{storedCentre, storedCentre}));
    EXPECT_EQ(partOf("AxisXShaft")->getCustomParameter(1), Ogre::Vector4(centrePx, centrePx, 0, 0));
}

TEST_F(GlobalFrame, CentreGoesToEveryPartAsParameterOne) {
    axes().setCenter(100, 70);
    EXPECT_EQ(axes().getCenter(), (rob::Vec2Template<std::uint16_t>{100, 70}));
    for (const std::string axis : axisNames)
        for (const std::string part : parts)
            EXPECT_EQ(partOf(axis + part)->getCustomParameter(1), Ogre::Vector4(100, 70, 0, 0))
                << axis << part;
}

TEST_F(GlobalFrame, CentreMovesTheAxesByPixels) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    axes().setCenter(105, 105);
    const auto before = HuesInCorner(frame());
    axes().setCenter(110, 100);
    const auto after = HuesInCorner(frame());
    for (std::size_t axis = 0; axis < 3; ++axis) {
        EXPECT_NEAR(after[axis].x - before[axis].x, 5, 0.2f);
        EXPECT_NEAR(after[axis].y - before[axis].y, -5, 0.2f);
    }
}

TEST_F(GlobalFrame, ScaleMultipliesTheStoredCentreEachTime) {
    axes().setCenter(100, 50);
    for (int i = 0; i < 2; ++i) {
        axes().setScale(2.0f);
        EXPECT_EQ(axes().getScale(), 2.0f);
        EXPECT_EQ(partOf("AxisYHead")->getCustomParameter(1), Ogre::Vector4(200, 100, 0, 0));
        EXPECT_EQ(nodeOf("AxisX")->getParentSceneNode()->getScale(), Ogre::Vector3(2, 2, 2));
    }
    axes().setScale(0.5f);
    EXPECT_EQ(partOf("AxisYHead")->getCustomParameter(1), Ogre::Vector4(50, 25, 0, 0));
}

TEST_F(GlobalFrame, AScaleThatIsNotFiniteThrowsAndChangesNothing) {
    EXPECT_THROW(axes().setScale(std::numeric_limits<float>::quiet_NaN()), std::invalid_argument);
    EXPECT_THROW(axes().setScale(std::numeric_limits<float>::infinity()), std::invalid_argument);
    EXPECT_EQ(axes().getScale(), 1.5f);
}

TEST_F(GlobalFrame, AScaleThatIsNotPositiveIsTheLastOne) {
    for (const float last : {0.0f, -2.0f}) {
        const std::unique_ptr<Camera> other(scene().createCamera("camera of the last scale"));
        other->globalFrame->setScale(last);
        EXPECT_EQ(other->globalFrame->getScale(), last);
        other->globalFrame->setScale(3.0f);
        EXPECT_EQ(other->globalFrame->getScale(), last);
    }
}

// --- several cameras

TEST_F(GlobalFrame, AnotherCameraHasAxesOfItsOwn) {
    lookFrom({400, -600, 350}, {0, 0, 0});
    const auto alone = HuesInCorner(frame());
    const OffscreenTarget target("second target", 300, 300);
    {
        const std::unique_ptr<Camera> other(scene().createCamera("second camera"));
        other->setRenderTarget(target.get());
        other->setWorldPosition({0, -900, 0});
        other->setWorldRotation(rob::RotationTemplate<float>(1.5707964f, Vec{1, 0, 0}));
        const auto first = HuesInCorner(frame());
        for (std::size_t axis = 0; axis < 3; ++axis)
            EXPECT_EQ(first[axis].count, alone[axis].count);
        const auto second = HuesInCorner(Picture::readBack(*target.get()));
        EXPECT_GT(second[0].x, 5);  // X to the right, Z up
        EXPECT_NEAR(second[0].y, 0, 3);
        EXPECT_GT(second[2].y, 5);
        EXPECT_NEAR(second[2].x, 0, 3);
    }
    const auto afterwards = HuesInCorner(frame());
    EXPECT_EQ(afterwards[0].count, alone[0].count);
}

}  // namespace vrn::test
