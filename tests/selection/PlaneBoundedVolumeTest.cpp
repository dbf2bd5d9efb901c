#include "selection/PlaneBoundedVolume.h"

#include "selection/Box.h"
#include "selection/PointCloudObject.h"
#include "suite/layout/PointCloud.h"
#include "tests/support/EngineFixture.h"
#include "view/Camera.h"
#include "visual/geometry/PointCloudVisual.h"

#include <gmock/gmock.h>
#include <limits>
#include <random>
#include <stdexcept>
#include <thread>

namespace vrn::test {

namespace {

using selection::Plane;
using selection::PlaneBoundedVolume;
using selection::PointCloudObject;
using testing::ElementsAre;
using visual::Box;
using Pos = rob::PosTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using Vec3 = Ogre::Vector<3, float>;
using Indices = std::vector<unsigned long>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

/// x <= limit: its normal points to +x.
void AddUpperX(PlaneBoundedVolume& volume, float limit) {
    volume.addPlane({limit, 0, 0}, {limit, 1, 0}, {limit, 0, 1});
}
void AddLowerX(PlaneBoundedVolume& volume, float limit) {
    volume.addPlane({limit, 0, 0}, {limit, 0, 1}, {limit, 1, 0});
}

}  // namespace

TEST(SelectionPlane, TheNormalIsOfUnitLengthOnTheCounterClockwiseSide) {
    const Plane plane({0, 0, 5}, {7, 0, 5}, {0, 3, 5});
    EXPECT_EQ(plane.normal, Vec3(0, 0, 1));
    EXPECT_EQ(plane.d, -5);
}

TEST(SelectionPlane, PointsOnOneLineKeepTheZeroVector) {
    const Plane plane({1, 2, 3}, {2, 2, 3}, {5, 2, 3});
    EXPECT_EQ(plane.normal, Vec3(0, 0, 0));
    EXPECT_EQ(plane.d, 0);
    EXPECT_EQ(plane.intersect(Pos{9, 9, 9}), Plane::Both);  // rejects nothing
    EXPECT_EQ(plane.intersect(Box(1, 1, 1, 2, 2, 2)), Plane::Both);
}

TEST(SelectionPlane, ThePointTestTellsPositiveNegativeAndExactlyOn) {
    const Plane plane({0, 0, 5}, {1, 0, 5}, {0, 1, 5});
    EXPECT_EQ(plane.intersect(Pos{0, 0, 5.001f}), 0);
    EXPECT_EQ(plane.intersect(Pos{0, 0, 4.999f}), 1);
    EXPECT_EQ(plane.intersect(Pos{77, -3, 5}), 2);
}

TEST(SelectionPlane, ABoxThatTouchesThePlaneStraddlesIt) {
    const Plane plane({0, 0, 5}, {1, 0, 5}, {0, 1, 5});
    EXPECT_EQ(plane.intersect(Box(0, 0, 6, 1, 1, 8)), 0);
    EXPECT_EQ(plane.intersect(Box(0, 0, 1, 1, 1, 4)), 1);
    EXPECT_EQ(plane.intersect(Box(0, 0, 1, 1, 1, 8)), 2);
    EXPECT_EQ(plane.intersect(Box(0, 0, 5, 1, 1, 8)), 2);
    EXPECT_EQ(plane.intersect(Box(0, 0, 1, 1, 1, 5)), 2);
}

TEST(SelectionPlane, TheBoxTestReadsTheBoundsAndNotTheStoredCenter) {
    const Plane plane({0, 0, 5}, {1, 0, 5}, {0, 1, 5});
    Box box(0, 0, 1, 1, 1, 2);
    box.addPoint({0, 0, 100});  // the center is stale now
    EXPECT_EQ(plane.intersect(box), 2);
}

TEST(SelectionPlane, CopiesOfAListOfPlanesAreTheirOwn) {
    std::vector<Plane> planes{Plane({0, 0, 5}, {1, 0, 5}, {0, 1, 5})};
    std::vector<Plane> copy = planes;
    copy[0].d = 7;
    EXPECT_EQ(planes[0].d, -5);
    const std::vector<Plane> moved = std::move(copy);
    EXPECT_EQ(moved[0].d, 7);
    const Plane& self = planes[0];
    planes[0] = self;
    EXPECT_EQ(planes[0].d, -5);
}

TEST(PlaneBoundedVolume, WithoutPlanesEveryBoxIsInside) {
    const PlaneBoundedVolume volume;
    EXPECT_EQ(volume.intersect(Box(0, 0, 0, 1, 1, 1)), 0);
    EXPECT_EQ(volume.intersect(Box()), 0);
}

TEST(PlaneBoundedVolume, ABoxIsInsidePartlyOrOutside) {
    PlaneBoundedVolume volume;
    AddUpperX(volume, 10);
    AddLowerX(volume, 0);
    EXPECT_EQ(volume.intersect(Box(1, 0, 0, 2, 1, 1)), 0);
    EXPECT_EQ(volume.intersect(Box(-1, 0, 0, 2, 1, 1)), 1);
    EXPECT_EQ(volume.intersect(Box(-1, 0, 0, 20, 1, 1)), 1);
    EXPECT_EQ(volume.intersect(Box(11, 0, 0, 20, 1, 1)), 2);
    EXPECT_EQ(volume.intersect(Box(-5, 0, 0, -1, 1, 1)), 2);
    EXPECT_EQ(volume.intersect(Box(10, 0, 0, 20, 1, 1)), 1);  // touching
}

class ScreenVolume : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        lookFrom({0, -1000, 0}, {0, 0, 0});  // along +y, x to the right, z up
    }
    static bool contains(const PlaneBoundedVolume& volume, const Pos& p) {
        for (const Plane& plane : volume.planes)
            if (plane.intersect(p) == Plane::Positive) return false;
        return true;
    }
    /// The world point in the plane y = 0 under a pixel.
    static Pos under(float x, float y) {
        Pos origin;
        rob::Vec3Template<float> d;
        visual::gCamera->cameraToViewportRay(x, y, origin, d);
        return origin + d * (-origin.y / d.y);
    }
    static void expectHolds(const PlaneBoundedVolume& volume, float left, float top, float right,
                            float bottom) {
        const float midX = (left + right) / 2, midY = (top + bottom) / 2;
        EXPECT_TRUE(contains(volume, under(midX, midY)));
        for (const float by : {-2.0f, 2.0f}) {
            EXPECT_EQ(contains(volume, under(left + by, midY)), by > 0);
            EXPECT_EQ(contains(volume, under(right + by, midY)), by < 0);
            EXPECT_EQ(contains(volume, under(midX, top + by)), by > 0);
            EXPECT_EQ(contains(volume, under(midX, bottom + by)), by < 0);
        }
    }
};

