#pragma once

#include <cstdint>
#include <string>

#include "visual/geometry/MeshVisual.h"

namespace vrn::visual {

/// The mesh of a part of a handle: drawn over the scene, and without the looks that bodies have
/// when they are selected, which would take its colour and its place over the scene away. It is no
/// body of what it hangs on: it counts for nothing there, and keeps its colour when bodies get
/// another. Thread: render.
class VRN_VISUAL_API HandleMeshVisual : public MeshVisual {
public:
    using MeshVisual::MeshVisual;

    /// Shows a mesh over the scene, white. Throws what attachMesh throws.
    void showHandleMesh(const std::string& mesh);
    void setSelected() override;
    void clearHighlightOrSelect() override;
    std::uint32_t getBodiesNum() override { return 0; }
    std::uint32_t getFacesNum() override { return 0; }
    std::uint32_t getTrianglesNum() override { return 0; }
    std::uint32_t getVerticesNum() override { return 0; }
    void resetColor() override {}
    void setBodyColor(const rob::ColorTemplate<float>& color, float alpha) override;

    /// Drawn last, in front of everything.
    static constexpr unsigned char handleQueueGroup = 80;
};

}  // namespace vrn::visual
