#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "suite/rob/PoseTypes.h"
#include "visual/VisualType.h"
#include "visual/VrnVisualApi.h"

namespace Ogre {
class MovableObject;
class Node;
class SceneNode;
}  // namespace Ogre

namespace vrn::sdf {
class SdfNode;
}

namespace vrn::visual {

class Scene;

/// A name that several visuals may carry at once ("Local Frame"). The engine wants unique node
/// names, so a taken one gets a suffix there; Visual::getName still answers the name as given.
struct SharedName {
    std::string text;
};

/// Base of everything shown in the viewport: one visual owns one scene node, and the tree of
/// visuals is the tree of scene nodes itself. There is no list of children: parent and children are
/// found through the nodes.
///
/// A visual is made by a class's static `Build`, entered in Scene::visuals by its builder, and
/// freed by Scene::deleteVisual; a pointer to it is valid from the one to the other. Lengths are
/// model units. Every constructor that takes a parent throws std::invalid_argument if it is null.
/// Thread: render, for every operation of the class.
class VRN_VISUAL_API Visual {
public:
    std::uint32_t id = 0;  ///< the model object's id, or a transient one
    VisualType type = VisualType::None;
    Ogre::SceneNode* node = nullptr;  ///< owned
    bool visible = true;              ///< the last value given to setVisible
    bool copied = false;              ///< a copy does not own what it shares with its source
    bool attached = false;  ///< an attached object: left out of cascades, counts and walks
    bool walkStop = false;  ///< left out of visibility cascades and of VisualIterator
    std::string material;   ///< the normal material; empty means none
    std::string selectedMaterial;
    std::string highlightedMaterial;

    /// The world visual, on the scene manager's root node, of type Root, with a transient id.
    explicit Visual(Scene* scene);
    /// Under `parent`, which must not be null, named `name`. Throws Ogre::ItemIdentityException for
    /// a name that is taken.
    Visual(std::uint32_t idIn, const std::string& name, Visual* parent);
    /// As above, with a name that others may carry too.
    Visual(std::uint32_t idIn, const SharedName& name, Visual* parent);
    /// Under `parent`; the engine chooses the name.
    Visual(std::uint32_t idIn, Visual* parent);
    /// A free node named `name`, attached to nothing, with a transient id.
    explicit Visual(const std::string& name);
    /// Under `parent`, with a transient id, named "Visual_" followed by the id.
    explicit Visual(Visual* parent);
    /// Under `parent`, with a transient id, named `name` followed directly by the id.
    Visual(const std::string& name, Visual* parent);
    /// For a model object: its id, the name "{name}_{id}", and its pose if its element has the key
    /// "pose". Throws std::bad_any_cast if that key holds something else than a pose.
    Visual(sdf::SdfNode* modelNode, Visual* parent);

    Visual(const Visual&) = delete;
    Visual& operator=(const Visual&) = delete;
    /// Destroys the node, but no children: clearChildren has to run first.
    virtual ~Visual();

    /// Refreshes the visual from its model; nothing in the base.
    virtual void update();
    /// A detached replica for previews under `parent` (null: under the scene's root), with the id
    /// of its source and in none of the scene's maps. Empty for a type that is not copied: only
    /// Manipulator, Tool, Link, Assembly, Part, Solid, Curve, Mesh and Frame are. Throws
    /// std::invalid_argument for a parent inside of what is copied.
    virtual std::optional<Visual*> copy(Visual* parent);
    /// Sums over the children that are not attached.
    [[nodiscard]] virtual std::uint32_t getBodiesNum();
    [[nodiscard]] virtual std::uint32_t getFacesNum();
    [[nodiscard]] virtual std::uint32_t getTrianglesNum();
    [[nodiscard]] virtual std::uint32_t getVerticesNum();
    /// Shows or hides what hangs on this node; with `cascade` the children too, except those that
    /// are attached, that stop walks, or whose name contains "Local Frame": these keep their own
    /// state.
    virtual void setVisible(bool show, bool cascade);
    /// Component-wise scale of the node; narrowed to float. Marks nothing dirty. Throws
    /// std::invalid_argument, and changes nothing, for a component that is not finite in single
    /// precision.
    virtual void setScale(double x, double y, double z);
    virtual void resetAppearance();
    virtual void setSelected();
    virtual void setHighlighted();
    virtual void clearHighlightOrSelect();
    /// Gives the material to every object attached to this node. An unknown name changes nothing.
    /// Objects that take no material of their own (instances, lights) are passed over.
    virtual void useMaterial(const std::string& name);

