#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace cadcam {

/// A triangle mesh as the machining side of the suite hands it over.
template <class T>
struct TMesh {
    /// x, y, z of each vertex.
    std::vector<std::array<T, 3>> vertices;
    /// Three indices into `vertices` for each triangle, counter-clockwise seen from outside.
    std::vector<std::array<std::uint32_t, 3>> triangles;
};

}  // namespace cadcam
