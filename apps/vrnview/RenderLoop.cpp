#include "apps/vrnview/RenderLoop.h"

#include <future>
#include <memory>
#include <utility>

#include "apps/vrnview/readers/OcctGuard.h"
#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "suite/broker/SignalBroker.h"

namespace vrn::host {

void RenderLoop::runBeside(const std::function<void()>& work) {
    const auto posted = broker::SignalBroker::onUpdateScene([this] {
        const std::lock_guard lock(mutex);
        tasksWait = true;
        changed.notify_all();
    });
    std::future<void> worker = std::async(std::launch::async, [this, &work] {
        // Whatever way the work ends, the loop must end with it.
        const std::shared_ptr<void> atEnd(nullptr, [this](void*) {
            const std::lock_guard lock(mutex);
            workEnded = true;
            changed.notify_all();
        });
        work();
    });
    std::unique_lock lock(mutex);
    while (!workEnded) {
        changed.wait(lock, [this] { return tasksWait || workEnded; });
        tasksWait = false;
        lock.unlock();
        runTasks();
        lock.lock();
    }
    lock.unlock();
    worker.get();
}

void RenderLoop::runTasks() {
    auto& selection = *selection::VisualSelection::Get();
    try {
        WithOcctErrors("a task failed", [&selection] {
            selection.update();
            visual::Scene::Get()->processMsgs();
            selection.update();
        });
    } catch (const std::exception&) {
        const std::lock_guard lock(mutex);
        failure = std::current_exception();
        changed.notify_all();
    }
}

void RenderLoop::ask(const std::function<void()>& question) {
    using Task = std::packaged_task<void()>;
    auto task = std::make_shared<Task>([&question] {
        WithOcctErrors("a task failed", [&question] {
            // A task of the same batch may have changed the scene.
            selection::VisualSelection::Get()->update();
            question();
        });
    });
    std::future<void> answer = task->get_future();
    visual::Scene::Get()->addRenderTask([task = std::move(task)] { (*task)(); }, /*key=*/0);
    try {
        answer.get();
    } catch (const std::future_error&) {
        // Lost with a task before it that threw; the loop is about to note what.
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return failure != nullptr; });
    }
    throwFailure();
}

void RenderLoop::throwFailure() {
    std::exception_ptr told;
    {
        const std::lock_guard lock(mutex);
        told = std::exchange(failure, nullptr);
    }
    if (told) std::rethrow_exception(told);
}

}  // namespace vrn::host
