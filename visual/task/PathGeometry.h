#pragma once

#include <cstdint>

#include "suite/rob/VectorTypes.h"

namespace vrn::task {
class MoveInst;
}

namespace vrn::visual {

/// What path lines and the visuals of moves ask about a move. Thread: any that may read the model.

/// The position of the target's pose, in the object frame of its work object. Throws
/// std::out_of_range, "unordered_map::at", if the target has ended.
[[nodiscard]] rob::PosTemplate<float> TargetPosition(const task::MoveInst& move);

/// Whether a segment leads from one move to the next: both targets are poses, and in the same work
/// object. There is no frame to draw any other in.
[[nodiscard]] bool HaveSegment(const task::MoveInst& prev, const task::MoveInst& cur);

/// Whether three points are far enough from one line for an arc through `via`. Throws
/// std::overflow_error, "0-length vector cannot be normalized.", if `start` is one of the others or
/// a coordinate is no number.
[[nodiscard]] bool MakeArc(const rob::PosTemplate<float>& start, const rob::PosTemplate<float>& via,
                           const rob::PosTemplate<float>& end);

/// The id of the object frame that the move's target is given in; 0, under which no visual is
/// registered, if the work object has ended or is without one.
[[nodiscard]] std::uint32_t ObjectFrameId(const task::MoveInst& move);

/// The id under which the visual of the move's parent is looked up: ObjectFrameId for a target
/// given by a pose, else the parent of the move's task, where 0 stands for the root.
[[nodiscard]] std::uint32_t MoveParentId(const task::MoveInst& move);

}  // namespace vrn::visual
