// The built host as it is asked what lies under pixels, boxes and lassos.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <BRepAdaptor_Surface.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepTools.hxx>
#include <TopExp.hxx>
#include <TopoDS.hxx>
#include <TopTools_IndexedMapOfShape.hxx>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <format>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/apps/ArmStation.h"
#include "tests/apps/TestFiles.h"
#include "tests/apps/Vrnview.h"

namespace vrn::test {
namespace {

using headless::Picture;
using nlohmann::ordered_json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using testing::UnorderedElementsAre;

std::vector<ordered_json> JsonLines(const std::string& text) {
    std::vector<ordered_json> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(ordered_json::parse(line));
    return lines;
}

std::vector<std::string> Keys(const ordered_json& object) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : object.items()) keys.push_back(key);
    return keys;
}

void ExpectNear(const ordered_json& position, const Point& wanted, double tolerance) {
    ASSERT_TRUE(position.is_array() && position.size() == 3) << position;
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(position[i].get<double>(), wanted[i], tolerance) << position;
}

/// The number of the face of a box from the origin that is the plane x, y or z = `value`.
int FaceAt(const TopoDS_Shape& box, int axis, double value) {
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(box, TopAbs_FACE, faces);
    for (int i = 1; i <= faces.Extent(); ++i) {
        const gp_Pln plane = BRepAdaptor_Surface(TopoDS::Face(faces(i))).Plane();
        const bool isAcross = std::abs(plane.Axis().Direction().Coord(axis + 1)) > 0.5;
        if (isAcross && std::abs(plane.Location().Coord(axis + 1) - value) < 1e-6) return i;
    }
    return 0;
}

/// Files beside each other in x, seen from above: right on the picture is +X, up is +Y.
class PickHost : public VrnviewTest {
protected:
    [[nodiscard]] static std::vector<std::string> fromAbove(double x, double y) {
        return {"--size", "800x600", "--camera", std::format("{0},{1},1000,{0},{1},0", x, y)};
    }
    /// From 1000 above (x, y); each of `questions` is one argument.
    [[nodiscard]] ProcessResult pick(const std::vector<std::string>& files, double x, double y,
                                     const std::vector<std::string>& questions) const {
        std::vector<std::string> arguments{"pick"};
        for (const std::string& file : files) arguments.push_back(path(file));
        for (const std::string& word : fromAbove(x, y)) arguments.push_back(word);
        arguments.insert(arguments.end(), questions.begin(), questions.end());
        return vrnview(arguments);
    }
    [[nodiscard]] std::vector<ordered_json> ask(const std::vector<std::string>& files, double x,
                                                double y,
                                                std::vector<std::string> questions) const {
        questions.emplace_back("--json");
        const ProcessResult result = pick(files, x, y, questions);
        EXPECT_EQ(result.status, 0) << result.err;
        return JsonLines(result.out);
    }
    TopoDS_Shape writeBrepBox(const std::string& name, double size) const {
        const TopoDS_Shape box = BRepPrimAPI_MakeBox(size, size, size).Shape();
        EXPECT_TRUE(BRepTools::Write(box, path(name).c_str()));
        return box;
    }
    void writeStlBox(const std::string& name, const Point& low, const Point& high) const {
        WriteBinaryStl(path(name), BoxTriangles(low, high));
    }
    /// `count` by `count` points at z = 0, a `spacing` apart, from the origin on.
    void writeGridOfPoints(const std::string& name, int count, double spacing) const {
        std::string text;
        for (int i = 0; i < count; ++i)
            for (int j = 0; j < count; ++j)
                text += std::format("{} {} 0\n", i * spacing, j * spacing);
        WriteBytes(path(name), text);
    }
    /// Millimetres of the ground a pixel, for the camera above (x, y).
    [[nodiscard]] double groundScale(const std::string& file, double x, double y) const {
        const auto miss = ask({file}, x, y, {"--at", "10,300"});
        EXPECT_EQ(miss.at(0)["hit"], false);
        return (x - miss.at(0)["position"][0].get<double>()) / 390;
    }
};

