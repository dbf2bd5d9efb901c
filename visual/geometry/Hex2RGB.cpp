#include "visual/geometry/Hex2RGB.h"

namespace vrn::visual {

rob::ColorTemplate<float> Hex2RGB(const std::string& hexColor) {
    const auto component = [&](std::size_t at) {
        return static_cast<float>(std::stoi(hexColor.substr(at, 2), nullptr, 16)) / 255.0f;
    };
    return {component(1), component(3), component(5)};
}

}  // namespace vrn::visual
