#include "apps/vrnview/program/ProgramPlan.h"

#include <algorithm>
#include <cmath>
#include <format>
#include <numbers>
#include <stdexcept>
#include <utility>

#include "apps/vrnview/program/Way.h"

namespace vrn::host {

namespace {

constexpr double degree = std::numbers::pi / 180;

// From point to point: joints that move evenly leave a straight way by the square of the step; with
// these a big arm by some hundredths of a millimetre.
constexpr double stepMm = 4, stepDegrees = 1, jointStepDegrees = 1;

// A path shows an arc by so many chords; what follows it has points at their ends, so that the two
// lie in one line.
constexpr std::size_t arcParts = 20;

// Of one move: more would be kilometres, or thousands of turns.
constexpr double mostSteps = 1e6;
// Of a whole program: about a gigabyte.
constexpr std::size_t mostPoints = 5'000'000;

std::size_t StepsFor(double length, double step) {
    if (!(length / step <= mostSteps)) throw std::runtime_error("the way there is too long");
    return static_cast<std::size_t>(std::ceil(std::max(length / step, 1.0)));
}

JointValues Between(const JointValues& a, const JointValues& b, double part) {
    JointValues values(a.size());
    for (std::size_t i = 0; i < a.size(); ++i) values[i] = a[i] + (b[i] - a[i]) * part;
    return values;
}

}  // namespace

class Planner {
public:
    explicit Planner(const RobotProgram& source) : program(source) {
        for (const Joint& joint : program.kinematics.getJoints())
            values.push_back(program.kinematics.getValue(joint.name));
    }

    ProgramPlan run() {
        add(0, /*seconds=*/0);
        for (std::size_t i = 0; i < program.moves.size(); ++i) {
            try {
                addMove(i);
            } catch (const std::runtime_error& error) {
                throw std::runtime_error(std::format("task '{}': {}: {}", program.task,
                                                     program.moves[i].label, error.what()));
            }
        }
        plan.moveCount = program.moves.size();
        return std::move(plan);
    }

private:
    [[nodiscard]] const ReachSolver& toolOf(std::size_t move) const {
        return program.tools.at(program.moves[move].tool);
    }
    void add(std::size_t move, double seconds) {
        if (plan.points.size() >= mostPoints) throw std::runtime_error("the program is too long");
        plan.points.push_back(
            {seconds, values, Compose(program.place, toolOf(move).toolAt(values)), 0, move});
    }

    void addMove(std::size_t index) {
        const ProgramMove& move = program.moves[index];
        const std::size_t first = plan.points.size();
        const double before = plan.getSeconds();
        add(index, before);
        if (move.kind == ProgramMove::Kind::Joint)
            addJointMove(index);
        else
            addWay(index);
        // A move of no time would have the tool in two places at once, or twice in one.
        if (!(plan.getSeconds() > before)) plan.points.resize(first);
        setSpeeds(first);
    }

    void addJointMove(std::size_t index) {
        const ProgramMove& move = program.moves[index];
        const JointValues from = values, to = goalOf(move);
        double longest = 0;  // degrees or millimetres
        const std::vector<Joint>& joints = program.kinematics.getJoints();
        for (std::size_t i = 0; i < joints.size(); ++i) {
            const double unit = joints[i].kind == Joint::Kind::Turning ? degree : 1;
            longest = std::max(longest, std::abs(to[i] - from[i]) / unit);
        }
        const double start = plan.getSeconds(), duration = longest / move.speed;
        if (duration > 0) {
            const std::size_t steps = StepsFor(longest, jointStepDegrees);
            for (std::size_t i = 1; i <= steps; ++i) {
                const double part = static_cast<double>(i) / static_cast<double>(steps);
                values = Between(from, to, part);
                add(index, start + duration * part);
            }
        }
        values = to;
        if (!move.isJointTarget) noteError(index, move.target);
    }

    [[nodiscard]] JointValues goalOf(const ProgramMove& move) const {
        if (!move.isJointTarget) {
            const auto found = program.tools.at(move.tool).reach(move.target, values);
            if (!found) throw std::runtime_error("out of reach");
            return *found;
        }
        JointValues goal = values;
        const std::vector<Joint>& joints = program.kinematics.getJoints();
        for (std::size_t i = 0; i < joints.size(); ++i)
            if (const auto given = move.joints.find(joints[i].name); given != move.joints.end())
                goal[i] = given->second;
        return goal;
    }

