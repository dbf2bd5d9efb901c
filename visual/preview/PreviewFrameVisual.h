#pragma once

#include "visual/geometry/LineVisual.h"

namespace vrn::visual {

/// A white triad of three lines, each 30 long, where a frame would come to be. Thread: render.
class VRN_VISUAL_API PreviewFrameVisual : public LineVisual {
public:
    explicit PreviewFrameVisual(Visual* parent);
};

}  // namespace vrn::visual
