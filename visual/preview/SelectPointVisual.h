#pragma once

#include "visual/geometry/LineVisual.h"

namespace vrn::visual {

/// A white cross of three lines at a point that has been picked; upright it is longer, so that it
/// stands out of a surface. Thread: render.
class VRN_VISUAL_API SelectPointVisual : public LineVisual {
public:
    explicit SelectPointVisual(Visual* parent);
};

}  // namespace vrn::visual
