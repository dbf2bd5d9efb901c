#include "visual/geometry/TriangleMeshVisual.h"

#include "mesh/DynamicLines.h"

namespace vrn::visual {

TriangleMeshVisual* TriangleMeshVisual::Build(const std::vector<Segment>& segments,
                                              Visual* parent) {
    auto* visual = new TriangleMeshVisual(parent);
    DynamicLines* line = visual->createDynamicLine(RenderOpType::LineList);
    for (const auto& [a, b] : segments) {
        line->addPoint(a.x, a.y, a.z);
        line->addPoint(b.x, b.y, b.z);
    }
    visual->setMaterial("PreviewCurve", "PreviewCurve", "PreviewCurve");
    visual->resetAppearance();
    visual->update();
    return visual;
}

}  // namespace vrn::visual
