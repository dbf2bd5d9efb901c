// What a station file says of robot programs: tools, joint targets, moves, groups, reach.

#include <cmath>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "apps/vrnview/readers/Content.h"
#include "apps/vrnview/readers/ModelPoses.h"
#include "suite/layout/Mechanism.h"
#include "suite/sdf/SdfManager.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "suite/task/Operation.h"
#include "suite/task/Task.h"
#include "tests/apps/ArmStation.h"
#include "tests/readers/ReaderTest.h"

namespace vrn::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double degree = std::numbers::pi / 180;

Content TasksOf(const std::string& tasks) {
    return ReadStation(test::ArmStation(R"("tasks": [)" + tasks + "]"), "/nowhere/x.station.json");
}

/// A task with a work object "w" of targets "a" and "b", a tool "tip" and a joint target "rest".
Content TaskWith(const std::string& rest) {
    return TasksOf(R"({"name": "t", "robot": "arm",
        "workObjects": [{"id": "w", "targets": [{"name": "a"}, {"name": "b"}]}],
        "tools": [{"name": "tip", "tool": "pen", "pose": {"position": [120, 0, 0]}},
                  {"name": "side", "tool": "pen"}],
        "jointTargets": [{"name": "rest", "values": {"j1": 90, "j5": -30}}])" +
                   (rest.empty() ? "" : ", " + rest) + "}");
}
Content Moves(const std::string& moves) {
    return TaskWith(R"("paths": [{"name": "p", "moves": [)" + moves + "]}]");
}

const task::MoveInst& MoveOf(const Content& content, std::size_t index) {
    return *content.tasks.at(0)->getPaths().at(0)->getMoveInstructions().at(index);
}

TEST(StationProgram, MovesHaveASpeedAndATool) {
    const Content content = Moves(R"(
        {"type": "joint", "target": "a", "workObject": "w"},
        {"target": "b", "workObject": "w"},
        {"target": "a", "workObject": "w", "speed": 12.5, "tool": "side"})");
    EXPECT_THAT(content.problems, IsEmpty());
    const auto tools = content.tasks.at(0)->getToolDataItems();
    const auto data = [&](std::size_t i) { return content.moves.at(MoveOf(content, i).id); };
    EXPECT_EQ(data(0).speed, defaultJointSpeed);
    EXPECT_EQ(data(1).speed, defaultSpeed);
    EXPECT_EQ(data(2).speed, 12.5);
    EXPECT_EQ(data(0).toolDataId, tools.at(0)->id);
    EXPECT_EQ(data(2).toolDataId, tools.at(1)->id);
}

TEST(StationProgram, TaskWithoutToolsMovesTheWrist) {
    const Content content = TasksOf(R"({"workObjects": [{"id": "w", "targets": [{"name": "a"}]}],
        "paths": [{"moves": [{"target": "a", "workObject": "w"}]}]})");
    EXPECT_THAT(content.problems, IsEmpty());
    EXPECT_EQ(content.moves.at(MoveOf(content, 0).id).toolDataId, 0u);
}

TEST(StationProgram, JointTargetKeepsItsValuesAndStandsWhereTheyTakeTheTool) {
    const Content content = Moves(R"({"type": "joint", "jointTarget": "rest"})");
    EXPECT_THAT(content.problems, IsEmpty());
    const task::MoveInst& move = MoveOf(content, 0);
    EXPECT_TRUE(move.isJointTargetInst());
    EXPECT_EQ(move.getWObjItem()->name, "w");
    const auto& values = content.jointTargets.at(move.getTargetItemId());
    EXPECT_EQ(values.size(), 2u);
    EXPECT_NEAR(values.at("j1"), 90 * degree, 1e-12);
    EXPECT_NEAR(values.at("j5"), -30 * degree, 1e-12);
    // The other joints where the station has them.
    Kinematics kinematics = content.jointed.at(0).kinematics;
    EXPECT_NEAR(kinematics.getValue("j2"), 10 * degree, 1e-12);
    kinematics.setValue("j1", 90 * degree);
    kinematics.setValue("j5", -30 * degree);
    const Pose robot = WorldPose(content, content.ids.at("arm"));
    const Pose tip = Compose(robot, Compose(kinematics.linkPoses().at(6), {{120, 0, 0}, {}}));
    const Pose item = move.getTargetItem()->getPose();
    EXPECT_LT((item.position - tip.position).length(), 1e-9);
    EXPECT_TRUE(item.rotation.isApprox(tip.rotation));
}