TEST_F(PickHost, AFaceOfABoxIsHitWhereAPersonSeesIt) {
    const TopoDS_Shape box = writeBrepBox("box.brep", 100);
    const auto hits = ask({"box.brep"}, 30, 60, {"--at", "400,300"});
    ASSERT_EQ(hits.size(), 1u);
    const ordered_json& hit = hits[0];
    EXPECT_EQ(hit["hit"], true);
    EXPECT_EQ(hit["visual"]["type"], 10);
    EXPECT_THAT(hit["visual"]["name"].get<std::string>(), StartsWith("box_"));
    EXPECT_EQ(hit["face"], FaceAt(box, 2, 100));
    ExpectNear(hit["position"], {30, 60, 100}, 0.01);
    ExpectNear(hit["localPosition"], {30, 60, 100}, 0.01);
    EXPECT_GT(hit["distance"].get<double>(), 0);
    EXPECT_LT(hit["distance"].get<double>(), 900);
    EXPECT_EQ(hit["index"], -1);
    EXPECT_TRUE(hit["snap"].is_null());  // more than 25 from every edge
    EXPECT_TRUE(hit["edge"].is_null());
    EXPECT_GT(hit["us"].get<double>(), 0);
}

TEST_F(PickHost, AHitNearAnEdgeSnapsToIt) {
    writeBrepBox("box.brep", 100);
    const ordered_json hit = ask({"box.brep"}, 30, 90, {"--at", "400,300"}).at(0);
    ASSERT_FALSE(hit["snap"].is_null());
    EXPECT_THAT(Keys(hit["snap"]), ElementsAre("param", "position"));
    ExpectNear(hit["snap"]["position"], {30, 100, 100}, 0.01);
    EXPECT_GE(hit["edge"].get<int>(), 1);
    EXPECT_LE(hit["edge"].get<int>(), 12);
}

TEST_F(PickHost, PositionsOfAMovedPartAreOfTheWorld) {
    writeBrepBox("box.brep", 100);
    WriteBytes(path("cell.station.json"), R"({"format": "vrn-station", "version": 1, "objects": [
        {"type": "part", "id": "box", "file": "box.brep",
         "pose": {"position": [500, 200, -50], "rpy": [0, 0, 90]}}]})");
    // Turned a quarter about z, the part lies between 400 and 500 in x.
    const ordered_json hit = ask({"cell.station.json"}, 430, 290, {"--at", "400,300"}).at(0);
    ExpectNear(hit["position"], {430, 290, 50}, 0.01);
    ExpectNear(hit["localPosition"], {90, 70, 100}, 0.01);
    ExpectNear(hit["snap"]["position"], {430, 300, 50}, 0.01);
}

TEST_F(PickHost, PixelsGoRightAndDownAsOnThePicture) {
    writeBrepBox("box.brep", 100);
    const auto hits =
        ask({"box.brep"}, 30, 60, {"--at", "401,300", "--at", "400,301", "--at", "10,300"});
    ASSERT_EQ(hits.size(), 3u);
    const double perPixel = (30 - hits[2]["position"][0].get<double>()) / 390 * 0.9;
    ExpectNear(hits[0]["position"], {static_cast<float>(30 + perPixel), 60, 100}, 0.01);
    ExpectNear(hits[1]["position"], {30, static_cast<float>(60 - perPixel), 100}, 0.01);
}

TEST_F(PickHost, AMissTellsTheGround) {
    writeBrepBox("box.brep", 100);
    const ordered_json miss = ask({"box.brep"}, 500, 400, {"--at", "400,300"}).at(0);
    EXPECT_THAT(Keys(miss), ElementsAre("hit", "visual", "face", "edge", "position",
                                        "localPosition", "distance", "index", "snap", "us"));
    EXPECT_EQ(miss["hit"], false);
    ExpectNear(miss["position"], {500, 400, 0}, 0.01);
    for (const char* key : {"visual", "face", "edge", "localPosition", "distance", "snap"})
        EXPECT_TRUE(miss[key].is_null()) << key;
    EXPECT_EQ(miss["index"], -1);
}

TEST_F(PickHost, JsonHasThePromisedKeysInTheirOrder) {
    writeBrepBox("box.brep", 100);
    const auto answers = ask(
        {"box.brep"}, 50, 20,
        {"--at", "400,300", "--box", "1,1,799,599", "--lasso", "1,1", "799,1", "799,599", "1,599"});
    ASSERT_EQ(answers.size(), 3u);
    EXPECT_THAT(Keys(answers[0]), ElementsAre("hit", "visual", "face", "edge", "position",
                                              "localPosition", "distance", "index", "snap", "us"));
    EXPECT_THAT(Keys(answers[0]["visual"]), ElementsAre("id", "type", "name"));
    for (const std::size_t i : {1, 2}) {
        EXPECT_THAT(Keys(answers[i]), ElementsAre("visuals", "points"));
        ASSERT_EQ(answers[i]["visuals"].size(), 1u);
        EXPECT_EQ(answers[i]["visuals"][0], answers[0]["visual"]);
        EXPECT_EQ(answers[i]["points"], 0);
    }
}

