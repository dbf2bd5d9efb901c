#pragma once

#include "engine/Scene.h"
#include "visual/VisualIterator.h"

namespace vrn::visual {

/// A visual as the caller of a posting operation saw it. A task ahead in the queue may remove it,
/// so what was noted is compared before it is followed.
struct NotedVisual {
    explicit NotedVisual(Visual* seen) : id(seen->id), visual(seen) {}

    std::uint32_t id;
    Visual* visual;
};

/// Whether the visual is still there. What stands in no registry, such as an arrow, is looked for
/// in the tree. Thread: render.
inline bool IsPresent(const Scene& scene, const NotedVisual& noted) {
    const auto found = scene.visuals.find(noted.id);
    if (found != scene.visuals.end() && found->second == noted.visual) return true;
    for (ForestIterator<Visual> it(scene.root); it.next();)
        if (it.value() == noted.visual) return true;
    return false;
}

}  // namespace vrn::visual
