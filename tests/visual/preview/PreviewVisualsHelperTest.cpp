#include "visual/preview/PreviewVisualsHelper.h"

#include <gmock/gmock.h>

#include "mesh/DynamicLines.h"
#include "suite/broker/SignalBroker.h"
#include "tests/visual/preview/PreviewFixture.h"
#include "visual/preview/FromToLineVisual.h"
#include "visual/preview/PreviewFrameVisual.h"
#include "visual/preview/SelectPointVisual.h"

namespace vrn::test {

using visual::FromToLineVisual;
using visual::PreviewVisualsHelper;
using visual::Visual;
using Pos = rob::PosTemplate<float>;

namespace {

std::vector<Pos> EndsOf(const FromToLineVisual* line) {
    return line->getLines().front()->getPoints();
}

}  // namespace

class PreviewVisualsHelperTest : public PreviewTest {
protected:
    void SetUp() override {
        helper = PreviewVisualsHelper::Get();
        ASSERT_NE(helper, nullptr);
        helper->doRemoveAllVisuals();  // and what a test before took along is there again
        PreviewTest::SetUp();
        ASSERT_EQ(helper, visual::gPreviewVisualsHelper);
        subscription = broker::SignalBroker::onUpdateScene([this] { ++signals; });
    }
    void TearDown() override {
        subscription.reset();
        helper->doRemoveAllVisuals();
        helper->doSetPrimaryLineSelected(false);
        helper->doSetAxisXLineSelected(false);
        helper->doSetAxisYLineSelected(false);
        PreviewTest::TearDown();
    }
    /// Of the crosses and lines, in order.
    [[nodiscard]] std::string shown() const {
        std::string result;
        for (const Visual* point : helper->points) result += point->visible ? 'x' : '-';
        for (const Visual* line : {helper->primaryLine, helper->axisXLine, helper->axisYLine})
            result += line->visible ? 'x' : '-';
        return result;
    }

