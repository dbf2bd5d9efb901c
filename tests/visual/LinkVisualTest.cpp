#include "visual/station/LinkVisual.h"

#include <gmock/gmock.h>

#include "suite/layout/Frame.h"
#include "tests/visual/ProbeVisual.h"
#include "tests/visual/StationFixture.h"

namespace vrn::test {

using testing::ElementsAre;
using visual::LinkVisual;
using visual::Visual;

class LinkVisuals : public StationVisuals {
protected:
    void SetUp() override {
        StationVisuals::SetUp();
        link = model.make<layout::Link>("link");
        link->setPose({{1, 2, 3}, {}});
    }
    layout::Part* addPart(const std::string& name) {
        layout::Part* part = makeBoxPart(name);
        link->addChild(*part);
        return part;
    }
    LinkVisual* build(bool buildChildren = true) {
        return LinkVisual::Build(link, root(), buildChildren);
    }

    layout::Link* link = nullptr;
};

TEST_F(LinkVisuals, ALinkHasIdNamePoseAndNoFrameOfItsOwn) {
    LinkVisual* visual = build();
    EXPECT_EQ(visual->type, VisualType::Link);
    EXPECT_EQ(visual->id, link->id);
    EXPECT_EQ(visual->getName(), "link_" + std::to_string(link->id));
    EXPECT_EQ(visual->getPosition(), (rob::PosTemplate<float>{1, 2, 3}));
    EXPECT_EQ(visualOf(link), visual);
    EXPECT_THAT(visual->getChildren(), ElementsAre());
    EXPECT_FALSE(isPickable(visual));
}

TEST_F(LinkVisuals, PartsAndAssembliesAreBuiltInOrder) {
    layout::Part* first = addPart("first");
    auto* group = model.make<layout::Assembly>("group");
    group->addChild(*makeBoxPart("inner"));
    link->addChild(*group);
    layout::Part* last = addPart("last");
    LinkVisual* visual = build();
    EXPECT_THAT(visual->getChildren(),
                ElementsAre(visualOf(first), visualOf(group), visualOf(last)));
    EXPECT_EQ(visual->getBodiesNum(), 3u);
}

TEST_F(LinkVisuals, WithoutChildrenALinkIsReturnedAndItsPartsNeverRegister) {
    layout::Part* part = addPart("part");
    LinkVisual* visual = build(/*buildChildren=*/false);
    EXPECT_EQ(visualOf(link), visual);
    EXPECT_THAT(visual->getChildren(), ElementsAre());
    EXPECT_FALSE(scene().visuals.contains(part->id));
}

TEST_F(LinkVisuals, ChildrenOfAnotherKindAreSkipped) {
    auto* frame = model.make<layout::Frame>("frame");
    auto* tool = model.make<layout::Tool>("tool");
    link->addChild(*frame);
    link->addChild(*tool);
    layout::Part* part = addPart("part");
    const LinkVisual* visual = build();
    EXPECT_THAT(visual->getChildren(), ElementsAre(visualOf(part)));
    EXPECT_FALSE(scene().visuals.contains(frame->id));
    EXPECT_FALSE(scene().visuals.contains(tool->id));
}

TEST_F(LinkVisuals, AChildHangsWhereItsOwnParentIdSays) {
    Visual* elsewhere = addPlain(VisualType::None);
    layout::Part* moved = addPart("moved");
    layout::Part* loose = addPart("loose");
    layout::Part* dangling = addPart("dangling");
    moved->parentId = elsewhere->id;
    loose->parentId = 0;
    dangling->parentId = 123456789;
    LinkVisual* visual = build();
    EXPECT_THAT(visual->getChildren(), ElementsAre());
    EXPECT_EQ(visualOf(moved)->getParent(), elsewhere);
    EXPECT_EQ(visualOf(loose)->getParent(), root());
    EXPECT_EQ(visualOf(dangling)->getParent(), root());
}

TEST_F(LinkVisuals, ARefusedPartThrowsAndTheLinkRemains) {
    auto* tool = model.make<layout::Tool>("tool");
    const layout::Part* part = addRefusedPart(tool);
    layout::Link* holder = tool->links().front();
    EXPECT_THROW(LinkVisual::Build(holder, root(), true), std::runtime_error);
    EXPECT_TRUE(scene().visuals.contains(holder->id));
    EXPECT_EQ(visualOf(part)->getParent(), visualOf(holder));
}

TEST_F(LinkVisuals, OnlyALinkCanBeBuiltAsOne) {
    const auto before = traces();
    EXPECT_THROW(LinkVisual::Build(makeBoxPart("part"), root(), true), std::bad_cast);
    EXPECT_THROW(LinkVisual::Build(makeBoxPart("part"), root(), false), std::bad_cast);
    EXPECT_EQ(traces(), before);
}

TEST_F(LinkVisuals, PartsAndAssembliesTakePartInTheLook) {
    Visual child("plain");
    for (int type = 0; type <= 34; ++type) {
        child.type = static_cast<VisualType>(type);
        EXPECT_EQ(LinkVisual::canApplyMaterial(&child), type == 7 || type == 9) << type;
    }
}

TEST_F(LinkVisuals, LooksGoToAdmittedChildrenThatAreNotAttached) {
    LinkVisual* visual = build();
    const auto add = [&](VisualType type) {
        auto* probe = new ProbeVisual(visual);
        probe->type = type;
        return probe;
    };
    ProbeVisual* part = add(VisualType::Part);
    ProbeVisual* group = add(VisualType::Assembly);
    ProbeVisual* tool = add(VisualType::Tool);
    ProbeVisual* mounted = add(VisualType::Part);
    mounted->setAttachState(true);
    visual->setSelected();
    visual->setHighlighted();
    visual->resetAppearance();
    visual->clearHighlightOrSelect();
    for (const ProbeVisual* admitted : {part, group})
        EXPECT_THAT(admitted->calls, ElementsAre("setSelected", "setHighlighted", "resetAppearance",
                                                 "clearHighlightOrSelect", "resetAppearance"));
    EXPECT_THAT(tool->calls, ElementsAre());
    EXPECT_THAT(mounted->calls, ElementsAre());
}

TEST_F(LinkVisuals, AHighlightLeavesASelectedPartAlone) {
    layout::Part* chosen = addPart("chosen");
    layout::Part* other = addPart("other");
    LinkVisual* visual = build();
    scene().setVisualSelected(chosen->id);
    pump();
    visual->setHighlighted();
    EXPECT_EQ(lookOf(visualOf(chosen)), "BodySelected");
    EXPECT_EQ(lookOf(visualOf(other)), "BodyHighlighted");
}

}  // namespace vrn::test
