#pragma once

#include "visual/station/InstanceFrameVisual.h"

namespace vrn::visual {

/// Runs `action` on a visual of the registry and on those that it stands for there: moves may share
/// a target, and of their triads the newest alone is registered. Thread: render.
template <class Action>
void ForEachSharing(Visual* registered, Action action) {
    action(registered);
    const auto* target = dynamic_cast<const InstanceFrameVisual*>(registered);
    if (!target) return;
    for (auto* older = target->getOlder(); older; older = older->getOlder()) action(older);
}

}  // namespace vrn::visual
