#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/apps/TestFiles.h"
#include "tests/apps/Vrnview.h"

namespace vrn::test {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> Keys(const json& object) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : object.items()) keys.push_back(key);  // in alphabetical order
    return keys;
}

/// The first visual of that kind, the top of `visuals` first; null if there is none.
json Find(const json& visuals, int type) {
    for (const json& visual : visuals) {
        if (visual["type"] == type) return visual;
        if (json below = Find(visual["children"], type); !below.is_null()) return below;
    }
    return nullptr;
}

class Info : public VrnviewTest {
protected:
    std::string boxFile(const std::string& name, const Point& low, const Point& high) const {
        WriteBinaryStl(path(name), BoxTriangles(low, high));
        return path(name);
    }
};

TEST_F(Info, JsonHasThePromisedShape) {
    const std::string box = boxFile("box.stl", {-1, 2, 3}, {4, 6, 8.5f});
    const ProcessResult info = vrnview({"info", box, "--json"});
    ASSERT_EQ(info.status, 0) << info.err;
    const json report = json::parse(info.out);
    EXPECT_THAT(Keys(report), ElementsAre("bounds", "inputs", "totals", "visuals"));
    ASSERT_EQ(report["inputs"].size(), 1u);
    const json& input = report["inputs"][0];
    EXPECT_THAT(Keys(input), ElementsAre("bodies", "error", "faces", "file", "ms", "ok", "points",
                                         "problems", "triangles", "vertices"));
    EXPECT_EQ(input["file"], box);
    EXPECT_EQ(input["ok"], true);
    EXPECT_TRUE(input["error"].is_null());
    EXPECT_GT(input["ms"].get<double>(), 0);
    EXPECT_EQ(input["bodies"], 1);
    EXPECT_EQ(input["faces"], 1);
    EXPECT_EQ(input["triangles"], 12);
    EXPECT_EQ(input["vertices"], 36);
    EXPECT_EQ(input["points"], 0);
    EXPECT_EQ(report["totals"],
              json::parse(R"({"bodies":1,"faces":1,"triangles":12,"vertices":36,"points":0})"));
    EXPECT_EQ(report["bounds"], json::parse(R"({"min":[-1,2,3],"max":[4,6,8.5]})"));
}

TEST_F(Info, JsonTreeHasThePartAndItsMesh) {
    const ProcessResult info =
        vrnview({"info", boxFile("box.stl", {0, 0, 0}, {1, 1, 1}), "--json"});
    const json part = Find(json::parse(info.out)["visuals"], 9);
    ASSERT_FALSE(part.is_null());
    EXPECT_THAT(Keys(part), ElementsAre("children", "id", "name", "type"));
    EXPECT_EQ(part["name"], "box_" + std::to_string(part["id"].get<unsigned>()));
    const json mesh = Find(part["children"], 14);
    ASSERT_FALSE(mesh.is_null());
    EXPECT_TRUE(mesh["children"].empty());
}

TEST_F(Info, TreeHasNoHelpers) {
    const ProcessResult info =
        vrnview({"info", boxFile("box.stl", {0, 0, 0}, {1, 1, 1}), "--json"});
    const json visuals = json::parse(info.out)["visuals"];
    EXPECT_EQ(Find(visuals, 19), nullptr);
    EXPECT_NE(Find(visuals, 20), nullptr) << "the frame of the world is no helper";
}

TEST_F(Info, BoundsAreThoseOfAllInputs) {
    const ProcessResult info = vrnview({"info", boxFile("a.stl", {0, 0, 0}, {1, 1, 1}),
                                        boxFile("b.STL", {-5, 2, 0}, {0, 3, 7}), "--json"});
    const json report = json::parse(info.out);
    EXPECT_EQ(report["bounds"], json::parse(R"({"min":[-5,0,0],"max":[1,3,7]})"));
    EXPECT_EQ(report["totals"]["triangles"], 24);
    EXPECT_EQ(report["inputs"][0]["triangles"], 12);
    EXPECT_EQ(report["inputs"][1]["triangles"], 12);
}

TEST_F(Info, SameFileTwiceIsTwoBodies) {
    const std::string box = boxFile("a.stl", {0, 0, 0}, {1, 1, 1});
    const ProcessResult info = vrnview({"info", box, box, "--json"});
    EXPECT_EQ(info.status, 0) << info.err;
    EXPECT_EQ(json::parse(info.out)["totals"]["bodies"], 2);
}

