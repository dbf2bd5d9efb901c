#include "visual/Visual.h"

#include <array>
#include <cmath>
#include <format>
#include <iostream>
#include <stdexcept>

#include <OgreEntity.h>
#include <OgreManualObject.h>
#include <OgreMaterialManager.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSimpleRenderable.h>

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "suite/sdf/SdfManager.h"
#include "suite/sdf/SdfNode.h"
#include "visual/FinitePose.h"
#include "visual/ModelNode.h"

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Rotation = rob::RotationTemplate<float>;
using Pose = rob::PoseTemplate<float>;

constexpr std::array copiedTypes{VisualType::Manipulator, VisualType::Tool, VisualType::Link,
                                 VisualType::Assembly,    VisualType::Part, VisualType::Solid,
                                 VisualType::Curve,       VisualType::Mesh, VisualType::Frame};

std::uint32_t TransientId() { return sdf::SdfManager::GenerateTransientId(); }

Ogre::Vector3 ToOgre(const Pos& p) { return {p.x, p.y, p.z}; }
Pos FromOgre(const Ogre::Vector3& v) { return {v.x, v.y, v.z}; }
Rotation FromOgre(const Ogre::Quaternion& q) { return {q.w, q.x, q.y, q.z}; }

Ogre::Quaternion ToOgre(const Rotation& r) {
    const Rotation unit = UnitRotation(r);
    return {unit.w, unit.x, unit.y, unit.z};
}

// The node that the node of a new visual hangs under.
Ogre::SceneNode* NodeOf(const Visual* parent) {
    if (!parent) throw std::invalid_argument("a visual needs a parent, got null");
    return parent->node;
}

std::string NodeName(const sdf::SdfNode& modelNode) {
    return std::format("{}_{}", modelNode.name, modelNode.id);
}

bool IsOrHangsUnder(const Ogre::Node* node, const Ogre::Node* above) {
    for (; node; node = node->getParent())
        if (node == above) return true;
    return false;
}

bool IsLocalFrame(const Visual* visual) {
    return visual->getName().find("Local Frame") != std::string::npos;
}

void ApplyMaterial(Ogre::MovableObject* object, const Ogre::MaterialPtr& material) {
    if (auto* entity = dynamic_cast<Ogre::Entity*>(object)) {
        entity->setMaterial(material);
    } else if (auto* simple = dynamic_cast<Ogre::SimpleRenderable*>(object)) {
        simple->setMaterial(material);
    } else if (auto* manual = dynamic_cast<Ogre::ManualObject*>(object)) {
        for (std::size_t i = 0; i < manual->getNumSections(); ++i) manual->setMaterial(i, material);
    }
}

// A parent that is flattened to nothing on an axis has no place there but its own origin.
void PlaceInWorld(Ogre::Node& node, const Pos& position) {
    Ogre::Vector3 local = node.getParent()->convertWorldToLocalPosition(ToOgre(position));
    for (std::size_t i = 0; i < 3; ++i)
        if (!std::isfinite(local[i])) local[i] = 0;
    node.setPosition(local);
}

// Ogre lets the nodes below know of a move or a new scale at the next frame only. Their places in
// the world are read before that: picking takes them once, after the move and before the frame.
void NoteParentMoved(const Ogre::Node& node) {
    for (Ogre::Node* child : node.getChildren()) {
        child->needUpdate();
        NoteParentMoved(*child);
    }
}

}  // namespace

Visual::Visual(Scene* scene)
    : id(TransientId()), type(VisualType::Root), node(scene->sceneManager->getRootSceneNode()) {
    bind();
}

Visual::Visual(std::uint32_t idIn, const std::string& name, Visual* parent)
    : id(idIn), node(NodeOf(parent)->createChildSceneNode(name)) {
    bind();
}

Visual::Visual(std::uint32_t idIn, const SharedName& name, Visual* parent) : id(idIn) {
    Ogre::SceneNode* above = NodeOf(parent);
    if (above->getCreator()->hasSceneNode(name.text)) {
        node = above->createChildSceneNode(std::format("{}_{}", name.text, TransientId()));
        sharedName = name.text;
    } else {
        node = above->createChildSceneNode(name.text);
    }
    bind();
}

Visual::Visual(std::uint32_t idIn, Visual* parent)
    : id(idIn), node(NodeOf(parent)->createChildSceneNode()) {
    bind();
}

Visual::Visual(const std::string& name)
    : id(TransientId()), node(Scene::Get()->sceneManager->createSceneNode(name)) {
    bind();
}

Visual::Visual(Visual* parent) : Visual("Visual_", parent) {}

Visual::Visual(const std::string& name, Visual* parent) : id(TransientId()) {
    node = NodeOf(parent)->createChildSceneNode(name + std::to_string(id));
    bind();
}

