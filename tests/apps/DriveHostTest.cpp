// The built host as it replays scripts.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <format>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/apps/DriveHost.h"
#include "tests/apps/TestFiles.h"

namespace vrn::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

constexpr const char* hoverRight = R"({"do":"hover","x":430,"y":290})"
                                   "\n";

TEST_F(DriveHost, EachLineIsAnsweredWithItsNumber) {
    const auto answers = play(R"(# a comment

{"do":"press","x":430,"y":290}
{"do":"drag","dx":5,"dy":-3}
{"do":"pan","x":400,"y":300,"dx":4,"dy":4}
{"do":"wheel","x":400,"y":300,"delta":-1}
{"do":"hover","x":430,"y":290}
{"do":"click","x":430,"y":290}
{"do":"box","x0":0,"y0":0,"x1":800,"y1":600}
{"do":"lasso","points":[[0,0],[800,0],[800,600],[0,600]]}
{"do":"select","objects":["box"]}
{"do":"hide","objects":["box"]}
{"do":"show","objects":["box"]}
{"do":"mode","mode":"edges"}
{"do":"picture","name":"end"}
)");
    ASSERT_EQ(answers.size(), 13u);
    const std::vector<std::string> verbs{"press", "drag", "pan",    "wheel",  "hover",
                                         "click", "box",  "lasso",  "select", "hide",
                                         "show",  "mode", "picture"};
    for (std::size_t i = 0; i < verbs.size(); ++i) {
        EXPECT_EQ(answers[i]["line"], i + 3);
        EXPECT_EQ(answers[i]["do"], verbs[i]);
    }
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(answers[i]["camera"]["position"].size(), 3u);
        EXPECT_EQ(answers[i]["camera"]["rotation"].size(), 4u);
    }
    EXPECT_EQ(answers[4]["hit"], true);
    EXPECT_EQ(answers[5]["visual"], answers[4]["visual"]);
    for (const std::size_t i : {6, 7}) {
        EXPECT_EQ(answers[i]["visuals"], json::array({answers[4]["visual"]}));
        EXPECT_EQ(answers[i]["points"], 0);
    }
    for (const std::size_t i : {8, 9, 10}) EXPECT_EQ(answers[i]["objects"].size(), 1u);
    EXPECT_EQ(answers[11]["mode"], "edges");
    EXPECT_EQ(answers[12]["file"], path("out/end.png"));
    EXPECT_EQ(picture("end").getWidth(), 800);
    EXPECT_EQ(picture("end").getHeight(), 600);
}

TEST_F(DriveHost, OrbitKeepsWhatWasPressedOnItsPixel) {
    const auto answers = play(std::string(hoverRight) + R"({"do":"press","x":430,"y":290}
{"do":"drag","dx":25,"dy":10}
{"do":"drag","dx":25,"dy":10}
)" + hoverRight);
    const json &before = answers.at(0), &after = answers.at(4);
    ASSERT_EQ(before["hit"], true);
    ASSERT_EQ(after["hit"], true);
    EXPECT_LT(DistanceOf(before["position"], after["position"]), 0.1);
    EXPECT_GT(DistanceOf(answers[1]["camera"]["position"], answers[3]["camera"]["position"]), 50);
}

TEST_F(DriveHost, WheelGoesTowardsWhatIsUnderTheCursorAndStopsBeforeIt) {
    std::string script = hoverRight;
    for (int i = 0; i < 60; ++i)
        script += R"({"do":"wheel","x":430,"y":290,"delta":1})"
                  "\n";
    const auto answers = play(script + hoverRight);
    const json& target = answers.at(0)["position"];
    const json &first = answers.at(1)["camera"]["position"],
               &last = answers.at(60)["camera"]["position"];
    EXPECT_LT(DistanceOf(last, target), 12.0);
    EXPECT_GE(DistanceOf(last, target), 9.99);
    EXPECT_EQ(answers.at(59)["camera"], answers.at(60)["camera"]);
    // Straight on: the ways to the last place and from there on add up.
    EXPECT_NEAR(DistanceOf(first, last) + DistanceOf(last, target), DistanceOf(first, target),
                0.01);
    // From so near it is still picked, and at the same place.
    EXPECT_LT(DistanceOf(answers.at(61)["position"], target), 0.1);
}

TEST_F(DriveHost, PanTakesTheSurfaceAlong) {
    // Near the middle of the picture, where the plane of the view is that of the surface's point.
    const auto answers = play(R"({"do":"hover","x":402,"y":301}
{"do":"pan","x":402,"y":301,"dx":60,"dy":-40}
{"do":"hover","x":462,"y":261}
)");
    ASSERT_EQ(answers.at(2)["hit"], true);
    EXPECT_LT(DistanceOf(answers[0]["position"], answers[2]["position"]), 1.0);
}

