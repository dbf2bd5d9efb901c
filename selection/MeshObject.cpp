#include "selection/MeshObject.h"

#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "mesh/PaintMesh.h"
#include "selection/BVHNode.h"
#include "selection/Ray.h"
#include "selection/SensitiveMesh.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/process/PaintVisual.h"

#include <OgreSceneNode.h>

#include <cmath>
#include <memory>
#include <stdexcept>

namespace vrn::selection {

MeshObject::MeshObject(visual::Visual* meshVisual)
    : SelectableObject(meshVisual, ObjectKind::Mesh) {}

visual::Mesh* MeshObject::findMesh() const {
    if (const auto* paint = dynamic_cast<const visual::PaintVisual*>(visual))
        return paint->getMesh();
    const auto* shown = dynamic_cast<const visual::MeshVisual*>(visual);
    const visual::MeshManager* manager = visual::MeshManager::Get();
    if (!shown || !manager) return nullptr;
    const std::string name = shown->getMeshName();
    // The order in which a mesh visual itself looks for its mesh.
    if (visual::Mesh* mesh = manager->getGlobalMesh(name)) return mesh;
    return manager->hasMesh(name) ? manager->getMesh(name) : nullptr;
}

void MeshObject::buildBVH() {
    clearPrimitives();
    if (visual::Mesh* mesh = findMesh()) {
        auto sensitive = std::make_unique<SensitiveMesh>(mesh, visual, rob::PoseTemplate<float>());
        primitives.push_back(sensitive.get());
        (void)sensitive.release();
    }
    buildTree();
}

void MeshObject::prepareBuild() {
    if (visual::Mesh* mesh = findMesh()) static_cast<void>(mesh->getBox());
}

void MeshObject::updateWorldBox() {
    if (!worldBoxDirty) return;
    if (!bvhBuilt) {
        buildBVH();
        bvhBuilt = true;
    }
    updateWorldPose();
    updateScale();
    box = visual::Box();
    // The corners of the empty box, scaled, would be those of a box round everything.
    if (tree.root && tree.root->box.isValid()) {
        for (unsigned i = 0; i < 8; ++i) box.addPoint(scaledToWorld(tree.root->box.getCorner(i)));
        box.updateCenter();
    }
    worldBoxDirty = false;
}

void MeshObject::updateScale() {
    scale = {1, 1, 1};
    if (!visual->node) return;
    const Ogre::Vector3& derived = visual->node->_getDerivedScale();
    scale = {derived.x, derived.y, derived.z};
}

rob::PosTemplate<float> MeshObject::unscaled(const rob::PosTemplate<float>& p) const {
    return {p.x / scale.x, p.y / scale.y, p.z / scale.z};
}

rob::PosTemplate<float> MeshObject::scaledToWorld(const rob::PosTemplate<float>& p) const {
    return toWorld({p.x * scale.x, p.y * scale.y, p.z * scale.z});
}

Result MeshObject::intersect(const visual::Ray& ray) {
    visual::Ray local = ray.transformed(inverseWorldPose);
    local.origin = unscaled(local.origin);
    const rob::Vec3Template<float> direction{
        local.direction.x / scale.x, local.direction.y / scale.y, local.direction.z / scale.z};
    const float length = direction.length();
    // A mesh that is flattened to nothing on an axis makes this infinite or NaN: such a ray goes on
    // and hits nothing.
    if (static_cast<double>(length) <= rob::zeroLength)
        throw std::overflow_error("0-length vector cannot be normalized.");
    local.direction = {direction.x / length, direction.y / length, direction.z / length};
    local.maxDistance /= length;
    Result result = bvhIntersect(local);
    if (result.hit) result.position = scaledToWorld(result.position);
    return result;
}

Result MeshObject::intersect(const rob::TriangleTemplate<float>& triangle) {
    const rob::TriangleTemplate<float> local = triangle.transformed(inverseWorldPose);
    Result result = bvhIntersect(
        rob::TriangleTemplate<float>{unscaled(local.p0), unscaled(local.p1), unscaled(local.p2)});
    if (!result.hit) return result;
    result.position = scaledToWorld(result.position);
    result.visual = visual;
    return result;
}

Result MeshObject::intersect(const rob::LineTemplate<float>& line) {
    rob::LineTemplate<float> local = line.transformed(inverseWorldPose);
    local = {unscaled(local.start), unscaled(local.end)};
    // A mesh that is flattened to nothing on an axis has no line in its units, and is never hit.
    if (!std::isfinite((local.end - local.start).length())) return {};
    Result result = bvhIntersect(local);
    if (!result.hit) return result;
    result.position = scaledToWorld(result.position);
    result.visual = visual;
    return result;
}

void MeshObject::processIntersectionsWith(const visual::Box& region,
                                          std::function<void(unsigned int)> visit) const {
    forEachIntersection(region.transformed(inverseWorldPose), std::move(visit));
}

}  // namespace vrn::selection
