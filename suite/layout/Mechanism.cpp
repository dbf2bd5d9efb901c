#include "suite/layout/Mechanism.h"

#include "suite/layout/Layout.h"

namespace vrn::layout {

namespace {

template <class T>
T* FirstOf(const std::vector<T*>& list) {
    return list.empty() ? nullptr : list.front();
}

}  // namespace

Link::Link(std::string_view linkName) : SdfObject(sdf::ObjectType::Link, linkName, "link") {}
Link::~Link() { Layout::inst()->forget(id); }

MechanismNode::MechanismNode(std::string_view nodeName)
    : SdfObject(sdf::ObjectType::MechanismNode, nodeName, "node") {}
MechanismNode::~MechanismNode() { Layout::inst()->forget(id); }

Wrist::Wrist(std::string_view wristName) : SdfObject(sdf::ObjectType::Wrist, wristName, "wrist") {}
Wrist::~Wrist() { Layout::inst()->forget(id); }

BaseFrame::BaseFrame(std::string_view frameName)
    : SdfObject(sdf::ObjectType::Frame, frameName, "base_frame") {}
BaseFrame::~BaseFrame() { Layout::inst()->forget(id); }

std::vector<Link*> Mechanism::links() const { return getChildrenOf<Link>(); }

std::vector<MechanismNode*> Mechanism::nodes() const { return getChildrenOf<MechanismNode>(); }

void Mechanism::addCarried(sdf::SdfObject& child, std::uint32_t carrierId) {
    addChild(child);
    child.parentId = carrierId;
}

Manipulator::Manipulator(std::string_view robotName, const std::string& vendor)
    : Mechanism(sdf::ObjectType::Manipulator, robotName, "manipulator") {
    element->set("vendor", vendor);
}
Manipulator::~Manipulator() { Layout::inst()->remove(*this); }

void Manipulator::setWrist(Wrist& newWrist, const sdf::SdfNode& carrier) {
    if (Wrist* earlier = wrist()) removeChild(*earlier);
    addCarried(newWrist, carrier.id);
}

Wrist* Manipulator::wrist() const { return FirstOf(getChildrenOf<Wrist>()); }

void Manipulator::setBaseObject(BaseFrame& base) {
    if (BaseFrame* earlier = baseObject()) removeChild(*earlier);
    addChild(base);
}

BaseFrame* Manipulator::baseObject() const { return FirstOf(getChildrenOf<BaseFrame>()); }

Tool::Tool(std::string_view toolName) : Mechanism(sdf::ObjectType::Tool, toolName, "tool") {}
Tool::~Tool() { Layout::inst()->remove(*this); }
std::vector<Frame*> Tool::frames() const { return getChildrenOf<Frame>(); }

Device::Device(std::string_view deviceName)
    : Mechanism(sdf::ObjectType::Device, deviceName, "device") {}
Device::~Device() { Layout::inst()->remove(*this); }
std::vector<Frame*> Device::frames() const { return getChildrenOf<Frame>(); }

}  // namespace vrn::layout
