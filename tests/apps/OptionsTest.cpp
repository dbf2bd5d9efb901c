#include "apps/vrnview/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vrn::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

Options Parsed(const std::vector<std::string>& arguments) {
    const ParsedOptions parsed = ParseOptions(arguments);
    if (parsed.end) ADD_FAILURE() << parsed.end->text;
    return parsed.options.value_or(Options{});
}

/// The text of a refusal; empty if the arguments are taken.
std::string Refusal(const std::vector<std::string>& arguments) {
    const ParsedOptions parsed = ParseOptions(arguments);
    EXPECT_NE(parsed.options.has_value(), parsed.end.has_value());
    if (!parsed.end) return {};
    EXPECT_EQ(parsed.end->status, usageError);
    return parsed.end->text;
}

TEST(Options, DemoHasDefaults) {
    const Options options = Parsed({"demo"});
    EXPECT_EQ(options.command, Options::Command::Demo);
    EXPECT_EQ(options.output, "demo.png");
    EXPECT_EQ(options.widthPx, 1280);
    EXPECT_EQ(options.heightPx, 720);
    EXPECT_FALSE(options.looks.view);
    EXPECT_FALSE(options.saveFolder);
}

TEST(Options, DemoTakesOutputAndFolder) {
    const Options options = Parsed({"demo", "-o", "x/y.png", "--save", "parts"});
    EXPECT_EQ(options.output, "x/y.png");
    EXPECT_EQ(options.saveFolder, "parts");
}

TEST(Options, RenderTakesInputsInOrderAroundItsOptions) {
    const Options options =
        Parsed({"render", "a.stl", "-o", "p.png", "b c.STL", "--size", "640x360", "--view", "top"});
    EXPECT_EQ(options.command, Options::Command::Render);
    EXPECT_THAT(options.inputs, ElementsAre("a.stl", "b c.STL"));
    EXPECT_EQ(options.output, "p.png");
    EXPECT_EQ(options.widthPx, 640);
    EXPECT_EQ(options.heightPx, 360);
    EXPECT_EQ(options.looks.view, StandardView::Top);
}

TEST(Options, EveryViewHasItsName) {
    ASSERT_THAT(StandardViewNames(),
                ElementsAre("iso", "front", "back", "left", "right", "top", "bottom"));
    for (std::size_t i = 0; i < StandardViewNames().size(); ++i)
        EXPECT_EQ(Parsed({"render", "a", "-o", "p", "--view", std::string(StandardViewNames()[i])})
                      .looks.view,
                  static_cast<StandardView>(i));
}

TEST(Options, InfoTakesJson) {
    EXPECT_FALSE(Parsed({"info", "a.stl"}).json);
    const Options options = Parsed({"info", "a.stl", "b.stl", "--json"});
    EXPECT_EQ(options.command, Options::Command::Info);
    EXPECT_TRUE(options.json);
    EXPECT_THAT(options.inputs, ElementsAre("a.stl", "b.stl"));
}

TEST(Options, RenderNeedsInputAndOutput) {
    EXPECT_THAT(Refusal({"render", "a.stl"}), HasSubstr("--output is required"));
    EXPECT_THAT(Refusal({"render", "-o", "p.png"}), HasSubstr("inputs is required"));
    EXPECT_THAT(Refusal({"info"}), HasSubstr("inputs is required"));
}

TEST(Options, CommandIsNeededAndKnown) {
    EXPECT_THAT(Refusal({}), HasSubstr("subcommand is required"));
    EXPECT_THAT(Refusal({"paint"}), HasSubstr("not expected: paint"));
    EXPECT_THAT(Refusal({"demo", "info"}), HasSubstr("not expected: info"));
    EXPECT_NE(Refusal({"demo", "a.stl"}), "");
    EXPECT_NE(Refusal({"info", "a.stl", "--view", "top"}), "");
}

TEST(Options, MalformedSizesAreRefusedByName) {
    for (const char* size : {"640", "640x", "x480", "640X480", "0x480", "640x-1", "640x480x2",
                             " 640x480", "8193x10", "640.5x480", "99999999999x1", ""})
        EXPECT_THAT(Refusal({"render", "a", "-o", "p", "--size=" + std::string(size)}),
                    HasSubstr("--size"))
            << size;
    EXPECT_EQ(Parsed({"render", "a", "-o", "p", "--size", "8192x1"}).widthPx, 8192);
}

