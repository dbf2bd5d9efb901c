#pragma once

#include "selection/BVHPrimitive.h"

#include <vector>

namespace vrn::visual {
class PointCloudVisual;
}

namespace vrn::selection {

/// A chunk of the points of a cloud, each picked within 3 units of the ray, whatever the zoom.
/// Thread: render; the lasso's workers read it.
class VRN_VISUAL_API SensitivePoints final : public BVHPrimitive {
public:
    SensitivePoints(visual::PointCloudVisual* cloudVisual, std::vector<unsigned int> pointIndices);

    /// The point nearest to the origin; of equally distant ones that of the earlier index. A number
    /// that the cloud no longer has is passed over. Throws std::overflow_error for a ray without
    /// direction.
    using BVHPrimitive::intersect;
    [[nodiscard]] Result intersect(const visual::Ray& ray) override;

    std::vector<unsigned int> indices;  ///< into the cloud's points
    visual::PointCloudVisual* visual;   ///< not owned

    static constexpr float reach = 3.0f;
};

}  // namespace vrn::selection
