#include "visual/station/ManipulatorVisual.h"

#include <any>
#include <array>

#include <gmock/gmock.h>

#include "tests/visual/StationFixture.h"

namespace vrn::test {

using testing::StrEq;
using testing::ThrowsMessage;
using visual::ManipulatorVisual;
using visual::Visual;

class Manipulators : public StationVisuals {
protected:
    layout::Manipulator* makeRobot(const std::string& vendor, const std::string& name = "robot") {
        auto* robot = model.make<layout::Manipulator>(name, vendor);
        flange = addLink(robot, name + " flange");
        return robot;
    }
    static Visual* build(layout::Manipulator* robot, bool buildChildren = true) {
        ManipulatorVisual::Build(root(), robot, buildChildren);
        return visualOf(robot);
    }

    layout::Link* flange = nullptr;  ///< the link of the robot made last
};

TEST_F(Manipulators, ARobotIsRegisteredWithItsLinks) {
    layout::Manipulator* robot = makeRobot("abb");
    robot->setPose({{1, 2, 3}, {}});
    Visual* visual = build(robot);
    EXPECT_EQ(visual->type, VisualType::Manipulator);
    EXPECT_EQ(visual->getName(), "robot_" + std::to_string(robot->id));
    EXPECT_EQ(visual->getPosition(), (rob::PosTemplate<float>{1, 2, 3}));
    EXPECT_EQ(visualOf(flange)->getParent(), visual);
    EXPECT_EQ(visual->getBodiesNum(), 1u);
    EXPECT_FALSE(isPickable(visual));
}

struct Maker {
    const char* test;
    const char* vendor;
    const char* family;
};

class Makers : public Manipulators, public testing::WithParamInterface<Maker> {};

TEST_P(Makers, TheMakerChoosesTheMaterials) {
    const std::string family = GetParam().family;
    Visual* visual = build(makeRobot(GetParam().vendor));
    EXPECT_EQ(lookOf(visual), family);  // already as built
    scene().setVisualHighlighted(visual);
    pump();
    EXPECT_EQ(lookOf(visual), family + "Highlighted");
    scene().setVisualSelected(visual);
    pump();
    EXPECT_EQ(lookOf(visual), family + "Selected");
    scene().clearSelections();
    pump();
    EXPECT_EQ(lookOf(visual), family);
}

const std::array makers{Maker{"Abb", "abb", "ABB"},
                        Maker{"Kuka", "kuka", "KUKA"},
                        Maker{"Fanuc", "fanuc", "FANUC"},
                        Maker{"Yaskawa", "yaskawa", "YASKAWA"},
                        Maker{"Empty", "", "Mechanism"},
                        Maker{"Capitals", "ABB", "Mechanism"},
                        Maker{"CapitalLetter", "Kuka", "Mechanism"},
                        Maker{"TrailingBlank", "kuka ", "Mechanism"},
                        Maker{"Other", "motoman", "Mechanism"}};

INSTANTIATE_TEST_SUITE_P(All, Makers, testing::ValuesIn(makers),
                         [](const auto& row) { return row.param.test; });

TEST_F(Manipulators, NamesOfTheLookReachEveryVisualBelow) {
    Visual* visual = build(makeRobot("fanuc"));
    for (const Visual* v : {visual, visualOf(flange), findBelow(visual, VisualType::Mesh)}) {
        EXPECT_EQ(v->material, "FANUC");
        EXPECT_EQ(v->selectedMaterial, "FANUCSelected");
        EXPECT_EQ(v->highlightedMaterial, "FANUCHighlighted");
    }
}

TEST_F(Manipulators, AVendorThatIsNoTextThrowsAndNothingIsLeft) {
    for (const std::any& value : {std::any(), std::any(7), std::any("abb")}) {
        layout::Manipulator* robot = makeRobot("abb");
        robot->element->set("vendor", value);
        const auto before = traces();
        EXPECT_THROW(build(robot), std::bad_any_cast);
        EXPECT_EQ(traces(), before);
        EXPECT_FALSE(scene().visuals.contains(robot->id));
        EXPECT_FALSE(scene().visuals.contains(flange->id));
    }
    EXPECT_NO_THROW(frame());
}

TEST_F(Manipulators, ARobotWithoutAnyVendorThrowsAndNothingIsLeft) {
    layout::Manipulator* robot = makeRobot("abb");
    robot->element->get("vendor")->detach();
    const auto before = traces();
    EXPECT_THROW(build(robot), std::bad_any_cast);
    EXPECT_EQ(traces(), before);
}

TEST_F(Manipulators, TheWristHangsOnTheLinkThatCarriesIt) {
    layout::Manipulator* robot = makeRobot("abb");
    flange->setPose({{0, 0, 500}, {}});
    auto* wrist = model.make<layout::Wrist>("wrist");
    wrist->setPose({{0, 0, 20}, {0, 1, 0, 0}});
    robot->setWrist(*wrist, *flange);
    build(robot);
    Visual* visual = visualOf(wrist);
    EXPECT_EQ(visual->getParent(), visualOf(flange));
    EXPECT_EQ(visual->type, VisualType::Wrist);
    EXPECT_EQ(visual->getWorldPosition(), (rob::PosTemplate<float>{0, 0, 520}));
    EXPECT_TRUE(visual->getWorldRotation().isApprox({0, 1, 0, 0}));
}

TEST_F(Manipulators, AWristWhoseParentHasNoVisualThrowsAndTheRobotRemains) {
    layout::Manipulator* robot = makeRobot("abb");
    auto* wrist = model.make<layout::Wrist>("wrist");
    robot->setWrist(*wrist, *flange);
    for (const std::uint32_t parentId : {0u, 123456789u}) {  // 0 does not stand for the root here
        wrist->parentId = parentId;
        EXPECT_THAT([&] { build(robot); },
                    ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
        EXPECT_EQ(visualOf(robot)->getParent(), root());
        EXPECT_FALSE(scene().visuals.contains(wrist->id));
        scene().deleteVisual(visualOf(robot));
    }
}

TEST_F(Manipulators, ARobotWithoutAWristGetsNone) {
    Visual* visual = build(makeRobot("abb"));
    EXPECT_EQ(findBelow(visual, VisualType::Wrist), nullptr);
}

TEST_F(Manipulators, WithoutChildrenARobotStillHasItsWrist) {
    layout::Manipulator* robot = makeRobot("abb");
    auto* wrist = model.make<layout::Wrist>("wrist");
    robot->setWrist(*wrist, *flange);
    Visual* visual = build(robot, /*buildChildren=*/false);
    EXPECT_EQ(visual->getBodiesNum(), 0u);
    EXPECT_EQ(visualOf(wrist)->getParent(), visualOf(flange));
}

TEST_F(Manipulators, OnlyAManipulatorCanBeBuiltAsOne) {
    auto* tool = model.make<layout::Tool>("tool");
    const auto before = traces();
    EXPECT_THROW(ManipulatorVisual::Build(root(), tool, true), std::bad_cast);
    EXPECT_EQ(traces(), before);
}

TEST_F(Manipulators, TwoRobotsOfOneNameStandSideBySide) {
    Visual* first = build(makeRobot("abb"));
    Visual* second = build(makeRobot("kuka"));
    EXPECT_EQ(lookOf(first), "ABB");
    EXPECT_EQ(lookOf(second), "KUKA");
}

TEST_F(Manipulators, RemovingARobotTakesLinksAndWristAlong) {
    const auto before = traces();
    layout::Manipulator* robot = makeRobot("abb");
    auto* wrist = model.make<layout::Wrist>("wrist");
    robot->setWrist(*wrist, *flange);
    build(robot);
    scene().removeVisual(robot->id);
    pump();
    EXPECT_EQ(traces(), before);
}

}  // namespace vrn::test
