#pragma once

#include "suite/rob/VectorTypes.h"
#include "visual/VrnVisualApi.h"

#include <vector>

class TopoDS_Shape;

namespace vrn::selection {

/// The nodes of the triangulations of all faces of `shape`, in face order and with locations
/// applied; nodes on an edge come once for each of its faces, and nodes that are not finite come as
/// they are. Faces that were never triangulated add nothing, and hiding a face in a visual changes
/// nothing here. Thread: pure.
[[nodiscard]] VRN_VISUAL_API std::vector<rob::PosTemplate<float>> GetShapeMeshPoints(
    const TopoDS_Shape& shape);

}  // namespace vrn::selection
