#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "mesh/DynamicLines.h"
#include "selection/VisualSelection.h"
#include "suite/layout/Frame.h"
#include "suite/layout/Layout.h"
#include "suite/layout/Mechanism.h"
#include "suite/layout/PointCloud.h"
#include "suite/smart/SmartComponent.h"
#include "suite/task/DataItem.h"
#include "suite/task/Task.h"
#include "tests/support/EngineFixture.h"
#include "view/Camera.h"
#include "visual/Visual.h"

namespace vrn::test {

using layout::Layout;
using visual::Visual;

/// A station with one of everything, entered in the layout in the reverse of the order of loading.
class WholeStation : public EngineTest {
protected:
    void TearDown() override {
        Layout::inst()->clear();
        EngineTest::TearDown();
    }
    template <class Object, class... Args>
    Object* enter(Args&&... args) {
        auto* object = model.make<Object>(std::forward<Args>(args)...);
        Layout::inst()->add(*object);
        return object;
    }
    task::Task* makeTask(const std::string& name) {
        auto* job = model.make<task::Task>(name);
        task::AddTask(*job);
        return job;
    }
    task::WObjDataItem* addWObj(task::Task* job) {
        auto* item = model.make<task::WObjDataItem>("wobj");
        item->setObjectFrame(*model.make<task::ObjectFrame>("oframe"));
        job->addChild(*item);
        return item;
    }
    task::ToolDataItem* addToolData(task::Task* job, const sdf::SdfNode* carrier) {
        auto* item = model.make<task::ToolDataItem>("tcp");
        job->addChild(*item);
        item->parentId = carrier->id;
        return item;
    }
    void load() {
        scene().LoadStation();
        pump();
    }
    static Visual* shown(const sdf::SdfNode* object) { return scene().visuals.at(object->id); }
    static bool isShown(const sdf::SdfNode* object) { return scene().visuals.contains(object->id); }
    /// The ids of what hangs under the root, in the order of building.
    static std::vector<std::uint32_t> topLevelIds() {
        std::vector<std::uint32_t> ids;
        for (const Visual* child : scene().root->getChildren()) ids.push_back(child->id);
        return ids;
    }
};

TEST_F(WholeStation, IsBuiltInTheOrderOfItsKinds) {
    task::Task* job = makeTask("job");
    const auto* wobj = addWObj(job);
    auto* component = model.make<smartcomp::UserComponent>("component");
    smartcomp::AddSmartComponent(*component);
    const auto* frame = enter<layout::Frame>("frame");
    const auto* device = enter<layout::Device>("device");
    const auto* tool = enter<layout::Tool>("tool");
    const auto* cloud =
        enter<layout::PointCloud>("cloud", std::vector<rob::PosTemplate<float>>{{0, 0, 0}});
    const auto* part = enter<layout::Part>("part");
    const auto* assembly = enter<layout::Assembly>("assembly");
    auto* first = enter<layout::Manipulator>("first", "abb");
    const auto* second = enter<layout::Manipulator>("second", "kuka");
    auto* base = model.make<layout::BaseFrame>("base");
    base->setPose({{0, 0, 700}, {}});
    first->setBaseObject(*base);
    const std::size_t before = topLevelIds().size();
    load();
    std::vector<std::uint32_t> ids = topLevelIds();
    ids.erase(ids.begin(), ids.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(ids, (std::vector{first->id, base->id, second->id, assembly->id, part->id, cloud->id,
                                tool->id, device->id, frame->id, component->id, wobj->id}));
}

TEST_F(WholeStation, ARobotBringsItsBaseFrameUnderTheRoot) {
    auto* robot = enter<layout::Manipulator>("robot", "abb");
    robot->setPose({{1000, 0, 0}, {}});
    auto* base = model.make<layout::BaseFrame>("base");
    base->setPose({{0, 0, 700}, {}});
    robot->setBaseObject(*base);
    load();
    EXPECT_EQ(shown(base)->getParent(), scene().root);
    EXPECT_EQ(shown(base)->getName(), "task frame for controller");
    EXPECT_EQ(shown(base)->type, VisualType::Frame);
    EXPECT_EQ(shown(base)->getWorldPosition(), (rob::PosTemplate<float>{0, 0, 700}));
    EXPECT_FALSE(selection::VisualSelection::Get()->hasVisual(shown(base)));
}

TEST_F(WholeStation, ARobotWithoutABaseObjectBringsNone) {
    const auto* robot = enter<layout::Manipulator>("robot", "abb");
    const std::size_t before = topLevelIds().size();
    load();
    EXPECT_TRUE(isShown(robot));
    EXPECT_EQ(topLevelIds().size(), before + 1);
}

TEST_F(WholeStation, MechanismsComeWithThePartsOfTheirLinks) {
    auto* robot = enter<layout::Manipulator>("robot", "abb");
    auto* tool = enter<layout::Tool>("tool");
    auto* device = enter<layout::Device>("device");
    std::vector<layout::Part*> parts;
    for (layout::Mechanism* mechanism :
         {static_cast<layout::Mechanism*>(robot), static_cast<layout::Mechanism*>(tool),
          static_cast<layout::Mechanism*>(device)}) {
        auto* link = model.make<layout::Link>("link");
        mechanism->addLink(*link);
        parts.push_back(makeBoxPart(mechanism->name + " part"));
        link->addChild(*parts.back());
    }
    load();
    for (const layout::Part* part : parts) EXPECT_EQ(shown(part)->getBodiesNum(), 1u);
    EXPECT_EQ(shown(robot)->type, VisualType::Manipulator);
    EXPECT_EQ(shown(tool)->type, VisualType::Tool);
    EXPECT_EQ(shown(device)->type, VisualType::Device);
}

TEST_F(WholeStation, WhatStandsInsideACompoundIsLeftToIt) {
    auto* component = model.make<smartcomp::UserComponent>("component");
    auto* nested = model.make<smartcomp::UserComponent>("nested");
    smartcomp::AddSmartComponent(*component);
    smartcomp::AddSmartComponent(*nested);
    auto* tool = enter<layout::Tool>("tool");
    auto* cloud =
        enter<layout::PointCloud>("cloud", std::vector<rob::PosTemplate<float>>{{0, 0, 0}});
    for (sdf::SdfObject* child :
         {static_cast<sdf::SdfObject*>(nested), static_cast<sdf::SdfObject*>(tool),
          static_cast<sdf::SdfObject*>(cloud)})
        component->addChild(*child);
    EXPECT_NO_THROW(load());  // building one twice would throw
    EXPECT_EQ(shown(nested)->getParent(), shown(component));
    EXPECT_EQ(shown(tool)->getParent(), shown(component));
    EXPECT_FALSE(isShown(cloud));  // a component builds no clouds
}

TEST_F(WholeStation, OtherSmartComponentsAreSkipped) {
    auto* spray = model.make<smartcomp::SprayComponent>("spray");
    smartcomp::AddSmartComponent(*spray);
    EXPECT_NO_THROW(load());
    EXPECT_FALSE(isShown(spray));
}

TEST_F(WholeStation, ATasksWorkObjectsComeBeforeItsToolCentrePoints) {
    auto* tool = enter<layout::Tool>("tool");
    task::Task* job = makeTask("job");
    task::WObjDataItem* wobj = addWObj(job);
    // Found only if the work object is there already.
    const auto* tcp = addToolData(job, wobj);
    const auto* other = addToolData(job, tool);
    load();
    EXPECT_EQ(shown(wobj)->getParent(), scene().root);  // the task has no visual
    EXPECT_EQ(shown(tcp)->getParent(), shown(wobj));
    EXPECT_EQ(shown(other)->getParent(), shown(tool));
    EXPECT_EQ(shown(tcp)->type, VisualType::Tcp);
}

TEST_F(WholeStation, AWorkObjectHangsOnTheVisualOfItsParent) {
    const auto* device = enter<layout::Device>("device");
    task::WObjDataItem* wobj = addWObj(makeTask("job"));
    wobj->parentId = device->id;
    load();
    EXPECT_EQ(shown(wobj)->getParent(), shown(device));
}

TEST_F(WholeStation, AttachmentsAndLoadTasksFindEverythingBuilt) {
    auto* robot = enter<layout::Manipulator>("robot", "abb");
    auto* link = model.make<layout::Link>("flange");
    robot->addLink(*link);
    auto* wrist = model.make<layout::Wrist>("wrist");
    robot->setWrist(*wrist, *link);
    const auto* tool = enter<layout::Tool>("tool");
    const auto* tcp = addToolData(makeTask("job"), tool);
    Layout::inst()->addAttachment({tool->id, wrist->id, {{0, 0, 10}, {}}});
    rob::PosTemplate<float> seen{};
    scene().addLoadTask([&] { seen = shown(tcp)->getWorldPosition(); });
    link->setPose({{0, 0, 500}, {}});
    load();
    EXPECT_EQ(shown(tool)->getParent(), shown(wrist));
    EXPECT_TRUE(shown(tool)->attached);
    EXPECT_EQ(seen, (rob::PosTemplate<float>{0, 0, 510}));
}

// --- single objects

TEST_F(WholeStation, AddedMechanismsGoByTheirKind) {
    auto* robot = model.make<layout::Manipulator>("robot", "abb");
    auto* tool = model.make<layout::Tool>("tool");
    auto* device = model.make<layout::Device>("device");
    auto* part = makeBoxPart("part");
    for (sdf::SdfNode* object :
         {static_cast<sdf::SdfNode*>(robot), static_cast<sdf::SdfNode*>(tool),
          static_cast<sdf::SdfNode*>(device), static_cast<sdf::SdfNode*>(part)})
        scene().addMechanism(object, true);
    EXPECT_FALSE(isShown(robot));
    pump();
    EXPECT_EQ(shown(robot)->type, VisualType::Manipulator);
    EXPECT_EQ(shown(tool)->type, VisualType::Tool);
    EXPECT_EQ(shown(device)->type, VisualType::Device);
    EXPECT_FALSE(isShown(part));
}

TEST_F(WholeStation, AddedMechanismsComeWithOrWithoutParts) {
    for (const bool buildChildren : {true, false}) {
        auto* tool = model.make<layout::Tool>("tool");
        auto* link = model.make<layout::Link>("link");
        tool->addLink(*link);
        link->addChild(*makeBoxPart("part"));
        scene().addMechanism(tool, buildChildren);
        pump();
        EXPECT_EQ(shown(tool)->getBodiesNum(), buildChildren ? 1u : 0u);
    }
}

TEST_F(WholeStation, AddedObjectsHangUnderTheirParentsOrTheRoot) {
    auto* part = makeBoxPart("part");
    scene().addPart(part);
    auto* cloud =
        model.make<layout::PointCloud>("cloud", std::vector<rob::PosTemplate<float>>{{0, 0, 0}});
    auto* component = model.make<smartcomp::UserComponent>("component");
    auto* tool = model.make<layout::Tool>("tool");
    cloud->parentId = part->id;
    component->parentId = part->id;
    tool->parentId = 123456789;
    scene().addPointCloud(cloud);
    scene().addSmartComponent(component);
    scene().addMechanism(tool, true);
    pump();
    EXPECT_EQ(shown(cloud)->getParent(), shown(part));
    EXPECT_EQ(shown(component)->getParent(), shown(part));
    EXPECT_EQ(shown(component)->type, VisualType::UserComponent);
    EXPECT_EQ(shown(tool)->getParent(), scene().root);
}

TEST_F(WholeStation, BuildingAndRemovingItManyTimesLeavesNothing) {
    auto* robot = enter<layout::Manipulator>("robot", "abb");
    auto* link = model.make<layout::Link>("link");
    robot->addLink(*link);
    link->addChild(*makeBoxPart("part"));
    auto* wrist = model.make<layout::Wrist>("wrist");
    robot->setWrist(*wrist, *link);
    auto* tool = enter<layout::Tool>("tool");
    tool->addFrame(*model.make<layout::Frame>("tip"));
    enter<layout::PointCloud>("cloud", std::vector<rob::PosTemplate<float>>{{0, 0, 0}});
    task::Task* job = makeTask("job");
    addWObj(job);
    addToolData(job, tool);
    Layout::inst()->addAttachment({tool->id, wrist->id, {}});
    const auto registered = scene().visuals;
    const std::size_t topLevel = scene().root->getChildren().size();
    for (int round = 0; round < 20; ++round) {
        load();
        for (Visual* child : scene().root->getChildren())
            if (!registered.contains(child->id) && scene().visuals.contains(child->id))
                scene().removeVisual(child->id);
        pump();
        ASSERT_EQ(scene().visuals, registered) << round;
        ASSERT_EQ(scene().root->getChildren().size(), topLevel) << round;
        ASSERT_EQ(pickableCount(), 0u) << round;
    }
}

}  // namespace vrn::test
