#include "visual/task/PathGeometry.h"

#include "suite/sdf/SdfManager.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "suite/task/Task.h"

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;

// Squared lengths below it count as zero when three points are tested for a common line.
constexpr double collinearSquared = 1e-05;

}  // namespace

Pos TargetPosition(const task::MoveInst& move) {
    return Pos(sdf::GetPose(move.getTargetItemId()).position);
}

bool HaveSegment(const task::MoveInst& prev, const task::MoveInst& cur) {
    return prev.getWObjItemId() == cur.getWObjItemId() && !prev.isJointTargetInst() &&
           !cur.isJointTargetInst();
}

bool MakeArc(const Pos& start, const Pos& via, const Pos& end) {
    const auto u = (via - start).normalized(), v = (end - start).normalized();
    if (u.cross(v).squaredLength() < collinearSquared) return false;
    // Taken with its length, so that an arc that hardly leaves its chord counts as straight.
    return !((end - via).cross(u).squaredLength() < collinearSquared);
}

std::uint32_t ObjectFrameId(const task::MoveInst& move) {
    const task::WObjDataItem* wobj = move.getWObjItem();
    const task::ObjectFrame* frame = wobj ? wobj->getObjectFrame() : nullptr;
    return frame ? frame->id : 0;
}

std::uint32_t MoveParentId(const task::MoveInst& move) {
    if (move.isRobTargetInst()) return ObjectFrameId(move);
    const task::Task* job = move.getTask();
    return job ? job->parentId : 0;
}

}  // namespace vrn::visual