TEST_F(PickHost, ThePointOfACloudIsToldByItsNumber) {
    writeGridOfPoints("scan.xyz", 5, 50);
    const ordered_json hit = ask({"scan.xyz"}, 100, 150, {"--at", "400,300"}).at(0);
    EXPECT_EQ(hit["hit"], true);
    EXPECT_EQ(hit["visual"]["type"], 8);
    EXPECT_EQ(hit["index"], 2 * 5 + 3);
    ExpectNear(hit["position"], {100, 150, 0}, 0.01);
    EXPECT_TRUE(hit["face"].is_null());
}

TEST_F(PickHost, AMeshIsHitWithoutAFaceOrAnEdge) {
    writeStlBox("box.stl", {0, 0, 0}, {100, 100, 100});
    const ordered_json hit = ask({"box.stl"}, 30, 60, {"--at", "400,300"}).at(0);
    EXPECT_EQ(hit["visual"]["type"], 14);
    ExpectNear(hit["position"], {30, 60, 100}, 0.01);
    EXPECT_TRUE(hit["face"].is_null());
    EXPECT_TRUE(hit["snap"].is_null());
}

TEST_F(PickHost, ABoxHoldsThePointsThatACountFinds) {
    constexpr int count = 40;
    constexpr double spacing = 10, x = 203, y = 197;
    writeGridOfPoints("scan.xyz", count, spacing);
    const double scale = groundScale("scan.xyz", x, y);
    constexpr double left = 333, top = 251, right = 522, bottom = 407;
    int inside = 0;
    for (int i = 0; i < count; ++i)
        for (int j = 0; j < count; ++j) {
            const double px = 400 + (i * spacing - x) / scale, py = 300 - (j * spacing - y) / scale;
            inside += px > left && px < right && py > top && py < bottom;
        }
    ASSERT_GT(inside, 50);
    const auto answer = ask({"scan.xyz"}, x, y, {"--box", "333,251,522,407"}).at(0);
    EXPECT_EQ(answer["points"], inside);
    ASSERT_EQ(answer["visuals"].size(), 1u);
    EXPECT_EQ(answer["visuals"][0]["type"], 8);
    // Whichever corners are given.
    EXPECT_EQ(ask({"scan.xyz"}, x, y, {"--box", "522,251,333,407"}).at(0), answer);
}

TEST_F(PickHost, ALassoHoldsThePointsThatACountFinds) {
    constexpr int count = 40;
    constexpr double spacing = 10, x = 203, y = 197;
    writeGridOfPoints("scan.xyz", count, spacing);
    const double scale = groundScale("scan.xyz", x, y);
    // A triangle: inside is the same side of all three edges.
    constexpr double corners[3][2] = {{311, 203}, {567, 262}, {352, 471}};
    int inside = 0;
    for (int i = 0; i < count; ++i)
        for (int j = 0; j < count; ++j) {
            const double px = 400 + (i * spacing - x) / scale, py = 300 - (j * spacing - y) / scale;
            int positive = 0;
            for (int k = 0; k < 3; ++k) {
                const auto &a = corners[k], &b = corners[(k + 1) % 3];
                positive += (b[0] - a[0]) * (py - a[1]) - (b[1] - a[1]) * (px - a[0]) > 0;
            }
            inside += positive == 0 || positive == 3;
        }
    ASSERT_GT(inside, 50);
    const auto answer = ask({"scan.xyz"}, x, y, {"--lasso", "311,203", "567,262", "352,471"}).at(0);
    EXPECT_EQ(answer["points"], inside);
    EXPECT_EQ(answer["visuals"].size(), 1u);
}

