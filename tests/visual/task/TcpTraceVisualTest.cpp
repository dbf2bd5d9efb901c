#include "visual/task/TcpTraceVisual.h"

#include <limits>

#include <gmock/gmock.h>

#include <OgreException.h>
#include <OgreManualObject.h>
#include <OgreSceneNode.h>

#include "tests/support/EngineFixture.h"

namespace vrn::test {

using testing::SizeIs;
using visual::TcpTraceVisual;

constexpr rob::ColorTemplate<float> red{1, 0, 0}, blue{0, 0, 1};

class Traces : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        trace = new TcpTraceVisual(scene().root);
    }
    static Ogre::ManualObject* lineOf(const TcpTraceVisual* visual) {
        return dynamic_cast<Ogre::ManualObject*>(visual->node->getAttachedObject(0));
    }
    [[nodiscard]] Ogre::ManualObject::ManualObjectSection* section() const {
        return lineOf(trace)->getSections().at(0);
    }
    [[nodiscard]] std::size_t drawnPoints() const {
        return section()->getRenderOperation()->vertexData->vertexCount;
    }
    /// The pixels that are red, or blue, and little else.
    static int count(const headless::Picture& picture, bool wantRed) {
        int found = 0;
        for (int y = 0; y < picture.getHeight(); ++y)
            for (int x = 0; x < picture.getWidth(); ++x) {
                const auto c = picture.at(x, y);
                const int most = wantRed ? c.r : c.b, least = wantRed ? c.b : c.r;
                if (most > 180 && least < 60 && c.g < 60) ++found;
            }
        return found;
    }
    static int difference(const headless::Picture& a, const headless::Picture& b) {
        int found = 0;
        for (int y = 0; y < a.getHeight(); ++y)
            for (int x = 0; x < a.getWidth(); ++x) {
                const auto p = a.at(x, y), q = b.at(x, y);
                if (p.r != q.r || p.g != q.g || p.b != q.b) ++found;
            }
        return found;
    }

    TcpTraceVisual* trace = nullptr;
};

TEST_F(Traces, ATraceIsALineInTheQueueGroupOverOtherLines) {
    EXPECT_EQ(lineOf(trace)->getName(), "TcpTraceVisual");
    EXPECT_EQ(lineOf(trace)->getRenderQueueGroup(), 70);
    EXPECT_TRUE(lineOf(trace)->getSections().empty());
    EXPECT_NO_THROW(frame());
}

TEST_F(Traces, TheFirstPointOpensTheSectionAndLaterOnesRewriteIt) {
    trace->addColorPoint({0, 0, 0}, red);
    EXPECT_EQ(section()->getMaterialName(), "TcpTrace");
    EXPECT_EQ(section()->getRenderOperation()->operationType, Ogre::RenderOperation::OT_LINE_STRIP);
    for (int i = 1; i < 100; ++i) {
        trace->addColorPoint({i * 1.0, 0, 0}, red);
        ASSERT_EQ(drawnPoints(), i + 1u);
    }
    EXPECT_THAT(lineOf(trace)->getSections(), SizeIs(1));
    EXPECT_EQ(section()->getMaterialName(), "TcpTrace");
    EXPECT_EQ(trace->getPointCount(), 100u);
}

TEST_F(Traces, AnUpdateWithoutPointsOrWithOneIsHarmless) {
    trace->update();
    EXPECT_TRUE(lineOf(trace)->getSections().empty());
    trace->addColorPoint({0, 0, 0}, red);
    trace->update();
    trace->addColorPoint({100, 0, 0}, red);
    trace->update();
    EXPECT_EQ(drawnPoints(), 2u);
    EXPECT_NO_THROW(frame());
}

TEST_F(Traces, ATraceOfOnePointDrawsNothingVisible) {
    const headless::Picture empty = frame();
    trace->addColorPoint({0, 0, 150}, red);
    EXPECT_EQ(difference(empty, frame()), 0);
}

