#include "tests/support/GoldenPicture.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <format>
#include <vector>

namespace vrn::test {

namespace {

using headless::Picture;
using headless::Rgba;

bool Differs(const Rgba& a, const Rgba& b, int channel) {
    return std::max({std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b)}) > channel;
}

/// What differs of two pictures of one size.
struct Differences {
    std::size_t count = 0;
    int worstTileCount = 0, worstX = 0, worstY = 0;  ///< pixels; the tile's upper left corner
    Picture picture;
};

Differences DifferencesOf(const Picture& seen, const Picture& golden,
                          const PictureTolerance& tolerance) {
    const int width = golden.getWidth(), height = golden.getHeight(), side = tolerance.tilePx;
    const int columns = (width + side - 1) / side;
    std::vector<int> tiles(static_cast<std::size_t>(columns * ((height + side - 1) / side)));
    Differences differences;
    differences.picture = Picture(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Rgba wanted = golden.at(x, y);
            const auto dimmed = static_cast<std::uint8_t>((wanted.r + wanted.g + wanted.b) / 6);
            const bool differs = Differs(seen.at(x, y), wanted, tolerance.channel);
            differences.picture.set(x, y,
                                    differs ? Rgba{255, 40, 40} : Rgba{dimmed, dimmed, dimmed});
            if (!differs) continue;
            ++differences.count;
            ++tiles[static_cast<std::size_t>(y / side * columns + x / side)];
        }
    }
    const auto worst = std::ranges::max_element(tiles);
    const auto at = static_cast<int>(worst - tiles.begin());
    differences.worstTileCount = *worst;
    differences.worstX = at % columns * side;
    differences.worstY = at / columns * side;
    return differences;
}

bool IsWithin(const Differences& differences, const Picture& golden,
              const PictureTolerance& tolerance) {
    const auto pixels = static_cast<double>(golden.getPixels().size());
    const double tilePixels = tolerance.tilePx * tolerance.tilePx;
    return static_cast<double>(differences.count) <= tolerance.wholeShare * pixels &&
           differences.worstTileCount <= tolerance.tileShare * tilePixels;
}

bool IsRewriting() {
    const char* wanted = std::getenv("VRN_REWRITE_GOLDEN");
    return wanted != nullptr && *wanted != '\0';
}

}  // namespace

std::string CompareWithGolden(const Picture& picture, const std::filesystem::path& golden,
                              const std::filesystem::path& folder,
                              const PictureTolerance& tolerance) {
    if (IsRewriting()) {
        std::filesystem::create_directories(golden.parent_path());
        picture.savePng(golden);
        return {};
    }
    std::filesystem::create_directories(folder);
    const std::filesystem::path seenFile = folder / golden.filename();
    if (!std::filesystem::exists(golden)) {
        picture.savePng(seenFile);
        return std::format("there is no {}; this is what was seen: {}", golden.string(),
                           seenFile.string());
    }
    const Picture kept = Picture::loadPng(golden);
    if (kept.getWidth() != picture.getWidth() || kept.getHeight() != picture.getHeight())
        return std::format("{} by {} pixels instead of {} by {}", picture.getWidth(),
                           picture.getHeight(), kept.getWidth(), kept.getHeight());
    const Differences differences = DifferencesOf(picture, kept, tolerance);
    if (IsWithin(differences, kept, tolerance)) return {};
    const std::filesystem::path differenceFile =
        folder / (golden.stem().string() + ".difference.png");
    picture.savePng(seenFile);
    differences.picture.savePng(differenceFile);
    return std::format(
        "{} of {} pixels differ, {} of {} in the tile at ({}, {})\n  seen: {}\n  kept: {}\n"
        "  difference: {}",
        differences.count, kept.getPixels().size(), differences.worstTileCount,
        tolerance.tilePx * tolerance.tilePx, differences.worstX, differences.worstY,
        seenFile.string(), golden.string(), differenceFile.string());
}

}  // namespace vrn::test
