#pragma once

#include <string>

#include "visual/geometry/MarkVisual.h"

namespace vrn::visual {

/// The mesh of a part of a handle: drawn over the scene, and without the looks that bodies have
/// when they are selected, which would take its colour and its place over the scene away.
/// Thread: render.
class VRN_VISUAL_API HandleMeshVisual : public MarkVisual {
public:
    using MarkVisual::MarkVisual;

    /// Shows a mesh over the scene, white. Throws what attachMesh throws.
    void showHandleMesh(const std::string& mesh);
    void setSelected() override;
    void clearHighlightOrSelect() override;

    /// Drawn last, in front of everything.
    static constexpr unsigned char handleQueueGroup = 80;
};

}  // namespace vrn::visual
