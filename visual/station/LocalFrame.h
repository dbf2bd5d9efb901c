#pragma once

namespace vrn::visual {

class FrameVisual;
class Visual;

/// A hidden frame "Local Frame" with id 0 under `owner`. Cascades leave it alone; the owner shows
/// it while it is selected. Thread: render.
FrameVisual* MakeLocalFrame(Visual* owner);

/// Shows the local frame of a selected visual, but not inside a selected parent: only the outermost
/// selected object shows its frame. Thread: render.
void ShowLocalFrame(const Visual* owner, const FrameVisual* localFrame);

/// Show or hide a frame that `owner` made for itself. Nothing happens once it hangs under `owner`
/// no more: whoever clears an object's children deletes its frame with them. Thread: render.
void ShowOwnFrame(const Visual* owner, const FrameVisual* frame);
void HideOwnFrame(const Visual* owner, const FrameVisual* frame);

}  // namespace vrn::visual
