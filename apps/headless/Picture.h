#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace Ogre {
class RenderTarget;
}

namespace vrn::headless {

/// Red, green, blue and opacity, each 0 to 255.
struct Rgba {
    std::uint8_t r{}, g{}, b{}, a{255};
    friend bool operator==(const Rgba&, const Rgba&) = default;
};

/// An image of 8 bits a channel, rows from top to bottom, pixel (0, 0) at the upper left.
///
/// Thread: pure, but for readBack.
class Picture {
public:
    /// No pixels.
    Picture() = default;
    /// `widthPx` by `heightPx` pixels of one colour. Throws std::invalid_argument if a size is
    /// below 1.
    Picture(int widthPx, int heightPx, Rgba fill = {});

    /// What `target` shows after its last frame, opaque whatever its alpha channel holds. Thread:
    /// render.
    [[nodiscard]] static Picture readBack(Ogre::RenderTarget& target);
    /// Throws std::runtime_error, naming the file and the reason, if `file` is not a readable PNG.
    [[nodiscard]] static Picture loadPng(const std::filesystem::path& file);
    /// As a PNG, whatever the name ends with, by way of WholeFile. Throws std::runtime_error,
    /// naming the file and the reason; then nothing is left under that name but what was there
    /// before.
    void savePng(const std::filesystem::path& file) const;

    [[nodiscard]] int getWidth() const { return width; }
    [[nodiscard]] int getHeight() const { return height; }
    /// Row after row, `getWidth() * getHeight()` of them.
    [[nodiscard]] const std::vector<Rgba>& getPixels() const { return pixels; }
    /// Throws std::out_of_range outside the picture.
    [[nodiscard]] Rgba at(int x, int y) const { return pixels[indexOf(x, y)]; }
    void set(int x, int y, Rgba colour) { pixels[indexOf(x, y)] = colour; }

    /// Smaller by a whole factor, each pixel the mean of `factor` by `factor` of this picture (box
    /// filter). Throws std::invalid_argument if `factor` is below 1 or does not divide both sizes.
    [[nodiscard]] Picture downscaled(int factor) const;

private:
    [[nodiscard]] std::size_t indexOf(int x, int y) const;

    int width = 0;
    int height = 0;
    std::vector<Rgba> pixels;
};

}  // namespace vrn::headless
