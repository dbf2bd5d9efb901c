#pragma once

#include <filesystem>

class TopoDS_Shape;

namespace vrn::examples {

/// How closely triangles follow a curved surface.
struct Fineness {
    double distance = 0.1;    ///< largest distance between a chord and its curve, in millimetres
    double angleDegrees = 5;  ///< largest turn from one triangle to the next
};

/// Triangulates `shape` and writes it to `file` as binary STL; returns the number of triangles.
/// Triangles without area are left out. Throws std::runtime_error naming the file if it cannot be
/// written.
std::size_t WriteStl(const TopoDS_Shape& shape, const std::filesystem::path& file,
                     const Fineness& fineness = {});

}  // namespace vrn::examples
