#include "mesh/MeshManager.h"

#include "mesh/Mesh.h"
#include "mesh/PaintMesh.h"
#include "mesh/UnfinishedOgreMesh.h"

#include <OgreHardwareIndexBuffer.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreMeshManager.h>
#include <OgreResourceGroupManager.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <format>
#include <stdexcept>
#include <string_view>

namespace vrn::visual {

MeshManager* gMeshMgr = nullptr;

namespace {

/// Writes the components of a vertex one after the other into a locked buffer.
class VertexWriter {
public:
    explicit VertexWriter(void* target) : position(static_cast<std::byte*>(target)) {}

    template <class Element>
    void put(const Element& element) {
        std::memcpy(position, &element, sizeof(Element));
        position += sizeof(Element);
    }

private:
    std::byte* position;
};

void CheckNotNull(const Mesh* mesh) {
    if (mesh == nullptr) throw std::invalid_argument("the mesh must not be null");
}

void CheckOnePerVertex(const Mesh& mesh, std::size_t count, std::string_view what) {
    if (count == mesh.vertices.size()) return;
    throw std::invalid_argument(std::format("mesh \"{}\" has {} vertices but {} {}", mesh.name,
                                            mesh.vertices.size(), count, what));
}

void CheckIndices(const Mesh& mesh) {
    const auto bad = std::ranges::find_if(
        mesh.indices, [&](std::uint32_t index) { return index >= mesh.vertices.size(); });
    if (bad == mesh.indices.end()) return;
    throw std::invalid_argument(std::format("mesh \"{}\" has {} vertices but an index {}",
                                            mesh.name, mesh.vertices.size(), *bad));
}

/// Makes and fills the buffers; `putVertex(writer, number)` writes one vertex. A buffer of no bytes
/// is neither made nor locked: Ogre throws at the lock.
template <class PutVertex>
void FillBuffers(UnfinishedOgreMesh& target, const Mesh& mesh, PutVertex putVertex) {
    if (const auto buffer = target.makeVertexBuffer(mesh.vertices.size())) {
        const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_DISCARD);
        VertexWriter writer(lock.pData);
        for (std::size_t i = 0; i < mesh.vertices.size(); ++i) putVertex(writer, i);
    }
    if (const auto buffer = target.makeIndexBuffer(mesh.indices.size())) {
        const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_DISCARD);
        std::memcpy(lock.pData, mesh.indices.data(), mesh.indices.size() * sizeof(mesh.indices[0]));
    }
}

/// Null where there is nothing to enclose: Ogre asserts that finite bounds are in order.
Ogre::AxisAlignedBox OgreBounds(const Box& box) {
    if (!box.isValid()) return Ogre::AxisAlignedBox::BOX_NULL;
    // The engine takes sums and differences of corners, turns and scales them, and aborts on what
    // overflows: from here on a mesh is taken to be everywhere.
    constexpr float farthest = 1e15f;
    const auto isFar = [](const auto& corner) {
        return std::max({std::abs(corner.x), std::abs(corner.y), std::abs(corner.z)}) > farthest;
    };
    if (isFar(box.min) || isFar(box.max)) return Ogre::AxisAlignedBox::BOX_INFINITE;
    return {box.min.x, box.min.y, box.min.z, box.max.x, box.max.y, box.max.z};
}

/// Ogre throws for a name that it does not know.
void RemoveFromOgre(const std::string& name, const std::string& group) {
    auto& ogreMeshes = Ogre::MeshManager::getSingleton();
    if (ogreMeshes.getByName(name, group)) ogreMeshes.remove(name, group);
}

}  // namespace

MeshManager::MeshManager() { createGlobleMeshes(); }

MeshManager* MeshManager::Get() { return gMeshMgr; }

void MeshManager::addMesh(Mesh* mesh) {
    CheckNotNull(mesh);
    if (meshes.contains(mesh->name)) return;
    loadToGpu(mesh);  // first: a record that was refused must not stay behind
    meshes.emplace(mesh->name, mesh);
}

void MeshManager::addPaintMesh(PaintMesh* mesh) {
    CheckNotNull(mesh);
    loadToGpu(mesh);
    meshes.insert_or_assign(mesh->name, mesh);
    paintMeshNames.insert(mesh->name);
}

