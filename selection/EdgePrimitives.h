#pragma once

#include <vector>

namespace vrn::visual {
class Visual;
}

namespace vrn::selection {

class BVHPrimitive;

/// Appends a SensitiveEdge, for the caller to own, for each edge visual directly below `parent`, in
/// the order of the children. Thread: render.
void AppendEdges(const visual::Visual* parent, std::vector<BVHPrimitive*>& primitives);

}  // namespace vrn::selection
