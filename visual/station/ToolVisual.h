#pragma once

#include "visual/station/MechanismVisual.h"

namespace vrn::visual {

/// A tool, with its frames, which stay visible. Thread: render.
class VRN_VISUAL_API ToolVisual : public MechanismVisual {
public:
    ToolVisual(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren);

    /// Makes the visual under `parent` and enters it in the registry; then a frame "Tool Frame"
    /// directly under it for each frame of the tool, in the registry and in the selection. Throws
    /// std::invalid_argument for null, std::bad_cast for an object that is no tool, what the
    /// constructor throws, and what ModelPose throws for a frame: the tool and the frames before it
    /// then stay.
    static void Build(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren);
};

}  // namespace vrn::visual
