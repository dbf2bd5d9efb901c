#include "visual/process/PaintVisual.h"

#include <algorithm>
#include <bitset>
#include <cmath>
#include <format>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>

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

// Vectors of the compiler, on every processor that it knows. A triangle's corners go through the
// arithmetic side by side, each as it would alone, to the bit; the fourth counts for nothing.
using Floats = float __attribute__((vector_size(16)));
using Corners = rob::Vec3Template<Floats>;
using CornerSet = std::bitset<3>;

Floats Each(float value) { return Floats{value, value, value, value}; }

Corners Each(const Vec& v) { return {Each(v.x), Each(v.y), Each(v.z)}; }

template <class Triple>
Corners Gathered(const std::vector<Triple>& all, const std::uint32_t* corners) {
    const Triple &a = all[corners[0]], &b = all[corners[1]], &c = all[corners[2]];
    return {Floats{a.x, b.x, c.x, c.x}, Floats{a.y, b.y, c.y, c.y}, Floats{a.z, b.z, c.z, c.z}};
}

/// Which corners of a triangle a spray paints, with what is the same for all triangles found once.
class SprayRules {
public:
    SprayRules(const Box& sprayReach, const Cone& sprayCone, const rob::PoseTemplate<float>& spray,
               const rob::PoseTemplate<float>& painted)
        : reach(sprayReach),
          cone(sprayCone),
          apex(Each(spray.position.asVec3())),
          direction(Each(spray.rotation * Vec{0, 0, 1})),
          position(Each(painted.position.asVec3())),
          turnAxis(Each(Vec{painted.rotation.x, painted.rotation.y, painted.rotation.z})),
          turn(Each(painted.rotation.w)) {}

    /// A corner outside the box or on a surface that faces away ends its triangle, one outside the
    /// cone does not.
    [[nodiscard]] CornerSet reachedCorners(const PaintMesh& mesh,
                                           const std::uint32_t* corners) const {
        const Corners place = turned(Gathered(mesh.vertices, corners)) + position;
        const auto inBox = (place.x >= reach.min.x) & (place.x <= reach.max.x) &
                           (place.y >= reach.min.y) & (place.y <= reach.max.y) &
                           (place.z >= reach.min.z) & (place.z <= reach.max.z);
        if (!inBox[0]) return {};
        const Floats facing = direction.dot(turned(Gathered(mesh.normals, corners)));
        const Corners fromApex = place - apex;
        const Floats along = fromApex.dot(direction);
        const Floats squaredRadius = (fromApex - direction * along).squaredLength();
        // Without branches: near the rim of the cone the answers follow no pattern.
        const auto isTried = inBox & ~(facing > Each(0));
        unsigned tried = 1, reached = 0;
        for (unsigned k = 0; k < 3; ++k) {
            tried &= static_cast<unsigned>(isTried[k]);
            const auto isInCone = cone.contains(along[k], std::sqrt(squaredRadius[k]));
            reached |= (tried & static_cast<unsigned>(isInCone)) << k;
        }
        return reached;
    }

private:
    /// RotationTemplate::rotated.
    [[nodiscard]] Corners turned(const Corners& v) const {
        const Corners t = turnAxis.cross(v) * Each(2);
        return v + t * turn + turnAxis.cross(t);
    }

    Box reach;
    Cone cone;
    Corners apex, direction, position, turnAxis;
    Floats turn;
};

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
    // Told by where they hang: the mesh, and with it the name, may be another one by now.
    const auto objects = node->getAttachedObjects();
    for (Ogre::MovableObject* object : objects)
        if (object->getMovableType() == Ogre::MOT_ENTITY)
            node->getCreator()->destroyMovableObject(object);
    if (!mesh) return;
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
    auto* picking = VisualSelection::Get();
    picking->addMeshVisual(visual.get(), /*detectable=*/false, /*priority=*/false);
    visual->setVisible(target->visible, /*cascade=*/false);
    if (picking->hasVisual(target) && !picking->getObject(target)->enabled)
        picking->setObjectEnabled(visual.get(), false);
    return visual.release();
}

void PaintVisual::setVisible(bool show, bool cascade) {
    Visual::setVisible(show, cascade);
    VisualSelection::Get()->setObjectEnabled(this, show);
}

void PaintVisual::setMesh(PaintMesh* paintMesh) {
    mesh = paintMesh;
    VisualSelection::Get()->rebuild(this);
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
    if (mesh && mesh->normals.size() < mesh->vertices.size())
        throw std::out_of_range("the painted mesh has a vertex without a normal");
    const Box reach = Placed(&source).box;
    const selection::SelectableObject& painted = Placed(this);
    const SprayRules rules(reach, {nearRadius, farRadius, height}, source.getWorldPose(),
                           getWorldPose());
    std::mutex colouring;  // the list of changed vertices is shared, should a walk run in parallel

    painted.processIntersectionsWith(reach, [&](unsigned int triangle) {
        const std::uint32_t* corners = &mesh->indices[std::size_t{3} * triangle];
        const CornerSet reached = rules.reachedCorners(*mesh, corners);
        if (reached.none()) return;
        const std::lock_guard lock(colouring);
        for (unsigned k = 0; k < 3; ++k)
            if (reached[k]) mesh->setColor(corners[k], paintColor);
    });
    MeshManager::Get()->updatePaintMeshColor(mesh);
}

}  // namespace vrn::visual
