#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/support/EngineFixture.h"
#include "tests/visual/ProbeVisual.h"
#include "visual/VisualStateManager.h"

namespace vrn::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using visual::VisualStateLayer;
using visual::VisualStateManager;

using enum VisualStateLayer;

// From what matters most down.
constexpr std::array priority{Selected,        Highlighted,     Contact, NearMiss,
                              EmphasizeGroupA, EmphasizeGroupB, Material};

unsigned Bit(VisualStateLayer layer) { return static_cast<unsigned>(layer); }

}  // namespace

TEST(VisualStateLayers, TheBitsNeverChange) {
    EXPECT_EQ(Bit(Material), 1u);
    EXPECT_EQ(Bit(EmphasizeGroupA), 2u);
    EXPECT_EQ(Bit(EmphasizeGroupB), 4u);
    EXPECT_EQ(Bit(NearMiss), 8u);
    EXPECT_EQ(Bit(Contact), 16u);
    EXPECT_EQ(Bit(Highlighted), 32u);
    EXPECT_EQ(Bit(Selected), 64u);
    static_assert(sizeof(VisualStateLayer) == 4);
}

TEST(VisualStateLayers, TheTopLayerOfEveryMaskFollowsThePriority) {
    for (unsigned mask = 0; mask < 128; ++mask) {
        VisualStateLayer expected = None;
        for (auto it = priority.rbegin(); it != priority.rend(); ++it)
            if (mask & Bit(*it)) expected = *it;
        EXPECT_EQ(VisualStateManager::pickTopLayer(mask), expected) << mask;
    }
}

TEST(VisualStateLayers, BitsWithoutALayerCountForNothing) {
    EXPECT_EQ(VisualStateManager::pickTopLayer(128), None);
    EXPECT_EQ(VisualStateManager::pickTopLayer(0xFFFF'FF81), Material);
}

class VisualStates : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        probe = new ProbeVisual("probe", scene().root);
        other = new ProbeVisual("other", scene().root);
        for (ProbeVisual* visual : {probe, other})
            visual->setMaterial("Body", "BodySelected", "BodyHighlighted");
    }
    void set(VisualStateLayer layer, const std::string& name = {}) {
        states.setLayer(probe, layer, true, name);
    }
    void clear(VisualStateLayer layer) { states.setLayer(probe, layer, false, {}); }
    std::vector<std::string> refresh() {
        probe->calls.clear();
        states.refresh(probe);
        return probe->calls;
    }
    /// The calls behind the undoing of the former look.
    std::vector<std::string> shown() {
        const auto calls = refresh();
        const std::vector<std::string> undone{"clearHighlightOrSelect", "resetAppearance",
                                              "useMaterial Body"};
        EXPECT_TRUE(calls.size() >= 3 && std::equal(undone.begin(), undone.end(), calls.begin()));
        return {calls.begin() + 3, calls.end()};
    }

    VisualStateManager states;
    ProbeVisual* probe = nullptr;
    ProbeVisual* other = nullptr;
};

TEST_F(VisualStates, SettingALayerShowsNothing) {
    set(Selected);
    clear(Selected);
    EXPECT_THAT(probe->calls, IsEmpty());
}

TEST_F(VisualStates, RefreshWithoutARecordUndoesTheLookAndNothingMore) {
    EXPECT_THAT(refresh(),
                ElementsAre("clearHighlightOrSelect", "resetAppearance", "useMaterial Body"));
}

TEST_F(VisualStates, SelectedIsShownBySetSelected) {
    set(Selected);
    EXPECT_THAT(shown(), ElementsAre("setSelected", "useMaterial BodySelected"));
}

TEST_F(VisualStates, HighlightedIsShownBySetHighlighted) {
    set(Highlighted);
    EXPECT_THAT(shown(), ElementsAre("setHighlighted", "useMaterial BodyHighlighted"));
}

TEST_F(VisualStates, CollisionLayersAreShownByTheirFixedMaterials) {
    set(EmphasizeGroupB);
    EXPECT_THAT(shown(), ElementsAre("useMaterial EmphasizeCollisionGroupB"));
    set(EmphasizeGroupA);
    EXPECT_THAT(shown(), ElementsAre("useMaterial EmphasizeCollisionGroupA"));
    set(NearMiss);
    EXPECT_THAT(shown(), ElementsAre("useMaterial CollisionNearMiss"));
    set(Contact);
    EXPECT_THAT(shown(), ElementsAre("useMaterial CollisionContact"));
}

TEST_F(VisualStates, AFixedMaterialIsShownWhateverNameTheLayerCarries) {
    set(Contact, "Axis");
    EXPECT_THAT(shown(), ElementsAre("useMaterial CollisionContact"));
}

