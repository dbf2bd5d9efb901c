#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "mesh/STLLoader.h"

#include <memory>
#include <stdexcept>

namespace vrn::visual {

Mesh* MeshManager::loadStl(const std::string& uri) {
    if (!uri.ends_with(".stl") && !uri.ends_with(".STL")) throw std::runtime_error("Not stl file");
    std::unique_ptr<Mesh> mesh(STLLoader::Load(uri));
    loadToGpu(mesh.get());  // before it is stored: what Ogre refuses is not kept
    const auto [entry, inserted] = meshes.try_emplace(uri, mesh.get());
    if (inserted) mesh.release();
    return entry->second;
}

}  // namespace vrn::visual
