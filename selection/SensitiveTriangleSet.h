#pragma once

#include "selection/PrimitiveContainer.h"
#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

namespace vrn::selection {

class SensitiveTriangle;

/// Triangles with a hierarchy over them. The primitives are SensitiveTriangles; their geometry
/// comes from getTriangleVertices, so they stay small. Queries are in the set's own space; what
/// brings them there is the business of the classes below. Thread: render.
class VRN_VISUAL_API SensitiveTriangleSet : public PrimitiveContainer {
public:
    /// The nearest triangle strictly in front of the origin, by the watertight test of Woop,
    /// Benthin and Wald, "Watertight Ray/Triangle Intersection", without its swap for the winding:
    /// both sides hit; a ray that runs exactly through an edge or a vertex misses. `distance` is
    /// the ray parameter; a hit is moved by `location` if the set has one.
    [[nodiscard]] Result intersectTriangles(const visual::Ray& ray) const;
    /// The first triangle that is touched; neither distance nor position.
    [[nodiscard]] Result intersectTriangles(const rob::TriangleTemplate<float>& triangle) const;
    /// The nearest along the line; `distance` runs from 0 to 1. Throws SurfaceNormalNotAvailable
    /// for a candidate without extent.
    [[nodiscard]] Result intersectTriangles(const rob::LineTemplate<float>& line) const;
    /// Calls `visit` with the number of each triangle whose box overlaps `region`.
    void intersectTriangles(const visual::Box& region,
                            const std::function<void(unsigned int)>& visit) const;

    /// The vertices, the third of the stored ones first.
    [[nodiscard]] virtual rob::TriangleTemplate<float> getTriangleVertices(
        SensitiveTriangle* triangle) const = 0;

    /// Sets the location and its inverse.
    void setLocation(const rob::PoseTemplate<float>& pose);

    bool hasLocation = false;
    rob::PoseTemplate<float> location;         ///< of the set, in the space of its object
    rob::PoseTemplate<float> inverseLocation;  ///< from there into the set
};

}  // namespace vrn::selection