TEST(Options, UnknownViewIsRefusedWithTheKnownOnes) {
    EXPECT_THAT(Refusal({"render", "a", "-o", "p", "--view", "isometric"}),
                HasSubstr("'isometric' is not one of iso|front|back|left|right|top|bottom|all|"
                          "focus:ID|dir:x,y,z"));
}

TEST(Options, ViewsThatTheLibraryFindsAreRead) {
    const auto viewOf = [](const std::string& text) {
        return Parsed({"render", "a", "-o", "p", "--view", text}).looks.foundView;
    };
    EXPECT_EQ(viewOf("all"), FoundView(ViewOfAll{}));
    EXPECT_EQ(viewOf("focus:arm:1"), FoundView(ViewOfObject{"arm:1"}));
    EXPECT_EQ(viewOf("dir:0,-3,4"), FoundView(ViewAlong{{0, -0.6, 0.8}}));
    EXPECT_FALSE(viewOf("top"));
}

TEST(Options, ViewsWithoutAnObjectOrADirectionAreRefused) {
    for (const char* view : {"focus:", "focus", "dir:", "dir:1,2", "dir:1,2,3,4", "dir:0,0,0",
                             "dir:1,2,nan", "all:", ""})
        EXPECT_NE(Refusal({"render", "a", "-o", "p", "--view", view}), "") << view;
}

TEST(Options, HelpIsNoError) {
    const ParsedOptions parsed = ParseOptions({"render", "--help"});
    ASSERT_TRUE(parsed.end);
    EXPECT_EQ(parsed.end->status, 0);
    EXPECT_THAT(parsed.end->text, HasSubstr("--view iso|front|back|left|right|top|bottom"));
}

TEST(Options, LooksAreReadByName) {
    const Options options =
        Parsed({"render",   "a.stl", "-o",       "p",       "--mode",      "lines",
                "--select", "1",     "--select", "b",       "--highlight", "c",
                "--hide",   "d",     "--hide",   "e",       "--camera",    "1,-2,3.5,0,0,1e2",
                "--joint",  "j1=30", "--joint",  "a=b=-1.5"});
    EXPECT_EQ(options.looks.mode, visual::Scene::DisplayMode::EdgesOnly);
    EXPECT_THAT(options.looks.select, ElementsAre("1", "b"));
    EXPECT_THAT(options.looks.highlight, ElementsAre("c"));
    EXPECT_THAT(options.looks.hide, ElementsAre("d", "e"));
    EXPECT_EQ(options.looks.camera, (CameraSpot{{1, -2, 3.5}, {0, 0, 100}}));
    EXPECT_THAT(options.joints, ElementsAre(JointValue{"j1", 30}, JointValue{"a=b", -1.5}));
}

TEST(Options, ModesHaveTheOrderOfTheLibrary) {
    const std::vector<std::string> names{"shaded", "edges", "lines", "triangles"};
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(Parsed({"demo", "--mode", names[i]}).looks.mode,
                  static_cast<visual::Scene::DisplayMode>(i));
}

TEST(Options, PickTakesItsQuestionsInAnyOrder) {
    const Options options =
        Parsed({"pick", "a.stl", "b.stl", "--lasso", "1,2", "3,4", "-5,6.5", "--at", "7,8", "--at",
                "-9,10", "--box", "1,2,3.5,-4", "--json", "--picture", "p.png", "--view", "top"});
    EXPECT_EQ(options.command, Options::Command::Pick);
    EXPECT_EQ(options.inputs.size(), 2u);
    using Pixel = PickRequest::Pixel;
    EXPECT_THAT(options.pick.at, ElementsAre(Pixel{7, 8, 0}, Pixel{-9, 10, 0}));
    EXPECT_THAT(options.pick.lasso,
                ElementsAre(Pixel{1, 2, 0}, Pixel{3, 4, 0}, Pixel{-5, 6.5f, 0}));
    ASSERT_TRUE(options.pick.box);
    EXPECT_EQ(options.pick.box->first, (Pixel{1, 2, 0}));
    EXPECT_EQ(options.pick.box->second, (Pixel{3.5f, -4, 0}));
    EXPECT_EQ(options.pick.picture, "p.png");
    EXPECT_TRUE(options.json);
    EXPECT_EQ(options.looks.view, StandardView::Top);
}

