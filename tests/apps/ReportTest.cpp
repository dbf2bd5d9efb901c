#include "apps/vrnview/Report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace vrn::host {
namespace {

using testing::HasSubstr;

SceneReport Example() {
    SceneReport report;
    report.inputs.push_back({"a.stl", "", 1.5, {1, 1, 12, 36, 0}});
    report.inputs.push_back({"b.stl", "No such file or directory", 0.25, {}});
    report.totals = {1, 1, 12, 36, 0};
    report.bounds = Bounds({0, -1, 0.5}, {1, 2, 3});
    report.visuals.push_back({7, 9, "a_7", {{8, 14, "a_8", {}}}});
    return report;
}

TEST(Report, JsonHasThePromisedShape) {
    EXPECT_EQ(
        JsonOf(Example()),
        R"({"inputs":[{"file":"a.stl","ok":true,"error":null,"problems":[],"ms":1.5,"bodies":1,"faces":1,"triangles":12,)"
        R"("vertices":36,"points":0},{"file":"b.stl","ok":false,"error":"No such file or directory","problems":[],"ms":0.25,)"
        R"("bodies":0,"faces":0,"triangles":0,"vertices":0,"points":0}],)"
        R"("totals":{"bodies":1,"faces":1,"triangles":12,"vertices":36,"points":0},)"
        R"("bounds":{"min":[0.0,-1.0,0.5],"max":[1.0,2.0,3.0]},)"
        R"("visuals":[{"id":7,"type":9,"name":"a_7","children":[)"
        R"({"id":8,"type":14,"name":"a_8","children":[]}]}]})"
        "\n");
}

TEST(Report, JsonOfAnEmptySceneHasNullBounds) {
    EXPECT_EQ(
        JsonOf({}),
        R"({"inputs":[],"totals":{"bodies":0,"faces":0,"triangles":0,"vertices":0,"points":0},)"
        R"("bounds":null,"visuals":[]})"
        "\n");
}

TEST(Report, JsonOfAFileNameThatIsNotUtf8IsStillJson) {
    SceneReport report;
    report.inputs.push_back({"a\xff.stl", "", 1, {}});
    EXPECT_THAT(JsonOf(report), HasSubstr("a\xEF\xBF\xBD.stl"));
}

TEST(Report, TextTellsInputsTreeTotalsAndBounds) {
    EXPECT_EQ(TextOf(Example()),
              "a.stl: read in 1.5 ms: 1 body, 1 face, 12 triangles, 36 vertices, 0 points\n"
              "b.stl: not read: No such file or directory\n"
              "\n"
              "visuals:\n"
              "  Part \"a_7\" id 7\n"
              "    Mesh \"a_8\" id 8\n"
              "\n"
              "totals: 1 body, 1 face, 12 triangles, 36 vertices, 0 points\n"
              "bounds: (0, -1, 0.5) to (1, 2, 3)\n");
}

TEST(Report, TextOfAnEmptySceneHasNoBounds) {
    EXPECT_THAT(TextOf({}), HasSubstr("bounds: none\n"));
}

TEST(Report, ErrorLineIsOneLineNamingFileAndReason) {
    EXPECT_EQ(ErrorLines({"b.stl", "the file is empty", 0, {}}),
              "vrnview: b.stl: the file is empty\n");
    EXPECT_EQ(ErrorLines({"two\nlines\x1b.stl", "broken\r\n", 0, {}}),
              "vrnview: two?lines?.stl: broken??\n");
}

TEST(Report, EachProblemOfAnInputIsALineOfItsOwn) {
    EXPECT_EQ(ErrorLines({"cell.station.json", "", 0, {}, {"object 1: no", "object 2: no"}}),
              "vrnview: cell.station.json: object 1: no\n"
              "vrnview: cell.station.json: object 2: no\n");
    EXPECT_EQ(ErrorLines({"a.stl", "", 0, {}}), "");
}

TEST(Report, KindsAreNamedByTheirNumber) {
    EXPECT_EQ(KindOf(0), "None");
    EXPECT_EQ(KindOf(9), "Part");
    EXPECT_EQ(KindOf(14), "Mesh");
    EXPECT_EQ(KindOf(34), "WorkEnvelope");
    EXPECT_EQ(KindOf(6), "6");
    EXPECT_EQ(KindOf(18), "18");
}

}  // namespace
}  // namespace vrn::host
