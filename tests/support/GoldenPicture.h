#pragma once

#include <filesystem>
#include <string>

#include "apps/headless/Picture.h"

namespace vrn::test {

/// How far a picture may be from the one that was looked at and kept. The shares hold pictures
/// apart that a person would tell apart, and bear what drivers do differently along edges.
struct PictureTolerance {
    int channel = 32;           ///< a pixel differs if one of its channels does by more than this
    double wholeShare = 0.003;  ///< of the pixels of the picture may differ
    double tileShare = 0.2;     ///< of the pixels of any tile: so small a thing may be missing
    int tilePx = 12;            ///< side of a tile
};

/// Compares `picture` with the PNG file `golden`. Returns an empty text if they agree; else what
/// differs, and where the picture and one of the differences lie (red on the dimmed golden one),
/// which are written to `folder` under the name of `golden`.
///
/// With the environment variable VRN_REWRITE_GOLDEN set to anything but nothing, `picture` becomes
/// the golden one instead: look at it before it is kept.
[[nodiscard]] std::string CompareWithGolden(const headless::Picture& picture,
                                            const std::filesystem::path& golden,
                                            const std::filesystem::path& folder,
                                            const PictureTolerance& tolerance = {});

}  // namespace vrn::test
