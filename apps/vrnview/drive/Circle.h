#pragma once

#include "suite/rob/ShapeTypes.h"

namespace vrn::host {

/// A whole circle in space.
struct Circle {
    rob::PosTemplate<double> centre;
    rob::Vec3Template<double> toStart;  ///< from the centre to a point of the circle
    rob::Vec3Template<double> normal;   ///< unit length
};

/// Through three points. Throws std::runtime_error for points on one line. Thread: pure.
[[nodiscard]] Circle CircleThrough(const rob::PosTemplate<double>& a,
                                   const rob::PosTemplate<double>& b,
                                   const rob::PosTemplate<double>& c);
/// The arc over all but a hair of the circle: its middle is opposite to its start, so that the line
/// between them is a diameter. Throws std::overflow_error for a circle too small to be drawn.
/// Thread: pure.
[[nodiscard]] rob::TPCircle WholeArc(const Circle& circle);

}  // namespace vrn::host
