// Namespace vrn::visual: a value type beside Box and Ray.
#pragma once

#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

namespace vrn::visual {

/// A truncated cone along the local +z axis of a pose, from its origin to `height`. Thread: pure.
struct VRN_VISUAL_API Cone {
    double nearRadius = 0.0;
    double farRadius = 0.0;
    double height = 0.0;

    /// True for a point between the two end discs, which belong to the cone, and strictly inside
    /// the lateral surface, which does not. The height along the axis and the distance from it are
    /// single precision, the radius there double. A cone without height and a NaN contain nothing.
    [[nodiscard]] bool isPointInside(const rob::PoseTemplate<float>& pose,
                                     rob::Vec3Template<float> point) const;

    /// The same for a point at this height along the axis and distance from it.
    [[nodiscard]] bool contains(float along, float radial) const {
        // Without a height the quotient is NaN and the comparison false.
        const double limit = nearRadius + (farRadius - nearRadius) * (along / height);
        const bool isBetween = !(along < 0.0f) & !(along > height);
        return isBetween & (radial < limit);
    }
};

}  // namespace vrn::visual