TEST(StationProgram, JointTargetOfATaskWithoutToolsStandsAtTheWrist) {
    const Content content = TasksOf(R"({"robot": "arm", "jointTargets": [{"name": "rest"}]})");
    EXPECT_THAT(content.problems, IsEmpty());
    const Pose wrist = WorldPose(content, content.robots.at(0)->wrist()->id);
    const Pose item = content.tasks.at(0)->getJointTargetDataItems().at(0)->getPose();
    EXPECT_LT((item.position - wrist.position).length(), 1e-9);
}

TEST(StationProgram, BadMoveIsNamedWithItsField) {
    const std::vector<std::pair<std::string, std::string>> bad{
        {R"({"type": "curved", "target": "a", "workObject": "w"})",
         "'type' must be linear, joint, circular or action"},
        {R"({"target": "a"})", "'workObject' must be a text"},
        {R"({"target": "a", "workObject": "x"})", "there is no work object 'x'"},
        {R"({"workObject": "w"})", "'target' must be a text"},
        {R"({"target": "x", "workObject": "w"})", "'target' names no target of 'w'"},
        {R"({"type": "circular", "target": "a", "workObject": "w"})", "'circle' must be a text"},
        {R"({"type": "circular", "target": "a", "circle": "x", "workObject": "w"})",
         "'circle' names no target of 'w'"},
        {R"({"target": "a", "circle": "b", "workObject": "w"})", "'circle' is for circular moves"},
        {R"({"jointTarget": "rest", "workObject": "w"})", "'jointTarget' is for joint moves"},
        {R"({"type": "joint", "jointTarget": "x"})",
         "'jointTarget' names no joint target of the task"},
        {R"({"type": "joint", "jointTarget": "rest", "target": "a", "workObject": "w"})",
         "'target' and 'jointTarget' are two targets"},
        {R"({"target": "a", "workObject": "w", "speed": 0})",
         "'speed' must be from 0.001 to 1000000"},
        {R"({"target": "a", "workObject": "w", "speed": -5})",
         "'speed' must be from 0.001 to 1000000"},
        {R"({"target": "a", "workObject": "w", "speed": 1e7})",
         "'speed' must be from 0.001 to 1000000"},
        {R"({"target": "a", "workObject": "w", "speed": "fast"})", "'speed' must be a number"},
        {R"({"target": "a", "workObject": "w", "tool": "x"})",
         "'tool' names 'x', which is no tool of the task"},
    };
    for (const auto& [move, problem] : bad) {
        const Content content = Moves(move);
        EXPECT_THAT(content.problems, ElementsAre("task 't': path 'p': move 1: " + problem))
            << move;
        EXPECT_TRUE(content.tasks.at(0)->getPaths().at(0)->getInstructions().empty()) << move;
    }
}

TEST(StationProgram, UnknownKeysAreNamed) {
    EXPECT_THAT(Moves(R"({"target": "a", "workObject": "w", "velocity": 3},
                         {"type": "action", "target": "a"})")
                    .problems,
                ElementsAre("task 't': path 'p': move 1: the key 'velocity' is not known here",
                            "task 't': path 'p': move 2: the key 'target' is not known here"));
    EXPECT_THAT(TaskWith(R"("programs": [])").problems,
                ElementsAre("task 't': the key 'programs' is not known here"));
}

TEST(StationProgram, BadDataOfATaskIsNamedWithItsField) {
    const auto problems = [](const std::string& rest) {
        return TasksOf(R"({"name": "t", "robot": "arm", )" + rest + "}").problems;
    };
    EXPECT_THAT(problems(R"("tools": [{"name": "x", "tool": "no"}])"),
                ElementsAre("task 't': tool data 'x': 'tool' names 'no', which is not there"));
    EXPECT_THAT(problems(R"("jointTargets": [{"values": {}}])"),
                ElementsAre("task 't': joint target 1: 'name' must be a text"));
    EXPECT_THAT(problems(R"("jointTargets": [{"name": "x", "values": {"j9": 1}}])"),
                ElementsAre("task 't': joint target 'x': no joint 'j9'"));
    EXPECT_THAT(
        problems(R"("jointTargets": [{"name": "x", "values": {"j1": 171}}])"),
        ElementsAre("task 't': joint target 'x': joint 'j1' goes from -170 to 170 degrees"));
    EXPECT_THAT(problems(R"("jointTargets": [{"name": "x", "values": {"j1": "up"}}])"),
                ElementsAre("task 't': joint target 'x': 'j1' must be a number"));
    EXPECT_THAT(TasksOf(R"({"name": "t", "jointTargets": [{"name": "x"}]})").problems,
                ElementsAre("task 't': joint target 'x': the task has no 'robot'"));
}

