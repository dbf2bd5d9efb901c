#include "visual/station/MechanismVisual.h"

#include <gmock/gmock.h>

#include <OgreSceneNode.h>

#include "tests/visual/ProbeVisual.h"
#include "tests/visual/StationFixture.h"
#include "visual/station/FrameVisual.h"

namespace vrn::test {

using testing::ElementsAre;
using visual::FrameVisual;
using visual::MechanismVisual;
using visual::Visual;

class Mechanisms : public StationVisuals {
protected:
    void SetUp() override {
        StationVisuals::SetUp();
        tool = model.make<layout::Tool>("tool");
    }
    MechanismVisual* build(bool buildChildren = true) {
        return new MechanismVisual(tool, root(), buildChildren);
    }
    static ProbeVisual* addProbe(Visual* parent, VisualType type) {
        auto* probe = new ProbeVisual(parent);
        probe->type = type;
        return probe;
    }
    static void runThroughLooks(Visual* visual) {
        visual->setSelected();
        visual->setHighlighted();
        visual->resetAppearance();
        visual->clearHighlightOrSelect();
    }

    layout::Tool* tool = nullptr;
};

TEST_F(Mechanisms, AMechanismWhoseChildrenWereClearedTakesEveryLookWithoutHarm) {
    MechanismVisual* mechanism = build();
    mechanism->clearChildren();
    runThroughLooks(mechanism);
    EXPECT_THAT(mechanism->getChildren(), ElementsAre());
}

TEST_F(Mechanisms, LinksComeFirstThenBareNodesThenTheBaseFrame) {
    auto* socket = model.make<layout::MechanismNode>("socket");
    socket->setPose({{7, 8, 9}, {}});
    tool->addNode(*socket);  // before the links in the model
    const layout::Link* first = addLink(tool, "first");
    const layout::Link* second = addLink(tool, "second");
    const MechanismVisual* visual = build();
    EXPECT_THAT(visual->getChildren(), ElementsAre(visualOf(first), visualOf(second),
                                                   visualOf(socket), visual->getBaseFrame()));
    EXPECT_EQ(visual->type, VisualType::None);  // a derived class says what it is
    EXPECT_EQ(visual->id, tool->id);
    EXPECT_EQ(visualOf(first)->type, VisualType::Link);
}

TEST_F(Mechanisms, ABareNodeHasIdAndPoseAndNoPicture) {
    auto* socket = model.make<layout::MechanismNode>("socket");
    socket->setPose({{7, 8, 9}, {}});
    tool->addNode(*socket);
    build();
    Visual* visual = visualOf(socket);
    EXPECT_EQ(visual->type, VisualType::None);
    EXPECT_EQ(visual->getPosition(), (rob::PosTemplate<float>{7, 8, 9}));
    EXPECT_EQ(visual->node->numAttachedObjects(), 0u);
    EXPECT_FALSE(isPickable(visual));
}

TEST_F(Mechanisms, TheBaseFrameHasIdZeroIsHiddenAndInNoRegistry) {
    Visual* frame = build()->getBaseFrame();
    EXPECT_EQ(frame->id, 0u);
    EXPECT_EQ(frame->type, VisualType::Frame);
    EXPECT_EQ(frame->getName(), "Base Frame");
    EXPECT_FALSE(frame->visible);
    EXPECT_FALSE(isDrawn(frame));
    EXPECT_FALSE(scene().visuals.contains(0));
    EXPECT_FALSE(isPickable(frame));
}

TEST_F(Mechanisms, SeveralHaveABaseFrameEach) {
    const MechanismVisual* first = build();
    tool = model.make<layout::Tool>("other");
    const MechanismVisual* second = build();
    EXPECT_NE(first->getBaseFrame(), second->getBaseFrame());
    EXPECT_EQ(second->getBaseFrame()->getName(), "Base Frame");
}

TEST_F(Mechanisms, WithoutChildrenThereAreLinksNodesAndBaseFrameButNoParts) {
    const layout::Link* link = addLink(tool, "link");
    auto* socket = model.make<layout::MechanismNode>("socket");
    tool->addNode(*socket);
    MechanismVisual* visual = build(/*buildChildren=*/false);
    EXPECT_THAT(visual->getChildren(),
                ElementsAre(visualOf(link), visualOf(socket), visual->getBaseFrame()));
    EXPECT_THAT(visualOf(link)->getChildren(), ElementsAre());
    EXPECT_EQ(visual->getBodiesNum(), 0u);
}

TEST_F(Mechanisms, OfOneThatCannotBeBuiltNothingIsLeft) {
    addLink(tool, "good");
    addRefusedPart(tool);
    const auto before = traces();
    EXPECT_THROW(build(), std::runtime_error);
    EXPECT_EQ(traces(), before);
    EXPECT_NO_THROW(frame());
}

TEST_F(Mechanisms, OnlyAMechanismCanBeBuiltAsOne) {
    const auto before = traces();
    EXPECT_THROW(MechanismVisual(makeBoxPart("part"), root(), true), std::bad_cast);
    EXPECT_EQ(traces(), before);
}

// --- looks

TEST_F(Mechanisms, LooksGoToLinksAndFramesAndPassOverTheRest) {
    MechanismVisual* visual = build();
    const ProbeVisual* link = addProbe(visual, VisualType::Link);
    const ProbeVisual* frame = addProbe(visual, VisualType::Frame);
    const ProbeVisual* wrist = addProbe(visual, VisualType::Wrist);
    const ProbeVisual* bare = addProbe(visual, VisualType::None);
    const ProbeVisual* tcp = addProbe(visual, VisualType::Tcp);
    const ProbeVisual* part = addProbe(visual, VisualType::Part);
    runThroughLooks(visual);
    for (const ProbeVisual* admitted : {link, frame})
        EXPECT_THAT(admitted->calls, ElementsAre("setSelected", "setHighlighted", "resetAppearance",
                                                 "clearHighlightOrSelect", "resetAppearance"));
    for (const ProbeVisual* other : {wrist, bare, tcp, part})
        EXPECT_THAT(other->calls, ElementsAre());
}

TEST_F(Mechanisms, AnAttachedLinkKeepsItsLookAndAnAttachedFrameDoesNot) {
    MechanismVisual* visual = build();
    ProbeVisual* link = addProbe(visual, VisualType::Link);
    ProbeVisual* frame = addProbe(visual, VisualType::Frame);
    link->setAttachState(true);
    frame->setAttachState(true);
    runThroughLooks(visual);
    EXPECT_THAT(link->calls, ElementsAre());
    EXPECT_EQ(frame->calls.size(), 5u);
}

TEST_F(Mechanisms, AnObjectAttachedUnderALinkDoesNotTakeTheSelection) {
    const layout::Link* link = addLink(tool, "link");
    MechanismVisual* visual = build();
    scene().visuals[visual->id] = visual;
    Visual* mounted = showBoxPart("mounted");
    scene().addAttachment(mounted->id, link->id, {});
    scene().setVisualSelected(visual);
    pump();
    EXPECT_EQ(lookOf(visual), "BodySelected");
    EXPECT_EQ(lookOf(mounted), "Body");
}

TEST_F(Mechanisms, AHighlightLeavesASelectedLinkAndTurnsFramesWhite) {
    const layout::Link* chosen = addLink(tool, "chosen");
    const layout::Link* other = addLink(tool, "other");
    MechanismVisual* visual = build();
    scene().setVisualSelected(chosen->id);
    pump();
    visual->setHighlighted();
    EXPECT_EQ(lookOf(visualOf(chosen)), "BodySelected");
    EXPECT_EQ(lookOf(visualOf(other)), "BodyHighlighted");
    EXPECT_THAT(axisLooks(visual->getBaseFrame()),
                ElementsAre("WhiteFrameLine", "WhiteFrameLine", "WhiteFrameLine"));
    EXPECT_FALSE(visual->getBaseFrame()->visible);
}

TEST_F(Mechanisms, AFrameIsHighlightedEvenInASelectedMechanism) {
    MechanismVisual* visual = build();
    scene().visuals[visual->id] = visual;
    scene().setVisualSelected(visual);
    pump();
    ASSERT_TRUE(scene().isSelected(visual->getBaseFrame()));
    visual->setHighlighted();
    EXPECT_THAT(axisLooks(visual->getBaseFrame()),
                ElementsAre("WhiteFrameLine", "WhiteFrameLine", "WhiteFrameLine"));
}

TEST_F(Mechanisms, TheBaseFrameShowsWhileSelectedEvenOnASelectedCarrier) {
    Visual* carrier = addPlain(VisualType::Part);
    MechanismVisual* visual = build();
    scene().visuals[visual->id] = visual;
    carrier->attachVisual(visual);
    scene().setVisualsSelected({carrier->id, visual->id});
    pump();
    EXPECT_TRUE(isDrawn(visual->getBaseFrame()));
    EXPECT_THAT(
        axisLooks(visual->getBaseFrame()),
        ElementsAre("RedFrameLineSelected", "GreenFrameLineSelected", "BlueFrameLineSelected"));
    scene().clearSelections();
    pump();
    EXPECT_FALSE(isDrawn(visual->getBaseFrame()));
    EXPECT_THAT(axisLooks(visual->getBaseFrame()),
                ElementsAre("RedFrameLine", "GreenFrameLine", "BlueFrameLine"));
}

TEST_F(Mechanisms, ResettingHidesTheBaseFrame) {
    MechanismVisual* visual = build();
    visual->setSelected();
    EXPECT_TRUE(visual->getBaseFrame()->visible);
    visual->resetAppearance();
    EXPECT_FALSE(visual->getBaseFrame()->visible);
}

}  // namespace vrn::test
