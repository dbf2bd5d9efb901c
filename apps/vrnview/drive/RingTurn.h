#pragma once

#include "suite/rob/VectorTypes.h"

namespace vrn::host {

/// What a cursor points at: a ray.
struct SightLine {
    rob::PosTemplate<double> origin;
    rob::Vec3Template<double> direction;  ///< of any length but none
};

/// How far a ring has been turned by a cursor that holds it. The point of the ring's plane under
/// the cursor stays under it; of a ring that is seen from the edge, the near side follows the
/// cursor. Turns add up past a full one. Thread: pure.
class RingTurn {
public:
    /// `axis` has unit length; `grabbed` is where `from` meets the ring.
    RingTurn(const rob::PosTemplate<double>& ringCentre, const rob::Vec3Template<double>& ringAxis,
             const rob::PosTemplate<double>& grabbed, const SightLine& from);

    /// The turn in radians since the start, by the right-hand rule about the axis. A line that
    /// misses the ring's plane leaves it where it was.
    double follow(const SightLine& to);

    /// Flatter than this cosine between line of sight and axis a ring counts as seen from the edge.
    static constexpr double edgeOn = 0.1;

private:
    [[nodiscard]] bool angleAt(const SightLine& line, double& angle) const;
    [[nodiscard]] double wayAlong(const SightLine& to) const;

    rob::PosTemplate<double> centre, start;
    rob::Vec3Template<double> axis, sight, tangent, u, v;
    double radius;
    bool seenFromEdge;
    double lastAngle = 0, total = 0;
};

}  // namespace vrn::host
