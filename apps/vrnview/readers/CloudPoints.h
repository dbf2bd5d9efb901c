#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

#include "suite/rob/VectorTypes.h"

namespace vrn::host {

/// The points of a scanned cloud, in the file's own unit and order.
struct CloudPoints {
    std::vector<rob::PosTemplate<double>> points;  ///< all finite
    std::uint64_t holes = 0;                       ///< points of the file that are not finite

    /// Keeps `point`, or counts it as a hole.
    void add(const rob::PosTemplate<double>& point);
};

/// Readers of what a file holds. A file may claim any count: it is compared with the bytes that are
/// there before anything is made room for. All throw std::runtime_error with the reason alone (no
/// file name) for what they cannot read, a cut file and one without a finite point included.
/// Thread: pure.

/// Polygon files: text, little-endian or big-endian. The element "vertex" must have x, y and z as
/// plain properties; all other elements and properties are passed over.
[[nodiscard]] CloudPoints ReadPly(std::string_view bytes);

/// Point cloud data, version 0.7 and earlier: ascii, binary or binary_compressed. The fields x, y
/// and z are read, of any type and size; all others are passed over.
[[nodiscard]] CloudPoints ReadPcd(std::string_view bytes);

/// Text, a point a line: x, y, z and whatever stands behind them, between blanks, tabulators,
/// commas or semicolons. Empty lines and those that start with # or // are passed over. The first
/// line may be a single number, the number of points, or a heading that starts with "x".
[[nodiscard]] CloudPoints ReadPointText(std::string_view text);

/// Reads by the file's extension (.ply, .pcd, .xyz, .pts, in any case). Throws the same for another
/// one and for a file that cannot be read. Thread: any.
[[nodiscard]] CloudPoints ReadCloudFile(const std::filesystem::path& file);

/// Unpacks LZF data into exactly `size` bytes. Throws std::runtime_error if the data is broken or
/// gives another size. Nothing is allocated for a size that so few bytes cannot give. Thread: pure.
[[nodiscard]] std::vector<char> UnpackLzf(std::string_view packed, std::uint64_t size);

}  // namespace vrn::host
