#pragma once

#include "visual/VisualStateManager.h"
#include "visual/VrnVisualApi.h"

namespace vrn::visual {

class Visual;

/// Keeps one appearance state on a visual for as long as this object lives: a task sets the layer
/// and refreshes, another one clears it and refreshes. There is no counting: of two on one visual
/// and layer the first to end takes the look away.
///
/// The visual must live until the first of the tasks has run; one that is removed after it is
/// passed over by the second. Scene::Get() must be there. Thread: any.
class VRN_VISUAL_API StateLayerHold {
public:
    StateLayerHold(const StateLayerHold&) = delete;
    StateLayerHold& operator=(const StateLayerHold&) = delete;

protected:
    /// Throws std::invalid_argument for null.
    StateLayerHold(Visual* heldVisual, VisualStateLayer heldLayer);
    ~StateLayerHold();

private:
    Visual* visual;
    VisualStateLayer layer;
};

/// Shows a visual as selected; Scene::isSelected does not know of it.
class VRN_VISUAL_API SelectedVisual : public StateLayerHold {
public:
    explicit SelectedVisual(Visual* shown) : StateLayerHold(shown, VisualStateLayer::Selected) {}
};

/// Shows a visual as highlighted.
class VRN_VISUAL_API HighlightedVisual : public StateLayerHold {
public:
    explicit HighlightedVisual(Visual* shown)
        : StateLayerHold(shown, VisualStateLayer::Highlighted) {}
};

}  // namespace vrn::visual
