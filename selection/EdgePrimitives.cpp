#include "selection/EdgePrimitives.h"

#include "selection/SensitiveEdge.h"
#include "visual/geometry/EdgeVisual.h"

#include <memory>

namespace vrn::selection {

void AppendEdges(const visual::Visual* parent, std::vector<BVHPrimitive*>& primitives) {
    for (visual::Visual* child : parent->getChildren()) {
        auto* edge = dynamic_cast<visual::EdgeVisual*>(child);
        if (!edge) continue;
        auto sensitive = std::make_unique<SensitiveEdge>(edge, edge->getEdge());
        primitives.push_back(sensitive.get());
        (void)sensitive.release();
    }
}

}  // namespace vrn::selection
