// The built host as it runs robots' programs.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/apps/ArmStation.h"
#include "tests/apps/TestFiles.h"
#include "tests/apps/Vrnview.h"

namespace vrn::test {
namespace {

using headless::Picture;
using headless::Rgba;
using nlohmann::json;
using testing::HasSubstr;

class RunHost : public VrnviewTest {
protected:
    RunHost() {
        WriteBinaryStl(path("box.stl"), BoxTriangles({-30, -30, 0}, {30, 30, 90}));
        writeStation(DrawTask(DrawMoves()));
    }
    void writeStation(const std::string& tasks) const {
        WriteBytes(path("arm.station.json"),
                   ArmStation(R"("tasks": [)" + tasks + "]", "", /*withBodies=*/true));
    }
    [[nodiscard]] ProcessResult run(const std::vector<std::string>& more) const {
        std::vector<std::string> arguments{
            "run", path("arm.station.json"), "-o", path("out"), "--size", "160x120"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return vrnview(arguments);
    }
    [[nodiscard]] std::vector<std::string> filesIn(const std::string& name) const {
        std::vector<std::string> files;
        if (std::filesystem::exists(path(name)))
            for (const auto& entry : std::filesystem::directory_iterator(path(name)))
                files.push_back(entry.path().filename());
        return files;
    }
    [[nodiscard]] static std::size_t differing(const Picture& a, const Picture& b) {
        std::size_t count = 0;
        for (std::size_t i = 0; i < a.getPixels().size(); ++i)
            if (Difference(a.getPixels()[i], b.getPixels()[i]) > 20) ++count;
        return count;
    }
};

TEST_F(RunHost, WritesAPictureAFrameAndAnAnimation) {
    const ProcessResult result = run({"--frames", "4"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(filesIn("out"),
                testing::UnorderedElementsAre("frame_0000.png", "frame_0001.png", "frame_0002.png",
                                              "frame_0003.png", "animation.png"));
    EXPECT_THAT(result.out,
                testing::MatchesRegex(path("out/frame_0000.png") + " to frame_0003.png\n" +
                                      path("out/animation.png") +
                                      "\ntask 'draw' of 'arm': 4 frames, [0-9.]+ seconds, 7 moves, "
                                      "[0-9]+ trace points, worst error 0\\.0000[0-9]+ mm, "
                                      "0\\.0000[0-9]+ degrees\n"));
    const Picture first = Picture::loadPng(path("out/frame_0000.png"));
    EXPECT_EQ(first.getWidth(), 160);
    EXPECT_EQ(first.getHeight(), 120);
    // The animation begins as the run.
    EXPECT_EQ(differing(first, Picture::loadPng(path("out/animation.png"))), 0u);
}

TEST_F(RunHost, RobotMovesAndTheTraceStays) {
    ASSERT_EQ(run({"--frames", "5", "--view", "front"}).status, 0);
    std::vector<Picture> pictures;
    for (int i = 0; i < 5; ++i)
        pictures.push_back(Picture::loadPng(path("out/frame_000" + std::to_string(i) + ".png")));
    for (std::size_t i = 1; i < 5; ++i) EXPECT_GT(differing(pictures[0], pictures[i]), 50u) << i;
}

TEST_F(RunHost, JsonHoldsTheSameFigures) {
    const ProcessResult result = run({"--frames", "2", "--json", "--task", "draw"});
    ASSERT_EQ(result.status, 0) << result.err;
    const json report = json::parse(result.out);
    EXPECT_EQ(report.at("task"), "draw");
    EXPECT_EQ(report.at("robot"), "arm");
    EXPECT_EQ(report.at("frames"), 2);
    EXPECT_EQ(report.at("moves"), 7);
    EXPECT_GT(report.at("seconds").get<double>(), 5);
    EXPECT_GT(report.at("tracePoints").get<int>(), 40);
    EXPECT_LT(report.at("worstError").at("mm").get<double>(), 0.1);
    EXPECT_LT(report.at("worstError").at("degrees").get<double>(), 0.1);
    EXPECT_EQ(report.at("firstPicture"), path("out/frame_0000.png"));
    EXPECT_EQ(report.at("lastPicture"), path("out/frame_0001.png"));
    EXPECT_EQ(report.at("animation"), path("out/animation.png"));
}

TEST_F(RunHost, SinglePictureShowsTheEnd) {
    ASSERT_EQ(run({"--frames", "1"}).status, 0);
    const Picture only = Picture::loadPng(path("out/frame_0000.png"));
    ASSERT_EQ(run({"--frames", "2"}).status, 0);
    // The trace is drawn in two runs here, and its line has a joint more.
    EXPECT_LT(differing(only, Picture::loadPng(path("out/frame_0001.png"))), 40u);
    EXPECT_GT(differing(only, Picture::loadPng(path("out/frame_0000.png"))), 50u);
}

TEST_F(RunHost, TargetOutOfReachIsOneErrorAndNothingIsWritten) {
    writeStation(DrawTask(MoveTo("joint", "a") + ", " + MoveTo("joint", "far")));
    const ProcessResult result = run({});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "vrnview: " + path("arm.station.json") +
                              ": task 'draw': path 'main', move 2 ('joint') to target 'far': out "
                              "of reach\n");
    EXPECT_FALSE(std::filesystem::exists(path("out")));
}

TEST_F(RunHost, TaskIsChosenByItsName) {
    std::string other = DrawTask(MoveTo("joint", "a"));
    other.replace(other.find("draw"), 4, "rest");
    other.replace(other.find(R"("name": "desk")"), 14, R"("name": "desk2")");
    for (auto at = other.find(R"("workObject": "desk")"); at != std::string::npos;
         at = other.find(R"("workObject": "desk")"))
        other.replace(at, 20, R"("workObject": "desk2")");
    writeStation(DrawTask(DrawMoves()) + ", " + other);
    const ProcessResult result = run({"--frames", "1", "--json", "--task", "rest"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(json::parse(result.out).at("moves"), 1);
    const ProcessResult unknown = run({"--task", "none"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.err, "vrnview: " + path("arm.station.json") +
                               ": it has no task 'none', only 'draw', 'rest'\n");
}

TEST_F(RunHost, FileWithoutATaskIsOneError) {
    const ProcessResult result =
        vrnview({"run", path("box.stl"), "-o", path("out"), "--size", "64x64"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "vrnview: " + path("box.stl") + ": it has no task\n");
    const ProcessResult missing = vrnview({"run", path("no.station.json"), "-o", path("out")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.err, HasSubstr("no.station.json"));
    EXPECT_FALSE(std::filesystem::exists(path("out")));
}

TEST_F(RunHost, FolderThatCannotBeMadeIsNamed) {
    WriteBytes(path("file"), "in the way");
    const ProcessResult result = vrnview(
        {"run", path("arm.station.json"), "-o", path("file"), "--size", "64x64", "--frames", "1"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "vrnview: " + path("file") + ": Not a directory\n");
}

TEST_F(RunHost, PicturesOfALongerRunBeforeGoAndOtherFilesStay) {
    ASSERT_EQ(run({"--frames", "3"}).status, 0);
    for (const char* kept : {"frame_1.png", "frame_00001.png", "my_frame_0001.png", "notes.txt"})
        WriteBytes(path("out") + "/" + kept, "mine");
    ASSERT_EQ(run({"--frames", "1"}).status, 0);
    EXPECT_THAT(filesIn("out"),
                testing::UnorderedElementsAre("frame_0000.png", "animation.png", "frame_1.png",
                                              "frame_00001.png", "my_frame_0001.png", "notes.txt"));
}

TEST_F(RunHost, ARunThatFailsOnAPictureLeavesNoAnimation) {
    ASSERT_EQ(run({"--frames", "2"}).status, 0);
    std::filesystem::remove(path("out/frame_0001.png"));
    std::filesystem::create_directory(path("out/frame_0001.png"));
    const ProcessResult result = run({"--frames", "2"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "vrnview: " + path("out/frame_0001.png") + ": Is a directory\n");
    EXPECT_THAT(filesIn("out"), testing::UnorderedElementsAre("frame_0000.png", "frame_0001.png"));
}

TEST_F(RunHost, OneIsToldAsOne) {
    writeStation(DrawTask(MoveTo("joint", "a")));
    const ProcessResult result = run({"--frames", "1"});
    EXPECT_THAT(result.out, testing::StartsWith(path("out/frame_0000.png") + "\n"));
    EXPECT_THAT(result.out, HasSubstr(": 1 frame, "));
    EXPECT_THAT(result.out, HasSubstr(" 1 move, "));
}

TEST_F(RunHost, PathGroupsAreHiddenByName) {
    std::string task = DrawTask(DrawMoves());
    task.insert(task.size() - 1, R"(, "operations": [{"type": "pathGroup", "id": "group",
        "operations": [{"path": "main"}]}])");
    writeStation(task);
    const auto picture = [&](const std::vector<std::string>& more, const char* name) {
        std::vector<std::string> arguments{
            "render",   path("arm.station.json"), "-o", path(name), "--size", "320x240",
            "--camera", "100,780,900,100,800,300"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ProcessResult result = vrnview(arguments);
        EXPECT_EQ(result.status, 0) << result.err;
        return Picture::loadPng(path(name));
    };
    const auto yellow = [](const Picture& shown) {
        return std::ranges::count_if(
            shown.getPixels(), [](const Rgba& p) { return p.r > 180 && p.g > 150 && p.b < 130; });
    };
    EXPECT_GT(yellow(picture({}, "shown.png")), 100);
    EXPECT_EQ(yellow(picture({"--hide", "group"}, "hidden.png")), 0);
}

}  // namespace
}  // namespace vrn::test
