#pragma once

#include "selection/BVHPrimitive.h"
#include "suite/rob/PoseTypes.h"

namespace vrn::selection {

/// A segment that is picked within 5 pixels of the screen. Its box is a prism round it, wide enough
/// for the tolerance at 10,000 units from the camera. Thread: render.
class VRN_VISUAL_API SensitiveLine final : public BVHPrimitive {
public:
    /// The size, in model units, is accepted and not used.
    SensitiveLine(const rob::PosTemplate<float>& from, const rob::PosTemplate<float>& to,
                  double size);

    using BVHPrimitive::intersect;
    [[nodiscard]] Result intersect(const visual::Ray& ray) override;

    /// The size of 5 pixels at that distance from the camera, in model units; 5.0 without a camera
    /// or a viewport.
    [[nodiscard]] static float computeThreshold(float distance);

    rob::PosTemplate<float> start;
    rob::PosTemplate<float> end;
};

}  // namespace vrn::selection
