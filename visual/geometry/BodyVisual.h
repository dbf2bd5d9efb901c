#pragma once

#include "visual/Visual.h"

namespace vrn::visual {

/// What solids and meshes have in common as bodies. Thread: render.
class VRN_VISUAL_API BodyVisual : public Visual {
public:
    using Visual::Visual;

    /// As Visual::setVisible, save that a local frame is known by a name that is longer than 10 characters
    /// and holds "Local Frame".
    void setVisible(bool show, bool cascade) override;
};

}  // namespace vrn::visual
