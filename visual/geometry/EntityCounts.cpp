#include "visual/geometry/EntityCounts.h"

#include <OgreEntity.h>
#include <OgreMesh.h>
#include <OgreSubMesh.h>

namespace vrn::visual {

namespace {

template <class Count>
std::uint32_t SumOverSubMeshes(const Ogre::Entity* entity, Count count) {
    std::size_t sum = 0;
    if (entity)
        for (const Ogre::SubMesh* part : entity->getMesh()->getSubMeshes()) sum += count(part);
    return static_cast<std::uint32_t>(sum);
}

}  // namespace

std::uint32_t CountTriangles(const Ogre::Entity* entity) {
    return SumOverSubMeshes(entity,
                            [](const Ogre::SubMesh* part) { return part->indexData->indexCount; }) /
           3;
}

std::uint32_t CountVertices(const Ogre::Entity* entity) {
    return SumOverSubMeshes(
        entity, [](const Ogre::SubMesh* part) { return part->vertexData->vertexCount; });
}

}  // namespace vrn::visual
