#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apps/vrnview/Bounds.h"

namespace vrn::visual {
class Visual;
}

namespace vrn::host {

struct Counts {
    std::uint64_t bodies = 0, faces = 0, triangles = 0, vertices = 0, points = 0;

    Counts& operator+=(const Counts& o);
    friend bool operator==(const Counts&, const Counts&) = default;
};

/// One input: what it holds, or why it was not read.
struct InputReport {
    std::string file;
    std::string error;  ///< empty if the file was read
    double ms = 0;      ///< from the first look at the file until its visuals stood
    Counts counts;
    /// A line each, for what of a file that was read could not be shown.
    std::vector<std::string> problems{};

    [[nodiscard]] bool isOk() const { return error.empty(); }
};

struct VisualReport {
    std::uint32_t id = 0;
    std::int32_t type = 0;  ///< the number of its VisualType
    std::string name;
    std::vector<VisualReport> children;
};

struct SceneReport {
    std::vector<InputReport> inputs;
    Counts totals;
    Bounds bounds;                      ///< of bodies, meshes and points
    std::vector<VisualReport> visuals;  ///< what stands under the world visual
};

/// What `visual` and all below it hold, whether it shows or is hidden. Thread: render.
[[nodiscard]] Counts CountsOf(visual::Visual& visual);
/// World bounds of the bodies, meshes and points at and below `visual`. Takes the poses as they are
/// now. Thread: render.
[[nodiscard]] Bounds BoundsOf(const visual::Visual& visual);
/// Whether all coordinates of what hangs at and below `visual` leave room to compute with: at most
/// maxCoordinate from the origin. Thread: render.
[[nodiscard]] bool HasUsableCoordinates(const visual::Visual& visual);
inline constexpr float maxCoordinate = 1e15f;
/// What has to be in a picture of `visual` and all below it: the points of meshes, solids and
/// clouds, the corners of the world boxes of what else carries geometry. Takes the poses as they
/// are now. Thread: render.
[[nodiscard]] std::vector<rob::PosTemplate<double>> OutlineOf(const visual::Visual& visual);
/// Without helpers, the handles and what a dialog shows while it picks: the library keeps its own
/// hidden in every scene, and none belongs to what was opened. Thread: render.
[[nodiscard]] VisualReport TreeOf(const visual::Visual& visual);

}  // namespace vrn::host
