#pragma once

#include "visual/geometry/MarkVisual.h"

class TopoDS_Edge;

namespace vrn::visual {

/// The built-in arrow, as a mark of a direction. Thread: render.
class VRN_VISUAL_API ArrowVisual : public MarkVisual {
public:
    /// At `position` of `parent` along `direction`, which need not be of unit length; `hexColor` as
    /// in Hex2RGB. Throws std::overflow_error for a zero direction and std::invalid_argument for a
    /// place that is not finite, and then leaves the tree as it was.
    static ArrowVisual* Build(Visual* parent, const rob::PosTemplate<float>& position,
                              const rob::Vec3Template<float>& direction,
                              const std::string& hexColor = "#FFA725");
    /// At the end of the edge, or at its start, along the tangent there in the edge's own
    /// direction. Throws std::invalid_argument for a null edge, one without a curve and one that
    /// ends nowhere, and std::overflow_error where the curve has no tangent.
    static ArrowVisual* Build(Visual* parent, const TopoDS_Edge& edge, bool atEnd);

private:
    explicit ArrowVisual(Visual* parent);
};

}  // namespace vrn::visual
