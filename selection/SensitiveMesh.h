#pragma once

#include "selection/BVHPrimitive.h"
#include "selection/SensitiveTriangleSet.h"

#include <memory>

namespace vrn::visual {
class Mesh;
class Visual;
}  // namespace vrn::visual

namespace vrn::selection {

/// The triangles of a mesh record. Thread: render.
class VRN_VISUAL_API SensitiveMesh final : public BVHPrimitive, public SensitiveTriangleSet {
public:
    /// The visual must outlive the primitive; one whose mesh was deleted is not hit any more.
    /// `hasLocation` stays false: the pose is used always.
    SensitiveMesh(visual::Mesh* shownMesh, visual::Visual* meshVisual,
                  const rob::PoseTemplate<float>& meshPose);

    [[nodiscard]] Result intersect(const visual::Ray& ray) override;
    [[nodiscard]] Result intersect(const rob::TriangleTemplate<float>& triangle) override;
    [[nodiscard]] Result intersect(const rob::LineTemplate<float>& line) override;
    void processIntersectionsWith(const visual::Box& region,
                                  std::function<void(unsigned int)> visit) const override;
    [[nodiscard]] rob::TriangleTemplate<float> getTriangleVertices(
        SensitiveTriangle* triangle) const override;

    visual::Mesh* mesh;      ///< not owned; dangles once meshLife has expired
    visual::Visual* visual;  ///< not owned

private:
    std::weak_ptr<const void> meshLife;
};

}  // namespace vrn::selection
