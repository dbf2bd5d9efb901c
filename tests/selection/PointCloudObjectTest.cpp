#include "selection/PointCloudObject.h"

#include <gmock/gmock.h>
#include <limits>
#include <numeric>
#include <random>
#include <stdexcept>

#include "selection/BVHNode.h"
#include "selection/Ray.h"
#include "selection/SensitivePoints.h"
#include "selection/VisualSelection.h"
#include "suite/layout/PointCloud.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/PointCloudVisual.h"

namespace vrn::test {

namespace {

using selection::PointCloudObject;
using selection::Result;
using selection::SensitivePoints;
using testing::ElementsAre;
using visual::PointCloudVisual;
using visual::Ray;
using Pos = rob::PosTemplate<float>;
using Indices = std::vector<unsigned int>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

std::vector<Pos> AlongX(int count) {
    std::vector<Pos> points;
    for (int i = 0; i < count; ++i) points.push_back({static_cast<float>(i), 0, 0});
    return points;
}

Indices FirstIndices(std::size_t count) {
    Indices indices(count);
    std::iota(indices.begin(), indices.end(), 0u);
    return indices;
}

}  // namespace

class PointCloudObjects : public EngineTest {
protected:
    PointCloudVisual* show(std::vector<Pos> points) {
        cloud = PointCloudVisual::Build(scene().root,
                                        model.make<layout::PointCloud>("scan", std::move(points)));
        return cloud;
    }
    static const SensitivePoints& chunk(const PointCloudObject& object, std::size_t i) {
        return dynamic_cast<SensitivePoints&>(*object.primitives.at(i));
    }
    static std::vector<std::size_t> chunkSizes(const PointCloudObject& object) {
        std::vector<std::size_t> sizes;
        for (std::size_t i = 0; i < object.primitives.size(); ++i)
            sizes.push_back(chunk(object, i).indices.size());
        return sizes;
    }
    /// All indices of the chunks, one chunk after the other.
    static Indices indicesOf(const PointCloudObject& object) {
        Indices all;
        for (std::size_t i = 0; i < object.primitives.size(); ++i)
            all.insert(all.end(), chunk(object, i).indices.begin(), chunk(object, i).indices.end());
        return all;
    }

