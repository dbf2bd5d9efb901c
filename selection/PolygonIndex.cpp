#include "selection/PolygonIndex.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>

// Why the grid answers as the edges do, to the bit.
//
// The cell of a coordinate is (v - origin) * perUnit, clamped and cut off. Each of these steps
// keeps order, also after rounding, so a cell holds an interval of floats, and two floats in
// different cells compare as their cells do. In the same way crossingX(y) of an edge rises or falls
// with y throughout: subtraction, multiplication, division and addition of a constant keep order
// after rounding. Between two values of y it lies between its values there.
//
// For each row that an edge touches, its `reach` holds its crossings at all y of the row, and the x
// of those of its ends that lie in the row. The cells under a reach are border cells. Take any
// other cell: each edge that touches the row has its reach wholly to the left of all points of the
// cell, and never flips there, or wholly to the right, and flips exactly for those y that it spans.
// So the answer is the parity of the right edges that span y. That changes with y only at a corner
// in the row; both edges at that corner touch the row and have it in their reach, so both are right
// or both are left, and the two changes cancel. The cell is all in or all out. Neighbours without a
// border between them have the same edges to the right, and are alike.
//
// Two rings of cells surround the polygon, since rounding could put a crossing a little outside of
// it, though far less than a cell. Whatever is clamped lands in the outer ring: all edges are to
// its right, to its left, or do not span it, and a closed outline spans each y an even number of
// times.
//
// In border cells the edges of the row decide: the others do not span y.

