#include "apps/vrnview/program/RobotProgram.h"

#include <algorithm>
#include <format>
#include <stdexcept>

#include "apps/vrnview/readers/ModelPoses.h"
#include "suite/layout/Mechanism.h"
#include "suite/sdf/SdfManager.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "suite/task/Task.h"

namespace vrn::host {

namespace {

Pose Inverse(const Pose& pose) {
    const auto back = pose.rotation.inverse();
    const auto moved = back * pose.position;
    return {{-moved.x, -moved.y, -moved.z}, back};
}

ProgramMove::Kind KindOf(sdf::ObjectType type) {
    if (type == sdf::ObjectType::JointMove) return ProgramMove::Kind::Joint;
    if (type == sdf::ObjectType::CircularMove) return ProgramMove::Kind::Circular;
    return ProgramMove::Kind::Linear;
}

class Compiler {
public:
    Compiler(const Content& source, const task::Task& sourceTask)
        : content(source), task(sourceTask) {}

    RobotProgram run() {
        const auto jointed = std::ranges::find_if(content.jointed, [&](const JointedObject& each) {
            return each.object->id == task.getManipulatorId();
        });
        if (jointed == content.jointed.end()) throw std::runtime_error("it has no robot");
        robot = &*jointed;
        program.task = task.name;
        program.robot = robot->object->name;
        program.kinematics = robot->kinematics;
        program.place = WorldPose(content, robot->object->id);
        fromWorld = Inverse(program.place);
        for (const task::Path* path : task.getPaths()) addPath(*path);
        if (program.moves.empty()) throw std::runtime_error("it has no move");
        return std::move(program);
    }

private:
    void addPath(const task::Path& path) {
        std::size_t number = 0;
        for (const task::Instruction* instruction : path.getInstructions()) {
            ++number;
            const auto* move = dynamic_cast<const task::MoveInst*>(instruction);
            if (move == nullptr) continue;
            const std::string label =
                std::format("path '{}', move {} ('{}') to target '{}'", path.name, number,
                            move->name, move->getTargetItem()->name);
            program.moves.push_back(moveOf(*move, label));
        }
    }

    ProgramMove moveOf(const task::MoveInst& inst, const std::string& label) {
        ProgramMove move;
        move.kind = KindOf(inst.objectType);
        move.label = label;
        const auto data = content.moves.find(inst.id);
        const bool isJoint = move.kind == ProgramMove::Kind::Joint;
        move.speed = data == content.moves.end() ? (isJoint ? defaultJointSpeed : defaultSpeed)
                                                 : data->second.speed;
        move.tool = toolIndex(data == content.moves.end() ? 0 : data->second.toolDataId);
        if (inst.isJointTargetInst()) {
            move.isJointTarget = true;
            move.joints = content.jointTargets.at(inst.getTargetItemId());
            return move;
        }
        if (MountOn(content, *robot, inst.getWObjItemId()))
            throw std::runtime_error(std::format("{}: the work object '{}' moves with the robot",
                                                 label, inst.getWObjItem()->name));
        move.target = Compose(fromWorld, WorldPose(content, inst.getTargetItemId()));
        if (move.kind == ProgramMove::Kind::Circular)
            move.via = Compose(fromWorld, WorldPose(content, inst.getCircleItemId())).position;
        return move;
    }

    std::size_t toolIndex(std::uint32_t toolDataId) {
        const auto known = tools.find(toolDataId);
        if (known != tools.end()) return known->second;
        const auto& arm = dynamic_cast<const layout::Manipulator&>(*robot->object);
        const std::uint32_t id = toolDataId == 0 ? arm.wrist()->id : toolDataId;
        const auto mount = MountOn(content, *robot, id);
        if (!mount)
            throw std::runtime_error(std::format("its robot does not carry the tool '{}'",
                                                 sdf::SdfManager::inst()->at(id)->name));
        program.tools.emplace_back(robot->kinematics, mount->link, mount->pose);
        return tools[toolDataId] = program.tools.size() - 1;
    }

    const Content& content;
    const task::Task& task;
    const JointedObject* robot = nullptr;
    Pose fromWorld;
    std::map<std::uint32_t, std::size_t> tools;  ///< by the tool data's id
    RobotProgram program;
};

}  // namespace

RobotProgram ProgramOf(const Content& content, const task::Task& task) {
    try {
        return Compiler(content, task).run();
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(std::format("task '{}': {}", task.name, error.what()));
    }
}

}  // namespace vrn::host
