#include "visual/station/LocalFrame.h"

#include "engine/Scene.h"
#include "visual/station/FrameVisual.h"

namespace vrn::visual {

namespace {

void SetOwnFrameVisible(const Visual* owner, const FrameVisual* frame, bool visible) {
    // Looked for among what is there: the pointer may be that of a frame deleted since.
    for (Visual* child : owner->getChildren())
        if (child == frame) child->setVisible(visible, /*cascade=*/true);
}

}  // namespace

FrameVisual* MakeLocalFrame(Visual* owner) {
    auto* frame = new FrameVisual(owner, 0, "Local Frame", VisualType::Frame);
    frame->setVisible(false, /*cascade=*/true);
    return frame;
}

void ShowLocalFrame(const Visual* owner, const FrameVisual* localFrame) {
    if (!owner->isTopLevel() && Scene::Get()->isSelected(owner->getParent())) return;
    ShowOwnFrame(owner, localFrame);
}

void ShowOwnFrame(const Visual* owner, const FrameVisual* frame) {
    SetOwnFrameVisible(owner, frame, true);
}

void HideOwnFrame(const Visual* owner, const FrameVisual* frame) {
    SetOwnFrameVisible(owner, frame, false);
}

}  // namespace vrn::visual
