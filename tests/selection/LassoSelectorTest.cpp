#include "selection/LassoSelector.h"

#include "selection/Box.h"
#include "selection/BVHNode.h"
#include "selection/BVHTree.h"
#include "selection/PointCloudObject.h"
#include "selection/SensitivePoints.h"
#include "selection/VisualSelection.h"
#include "suite/layout/PointCloud.h"
#include "tests/support/EngineFixture.h"
#include "view/Camera.h"
#include "visual/geometry/PointCloudVisual.h"

#include <gmock/gmock.h>
#include <OgreCamera.h>
#include <OgreMatrix4.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <stdexcept>
#include <unordered_map>

namespace vrn::test {

namespace {

using selection::BVHPrimitive;
using selection::BVHTree;
using selection::LassoSelector;
using selection::PointCloudObject;
using selection::SensitivePoints;
using testing::ElementsAre;
using testing::IsEmpty;
using visual::Box;
using visual::Camera;
using Pos = rob::PosTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using Pixels = std::vector<Pos>;
using Found = std::unordered_map<unsigned int, std::vector<unsigned long>>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float width = windowWidth;
constexpr float height = windowHeight;

}  // namespace

/// The camera stands at the origin and looks along +y, x to the right and z up.
class Lasso : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        lookFrom({0, 0, 0}, {0, 100, 0});
    }
    void TearDown() override {
        object.reset();
        EngineTest::TearDown();
    }

    /// In normalised device coordinates: no rounding of pixels.
    static LassoSelector lasso(std::vector<LassoSelector::Point> polygon) {
        LassoSelector result(Camera::Get(), {});
        result.polygon = std::move(polygon);
        return result;
    }
    static LassoSelector square(float half) {
        return lasso({{-half, -half}, {half, -half}, {half, half}, {-half, half}});
    }
    void show(std::vector<Pos> points) {
        cloud = visual::PointCloudVisual::Build(
            scene().root, model.make<layout::PointCloud>("scan", std::move(points)));
        object = std::make_unique<PointCloudObject>(cloud);
        object->updateWorldBox();
    }
    Found select(const LassoSelector& selector) {
        Found found;
        selector.selectPointCloud(object.get(), found);
        return found;
    }
    std::vector<unsigned long> selected(const LassoSelector& selector) {
        const Found found = select(selector);
        if (found.empty()) return {};
        EXPECT_EQ(found.size(), 1u);
        return found.at(cloud->id);
    }
    /// A world point at the depth, under the normalised device coordinates.
    static Pos under(float x, float y, float depth = 100) {
        const Ogre::Matrix4 p = Camera::Get()->camera->getProjectionMatrix();
        return {x * depth / p[0][0], depth, y * depth / p[1][1]};
    }

    visual::PointCloudVisual* cloud = nullptr;
    std::unique_ptr<PointCloudObject> object;
};

TEST_F(Lasso, PixelsBecomeNormalisedDeviceCoordinates) {
    const LassoSelector selector(Camera::Get(), {{0, 0, 0}, {width, 0, 0}, {width / 2, height, 9}});
    ASSERT_EQ(selector.polygon.size(), 3u);
    EXPECT_EQ(selector.polygon[0].x, -1);
    EXPECT_EQ(selector.polygon[0].y, 1);
    EXPECT_EQ(selector.polygon[1].x, 1);
    EXPECT_EQ(selector.polygon[1].y, 1);
    EXPECT_EQ(selector.polygon[2].x, 0);
    EXPECT_EQ(selector.polygon[2].y, -1);
    EXPECT_EQ(selector.camera, Camera::Get());
}

TEST_F(Lasso, WithoutACameraItThrowsAndWithoutAViewportItIsEmpty) {
    EXPECT_THROW(LassoSelector(nullptr, {}), std::invalid_argument);
    Camera::Get()->setRenderTarget(nullptr);
    EXPECT_TRUE(LassoSelector(Camera::Get(), {{0, 0, 0}, {9, 0, 0}, {0, 9, 0}}).polygon.empty());
    Camera::Get()->setRenderTarget(&window());
}

