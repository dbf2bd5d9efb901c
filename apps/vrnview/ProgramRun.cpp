#include "apps/vrnview/ProgramRun.h"

#include <OgreCamera.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <format>
#include <stdexcept>

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
    return std::format(
        "{} to {}\n{}\ntask '{}' of '{}': {} frames, {:.1f} seconds, {} moves, {} trace points, "
        "worst error {:.6f} mm, {:.6f} degrees\n",
        report.firstPicture.string(), report.lastPicture.filename().string(),
        report.animation.string(), report.task, report.robot, report.frames, report.seconds,
        report.moves, report.tracePoints, report.worst.mm, report.worst.degrees);
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
