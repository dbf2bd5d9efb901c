#pragma once

#include <cstdint>

namespace Ogre {
class Entity;
}

namespace vrn::visual {

/// Index counts over three and vertex counts, summed over the sub-meshes that the entity shows; 0
/// for a null entity. Thread: render.
[[nodiscard]] std::uint32_t CountTriangles(const Ogre::Entity* entity);
[[nodiscard]] std::uint32_t CountVertices(const Ogre::Entity* entity);

}  // namespace vrn::visual
