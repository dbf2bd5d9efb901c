#pragma once

#include <cstddef>
#include <set>
#include <vector>

#include "apps/vrnview/program/RobotProgram.h"

namespace vrn::host {

/// Where a robot is at one moment of its program.
struct PlanPoint {
    double seconds = 0;  ///< since the start
    JointValues values;
    Pose tool;             ///< in the world, where the values take it
    double speed = 0;      ///< of the tool, millimetres a second
    std::size_t move = 0;  ///< index of the move that it belongs to
};

/// A program as a run in time: so dense a row of points that between two of them joints move evenly
/// and the tool is still on its way.
///
/// The robot goes at a move's speed from the move's start to its end. A tool that turns more than
/// it goes is given the time to turn by turnSpeed. A move that has nothing to do takes no time. A
/// value. Thread: pure.
class ProgramPlan {
public:
    /// Throws std::runtime_error, with the task, the move and its target, for what the robot cannot
    /// reach: a target, or a place on a straight or circular way between the postures at its ends.
    [[nodiscard]] static ProgramPlan Make(const RobotProgram& program);

    /// In time; at the border of two moves one of each. One at least.
    [[nodiscard]] const std::vector<PlanPoint>& getPoints() const { return points; }
    [[nodiscard]] double getSeconds() const { return points.back().seconds; }
    /// How far, at worst, the tool is from where it should be at a point.
    [[nodiscard]] const PoseError& getWorstError() const { return worst; }
    [[nodiscard]] double getFastest() const;
    [[nodiscard]] std::size_t getMoveCount() const { return moveCount; }

    /// At a moment; before the start the first, after the end the last.
    [[nodiscard]] JointValues valuesAt(double seconds) const;
    /// The points to draw the tool's way through: the first and the last of each move, and in
    /// between about one every `spacing` millimetres, on an arc the ends of the chords that a path
    /// shows it by. The way to the first target, which begins where the robot happens to stand, is
    /// no part of it.
    [[nodiscard]] std::vector<PlanPoint> tracePoints(double spacing = 10) const;

    static constexpr double turnSpeed = 90;  ///< degrees a second

private:
    std::vector<PlanPoint> points;
    std::set<std::size_t> arcMoves;  ///< indices of the moves that go round
    PoseError worst;
    std::size_t moveCount = 0;

    friend class Planner;
};

}  // namespace vrn::host
