#pragma once

#include <array>
#include <cstdint>

#include "visual/VrnVisualApi.h"

namespace vrn::visual {

/// One character as flat triangles, counter-clockwise seen from +Z.
///
/// Capitals and digits stand on y 0 and are 1 high, descenders reach to -0.28; lines of text
/// are 1.4 apart. Strokes are 0.12 wide and overlap where they meet.
struct Letter {
    const float* vertices;         ///< x, y of the first vertex, x, y of the next ...
    const std::uint32_t* indices;  ///< three a triangle
    float advance;                 ///< how far the pen moves on
    std::int32_t vertexCount;
    std::int32_t triangleCount;
};

/// The 94 characters from '!' to '~', at their code minus '!'. Thread: any.
[[nodiscard]] VRN_VISUAL_API const std::array<Letter, 94>& Letters();

/// The record of `c`; null for what is not in the table: blanks, control characters, all above '~'.
/// Thread: any.
[[nodiscard]] VRN_VISUAL_API const Letter* FindLetter(char c);

}  // namespace vrn::visual
