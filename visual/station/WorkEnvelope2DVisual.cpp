#include "visual/station/WorkEnvelope2DVisual.h"

#include "mesh/DynamicLines.h"

namespace vrn::visual {

WorkEnvelope2DVisual::WorkEnvelope2DVisual(const std::string& name, Visual* parent)
    : LineVisual(name, parent), line(createDynamicLine(RenderOpType::LineStrip)) {
    type = VisualType::WorkEnvelope;
    setMaterial("PreviewCurve", "PreviewCurve", "PreviewCurve");
    resetAppearance();
}

WorkEnvelope2DVisual* WorkEnvelope2DVisual::Build(
    Visual* parent, const std::string& name, const std::vector<rob::PosTemplate<double>>& points) {
    auto* outline = new WorkEnvelope2DVisual(name, parent);
    for (const auto& point : points) {
        const rob::PosTemplate<float> p(point);
        outline->addPoint(p.x, p.y, p.z);
    }
    outline->update();
    return outline;
}

void WorkEnvelope2DVisual::addPoint(float x, float y, float z) { line->addPoint(x, y, z); }

}  // namespace vrn::visual