TEST_F(ScreenVolume, ARectangleHoldsWhatLiesUnderItWhicheverCornersAreGiven) {
    expectHolds(PlaneBoundedVolume(100, 80, 300, 200), 100, 80, 300, 200);
    expectHolds(PlaneBoundedVolume(300, 200, 100, 80), 100, 80, 300, 200);
    expectHolds(PlaneBoundedVolume(100, 200, 300, 80), 100, 80, 300, 200);
    expectHolds(PlaneBoundedVolume(300, 80, 100, 200), 100, 80, 300, 200);
}

TEST_F(ScreenVolume, ThePlanesOfARectangleAreTopLeftBottomRight) {
    const PlaneBoundedVolume volume(100, 80, 300, 200);
    ASSERT_EQ(volume.planes.size(), 4u);
    // x to the right, z up: the outer sides.
    EXPECT_GT(volume.planes[0].normal[2], 0.5f);
    EXPECT_LT(volume.planes[1].normal[0], -0.5f);
    EXPECT_LT(volume.planes[2].normal[2], -0.5f);
    EXPECT_GT(volume.planes[3].normal[0], 0.5f);
}

TEST_F(ScreenVolume, WhatLiesBehindTheEyeIsOutside) {
    const PlaneBoundedVolume volume(100, 80, 300, 200);
    const Pos ahead = under(200, 140);
    const Pos eye{0, -1000, 0};
    EXPECT_TRUE(contains(volume, ahead));
    EXPECT_FALSE(contains(volume, eye - (ahead - eye)));
}

