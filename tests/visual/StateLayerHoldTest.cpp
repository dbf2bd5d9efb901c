#include <gmock/gmock.h>

#include "suite/broker/SignalBroker.h"
#include "tests/support/EngineFixture.h"
#include "tests/visual/ProbeVisual.h"
#include "visual/StateLayerHold.h"

namespace vrn::test {

using testing::IsEmpty;
using visual::HighlightedVisual;
using visual::SelectedVisual;
using visual::VisualStateLayer;

class StateLayerHolds : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        probe = new ProbeVisual("probe", scene().root);
        probe->setMaterial("Body", "BodySelected", "BodyHighlighted");
    }
    bool has(VisualStateLayer layer) const { return scene().stateManager->hasLayer(probe, layer); }

    ProbeVisual* probe = nullptr;
};

TEST_F(StateLayerHolds, AVisualIsSelectedWhileTheHoldLives) {
    {
        const SelectedVisual hold(probe);
        EXPECT_THAT(probe->calls, IsEmpty());  // posted, not done
        pump();
        EXPECT_TRUE(has(VisualStateLayer::Selected));
        EXPECT_EQ(probe->calls.back(), "useMaterial BodySelected");
    }
    EXPECT_TRUE(has(VisualStateLayer::Selected));
    pump();
    EXPECT_FALSE(has(VisualStateLayer::Selected));
    EXPECT_EQ(probe->calls.back(), "useMaterial Body");
}

TEST_F(StateLayerHolds, AVisualIsHighlightedWhileTheHoldLives) {
    {
        const HighlightedVisual hold(probe);
        pump();
        EXPECT_TRUE(has(VisualStateLayer::Highlighted));
        EXPECT_EQ(probe->calls.back(), "useMaterial BodyHighlighted");
    }
    pump();
    EXPECT_FALSE(has(VisualStateLayer::Highlighted));
    EXPECT_EQ(probe->calls.back(), "useMaterial Body");
}

TEST_F(StateLayerHolds, TheSelectionOfTheSceneDoesNotKnowOfAHold) {
    const SelectedVisual hold(probe);
    pump();
    EXPECT_FALSE(scene().isSelected(probe));
}

TEST_F(StateLayerHolds, BeginAndEndPostOneTaskEach) {
    int posts = 0;
    const auto counted = broker::SignalBroker::onUpdateScene([&] { ++posts; });
    {
        const SelectedVisual hold(probe);
        EXPECT_EQ(posts, 1);
    }
    EXPECT_EQ(posts, 2);
}

TEST_F(StateLayerHolds, AVisualThatWasRemovedMeanwhileIsPassedOver) {
    {
        const HighlightedVisual hold(probe);
        pump();
        scene().deleteVisual(probe);
    }
    pump();  // would follow the pointer
}

TEST_F(StateLayerHolds, NullIsRefused) {
    EXPECT_THROW(SelectedVisual{nullptr}, std::invalid_argument);
    EXPECT_THROW(HighlightedVisual{nullptr}, std::invalid_argument);
}

}  // namespace vrn::test