TEST_F(Lasso, FewerThanThreeCornersHoldNoPoint) {
    EXPECT_FALSE(lasso({}).isPointInPolygon({0, 0}));
    EXPECT_FALSE(lasso({{0, 0}}).isPointInPolygon({0, 0}));
    EXPECT_FALSE(lasso({{-1, -1}, {1, 1}}).isPointInPolygon({0, 0}));
}

TEST_F(Lasso, APolygonOfTwoCornersSelectsNothing) {
    show({under(0, 0), under(0.1f, 0.1f)});
    EXPECT_THAT(select(lasso({{-1, -1}, {1, 1}})), IsEmpty());
}

TEST_F(Lasso, ThePolygonNeedNotBeConvex) {
    const LassoSelector horseshoe = lasso({{-0.5f, -0.5f},
                                           {0.5f, -0.5f},
                                           {0.5f, 0.5f},
                                           {0.3f, 0.5f},
                                           {0.3f, -0.3f},
                                           {-0.3f, -0.3f},
                                           {-0.3f, 0.5f},
                                           {-0.5f, 0.5f}});
    EXPECT_TRUE(horseshoe.isPointInPolygon({-0.4f, 0}));
    EXPECT_TRUE(horseshoe.isPointInPolygon({0.4f, 0}));
    EXPECT_TRUE(horseshoe.isPointInPolygon({0, -0.4f}));
    EXPECT_FALSE(horseshoe.isPointInPolygon({0, 0.2f}));
    show({under(-0.4f, 0), under(0, 0.2f), under(0.4f, 0)});
    EXPECT_THAT(selected(horseshoe), ElementsAre(0, 2));
}

TEST_F(Lasso, ASelfCrossingLassoSelectsByTheEvenOddRule) {
    // Five points of a star: its middle is enclosed twice.
    std::vector<LassoSelector::Point> star;
    for (int i = 0; i < 5; ++i) {
        const float angle = 1.5707963f + 6.2831853f * static_cast<float>(i * 2) / 5;
        star.push_back({0.8f * std::cos(angle), 0.8f * std::sin(angle)});
    }
    show({under(0, 0), under(0, 0.6f), under(0.5f, 0.2f), under(0.7f, 0.7f)});
    EXPECT_THAT(selected(lasso(star)), ElementsAre(1, 2));
}

TEST_F(Lasso, ThePolygonMeetsABoxWhereEdgesCrossOrTouch) {
    const LassoSelector selector = square(0.5f);
    EXPECT_TRUE(selector.polygonIntersectsAABB({0.4f, 0.4f, 0.6f, 0.6f}));
    EXPECT_TRUE(selector.polygonIntersectsAABB({0.5f, -0.1f, 0.6f, 0.1f}));  // touching
    EXPECT_FALSE(selector.polygonIntersectsAABB({0.51f, -0.1f, 0.6f, 0.1f}));
    EXPECT_FALSE(selector.polygonIntersectsAABB({-0.1f, -0.1f, 0.1f, 0.1f}));
    EXPECT_FALSE(selector.polygonIntersectsAABB({-0.9f, -0.9f, 0.9f, 0.9f}));
    EXPECT_FALSE(lasso({}).polygonIntersectsAABB({-1, -1, 1, 1}));
}

TEST_F(Lasso, TheClosingEdgeCountsToo) {
    const LassoSelector selector = lasso({{-0.5f, 0.5f}, {0.5f, 0.5f}, {0.5f, -0.5f}});
    EXPECT_TRUE(selector.polygonIntersectsAABB({-0.05f, -0.05f, 0.05f, 0.05f}));
}

TEST_F(Lasso, EdgesWhoseDeterminantIsBelowTheLimitArePassedOver) {
    // A short edge across a box's short side; the determinant is their product.
    const auto crossing = [](float length) {
        return lasso({{-length / 2, 0}, {length / 2, 0}})
            .polygonIntersectsAABB({0, -length / 2, 1, length / 2});
    };
    EXPECT_TRUE(crossing(1.1e-5f));
    EXPECT_FALSE(crossing(0.9e-5f));
}

TEST_F(Lasso, ABoxWithAllCornersInsideIsFullyInside) {
    EXPECT_EQ(square(0.5f).classifyAABBPolygon({-0.1f, -0.1f, 0.1f, 0.1f}), 1);
}

