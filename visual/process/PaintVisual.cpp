#include "visual/process/PaintVisual.h"

#include <algorithm>
#include <format>
#include <memory>
#include <mutex>
#include <optional>

#include <OgreEntity.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "engine/Scene.h"
#include "mesh/MeshManager.h"
#include "selection/Cone.h"
#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "visual/geometry/FacetVisual.h"
#include "visual/process/SprayVisual.h"

namespace vrn::visual {

namespace {

using Vec = rob::Vec3Template<float>;
using selection::VisualSelection;

/// What the look of paint takes for covered.
constexpr float covered = 255.0f;
/// Behind the surfaces, also selected ones.
constexpr unsigned char paintQueueGroup = 52;

SprayVisual& FindSpray(std::uint32_t id) {
    const auto found = Scene::Get()->visuals.find(id);
    auto* spray =
        found == Scene::Get()->visuals.end() ? nullptr : dynamic_cast<SprayVisual*>(found->second);
    if (!spray) throw std::bad_optional_access();
    return *spray;
}

/// The object as it is now, and not as the last update found it.
selection::SelectableObject& Placed(Visual* visual) {
    selection::SelectableObject* object = VisualSelection::Get()->getObject(visual);
    object->updateWorldBox();
    return *object;
}

/// A copy of the target's mesh under a name that no other mesh has.
std::unique_ptr<PaintMesh> MakePaintMesh(FacetVisual& target, std::uint32_t ownId) {
    std::unique_ptr<PaintMesh> mesh(MeshManager::Get()->createPaintMesh(&target));
    if (MeshManager::Get()->hasMesh(mesh->name)) mesh->name += std::format("_{}", ownId);
    return mesh;
}

}  // namespace

PaintVisual::PaintVisual(Visual* parent, std::uint32_t sprayId)
    : Visual("paint", parent), sprayRefs{sprayId}, paintColor{0, 0, 0, covered} {
    type = VisualType::Paint;
}

PaintVisual::~PaintVisual() {
    if (!mesh) return;
    Ogre::SceneManager* engine = node->getCreator();
    if (engine->hasMovableObject(mesh->name, Ogre::MOT_ENTITY))
        engine->destroyMovableObject(mesh->name, Ogre::MOT_ENTITY);
    const MeshManager& manager = *MeshManager::Get();
    if (!copied && manager.hasMesh(mesh->name) && manager.getMesh(mesh->name) == mesh)
        MeshManager::Get()->deleteMesh(mesh);
}

PaintVisual* PaintVisual::Build(Visual* target, std::uint32_t sprayId) {
    auto& facet = dynamic_cast<FacetVisual&>(*target);
    auto visual = std::make_unique<PaintVisual>(target, sprayId);
    std::unique_ptr<PaintMesh> mesh = MakePaintMesh(facet, visual->id);
    MeshManager::Get()->addPaintMesh(mesh.get());
    visual->setMesh(mesh.release());
    const std::string& name = visual->mesh->name;
    Ogre::Entity* entity =
        visual->node->getCreator()->createEntity(name, name, Ogre::RGN_AUTODETECT);
    entity->setRenderQueueGroup(paintQueueGroup);
    visual->attachObject(entity);
    visual->setMaterial("Spray", "", "");
    visual->resetAppearance();
    Scene::Get()->visuals[visual->id] = visual.get();
    VisualSelection::Get()->addMeshVisual(visual.get(), /*detectable=*/false, /*priority=*/false);
    return visual.release();
}

void PaintVisual::setPaintColor(float r, float g, float b) { paintColor = {r, g, b, covered}; }

void PaintVisual::addSprayRef(std::uint32_t sprayId) { sprayRefs.push_back(sprayId); }

void PaintVisual::removeSprayRef(std::uint32_t sprayId) { std::erase(sprayRefs, sprayId); }

void PaintVisual::reset() {
    if (!mesh) return;
    for (unsigned i = 0; i < mesh->vertexColors.size(); ++i) {
        Color color = mesh->vertexColors[i];
        color.a = 0;
        mesh->setColor(i, color);
    }
    MeshManager::Get()->updatePaintMeshColor(mesh);
}

void PaintVisual::spray(std::uint32_t sprayId, double nearRadius, double farRadius, double height) {
    SprayVisual& source = FindSpray(sprayId);
    const Box reach = Placed(&source).box;
    const selection::SelectableObject& painted = Placed(this);
    const rob::PoseTemplate<float> sprayPose = source.getWorldPose(), ownPose = getWorldPose();
    const Vec sprayDirection = sprayPose.rotation * Vec{0, 0, 1};
    const Cone cone{nearRadius, farRadius, height};
    std::mutex colouring;  // the list of changed vertices is shared, should a walk run in parallel

    painted.processIntersectionsWith(reach, [&](unsigned int triangle) {
        for (unsigned k = 0; k < 3; ++k) {
            const std::uint32_t v = mesh->indices[3 * triangle + k];
            const Vec place =
                ownPose.rotation * mesh->vertices[v].asVec3() + ownPose.position.asVec3();
            if (!reach.isPointInside(place.x, place.y, place.z)) return;
            const Vec normal = ownPose.rotation * mesh->normals[v];
            if (sprayDirection.dot(normal) > 0) return;
            if (!cone.isPointInside(sprayPose, place)) continue;
            const std::lock_guard lock(colouring);
            mesh->setColor(v, paintColor);
        }
    });
    MeshManager::Get()->updatePaintMeshColor(mesh);
}

}  // namespace vrn::visual
