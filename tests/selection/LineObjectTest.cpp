#include "selection/LineObject.h"

#include <gmock/gmock.h>
#include <OgreSceneNode.h>
#include <limits>

#include "mesh/DynamicLines.h"
#include "selection/Ray.h"
#include "selection/SensitiveLine.h"
#include "selection/VisualSelection.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/LineVisual.h"
#include "visual/station/InstanceFrameVisual.h"

namespace vrn::test {

namespace {

using selection::LineObject;
using selection::Result;
using selection::SensitiveLine;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using visual::DynamicLines;
using visual::InstanceFrameVisual;
using visual::LineVisual;
using visual::Ray;
using visual::RenderOpType;
using visual::Visual;
using Pos = rob::PosTemplate<float>;

}  // namespace

class LineObjects : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        top = new Visual(scene().root);
    }
    LineVisual* line(RenderOpType type, const std::vector<Pos>& points) {
        auto* shown = new LineVisual(top);
        add(shown, type, points);
        return shown;
    }
    static void add(LineVisual* shown, RenderOpType type, const std::vector<Pos>& points) {
        DynamicLines* lines = shown->createDynamicLine(type);
        for (const Pos& p : points) lines->addPoint(p.x, p.y, p.z);
    }
    InstanceFrameVisual* frameOfSize(unsigned size) {
        auto* shown = new InstanceFrameVisual(top, 900001, "LineObjects frame",
                                              VisualType::RobTarget, "InstanceRobTarget");
        shown->setFrameSize(size);
        return shown;
    }
    /// Start and end of each primitive.
    static std::vector<std::pair<Pos, Pos>> segmentsOf(Visual* shown) {
        LineObject object(shown);
        object.buildBVH();
        std::vector<std::pair<Pos, Pos>> segments;
        for (auto* primitive : object.primitives) {
            const auto& segment = dynamic_cast<SensitiveLine&>(*primitive);
            segments.emplace_back(segment.start, segment.end);
        }
        return segments;
    }

    Visual* top = nullptr;
};

TEST_F(LineObjects, ALineListGivesOneSegmentForEachPair) {
    EXPECT_THAT(
        segmentsOf(line(RenderOpType::LineList, {{0, 0, 0}, {1, 0, 0}, {5, 0, 0}, {6, 0, 0}})),
        ElementsAre(Pair(Pos{0, 0, 0}, Pos{1, 0, 0}), Pair(Pos{5, 0, 0}, Pos{6, 0, 0})));
}

TEST_F(LineObjects, ALineListOfAnOddNumberOfPointsIgnoresTheLast) {
    EXPECT_THAT(segmentsOf(line(RenderOpType::LineList, {{0, 0, 0}, {1, 0, 0}, {5, 0, 0}})),
                ElementsAre(Pair(Pos{0, 0, 0}, Pos{1, 0, 0})));
    EXPECT_THAT(segmentsOf(line(RenderOpType::LineList, {{0, 0, 0}})), IsEmpty());
}

TEST_F(LineObjects, ALineStripGivesOneSegmentForEachConsecutivePair) {
    EXPECT_THAT(segmentsOf(line(RenderOpType::LineStrip, {{0, 0, 0}, {1, 0, 0}, {1, 2, 0}})),
                ElementsAre(Pair(Pos{0, 0, 0}, Pos{1, 0, 0}), Pair(Pos{1, 0, 0}, Pos{1, 2, 0})));
}

TEST_F(LineObjects, ALineStripOfOnePointAndAnEmptyOneGiveNothing) {
    EXPECT_THAT(segmentsOf(line(RenderOpType::LineStrip, {{1, 2, 3}})), IsEmpty());
    EXPECT_THAT(segmentsOf(line(RenderOpType::LineStrip, {})), IsEmpty());
}

TEST_F(LineObjects, PointListsGiveNothing) {
    EXPECT_THAT(segmentsOf(line(RenderOpType::PointList, {{0, 0, 0}, {1, 0, 0}})), IsEmpty());
}

TEST_F(LineObjects, SectionsComeInTheOrderOfTheirCreation) {
    LineVisual* shown = line(RenderOpType::LineStrip, {{0, 0, 0}, {1, 0, 0}});
    add(shown, RenderOpType::PointList, {{7, 7, 7}, {8, 8, 8}});
    add(shown, RenderOpType::LineList, {{0, 5, 0}, {0, 6, 0}});
    EXPECT_THAT(segmentsOf(shown),
                ElementsAre(Pair(Pos{0, 0, 0}, Pos{1, 0, 0}), Pair(Pos{0, 5, 0}, Pos{0, 6, 0})));
}

TEST_F(LineObjects, AnInstancedFrameGivesItsThreeAxesInOrder) {
    EXPECT_THAT(segmentsOf(frameOfSize(70)),
                ElementsAre(Pair(Pos{0, 0, 0}, Pos{70, 0, 0}), Pair(Pos{0, 0, 0}, Pos{0, 70, 0}),
                            Pair(Pos{0, 0, 0}, Pos{0, 0, 70})));
}