const std::string twoPaths = R"("paths": [{"name": "p", "id": "first"}, {"name": "q"}])";

TEST(StationProgram, GroupsHoldOperationsOfPaths) {
    const Content content = TaskWith(twoPaths + R"(, "operations": [
        {"type": "pathGroup", "id": "g", "hidden": true,
         "operations": [{"path": "p"}, {"path": "q", "name": "second"}]},
        {"type": "pathGroupContainer", "id": "c", "operations": [
            {"path": "p"}, {"type": "pathGroup", "name": "inner", "operations": [{"path": "q"}]}]},
        {"path": "p"}, {"type": "processPath", "path": "q"}])");
    EXPECT_THAT(content.problems, IsEmpty());
    ASSERT_EQ(content.operations.size(), 4u);
    const auto paths = content.tasks.at(0)->getPaths();
    const task::Operation& group = *content.operations[0];
    EXPECT_EQ(group.objectType, sdf::ObjectType::PathGroup);
    EXPECT_EQ(content.ids.at("g"), group.id);
    EXPECT_TRUE(content.hidden.contains(group.id));
    const auto inGroup = group.getChildrenOf<task::PathOperation>();
    ASSERT_EQ(inGroup.size(), 2u);
    EXPECT_EQ(inGroup[0]->objectType, sdf::ObjectType::PathOperation);
    EXPECT_EQ(inGroup[0]->getPathId(), paths.at(0)->id);
    EXPECT_EQ(inGroup[1]->name, "second");
    const task::Operation& container = *content.operations[1];
    EXPECT_EQ(container.objectType, sdf::ObjectType::PathGroupContainer);
    ASSERT_EQ(container.getChildren().size(), 2u);
    EXPECT_EQ(container.getChildren()[0]->objectType, sdf::ObjectType::SinglePathOperation);
    EXPECT_EQ(container.getChildren()[1]->objectType, sdf::ObjectType::PathGroup);
    EXPECT_EQ(content.operations[2]->objectType, sdf::ObjectType::SinglePathOperation);
    EXPECT_EQ(content.operations[3]->objectType, sdf::ObjectType::ProcessPathOperation);
    EXPECT_EQ(content.ids.at("first"), paths[0]->id);
}

TEST(StationProgram, HiddenOperationOfAGroupHidesItsPath) {
    const Content content = TaskWith(twoPaths + R"(, "operations": [
        {"type": "pathGroup", "operations": [{"path": "p", "hidden": true}, {"path": "q"}]}])");
    EXPECT_THAT(content.hidden, ElementsAre(content.ids.at("first")));
}

TEST(StationProgram, BadOperationIsNamedWithItsField) {
    const std::vector<std::pair<std::string, std::string>> bad{
        {R"({"path": "x"})", "operation 1: 'path' names 'x', which is no path of the task"},
        {R"({"type": "path"})", "operation 1: 'path' must be a text"},
        {R"({"type": "group"})",
         "operation 1: 'type' must be path, processPath, pathGroup or pathGroupContainer"},
        {R"({"type": "pathGroup", "name": "g", "operations": [{"type": "pathGroup"}]})",
         "operation 'g': operation 1: 'type' must be path in a path group"},
        {R"({"type": "pathGroupContainer", "name": "g", "operations": [{"type": "processPath"}]})",
         "operation 'g': operation 1: 'type' must be path or pathGroup in a container"},
        {R"({"type": "pathGroup", "id": "arm"})", "operation 'arm': the id is used twice"},
        {R"({"type": "pathGroup", "hidden": 1})", "operation 1: 'hidden' must be true or false"},
        {R"({"path": "p", "speed": 1})", "operation 1: the key 'speed' is not known here"},
    };
    for (const auto& [operation, problem] : bad)
        EXPECT_THAT(TaskWith(twoPaths + R"(, "operations": [)" + operation + "]").problems,
                    ElementsAre("task 't': " + problem))
            << operation;
}

Content RobotWith(const std::string& envelope) {
    return ReadStation(R"({"format": "vrn-station", "version": 1, "objects": [
        {"type": "robot", "id": "r", "links": [{"name": "a"}, {"name": "b"}],
         "joints": [{"name": "j", "parent": "a", "child": "b"}], "workEnvelope": )" +
                           envelope + "}]}",
                       "/nowhere/x.station.json");
}

