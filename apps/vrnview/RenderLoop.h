#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>

namespace vrn::host {

/// A render thread that works for a posting thread, as in a host with a window: tasks are run as
/// they come, with the selection up to date before and after each batch, so that what they ask it
/// is answered.
///
///     RenderLoop loop;
///     loop.runBeside([&] {                                     // on a thread of its own
///         Camera::Get()->startRotating(x, y);                  // posts
///         loop.ask([&] { place = Camera::Get()->getWorldPosition(); });  // waits
///     });
class RenderLoop {
public:
    /// Runs `work` on a thread of its own, and what it posts on this one until it ends. Throws what
    /// `work` threw. Thread: render.
    void runBeside(const std::function<void()>& work);
    /// Runs `question` on the render thread behind all that was posted before, and waits for it.
    /// Throws what it threw, or what a task before it threw, as std::exception; then what waited
    /// with that task is lost, and the loop goes on. Thread: that of `work`.
    void ask(const std::function<void()>& question);

private:
    void runTasks();
    void throwFailure();

    std::mutex mutex;  ///< guards all below
    std::condition_variable changed;
    bool tasksWait = false;
    bool workEnded = false;
    std::exception_ptr failure;  ///< of a task, until ask tells of it; null for none
};

}  // namespace vrn::host
