#include "apps/vrnview/readers/Content.h"

#include <algorithm>

#include "suite/geom/BodyColorTool.h"
#include "suite/layout/Body.h"
#include "suite/layout/Mechanism.h"
#include "suite/layout/Part.h"
#include "suite/layout/PointCloud.h"
#include "tests/apps/TestFiles.h"
#include "tests/readers/ReaderTest.h"

namespace vrn::host {
namespace {

using test::ErrorOf;

class ContentFile : public test::FileTest {
protected:
    std::filesystem::path box(const std::string& name) const {
        const std::filesystem::path path = folder.getPath() / name;
        std::filesystem::create_directories(path.parent_path());
        test::WriteBinaryStl(path, test::BoxTriangles({0, 0, 0}, {1, 2, 3}));
        return path;
    }
};

TEST_F(ContentFile, EveryExtensionIsKnownInAnyCase) {
    for (const char* name : {"a.step", "a.stp", "a.STEP", "a.STP", "a.igs", "a.iges", "a.IGS",
                             "a.brep", "a.stl", "a.STL", "a.urdf", "a.ply", "a.pcd", "a.xyz",
                             "a.pts", "cell.station.json", "Cell.Station.JSON"})
        EXPECT_TRUE(IsSupported(name)) << name;
    for (const char* name : {"a", ".stl", "a.json", "a.obj", "a.dae", "a.xacro", "station.json"})
        EXPECT_FALSE(IsSupported(name)) << name;
}

TEST_F(ContentFile, UnknownTypesAreRefusedWithTheKnownOnes) {
    EXPECT_THAT(ErrorOf([&] { (void)ReadContent(write("a.obj", "x")); }),
                testing::StartsWith("unsupported file type (supported: .step"));
    EXPECT_EQ(ErrorOf([&] { (void)ReadContent(folder.getPath() / "no.obj"); }),
              "No such file or directory");
}

TEST_F(ContentFile, StlIsAPartOfOneBodyWithItsMesh) {
    const Content content = ReadContent(box("crate.stl"));
    ASSERT_EQ(content.parts.size(), 1u);
    EXPECT_EQ(content.parts[0]->name, "crate");
    ASSERT_EQ(content.parts[0]->bodies().size(), 1u);
    ASSERT_EQ(content.meshes.size(), 1u);
    EXPECT_EQ(content.parts[0]->bodies()[0]->getGeometryUri(), content.meshes[0]->name);
}

TEST_F(ContentFile, AssemblyHoldsPartsThatShareTheirGeometry) {
    VRN_NEEDS_SAMPLE("step/as1-oc-214.stp");
    const Content content = ReadContent(test::Sample("step/as1-oc-214.stp"));
    ASSERT_EQ(content.assemblies.size(), 1u);
    EXPECT_TRUE(content.parts.empty());
    const auto children = content.assemblies[0]->getChildrenOf<layout::Assembly>();
    ASSERT_EQ(children.size(), 3u);
    EXPECT_EQ(children[0]->parentId, content.assemblies[0]->id);
    const auto rod = children[0]->getChildrenOf<layout::Part>();
    ASSERT_EQ(rod.size(), 3u);
    EXPECT_EQ(rod[0]->bodies()[0]->getGeometryUri(), rod[1]->bodies()[0]->getGeometryUri());
    EXPECT_TRUE(rod[0]->bodies()[0]->getShape().IsSame(rod[1]->bodies()[0]->getShape()));
    EXPECT_EQ(geometry::BodyColorTool::GetBodyColor(rod[0]->bodies()[0]->id), "#FF0000");
}

TEST_F(ContentFile, ScansFarOutKeepTheirDetail) {
    VRN_NEEDS_SAMPLE("pointcloud/CSite1_red1-utm.pcd");
    const Content content = ReadContent(test::Sample("pointcloud/CSite1_red1-utm.pcd"));
    ASSERT_EQ(content.clouds.size(), 1u);
    const auto place = content.clouds[0]->getPose().position;
    EXPECT_NEAR(place.x, 512'600, 10);
    EXPECT_NEAR(place.y, 5.40358e6, 10);
    for (const auto& p : content.clouds[0]->points) {
        ASSERT_LT(std::abs(p.x), 1000);
        ASSERT_LT(std::abs(p.y), 1000);
    }
}

TEST_F(ContentFile, CloudsNearTheOriginStayAsTheyAre) {
    const Content content = ReadContent(write("a.xyz", "1 2 3\n4 5 6\n"));
    EXPECT_EQ(content.clouds.at(0)->getPose(), Pose{});
    EXPECT_EQ(content.clouds[0]->points[1], (rob::PosTemplate<float>{4, 5, 6}));
}

TEST_F(ContentFile, CloudsTooLargeToShowAreRefused) {
    EXPECT_EQ(ErrorOf([&] { (void)ReadContent(write("a.xyz", "1 2 3\n1e300 0 0\n")); }),
              "has coordinates beyond 1e15, too large to be shown");
}

const std::string arm =
    "<robot name='arm'><link name='base'><visual><geometry><mesh filename='m/a.stl'/></geometry>"
    "</visual></link><link name='hand'><visual><origin xyz='0 0 0.1'/><geometry>"
    "<mesh filename='m/a.stl'/></geometry><material name='red'><color rgba='1 0 0 1'/></material>"
    "</visual><visual><geometry><box size='0.1 0.2 0.3'/></geometry></visual></link>"
    "<joint name='j' type='revolute'><origin xyz='0 0 0.5'/><parent link='base'/>"
    "<child link='hand'/><axis xyz='0 1 0'/><limit lower='-1' upper='1'/></joint></robot>";

TEST_F(ContentFile, RobotHasLinksMeshesWristAndBase) {
    (void)box("m/a.stl");
    const Content content = ReadContent(write("kuka_arm.urdf", arm));
    EXPECT_THAT(content.problems, testing::IsEmpty());
    ASSERT_EQ(content.robots.size(), 1u);
    layout::Manipulator& robot = *content.robots[0];
    EXPECT_EQ(robot.name, "arm");
    EXPECT_EQ(robot.element->touch("vendor")->as<std::string>(), "kuka");
    ASSERT_EQ(robot.links().size(), 2u);
    EXPECT_EQ(robot.links()[1]->getPose().position, (rob::PosTemplate<double>{0, 0, 500}));
    ASSERT_NE(robot.wrist(), nullptr);
    EXPECT_EQ(robot.wrist()->parentId, robot.links()[1]->id);
    EXPECT_NE(robot.baseObject(), nullptr);

    const auto bodies = robot.links()[1]->getChildrenOf<layout::Part>().at(0)->bodies();
    ASSERT_EQ(bodies.size(), 2u);
    EXPECT_EQ(bodies[0]->getPose().position.z, 100);
    EXPECT_EQ(bodies[0]->getMaterialName(), "KUKA");
    EXPECT_EQ(geometry::BodyColorTool::GetBodyColor(bodies[0]->id), "#FF0000");
    EXPECT_EQ(bodies[1]->getFaceMap().Extent(), 6);
    ASSERT_EQ(content.meshes.size(), 1u) << "one file, read once";
    EXPECT_FLOAT_EQ(content.meshes[0]->getBox().max.z, 3000);
}

TEST_F(ContentFile, JointsMoveTheLinksInTheModel) {
    (void)box("m/a.stl");
    Content content = ReadContent(write("arm.urdf", arm));
    ASSERT_EQ(content.jointed.size(), 1u);
    content.jointed[0].kinematics.setValue("j", 0.5);
    content.jointed[0].poseLinks();
    EXPECT_TRUE(content.robots[0]->links()[1]->getPose().rotation.isApprox(
        rob::RotationTemplate<double>(0.5, rob::Vec3Template<double>{0, 1, 0})));
}

TEST_F(ContentFile, MissingMeshCostsALineAndTheRobotStands) {
    const Content content = ReadContent(write("arm.urdf", arm));
    EXPECT_THAT(content.problems, testing::ElementsAre("m/a.stl: No such file or directory",
                                                       "m/a.stl: No such file or directory"));
    ASSERT_EQ(content.robots.size(), 1u);
    EXPECT_EQ(content.robots[0]->links().size(), 2u);
}

TEST_F(ContentFile, MeshesOfOtherTypesAndFlatShapesCostALine) {
    const Content content = ReadContent(write(
        "arm.urdf",
        "<robot name='r'><link name='a'><visual><geometry><mesh filename='a.dae'/></geometry>"
        "</visual><visual><geometry><sphere radius='0'/></geometry></visual></link></robot>"));
    ASSERT_EQ(content.problems.size(), 2u);
    EXPECT_EQ(content.problems[0],
              "a.dae: not a file of bodies (supported: .step .stp .iges .igs .brep .stl)");
    EXPECT_EQ(content.problems[1], "a: its sizes must be above 0");
}

TEST_F(ContentFile, BrokenRobotIsOneMessage) {
    EXPECT_THAT(ErrorOf([&] { (void)ReadContent(write("a.urdf", "<robot>")); }),
                testing::StartsWith("not XML: "));
    EXPECT_EQ(ErrorOf([&] { (void)ReadContent(write("a.urdf", "")); }), "the file is empty");
}

/// The bounds of a robot's link meshes at zero, in millimetres.
struct SampleBounds {
    const char* robot;
    const char* family;
    rob::PosTemplate<double> min, extent;
    std::size_t triangles;
};
void PrintTo(const SampleBounds& sample, std::ostream* out) { *out << sample.robot; }

class SampleRobotFiles : public testing::TestWithParam<SampleBounds> {};

TEST_P(SampleRobotFiles, StandAssembledAsTheirMakersShipThem) {
    const SampleBounds& sample = GetParam();
    const auto file = std::filesystem::path("robots") / sample.robot / "robot.urdf";
    VRN_NEEDS_SAMPLE(file);
    const Content content = ReadContent(test::Sample(file));
    EXPECT_THAT(content.problems, testing::IsEmpty());
    rob::PosTemplate<double> low{1e9, 1e9, 1e9}, high{-1e9, -1e9, -1e9};
    std::size_t triangles = 0;
    for (const layout::Link* link : content.robots.at(0)->links())
        for (const layout::Part* part : link->getChildrenOf<layout::Part>())
            for (const layout::Body* body : part->bodies()) {
                EXPECT_EQ(body->getMaterialName(), sample.family);
                const auto mesh = std::ranges::find(content.meshes, body->getGeometryUri(),
                                                    [](const auto& m) { return m->name; });
                ASSERT_NE(mesh, content.meshes.end());
                triangles += (*mesh)->indices.size() / 3;
                const Pose pose = Compose(link->getPose(), body->getPose());
                for (const auto& vertex : (*mesh)->vertices) {
                    const auto p = rob::TransformPoint(pose, rob::PosTemplate<double>(vertex));
                    low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
                    high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
                }
            }
    EXPECT_EQ(triangles, sample.triangles);
    EXPECT_NEAR(low.x, sample.min.x, 1);
    EXPECT_NEAR(low.y, sample.min.y, 1);
    EXPECT_NEAR(low.z, sample.min.z, 1);
    EXPECT_NEAR(high.x - low.x, sample.extent.x, 1);
    EXPECT_NEAR(high.y - low.y, sample.extent.y, 1);
    EXPECT_NEAR(high.z - low.z, sample.extent.z, 1);
}

INSTANTIATE_TEST_SUITE_P(
    All, SampleRobotFiles,
    testing::Values(
        SampleBounds{"fanuc_lrmate200id", "FANUC", {-103, -117, 0}, {568, 235, 759}, 25'132},
        SampleBounds{"kuka_kr10r1100sixx", "KUKA", {-221, -139, 0}, {1401, 276, 522}, 59'781},
        SampleBounds{"abb_irb4400l_30_243", "ABB", {-570, -479, 0}, {2290, 959, 1855}, 11'696}));

}  // namespace
}  // namespace vrn::host
