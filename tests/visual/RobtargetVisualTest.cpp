#include "visual/station/RobtargetVisual.h"

#include <limits>

#include <gmock/gmock.h>

#include "selection/SelectableObject.h"
#include "selection/SensitiveLine.h"
#include "selection/VisualSelection.h"
#include "suite/task/DataItem.h"
#include "tests/visual/InstanceFixture.h"

namespace vrn::test {

using testing::ElementsAre;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::RobtargetVisual;
using visual::Visual;

class Robtargets : public InstanceVisuals {
protected:
    void SetUp() override {
        InstanceVisuals::SetUp();
        item = model.make<task::RobTargetDataItem>("p10");
    }
    task::RobTargetDataItem* item = nullptr;
};

TEST_F(Robtargets, ATargetStandsAtThePoseOfItsModelObject) {
    item->setPose({{1, 2, 3}, {0, 0, 0, 1}});
    Visual* parent = addPlain(VisualType::WObjObjectFrame);
    RobtargetVisual* target = RobtargetVisual::Build(parent, item->id);
    EXPECT_EQ(visualOf(item), target);
    EXPECT_EQ(target->type, VisualType::RobTarget);
    EXPECT_EQ(target->getName(), "ROBTARGET_" + std::to_string(item->id));
    EXPECT_EQ(target->getParent(), parent);
    EXPECT_EQ(target->getPosition(), (rob::PosTemplate<float>{1, 2, 3}));
    EXPECT_TRUE(target->getWorldRotation().isApprox({0, 0, 0, 1}));
    EXPECT_TRUE(isPickable(target));
    EXPECT_THAT(shownLooks(target), ElementsAre("InstanceRobTarget"));
    EXPECT_EQ(target->getFrameSize(), 60.0f);
}

TEST_F(Robtargets, AnIdThatTheModelDoesNotKnowThrowsAndNothingIsLeft) {
    const auto before = traces();
    EXPECT_THAT([] { RobtargetVisual::Build(root(), 123456789); },
                ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
    EXPECT_EQ(traces(), before);
}

TEST_F(Robtargets, APoseThatIsNotFiniteThrowsAndNothingIsLeft) {
    item->setPose({{std::numeric_limits<double>::quiet_NaN(), 0, 0}, {}});
    const auto before = traces();
    EXPECT_THROW(RobtargetVisual::Build(root(), item->id), std::invalid_argument);
    EXPECT_EQ(traces(), before);
    EXPECT_EQ(instancesInUse(), 0u);
}

TEST_F(Robtargets, PreviewingBringsTheNormalLookBack) {
    RobtargetVisual* target = RobtargetVisual::Build(root(), item->id);
    target->setSelected();
    target->preview();
    EXPECT_THAT(shownLooks(target), ElementsAre("InstanceRobTarget"));
    target->setHighlighted();
    target->cancelPreview();
    EXPECT_THAT(shownLooks(target), ElementsAre("InstanceRobTarget"));
}

TEST_F(Robtargets, TheClassWideSwitchHidesAndShowsThem) {
    RobtargetVisual* target = RobtargetVisual::Build(root(), item->id);
    scene().setTargetVisualVisible(false);
    pump();
    EXPECT_THAT(shownLooks(target), ElementsAre());
    scene().setTargetVisualVisible(true);
    pump();
    EXPECT_THAT(shownLooks(target), ElementsAre("InstanceRobTarget"));
}

TEST_F(Robtargets, ItsBoxInTheWorldFollowsPoseAndAxes) {
    item->setPose({{100, 0, 0}, {}});
    RobtargetVisual* target = RobtargetVisual::Build(root(), item->id);
    pump();
    const auto* object = selection::VisualSelection::Get()->getObject(target);
    EXPECT_EQ(object->kind, selection::ObjectKind::Line);
    EXPECT_TRUE(object->detectable);
    EXPECT_TRUE(object->box.isPointInside(100, 0, 0));
    EXPECT_TRUE(object->box.isPointInside(160, 60, 60));
    const rob::PosTemplate<float> before = object->box.max;
    scene().setVisualPose(item->id, {{5100, 0, 0}, {}});
    pump();
    EXPECT_NEAR(object->box.max.x, before.x + 5000, 0.01);
    EXPECT_NEAR(object->box.max.y, before.y, 0.01);
}

TEST_F(Robtargets, OnlyItsZAxisIsPickedWhileTheSceneShowsNoOther) {
    scene().settings.drawTargetZAxisOnly = true;
    RobtargetVisual* target = RobtargetVisual::Build(root(), item->id);
    pump();
    const auto* object = selection::VisualSelection::Get()->getObject(target);
    ASSERT_EQ(object->primitives.size(), 1u);
    const auto& axis = dynamic_cast<selection::SensitiveLine&>(*object->primitives[0]);
    EXPECT_EQ(axis.end, (rob::PosTemplate<float>{0, 0, 60}));
}

}  // namespace vrn::test
