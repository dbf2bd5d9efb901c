#include "suite/smart/SmartComponent.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace vrn::smartcomp {

namespace {

std::vector<SmartComponent*>& Components() {
    // Never destroyed: components held by statics elsewhere still leave it when they end.
    static auto* components = new std::vector<SmartComponent*>;
    return *components;
}

std::shared_ptr<sdf::Element> FindProperty(const sdf::Element& owner, unsigned int number) {
    for (const auto& child : owner.getChildren())
        if (child->getTypeName() == "property" && child->getId(/*ownOnly=*/true) == number)
            return child;
    return nullptr;
}

template <class T>
bool ReadProperty(const sdf::Element& owner, unsigned int number, T& out) {
    const auto property = FindProperty(owner, number);
    const auto value = property ? property->get("value") : nullptr;
    if (!value) return false;
    out = value->as<T>();
    return true;
}

sdf::ObjectType RequireSensor(sdf::ObjectType type) {
    if (!sdf::IsKindOf(type, sdf::ObjectType::Sensor))
        throw std::invalid_argument("expected a kind of sensor, got " +
                                    std::to_string(static_cast<int>(type)));
    return type;
}

}  // namespace

SmartComponent::~SmartComponent() { RemoveSmartComponent(*this); }

bool SmartComponent::getPropertyXYZ(unsigned int number, rob::XYZTemplate<double>& out) const {
    return ReadProperty(*element, number, out);
}

bool SmartComponent::getPropertyDouble(unsigned int number, double& out) const {
    return ReadProperty(*element, number, out);
}

void SmartComponent::setProperty(unsigned int number, std::any value) {
    auto property = FindProperty(*element, number);
    if (!property) {
        property = element->append("property");
        property->setId(number);
    }
    property->set("value", std::move(value));
}

UserComponent::UserComponent(std::string_view componentName)
    : SmartComponent(sdf::ObjectType::UserComponent, componentName, "user_component") {}
UserComponent::~UserComponent() = default;

Sensor::Sensor(std::string_view sensorName, sdf::ObjectType type)
    : SmartComponent(RequireSensor(type), sensorName, "sensor") {}
Sensor::~Sensor() = default;

SprayComponent::SprayComponent(std::string_view componentName)
    : SmartComponent(sdf::ObjectType::SprayComponent, componentName, "spray") {}
SprayComponent::~SprayComponent() = default;

const std::vector<SmartComponent*>& GetAllSmartComponents() { return Components(); }

void AddSmartComponent(SmartComponent& component) {
    if (std::ranges::find(Components(), &component) == Components().end())
        Components().push_back(&component);
}

void RemoveSmartComponent(const SmartComponent& component) { std::erase(Components(), &component); }

}  // namespace vrn::smartcomp