TEST_F(ScreenVolume, ARectangleWithoutWidthRejectsNothingAcrossIt) {
    const PlaneBoundedVolume volume(200, 80, 200, 200);
    ASSERT_EQ(volume.planes.size(), 4u);
    EXPECT_EQ(volume.planes[0].normal, Vec3(0, 0, 0));
    EXPECT_EQ(volume.planes[2].normal, Vec3(0, 0, 0));
}

TEST_F(ScreenVolume, APolygonHoldsWhatLiesUnderItInEitherWinding) {
    expectHolds(PlaneBoundedVolume({{100, 80, 0}, {300, 80, 0}, {300, 200, 0}, {100, 200, 0}}), 100,
                80, 300, 200);
    expectHolds(PlaneBoundedVolume({{100, 80, 0}, {100, 200, 0}, {300, 200, 0}, {300, 80, 0}}), 100,
                80, 300, 200);
    const PlaneBoundedVolume triangle({{100, 100, 0}, {300, 100, 0}, {100, 300, 0}});
    EXPECT_EQ(triangle.planes.size(), 3u);
    EXPECT_TRUE(contains(triangle, under(150, 150)));
    EXPECT_FALSE(contains(triangle, under(250, 250)));
}

TEST_F(ScreenVolume, OnlyTheFirstThreePointsOfAPolygonDecideItsWinding) {
    // At the first three it turns the other way than as a whole: nothing that it encloses is in.
    const PlaneBoundedVolume volume(
        {{100, 100, 0}, {200, 150, 0}, {300, 100, 0}, {300, 300, 0}, {100, 300, 0}});
    ASSERT_EQ(volume.planes.size(), 5u);
    EXPECT_FALSE(contains(volume, under(200, 250)));
}

TEST_F(ScreenVolume, FewerThanThreePointsGiveNoPlanes) {
    EXPECT_TRUE(PlaneBoundedVolume(std::vector<Pos>{}).planes.empty());
    EXPECT_TRUE(PlaneBoundedVolume({{1, 1, 0}}).planes.empty());
    EXPECT_TRUE(PlaneBoundedVolume({{1, 1, 0}, {9, 9, 0}}).planes.empty());
}

TEST_F(ScreenVolume, PixelsWithoutValueDoNotCrash) {
    EXPECT_NO_THROW((void)PlaneBoundedVolume(nan, 0, 10, nan).intersect(Box(0, 0, 0, 1, 1, 1)));
    EXPECT_NO_THROW((void)PlaneBoundedVolume({{nan, 0, 0}, {1, nan, 0}, {5, 5, 0}}));
}

TEST_F(ScreenVolume, WithoutACameraOrAViewportItThrows) {
    visual::Camera* const camera = visual::gCamera;
    visual::gCamera = nullptr;
    EXPECT_THROW(PlaneBoundedVolume(0, 0, 10, 10), std::logic_error);
    EXPECT_THROW(PlaneBoundedVolume({{0, 0, 0}, {10, 0, 0}, {0, 10, 0}}), std::logic_error);
    visual::gCamera = camera;
    camera->setRenderTarget(nullptr);
    EXPECT_THROW(PlaneBoundedVolume(0, 0, 10, 10), std::logic_error);
    camera->setRenderTarget(&window());
    EXPECT_NO_THROW(PlaneBoundedVolume(0, 0, 10, 10));
}

class CloudVolume : public EngineTest {
protected:
    void show(std::vector<Pos> points) {
        cloud = visual::PointCloudVisual::Build(
            scene().root, model.make<layout::PointCloud>("scan", std::move(points)));
        object = std::make_unique<PointCloudObject>(cloud);
    }
    Indices inside(const PlaneBoundedVolume& volume) {
        Indices indices;
        const bool any = volume.intersect(object.get(), indices);
        EXPECT_EQ(any, !indices.empty());
        return indices;
    }
    void TearDown() override {
        object.reset();
        EngineTest::TearDown();
    }

    visual::PointCloudVisual* cloud = nullptr;
    std::unique_ptr<PointCloudObject> object;
};

TEST_F(CloudVolume, PointsInsideComeInAscendingOrder) {
    show({{5, 0, 0}, {-1, 0, 0}, {3, 0, 0}, {11, 0, 0}, {9, 0, 0}, {0.5f, 0, 0}});
    PlaneBoundedVolume volume;
    AddUpperX(volume, 10);
    AddLowerX(volume, 0);
    EXPECT_THAT(inside(volume), ElementsAre(0, 2, 4, 5));
}

