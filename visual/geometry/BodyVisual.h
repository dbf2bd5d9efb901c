#pragma once

#include "visual/Visual.h"

namespace vrn::visual {

/// What solids and meshes have in common as bodies. Visibility cascades as in Visual: local frames
/// below a body keep their own state. Thread: render.
class VRN_VISUAL_API BodyVisual : public Visual {
public:
    using Visual::Visual;
};

}  // namespace vrn::visual