TEST(Options, PickNeedsAQuestionAndPixelsThatAreNumbers) {
    EXPECT_THAT(Refusal({"pick", "a.stl"}), HasSubstr("--at, --box or --lasso"));
    EXPECT_NE(Refusal({"pick", "--at", "1,2"}), "");
    for (const char* pixel : {"1", "1,", "1,2,3", "x,1", "1,inf", "1,nan", "1e7,0"})
        EXPECT_THAT(Refusal({"pick", "a.stl", "--at", pixel}), HasSubstr("is not X,Y")) << pixel;
    for (const char* box : {"1,2,3", "1,2,3,4,5", "1,2,3,nan"})
        EXPECT_THAT(Refusal({"pick", "a.stl", "--box", box}), HasSubstr("is not x0,y0,x1,y1"))
            << box;
    EXPECT_NE(Refusal({"pick", "a.stl", "--lasso", "1,2", "3,4"}), "");
}

TEST(Options, DriveNeedsAScriptAndAFolder) {
    const Options options = Parsed({"drive", "a.stl", "--script", "s.jsonl", "-o", "out"});
    EXPECT_FALSE(options.paintReport);
    EXPECT_EQ(Parsed({"drive", "a.stl", "--script", "s", "-o", "out", "--paint-report", "r.csv"})
                  .paintReport,
              "r.csv");
    EXPECT_EQ(options.command, Options::Command::Drive);
    EXPECT_EQ(options.script, "s.jsonl");
    EXPECT_EQ(options.output, "out");
    EXPECT_NE(Refusal({"drive", "a.stl", "-o", "out"}), "");
    EXPECT_NE(Refusal({"drive", "a.stl", "--script", "s"}), "");
}

TEST(Options, RunTakesOneStationATaskAndFrames) {
    const Options plain = Parsed({"run", "a.station.json", "-o", "out"});
    EXPECT_EQ(plain.command, Options::Command::Run);
    EXPECT_EQ(plain.inputs, (std::vector<std::filesystem::path>{"a.station.json"}));
    EXPECT_EQ(plain.output, "out");
    EXPECT_EQ(plain.task, std::nullopt);
    EXPECT_EQ(plain.frames, 100);
    EXPECT_FALSE(plain.json);
    const Options full = Parsed({"run", "a", "--task", "T 1", "-o", "out", "--frames", "12",
                                 "--json", "--view", "top", "--size", "64x48"});
    EXPECT_EQ(full.task, "T 1");
    EXPECT_EQ(full.frames, 12);
    EXPECT_TRUE(full.json);
    EXPECT_EQ(full.widthPx, 64);
    EXPECT_EQ(full.looks.view, StandardView::Top);
    EXPECT_NE(Refusal({"run", "a"}), "");
    EXPECT_NE(Refusal({"run", "-o", "out"}), "");
    EXPECT_NE(Refusal({"run", "a", "b", "-o", "out"}), "");
    for (const char* frames : {"0", "-1", "x", "1.5", "10001"})
        EXPECT_THAT(Refusal({"run", "a", "-o", "out", "--frames", frames}),
                    HasSubstr("is not a number from 1 to 10000"))
            << frames;
}

TEST(Options, MalformedLooksAreRefusedByName) {
    const auto refusal = [](const std::string& option, const std::string& value) {
        return Refusal({"render", "a.stl", "-o", "p", option, value});
    };
    EXPECT_THAT(refusal("--mode", "wire"), HasSubstr("'wire' is not one of shaded"));
    for (const char* camera : {"", "1,2,3", "1,2,3,4,5", "1,2,3,4,5,6,7", "1,2,3,4,5,x",
                               "1,2,3,4,5,nan", "1 2 3 4 5 6", "1,2,3,4,5,6,"})
        EXPECT_NE(refusal("--camera", camera), "") << camera;
    EXPECT_THAT(refusal("--camera", "1,2,3,1,2,3"), HasSubstr("it stands where it looks at"));
    for (const char* joint : {"j", "j=", "=3", "j=x", "j=inf", "j=1deg"})
        EXPECT_THAT(refusal("--joint", joint), HasSubstr("is not NAME=DEGREES")) << joint;
    EXPECT_NE(Refusal({"render", "a", "-o", "p", "--view", "top", "--camera", "1,2,3,4,5,6"}), "");
}

