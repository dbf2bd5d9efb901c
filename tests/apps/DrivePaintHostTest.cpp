// Objects that a script paints.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <format>
#include <nlohmann/json.hpp>
#include <numbers>
#include <string>
#include <vector>

#include "tests/apps/DriveHost.h"

namespace vrn::test {
namespace {

using nlohmann::json;
using testing::EndsWith;

constexpr const char* gun =
    R"({"do":"gun","name":"gun","near":0,"far":80,"height":120,"pose":{"position":[50,50,100],"rpy":[180,0,0]}})"
    "\n";
constexpr const char* paint = R"({"do":"paint","gun":"gun","objects":["plate"]})"
                              "\n";
constexpr const char* spray = R"({"do":"spray","gun":"gun"})"
                              "\n";
/// Of the cone where it meets the plate, 100 of its 120 away.
constexpr double spotRadius = 40 * 100 / 120.0;

/// A plate of squares of side 5 in z = 0, from -50 to 150 in x and y.
class DrivePaintHost : public DriveHost {
protected:
    DrivePaintHost() {
        std::vector<Triangle> triangles;
        for (int row = 0; row < 40; ++row)
            for (int column = 0; column < 40; ++column) {
                const float x = -50 + 5 * static_cast<float>(column),
                            y = -50 + 5 * static_cast<float>(row);
                const Point a{x, y, 0}, b{x + 5, y, 0}, c{x + 5, y + 5, 0}, d{x, y + 5, 0};
                triangles.push_back({a, b, c});
                triangles.push_back({a, c, d});
            }
        WriteBinaryStl(path("plate.stl"), triangles);
    }
    [[nodiscard]] std::vector<json> paintPlate(const std::string& script) const {
        return play(script, {"plate.stl"});
    }
    [[nodiscard]] std::string errorOf(const std::string& script) const {
        const ProcessResult result = run(script, {"plate.stl"});
        EXPECT_EQ(result.status, 1);
        return result.err;
    }
};

/// A corner of each triangle within the radius of the spot counts.
double SpotArea(double centreX, double centreY) {
    double area = 0;
    for (int row = 0; row <= 40; ++row)
        for (int column = 0; column <= 40; ++column) {
            const double x = -50 + 5 * column, y = -50 + 5 * row;
            if (std::hypot(x - centreX, y - centreY) >= spotRadius) continue;
            area += 25;  // six triangles of 12.5 meet at an inner corner
        }
    return area;
}

TEST_F(DrivePaintHost, ASpotIsAsLargeAsTheConeWhereItMeetsThePlate) {
    const auto answers = paintPlate(std::string(gun) + paint + spray);
    EXPECT_TRUE(answers.at(0)["object"].is_number());
    EXPECT_EQ(answers.at(1)["bodies"], 1);
    EXPECT_EQ(answers.at(1)["painted"], 0);
    EXPECT_EQ(answers.at(1)["area"], 40000);
    EXPECT_NEAR(answers.at(2)["covered"].get<double>(), SpotArea(50, 50), 1e-6);
    EXPECT_NEAR(SpotArea(50, 50), std::numbers::pi * spotRadius * spotRadius, 150);
    EXPECT_EQ(answers.at(2)["area"], 40000);
}

TEST_F(DrivePaintHost, PaintBuildsUpFromPoseToPose) {
    const auto answers = paintPlate(
        std::string(gun) + paint +
        R"({"do":"spray","gun":"gun","poses":[{"position":[0,0,100],"rpy":[180,0,0]},{"position":[100,100,100],"rpy":[180,0,0]}]}
{"do":"spray","gun":"gun"}
)");
    const double both = SpotArea(0, 0) + SpotArea(100, 100);
    EXPECT_NEAR(answers.at(2)["covered"].get<double>(), both, 1e-6);
    // The gun stays where the last pose was: what is covered stays covered.
    EXPECT_NEAR(answers.at(3)["covered"].get<double>(), both, 1e-6);
}

TEST_F(DrivePaintHost, AGunThatLooksAwayPaintsNothing) {
    const auto answers = paintPlate(
        std::string(gun) + paint +
        R"({"do":"spray","gun":"gun","poses":[{"position":[50,50,100]},{"position":[50,50,-100]}]})"
        "\n");
    EXPECT_EQ(answers.at(2)["painted"], 0);
    EXPECT_EQ(answers.at(2)["covered"], 0);
}

TEST_F(DrivePaintHost, ThePaintHasItsColourUntilItIsResetOrTheGunEnds) {
    const auto answers = paintPlate(std::string(gun) + paint +
                                    R"({"do":"hide","objects":["gun"]}
{"do":"picture","name":"bare"}
{"do":"paint-colour","objects":["plate"],"colour":[1,0,0]}
{"do":"spray","gun":"gun"}
{"do":"picture","name":"red"}
{"do":"paint-reset","objects":["plate"]}
{"do":"picture","name":"reset"}
{"do":"paint-colour","objects":["plate"],"colour":[0,1,0]}
{"do":"spray","gun":"gun"}
{"do":"picture","name":"green"}
{"do":"paint-end","gun":"gun","objects":["plate"]}
{"do":"picture","name":"ended"}
)");
    EXPECT_EQ(answers.at(7)["painted"], 0);
    EXPECT_EQ(answers.at(12)["bodies"], 0);
    // About where (50, 50, 0), the middle of the spot, is seen.
    const auto at = [this](const std::string& name) { return picture(name).at(400, 360); };
    EXPECT_GT(at("red").r, at("red").g + 60);
    EXPECT_GT(at("green").g, at("green").r + 60);
    EXPECT_LT(Difference(at("bare"), at("reset")), 4);
    EXPECT_LT(Difference(at("bare"), at("ended")), 4);
}

TEST_F(DrivePaintHost, TwoGunsShareThePaintUntilBothEnd) {
    const auto answers = paintPlate(std::string(gun) +
                                    R"({"do":"gun","name":"other","near":30,"far":30,"height":80}
)" + paint + R"({"do":"paint","gun":"other","objects":["plate"]}
)" + spray + R"({"do":"paint-end","gun":"gun","objects":["plate"]}
{"do":"paint-end","gun":"other","objects":["plate"]}
)");
    EXPECT_EQ(answers.at(3)["bodies"], 1);
    EXPECT_EQ(answers.at(5)["bodies"], 1);
    EXPECT_EQ(answers.at(5)["painted"], answers.at(4)["painted"]);
    EXPECT_EQ(answers.at(6)["bodies"], 0);
}

TEST_F(DrivePaintHost, TheReportListsWhatIsPaintedAtTheEnd) {
    const auto answers = play(std::string(gun) + paint + spray +
                                  R"({"do":"paint","gun":"gun","objects":["box"]})"
                                  "\n",
                              {"plate.stl", "box.stl"}, {"--paint-report", path("r.csv")});
    const json& sprayed = answers.at(2);
    const std::string report = ReadBytes(path("r.csv"));
    const std::string plate =
        std::format("1,plate_1,{},{},40000,{:.6g}\n", sprayed["vertices"].get<int>(),
                    sprayed["painted"].get<int>(), sprayed["covered"].get<double>());
    EXPECT_THAT(report, testing::StartsWith("body,name,vertices,painted,area,covered\n" + plate));
    EXPECT_THAT(report, EndsWith(",36,0,60000,0\n"));
}

TEST_F(DrivePaintHost, WithoutPaintTheReportHasHeadingsAlone) {
    (void)play("", {"plate.stl"}, {"--paint-report", path("r.csv")});
    EXPECT_EQ(ReadBytes(path("r.csv")), "body,name,vertices,painted,area,covered\n");
    const ProcessResult result = run("", {"plate.stl"}, {"--paint-report", path("no/r.csv")});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              "vrnview: " + path("no/r.csv") + ": the paint report cannot be written\n");
}

TEST_F(DrivePaintHost, WhatCannotBePaintedIsToldWithItsLine) {
    EXPECT_THAT(errorOf(spray), EndsWith(":1: no gun has the name \"gun\"\n"));
    EXPECT_THAT(errorOf(std::string(gun) + spray),
                EndsWith(":2: the gun \"gun\" paints on nothing\n"));
    EXPECT_THAT(errorOf(std::string(gun) + gun),
                EndsWith(":2: a gun has the name \"gun\" already\n"));
    EXPECT_THAT(errorOf(std::string(gun) + R"({"do":"paint","gun":"gun","objects":["lid"]})"),
                EndsWith(":2: no input has an object of the name \"lid\"\n"));
}

}  // namespace
}  // namespace vrn::test
