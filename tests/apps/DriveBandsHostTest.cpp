// Processes along edges that a script shows and edits.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepTools.hxx>

#include <cmath>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/apps/DriveHost.h"

namespace vrn::test {
namespace {

using nlohmann::json;
using testing::EndsWith;

/// Along the edges 1 and 2 of the cube, which meet; tilted between the ends of the first.
constexpr const char* band =
    R"({"do":"band","object":"cube","edges":[1,2],"vectors":[{"edge":1,"at":0,"direction":[-1,0,0]},{"edge":1,"at":1,"direction":[-1,-1,0]},{"edge":2,"at":0.5,"direction":[-1,0,1]}]})"
    "\n";
constexpr const char* preview = R"({"do":"band-preview","edge":1,"at":0.5})"
                                "\n";
constexpr const char* select = R"({"do":"band-select","edge":2,"at":0.25})"
                               "\n";
constexpr const char* range =
    R"({"do":"band-range","from":{"edge":1,"at":0.5},"to":{"edge":2,"at":0.5}})"
    "\n";

class DriveBandsHost : public DriveHost {
protected:
    DriveBandsHost() {
        BRepTools::Write(BRepPrimAPI_MakeBox(100, 100, 100).Shape(), path("cube.brep").c_str());
    }
    [[nodiscard]] std::vector<json> playCube(const std::string& script) const {
        return play(script, {"cube.brep"});
    }
    [[nodiscard]] std::string errorOf(const std::string& script) const {
        const ProcessResult result = run(script, {"cube.brep"});
        EXPECT_EQ(result.status, 1);
        return result.err;
    }
    /// How many pixels two pictures differ by: before `line`, and after it.
    [[nodiscard]] int changeBy(const std::string& before, const std::string& line) const {
        const std::string shot = R"({"do":"picture","name":)";
        (void)playCube(before + shot + "\"before\"}\n" + line + shot + "\"after\"}\n");
        return Changed(picture("before"), picture("after"));
    }
};

double LengthOf(const json& vector) { return DistanceOf(vector, json::array({0.0, 0.0, 0.0})); }

TEST_F(DriveBandsHost, ABandIsShownAlongItsEdges) {
    const auto answers = playCube(band);
    EXPECT_EQ(answers.at(0)["edges"], 2);
    EXPECT_EQ(answers.at(0)["vectors"], 3);
    EXPECT_GT(changeBy("", band), 300);
}

TEST_F(DriveBandsHost, BetweenTwoVectorsTheDirectionIsMixed) {
    const auto answers = playCube(std::string(band) + R"({"do":"band-preview","edge":1,"at":0}
)" + preview + R"({"do":"band-preview","edge":1,"at":1}
{"do":"band-preview","edge":2,"at":0}
)");
    const json &start = answers.at(1), &middle = answers.at(2), &end = answers.at(3);
    EXPECT_NEAR(start["direction"][0].get<double>(), -1, 1e-9);
    EXPECT_NEAR(end["direction"][1].get<double>(), -std::sqrt(0.5), 1e-9);
    EXPECT_NEAR(LengthOf(middle["direction"]), 1, 1e-9);
    EXPECT_NEAR(middle["direction"][1].get<double>() / middle["direction"][0].get<double>(),
                std::sqrt(0.5) / (1 + std::sqrt(0.5)), 1e-9);
    EXPECT_NEAR(DistanceOf(start["position"], end["position"]), 100, 1e-9);
    EXPECT_NEAR(DistanceOf(start["position"], middle["position"]), 50, 1e-9);
    // The second edge goes on where the first ends.
    EXPECT_NEAR(DistanceOf(end["position"], answers.at(4)["position"]), 0, 1e-9);
}

TEST_F(DriveBandsHost, EdgesAreTurnedRoundToFollowEachOther) {
    const auto answers = playCube(
        R"({"do":"band","object":"cube","edges":[2,1],"vectors":[{"edge":1,"at":0,"direction":[-1,0,1]},{"edge":2,"at":0,"direction":[-1,-1,0]}]}
{"do":"band-preview","edge":1,"at":1}
{"do":"band-preview","edge":2,"at":0}
)");
    EXPECT_NEAR(DistanceOf(answers.at(1)["position"], answers.at(2)["position"]), 0, 1e-9);
}

TEST_F(DriveBandsHost, PreviewSelectionAndRangeAreSeenAndCleared) {
    const auto clear = [](const std::string& what) {
        return R"({"do":"band-clear","what":")" + what + "\"}\n";
    };
    EXPECT_GT(changeBy(band, preview), 0);
    EXPECT_EQ(changeBy(band, preview + clear("preview")), 0);
    EXPECT_GT(changeBy(band, select), 0);
    EXPECT_EQ(changeBy(band, select + clear("selected")), 0);
    EXPECT_GT(changeBy(band, range), 50);
    EXPECT_EQ(changeBy(band, range + clear("range")), 0);
    EXPECT_EQ(changeBy("", band + std::string(preview) + select + range + clear("all")), 0);
}

TEST_F(DriveBandsHost, ARangeAnswersItsEnds) {
    const auto answers = playCube(std::string(band) + preview + range);
    EXPECT_EQ(answers.at(2)["from"], answers.at(1)["position"]);
    EXPECT_NEAR(DistanceOf(answers.at(2)["from"], answers.at(2)["to"]), 50 * std::sqrt(2.0), 1e-9);
}

TEST_F(DriveBandsHost, AnotherBandTakesThePlaceOfTheFirst) {
    const std::string other =
        R"({"do":"band","object":"cube","edges":[1],"vectors":[{"edge":1,"at":0,"direction":[0,-1,0]}]})"
        "\n";
    const int alone = changeBy("", other);
    EXPECT_EQ(changeBy("", band + other), alone);
    EXPECT_GT(changeBy(band, other), 300);
}

TEST_F(DriveBandsHost, ADirectionAlongTheEdgeIsToldByItsVector) {
    const auto bandOf = [](const std::string& vectors) {
        return R"({"do":"band","object":"cube","edges":[1],"vectors":[)" + vectors + "]}";
    };
    EXPECT_THAT(errorOf(bandOf(R"({"edge":1,"at":0,"direction":[1,0,0]},)"
                               R"({"edge":1,"at":1,"direction":[0,0,1]})")),
                EndsWith(":1: \"direction\" of vector 2 runs along edge 1 of the band\n"));
    EXPECT_THAT(errorOf(bandOf(R"({"edge":1,"at":0,"direction":[1,0,0]},)"
                               R"({"edge":1,"at":1,"direction":[-1,0,0]})")),
                EndsWith(":1: between two \"vectors\" the direction vanishes or runs along edge 1 "
                         "of the band\n"));
}

TEST_F(DriveBandsHost, WhatMakesNoBandIsToldWithItsLine) {
    EXPECT_THAT(errorOf(preview), EndsWith(":1: there is no band\n"));
    EXPECT_THAT(errorOf(R"({"do":"band-clear","what":"all"})"), EndsWith(":1: there is no band\n"));
    EXPECT_THAT(errorOf(std::string(band) + R"({"do":"band-select","edge":3,"at":0})"),
                EndsWith(":2: there is no edge 3: the band has 2\n"));
    EXPECT_THAT(
        errorOf(
            R"({"do":"band","object":"cube","edges":[13],"vectors":[{"edge":1,"at":0,"direction":[0,0,1]}]})"),
        EndsWith(":1: there is no edge 13: the solid has 12\n"));
    EXPECT_THAT(
        errorOf(
            R"({"do":"band","object":"cube","edges":[1,3],"vectors":[{"edge":1,"at":0,"direction":[1,0,0]},{"edge":2,"at":0,"direction":[1,0,0]}]})"),
        EndsWith(":1: edge 3 does not go on where edge 1 ends\n"));
}

}  // namespace
}  // namespace vrn::test
