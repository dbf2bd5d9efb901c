#pragma once

#include "selection/SelectableObject.h"

namespace vrn::visual {
class Mesh;
}

namespace vrn::selection {

/// A mesh visual, or the paint on one, in the picking world.
///
/// Box and queries take the scale of the visual's node in; the inverse pose carries none, so the
/// scale is undone apart: world, turned and moved back, divided by the scale, mesh. A hit's
/// `position` is in the world, its `distance` in the units of the mesh. Once the record of
/// the mesh is deleted nothing hits the object. Thread: render.
class VRN_VISUAL_API MeshObject : public SelectableObject {
public:
    explicit MeshObject(visual::Visual* meshVisual);

    /// A SensitiveMesh for the mesh that a mesh visual shows or paint is on, none for one whose
    /// record nobody keeps, and none for any other visual; what was built before goes.
    void buildBVH();
    /// Fills what buildBVH reads and visuals may share. After it buildBVH may run on another thread
    /// while this one waits.
    void prepareBuild();
    void updateWorldBox() override;

    /// Throws std::overflow_error, "0-length vector cannot be normalized.", for a direction that
    /// has no length in the units of the mesh.
    [[nodiscard]] Result intersect(const visual::Ray& ray) override;
    [[nodiscard]] Result intersect(const rob::TriangleTemplate<float>& triangle) override;
    [[nodiscard]] Result intersect(const rob::LineTemplate<float>& line) override;
    /// `region` is in the world and is turned and moved back, but not scaled.
    void processIntersectionsWith(const visual::Box& region,
                                  std::function<void(unsigned int)> visit) const override;

    /// The derived scale of the visual's node at the last update.
    rob::Vec3Template<float> scale{1, 1, 1};

private:
    [[nodiscard]] visual::Mesh* findMesh() const;
    void updateScale();
    /// From the frame of the visual, where lengths are those of the world, to the mesh.
    [[nodiscard]] rob::PosTemplate<float> unscaled(const rob::PosTemplate<float>& p) const;
    /// From the mesh to the world.
    [[nodiscard]] rob::PosTemplate<float> scaledToWorld(const rob::PosTemplate<float>& p) const;
};

}  // namespace vrn::selection
