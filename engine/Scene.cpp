#include "engine/Scene.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <OgreSceneNode.h>

#include "selection/VisualSelection.h"
#include "suite/broker/SignalBroker.h"
#include "visual/Visual.h"

namespace vrn::visual {

namespace {

/// A queue that once grew beyond it gives its memory back: about 10 MiB.
constexpr std::size_t maxSpareTasks = 1 << 18;

/// Locks a mutex that is held for a moment only: to look again a few times is quicker than to let
/// the system put the thread to sleep and wake it.
std::unique_lock<std::mutex> LockBriefly(std::mutex& mutex) {
    constexpr int looks = 400;
    std::unique_lock lock(mutex, std::try_to_lock);
    for (int i = 0; !lock && i < looks; ++i) {
#if defined(__x86_64__)
        __builtin_ia32_pause();
#endif
        static_cast<void>(lock.try_lock());
    }
    if (!lock) lock.lock();
    return lock;
}

}  // namespace

Scene* Scene::Instance = nullptr;

void Scene::addRenderTask(std::function<void()>&& fn, unsigned long key) {
    // Goes after the lock: what a task holds may post when it dies.
    std::vector<RenderTask> dropped;
    const std::unique_lock lock = LockBriefly(taskMutex);
    if (key != 0) {
        const auto rest = std::ranges::stable_partition(
            renderTasks, [key](const RenderTask& task) { return task.key != key; });
        dropped.assign(std::move_iterator(rest.begin()), std::move_iterator(rest.end()));
        renderTasks.erase(rest.begin(), rest.end());
    }
    renderTasks.emplace_back(key, std::move(fn));
    broker::SignalBroker::updateScene();
}

void Scene::addLoadTask(std::function<void()> fn) { loadTasks.push_back(std::move(fn)); }

void Scene::processMsgs() {
    std::vector<RenderTask> batch;
    {
        const std::lock_guard lock(taskMutex);
        batch.swap(renderTasks);
        renderTasks.swap(spareTasks);
    }
    const bool hasTasks = !batch.empty();
    // What a task holds goes when it has run, not when the batch ends.
    for (RenderTask& task : batch) std::exchange(task.fn, nullptr)();
    keepForNextBatch(std::move(batch));
    // Instances learn of a move when their nodes are updated, which a frame does too late for
    // itself.
    if (hasTasks) root->node->_update(/*updateChildren=*/true, /*parentHasChanged=*/false);
    if (needsUpdate.exchange(false)) broker::SignalBroker::updateScene();
}

void Scene::keepForNextBatch(std::vector<RenderTask>&& batch) {
    batch.clear();
    if (batch.capacity() > maxSpareTasks) return;
    const std::lock_guard lock(taskMutex);
    spareTasks = std::move(batch);
}

void Scene::drainLoadTasks() {
    // Removed only after it has returned: one that throws stays at the head.
    for (; !loadTasks.empty(); loadTasks.pop_front()) loadTasks.front()();
}

void Scene::addTempVisual(Visual* visual) {
    if (visual) tempVisuals[visual->id] = visual;
}

void Scene::deleteVisual(Visual* visual) {
    if (!visual) return;
    if (releaseAttachedGui(visual)) return;
    // A copy has the id of its source, which must stay registered when the copy goes.
    for (auto* registry : {&visuals, &tempVisuals}) {
        const auto entry = registry->find(visual->id);
        if (entry != registry->end() && entry->second == visual) registry->erase(entry);
    }
    visual->clearChildren();
    forgetFaces(visual);
    forgetEdges(visual);
    forgetEnvelope(visual);
    forgetTaskVisual(visual);
    forgetPreview(visual);
    forgetMeasure(visual);
    stateManager->remove(visual);
    selection::VisualSelection::Get()->removeCompoundObject(visual);
    delete visual;
}

void Scene::removeVisual(std::uint32_t id) {
    post([this, id] { doRemoveVisual(id); });
}

void Scene::doRemoveVisual(std::uint32_t id) { deleteVisual(visuals.at(id)); }

void Scene::removeTempVisual(std::uint32_t id) {
    post([this, id] { deleteVisual(tempVisuals.at(id)); });
}

}  // namespace vrn::visual
