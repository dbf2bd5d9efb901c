#include "suite/task/EdgeMfgShape.h"

#include <BRep_Tool.hxx>
#include <Geom_Curve.hxx>
#include <TopAbs_Orientation.hxx>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace vrn::task {

namespace {

using PathPoint = EdgeMfgShape::PathPoint;

struct EdgeRange {
    double first = 0;
    double last = 0;
    bool reversed = false;  // run through from last to first
};

EdgeRange RangeOf(const TopoDS_Edge& edge) {
    EdgeRange range;
    if (edge.IsNull() || BRep_Tool::Curve(edge, range.first, range.last).IsNull())
        throw std::invalid_argument("expected an edge with a curve");
    range.reversed = edge.Orientation() == TopAbs_REVERSED;
    return range;
}

/// The parameters to draw an edge at, in the direction of travel.
std::vector<double> RenderParams(const geometry::MfgVectors& set) {
    const EdgeRange range = RangeOf(set.edge);
    std::vector<double> params;
    for (int i = 0; i < EdgeMfgShape::stepsPerEdge; ++i)
        params.push_back(range.first + (range.last - range.first) * i / EdgeMfgShape::stepsPerEdge);
    params.push_back(range.last);  // itself, not what rounding makes of it
    for (const geometry::MfgVector& v : set.vectors)
        if (v.parameter > range.first && v.parameter < range.last) params.push_back(v.parameter);
    std::ranges::sort(params);
    const auto doubled = std::ranges::unique(params);
    params.erase(doubled.begin(), doubled.end());
    if (range.reversed) std::ranges::reverse(params);
    return params;
}

/// Whether `a` comes before `b` in the direction of travel.
bool IsBefore(const PathPoint& a, const PathPoint& b, const geometry::MfgVectors& setOfA) {
    if (a.index != b.index) return a.index < b.index;
    return RangeOf(setOfA.edge).reversed ? a.param > b.param : a.param < b.param;
}

bool IsOnShape(const PathPoint& p, std::size_t edgeCount) {
    return p.index >= 0 && static_cast<std::size_t>(p.index) < edgeCount;
}

}  // namespace

void EdgeMfgShape::addEdge(geometry::MfgVectors vectors, bool used) {
    all.push_back(std::move(vectors));
    isUsed.push_back(used);
}

std::vector<geometry::MfgVectors> EdgeMfgShape::getUsedMfgVectors() const {
    std::vector<geometry::MfgVectors> used;
    for (std::size_t i = 0; i < all.size(); ++i)
        if (isUsed[i]) used.push_back(all[i]);
    return used;
}

std::vector<PathPoint> EdgeMfgShape::getPathPointsForRender() const {
    std::vector<PathPoint> points;
    std::int32_t index = 0;
    for (const geometry::MfgVectors& set : getUsedMfgVectors()) {
        // Without a stored vector an edge has no direction to draw.
        if (!set.vectors.empty())
            for (const double param : RenderParams(set)) points.push_back({index, param});
        ++index;
    }
    return points;
}

std::vector<PathPoint> EdgeMfgShape::getPathPointsForRender(PathPoint start, PathPoint end) const {
    const auto used = getUsedMfgVectors();
    if (!IsOnShape(start, used.size()) || !IsOnShape(end, used.size())) return {};
    const auto isBefore = [&](const PathPoint& a, const PathPoint& b) {
        return IsBefore(a, b, used[static_cast<std::size_t>(a.index)]);
    };
    if (isBefore(end, start)) std::swap(start, end);

    std::vector<PathPoint> points;
    if (!used[static_cast<std::size_t>(start.index)].vectors.empty()) points.push_back(start);
    for (const PathPoint& p : getPathPointsForRender())
        if (isBefore(start, p) && isBefore(p, end)) points.push_back(p);
    const bool isPoint = start == end;
    if (!isPoint && !used[static_cast<std::size_t>(end.index)].vectors.empty())
        points.push_back(end);
    return points;
}

PathPoint EdgeMfgShape::getStart() const {
    if (hasRange) return rangeStart;
    const auto used = getUsedMfgVectors();
    if (used.empty()) return {};
    const EdgeRange range = RangeOf(used.front().edge);
    return {0, range.reversed ? range.last : range.first};
}

PathPoint EdgeMfgShape::getEnd() const {
    if (hasRange) return rangeEnd;
    const auto used = getUsedMfgVectors();
    if (used.empty()) return {};
    const EdgeRange range = RangeOf(used.back().edge);
    return {static_cast<std::int32_t>(used.size()) - 1, range.reversed ? range.first : range.last};
}

void EdgeMfgShape::setRange(PathPoint start, PathPoint end) {
    hasRange = true;
    rangeStart = start;
    rangeEnd = end;
}

}  // namespace vrn::task
