// Paths, their moves and the trace of a tool.

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "engine/LiveSetting.h"
#include "engine/Scene.h"
#include "suite/sdf/SdfManager.h"
#include "suite/smart/StationLogic.h"
#include "suite/task/Instruction.h"
#include "suite/task/Task.h"
#include "visual/task/MoveInstructionVisual.h"
#include "visual/task/PathGeometry.h"
#include "visual/task/PathVisual.h"
#include "visual/task/TcpTraceVisual.h"
#include "visual/Visual.h"

namespace vrn::visual {

namespace {

task::MoveInst* RequireMove(task::MoveInst* move) {
    if (!move) throw std::invalid_argument("the move to show must not be null");
    return move;
}

// The path of that id in the model.
task::Path& FindPath(std::uint32_t id) {
    return dynamic_cast<task::Path&>(*sdf::SdfManager::inst()->at(id));
}

// The visual of a move; null if it has none.
MoveInstructionVisual* FindMoveVisual(const Scene& scene, std::uint32_t id) {
    const auto found = scene.visuals.find(id);
    return found == scene.visuals.end() ? nullptr
                                        : dynamic_cast<MoveInstructionVisual*>(found->second);
}

// Collected first: what is done to them may enter others in the registry.
std::vector<const PathVisual*> AllPaths(const Scene& scene) {
    std::vector<const PathVisual*> found;
    for (const auto& [id, visual] : scene.visuals)
        if (const auto* path = dynamic_cast<const PathVisual*>(visual)) found.push_back(path);
    return found;
}

std::vector<std::uint32_t> MoveIds(const Scene& scene) {
    std::vector<std::uint32_t> ids;
    for (const auto& [id, visual] : scene.visuals)
        if (dynamic_cast<const MoveInstructionVisual*>(visual)) ids.push_back(id);
    return ids;
}

// What the move's visual hangs under. A task may stand in the station itself and not on anything of
// it. A target given by a pose has no place without the object frame that it is given in.
Visual* FindMoveParent(const Scene& scene, const task::MoveInst& move, std::uint32_t parentId) {
    const bool isStation = parentId == 0 || parentId == smartcomp::StationLogic::inst()->id;
    if (isStation && !move.isRobTargetInst()) return scene.root;
    return scene.visuals.at(parentId);
}

}  // namespace

void Scene::buildPaths(const task::Task& job) {
    Visual* parent = nullptr;
    std::uint32_t parentId = 0;
    for (task::Path* path : job.getPaths()) {
        PathVisual::Build(nullptr, path);
        task::MoveInst* prev = nullptr;
        for (task::MoveInst* move : path->getMoveInstructions()) {
            const std::uint32_t wanted = MoveParentId(*move);
            // 0 is the root for one move and nothing for another.
            if (wanted == 0 || wanted != parentId)
                parent = FindMoveParent(*this, *move, parentId = wanted);
            MoveInstructionVisual::Build(parent, prev, move);
            prev = move;
        }
    }
}

void Scene::addPath(task::Path* path) {
    if (!path) throw std::invalid_argument("the path to show must not be null");
    post([path] { PathVisual::Build(nullptr, path); });
    task::MoveInst* prev = nullptr;
    for (task::MoveInst* move : path->getMoveInstructions()) {
        // The answer is not kept: by the time of the task that visual may be gone.
        const std::uint32_t parentId = MoveParentId(*move);
        static_cast<void>(FindMoveParent(*this, *move, parentId));
        post([this, parentId, prev, move] {
            MoveInstructionVisual::Build(FindMoveParent(*this, *move, parentId), prev, move);
        });
        prev = move;
    }
}

void Scene::updatePath(std::uint32_t id) {
    post([this, id] { doUpdatePath(id); });
}

void Scene::updatePaths(const std::vector<std::uint32_t>& ids) {
    post([this, ids] {
        for (const std::uint32_t id : ids) doUpdatePath(id);
    });
}

void Scene::doUpdatePath(std::uint32_t id) {
    const task::Path& path = FindPath(id);
    if (path.moveInstructionCount() == 0) return;
    task::MoveInst* prev = nullptr;
    for (task::MoveInst* move : path.getMoveInstructions()) {
        if (MoveInstructionVisual* visual = FindMoveVisual(*this, move->id))
            visual->update(prev, move);
        prev = move;
    }
    dynamic_cast<PathVisual&>(*visuals.at(id)).rebuildPathLines();
}

void Scene::removePathVisual(std::uint32_t id) {
    for (const task::Instruction* instruction : FindPath(id).getInstructions())
        if (instruction->isMoveInst()) removeVisual(instruction->id);
    removeVisual(id);
}

void Scene::buildMoveInstruction(task::MoveInst* move) {
    const std::uint32_t parentId = MoveParentId(*RequireMove(move));
    post([this, parentId, move] {
        MoveInstructionVisual::Build(FindMoveParent(*this, *move, parentId), nullptr, move);
    });
}

void Scene::buildMoveInstructions(
    std::vector<std::tuple<task::MoveInst*, task::MoveInst*, std::uint32_t>>&& moves) {
    for (const auto& [prev, cur, parentId] : moves) RequireMove(cur);
    if (moves.empty()) return;
    post([this, moves = std::move(moves)] {
        for (const auto& [prev, cur, parentId] : moves)
            MoveInstructionVisual::Build(FindMoveParent(*this, *cur, parentId), prev, cur);
        const task::Path* path = std::get<1>(moves.back())->getPath();
        const auto found = visuals.find(path ? path->id : 0);
        if (found == visuals.end()) return;
        if (auto* visual = dynamic_cast<PathVisual*>(found->second)) visual->rebuildPathLines();
    });
}

void Scene::updateInstruction(task::MoveInst* prev, task::MoveInst* cur) {
    RequireMove(cur);
    post([this, prev, cur] { doUpdateInstruction(prev, cur); });
}

void Scene::doUpdateInstruction(task::MoveInst* prev, task::MoveInst* cur) {
    dynamic_cast<MoveInstructionVisual&>(*visuals.at(cur->id)).update(prev, cur);
    const task::Path* path = cur->getPath();
    dynamic_cast<PathVisual&>(*visuals.at(path ? path->id : 0)).rebuildPathLines();
}

void Scene::upadateInstructionParent(std::uint32_t id, std::uint32_t parentId) {
    postToVisual(id, [parentId](Visual* visual) {
        dynamic_cast<MoveInstructionVisual&>(*visual).updateParent(parentId);
    });
}

void Scene::setDrawPathArrow(bool on) {
    StoreLive(settings.drawPathArrow, on);
    post([this, on] { doSetDrawPathArrow(on); });
    if (on) requestUpdate();
}

void Scene::doSetDrawPathArrow(bool on) {
    for (const PathVisual* shown : AllPaths(*this)) {
        task::MoveInst* prev = nullptr;
        for (task::MoveInst* move : FindPath(shown->id).getMoveInstructions()) {
            MoveInstructionVisual* visual = FindMoveVisual(*this, move->id);
            if (!visual) continue;
            // The setting may have changed again since the post: off removes even so, and what is
            // switched on behind it starts from nothing.
            if (!on) visual->removePathArrow();
            // From one frame to another there is no way to point along.
            if (on && prev && HaveSegment(*prev, *move)) visual->drawPathArrow(prev);
            prev = move;
        }
    }
}

void Scene::setDrawTargetVisual(bool on) {
    StoreLive(settings.drawTargetVisual, on);
    post([this, on] {
        // Looked up one by one: with a target goes what hangs below it, and that may be a move.
        for (const std::uint32_t id : MoveIds(*this)) {
            MoveInstructionVisual* move = FindMoveVisual(*this, id);
            if (!move) continue;
            // Off deletes even if the setting has changed again since, as with arrows.
            on ? move->drawTargetVisual() : move->removeTargetVisual();
        }
    });
}

void Scene::setDrawSegVisual(bool on) {
    StoreLive(settings.drawSegVisual, on);
    for (const auto& [id, visual] : visuals)
        if (visual->type == VisualType::Path) updatePath(id);
}

void Scene::setTcpTrace(TcpTraceVisual* trace) { tcpTrace = trace; }

void Scene::clearTcpTrace() {
    post([this] { deleteVisual(tcpTrace); });
}

void Scene::forgetTaskVisual(const Visual* visual) {
    if (visual == tcpTrace) tcpTrace = nullptr;
}

}  // namespace vrn::visual
