#pragma once

#include "visual/station/InstanceFrameVisual.h"

namespace vrn::visual {

/// A robot target, called "ROBTARGET_{id}", as each is that shows the same one. Thread: render.
class VRN_VISUAL_API RobtargetVisual : public InstanceFrameVisual {
public:
    RobtargetVisual(Visual* parent, std::uint32_t idIn,
                    const rob::PoseTemplate<float>* pose = nullptr);

    /// For the model object of that id, with its pose, entered in the registry and in the
    /// selection. Throws std::out_of_range, "unordered_map::at", for an id that the model does not
    /// know, and what ModelPose and the constructor throw; then the tree is as it was.
    static RobtargetVisual* Build(Visual* parent, std::uint32_t idIn);
    /// As above, for who has the object at hand: paths show thousands.
    static RobtargetVisual* Build(Visual* parent, const sdf::SdfNode& modelNode);

    /// Both bring the normal look back.
    void preview();
    void cancelPreview();
};

}  // namespace vrn::visual
