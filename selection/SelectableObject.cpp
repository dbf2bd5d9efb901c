#include "selection/SelectableObject.h"

#include "visual/Visual.h"

#include <stdexcept>

namespace vrn::selection {

SelectableObject::SelectableObject(visual::Visual* shown, ObjectKind objectKind)
    : visual(shown), kind(objectKind) {
    if (!shown) throw std::invalid_argument("a selectable object needs a visual");
}

std::string SelectableObject::getName() const { return {}; }

void SelectableObject::updateWorldPose() {
    worldPose = visual->getWorldPose();
    const rob::RotationTemplate<float> back = worldPose.rotation.inverse();
    const rob::PosTemplate<float>& p = worldPose.position;
    inverseWorldPose = {back * rob::PosTemplate<float>{-p.x, -p.y, -p.z}, back};
}

}  // namespace vrn::selection
