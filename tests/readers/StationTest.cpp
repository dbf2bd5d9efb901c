#include <algorithm>
#include <numbers>

#include "apps/vrnview/readers/CloudPoints.h"
#include "apps/vrnview/readers/Content.h"
#include "apps/vrnview/readers/FileBytes.h"
#include "suite/geom/BodyColorTool.h"
#include "suite/layout/Body.h"
#include "suite/layout/Mechanism.h"
#include "suite/layout/Part.h"
#include "suite/layout/PointCloud.h"
#include "suite/smart/SmartComponent.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "suite/task/Task.h"
#include "tests/apps/TestFiles.h"
#include "tests/readers/ReaderTest.h"

namespace vrn::host {
namespace {

using test::ErrorOf;
using testing::ElementsAre;
using testing::IsEmpty;

class Station : public test::FileTest {
protected:
    Station() {
        test::WriteBinaryStl(folder.getPath() / "box.stl",
                             test::BoxTriangles({0, 0, 0}, {1, 2, 3}));
    }
    /// Of the rest of a station's text, behind its format and version.
    Content read(const std::string& rest) const {
        return ReadStation(
            R"({"format": "vrn-station", "version": 1)" + (rest.empty() ? "" : ", " + rest) + "}",
            folder.getPath() / "cell.station.json");
    }
    Content objects(const std::string& list) const { return read(R"("objects": [)" + list + "]"); }
};

const std::string box = R"({"type": "part", "id": "box", "file": "box.stl"})";

const std::string robot = R"({"type": "robot", "id": "arm", "vendor": "KUKA",
    "pose": {"position": [10, 0, 0]},
    "links": [{"name": "base", "bodies": [{"file": "box.stl", "color": "#112233"}]},
              {"name": "hand", "bodies": [{"file": "box.stl", "pose": {"position": [0, 0, 5]}}]}],
    "joints": [{"name": "j1", "parent": "base", "child": "hand", "axis": [0, 0, 2],
                "origin": {"position": [100, 0, 0]}, "lower": -90, "upper": 90}],
    "jointValues": {"j1": 90}})";

TEST_F(Station, EmptyOneIsAStation) {
    const Content content = read("");
    EXPECT_THAT(content.problems, IsEmpty());
    EXPECT_TRUE(content.parts.empty());
}

TEST_F(Station, PartHasNamePoseColourAndUnit) {
    const Content content =
        objects(R"({"type": "part", "id": "b", "name": "Box", "file": "box.stl", "unit": "m",
                    "color": "#aabbcc", "hidden": true,
                    "pose": {"position": [1, 2, 3], "rpy": [0, 0, 90]}})");
    EXPECT_THAT(content.problems, IsEmpty());
    ASSERT_EQ(content.parts.size(), 1u);
    const layout::Part& part = *content.parts[0];
    EXPECT_EQ(part.name, "Box");
    EXPECT_EQ(content.ids.at("b"), part.id);
    EXPECT_TRUE(content.hidden.contains(part.id));
    EXPECT_EQ(part.getPose().position, (rob::PosTemplate<double>{1, 2, 3}));
    const auto turned = part.getPose().rotation.rotated({1, 0, 0});
    EXPECT_NEAR(turned.y, 1, 1e-12);
    EXPECT_EQ(geometry::BodyColorTool::GetBodyColor(part.bodies().at(0)->id), "#aabbcc");
    EXPECT_FLOAT_EQ(content.meshes.at(0)->getBox().max.z, 3000);
}

TEST_F(Station, QuaternionsAreMadeUnitLength) {
    const Content content =
        objects(R"({"type": "frame", "id": "f", "pose": {"quaternion": [2, 0, 0, 2]}})");
    EXPECT_TRUE(content.frames.at(0)->getPose().rotation.isApprox(
        rob::RotationTemplate<double>(0, 0, std::numbers::pi / 2)));
}

TEST_F(Station, FileNamedTwiceIsReadOnce) {
    const Content content = objects(box + R"(, {"type": "part", "file": "box.stl"}, {"type": "part",
                           "bodies": [{"file": "box.stl"}, {"file": "box.stl", "unit": "m"}]})");
    EXPECT_EQ(content.parts.size(), 3u);
    // Metres are another size.
    EXPECT_EQ(content.meshes.size(), 2u);
}

