#pragma once

#include "visual/handle/RingHandle.h"

namespace vrn::visual {

/// The ring that turns a process vector about the x axis. Thread: render.
class VRN_VISUAL_API TwistHandle : public RingHandle {
public:
    explicit TwistHandle(Visual* parent);
    /// Draws the sector of that turn; throws what RingHandle::drawSector throws.
    void setTwist(double radians);
};

}  // namespace vrn::visual