// Delegates, so that a pose that is refused takes the node out of the tree again.
Visual::Visual(sdf::SdfNode* modelNode, Visual* parent)
    : Visual(RequireModelNode(modelNode).id, NodeName(RequireModelNode(modelNode)), parent) {
    if (modelNode->element->get("pose")) setPose(Pose(modelNode->getPose()));
}

Visual::~Visual() {
    // The scene manager's root node is not ours to destroy; the world visual lives as long as the
    // process.
    leaveParent();
    if (type != VisualType::Root) node->getCreator()->destroySceneNode(node);
}

void Visual::forgetChild(const Visual* /*child*/) {}

void Visual::leaveParent() {
    Ogre::Node* parent = node->getParent();
    if (!parent) return;
    // Without FromNode, which throws for a node that is bound to something else.
    const Ogre::Any& bound = parent->getUserObjectBindings().getUserAny();
    if (Visual* const* visual = Ogre::any_cast<Visual*>(&bound)) (*visual)->forgetChild(this);
    parent->removeChild(node);
}

void Visual::bind() {
    node->getUserObjectBindings().setUserAny(Ogre::Any(static_cast<Visual*>(this)));
}

Visual* Visual::FromNode(const Ogre::Node* node) {
    const Ogre::Any& bound = node->getUserObjectBindings().getUserAny();
    return bound.has_value() ? Ogre::any_cast<Visual*>(bound) : nullptr;
}

void Visual::update() {}

std::optional<Visual*> Visual::copy(Visual* parent) {
    if (std::find(copiedTypes.begin(), copiedTypes.end(), type) == copiedTypes.end()) return {};
    // The copy would be copied into itself without end.
    if (parent && IsOrHangsUnder(parent->node, node))
        throw std::invalid_argument(
            std::format("copy: a copy of \"{}\" cannot hang inside of it", getName()));
    auto* replica = new Visual(getName() + "_Copied__", parent ? parent : Scene::Get()->root);
    replica->id = id;
    replica->type = type;
    replica->visible = true;
    replica->copied = true;
    for (Visual* child : getChildren()) (void)child->copy(replica);
    replica->setPose(getPose());
    return replica;
}

template <class Count>
std::uint32_t Visual::sumOverChildren(Count count) {
    std::uint32_t sum = 0;
    for (Visual* child : getChildren())
        if (!child->attached) sum += (child->*count)();
    return sum;
}

std::uint32_t Visual::getBodiesNum() { return sumOverChildren(&Visual::getBodiesNum); }
std::uint32_t Visual::getFacesNum() { return sumOverChildren(&Visual::getFacesNum); }
std::uint32_t Visual::getTrianglesNum() { return sumOverChildren(&Visual::getTrianglesNum); }
std::uint32_t Visual::getVerticesNum() { return sumOverChildren(&Visual::getVerticesNum); }

void Visual::setVisible(bool show, bool cascade) {
    node->setVisible(show, /*cascade=*/false);
    if (cascade) {
        for (Visual* child : getChildren()) {
            if (child->attached || child->walkStop || IsLocalFrame(child)) continue;
            child->setVisible(show, /*cascade=*/true);
        }
    }
    visible = show;
}

