#pragma once

#include "visual/Visual.h"

namespace vrn::visual {

/// The mounting point of a manipulator: a bare place that tools are attached to. Thread: render.
class VRN_VISUAL_API WristVisual : public Visual {
public:
    WristVisual(Visual* parent, sdf::SdfNode* modelNode);

    /// With the pose of the model object, entered in the registry; not pickable. Throws
    /// std::invalid_argument for null and what ModelPose throws, and then leaves the tree as it
    /// was.
    static void Build(Visual* parent, sdf::SdfNode* modelNode);
};

}  // namespace vrn::visual