TEST_F(Station, AssembliesHoldPartsAndAssemblies) {
    const Content content =
        objects(R"({"type": "assembly", "id": "a", "children": [)" + box +
                R"(, {"type": "assembly", "children": [{"type": "part", "file": "box.stl"}]},
            {"type": "frame"}]})");
    EXPECT_THAT(content.problems,
                ElementsAre("object 3: an assembly holds parts and assemblies alone"));
    ASSERT_EQ(content.assemblies.size(), 1u);
    EXPECT_TRUE(content.parts.empty());
    EXPECT_EQ(content.assemblies[0]->getChildren().size(), 2u);
}

TEST_F(Station, RobotMayBeDescribedInPlace) {
    const Content content = objects(robot);
    EXPECT_THAT(content.problems, IsEmpty());
    ASSERT_EQ(content.robots.size(), 1u);
    layout::Manipulator& arm = *content.robots[0];
    EXPECT_EQ(arm.element->touch("vendor")->as<std::string>(), "kuka");
    EXPECT_EQ(arm.getPose().position.x, 10);
    ASSERT_EQ(arm.links().size(), 2u);
    EXPECT_EQ(arm.wrist()->parentId, arm.links()[1]->id);
    const Pose hand = arm.links()[1]->getPose();
    EXPECT_EQ(hand.position.x, 100);
    EXPECT_NEAR(hand.rotation.rotated({1, 0, 0}).y, 1, 1e-12);
    const layout::Body& body = *arm.links()[0]->getChildrenOf<layout::Part>().at(0)->bodies().at(0);
    EXPECT_EQ(body.getMaterialName(), "KUKA");
    EXPECT_EQ(geometry::BodyColorTool::GetBodyColor(body.id), "#112233");
}

TEST_F(Station, RobotMayComeFromAUrdfFile) {
    write("arm.urdf",
          "<robot name='r'><link name='a'/><link name='b'/><joint name='j' type='prismatic'>"
          "<parent link='a'/><child link='b'/><limit lower='0' upper='1'/></joint></robot>");
    const Content content = objects(
        R"({"type": "robot", "file": "arm.urdf", "jointValues": {"j": 250}, "wrist": "a"})");
    EXPECT_THAT(content.problems, IsEmpty());
    EXPECT_EQ(content.robots.at(0)->links()[1]->getPose().position.x, 250);
    EXPECT_EQ(content.robots[0]->wrist()->parentId, content.robots[0]->links()[0]->id);
}

TEST_F(Station, ToolsAndDevicesHaveFrames) {
    const Content content = objects(
        R"({"type": "tool", "id": "t", "bodies": [{"file": "box.stl"}],
            "frames": [{"name": "tip", "pose": {"position": [0, 0, 7]}}, {}]},
           {"type": "device", "id": "d", "links": [{"name": "table"}],
            "frames": [{"name": "top", "link": "table"}, {"name": "foot"},
                       {"name": "lost", "link": "no"}]})");
    EXPECT_THAT(content.problems,
                ElementsAre("object 'd': frame 'lost': 'link' names no link of the device"));
    ASSERT_EQ(content.tools.at(0)->frames().size(), 2u);
    EXPECT_EQ(content.tools[0]->frames()[0]->getPose().position.z, 7);
    const layout::Device& device = *content.devices.at(0);
    ASSERT_EQ(device.frames().size(), 2u);
    EXPECT_EQ(device.frames()[0]->parentId, device.links().at(0)->id);
    EXPECT_EQ(device.frames()[1]->parentId, device.id);
}

TEST_F(Station, CloudsTakeTheirUnit) {
    write("a.xyz", "1 2 3\n4 5 6\n");
    const Content content =
        objects(R"({"type": "cloud", "id": "c", "file": "a.xyz", "unit": "m"})");
    EXPECT_EQ(content.clouds.at(0)->points[1].x, 4000);
}

