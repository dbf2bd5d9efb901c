#include "suite/layout/Layout.h"

#include "suite/layout/Frame.h"
#include "suite/layout/Mechanism.h"
#include "suite/layout/Part.h"
#include "suite/layout/PointCloud.h"
#include "suite/sdf/ObjectStore.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

using namespace vrn::layout;
using vrn::sdf::ObjectStore;
using vrn::sdf::ObjectType;

class LayoutTest : public testing::Test {
protected:
    ~LayoutTest() override { Layout::inst()->clear(); }

    ObjectStore store;
    Layout& layout = *Layout::inst();
};

TEST_F(LayoutTest, ListsAreInTheOrderOfAddingAndHoldAnObjectOnce) {
    Part *a = store.make<Part>("a"), *b = store.make<Part>("b");
    layout.add(*b);
    layout.add(*a);
    layout.add(*b);
    EXPECT_EQ(layout.parts(), (std::vector<Part*>{b, a}));
    layout.remove(*b);
    EXPECT_EQ(layout.parts(), (std::vector<Part*>{a}));
    layout.remove(*b);  // once more does nothing
}

TEST_F(LayoutTest, EachKindHasItsList) {
    auto* manipulator = store.make<Manipulator>("robot", "kuka");
    auto* assembly = store.make<Assembly>("cell");
    auto* cloud = store.make<PointCloud>("scan", std::vector<vrn::rob::PosTemplate<float>>(3));
    auto* tool = store.make<Tool>("gun");
    auto* device = store.make<Device>("table");
    auto* frame = store.make<Frame>("origin");
    layout.add(*manipulator);
    layout.add(*assembly);
    layout.add(*cloud);
    layout.add(*tool);
    layout.add(*device);
    layout.add(*frame);
    EXPECT_EQ(layout.manipulators(), std::vector{manipulator});
    EXPECT_EQ(layout.assemblies(), std::vector{assembly});
    EXPECT_EQ(layout.pointclouds(), std::vector{cloud});
    EXPECT_EQ(layout.tools(), std::vector{tool});
    EXPECT_EQ(layout.devices(), std::vector{device});
    EXPECT_EQ(layout.frames(), std::vector{frame});
    EXPECT_EQ(manipulator->objectType, ObjectType::Manipulator);
    EXPECT_EQ(assembly->objectType, ObjectType::Assembly);
    EXPECT_EQ(tool->objectType, ObjectType::Tool);
    EXPECT_EQ(device->objectType, ObjectType::Device);
    EXPECT_EQ(cloud->points.size(), 3u);

    store.clear();
    EXPECT_TRUE(layout.manipulators().empty());
    EXPECT_TRUE(layout.assemblies().empty());
    EXPECT_TRUE(layout.pointclouds().empty());
    EXPECT_TRUE(layout.tools().empty());
    EXPECT_TRUE(layout.devices().empty());
    EXPECT_TRUE(layout.frames().empty());
}

TEST_F(LayoutTest, ObjectThatEndsTakesItsAttachmentsAndHiddenMarkAlong) {
    Part *a = store.make<Part>("a"), *b = store.make<Part>("b"), *c = store.make<Part>("c");
    layout.addAttachment({a->id, b->id, {{1, 0, 0}, {}}});
    layout.addAttachment({b->id, c->id, {{2, 0, 0}, {}}});
    layout.setHidden(a->id, true);
    layout.setHidden(c->id, true);
    store.erase(a);
    ASSERT_EQ(layout.attachments().size(), 1u);
    EXPECT_EQ(layout.attachments()[0].childId, b->id);
    EXPECT_EQ(layout.attachments()[0].parentId, c->id);
    EXPECT_EQ(layout.attachments()[0].pose.position.x, 2);
    EXPECT_EQ(layout.visibilities(), std::set{c->id});
    store.erase(c);
    EXPECT_TRUE(layout.attachments().empty());
    EXPECT_TRUE(layout.visibilities().empty());
}

TEST_F(LayoutTest, HiddenMarkCanBeTakenBack) {
    layout.setHidden(5, true);
    layout.setHidden(5, false);
    EXPECT_TRUE(layout.visibilities().empty());
}

TEST_F(LayoutTest, ViewPointIsZeroAndIdentityUntilItIsSaved) {
    EXPECT_EQ(layout.lastViewPointPose(), vrn::rob::PoseTemplate<double>());
    const vrn::rob::PoseTemplate<double> pose({0, -500, 200}, {0, 1, 0, 0});
    layout.setLastViewPointPose(pose);
    EXPECT_EQ(layout.lastViewPointPose(), pose);
    layout.clear();
    EXPECT_EQ(layout.lastViewPointPose(), vrn::rob::PoseTemplate<double>());
}

TEST_F(LayoutTest, MechanismListsWhatWasAddedByClass) {
    auto* robot = store.make<Manipulator>("robot", "abb");
    auto *one = store.make<Link>("1"), *two = store.make<Link>("2");
    auto* node = store.make<MechanismNode>("n");
    robot->addLink(*one);
    robot->addNode(*node);
    robot->addLink(*two);
    EXPECT_EQ(robot->links(), (std::vector{one, two}));
    EXPECT_EQ(robot->nodes(), std::vector{node});
    EXPECT_EQ(robot->element->touch("vendor")->as<std::string>(), "abb");
}

TEST_F(LayoutTest, WristIsCarriedByItsLinkAndReplacesAnEarlierOne) {
    auto* robot = store.make<Manipulator>("robot");
    auto* link = store.make<Link>("6");
    robot->addLink(*link);
    EXPECT_EQ(robot->wrist(), nullptr);
    auto *earlier = store.make<Wrist>("w"), *wrist = store.make<Wrist>("w");
    robot->setWrist(*earlier, *link);
    robot->setWrist(*wrist, *link);
    EXPECT_EQ(robot->wrist(), wrist);
    EXPECT_EQ(wrist->parentId, link->id);
    EXPECT_EQ(earlier->getContainer(), nullptr);

    EXPECT_EQ(robot->baseObject(), nullptr);
    auto* base = store.make<BaseFrame>("base");
    robot->setBaseObject(*base);
    EXPECT_EQ(robot->baseObject(), base);
    store.erase(base);
    EXPECT_EQ(robot->baseObject(), nullptr);
}

TEST_F(LayoutTest, FramesHangOnTheToolOrOnTheDevicesCarrier) {
    auto* tool = store.make<Tool>("gun");
    auto* toolFrame = store.make<Frame>("tip");
    tool->addFrame(*toolFrame);
    EXPECT_EQ(tool->frames(), std::vector{toolFrame});
    EXPECT_EQ(toolFrame->parentId, tool->id);

    auto* device = store.make<Device>("table");
    auto* plate = store.make<Link>("plate");
    device->addLink(*plate);
    auto* deviceFrame = store.make<Frame>("centre");
    device->addFrame(*deviceFrame, *plate);
    EXPECT_EQ(device->frames(), std::vector{deviceFrame});
    EXPECT_EQ(deviceFrame->parentId, plate->id);
    EXPECT_FALSE(deviceFrame->isStandalone());
}

}  // namespace
