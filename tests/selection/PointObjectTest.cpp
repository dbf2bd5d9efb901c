#include "selection/PointObject.h"

#include <gtest/gtest.h>
#include <numbers>

#include "selection/Ray.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/PointVisual.h"

namespace vrn::test {

namespace {

using selection::PointObject;
using selection::Result;
using visual::PointVisual;
using visual::Ray;
using Pos = rob::PosTemplate<float>;

}  // namespace

class PointObjects : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        point = PointVisual::Build(scene().root, Pos{10, 20, 30});
    }
    static Ray downAt(float x, float y) { return {{x, y, 130}, {0, 0, -1}}; }

    PointVisual* point = nullptr;
};

TEST_F(PointObjects, TheBoxIsFiveUnitsRoundThePointAsItsVisualTellsIt) {
    PointObject object(point);
    EXPECT_EQ(static_cast<int>(object.kind), 4);
    object.updateWorldBox();
    EXPECT_EQ(object.box.min, (Pos{5, 15, 25}));
    EXPECT_EQ(object.box.max, (Pos{15, 25, 35}));
    EXPECT_EQ(object.box.center, (Pos{10, 20, 30}));
    EXPECT_FALSE(object.worldBoxDirty);
    EXPECT_TRUE(object.primitives.empty());
    point->setPosition(100, 0, 0);
    object.updateWorldBox();
    EXPECT_EQ(object.worldPose.position, (Pos{0, 0, 0}));
    object.worldBoxDirty = true;
    object.updateWorldBox();
    EXPECT_EQ(object.worldPose.position, (Pos{100, 0, 0}));
    EXPECT_EQ(object.inverseWorldPose.position, (Pos{-100, 0, 0}));
    EXPECT_EQ(object.box.min, (Pos{5, 15, 25}));
}

TEST_F(PointObjects, ARayNearerThanTwoUnitsHitsThePointItself) {
    PointObject object(point);
    object.updateWorldBox();
    const Result hit = object.intersect(downAt(11.99f, 20));
    ASSERT_TRUE(hit.hit);
    EXPECT_EQ(hit.position, (Pos{10, 20, 30}));
    EXPECT_EQ(hit.visual, point);
    EXPECT_FLOAT_EQ(hit.distance, 100);
    EXPECT_EQ(hit.pose, rob::PoseTemplate<float>());
    EXPECT_TRUE(hit.shape.IsNull());
    EXPECT_EQ(hit.index, -1);
}

TEST_F(PointObjects, ARayTwoUnitsAwayMisses) {
    PointObject object(point);
    object.updateWorldBox();
    EXPECT_FALSE(object.intersect(downAt(12, 20)).hit);
    EXPECT_FALSE(object.intersect(downAt(10, 22.5f)).hit);
    EXPECT_EQ(object.intersect(downAt(12, 20)).visual, nullptr);
}

TEST_F(PointObjects, TheDistanceIsMeasuredAlongTheDirection) {
    PointObject object(point);
    EXPECT_FLOAT_EQ(object.intersect(Ray{{10, 20, 130}, {0, 0, 1}}).distance, -100);
}

TEST_F(PointObjects, ItFollowsItsVisualEvenWhileTheBoxIsOutOfDate) {
    PointObject object(point);
    object.updateWorldBox();
    point->setPose({{100, 0, 0},
                    rob::RotationTemplate<float>(std::numbers::pi_v<float> / 2,
                                                 rob::Vec3Template<float>{0, 0, 1})});
    EXPECT_FALSE(object.intersect(downAt(10, 20)).hit);
    const Result hit = object.intersect(downAt(80, 10));
    ASSERT_TRUE(hit.hit);
    EXPECT_LT((hit.position - Pos{80, 10, 30}).length(), 1e-4f);
}

TEST_F(PointObjects, ContactTestsNeverMeetAPoint) {
    PointObject object(point);
    object.updateWorldBox();
    EXPECT_FALSE(object.intersect(rob::LineTemplate<float>{{10, 20, 50}, {10, 20, 0}}).hit);
}

TEST_F(PointObjects, ADirectionWithoutLengthIsRefused) {
    PointObject object(point);
    EXPECT_THROW((void)object.intersect(Ray{{10, 20, 130}, {0, 0, 0}}), std::overflow_error);
}

}  // namespace vrn::test
