#include "apps/vrnview/ProgramRun.h"

#include <OgreCamera.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <format>
#include <regex>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "apps/vrnview/AnimatedPng.h"
#include "apps/vrnview/PickJson.h"
#include "apps/vrnview/program/RobotProgram.h"
#include "apps/vrnview/ProgramPlayer.h"
#include "apps/vrnview/RenderLoop.h"
#include "apps/vrnview/ViewTarget.h"
#include "suite/layout/Mechanism.h"
#include "suite/task/Task.h"
#include "view/Camera.h"

namespace vrn::host {

namespace {

const task::Task& TaskNamed(const Content& content, const std::optional<std::string>& name) {
    if (content.tasks.empty()) throw std::runtime_error("it has no task");
    if (!name) return *content.tasks.front();
    std::string known;
    for (const task::Task* task : content.tasks) {
        if (task->name == *name) return *task;
        known += std::format("{}'{}'", known.empty() ? "" : ", ", task->name);
    }
    throw std::runtime_error(std::format("it has no task '{}', only {}", *name, known));
}

/// The pictures of an earlier run, which may have been longer.
void RemovePictures(const std::filesystem::path& folder) {
    static const std::regex own("frame_[0-9]{4}\\.png|animation\\.png");
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.is_regular_file() && std::regex_match(entry.path().filename().string(), own))
            found.push_back(entry.path());
    for (const std::filesystem::path& file : found) std::filesystem::remove(file);
}

/// A robot may come as near as it likes: what was framed is not what the run shows.
void WidenClipDistances() {
    visual::Camera& camera = *visual::Camera::Get();
    constexpr float depthRange = 1e4f;
    const float farthest = 1.2f * static_cast<float>(camera.camera->getFarClipDistance());
    camera.setClipDist(
        std::min(static_cast<float>(camera.camera->getNearClipDistance()), farthest / depthRange),
        farthest);
}

}  // namespace

PlannedTask PlanTask(const Content& content, const std::optional<std::string>& name) {
    const task::Task& task = TaskNamed(content, name);
    PlannedTask planned;
    planned.task = task.name;
    planned.plan = ProgramPlan::Make(ProgramOf(content, task));
    for (const JointedObject& jointed : content.jointed)
        if (jointed.object->id == task.getManipulatorId()) planned.robot = &jointed;
    return planned;
}

RunReport RunTask(const PlannedTask& planned, const RunStage& stage) {
    const ProgramPlan& plan = planned.plan;
    RemovePictures(stage.folder);
    WidenClipDistances();
    RunReport report;
    report.task = planned.task;
    report.robot = planned.robot->object->name;
    report.moves = plan.getMoveCount();
    report.seconds = plan.getSeconds();
    report.worst = plan.getWorstError();
    report.animation = stage.folder / "animation.png";
    AnimatedPng film(report.animation, AnimationDelayMs(report.seconds, stage.frames));
    RenderLoop loop;
    loop.runBeside([&] {
        ProgramPlayer player(*planned.robot, plan);
        player.start();
        for (int frame = 0; frame < stage.frames; ++frame) {
            const double part =
                stage.frames > 1 ? static_cast<double>(frame) / (stage.frames - 1) : 1;
            player.goTo(part * report.seconds);
            headless::Picture picture;
            loop.ask([&] { picture = stage.view.takePicture(); });
            report.lastPicture = stage.folder / std::format("frame_{:04}.png", frame);
            if (frame == 0) report.firstPicture = report.lastPicture;
            picture.savePng(report.lastPicture);
            film.add(picture);
            ++report.frames;
        }
        report.tracePoints = player.getTracePoints();
    });
    film.finish();
    return report;
}

int AnimationDelayMs(double programSeconds, int frames) {
    const double each = 1000 * programSeconds / std::max(frames - 1, 1);
    return static_cast<int>(std::lround(std::clamp(each, 20.0, 100.0)));
}

std::string TextOf(const RunReport& report) {
    const auto many = [](std::size_t count, std::string_view what) {
        return std::format("{} {}{}", count, what, count == 1 ? "" : "s");
    };
    std::string pictures = report.firstPicture.string();
    if (report.frames > 1) pictures += " to " + report.lastPicture.filename().string();
    return std::format(
        "{}\n{}\ntask '{}' of '{}': {}, {:.1f} seconds, {}, {}, worst error {:.6f} mm, {:.6f} "
        "degrees\n",
        pictures, report.animation.string(), report.task, report.robot,
        many(report.frames, "frame"), report.seconds, many(report.moves, "move"),
        many(report.tracePoints, "trace point"), report.worst.mm, report.worst.degrees);
}

std::string JsonOf(const RunReport& report) {
    nlohmann::ordered_json json;
    json["task"] = report.task;
    json["robot"] = report.robot;
    json["frames"] = report.frames;
    json["seconds"] = report.seconds;
    json["moves"] = report.moves;
    json["tracePoints"] = report.tracePoints;
    json["worstError"] = {{"mm", report.worst.mm}, {"degrees", report.worst.degrees}};
    json["firstPicture"] = report.firstPicture.string();
    json["lastPicture"] = report.lastPicture.string();
    json["animation"] = report.animation.string();
    return LineOf(json);
}

}  // namespace vrn::host
