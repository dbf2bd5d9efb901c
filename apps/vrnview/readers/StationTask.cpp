#include <format>
#include <stdexcept>

#include "apps/vrnview/readers/StationReader.h"
#include "suite/layout/Mechanism.h"
#include "suite/task/DataItem.h"
#include "suite/task/Task.h"

namespace vrn::host {

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

}  // namespace vrn::host
