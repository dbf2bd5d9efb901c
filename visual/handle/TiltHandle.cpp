#include "visual/handle/TiltHandle.h"

namespace vrn::visual {

TiltHandle::TiltHandle(Visual* parent)
    : RingHandle({.name = "TiltHandle",
                  .color = "#F20c00",
                  .sectorColor = {0.9490196f, 0.0470588f, 0.0f, 0.4f},
                  .axis = {0, 1, 0}},
                 parent) {}

void TiltHandle::setTilt(double radians) { drawSector(radians); }

}  // namespace vrn::visual
