#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "suite/sdf/SdfManager.h"
#include "suite/sdf/SdfNode.h"

namespace vrn::sdf {

/// Owns model objects of any class, gives them ids and enters them in SdfManager.
///
///     sdf::ObjectStore store;
///     auto* part = store.make<layout::Part>("Bracket");
///
/// The objects end with the store, the newest first. Thread: one at a time.
class ObjectStore {
public:
    ObjectStore() = default;
    ~ObjectStore() { clear(); }
    ObjectStore(const ObjectStore&) = delete;
    ObjectStore& operator=(const ObjectStore&) = delete;
    ObjectStore(ObjectStore&&) noexcept = default;
    /// The objects that this store had end with `other`.
    ObjectStore& operator=(ObjectStore&& other) noexcept {
        objects.swap(other.objects);
        return *this;
    }

    /// A new `T` from `args`, with a fresh id; never null, owned by the store.
    template <std::derived_from<SdfNode> T, class... Args>
    T* make(Args&&... args) {
        return makeWithId<T>(SdfManager::inst()->generateId(), std::forward<Args>(args)...);
    }

    /// The same under an id of the host's own. Throws what SdfManager::add throws; then nothing is
    /// kept.
    template <std::derived_from<SdfNode> T, class... Args>
    T* makeWithId(std::uint32_t id, Args&&... args) {
        auto object = std::make_unique<T>(std::forward<Args>(args)...);
        object->id = id;
        SdfManager::inst()->add(*object);
        T* raw = object.get();
        objects.push_back(std::move(object));
        return raw;
    }

    /// Ends one object. Does nothing if the store does not own it.
    void erase(const SdfNode* object) {
        std::erase_if(objects, [&](const auto& owned) { return owned.get() == object; });
    }
    /// Ends all objects, the newest first.
    void clear() {
        while (!objects.empty()) objects.pop_back();
    }

private:
    std::vector<std::unique_ptr<SdfNode>> objects;
};

}  // namespace vrn::sdf
