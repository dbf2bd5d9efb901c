#include "visual/preview/FromToLineVisual.h"

#include "mesh/DynamicLines.h"

namespace vrn::visual {

FromToLineVisual::FromToLineVisual(Visual* parent, const std::string& materialName)
    : LineVisual(parent) {
    type = VisualType::Helper;
    DynamicLines* line = createDynamicLine(RenderOpType::LineList);
    line->addPoint(0, 0, 0);
    line->addPoint(0, 0, 0);
    setMaterial(materialName, "", "");
    resetAppearance();
    update();
}

void FromToLineVisual::setPos(const rob::PosTemplate<float>& from,
                              const rob::PosTemplate<float>& to) {
    DynamicLines& line = *getLines().front();
    line.setPoint(0, from);
    line.setPoint(1, to);
    line.update();  // not the visual's, which waits until it is shown
}

}  // namespace vrn::visual
