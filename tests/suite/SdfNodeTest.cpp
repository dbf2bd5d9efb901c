#include "suite/sdf/SdfNode.h"

#include "suite/sdf/ObjectStore.h"

#include <gtest/gtest.h>

#include <any>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

using namespace vrn::sdf;
using Ids = std::vector<std::uint32_t>;

class Thing : public SdfObject {
public:
    explicit Thing(ObjectType type = ObjectType::Part) : SdfObject(type, "thing", "thing") {}
};

TEST(ObjectType, SharedKindsHaveTheirNumbers) {
    const std::vector<std::pair<ObjectType, int>> numbers{{ObjectType::Assembly, 2},
                                                          {ObjectType::Part, 4},
                                                          {ObjectType::Manipulator, 9},
                                                          {ObjectType::Tool, 10},
                                                          {ObjectType::Device, 11},
                                                          {ObjectType::UserComponent, 13},
                                                          {ObjectType::Sensor, 24},
                                                          {ObjectType::SegmentSensor, 25},
                                                          {ObjectType::SprayComponent, 29},
                                                          {ObjectType::MoveInstruction, 31},
                                                          {ObjectType::CircularMove, 33},
                                                          {ObjectType::JointMove, 34},
                                                          {ObjectType::ActionInstruction, 36},
                                                          {ObjectType::PathOperation, 52},
                                                          {ObjectType::SinglePathOperation, 53},
                                                          {ObjectType::ProcessPathOperation, 54},
                                                          {ObjectType::PathGroup, 55},
                                                          {ObjectType::PathGroupContainer, 56}};
    for (const auto& [type, number] : numbers) EXPECT_EQ(static_cast<int>(type), number);
}

TEST(SdfObject, AsTypeHoldsForTheKindAndWhatItDerivesFrom) {
    const Thing move(ObjectType::CircularMove);
    EXPECT_TRUE(move.asType(ObjectType::CircularMove));
    EXPECT_TRUE(move.asType(ObjectType::MoveInstruction));
    EXPECT_FALSE(move.asType(ObjectType::JointMove));
    EXPECT_FALSE(move.asType(ObjectType::None));
    EXPECT_TRUE(Thing(ObjectType::SegmentSensor).asType(ObjectType::Sensor));
    EXPECT_TRUE(Thing(ObjectType::PlaneSensor).asType(ObjectType::Sensor));
    // A station's loader asks for user components first.
    EXPECT_FALSE(Thing(ObjectType::Sensor).asType(ObjectType::UserComponent));
    EXPECT_FALSE(Thing(ObjectType::ActionInstruction).asType(ObjectType::MoveInstruction));
}

TEST(SdfNode, PoseIsIdentityUntilItIsSet) {
    Thing thing;
    EXPECT_EQ(thing.getPose(), vrn::rob::PoseTemplate<double>());
    EXPECT_EQ(thing.element->get("pose"), nullptr);  // asking has not created it
    const vrn::rob::PoseTemplate<double> pose({1, 2, 3}, {0, 0, 1, 0});
    thing.setPose(pose);
    EXPECT_EQ(thing.getPose(), pose);
    EXPECT_EQ(thing.element->asPose("pose"), pose);
    thing.element->set("pose", 5);
    EXPECT_THROW((void)thing.getPose(), std::bad_any_cast);
}

TEST(SdfContainer, ChildrenAreListedInOrderByPointerIdAndKind) {
    ObjectStore store;
    Thing* group = store.make<Thing>(ObjectType::Assembly);
    Thing* a = store.make<Thing>(ObjectType::Part);
    Thing* b = store.make<Thing>(ObjectType::Assembly);
    Thing* c = store.make<Thing>(ObjectType::Part);
    for (Thing* child : {c, a, b}) group->addChild(*child);
    EXPECT_EQ(group->getChildren(), (std::vector<SdfObject*>{c, a, b}));
    EXPECT_EQ(group->getObjChildren(), (Ids{c->id, a->id, b->id}));
    EXPECT_EQ(group->getObjChildren(ObjectType::Part), (Ids{c->id, a->id}));
    EXPECT_EQ(group->getObjChildren(ObjectType::Tool), Ids{});
    EXPECT_EQ(a->parentId, group->id);
}

