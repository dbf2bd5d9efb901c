#include "mesh/UnfinishedOgreMesh.h"

#include <OgreHardwareBufferManager.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreResourceGroupManager.h>
#include <OgreSubMesh.h>

namespace vrn::visual {

namespace {

// The value holds HBU_DETAIL_WRITE_ONLY as well.
constexpr Ogre::HardwareBufferUsage staticWriteOnly = Ogre::HBU_GPU_ONLY;

}  // namespace

UnfinishedOgreMesh::UnfinishedOgreMesh(const std::string& name, const Elements& elements)
    : mesh(Ogre::MeshManager::getSingleton().createManual(name, Ogre::RGN_DEFAULT)),
      part(mesh->createSubMesh()) {
    part->useSharedVertices = false;
    part->operationType = Ogre::RenderOperation::OT_TRIANGLE_LIST;
    part->vertexData = new Ogre::VertexData;  // the sub-mesh deletes it
    std::size_t offset = 0;
    for (const auto& [semantic, type] : elements) {
        part->vertexData->vertexDeclaration->addElement(0, offset, type, semantic);
        offset += Ogre::VertexElement::getTypeSize(type);
    }
}

UnfinishedOgreMesh::~UnfinishedOgreMesh() {
    if (mesh) Ogre::MeshManager::getSingleton().remove(mesh);
}

Ogre::HardwareVertexBufferPtr UnfinishedOgreMesh::makeVertexBuffer(std::size_t vertexCount) {
    Ogre::VertexData& data = *part->vertexData;
    data.vertexCount = static_cast<Ogre::uint32>(vertexCount);
    if (vertexCount == 0) return {};
    auto buffer = Ogre::HardwareBufferManager::getSingleton().createVertexBuffer(
        data.vertexDeclaration->getVertexSize(0), vertexCount, staticWriteOnly);
    data.vertexBufferBinding->setBinding(0, buffer);
    return buffer;
}

Ogre::HardwareIndexBufferPtr UnfinishedOgreMesh::makeIndexBuffer(std::size_t indexCount) {
    part->indexData->indexCount = static_cast<Ogre::uint32>(indexCount);
    if (indexCount == 0) return {};
    part->indexData->indexBuffer = Ogre::HardwareBufferManager::getSingleton().createIndexBuffer(
        Ogre::HardwareIndexBuffer::IT_32BIT, indexCount, staticWriteOnly);
    return part->indexData->indexBuffer;
}

void UnfinishedOgreMesh::finish(const Ogre::AxisAlignedBox& bounds) {
    mesh->_setBounds(bounds, /*pad=*/false);
    mesh->load();
    mesh.reset();
}

bool OgreMeshExists(const std::string& name) {
    return Ogre::MeshManager::getSingleton().getByName(name, Ogre::RGN_DEFAULT) != nullptr;
}

}  // namespace vrn::visual
