// Sprays, and the paint that they leave.

#include <deque>
#include <ranges>
#include <string>
#include <vector>

#include "engine/Scene.h"
#include "engine/scene/StaleMeshes.h"
#include "mesh/MeshManager.h"
#include "suite/sdf/SdfNode.h"
#include "visual/geometry/FacetVisual.h"
#include "visual/process/PaintVisual.h"
#include "visual/process/SprayVisual.h"

namespace vrn::visual {

namespace {

// The visual of that id with all below it, breadth-first; nothing for an unknown id. A list, since
// what is done to its visuals may change the tree.
std::vector<Visual*> SubtreeOf(const Scene& scene, unsigned int id) {
    std::vector<Visual*> all;
    const auto top = scene.visuals.find(id);
    if (top == scene.visuals.end()) return all;
    std::deque<Visual*> pending{top->second};
    while (!pending.empty()) {
        Visual* visual = pending.front();
        pending.pop_front();
        all.push_back(visual);
        for (Visual* child : visual->getChildren()) pending.push_back(child);
    }
    return all;
}

std::vector<PaintVisual*> PaintBelow(const Scene& scene, unsigned int id) {
    std::vector<PaintVisual*> paints;
    for (Visual* visual : SubtreeOf(scene, id))
        if (visual->type == VisualType::Paint)
            if (auto* paint = dynamic_cast<PaintVisual*>(visual)) paints.push_back(paint);
    return paints;
}

PaintVisual* PaintOn(const Visual* visual) {
    for (Visual* child : visual->getChildren())
        if (auto* paint = dynamic_cast<PaintVisual*>(child)) return paint;
    return nullptr;
}

// Solids and built-in meshes keep no triangles that could be copied. Without normals there is no
// telling what faces a spray.
bool IsPaintable(const Visual* visual) {
    if (visual->type != VisualType::Mesh) return false;
    const auto* facet = dynamic_cast<const FacetVisual*>(visual);
    if (!facet || !MeshManager::Get()->hasMesh(facet->getMeshName())) return false;
    const Mesh* mesh = MeshManager::Get()->getMesh(facet->getMeshName());
    return mesh->normals.size() == mesh->vertices.size();
}

}  // namespace

void Scene::createPaintVisual(unsigned int target, unsigned int sprayId) {
    post([this, target, sprayId] { doCreatePaintVisual(target, sprayId); });
}

void Scene::doCreatePaintVisual(unsigned int target, unsigned int sprayId) {
    for (Visual* visual : SubtreeOf(*this, target)) {
        if (!IsPaintable(visual)) continue;
        if (PaintVisual* paint = PaintOn(visual))
            paint->addSprayRef(sprayId);
        else
            PaintVisual::Build(visual, sprayId);
    }
}

void Scene::removePaintVisual(unsigned int target, unsigned int sprayId) {
    post([this, target, sprayId] { doRemovePaintVisual(target, sprayId); });
}

void Scene::doRemovePaintVisual(unsigned int target, unsigned int sprayId) {
    // From below: with a paint goes what a host has hung under it, other paint among that.
    for (PaintVisual* paint : std::views::reverse(PaintBelow(*this, target))) {
        paint->removeSprayRef(sprayId);
        if (paint->getSprayRefsCount() == 0) deleteVisual(paint);
    }
}

void Scene::spray(unsigned int sprayId, unsigned int target,
                  const rob::PoseTemplate<double>& /*pose*/, double a, double b, double height) {
    post([this, sprayId, target, a, b, height] { doSpray(sprayId, target, a, b, height); });
}

void Scene::doSpray(unsigned int sprayId, unsigned int target, double a, double b, double height) {
    for (PaintVisual* paint : PaintBelow(*this, target))
        paint->spray(sprayId, a * 0.5, b * 0.5, height);
}

void Scene::resetSpray(unsigned int target) {
    post([this, target] { doResetSpray(target); });
}

void Scene::doResetSpray(unsigned int target) {
    for (PaintVisual* paint : PaintBelow(*this, target)) paint->reset();
}

void Scene::setPaintColor(unsigned int target, float r, float g, float b) {
    post([this, target, r, g, b] { doSetPaintColor(target, r, g, b); });
}

void Scene::doSetPaintColor(unsigned int target, float r, float g, float b) {
    for (PaintVisual* paint : PaintBelow(*this, target)) paint->setPaintColor(r, g, b);
}

void Scene::rebuildSprayVisual(sdf::SdfNode* modelNode) {
    post([this, modelNode] { doRebuildSprayVisual(modelNode); });
}

void Scene::doRebuildSprayVisual(sdf::SdfNode* modelNode) {
    Visual* parent = resolveParentVisual(modelNode);
    const std::string meshName = SolidMeshName(visuals.at(modelNode->id));
    doRemoveVisual(modelNode->id);
    DropStaleMeshes(*this, meshName);
    SprayVisual::Build(parent, modelNode);
}

}  // namespace vrn::visual