    PreviewVisualsHelper* helper = nullptr;
    broker::Subscription subscription;
    int signals = 0;
};

TEST_F(PreviewVisualsHelperTest, AllHangsUnderTheRootAndIsHiddenAtFirst) {
    EXPECT_EQ(shown(), "---------");
    EXPECT_FALSE(helper->userFrame->visible);
    EXPECT_FALSE(helper->objectFrame->visible);
    for (const Visual* point : helper->points) {
        EXPECT_EQ(point->getParent(), scene().root);
        EXPECT_EQ(static_cast<int>(point->type), 19);
        EXPECT_EQ(point->material, "WhiteFrameLine");
    }
    EXPECT_EQ(static_cast<int>(helper->userFrame->type), 19);
    EXPECT_EQ(helper->primaryLine->material, "RedFrameLine");
    EXPECT_EQ(helper->axisXLine->material, "GreenFrameLine");
    EXPECT_EQ(helper->axisYLine->material, "BlueFrameLine");
}

TEST_F(PreviewVisualsHelperTest, ACrossIsLongerUprightAndAFrameThirtyLong) {
    const auto& cross = helper->points[0]->getLines();
    ASSERT_EQ(cross.size(), 3u);
    EXPECT_EQ(cross[0]->getPoints(), (std::vector<Pos>{{-15, 0, 0}, {15, 0, 0}}));
    EXPECT_EQ(cross[1]->getPoints(), (std::vector<Pos>{{0, -15, 0}, {0, 15, 0}}));
    EXPECT_EQ(cross[2]->getPoints(), (std::vector<Pos>{{0, 0, -25}, {0, 0, 25}}));
    const auto& axes = helper->userFrame->getLines();
    ASSERT_EQ(axes.size(), 3u);
    EXPECT_EQ(axes[0]->getPoints(), (std::vector<Pos>{{0, 0, 0}, {30, 0, 0}}));
    EXPECT_EQ(axes[1]->getPoints(), (std::vector<Pos>{{0, 0, 0}, {0, 30, 0}}));
    EXPECT_EQ(axes[2]->getPoints(), (std::vector<Pos>{{0, 0, 0}, {0, 0, 30}}));
}

TEST_F(PreviewVisualsHelperTest, TheSecondPointOfAPairShowsItsLineAndTheFirstOnlyMovesIt) {
    using Add = void (PreviewVisualsHelper::*)(const Pos&);
    struct Pair {
        Add from, to;
        FromToLineVisual* line;
        std::string first, both;
    };
    for (const Pair& pair :
         {Pair{&PreviewVisualsHelper::doAddPrimaryFrom, &PreviewVisualsHelper::doAddPrimaryTo,
               helper->primaryLine, "x--------", "xx----x--"},
          Pair{&PreviewVisualsHelper::doAddAxisXFrom, &PreviewVisualsHelper::doAddAxisXTo,
               helper->axisXLine, "--x------", "--xx---x-"},
          Pair{&PreviewVisualsHelper::doAddAxisYFrom, &PreviewVisualsHelper::doAddAxisYTo,
               helper->axisYLine, "----x----", "----xx--x"}}) {
        signals = 0;
        (helper->*pair.from)({1, 2, 3});
        EXPECT_EQ(shown(), pair.first);
        EXPECT_EQ(signals, 1);
        (helper->*pair.to)({4, 5, 6});
        EXPECT_EQ(shown(), pair.both);
        EXPECT_EQ(signals, 2);
        EXPECT_EQ(EndsOf(pair.line), (std::vector<Pos>{{1, 2, 3}, {4, 5, 6}}));
        (helper->*pair.from)({7, 8, 9});
        EXPECT_EQ(signals, 3);
        EXPECT_EQ(EndsOf(pair.line), (std::vector<Pos>{{7, 8, 9}, {4, 5, 6}}));
        helper->doRemoveAllVisuals();
    }
}

TEST_F(PreviewVisualsHelperTest, TheSecondPointAloneDrawsItsLineFromWhereTheFirstWaits) {
    helper->doAddPrimaryTo({4, 5, 6});
    EXPECT_EQ(shown(), "-x----x--");
    EXPECT_EQ(EndsOf(helper->primaryLine), (std::vector<Pos>{{0, 0, 0}, {4, 5, 6}}));
}

TEST_F(PreviewVisualsHelperTest, TheFirstPointShowsTheLineThatItSets) {
    helper->doAddSelectPoint2({4, 5, 6});
    EXPECT_EQ(shown(), "-x-------");
    helper->doAddPrimaryFrom({1, 2, 3});
    EXPECT_EQ(shown(), "xx----x--");
    EXPECT_EQ(EndsOf(helper->primaryLine), (std::vector<Pos>{{1, 2, 3}, {4, 5, 6}}));
}

TEST_F(PreviewVisualsHelperTest, TheCornersOfATriangleAreJoinedAsTheyCome) {
    using Add = void (PreviewVisualsHelper::*)(const Pos&);
    const std::vector<std::array<Add, 3>> kinds{
        {&PreviewVisualsHelper::doAddSelectPoint1, &PreviewVisualsHelper::doAddSelectPoint2,
         &PreviewVisualsHelper::doAddSelectPoint3},
        {&PreviewVisualsHelper::doAddSelectFramePoint1,
         &PreviewVisualsHelper::doAddSelectFramePoint2,
         &PreviewVisualsHelper::doAddSelectFramePoint3}};
    for (const auto& kind : kinds) {
        signals = 0;
        (helper->*kind[0])({1, 0, 0});
        EXPECT_EQ(shown(), "x--------");
        (helper->*kind[2])({3, 0, 0});
        EXPECT_EQ(shown(), "x-x-----x");
        EXPECT_EQ(EndsOf(helper->axisYLine), (std::vector<Pos>{{3, 0, 0}, {1, 0, 0}}));
        (helper->*kind[1])({2, 0, 0});
        EXPECT_EQ(shown(), "xxx---xxx");
        EXPECT_EQ(EndsOf(helper->primaryLine), (std::vector<Pos>{{1, 0, 0}, {2, 0, 0}}));
        EXPECT_EQ(EndsOf(helper->axisXLine), (std::vector<Pos>{{2, 0, 0}, {3, 0, 0}}));
        (helper->*kind[0])({1, 9, 0});
        EXPECT_EQ(EndsOf(helper->primaryLine)[0], (Pos{1, 9, 0}));
        EXPECT_EQ(EndsOf(helper->axisYLine)[1], (Pos{1, 9, 0}));
        EXPECT_EQ(signals, 4);
        helper->doRemoveAllVisuals();
    }
}

TEST_F(PreviewVisualsHelperTest, ALineThatIsSelectedLooksSo) {
    helper->doSetPrimaryLineSelected(true);
    helper->doSetAxisXLineSelected(true);
    helper->doSetAxisYLineSelected(true);
    const auto look = [](const FromToLineVisual* line) {
        return line->getLines().front()->getMaterial()->getName();
    };
    EXPECT_EQ(look(helper->primaryLine), "RedFrameLineSelected");
    EXPECT_EQ(look(helper->axisXLine), "GreenFrameLineSelected");
    EXPECT_EQ(look(helper->axisYLine), "BlueFrameLineSelected");
    helper->doSetPrimaryLineSelected(false);
    EXPECT_EQ(look(helper->primaryLine), "RedFrameLine");
}

TEST_F(PreviewVisualsHelperTest, FramesStandWhereTheyArePut) {
    helper->doAddPreviewUserFrame({{1, 2, 3}, {}});
    helper->doAddPreviewObjectFrame({{4, 5, 6}, {}});
    EXPECT_EQ(signals, 2);
    EXPECT_TRUE(helper->userFrame->visible);
    EXPECT_EQ(helper->userFrame->getWorldPosition(), (Pos{1, 2, 3}));
    EXPECT_TRUE(helper->objectFrame->visible);
    EXPECT_EQ(helper->objectFrame->getWorldPosition(), (Pos{4, 5, 6}));
}

TEST_F(PreviewVisualsHelperTest, RemovingAllHidesItWithTheCrossesBackAtTheOrigin) {
    helper->doAddSelectPoint1({1, 0, 0});
    helper->doAddSelectPoint2({2, 0, 0});
    helper->doAddAxisYTo({9, 9, 9});
    helper->doAddPreviewUserFrame({{1, 2, 3}, {}});
    signals = 0;
    helper->removeAllVisuals();
    EXPECT_NE(shown(), "---------");
    EXPECT_EQ(signals, 1);  // of the post
    pump();
    EXPECT_EQ(signals, 2);
    EXPECT_EQ(shown(), "---------");
    EXPECT_FALSE(helper->userFrame->visible);
    for (const Visual* point : helper->points) EXPECT_EQ(point->getPosition(), (Pos{0, 0, 0}));
    helper->doAddSelectPoint1({1, 0, 0});
    scene().removeAllPositionVisuals();
    pump();
    EXPECT_EQ(shown(), "---------");
}

TEST_F(PreviewVisualsHelperTest, NothingOfItIsPickedOrCountsForViews) {
    showCarrier();
    const auto without = scene().getViewAllPose();
    const std::size_t pickable = pickableCount();
    helper->doAddPrimaryFrom({9e4f, 0, 0});
    helper->doAddPrimaryTo({-9e4f, 0, 0});
    helper->doAddPreviewUserFrame({{0, 9e4f, 0}, {}});
    pump();
    EXPECT_EQ(pickableCount(), pickable);
    EXPECT_EQ(scene().getViewAllPose(), without);
}

TEST_F(PreviewVisualsHelperTest, WhatAHostDeletesOfItIsMadeAnewByTheNextOperation) {
    const auto deleteAll = [this] {
        for (Visual* point : helper->points) scene().deleteVisual(point);
        for (Visual* line : {helper->primaryLine, helper->axisXLine, helper->axisYLine})
            scene().deleteVisual(line);
        for (Visual* axes : {helper->userFrame, helper->objectFrame}) scene().deleteVisual(axes);
    };
    helper->doAddPrimaryFrom({9, 9, 9});
    deleteAll();
    EXPECT_THAT(helper->points, testing::Each(nullptr));
    EXPECT_EQ(helper->primaryLine, nullptr);
    helper->doAddPrimaryFrom({1, 2, 3});
    EXPECT_EQ(shown(), "x--------");
    EXPECT_EQ(helper->points[0]->getPosition(), (Pos{1, 2, 3}));
    EXPECT_FALSE(helper->userFrame->visible);
    EXPECT_EQ(helper->axisXLine->material, "GreenFrameLine");

    using Operation = void (PreviewVisualsHelper::*)(bool);
    for (const Operation select : {&PreviewVisualsHelper::doSetPrimaryLineSelected,
                                   &PreviewVisualsHelper::doSetAxisXLineSelected,
                                   &PreviewVisualsHelper::doSetAxisYLineSelected}) {
        deleteAll();
        EXPECT_NO_THROW((helper->*select)(true));
    }
    deleteAll();
    helper->doAddPreviewUserFrame({{1, 2, 3}, {}});
    EXPECT_TRUE(helper->userFrame->visible);
    deleteAll();
    helper->doAddPreviewObjectFrame({{1, 2, 3}, {}});
    EXPECT_TRUE(helper->objectFrame->visible);
    deleteAll();
    EXPECT_NO_THROW(helper->doRemoveAllVisuals());
    EXPECT_EQ(shown(), "---------");
}

TEST_F(PreviewVisualsHelperTest, WhatAHostDeletedOfItIsNotDeletedAgain) {
    scene().deleteVisual(helper->points[3]);
    scene().deleteVisual(helper->userFrame);
    const std::size_t children = scene().root->getChildren().size();
    delete helper;
    EXPECT_EQ(scene().root->getChildren().size(), children - 9);
    helper = visual::gPreviewVisualsHelper = new PreviewVisualsHelper;
}

TEST_F(PreviewVisualsHelperTest, ALineSetWhileItIsHiddenShowsItsNewEnds) {
    FromToLineVisual line(scene().root, "RedFrameLine");
    line.setVisible(false, false);
    line.setPos({1, 0, 0}, {2, 0, 0});
    EXPECT_FALSE(line.getLines().front()->isDirty());
    EXPECT_EQ(EndsOf(&line), (std::vector<Pos>{{1, 0, 0}, {2, 0, 0}}));
}

}  // namespace vrn::test
