#pragma once

#include <functional>
#include <memory>

#include "suite/SuiteApi.h"

namespace vrn::broker {

class Signal;
struct Slot;

/// Keeps one handler subscribed; move-only, unsubscribes when destroyed.
///
/// Once reset() or the destructor has returned, the handler is not running on any other thread and
/// will never be called again, so what it captures may be freed. For that reset() waits for calls
/// under way elsewhere: do not hold a lock that the handler takes. Called from inside the handler
/// itself it does not wait for that call. Two handlers that unsubscribe each other at the same
/// moment from two threads would wait for ever.
/// Thread: any; a single Subscription object is not for concurrent use.
class VRN_SUITE_API Subscription {
public:
    /// Holds nothing.
    Subscription() = default;
    Subscription(Subscription&& other) noexcept;
    Subscription& operator=(Subscription&& other) noexcept;
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription();

    /// Unsubscribes. Does nothing if nothing is held.
    void reset() noexcept;
    [[nodiscard]] explicit operator bool() const noexcept { return slot != nullptr; }

private:
    friend class Signal;
    Subscription(Signal& signal, std::shared_ptr<Slot> handlerSlot) noexcept;

    Signal* owner = nullptr;
    std::shared_ptr<Slot> slot;
};

/// The signals that go out to the application.
///
/// A host keeps what the on... operations return for as long as it wants the calls:
///
///     auto repaint = SignalBroker::onUpdateScene([&] { window.requestFrame(); });
///
/// Emitting calls the handlers that are subscribed at that moment, in the order of subscription, on
/// the emitting thread and without holding a lock; several threads may emit at once, so a handler
/// may run on several threads at once. A handler may subscribe (seen from the next emission on) and
/// unsubscribe (effective at once). What a handler throws reaches the emitter; the handlers behind
/// it are then not called. Without a handler an emission costs one atomic load.
/// Thread: any, every operation.
class VRN_SUITE_API SignalBroker {
public:
    /// The scene has changed and wants a frame.
    static void updateScene();
    /// A frame has ended; it took `ms` milliseconds.
    static void frameTicked(double ms);
    /// The camera's world position or rotation was set.
    static void cameraMoved();
    /// A selection update made the snap result invalid.
    static void snapResultInvalidated();

    // An empty handler throws std::invalid_argument.
    [[nodiscard]] static Subscription onUpdateScene(std::function<void()> handler);
    [[nodiscard]] static Subscription onFrameTicked(std::function<void(double ms)> handler);
    [[nodiscard]] static Subscription onCameraMoved(std::function<void()> handler);
    [[nodiscard]] static Subscription onSnapResultInvalidated(std::function<void()> handler);
};

}  // namespace vrn::broker
