#include "suite/task/Instruction.h"

#include "suite/sdf/SdfManager.h"
#include "suite/task/DataItem.h"
#include "suite/task/Task.h"

#include <stdexcept>

namespace vrn::task {

namespace {

/// The object of that id, null if it is absent or of another class.
template <class T>
T* Find(std::uint32_t id) {
    return dynamic_cast<T*>(sdf::SdfManager::inst()->find(id));
}

sdf::ObjectType RequireMove(sdf::ObjectType type) {
    if (!sdf::IsKindOf(type, sdf::ObjectType::MoveInstruction))
        throw std::invalid_argument("expected a kind of move instruction, got " +
                                    std::to_string(static_cast<int>(type)));
    return type;
}

}  // namespace

Instruction::~Instruction() = default;

bool Instruction::isMoveInst() const { return asType(sdf::ObjectType::MoveInstruction); }
bool Instruction::isRobTargetInst() const { return false; }
bool Instruction::isJointTargetInst() const { return false; }

Path* Instruction::getPath() const { return dynamic_cast<Path*>(getContainer()); }

Task* Instruction::getTask() const {
    const Path* path = getPath();
    return path ? path->getTask() : nullptr;
}

ActionInst::ActionInst(std::string_view instName)
    : Instruction(sdf::ObjectType::ActionInstruction, instName, "action") {}
ActionInst::~ActionInst() = default;

MoveInst::MoveInst(std::string_view instName, sdf::ObjectType moveType, const DataItem& target,
                   const WObjDataItem& wobj)
    : Instruction(RequireMove(moveType), instName, "move"), targetId(target.id), wobjId(wobj.id) {}
MoveInst::~MoveInst() = default;

bool MoveInst::isRobTargetInst() const { return getRobTarget() != nullptr; }

bool MoveInst::isJointTargetInst() const { return Find<JointTargetDataItem>(targetId) != nullptr; }

DataItem* MoveInst::getTargetItem() const { return Find<DataItem>(targetId); }

RobTargetDataItem* MoveInst::getRobTarget() const { return Find<RobTargetDataItem>(targetId); }

WObjDataItem* MoveInst::getWObjItem() const { return Find<WObjDataItem>(wobjId); }

RobTargetDataItem* MoveInst::getCircleItem() const { return Find<RobTargetDataItem>(circleId); }

void MoveInst::setTarget(const DataItem& target) { targetId = target.id; }

void MoveInst::setWObj(const WObjDataItem& wobj) { wobjId = wobj.id; }

void MoveInst::setCirclePoint(const RobTargetDataItem* point) { circleId = point ? point->id : 0; }

}  // namespace vrn::task