    void addWay(std::size_t index) {
        const ProgramMove& move = program.moves[index];
        const ReachSolver& tool = toolOf(index);
        const Pose from = tool.toolAt(values);
        Way way = Way::Straight(from, move.target);
        if (move.kind == ProgramMove::Kind::Circular) {
            const auto arc = Way::Arc(from, move.via, move.target);
            // As the path shows it.
            if (arc) way = *arc;
        }
        if (way.isArc()) plan.arcMoves.insert(index);
        const double turn = way.turnRad() / degree;
        const double start = plan.getSeconds();
        const double duration = std::max(way.length() / move.speed, turn / ProgramPlan::turnSpeed);
        std::size_t steps = std::max(StepsFor(way.length(), stepMm), StepsFor(turn, stepDegrees));
        if (way.isArc()) steps = (steps + arcParts - 1) / arcParts * arcParts;
        for (std::size_t i = 1; i <= steps; ++i) {
            const double part = static_cast<double>(i) / static_cast<double>(steps);
            const Pose wanted = way.at(part);
            const auto found = tool.follow(wanted, values);
            if (!found) throwUnreachable(tool, wanted, part);
            values = *found;
            add(index, start + duration * part);
            noteError(index, wanted);
        }
    }

    [[noreturn]] void throwUnreachable(const ReachSolver& tool, const Pose& wanted,
                                       double part) const {
        if (part >= 1) throw std::runtime_error("out of reach");
        throw std::runtime_error(
            std::format("the way there is out of reach after {:.0f} percent{}", part * 100,
                        tool.reach(wanted, values) ? ", in this posture" : ""));
    }

    void noteError(std::size_t index, const Pose& wanted) {
        plan.worst.include(DistanceOf(toolOf(index).toolAt(values), wanted));
    }

    /// Of the points of one move: the mean over the steps beside them.
    void setSpeeds(std::size_t first) {
        std::vector<PlanPoint>& points = plan.points;
        const auto mean = [&points](std::size_t a, std::size_t b) {
            double way = 0;
            for (std::size_t i = a; i < b; ++i)
                way += (points[i + 1].tool.position - points[i].tool.position).length();
            return way / (points[b].seconds - points[a].seconds);
        };
        for (std::size_t i = first; i < points.size(); ++i) {
            const std::size_t a = i > first ? i - 1 : i;
            const std::size_t b = i + 1 < points.size() ? i + 1 : i;
            if (a != b) points[i].speed = mean(a, b);
        }
    }

    const RobotProgram& program;
    JointValues values;
    ProgramPlan plan;
};

ProgramPlan ProgramPlan::Make(const RobotProgram& program) { return Planner(program).run(); }

double ProgramPlan::getFastest() const {
    return std::ranges::max_element(points, {}, &PlanPoint::speed)->speed;
}

JointValues ProgramPlan::valuesAt(double seconds) const {
    const auto after = std::ranges::upper_bound(points, seconds, {}, &PlanPoint::seconds);
    if (after == points.begin()) return points.front().values;
    if (after == points.end()) return points.back().values;
    const PlanPoint &a = *(after - 1), &b = *after;
    return Between(a.values, b.values, (seconds - a.seconds) / (b.seconds - a.seconds));
}

std::vector<PlanPoint> ProgramPlan::tracePoints(double spacing) const {
    std::vector<PlanPoint> traced;
    for (std::size_t first = 0, end = 0; first < points.size(); first = end) {
        const auto isOther = [&](const PlanPoint& point) {
            return point.move != points[first].move;
        };
        const auto found = std::find_if(points.begin() + static_cast<std::ptrdiff_t>(first),
                                        points.end(), isOther);
        end = static_cast<std::size_t>(found - points.begin());
        if (points[first].move == 0) continue;
        double way = 0;
        for (std::size_t i = first + 1; i < end; ++i)
            way += (points[i].tool.position - points[i - 1].tool.position).length();
        // As many equal parts as it takes; they divide the steps of an arc evenly.
        const std::size_t steps = end - first - 1;
        const double stepsApart = static_cast<double>(steps) * spacing / std::max(way, spacing);
        std::size_t stride = std::max<std::size_t>(1, static_cast<std::size_t>(stepsApart));
        if (arcMoves.contains(points[first].move)) stride = steps / arcParts;
        for (std::size_t i = first; i < end; ++i)
            if ((i - first) % stride == 0 || i + 1 == end) traced.push_back(points[i]);
    }
    return traced;
}

}  // namespace vrn::host
