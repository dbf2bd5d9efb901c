#pragma once

#include "visual/geometry/LineVisual.h"

namespace vrn::rob {
class TPCircle;
}

namespace vrn::visual {

/// A measure drawn as lines, in the frame of its parent. Thread: render.
class VRN_VISUAL_API DimensionVisual : public LineVisual {
public:
    /// A distance; the two points may coincide.
    DimensionVisual(Visual* parent, const rob::PosTemplate<float>& a,
                    const rob::PosTemplate<float>& b);
    /// A diameter: the circle's arc, and a line from its first point to the middle of the arc.
    DimensionVisual(Visual* parent, const rob::TPCircle& circle);
    /// An angle in radians between the legs from `vertex` to `a` and `b`. Throws
    /// std::overflow_error ("0-length vector cannot be normalized.") for legs in one line, or of no
    /// length, and then leaves the tree as it was.
    DimensionVisual(Visual* parent, const rob::PosTemplate<float>& vertex,
                    const rob::PosTemplate<float>& a, const rob::PosTemplate<float>& b,
                    double angle);

    // What the constructors draw; each is one line object more.

    void addDimensionLine(const rob::PosTemplate<float>& a, const rob::PosTemplate<float>& b);
    /// 51 points along the circle's arc.
    void addCircle(const rob::TPCircle& circle);
    /// 21 points about `vertex`, from the shorter leg by `angle` towards the other, as far away as
    /// the shorter leg is long; of equal legs that to `a` is the shorter. Throws as the constructor
    /// of an angle.
    void addDimensionArc(const rob::PosTemplate<float>& vertex, const rob::PosTemplate<float>& a,
                         const rob::PosTemplate<float>& b, double angle);
};

}  // namespace vrn::visual