TEST_F(CloudVolume, APointExactlyOnEveryPlaneIsInside) {
    show({{0, 0, 0}, {1, 0, 0}});
    PlaneBoundedVolume volume;
    AddUpperX(volume, 0);
    AddLowerX(volume, 0);
    EXPECT_THAT(inside(volume), ElementsAre(0));
}

TEST_F(CloudVolume, WithoutPlanesAllPointsAreInside) {
    show({{5, 0, 0}, {-1, 0, 0}, {3, 0, 0}});
    EXPECT_THAT(inside(PlaneBoundedVolume{}), ElementsAre(0, 1, 2));
}

TEST_F(CloudVolume, TheLastThreadTakesTheRemainder) {
    // For every count round the number of threads, none is left out and none comes twice.
    const unsigned threads = std::max(1u, std::thread::hardware_concurrency());
    for (unsigned count = 1; count <= 3 * threads + 2; ++count) {
        show(std::vector<Pos>(count));
        Indices expected(count);
        for (unsigned i = 0; i < count; ++i) expected[i] = i;
        EXPECT_EQ(inside(PlaneBoundedVolume{}), expected) << count << " points";
    }
}

TEST_F(CloudVolume, FoundPointsAreAppendedAndNoneAnswersFalse) {
    show({{5, 0, 0}, {-1, 0, 0}});
    PlaneBoundedVolume volume;
    AddLowerX(volume, 0);
    Indices indices{77};
    EXPECT_TRUE(volume.intersect(object.get(), indices));
    EXPECT_THAT(indices, ElementsAre(77, 0));
    PlaneBoundedVolume away;
    AddLowerX(away, 100);
    EXPECT_FALSE(away.intersect(object.get(), indices));
    EXPECT_THAT(indices, ElementsAre(77, 0));
}

TEST_F(CloudVolume, PointsAreSeenWhereTheVisualStands) {
    show({{5, 0, 0}, {-1, 0, 0}});
    cloud->setPosition(100, 0, 0);
    PlaneBoundedVolume volume;
    AddLowerX(volume, 100);
    EXPECT_THAT(inside(volume), ElementsAre(0));
    cloud->setRotation(rob::RotationTemplate<float>(0, 0, 0, 1));  // a half turn about z
    EXPECT_THAT(inside(volume), ElementsAre(1));
}

TEST_F(CloudVolume, ACloudWithoutPointsAndNoCloudAtAllFindNothing) {
    show({});
    EXPECT_TRUE(inside(PlaneBoundedVolume{}).empty());
    Indices indices;
    EXPECT_FALSE(PlaneBoundedVolume{}.intersect(nullptr, indices));
}

TEST_F(CloudVolume, APointWithoutValueIsOnNoPositiveSide) {
    show({{nan, nan, nan}, {5, 0, 0}});
    PlaneBoundedVolume volume;
    AddLowerX(volume, 0);
    EXPECT_THAT(inside(volume), ElementsAre(0, 1));
}

TEST_F(CloudVolume, ManyPointsAreJudgedAsPlaneByPlane) {
    std::mt19937 engine(1);
    std::uniform_real_distribution<float> number(-100, 100);
    std::vector<Pos> points(100'003);
    for (Pos& p : points) p = {number(engine), number(engine), number(engine)};
    show(points);
    cloud->setPosition(3, -2, 7);
    cloud->setRotation({0.7f, rob::Vec3Template<float>{0.6f, 0, 0.8f}});
    lookFrom({0, -300, 50}, {0, 0, 0});
    const PlaneBoundedVolume volume(100, 80, 500, 400);
    const Pose pose = cloud->getWorldPose();
    Indices expected;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Pos world = rob::TransformPoint(pose, points[i]);
        bool in = true;
        for (const Plane& plane : volume.planes) in = in && plane.intersect(world) != 0;
        if (in) expected.push_back(i);
    }
    EXPECT_GT(expected.size(), 1000u);
    EXPECT_LT(expected.size(), 99'000u);
    EXPECT_EQ(inside(volume), expected);
}

}  // namespace vrn::test
