#pragma once

#include <cstdint>
#include <filesystem>
#include <ios>
#include <optional>
#include <string_view>
#include <vector>

#include "apps/headless/Picture.h"
#include "apps/headless/WholeFile.h"

namespace vrn::host {

/// Pictures one after the other in one PNG file that plays them, over and over; what does not know
/// of animations shows the first ("Animated PNG", part of PNG since its third edition). Of each
/// picture only the rectangle is kept in which it differs from the one before.
///
///     AnimatedPng film("film.png", 40);
///     for (...) film.add(picture);
///     film.finish();
///
/// All throw std::runtime_error, naming the file, if it cannot be written. Until finish() nothing
/// stands under its name. Thread: one at a time.
class AnimatedPng {
public:
    /// Each picture is shown for `delayMs`, from 1 to 65535.
    AnimatedPng(std::filesystem::path target, int delayMs);
    AnimatedPng(const AnimatedPng&) = delete;
    AnimatedPng& operator=(const AnimatedPng&) = delete;

    /// Throws std::invalid_argument for a picture of another size than the first.
    void add(const headless::Picture& picture);
    /// Throws std::runtime_error if there is no picture.
    void finish();

private:
    struct Area;
    using Bytes = std::vector<std::uint8_t>;

    void addFrame(const headless::Picture& picture, const Area& area);
    void writeControl(const Area& area);
    void writeChunk(std::string_view type, const Bytes& data);

    std::filesystem::path file;
    headless::WholeFile out;
    int delay;
    std::uint32_t frames = 0;
    std::uint32_t sequence = 0;     ///< of the chunks that have a number
    std::streamoff countPlace = 0;  ///< where the number of pictures stands
    headless::Picture last;
};

}  // namespace vrn::host
