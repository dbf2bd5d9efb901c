#include "suite/sdf/SdfNode.h"

#include "suite/sdf/SdfManager.h"

#include <algorithm>
#include <stdexcept>

namespace vrn::sdf {

namespace {

/// The kind right above `type`; None where there is none.
ObjectType BaseKind(ObjectType type) {
    switch (type) {
        case ObjectType::SegmentSensor:
        case ObjectType::PlaneSensor:
            return ObjectType::Sensor;
        case ObjectType::LinearMove:
        case ObjectType::CircularMove:
        case ObjectType::JointMove:
            return ObjectType::MoveInstruction;
        default:
            return ObjectType::None;
    }
}

}  // namespace

bool IsKindOf(ObjectType type, ObjectType kind) {
    if (type == kind) return true;
    const ObjectType base = BaseKind(type);
    return base != ObjectType::None && base == kind;
}

SdfNode::SdfNode(ObjectType type, std::string_view objectName, std::string_view elementType)
    : objectType(type), name(objectName), element(Element::Make(elementType)) {}

SdfNode::~SdfNode() { SdfManager::inst()->remove(*this); }

rob::PoseTemplate<double> SdfNode::getPose() const {
    const auto pose = element->get("pose");
    return pose ? pose->asPose("") : rob::PoseTemplate<double>{};
}

void SdfNode::setPose(const rob::PoseTemplate<double>& pose) { element->set("pose", pose); }

SdfContainer::~SdfContainer() {
    for (SdfObject* child : children) {
        child->container = nullptr;
        child->element->detach();
    }
}

std::vector<std::uint32_t> SdfContainer::getObjChildren() const {
    std::vector<std::uint32_t> ids;
    ids.reserve(children.size());
    for (const SdfObject* child : children) ids.push_back(child->id);
    return ids;
}

std::vector<std::uint32_t> SdfContainer::getObjChildren(ObjectType kind) const {
    std::vector<std::uint32_t> ids;
    for (const SdfObject* child : children)
        if (child->objectType == kind) ids.push_back(child->id);
    return ids;
}

void SdfContainer::addChild(SdfObject& child) {
    element->append(child.element);  // refuses cycles, before anything has changed
    if (child.container) std::erase(child.container->children, &child);
    child.container = this;
    child.parentId = id;
    children.push_back(&child);
}

void SdfContainer::removeChild(SdfObject& child) {
    if (child.container != this) return;
    std::erase(children, &child);
    child.container = nullptr;
    child.parentId = 0;
    child.element->detach();
}

SdfObject::~SdfObject() {
    if (container) container->removeChild(*this);
}

bool SdfObject::isStandalone() const {
    return !container || container->objectType == ObjectType::StationLogic;
}

}  // namespace vrn::sdf
