#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

#include "apps/vrnview/program/ProgramPlan.h"
#include "apps/vrnview/Viewer.h"

namespace vrn::host {

/// A task of a content, ready to run.
struct PlannedTask {
    std::string task;
    const JointedObject* robot = nullptr;  ///< never null
    ProgramPlan plan;
};

/// The task of that name, without one the first. Throws std::runtime_error if there is none, and
/// what ProgramOf and ProgramPlan::Make throw. Thread: one at a time.
[[nodiscard]] PlannedTask PlanTask(const Content& content, const std::optional<std::string>& name);

/// Where the pictures of a run go.
struct RunStage {
    ViewTarget& view;
    std::filesystem::path folder;  ///< there
    int frames = 1;                ///< one at least
};

/// What a run left behind.
struct RunReport {
    std::string task, robot;
    std::size_t frames = 0, moves = 0, tracePoints = 0;
    double seconds = 0;  ///< of the program
    PoseError worst;     ///< of the inverse kinematics
    std::filesystem::path firstPicture, lastPicture, animation;
};

/// Runs a task: a thread of its own posts where the robot goes and what its tool leaves behind,
/// while the calling thread runs the tasks and takes the pictures, "frame_0000.png" and so on,
/// evenly from the start of the program to its end (a single one shows the end), and then an
/// animation of them, "animation.png"; what an earlier run left under such names goes first. Throws
/// std::runtime_error for what cannot be written; then the frames so far are there, whole. Thread:
/// render.
RunReport RunTask(const PlannedTask& planned, const RunStage& stage);

/// For people, and for programs as one line. With their line ends. Thread: pure.
[[nodiscard]] std::string TextOf(const RunReport& report);
[[nodiscard]] std::string JsonOf(const RunReport& report);

/// The time from picture to picture of the animation: that of the program, as long as this shows a
/// motion. Thread: pure.
[[nodiscard]] int AnimationDelayMs(double programSeconds, int frames);

}  // namespace vrn::host
