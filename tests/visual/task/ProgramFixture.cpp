#include "tests/visual/task/ProgramFixture.h"

#include <gmock/gmock.h>

#include "mesh/DynamicLines.h"
#include "visual/task/PathArrowVisual.h"

namespace vrn::test {

using visual::MoveInstructionVisual;
using visual::PathLineVisual;
using visual::PathVisual;
using visual::Visual;

void Programs::SetUp() {
    InstanceVisuals::SetUp();
    job = model.make<task::Task>("job");
    path = model.make<task::Path>("path");
    job->addChild(*path);
    wobj = addWObj({0, 0, 0});
    otherWObj = addWObj({1000, 0, 0});
    pump();
    for (const task::WObjDataItem* item : {wobj, otherWObj}) {
        Visual* objectFrame = objectFrameOf(item);
        objectFrame->setVisible(false, /*cascade=*/true);
        objectFrame->getParent()->setVisible(false, /*cascade=*/true);
    }
}

task::WObjDataItem* Programs::addWObj(const Point& position) {
    auto* item = model.make<task::WObjDataItem>("wobj");
    item->setPose({position, {}});
    item->setObjectFrame(*model.make<task::ObjectFrame>("object frame"));
    scene().addWObj(item);
    return item;
}

task::RobTargetDataItem* Programs::makeTarget(const Point& position) {
    return model.make<task::RobTargetDataItem>("p", rob::PoseTemplate<double>{position, {}});
}

task::MoveInst* Programs::addMove(Kind kind, const Point& position) {
    auto* move = model.make<task::MoveInst>("move", kind, *makeTarget(position), *wobj);
    path->addChild(*move);
    return move;
}

task::MoveInst* Programs::addCircular(const Point& via, const Point& position) {
    task::MoveInst* move = addMove(Kind::CircularMove, position);
    move->setCirclePoint(makeTarget(via));
    return move;
}

task::MoveInst* Programs::addJointTarget(const Point& position) {
    auto* target =
        model.make<task::JointTargetDataItem>("j", rob::PoseTemplate<double>{position, {}});
    auto* move = model.make<task::MoveInst>("move", Kind::JointMove, *target, *wobj);
    path->addChild(*move);
    return move;
}

task::MoveInst* Programs::addIn(task::WObjDataItem* item, const Point& position) {
    task::MoveInst* move = addLinear(position);
    move->setWObj(*item);
    return move;
}

task::ActionInst* Programs::addAction() {
    auto* action = model.make<task::ActionInst>("action");
    path->addChild(*action);
    return action;
}

PathVisual* Programs::showPath() {
    scene().addPath(path);
    pump();
    return pathVisual();
}

PathVisual* Programs::pathVisual() const { return dynamic_cast<PathVisual*>(visualOf(path)); }

std::vector<PathLineVisual*> Programs::lines() const { return pathVisual()->getPathLines(); }

std::vector<Programs::Pos> Programs::pointsOf(const PathLineVisual* line) {
    return line->getLine() ? line->getLine()->getPoints() : std::vector<Pos>{};
}

MoveInstructionVisual* Programs::visualOfMove(const task::MoveInst* move) {
    return dynamic_cast<MoveInstructionVisual*>(visualOf(move));
}

Visual* Programs::objectFrameOf(const task::WObjDataItem* item) {
    return visualOf(item->getObjectFrame());
}

std::size_t Programs::arrowsOf(const task::MoveInst* move) {
    std::size_t count = 0;
    for (Visual* child : visualOf(move)->getChildren())
        if (dynamic_cast<visual::PathArrowVisual*>(child)) ++count;
    return count;
}

void Programs::expectUnknownKeyInTask() {
    EXPECT_THAT([] { scene().processMsgs(); },
                testing::ThrowsMessage<std::out_of_range>(testing::StrEq("unordered_map::at")));
}

}  // namespace vrn::test
