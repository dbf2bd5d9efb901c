#include "visual/station/FrameSize.h"

#include "engine/Scene.h"

namespace vrn::visual {

float FrameSizeOfType(VisualType type) {
    const SceneSettings& settings = Scene::Get()->settings;
    switch (type) {
        case VisualType::Frame:
            return static_cast<float>(settings.frameSize);
        case VisualType::Tcp:
            return static_cast<float>(settings.tcpFrameSize);
        case VisualType::RobTarget:
            return static_cast<float>(settings.robTargetFrameSize);
        case VisualType::JointTarget:
            return static_cast<float>(settings.jointTargetFrameSize);
        case VisualType::WObjUserFrame:
        case VisualType::WObjObjectFrame:
            return static_cast<float>(settings.wobjFrameSize);
        default:
            return 0.0f;
    }
}

}  // namespace vrn::visual