TEST_F(Info, EachBadInputIsOneLineAndTheOthersAreRead) {
    const std::string good = boxFile("good.stl", {0, 0, 0}, {1, 1, 1});
    const std::string bytes = ReadBytes(good);
    WriteBytes(path("empty.stl"), "");
    WriteBytes(path("cut.stl"), bytes.substr(0, bytes.size() - 10));
    WriteBytes(path("short.stl"), bytes.substr(0, 50));
    WriteBytes(path("prose.stl"), "This is no mesh.\nIt has two lines.\n");
    WriteBytes(path("part.obj"), "v 1 2 3");
    std::filesystem::create_directory(path("folder.stl"));
    const std::vector<std::pair<std::string, std::string>> bad{
        {"missing.stl", "No such file or directory"},
        {"empty.stl", "the file is empty"},
        {"cut.stl", "Bad STL File: a binary STL of 12 triangles has 684 bytes, this file has 674"},
        {"short.stl", "Bad STL File"},
        {"prose.stl", "Bad STL File"},
        {"part.obj", "unsupported file type"},
        {"folder.stl", "is a directory, not a file"}};
    std::vector<std::string> arguments{"info", "--json"};
    for (const auto& [name, reason] : bad) arguments.push_back(path(name));
    arguments.push_back(good);

    const ProcessResult info = vrnview(arguments);
    EXPECT_EQ(info.status, 1);
    const std::vector<std::string> lines = info.errLines();
    const json report = json::parse(info.out);
    ASSERT_EQ(lines.size(), bad.size()) << info.err;
    ASSERT_EQ(report["inputs"].size(), bad.size() + 1);
    for (std::size_t i = 0; i < bad.size(); ++i) {
        EXPECT_THAT(lines[i],
                    testing::StartsWith("vrnview: " + path(bad[i].first) + ": " + bad[i].second));
        const json& input = report["inputs"][i];
        EXPECT_EQ(input["ok"], false);
        EXPECT_THAT(input["error"].get<std::string>(), testing::StartsWith(bad[i].second));
        EXPECT_EQ(input["bodies"], 0);
    }
    EXPECT_EQ(report["inputs"].back()["ok"], true);
    EXPECT_EQ(report["totals"],
              json::parse(R"({"bodies":1,"faces":1,"triangles":12,"vertices":36,"points":0})"));
}

TEST_F(Info, FailedInputsLeaveNothingInTheTree) {
    WriteBytes(path("prose.stl"), "This is no mesh.\n");
    const ProcessResult info = vrnview({"info", path("prose.stl"), "--json"});
    EXPECT_EQ(info.status, 1);
    const json report = json::parse(info.out);
    EXPECT_TRUE(Find(report["visuals"], 9).is_null());
    EXPECT_TRUE(Find(report["visuals"], 14).is_null());
    EXPECT_TRUE(report["bounds"].is_null());
}

TEST_F(Info, CoordinatesThatCannotBeComputedWithAreRefused) {
    WriteBinaryStl(path("huge.stl"), {{{{0, 0, 0}, {3e38f, 0, 0}, {0, -3e38f, 0}}}});
    const ProcessResult info = vrnview({"info", path("huge.stl"), "--json"});
    EXPECT_EQ(info.status, 1);
    EXPECT_EQ(info.err, "vrnview: " + path("huge.stl") +
                            ": has coordinates beyond 1e15, too large to be shown\n");
    EXPECT_TRUE(json::parse(info.out)["bounds"].is_null());
}

TEST_F(Info, CoordinatesThatAreNotFiniteDoNotSpoilTheBounds) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    WriteBinaryStl(path("nan.stl"),
                   {{{{0, 0, 0}, {nan, 0, 0}, {0, 1, 0}}}, {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}}});
    const ProcessResult info = vrnview({"info", path("nan.stl"), "--json"});
    EXPECT_EQ(info.status, 0) << info.err;
    EXPECT_EQ(json::parse(info.out)["bounds"], json::parse(R"({"min":[0,0,0],"max":[1,1,0]})"));
}

TEST_F(Info, StlWithoutTrianglesIsReadAndEmpty) {
    WriteBinaryStl(path("none.stl"), {});
    const ProcessResult info = vrnview({"info", path("none.stl"), "--json"});
    EXPECT_EQ(info.status, 0) << info.err;
    const json report = json::parse(info.out);
    EXPECT_EQ(report["inputs"][0]["ok"], true);
    EXPECT_EQ(report["totals"]["triangles"], 0);
    EXPECT_TRUE(report["bounds"].is_null());
}

