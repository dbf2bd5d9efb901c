#pragma once

#include <OgreAxisAlignedBox.h>
#include <OgrePrerequisites.h>
#include <OgreVertexIndexData.h>

#include <string>
#include <utility>
#include <vector>

namespace vrn::visual {

/// A manual Ogre mesh of one triangle-list sub-mesh while it is being filled.
///
/// Unless `finish` is reached the mesh is taken away again: a torso would pass for uploaded for
/// ever, since an upload asks for the name alone. Thread: render.
class UnfinishedOgreMesh {
public:
    using Elements = std::vector<std::pair<Ogre::VertexElementSemantic, Ogre::VertexElementType>>;

    /// Makes the mesh in the default group; its sub-mesh has a declaration of `elements`,
    /// interleaved in this order in source 0, and no buffers. Throws Ogre::ItemIdentityException if
    /// the name is taken.
    UnfinishedOgreMesh(const std::string& name, const Elements& elements);
    UnfinishedOgreMesh(const UnfinishedOgreMesh&) = delete;
    UnfinishedOgreMesh& operator=(const UnfinishedOgreMesh&) = delete;
    ~UnfinishedOgreMesh();

    /// Makes the static, write-only buffers, without contents; for a count of 0 none is made.
    Ogre::HardwareVertexBufferPtr makeVertexBuffer(std::size_t vertexCount);
    Ogre::HardwareIndexBufferPtr makeIndexBuffer(std::size_t indexCount);

    /// Sets the bounds as they are, without Ogre's margin, and hands the mesh over to Ogre.
    void finish(const Ogre::AxisAlignedBox& bounds);

private:
    Ogre::MeshPtr mesh;
    Ogre::SubMesh* part = nullptr;
};

/// Whether a mesh of that name stands in Ogre's default group.
[[nodiscard]] bool OgreMeshExists(const std::string& name);

}  // namespace vrn::visual
