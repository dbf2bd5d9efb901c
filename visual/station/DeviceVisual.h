#pragma once

#include "visual/station/MechanismVisual.h"

namespace vrn::visual {

/// A device, such as a positioner, with its frames, which stay visible. Thread: render.
class VRN_VISUAL_API DeviceVisual : public MechanismVisual {
public:
    DeviceVisual(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren);

    /// Makes the visual under `parent` and enters it in the registry; then a frame "Device Frame"
    /// for each frame of the device, in the registry and in the selection, under the visual of the
    /// frame's own parent id, so that it may move with a link. That visual is looked up strictly.
    /// Throws std::invalid_argument for null, std::bad_cast for an object that is no device, what
    /// the constructor throws, and what ModelPose throws for a frame: the device and the frames
    /// before it then stay.
    static void Build(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren);
};

}  // namespace vrn::visual
