#pragma once

#include <string>
#include <unordered_set>

#include "engine/Scene.h"
#include "mesh/MeshManager.h"
#include "visual/geometry/SolidVisual.h"

namespace vrn::visual {

/// The name that the meshes of a solid begin with; empty for any other visual. Thread: render.
inline std::string SolidMeshName(const Visual* visual) {
    const auto* solid = dynamic_cast<const SolidVisual*>(visual);
    return solid ? solid->getMeshName() : std::string();
}

/// For geometry that changed under its name: what is left of a removed solid of that mesh name,
/// such as its mesh with all faces while it showed the one with fewer, must not be found again.
/// Meshes that solids of the scene own or show stay. Does nothing for the empty name. Thread:
/// render.
inline void DropStaleMeshes(const Scene& scene, const std::string& meshName) {
    if (meshName.empty()) return;
    std::unordered_set<std::string> inUse;
    for (const auto& [id, visual] : scene.visuals) {
        const auto* solid = dynamic_cast<const SolidVisual*>(visual);
        if (!solid) continue;
        inUse.insert(solid->getMeshName());
        inUse.insert(solid->getCurrentMeshName());
    }
    MeshManager::Get()->dropShapeMeshes(meshName, inUse);
}

}  // namespace vrn::visual