namespace vrn::selection {

namespace {

constexpr int ring = 2;
constexpr int lastCell = PolygonIndex::gridSize - 1;

// Coordinates are good for 2^-24 of their size, so a cell this large keeps rounding below a
// hundredth of it.
constexpr float smallestCell = 1.0f / 65536.0f;

// Of a cell: more than what the bounds of a row may be off.
constexpr double slack = 1.0 / 16.0;

float Clamp(float cell) {
    constexpr auto last = static_cast<float>(lastCell);
    const float low = cell > 0.0f ? cell : 0.0f;  // a NaN, which is never inside, too
    return low < last ? low : last;
}

bool IsIn(float v, float low, float high) { return v >= low && v <= high; }

}  // namespace

int PolygonIndex::Scale::cell(float v) const {
    return static_cast<int>(Clamp((v - origin) * perUnit));
}

float PolygonIndex::Scale::at(double cell) const {
    return static_cast<float>(static_cast<double>(origin) + cell * static_cast<double>(size));
}

PolygonIndex::PolygonIndex(std::span<const Point> corners) {
    // Fewer than three corners hold nothing, and no edges give that answer.
    if (corners.size() < 3) return;
    edges.reserve(corners.size());
    for (std::size_t i = 0; i < corners.size(); ++i)
        edges.push_back({corners[i == 0 ? corners.size() - 1 : i - 1], corners[i]});
    // First: a NaN has no place among the smallest and the largest.
    const bool fits = std::ranges::all_of(corners, [](const Point& p) {
        return std::abs(p.x) <= largestCoordinate && std::abs(p.y) <= largestCoordinate;
    });
    if (!fits) return;
    const auto [left, right] = std::ranges::minmax(corners, {}, &Point::x);
    const auto [low, high] = std::ranges::minmax(corners, {}, &Point::y);
    if (fit(columns, left.x, right.x) && fit(rows, low.y, high.y)) layGrid();
}

bool PolygonIndex::fit(Scale& scale, float low, float high) {
    const float size = (high - low) / static_cast<float>(gridSize - 2 * ring);
    // The last one keeps numbers without all their digits out.
    if (!(size > smallestCell * std::max(std::abs(low), std::abs(high))) || !(size > 1e-30f))
        return false;
    scale = {low - ring * size, size, 1.0f / size};
    return true;
}

void PolygonIndex::layGrid() {
    cells.assign(static_cast<std::size_t>(gridSize) * gridSize, Out);
    for (int row = 0; row < gridSize; ++row) {
        rowStarts[row] = rowEdges.size();
        for (const Edge& edge : edges) {
            const auto [low, high] = std::minmax(edge.a.y, edge.b.y);
            if (row < rows.cell(low) || row > rows.cell(high)) continue;
            markBorder(edge, row);
            if (low != high) rowEdges.push_back(edge);  // a level edge never flips
        }
    }
    rowStarts[gridSize] = rowEdges.size();
    for (int row = 0; row < gridSize; ++row) fillRow(row);
}

void PolygonIndex::markBorder(const Edge& edge, int row) {
    const float bottom = rows.at(row - slack), top = rows.at(row + 1 + slack);
    const Point &a = edge.a, &b = edge.b;
    float left = std::max(a.x, b.x), right = std::min(a.x, b.x);
    const auto reach = [&](float x) {
        left = std::min(left, x);
        right = std::max(right, x);
    };
    if (a.y != b.y) {
        const auto [low, high] = std::minmax(a.y, b.y);
        left = right = crossingX(a, b, std::clamp(bottom, low, high));
        reach(crossingX(a, b, std::clamp(top, low, high)));
    }
    if (IsIn(a.y, bottom, top)) reach(a.x);
    if (IsIn(b.y, bottom, top)) reach(b.x);
    const auto start = cells.begin() + static_cast<std::ptrdiff_t>(row) * gridSize;
    std::fill(start + columns.cell(left), start + columns.cell(right) + 1, Border);
}

void PolygonIndex::fillRow(int row) {
    std::uint8_t* const own = &cells[static_cast<std::size_t>(row) * gridSize];
    std::optional<std::uint8_t> known;
    for (int column = 0; column < gridSize; ++column) {
        if (own[column] == Border) {
            known.reset();
            continue;
        }
        if (!known) {
            const Point middle{columns.at(column + 0.5), rows.at(row + 0.5)};
            known = containsByEdges(edgesOf(row), middle) ? In : Out;
        }
        own[column] = *known;
    }
}

bool PolygonIndex::contains(const Point& p) const {
    if (!hasGrid()) return containsByEdges(edges, p);
    const int row = rows.cell(p.y);
    const std::uint8_t cell = cells[static_cast<std::size_t>(row) * gridSize + columns.cell(p.x)];
    return cell == Border ? containsByEdges(edgesOf(row), p) : cell == In;
}

void PolygonIndex::contain(std::span<const float> x, std::span<const float> y,
                           std::span<std::uint8_t> inside) const {
    const std::size_t count = x.size();
    if (!hasGrid()) {
        for (std::size_t i = 0; i < count; ++i)
            inside[i] = containsByEdges(edges, {x[i], y[i]}) ? 1 : 0;
        return;
    }
    // In steps that the compiler turns into vector instructions, but for the look-up.
    std::array<int, batchSize> cell;
    const Scale across = columns, up = rows;
    for (std::size_t i = 0; i < count; ++i) cell[i] = up.cell(y[i]) * gridSize + across.cell(x[i]);
    const std::uint8_t* const grid = cells.data();
    for (std::size_t i = 0; i < count; ++i) inside[i] = grid[cell[i]];
    for (std::size_t i = 0; i < count; ++i)
        if (inside[i] == Border)
            inside[i] = containsByEdges(edgesOf(cell[i] / gridSize), {x[i], y[i]}) ? 1 : 0;
}

bool PolygonIndex::containsByEdges(std::span<const Edge> some, const Point& p) const {
    bool inside = false;
    for (const Edge& edge : some) inside ^= flips(edge.a, edge.b, p);
    return inside;
}

std::span<const PolygonIndex::Edge> PolygonIndex::edgesOf(int row) const {
    return std::span(rowEdges).subspan(rowStarts[row], rowStarts[row + 1] - rowStarts[row]);
}

}  // namespace vrn::selection
