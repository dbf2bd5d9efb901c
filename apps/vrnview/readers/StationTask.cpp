#include <algorithm>
#include <cmath>
#include <format>
#include <stdexcept>

#include "apps/vrnview/readers/StationReader.h"
#include "suite/layout/Mechanism.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "suite/task/Task.h"

namespace vrn::host {

namespace {

sdf::ObjectType MoveTypeOf(const std::string& type) {
    if (type == "linear") return sdf::ObjectType::LinearMove;
    if (type == "joint") return sdf::ObjectType::JointMove;
    if (type == "circular") return sdf::ObjectType::CircularMove;
    throw std::runtime_error("'type' must be linear, joint, circular or action");
}

}  // namespace

void StationReader::addTargets(const JsonFields& fields, task::WObjDataItem& wobj,
                               const std::string& label, task::Task* task) {
    const std::string key = fields.textOr("id", fields.textOr("name", ""));
    forEach(fields.list("targets"), label + ": target",
            [&](const JsonFields& target, const std::string& targetLabel) {
                warnUnknown(target, targetLabel, {"name", "pose"});
                const std::string name = target.textOr("name", "target");
                auto* item =
                    content.objects.make<task::RobTargetDataItem>(name, target.pose("pose"));
                if (task) task->addChild(*item);
                item->parentId = wobj.getObjectFrame()->id;
                content.targets.push_back(item);
                targets.emplace(key + '/' + name, item);
            });
}

std::uint32_t StationReader::mountOf(const JsonFields& fields, const Placed& parent) const {
    if (!fields.has("link")) return parent.mount;
    const std::string name = fields.text("link");
    if (parent.links)
        for (const layout::Link* link : parent.links->links())
            if (link->name == name) return link->id;
    throw std::runtime_error(std::format("there is no link '{}'", name));
}

void StationReader::addAttachment(const JsonFields& fields, const std::string& label) {
    warnUnknown(fields, label, {"child", "parent", "link", "pose"});
    const std::string child = fields.text("child");
    const Placed& parent = placedAt(fields, "parent");
    (void)placedAt(fields, "child");  // for its message
    Placed& moved = placed.at(child);
    if (moved.root != child)
        throw std::runtime_error(
            std::format("'{}' is inside another object and cannot be attached", child));
    if (!moved.attachedTo.empty())
        throw std::runtime_error(std::format("'{}' is attached already", child));
    // Up from the parent: whatever the child carries already must not carry the child.
    for (auto up = placed.find(parent.root); up != placed.end();) {
        if (up->first == child)
            throw std::runtime_error(std::format("'{}' would be attached to itself", child));
        const auto carrier = placed.find(up->second.attachedTo);
        up = carrier == placed.end() ? carrier : placed.find(carrier->second.root);
    }
    content.attachments.push_back({moved.id, mountOf(fields, parent), fields.pose("pose")});
    moved.attachedTo = fields.text("parent");
}

void StationReader::addTask(const JsonFields& fields, const std::string& label) {
    warnUnknown(fields, label, {"name", "robot", "workObjects", "tools", "paths"});
    std::uint32_t robotId = 0;
    if (fields.has("robot")) {
        robotId = placedAt(fields, "robot").id;
        const auto isThat = [robotId](const auto* robot) { return robot->id == robotId; };
        if (std::ranges::none_of(content.robots, isThat))
            throw std::runtime_error("'robot' names what is no robot");
    }
    auto* task = content.objects.make<task::Task>(fields.textOr("name", "task"), robotId);
    content.tasks.push_back(task);
    currentRoot.clear();
    forEach(fields.list("workObjects"), label + ": work object",
            [&](const JsonFields& item, const std::string& itemLabel) {
                checkId(item);
                currentRoot = item.textOr("id", "");
                workObject(item, itemLabel, task);
            });
    forEach(fields.list("tools"), label + ": tool data",
            [&](const JsonFields& item, const std::string&) { addToolData(item, *task); });
    forEach(fields.list("paths"), label + ": path",
            [&](const JsonFields& item, const std::string& itemLabel) {
                addPath(item, itemLabel, *task);
            });
}

void StationReader::addToolData(const JsonFields& fields, task::Task& task) {
    const std::uint32_t carrier = placedAt(fields, "tool").mount;
    auto* item = content.objects.make<task::ToolDataItem>(fields.textOr("name", "tool data"));
    item->setPose(fields.pose("pose"));
    task.addChild(*item);
    item->parentId = carrier;
}

void StationReader::addPath(const JsonFields& fields, const std::string& label, task::Task& task) {
    warnUnknown(fields, label, {"name", "moves"});
    auto* path = content.objects.make<task::Path>(fields.textOr("name", "path"));
    task.addChild(*path);
    forEach(fields.list("moves"), label + ": move",
            [&](const JsonFields& move, const std::string&) { addMove(move, *path); });
}

void StationReader::addMove(const JsonFields& fields, task::Path& path) {
    const std::string type = fields.textOr("type", "linear");
    if (type == "action") {
        path.addChild(*content.objects.make<task::ActionInst>(fields.textOr("name", "action")));
        return;
    }
    const sdf::ObjectType moveType = MoveTypeOf(type);
    const std::string key = fields.text("workObject");
    const auto wobj = workObjects.find(key);
    if (wobj == workObjects.end())
        throw std::runtime_error(std::format("there is no work object '{}'", key));
    const auto target = [&](const char* field) -> const task::RobTargetDataItem& {
        const auto found = targets.find(key + '/' + fields.text(field));
        if (found == targets.end())
            throw std::runtime_error(std::format("'{}' names no target of '{}'", field, key));
        return *found->second;
    };
    auto* move = content.objects.make<task::MoveInst>(fields.textOr("name", type), moveType,
                                                      target("target"), *wobj->second);
    if (moveType == sdf::ObjectType::CircularMove) move->setCirclePoint(&target("circle"));
    path.addChild(*move);
}

}  // namespace vrn::host
