#include "apps/vrnview/readers/Robot.h"

#include <cmath>
#include <format>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <numbers>

#include "apps/vrnview/readers/FileBytes.h"
#include "tests/readers/ReaderTest.h"

namespace vrn::host {
namespace {

using test::ErrorOf;
using Pos = rob::PosTemplate<double>;

constexpr double halfTurn = std::numbers::pi;

Joint Turning(const std::string& name, std::size_t parent, std::size_t child, const Pos& at,
              const rob::Vec3Template<double>& axis = {0, 0, 1}) {
    Joint joint;
    joint.name = name;
    joint.kind = Joint::Kind::Turning;
    joint.parent = parent;
    joint.child = child;
    joint.origin.position = at;
    joint.axis = axis;
    return joint;
}

std::vector<std::string> Names(std::size_t count) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) names.push_back(std::format("link{}", i));
    return names;
}

void ExpectNear(const Pos& got, const Pos& wanted, double tolerance = 1e-9) {
    EXPECT_NEAR(got.x, wanted.x, tolerance);
    EXPECT_NEAR(got.y, wanted.y, tolerance);
    EXPECT_NEAR(got.z, wanted.z, tolerance);
}

TEST(Kinematics, LinksFollowTheirJoints) {
    // The second joint is given first: the order of the description does not count.
    Kinematics arm(Names(3), {Turning("b", 1, 2, {100, 0, 0}), Turning("a", 0, 1, {0, 0, 50})});
    ExpectNear(arm.linkPoses()[2].position, {100, 0, 50});
    arm.setValue("a", halfTurn / 2);
    ExpectNear(arm.linkPoses()[2].position, {0, 100, 50});
    EXPECT_EQ(arm.getJoints()[0].name, "a");
    EXPECT_EQ(arm.getTip(), 2u);
}

TEST(Kinematics, SlidingJointsMoveAlongTheirAxis) {
    Joint slide = Turning("s", 0, 1, {1, 2, 3}, {0, 1, 0});
    slide.kind = Joint::Kind::Sliding;
    Kinematics axis(Names(2), {slide});
    axis.setValue("s", 250);
    ExpectNear(axis.linkPoses()[1].position, {1, 252, 3});
}

TEST(Kinematics, FollowersTakeFactorAndOffset) {
    Joint finger = Turning("right", 0, 2, {});
    finger.mimic = Joint::Mimic{"left", -2, 0.25};
    Kinematics gripper(Names(3), {Turning("left", 0, 1, {}), finger});
    gripper.setValue("left", 0.5);
    EXPECT_DOUBLE_EQ(gripper.getValue("right"), -0.75);
    EXPECT_EQ(ErrorOf([&] { gripper.setValue("right", 0); }), "joint 'right' follows joint 'left'");
}

