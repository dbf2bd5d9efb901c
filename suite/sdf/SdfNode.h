#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "suite/rob/PoseTypes.h"
#include "suite/sdf/Element.h"
#include "suite/sdf/ObjectType.h"
#include "suite/SuiteApi.h"

namespace vrn::sdf {

class SdfContainer;
class SdfObject;

/// What every object of the model carries.
///
/// The host owns the objects (ObjectStore helps). An object that goes out of life leaves
/// SdfManager, its container and every list of the model by itself.
/// Thread: the fields are for the host to set before the object is handed over; nothing guards
/// them.
class VRN_SUITE_API SdfNode {
public:
    SdfNode(ObjectType type, std::string_view objectName, std::string_view elementType);
    virtual ~SdfNode();
    SdfNode(const SdfNode&) = delete;
    SdfNode& operator=(const SdfNode&) = delete;

    std::uint32_t id = 0;  // 0: none yet; not to be changed while SdfManager holds the object
    ObjectType objectType;
    std::string name;
    /// The object whose visual is the parent; 0 or the station logic's id means the scene root.
    std::uint32_t parentId = 0;
    /// The object's data; never null.
    const std::shared_ptr<Element> element;

    /// The element "pose"; identity when it is absent. Throws std::bad_any_cast if it is something
    /// else.
    [[nodiscard]] rob::PoseTemplate<double> getPose() const;
    void setPose(const rob::PoseTemplate<double>& pose);
};

/// An object that holds others, in order.
class VRN_SUITE_API SdfContainer : public SdfNode {
public:
    using SdfNode::SdfNode;
    ~SdfContainer() override;

    /// The child objects, in order; none is null.
    [[nodiscard]] const std::vector<SdfObject*>& getChildren() const { return children; }
    /// Their ids.
    [[nodiscard]] std::vector<std::uint32_t> getObjChildren() const;
    /// The ids of those whose objectType is `kind` itself.
    [[nodiscard]] std::vector<std::uint32_t> getObjChildren(ObjectType kind) const;
    /// Those of class `T`, in order.
    template <class T>
    [[nodiscard]] std::vector<T*> getChildrenOf() const;

    /// Appends `child` and its element, and makes this object its parent (`parentId`). It leaves
    /// the container that it was in. The host still owns it. Throws std::invalid_argument if
    /// `child` is this object or holds it.
    void addChild(SdfObject& child);
    /// Takes `child` out; its `parentId` becomes 0. Does nothing if it is not a child.
    void removeChild(SdfObject& child);

private:
    std::vector<SdfObject*> children;
};

/// An object of the station.
class VRN_SUITE_API SdfObject : public SdfContainer {
public:
    using SdfContainer::SdfContainer;
    ~SdfObject() override;

    /// True when the object stands directly in the station (or its logic), not inside a compound.
    [[nodiscard]] bool isStandalone() const;
    /// True when the object is of that kind or of one that derives from it.
    [[nodiscard]] bool asType(ObjectType kind) const { return IsKindOf(objectType, kind); }
    /// What holds the object; null when nothing does.
    [[nodiscard]] SdfContainer* getContainer() const { return container; }

private:
    friend class SdfContainer;
    SdfContainer* container = nullptr;
};

template <class T>
std::vector<T*> SdfContainer::getChildrenOf() const {
    std::vector<T*> result;
    for (SdfObject* child : children)
        if (auto* wanted = dynamic_cast<T*>(child)) result.push_back(wanted);
    return result;
}

}  // namespace vrn::sdf
