#pragma once

namespace vrn::visual {

class FrameVisual;
class Visual;

/// A hidden frame "Local Frame" with id 0 under `owner`. Cascades leave it alone; the owner shows
/// it while it is selected. Thread: render.
FrameVisual* MakeLocalFrame(Visual* owner);

/// Shows the local frame of a selected visual, but not inside a selected parent: only the outermost
/// selected object shows its frame. Thread: render.
void ShowLocalFrame(const Visual* owner, FrameVisual* localFrame);

}  // namespace vrn::visual
