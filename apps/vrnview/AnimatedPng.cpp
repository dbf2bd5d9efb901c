#include "apps/vrnview/AnimatedPng.h"

#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

namespace vrn::host {

namespace {

using Bytes = std::vector<std::uint8_t>;
using headless::Picture;
using headless::Rgba;

constexpr std::array<std::uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

void Append32(Bytes& bytes, std::uint32_t value) {
    for (const int shift : {24, 16, 8, 0})
        bytes.push_back(static_cast<std::uint8_t>(value >> shift & 0xff));
}

std::uint32_t Read32(const Bytes& bytes, std::size_t at) {
    return std::uint32_t{bytes[at]} << 24 | std::uint32_t{bytes[at + 1]} << 16 |
           std::uint32_t{bytes[at + 2]} << 8 | bytes[at + 3];
}

Bytes ChunkOf(std::string_view type, const Bytes& data) {
    Bytes chunk;
    Append32(chunk, static_cast<std::uint32_t>(data.size()));
    chunk.insert(chunk.end(), type.begin(), type.end());
    chunk.insert(chunk.end(), data.begin(), data.end());
    // Over type and data.
    const auto sum = crc32(0, chunk.data() + 4, static_cast<uInt>(chunk.size() - 4));
    Append32(chunk, static_cast<std::uint32_t>(sum));
    return chunk;
}

/// A whole PNG file of opaque pixels, row after row.
Bytes Encoded(const Bytes& rgb, int width, int height) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    Bytes bytes(size);
    if (png_image_write_to_memory(&image, bytes.data(), &size, 0, rgb.data(), 0, nullptr) == 0)
        throw std::runtime_error(image.message);
    bytes.resize(size);
    return bytes;
}

/// The data of all chunks of that type, put together.
Bytes DataOf(const Bytes& png, std::string_view type) {
    Bytes data;
    for (std::size_t at = signature.size(); at + 12 <= png.size();) {
        const std::size_t length = Read32(png, at);
        if (std::equal(type.begin(), type.end(), png.begin() + static_cast<std::ptrdiff_t>(at) + 4))
            data.insert(data.end(), png.begin() + static_cast<std::ptrdiff_t>(at) + 8,
                        png.begin() + static_cast<std::ptrdiff_t>(at + 8 + length));
        at += length + 12;
    }
    return data;
}

}  // namespace

/// A rectangle of a picture; never empty.
struct AnimatedPng::Area {
    int left = 0, top = 0, width = 1, height = 1;

    /// Of what differs; some pixel if nothing does.
    static Area Of(const Picture& before, const Picture& now) {
        int left = now.getWidth(), right = -1, top = now.getHeight(), bottom = -1;
        for (int y = 0; y < now.getHeight(); ++y) {
            for (int x = 0; x < now.getWidth(); ++x) {
                if (now.at(x, y) == before.at(x, y)) continue;
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = y;
            }
        }
        if (right < 0) return {};
        return {left, top, right - left + 1, bottom - top + 1};
    }
};

AnimatedPng::AnimatedPng(std::filesystem::path target, int delayMs)
    : file(std::move(target)), out(file), delay(std::clamp(delayMs, 1, 65535)) {}

void AnimatedPng::add(const Picture& picture) {
    const Area whole{0, 0, picture.getWidth(), picture.getHeight()};
    if (frames == 0) {
        addFrame(picture, whole);
    } else {
        if (picture.getWidth() != last.getWidth() || picture.getHeight() != last.getHeight())
            throw std::invalid_argument("the pictures of an animation have one size");
        addFrame(picture, Area::Of(last, picture));
    }
    ++frames;
    last = picture;
    if (!out.stream()) throw std::runtime_error(file.string() + ": cannot be written");
}

void AnimatedPng::addFrame(const Picture& picture, const Area& area) {
    Bytes rgb;
    rgb.reserve(static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height) * 3);
    for (int y = area.top; y < area.top + area.height; ++y) {
        for (int x = area.left; x < area.left + area.width; ++x) {
            const Rgba pixel = picture.at(x, y);
            rgb.insert(rgb.end(), {pixel.r, pixel.g, pixel.b});
        }
    }
    const Bytes png = Encoded(rgb, area.width, area.height);
    if (frames == 0) {
        out.stream().write(reinterpret_cast<const char*>(signature.data()), signature.size());
        writeChunk("IHDR", DataOf(png, "IHDR"));
        countPlace = out.stream().tellp();
        writeChunk("acTL", Bytes(8));
        writeControl(area);
        writeChunk("IDAT", DataOf(png, "IDAT"));
        return;
    }
    writeControl(area);
    Bytes data;
    Append32(data, sequence++);
    const Bytes pixels = DataOf(png, "IDAT");
    data.insert(data.end(), pixels.begin(), pixels.end());
    writeChunk("fdAT", data);
}

void AnimatedPng::writeControl(const Area& area) {
    Bytes data;
    Append32(data, sequence++);
    for (const int value : {area.width, area.height, area.left, area.top})
        Append32(data, static_cast<std::uint32_t>(value));
    // So many thousandths of a second; then it stays, and the next one is drawn over it.
    Append32(data, static_cast<std::uint32_t>(delay) << 16 | 1000U);
    data.insert(data.end(), {0, 0});
    writeChunk("fcTL", data);
}

void AnimatedPng::writeChunk(std::string_view type, const Bytes& data) {
    const Bytes chunk = ChunkOf(type, data);
    out.stream().write(reinterpret_cast<const char*>(chunk.data()),
                       static_cast<std::streamsize>(chunk.size()));
}

void AnimatedPng::finish() {
    if (frames == 0) throw std::runtime_error(file.string() + ": there is no picture to write");
    writeChunk("IEND", {});
    out.stream().seekp(countPlace);
    Bytes count;
    Append32(count, frames);
    Append32(count, 0);  // without end
    writeChunk("acTL", count);
    out.commit();
}

}  // namespace vrn::host
