#pragma once

#include "visual/handle/RingHandle.h"

namespace vrn::visual {

/// The ring that turns a process vector sideways, about the y axis; it turns with the twist.
/// Thread: render.
class VRN_VISUAL_API TiltHandle : public RingHandle {
public:
    explicit TiltHandle(Visual* parent);
    /// Draws the sector of that turn; throws what RingHandle::drawSector throws.
    void setTilt(double radians);
};

}  // namespace vrn::visual