TEST_F(Station, SensorsArePlanesOrSegmentsFromTheirPose) {
    const Content content = objects(
        R"({"type": "sensor", "id": "gate", "pose": {"position": [1, 2, 3]},
            "sideA": [100, 0, 0], "sideB": [0, 0, 50]},
           {"type": "sensor", "id": "beam", "to": [0, 0, 300], "radius": 4},
           {"type": "sensor", "id": "both", "to": [0, 0, 1], "sideA": [1, 0, 0]},
           {"type": "sensor", "id": "none"},
           {"type": "sensor", "id": "half", "sideA": [1, 0, 0]})");
    EXPECT_THAT(content.problems,
                ElementsAre("object 'both': a sensor needs either 'sideA' and 'sideB' or 'to'",
                            "object 'none': a sensor needs either 'sideA' and 'sideB' or 'to'",
                            testing::HasSubstr("object 'half': 'sideB'")));
    ASSERT_EQ(content.sensors.size(), 2u);
    EXPECT_EQ(content.sensors[0]->objectType, sdf::ObjectType::PlaneSensor);
    EXPECT_EQ(content.sensors[0]->getPosition(), (rob::PosTemplate<double>{1, 2, 3}));
    rob::XYZTemplate<double> side;
    EXPECT_TRUE(content.sensors[0]->getPropertyXYZ(3, side));
    EXPECT_EQ(side.z, 50);
    EXPECT_EQ(content.sensors[1]->objectType, sdf::ObjectType::SegmentSensor);
    double radius = 0;
    EXPECT_TRUE(content.sensors[1]->getPropertyDouble(3, radius));
    EXPECT_EQ(radius, 4);
    EXPECT_TRUE(content.ids.contains("gate"));
}

TEST_F(Station, WorkObjectsHoldTargetsInTheirObjectFrame) {
    const Content content =
        objects(box + R"(, {"type": "workObject", "id": "w", "parent": "box", "fixed": false,
            "objectFrame": {"position": [0, 0, 1]},
            "targets": [{"name": "p1", "pose": {"position": [1, 0, 0]}}, {"name": "p2"}]})");
    EXPECT_THAT(content.problems, IsEmpty());
    const task::WObjDataItem& wobj = *content.workObjects.at(0);
    EXPECT_FALSE(wobj.hasFixedUFrame());
    EXPECT_EQ(wobj.parentId, content.ids.at("box"));
    ASSERT_EQ(content.targets.size(), 2u);
    EXPECT_EQ(content.targets[0]->parentId, wobj.getObjectFrame()->id);
}

TEST_F(Station, TasksHaveWorkObjectsToolDataAndPaths) {
    const Content content = read(R"("objects": [)" + robot + R"(, {"type": "tool", "id": "t"}],
        "tasks": [{"name": "T_ROB1", "robot": "arm",
            "workObjects": [{"name": "w", "targets": [{"name": "a"}, {"name": "b"}]}],
            "tools": [{"name": "tcp", "tool": "t", "pose": {"position": [0, 0, 9]}}],
            "paths": [{"name": "main", "moves": [
                {"type": "joint", "target": "a", "workObject": "w"},
                {"type": "circular", "target": "b", "circle": "a", "workObject": "w"},
                {"type": "action", "name": "on"},
                {"target": "gone", "workObject": "w"}]}]}])");
    EXPECT_THAT(content.problems,
                ElementsAre("task 'T_ROB1': path 'main': move 4: 'target' names no target of 'w'"));
    ASSERT_EQ(content.tasks.size(), 1u);
    const task::Task& task = *content.tasks[0];
    EXPECT_EQ(task.getManipulatorId(), content.robots.at(0)->id);
    ASSERT_EQ(task.getToolDataItems().size(), 1u);
    EXPECT_EQ(task.getToolDataItems()[0]->parentId, content.ids.at("t"));
    ASSERT_EQ(task.getWObjDataItems().size(), 1u);
    EXPECT_EQ(task.getWObjDataItems()[0]->parentId, 0u);
    const auto moves = task.getPaths().at(0)->getMoveInstructions();
    ASSERT_EQ(moves.size(), 2u);
    EXPECT_EQ(moves[1]->getCircleItem(), content.targets[0]);
    EXPECT_EQ(task.getPaths()[0]->getInstructions().size(), 3u);
}

