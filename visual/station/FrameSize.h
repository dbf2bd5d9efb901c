#pragma once

#include "visual/VisualType.h"

namespace vrn::visual {

/// The axis length that the scene's settings hold for frames and targets of a type: Frame, Tcp,
/// RobTarget and JointTarget have their own, both frames of a work object share one, any other type
/// has 0. Thread: render.
[[nodiscard]] float FrameSizeOfType(VisualType type);

}  // namespace vrn::visual
