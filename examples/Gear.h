#pragma once

#include <TopoDS_Shape.hxx>

namespace vrn::examples {

/// A spur gear with involute flanks, lying on the XY plane, its axis the Z axis. Millimetres.
struct Gear {
    double module = 10;  ///< pitch diameter by number of teeth
    int teeth = 30;      ///< at least 18: below that the flanks would be undercut
    double pressureAngleDegrees = 20;
    double width = 60;
    double boreRadius = 32;
    double hubRadius = 58;
    double webWidth = 26;  ///< between rim and hub
    int webHoles = 6;
};

/// Throws std::invalid_argument for fewer than 18 teeth.
[[nodiscard]] TopoDS_Shape MakeGear(const Gear& gear);

}  // namespace vrn::examples