TEST_F(DriveHost, WhatIsHiddenIsNotPickedUntilItIsShown) {
    const auto answers = play(std::string(R"({"do":"hide","objects":["box"]})"
                                          "\n") +
                              hoverRight +
                              R"({"do":"show","objects":["box"]})"
                              "\n" +
                              hoverRight);
    EXPECT_EQ(answers.at(1)["hit"], false);
    EXPECT_EQ(answers.at(3)["hit"], true);
}

TEST_F(DriveHost, PicturesShowWhatIsHighlightedSelectedHiddenAndClearedAgain) {
    (void)play(std::string(R"({"do":"picture","name":"plain"})"
                           "\n") +
               hoverRight +
               R"({"do":"picture","name":"hover"}
{"do":"hover","x":5,"y":5}
{"do":"picture","name":"nothing"}
{"do":"click","x":430,"y":290}
{"do":"picture","name":"click"}
{"do":"click","x":5,"y":5}
{"do":"picture","name":"cleared"}
{"do":"select","objects":["box"]}
{"do":"picture","name":"select"}
{"do":"select","objects":[]}
{"do":"hide","objects":["box"]}
{"do":"picture","name":"hidden"}
)");
    const auto at = [this](const std::string& name) { return picture(name).at(430, 290); };
    const auto plain = at("plain");
    EXPECT_GT(Difference(at("hover"), plain), 30);
    EXPECT_LT(Difference(at("nothing"), plain), 4);
    EXPECT_GT(Difference(at("click"), plain), 30);
    EXPECT_LT(Difference(at("cleared"), plain), 4);
    EXPECT_LT(Difference(at("select"), at("click")), 4);
    EXPECT_GT(Difference(at("hidden"), plain), 30);
}

TEST_F(DriveHost, BoxAndLassoSelectVisualsAndPointsAtOnce) {
    std::string points;
    for (int i = 0; i < 20; ++i) points += std::format("{} -50 0\n", 10 * i);
    WriteBytes(path("scan.xyz"), points);
    const auto answers = play(R"({"do":"picture","name":"plain"}
{"do":"box","x0":0,"y0":0,"x1":800,"y1":600}
{"do":"picture","name":"both"}
{"do":"box","x0":0,"y0":0,"x1":1,"y1":1}
{"do":"picture","name":"cleared"}
)",
                              {"box.stl", "scan.xyz"});
    EXPECT_EQ(answers.at(1)["points"], 20);
    EXPECT_EQ(answers.at(1)["visuals"].size(), 2u);
    EXPECT_GT(Difference(picture("both").at(430, 290), picture("plain").at(430, 290)), 30);
    EXPECT_EQ(answers.at(3)["points"], 0);
    EXPECT_EQ(answers.at(3)["visuals"], json::array());
    EXPECT_LT(Difference(picture("cleared").at(430, 290), picture("plain").at(430, 290)), 4);
}

TEST_F(DriveHost, AMistakeInTheScriptIsOneLineAndNothingIsDone) {
    const ProcessResult result = run(R"({"do":"picture","name":"first"}
{"do":"wheel","x":1,"y":2}
)");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "vrnview: " + path("script.jsonl") +
                              ":2: wheel needs \"delta\", a number of at most 1e6\n");
    EXPECT_FALSE(std::filesystem::exists(path("out")));
}

TEST_F(DriveHost, AnUnknownObjectEndsTheReplayAtItsLine) {
    const ProcessResult result = run(std::string(hoverRight) +
                                     R"({"do":"hide","objects":["box","lid"]})"
                                     "\n" +
                                     hoverRight);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 1);
    EXPECT_EQ(result.err, "vrnview: " + path("script.jsonl") +
                              ":2: no input has an object of the name \"lid\"\n");
}

TEST_F(DriveHost, AMissingScriptIsOneLine) {
    const ProcessResult result =
        vrnview({"drive", path("box.stl"), "--script", path("none.jsonl"), "-o", path("out")});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "vrnview: " + path("none.jsonl") + ": the script cannot be read\n");
}

TEST_F(DriveHost, AnEmptyScriptDoesNothing) { EXPECT_TRUE(play("").empty()); }

TEST_F(DriveHost, WrongUseEndsWithTwo) {
    EXPECT_EQ(vrnview({"drive", path("box.stl"), "-o", path("out")}).status, 2);
    EXPECT_EQ(vrnview({"drive", path("box.stl"), "--script", "s"}).status, 2);
    EXPECT_EQ(vrnview({"drive", "--script", "s", "-o", "out"}).status, 2);
}

TEST_F(DriveHost, TheExampleScriptRunsAndIsTheOneOfThePage) {
    const std::string docs = std::string(VRN_SOURCE_FOLDER) + "/docs/";
    EXPECT_THAT(ReadBytes(docs + "driving.md"),
                HasSubstr(ReadBytes(docs + "snippets/drive.jsonl")));
    const ProcessResult result =
        vrnview({"drive", path("box.stl"), "--size", "400x300", "--script",
                 std::string(VRN_SOURCE_FOLDER) + "/docs/snippets/drive.jsonl", "-o", path("out")});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(std::filesystem::exists(path("out/end.png")));
}

}  // namespace
}  // namespace vrn::test
