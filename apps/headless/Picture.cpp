#include "apps/headless/Picture.h"

#include <OgrePixelFormat.h>
#include <OgreRenderTarget.h>
#include <png.h>

#include <array>
#include <format>
#include <stdexcept>
#include <string>
#include <vector>

#include "apps/headless/WholeFile.h"

namespace vrn::headless {

namespace {

static_assert(sizeof(Rgba) == 4,
              "pixels are handed to libpng and to the engine as they lie in memory");

std::runtime_error FileError(const std::filesystem::path& file, const std::string& reason) {
    return std::runtime_error(std::format("{}: {}", file.string(), reason));
}

/// libpng's description of an image; frees what it holds.
struct PngImage : png_image {
    PngImage() : png_image{} { version = PNG_IMAGE_VERSION; }
    ~PngImage() { png_image_free(this); }
    PngImage(const PngImage&) = delete;
    PngImage& operator=(const PngImage&) = delete;
};

}  // namespace

Picture::Picture(int widthPx, int heightPx, Rgba fill) : width(widthPx), height(heightPx) {
    if (widthPx < 1 || heightPx < 1)
        throw std::invalid_argument(
            std::format("a picture needs sizes of at least 1, not {}x{}", widthPx, heightPx));
    pixels.assign(static_cast<std::size_t>(widthPx) * static_cast<std::size_t>(heightPx), fill);
}

Picture Picture::readBack(Ogre::RenderTarget& target) {
    Picture picture(static_cast<int>(target.getWidth()), static_cast<int>(target.getHeight()));
    const Ogre::Box whole(0, 0, target.getWidth(), target.getHeight());
    const Ogre::PixelBox memory(whole, Ogre::PF_BYTE_RGBA, picture.pixels.data());
    // FB_AUTO is the back buffer of a window and the resolved texture of an offscreen target.
    target.copyContentsToMemory(whole, memory, Ogre::RenderTarget::FB_AUTO);
    // Blending leaves what it likes in the alpha channel; a picture of the viewport has no holes.
    for (Rgba& pixel : picture.pixels) pixel.a = 255;
    return picture;
}

Picture Picture::loadPng(const std::filesystem::path& file) {
    PngImage image;
    if (png_image_begin_read_from_file(&image, file.c_str()) == 0)
        throw FileError(file, image.message);
    image.format = PNG_FORMAT_RGBA;
    Picture picture(static_cast<int>(image.width), static_cast<int>(image.height));
    if (png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr) == 0)
        throw FileError(file, image.message);
    return picture;
}

void Picture::savePng(const std::filesystem::path& file) const {
    if (pixels.empty()) throw FileError(file, "the picture has no pixels");
    PngImage image;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGBA;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<char> bytes(size);
    if (png_image_write_to_memory(&image, bytes.data(), &size, 0, pixels.data(), 0, nullptr) == 0)
        throw FileError(file, image.message);
    WholeFile out(file);
    out.stream().write(bytes.data(), static_cast<std::streamsize>(size));
    out.commit();
}

Picture Picture::downscaled(int factor) const {
    if (factor < 1 || width % factor != 0 || height % factor != 0)
        throw std::invalid_argument(
            std::format("a {}x{} picture cannot be made {} times smaller", width, height, factor));
    Picture small(width / factor, height / factor);
    const int count = factor * factor;
    for (int y = 0; y < small.height; ++y) {
        for (int x = 0; x < small.width; ++x) {
            std::array<int, 4> sum{};
            for (int i = 0; i < count; ++i) {
                const Rgba p = at(x * factor + i % factor, y * factor + i / factor);
                sum[0] += p.r;
                sum[1] += p.g;
                sum[2] += p.b;
                sum[3] += p.a;
            }
            const auto mean = [count](int s) {
                return static_cast<std::uint8_t>((s + count / 2) / count);
            };
            small.set(x, y, {mean(sum[0]), mean(sum[1]), mean(sum[2]), mean(sum[3])});
        }
    }
    return small;
}

std::size_t Picture::indexOf(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height)
        throw std::out_of_range(
            std::format("pixel ({}, {}) of a {}x{} picture", x, y, width, height));
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(x);
}

}  // namespace vrn::headless