TEST_F(Lasso, ABoxWithAllCornersInsideThatThePolygonCutsIsPartlyInside) {
    // A slot that reaches into the box from above.
    const LassoSelector slotted = lasso({{-0.5f, -0.5f},
                                         {0.5f, -0.5f},
                                         {0.5f, 0.5f},
                                         {0.01f, 0.5f},
                                         {0.01f, 0},
                                         {-0.01f, 0},
                                         {-0.01f, 0.5f},
                                         {-0.5f, 0.5f}});
    EXPECT_EQ(slotted.classifyAABBPolygon({-0.1f, -0.1f, 0.1f, 0.1f}), 2);
}

TEST_F(Lasso, ABoxWithOneToThreeCornersInsideIsPartlyInside) {
    EXPECT_EQ(square(0.5f).classifyAABBPolygon({0.4f, 0.4f, 0.6f, 0.6f}), 2);
    EXPECT_EQ(square(0.5f).classifyAABBPolygon({0.4f, 0, 0.6f, 0.1f}), 2);
}

TEST_F(Lasso, ALassoInsideABigBoxMakesItPartlyInside) {
    EXPECT_EQ(square(0.1f).classifyAABBPolygon({-0.9f, -0.9f, 0.9f, 0.9f}), 2);
    EXPECT_EQ(square(0.1f).classifyBoxPolygon(Box(-1000, 400, -1000, 1000, 500, 1000), {}), 2);
}

TEST_F(Lasso, APolygonVertexOnTheBordersOfTheBoxCounts) {
    const LassoSelector corner = lasso({{0.5f, 0.5f}, {0.9f, 0.9f}, {0.5f, 0.9f}});
    EXPECT_EQ(corner.classifyAABBPolygon({0, 0, 0.5f, 0.5f}), 2);
    EXPECT_EQ(corner.classifyAABBPolygon({0, 0, 0.499f, 0.499f}), 0);
}

TEST_F(Lasso, ABoxThatOnlyEdgesCrossIsPartlyInside) {
    const LassoSelector bar = lasso({{-0.9f, -0.1f}, {0.9f, -0.1f}, {0.9f, 0.1f}, {-0.9f, 0.1f}});
    EXPECT_EQ(bar.classifyAABBPolygon({-0.1f, -0.5f, 0.1f, 0.5f}), 2);
}

TEST_F(Lasso, ABoxBesideThePolygonIsOutside) {
    EXPECT_EQ(square(0.1f).classifyAABBPolygon({0.2f, 0.2f, 0.9f, 0.9f}), 0);
    EXPECT_EQ(lasso({}).classifyAABBPolygon({-1, -1, 1, 1}), 0);
}

TEST_F(Lasso, ABoxIsClassifiedWhereItsPosePutsIt) {
    const LassoSelector selector = square(0.3f);
    const Box box(-1, -1, -1, 1, 1, 1);
    const Pos at = under(0.7f, 0);
    EXPECT_EQ(selector.classifyBoxPolygon(box, {{0, 100, 0}, {}}), 1);
    EXPECT_EQ(selector.classifyBoxPolygon(box, {at, {}}), 0);
    EXPECT_EQ(selector.classifyBoxPolygon(box, {under(0.3f, 0), {}}), 2);
}

TEST_F(Lasso, ABoxThatReachesBehindTheEyeIsPartlyInsideAndOneBehindItOutside) {
    const LassoSelector selector = square(0.3f);
    EXPECT_EQ(selector.classifyBoxPolygon(Box(500, -50, 0, 501, 50, 1), {}), 2);
    EXPECT_EQ(selector.classifyBoxPolygon(Box(-1, -50, -1, 1, -40, 1), {}), 0);
    EXPECT_EQ(selector.classifyBoxPolygon(Box(), {}), 0);
}

TEST_F(Lasso, PointsAtOrBehindTheEyeAreNotSelected) {
    // Behind the eye a division by w would mirror them into the lasso.
    show({{0, 100, 0}, {0, -100, 0}, {0, 0, 0}, {0.01f, -1, 0.01f}});
    EXPECT_THAT(selected(square(0.5f)), ElementsAre(0));
}

