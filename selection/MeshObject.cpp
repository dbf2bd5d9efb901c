#include "selection/MeshObject.h"

#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "visual/geometry/MeshVisual.h"

#include <OgreSceneNode.h>

namespace vrn::selection {

MeshObject::MeshObject(visual::Visual* meshVisual)
    : SelectableObject(meshVisual, ObjectKind::Mesh) {}

void MeshObject::updateWorldBox() {
    if (!worldBoxDirty) return;
    if (!bvhBuilt) {
        localBox = meshBox();
        bvhBuilt = true;
    }
    updateWorldPose();
    updateScale();
    box = visual::Box();
    // The corners of the empty box, scaled, would be those of a box round everything.
    if (localBox.isValid()) {
        for (unsigned i = 0; i < 8; ++i) {
            const rob::PosTemplate<float> corner = localBox.getCorner(i);
            box.addPoint(TransformPoint(
                worldPose, {corner.x * scale.x, corner.y * scale.y, corner.z * scale.z}));
        }
        box.updateCenter();
    }
    worldBoxDirty = false;
}

visual::Box MeshObject::meshBox() const {
    const auto* shown = dynamic_cast<const visual::MeshVisual*>(visual);
    const visual::MeshManager* manager = visual::MeshManager::Get();
    if (!shown || !manager) return {};
    const std::string name = shown->getMeshName();
    // The order in which a mesh visual itself looks for its mesh.
    if (visual::Mesh* mesh = manager->getGlobalMesh(name)) return mesh->getBox();
    return manager->hasMesh(name) ? manager->getMesh(name)->getBox() : visual::Box();
}

void MeshObject::updateScale() {
    if (!visual->node) return;
    const Ogre::Vector3& derived = visual->node->_getDerivedScale();
    scale = {derived.x, derived.y, derived.z};
}

}  // namespace vrn::selection
