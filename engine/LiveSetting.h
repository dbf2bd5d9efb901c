#pragma once

#include <atomic>

namespace vrn::visual {

// Settings that a host's thread stores while the render thread reads them. Nothing else is ordered
// by them: what goes with a change is posted.

/// A setting as it was stored last. Thread: any.
template <class Value>
[[nodiscard]] Value LoadLive(const Value& setting) {
    return std::atomic_ref<Value>(const_cast<Value&>(setting)).load(std::memory_order_relaxed);
}

/// Thread: any.
template <class Value>
void StoreLive(Value& setting, Value value) {
    std::atomic_ref<Value>(setting).store(value, std::memory_order_relaxed);
}

}  // namespace vrn::visual
