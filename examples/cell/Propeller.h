#pragma once

#include <gp_Dir.hxx>
#include <gp_Pnt.hxx>

#include <vector>

#include "examples/cell/Paint.h"

namespace vrn::examples {

/// A place on a surface with the directions a tool follows there.
struct SurfacePlace {
    gp_Pnt point;
    gp_Dir normal;  ///< out of the material
    gp_Dir along;   ///< of the row that the place belongs to, square to the normal
};

/// A row of places, in the order in which a tool runs over them.
using SurfaceRow = std::vector<SurfacePlace>;

/// A cast ship's propeller with its hub upright about Z, standing on z = 0. Millimetres.
///
/// The blades are lofted through wing sections, which turn from root to tip with the pitch; the hub
/// is bored and its ends are machined.
struct Propeller {
    int blades = 4;
    double radius = 500;
    double pitch = 620;  ///< rise in one turn
    double hubHeight = 226;
    double boreRadius = 45;
};

/// The whole propeller as one solid. Throws std::runtime_error if a blade does not join the hub.
[[nodiscard]] PaintedBody MakePropeller(const Propeller& propeller);

/// Rows of places across the upper side of one blade, from inside to outside. Blade 0 points along
/// X, the others follow counter-clockwise seen from above.
[[nodiscard]] std::vector<SurfaceRow> RowsOnBlade(const Propeller& propeller, int blade, int rows,
                                                  int placesPerRow);

}  // namespace vrn::examples