TEST_F(PickHost, BoxAndLassoListWhatLiesUnderThem) {
    writeStlBox("left.stl", {0, 0, 0}, {100, 100, 100});
    writeStlBox("right.stl", {300, 0, 0}, {400, 100, 100});
    const std::vector<std::string> files{"left.stl", "right.stl"};
    const auto names = [](const ordered_json& answer) {
        std::vector<std::string> found;
        for (const ordered_json& visual : answer["visuals"]) {
            const std::string name = visual["name"];
            found.push_back(name.substr(0, name.rfind('_')));
        }
        return found;
    };
    const auto answers =
        ask(files, 200, 50,
            {"--box", "0,0,399,600", "--lasso", "401,0", "800,0", "800,600", "401,600"});
    EXPECT_THAT(names(answers.at(0)), ElementsAre("left"));
    EXPECT_THAT(names(answers.at(1)), ElementsAre("right"));
    EXPECT_THAT(names(ask(files, 200, 50, {"--box", "0,0,800,600"}).at(0)),
                UnorderedElementsAre("left", "right"));
    EXPECT_THAT(names(ask(files, 200, 50, {"--box", "395,0,405,600"}).at(0)), ElementsAre());
    // Between the legs of a lasso that goes round it, a part is outside.
    EXPECT_THAT(names(ask(files, 200, 50,
                          {"--lasso", "0,0", "800,0", "800,600", "401,600", "401,2", "399,2",
                           "399,599", "398,599", "398,1", "0,1"})
                          .at(0)),
                ElementsAre("right"));
}

TEST_F(PickHost, AnObjectThatSeveralVisualsStandForIsListedOnce) {
    WriteBytes(path("arm.station.json"),
               ArmStation(R"("tasks": [)" +
                              DrawTask(MoveTo("joint", "a") + ", " + MoveTo("linear", "b") + ", " +
                                       MoveTo("linear", "a")) +
                              "]",
                          "", /*withBodies=*/false));
    const ProcessResult result =
        vrnview({"pick", path("arm.station.json"), "--box", "0,0,1280,720", "--lasso", "0,0",
                 "1280,0", "1280,720", "0,720", "--json"});
    ASSERT_EQ(result.status, 0) << result.err;
    for (const ordered_json& answer : JsonLines(result.out)) {
        std::set<std::uint32_t> listed;
        for (const ordered_json& visual : answer["visuals"])
            EXPECT_TRUE(listed.insert(visual["id"].get<std::uint32_t>()).second) << visual;
        EXPECT_GE(listed.size(), 2u);
    }
}

TEST_F(PickHost, AVisualWithoutAnObjectIsToldWithItsOwner) {
    WriteBytes(path("cell.station.json"), R"({"format": "vrn-station", "version": 1, "objects": [
        {"type": "sensor", "id": "gate", "sideA": [0, 100, 0], "sideB": [100, 0, 0]}]})");
    const auto answers =
        ask({"cell.station.json"}, 50, 50, {"--at", "400,300", "--box", "380,280,420,320"});
    const ordered_json visual = answers.at(0)["visual"];
    EXPECT_THAT(Keys(visual), ElementsAre("id", "type", "name", "owner"));
    EXPECT_THAT(Keys(visual["owner"]), ElementsAre("id", "type", "name"));
    EXPECT_THAT(visual["owner"]["name"].get<std::string>(), StartsWith("gate_"));
    EXPECT_EQ(visual["owner"]["type"], 28);
    EXPECT_THAT(answers.at(1)["visuals"].get<std::vector<ordered_json>>(),
                testing::Contains(visual));
    EXPECT_THAT(pick({"cell.station.json"}, 50, 50, {"--at", "400,300"}).out,
                HasSubstr(" of Sensor \"gate_"));
}

TEST_F(PickHost, NamesAsTheyArePrintedStandForTheirObjects) {
    writeBrepBox("box.brep", 100);
    const std::string name = ask({"box.brep"}, 30, 60, {"--at", "400,300"}).at(0)["visual"]["name"];
    const auto render = [&](const std::vector<std::string>& more) {
        std::vector<std::string> words{"render", path("box.brep"), "-o", path("p.png")};
        words.insert(words.end(), more.begin(), more.end());
        return vrnview(words);
    };
    const auto middle = [&](std::vector<std::string> more) {
        for (const std::string& word : fromAbove(30, 60)) more.push_back(word);
        const ProcessResult result = render(more);
        EXPECT_EQ(result.status, 0) << result.err;
        return Picture::loadPng(path("p.png")).at(400, 300);
    };
    EXPECT_GT(Difference(middle({"--highlight", name}), middle({})), 50);
    EXPECT_GT(Difference(middle({"--select", name}), middle({})), 50);
    EXPECT_EQ(render({"--view", "focus:" + name}).status, 0);
    EXPECT_EQ(render({"--view", "focus:nope"}).err,
              "vrnview: --view focus:nope: no input has an object of that name\n");
}

