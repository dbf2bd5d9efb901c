#include "suite/sdf/Element.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace vrn::sdf {

namespace {

using Children = std::vector<std::shared_ptr<Element>>;

std::shared_ptr<Element> FirstOf(const Children& children, std::string_view key) {
    const auto it = std::ranges::find_if(
        children, [&](const auto& child) { return child->getTypeName() == key; });
    return it == children.end() ? nullptr : *it;
}

}  // namespace

Element::Element(Private, std::string_view name) : typeName(name) {}

std::shared_ptr<Element> Element::Make(std::string_view typeName) {
    return std::make_shared<Element>(Private{}, typeName);
}

std::shared_ptr<Element> Element::get(std::string_view key) const {
    const std::lock_guard lock(mutex);
    return FirstOf(children, key);
}

std::shared_ptr<Element> Element::touch(std::string_view path) {
    std::shared_ptr<Element> at = shared_from_this();
    while (!path.empty()) {
        const std::string_view step = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(step.size() + 1, path.size()));
        if (step.empty()) continue;
        const std::lock_guard lock(at->mutex);
        std::shared_ptr<Element> next = FirstOf(at->children, step);
        if (!next) {
            next = Make(step);
            next->parent = at;  // nobody else knows it yet
            at->children.push_back(next);
        }
        at = std::move(next);
    }
    return at;
}

std::vector<std::shared_ptr<Element>> Element::getChildren() const {
    const std::lock_guard lock(mutex);
    return children;
}

std::shared_ptr<Element> Element::getParent() const {
    const std::lock_guard lock(mutex);
    return parent.lock();
}

std::shared_ptr<Element> Element::append(std::string_view childType) {
    std::shared_ptr<Element> child = Make(childType);
    append(child);
    return child;
}

void Element::append(const std::shared_ptr<Element>& child) {
    if (!child) throw std::invalid_argument("an element to append must not be null");
    for (auto above = shared_from_this(); above; above = above->getParent())
        if (above == child)
            throw std::invalid_argument("element " + child->typeName +
                                        " cannot stand below itself");
    child->detach();
    {
        const std::lock_guard lock(child->mutex);
        child->parent = weak_from_this();
    }
    const std::lock_guard lock(mutex);
    children.push_back(child);
}

void Element::detach() {
    const std::shared_ptr<Element> above = getParent();
    if (!above) return;
    above->remove(*this);
    const std::lock_guard lock(mutex);
    parent.reset();
}

void Element::remove(const Element& child) {
    const std::lock_guard lock(mutex);
    std::erase_if(children, [&](const auto& c) { return c.get() == &child; });
}

std::any Element::getValue() const {
    const std::lock_guard lock(mutex);
    return value;
}

void Element::setValue(std::any newValue) {
    const std::lock_guard lock(mutex);
    value.swap(newValue);
}

void Element::set(std::string_view path, std::any newValue) {
    touch(path)->setValue(std::move(newValue));
}

template <class T>
T Element::valueOf(std::string_view key) const {
    if (key.empty()) return as<T>();
    const std::shared_ptr<Element> child = get(key);
    if (!child) throw std::bad_any_cast();
    return child->as<T>();
}

rob::PoseTemplate<double> Element::asPose(std::string_view key) const {
    return valueOf<rob::PoseTemplate<double>>(key);
}

rob::Vec3Template<double> Element::asVec3(std::string_view key) const {
    return valueOf<rob::Vec3Template<double>>(key);
}

std::uint32_t Element::getId(bool ownOnly) const {
    {
        const std::lock_guard lock(mutex);
        if (id) return *id;
    }
    const std::shared_ptr<Element> above = ownOnly ? nullptr : getParent();
    return above ? above->getId(false) : 0;
}

void Element::setId(std::uint32_t newId) {
    const std::lock_guard lock(mutex);
    id = newId;
}

}  // namespace vrn::sdf
