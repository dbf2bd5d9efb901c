#pragma once

#include <any>
#include <cstdint>
#include <string_view>
#include <vector>

#include "suite/rob/VectorTypes.h"
#include "suite/sdf/SdfNode.h"
#include "suite/SuiteApi.h"

namespace vrn::smartcomp {

/// A component with numbered properties; station objects inside it are its children.
///
/// The properties are children "property" of its element, each with the number as its id and the
/// value under the key "value".
class VRN_SUITE_API SmartComponent : public sdf::SdfObject {
public:
    ~SmartComponent() override;

    /// Whether it stands in the station itself, not inside another component.
    [[nodiscard]] bool isTopLevel() const { return isStandalone(); }

    /// Reads property `number` into `out`; false, `out` untouched, if there is none. Throws
    /// std::bad_any_cast if it is of another type.
    bool getPropertyXYZ(unsigned int number, rob::XYZTemplate<double>& out) const;
    bool getPropertyDouble(unsigned int number, double& out) const;
    /// Stores a property; a value of another type replaces it.
    void setProperty(unsigned int number, std::any value);

protected:
    using SdfObject::SdfObject;
};

/// A component that a user put together out of station objects.
class VRN_SUITE_API UserComponent : public SmartComponent {
public:
    explicit UserComponent(std::string_view name);
    ~UserComponent() override;
};

/// A sensor. As PlaneSensor it has the properties 2 and 3, XYZ, its sides; as SegmentSensor 1 and
/// 2, XYZ, its ends, and 3, double, its radius.
class VRN_SUITE_API Sensor : public SmartComponent {
public:
    /// `type` is PlaneSensor or SegmentSensor, or Sensor; another throws std::invalid_argument.
    Sensor(std::string_view name, sdf::ObjectType type);
    ~Sensor() override;

    /// The position of its pose.
    [[nodiscard]] rob::PosTemplate<double> getPosition() const { return getPose().position; }
};

/// The spray cone of a paint gun; properties 6 and 8, double, its diameters, 7, double, its height.
class VRN_SUITE_API SprayComponent : public SmartComponent {
public:
    explicit SprayComponent(std::string_view name);
    ~SprayComponent() override;
};

/// The smart components of the open station, nested ones too, in the order of adding. A component
/// that ends leaves by itself. Thread: as layout::Layout.
[[nodiscard]] VRN_SUITE_API const std::vector<SmartComponent*>& GetAllSmartComponents();
/// Adding a component twice does nothing, nor does removing one that is not in.
VRN_SUITE_API void AddSmartComponent(SmartComponent& component);
VRN_SUITE_API void RemoveSmartComponent(const SmartComponent& component);

}  // namespace vrn::smartcomp