    /// Hangs `child` under this visual, keeping its local pose. Does nothing if it hangs there
    /// already. Throws std::invalid_argument for null, for itself and for one of its ancestors.
    void attachVisual(Visual* child);
    /// Takes the node of `child` out of this one; a child of another visual is left where it is.
    void detachVisual(Visual* child);
    /// parent->attachVisual(this); throws std::invalid_argument for null.
    void attachTo(Visual* parent);
    /// Out of the parent; does nothing without one.
    void detach();
    /// Null without a parent, or when the parent node belongs to no visual.
    [[nodiscard]] Visual* getParent() const;
    /// The visuals of the child nodes. The order is that of the scene node: insertion order until a
    /// child is removed, then unspecified.
    [[nodiscard]] std::vector<Visual*> getChildren() const;
    /// True directly under the root of the scene.
    [[nodiscard]] bool isTopLevel() const;
    /// Deletes the children through Scene::deleteVisual.
    void clearChildren();
    /// Deletes the children of a copy, which stand in none of the scene's maps.
    void clearCopiedChildren();
    void setAttachState(bool isAttached);

    /// Poses. Every setter marks the subtree dirty in VisualSelection, so vrn::selection::Init must
    /// have run, else std::logic_error is thrown. Rotations are normalised, a zero quaternion
    /// counts as the identity. A coordinate that is not finite throws std::invalid_argument and
    /// changes nothing. The world forms act as local ones on a visual without parent; under a
    /// parent of scale 0 on an axis the position on that axis is the parent's.
    void setPosition(const rob::PosTemplate<float>& position);
    void setPosition(float x, float y, float z);
    [[nodiscard]] rob::PosTemplate<float> getPosition() const;
    void setWorldPosition(const rob::PosTemplate<float>& position);
    [[nodiscard]] rob::PosTemplate<float> getWorldPosition() const;
    void setRotation(const rob::RotationTemplate<float>& rotation);
    [[nodiscard]] rob::RotationTemplate<float> getWorldRotation() const;
    void setOrientation(const rob::OrientTemplate<double>& orientation);
    void setPose(const rob::PoseTemplate<float>& pose);
    /// Position and rotation in the parent's frame.
    [[nodiscard]] rob::PoseTemplate<float> getPose() const;
    void setWorldPose(const rob::PoseTemplate<float>& pose);
    [[nodiscard]] rob::PoseTemplate<float> getWorldPose() const;

    /// Throws std::invalid_argument for null, and Ogre's exception for an object that hangs on a
    /// node.
    void attachObject(Ogre::MovableObject* object);
    void detachObject(Ogre::MovableObject* object);
    [[nodiscard]] bool hasAttachedObject(const std::string& objectName) const;
    [[nodiscard]] const std::string& getName() const;

    /// Stores the three names here and in all descendants; they may be names of these visuals. They
    /// take effect at the next resetAppearance, setSelected or setHighlighted.
    void setMaterial(const std::string& normal, const std::string& selected,
                     const std::string& highlighted);

    /// Writes the subtree to standard output, for debugging: a line for this visual, indented by
    /// four blanks for each level, then the children.
    void dump(unsigned indent) const;

    /// The visual bound to a scene node; null for a node that belongs to none. Throws std::bad_cast
    /// if the node carries a binding of another kind.
    static Visual* FromNode(const Ogre::Node* node);

protected:
    /// Called before a child leaves this visual, for another parent or for good: who keeps pointers
    /// to children drops them here. Nothing in the base.
    virtual void forgetChild(const Visual* child);

    /// setPose for a visual under construction: nothing is picked yet, or hangs below, that would
    /// have to learn of it.
    void placeNew(const rob::PoseTemplate<float>& pose);

private:
    void bind();
    void leaveParent();
    void checkMovable(bool finite) const;
    void markDirty();
    template <class Count>
    std::uint32_t sumOverChildren(Count count);

    std::string sharedName;  ///< the name as given where the engine's own had to differ, else empty
};

}  // namespace vrn::visual