TEST_F(PickHost, APictureShowsWhatWasFound) {
    writeBrepBox("box.brep", 100);
    writeGridOfPoints("scan.xyz", 5, 20);
    const auto pictureOf = [&](const std::string& file, const std::vector<std::string>& question) {
        std::vector<std::string> questions = question;
        questions.insert(questions.end(), {"--picture", path("found.png")});
        EXPECT_EQ(pick({file}, 33, 60, questions).status, 0);
        return Picture::loadPng(path("found.png"));
    };
    const auto plain = pictureOf("box.brep", {"--at", "10,10"}).at(400, 300);
    EXPECT_GT(Difference(pictureOf("box.brep", {"--at", "400,300"}).at(400, 300), plain), 50);
    EXPECT_GT(Difference(pictureOf("box.brep", {"--box", "0,0,800,600"}).at(400, 300), plain), 50);
    EXPECT_NE(pictureOf("scan.xyz", {"--at", "10,10"}).getPixels(),
              pictureOf("scan.xyz", {"--box", "0,0,800,600"}).getPixels());
}

TEST_F(PickHost, PeopleGetALineForEachQuestion) {
    writeBrepBox("box.brep", 100);
    const ProcessResult result =
        pick({"box.brep"}, 30, 90, {"--at", "400,300", "--at", "10,10", "--box", "0,0,800,600"});
    std::istringstream in(result.out);
    std::string hit, miss, box;
    std::getline(in, hit);
    std::getline(in, miss);
    std::getline(in, box);
    EXPECT_THAT(hit, StartsWith("Solid \"box_"));
    EXPECT_THAT(hit, HasSubstr(", face "));
    EXPECT_THAT(hit, HasSubstr(" at (30, 90, 100)"));
    EXPECT_THAT(hit, HasSubstr(", snaps to edge "));
    EXPECT_THAT(miss, StartsWith("nothing; the ground at ("));
    EXPECT_THAT(box, StartsWith("1 visual, 0 points: Solid \"box_"));
}

TEST_F(PickHost, AnUnreadableInputIsToldAndTheRestIsPicked) {
    writeBrepBox("box.brep", 100);
    const ProcessResult result =
        pick({"box.brep", "none.stl"}, 30, 60, {"--at", "400,300", "--json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errLines().size(), 1u) << result.err;
    EXPECT_EQ(JsonLines(result.out).at(0)["hit"], true);
}

TEST_F(PickHost, WrongUseEndsWithTwo) {
    writeBrepBox("box.brep", 100);
    EXPECT_THAT(pick({"box.brep"}, 0, 0, {}).err, HasSubstr("--at, --box or --lasso"));
    EXPECT_THAT(pick({"box.brep"}, 0, 0, {"--at", "5"}).err, HasSubstr("'5' is not X,Y"));
    EXPECT_THAT(pick({"box.brep"}, 0, 0, {"--box", "1,2,3"}).err,
                HasSubstr("'1,2,3' is not x0,y0,x1,y1"));
    for (const std::vector<std::string>& questions : {std::vector<std::string>{},
                                                      {"--at", "1,nan"},
                                                      {"--at", "1,2,3"},
                                                      {"--box", "1,2,3,x"},
                                                      {"--lasso", "1,1", "2,2"},
                                                      {"--lasso", "1,1", "2,2", "3"}})
        EXPECT_EQ(pick({"box.brep"}, 0, 0, questions).status, 2);
}

TEST_F(PickHost, RealFilesAnswerWhereTheyAreSeen) {
    const std::filesystem::path file = SharedData("step/as1-oc-214.stp");
    if (file.empty()) GTEST_SKIP() << "the sample as1-oc-214.stp is not on this machine";
    const ProcessResult result = vrnview({"pick", file, "--size", "800x600", "--at", "400,300",
                                          "--at", "5,5", "--box", "0,0,800,600", "--json"});
    ASSERT_EQ(result.status, 0) << result.err;
    const auto answers = JsonLines(result.out);
    EXPECT_THAT(answers.at(0)["visual"]["name"].get<std::string>(), StartsWith("plate_"));
    EXPECT_NEAR(answers.at(0)["position"][2].get<double>(), 20, 1e-3);  // the plate's thickness
    EXPECT_EQ(answers.at(1)["hit"], false);
    EXPECT_EQ(answers.at(2)["visuals"].size(), 18u);
}

}  // namespace
}  // namespace vrn::test
