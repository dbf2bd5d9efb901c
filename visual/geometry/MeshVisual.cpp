#include "visual/geometry/MeshVisual.h"

#include <memory>

#include <OgreEntity.h>
#include <OgreMesh.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>
#include <OgreSubMesh.h>

#include "engine/Scene.h"
#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "selection/VisualSelection.h"
#include "suite/geom/BodyColorTool.h"
#include "suite/layout/Body.h"
#include "visual/geometry/BodyModel.h"
#include "visual/geometry/Detectable.h"
#include "visual/geometry/EntityCounts.h"
#include "visual/geometry/Hex2RGB.h"
#include "visual/geometry/MarkVisual.h"
#include "visual/ModelNode.h"

namespace vrn::visual {

namespace {

constexpr std::size_t colourParameter = 0;
constexpr const char* arrowMesh = "mfg_arrow";
constexpr const char* arrowColour = "#FFA725";
constexpr const char* copyMaterial = "TransBody";

}  // namespace

MeshVisual::MeshVisual(const std::string& name, Visual* parent) : FacetVisual(name, parent) {
    type = VisualType::Mesh;
}

MeshVisual::MeshVisual(std::uint32_t idIn, const std::string& name, Visual* parent)
    : FacetVisual(idIn, name, parent) {
    type = VisualType::Mesh;
}

MeshVisual::MeshVisual(Visual* parent, sdf::SdfNode* modelNode) : FacetVisual(modelNode, parent) {
    type = VisualType::Mesh;
}

MeshVisual::~MeshVisual() { clearMesh(); }

void MeshVisual::clearMesh() {
    if (entity) node->getCreator()->destroyEntity(entity);
    entity = nullptr;
}

MeshVisual* MeshVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    auto& body = dynamic_cast<layout::Body&>(RequireModelNode(modelNode));
    const bool detectable = IsDetectable(*modelNode);
    const BodyMaterials looks = MaterialsOf(body);

    // Until the file has been read the visual is ours: a refused file leaves nothing in the tree.
    auto visual = std::make_unique<MeshVisual>(parent, modelNode);
    visual->attachMesh(body.getGeometryUri());
    visual->setMaterial(looks.normal, looks.selected, looks.highlighted);
    visual->resetAppearance();
    visual->setColor(geometry::BodyColorTool::GetBodyColor(modelNode->element));

    Scene::Get()->visuals[visual->id] = visual.get();
    selection::VisualSelection::Get()->addMeshVisual(visual.get(), detectable, /*priority=*/false);
    return visual.release();
}

MeshVisual* MeshVisual::BuildArrow(Visual* parent, const rob::PosTemplate<float>& position,
                                   const rob::DirTemplate<float>& direction) {
    const auto rotation = rob::RotationTemplate<float>::From2Dirs({0, 0, 1}, direction.asVec3());
    auto arrow = std::make_unique<MarkVisual>(arrowMesh, parent);  // the tree's once it is placed
    arrow->attachMesh(arrowMesh);
    arrow->setMaterial("Axis", "", "");
    arrow->resetAppearance();
    arrow->setColor(arrowColour);
    const double scale = Scene::Get()->settings.arrowSizeLevel / 5.0;
    arrow->setScale(scale, scale, scale);
    arrow->setPose({position, rotation});
    return arrow.release();
}

void MeshVisual::attachMesh(const std::string& name) {
    MeshManager* manager = MeshManager::Get();
    if (!manager->getGlobalMesh(name) && !manager->hasMesh(name)) manager->loadStl(name);
    showMesh(name);
}

void MeshVisual::showMesh(const std::string& name) {
    Ogre::Entity* shown = node->getCreator()->createEntity(name);
    clearMesh();
    entity = shown;
    meshName = name;
    entity->setRenderQueueGroup(solidQueueGroup);
    entity->setVisible(visible);
    attachObject(entity);
    setColor({1, 1, 1},
             1.0f);  // never left unset: it would take the value of what was drawn before
    if (auto* picking = selection::VisualSelection::Get()) picking->rebuild(this);
}

void MeshVisual::setColor(const rob::ColorTemplate<float>& color, float alpha) {
    if (!entity) return;
    for (std::size_t i = 0; i < entity->getNumSubEntities(); ++i)
        entity->getSubEntity(i)->setCustomParameter(
            colourParameter, Ogre::Vector4(color.r, color.g, color.b, alpha));
}

void MeshVisual::setColor(const std::string& hexColor) { setColor(Hex2RGB(hexColor), 1.0f); }

void MeshVisual::setBodyColor(const rob::ColorTemplate<float>& color, float alpha) {
    setColor(color, alpha);
}

void MeshVisual::resetColor() { setColor(geometry::BodyColorTool::GetBodyColor(id)); }

std::optional<Visual*> MeshVisual::copy(Visual* parent) {
    auto* replica = new MeshVisual(getName(), parent ? parent : Scene::Get()->root);
    replica->copied = true;
    if (entity) {
        replica->showMesh(meshName);
        for (std::size_t i = 0; i < entity->getNumSubEntities(); ++i)
            replica->entity->getSubEntity(i)->setCustomParameter(
                colourParameter, entity->getSubEntity(i)->getCustomParameter(colourParameter));
    }
    replica->id = id;
    replica->setMaterial(copyMaterial, copyMaterial, copyMaterial);
    replica->resetAppearance();
    replica->setPose(getPose());
    return replica;
}

std::uint32_t MeshVisual::getBodiesNum() { return entity ? 1 : 0; }
std::uint32_t MeshVisual::getFacesNum() { return entity ? 1 : 0; }
std::uint32_t MeshVisual::getTrianglesNum() { return CountTriangles(entity); }
std::uint32_t MeshVisual::getVerticesNum() { return CountVertices(entity); }
Ogre::Entity* MeshVisual::getEntity() const { return entity; }
std::string MeshVisual::getMeshName() const { return meshName; }

}  // namespace vrn::visual
