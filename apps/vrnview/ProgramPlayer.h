#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "apps/vrnview/program/ProgramPlan.h"
#include "apps/vrnview/readers/Content.h"

namespace vrn::visual {
class TcpTraceVisual;
}

namespace vrn::host {

/// Takes a robot of the scene along its plan, through the operations that any host has: the poses
/// of its links, and the trace of its tool, coloured by speed.
///
///     ProgramPlayer player(robot, plan);
///     player.start();
///     for (double t = 0; t < plan.getSeconds(); t += 0.02) player.goTo(t);
///
/// What it is asked to do it posts; the model stays as it is. The visuals of the robot's links must
/// be there while what was posted waits. There is one trace in a scene: two players take it from
/// each other. Thread: any one, not the render thread's while tasks wait.
class ProgramPlayer {
public:
    /// Both must outlive it.
    ProgramPlayer(const JointedObject& robotObject, const ProgramPlan& robotPlan);

    /// Begins a new trace; an earlier one goes.
    void start();
    /// Moves the robot to a moment of the plan and draws its trace as far. Going back in time moves
    /// the robot alone.
    void goTo(double seconds);
    /// Draws the whole trace and leaves the robot where it is.
    void drawTrace();
    /// Takes the trace away.
    void clearTrace();

    /// Of the trace, so far.
    [[nodiscard]] std::size_t getTracePoints() const { return drawn; }

private:
    void postLinks(double seconds);
    void postTrace(std::size_t end);

    const JointedObject& robot;
    const ProgramPlan& plan;
    Kinematics kinematics;
    std::vector<Pose> posted;  ///< of each link, in the robot's frame
    std::vector<PlanPoint> trace;
    std::size_t drawn = 0;  ///< of `trace`
    double fastest = 0;
    /// What start posted; read and written by tasks alone.
    std::shared_ptr<visual::TcpTraceVisual*> visual;
};

}  // namespace vrn::host
