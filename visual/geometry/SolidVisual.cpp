#include "visual/geometry/SolidVisual.h"

#include "engine/Scene.h"
#include "mesh/MeshManager.h"
#include "mesh/NoTriangleMesh.h"
#include "selection/VisualSelection.h"
#include "suite/geom/BodyColorTool.h"
#include "suite/layout/Body.h"
#include "visual/geometry/BodyModel.h"
#include "visual/geometry/Detectable.h"
#include "visual/geometry/EntityCounts.h"
#include "visual/geometry/Hex2RGB.h"
#include "visual/geometry/WireFrameVisual.h"
#include "visual/ModelNode.h"

#include <OgreEntity.h>
#include <OgreException.h>
#include <OgreMeshManager.h>
#include <OgreResourceGroupManager.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include <Standard_OutOfRange.hxx>
#include <TopExp.hxx>
#include <TopoDS.hxx>

#include <algorithm>
#include <format>
#include <limits>
#include <memory>

namespace vrn::visual {

namespace {

using Color = rob::ColorTemplate<float>;
using geometry::BodyColorTool;

constexpr std::size_t colourParameter = 0;
constexpr float highlightGain = 0.2f;
constexpr const char* shapeColour = "#ED1C24";
constexpr const char* copyMaterial = "TransBody";

ColorInfo ShapeColours() { return {shapeColour, {}}; }

}  // namespace

SolidVisual::SolidVisual(const std::string& name, const TopoDS_Shape& solidShape, Visual* parent)
    : FacetVisual(name, parent), meshName(name), shape(solidShape) {
    type = VisualType::Solid;
}

SolidVisual::SolidVisual(const TopoDS_Shape& solidShape, Visual* parent)
    : FacetVisual(parent), meshName(getName()), shape(solidShape) {
    type = VisualType::Solid;
}

SolidVisual::SolidVisual(sdf::SdfNode* modelNode, const TopoDS_Shape& solidShape, Visual* parent)
    : FacetVisual(modelNode, parent), body(&dynamic_cast<layout::Body&>(*modelNode)) {
    type = VisualType::Solid;
    meshName = body->getGeometryUri();
    if (meshName.empty()) meshName = getName();
    body->setShape(solidShape);
}

SolidVisual::~SolidVisual() {
    if (!entity) return;
    destroyEntity();
    if (!copied) MeshManager::Get()->removeOgreMesh(meshName);
}

void SolidVisual::destroyEntity() {
    if (entity) node->getCreator()->destroyEntity(entity);
    entity = nullptr;
}

SolidVisual* SolidVisual::Build(Visual* parent, const TopoDS_Shape& solidShape,
                                const std::string& material) {
    auto solid = std::make_unique<SolidVisual>(solidShape, parent);
    solid->loadEntity(ShapeColours());
    solid->setMaterial(material, "", "");
    solid->resetAppearance();
    Scene::Get()->visuals[solid->id] = solid.get();
    return solid.release();
}

SolidVisual* SolidVisual::Build(Visual* parent, const TopoDS_Shape& solidShape,
                                const std::string& material, const std::string& highlighted,
                                const std::string& selected) {
    auto solid = std::make_unique<SolidVisual>(solidShape, parent);
    solid->loadEntity(ShapeColours());
    solid->setMaterial(material, selected, highlighted);
    solid->resetAppearance();
    // Behind setMaterial, which would give its names to the edges as well.
    WireFrameVisual::Build(solid.get(), solidShape);
    Scene::Get()->visuals[solid->id] = solid.get();
    selection::VisualSelection::Get()->addShape(solidShape, solid.get(), /*detectable=*/false);
    return solid.release();
}

SolidVisual* SolidVisual::Build(Visual* parent, sdf::SdfNode* modelNode,
                                const TopoDS_Shape& solidShape) {
    const bool detectable = IsDetectable(RequireModelNode(modelNode));
    auto solid = std::make_unique<SolidVisual>(modelNode, solidShape, parent);
    if (solid->loadEntity(BodyColorTool::GetColorInfo(solid->id))) {
        const BodyMaterials looks = MaterialsOf(*solid->body);
        solid->setMaterial(looks.normal, looks.selected, looks.highlighted);
        solid->resetAppearance();
        WireFrameVisual::Build(solid.get(), solidShape);
        selection::VisualSelection::Get()->addShape(solidShape, solid.get(), detectable);
    }
    Scene::Get()->visuals[solid->id] = solid.get();
    return solid.release();
}

bool SolidVisual::loadEntity(const ColorInfo& colors) {
    try {
        MeshManager::Get()->loadShape(this, colors);
    } catch (const NoTriangleMesh&) {
        // Counted all the same, and without an entity the destructor takes nothing back.
        MeshManager::Get()->removeOgreMesh(meshName);
        return false;  // a body without triangles is a visual without picture, not an error
    }
    showEntity(getName(), meshName);
    return true;
}

void SolidVisual::showEntity(const std::string& entityName, const std::string& shownMesh) {
    entity = node->getCreator()->createEntity(entityName, shownMesh, Ogre::RGN_AUTODETECT);
    entity->setRenderQueueGroup(solidQueueGroup);
    for (std::size_t i = 0; i < entity->getNumSubEntities(); ++i)
        entity->getSubEntity(i)->setCustomParameter(
            colourParameter, Ogre::Vector4(1, 1, 1, -1));  // the vertices bring their colours
    attachObject(entity);
    // A node hides what hangs on it at that moment, not what is attached later.
    entity->setVisible(visible);
}

void SolidVisual::attachEntity(const std::string& newMeshName) {
    // First: to be asked for a mesh makes Ogre take note of an unknown name.
    if (!Ogre::MeshManager::getSingleton().getByName(newMeshName, Ogre::RGN_AUTODETECT))
        OGRE_EXCEPT(Ogre::Exception::ERR_FILE_NOT_FOUND,
                    std::format("there is no mesh \"{}\"", newMeshName),
                    "SolidVisual::attachEntity");
    destroyEntity();
    meshName = newMeshName;
    showEntity(std::to_string(id) + meshName, meshName);
    resetAppearance();
}

void SolidVisual::updateMesh() {
    destroyEntity();  // and null, before loadShape may throw
    MeshManager::Get()->loadShape(this, BodyColorTool::GetColorInfo(id));
    showEntity(getName(), getCurrentMeshName());
    resetAppearance();
}

// --- faces

std::string SolidVisual::getCurrentMeshName() const {
    std::string name = meshName;
    for (const std::uint32_t face : hiddenFaces) name += "_" + std::to_string(face);
    return name;
}

TopoDS_Shape SolidVisual::getShape() const { return body ? body->getShape() : shape; }

const FaceMap& SolidVisual::getFaceMap() const {
    if (body) return body->getFaceMap();
    if (faceMap.IsEmpty()) TopExp::MapShapes(shape, TopAbs_FACE, faceMap);
    return faceMap;
}

std::uint32_t SolidVisual::getFaceIndex(const TopoDS_Face& face) const {
    return static_cast<std::uint32_t>(getFaceMap().FindIndex(face));
}

TopoDS_Face SolidVisual::getFace(int index) const {
    if (index < 0) throw Standard_OutOfRange("NCollection_IndexedMap::FindKey: negative index");
    const TopoDS_Shape& found = getFaceMap().FindKey(index);
    if (found.IsNull() || found.ShapeType() != TopAbs_FACE) return {};
    return TopoDS::Face(found);
}

bool SolidVisual::isFaceVisible(unsigned long index) const {
    return std::ranges::find(hiddenFaces, index) == hiddenFaces.end();
}

void SolidVisual::setFaceVisible(unsigned long index, bool show) {
    constexpr unsigned long last = std::numeric_limits<std::uint32_t>::max();
    const auto face = static_cast<std::uint32_t>(std::min(index, last));
    // While the face is still in the mesh, so that no highlight stays behind in a shared one.
    setFaceColor(face, BodyColorTool::GetFaceColor(id, face));
    if (show) {
        std::erase(hiddenFaces, face);
    } else if (isFaceVisible(face)) {
        hiddenFaces.push_back(face);
    }
    updatePicking();  // first: updateMesh throws when no face is left
    updateMesh();
}

void SolidVisual::setVisible(bool show, bool cascade) {
    FacetVisual::setVisible(show, cascade);
    if (!show || hiddenFaces.empty()) return;
    hiddenFaces.clear();
    updatePicking();
    updateMesh();
}

void SolidVisual::updatePicking() {
    auto* picking = selection::VisualSelection::Get();
    if (picking->hasVisual(this)) picking->updateShapeFaces(this);
}

// --- colours

void SolidVisual::setFaceColor(unsigned int index, const Color& color) {
    MeshManager::Get()->SetFaceColor(this, index, color);
}

void SolidVisual::setFaceColor(unsigned int index, const std::string& hexColor) {
    setFaceColor(index, Hex2RGB(hexColor));
}

Color SolidVisual::getFaceColor(unsigned int index) const {
    return Hex2RGB(BodyColorTool::GetFaceColor(id, index));
}

void SolidVisual::highLightFace(unsigned int index) {
    const Color stored = getFaceColor(index);
    setFaceColor(
        index, Color{stored.r + highlightGain, stored.g + highlightGain, stored.b + highlightGain});
}

void SolidVisual::clearHighLightFace(unsigned int index) {
    setFaceColor(index, getFaceColor(index));
}

void SolidVisual::clearSelectedFace(unsigned int index) {
    setFaceColor(index, BodyColorTool::GetFaceColor(id, index));
}

void SolidVisual::clearSelectedFace(const TopoDS_Face& face) {
    clearSelectedFace(getFaceIndex(face));
}

void SolidVisual::setBodyColor(const Color& color, float /*unused*/) {
    MeshManager::Get()->SetColor(getCurrentMeshName(), color);
}

void SolidVisual::resetColor() { MeshManager::Get()->ColorReset(this); }

// --- copies and counts

std::optional<Visual*> SolidVisual::copy(Visual* parent) {
    auto replica =
        std::make_unique<SolidVisual>(getName(), shape, parent ? parent : Scene::Get()->root);
    replica->copied = true;
    // While the id is still its own: the entity's name is made of it, and a second copy would
    // clash.
    if (entity) replica->attachEntity(meshName);
    replica->id = id;
    replica->setMaterial(copyMaterial, copyMaterial, copyMaterial);
    replica->resetAppearance();
    replica->setPose(getPose());
    return replica.release();
}

std::uint32_t SolidVisual::getBodiesNum() { return entity ? 1 : 0; }
std::uint32_t SolidVisual::getFacesNum() {
    return static_cast<std::uint32_t>(getFaceMap().Extent());
}
std::uint32_t SolidVisual::getTrianglesNum() { return CountTriangles(entity); }
std::uint32_t SolidVisual::getVerticesNum() { return CountVertices(entity); }

}  // namespace vrn::visual
