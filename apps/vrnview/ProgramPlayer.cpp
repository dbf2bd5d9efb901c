#include "apps/vrnview/ProgramPlayer.h"

#include <algorithm>
#include <utility>

#include "apps/vrnview/program/SpeedColour.h"
#include "engine/Scene.h"
#include "suite/layout/Mechanism.h"
#include "visual/task/TcpTraceVisual.h"

namespace vrn::host {

namespace {

struct ColouredPoint {
    rob::PosTemplate<double> position;
    rob::ColorTemplate<float> colour;
};

}  // namespace

ProgramPlayer::ProgramPlayer(const JointedObject& robotObject, const ProgramPlan& robotPlan)
    : robot(robotObject),
      plan(robotPlan),
      kinematics(robotObject.kinematics),
      posted(kinematics.linkPoses()),
      trace(robotPlan.tracePoints()),
      fastest(robotPlan.getFastest()) {}

void ProgramPlayer::start() {
    clearTrace();
    visual = std::make_shared<visual::TcpTraceVisual*>(nullptr);
    visual::Scene& scene = *visual::Scene::Get();
    scene.addRenderTask(
        [&scene, made = visual] {
            *made = new visual::TcpTraceVisual(scene.root);
            scene.setTcpTrace(*made);
        },
        /*key=*/0);
}

void ProgramPlayer::clearTrace() {
    drawn = 0;
    visual.reset();
    visual::Scene::Get()->clearTcpTrace();
}

void ProgramPlayer::goTo(double seconds) {
    postLinks(seconds);
    std::size_t end = drawn;
    while (end < trace.size() && trace[end].seconds <= seconds) ++end;
    postTrace(end);
}

void ProgramPlayer::drawTrace() { postTrace(trace.size()); }

void ProgramPlayer::postLinks(double seconds) {
    const JointValues values = plan.valuesAt(seconds);
    const std::vector<Joint>& joints = kinematics.getJoints();
    for (std::size_t i = 0; i < joints.size(); ++i)
        if (joints[i].kind != Joint::Kind::Fixed && !joints[i].mimic)
            kinematics.setValue(joints[i].name, values[i]);
    const std::vector<Pose> poses = kinematics.linkPoses();
    for (std::size_t i = 0; i < poses.size(); ++i) {
        if (poses[i] == posted[i]) continue;
        posted[i] = poses[i];
        visual::Scene::Get()->setVisualPose(robot.links[i]->id, rob::PoseTemplate<float>(poses[i]));
    }
}

void ProgramPlayer::postTrace(std::size_t end) {
    if (end == drawn || !visual) return;
    std::vector<ColouredPoint> points;
    for (; drawn < end; ++drawn)
        points.push_back({trace[drawn].tool.position, SpeedColour(trace[drawn].speed, fastest)});
    visual::Scene::Get()->addRenderTask(
        [to = visual, points = std::move(points)] {
            for (const auto& [position, colour] : points) (*to)->addColorPoint(position, colour);
        },
        /*key=*/0);
}

}  // namespace vrn::host
