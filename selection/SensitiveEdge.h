#pragma once

#include "selection/BVHPrimitive.h"
#include "selection/PrimitiveContainer.h"
#include "suite/rob/PoseTypes.h"

#include <TopoDS_Edge.hxx>

namespace vrn::visual {
class EdgeVisual;
}

namespace vrn::selection {

/// The polyline of an edge visual, in the frame of the visual's parent. Without two points apart
/// the box is empty. Thread: render.
class VRN_VISUAL_API SensitiveEdge final : public BVHPrimitive, public PrimitiveContainer {
public:
    SensitiveEdge(visual::EdgeVisual* edgeVisual, const TopoDS_Edge& sensitiveEdge);

    using BVHPrimitive::intersect;
    [[nodiscard]] Result intersect(const visual::Ray& ray) override;

    TopoDS_Edge edge;
    /// False for an edge visual that stands where its parent does.
    bool hasLocation = false;
    rob::PoseTemplate<float> location;
    rob::PoseTemplate<float> inverseLocation;

private:
    void addLines(const std::vector<rob::PosTemplate<float>>& points);
};

}  // namespace vrn::selection