TEST_F(Info, NamesWithSpacesPercentsAndSchemesAreFiles) {
    std::filesystem::create_directories(path("http:/x%41"));
    const std::string box = boxFile("http:/x%41/a b.stl", {0, 0, 0}, {1, 1, 1});
    EXPECT_EQ(vrnview({"info", box}).status, 0);
}

TEST_F(Info, TextTellsTheSameForPeople) {
    const ProcessResult info =
        vrnview({"info", boxFile("box.stl", {0, 0, 0}, {1, 2, 3}), path("missing.stl")});
    EXPECT_EQ(info.status, 1);
    EXPECT_THAT(info.out, HasSubstr("box.stl: read in "));
    EXPECT_THAT(info.out, HasSubstr("missing.stl: not read: No such file or directory\n"));
    EXPECT_THAT(info.out, HasSubstr("  Part \"box_"));
    EXPECT_THAT(info.out, HasSubstr("    Mesh \"box_"));
    EXPECT_THAT(info.out,
                HasSubstr("totals: 1 body, 1 face, 12 triangles, 36 vertices, 0 points\n"));
    EXPECT_THAT(info.out, HasSubstr("bounds: (0, 0, 0) to (1, 2, 3)\n"));
}

TEST_F(Info, StartsADisplayOfItsOwnWhereThereIsNone) {
    const ScopedVariable none("DISPLAY", nullptr);
    EXPECT_EQ(vrnview({"info", boxFile("box.stl", {0, 0, 0}, {1, 1, 1})}).status, 0);
}

TEST_F(Info, MissingDisplayServerIsOneLine) {
    const ScopedVariable none("DISPLAY", nullptr);
    const ScopedVariable nowhere("PATH", "/nonexistent");
    const ProcessResult info = vrnview({"info", path("a.stl")});
    EXPECT_EQ(info.status, 1);
    ASSERT_EQ(info.errLines().size(), 1u) << info.err;
    EXPECT_THAT(info.err, HasSubstr("vrnview: no display is usable and Xvfb is not installed"));
}

TEST_F(Info, LostOutputIsAFailure) {
    const std::string command = std::string(VRNVIEW_PROGRAM) + " info --json " +
                                boxFile("box.stl", {0, 0, 0}, {1, 1, 1}) + " > /dev/full";
    const ProcessResult info = RunProgram("/bin/sh", {"-c", command});
    EXPECT_EQ(info.status, 1);
    EXPECT_EQ(info.err, "vrnview: standard output could not be written\n");
}

TEST_F(Info, WrongUseEndsWithTwo) {
    EXPECT_EQ(vrnview({}).status, 2);
    EXPECT_EQ(vrnview({"render", "a.stl"}).status, 2);
    const ProcessResult size = vrnview({"render", "a.stl", "-o", "p.png", "--size", "big"});
    EXPECT_EQ(size.status, 2);
    EXPECT_THAT(size.err, HasSubstr("'big' is not WIDTHxHEIGHT"));
    EXPECT_EQ(size.out, "");
}

struct RealFile {
    const char* name;
    const char* file;
    unsigned triangles;
};

class InfoOfRealFiles : public Info, public testing::WithParamInterface<RealFile> {};

TEST_P(InfoOfRealFiles, CountsTheTrianglesThatTheSampleHas) {
    const std::filesystem::path file = SharedData(std::string("stl/") + GetParam().file);
    if (file.empty()) GTEST_SKIP() << "the sample " << GetParam().file << " is not on this machine";
    const ProcessResult info = vrnview({"info", file, "--json"});
    ASSERT_EQ(info.status, 0) << info.err;
    const json report = json::parse(info.out);
    EXPECT_EQ(report["inputs"][0]["triangles"], GetParam().triangles);
    EXPECT_EQ(report["inputs"][0]["vertices"], 3 * GetParam().triangles);
}

INSTANTIATE_TEST_SUITE_P(Samples, InfoOfRealFiles,
                         testing::Values(RealFile{"RearCase", "rear_case.stl", 18808},
                                         RealFile{"Complex", "complex_bin.stl", 30476},
                                         RealFile{"PivotArm", "Pivot Arm.STL", 15008},
                                         RealFile{"Bunny", "bunny.stl", 69451},
                                         RealFile{"VideoPart", "video_part.stl", 9694},
                                         RealFile{"Part1", "part1.stl", 380},
                                         RealFile{"ConfusingHeader", "confusingheader_bin.stl", 4}),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace vrn::test
