#pragma once

#include <string_view>

#include "suite/sdf/SdfNode.h"
#include "suite/SuiteApi.h"

namespace vrn::task {

/// One item of a task's data. Its pose is SdfNode's.
class VRN_SUITE_API DataItem : public sdf::SdfObject {
public:
    ~DataItem() override;

protected:
    using SdfObject::SdfObject;
};

/// A tool centre point; `parentId` is the tool (or other object) that carries it.
class VRN_SUITE_API ToolDataItem : public DataItem {
public:
    explicit ToolDataItem(std::string_view name);
    ~ToolDataItem() override;
};

/// The frame in which a work object's targets are given.
class VRN_SUITE_API ObjectFrame : public sdf::SdfObject {
public:
    explicit ObjectFrame(std::string_view name);
    ~ObjectFrame() override;
};

/// A work object: a user frame, which is its own pose, and in it an object frame.
class VRN_SUITE_API WObjDataItem : public DataItem {
public:
    explicit WObjDataItem(std::string_view name, bool fixedUFrame = true);
    ~WObjDataItem() override;

    /// Whether the user frame stands at the stored pose. Without, the work object stands where its
    /// parent is.
    [[nodiscard]] bool hasFixedUFrame() const { return isFixed; }
    void setFixedUFrame(bool fixedUFrame) { isFixed = fixedUFrame; }

    /// Takes the place of an earlier one.
    void setObjectFrame(ObjectFrame& frame);
    /// Null when none was set.
    [[nodiscard]] ObjectFrame* getObjectFrame() const;

private:
    bool isFixed;
};

/// A target given by a pose in its work object's object frame.
class VRN_SUITE_API RobTargetDataItem : public DataItem {
public:
    explicit RobTargetDataItem(std::string_view name, const rob::PoseTemplate<double>& pose = {});
    ~RobTargetDataItem() override;
};

/// A target given by joint values; its pose is where these take the tool.
class VRN_SUITE_API JointTargetDataItem : public DataItem {
public:
    explicit JointTargetDataItem(std::string_view name, const rob::PoseTemplate<double>& pose = {});
    ~JointTargetDataItem() override;
};

}  // namespace vrn::task
