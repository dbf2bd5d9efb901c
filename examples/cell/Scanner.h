#pragma once

#include <gp_Pnt.hxx>
#include <TopoDS_Shape.hxx>

#include <array>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace vrn::examples {

struct ScanPoint {
    gp_Pnt point;
    std::array<std::uint8_t, 3> colour{};  ///< red, green, blue
};

/// How a scanner looks at things. It sends rays in a square raster, and sees of a surface what no
/// other part of it hides.
struct Scanner {
    std::vector<gp_Pnt> places;  ///< from which it looks at the middle of the shape, in this order
    double stepDegrees = 0.14;   ///< from ray to ray
    double noise = 0.5;          ///< largest error along a ray, in millimetres
    double dropout = 0.04;       ///< part of the rays that bring nothing back
    std::array<double, 3> tint{0.80, 0.62, 0.34};  ///< of a surface that is met head-on
};

/// What the scanner sees of the shape's triangles; the same each time. The shape must have been
/// triangulated, and each place must lie outside of its bounds.
[[nodiscard]] std::vector<ScanPoint> Scan(const TopoDS_Shape& shape, const Scanner& scanner);

/// Writes the points as a binary PLY file with colours, in metres, as scanners do. Throws
/// std::runtime_error naming the file if it cannot be written.
void WritePly(const std::vector<ScanPoint>& points, const std::filesystem::path& file);

}  // namespace vrn::examples
