#include "apps/vrnview/Picking.h"

#include <BRepAdaptor_Curve.hxx>
#include <TopExp.hxx>
#include <TopoDS.hxx>
#include <TopTools_IndexedMapOfShape.hxx>

#include <algorithm>
#include <chrono>
#include <optional>

#include "apps/vrnview/readers/OcctGuard.h"
#include "engine/Scene.h"
#include "selection/LassoSelector.h"
#include "selection/SelectableObject.h"
#include "suite/sdf/SdfManager.h"
#include "view/Camera.h"
#include "visual/geometry/PointCloudVisual.h"
#include "visual/geometry/SolidVisual.h"
#include "visual/Visual.h"

namespace vrn::host {

namespace {

using selection::CloudPoints;
using selection::Result;
using selection::VisualSelection;
using visual::Scene;

VisualName NameOf(const visual::Visual& visual) {
    return {visual.id, static_cast<std::int32_t>(visual.type), visual.getName()};
}

bool IsTransient(const visual::Visual& visual) {
    return visual.id >= sdf::SdfManager::firstTransientId;
}

FoundVisual Found(const visual::Visual& visual) {
    FoundVisual found{NameOf(visual), {}};
    if (!IsTransient(visual)) return found;
    const visual::Visual* above = visual.getParent();
    while (above != nullptr && IsTransient(*above)) above = above->getParent();
    if (above != nullptr) found.owner = NameOf(*above);
    return found;
}

bool IsAddressable(const visual::Visual* visual) {
    return visual != nullptr && Scene::Get()->visuals.contains(visual->id);
}

/// Nothing for a face that the visual does not number.
std::optional<std::uint32_t> FaceNumber(const Result& result) {
    const auto* solid = dynamic_cast<const visual::SolidVisual*>(result.visual);
    if (solid == nullptr || result.face.IsNull()) return std::nullopt;
    const std::uint32_t number = solid->getFaceIndex(TopoDS::Face(result.face));
    return number == 0 ? std::nullopt : std::optional(number);
}

std::optional<std::uint32_t> EdgeNumber(const TopoDS_Shape& shape, const TopoDS_Edge& edge) {
    if (shape.IsNull()) return std::nullopt;
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    const int number = edges.FindIndex(edge);
    return number == 0 ? std::nullopt : std::optional(static_cast<std::uint32_t>(number));
}

/// On the edge that was hit, else on the nearest edge of the face.
std::optional<selection::EdgePoint> SnapOf(const Result& result) {
    if (result.edge.IsNull()) return result.getFaceEdge();
    const std::optional<double> param = result.getEdgeParam();
    if (!param) return std::nullopt;
    return selection::EdgePoint{TopoDS::Edge(result.edge), *param};
}

void TellSnap(const Result& result, PickReport& report) {
    const std::optional<selection::EdgePoint> snap = SnapOf(result);
    if (!snap) return;
    report.edge = EdgeNumber(result.shape, snap->edge);
    const gp_Pnt local = BRepAdaptor_Curve(snap->edge).Value(snap->param);
    report.snap =
        SnapReport{snap->param, rob::TransformPoint(rob::PoseTemplate<double>(result.pose),
                                                    {local.X(), local.Y(), local.Z()})};
}

void Tell(const Result& result, PickReport& report) {
    report.hit = result.hit;
    report.position = result.position;
    if (!result.hit) return;
    if (result.visual != nullptr) report.visual = Found(*result.visual);
    report.localPosition = result.localPosition;
    report.distance = result.distance;
    report.index = result.index;
    report.face = FaceNumber(result);
    TellSnap(result, report);
}

Result Ask(float x, float y) {
    VisualSelection& selection = *VisualSelection::Get();
    Result result = selection.select(x, y);
    if (result.hit) return result;
    const Result point = selection.selectPointInCloud(x, y);
    return point.hit ? point : result;
}

/// Objects that several visuals stand for, as moves to one target do, are told once.
void Append(PickedArea& area, const visual::Visual& visual) {
    const auto& told = area.report.visuals;
    if (std::ranges::find(told, visual.id, &FoundVisual::id) != told.end()) return;
    area.report.visuals.push_back(Found(visual));
    if (IsAddressable(&visual)) area.ids.push_back(visual.id);
}

/// Behind the other visuals, by number: the map has no order that means anything.
void AppendClouds(PickedArea& area, CloudPoints&& points) {
    area.points = std::move(points);
    std::vector<std::uint32_t> clouds;
    for (const auto& [id, indices] : area.points) {
        area.report.points += indices.size();
        if (!indices.empty()) clouds.push_back(id);
    }
    std::ranges::sort(clouds);
    for (const std::uint32_t id : clouds) Append(area, *Scene::Get()->visuals.at(id));
}

/// Those of the rectangle around the polygon whose world box the polygon does not leave out.
std::vector<visual::Visual*> VisualsInside(const std::vector<rob::PosTemplate<float>>& polygon) {
    if (polygon.size() < 3) return {};
    using Pos = rob::PosTemplate<float>;
    const auto [left, right] = std::ranges::minmax(polygon, {}, &Pos::x);
    const auto [top, bottom] = std::ranges::minmax(polygon, {}, &Pos::y);
    VisualSelection& selection = *VisualSelection::Get();
    std::vector<visual::Visual*> visuals = selection.boxSelect(left.x, top.y, right.x, bottom.y);
    const selection::LassoSelector lasso(visual::Camera::Get(), polygon);
    std::erase_if(visuals, [&](visual::Visual* visual) {
        const auto* object = selection.getObject(visual);
        return lasso.classifyBoxPolygon(object->box, {}) == selection::LassoSelector::Outside;
    });
    return visuals;
}

}  // namespace

Picked PickAt(float x, float y) {
    Picked picked;
    WithOcctErrors("the geometry under the pixel is unusable", [&] {
        using Clock = std::chrono::steady_clock;
        const auto start = Clock::now();
        picked.result = Ask(x, y);
        picked.report.us = std::chrono::duration<double, std::micro>(Clock::now() - start).count();
        Tell(picked.result, picked.report);
    });
    return picked;
}

PickedArea PickBox(float x0, float y0, float x1, float y1) {
    VisualSelection& selection = *VisualSelection::Get();
    PickedArea area;
    for (const visual::Visual* visual : selection.boxSelect(x0, y0, x1, y1)) Append(area, *visual);
    AppendClouds(area, selection.boxSelectPointCloud(x0, y0, x1, y1));
    return area;
}

PickedArea PickLasso(const std::vector<rob::PosTemplate<float>>& polygon) {
    PickedArea area;
    for (const visual::Visual* visual : VisualsInside(polygon)) Append(area, *visual);
    AppendClouds(area, VisualSelection::Get()->lassoSelectPointCloud(polygon));
    return area;
}

void Highlight(const Result& result) {
    Scene& scene = *Scene::Get();
    if (!result.hit || result.visual == nullptr) return scene.clearHighlightedVisual();
    if (const auto face = FaceNumber(result))
        return scene.highlightFace(dynamic_cast<visual::SolidVisual*>(result.visual), *face);
    // The three kinds of highlight know nothing of each other but that a new visual or face ends
    // the others.
    if (!result.edge.IsNull()) {
        scene.clearHighlightedVisual();
        return scene.highlightEdge(result.visual, TopoDS::Edge(result.edge));
    }
    scene.setVisualHighlighted(result.visual);
}

void Select(const Result& result) {
    if (!result.hit || !IsAddressable(result.visual)) return Select({}, {});
    const std::uint32_t id = result.visual->id;
    if (result.index < 0) return Select({id}, {});
    Select({}, {{id, {static_cast<unsigned long>(result.index)}}});
}

void Select(const std::vector<std::uint32_t>& ids, const CloudPoints& points) {
    Scene& scene = *Scene::Get();
    const auto isNoCloud = [&](std::uint32_t id) { return !points.contains(id); };
    // Each of the library's two operations ends what the other selected: where there are points
    // alone theirs is the one, else the clouds go with the visuals and are told their points after.
    if (ids.empty() && points.empty()) {
        scene.clearHighlightedVisual();
        return scene.clearSelections();
    }
    if (std::ranges::none_of(ids, isNoCloud)) return scene.selectPointCloud(points);
    std::vector<std::uint32_t> all;
    std::ranges::copy_if(ids, std::back_inserter(all), isNoCloud);
    for (const auto& [id, indices] : points) all.push_back(id);
    scene.setVisualsSelected(all);
    scene.addRenderTask(
        [points] {
            const auto& visuals = Scene::Get()->visuals;
            for (const auto& [id, indices] : points) {
                const auto found = visuals.find(id);
                if (found == visuals.end()) continue;
                if (auto* cloud = dynamic_cast<visual::PointCloudVisual*>(found->second))
                    cloud->setSelectedIndices(indices);
            }
        },
        /*key=*/0);
}

void Mark(std::span<const Picked> picks, std::span<const PickedArea> areas) {
    std::vector<std::uint32_t> ids;
    CloudPoints points;
    for (const Picked& picked : picks) {
        const Result& result = picked.result;
        if (!result.hit || !IsAddressable(result.visual)) continue;
        if (result.index >= 0)
            points[result.visual->id].push_back(static_cast<unsigned long>(result.index));
        else if (!picked.report.face)
            ids.push_back(result.visual->id);
    }
    for (const PickedArea& area : areas) {
        ids.insert(ids.end(), area.ids.begin(), area.ids.end());
        for (const auto& [id, indices] : area.points)
            points[id].insert(points[id].end(), indices.begin(), indices.end());
    }
    Select(ids, points);
    for (const Picked& picked : picks)
        if (picked.report.face && IsAddressable(picked.result.visual))
            Scene::Get()->selectBaseFace(picked.result.visual->id, *picked.report.face);
    // Curves have no state that shows one of their edges alone but this.
    for (const Picked& picked : picks)
        if (!picked.result.edge.IsNull()) Highlight(picked.result);
}

}  // namespace vrn::host
