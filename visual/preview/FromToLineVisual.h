#pragma once

#include <string>

#include "visual/geometry/LineVisual.h"

namespace vrn::visual {

/// One line between two points that move. Thread: render.
class VRN_VISUAL_API FromToLineVisual : public LineVisual {
public:
    /// Between two points at the origin, in the look of that material.
    FromToLineVisual(Visual* parent, const std::string& materialName);
    /// In the frame of the visual; it takes effect on a hidden line too.
    void setPos(const rob::PosTemplate<float>& from, const rob::PosTemplate<float>& to);
};

}  // namespace vrn::visual
