#include "apps/vrnview/program/ReachSolver.h"

#include <kdl/chain.hpp>
#include <kdl/chainfksolverpos_recursive.hpp>
#include <kdl/chainiksolverpos_lma.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <format>
#include <numbers>
#include <stdexcept>

namespace vrn::host {

namespace {

constexpr double pi = std::numbers::pi;

// The library weighs metres against radians.
constexpr double metre = 1000;

KDL::Frame FrameOf(const Pose& pose) {
    const auto& [p, r] = pose;
    return {KDL::Rotation::Quaternion(r.x, r.y, r.z, r.w),
            KDL::Vector(p.x / metre, p.y / metre, p.z / metre)};
}

Pose PoseOf(const KDL::Frame& frame) {
    Pose pose;
    pose.position = {frame.p.x() * metre, frame.p.y() * metre, frame.p.z() * metre};
    auto& r = pose.rotation;
    frame.M.GetQuaternion(r.x, r.y, r.z, r.w);
    return pose;
}

KDL::Segment SegmentOf(const Joint& joint) {
    const KDL::Frame origin = FrameOf(joint.origin);
    if (joint.kind == Joint::Kind::Fixed)
        return KDL::Segment(joint.name, KDL::Joint(joint.name, KDL::Joint::Fixed), origin);
    const KDL::Vector axis = origin.M * KDL::Vector(joint.axis.x, joint.axis.y, joint.axis.z);
    const bool turns = joint.kind == Joint::Kind::Turning;
    const auto kind = turns ? KDL::Joint::RotAxis : KDL::Joint::TransAxis;
    return KDL::Segment(joint.name, KDL::Joint(joint.name, origin.p, axis, kind), origin);
}

/// The i-th of a sequence that fills 0..1 evenly at every length (Halton, "On the efficiency of
/// certain quasi-random sequences", 1960); `base` is a prime.
double Halton(unsigned i, unsigned base) {
    double result = 0, fraction = 1.0 / base;
    for (; i > 0; i /= base, fraction /= base) result += fraction * (i % base);
    return result;
}

/// The same angle inside the limits, as near to `start` as they let it; outside if there is none.
double Unwound(double angle, double start, const Joint& joint) {
    angle += 2 * pi * std::round((start - angle) / (2 * pi));
    if (joint.upper)
        while (angle > *joint.upper) angle -= 2 * pi;
    if (joint.lower)
        while (angle < *joint.lower) angle += 2 * pi;
    return angle;
}

bool IsInside(double value, const Joint& joint) {
    // As Kinematics::setValue has it.
    constexpr double rounding = 1e-6;
    return !(joint.lower && value < *joint.lower - rounding) &&
           !(joint.upper && value > *joint.upper + rounding);
}

}  // namespace

void PoseError::include(const PoseError& other) {
    mm = std::max(mm, other.mm);
    degrees = std::max(degrees, other.degrees);
}

PoseError DistanceOf(const Pose& a, const Pose& b) {
    const auto turn = a.rotation.inverse() * b.rotation;
    const double sine = std::hypot(turn.x, std::hypot(turn.y, turn.z));
    return {(a.position - b.position).length(), 2 * std::atan2(sine, std::abs(turn.w)) * 180 / pi};
}

struct ReachSolver::Chain {
    KDL::Chain segments;
    std::vector<std::size_t> moving;  ///< indices of joints, from the base to the tool
    std::vector<Joint> joints;        ///< those, in the same order
    std::unique_ptr<KDL::ChainFkSolverPos_recursive> forward;
    std::unique_ptr<KDL::ChainIkSolverPos_LMA> inverse;

