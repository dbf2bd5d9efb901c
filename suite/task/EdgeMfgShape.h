#pragma once

#include <cstdint>
#include <vector>

#include "suite/geom/MfgVectors.h"
#include "suite/SuiteApi.h"

namespace vrn::task {

/// A chain of edges along which a process runs, with the directions that the tool has on it.
///
/// A value. Thread: one at a time.
class VRN_SUITE_API EdgeMfgShape {
public:
    /// A place on the chain: `index` of the edge in getUsedMfgVectors, and the parameter on that
    /// edge's curve.
    struct PathPoint {
        std::int32_t index = 0;
        double param = 0;
        friend bool operator==(const PathPoint&, const PathPoint&) = default;
    };

    /// Steps that an edge is drawn with; the stored vectors' parameters come on top.
    static constexpr int stepsPerEdge = 20;

    /// Appends an edge. Each edge goes on where the one before it ends; nothing checks that. An
    /// edge that is not `used` keeps its vectors and is left out of the process.
    void addEdge(geometry::MfgVectors vectors, bool used = true);

    [[nodiscard]] const std::vector<geometry::MfgVectors>& getMfgVectors() const { return all; }
    /// Those of the used edges, in the same order.
    [[nodiscard]] std::vector<geometry::MfgVectors> getUsedMfgVectors() const;

    /// The points to draw the whole chain through, in the direction of travel: on each used edge
    /// that has stored vectors, its ends, `stepsPerEdge` equal steps of parameter, and the stored
    /// vectors' parameters. Throws std::invalid_argument for an edge without a curve.
    [[nodiscard]] std::vector<PathPoint> getPathPointsForRender() const;
    /// The same from `start` to `end`, both included, in whichever order they are given; empty if
    /// one of them is not on a used edge.
    [[nodiscard]] std::vector<PathPoint> getPathPointsForRender(PathPoint start,
                                                                PathPoint end) const;

    /// Where the process starts and ends; at first the chain's ends, and without a used edge
    /// {0, 0}.
    [[nodiscard]] PathPoint getStart() const;
    [[nodiscard]] PathPoint getEnd() const;
    void setRange(PathPoint start, PathPoint end);

private:
    std::vector<geometry::MfgVectors> all;
    std::vector<bool> isUsed;  // one for each of `all`
    bool hasRange = false;
    PathPoint rangeStart, rangeEnd;
};

}  // namespace vrn::task