TEST(SdfContainer, KindOfAChildIsItsOwnNotABase) {
    ObjectStore store;
    Thing* path = store.make<Thing>(ObjectType::Path);
    path->addChild(*store.make<Thing>(ObjectType::LinearMove));
    EXPECT_EQ(path->getObjChildren(ObjectType::MoveInstruction), Ids{});
}

TEST(SdfContainer, ElementOfAChildStandsInItsContainersElement) {
    ObjectStore store;
    Thing* part = store.make<Thing>();
    Thing* body = store.make<Thing>();
    part->addChild(*body);
    EXPECT_EQ(body->element->getParent(), part->element);
    part->removeChild(*body);
    EXPECT_EQ(body->element->getParent(), nullptr);
    EXPECT_EQ(body->parentId, 0u);
}

TEST(SdfContainer, AddingToAnotherContainerMovesTheChild) {
    ObjectStore store;
    Thing *one = store.make<Thing>(), *two = store.make<Thing>(), *child = store.make<Thing>();
    one->addChild(*child);
    two->addChild(*child);
    EXPECT_TRUE(one->getChildren().empty());
    EXPECT_EQ(child->getContainer(), two);
    one->removeChild(*child);  // not its child any more: nothing
    EXPECT_EQ(child->getContainer(), two);
}

TEST(SdfContainer, ObjectCannotHoldItself) {
    ObjectStore store;
    Thing *outer = store.make<Thing>(), *inner = store.make<Thing>();
    outer->addChild(*inner);
    EXPECT_THROW(inner->addChild(*outer), std::invalid_argument);
    EXPECT_THROW(outer->addChild(*outer), std::invalid_argument);
    EXPECT_EQ(outer->getContainer(), nullptr);
}

TEST(SdfObject, StandaloneMeansInsideNoCompound) {
    Thing part, group(ObjectType::Assembly), logic(ObjectType::StationLogic);
    EXPECT_TRUE(part.isStandalone());
    group.addChild(part);
    EXPECT_FALSE(part.isStandalone());
    logic.addChild(part);
    EXPECT_TRUE(part.isStandalone());
}

TEST(SdfObject, EndOfEitherSideLeavesTheOtherWhole) {
    auto part = std::make_unique<Thing>(), body = std::make_unique<Thing>();
    part->addChild(*body);
    body.reset();
    EXPECT_TRUE(part->getChildren().empty());
    EXPECT_TRUE(part->element->getChildren().empty());

    body = std::make_unique<Thing>();
    part->addChild(*body);
    part.reset();
    EXPECT_EQ(body->getContainer(), nullptr);
    EXPECT_EQ(body->element->getParent(), nullptr);
    EXPECT_TRUE(body->isStandalone());
}

TEST(ObjectStore, EraseEndsOneObject) {
    ObjectStore store;
    Thing *one = store.make<Thing>(), *two = store.make<Thing>();
    const std::uint32_t id = one->id;
    store.erase(one);
    EXPECT_EQ(SdfManager::inst()->find(id), nullptr);
    EXPECT_EQ(SdfManager::inst()->find(two->id), two);
}

TEST(ObjectStore, MovingHandsTheObjectsOn) {
    ObjectStore kept;
    const Thing* thing = nullptr;
    {
        ObjectStore made;
        thing = made.make<Thing>();
        kept = std::move(made);
    }
    EXPECT_EQ(SdfManager::inst()->find(thing->id), thing);
}

TEST(ObjectStore, OwnIdIsKept) {
    ObjectStore store;
    EXPECT_EQ(store.makeWithId<Thing>(1'000'000'001)->id, 1'000'000'001u);
}

}  // namespace