TEST_F(LineObjects, AnInstancedFrameIsPickableAlongZAloneWhileTheSceneShowsNoOther) {
    scene().settings.drawTargetZAxisOnly = true;
    InstanceFrameVisual* shown = frameOfSize(70);
    EXPECT_THAT(segmentsOf(shown), ElementsAre(Pair(Pos{0, 0, 0}, Pos{0, 0, 70})));
    LineObject object(shown);
    object.updateWorldBox();
    EXPECT_TRUE(object.intersect(Ray{{0, -500, 60}, {0, 1, 0}}).hit);
    EXPECT_FALSE(object.intersect(Ray{{60, 0, 500}, {0, 0, -1}}).hit);
    EXPECT_FALSE(object.intersect(Ray{{0, 60, 500}, {0, 0, -1}}).hit);
}

TEST_F(LineObjects, AnyOtherVisualGivesNothingAndHasTheEmptyBox) {
    auto* plain = new Visual(top);
    EXPECT_THAT(segmentsOf(plain), IsEmpty());
    LineObject object(plain);
    object.updateWorldBox();
    EXPECT_FALSE(object.box.isValid());
    EXPECT_FALSE(object.worldBoxDirty);
}

TEST_F(LineObjects, NothingIsBuiltAtConstruction) {
    LineVisual* shown = line(RenderOpType::LineStrip, {{0, 0, 0}, {1, 0, 0}});
    LineObject object(shown);
    EXPECT_EQ(static_cast<int>(object.kind), 3);
    EXPECT_TRUE(object.primitives.empty());
    add(shown, RenderOpType::LineStrip, {{0, 5, 0}, {0, 6, 0}});  // still counts
    object.updateWorldBox();
    EXPECT_EQ(object.primitives.size(), 2u);
}

TEST_F(LineObjects, ARayTellsVisualAndPlaceInTheWorldAndNeitherPoseNorShape) {
    LineVisual* shown = line(RenderOpType::LineStrip, {{0, 0, 0}, {100, 0, 0}});
    shown->setPosition(1000, 20, 30);
    LineObject object(shown);
    object.updateWorldBox();
    const Result hit = object.intersect(Ray{{1050, 20.5f, 130}, {0, 0, -1}});
    ASSERT_TRUE(hit.hit);
    EXPECT_EQ(hit.visual, shown);
    EXPECT_LT((hit.position - Pos{1050, 20, 30}).length(), 0.01f);
    EXPECT_NEAR(hit.distance, 100, 0.01);
    EXPECT_EQ(hit.pose, rob::PoseTemplate<float>());
    EXPECT_TRUE(hit.shape.IsNull());
    EXPECT_FALSE(object.intersect(Ray{{1050, 80, 130}, {0, 0, -1}}).hit);
}

TEST_F(LineObjects, ContactTestsNeverMeetALine) {
    LineVisual* shown = line(RenderOpType::LineStrip, {{0, 0, 0}, {100, 0, 0}});
    LineObject object(shown);
    object.updateWorldBox();
    EXPECT_FALSE(object.intersect(rob::LineTemplate<float>{{50, 0, 10}, {50, 0, -10}}).hit);
    EXPECT_FALSE(
        object.intersect(rob::TriangleTemplate<float>{{50, 0, 10}, {50, 1, -10}, {50, -1, -10}})
            .hit);
}

TEST_F(LineObjects, TheBoxBoundsTheSegmentsInTheWorldAndFollowsAMoveOnlyWhenItIsMarked) {
    LineVisual* shown = line(RenderOpType::LineStrip, {{0, 0, 0}, {10, 20, 30}});
    add(shown, RenderOpType::PointList, {{0, 0, -9999}});
    shown->setPosition(1000, 0, 0);
    LineObject object(shown);
    object.updateWorldBox();
    EXPECT_TRUE(object.box.isPointInside(1000, 0, 0));
    EXPECT_TRUE(object.box.isPointInside(1010, 20, 30));
    EXPECT_GT(object.box.min.z, -9000);
    const visual::Box before = object.box;
    shown->setPosition(0, 0, 0);
    object.updateWorldBox();
    EXPECT_EQ(object.box.min, before.min);
    object.worldBoxDirty = true;
    object.updateWorldBox();
    EXPECT_LT((object.box.min - (before.min - rob::Vec3Template<float>{1000, 0, 0})).length(),
              0.01f);
}

TEST_F(LineObjects, LinesThatAreDrawnAnewArePickedWhereTheyAre) {
    LineVisual* shown = line(RenderOpType::LineList, {{0, 0, 0}, {100, 0, 0}});
    auto* registry = selection::VisualSelection::Get();
    registry->addLineVisual(shown);
    shown->update();
    pump();
    shown->getLines()[0]->setPoint(1, {600, 0, 0});
    shown->update();
    EXPECT_TRUE(registry->dirty);
    pump();
    EXPECT_EQ(registry->getObject(shown)->box.max.x, 600);
    pump();
    EXPECT_FALSE(registry->dirty);
}

TEST_F(LineObjects, PointsWithoutANumberOnOneAxisHaveTheEmptyBox) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    LineObject object(line(RenderOpType::LineStrip, {{nan, 0, 0}, {nan, 10, 0}}));
    object.updateWorldBox();
    EXPECT_FALSE(object.box.isValid());
}

}  // namespace vrn::test
