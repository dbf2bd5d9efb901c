#pragma once

#include <string>

#include "visual/Visual.h"

namespace vrn::visual {

class HandleMeshVisual;
class LineVisual;

/// One end of the band of a path: a line across the band, and on its far end a marker to drag.
/// Thread: render.
class VRN_VISUAL_API PathEndHandle : public Visual {
public:
    /// `mesh` is the marker's. Throws what MeshVisual::attachMesh throws.
    PathEndHandle(const std::string& mesh, Visual* parent, const rob::ColorTemplate<float>& color);

    /// Whether the marker can be picked; it beats everything in front of it.
    void enableSelection();
    void disableSelection();

    LineVisual* boundaryLine = nullptr;
    HandleMeshVisual* marker = nullptr;
};

}  // namespace vrn::visual
