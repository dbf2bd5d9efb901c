// Faces of solids: highlight, selection, look-up; solids whose shape changed.

#include "engine/Scene.h"
#include "engine/scene/NotedVisual.h"
#include "engine/scene/StaleMeshes.h"
#include "suite/geom/ShapeTools.h"
#include "suite/sdf/SdfNode.h"
#include "visual/geometry/SolidVisual.h"

#include <TopLoc_Location.hxx>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace vrn::visual {

namespace {

constexpr const char* baseFaceColour = "#10C279";
constexpr const char* sideFaceColour = "#0D8DDF";

template <class Action>
void PostToSolid(Scene& scene, SolidVisual* solid, Action action) {
    scene.addRenderTask(
        [&scene, noted = NotedVisual(solid), action] {
            if (!IsPresent(scene, noted)) return;
            if (auto* present = dynamic_cast<SolidVisual*>(noted.visual)) action(present);
        },
        /*key=*/0);
}

// Null for a visual of another type, also for a plain one that stands for a solid.
SolidVisual* AsSolid(Visual* visual) {
    return visual->type == VisualType::Solid ? dynamic_cast<SolidVisual*>(visual) : nullptr;
}

// A number that was refused when it was set has nothing to clear, and must not end another batch.
bool HasFace(const SolidVisual& solid, unsigned int index) {
    return index >= 1 && index <= static_cast<unsigned int>(solid.getFaceMap().Extent());
}

}  // namespace

// --- highlight

void Scene::highlightFace(SolidVisual* solid, unsigned int index) {
    const VisFace face{solid, index};
    if (solid && face == highlightedFace) return;
    clearHighlightedVisual();
    if (!solid || faceIsSelected(solid, index)) return;
    highlightedFace = face;
    PostToSolid(*this, solid, [index](SolidVisual* present) { present->highLightFace(index); });
}

void Scene::clearHighlightedFace() {
    if (highlightedFace.isNull()) return;
    PostToSolid(*this, highlightedFace.solid,
                [index = highlightedFace.faceIndex](SolidVisual* present) {
                    if (HasFace(*present, index)) present->clearHighLightFace(index);
                });
    highlightedFace.clear();
}

// --- selection

bool Scene::faceIsSelected(SolidVisual* solid, unsigned int index) const {
    return std::ranges::find(selectedFaces, VisFace{solid, index}) != selectedFaces.end();
}

void Scene::selectBaseFace(std::uint32_t id, unsigned int index) {
    selectFace(id, index, baseFaceColour);
}

void Scene::selectSideFace(std::uint32_t id, unsigned int index) {
    selectFace(id, index, sideFaceColour);
}

void Scene::selectFace(std::uint32_t id, unsigned int index, const std::string& hexColor) {
    SolidVisual* solid = AsSolid(visuals.at(id));
    if (!solid || faceIsSelected(solid, index)) return;
    clearHighlightedVisual();
    selectedFaces.push_back({solid, index});
    PostToSolid(*this, solid, [index, hexColor](SolidVisual* present) {
        present->setFaceColor(index, hexColor);
    });
}

void Scene::clearSelectedFace(std::uint32_t id, unsigned int index) {
    clearHighlightedVisual();
    SolidVisual* solid = AsSolid(visuals.at(id));
    if (!solid || std::erase(selectedFaces, VisFace{solid, index}) == 0) return;
    PostToSolid(*this, solid, [index](SolidVisual* present) {
        if (HasFace(*present, index)) present->clearSelectedFace(index);
    });
}

void Scene::clearSelectedFaces() {
    for (const VisFace& face : selectedFaces)
        PostToSolid(*this, face.solid, [index = face.faceIndex](SolidVisual* present) {
            if (HasFace(*present, index)) present->clearSelectedFace(index);
        });
    selectedFaces.clear();
}

void Scene::forgetFaces(const Visual* visual) {
    const auto isOfVisual = [visual](const VisFace& face) { return face.solid == visual; };
    if (isOfVisual(highlightedFace)) highlightedFace.clear();
    std::erase_if(selectedFaces, isOfVisual);
}

// --- look-up

TopoDS_Face Scene::GetBodyFace(std::uint32_t id, int index) const {
    return dynamic_cast<const SolidVisual&>(*visuals.at(id)).getFace(index);
}

TopoDS_Face Scene::GetBodyFaceInWorld(std::uint32_t id, int index) const {
    TopoDS_Face face = GetBodyFace(id, index);
    if (!face.IsNull())
        face.Move(TopLoc_Location(geometry::PoseToTrsf(visuals.at(id)->getWorldPose())));
    return face;
}

// --- a solid whose shape changed

void Scene::updateSolidVisual(sdf::SdfNode* modelNode, const TopoDS_Shape& shape) {
    post([this, modelNode, shape] { doUpdateSolidVisual(modelNode, shape); });
}

void Scene::doUpdateSolidVisual(sdf::SdfNode* modelNode, const TopoDS_Shape& shape) {
    if (!modelNode) throw std::invalid_argument("the body to show anew must not be null");
    const Visual* former = visuals.at(modelNode->id);
    Visual* parent = former->getParent();
    const std::string meshName = SolidMeshName(former);
    doRemoveVisual(modelNode->id);
    DropStaleMeshes(*this, meshName);
    SolidVisual::Build(parent ? parent : root, modelNode, shape);
}

}  // namespace vrn::visual
