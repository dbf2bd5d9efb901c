#pragma once

#include <any>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "suite/rob/PoseTypes.h"
#include "suite/SuiteApi.h"

namespace vrn::sdf {

/// One element of a model object's data: a type name, an optional value of any type, children in
/// order.
///
///     element->set("geometry/uri", std::string("station://parts/a.stl"));
///     auto uri = element->touch("geometry/uri")->as<std::string>();
///
/// The type name is the key that the element is found by under its parent; several children may
/// have one type name, and a key then means the first of them. A text is always a std::string.
/// Lives in a shared pointer (Make). A parent owns its children and a child knows its parent
/// without owning it.
/// Thread: any; each operation is atomic on its own.
class VRN_SUITE_API Element : public std::enable_shared_from_this<Element> {
    struct Private {};  // keeps the constructor to Make

public:
    Element(Private, std::string_view name);
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;

    /// A new element without value, children or parent.
    [[nodiscard]] static std::shared_ptr<Element> Make(std::string_view typeName);

    [[nodiscard]] const std::string& getTypeName() const { return typeName; }

    /// The first child of type name `key`; null when absent. Knows no slash paths.
    [[nodiscard]] std::shared_ptr<Element> get(std::string_view key) const;
    /// The element at a slash-separated path below this one; what is absent on the way is created
    /// without a value. Never null; empty steps are passed over, so "" is this element.
    std::shared_ptr<Element> touch(std::string_view path);
    /// The children at the moment of the call, in order.
    [[nodiscard]] std::vector<std::shared_ptr<Element>> getChildren() const;
    /// Null for an element at the top, and when the parent is gone.
    [[nodiscard]] std::shared_ptr<Element> getParent() const;

    /// Appends a new child, also where one of that type name exists. Never null.
    std::shared_ptr<Element> append(std::string_view childType);
    /// Appends `child`, taking it from its present parent. Throws std::invalid_argument if it is
    /// null, this element, or one of its ancestors.
    void append(const std::shared_ptr<Element>& child);
    /// Leaves the parent. Does nothing without one.
    void detach();

    /// A copy of the value; without has_value() when none was set.
    [[nodiscard]] std::any getValue() const;
    void setValue(std::any newValue);
    /// The value as exactly `T`. Throws std::bad_any_cast if it is of another type or there is
    /// none.
    template <class T>
    [[nodiscard]] T as() const {
        const std::lock_guard lock(mutex);
        return std::any_cast<T>(value);
    }
    /// touch(path)->setValue(newValue).
    void set(std::string_view path, std::any newValue);

    /// The value of the child `key`, of this element itself if `key` is empty. Throws
    /// std::bad_any_cast if it is absent, has no value or one of another type.
    [[nodiscard]] rob::PoseTemplate<double> asPose(std::string_view key) const;
    [[nodiscard]] rob::Vec3Template<double> asVec3(std::string_view key) const;

    /// The number that tells this element from others of its type name. Without one of its own:
    /// 0 if `ownOnly`, else that of the nearest element above that has one, else 0.
    [[nodiscard]] std::uint32_t getId(bool ownOnly) const;
    void setId(std::uint32_t newId);

private:
    template <class T>
    [[nodiscard]] T valueOf(std::string_view key) const;
    void remove(const Element& child);

    const std::string typeName;
    mutable std::mutex mutex;  // guards what follows; never held together with another element's
    std::any value;
    std::optional<std::uint32_t> id;
    std::vector<std::shared_ptr<Element>> children;
    std::weak_ptr<Element> parent;
};

}  // namespace vrn::sdf