TEST_F(Traces, AfterClearingTheFirstPointStartsANewLineThatIsNotJoined) {
    const headless::Picture empty = frame();
    trace->addColorPoint({-150, 0, 150}, red);
    trace->addColorPoint({-100, 0, 150}, red);
    EXPECT_GT(count(frame(), true), count(empty, true) + 20);
    trace->clear();
    EXPECT_EQ(trace->getPointCount(), 0u);
    EXPECT_EQ(difference(empty, frame()), 0);
    trace->addColorPoint({100, 0, 150}, blue);
    EXPECT_EQ(difference(empty, frame()), 0);
    trace->addColorPoint({150, 0, 150}, blue);
    const headless::Picture again = frame();
    EXPECT_EQ(count(again, true), count(empty, true));
    EXPECT_GT(count(again, false), count(empty, false) + 20);
    EXPECT_EQ(section()->getMaterialName(), "TcpTrace");
    EXPECT_EQ(drawnPoints(), 2u);
}

TEST_F(Traces, ColoursChangeFromPointToPointAndBlendInBetween) {
    lookFrom({0, -500, 150}, {0, 0, 150});
    trace->addColorPoint({-150, 0, 150}, red);
    trace->addColorPoint({150, 0, 150}, blue);
    const headless::Picture picture = frame();
    const auto at = [&](float x) {
        const auto pixel = project({x, 0, 150});
        return picture.at(static_cast<int>(pixel.x), static_cast<int>(pixel.y));
    };
    EXPECT_GT(at(-140).r, 230);
    EXPECT_LT(at(-140).b, 25);
    EXPECT_GT(at(140).b, 230);
    EXPECT_LT(at(140).r, 25);
    EXPECT_NEAR(at(0).r, 128, 12);
    EXPECT_NEAR(at(0).b, 128, 12);
    EXPECT_NEAR(at(75).r, 64, 12);
}

TEST_F(Traces, APointThatCannotBeDrawnIsRefusedAndChangesNothing) {
    trace->addColorPoint({0, 0, 0}, red);
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(), 1e300, 2e38, -1.001e15})
        EXPECT_THROW(trace->addColorPoint({0, bad, 0}, red), std::invalid_argument) << bad;
    EXPECT_EQ(trace->getPointCount(), 1u);
    EXPECT_NO_THROW(trace->addColorPoint({1e15, -1e15, 1e15}, red));
    EXPECT_NO_THROW(frame());
}

TEST_F(Traces, ThereIsOneAtATime) {
    EXPECT_THROW(TcpTraceVisual(scene().root), Ogre::ItemIdentityException);
    scene().deleteVisual(trace);
    trace = new TcpTraceVisual(scene().root);
    EXPECT_NO_THROW(trace->addColorPoint({0, 0, 0}, red));
}

TEST_F(Traces, TheSceneDeletesTheTraceThatItWasTold) {
    scene().setTcpTrace(trace);
    const std::size_t before = scene().root->getChildren().size();
    scene().clearTcpTrace();
    EXPECT_EQ(scene().root->getChildren().size(), before);
    pump();
    EXPECT_EQ(scene().root->getChildren().size(), before - 1);
    scene().clearTcpTrace();
    EXPECT_NO_THROW(pump());
}

TEST_F(Traces, ATraceThatIsDeletedOtherwiseIsForgottenByTheScene) {
    scene().setTcpTrace(trace);
    scene().deleteVisual(trace);
    scene().clearTcpTrace();
    EXPECT_NO_THROW(pump());
}

TEST_F(Traces, WithoutATraceThereIsNothingToClear) {
    scene().setTcpTrace(nullptr);
    const std::size_t before = scene().root->getChildren().size();
    scene().clearTcpTrace();
    pump();
    EXPECT_EQ(scene().root->getChildren().size(), before);
}

}  // namespace vrn::test