TEST_F(Station, AttachmentsGoToTheWristOrALink) {
    const Content content = read(R"("objects": [)" + robot + ", " + box +
                                 R"(, {"type": "tool", "id": "t"}], "attachments": [
        {"child": "t", "parent": "arm", "pose": {"position": [0, 0, 4]}},
        {"child": "box", "parent": "arm", "link": "base"}])");
    EXPECT_THAT(content.problems, IsEmpty());
    ASSERT_EQ(content.attachments.size(), 2u);
    const layout::Manipulator& arm = *content.robots.at(0);
    EXPECT_EQ(content.attachments[0].childId, content.ids.at("t"));
    EXPECT_EQ(content.attachments[0].parentId, arm.wrist()->id);
    EXPECT_EQ(content.attachments[0].pose.position.z, 4);
    EXPECT_EQ(content.attachments[1].parentId, arm.links()[0]->id);
}

TEST_F(Station, NothingIsAttachedToItself) {
    const std::string three =
        R"("objects": [{"type": "assembly", "id": "a", "children": [)" + box +
        R"(]}, {"type": "frame", "id": "f", "parent": "a"}, {"type": "tool", "id": "t"}],
           "attachments": [)";
    const auto problems = [&](const std::string& attachments) {
        return read(three + attachments + "]").problems;
    };
    EXPECT_THAT(problems(R"({"child": "a", "parent": "a"})"),
                ElementsAre("attachment 1: 'a' would be attached to itself"));
    EXPECT_THAT(problems(R"({"child": "a", "parent": "box"})"),
                ElementsAre("attachment 1: 'a' would be attached to itself"));
    EXPECT_THAT(problems(R"({"child": "a", "parent": "f"})"),
                ElementsAre("attachment 1: 'a' would be attached to itself"));
    EXPECT_THAT(problems(R"({"child": "t", "parent": "a"}, {"child": "a", "parent": "t"})"),
                ElementsAre("attachment 2: 'a' would be attached to itself"));
    EXPECT_THAT(problems(R"({"child": "t", "parent": "a"}, {"child": "t", "parent": "f"})"),
                ElementsAre("attachment 2: 't' is attached already"));
    EXPECT_THAT(problems(R"({"child": "box", "parent": "t"})"),
                ElementsAre("attachment 1: 'box' is inside another object and cannot be attached"));
    EXPECT_THAT(problems(R"({"child": "t", "parent": "no"})"),
                ElementsAre("attachment 1: 'parent' names 'no', which is not there"));
    EXPECT_THAT(problems(R"({"child": "t", "parent": "a", "link": "x"})"),
                ElementsAre("attachment 1: there is no link 'x'"));
}

TEST_F(Station, CameraIsKept) {
    const Content content = read(R"("camera": {"position": [1, 2, 3], "target": [4, 5, 6]})");
    EXPECT_EQ(content.camera, (CameraSpot{{1, 2, 3}, {4, 5, 6}}));
}

