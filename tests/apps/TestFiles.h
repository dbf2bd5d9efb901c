#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vrn::test {

using Point = std::array<float, 3>;
using Triangle = std::array<Point, 3>;

/// The twelve triangles of a box, corners counter-clockwise seen from outside.
[[nodiscard]] std::vector<Triangle> BoxTriangles(const Point& low, const Point& high);

void WriteBytes(const std::filesystem::path& file, const std::string& bytes);
[[nodiscard]] std::string ReadBytes(const std::filesystem::path& file);

/// A binary STL.
void WriteBinaryStl(const std::filesystem::path& file, const std::vector<Triangle>& triangles);
/// Throws std::runtime_error if `file` is not a binary STL.
[[nodiscard]] std::vector<Triangle> ReadBinaryStl(const std::filesystem::path& file);

/// A file of the shared sample data; empty where this machine has none.
[[nodiscard]] std::filesystem::path SharedData(const std::string& name);

}  // namespace vrn::test