void Visual::setScale(double x, double y, double z) {
    const Pos scale{static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
    if (!IsFinite(scale))
        throw std::invalid_argument(std::format("the scale of \"{}\" must be finite", getName()));
    node->setScale(ToOgre(scale));
    NoteParentMoved(*node);
}

void Visual::resetAppearance() {
    if (!material.empty()) useMaterial(material);
}

void Visual::setSelected() {
    if (!selectedMaterial.empty()) useMaterial(selectedMaterial);
}

void Visual::setHighlighted() {
    if (!highlightedMaterial.empty()) useMaterial(highlightedMaterial);
}

void Visual::clearHighlightOrSelect() { resetAppearance(); }

void Visual::useMaterial(const std::string& name) {
    const Ogre::MaterialPtr found = Ogre::MaterialManager::getSingleton().getByName(
        name, Ogre::ResourceGroupManager::AUTODETECT_RESOURCE_GROUP_NAME);
    if (!found) return;
    for (Ogre::MovableObject* object : node->getAttachedObjects()) ApplyMaterial(object, found);
}

void Visual::attachVisual(Visual* child) {
    if (!child) throw std::invalid_argument("attachVisual: the child is null");
    if (child->node->getParent() == node) return;
    if (IsOrHangsUnder(node, child->node))
        throw std::invalid_argument(
            std::format("attachVisual: \"{}\" cannot hang under itself", child->getName()));
    child->leaveParent();
    node->addChild(child->node);
    child->markDirty();
}

void Visual::detachVisual(Visual* child) {
    if (child && child->node->getParent() == node) child->leaveParent();
}

void Visual::attachTo(Visual* parent) {
    if (!parent) throw std::invalid_argument("attachTo: the parent is null");
    parent->attachVisual(this);
}

void Visual::detach() {
    if (Visual* parent = getParent()) parent->detachVisual(this);
}

Visual* Visual::getParent() const {
    const Ogre::Node* parent = node->getParent();
    return parent ? FromNode(parent) : nullptr;
}

std::vector<Visual*> Visual::getChildren() const {
    std::vector<Visual*> children;
    children.reserve(node->getChildren().size());
    for (const Ogre::Node* child : node->getChildren())
        if (Visual* visual = FromNode(child)) children.push_back(visual);
    return children;
}

bool Visual::isTopLevel() const {
    const Ogre::SceneNode* parent = node->getParentSceneNode();
    return parent && parent == node->getCreator()->getRootSceneNode();
}

void Visual::clearChildren() {
    // Again until none is left: a destructor may hang something here. Unbound nodes do not count.
    for (auto children = getChildren(); !children.empty(); children = getChildren())
        for (Visual* child : children) {
            const auto before = node->numChildren();
            Scene::Get()->deleteVisual(child);
            // One may take a sibling along, and then what was listed is no longer there.
            if (node->numChildren() + 1 != before) break;
        }
}

void Visual::clearCopiedChildren() {
    for (Visual* child : getChildren()) {
        child->clearCopiedChildren();
        delete child;
    }
}

void Visual::setAttachState(bool isAttached) { attached = isAttached; }

void Visual::checkMovable(bool finite) const {
    if (!finite)
        throw std::invalid_argument(std::format("the pose of \"{}\" must be finite", getName()));
    if (!selection::gVisSelection)
        throw std::logic_error("vrn::selection::Init() must run before a visual is moved");
}

void Visual::markDirty() {
    checkMovable(/*finite=*/true);
    NoteParentMoved(*node);
    selection::gVisSelection->markDirty(this);
}

void Visual::setPosition(const Pos& position) {
    checkMovable(IsFinite(position));
    node->setPosition(ToOgre(position));
    markDirty();
}

void Visual::setPosition(float x, float y, float z) { setPosition(Pos{x, y, z}); }

Pos Visual::getPosition() const { return FromOgre(node->getPosition()); }

void Visual::setWorldPosition(const Pos& position) {
    if (!node->getParent())
        return setPosition(position);  // the engine's own setter would do nothing
    checkMovable(IsFinite(position));
    PlaceInWorld(*node, position);
    markDirty();
}

Pos Visual::getWorldPosition() const { return FromOgre(node->_getDerivedPosition()); }

void Visual::setRotation(const Rotation& rotation) {
    checkMovable(IsFinite(rotation));
    node->setOrientation(ToOgre(rotation));
    markDirty();
}

Rotation Visual::getWorldRotation() const { return FromOgre(node->_getDerivedOrientation()); }

void Visual::setOrientation(const rob::OrientTemplate<double>& o) {
    setRotation(Rotation(rob::RotationTemplate<double>(o.w, o.x, o.y, o.z)));
}

void Visual::setPose(const Pose& pose) {
    placeNew(pose);
    markDirty();
}

void Visual::placeNew(const Pose& pose) {
    checkMovable(IsFinite(pose));
    node->setPosition(ToOgre(pose.position));
    node->setOrientation(ToOgre(pose.rotation));
}

Pose Visual::getPose() const { return {getPosition(), FromOgre(node->getOrientation())}; }

void Visual::setWorldPose(const Pose& pose) {
    if (!node->getParent()) return setPose(pose);
    checkMovable(IsFinite(pose));
    PlaceInWorld(*node, pose.position);
    node->_setDerivedOrientation(ToOgre(pose.rotation));
    markDirty();
}

Pose Visual::getWorldPose() const { return {getWorldPosition(), getWorldRotation()}; }

void Visual::attachObject(Ogre::MovableObject* object) {
    if (!object) throw std::invalid_argument("attachObject: the object is null");
    node->attachObject(object);
}

void Visual::detachObject(Ogre::MovableObject* object) { node->detachObject(object); }

bool Visual::hasAttachedObject(const std::string& objectName) const {
    for (const Ogre::MovableObject* object : node->getAttachedObjects())
        if (object->getName() == objectName) return true;
    return false;
}

const std::string& Visual::getName() const {
    return sharedName.empty() ? node->getName() : sharedName;
}

void Visual::setMaterial(const std::string& normal, const std::string& selected,
                         const std::string& highlighted) {
    // Copied before anything is stored: an argument may be a name of this visual or of one below
    // it.
    const std::array names{normal, selected, highlighted};
    material = names[0];
    selectedMaterial = names[1];
    highlightedMaterial = names[2];
    for (Visual* child : getChildren()) child->setMaterial(names[0], names[1], names[2]);
}

void Visual::dump(unsigned indent) const {
    const std::string blanks(4 * indent, ' ');
    std::cout << blanks << "Visual : " << getName() << " id: " << id
              << " type: " << static_cast<int>(type) << '\n';
    const std::vector<Visual*> children = getChildren();
    if (children.empty()) return;
    std::cout << blanks << "  children:\n";
    for (const Visual* child : children) child->dump(indent + 1);
}

}  // namespace vrn::visual
