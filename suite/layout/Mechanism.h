#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "suite/layout/Frame.h"
#include "suite/sdf/SdfNode.h"
#include "suite/SuiteApi.h"

namespace vrn::layout {

/// One moving link of a mechanism; its parts and assemblies are its children.
class VRN_SUITE_API Link : public sdf::SdfObject {
public:
    explicit Link(std::string_view name);
    ~Link() override;
};

/// A bare node of a mechanism, with id and pose, for others to hang on.
class VRN_SUITE_API MechanismNode : public sdf::SdfObject {
public:
    explicit MechanismNode(std::string_view name);
    ~MechanismNode() override;
};

/// The mounting point of a manipulator; its `parentId` is the link that carries it.
class VRN_SUITE_API Wrist : public sdf::SdfObject {
public:
    explicit Wrist(std::string_view name);
    ~Wrist() override;
};

/// The base frame that a manipulator's program refers to.
class VRN_SUITE_API BaseFrame : public sdf::SdfObject {
public:
    explicit BaseFrame(std::string_view name);
    ~BaseFrame() override;
};

/// A station object made of links. What is added is a child, and the mechanism its parent, unless a
/// carrier is named. Lists are in the order of adding, without nulls.
class VRN_SUITE_API Mechanism : public sdf::SdfObject {
public:
    void addLink(Link& link) { addChild(link); }
    void addNode(MechanismNode& node) { addChild(node); }

    [[nodiscard]] std::vector<Link*> links() const;
    [[nodiscard]] std::vector<MechanismNode*> nodes() const;

protected:
    using SdfObject::SdfObject;
    /// Adds `child`, carried by the object of id `carrierId`.
    void addCarried(sdf::SdfObject& child, std::uint32_t carrierId);
};

/// A robot arm. Its element carries "vendor" ("abb", "kuka", "fanuc", "yaskawa" or another text).
class VRN_SUITE_API Manipulator : public Mechanism {
public:
    explicit Manipulator(std::string_view name, const std::string& vendor = "");
    ~Manipulator() override;

    /// The wrist, carried by `carrier`; takes the place of an earlier one.
    void setWrist(Wrist& wrist, const sdf::SdfNode& carrier);
    /// Null when none was set.
    [[nodiscard]] Wrist* wrist() const;

    /// The base frame, its pose in the world; takes the place of an earlier one.
    void setBaseObject(BaseFrame& base);
    /// Null when none was set.
    [[nodiscard]] BaseFrame* baseObject() const;
};

/// A tool; its frames hang on it.
class VRN_SUITE_API Tool : public Mechanism {
public:
    explicit Tool(std::string_view name);
    ~Tool() override;

    void addFrame(Frame& frame) { addChild(frame); }
    [[nodiscard]] std::vector<Frame*> frames() const;
};

/// A device, as a positioner; each of its frames is carried by one of its links or by itself.
class VRN_SUITE_API Device : public Mechanism {
public:
    explicit Device(std::string_view name);
    ~Device() override;

    void addFrame(Frame& frame, const sdf::SdfNode& carrier) { addCarried(frame, carrier.id); }
    [[nodiscard]] std::vector<Frame*> frames() const;
};

}  // namespace vrn::layout
