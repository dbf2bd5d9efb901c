#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace vrn {

/// The colours of one body, each a hash sign and six hexadecimal digits.
struct ColorInfo {
    std::string bodyColor;
    /// By face index, counted from 1 as in the shape's face map; a face that is not in it has the
    /// body's colour.
    std::unordered_map<std::uint32_t, std::string> faceColors;
};

}  // namespace vrn
