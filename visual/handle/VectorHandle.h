#pragma once

#include "visual/handle/FixedSizeHandle.h"

namespace vrn::visual {

class HandleMeshVisual;
class TiltHandle;
class TwistHandle;

/// Shows the direction of a process at one point, with two rings to tilt and to twist it by. Init
/// makes one, which the host attaches, shows and registers where it edits. Thread: render.
class VRN_VISUAL_API VectorHandle : public FixedSizeHandle {
public:
    VectorHandle();

    /// Null before Init.
    [[nodiscard]] static VectorHandle* Get();

    /// Turns a ring away from its rest position, with what hangs on it, and fills the angle. Throws
    /// std::invalid_argument, and changes nothing, for an angle that is not finite or of more than
    /// a thousand turns.
    void setTilt(double radians);
    void setTwist(double radians);
    /// Show one ring as selected.
    void selectTilt();
    void selectTwist();

    // Each hangs on the one after it: direction on tilt, tilt on twist, twist on this.
    TiltHandle* tiltHandle = nullptr;
    TwistHandle* twistHandle = nullptr;
    HandleMeshVisual* dirHandle = nullptr;
};

/// Set by Init, null before it; it lives until the process ends.
VRN_VISUAL_API extern VectorHandle* gVectorHandle;

}  // namespace vrn::visual
