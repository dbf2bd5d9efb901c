#include <algorithm>
#include <cmath>
#include <format>
#include <numbers>
#include <set>
#include <stdexcept>

#include "apps/vrnview/readers/Robot.h"

namespace vrn::host {

namespace {

constexpr double degree = std::numbers::pi / 180;

double NearestToZero(const Joint& joint) {
    double value = 0;
    if (joint.upper) value = std::min(value, *joint.upper);
    if (joint.lower) value = std::max(value, *joint.lower);
    return value;
}

Pose Moved(const Joint& joint, double value) {
    using Rotation = rob::RotationTemplate<double>;
    const rob::Vec3Template<double> way = joint.axis * value;
    switch (joint.kind) {
        case Joint::Kind::Turning:
            return {{}, Rotation(value, joint.axis)};
        case Joint::Kind::Sliding:
            return {{way.x, way.y, way.z}, {}};
        case Joint::Kind::Fixed:
            break;
    }
    return {};
}

std::string LimitText(const Joint& joint) {
    const bool turns = joint.kind == Joint::Kind::Turning;
    const double unit = turns ? degree : 1;
    const auto text = [unit](const std::optional<double>& limit) {
        return limit ? std::format("{:.6g}", *limit / unit) : std::string("no limit");
    };
    return std::format("{} to {} {}", text(joint.lower), text(joint.upper),
                       turns ? "degrees" : "millimetres");
}

}  // namespace

Kinematics::Kinematics(const std::vector<std::string>& linkNames, std::vector<Joint> given)
    : links(linkNames.size()), joints(std::move(given)) {
    if (links == 0) throw std::runtime_error("there are no links");
    std::set<std::string_view> names;
    for (const Joint& joint : joints) {
        if (joint.parent >= links || joint.child >= links)
            throw std::runtime_error(
                std::format("joint '{}' names a link that is not there", joint.name));
        if (!names.insert(joint.name).second)
            throw std::runtime_error(std::format("there are two joints '{}'", joint.name));
    }
    findBase(linkNames);
    sort(linkNames);
    for (std::size_t i = 0; i < joints.size(); ++i) indices.emplace(joints[i].name, i);
    checkMimics();
    for (const Joint& joint : joints) values.push_back(NearestToZero(joint));
}

void Kinematics::findBase(const std::vector<std::string>& linkNames) {
    std::vector<bool> hangs(links, false);
    for (const Joint& joint : joints) {
        if (hangs[joint.child])
            throw std::runtime_error(
                std::format("link '{}' hangs on two joints", linkNames[joint.child]));
        hangs[joint.child] = true;
    }
    const auto first = std::ranges::find(hangs, false);
    if (first == hangs.end())
        throw std::runtime_error(std::format("the links form a cycle: '{}'", linkNames.front()));
    base = static_cast<std::size_t>(first - hangs.begin());
    const auto second = std::find(first + 1, hangs.end(), false);
    if (second != hangs.end())
        throw std::runtime_error(
            std::format("links '{}' and '{}' both hang on no joint", linkNames[base],
                        linkNames[static_cast<std::size_t>(second - hangs.begin())]));
}

/// Breadth first from the base; what is not reached hangs on a cycle.
void Kinematics::sort(const std::vector<std::string>& linkNames) {
    std::vector<std::vector<std::size_t>> below(links);
    for (std::size_t i = 0; i < joints.size(); ++i) below[joints[i].parent].push_back(i);
    std::vector<std::size_t> reached{base};
    std::vector<Joint> sorted;
    for (std::size_t next = 0; next < reached.size(); ++next)
        for (const std::size_t i : below[reached[next]]) {
            reached.push_back(joints[i].child);
            sorted.push_back(joints[i]);
        }
    if (sorted.size() != joints.size()) {
        std::ranges::sort(reached);
        std::size_t lost = 0;
        while (std::ranges::binary_search(reached, lost)) ++lost;
        throw std::runtime_error(std::format("the links form a cycle: '{}'", linkNames[lost]));
    }
    joints = std::move(sorted);
}

void Kinematics::checkMimics() const {
    for (const Joint& joint : joints) {
        if (!joint.mimic) continue;
        const std::size_t other = indexOf(joint.mimic->joint);
        if (other >= joints.size())
            throw std::runtime_error(std::format("joint '{}' follows '{}', which is not there",
                                                 joint.name, joint.mimic->joint));
        if (joints[other].mimic)
            throw std::runtime_error(std::format("joint '{}' follows '{}', which follows another",
                                                 joint.name, joint.mimic->joint));
    }
}

std::size_t Kinematics::indexOf(std::string_view name) const {
    const auto found = indices.find(name);
    return found == indices.end() ? joints.size() : found->second;
}

bool Kinematics::hasJoint(std::string_view name) const { return indexOf(name) < joints.size(); }

double Kinematics::getValue(std::string_view name) const { return valueOf(indexOf(name)); }

double Kinematics::valueOf(std::size_t index) const {
    const auto& mimic = joints.at(index).mimic;
    if (!mimic) return values.at(index);
    return mimic->factor * values.at(indexOf(mimic->joint)) + mimic->offset;
}

void Kinematics::setValue(std::string_view name, double value) {
    const std::size_t index = indexOf(name);
    if (index >= joints.size()) throw std::runtime_error(std::format("no joint '{}'", name));
    const Joint& joint = joints[index];
    if (joint.kind == Joint::Kind::Fixed)
        throw std::runtime_error(std::format("joint '{}' is fixed", name));
    if (joint.mimic)
        throw std::runtime_error(
            std::format("joint '{}' follows joint '{}'", name, joint.mimic->joint));
    // A rounded limit, as in degrees, is a limit kept.
    constexpr double tolerance = 1e-6;
    const bool inside = std::isfinite(value) &&
                        !(joint.lower && value < *joint.lower - tolerance) &&
                        !(joint.upper && value > *joint.upper + tolerance);
    if (!inside)
        throw std::runtime_error(std::format("joint '{}' goes from {}", name, LimitText(joint)));
    values[index] = value;
}

std::vector<Pose> Kinematics::linkPoses() const {
    std::vector<Pose> poses(links);
    for (std::size_t i = 0; i < joints.size(); ++i) {
        const Joint& joint = joints[i];
        const Pose moved = Compose(joint.origin, Moved(joint, valueOf(i)));
        poses[joint.child] = Compose(poses[joint.parent], moved);
    }
    return poses;
}

std::size_t Kinematics::getTip() const {
    std::vector<std::size_t> depth(links, 0);
    for (const Joint& joint : joints) depth[joint.child] = depth[joint.parent] + 1;
    return static_cast<std::size_t>(std::ranges::max_element(depth) - depth.begin());
}

}  // namespace vrn::host