TEST_F(Station, OneBadObjectLeavesTheRest) {
    const std::vector<std::pair<std::string, std::string>> bad{
        {R"({"type": "part", "id": "x", "file": "no.stl"})",
         "object 'x': no.stl: No such file or directory"},
        {R"({"type": "part", "id": "x", "file": "cell.obj"})",
         "object 'x': cell.obj: not a file of bodies (supported: .step .stp .iges .igs .brep "
         ".stl)"},
        {R"({"type": "part", "id": "box", "file": "box.stl"})",
         "object 'box': the id is used twice"},
        {R"({"type": "house"})",
         "object 2: 'type' must be part, assembly, robot, tool, device, cloud, frame, "
         "sensor or workObject"},
        {R"({"id": "x"})", "object 'x': 'type' must be a text"},
        {R"({"type": 3})", "object 2: 'type' must be a text"},
        {"7", "object 2: must be an object in braces"},
        {"null", "object 2: must be an object in braces"},
        {R"({"type": "part", "file": "box.stl", "unit": "ft"})",
         "object 2: 'unit' must be mm, cm, m or in"},
        {R"({"type": "part", "file": "box.stl", "color": "red"})",
         "object 2: 'color' must be a colour as #RRGGBB"},
        {R"({"type": "frame", "pose": {"position": [1, 2]}})",
         "object 2: 'position' must be a list of 3 numbers"},
        {R"({"type": "frame", "pose": {"position": [1, 2, "3"]}})",
         "object 2: 'position' must be a list of 3 numbers"},
        {R"({"type": "frame", "pose": {"position": [1, 2, 1e300]}})",
         "object 2: 'position' must be at most 1e9 from the origin"},
        {R"({"type": "frame", "pose": {"quaternion": [0, 0, 0, 0]}})",
         "object 2: 'quaternion' must be longer than 0"},
        {R"({"type": "frame", "pose": {"rpy": [0, 0, 0], "quaternion": [1, 0, 0, 0]}})",
         "object 2: 'pose' must be turned by rpy or quaternion, not by both"},
        {R"({"type": "frame", "pose": {"xyz": [0, 0, 0]}})",
         "object 2: 'pose' has the unknown key 'xyz'"},
        {R"({"type": "frame", "pose": [1, 2, 3]})", "object 2: 'pose' must be an object in braces"},
        {R"({"type": "frame", "hidden": 1})", "object 2: 'hidden' must be true or false"},
        {R"({"type": "frame", "parent": "no"})",
         "object 2: 'parent' names 'no', which is not there"},
        {R"({"type": "robot", "links": []})", "object 2: there are no links"},
        {R"({"type": "robot", "links": [{"name": "a"}, {"name": "a"}]})",
         "object 2: there are two links 'a'"},
        {R"({"type": "robot", "links": [{"name": "a"}], "joints": [{"name": "j", "parent": "a",
             "child": "b"}]})",
         "object 2: there is no link 'b'"},
        {R"({"type": "robot", "links": [{"name": "a"}, {"name": "b"}], "joints": [
             {"name": "j", "parent": "a", "child": "b"}, {"name": "k", "parent": "b",
             "child": "a"}]})",
         "object 2: the links form a cycle: 'a'"},
        {R"({"type": "robot", "links": [{"name": "a"}], "wrist": "b"})",
         "object 2: there is no link 'b'"},
        {R"({"type": "robot", "file": "no.urdf"})", "object 2: no.urdf: No such file or directory"},
        {R"({"type": "part", "file": "box.stl", "faceColors": {"1": "#112233"}})",
         "object 2: box.stl: 'faceColors' needs a file of one body with faces"},
    };
    for (const auto& [object, problem] : bad) {
        const Content content = objects(box + ", " + object);
        EXPECT_THAT(content.problems, ElementsAre(problem)) << object;
        EXPECT_EQ(content.parts.size(), 1u) << object;
    }
}

TEST_F(Station, OneBadBodyLeavesTheOthers) {
    const Content content = objects(
        R"({"type": "part", "id": "x", "bodies": [{"file": "no.stl"}, {"file": "box.stl"}, 3]})");
    EXPECT_THAT(content.problems, ElementsAre("object 'x': no.stl: No such file or directory",
                                              "object 'x': must be an object in braces"));
    EXPECT_EQ(content.parts.at(0)->bodies().size(), 1u);
}

TEST_F(Station, BadJointValueLeavesTheRobot) {
    const Content content = objects(
        R"({"type": "robot", "id": "r", "links": [{"name": "a"}], "jointValues": {"x": 1}})");
    EXPECT_THAT(content.problems, ElementsAre("object 'r': no joint 'x'"));
    EXPECT_EQ(content.robots.size(), 1u);
}

