#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "selection/Box.h"
#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

namespace vrn::visual {

/// A triangle list in the computer's memory, before and beside its copy on the graphics card.
///
/// Producers fill the fields, MeshManager uploads them; selection and paint read them afterwards.
/// Lengths are model units in the frame of whoever shows the mesh. There is no virtual destructor:
/// a PaintMesh is deleted as a PaintMesh (MeshManager::deleteMesh sees to it). Thread: pure; one
/// thread at a time.
class VRN_VISUAL_API Mesh {
public:
    explicit Mesh(std::string meshName);

    /// Bounds of the vertices as they were at the first call: later changes of the vertices do not
    /// show in them. A vertex with a coordinate that is NaN or infinite is passed over, so that a
    /// broken file cannot poison the bounds. No vertices: the empty box.
    Box& getBox();

    /// Writes "Vertex number: " with the number of vertices, a new line, "Triangle number: " with a
    /// third of the number of vertices, a new line. For a mesh that shares vertices the second is
    /// not the number of triangles.
    void dump(std::ostream& out) const;

    /// Appends `other`, placed by `pose`; `other` stays as it is, and may be this mesh itself.
    ///
    /// A pose closer than 0.01 to the origin whose quaternion differs from the identity by less
    /// than 0.001 in each component counts as the identity. Positions are rotated and moved,
    /// normals rotated. A mesh without normals, or with fewer than vertices, has those rotated that
    /// there are. A list that `other` lacks is not filled up: colours may end up shorter than the
    /// vertices, and the upload then refuses the mesh. Bounds that were asked for before stay what
    /// they were. Throws std::invalid_argument if `other` is null.
    void addSubMesh(const Mesh* other, const rob::PoseTemplate<float>& pose);

    /// Expires with this record, so that who keeps a pointer to it can tell whether it is still
    /// there. Copies have one of their own.
    [[nodiscard]] std::weak_ptr<const void> getLife() const { return life.token; }

    std::string name;  ///< key in MeshManager and name of the Ogre mesh
    std::vector<rob::PosTemplate<float>> vertices;
    std::vector<rob::Vec3Template<float>> normals;  ///< empty, or one a vertex
    std::vector<rob::ColorTemplate<float>> colors;  ///< empty, or one a vertex
    std::vector<std::uint32_t> indices;             ///< three a triangle
    std::vector<std::uint32_t> changedVertices;     ///< filled by PaintMesh alone
    Box box;                                        ///< what getBox found at its first call
    bool boxValid = false;

private:
    struct Life {
        Life() = default;
        Life(const Life&) {}
        Life& operator=(const Life&) { return *this; }
        ~Life() = default;
        std::shared_ptr<const char> token = std::make_shared<const char>('\0');
    };
    Life life;
};

}  // namespace vrn::visual
