#include "visual/station/JointTargetVisual.h"

#include <limits>

#include <gmock/gmock.h>

#include "suite/task/DataItem.h"
#include "tests/visual/InstanceFixture.h"

namespace vrn::test {

using testing::ElementsAre;
using visual::JointTargetVisual;
using visual::Visual;

class JointTargets : public InstanceVisuals {
protected:
    void SetUp() override {
        InstanceVisuals::SetUp();
        item = model.make<task::JointTargetDataItem>("home");
    }
    task::JointTargetDataItem* item = nullptr;
};

TEST_F(JointTargets, ATargetStandsAtThePoseOfItsModelObject) {
    item->setPose({{1, 2, 3}, {0, 1, 0, 0}});
    JointTargetVisual* target = JointTargetVisual::Build(root(), item);
    EXPECT_EQ(visualOf(item), target);
    EXPECT_EQ(target->type, VisualType::JointTarget);
    EXPECT_EQ(target->id, item->id);
    EXPECT_EQ(target->getName(), "JOINTTARGET_" + std::to_string(item->id));
    EXPECT_EQ(target->getPosition(), (rob::PosTemplate<float>{1, 2, 3}));
    EXPECT_TRUE(target->getWorldRotation().isApprox({0, 1, 0, 0}));
    EXPECT_TRUE(isPickable(target));
    EXPECT_EQ(target->getFrameSize(), 50.0f);
}

TEST_F(JointTargets, OnlyTheNormalLookIsItsOwn) {
    JointTargetVisual* target = JointTargetVisual::Build(root(), item);
    EXPECT_THAT(shownLooks(target), ElementsAre("InstanceFrame"));
    target->setHighlighted();
    EXPECT_THAT(shownLooks(target), ElementsAre("InstanceRobTargetHighlight"));
    target->setSelected();
    EXPECT_THAT(shownLooks(target), ElementsAre("InstanceRobTargetSelected"));
    target->resetAppearance();
    EXPECT_THAT(shownLooks(target), ElementsAre("InstanceFrame"));
}

TEST_F(JointTargets, TheSwitchOfRobotTargetsLeavesThemAlone) {
    JointTargetVisual* target = JointTargetVisual::Build(root(), item);
    scene().setTargetVisualVisible(false);
    pump();
    EXPECT_THAT(shownLooks(target), ElementsAre("InstanceFrame"));
    EXPECT_TRUE(target->visible);
}

TEST_F(JointTargets, APoseThatIsNotFiniteThrowsAndNothingIsLeft) {
    item->setPose({{0, std::numeric_limits<double>::infinity(), 0}, {}});
    const auto before = traces();
    EXPECT_THROW(JointTargetVisual::Build(root(), item), std::invalid_argument);
    EXPECT_EQ(traces(), before);
    EXPECT_EQ(instancesInUse(), 0u);
}

}  // namespace vrn::test
