// The built host with files of all kinds, in the looks that the command line names.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/apps/TestFiles.h"
#include "tests/apps/Vrnview.h"

namespace vrn::test {
namespace {

using headless::Picture;
using headless::Rgba;
using nlohmann::json;
using testing::HasSubstr;

class StationHost : public VrnviewTest {
protected:
    StationHost() {
        WriteBinaryStl(path("box.stl"), BoxTriangles({0, 0, 0}, {100, 100, 100}));
        WriteBytes(path("arm.urdf"),
                   "<robot name='arm'><link name='a'/><link name='b'><visual><geometry>"
                   "<box size='0.1 0.1 0.1'/></geometry></visual></link><joint name='j' "
                   "type='revolute'><origin xyz='0 0 1'/><parent link='a'/><child link='b'/><axis "
                   "xyz='0 1 0'/><limit lower='-1.6' upper='1.6'/></joint><joint name='s' "
                   "type='prismatic'><parent link='b'/><child link='c'/><limit lower='0' "
                   "upper='1'/></joint><link name='c'><visual><origin xyz='0.5 0 0'/><geometry>"
                   "<box size='0.1 0.1 0.1'/></geometry></visual></link></robot>");
        WriteBytes(path("cell.station.json"), R"({"format": "vrn-station", "version": 1,
            "objects": [
                {"type": "part", "id": "left", "file": "box.stl", "color": "#FF00FF"},
                {"type": "part", "id": "right", "name": "Right", "file": "box.stl",
                 "color": "#FF00FF", "pose": {"position": [200, 0, 0]}},
                {"type": "part", "id": "gone", "file": "none.stl"},
                {"type": "cloud", "id": "scan", "file": "scan.xyz"},
                {"type": "workObject", "id": "w", "targets": [{"name": "p"}, {"name": "q"}]},
                {"type": "tool", "id": "t", "frames": [{}]}],
            "attachments": [{"child": "t", "parent": "right", "pose": {"position": [0, 0, 9]}}]})");
        WriteBytes(path("scan.xyz"), "0 0 0\n1 1 1\n2 2 2\n");
    }
    json info(std::vector<std::string> arguments, int status = 0) const {
        arguments.insert(arguments.begin(), "info");
        arguments.push_back("--json");
        const ProcessResult result = vrnview(arguments);
        EXPECT_EQ(result.status, status) << result.err;
        return json::parse(result.out);
    }
    /// The picture of the station with these options, which leave out the object that is missing.
    Picture picture(std::vector<std::string> options) const {
        options.insert(options.begin(), {"render", path("cell.station.json"), "-o", path("p.png"),
                                         "--size", "320x240"});
        const ProcessResult result = vrnview(options);
        EXPECT_EQ(result.status, 1) << "one object is missing";
        EXPECT_EQ(result.errLines().size(), 1u) << result.err;
        return Picture::loadPng(path("p.png"));
    }
    /// The boxes' colour, which nothing else in the picture has.
    static bool isPurple(const Rgba& p) { return p.r > 2 * p.g && p.b > 2 * p.g; }
    static std::size_t purples(const Picture& picture) {
        return static_cast<std::size_t>(std::ranges::count_if(picture.getPixels(), isPurple));
    }
    static std::size_t differing(const Picture& a, const Picture& b) {
        std::size_t count = 0;
        for (std::size_t i = 0; i < a.getPixels().size(); ++i)
            count += Difference(a.getPixels()[i], b.getPixels()[i]) > 20;
        return count;
    }
};

/// How many visuals of the kind stand in the tree.
std::size_t CountKind(const json& visuals, int type) {
    std::size_t count = 0;
    for (const json& visual : visuals)
        count += (visual["type"] == type) + CountKind(visual["children"], type);
    return count;
}

TEST_F(StationHost, StationShowsWhatItNamesAndALineForWhatIsMissing) {
    const ProcessResult result = vrnview({"info", path("cell.station.json"), "--json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "vrnview: " + path("cell.station.json") +
                              ": object 'gone': none.stl: No such file or directory\n");
    const json report = json::parse(result.out);
    const json& input = report["inputs"][0];
    EXPECT_EQ(input["ok"], true);
    EXPECT_EQ(input["problems"].size(), 1u);
    EXPECT_EQ(input["bodies"], 2);
    EXPECT_EQ(input["triangles"], 24);
    EXPECT_EQ(input["points"], 3);
    EXPECT_EQ(CountKind(report["visuals"], 22), 2u) << "targets";
    EXPECT_EQ(CountKind(report["visuals"], 24), 1u) << "work objects";
    EXPECT_EQ(report["bounds"]["max"], json::array({300.0, 100.0, 100.0}));
}

TEST_F(StationHost, AttachedBodiesCountAsAllOthersInEveryCommand) {
    WriteBytes(path("carried.station.json"), R"({"format": "vrn-station", "version": 1,
        "objects": [{"type": "part", "id": "table", "file": "box.stl"},
                    {"type": "tool", "id": "gripper", "bodies": [{"file": "box.stl"}]}],
        "attachments": [{"child": "gripper", "parent": "table"}]})");
    const json report = info({path("carried.station.json")});
    EXPECT_EQ(report["inputs"][0]["bodies"], 2);
    EXPECT_EQ(report["totals"]["bodies"], 2);
    EXPECT_EQ(report["totals"]["triangles"], 24);
    const ProcessResult render = vrnview({"render", path("carried.station.json"), "-o",
                                          path("p.png"), "--size", "64x64", "--hide", "table"});
    EXPECT_EQ(render.out,
              path("p.png") + "\n2 bodies, 2 faces, 24 triangles, 72 vertices, 0 points\n");
}

TEST_F(StationHost, MixOfKindsIsOpened) {
    const json report = info({path("box.stl"), path("arm.urdf"), path("scan.xyz")});
    EXPECT_EQ(report["inputs"].size(), 3u);
    EXPECT_EQ(report["totals"]["bodies"], 3);
    EXPECT_EQ(report["totals"]["points"], 3);
}

TEST_F(StationHost, JointsPoseRobots) {
    const json report = info({path("arm.urdf"), "--joint", "j=-90", "--joint", "s=250"});
    // Turned by -90 degrees about y, x points up: the second box stands 500 above the joint, and
    // the slide has moved it 250 further along its axis.
    EXPECT_NEAR(report["bounds"]["max"][2].get<double>(), 1000 + 500 + 250 + 50, 1e-2);
    EXPECT_NEAR(report["bounds"]["max"][0].get<double>(), 50, 1e-2);
}

TEST_F(StationHost, JointsThatCannotBeSetAreTold) {
    const ProcessResult beyond = vrnview({"info", path("arm.urdf"), "--joint", "j=120"});
    EXPECT_EQ(beyond.status, 1);
    EXPECT_THAT(beyond.err,
                HasSubstr("j = 120: joint 'j' goes from -91.6732 to 91.6732 degrees\n"));
    EXPECT_THAT(beyond.out, HasSubstr("2 bodies")) << "the robot is shown all the same";
    const ProcessResult unknown = vrnview({"info", path("arm.urdf"), "--joint", "x=1"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.err, "vrnview: --joint x: no input has a joint of that name\n");
}

TEST_F(StationHost, HiddenObjectsAreNotDrawn) {
    const std::vector<std::string> from{"--camera", "150,-600,50,150,0,50"};
    const auto with = [&](std::vector<std::string> options) {
        options.insert(options.end(), from.begin(), from.end());
        return purples(picture(std::move(options)));
    };
    const std::size_t both = with({});
    ASSERT_GT(both, 1000u);
    const std::size_t one = with({"--hide", "left"});
    // The frames at the origin cover a little of the left one.
    EXPECT_GT(one, both / 2);
    EXPECT_LT(one, both * 2 / 3);
    EXPECT_EQ(with({"--hide", "left", "--hide", "Right"}), 0u) << "an id and a name";
}

TEST_F(StationHost, SelectedAndHighlightedObjectsLookDifferent) {
    const Picture plain = picture({"--view", "front"});
    EXPECT_EQ(differing(plain, picture({"--view", "front"})), 0u);
    const Picture selected = picture({"--view", "front", "--select", "left"});
    const Picture highlighted = picture({"--view", "front", "--highlight", "left"});
    EXPECT_GT(differing(plain, selected), 1000u);
    EXPECT_GT(differing(plain, highlighted), 1000u);
    EXPECT_GT(differing(selected, highlighted), 1000u);
}

TEST_F(StationHost, NamesOfNothingAreTold) {
    const ProcessResult result = vrnview({"render", path("box.stl"), "-o", path("p.png"), "--size",
                                          "64x64", "--select", "nobody", "--hide", "99999"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              "vrnview: --select nobody: no input has an object of that name\n"
              "vrnview: --hide 99999: no input has an object of that name\n");
    EXPECT_TRUE(std::filesystem::exists(path("p.png")));
}

TEST_F(StationHost, CameraLooksWhereItIsTold) {
    // From above the left box, looking straight down.
    const Picture down = picture({"--camera", "50,50,1000,50,50,0"});
    EXPECT_TRUE(isPurple(down.getPixels()[110 * 320 + 160]));
    // 60 degrees across: at a distance of 900 the box's 100 take 100 / (2 * 900 * tan 30) of 320.
    std::size_t across = 0;
    for (std::size_t x = 0; x < 180; ++x) {
        const Rgba& p = down.getPixels()[110 * 320 + x];
        across += isPurple(p);
    }
    EXPECT_NEAR(static_cast<double>(across), 320 * 100 / (2 * 900 * 0.57735), 2);
}

TEST_F(StationHost, StationsOwnCameraIsTakenUntilAnotherIsNamed) {
    const std::string text = ReadBytes(path("cell.station.json"));
    WriteBytes(path("cell.station.json"),
               text.substr(0, text.size() - 1) +
                   R"(, "camera": {"position": [50, 50, 1000], "target": [50, 50, 0]}})");
    const Picture own = picture({});
    EXPECT_EQ(differing(own, picture({"--camera", "50,50,1000,50,50,0"})), 0u);
    EXPECT_GT(differing(own, picture({"--view", "iso"})), 1000u);
}

TEST_F(StationHost, EachModeDrawsBodiesInItsWay) {
    const std::filesystem::path sample = SharedData("brep/CrankArm.brep");
    if (sample.empty()) GTEST_SKIP() << "the sample CrankArm.brep is not on this machine";
    std::vector<Picture> pictures;
    for (const char* mode : {"shaded", "edges", "lines", "triangles"}) {
        const ProcessResult result = vrnview(
            {"render", sample.string(), "-o", path("p.png"), "--size", "320x240", "--mode", mode});
        ASSERT_EQ(result.status, 0) << result.err;
        pictures.push_back(Picture::loadPng(path("p.png")));
    }
    for (std::size_t a = 0; a < 4; ++a)
        for (std::size_t b = a + 1; b < 4; ++b)
            EXPECT_GT(differing(pictures[a], pictures[b]), 300u) << a << ' ' << b;
}

TEST_F(StationHost, BrokenFilesOfEveryKindAreOneLineEach) {
    const std::vector<std::pair<std::string, std::string>> bad{
        {"a.step", "not a STEP file"},    {"a.iges", "not an IGES file"},
        {"a.brep", "not a B-rep file"},   {"a.urdf", "not XML: "},
        {"a.ply", "not a PLY file"},      {"a.pcd", "not a PCD file"},
        {"a.xyz", "line 1 is not three"}, {"a.pts", "line 1 is not three"},
        {"a.station.json", "not JSON: "},
    };
    std::vector<std::string> arguments{"info"};
    for (const auto& [name, message] : bad) {
        WriteBytes(path(name), "This is something else.\n");
        arguments.push_back(path(name));
    }
    arguments.push_back(path("box.stl"));
    const ProcessResult result = vrnview(arguments);
    EXPECT_EQ(result.status, 1);
    const std::vector<std::string> lines = result.errLines();
    ASSERT_EQ(lines.size(), bad.size()) << result.err;
    for (std::size_t i = 0; i < bad.size(); ++i)
        EXPECT_THAT(lines[i],
                    testing::StartsWith("vrnview: " + path(bad[i].first) + ": " + bad[i].second));
    EXPECT_THAT(result.out, HasSubstr("box.stl: read in"));
}

}  // namespace
}  // namespace vrn::test
