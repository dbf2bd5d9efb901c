#pragma once

#include <TopoDS_Edge.hxx>

#include <vector>

#include "suite/rob/PoseTypes.h"
#include "suite/SuiteApi.h"

namespace vrn::geometry {

/// The direction that a process has at one point of an edge. A value; which edge it belongs to,
/// MfgVectors knows. What is asked of an edge without a curve throws std::invalid_argument.
/// Thread: pure.
struct VRN_SUITE_API MfgVector {
    double parameter = 0;  // on the edge's curve
    rob::DirTemplate<double> direction{0, 0, 1};

    [[nodiscard]] rob::PosTemplate<double> getPos(const TopoDS_Edge& edge) const;
    /// Unit length, in the frame of the edge's shape.
    [[nodiscard]] rob::DirTemplate<double> getDir(const TopoDS_Edge& edge) const;
    /// Unit length, in the direction in which the edge is run through. Throws std::overflow_error
    /// with "0-length vector cannot be normalized." where the curve has no tangent.
    [[nodiscard]] rob::Vec3Template<double> getEdgeTangent(const TopoDS_Edge& edge) const;
    /// At the point, z along the direction, x as near to the tangent as that allows. Throws
    /// std::overflow_error as above if the two are parallel.
    [[nodiscard]] rob::PoseTemplate<double> getPose(const TopoDS_Edge& edge) const;
};

/// The stored directions of one edge.
struct VRN_SUITE_API MfgVectors {
    TopoDS_Edge edge;
    std::vector<MfgVector> vectors;  // in any order of parameters

    /// The direction at `param`: between the two stored ones on either side of it, mixed by
    /// parameter and made unit length again; beyond the outermost one, that one's. The result has
    /// the parameter `param`. Throws std::out_of_range without stored vectors, std::overflow_error
    /// with "0-length vector cannot be normalized." half way between opposite ones. Thread: pure.
    [[nodiscard]] MfgVector getVectorAtParam(double param) const;
};

}  // namespace vrn::geometry
