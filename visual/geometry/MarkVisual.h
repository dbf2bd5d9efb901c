#pragma once

#include "visual/geometry/MeshVisual.h"

namespace vrn::visual {

/// A mesh that marks something. It is no body of what it hangs on: it counts for nothing there, and
/// keeps its colour when bodies get another. Thread: render.
class VRN_VISUAL_API MarkVisual : public MeshVisual {
public:
    using MeshVisual::MeshVisual;

    std::uint32_t getBodiesNum() override { return 0; }
    std::uint32_t getFacesNum() override { return 0; }
    std::uint32_t getTrianglesNum() override { return 0; }
    std::uint32_t getVerticesNum() override { return 0; }
    void resetColor() override {}
    void setBodyColor(const rob::ColorTemplate<float>& /*color*/, float /*alpha*/) override {}
};

}  // namespace vrn::visual
