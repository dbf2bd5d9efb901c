// What a script shows besides the objects: previews, measures, lines.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepTools.hxx>
#include <gp_Ax2.hxx>

#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "apps/vrnview/DriveScript.h"
#include "tests/apps/DriveHost.h"

namespace vrn::test {
namespace {

using nlohmann::json;
using testing::EndsWith;

/// A block from the origin to (100, 100, 100) with a hole of radius 20 down through its middle: 7
/// faces, 15 edges.
class DrivePreviewsHost : public DriveHost {
protected:
    DrivePreviewsHost() {
        const TopoDS_Shape block = BRepPrimAPI_MakeBox(100, 100, 100).Shape();
        const gp_Ax2 axis(gp_Pnt(50, 50, -10), gp_Dir(0, 0, 1));
        BRepAlgoAPI_Cut cut(block, BRepPrimAPI_MakeCylinder(axis, 20, 120).Shape());
        BRepTools::Write(cut.Shape(), path("block.brep").c_str());
    }
    [[nodiscard]] std::vector<json> playBlock(const std::string& script) const {
        return play(script, {"block.brep"});
    }
    [[nodiscard]] std::string errorOf(const std::string& line) const {
        const ProcessResult result = run(line, {"block.brep"});
        EXPECT_EQ(result.status, 1);
        return result.err;
    }
    /// Runs a line, then another that undoes it; the answer of the first. Expects the picture to
    /// change by `least` pixels or more, and back.
    [[nodiscard]] json playAndUndo(const std::string& line, const std::string& undo,
                                   int least) const {
        const std::string shot = R"({"do":"picture","name":)";
        const auto answers = playBlock(shot + "\"before\"}\n" + line + "\n" + shot +
                                       "\"shown\"}\n" + undo + "\n" + shot + "\"after\"}\n");
        EXPECT_GE(Changed(picture("before"), picture("shown")), least);
        EXPECT_EQ(Changed(picture("before"), picture("after")), 0);
        return answers.at(1);
    }
    /// One of the numbers from 1 to 15 that `what` is true of the measured diameter of.
    [[nodiscard]] std::vector<json> circularEdges() const {
        std::vector<json> found;
        for (int edge = 1; edge <= 15; ++edge) {
            const ProcessResult result =
                run(R"({"do":"measure","what":"diameter","object":"block","edge":)" +
                        std::to_string(edge) + "}",
                    {"block.brep"});
            if (result.status == 0)
                found.push_back(json::parse(result.out));
            else
                EXPECT_THAT(result.err,
                            EndsWith(":1: edge " + std::to_string(edge) + " is no circle\n"));
        }
        return found;
    }
};

std::string Remove(const std::string& what) { return R"({"do":"remove","what":")" + what + "\"}"; }

TEST_F(DrivePreviewsHost, EdgesAreShownAndRemoved) {
    const json answer =
        playAndUndo(R"({"do":"preview","what":"edges","object":"block","edges":[1,2,3,4,5,6,7,8]})",
                    Remove("curves"), 200);
    EXPECT_EQ(answer["edges"], 8);
}

TEST_F(DrivePreviewsHost, TheBoundaryOfAFaceIsShownAndRemoved) {
    const json answer = playAndUndo(R"({"do":"preview","what":"wire","object":"block","face":1})",
                                    Remove("curves"), 50);
    EXPECT_EQ(answer["edges"], 4);
}

TEST_F(DrivePreviewsHost, FacesAreShownAndRemoved) {
    const json answer =
        playAndUndo(R"({"do":"preview","what":"faces","object":"block","faces":[1,2,3,4,5,6,7]})",
                    Remove("faces"), 1000);
    EXPECT_EQ(answer["faces"], 7);
}

TEST_F(DrivePreviewsHost, PointsAreShownInTheFrameOfTheirObjectAndRemoved) {
    const json answer = playAndUndo(
        R"({"do":"preview","what":"points","object":"block","points":[[50,-20,50],[50,-20,80]]})",
        Remove("points"), 1);
    EXPECT_EQ(answer["points"], 2);
}

TEST_F(DrivePreviewsHost, TargetsAreShownAndRemovedWithThePoints) {
    const json answer = playAndUndo(
        R"({"do":"preview","what":"targets","poses":[{"position":[50,-90,50]},{"position":[0,-90,0]}]})",
        Remove("points"), 1);
    EXPECT_EQ(answer["targets"], 2);
}

TEST_F(DrivePreviewsHost, AJointIsShownAndRemoved) {
    const json answer =
        playAndUndo(R"({"do":"preview","what":"joint","from":[50,-50,0],"to":[50,-50,120]})",
                    Remove("joint"), 50);
    EXPECT_EQ(answer["length"], 120);
}

TEST_F(DrivePreviewsHost, AFrameIsShownUnderItsKeyAndRemoved) {
    const json answer =
        playAndUndo(R"({"do":"preview","what":"frame","key":7,"pose":{"position":[50,-90,50]}})",
                    R"({"do":"remove","what":"frame","key":7})", 10);
    EXPECT_EQ(answer["key"], 7);
}

TEST_F(DrivePreviewsHost, ACopyIsShownWhereItWouldStandAndRemoved) {
    const json answer = playAndUndo(
        R"({"do":"preview","what":"copy","object":"block","pose":{"position":[-150,0,0]}})",
        Remove("copy"), 1000);
    EXPECT_TRUE(answer["object"].is_number());
}

TEST_F(DrivePreviewsHost, PreviewsAreNotPicked) {
    const auto answers = playBlock(
        R"({"do":"preview","what":"copy","object":"block","pose":{"position":[0,-60,0]}}
{"do":"preview","what":"faces","object":"block","faces":[1,2,3,4,5,6,7]}
{"do":"hover","x":375,"y":330}
)");
    // The block's own front face.
    ASSERT_EQ(answers.at(2)["hit"], true);
    EXPECT_NEAR(answers[2]["position"][1].get<double>(), 0, 1e-3);
}

TEST_F(DrivePreviewsHost, WhatIsNotThereIsToldWithItsLine) {
    EXPECT_THAT(errorOf(R"({"do":"preview","what":"edges","object":"block","edges":[1,16]})"),
                EndsWith(":1: there is no edge 16: the solid has 15\n"));
    EXPECT_THAT(errorOf(R"({"do":"preview","what":"faces","object":"block","faces":[8]})"),
                EndsWith(":1: there is no face 8: the solid has 7\n"));
    EXPECT_THAT(errorOf(R"({"do":"preview","what":"wire","object":"lid","face":1})"),
                EndsWith(":1: no input has an object of the name \"lid\"\n"));
    EXPECT_THAT(errorOf(R"({"do":"remove","what":"frame","key":7})"),
                EndsWith(":1: no frame is previewed under the key 7\n"));
    EXPECT_THAT(run(R"({"do":"preview","what":"wire","object":"box","face":1})").err,
                EndsWith(":1: \"box\" has no solid with faces and edges\n"));
}

constexpr const char* front = R"({"do":"hover","x":345,"y":300})"
                              "\n";
constexpr const char* right = R"({"do":"hover","x":450,"y":320})"
                              "\n";
constexpr const char* low = R"({"do":"hover","x":400,"y":350})"
                            "\n";

TEST_F(DrivePreviewsHost, ADistanceIsThatOfThePlacesUnderThePixels) {
    const auto answers =
        playBlock(std::string(front) + right +
                  R"({"do":"measure","what":"distance","points":[[345,300],[450,320]]})"
                  "\n");
    EXPECT_NEAR(answers.at(2)["distance"].get<double>(),
                DistanceOf(answers[0]["position"], answers[1]["position"]), 1e-3);
    EXPECT_GT(answers[2]["distance"].get<double>(), 50);
}

TEST_F(DrivePreviewsHost, SnappedPlacesLieOnEdges) {
    const auto answers = playBlock(
        R"({"do":"measure","what":"distance","points":[[320,300],[424,300]],"snap":true})");
    const json& places = answers.at(0)["positions"];
    // The upright edges of the front face.
    EXPECT_NEAR(places[0][0].get<double>(), 0, 1e-3);
    EXPECT_NEAR(places[1][0].get<double>(), 100, 1e-3);
    for (const json& place : places) EXPECT_NEAR(place[1].get<double>(), 0, 1e-3);
}

TEST_F(DrivePreviewsHost, AnAngleIsThatBetweenTheLegsFromTheFirstPlace) {
    const auto answers =
        playBlock(std::string(front) + right + low +
                  R"({"do":"measure","what":"angle","points":[[345,300],[450,320],[400,350]]})"
                  "\n");
    const json &v = answers[0]["position"], &a = answers[1]["position"],
               &b = answers[2]["position"];
    // By the law of cosines.
    const double va = DistanceOf(v, a), vb = DistanceOf(v, b), ab = DistanceOf(a, b);
    const double angle = std::acos((va * va + vb * vb - ab * ab) / (2 * va * vb));
    EXPECT_NEAR(answers.at(3)["angle"].get<double>(), angle * 180 / std::numbers::pi, 1e-2);
}

TEST_F(DrivePreviewsHost, ADiameterIsThatOfTheCircleThroughThePlaces) {
    const auto answers =
        playBlock(std::string(front) + right + low +
                  R"({"do":"measure","what":"diameter","points":[[345,300],[450,320],[400,350]]})"
                  "\n");
    const json& circle = answers.at(3);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(DistanceOf(answers[static_cast<std::size_t>(i)]["position"], circle["centre"]),
                    circle["diameter"].get<double>() / 2, 1e-3);
}

TEST_F(DrivePreviewsHost, TheTwoRimsOfTheHoleAreTheCirclesOfTheBlock) {
    const std::vector<json> circles = circularEdges();
    ASSERT_EQ(circles.size(), 2u);
    for (const json& circle : circles) {
        EXPECT_NEAR(circle["diameter"].get<double>(), 40, 1e-9);
        EXPECT_NEAR(circle["centre"][0].get<double>(), 50, 1e-9);
        EXPECT_NEAR(circle["centre"][1].get<double>(), 50, 1e-9);
    }
    EXPECT_NEAR(
        std::abs(circles[0]["centre"][2].get<double>() - circles[1]["centre"][2].get<double>()),
        100, 1e-9);
}

TEST_F(DrivePreviewsHost, MeasuresAreDrawnAndRemoved) {
    (void)playAndUndo(
        R"({"do":"measure","what":"diameter","points":[[345,300],[450,320],[400,350]]})",
        Remove("measures"), 100);
    (void)playAndUndo(R"({"do":"measure","what":"angle","points":[[345,300],[450,320],[400,350]]})",
                      Remove("measures"), 30);
    (void)playAndUndo(R"({"do":"measure","what":"distance","points":[[345,300],[450,320]]})",
                      Remove("measures"), 3);
}

TEST_F(DrivePreviewsHost, TheDirectionsOfAPickedFaceAreShownAndRemoved) {
    const json answer = playAndUndo(R"({"do":"uv","x":345,"y":300})", Remove("uv"), 10);
    EXPECT_TRUE(answer["object"].is_number());
    EXPECT_GE(answer["face"].get<int>(), 1);
}

TEST_F(DrivePreviewsHost, PolylinesAreDrawnAndRemoved) {
    const json answer = playAndUndo(
        R"({"do":"polyline","points":[[0,-50,0],[100,-50,0],[100,-50,100]],"arrow":true})",
        Remove("polylines"), 50);
    EXPECT_EQ(answer["points"], 3);
}

TEST_F(DrivePreviewsHost, WhatCannotBeMeasuredIsToldWithItsLine) {
    EXPECT_THAT(errorOf(R"({"do":"measure","what":"distance","points":[[345,300],[5,7.5]]})"),
                EndsWith(":1: nothing lies under the pixel 5, 7.5\n"));
    EXPECT_THAT(
        errorOf(R"({"do":"measure","what":"diameter","points":[[345,300],[345,300],[400,350]]})"),
        EndsWith(":1: the three points lie on one line\n"));
    EXPECT_THAT(
        errorOf(R"({"do":"measure","what":"distance","points":[[370,315],[345,300]],"snap":true})"),
        EndsWith(":1: no edge is near the pixel 370, 315\n"));
    EXPECT_THAT(run(R"({"do":"uv","x":400,"y":310})").err,
                EndsWith(":1: no face of a solid lies under the pixel 400, 310\n"));
}

TEST_F(DrivePreviewsHost, PlacesThatFallTogetherAreToldByTheirKey) {
    EXPECT_THAT(
        errorOf(R"({"do":"measure","what":"angle","points":[[345,300],[345,300],[400,350]]})"),
        EndsWith(":1: the \"points\" make no angle: two fall together, or all lie in line\n"));
    EXPECT_THAT(
        errorOf(R"({"do":"polyline","points":[[1,2,3],[1,2,3]],"arrow":true})"),
        EndsWith(":1: the first two \"points\" fall together: the \"arrow\" has no direction\n"));
    EXPECT_THAT(errorOf(R"({"do":"preview","what":"joint","from":[1,2,3],"to":[1,2,3]})"),
                EndsWith(":1: \"from\" and \"to\" fall together: the joint has no axis\n"));
}

TEST_F(DrivePreviewsHost, TheExampleScriptRuns) {
    const auto answers =
        playBlock(ReadBytes(std::string(VRN_SOURCE_FOLDER) + "/docs/snippets/hands.jsonl"));
    ASSERT_EQ(answers.size(), 22u);
    EXPECT_EQ(answers.at(1)["part"], "x");
    EXPECT_NEAR(answers.at(18)["diameter"].get<double>(), 40, 1e-9);
    EXPECT_TRUE(std::filesystem::exists(path("out/hands.png")));
}

/// Every line of the page that is a line of a script.
TEST_F(DrivePreviewsHost, TheLinesOfThePageCanBeRead) {
    std::istringstream page(ReadBytes(std::string(VRN_SOURCE_FOLDER) + "/docs/driving.md"));
    int lines = 0;
    for (std::string line; std::getline(page, line);) {
        if (!line.starts_with("{\"do\"")) continue;
        ++lines;
        EXPECT_NO_THROW((void)host::ParseDriveScript(line, "page")) << line;
    }
    EXPECT_GE(lines, 14);
}

}  // namespace
}  // namespace vrn::test