TEST(Kinematics, LimitsAreKept) {
    Joint joint = Turning("a", 0, 1, {});
    joint.lower = -halfTurn / 2;
    joint.upper = halfTurn;
    Kinematics arm(Names(2), {joint});
    arm.setValue("a", halfTurn);
    for (const double bad :
         {halfTurn + 0.01, -halfTurn, std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_EQ(ErrorOf([&] { arm.setValue("a", bad); }),
                  "joint 'a' goes from -90 to 180 degrees");
    EXPECT_DOUBLE_EQ(arm.getValue("a"), halfTurn);
}

TEST(Kinematics, JointWhoseLimitsLeaveOutZeroStartsAtTheNearer) {
    Joint up = Turning("up", 0, 1, {}), down = Turning("down", 0, 2, {});
    up.lower = 0.5, up.upper = 1;
    down.lower = -1, down.upper = -0.5;
    const Kinematics arm(Names(3), {up, down});
    EXPECT_DOUBLE_EQ(arm.getValue("up"), 0.5);
    EXPECT_DOUBLE_EQ(arm.getValue("down"), -0.5);
}

TEST(Kinematics, UnknownAndFixedJointsAreNotSet) {
    Joint fixed = Turning("f", 0, 1, {});
    fixed.kind = Joint::Kind::Fixed;
    Kinematics arm(Names(2), {fixed});
    EXPECT_EQ(ErrorOf([&] { arm.setValue("x", 0); }), "no joint 'x'");
    EXPECT_EQ(ErrorOf([&] { arm.setValue("f", 0); }), "joint 'f' is fixed");
    EXPECT_TRUE(arm.hasJoint("f"));
    EXPECT_FALSE(arm.hasJoint("x"));
    EXPECT_THROW((void)arm.getValue("x"), std::out_of_range);
}

TEST(Kinematics, LinksThatFormNoTreeAreRefused) {
    const auto error = [](std::size_t links, std::vector<Joint> joints) {
        return ErrorOf([&] { const Kinematics arm(Names(links), std::move(joints)); });
    };
    EXPECT_EQ(error(0, {}), "there are no links");
    EXPECT_EQ(error(1, {}), "nothing");
    EXPECT_EQ(error(1, {Turning("a", 0, 0, {})}), "the links form a cycle: 'link0'");
    EXPECT_EQ(error(2, {Turning("a", 0, 1, {}), Turning("b", 1, 0, {})}),
              "the links form a cycle: 'link0'");
    EXPECT_EQ(error(4, {Turning("a", 0, 1, {}), Turning("b", 2, 3, {}), Turning("c", 3, 2, {})}),
              "the links form a cycle: 'link2'");
    EXPECT_EQ(error(3, {Turning("a", 0, 2, {}), Turning("b", 1, 2, {})}),
              "link 'link2' hangs on two joints");
    EXPECT_EQ(error(3, {Turning("a", 0, 1, {})}),
              "links 'link0' and 'link2' both hang on no joint");
    EXPECT_EQ(error(3, {Turning("a", 0, 1, {}), Turning("a", 1, 2, {})}),
              "there are two joints 'a'");
    EXPECT_EQ(error(1, {Turning("a", 0, 1, {})}), "joint 'a' names a link that is not there");
}

TEST(Kinematics, FollowersOfNothingAndOfFollowersAreRefused) {
    Joint a = Turning("a", 0, 1, {}), b = Turning("b", 1, 2, {});
    a.mimic = Joint::Mimic{"c"};
    EXPECT_EQ(ErrorOf([&] { const Kinematics arm(Names(3), {a, b}); }),
              "joint 'a' follows 'c', which is not there");
    a.mimic = Joint::Mimic{"b"};
    b.mimic = Joint::Mimic{"a"};
    EXPECT_EQ(ErrorOf([&] { const Kinematics arm(Names(3), {a, b}); }),
              "joint 'a' follows 'b', which follows another");
}

const std::string twoLinks =
    "<link name='a'/><link name='b'><visual><origin xyz='0 0 0.5' rpy='0 0 1.5'/>"
    "<geometry><mesh filename='b.stl' scale='0.001 0.001 0.001'/></geometry>"
    "<material name='grey'/></visual></link>";
const std::string oneJoint =
    "<joint name='j' type='revolute'><origin xyz='1 2 3'/><parent link='a'/><child link='b'/>"
    "<axis xyz='0 0 2'/><limit lower='-1' upper='2'/></joint>";

RobotDescription Read(const std::string& inside) {
    return ReadUrdf("<?xml version='1.0'?><robot name='r'>" + inside + "</robot>");
}

TEST(ReadUrdf, MetresBecomeMillimetres) {
    const RobotDescription robot = Read(
        "<material name='grey'><color rgba='0.5 0.5 0.5 1'/></material>" + twoLinks + oneJoint);
    EXPECT_EQ(robot.name, "r");
    ASSERT_EQ(robot.links.size(), 2u);
    ASSERT_EQ(robot.links[1].shapes.size(), 1u);
    const LinkShape& shape = robot.links[1].shapes[0];
    EXPECT_EQ(shape.file, "b.stl");
    EXPECT_DOUBLE_EQ(shape.size.x, 1);
    EXPECT_EQ(shape.origin.position, (Pos{0, 0, 500}));
    EXPECT_TRUE(shape.origin.rotation.isApprox(rob::RotationTemplate<double>(0, 0, 1.5)));
    EXPECT_EQ(shape.colour, "#808080");
    const Joint& joint = robot.kinematics.getJoints().at(0);
    EXPECT_EQ(joint.origin.position, (Pos{1000, 2000, 3000}));
    EXPECT_DOUBLE_EQ(joint.axis.z, 1) << "made unit length";
    EXPECT_DOUBLE_EQ(joint.lower.value(), -1);
    EXPECT_DOUBLE_EQ(joint.upper.value(), 2);
}

TEST(ReadUrdf, EveryTypeOfJointIsKnown) {
    const auto kind = [](const std::string& type) {
        return Read("<link name='a'/><link name='b'/><joint name='j' type='" + type +
                    "'><parent link='a'/><child link='b'/><limit lower='-1' upper='1'/></joint>")
            .kinematics.getJoints()
            .at(0);
    };
    EXPECT_EQ(kind("revolute").kind, Joint::Kind::Turning);
    EXPECT_EQ(kind("continuous").kind, Joint::Kind::Turning);
    EXPECT_FALSE(kind("continuous").lower) << "turns without end";
    EXPECT_EQ(kind("prismatic").kind, Joint::Kind::Sliding);
    EXPECT_DOUBLE_EQ(kind("prismatic").upper.value(), 1000);
    for (const char* still : {"fixed", "floating", "planar"})
        EXPECT_EQ(kind(still).kind, Joint::Kind::Fixed);
    EXPECT_EQ(kind("revolute").axis.x, 1) << "the axis is x where none is named";
}

TEST(ReadUrdf, SimpleShapesAreKept) {
    const RobotDescription robot = Read(
        "<link name='a'><visual><geometry><box size='1 2 3'/></geometry></visual>"
        "<visual><geometry><cylinder radius='0.1' length='2'/></geometry></visual>"
        "<visual><geometry><sphere radius='0.2'/></geometry></visual>"
        "<visual><geometry><capsule radius='1'/></geometry></visual></link>");
    ASSERT_EQ(robot.links[0].shapes.size(), 3u);
    EXPECT_EQ(robot.links[0].shapes[0].kind, LinkShape::Kind::Box);
    EXPECT_DOUBLE_EQ(robot.links[0].shapes[1].size.x, 100);
    EXPECT_DOUBLE_EQ(robot.links[0].shapes[1].size.y, 2000);
    EXPECT_THAT(robot.problems, testing::ElementsAre("link 'a': its shape is of no known kind"));
}

TEST(ReadUrdf, WhatIsWrongIsNamed) {
    EXPECT_THAT(ErrorOf([] { (void)ReadUrdf("<robot"); }), testing::StartsWith("not XML: "));
    EXPECT_THAT(ErrorOf([] { (void)ReadUrdf(""); }), testing::StartsWith("not XML: "));
    EXPECT_EQ(ErrorOf([] { (void)ReadUrdf("<html/>"); }), "not a URDF file: it has no robot");
    const std::vector<std::pair<std::string, std::string>> wrong{
        {"", "the robot has no links"},
        {"<link name='a'/><link name='a'/>", "there are two links 'a'"},
        {twoLinks + "<joint name='j' type='revolute'><parent link='a'/><child link='z'/></joint>",
         "joint 'j': there is no child link 'z'"},
        {twoLinks + "<joint name='j' type='ball'><parent link='a'/><child link='b'/></joint>",
         "joint 'j': 'ball' is no type of joint"},
        {twoLinks + "<joint name='j' type='revolute'><parent link='a'/><child link='b'/>"
                    "<axis xyz='0 0 0'/></joint>",
         "joint 'j': its axis has no direction"},
        {twoLinks + "<joint name='j' type='revolute'><origin xyz='0 nan 0'/><parent link='a'/>"
                    "<child link='b'/></joint>",
         "joint 'j': 'nan' is not a number"},
        {twoLinks + "<joint name='j' type='revolute'><origin xyz='0 1'/><parent link='a'/>"
                    "<child link='b'/></joint>",
         "joint 'j': '' is not a number"},
        {twoLinks + "<joint name='j' type='revolute'><origin xyz='0 1 2 3'/><parent link='a'/>"
                    "<child link='b'/></joint>",
         "joint 'j': xyz has more than 3 numbers"},
        {twoLinks + "<joint name='j' type='revolute'><origin xyz='0 1e30 2'/><parent link='a'/>"
                    "<child link='b'/></joint>",
         "joint 'j': xyz is too large"},
        {twoLinks + "<joint name='j' type='revolute'><parent link='a'/><child link='b'/>"
                    "<limit lower='2' upper='1'/></joint>",
         "joint 'j': its lower limit is above the upper one"},
        {twoLinks + oneJoint +
             "<joint name='k' type='fixed'><parent link='b'/><child link='a'/>"
             "</joint>",
         "the links form a cycle: 'a'"},
    };
    for (const auto& [inside, message] : wrong)
        EXPECT_EQ(ErrorOf([&] { (void)Read(inside); }), message) << inside;
}

TEST(ReadUrdf, EntitiesAreNotExpanded) {
    const RobotDescription robot = ReadUrdf(
        "<!DOCTYPE r [<!ENTITY big 'xxxxxxxx'>]><robot name='&big;'><link name='a'/>"
        "</robot>");
    EXPECT_EQ(robot.name, "&big;");
}

/// Beside each robot stands a table of the same numbers that another program wrote.
class SampleRobots : public testing::TestWithParam<const char*> {};

TEST_P(SampleRobots, StandAsTheirTableSays) {
    const std::filesystem::path folder = test::Sample("robots") / GetParam();
    VRN_NEEDS_SAMPLE(folder / "robot.urdf");
    const RobotDescription robot = ReadUrdf(ReadBytes(folder / "robot.urdf"));
    const nlohmann::json table = nlohmann::json::parse(std::ifstream(folder / "joints.json"));
    EXPECT_EQ(robot.links.size(), table["links"].size());
    EXPECT_EQ(robot.kinematics.getJoints().size(), table["joints"].size());
    EXPECT_TRUE(robot.problems.empty());
    EXPECT_EQ(robot.links[robot.kinematics.getTip()].name, "tool0");
}

TEST_P(SampleRobots, TipStandsWhereTheMakerSays) {
    const std::filesystem::path folder = test::Sample("robots") / GetParam();
    VRN_NEEDS_SAMPLE(folder / "robot.urdf");
    const std::map<std::string, Pos> tips{{"fanuc_lrmate200id", {465, 0, 695}},
                                          {"kuka_kr10r1100sixx", {1180, 0, 435}},
                                          {"abb_irb4400l_30_243", {1720, 0, 1720}}};
    const RobotDescription robot = ReadUrdf(ReadBytes(folder / "robot.urdf"));
    const std::vector<Pose> poses = robot.kinematics.linkPoses();
    ExpectNear(poses[robot.kinematics.getTip()].position, tips.at(GetParam()), 1e-3);
}

INSTANTIATE_TEST_SUITE_P(All, SampleRobots,
                         testing::Values("fanuc_lrmate200id", "kuka_kr10r1100sixx",
                                         "abb_irb4400l_30_243"));

TEST(VendorOf, NearestWordCounts) {
    EXPECT_EQ(VendorOf("KUKA kr10", "/x/abb/robot.urdf"), "kuka");
    EXPECT_EQ(VendorOf("arm", "/x/kuka/abb_irb.urdf"), "abb");
    EXPECT_EQ(VendorOf("arm", "/fanuc/kuka_kr10_support/urdf/robot.urdf"), "kuka");
    EXPECT_EQ(VendorOf("arm", "/x/Motoman/robot.urdf"), "yaskawa");
    EXPECT_EQ(VendorOf("cabbage", "/tabby/robot.urdf"), "") << "a word and not a part of one";
}

TEST(MaterialFamilyOf, KnowsFourMakers) {
    EXPECT_EQ(MaterialFamilyOf("abb"), "ABB");
    EXPECT_EQ(MaterialFamilyOf("kuka"), "KUKA");
    EXPECT_EQ(MaterialFamilyOf("fanuc"), "FANUC");
    EXPECT_EQ(MaterialFamilyOf("yaskawa"), "YASKAWA");
    EXPECT_EQ(MaterialFamilyOf(""), "Mechanism");
    EXPECT_EQ(MaterialFamilyOf("KUKA"), "Mechanism");
}

class MeshPlace : public test::FileTest {};

TEST_F(MeshPlace, IsRelativeToTheDescription) {
    EXPECT_EQ(FindMesh("visual/a.stl", "/r/robot.urdf"), "/r/visual/a.stl");
    EXPECT_EQ(FindMesh("/m/a.stl", "/r/robot.urdf"), "/m/a.stl");
    EXPECT_EQ(FindMesh("file:///m/a.stl", "/r/robot.urdf"), "/m/a.stl");
}

TEST_F(MeshPlace, PackagesAreLookedForInTheFoldersAbove) {
    const auto mesh = write("arm_support/meshes/a.stl", "x");
    const auto inside = folder.getPath() / "arm_support" / "urdf" / "arm.urdf";
    const auto beside = folder.getPath() / "other" / "arm.urdf";
    EXPECT_EQ(FindMesh("package://arm_support/meshes/a.stl", inside), mesh);
    EXPECT_EQ(FindMesh("package://arm_support/meshes/a.stl", beside), mesh);
    EXPECT_EQ(FindMesh("package://gone/a.stl", "/r/robot.urdf"), "/r/gone/a.stl");
    EXPECT_EQ(FindMesh("package://", "/r/robot.urdf"), "/r/");
}

}  // namespace
}  // namespace vrn::host
