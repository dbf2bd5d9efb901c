#include "visual/handle/TwistHandle.h"

namespace vrn::visual {

TwistHandle::TwistHandle(Visual* parent)
    : RingHandle({.name = "TwistHandle",
                  .color = "#16A951",
                  .sectorColor = {0.1019608f, 0.9843137f, 0.4745098f, 0.4f},
                  .axis = {1, 0, 0}},
                 parent) {}

void TwistHandle::setTwist(double radians) { drawSector(radians); }

}  // namespace vrn::visual
