#include "suite/task/DataItem.h"

namespace vrn::task {

DataItem::~DataItem() = default;

ToolDataItem::ToolDataItem(std::string_view itemName)
    : DataItem(sdf::ObjectType::ToolData, itemName, "tool_data") {}
ToolDataItem::~ToolDataItem() = default;

ObjectFrame::ObjectFrame(std::string_view frameName)
    : SdfObject(sdf::ObjectType::ObjectFrame, frameName, "object_frame") {}
ObjectFrame::~ObjectFrame() = default;

WObjDataItem::WObjDataItem(std::string_view itemName, bool fixedUFrame)
    : DataItem(sdf::ObjectType::WObjData, itemName, "wobj_data"), isFixed(fixedUFrame) {}
WObjDataItem::~WObjDataItem() = default;

void WObjDataItem::setObjectFrame(ObjectFrame& frame) {
    if (ObjectFrame* earlier = getObjectFrame()) removeChild(*earlier);
    addChild(frame);
}

ObjectFrame* WObjDataItem::getObjectFrame() const {
    const auto frames = getChildrenOf<ObjectFrame>();
    return frames.empty() ? nullptr : frames.front();
}

RobTargetDataItem::RobTargetDataItem(std::string_view itemName,
                                     const rob::PoseTemplate<double>& pose)
    : DataItem(sdf::ObjectType::RobTarget, itemName, "rob_target") {
    setPose(pose);
}
RobTargetDataItem::~RobTargetDataItem() = default;

JointTargetDataItem::JointTargetDataItem(std::string_view itemName,
                                         const rob::PoseTemplate<double>& pose)
    : DataItem(sdf::ObjectType::JointTarget, itemName, "joint_target") {
    setPose(pose);
}
JointTargetDataItem::~JointTargetDataItem() = default;

}  // namespace vrn::task