void MeshManager::addGlobalMesh(Mesh* mesh) {
    CheckNotNull(mesh);
    loadToGpu(mesh);
    globalMeshes.try_emplace(mesh->name, mesh);
}

Mesh* MeshManager::getGlobalMesh(const std::string& name) const {
    const auto found = globalMeshes.find(name);
    return found == globalMeshes.end() ? nullptr : found->second;
}

Mesh* MeshManager::getMesh(const std::string& name) const { return meshes.at(name); }

bool MeshManager::hasMesh(const std::string& name) const { return meshes.contains(name); }

void MeshManager::deleteMesh(Mesh* mesh) {
    if (mesh == nullptr) throw std::out_of_range("no mesh to delete");
    const auto found = meshes.find(mesh->name);
    if (found == meshes.end() || found->second != mesh)
        throw std::out_of_range(std::format("mesh \"{}\" is not registered", mesh->name));

    const bool isPaintMesh = paintMeshNames.erase(mesh->name) > 0;
    meshes.erase(found);
    // The group differs from removeOgreMesh: a host may have put a mesh of its own into another
    // one.
    RemoveFromOgre(mesh->name, Ogre::RGN_AUTODETECT);
    // Mesh has no virtual destructor.
    if (isPaintMesh) {
        delete static_cast<PaintMesh*>(mesh);
    } else {
        delete mesh;
    }
}

void MeshManager::deleteMesh(PaintMesh* mesh) { deleteMesh(static_cast<Mesh*>(mesh)); }

void MeshManager::removeOgreMesh(const std::string& name) {
    const auto found = shapeMeshRefs.find(name);
    if (found == shapeMeshRefs.end()) return;
    if (found->second > 1) {
        --found->second;
        return;
    }
    RemoveFromOgre(name, Ogre::RGN_DEFAULT);
    shapeMeshRefs.erase(found);
}

void MeshManager::loadToGpu(Mesh* mesh) {
    CheckNotNull(mesh);
    if (OgreMeshExists(mesh->name)) return;
    const bool hasNormals = !mesh->normals.empty();
    const bool hasColors = !mesh->colors.empty();
    if (hasNormals) CheckOnePerVertex(*mesh, mesh->normals.size(), "normals");
    if (hasColors) CheckOnePerVertex(*mesh, mesh->colors.size(), "colours");
    CheckIndices(*mesh);

    UnfinishedOgreMesh::Elements elements{{Ogre::VES_POSITION, Ogre::VET_FLOAT3}};
    if (hasNormals) elements.emplace_back(Ogre::VES_NORMAL, Ogre::VET_FLOAT3);
    if (hasColors) elements.emplace_back(Ogre::VES_DIFFUSE, Ogre::VET_FLOAT3);
    UnfinishedOgreMesh target(mesh->name, elements);
    FillBuffers(target, *mesh, [&](VertexWriter& writer, std::size_t i) {
        writer.put(mesh->vertices[i]);
        if (hasNormals) writer.put(mesh->normals[i]);
        if (hasColors) writer.put(mesh->colors[i]);
    });
    target.finish(OgreBounds(mesh->getBox()));
}

void MeshManager::loadToGpu(PaintMesh* mesh) {
    CheckNotNull(mesh);
    if (OgreMeshExists(mesh->name)) return;
    CheckOnePerVertex(*mesh, mesh->normals.size(), "normals");
    CheckOnePerVertex(*mesh, mesh->vertexColors.size(), "colours");
    CheckIndices(*mesh);

    UnfinishedOgreMesh target(mesh->name, {{Ogre::VES_POSITION, Ogre::VET_FLOAT3},
                                           {Ogre::VES_NORMAL, Ogre::VET_FLOAT3},
                                           {Ogre::VES_DIFFUSE, Ogre::VET_FLOAT4}});
    FillBuffers(target, *mesh, [&](VertexWriter& writer, std::size_t i) {
        writer.put(mesh->vertices[i]);
        writer.put(mesh->normals[i]);
        writer.put(mesh->vertexColors[i]);
    });
    target.finish(OgreBounds(mesh->getBox()));
}

}  // namespace vrn::visual
