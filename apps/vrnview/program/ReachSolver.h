#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "apps/vrnview/readers/Robot.h"

namespace vrn::host {

/// One value a joint, in the order of Kinematics::getJoints: radians or millimetres; of fixed
/// joints unused.
using JointValues = std::vector<double>;

/// How far a pose is from another one.
struct PoseError {
    double mm = 0;
    double degrees = 0;

    /// Takes the larger of each.
    void include(const PoseError& other);
};
[[nodiscard]] PoseError DistanceOf(const Pose& a, const Pose& b);

/// Where joint values take a tool, and which values take it to a place. Poses are in the frame of
/// the robot.
///
/// The inverse is found by iteration (Levenberg-Marquardt, as the kinematics library has it), from
/// values near by; so it serves arms of any build. Thread: one at a time.
class ReachSolver {
public:
    /// For a tool at `tool` in the frame of the link `tip`. Throws std::runtime_error if no joint
    /// moves that link, or one that follows another joint does.
    ReachSolver(const Kinematics& kinematics, std::size_t tip, const Pose& tool);
    ~ReachSolver();
    ReachSolver(ReachSolver&&) noexcept;
    ReachSolver& operator=(ReachSolver&&) noexcept;

    /// Thread: one at a time.
    [[nodiscard]] Pose toolAt(const JointValues& values) const;
    /// The values next to `start` that take the tool to `wanted` within `tolerance`, inside the
    /// joints' limits; nothing if the iteration from there ends elsewhere. Joints that do not move
    /// the tool keep their values.
    [[nodiscard]] std::optional<JointValues> follow(const Pose& wanted,
                                                    const JointValues& start) const;
    /// The same; where that fails also from other postures, of which the one with the shortest way
    /// from `start` is taken. The same each time.
    [[nodiscard]] std::optional<JointValues> reach(const Pose& wanted,
                                                   const JointValues& start) const;

    static constexpr PoseError tolerance{0.01, 0.01};

private:
    struct Chain;

    /// The iteration begins at `seed`; of turns that mean the same the one next to `start` counts.
    [[nodiscard]] std::optional<JointValues> solve(const Pose& wanted, const JointValues& seed,
                                                   const JointValues& start) const;

    std::unique_ptr<Chain> chain;
};

}  // namespace vrn::host
