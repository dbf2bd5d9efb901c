#include "visual/station/LocalFrame.h"

#include "engine/Scene.h"
#include "visual/station/FrameVisual.h"

namespace vrn::visual {

FrameVisual* MakeLocalFrame(Visual* owner) {
    auto* frame = new FrameVisual(owner, 0, "Local Frame", VisualType::Frame);
    frame->setVisible(false, /*cascade=*/true);
    return frame;
}

void ShowLocalFrame(const Visual* owner, FrameVisual* localFrame) {
    if (!owner->isTopLevel() && Scene::Get()->isSelected(owner->getParent())) return;
    localFrame->setVisible(true, /*cascade=*/true);
}

}  // namespace vrn::visual
