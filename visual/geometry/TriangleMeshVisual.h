#pragma once

#include <utility>
#include <vector>

#include "visual/geometry/LineVisual.h"

namespace vrn::visual {

/// A list of segments, such as the sides of triangles, in the preview look. Thread: render.
class VRN_VISUAL_API TriangleMeshVisual : public LineVisual {
public:
    using Segment = std::pair<rob::PosTemplate<float>, rob::PosTemplate<float>>;

    /// Under `parent`, in its frame; an empty list draws nothing.
    static TriangleMeshVisual* Build(const std::vector<Segment>& segments, Visual* parent);

private:
    using LineVisual::LineVisual;
};

}  // namespace vrn::visual