    [[nodiscard]] KDL::JntArray arrayOf(const JointValues& values) const {
        KDL::JntArray array(static_cast<unsigned>(moving.size()));
        for (unsigned i = 0; i < moving.size(); ++i) array(i) = toLibrary(i, values.at(moving[i]));
        return array;
    }
    [[nodiscard]] double toLibrary(unsigned i, double value) const {
        return joints[i].kind == Joint::Kind::Sliding ? value / metre : value;
    }
    /// `start` with the joints of the chain where `array` has them, inside their limits if they can
    /// be.
    [[nodiscard]] JointValues valuesOf(const KDL::JntArray& array, const JointValues& start) const {
        JointValues values = start;
        for (unsigned i = 0; i < moving.size(); ++i) {
            double& value = values[moving[i]];
            value = joints[i].kind == Joint::Kind::Sliding ? array(i) * metre
                                                           : Unwound(array(i), value, joints[i]);
        }
        return values;
    }
    /// Some posture inside the limits; each number another one.
    [[nodiscard]] JointValues posture(unsigned number, const JointValues& values) const {
        constexpr std::array<unsigned, 8> bases{2, 3, 5, 7, 11, 13, 17, 19};
        JointValues result = values;
        for (std::size_t i = 0; i < moving.size(); ++i) {
            const bool turns = joints[i].kind == Joint::Kind::Turning;
            const double reach = turns ? pi : metre;
            const double low = std::max(joints[i].lower.value_or(-reach), -reach);
            const double high = std::min(joints[i].upper.value_or(reach), reach);
            result[moving[i]] = low + (high - low) * Halton(number, bases[i % bases.size()]);
        }
        return result;
    }
};

ReachSolver::ReachSolver(const Kinematics& kinematics, std::size_t tip, const Pose& tool)
    : chain(std::make_unique<Chain>()) {
    const std::vector<Joint>& joints = kinematics.getJoints();
    std::vector<std::size_t> way;  // from the tip to the base
    for (std::size_t link = tip; link != kinematics.getBase();) {
        const auto joint = std::ranges::find(joints, link, &Joint::child);
        way.push_back(static_cast<std::size_t>(joint - joints.begin()));
        link = joint->parent;
    }
    std::ranges::reverse(way);
    for (const std::size_t index : way) {
        const Joint& joint = joints[index];
        if (joint.mimic)
            throw std::runtime_error(
                std::format("joint '{}' follows joint '{}', and such robots cannot run programs",
                            joint.name, joint.mimic->joint));
        chain->segments.addSegment(SegmentOf(joint));
        if (joint.kind == Joint::Kind::Fixed) continue;
        chain->moving.push_back(index);
        chain->joints.push_back(joint);
    }
    if (chain->moving.empty()) throw std::runtime_error("no joint of the robot moves the tool");
    chain->segments.addSegment(
        KDL::Segment("tool", KDL::Joint("tool", KDL::Joint::Fixed), FrameOf(tool)));
    chain->forward = std::make_unique<KDL::ChainFkSolverPos_recursive>(chain->segments);
    // A radian counts as 0.3 metres; ends a thousand times closer than the tolerance.
    Eigen::Matrix<double, 6, 1> weights;
    weights << 1, 1, 1, 0.3, 0.3, 0.3;
    constexpr double closeEnough = 1e-8;
    constexpr int steps = 200;
    chain->inverse =
        std::make_unique<KDL::ChainIkSolverPos_LMA>(chain->segments, weights, closeEnough, steps);
}

ReachSolver::~ReachSolver() = default;
ReachSolver::ReachSolver(ReachSolver&&) noexcept = default;
ReachSolver& ReachSolver::operator=(ReachSolver&&) noexcept = default;

Pose ReachSolver::toolAt(const JointValues& values) const {
    KDL::Frame frame;
    chain->forward->JntToCart(chain->arrayOf(values), frame);
    return PoseOf(frame);
}

std::optional<JointValues> ReachSolver::follow(const Pose& wanted, const JointValues& start) const {
    return solve(wanted, start, start);
}

std::optional<JointValues> ReachSolver::solve(const Pose& wanted, const JointValues& seed,
                                              const JointValues& start) const {
    KDL::JntArray found(static_cast<unsigned>(chain->moving.size()));
    // Its verdict is not asked: near a bent-back wrist it stops for small steps where it is close
    // enough for us.
    chain->inverse->CartToJnt(chain->arrayOf(seed), FrameOf(wanted), found);
    JointValues values = chain->valuesOf(found, start);
    for (std::size_t i = 0; i < chain->moving.size(); ++i)
        if (!IsInside(values[chain->moving[i]], chain->joints[i])) return std::nullopt;
    const PoseError error = DistanceOf(toolAt(values), wanted);
    // Negated, so that NaN is not taken for close.
    if (!(error.mm <= tolerance.mm && error.degrees <= tolerance.degrees)) return std::nullopt;
    return values;
}

std::optional<JointValues> ReachSolver::reach(const Pose& wanted, const JointValues& start) const {
    if (auto values = follow(wanted, start)) return values;
    const auto wayFrom = [&](const JointValues& values) {
        double longest = 0;
        for (std::size_t i = 0; i < chain->moving.size(); ++i) {
            const double unit = chain->joints[i].kind == Joint::Kind::Sliding ? metre : 1;
            const std::size_t joint = chain->moving[i];
            longest = std::max(longest, std::abs(values[joint] - start[joint]) / unit);
        }
        return longest;
    };
    constexpr unsigned postures = 64;
    std::optional<JointValues> best;
    for (unsigned i = 1; i <= postures; ++i) {
        const auto found = solve(wanted, chain->posture(i, start), start);
        if (found && (!best || wayFrom(*found) < wayFrom(*best))) best = found;
    }
    return best;
}

}  // namespace vrn::host