TEST_F(Lasso, PointsAreSelectedWhereTheVisualStands) {
    show({under(0, 0), under(0.8f, 0)});
    const Pos shift = under(-0.8f, 0);
    cloud->setPosition(shift.x, 0, 0);
    object->worldBoxDirty = true;
    object->updateWorldBox();
    EXPECT_THAT(selected(square(0.3f)), ElementsAre(1));
}

TEST_F(Lasso, OneChunkAppendsItsPointsInItsOrder) {
    show({under(0, 0), under(0.8f, 0), under(0.1f, 0), under(0, 0.1f)});
    const SensitivePoints chunk(cloud, {3, 1, 0, 2});
    std::vector<unsigned int> indices{77};
    square(0.3f).selectPoints(&chunk, indices);
    EXPECT_THAT(indices, ElementsAre(77, 3, 0, 2));
    square(0.3f).selectPoints(nullptr, indices);
    EXPECT_THAT(indices, ElementsAre(77, 3, 0, 2));
}

TEST_F(Lasso, ANumberThatTheCloudDoesNotHaveIsPassedOver) {
    show({under(0, 0)});
    const SensitivePoints chunk(cloud, {5, 0, 4'000'000'000u});
    std::vector<unsigned int> indices;
    square(0.3f).selectPoints(&chunk, indices);
    EXPECT_THAT(indices, ElementsAre(0));
}

TEST_F(Lasso, WithoutATreeNothingIsFound) {
    EXPECT_THAT(square(1).selectBVH(BVHTree(), {}), IsEmpty());
    show({});
    EXPECT_THAT(select(square(1)), IsEmpty());
    Found found;
    square(1).selectPointCloud(nullptr, found);
    EXPECT_THAT(found, IsEmpty());
}

TEST_F(Lasso, ACloudWithoutPointsInsideMakesNoEntry) {
    show({under(0.8f, 0)});
    EXPECT_THAT(select(square(0.3f)), IsEmpty());
}

TEST_F(Lasso, WhatIsFoundIsAppendedUnderTheIdOfTheVisual) {
    show({under(0, 0)});
    Found found{{cloud->id, {77}}, {cloud->id + 1, {5}}};
    square(0.3f).selectPointCloud(object.get(), found);
    EXPECT_THAT(found.at(cloud->id), ElementsAre(77, 0));
    EXPECT_THAT(found.at(cloud->id + 1), ElementsAre(5));
}

TEST_F(Lasso, PolygonsAndPointsWithoutValueDoNotCrash) {
    show({under(0, 0), {nan, 100, 0}, {0, nan, 0}, {nan, nan, nan}, under(0.1f, 0)});
    EXPECT_THAT(selected(square(0.3f)), ElementsAre(0, 4));
    EXPECT_NO_THROW((void)select(lasso({{nan, 0}, {0, nan}, {nan, nan}, {1, 1}})));
    EXPECT_THAT(select(lasso({{nan, nan}, {nan, nan}, {nan, nan}})), IsEmpty());
    const LassoSelector fromPixels(Camera::Get(), {{nan, 0, 0}, {0, nan, 0}, {5, 5, 0}});
    EXPECT_NO_THROW((void)select(fromPixels));
    EXPECT_NO_THROW((void)fromPixels.classifyBoxPolygon(Box(nan, 0, 0, 1, 1, 1), {}));
}

class LargeLasso : public Lasso {
protected:
    void SetUp() override {
        Lasso::SetUp();
        std::mt19937 engine(1);
        std::uniform_real_distribution<float> number(-100, 100);
        points.resize(60'000);
        for (Pos& p : points) p = {number(engine), number(engine), number(engine)};
        show(points);
        lookFrom({30, -180, 40}, {0, 0, 0});  // some lie behind
        cloud->setRotation({0.5f, rob::Vec3Template<float>{0, 0.6f, 0.8f}});
        object->worldBoxDirty = true;
        object->updateWorldBox();
    }
    static LassoSelector wobbly(int corners) {
        std::vector<LassoSelector::Point> polygon;
        for (int i = 0; i < corners; ++i) {
            const float angle = 6.2831853f * static_cast<float>(i) / static_cast<float>(corners);
            const float radius = 0.5f + 0.3f * std::sin(7 * angle);
            polygon.push_back({radius * std::cos(angle), radius * std::sin(angle)});
        }
        return lasso(std::move(polygon));
    }

    std::vector<Pos> points;
};

TEST_F(LargeLasso, SelectsExactlyThePointsThatLieInThePolygonOneByOne) {
    const LassoSelector selector = wobbly(100);
    const auto found = selected(selector);
    ASSERT_GT(found.size(), 1000u);
    // The same in double precision, outside a band along the outline.
    const Ogre::Matrix4 m =
        Camera::Get()->camera->getProjectionMatrix() * Camera::Get()->camera->getViewMatrix(true);
    const std::vector<unsigned long> sorted = [&] {
        auto copy = found;
        std::ranges::sort(copy);
        return copy;
    }();
    EXPECT_EQ(std::ranges::adjacent_find(sorted), sorted.end()) << "a point came twice";
    int judged = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Pos world = rob::TransformPoint(cloud->getWorldPose(), points[i]);
        const auto row = [&](std::size_t r) {
            return static_cast<double>(m[r][0]) * static_cast<double>(world.x) +
                   static_cast<double>(m[r][1]) * static_cast<double>(world.y) +
                   static_cast<double>(m[r][2]) * static_cast<double>(world.z) +
                   static_cast<double>(m[r][3]);
        };
        const double w = row(3);
        if (std::abs(w) < 0.01) continue;
        const auto x = static_cast<float>(row(0) / w), y = static_cast<float>(row(1) / w);
        const bool in = selector.isPointInPolygon({x, y});
        const float band = 1e-4f;
        if (in != selector.isPointInPolygon({x + band, y}) ||
            in != selector.isPointInPolygon({x - band, y}) ||
            in != selector.isPointInPolygon({x, y + band}) ||
            in != selector.isPointInPolygon({x, y - band}))
            continue;
        ASSERT_EQ(std::ranges::binary_search(sorted, i), w > 0 && in) << "point " << i;
        ++judged;
    }
    EXPECT_GT(judged, 55'000);
}

TEST_F(LargeLasso, TheChunksKeepTheOrderInWhichTheTreeGaveThem) {
    const LassoSelector selector = wobbly(100);
    std::vector<unsigned long> expected;
    const auto chunks = selector.selectBVH(object->tree, object->worldPose);
    EXPECT_GT(chunks.size(), 5u);
    EXPECT_LT(chunks.size(), object->primitives.size());
    for (const BVHPrimitive* primitive : chunks) {
        std::vector<unsigned int> own;
        selector.selectPoints(&dynamic_cast<const SensitivePoints&>(*primitive), own);
        expected.insert(expected.end(), own.begin(), own.end());
    }
    EXPECT_EQ(selected(selector), expected);
}

TEST_F(LargeLasso, TheTreeKeepsEveryChunkThatIsNotOutside) {
    for (const LassoSelector& selector : {wobbly(100), wobbly(12), square(0.1f), square(3)}) {
        auto found = selector.selectBVH(object->tree, object->worldPose);
        std::vector<BVHPrimitive*> expected;
        for (BVHPrimitive* primitive : object->primitives)
            if (selector.classifyBoxPolygon(primitive->box, object->worldPose) != 0)
                expected.push_back(primitive);
        std::ranges::sort(found);
        std::ranges::sort(expected);
        EXPECT_EQ(found, expected);
    }
}

TEST_F(LargeLasso, AFullyInsideTreeIsCollectedFromLeftToRight) {
    std::vector<BVHPrimitive*> all;
    lookFrom({0, -1000, 0}, {0, 0, 0});
    object->tree.root->collectPrimitives(all);
    EXPECT_EQ(square(3).classifyBoxPolygon(object->tree.root->box, object->worldPose), 1);
    EXPECT_EQ(square(3).selectBVH(object->tree, object->worldPose), all);
}

TEST_F(LargeLasso, ThePublicQuestionAnswersTheSame) {
    pump();  // the registry's own object of this cloud
    Pixels pixels;
    const LassoSelector selector = wobbly(100);
    for (const auto& p : selector.polygon)
        pixels.push_back({(p.x + 1) / 2 * width, (1 - p.y) / 2 * height, 0});
    const Found found = selection::VisualSelection::Get()->lassoSelectPointCloud(pixels);
    EXPECT_EQ(found, select(LassoSelector(Camera::Get(), pixels)));
}

}  // namespace vrn::test