TEST(StationEnvelope, ProfileStandsInThePlaneOfXAndZWithItsNormalsToTheRight) {
    const Content content = RobotWith(R"({"profile": [[100, 0], [100, 50], [0, 50]],
                                          "from": -170, "to": 160})");
    EXPECT_THAT(content.problems, IsEmpty());
    ASSERT_EQ(content.envelopes.size(), 1u);
    const WorkEnvelope& envelope = content.envelopes[0];
    EXPECT_EQ(envelope.robot, content.robots.at(0));
    EXPECT_EQ(envelope.outlineParent, content.robots[0]->id);
    EXPECT_THAT(envelope.points, ElementsAre(rob::PosTemplate<double>{100, 0, 0},
                                             rob::PosTemplate<double>{100, 0, 50},
                                             rob::PosTemplate<double>{0, 0, 50}));
    ASSERT_EQ(envelope.normals.size(), 3u);
    EXPECT_NEAR(envelope.normals[0].x, 1, 1e-12);
    EXPECT_NEAR(envelope.normals[1].x, 50 / std::hypot(50, 100), 1e-12);
    EXPECT_NEAR(envelope.normals[1].z, 100 / std::hypot(50, 100), 1e-12);
    EXPECT_NEAR(envelope.normals[2].z, 1, 1e-12);
    EXPECT_NEAR(envelope.fromRad, -170 * degree, 1e-12);
    EXPECT_NEAR(envelope.toRad, 160 * degree, 1e-12);
    EXPECT_TRUE(envelope.showsOutline);
    EXPECT_FALSE(envelope.showsSurface);
}

TEST(StationEnvelope, MayMoveWithALinkAndShowItsSurface) {
    const Content content = RobotWith(R"({"profile": [[1, 0], [1, 5], [1, 0]], "link": "b",
                                          "outline": false, "surface": true})");
    EXPECT_THAT(content.problems, IsEmpty());
    const WorkEnvelope& envelope = content.envelopes.at(0);
    EXPECT_EQ(envelope.outlineParent, content.robots.at(0)->links().at(1)->id);
    EXPECT_FALSE(envelope.showsOutline);
    EXPECT_TRUE(envelope.showsSurface);
    EXPECT_NEAR(envelope.toRad - envelope.fromRad, 2 * std::numbers::pi, 1e-12);
    for (const auto& normal : envelope.normals)
        EXPECT_NEAR(std::hypot(normal.x, normal.z), 1, 1e-12);
}

TEST(StationEnvelope, MistakeCostsTheEnvelopeAndNotTheRobot) {
    const std::vector<std::pair<std::string, std::string>> bad{
        {"3", "'workEnvelope' must be an object in braces"},
        {"{}", "'profile' needs two points at least"},
        {R"({"profile": [[1, 0]]})", "'profile' needs two points at least"},
        {R"({"profile": [[1, 0], [1]]})",
         "'profile' must be a list of pairs of numbers of at most 1e9"},
        {R"({"profile": [[1, 0], [1, 2e9]]})",
         "'profile' must be a list of pairs of numbers of at most 1e9"},
        {R"({"profile": [[1, 0], [1, 0], [2, 0]]})", "'profile' has the point 1 twice in a row"},
        {R"({"profile": [[1, 0], [2, 0]], "link": "x"})", "there is no link 'x'"},
        {R"({"profile": [[1, 0], [2, 0]], "to": "x"})", "'to' must be a number"},
        {R"({"profile": [[1, 0], [2, 0]], "to": 1e300})",
         "'from' and 'to' must be from -3600 to 3600"},
        {R"({"profile": [[1, 0], [2, 0]], "surface": 1})", "'surface' must be true or false"},
    };
    for (const auto& [envelope, problem] : bad) {
        const Content content = RobotWith(envelope);
        EXPECT_THAT(content.problems, ElementsAre("object 'r': 'workEnvelope': " + problem))
            << envelope;
        EXPECT_EQ(content.robots.size(), 1u) << envelope;
        EXPECT_TRUE(content.envelopes.empty()) << envelope;
    }
    EXPECT_THAT(RobotWith(R"({"profile": [[1, 0], [2, 0]], "color": 1})").problems,
                ElementsAre("object 'r': 'workEnvelope': the key 'color' is not known here"));
}

}  // namespace
}  // namespace vrn::host
