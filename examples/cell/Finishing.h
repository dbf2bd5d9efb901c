#pragma once

#include <gp_Trsf.hxx>

#include <string>
#include <utility>
#include <vector>

#include "examples/cell/Arm.h"

namespace vrn::examples {

struct RobotCell;

/// One move of a program: to a target, for an arc through another one, or to joint values.
struct CellMove {
    std::string type;  ///< "joint", "linear" or "circular"
    std::string target;
    std::string via{};  ///< of an arc
    double speed = 0;   ///< millimetres a second, of a joint move degrees a second
    bool isToJoints = false;
};

struct CellPath {
    std::string name;
    std::vector<CellMove> moves;
};

/// The program that finishes the propeller where it lies: round the edge of its blades and of its
/// bore. Targets have their Z out of the surface, as the cutter's frame has it, and their X towards
/// the robot.
struct Finishing {
    std::string workObject;
    gp_Trsf userFrame;  ///< in the workpiece's frame
    std::vector<std::pair<std::string, gp_Trsf>> targets;
    std::string home;
    ArmPosture homeDegrees{};
    std::vector<CellPath> paths;
};

/// For the cell as it stands: arm, positioner, tool and workpiece must be in their places.
[[nodiscard]] Finishing MakeFinishing(const RobotCell& cell);

/// Where the cutter's frame stands in the world at a target.
[[nodiscard]] gp_Trsf TargetPlace(const RobotCell& cell, const Finishing& finishing,
                                  const std::string& target);

}  // namespace vrn::examples