TEST_F(Station, UnknownKeysAreNamedAndPassedOver) {
    const Content content =
        objects(R"({"type": "part", "id": "x", "file": "box.stl", "colour": "#000000"})");
    EXPECT_THAT(content.problems, ElementsAre("object 'x': the key 'colour' is not known here"));
    EXPECT_EQ(content.parts.size(), 1u);
    EXPECT_THAT(read(R"("stuff": [])").problems,
                ElementsAre("station: the key 'stuff' is not known here"));
}

TEST_F(Station, AssembliesNestedTooDeepAreRefused) {
    std::string nested = box;
    for (int i = 0; i < 100; ++i) nested = R"({"type": "assembly", "children": [)" + nested + "]}";
    const Content content = objects(nested);
    EXPECT_THAT(content.problems, ElementsAre("object 1: assemblies are nested too deep"));
}

TEST_F(Station, WhatIsNoStationIsOneMessage) {
    const auto error = [&](const std::string& text) {
        return ErrorOf([&] { (void)ReadStation(text, folder.getPath() / "x.station.json"); });
    };
    for (const char* text : {"", "{", "[1, 2", R"({"format": "vrn-station")", "\xff\xfe", "{]"})
        EXPECT_THAT(error(text), testing::StartsWith("not JSON: ")) << text;
    EXPECT_EQ(error("[]"), "must be an object in braces");
    EXPECT_EQ(error("{}"), "not a station: 'format' must be vrn-station");
    EXPECT_EQ(error(R"({"format": "other"})"), "not a station: 'format' must be vrn-station");
    EXPECT_EQ(error(R"({"format": "vrn-station"})"), "'version' must be a number");
    EXPECT_EQ(error(R"({"format": "vrn-station", "version": 2})"),
              "this is a station of version 2, only version 1 is known");
    EXPECT_EQ(error(R"({"format": "vrn-station", "version": 1, "objects": {}})"),
              "'objects' must be a list");
    EXPECT_THAT(error(R"({"format": "vrn-station", "version": 1e999})"),
                testing::StartsWith("not JSON: "));
    EXPECT_THAT(error(std::string(100'000, '[')), testing::StartsWith("not JSON: "));
    EXPECT_EQ(error(std::string(100'000, '[') + std::string(100'000, ']')),
              "must be an object in braces");
}

/// What the fuzzers start from and what they have found.
class FuzzCorpus : public testing::TestWithParam<const char*> {};

TEST_P(FuzzCorpus, EveryFileIsReadOrRefused) {
    std::size_t files = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(VRN_FUZZ_CORPUS) / GetParam())) {
        const std::string bytes = ReadBytes(entry.path());
        const std::vector<std::function<void()>> readers{
            [&] { (void)ReadPly(bytes); },
            [&] { (void)ReadPcd(bytes); },
            [&] { (void)ReadPointText(bytes); },
            [&] { (void)ReadUrdf(bytes); },
            [&] { (void)ReadStation(bytes, "/nowhere/x.station.json"); },
        };
        for (const auto& read : readers) EXPECT_NE(ErrorOf(read), "") << entry.path();
        ++files;
    }
    EXPECT_GT(files, 2u);
}

INSTANTIATE_TEST_SUITE_P(All, FuzzCorpus, testing::Values("cloud", "station"));

/// The page that tells what stands in a station file shows one.
TEST(StationPage, ExampleIsAStation) {
    const std::string page = ReadBytes(VRN_STATION_PAGE);
    const std::size_t start = page.find("```json") + 8;
    const std::string text = page.substr(start, page.find("```", start) - start);
    const Content content = ReadStation(text, "/nowhere/x.station.json");
    EXPECT_EQ(content.tools.size(), 1u);
    EXPECT_EQ(content.targets.size(), 1u);
    EXPECT_TRUE(content.camera);
    // Nothing but its files is missing.
    for (const std::string& problem : content.problems)
        EXPECT_THAT(problem, testing::AnyOf(testing::HasSubstr("No such file or directory"),
                                            testing::HasSubstr("names 'arm', which is not there")));
}

/// The second one is of a task; its robot's file stands nowhere, so another one takes its place.
TEST(StationPage, TaskOfTheExampleIsWhole) {
    const std::string page = ReadBytes(VRN_STATION_PAGE);
    const std::size_t start = page.find("```json", page.find("## Tasks")) + 8;
    std::string text = page.substr(start, page.find("```", start) - start);
    const std::string urdf = R"("file": "arm/robot.urdf")";
    ASSERT_NE(text.find(urdf), std::string::npos);
    text.replace(text.find(urdf), urdf.size(),
                 R"("links": [{"name": "a"}, {"name": "b"}, {"name": "c"}],
                    "joints": [{"name": "joint_2", "parent": "a", "child": "b"},
                               {"name": "joint_5", "parent": "b", "child": "c"}])");
    const Content content = ReadStation(text, "/nowhere/x.station.json");
    EXPECT_THAT(content.problems, ElementsAre(testing::HasSubstr("No such file or directory")));
    ASSERT_EQ(content.tasks.size(), 1u);
    EXPECT_EQ(content.tasks[0]->getPaths().at(0)->getInstructions().size(), 4u);
    EXPECT_EQ(content.jointTargets.size(), 1u);
    EXPECT_EQ(content.operations.size(), 1u);
}

}  // namespace
}  // namespace vrn::host