    PointCloudVisual* cloud = nullptr;
};

TEST_F(PointCloudObjects, AThousandPointsAreOneChunkAndOneMoreAreTwo) {
    PointCloudObject small(show(AlongX(1000)));
    EXPECT_EQ(static_cast<int>(small.kind), 5);
    EXPECT_TRUE(small.primitives.empty());
    small.buildBVH();
    EXPECT_THAT(chunkSizes(small), ElementsAre(1000));
    PointCloudObject large(show(AlongX(1001)));
    large.buildBVH();
    EXPECT_THAT(chunkSizes(large), ElementsAre(500, 501));  // 500 is the middle and lies right
    EXPECT_EQ(indicesOf(large), FirstIndices(1001));
}

TEST_F(PointCloudObjects, PointsArePartedAtTheMiddleOfTheLongestSideLeftFirst) {
    std::vector<Pos> points;
    for (int i = 0; i < 1500; ++i) {
        const float x = i % 3 == 0 ? 0.0f : 100.0f;
        points.push_back({x, static_cast<float>(i % 10), 0});
    }
    PointCloudObject object(show(points));
    object.buildBVH();
    EXPECT_THAT(chunkSizes(object), ElementsAre(500, 1000));
    EXPECT_THAT(Indices(chunk(object, 0).indices.begin(), chunk(object, 0).indices.begin() + 3),
                ElementsAre(0, 3, 6));
    EXPECT_THAT(Indices(chunk(object, 1).indices.begin(), chunk(object, 1).indices.begin() + 3),
                ElementsAre(1, 2, 4));
}

TEST_F(PointCloudObjects, TheBoxOfAChunkIsThreeUnitsWiderThanItsPoints) {
    PointCloudObject object(show({{0, 0, 0}, {10, 20, 30}}));
    object.buildBVH();
    EXPECT_EQ(object.primitives[0]->box.min, (Pos{-3, -3, -3}));
    EXPECT_EQ(object.primitives[0]->box.max, (Pos{13, 23, 33}));
    EXPECT_EQ(object.primitives[0]->box.center, (Pos{5, 10, 15}));
    EXPECT_FALSE(object.primitives[0]->box.dirty);
    EXPECT_EQ(object.box.min, object.tree.root->box.min);
    EXPECT_EQ(object.box.max, object.tree.root->box.max);
}

TEST_F(PointCloudObjects, APointAtTheBorderOfACloudIsPickedAsFarAsAnyOther) {
    PointCloudObject object(show({{0, 0, 0}, {10, 0, 0}}));
    object.updateWorldBox();
    EXPECT_TRUE(object.intersect(Ray{{12.99f, 0, 100}, {0, 0, -1}}).hit);
    EXPECT_FALSE(object.intersect(Ray{{13, 0, 100}, {0, 0, -1}}).hit);
}

TEST_F(PointCloudObjects, ARayTellsVisualIndexAndPlaceInTheWorldAndNeitherPoseNorShape) {
    show({{0, 0, 0}, {10, 0, 50}, {20, 0, 0}})->setPosition(1000, 0, 0);
    PointCloudObject object(cloud);
    object.updateWorldBox();
    const Result hit = object.intersect(Ray{{1011, 0, 150}, {0, 0, -1}});
    ASSERT_TRUE(hit.hit);
    EXPECT_EQ(hit.visual, cloud);
    EXPECT_EQ(hit.index, 1);
    EXPECT_EQ(hit.position, (Pos{1010, 0, 50}));
    EXPECT_EQ(hit.localPosition, (Pos{10, 0, 50}));
    EXPECT_NEAR(hit.distance, std::hypot(100, 1), 1e-3);
    EXPECT_EQ(hit.pose, rob::PoseTemplate<float>());
    EXPECT_TRUE(hit.shape.IsNull());
}

TEST_F(PointCloudObjects, APointThatTheCloudHasNoMoreIsPassedOver) {
    auto* scan = model.make<layout::PointCloud>("scan", AlongX(50));
    cloud = PointCloudVisual::Build(scene().root, scan);
    PointCloudObject object(cloud);
    object.updateWorldBox();
    scan->points.resize(10);
    EXPECT_FALSE(object.intersect(Ray{{30, 0, 100}, {0, 0, -1}}).hit);
    EXPECT_TRUE(object.intersect(Ray{{9, 0, 100}, {0, 0, -1}}).hit);
}

TEST_F(PointCloudObjects, ACloudThatIsDrawnAnewIsPickedAsItIsThen) {
    auto* scan = model.make<layout::PointCloud>("scan", AlongX(50));
    cloud = PointCloudVisual::Build(scene().root, scan);
    pump();
    scan->points = AlongX(200);
    cloud->updateRenderPrimitive();
    pump();
    auto& object = *selection::VisualSelection::Get()->getObject(cloud);
    EXPECT_EQ(object.intersect(Ray{{190, 0, 100}, {0, 0, -1}}).index, 190);
}

TEST_F(PointCloudObjects, CoincidentPointsAreCutIntoRunsInTheirOrder) {
    PointCloudObject object(show(std::vector<Pos>(2500, Pos{1, 2, 3})));
    object.buildBVH();
    EXPECT_THAT(chunkSizes(object), ElementsAre(1000, 1000, 500));
    EXPECT_EQ(indicesOf(object), FirstIndices(2500));
    object.updateWorldBox();
    EXPECT_EQ(object.intersect(Ray{{1, 2, 103}, {0, 0, -1}}).index, 0);
}

TEST_F(PointCloudObjects, CoincidentPointsAmongOthersAreCutIntoRunsToo) {
    std::vector<Pos> points(3000, Pos{0, 0, 0});
    for (int i = 0; i < 100; ++i) points.push_back({1000.0f + static_cast<float>(i), 7, -3});
    PointCloudObject object(show(points));
    object.buildBVH();
    EXPECT_EQ(object.primitives.size(), 4u);
    for (const std::size_t size : chunkSizes(object)) {
        EXPECT_LE(size, 1000u);
        EXPECT_GT(size, 0u);
    }
}

TEST_F(PointCloudObjects, PointsWithoutNumbersEndInChunksToo) {
    std::vector<Pos> points(1500, Pos{nan, nan, nan});
    for (int i = 0; i < 1500; ++i) points.push_back({nan, static_cast<float>(i), 0});
    for (int i = 0; i < 10; ++i) points.push_back({3e38f, -3e38f, static_cast<float>(i)});
    points.push_back({5, 6, 7});
    PointCloudObject object(show(points));
    object.updateWorldBox();
    Indices all = indicesOf(object);
    std::ranges::sort(all);
    EXPECT_EQ(all, FirstIndices(points.size()));
    for (const std::size_t size : chunkSizes(object)) EXPECT_LE(size, 1000u);
    EXPECT_EQ(object.intersect(Ray{{5, 6, 107}, {0, 0, -1}}).index, 3010);
}

TEST_F(PointCloudObjects, EveryPointIsInOneChunkAndInItsBox) {
    std::mt19937 random(7);
    std::normal_distribution<float> along(0, 100);
    std::vector<Pos> points;
    for (int i = 0; i < 20000; ++i) points.push_back({along(random), along(random) / 10, 3});
    PointCloudObject object(show(points));
    object.buildBVH();
    Indices all = indicesOf(object);
    std::ranges::sort(all);
    EXPECT_EQ(all, FirstIndices(points.size()));
    for (std::size_t i = 0; i < object.primitives.size(); ++i) {
        const SensitivePoints& part = chunk(object, i);
        EXPECT_LE(part.indices.size(), 1000u);
        EXPECT_TRUE(std::ranges::is_sorted(part.indices));
        for (const unsigned int p : part.indices)
            EXPECT_TRUE(part.box.isPointInside(points[p].x, points[p].y, points[p].z));
    }
}

TEST_F(PointCloudObjects, AllPointsCountWhateverIsDrawn) {
    show(AlongX(3000))->setUnselectedVisible(false);
    cloud->setSelectedIndices({5});
    PointCloudObject object(cloud);
    object.buildBVH();
    EXPECT_THAT(chunkSizes(object), ElementsAre(750, 750, 750, 750));
}

TEST_F(PointCloudObjects, AnIndexThatTheCloudDoesNotHaveIsRefused) {
    PointCloudObject object(show(AlongX(3)));
    EXPECT_THROW(object.buildPrimitives(cloud->getPoints(), {0, 3}, visual::Box{0, 0, 0, 2, 0, 0}),
                 std::out_of_range);
    EXPECT_TRUE(object.primitives.empty());
    object.buildPrimitives(cloud->getPoints(), {}, visual::Box());
    EXPECT_TRUE(object.primitives.empty());
    object.buildPrimitives(cloud->getPoints(), {2, 0}, visual::Box());
    EXPECT_THAT(chunk(object, 0).indices, ElementsAre(2, 0));
}

TEST_F(PointCloudObjects, BoundsThatAreNotRoundThePointsPartThemNoLess) {
    PointCloudObject object(show(AlongX(2500)));
    for (const visual::Box& bounds :
         {visual::Box(), visual::Box{0, 0, 0, 0, 0, 0}, visual::Box{9e3f, 0, 0, 9e4f, 1, 1},
          visual::Box{nan, nan, nan, nan, nan, nan}, visual::Box{-3e38f, 0, 0, 3e38f, 0, 0}}) {
        const std::size_t before = object.primitives.size();
        object.buildPrimitives(cloud->getPoints(), FirstIndices(2500), bounds);
        std::size_t total = 0;
        for (std::size_t i = before; i < object.primitives.size(); ++i) {
            EXPECT_LE(chunk(object, i).indices.size(), 1000u);
            total += chunk(object, i).indices.size();
        }
        EXPECT_EQ(total, 2500u);
    }
}

TEST_F(PointCloudObjects, AnEmptyCloudHasTheEmptyBox) {
    PointCloudObject object(show({}));
    object.updateWorldBox();
    EXPECT_FALSE(object.box.isValid());
    EXPECT_FALSE(object.worldBoxDirty);
    EXPECT_FALSE(object.intersect(Ray{{0, 0, 100}, {0, 0, -1}}).hit);
}

}  // namespace vrn::test
