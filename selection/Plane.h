// Namespace vrn::visual: the camera and the handles use this plane; picking volumes have their own.
#pragma once

#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

namespace vrn::visual {

/// The plane of the points x with normal . x = d. Thread: pure.
///
/// The line of both operations runs through `origin` along `direction`, which needs no unit length;
/// it is endless, so a negative parameter is an answer like any other. A line whose direction and
/// the normal have a product below 0.001 counts as parallel. A NaN comes out again as NaN.
struct VRN_VISUAL_API Plane {
    rob::DirTemplate<float> normal{};
    float d = 0.0f;

    /// The parameter t at which origin + t direction lies in the plane; 0 for a parallel line.
    [[nodiscard]] float distance(const rob::PosTemplate<float>& origin,
                                 const rob::DirTemplate<float>& direction) const;
    /// The point where the line meets the plane.
    /// Throws std::logic_error "The line is parallel with the plane", unlike distance.
    [[nodiscard]] rob::PosTemplate<float> intersection(
        const rob::PosTemplate<float>& origin, const rob::DirTemplate<float>& direction) const;
};

}  // namespace vrn::visual
