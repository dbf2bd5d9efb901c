#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "tests/apps/TestFiles.h"
#include "tests/apps/Vrnview.h"

namespace vrn::test {
namespace {

using headless::Picture;
using headless::Rgba;

/// A file that somebody else wrote, and what another reader counts in it.
struct Sample {
    const char* name;
    const char* file;
    const char* counted;
};

class Samples : public VrnviewTest, public testing::WithParamInterface<Sample> {};

TEST_P(Samples, AreShownWithAllThatTheyHold) {
    const std::filesystem::path file = SharedData(GetParam().file);
    if (file.empty()) GTEST_SKIP() << "the sample " << GetParam().file << " is not on this machine";
    const ProcessResult result =
        vrnview({"render", file.string(), "-o", path("sample.png"), "--size", "160x120"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, testing::ContainsRegex("[^0-9]" + std::string(GetParam().counted)));
    const Picture picture = Picture::loadPng(path("sample.png"));
    // The ground, its grid and the corner axes take less than this.
    const auto covered = std::ranges::count_if(picture.getPixels(), [](const Rgba& pixel) {
        return Difference(pixel, {115, 115, 115, 255}) > 20;
    });
    EXPECT_GT(covered, 160 * 120 / 10);
}

INSTANTIATE_TEST_SUITE_P(
    Files, Samples,
    testing::Values(
        Sample{"CountersunkScrew", "step/M6-1x12-countersunk-screw.step", "1 body, 28 faces"},
        Sample{"Assembly", "step/as1-oc-214.stp", "18 bodies, 160 faces"},
        Sample{"TestPart2", "step/nist_ctc_02_asme1_ap242-e2.stp", "637 faces"},
        Sample{"TestPart4", "step/nist_ctc_04_asme1_rd.stp", "518 faces"},
        Sample{"TestPart5", "step/nist_ctc_05_asme1_rd.stp", "209 faces"},
        Sample{"LowerLeg", "step/odri_lower_leg_structure_base.STEP", "1 body, 329 faces"},
        // One of its 18 solids has no face.
        Sample{"Bearing", "brep/Axis_of_bearing.brep", "17 bodies, 63 faces"},
        Sample{"CrankArm", "brep/CrankArm.brep", "2 bodies, 53 faces"},
        Sample{"SiteCloud", "pointcloud/CSite1_red1-utm.pcd", "522674 points"},
        Sample{"BunnyCloud", "pointcloud/bunnyData.pts", "30571 points"},
        Sample{"DragonCloud", "pointcloud/dragon1.xyz", "100000 points"},
        Sample{"FragmentWithNormals", "pointcloud/frag_115.ply", "64365 points"},
        Sample{"Fragment", "pointcloud/fragment_002.ply", "112698 points"},
        // 307,200 points, of which 47,353 are not finite.
        Sample{"DepthImage", "pointcloud/region_growing_rgb_tutorial.pcd", "259847 points"},
        Sample{"RoomCloud", "pointcloud/room_scan1.pcd", "112586 points"},
        Sample{"ObjectCloud", "pointcloud/rops_points.pcd", "32087 points"},
        Sample{"FanucRobot", "robots/fanuc_lrmate200id/robot.urdf", "7 bodies, 7 faces, 25132 tri"},
        Sample{"KukaRobot", "robots/kuka_kr10r1100sixx/robot.urdf", "7 bodies, 7 faces, 59781 tri"},
        Sample{"AbbRobot", "robots/abb_irb4400l_30_243/robot.urdf",
               "7 bodies, 7 faces, 11696 tri"}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace vrn::test
