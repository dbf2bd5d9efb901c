#include "visual/StateLayerHold.h"

#include <stdexcept>

#include "engine/Scene.h"

namespace vrn::visual {

StateLayerHold::StateLayerHold(Visual* heldVisual, VisualStateLayer heldLayer)
    : visual(heldVisual), layer(heldLayer) {
    if (!visual) throw std::invalid_argument("a state needs a visual to be held on, got null");
    Scene::Get()->addRenderTask(
        [held = visual, state = layer] {
            VisualStateManager& manager = *Scene::Get()->stateManager;
            manager.setLayer(held, state, true, {});
            manager.refresh(held);
        },
        /*key=*/0);
}

StateLayerHold::~StateLayerHold() {
    Scene::Get()->addRenderTask(
        [held = visual, state = layer] {
            VisualStateManager& manager = *Scene::Get()->stateManager;
            // A visual that was removed meanwhile has no layers any more: its pointer is not
            // followed.
            if (!manager.hasLayer(held, state)) return;
            manager.setLayer(held, state, false, {});
            manager.refresh(held);
        },
        /*key=*/0);
}

}  // namespace vrn::visual
