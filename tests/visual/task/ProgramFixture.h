#pragma once

#include <string>
#include <vector>

#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "suite/task/Task.h"
#include "tests/visual/InstanceFixture.h"
#include "visual/task/MoveInstructionVisual.h"
#include "visual/task/PathLineVisual.h"
#include "visual/task/PathVisual.h"

namespace vrn::test {

/// A program: a task with one path and two work objects, of which the first stands at the origin
/// and the second at (1000, 0, 0), both shown. Frames of work objects are hidden.
class Programs : public InstanceVisuals {
protected:
    using Pos = rob::PosTemplate<float>;
    using Point = rob::PosTemplate<double>;
    using Kind = sdf::ObjectType;

    void SetUp() override;

    task::WObjDataItem* addWObj(const Point& position);
    task::RobTargetDataItem* makeTarget(const Point& position);
    /// Appends a move in the first work object to the path; it is not shown yet.
    task::MoveInst* addMove(Kind kind, const Point& position);
    task::MoveInst* addLinear(const Point& position) { return addMove(Kind::LinearMove, position); }
    task::MoveInst* addJoint(const Point& position) { return addMove(Kind::JointMove, position); }
    task::MoveInst* addCircular(const Point& via, const Point& position);
    /// A move to a target given by joint values.
    task::MoveInst* addJointTarget(const Point& position);
    task::MoveInst* addIn(task::WObjDataItem* item, const Point& position);
    task::ActionInst* addAction();

    /// Shows the path and its moves as a host does.
    visual::PathVisual* showPath();
    [[nodiscard]] visual::PathVisual* pathVisual() const;
    [[nodiscard]] std::vector<visual::PathLineVisual*> lines() const;
    /// The points of a line; empty while it has no line object.
    static std::vector<Pos> pointsOf(const visual::PathLineVisual* line);
    static visual::MoveInstructionVisual* visualOfMove(const task::MoveInst* move);
    static visual::Visual* objectFrameOf(const task::WObjDataItem* item);
    /// The children of the move that are arrows.
    static std::size_t arrowsOf(const task::MoveInst* move);
    /// Expects that the next batch throws what a strict look-up throws.
    static void expectUnknownKeyInTask();

    task::Task* job = nullptr;
    task::Path* path = nullptr;
    task::WObjDataItem* wobj = nullptr;
    task::WObjDataItem* otherWObj = nullptr;
    static constexpr std::uint32_t unknownId = 123456789;
};

}  // namespace vrn::test
