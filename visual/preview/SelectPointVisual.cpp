#include "visual/preview/SelectPointVisual.h"

#include "mesh/DynamicLines.h"

namespace vrn::visual {

SelectPointVisual::SelectPointVisual(Visual* parent) : LineVisual(parent) {
    type = VisualType::Helper;
    constexpr float arm = 15, uprightArm = 25;
    const rob::PosTemplate<float> ends[] = {{arm, 0, 0}, {0, arm, 0}, {0, 0, uprightArm}};
    for (const auto& end : ends) {
        DynamicLines* line = createDynamicLine(RenderOpType::LineList);
        line->addPoint(-end.x, -end.y, -end.z);
        line->addPoint(end.x, end.y, end.z);
    }
    setMaterial("WhiteFrameLine", "", "");
    resetAppearance();
    update();
}

}  // namespace vrn::visual
