#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "apps/vrnview/program/ReachSolver.h"
#include "apps/vrnview/readers/Content.h"

namespace vrn::host {

/// A move as it is run: everything looked up, targets in the robot's frame.
struct ProgramMove {
    enum class Kind { Joint, Linear, Circular };

    Kind kind = Kind::Linear;
    std::string label;  ///< for messages: "path 'p', move 3 ('linear') to target 'a'"
    double speed = 0;   ///< as MoveData has it
    std::size_t tool = 0;
    Pose target;
    rob::PosTemplate<double> via;          ///< of a circular move
    std::map<std::string, double> joints;  ///< of a joint target; else empty
    bool isJointTarget = false;
};

/// What a task has its robot do, all paths one after the other. Poses are in the robot's frame.
struct RobotProgram {
    std::string task;
    std::string robot;
    Kinematics kinematics;  ///< at the values that the robot starts from
    Pose place;             ///< of the robot in the world
    std::vector<ReachSolver> tools;
    std::vector<ProgramMove> moves;  ///< one at least
};

/// The program of a task of the content, from the station as it stands. Throws std::runtime_error
/// with the task and the reason: without a robot or a move, for a tool that the robot does not
/// carry, for a work object that moves with the robot. Thread: one at a time.
[[nodiscard]] RobotProgram ProgramOf(const Content& content, const task::Task& task);

}  // namespace vrn::host