TEST(Options, ASecondLassoIsRefusedAsASecondBoxIs) {
    EXPECT_THAT(Refusal({"pick", "a.stl", "--box", "1,2,3,4", "--box", "1,2,3,4"}),
                HasSubstr("--box: At most 1 required but received 2"));
    EXPECT_THAT(
        Refusal({"pick", "a.stl", "--lasso", "1,2", "3,4", "5,6", "--lasso", "7,8", "9,8", "9,9"}),
        HasSubstr("--lasso: At most 1 required but received 2"));
    EXPECT_THAT(Refusal({"pick", "a.stl", "--lasso", "1,2", "3,4"}),
                HasSubstr("--lasso: At least 3 required but received 2"));
}

TEST(Options, AFileThatTheCornersTookIsToldAsNoCorner) {
    EXPECT_THAT(Refusal({"pick", "--lasso", "1,2", "3,4", "5,6", "a.stl", "--json"}),
                HasSubstr("--lasso: 'a.stl' is not X,Y"));
    EXPECT_THAT(Parsed({"pick", "--lasso", "1,2", "3,4", "5,6", "a.stl"}).inputs,
                ElementsAre("a.stl"));
}

TEST(Options, TheTourIsAskedForWithNothingThatItLeavesOut) {
    EXPECT_EQ(Parsed({"demo", "--tour", "t", "--size", "64x36"}).tourFolder, "t");
    const std::vector<std::vector<std::string>> others{
        {"-o", "a.png"},     {"--save", "s"},    {"--view", "top"},
        {"--mode", "lines"}, {"--select", "a"},  {"--highlight", "a"},
        {"--hide", "a"},     {"--joint", "j=1"}, {"--camera", "1,2,3,4,5,6"}};
    for (const std::vector<std::string>& other : others)
        EXPECT_THAT(Refusal({"demo", "--tour", "t", other[0], other[1]}), HasSubstr("excludes"))
            << other[0];
}

TEST(Options, PicturesEndInPngOrInNothing) {
    const char* const reason = "'x.jpg' does not end in .png";
    EXPECT_THAT(Refusal({"render", "a", "-o", "x.jpg"}), HasSubstr(reason));
    EXPECT_THAT(Refusal({"demo", "-o", "x.jpg"}), HasSubstr(reason));
    EXPECT_THAT(Refusal({"pick", "a", "--at", "1,2", "--picture", "x.jpg"}), HasSubstr(reason));
    for (const char* name : {"x.png", "x.PNG", "/dev/stdout", "pipe", "a.b/pipe"})
        EXPECT_EQ(Parsed({"render", "a", "-o", name}).output, name);
}

TEST(Options, EmptyTextsAreRefusedByTheirOption) {
    EXPECT_THAT(Refusal({"render", "a", "-o", ""}), HasSubstr("--output: it is empty"));
    EXPECT_THAT(Refusal({"info", ""}), HasSubstr("inputs: it is empty"));
    EXPECT_THAT(Refusal({"info", "a", ""}), HasSubstr("inputs: it is empty"));
    EXPECT_THAT(Refusal({"demo", "--save", ""}), HasSubstr("--save: it is empty"));
    EXPECT_THAT(Refusal({"run", "a", "-o", "d", "--task", ""}), HasSubstr("--task: it is empty"));
    EXPECT_THAT(Refusal({"render", "a", "-o", "p", "--select", ""}),
                HasSubstr("--select: it is empty"));
}

TEST(Options, CamerasBeyondTheBoundOfLengthsAreRefused) {
    for (const char* camera : {"1e300,0,0,0,0,0", "1e30,0,0,0,0,0", "0,0,0,0,-1.1e9,0"})
        EXPECT_THAT(Refusal({"render", "a", "-o", "p", "--camera", camera}),
                    HasSubstr("--camera: '"))
            << camera;
    EXPECT_TRUE(Parsed({"render", "a", "-o", "p", "--camera", "1e9,0,0,-1e9,0,0"}).looks.camera);
}

}  // namespace
}  // namespace vrn::host
