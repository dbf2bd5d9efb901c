#include "visual/task/PathVisual.h"

#include <algorithm>
#include <format>
#include <stdexcept>

#include "engine/LiveSetting.h"
#include "engine/Scene.h"
#include "suite/task/Instruction.h"
#include "suite/task/Task.h"
#include "visual/task/PathGeometry.h"
#include "visual/task/PathLineVisual.h"

namespace vrn::visual {

namespace {

task::Path* RequirePath(sdf::SdfContainer* modelPath) {
    if (!modelPath) throw std::invalid_argument("the path to show must not be null");
    return &dynamic_cast<task::Path&>(*modelPath);
}

}  // namespace

PathVisual::PathVisual(Visual* parent, sdf::SdfContainer* modelPath)
    : Visual(RequirePath(modelPath)->id, std::format("Path_{}", RequirePath(modelPath)->id),
             parent),
      path(RequirePath(modelPath)) {
    type = VisualType::Path;
}

PathVisual::~PathVisual() { deleteLines(); }

void PathVisual::Build(Visual* /*parent*/, task::Path* modelPath) {
    auto* built = new PathVisual(Scene::Get()->root, modelPath);
    Scene::Get()->visuals[built->id] = built;
    built->rebuildPathLines();
}

void PathVisual::forgetLine(const PathLineVisual* line) {
    const auto found = std::ranges::find(pathLines, line);
    if (found != pathLines.end()) pathLines.erase(found);
}

void PathVisual::deleteLines() {
    while (!pathLines.empty()) {
        PathLineVisual* line = pathLines.back();
        pathLines.pop_back();
        line->owner = nullptr;  // out of the list already: nothing to search
        Scene::Get()->deleteVisual(line);
    }
}

void PathVisual::rebuildPathLines() {
    deleteLines();
    if (!LoadLive(Scene::Get()->settings.drawSegVisual)) return;
    addLines();
    for (PathLineVisual* line : pathLines) {
        line->finish();
        if (!visible) line->setVisible(false, /*cascade=*/false);
    }
}

void PathVisual::addLines() {
    const std::vector<task::MoveInst*> moves = path->getMoveInstructions();
    PathLineVisual* current = nullptr;
    for (std::size_t i = 1; i < moves.size(); ++i) {
        task::MoveInst *prev = moves[i - 1], *cur = moves[i];
        if (!HaveSegment(*prev, *cur)) {
            current = nullptr;
            continue;
        }
        const auto lineType = cur->objectType == sdf::ObjectType::JointMove ? PathLineType::Dashed
                                                                            : PathLineType::Solid;
        // A current line is in the same work object: another one leaves no segment in between.
        if (!current || current->getType() != lineType) {
            current = new PathLineVisual(Scene::Get()->visuals.at(ObjectFrameId(*cur)), lineType);
            current->owner = this;
            pathLines.push_back(current);
        }
        current->addSegment(prev, cur);
    }
}

template <class Action>
void PathVisual::forEachMove(Action action) const {
    for (const sdf::SdfObject* child : path->getChildren())
        if (child->asType(sdf::ObjectType::MoveInstruction))
            action(*Scene::Get()->visuals.at(child->id));
}

void PathVisual::setVisible(bool show, bool /*cascade*/) {
    Visual::setVisible(show, /*cascade=*/false);
    for (const sdf::SdfObject* child : path->getChildren())
        if (!child->asType(sdf::ObjectType::ActionInstruction))
            Scene::Get()->visuals.at(child->id)->setVisible(show, /*cascade=*/false);
    for (PathLineVisual* line : pathLines) line->setVisible(show, /*cascade=*/false);
}

void PathVisual::resetAppearance() {
    forEachMove([](Visual& move) { move.resetAppearance(); });
}

void PathVisual::setSelected() {
    forEachMove([](Visual& move) { move.setSelected(); });
}

void PathVisual::setHighlighted() {
    forEachMove([](Visual& move) { move.setHighlighted(); });
}

void PathVisual::clearHighlightOrSelect() {
    forEachMove([](Visual& move) { move.clearHighlightOrSelect(); });
}

}  // namespace vrn::visual
