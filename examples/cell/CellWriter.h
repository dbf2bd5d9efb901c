#pragma once

#include <filesystem>

namespace vrn::examples {

struct RobotCell;

/// Writes the cell as "cell.station.json" into `folder`, which is made if it is missing, and the
/// geometry that it names into "geometry" there: B-reps without triangles, an STL, a PLY. The same
/// cell gives the same bytes. Returns the station file. Throws std::runtime_error or
/// std::filesystem::filesystem_error if something cannot be written.
std::filesystem::path WriteCell(const RobotCell& cell, const std::filesystem::path& folder);

}  // namespace vrn::examples
