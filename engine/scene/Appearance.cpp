// Highlight, selection, materials, collision marks, colours.

#include <algorithm>
#include <stdexcept>

#include <OgreSceneNode.h>

#include "engine/Scene.h"
#include "engine/scene/NotedVisual.h"
#include "suite/sdf/SdfManager.h"
#include "suite/task/DataItem.h"
#include "suite/task/Operation.h"
#include "suite/task/Task.h"
#include "visual/geometry/FacetVisual.h"
#include "visual/geometry/MarkVisual.h"
#include "visual/geometry/PointCloudVisual.h"
#include "visual/VisualIterator.h"

namespace vrn::visual {

namespace {

bool HasPicture(const Visual* visual) { return visual->node->numAttachedObjects() > 0; }

void CollectBodiesBelow(const Visual* visual, std::vector<NotedVisual>& bodies) {
    for (Visual* child : visual->getChildren()) {
        const bool isBody = child->type == VisualType::Solid || child->type == VisualType::Mesh;
        const bool isMark = dynamic_cast<const MarkVisual*>(child) != nullptr;
        if (isBody && !isMark && HasPicture(child)) bodies.emplace_back(child);
        CollectBodiesBelow(child, bodies);
    }
}

// The bodies that a collision with `visual` marks: a solid itself, solids and meshes below it, but
// no mark that hangs there.
void CollectBodies(Visual* visual, std::vector<NotedVisual>& bodies) {
    if (visual->type == VisualType::Solid && HasPicture(visual)) bodies.emplace_back(visual);
    CollectBodiesBelow(visual, bodies);
}

// A task that names itself, or another one, as its robot would be gone through without end.
bool IsGroupOfObjects(std::uint32_t id) {
    const sdf::SdfNode* object = sdf::SdfManager::inst()->find(id);
    return dynamic_cast<const task::Task*>(object) || dynamic_cast<const task::Operation*>(object);
}

template <class Action>
void ForEachBody(Visual* visual, Action action) {
    for (ForestIterator<Visual> it(visual); it.next();)
        if (auto* body = dynamic_cast<FacetVisual*>(it.value())) action(body);
}

}  // namespace

// --- highlight

void Scene::setVisualHighlighted(Visual* visual) {
    if (visual && visual == highlightedVisual) return;
    clearHighlightedVisual();
    if (!visual || isSelected(visual)) return;
    highlightedVisual = visual;
    post([this, noted = NotedVisual(visual)] {
        if (IsPresent(*this, noted)) doSetLayer(noted.visual, VisualStateLayer::Highlighted, true);
    });
}

void Scene::setVisualHighlighted(std::uint32_t id) { setVisualHighlighted(visuals.at(id)); }

void Scene::clearHighlightedVisual() {
    clearHighlightedFace();
    clearHighlightedEdge();
    clearHighlightedBody();
}

void Scene::clearHighlightedBody() {
    Visual* visual = std::exchange(highlightedVisual, nullptr);
    if (!visual) return;
    post([this, visual] {
        // A visual that was removed meanwhile has no layers any more: its pointer is not followed.
        if (stateManager->hasLayer(visual, VisualStateLayer::Highlighted))
            doSetLayer(visual, VisualStateLayer::Highlighted, false);
    });
}

// --- selection

bool Scene::isSelected(const Visual* visual) const {
    if (selectedVisuals.empty()) return false;
    for (const Visual* v = visual; v; v = v->getParent()) {
        if (std::find(selectedVisuals.begin(), selectedVisuals.end(), v->id) !=
            selectedVisuals.end())
            return true;
        if (v->isTopLevel()) return false;
    }
    return false;
}

void Scene::setVisualSelected(std::uint32_t id) {
    clearHighlightedVisual();
    clearSelections();
    post([this, id] {
        doSelectVisual(id);
        setBorderHighlightEnabled(true);
    });
}

void Scene::setVisualSelected(Visual* visual) {
    if (!visual) throw std::invalid_argument("setVisualSelected: the visual is null");
    setVisualSelected(visual->id);
}

void Scene::setVisualsSelected(const std::vector<std::uint32_t>& ids) {
    clearHighlightedVisual();
    clearSelections();
    post([this, ids] {
        for (const std::uint32_t id : ids) doSelectVisual(id);
        setBorderHighlightEnabled(true);
    });
}

void Scene::doSelectVisual(std::uint32_t id) {
    const auto found = visuals.find(id);
    if (found == visuals.end()) return doSelectModelObject(id);
    selectedVisuals.push_back(id);
    doSetLayer(found->second, VisualStateLayer::Selected, true);
}

// What has no visual of its own stands for the objects that it is made of.
void Scene::doSelectModelObject(std::uint32_t id) {
    sdf::SdfNode* object = sdf::SdfManager::inst()->at(id);
    if (const auto* job = dynamic_cast<task::Task*>(object)) {
        const auto selectEach = [this](const auto& items) {
            for (const auto* item : items) doSelectVisual(item->id);
        };
        selectEach(job->getPaths());
        selectEach(job->getToolDataItems());
        selectEach(job->getWObjDataItems());
        selectEach(job->getJointTargetDataItems());
        const std::uint32_t robot = job->getManipulatorId();
        if (robot != 0 && !IsGroupOfObjects(robot)) doSelectVisual(robot);
    } else if (const auto* operation = dynamic_cast<task::Operation*>(object)) {
        for (const std::uint32_t child : operation->getObjChildren()) doSelectVisual(child);
    }
}

void Scene::clearSelections() {
    clearSelectedFaces();
    clearSelectedVisuals();
}

void Scene::clearSelectedVisuals() {
    post([this] {
        doClearSelectedVisuals();
        setBorderHighlightEnabled(false);
    });
}

void Scene::selectPointCloud(
    const std::unordered_map<unsigned int, std::vector<unsigned long>>& indices) {
    clearHighlightedVisual();
    clearSelections();
    for (const auto& [id, selected] : indices)
        postToVisual(id, [this, selected](Visual* visual) {
            dynamic_cast<PointCloudVisual&>(*visual).setSelectedIndices(selected);
            selectedVisuals.push_back(visual->id);
        });
}

void Scene::doClearSelectedVisuals() {
    // Emptied first: while a compound is put back it asks what is selected.
    for (const std::uint32_t id : std::exchange(selectedVisuals, {})) {
        const auto found = visuals.find(id);
        if (found != visuals.end()) doSetLayer(found->second, VisualStateLayer::Selected, false);
    }
}

void Scene::doSetLayer(Visual* visual, VisualStateLayer layer, bool on,
                       const std::string& materialName) {
    stateManager->setLayer(visual, layer, on, materialName);
    stateManager->refresh(visual);
}

// --- materials

void Scene::bodyVisualUseMaterial(std::uint32_t id, const std::string& materialName) {
    post([this, noted = NotedVisual(visuals.at(id)), materialName] {
        if (IsPresent(*this, noted))
            doSetLayer(noted.visual, VisualStateLayer::Material, true, materialName);
    });
}

void Scene::bodyVisualUseDefaultMaterial(std::uint32_t id) {
    post([this, noted = NotedVisual(visuals.at(id))] {
        if (IsPresent(*this, noted)) doSetLayer(noted.visual, VisualStateLayer::Material, false);
    });
}

// --- collision

void Scene::setVisualCollisionEmphasizeState(std::uint32_t id, VisualCollisionState state) {
    post([this, noted = NotedVisual(visuals.at(id)), state] {
        if (!IsPresent(*this, noted)) return;
        stateManager->setLayer(noted.visual, VisualStateLayer::EmphasizeGroupA,
                               state == VisualCollisionState::GroupA, {});
        stateManager->setLayer(noted.visual, VisualStateLayer::EmphasizeGroupB,
                               state == VisualCollisionState::GroupB, {});
        stateManager->refresh(noted.visual);
    });
}

void Scene::clearVisualCollisionEmphasizeState(std::uint32_t id) {
    setVisualCollisionEmphasizeState(id, VisualCollisionState::None);
}

void Scene::setCollision(std::uint32_t id, bool on) {
    std::vector<NotedVisual> bodies;
    CollectBodies(visuals.at(id), bodies);
    post([this, bodies, on] {
        for (const NotedVisual& body : bodies)
            if (IsPresent(*this, body)) doSetLayer(body.visual, VisualStateLayer::Contact, on);
    });
}

void Scene::setCollisionHighlights(const std::vector<std::uint32_t>& ids, bool on) {
    std::vector<NotedVisual> bodies;
    for (const std::uint32_t id : ids) CollectBodies(visuals.at(id), bodies);
    post([this, bodies, on] {
        for (const NotedVisual& body : bodies)
            if (IsPresent(*this, body)) doSetLayer(body.visual, VisualStateLayer::NearMiss, on);
    });
}

void Scene::clearAllCollisionContacts() {
    post([this] { stateManager->clearLayer(VisualStateLayer::Contact); });
}

// --- colours

void Scene::setVisualColor(std::uint32_t id, const rob::ColorTemplate<float>& color, float alpha) {
    postToVisual(id, [this, color, alpha](Visual* visual) { doSetColor(visual, color, alpha); });
}

void Scene::setVisualColor(Visual* visual, const rob::ColorTemplate<float>& color, float alpha) {
    post([this, visual, color, alpha] { doSetColor(visual, color, alpha); });
}

void Scene::doSetColor(Visual* visual, const rob::ColorTemplate<float>& color, float alpha) {
    ForEachBody(visual, [&](FacetVisual* body) { body->setBodyColor(color, alpha); });
}

void Scene::resetColor(std::uint32_t id) {
    postToVisual(id, [this](Visual* visual) { doResetColor(visual); });
}

void Scene::resetColor(Visual* visual) {
    post([this, visual] { doResetColor(visual); });
}

void Scene::doResetColor(Visual* visual) {
    ForEachBody(visual, [](FacetVisual* body) { body->resetColor(); });
}

}  // namespace vrn::visual
