#include "suite/broker/SignalBroker.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <mutex>
#include <stdexcept>
#include <utility>
#include <vector>

namespace vrn::broker {

/// One handler and what is needed to know when it is at rest.
struct Slot {
    explicit Slot(std::function<void(double)> f) : handler(std::move(f)) {}

    const std::function<void(double)> handler;
    std::atomic<int> running{0};  // calls under way, on all threads
    std::atomic<bool> dead{false};
};

namespace {

/// The slots whose handlers the current thread is inside of, innermost first.
struct ActiveCall {
    const Slot* slot;
    const ActiveCall* outer;
};
thread_local const ActiveCall* activeCalls = nullptr;

int CallsOnThisThread(const Slot& slot) {
    int count = 0;
    for (const ActiveCall* call = activeCalls; call; call = call->outer)
        count += call->slot == &slot;
    return count;
}

/// Marks a slot as running for one call, also when the handler throws.
class RunningGuard {
public:
    explicit RunningGuard(Slot& s) : slot(s), call{&s, activeCalls} {
        slot.running.fetch_add(1);
        activeCalls = &call;
    }
    ~RunningGuard() {
        activeCalls = call.outer;
        slot.running.fetch_sub(1);
        // Only an unsubscriber waits, and it has set `dead` before.
        if (slot.dead.load()) slot.running.notify_all();
    }
    RunningGuard(const RunningGuard&) = delete;
    RunningGuard& operator=(const RunningGuard&) = delete;

private:
    Slot& slot;
    ActiveCall call;
};

}  // namespace

/// A list of slots that is replaced as a whole and never changed in place.
///
/// An emission counts itself in `emitting` before it reads the list; a list that has been replaced
/// is freed once nobody is emitting after the replacement. Both sides use the default (sequentially
/// consistent) order: with a weaker one each could miss the other's step.
class Signal {
public:
    void emit(double value) {
        if (!slots.load()) return;
        const Emission emission(*this);
        const Slots* current = slots.load();
        if (!current) return;
        for (const std::shared_ptr<Slot>& slot : *current) {
            const RunningGuard running(*slot);
            // Counted first, asked second: an unsubscriber sets `dead` and then reads the count.
            if (!slot->dead.load()) slot->handler(value);
        }
    }

    Subscription subscribe(std::function<void(double)> handler) {
        auto slot = std::make_shared<Slot>(std::move(handler));
        Garbage garbage;
        const std::lock_guard lock(mutex);
        auto next = owned ? std::make_unique<Slots>(*owned) : std::make_unique<Slots>();
        next->push_back(slot);
        garbage = replace(std::move(next));
        return {*this, std::move(slot)};
    }

    void unsubscribe(Slot& slot) {
        slot.dead.store(true);
        remove(slot);
        const int own = CallsOnThisThread(slot);
        for (int n = slot.running.load(); n > own; n = slot.running.load()) slot.running.wait(n);
    }

private:
    using Slots = std::vector<std::shared_ptr<Slot>>;
    /// Lists on their way out. Declared before the lock that guards its filling, so that handlers
    /// are destroyed without it: what they capture may itself unsubscribe.
    using Garbage = std::vector<std::unique_ptr<Slots>>;

    class Emission {
    public:
        explicit Emission(Signal& s) : signal(s) { signal.emitting.fetch_add(1); }
        ~Emission() {
            if (signal.emitting.fetch_sub(1) == 1 && signal.hasRetired.load()) signal.sweep();
        }
        Emission(const Emission&) = delete;
        Emission& operator=(const Emission&) = delete;

    private:
        Signal& signal;
    };

    void remove(const Slot& slot) {
        Garbage garbage;
        const std::lock_guard lock(mutex);
        auto next = std::make_unique<Slots>();
        std::copy_if(owned->begin(), owned->end(), std::back_inserter(*next),
                     [&](const auto& s) { return s.get() != &slot; });
        garbage = replace(next->empty() ? nullptr : std::move(next));
    }

    void sweep() {
        Garbage garbage;
        const std::lock_guard lock(mutex);
        garbage = takeRetired();
    }

    // The two below are called with `mutex` held.
    Garbage replace(std::unique_ptr<Slots> next) {
        if (owned) retired.push_back(std::move(owned));
        owned = std::move(next);
        slots.store(owned.get());
        hasRetired.store(!retired.empty());
        return takeRetired();
    }
    Garbage takeRetired() {
        if (emitting.load() != 0) return {};  // the last emission sweeps
        hasRetired.store(false);
        return std::exchange(retired, {});
    }

    std::atomic<const Slots*> slots{nullptr};  // null: no handler
    std::atomic<int> emitting{0};
    std::atomic<bool> hasRetired{false};
    std::mutex mutex;  // guards the two below and the writing of `slots` and `hasRetired`
    std::unique_ptr<Slots> owned;
    Garbage retired;  // may still be read by an emission
};

namespace {

// Never destroyed: a Subscription in a static object may outlive every static of this library.
Signal& UpdateScene() {
    static auto* signal = new Signal;
    return *signal;
}
Signal& FrameTicked() {
    static auto* signal = new Signal;
    return *signal;
}
Signal& CameraMoved() {
    static auto* signal = new Signal;
    return *signal;
}
Signal& SnapResultInvalidated() {
    static auto* signal = new Signal;
    return *signal;
}

template <class Handler>
void RequireHandler(const Handler& handler) {
    if (!handler)
        throw std::invalid_argument("a signal handler must be callable, got an empty one");
}

Subscription SubscribePlain(Signal& signal, std::function<void()> handler) {
    RequireHandler(handler);
    return signal.subscribe([f = std::move(handler)](double) { f(); });
}

}  // namespace

Subscription::Subscription(Signal& signal, std::shared_ptr<Slot> handlerSlot) noexcept
    : owner(&signal), slot(std::move(handlerSlot)) {}

Subscription::Subscription(Subscription&& other) noexcept
    : owner(other.owner), slot(std::move(other.slot)) {}

Subscription& Subscription::operator=(Subscription&& other) noexcept {
    if (this != &other) {
        reset();
        owner = other.owner;
        slot = std::move(other.slot);
    }
    return *this;
}

Subscription::~Subscription() { reset(); }

void Subscription::reset() noexcept {
    if (!slot) return;
    owner->unsubscribe(*slot);
    slot.reset();
}

void SignalBroker::updateScene() { UpdateScene().emit(0); }
void SignalBroker::frameTicked(double ms) { FrameTicked().emit(ms); }
void SignalBroker::cameraMoved() { CameraMoved().emit(0); }
void SignalBroker::snapResultInvalidated() { SnapResultInvalidated().emit(0); }

Subscription SignalBroker::onUpdateScene(std::function<void()> handler) {
    return SubscribePlain(UpdateScene(), std::move(handler));
}
Subscription SignalBroker::onFrameTicked(std::function<void(double)> handler) {
    RequireHandler(handler);
    return FrameTicked().subscribe(std::move(handler));
}
Subscription SignalBroker::onCameraMoved(std::function<void()> handler) {
    return SubscribePlain(CameraMoved(), std::move(handler));
}
Subscription SignalBroker::onSnapResultInvalidated(std::function<void()> handler) {
    return SubscribePlain(SnapResultInvalidated(), std::move(handler));
}

}  // namespace vrn::broker
