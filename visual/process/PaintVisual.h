#pragma once

#include <cstdint>
#include <vector>

#include "mesh/PaintMesh.h"
#include "visual/Visual.h"

namespace vrn::visual {

/// The paint on a mesh: a copy of it, as a child of its visual, with a colour on each vertex that
/// sprays write. The paint builds up until it is reset, and there is one such child however many
/// sprays paint on the mesh. Thread: render.
class VRN_VISUAL_API PaintVisual : public Visual {
public:
    /// Without a mesh yet; for one spray.
    PaintVisual(Visual* parent, std::uint32_t sprayId);
    /// Deletes the mesh, unless this is a copy.
    ~PaintVisual() override;

    /// Over the mesh of `target`, transparent until it is sprayed; entered in the registry and, so
    /// that what a spray reaches is found, in the selection. Of a target that is hidden, or is not
    /// to be picked, the paint is neither seen nor picked. Throws std::bad_cast for a target that
    /// is no body drawn as one entity, std::out_of_range, "unordered_map::at", for one whose mesh
    /// has no record, and std::invalid_argument for one whose mesh has not a normal for each
    /// vertex; then nothing is left.
    static PaintVisual* Build(Visual* target, std::uint32_t sprayId);

    /// As Visual::setVisible; what is hidden is not picked, and can be sprayed all the same.
    void setVisible(bool show, bool cascade) override;

    /// The mesh to paint on, which is then this visual's; one before is the caller's again. It is
    /// what is sprayed and picked from then on, but the picture stays that of the mesh of Build.
    void setMesh(PaintMesh* paintMesh);
    /// Null before setMesh.
    [[nodiscard]] PaintMesh* getMesh() const { return mesh; }

    /// For what is sprayed from then on; components from 0 to 1.
    void setPaintColor(float r, float g, float b);

    /// The sprays that paint here, by id; one may be added several times, and then goes with one
    /// removal.
    void addSprayRef(std::uint32_t sprayId);
    void removeSprayRef(std::uint32_t sprayId);
    [[nodiscard]] std::size_t getSprayRefsCount() const { return sprayRefs.size(); }

    /// Makes all paint transparent; the vertices keep their colours.
    void reset();
    /// Paints what a spray visual reaches from its place in the world: vertices within its box and
    /// the cone of these two radii and that height along its z axis, that face the spray.
    ///
    /// Corners are tried triangle by triangle: one outside the box, or that faces away, ends its
    /// triangle, one outside the cone does not. Throws std::bad_optional_access for an id that is
    /// no spray visual's, std::out_of_range for a mesh with a vertex that has no normal, and
    /// std::invalid_argument without a mesh.
    void spray(std::uint32_t sprayId, double nearRadius, double farRadius, double height);

private:
    std::vector<std::uint32_t> sprayRefs;
    PaintMesh* mesh = nullptr;
    Color paintColor;
};

}  // namespace vrn::visual
