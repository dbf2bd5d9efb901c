#pragma once

#include "visual/station/FrameVisual.h"

namespace vrn::visual {

/// The centre point of a tool, called "TCP_{id}". Thread: render.
class VRN_VISUAL_API TcpVisual : public FrameVisual {
public:
    TcpVisual(Visual* parent, sdf::SdfNode* modelNode);

    /// With the pose of the model object, entered in the registry and in the selection. Throws
    /// std::invalid_argument for null and what ModelPose throws, and then leaves the tree as it
    /// was.
    static void Build(Visual* parent, sdf::SdfNode* modelNode);
};

}  // namespace vrn::visual
