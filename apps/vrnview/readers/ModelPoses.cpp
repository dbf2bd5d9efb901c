#include "apps/vrnview/readers/ModelPoses.h"

#include <algorithm>

#include "suite/layout/Mechanism.h"
#include "suite/sdf/SdfManager.h"
#include "suite/task/DataItem.h"

namespace vrn::host {

namespace {

/// An object's place in what carries it.
struct Carried {
    std::uint32_t carrier = 0;
    Pose pose;
};

Carried CarriedBy(const Content& content, std::uint32_t id) {
    const auto attached = std::ranges::find(content.attachments, id, &layout::Attachment::childId);
    if (attached != content.attachments.end()) return {attached->parentId, attached->pose};
    const sdf::SdfNode& node = *sdf::SdfManager::inst()->at(id);
    // Without a user frame of its own a work object is where its carrier is.
    const auto* wobj = dynamic_cast<const task::WObjDataItem*>(&node);
    if (wobj != nullptr && !wobj->hasFixedUFrame()) return {node.parentId, {}};
    return {node.parentId, node.getPose()};
}

}  // namespace

Pose WorldPose(const Content& content, std::uint32_t id) {
    Pose pose;
    while (id != 0) {
        const Carried carried = CarriedBy(content, id);
        pose = Compose(carried.pose, pose);
        id = carried.carrier;
    }
    return pose;
}

std::optional<LinkMount> MountOn(const Content& content, const JointedObject& robot,
                                 std::uint32_t id) {
    Pose pose;
    while (id != 0) {
        const auto link = std::ranges::find(robot.links, id, &layout::Link::id);
        if (link != robot.links.end())
            return LinkMount{static_cast<std::size_t>(link - robot.links.begin()), pose};
        const Carried carried = CarriedBy(content, id);
        pose = Compose(carried.pose, pose);
        id = carried.carrier;
    }
    return std::nullopt;
}

}  // namespace vrn::host
