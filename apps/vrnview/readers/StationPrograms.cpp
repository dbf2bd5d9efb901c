// Robots' tasks: their data, paths and operations, and how far robots reach.

#include <algorithm>
#include <cmath>
#include <format>
#include <numbers>
#include <stdexcept>

#include "apps/vrnview/readers/ModelPoses.h"
#include "apps/vrnview/readers/StationReader.h"
#include "suite/layout/Mechanism.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "suite/task/Operation.h"
#include "suite/task/Task.h"

namespace vrn::host {

namespace {

using sdf::ObjectType;

constexpr double degree = std::numbers::pi / 180;

ObjectType MoveTypeOf(const std::string& type) {
    if (type == "linear") return ObjectType::LinearMove;
    if (type == "joint") return ObjectType::JointMove;
    if (type == "circular") return ObjectType::CircularMove;
    throw std::runtime_error("'type' must be linear, joint, circular or action");
}

void RefuseOn(const JsonFields& fields, const char* key, bool refused, const char* reason) {
    if (refused && fields.has(key)) throw std::runtime_error(std::format("'{}' {}", key, reason));
}

/// To the right of a profile that runs from `before` to `after`, in the plane of x and z.
rob::DirTemplate<double> NormalOf(const rob::PosTemplate<double>& before,
                                  const rob::PosTemplate<double>& after) {
    const auto along = after - before;
    return rob::DirTemplate<double>(rob::Vec3Template<double>{along.z, 0, -along.x}.normalized());
}

/// One a point, from the points beside it.
std::vector<rob::DirTemplate<double>> NormalsOf(
    const std::vector<rob::PosTemplate<double>>& profile) {
    const auto isSame = [](const auto& a, const auto& b) {
        return !((b - a).length() > rob::zeroLength);
    };
    for (std::size_t i = 1; i < profile.size(); ++i)
        if (isSame(profile[i - 1], profile[i]))
            throw std::runtime_error(std::format("'profile' has the point {} twice in a row", i));
    std::vector<rob::DirTemplate<double>> normals;
    for (std::size_t i = 0; i < profile.size(); ++i) {
        const auto& before = profile[i > 0 ? i - 1 : 0];
        const auto& after = profile[std::min(i + 1, profile.size() - 1)];
        // Where the profile turns back on itself, as the way there has it.
        normals.push_back(NormalOf(before, isSame(before, after) ? profile[i] : after));
    }
    return normals;
}

}  // namespace

void StationReader::enterNamed(const JsonFields& fields, const sdf::SdfNode& object) {
    if (fields.flagOr("hidden", false)) content.hidden.insert(object.id);
    if (fields.has("id")) content.ids[fields.text("id")] = object.id;
}

void StationReader::addTask(const JsonFields& fields, const std::string& label) {
    warnUnknown(fields, label,
                {"name", "robot", "workObjects", "tools", "jointTargets", "paths", "operations"});
    std::uint32_t robotId = 0;
    taskNames = {};
    if (fields.has("robot")) {
        robotId = placedAt(fields, "robot").id;
        const auto isThat = [robotId](const auto* robot) { return robot->id == robotId; };
        if (std::ranges::none_of(content.robots, isThat))
            throw std::runtime_error("'robot' names what is no robot");
        for (JointedObject& jointed : content.jointed)
            if (jointed.object->id == robotId) taskNames.robot = &jointed;
    }
    auto* task = content.objects.make<task::Task>(fields.textOr("name", "task"), robotId);
    content.tasks.push_back(task);
    currentRoot.clear();
    const auto each = [&](const char* key, const std::string& kind, auto work) {
        forEach(fields.list(key), label + ": " + kind, work);
    };
    each("workObjects", "work object", [&](const JsonFields& item, const std::string& itemLabel) {
        checkId(item);
        currentRoot = item.textOr("id", "");
        task::WObjDataItem& made = workObject(item, itemLabel, task);
        if (taskNames.firstWorkObject == nullptr) taskNames.firstWorkObject = &made;
    });
    each("tools", "tool data", [&](const JsonFields& item, const std::string& itemLabel) {
        addToolData(item, itemLabel, *task);
    });
    each("jointTargets", "joint target", [&](const JsonFields& item, const std::string& itemLabel) {
        addJointTarget(item, itemLabel, *task);
    });
    each("paths", "path", [&](const JsonFields& item, const std::string& itemLabel) {
        addPath(item, itemLabel, *task);
    });
    each("operations", "operation", [&](const JsonFields& item, const std::string& itemLabel) {
        addOperation(item, itemLabel, nullptr);
    });
}

void StationReader::addToolData(const JsonFields& fields, const std::string& label,
                                task::Task& task) {
    warnUnknown(fields, label, {"name", "tool", "pose"});
    const std::uint32_t carrier = placedAt(fields, "tool").mount;
    const Pose pose = fields.pose("pose");
    auto* item = content.objects.make<task::ToolDataItem>(fields.textOr("name", "tool data"));
    item->setPose(pose);
    task.addChild(*item);
    item->parentId = carrier;
    taskNames.tools.emplace(item->name, item->id);
    if (taskNames.firstTool == 0) taskNames.firstTool = item->id;
}

void StationReader::addJointTarget(const JsonFields& fields, const std::string& label,
                                   task::Task& task) {
    warnUnknown(fields, label, {"name", "values"});
    if (taskNames.robot == nullptr) throw std::runtime_error("the task has no 'robot'");
    const std::string name = fields.text("name");
    std::map<std::string, double> values;
    Kinematics kinematics = taskNames.robot->kinematics;
    const nlohmann::json& given = fields.map("values");
    for (const auto& [joint, value] : given.items()) {
        const auto& joints = kinematics.getJoints();
        const auto found = std::ranges::find(joints, joint, &Joint::name);
        const bool turns = found != joints.end() && found->kind == Joint::Kind::Turning;
        const double number = JsonFields(given).number(joint.c_str()) * (turns ? degree : 1);
        kinematics.setValue(joint, number);
        values[joint] = number;
    }
    auto* item = content.objects.make<task::JointTargetDataItem>(name);
    task.addChild(*item);
    content.jointTargets[item->id] = std::move(values);
    taskNames.jointTargets.emplace(name, item);
}

/// Once it is known what is attached to what: a joint target shows where its values take the
/// task's first tool, or the wrist.
void StationReader::placeJointTargets() {
    for (const task::Task* task : content.tasks) {
        const auto jointed = std::ranges::find_if(content.jointed, [&](const JointedObject& each) {
            return each.object->id == task->getManipulatorId();
        });
        if (jointed == content.jointed.end()) continue;
        const auto& robot = dynamic_cast<const layout::Manipulator&>(*jointed->object);
        const auto tools = task->getToolDataItems();
        auto mount = tools.empty() ? std::nullopt : MountOn(content, *jointed, tools.front()->id);
        if (!mount) mount = MountOn(content, *jointed, robot.wrist()->id);
        for (task::JointTargetDataItem* item : task->getJointTargetDataItems()) {
            Kinematics kinematics = jointed->kinematics;
            for (const auto& [joint, value] : content.jointTargets.at(item->id))
                kinematics.setValue(joint, value);
            const Pose link = kinematics.linkPoses().at(mount->link);
            item->setPose(Compose(WorldPose(content, robot.id), Compose(link, mount->pose)));
        }
    }
}

void StationReader::addPath(const JsonFields& fields, const std::string& label, task::Task& task) {
    warnUnknown(fields, label, {"id", "name", "hidden", "moves"});
    checkId(fields);
    auto* path = content.objects.make<task::Path>(fields.textOr("name", "path"));
    enterNamed(fields, *path);
    task.addChild(*path);
    taskNames.paths.emplace(path->name, path);
    forEach(fields.list("moves"), label + ": move",
            [&](const JsonFields& move, const std::string& moveLabel) {
                addMove(move, moveLabel, *path);
            });
}

task::WObjDataItem& StationReader::workObjectOf(const JsonFields& fields, bool mayBeAbsent) const {
    if (mayBeAbsent && !fields.has("workObject") && taskNames.firstWorkObject != nullptr)
        return *taskNames.firstWorkObject;
    const std::string key = fields.text("workObject");
    const auto wobj = workObjects.find(key);
    if (wobj == workObjects.end())
        throw std::runtime_error(std::format("there is no work object '{}'", key));
    return *wobj->second;
}

const task::RobTargetDataItem& StationReader::targetOf(const JsonFields& fields,
                                                       const char* key) const {
    const std::string wobj = fields.text("workObject");
    const auto found = targets.find(wobj + '/' + fields.text(key));
    if (found == targets.end())
        throw std::runtime_error(std::format("'{}' names no target of '{}'", key, wobj));
    return *found->second;
}

MoveData StationReader::moveData(const JsonFields& fields, ObjectType type) const {
    MoveData data;
    data.speed =
        fields.numberOr("speed", type == ObjectType::JointMove ? defaultJointSpeed : defaultSpeed);
    constexpr double slowest = 0.001, fastest = 1e6;
    if (!(data.speed >= slowest && data.speed <= fastest))
        throw std::runtime_error("'speed' must be from 0.001 to 1000000");
    data.toolDataId = taskNames.firstTool;
    if (fields.has("tool")) {
        const auto tool = taskNames.tools.find(fields.text("tool"));
        if (tool == taskNames.tools.end())
            throw std::runtime_error(std::format("'tool' names '{}', which is no tool of the task",
                                                 fields.text("tool")));
        data.toolDataId = tool->second;
    }
    return data;
}

void StationReader::addMove(const JsonFields& fields, const std::string& label, task::Path& path) {
    const std::string type = fields.textOr("type", "linear");
    if (type == "action") {
        warnUnknown(fields, label, {"type", "name"});
        path.addChild(*content.objects.make<task::ActionInst>(fields.textOr("name", "action")));
        return;
    }
    warnUnknown(fields, label,
                {"type", "name", "target", "circle", "jointTarget", "workObject", "tool", "speed"});
    const ObjectType moveType = MoveTypeOf(type);
    const bool toJoints = fields.has("jointTarget");
    RefuseOn(fields, "circle", moveType != ObjectType::CircularMove, "is for circular moves");
    RefuseOn(fields, "jointTarget", moveType != ObjectType::JointMove, "is for joint moves");
    RefuseOn(fields, "target", toJoints, "and 'jointTarget' are two targets");
    const MoveData data = moveData(fields, moveType);
    const task::WObjDataItem& wobj = workObjectOf(fields, toJoints);
    const task::DataItem* target = nullptr;
    if (toJoints) {
        const auto found = taskNames.jointTargets.find(fields.text("jointTarget"));
        if (found == taskNames.jointTargets.end())
            throw std::runtime_error("'jointTarget' names no joint target of the task");
        target = found->second;
    } else {
        target = &targetOf(fields, "target");
    }
    const task::RobTargetDataItem* circle =
        moveType == ObjectType::CircularMove ? &targetOf(fields, "circle") : nullptr;
    auto* move =
        content.objects.make<task::MoveInst>(fields.textOr("name", type), moveType, *target, wobj);
    move->setCirclePoint(circle);
    path.addChild(*move);
    content.moves[move->id] = data;
}

void StationReader::addOperation(const JsonFields& fields, const std::string& label,
                                 task::Operation* container) {
    const std::string type = fields.textOr("type", "path");
    checkId(fields);
    const ObjectType kind = container != nullptr ? container->objectType : ObjectType::Operation;
    if (type == "path")
        addPathOperation(fields, label,
                         kind == ObjectType::PathGroup ? ObjectType::PathOperation
                                                       : ObjectType::SinglePathOperation,
                         container);
    else if (type == "processPath" && kind == ObjectType::Operation)
        addPathOperation(fields, label, ObjectType::ProcessPathOperation, container);
    else if (type == "pathGroup" && kind != ObjectType::PathGroup)
        addGroup(fields, label, ObjectType::PathGroup, container);
    else if (type == "pathGroupContainer" && kind == ObjectType::Operation)
        addGroup(fields, label, ObjectType::PathGroupContainer, container);
    else if (kind == ObjectType::PathGroup)
        throw std::runtime_error("'type' must be path in a path group");
    else if (kind == ObjectType::PathGroupContainer)
        throw std::runtime_error("'type' must be path or pathGroup in a container");
    else
        throw std::runtime_error(
            "'type' must be path, processPath, pathGroup or pathGroupContainer");
}

void StationReader::addGroup(const JsonFields& fields, const std::string& label, ObjectType type,
                             task::Operation* container) {
    warnUnknown(fields, label, {"type", "id", "name", "hidden", "operations"});
    auto* group = content.objects.make<task::Operation>(
        fields.textOr("name", fields.textOr("id", "group")), type);
    if (container != nullptr)
        container->addChild(*group);
    else
        content.operations.push_back(group);
    enterNamed(fields, *group);
    forEach(fields.list("operations"), label + ": operation",
            [&](const JsonFields& item, const std::string& itemLabel) {
                addOperation(item, itemLabel, group);
            });
}

void StationReader::addPathOperation(const JsonFields& fields, const std::string& label,
                                     ObjectType type, task::Operation* container) {
    warnUnknown(fields, label, {"type", "id", "name", "hidden", "path"});
    const auto path = taskNames.paths.find(fields.text("path"));
    if (path == taskNames.paths.end())
        throw std::runtime_error(
            std::format("'path' names '{}', which is no path of the task", fields.text("path")));
    auto* operation = content.objects.make<task::PathOperation>(fields.textOr("name", path->first),
                                                                path->second->id, type);
    if (container != nullptr)
        container->addChild(*operation);
    else
        content.operations.push_back(operation);
    enterNamed(fields, *operation);
    // In a group an operation has no switch of its own: its path has.
    if (type == ObjectType::PathOperation && content.hidden.erase(operation->id) > 0)
        content.hidden.insert(path->second->id);
}

/// A mistake in it costs the envelope, not the robot.
void StationReader::addEnvelope(const JsonFields& fields, layout::Manipulator& robot,
                                const std::string& label) {
    const std::string envelopeLabel = label + ": 'workEnvelope'";
    try {
        const JsonFields given(fields.map("workEnvelope"));
        warnUnknown(given, envelopeLabel, {"profile", "from", "to", "link", "outline", "surface"});
        WorkEnvelope envelope;
        envelope.robot = &robot;
        Placed carrier;
        carrier.mount = robot.id;
        carrier.links = &robot;
        envelope.outlineParent = mountOf(given, carrier);
        for (const auto& [x, z] : given.pairs("profile")) envelope.points.push_back({x, 0, z});
        const std::size_t count = envelope.points.size();
        if (count < 2) throw std::runtime_error("'profile' needs two points at least");
        envelope.normals = NormalsOf(envelope.points);
        const double from = given.numberOr("from", -180), to = given.numberOr("to", 180);
        constexpr double mostTurned = 3600;
        if (!(std::abs(from) <= mostTurned && std::abs(to) <= mostTurned))
            throw std::runtime_error("'from' and 'to' must be from -3600 to 3600");
        envelope.fromRad = from * degree;
        envelope.toRad = to * degree;
        envelope.showsOutline = given.flagOr("outline", true);
        envelope.showsSurface = given.flagOr("surface", false);
        content.envelopes.push_back(std::move(envelope));
    } catch (const std::exception& error) {
        builder.addProblem(envelopeLabel, error.what());
    }
}

}  // namespace vrn::host
