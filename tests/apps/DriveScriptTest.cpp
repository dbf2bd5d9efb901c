#include "apps/vrnview/DriveScript.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <format>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "apps/vrnview/TempFolder.h"
#include "tests/apps/TestFiles.h"

namespace vrn::test {
namespace {

using host::DriveLine;
using host::ParseDriveScript;
using testing::ElementsAre;

DriveLine Only(const std::string& text) {
    const std::vector<DriveLine> lines = ParseDriveScript(text, "s");
    EXPECT_EQ(lines.size(), 1u);
    return lines.at(0);
}

/// The message of a refusal; empty if the script is taken.
std::string Refusal(const std::string& text) {
    try {
        (void)ParseDriveScript(text, "s");
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

TEST(DriveScript, GesturesAreReadKeyByKey) {
    const auto press = std::get<host::drive::Press>(Only(R"({"y":2.5,"do":"press","x":1})").action);
    EXPECT_EQ(press.x, 1);
    EXPECT_EQ(press.y, 2.5f);
    const auto drag = std::get<host::drive::Drag>(Only(R"({"do":"drag","dx":-1,"dy":2})").action);
    EXPECT_EQ(drag.dx, -1);
    EXPECT_EQ(drag.dy, 2);
    const auto pan =
        std::get<host::drive::Pan>(Only(R"({"do":"pan","x":1,"y":2,"dx":3,"dy":4})").action);
    EXPECT_EQ(pan.x, 1);
    EXPECT_EQ(pan.y, 2);
    EXPECT_EQ(pan.dx, 3);
    EXPECT_EQ(pan.dy, 4);
    const auto wheel =
        std::get<host::drive::Wheel>(Only(R"({"do":"wheel","x":1,"y":2,"delta":-3})").action);
    EXPECT_EQ(wheel.x, 1);
    EXPECT_EQ(wheel.y, 2);
    EXPECT_EQ(wheel.delta, -3);
}

TEST(DriveScript, QuestionsAreReadKeyByKey) {
    const auto hover = std::get<host::drive::Hover>(Only(R"({"do":"hover","x":1,"y":2})").action);
    EXPECT_EQ(hover.x, 1);
    EXPECT_EQ(hover.y, 2);
    const auto click = std::get<host::drive::Click>(Only(R"({"do":"click","x":3,"y":4})").action);
    EXPECT_EQ(click.x, 3);
    EXPECT_EQ(click.y, 4);
    const auto box =
        std::get<host::drive::Box>(Only(R"({"do":"box","x0":1,"y0":2,"x1":3,"y1":4})").action);
    EXPECT_EQ(box.x0, 1);
    EXPECT_EQ(box.y0, 2);
    EXPECT_EQ(box.x1, 3);
    EXPECT_EQ(box.y1, 4);
    const auto lasso =
        std::get<host::drive::Lasso>(Only(R"({"do":"lasso","points":[[1,2],[3,4],[5,6]]})").action);
    ASSERT_EQ(lasso.polygon.size(), 3u);
    EXPECT_EQ(lasso.polygon[1], (rob::PosTemplate<float>{3, 4, 0}));
}

TEST(DriveScript, ChangesAreReadKeyByKey) {
    EXPECT_THAT(std::get<host::drive::Select>(Only(R"({"do":"select","objects":["a","b"]})").action)
                    .objects,
                ElementsAre("a", "b"));
    EXPECT_FALSE(std::get<host::drive::Show>(Only(R"({"do":"hide","objects":["a"]})").action).show);
    EXPECT_TRUE(std::get<host::drive::Show>(Only(R"({"do":"show","objects":["a"]})").action).show);
    EXPECT_EQ(std::get<host::drive::Mode>(Only(R"({"do":"mode","mode":"triangles"})").action).mode,
              visual::Scene::DisplayMode::TriangleWires);
    EXPECT_EQ(
        std::get<host::drive::TakePicture>(Only(R"({"do":"picture","name":"a b"})").action).name,
        "a b");
}

TEST(DriveScript, LinesOfTheHandleAreReadKeyByKey) {
    using namespace host::drive;
    const auto only = [](const std::string& text) {
        return std::get<HandleAction>(Only(text).action);
    };
    const auto attach = std::get<Attach>(only(R"({"do":"attach","object":"arm","size":2.5})"));
    EXPECT_EQ(attach.object, "arm");
    EXPECT_EQ(attach.size, 2.5f);
    EXPECT_FALSE(std::get<Attach>(only(R"({"do":"attach","object":"arm"})")).size);
    EXPECT_TRUE(std::holds_alternative<Detach>(only(R"({"do":"detach"})")));
    EXPECT_EQ(std::get<HandleState>(only(R"({"do":"handle","state":"show"})")).state,
              HandleState::State::Show);
    EXPECT_EQ(std::get<HandleState>(only(R"({"do":"handle","state":"hide"})")).state,
              HandleState::State::Hide);
    EXPECT_EQ(std::get<HandleState>(only(R"({"do":"handle","state":"reset"})")).state,
              HandleState::State::Reset);
    EXPECT_EQ(std::get<Grab>(only(R"({"do":"grab","x":1,"y":2})")).at, (host::Pixel{1, 2}));
    EXPECT_EQ(std::get<DragTo>(only(R"({"do":"drag","x":3,"y":4})")).to, (host::Pixel{3, 4}));
    EXPECT_TRUE(std::holds_alternative<Release>(only(R"({"do":"release"})")));
}

TEST(DriveScript, MistakesInLinesOfTheHandleAreTold) {
    EXPECT_EQ(Refusal(R"({"do":"attach"})"), "s:1: attach needs \"object\", a text");
    for (const char* size : {"0.4", "11", "\"2\""})
        EXPECT_EQ(Refusal(std::string(R"({"do":"attach","object":"a","size":)") + size + "}"),
                  "s:1: attach needs \"size\", a number from 0.5 to 10");
    EXPECT_EQ(Refusal(R"({"do":"handle","state":"gone"})"),
              "s:1: handle needs \"state\", one of show, hide, reset");
    EXPECT_EQ(Refusal(R"({"do":"drag","x":1})"), "s:1: drag needs \"y\", a number of at most 1e6");
    EXPECT_EQ(Refusal(R"({"do":"drag","x":1,"y":2,"dx":3})"), "s:1: drag knows no \"dx\"");
    EXPECT_EQ(Refusal(R"({"do":"grab","x":1})"), "s:1: grab needs \"y\", a number of at most 1e6");
    EXPECT_EQ(Refusal(R"({"do":"release","x":1})"), "s:1: release knows no \"x\"");
}

template <class Action>
Action Preview(const std::string& text) {
    return std::get<Action>(std::get<host::drive::PreviewAction>(Only(text).action));
}

template <class Action>
Action Measure(const std::string& text) {
    return std::get<Action>(std::get<host::drive::MeasureAction>(Only(text).action));
}

TEST(DriveScript, PreviewsAreReadKeyByKey) {
    using namespace host::drive;
    const auto edges =
        Preview<PreviewEdges>(R"({"do":"preview","what":"edges","object":"a","edges":[3,1]})");
    EXPECT_EQ(edges.object, "a");
    EXPECT_THAT(edges.edges, ElementsAre(3, 1));
    const auto wire =
        Preview<PreviewWire>(R"({"do":"preview","what":"wire","object":"a","face":2})");
    EXPECT_EQ(wire.object, "a");
    EXPECT_EQ(wire.face, 2u);
    const auto faces =
        Preview<PreviewFaces>(R"({"do":"preview","what":"faces","object":"a","faces":[1,7]})");
    EXPECT_EQ(faces.object, "a");
    EXPECT_THAT(faces.faces, ElementsAre(1, 7));
    const auto points = Preview<PreviewPoints>(
        R"({"do":"preview","what":"points","object":"a","points":[[1,2,3]],"colour":[0,0.5,1]})");
    EXPECT_EQ(points.object, "a");
    EXPECT_THAT(points.points, ElementsAre(rob::PosTemplate<double>{1, 2, 3}));
    EXPECT_EQ(points.colour, (rob::ColorTemplate<float>{0, 0.5f, 1}));
    const auto targets = Preview<PreviewTargets>(
        R"({"do":"preview","what":"targets","poses":[{"position":[1,2,3]},{}]})");
    ASSERT_EQ(targets.poses.size(), 2u);
    EXPECT_EQ(targets.poses[0].position, (rob::PosTemplate<double>{1, 2, 3}));
    EXPECT_EQ(targets.poses[1], host::Pose{});
    const auto joint =
        Preview<PreviewJoint>(R"({"do":"preview","what":"joint","from":[1,2,3],"to":[4,5,6]})");
    EXPECT_EQ(joint.from, (rob::PosTemplate<double>{1, 2, 3}));
    EXPECT_EQ(joint.to, (rob::PosTemplate<double>{4, 5, 6}));
    const auto frame = Preview<PreviewFrame>(
        R"({"do":"preview","what":"frame","key":9,"pose":{"quaternion":[0,1,0,0]},"dashed":true})");
    EXPECT_EQ(frame.key, 9u);
    EXPECT_TRUE(frame.dashed);
    EXPECT_EQ(frame.pose.rotation, (rob::RotationTemplate<double>{0.0, 1.0, 0.0, 0.0}));
    const auto copy = Preview<PreviewCopy>(
        R"({"do":"preview","what":"copy","object":"a","pose":{"position":[1,2,3]}})");
    EXPECT_EQ(copy.object, "a");
    EXPECT_EQ(copy.pose.position, (rob::PosTemplate<double>{1, 2, 3}));
}

TEST(DriveScript, RemovalsAreReadByTheirNames) {
    using What = host::drive::Remove::What;
    const std::vector<std::pair<std::string, What>> all{
        {"curves", What::Curves},       {"points", What::Points}, {"faces", What::Faces},
        {"joint", What::Joint},         {"copy", What::Copy},     {"measures", What::Measures},
        {"polylines", What::Polylines}, {"uv", What::Uv}};
    for (const auto& [name, what] : all)
        EXPECT_EQ(Preview<host::drive::Remove>(R"({"do":"remove","what":")" + name + "\"}").what,
                  what)
            << name;
    const auto frame = Preview<host::drive::Remove>(R"({"do":"remove","what":"frame","key":4})");
    EXPECT_EQ(frame.what, What::Frame);
    EXPECT_EQ(frame.key, 4u);
}

TEST(DriveScript, MistakesInPreviewsAreTold) {
    const auto preview = [](const std::string& rest) {
        return Refusal(R"({"do":"preview","what":)" + rest + "}");
    };
    EXPECT_EQ(preview(R"("smoke")"),
              "s:1: preview needs \"what\", one of edges, wire, faces, "
              "points, targets, joint, frame, copy");
    for (const char* edges : {"[]", "[0]", "[-1]", "[1.5]", "3", "[\"1\"]", "[3000000000]"})
        EXPECT_EQ(preview(std::string(R"("edges","object":"a","edges":)") + edges),
                  "s:1: preview needs \"edges\", a list of whole numbers from 1")
            << edges;
    EXPECT_EQ(preview(R"("wire","object":"a","face":0)"),
              "s:1: preview needs \"face\", a whole number from 1");
    for (const char* points : {"[]", "[[1,2]]", "[[1,2,2e9]]", "[[1,2,null]]", "[3]"})
        EXPECT_EQ(preview(std::string(R"("points","object":"a","points":)") + points),
                  "s:1: preview needs \"points\", a list of 1 or more [x, y, z] of at most 1e9")
            << points;
    for (const char* colour : {"[1,1]", "[1,1,1.5]", "[-1,0,0]", "\"red\""})
        EXPECT_EQ(
            preview(std::string(R"("points","object":"a","points":[[1,2,3]],"colour":)") + colour),
            "s:1: preview needs \"colour\", [r, g, b], each from 0 to 1")
            << colour;
    EXPECT_EQ(preview(R"("targets","poses":[])"),
              "s:1: preview needs \"poses\", a list of one or more poses");
    EXPECT_EQ(preview(R"("copy","object":"a")"), "s:1: preview needs \"pose\", a pose");
    EXPECT_EQ(preview(R"("copy","object":"a","pose":{"at":1})"),
              "s:1: preview needs \"pose\", a pose: 'pose' has the unknown key 'at'");
    EXPECT_EQ(preview(R"("joint","from":[1,2,3],"to":[1])"),
              "s:1: preview needs \"to\", [x, y, z] of at most 1e9");
    EXPECT_EQ(preview(R"("frame","key":1,"pose":{},"dashed":1)"),
              "s:1: preview needs \"dashed\", true or false");
    EXPECT_EQ(preview(R"("wire","object":"a","face":1,"edges":[1])"),
              "s:1: preview knows no \"edges\"");
    EXPECT_EQ(Refusal(R"({"do":"remove","what":"all"})"),
              "s:1: remove needs \"what\", one of curves, points, faces, joint, frame, copy, "
              "measures, uv, polylines");
    EXPECT_EQ(Refusal(R"({"do":"remove","what":"frame"})"),
              "s:1: remove needs \"key\", a whole number from 1");
    EXPECT_EQ(Refusal(R"({"do":"remove","what":"copy","key":1})"), "s:1: remove knows no \"key\"");
}

TEST(DriveScript, MeasuresAreReadKeyByKey) {
    using namespace host::drive;
    using host::Pixel;
    const auto distance =
        Measure<MeasureDistance>(R"({"do":"measure","what":"distance","points":[[1,2],[3,4]]})");
    EXPECT_THAT(distance.places.pixels, ElementsAre(Pixel{1, 2}, Pixel{3, 4}));
    EXPECT_FALSE(distance.places.snap);
    const auto angle = Measure<MeasureAngle>(
        R"({"do":"measure","what":"angle","points":[[1,2],[3,4],[5,6]],"snap":true})");
    EXPECT_THAT(angle.places.pixels, ElementsAre(Pixel{1, 2}, Pixel{3, 4}, Pixel{5, 6}));
    EXPECT_TRUE(angle.places.snap);
    EXPECT_EQ(Measure<MeasureDiameter>(
                  R"({"do":"measure","what":"diameter","points":[[1,2],[3,4],[5,6]]})")
                  .places.pixels.size(),
              3u);
    const auto edge =
        Measure<MeasureEdge>(R"({"do":"measure","what":"diameter","object":"a","edge":3})");
    EXPECT_EQ(edge.object, "a");
    EXPECT_EQ(edge.edge, 3u);
    EXPECT_EQ(Measure<ShowUv>(R"({"do":"uv","x":1,"y":2})").at, (Pixel{1, 2}));
    const auto line =
        Measure<Polyline>(R"({"do":"polyline","points":[[1,2,3],[4,5,6]],"arrow":true})");
    EXPECT_EQ(line.points.size(), 2u);
    EXPECT_TRUE(line.arrow);
}

TEST(DriveScript, MistakesInMeasuresAreTold) {
    EXPECT_EQ(Refusal(R"({"do":"measure","what":"weight"})"),
              "s:1: measure needs \"what\", one of distance, angle, diameter");
    EXPECT_EQ(Refusal(R"({"do":"measure","what":"distance","points":[[1,2]]})"),
              "s:1: measure needs \"points\", a list of 2 [x, y]");
    EXPECT_EQ(Refusal(R"({"do":"measure","what":"angle","points":[[1,2],[3,4]]})"),
              "s:1: measure needs \"points\", a list of 3 [x, y]");
    EXPECT_EQ(Refusal(R"({"do":"measure","what":"diameter","points":[[1,2],[3,4],[5]]})"),
              "s:1: measure needs \"points\", a list of 3 [x, y]");
    EXPECT_EQ(Refusal(R"({"do":"measure","what":"diameter","object":"a"})"),
              "s:1: measure needs \"edge\", a whole number from 1");
    EXPECT_EQ(Refusal(R"({"do":"measure","what":"distance","points":[[1,2],[3,4]],"snap":"yes"})"),
              "s:1: measure needs \"snap\", true or false");
    EXPECT_EQ(Refusal(R"({"do":"uv","x":1})"), "s:1: uv needs \"y\", a number of at most 1e6");
    EXPECT_EQ(Refusal(R"({"do":"polyline","points":[[1,2,3]]})"),
              "s:1: polyline needs \"points\", a list of 2 or more [x, y, z] of at most 1e9");
}

template <class Action>
Action PaintLine(const std::string& text) {
    return std::get<Action>(std::get<host::drive::PaintAction>(Only(text).action));
}

TEST(DriveScript, LinesOfPaintAreReadKeyByKey) {
    using namespace host::drive;
    const auto gun = PaintLine<MakeGun>(
        R"({"do":"gun","name":"g","near":1,"far":2,"height":3,"colour":[1,0,0.5],"pose":{"position":[4,5,6]}})");
    EXPECT_EQ(gun.name, "g");
    EXPECT_EQ(gun.nearMm, 1);
    EXPECT_EQ(gun.farMm, 2);
    EXPECT_EQ(gun.heightMm, 3);
    EXPECT_EQ(gun.colour, (rob::ColorTemplate<float>{1, 0, 0.5f}));
    EXPECT_EQ(gun.pose.position, (rob::PosTemplate<double>{4, 5, 6}));
    const auto plain = PaintLine<MakeGun>(R"({"do":"gun","name":"g","near":0,"far":2,"height":3})");
    EXPECT_FALSE(plain.colour);
    EXPECT_EQ(plain.pose, host::Pose{});
    const auto paint = PaintLine<Paint>(R"({"do":"paint","gun":"g","objects":["a","b"]})");
    EXPECT_EQ(paint.gun, "g");
    EXPECT_THAT(paint.objects, ElementsAre("a", "b"));
    const auto end = PaintLine<PaintEnd>(R"({"do":"paint-end","gun":"g","objects":["a"]})");
    EXPECT_EQ(end.gun, "g");
    EXPECT_THAT(end.objects, ElementsAre("a"));
    EXPECT_EQ(PaintLine<Spray>(R"({"do":"spray","gun":"g","poses":[{},{}]})").poses.size(), 2u);
    EXPECT_TRUE(PaintLine<Spray>(R"({"do":"spray","gun":"g"})").poses.empty());
    const auto colour =
        PaintLine<PaintColour>(R"({"do":"paint-colour","objects":["a"],"colour":[0,0,1]})");
    EXPECT_THAT(colour.objects, ElementsAre("a"));
    EXPECT_EQ(colour.colour, (rob::ColorTemplate<float>{0, 0, 1}));
    EXPECT_THAT(PaintLine<PaintReset>(R"({"do":"paint-reset","objects":["a"]})").objects,
                ElementsAre("a"));
}

TEST(DriveScript, MistakesInLinesOfPaintAreTold) {
    EXPECT_EQ(Refusal(R"({"do":"gun","name":"g","near":0,"far":0,"height":3})"),
              "s:1: gun needs \"near\" or \"far\", a diameter of 0.001 or more");
    for (const char* height : {"0", "-1", "2e9", "\"3\""})
        EXPECT_THAT(Refusal(std::string(R"({"do":"gun","name":"g","near":1,"far":2,"height":)") +
                            height + "}"),
                    testing::StartsWith("s:1: gun needs \"height\", a length "));
    EXPECT_EQ(Refusal(R"({"do":"gun","name":"g","near":-1,"far":2,"height":3})"),
              "s:1: gun needs \"near\", a length of at most 1e9");
    EXPECT_EQ(Refusal(R"({"do":"spray","gun":"g","poses":[]})"),
              "s:1: spray needs \"poses\", a list of one or more poses");
    EXPECT_EQ(Refusal(R"({"do":"paint-colour","objects":["a"]})"),
              "s:1: paint-colour needs \"colour\", [r, g, b], each from 0 to 1");
    EXPECT_EQ(Refusal(R"({"do":"paint","objects":["a"]})"), "s:1: paint needs \"gun\", a text");
}

template <class Action>
Action BandLine(const std::string& text) {
    return std::get<Action>(std::get<host::drive::BandAction>(Only(text).action));
}

TEST(DriveScript, LinesOfBandsAreReadKeyByKey) {
    using namespace host::drive;
    const auto band = BandLine<Band>(
        R"({"do":"band","object":"a","edges":[4,2],"vectors":[{"edge":2,"at":0.5,"direction":[0,3,4]},{"edge":1,"at":1,"direction":[1,0,0]}]})");
    EXPECT_EQ(band.object, "a");
    EXPECT_THAT(band.edges, ElementsAre(4, 2));
    ASSERT_EQ(band.directions.size(), 2u);
    EXPECT_EQ(band.directions[0].place.edge, 2u);
    EXPECT_EQ(band.directions[0].place.at, 0.5);
    EXPECT_NEAR(band.directions[0].direction.y, 0.6, 1e-12);
    EXPECT_NEAR(band.directions[0].direction.z, 0.8, 1e-12);
    const auto preview = BandLine<BandPreview>(R"({"do":"band-preview","edge":1,"at":0.25})");
    EXPECT_EQ(preview.place.edge, 1u);
    EXPECT_EQ(preview.place.at, 0.25);
    EXPECT_EQ(BandLine<BandSelect>(R"({"do":"band-select","edge":3,"at":1})").place.edge, 3u);
    const auto range = BandLine<BandRange>(
        R"({"do":"band-range","from":{"edge":1,"at":0},"to":{"edge":2,"at":1}})");
    EXPECT_EQ(range.from.edge, 1u);
    EXPECT_EQ(range.to.edge, 2u);
    EXPECT_EQ(range.to.at, 1);
    using What = BandClear::What;
    EXPECT_EQ(BandLine<BandClear>(R"({"do":"band-clear","what":"preview"})").what, What::Preview);
    EXPECT_EQ(BandLine<BandClear>(R"({"do":"band-clear","what":"selected"})").what, What::Selected);
    EXPECT_EQ(BandLine<BandClear>(R"({"do":"band-clear","what":"range"})").what, What::Range);
    EXPECT_EQ(BandLine<BandClear>(R"({"do":"band-clear","what":"all"})").what, What::All);
}

TEST(DriveScript, MistakesInLinesOfBandsAreTold) {
    const auto band = [](const std::string& vectors) {
        return Refusal(R"({"do":"band","object":"a","edges":[4,2],"vectors":)" + vectors + "}");
    };
    EXPECT_EQ(band("[]"), "s:1: band needs \"vectors\", a list of one or more objects in braces");
    EXPECT_EQ(band("[3]"), "s:1: band needs \"vectors\", a list of one or more objects in braces");
    EXPECT_EQ(band(R"([{"edge":1,"at":1.5,"direction":[0,0,1]}])"),
              "s:1: band, in \"vectors\", needs \"at\", a number from 0 to 1");
    EXPECT_EQ(band(R"([{"edge":1,"direction":[0,0,1]}])"),
              "s:1: band, in \"vectors\", needs \"at\", a number from 0 to 1");
    EXPECT_EQ(band(R"([{"edge":1,"at":0,"direction":[0,0,0]}])"),
              "s:1: band, in \"vectors\", needs \"direction\", [x, y, z], not all 0");
    EXPECT_EQ(band(R"([{"edge":1,"at":0,"direction":[0,0,1],"tilt":1}])"),
              "s:1: band, in \"vectors\", knows no \"tilt\"");
    EXPECT_EQ(band(R"([{"edge":1,"at":0,"direction":[0,0,1]}])"),
              "s:1: band has no vector on edge 2 of its \"edges\"");
    const std::string both =
        R"([{"edge":1,"at":0,"direction":[0,0,1]},{"edge":2,"at":0,"direction":[0,0,1]})";
    EXPECT_EQ(band(both + R"(,{"edge":3,"at":0,"direction":[0,0,1]}])"),
              "s:1: band has a vector on edge 3 of 2");
    EXPECT_EQ(Refusal(R"({"do":"band-preview","edge":1})"),
              "s:1: band-preview needs \"at\", a number from 0 to 1");
    EXPECT_EQ(Refusal(R"({"do":"band-range","from":{"edge":1,"at":0},"to":2})"),
              "s:1: band-range needs \"to\", an object in braces");
    EXPECT_EQ(Refusal(R"({"do":"band-clear","what":"it"})"),
              "s:1: band-clear needs \"what\", one of preview, selected, range, all");
}

TEST(DriveScript, LinesKeepTheirNumbersPastEmptyOnesAndComments) {
    const auto lines = ParseDriveScript(
        "\n# first\r\n  "
        "{\"do\":\"drag\",\"dx\":1,\"dy\":1}\r\n\t\n{\"do\":\"drag\",\"dx\":1,\"dy\":1}",
        "s");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].number, 3);
    EXPECT_EQ(lines[1].number, 5);
    EXPECT_EQ(lines[1].verb, "drag");
    EXPECT_TRUE(ParseDriveScript("", "s").empty());
}

TEST(DriveScript, MistakesAreToldWithNameAndLine) {
    EXPECT_EQ(Refusal("\n{\"do\":"), "s:2: the line is not JSON");
    EXPECT_EQ(Refusal("[1]"), "s:1: the line is not an object with a text \"do\"");
    EXPECT_EQ(Refusal("{}"), "s:1: the line is not an object with a text \"do\"");
    EXPECT_EQ(Refusal(R"({"do":1})"), "s:1: the line is not an object with a text \"do\"");
    EXPECT_EQ(Refusal(R"({"do":"jump"})"),
              "s:1: \"jump\" is not one of press, drag, pan, wheel, hover, click, box, lasso, "
              "select, hide, show, mode, picture, attach, detach, handle, grab, release, "
              "preview, remove, measure, uv, polyline, gun, paint, paint-end, spray, "
              "paint-colour, paint-reset, band, band-preview, band-select, band-range, band-clear");
    EXPECT_EQ(Refusal(R"({"do":"press","x":1})"),
              "s:1: press needs \"y\", a number of at most 1e6");
    EXPECT_EQ(Refusal(R"({"do":"press","x":"1","y":2})"),
              "s:1: press needs \"x\", a number of at most 1e6");
    EXPECT_EQ(Refusal(R"({"do":"press","x":1,"y":1e999})"), "s:1: the line is not JSON");
    EXPECT_EQ(Refusal(R"({"do":"press","x":1,"y":2,"z":3})"), "s:1: press knows no \"z\"");
    EXPECT_EQ(Refusal(R"({"do":"lasso","points":[[1,2],[3,4]]})"),
              "s:1: lasso needs \"points\", a list of three or more [x, y]");
    EXPECT_EQ(Refusal(R"({"do":"lasso","points":[[1,2],[3,4],[5]]})"),
              "s:1: lasso needs \"points\", a list of three or more [x, y]");
    EXPECT_EQ(Refusal(R"({"do":"lasso","points":[[1,2],[3,4],[5,"6"]]})"),
              "s:1: lasso needs \"points\", a number of at most 1e6");
    EXPECT_EQ(Refusal(R"({"do":"hide","objects":"box"})"),
              "s:1: hide needs \"objects\", a list of texts");
    EXPECT_EQ(Refusal(R"({"do":"select","objects":[3]})"),
              "s:1: select needs \"objects\", a list of texts");
    EXPECT_EQ(Refusal(R"({"do":"mode","mode":"wire"})"),
              "s:1: the mode \"wire\" is not one of shaded, edges, lines, triangles");
    for (const char* name : {"", ".", "..", "a/b", "/a", ".hidden", "a\\\\b"})
        EXPECT_THAT(Refusal(std::string(R"({"do":"picture","name":")") + name + "\"}"),
                    testing::EndsWith("is no name for a picture: a file's, without a folder"));
}

TEST(DriveScript, PixelsFartherThanAMillionAreRefused) {
    for (const char* verb : {"press", "hover", "click", "grab", "uv", "drag"})
        for (const char* far : {"1000001", "-1.1e6", "1e300"}) {
            const std::string line = std::format(R"({{"do":"{}","x":{},"y":0}})", verb, far);
            EXPECT_EQ(Refusal(line),
                      std::format("s:1: {} needs \"x\", a number of at most 1e6", verb));
        }
    EXPECT_EQ(Refusal(R"({"do":"lasso","points":[[1,2],[3,4],[5,2e6]]})"),
              "s:1: lasso needs \"points\", a number of at most 1e6");
    const DriveLine most = Only(R"({"do":"press","x":1e6,"y":-1e6})");
    EXPECT_EQ(std::get<host::drive::Press>(most.action).y, -1e6f);
}

TEST(DriveScript, GunsTooSmallOrTooThinToBeDrawnAreRefused) {
    const auto gun = [](const std::string& lengths) {
        return Refusal(R"({"do":"gun","name":"g",)" + lengths + "}");
    };
    const char* const height =
        "s:1: gun needs \"height\", a length from 0.001 to 10000 times the larger diameter";
    EXPECT_EQ(gun(R"("near":1e9,"far":0,"height":1e-9)"), height);
    EXPECT_EQ(gun(R"("near":0,"far":1,"height":10001)"), height);
    EXPECT_EQ(gun(R"("near":0.0001,"far":0,"height":1)"),
              "s:1: gun needs \"near\" or \"far\", a diameter of 0.001 or more");
    EXPECT_EQ(PaintLine<host::drive::MakeGun>(
                  R"({"do":"gun","name":"g","near":0,"far":1,"height":10000})")
                  .heightMm,
              10000);
}

TEST(DriveScript, AScriptThatIsNotThereOrAFolderIsTold) {
    const host::TempFolder folder;
    const std::filesystem::path file = folder.getPath() / "s.jsonl";
    EXPECT_THROW((void)host::ReadDriveScript(file), std::runtime_error);
    EXPECT_THROW((void)host::ReadDriveScript(folder.getPath()), std::runtime_error);
    WriteBytes(file, R"({"do":"drag","dx":1,"dy":1})");
    EXPECT_EQ(host::ReadDriveScript(file).size(), 1u);
}

}  // namespace
}  // namespace vrn::test
