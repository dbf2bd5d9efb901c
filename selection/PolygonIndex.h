#pragma once

#include "selection/LassoSelector.h"
#include "visual/VrnVisualApi.h"

#include <array>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace vrn::selection {

/// Answers LassoSelector::isPointInPolygon for many points, to the bit, without looking at every
/// edge: a grid over the polygon knows the cells that lie wholly in or out. Thread: pure, once
/// built; keeps no reference to the polygon.
class VRN_VISUAL_API PolygonIndex {
public:
    using Point = LassoSelector::Point;

    /// In any number of corners, of any value. Those that the grid cannot hold (coordinates that
    /// are not finite or beyond `largestCoordinate`, extents too small for their distance from 0,
    /// fewer than three corners) are answered edge by edge.
    explicit PolygonIndex(std::span<const Point> corners);

    [[nodiscard]] bool contains(const Point& p) const;
    /// 1 or 0 in `inside` for each point; `x`, `y` and `inside` are of the same length, which is at
    /// most `batchSize`.
    void contain(std::span<const float> x, std::span<const float> y,
                 std::span<std::uint8_t> inside) const;
    /// False if the polygon was too odd for a grid.
    [[nodiscard]] bool hasGrid() const { return !cells.empty(); }

    /// The crossing test of one edge: whether a ray from `p` towards +x passes it.
    [[nodiscard]] static bool flips(const Point& a, const Point& b, const Point& p) {
        return (p.y < b.y) != (p.y < a.y) && p.x < crossingX(a, b, p.y);
    }

    static constexpr int gridSize = 256;
    static constexpr std::size_t batchSize = 1024;
    static constexpr float largestCoordinate = 1e15f;

private:
    enum Cell : std::uint8_t { Out = 0, In = 1, Border = 2 };
    struct Edge {
        Point a, b;
    };
    /// The cells of one axis: floats to 0 .. gridSize - 1, rising.
    struct Scale {
        float origin = 0, size = 0, perUnit = 0;
        [[nodiscard]] int cell(float v) const;
        [[nodiscard]] float at(double cells) const;
    };

    [[nodiscard]] static float crossingX(const Point& a, const Point& b, float y) {
        return (a.x - b.x) * (y - b.y) / (a.y - b.y) + b.x;
    }
    [[nodiscard]] static bool fit(Scale& scale, float low, float high);
    void layGrid();
    void markBorder(const Edge& edge, int row);
    void fillRow(int row);
    [[nodiscard]] bool containsByEdges(std::span<const Edge> some, const Point& p) const;
    [[nodiscard]] std::span<const Edge> edgesOf(int row) const;

    std::vector<Edge> edges;
    Scale columns, rows;
    std::vector<std::uint8_t> cells;  ///< row by row; empty without a grid
    std::vector<Edge> rowEdges;       ///< the edges that cross each row, row by row
    std::array<std::size_t, gridSize + 1> rowStarts{};
};

}  // namespace vrn::selection
