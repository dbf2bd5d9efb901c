#include "visual/task/MoveInstructionVisual.h"

#include <format>
#include <stdexcept>
#include <utility>

#include "engine/LiveSetting.h"
#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "suite/sdf/SdfManager.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "visual/station/JointTargetVisual.h"
#include "visual/station/ModelPose.h"
#include "visual/station/RobtargetVisual.h"
#include "visual/task/PathArrowVisual.h"
#include "visual/task/PathGeometry.h"

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Dir = rob::DirTemplate<float>;

task::MoveInst* RequireMove(task::MoveInst* move) {
    if (!move) throw std::invalid_argument("the move to show must not be null");
    return move;
}

void PlaceAtModelPose(Visual& triad) {
    triad.setPose(rob::PoseTemplate<float>(sdf::GetPose(triad.id)));
}

}  // namespace

MoveInstructionVisual::MoveInstructionVisual(Visual* parent, task::MoveInst* move)
    : Visual(RequireMove(move)->id, std::format("INSTRUCTION_{}", RequireMove(move)->id), parent),
      instruction(move) {
    type = VisualType::MoveInstruction;
    drawTargetVisual();
}

void MoveInstructionVisual::Build(Visual* parent, task::MoveInst* prev, task::MoveInst* cur) {
    auto* built = new MoveInstructionVisual(parent, cur);
    Scene::Get()->visuals[built->id] = built;
    if (prev && HaveSegment(*prev, *cur)) built->drawPathArrow(prev);
}

void MoveInstructionVisual::update(task::MoveInst* prev, task::MoveInst* cur) {
    instruction = RequireMove(cur);
    if (targetVisual) PlaceAtModelPose(*targetVisual);
    if (circleVisual) PlaceAtModelPose(*circleVisual);
    removePathArrow();
    if (prev && HaveSegment(*prev, *cur)) drawPathArrow(prev);
}

void MoveInstructionVisual::updateParent(std::uint32_t parentId) {
    Scene::Get()->visuals.at(parentId)->attachVisual(this);
}

void MoveInstructionVisual::drawTargetVisual() {
    if (LoadLive(Scene::Get()->settings.drawTargetVisual)) {
        buildTriads();
        if (!visible) showTriads(false);
        Scene::Get()->requestUpdate();
    } else {
        removeTargetVisual();
    }
}

void MoveInstructionVisual::removeTargetVisual() {
    Scene::Get()->deleteVisual(std::exchange(targetVisual, nullptr));
    Scene::Get()->deleteVisual(std::exchange(circleVisual, nullptr));
}

void MoveInstructionVisual::buildTriads() {
    task::DataItem* target = instruction->getTargetItem();
    if (auto* joints = dynamic_cast<task::JointTargetDataItem*>(target)) {
        targetVisual = JointTargetVisual::Build(this, joints);
        return;
    }
    const task::RobTargetDataItem* circlePoint =
        instruction->getCircleItemId() == 0 ? nullptr : instruction->getCircleItem();
    // Refused before the first triad is made: there are both or none.
    if (circlePoint) static_cast<void>(ModelPose(*circlePoint));
    // What is no data item is looked up by its id, and refused there if it is not known at all.
    targetVisual = target ? RobtargetVisual::Build(this, *target)
                          : RobtargetVisual::Build(this, instruction->getTargetItemId());
    if (circlePoint) circleVisual = RobtargetVisual::Build(this, *circlePoint);
}

void MoveInstructionVisual::removePathArrow() {
    if (!pathArrow) return;
    PathArrowVisual* arrow = std::exchange(pathArrow, nullptr);
    // Not through the scene: arrows are never picked, and nothing hangs below them.
    Scene::Get()->visuals.erase(arrow->id);
    detachVisual(arrow);
    delete arrow;
}

void MoveInstructionVisual::drawPathArrow(task::MoveInst* prev) {
    if (!prev) return;
    if (!LoadLive(Scene::Get()->settings.drawPathArrow)) return removePathArrow();
    const Pos a = getStartPos(prev), b = getEndPos();
    if (instruction->getCircleItem()) {
        const Pos c = getCirclePos();
        if (MakeArc(a, c, b)) return addArrow(rob::TPCircle(a, c, b));
    }
    addArrow(a, b);
}

Pos MoveInstructionVisual::getStartPos(task::MoveInst* prev) const {
    return prev ? TargetPosition(*prev) : Pos{};
}

Pos MoveInstructionVisual::getEndPos() const { return TargetPosition(*instruction); }

Pos MoveInstructionVisual::getCirclePos() const {
    const task::RobTargetDataItem* point = instruction->getCircleItem();
    return point ? Pos(point->getPose().position) : Pos{};
}

void MoveInstructionVisual::addArrow(const Pos& start, const Pos& end) {
    const auto way = end - start;
    const float length = way.length();
    if (length < minArrowSegment) return;
    createArrow(start + way * 0.5f, Dir(way.x / length, way.y / length, way.z / length),
                static_cast<double>(length));
}

void MoveInstructionVisual::addArrow(const rob::TPCircle& circle) {
    const double length = circle.getLength();
    if (length < minArrowSegment) return;
    createArrow(circle.getPoint(0.5), Dir(circle.getTangent(0.5).normalized()), length);
}

void MoveInstructionVisual::createArrow(const Pos& pos, const Dir& dir, double length) {
    // Before there is an arrow: a refused direction leaves none behind.
    const auto turn = rob::RotationTemplate<float>::From2Dirs(Dir(0, 0, 1), dir);
    pathArrow = new PathArrowVisual(this);
    const double scale = length / fullArrowSegment;
    if (scale < 1.0) pathArrow->setScale(scale, scale, scale);
    pathArrow->setPosition(pos);
    pathArrow->setRotation(turn);
    if (!visible) pathArrow->setVisible(false, /*cascade=*/false);
}

void MoveInstructionVisual::forgetChild(const Visual* child) {
    if (child == targetVisual) targetVisual = nullptr;
    if (child == circleVisual) circleVisual = nullptr;
    if (child == pathArrow) pathArrow = nullptr;
}

void MoveInstructionVisual::setVisible(bool show, bool /*cascade*/) {
    Visual::setVisible(show, /*cascade=*/false);
    showTriads(show);
    if (pathArrow) pathArrow->setVisible(show, /*cascade=*/false);
}

void MoveInstructionVisual::showTriads(bool show) {
    for (Visual* triad : {static_cast<Visual*>(targetVisual), static_cast<Visual*>(circleVisual)}) {
        if (!triad) continue;
        triad->setVisible(show, /*cascade=*/false);
        selection::VisualSelection::Get()->setObjectEnabled(triad, show);
    }
}

void MoveInstructionVisual::resetAppearance() {
    if (targetVisual) targetVisual->resetAppearance();
    if (circleVisual) circleVisual->resetAppearance();
    if (pathArrow) pathArrow->resetAppearance();
}

void MoveInstructionVisual::setSelected() {
    if (targetVisual) targetVisual->setSelected();
    if (circleVisual) circleVisual->setSelected();
    if (pathArrow) pathArrow->setSelected();
}

void MoveInstructionVisual::setHighlighted() {
    if (targetVisual) targetVisual->setHighlighted();
    if (circleVisual) circleVisual->setHighlighted();
}

void MoveInstructionVisual::clearHighlightOrSelect() {
    if (targetVisual) targetVisual->clearHighlightOrSelect();
    if (circleVisual) circleVisual->clearHighlightOrSelect();
}

}  // namespace vrn::visual
