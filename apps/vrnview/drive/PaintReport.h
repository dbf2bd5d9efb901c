#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vrn::visual {
class PaintMesh;
class Visual;
}  // namespace vrn::visual

namespace vrn::host {

/// How much of a mesh is painted. A triangle counts as covered by as many thirds of its area as it
/// has painted corners.
struct PaintCover {
    std::size_t vertices = 0, painted = 0;
    double area = 0, covered = 0;  ///< square millimetres

    PaintCover& operator+=(const PaintCover& o);
};

struct PaintedBody {
    std::uint32_t id = 0;  ///< of the body's visual
    std::string name;      ///< of the body's visual
    PaintCover cover;
};

/// Triangles of vertices that are not there are passed over. Thread: pure.
[[nodiscard]] PaintCover CoverOf(const visual::PaintMesh& mesh);
/// The bodies at and below `top` that paint may lie on, by their numbers. Thread: render.
[[nodiscard]] std::vector<PaintedBody> PaintedBodies(const visual::Visual& top);
/// A line of headings, then one for each body: body, name, vertices, painted, area, covered.
/// Thread: pure.
[[nodiscard]] std::string CsvOf(const std::vector<PaintedBody>& bodies);
/// Throws std::runtime_error, naming the file, if it cannot be written. Thread: any.
void WritePaintReport(const std::vector<PaintedBody>& bodies, const std::filesystem::path& file);

}  // namespace vrn::host
