// Namespace vrn::visual: the mesh pipeline and the camera use rays as much as picking does.
#pragma once

#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

#include <cfloat>
#include <iosfwd>

namespace vrn::visual {

/// A half line: the points origin + t direction for t from 0 to `maxDistance`. Thread: pure.
struct VRN_VISUAL_API Ray {
    rob::PosTemplate<float> origin{};
    /// Need not be of unit length; then `maxDistance` counts in lengths of the direction.
    rob::DirTemplate<float> direction{};
    float maxDistance = FLT_MAX;

    /// The ray carried by `pose`: the direction is rotated and not normalised, `maxDistance` is
    /// FLT_MAX whatever it was.
    [[nodiscard]] Ray transformed(const rob::PoseTemplate<float>& pose) const;
    /// The same in place, but `maxDistance` stays.
    void transform(const rob::PoseTemplate<float>& pose);

    /// Writes "origin: x y z" and "direction: x y z", a line each.
    void dump(std::ostream& out) const;
};

}  // namespace vrn::visual
