#include "visual/preview/PreviewFrameVisual.h"

#include "mesh/DynamicLines.h"

namespace vrn::visual {

PreviewFrameVisual::PreviewFrameVisual(Visual* parent) : LineVisual(parent) {
    type = VisualType::Helper;
    constexpr float length = 30;
    const rob::PosTemplate<float> ends[] = {{length, 0, 0}, {0, length, 0}, {0, 0, length}};
    for (const auto& end : ends) {
        DynamicLines* axis = createDynamicLine(RenderOpType::LineList);
        axis->addPoint(0, 0, 0);
        axis->addPoint(end.x, end.y, end.z);
    }
    setMaterial("WhiteFrameLine", "", "");
    resetAppearance();
    update();
}

}  // namespace vrn::visual
