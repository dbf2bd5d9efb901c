#pragma once

#include <string>

#include "suite/rob/VectorTypes.h"
#include "visual/VrnVisualApi.h"

namespace vrn::visual {

/// The colour that a hash sign and six hexadecimal digits name ("#FFA725"); the first character is
/// not looked at. Components 0 to 1. Throws std::out_of_range or std::invalid_argument ("stoi") for
/// too short a text, and the latter for other digits. Thread: pure.
[[nodiscard]] VRN_VISUAL_API rob::ColorTemplate<float> Hex2RGB(const std::string& hexColor);

}  // namespace vrn::visual
