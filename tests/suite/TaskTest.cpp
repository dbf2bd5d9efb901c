#include "suite/task/Task.h"

#include "suite/sdf/ObjectStore.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "suite/task/Operation.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace {

using namespace vrn::task;
using vrn::sdf::ObjectStore;
using vrn::sdf::ObjectType;

class TaskTest : public testing::Test {
protected:
    TaskTest() {
        frame->setPose({{0, 0, 5}, {}});
        wobj->setObjectFrame(*frame);
        task->addChild(*wobj);
        task->addChild(*path);
    }
    MoveInst* addMove(const DataItem& to, ObjectType type = ObjectType::LinearMove) {
        auto* move = store.make<MoveInst>("move", type, to, *wobj);
        path->addChild(*move);
        return move;
    }

    ObjectStore store;
    Task* task = store.make<Task>("main", 42);
    Path* path = store.make<Path>("path");
    WObjDataItem* wobj = store.make<WObjDataItem>("wobj");
    ObjectFrame* frame = store.make<ObjectFrame>("oframe");
    RobTargetDataItem* target =
        store.make<RobTargetDataItem>("p1", vrn::rob::PoseTemplate<double>({1, 2, 3}, {}));
    JointTargetDataItem* jointTarget = store.make<JointTargetDataItem>("j1");
};

TEST_F(TaskTest, TasksAreListedInOrderUntilTheyEnd) {
    auto* other = store.make<Task>("other");
    AddTask(*other);
    AddTask(*task);
    AddTask(*other);
    EXPECT_EQ(GetAllTasks(), (std::vector{other, task}));
    store.erase(other);
    EXPECT_EQ(GetAllTasks(), std::vector{task});
    RemoveTask(*task);
    EXPECT_TRUE(GetAllTasks().empty());
}

TEST_F(TaskTest, DataIsListedByKind) {
    auto* tool = store.make<ToolDataItem>("tcp");
    task->addChild(*tool);
    task->addChild(*jointTarget);
    EXPECT_EQ(task->getPaths(), std::vector{path});
    EXPECT_EQ(task->getWObjDataItems(), std::vector{wobj});
    EXPECT_EQ(task->getToolDataItems(), std::vector{tool});
    EXPECT_EQ(task->getJointTargetDataItems(), std::vector{jointTarget});
    EXPECT_EQ(task->getManipulatorId(), 42u);
}

TEST_F(TaskTest, PathTellsMovesFromOtherInstructions) {
    MoveInst* first = addMove(*target);
    auto* action = store.make<ActionInst>("gun on");
    path->addChild(*action);
    MoveInst* second = addMove(*target, ObjectType::JointMove);
    EXPECT_EQ(path->getInstructions(), (std::vector<Instruction*>{first, action, second}));
    EXPECT_EQ(path->getMoveInstructions(), (std::vector{first, second}));
    EXPECT_EQ(path->moveInstructionCount(), 2u);
    EXPECT_TRUE(first->isMoveInst());
    EXPECT_FALSE(action->isMoveInst());
    EXPECT_FALSE(action->isRobTargetInst());
    EXPECT_FALSE(action->isJointTargetInst());
    EXPECT_EQ(static_cast<int>(second->objectType), 34);
}

TEST_F(TaskTest, InstructionKnowsItsPathAndTask) {
    MoveInst* move = addMove(*target);
    EXPECT_EQ(move->getPath(), path);
    EXPECT_EQ(move->getTask(), task);
    path->removeChild(*move);
    EXPECT_EQ(move->getPath(), nullptr);
    EXPECT_EQ(move->getTask(), nullptr);
}

TEST_F(TaskTest, KindOfTargetDecidesTheKindOfMove) {
    MoveInst* move = addMove(*target);
    EXPECT_TRUE(move->isRobTargetInst());
    EXPECT_FALSE(move->isJointTargetInst());
    EXPECT_EQ(move->getTargetItem(), target);
    EXPECT_EQ(move->getRobTarget(), target);
    EXPECT_EQ(move->getTargetItemId(), target->id);
    EXPECT_EQ(move->getRobTarget()->getPose().position.y, 2);

    move->setTarget(*jointTarget);
    EXPECT_FALSE(move->isRobTargetInst());
    EXPECT_TRUE(move->isJointTargetInst());
    EXPECT_EQ(move->getTargetItem(), jointTarget);
    EXPECT_EQ(move->getRobTarget(), nullptr);
}

