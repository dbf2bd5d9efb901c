#include "visual/station/ToolVisual.h"

#include <limits>

#include <gmock/gmock.h>

#include "suite/layout/Frame.h"
#include "tests/visual/StationFixture.h"

namespace vrn::test {

using testing::ElementsAre;
using visual::ToolVisual;
using visual::Visual;

class Tools : public StationVisuals {
protected:
    void SetUp() override {
        StationVisuals::SetUp();
        tool = model.make<layout::Tool>("gripper");
    }
    layout::Frame* addFrame(const rob::PoseTemplate<double>& pose) {
        auto* frame = model.make<layout::Frame>("tip");
        frame->setPose(pose);
        tool->addFrame(*frame);
        return frame;
    }
    Visual* build(bool buildChildren = true) {
        ToolVisual::Build(root(), tool, buildChildren);
        return visualOf(tool);
    }

    layout::Tool* tool = nullptr;
};

TEST_F(Tools, AToolIsRegisteredWithItsLinks) {
    const layout::Link* link = addLink(tool, "jaw");
    Visual* visual = build();
    EXPECT_EQ(visual->type, VisualType::Tool);
    EXPECT_EQ(visual->id, tool->id);
    EXPECT_EQ(visualOf(link)->getParent(), visual);
    EXPECT_EQ(visual->getBodiesNum(), 1u);
    EXPECT_EQ(lookOf(visual), "Body");  // only robots have the look of a maker
}

TEST_F(Tools, FramesHangOnTheToolCarryOneNameAndStayVisible) {
    layout::Frame* first = addFrame({{0, 0, 100}, {}});
    layout::Frame* second = addFrame({{50, 0, 100}, {0, 1, 0, 0}});
    first->parentId = 123456789;  // is not asked
    Visual* visual = build();
    for (const layout::Frame* frame : {first, second}) {
        Visual* shown = visualOf(frame);
        EXPECT_EQ(shown->getName(), "Tool Frame");
        EXPECT_EQ(shown->type, VisualType::Frame);
        EXPECT_EQ(shown->id, frame->id);
        EXPECT_EQ(shown->getParent(), visual);
        EXPECT_TRUE(isDrawn(shown));
        EXPECT_TRUE(isPickable(shown));
    }
    EXPECT_NE(visualOf(first), visualOf(second));
    EXPECT_EQ(visualOf(second)->getPosition(), (rob::PosTemplate<float>{50, 0, 100}));
    EXPECT_TRUE(visualOf(second)->getWorldRotation().isApprox({0, 1, 0, 0}));
}

TEST_F(Tools, SelectingAToolPaintsItsFrames) {
    const layout::Frame* tip = addFrame({});
    Visual* visual = build();
    scene().setVisualSelected(visual);
    pump();
    EXPECT_THAT(
        axisLooks(visualOf(tip)),
        ElementsAre("RedFrameLineSelected", "GreenFrameLineSelected", "BlueFrameLineSelected"));
    scene().clearSelections();
    pump();
    EXPECT_THAT(axisLooks(visualOf(tip)),
                ElementsAre("RedFrameLine", "GreenFrameLine", "BlueFrameLine"));
    EXPECT_TRUE(isDrawn(visualOf(tip)));
}

TEST_F(Tools, WithoutChildrenAToolStillHasItsFrames) {
    addLink(tool, "jaw");
    const layout::Frame* tip = addFrame({});
    Visual* visual = build(/*buildChildren=*/false);
    EXPECT_EQ(visual->getBodiesNum(), 0u);
    EXPECT_TRUE(scene().visuals.contains(tip->id));
}

TEST_F(Tools, AFrameThatCannotBePlacedThrowsAndThoseBeforeItStay) {
    const layout::Frame* good = addFrame({});
    const layout::Frame* bad = addFrame({{0, std::numeric_limits<double>::infinity(), 0}, {}});
    const layout::Frame* late = addFrame({});
    EXPECT_THROW(build(), std::invalid_argument);
    EXPECT_EQ(visualOf(good)->getParent(), visualOf(tool));
    EXPECT_FALSE(scene().visuals.contains(bad->id));
    EXPECT_FALSE(scene().visuals.contains(late->id));
}

TEST_F(Tools, OnlyAToolCanBeBuiltAsOne) {
    auto* device = model.make<layout::Device>("device");
    const auto before = traces();
    EXPECT_THROW(ToolVisual::Build(root(), device, true), std::bad_cast);
    EXPECT_EQ(traces(), before);
}

TEST_F(Tools, RemovingAToolTakesFramesOutOfRegistryAndSelection) {
    const auto before = traces();
    addLink(tool, "jaw");
    addFrame({});
    addFrame({});
    build();
    scene().removeVisual(tool->id);
    pump();
    EXPECT_EQ(traces(), before);
}

}  // namespace vrn::test
