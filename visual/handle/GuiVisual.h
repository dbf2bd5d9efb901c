#pragma once

#include <string>

#include "visual/Visual.h"

namespace vrn::visual {

/// Base of everything that the user drags in the viewport. It is switched on and off by itself:
/// what it hangs on may be hidden and shown without it. Thread: render.
class VRN_VISUAL_API GuiVisual : public Visual {
public:
    /// A free node named `name`: it is drawn once it is attached to another visual.
    explicit GuiVisual(const std::string& name);
    /// The scene's attached handle is none any more if it was this.
    ~GuiVisual() override;

    /// How far a handle follows the mouse from one pixel to another, in the world. `pose` is the
    /// handle's place in the world, and a component of `axes` above 0 marks an axis of it that is
    /// free. The motion lies in the one of two planes through the handle that faces the camera
    /// more, less what it has along a further direction: with one axis marked only that axis
    /// remains. Call it with one axis at a time: with y and another one marked the directions that
    /// the planes are made from are not of unit length, and the answer is not the cursor's way.
    ///
    /// Throws std::overflow_error ("0-length vector cannot be normalized.") with no axis marked,
    /// std::logic_error ("The line is parallel with the plane") if a line of sight runs in the
    /// plane, and std::logic_error without a camera or a render target.
    [[nodiscard]] static rob::Vec3Template<float> MouseDisplacement(
        const rob::Vec2Template<float>& from, const rob::Vec2Template<float>& to,
        const rob::PoseTemplate<float>& pose, const rob::Vec3Template<float>& axes);
};

}  // namespace vrn::visual
