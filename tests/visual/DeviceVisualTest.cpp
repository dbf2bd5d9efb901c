#include "visual/station/DeviceVisual.h"

#include <gmock/gmock.h>

#include "suite/layout/Frame.h"
#include "tests/visual/StationFixture.h"

namespace vrn::test {

using testing::StrEq;
using testing::ThrowsMessage;
using visual::DeviceVisual;
using visual::Visual;

class Devices : public StationVisuals {
protected:
    void SetUp() override {
        StationVisuals::SetUp();
        device = model.make<layout::Device>("positioner");
        table = addLink(device, "table");
    }
    layout::Frame* addFrame(const sdf::SdfNode* carrier) {
        auto* frame = model.make<layout::Frame>("fixture");
        frame->setPose({{0, 0, 40}, {}});
        device->addFrame(*frame, *carrier);
        return frame;
    }
    Visual* build() {
        DeviceVisual::Build(root(), device, /*buildChildren=*/true);
        return visualOf(device);
    }

    layout::Device* device = nullptr;
    layout::Link* table = nullptr;
};

TEST_F(Devices, ADeviceIsRegisteredWithItsLinks) {
    Visual* visual = build();
    EXPECT_EQ(visual->type, VisualType::Device);
    EXPECT_EQ(visual->id, device->id);
    EXPECT_EQ(visualOf(table)->getParent(), visual);
    EXPECT_EQ(visual->getBodiesNum(), 1u);
}

TEST_F(Devices, AFrameHangsOnItsCarrierAndMovesWithIt) {
    const layout::Frame* onTable = addFrame(table);
    const layout::Frame* onDevice = addFrame(device);
    Visual* visual = build();
    Visual* shown = visualOf(onTable);
    EXPECT_EQ(shown->getName(), "Device Frame");
    EXPECT_EQ(shown->type, VisualType::Frame);
    EXPECT_EQ(shown->getParent(), visualOf(table));
    EXPECT_EQ(visualOf(onDevice)->getParent(), visual);
    EXPECT_TRUE(isDrawn(shown));
    EXPECT_TRUE(isPickable(shown));
    scene().setVisualPose(table->id, {{100, 0, 0}, {}});
    pump();
    EXPECT_EQ(shown->getWorldPosition(), (rob::PosTemplate<float>{100, 0, 40}));
    EXPECT_EQ(visualOf(onDevice)->getWorldPosition(), (rob::PosTemplate<float>{0, 0, 40}));
}

TEST_F(Devices, AFrameWhoseCarrierHasNoVisualThrowsAndThoseBeforeItStay) {
    const layout::Frame* good = addFrame(table);
    layout::Frame* bad = addFrame(table);
    const layout::Frame* late = addFrame(table);
    bad->parentId = 123456789;
    EXPECT_THAT([&] { build(); }, ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
    EXPECT_EQ(visualOf(good)->getParent(), visualOf(table));
    EXPECT_FALSE(scene().visuals.contains(bad->id));
    EXPECT_FALSE(scene().visuals.contains(late->id));
}

TEST_F(Devices, OnlyADeviceCanBeBuiltAsOne) {
    auto* tool = model.make<layout::Tool>("tool");
    const auto before = traces();
    EXPECT_THROW(DeviceVisual::Build(root(), tool, true), std::bad_cast);
    EXPECT_EQ(traces(), before);
}

}  // namespace vrn::test
