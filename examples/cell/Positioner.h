#pragma once

#include <TopoDS_Shape.hxx>

#include "examples/cell/Linkage.h"

namespace vrn::examples {

/// A tilting rotary table. Its frame lies on the floor below the middle of the faceplate; the tilt
/// axis runs along Y, the faceplate turns about Z. Millimetres.
namespace positioner {

inline constexpr double tiltHeight = 880;
inline constexpr double plateBelowTilt = 262;  // the tilt axis to the seat of the faceplate
inline constexpr double plateThickness = 48;   // seat to working face

}  // namespace positioner

[[nodiscard]] Linkage MakePositioner();

/// The clamping fixture on the faceplate's working face, in the frame of that face: an arbor for
/// the workpiece's bore, and three jaws.
[[nodiscard]] TopoDS_Shape MakeFixture();
/// The height of the fixture's seat over the working face.
inline constexpr double fixtureSeat = 150;

}  // namespace vrn::examples
