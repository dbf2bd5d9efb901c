#include "selection/SelectableObject.h"

#include "selection/BVHBuilder.h"
#include "selection/BVHNode.h"
#include "selection/PoseInverse.h"
#include "visual/Visual.h"

#include <stdexcept>

namespace vrn::selection {

SelectableObject::SelectableObject(visual::Visual* shown, ObjectKind objectKind)
    : visual(shown), kind(objectKind) {
    if (!shown) throw std::invalid_argument("a selectable object needs a visual");
}

std::string SelectableObject::getName() const { return {}; }

void SelectableObject::updateWorldPose() {
    worldPose = visual->getWorldPose();
    inverseWorldPose = InverseOf(worldPose);
}

void SelectableObject::updatePlace() {
    updateWorldPose();
    // Without a root there is no box to read: the object keeps an empty one, so that no query
    // meets it.
    box = tree.root ? tree.root->box.transformed(worldPose) : visual::Box();
    worldBoxDirty = false;
}

void SelectableObject::clearPrimitives() {
    tree = BVHTree();
    for (BVHPrimitive* primitive : primitives) delete primitive;
    primitives.clear();
}

void SelectableObject::buildTree() { tree = BVHBuilder(this).build(); }

}  // namespace vrn::selection
