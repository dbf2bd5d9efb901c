#pragma once

#include <cstdint>
#include <string_view>

#include "suite/sdf/SdfNode.h"
#include "suite/SuiteApi.h"

namespace vrn::task {

class DataItem;
class Path;
class RobTargetDataItem;
class Task;
class WObjDataItem;

/// One instruction of a path.
class VRN_SUITE_API Instruction : public sdf::SdfObject {
public:
    ~Instruction() override;

    [[nodiscard]] bool isMoveInst() const;
    /// A move to a target given by a pose.
    [[nodiscard]] virtual bool isRobTargetInst() const;
    /// A move to a target given by joint values.
    [[nodiscard]] virtual bool isJointTargetInst() const;

    /// The path that holds it, and that path's task; null outside of one.
    [[nodiscard]] Path* getPath() const;
    [[nodiscard]] Task* getTask() const;

protected:
    using SdfObject::SdfObject;
};

/// An instruction that does not move, as a switched output; it has no visual.
class VRN_SUITE_API ActionInst : public Instruction {
public:
    explicit ActionInst(std::string_view name);
    ~ActionInst() override;
};

/// A move to a target. The items are named by id and looked up at each call in sdf::SdfManager, so
/// that an item that has ended is null and not dangling.
class VRN_SUITE_API MoveInst : public Instruction {
public:
    /// `moveType` is LinearMove, CircularMove or JointMove, or MoveInstruction for a move of no
    /// further kind; another throws std::invalid_argument.
    MoveInst(std::string_view name, sdf::ObjectType moveType, const DataItem& target,
             const WObjDataItem& wobj);
    ~MoveInst() override;

    [[nodiscard]] bool isRobTargetInst() const override;
    [[nodiscard]] bool isJointTargetInst() const override;

    [[nodiscard]] std::uint32_t getTargetItemId() const { return targetId; }
    [[nodiscard]] std::uint32_t getWObjItemId() const { return wobjId; }
    /// 0 without a circle point.
    [[nodiscard]] std::uint32_t getCircleItemId() const { return circleId; }

    /// The item of the target, of whichever kind; null if it has ended.
    [[nodiscard]] DataItem* getTargetItem() const;
    /// The same if it is given by a pose, else null.
    [[nodiscard]] RobTargetDataItem* getRobTarget() const;
    [[nodiscard]] WObjDataItem* getWObjItem() const;
    /// The item of the circle point; null without one.
    [[nodiscard]] RobTargetDataItem* getCircleItem() const;

    void setTarget(const DataItem& target);
    void setWObj(const WObjDataItem& wobj);
    /// Null takes the circle point away.
    void setCirclePoint(const RobTargetDataItem* point);

private:
    std::uint32_t targetId;
    std::uint32_t wobjId;
    std::uint32_t circleId = 0;
};

}  // namespace vrn::task
