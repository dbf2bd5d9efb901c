#include "visual/station/UserComponentVisual.h"

#include <gmock/gmock.h>

#include "suite/layout/Frame.h"
#include "suite/smart/SmartComponent.h"
#include "suite/smart/StationLogic.h"
#include "tests/visual/ProbeVisual.h"
#include "tests/visual/StationFixture.h"
#include "visual/process/SprayVisual.h"

namespace vrn::test {

using testing::ElementsAre;
using visual::UserComponentVisual;
using visual::Visual;

class UserComponents : public StationVisuals {
protected:
    void SetUp() override {
        StationVisuals::SetUp();
        component = model.make<smartcomp::UserComponent>("component");
    }
    Visual* build() {
        UserComponentVisual::Build(root(), component);
        return visualOf(component);
    }
    static Visual* localFrameOf(const Visual* owner) { return childNamed(owner, "Local Frame"); }
    static ProbeVisual* addProbe(Visual* parent, VisualType type) {
        auto* probe = new ProbeVisual(parent);
        probe->type = type;
        return probe;
    }

    smartcomp::UserComponent* component = nullptr;
};

TEST_F(UserComponents, AComponentHasIdNamePoseAndAHiddenLocalFrame) {
    component->setPose({{4, 5, 6}, {}});
    Visual* visual = build();
    EXPECT_EQ(visual->type, VisualType::UserComponent);
    EXPECT_EQ(visual->id, component->id);
    EXPECT_EQ(visual->getName(), "component_" + std::to_string(component->id));
    EXPECT_EQ(visual->getPosition(), (rob::PosTemplate<float>{4, 5, 6}));
    EXPECT_THAT(visual->getChildren(), ElementsAre(localFrameOf(visual)));
    EXPECT_FALSE(localFrameOf(visual)->visible);
}

TEST_F(UserComponents, EachKindOfChildIsBuiltAsWhatItIs) {
    auto* group = model.make<layout::Assembly>("group");
    layout::Part* part = makeBoxPart("part");
    auto* tool = model.make<layout::Tool>("tool");
    auto* device = model.make<layout::Device>("device");
    auto* nested = model.make<smartcomp::UserComponent>("nested");
    auto* spray = model.make<smartcomp::SprayComponent>("spray");
    spray->setProperty(7, 100.0);
    spray->setProperty(8, 80.0);
    const layout::Link* link = addLink(tool, "tool link");
    for (sdf::SdfObject* child :
         {static_cast<sdf::SdfObject*>(group), static_cast<sdf::SdfObject*>(part),
          static_cast<sdf::SdfObject*>(tool), static_cast<sdf::SdfObject*>(device),
          static_cast<sdf::SdfObject*>(nested), static_cast<sdf::SdfObject*>(spray)})
        component->addChild(*child);
    Visual* visual = build();
    EXPECT_THAT(visual->getChildren(),
                ElementsAre(localFrameOf(visual), visualOf(group), visualOf(part), visualOf(tool),
                            visualOf(device), visualOf(nested), visualOf(spray)));
    EXPECT_EQ(visualOf(group)->type, VisualType::Assembly);
    EXPECT_EQ(visualOf(part)->type, VisualType::Part);
    EXPECT_EQ(visualOf(tool)->type, VisualType::Tool);
    EXPECT_EQ(visualOf(device)->type, VisualType::Device);
    EXPECT_EQ(visualOf(nested)->type, VisualType::UserComponent);
    EXPECT_NE(dynamic_cast<visual::SprayVisual*>(visualOf(spray)), nullptr);
    EXPECT_EQ(visualOf(link)->getBodiesNum(), 1u);  // with the parts of its links
}

TEST_F(UserComponents, ManipulatorsAndFramesInsideAreNotBuilt) {
    auto* robot = model.make<layout::Manipulator>("robot", "kuka");
    auto* frame = model.make<layout::Frame>("frame");
    component->addChild(*robot);
    component->addChild(*frame);
    Visual* visual = build();
    EXPECT_THAT(visual->getChildren(), ElementsAre(localFrameOf(visual)));
    EXPECT_FALSE(scene().visuals.contains(robot->id));
    EXPECT_FALSE(scene().visuals.contains(frame->id));
}

TEST_F(UserComponents, AChildHangsWhereItsOwnParentIdSays) {
    layout::Part* logic = makeBoxPart("logic");
    layout::Part* loose = makeBoxPart("loose");
    component->addChild(*logic);
    component->addChild(*loose);
    logic->parentId = smartcomp::StationLogic::inst()->id;
    loose->parentId = 0;
    Visual* visual = build();
    EXPECT_EQ(visualOf(logic)->getParent(), root());
    EXPECT_EQ(visualOf(loose)->getParent(), root());
    EXPECT_EQ(visual->getBodiesNum(), 0u);
}

TEST_F(UserComponents, AChildThatTheModelDoesNotKnowThrowsAndTheComponentRemains) {
    layout::Part known("known");  // has no id: it never came into the model's table
    component->addChild(known);
    EXPECT_THROW(build(), std::out_of_range);
    EXPECT_TRUE(scene().visuals.contains(component->id));
}

TEST_F(UserComponents, OnlyAContainerCanBeBuiltAsOne) {
    class Bare : public sdf::SdfNode {
    public:
        Bare() : SdfNode(sdf::ObjectType::UserComponent, "bare", "bare") {}
    };
    const auto before = traces();
    EXPECT_THROW(UserComponentVisual::Build(root(), model.make<Bare>()), std::bad_cast);
    EXPECT_EQ(traces(), before);
}

TEST_F(UserComponents, NoSensorAndNoManipulatorTakesPartInTheLook) {
    Visual child("plain");
    for (int type = 0; type <= 34; ++type) {
        child.type = static_cast<VisualType>(type);
        const bool admitted = type == 3 || type == 4 || type == 7 || type == 9 || type == 27;
        EXPECT_EQ(UserComponentVisual::canApplyMaterial(&child), admitted) << type;
    }
}

TEST_F(UserComponents, ASensorInsideKeepsItsLook) {
    Visual* visual = build();
    const ProbeVisual* sensor = addProbe(visual, VisualType::Sensor);
    scene().setVisualSelected(visual);
    pump();
    scene().clearSelections();
    pump();
    EXPECT_THAT(sensor->calls, ElementsAre());
}

TEST_F(UserComponents, SelectingShowsTheLocalFrameAndClearingHidesIt) {
    component->addChild(*makeBoxPart("inside"));
    Visual* visual = build();
    scene().setVisualSelected(visual);
    pump();
    EXPECT_EQ(lookOf(visual), "BodySelected");
    EXPECT_TRUE(isDrawn(localFrameOf(visual)));
    scene().clearSelections();
    pump();
    EXPECT_EQ(lookOf(visual), "Body");
    EXPECT_FALSE(isDrawn(localFrameOf(visual)));
}

TEST_F(UserComponents, OnlyTheOutermostSelectedOneShowsItsFrame) {
    auto* nested = model.make<smartcomp::UserComponent>("nested");
    component->addChild(*nested);
    Visual* visual = build();
    scene().setVisualSelected(visual);
    pump();
    EXPECT_TRUE(localFrameOf(visual)->visible);
    EXPECT_FALSE(localFrameOf(visualOf(nested))->visible);
    scene().setVisualSelected(nested->id);
    pump();
    EXPECT_FALSE(localFrameOf(visual)->visible);
    EXPECT_TRUE(localFrameOf(visualOf(nested))->visible);
}

TEST_F(UserComponents, AHighlightLeavesASelectedPartAndTheFrameAlone) {
    layout::Part* chosen = makeBoxPart("chosen");
    layout::Part* other = makeBoxPart("other");
    component->addChild(*chosen);
    component->addChild(*other);
    Visual* visual = build();
    scene().setVisualSelected(chosen->id);
    scene().processMsgs();
    scene().setVisualHighlighted(visual);
    pump();
    EXPECT_EQ(lookOf(visualOf(chosen)), "BodySelected");
    EXPECT_EQ(lookOf(visualOf(other)), "BodyHighlighted");
    EXPECT_FALSE(localFrameOf(visual)->visible);
}

TEST_F(UserComponents, ClearingALookResetsTheChildren) {
    Visual* visual = build();
    const ProbeVisual* part = addProbe(visual, VisualType::Part);
    visual->clearHighlightOrSelect();
    EXPECT_THAT(part->calls, ElementsAre("resetAppearance"));
}

TEST_F(UserComponents, WhatIsAttachedKeepsItsLook) {
    Visual* visual = build();
    ProbeVisual* mounted = addProbe(visual, VisualType::Tool);
    mounted->setAttachState(true);
    visual->setSelected();
    visual->setHighlighted();
    visual->resetAppearance();
    EXPECT_THAT(mounted->calls, ElementsAre());
}

}  // namespace vrn::test
