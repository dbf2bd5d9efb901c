#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "mesh/STLLoader.h"
#include "suite/geom/TMesh.h"

#include <memory>
#include <stdexcept>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

constexpr const char* camMeshName = "CAM_MESH";

/// A vertex in a flat or unused spot has no direction of its own: it gets +Z.
Vec UnitOrUp(const Vec& v) {
    return static_cast<double>(v.length()) > rob::zeroLength ? v.normalized() : Vec{0, 0, 1};
}

std::unique_ptr<Mesh> Converted(const cadcam::TMesh<double>& source) {
    auto mesh = std::make_unique<Mesh>(camMeshName);
    for (const auto& [x, y, z] : source.vertices)
        mesh->vertices.emplace_back(rob::PosTemplate<double>(x, y, z));
    mesh->normals.resize(mesh->vertices.size());
    for (const auto& [a, b, c] : source.triangles) {
        const Pos& corner = mesh->vertices.at(a);
        // As long as twice the area, which is its weight.
        const Vec normal = (mesh->vertices.at(b) - corner).cross(mesh->vertices.at(c) - corner);
        for (const std::uint32_t index : {a, b, c}) {
            mesh->indices.push_back(index);
            mesh->normals[index] = mesh->normals[index] + normal;
        }
    }
    for (Vec& normal : mesh->normals) normal = UnitOrUp(normal);
    return mesh;
}

}  // namespace

Mesh* MeshManager::loadStl(const std::string& uri) {
    if (!uri.ends_with(".stl") && !uri.ends_with(".STL")) throw std::runtime_error("Not stl file");
    std::unique_ptr<Mesh> mesh(STLLoader::Load(uri));
    loadToGpu(mesh.get());  // before it is stored: what Ogre refuses is not kept
    const auto [entry, inserted] = meshes.try_emplace(uri, mesh.get());
    if (inserted) mesh.release();
    return entry->second;
}

Mesh* MeshManager::loadCamMesh(const cadcam::TMesh<double>* source) {
    if (source == nullptr) throw std::invalid_argument("the mesh to show must not be null");
    std::unique_ptr<Mesh> mesh = Converted(*source);
    if (hasMesh(camMeshName)) deleteMesh(getMesh(camMeshName));
    addMesh(mesh.get());
    return mesh.release();
}

}  // namespace vrn::visual
