#pragma once

#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

#include <cfloat>
#include <cstdint>
#include <optional>

#include <TopoDS_Edge.hxx>
#include <TopoDS_Shape.hxx>

namespace vrn::visual {
class Visual;
}

namespace vrn::selection {

/// An edge and the parameter of a point on its curve.
struct EdgePoint {
    TopoDS_Edge edge;
    double param = 0;
};

/// What a pick query answers. The empty record is valid and hits nothing. Thread: pure.
struct VRN_VISUAL_API Result {
    /// False from a contact test that was asked while the selection was dirty.
    bool valid = true;
    bool hit = false;
    /// A ray parameter for triangles and lines, a length in model units for points, a parameter
    /// from 0 to 1 for line queries; not written by triangle queries.
    float distance = FLT_MAX;
    TopoDS_Shape edge;
    TopoDS_Shape face;
    TopoDS_Shape shape;  ///< the whole shape of the object that was hit
    visual::Visual* visual = nullptr;
    /// In the world once an object has answered; the ground point after a pick that missed.
    rob::PosTemplate<float> position;
    rob::PosTemplate<float> localPosition;  ///< in the space of the primitive that was hit
    /// The world pose of the object, where the kind of object writes it.
    rob::PoseTemplate<float> pose;
    std::int32_t index = -1;  ///< of the point of a cloud

    /// The edge of `face` that is nearest to the hit, and the parameter there, for snapping. `face`
    /// is in the frame of the object, `position` in the world: the hit is carried back by `pose`
    /// and projected on the surface first. Empty without a face, when no edge answers, and when the
    /// nearest edge is more than `snapReach` away.
    [[nodiscard]] std::optional<EdgePoint> getFaceEdge() const;
    /// The parameter on `edge` that is nearest to the hit, within the edge's ends. Empty without an
    /// edge and for one without a curve.
    [[nodiscard]] std::optional<double> getEdgeParam() const;

    /// In model units; a hit exactly that far from an edge still snaps to it.
    static constexpr double snapReach = 25.0;
};

}  // namespace vrn::selection