TEST_F(TaskTest, MoveReachesItsWorkObjectsFrame) {
    MoveInst* move = addMove(*target);
    EXPECT_EQ(move->getWObjItemId(), wobj->id);
    ASSERT_EQ(move->getWObjItem(), wobj);
    EXPECT_EQ(move->getWObjItem()->getObjectFrame(), frame);
    EXPECT_EQ(frame->getPose().position.z, 5);
    EXPECT_TRUE(wobj->hasFixedUFrame());
    wobj->setFixedUFrame(false);
    EXPECT_FALSE(wobj->hasFixedUFrame());
}

TEST_F(TaskTest, CirclePointIsThereOnlyWhenSet) {
    MoveInst* move = addMove(*target, ObjectType::CircularMove);
    EXPECT_EQ(static_cast<int>(move->objectType), 33);
    EXPECT_EQ(move->getCircleItemId(), 0u);
    EXPECT_EQ(move->getCircleItem(), nullptr);
    auto* via = store.make<RobTargetDataItem>("via");
    move->setCirclePoint(via);
    EXPECT_EQ(move->getCircleItem(), via);
    EXPECT_EQ(move->getCircleItemId(), via->id);
    move->setCirclePoint(nullptr);
    EXPECT_EQ(move->getCircleItem(), nullptr);
}

TEST_F(TaskTest, ItemThatHasEndedIsNull) {
    MoveInst* move = addMove(*target);
    store.erase(target);
    EXPECT_EQ(move->getTargetItem(), nullptr);
    EXPECT_FALSE(move->isRobTargetInst());
}

TEST_F(TaskTest, MoveOfAnotherKindIsRefused) {
    EXPECT_THROW(store.make<MoveInst>("m", ObjectType::ActionInstruction, *target, *wobj),
                 std::invalid_argument);
}

TEST_F(TaskTest, WorkObjectHasOneObjectFrame) {
    auto* other = store.make<ObjectFrame>("other");
    wobj->setObjectFrame(*other);
    EXPECT_EQ(wobj->getObjectFrame(), other);
    EXPECT_EQ(frame->getContainer(), nullptr);
    store.erase(other);
    EXPECT_EQ(wobj->getObjectFrame(), nullptr);
}

TEST_F(TaskTest, PathOperationHasAPathOnceItIsSet) {
    auto* operation = store.make<PathOperation>("weld");
    EXPECT_FALSE(operation->hasPath());
    EXPECT_EQ(operation->getPathId(), 0u);
    EXPECT_EQ(static_cast<int>(operation->objectType), 52);
    operation->setPathId(path->id);
    EXPECT_TRUE(operation->hasPath());
    EXPECT_EQ(operation->getPathId(), path->id);
}

TEST_F(TaskTest, GroupListsItsOperationsByKind) {
    auto* container = store.make<Operation>("all", ObjectType::PathGroupContainer);
    auto* group = store.make<Operation>("group", ObjectType::PathGroup);
    auto* plain = store.make<PathOperation>("a", path->id);
    auto* single = store.make<PathOperation>("b", path->id, ObjectType::SinglePathOperation);
    group->addChild(*plain);
    container->addChild(*group);
    container->addChild(*single);
    EXPECT_EQ(group->getObjChildren(ObjectType::PathOperation), std::vector{plain->id});
    EXPECT_EQ(container->getObjChildren(ObjectType::PathGroup), std::vector{group->id});
    EXPECT_EQ(container->getObjChildren(ObjectType::SinglePathOperation), std::vector{single->id});
}

TEST_F(TaskTest, OperationsOfForeignKindsAreRefused) {
    EXPECT_THROW(Operation("x", ObjectType::Part), std::invalid_argument);
    EXPECT_THROW(PathOperation("x", 0, ObjectType::PathGroup), std::invalid_argument);
}

}  // namespace
