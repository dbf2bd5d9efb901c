#include "visual/geometry/CamMeshVisual.h"

#include <OgreEntity.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "suite/geom/TMesh.h"

namespace vrn::visual {

namespace {

constexpr const char* entityName = "CAM_MESH_ENTITY";

}  // namespace

CamMeshVisual* CamMeshVisual::Build(cadcam::TMesh<double>* mesh, Visual* parent) {
    const Mesh* uploaded = MeshManager::Get()->loadCamMesh(mesh);
    auto* visual = new CamMeshVisual(parent);
    Ogre::SceneManager* scene = visual->node->getCreator();
    if (scene->hasEntity(entityName)) scene->destroyEntity(entityName);
    Ogre::Entity* entity = scene->createEntity(entityName, uploaded->name);
    entity->getSubEntity(0)->setCustomParameter(0, Ogre::Vector4(1, 1, 1, 1));
    visual->attachObject(entity);
    visual->setMaterial("MeshBody", "MeshBody", "MeshBody");
    visual->resetAppearance();
    return visual;
}

CamMeshVisual::~CamMeshVisual() {
    // None when a later visual has taken the entity over.
    if (hasAttachedObject(entityName)) node->getCreator()->destroyEntity(entityName);
}

}  // namespace vrn::visual