TEST_F(VisualStates, TheMaterialLayerShowsItsOwnName) {
    set(Material, "Glass");
    EXPECT_THAT(shown(), ElementsAre("useMaterial Glass"));
}

TEST_F(VisualStates, AnEmptyNameKeepsTheOneGivenBefore) {
    set(Material, "Glass");
    set(Material, "");
    EXPECT_THAT(shown(), ElementsAre("useMaterial Glass"));
    set(Material, "Steel");
    EXPECT_THAT(shown(), ElementsAre("useMaterial Steel"));
}

TEST_F(VisualStates, AMaterialLayerWithoutANameShowsTheNormalLook) {
    set(Material);
    EXPECT_THAT(shown(), ElementsAre("resetAppearance", "useMaterial Body"));
}

TEST_F(VisualStates, ClearingALayerForgetsItsName) {
    set(Material, "Glass");
    clear(Material);
    EXPECT_THAT(shown(), IsEmpty());
    set(Material);
    EXPECT_THAT(shown(), ElementsAre("resetAppearance", "useMaterial Body"));
}

TEST_F(VisualStates, LayersUncoverOneAnotherInOrderOfPriority) {
    for (const VisualStateLayer layer : priority) set(layer, layer == Material ? "Glass" : "");
    const std::vector<std::string> looks{"useMaterial BodySelected",
                                         "useMaterial BodyHighlighted",
                                         "useMaterial CollisionContact",
                                         "useMaterial CollisionNearMiss",
                                         "useMaterial EmphasizeCollisionGroupA",
                                         "useMaterial EmphasizeCollisionGroupB",
                                         "useMaterial Glass"};
    for (std::size_t i = 0; i < priority.size(); ++i) {
        EXPECT_EQ(refresh().back(), looks[i]);
        clear(priority[i]);
    }
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(VisualStates, LayersAreKeptByVisual) {
    set(Selected);
    EXPECT_TRUE(states.hasLayer(probe, Selected));
    EXPECT_FALSE(states.hasLayer(probe, Contact));
    EXPECT_FALSE(states.hasLayer(other, Selected));
    clear(Selected);
    EXPECT_FALSE(states.hasLayer(probe, Selected));
}

TEST_F(VisualStates, ClearingWhatIsNotSetChangesNothing) {
    clear(Contact);
    set(NearMiss);
    clear(Contact);
    EXPECT_THAT(shown(), ElementsAre("useMaterial CollisionNearMiss"));
}

TEST_F(VisualStates, ClearLayerLeavesTheOtherLayersInPlace) {
    set(Contact);
    set(NearMiss);
    states.setLayer(other, Contact, true, {});
    probe->calls.clear();
    states.clearLayer(Contact);
    EXPECT_EQ(probe->calls.back(), "useMaterial CollisionNearMiss");
    EXPECT_EQ(other->calls.back(), "useMaterial Body");
    EXPECT_FALSE(states.hasLayer(probe, Contact));
    EXPECT_FALSE(states.hasLayer(other, Contact));
    EXPECT_TRUE(states.hasLayer(probe, NearMiss));
}

TEST_F(VisualStates, ClearLayerRefreshesOnlyThoseThatHadIt) {
    set(Contact);
    states.setLayer(other, NearMiss, true, {});
    states.clearLayer(Contact);
    EXPECT_THAT(other->calls, IsEmpty());
    probe->calls.clear();
    states.clearLayer(Contact);
    states.clearLayer(None);
    EXPECT_THAT(probe->calls, IsEmpty());
}

TEST_F(VisualStates, ClearLayerForgetsTheName) {
    set(Material, "Glass");
    states.clearLayer(Material);
    set(Material);
    EXPECT_THAT(shown(), ElementsAre("resetAppearance", "useMaterial Body"));
}

TEST_F(VisualStates, ARemovedVisualHasNoLayersAndIsNotTouched) {
    set(Contact);
    states.remove(probe);
    states.remove(other);  // without a record
    EXPECT_FALSE(states.hasLayer(probe, Contact));
    states.clearLayer(Contact);
    EXPECT_THAT(probe->calls, IsEmpty());
}

TEST_F(VisualStates, DeletingAVisualDropsItsRecord) {
    VisualStateManager& manager = *scene().stateManager;
    auto* child = new ProbeVisual("child", probe);
    manager.setLayer(probe, Contact, true, {});
    manager.setLayer(child, Contact, true, {});
    const visual::Visual* gone[] = {probe, child};
    scene().deleteVisual(probe);
    for (const visual::Visual* visual : gone) EXPECT_FALSE(manager.hasLayer(visual, Contact));
    manager.clearLayer(Contact);  // would follow what is left
}

}  // namespace vrn::test
