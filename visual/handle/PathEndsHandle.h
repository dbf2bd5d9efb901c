#pragma once

#include "visual/handle/GuiVisual.h"

namespace vrn::task {
class EdgeMfgShape;
}

namespace vrn::visual {

class PathEndHandle;

/// The two ends of the band of a path, to be dragged along it. There is one pair, which the host
/// attaches and shows where it edits; at first it is hidden and cannot be picked. Thread: render.
class VRN_VISUAL_API PathEndsHandle : public GuiVisual {
public:
    PathEndsHandle();

    /// Makes the pair; a second call does nothing.
    static void Init();
    /// Null before Init.
    [[nodiscard]] static PathEndsHandle* Get();

    void enableSelection();
    void disableSelection();

    /// Puts both ends where the process starts and ends, in the frame of the shape's edges. Does
    /// nothing for a shape without edges, and leaves an end where it is that lies on no used edge.
    /// Throws what MfgVectors::getVectorAtParam and MfgVector::getPose throw.
    void updatePosition(const task::EdgeMfgShape& shape);
    [[nodiscard]] rob::PosTemplate<float> startWorldPos() const;
    [[nodiscard]] rob::PosTemplate<float> endWorldPos() const;

    PathEndHandle* startHandle = nullptr;  ///< red
    PathEndHandle* endHandle = nullptr;    ///< green
};

/// Set by Init, null before it; it lives until the process ends.
VRN_VISUAL_API extern PathEndsHandle* gPathEndsHandle;

}  // namespace vrn::visual
