#include "apps/vrnview/drive/BandDrive.h"

#include <BRep_Tool.hxx>
#include <TopExp.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Vertex.hxx>

#include <format>
#include <stdexcept>
#include <vector>

#include "suite/sdf/SdfManager.h"
#include "visual/geometry/SolidVisual.h"
#include "visual/process/VectorBandVisual.h"

namespace vrn::host {

namespace {

using Json = nlohmann::ordered_json;
using PosD = rob::PosTemplate<double>;

TopoDS_Vertex StartOf(const TopoDS_Edge& edge) {
    return TopExp::FirstVertex(edge, /*CumOri=*/true);
}
TopoDS_Vertex EndOf(const TopoDS_Edge& edge) { return TopExp::LastVertex(edge, /*CumOri=*/true); }

/// Turned round where needed, so that each goes on where the one before it ends.
void Chain(std::vector<TopoDS_Edge>& edges, const std::vector<std::uint32_t>& numbers) {
    for (std::size_t i = 1; i < edges.size(); ++i) {
        const auto meets = [&](const TopoDS_Vertex& vertex) {
            return vertex.IsSame(StartOf(edges[i])) || vertex.IsSame(EndOf(edges[i]));
        };
        // Only the first one is still free to be run through the other way.
        if (i == 1 && !meets(EndOf(edges[0]))) edges[0].Reverse();
        if (!meets(EndOf(edges[i - 1])))
            throw std::runtime_error(std::format("edge {} does not go on where edge {} ends",
                                                 numbers[i], numbers[i - 1]));
        if (!EndOf(edges[i - 1]).IsSame(StartOf(edges[i]))) edges[i].Reverse();
    }
}

double ParamOf(const TopoDS_Edge& edge, double at) {
    double first = 0, last = 0;
    BRep_Tool::Range(edge, first, last);
    const double along = edge.Orientation() == TopAbs_REVERSED ? 1 - at : at;
    return first + along * (last - first);
}

/// The ribbon leans across its edge everywhere. Throws for a direction that does not, by the number
/// of the vector.
void CheckDirections(const task::EdgeMfgShape& shape, const drive::Band& a) {
    const auto& all = shape.getMfgVectors();
    const auto leans = [](const geometry::MfgVectors& on, double param) {
        try {
            static_cast<void>(on.getVectorAtParam(param).getPose(on.edge));
            return true;
        } catch (const std::overflow_error&) {
            return false;
        }
    };
    for (std::size_t i = 0; i < a.directions.size(); ++i) {
        const drive::BandPlace& place = a.directions[i].place;
        const geometry::MfgVectors& on = all.at(place.edge - 1);
        if (!leans(on, ParamOf(on.edge, place.at)))
            throw std::runtime_error(std::format(
                "\"direction\" of vector {} runs along edge {} of the band", i + 1, place.edge));
    }
    for (const auto& [index, param] : shape.getPathPointsForRender())
        if (!leans(all.at(static_cast<std::size_t>(index)), param))
            throw std::runtime_error(std::format(
                "between two \"vectors\" the direction vanishes or runs along edge {} of the band",
                index + 1));
}

task::EdgeMfgShape ShapeOf(const visual::SolidVisual& solid, const drive::Band& a) {
    std::vector<TopoDS_Edge> edges;
    for (const std::uint32_t number : a.edges) edges.push_back(EdgeOf(solid, number));
    Chain(edges, a.edges);
    std::vector<geometry::MfgVectors> all;
    for (const TopoDS_Edge& edge : edges) all.push_back({edge, {}});
    for (const drive::BandDirection& d : a.directions) {
        geometry::MfgVectors& on = all.at(d.place.edge - 1);
        on.vectors.push_back({ParamOf(on.edge, d.place.at), d.direction});
    }
    task::EdgeMfgShape shape;
    for (geometry::MfgVectors& vectors : all) shape.addEdge(std::move(vectors));
    CheckDirections(shape, a);
    return shape;
}

}  // namespace

Json BandDrive::perform(const drive::BandAction& action) {
    if (!band && !std::holds_alternative<drive::Band>(action))
        throw std::runtime_error("there is no band");
    return std::visit([this](const auto& a) { return on(a); }, action);
}

void BandDrive::remove() {
    desk.scene.deleteVisual(band);
    band = nullptr;
}

void BandDrive::show(const drive::Band& a) {
    visual::SolidVisual& carrier = desk.solidOf(a.object);
    task::EdgeMfgShape wanted = ShapeOf(carrier, a);
    if (band && carrier.id == solid) {
        band->updateBand(wanted);
    } else {
        if (band) remove();
        band =
            new visual::VectorBandVisual(sdf::SdfManager::GenerateTransientId(), &carrier, wanted);
        solid = carrier.id;
    }
    shape = std::move(wanted);
}

BandDrive::PathPoint BandDrive::pointOf(const drive::BandPlace& place) const {
    const auto& edges = shape.getMfgVectors();
    if (place.edge > edges.size())
        throw std::runtime_error(
            std::format("there is no edge {}: the band has {}", place.edge, edges.size()));
    return {static_cast<std::int32_t>(place.edge - 1),
            ParamOf(edges[place.edge - 1].edge, place.at)};
}

Json BandDrive::vectorJson(const PathPoint& point) const {
    const geometry::MfgVectors& on = shape.getMfgVectors()[static_cast<std::size_t>(point.index)];
    const geometry::MfgVector vector = on.getVectorAtParam(point.param);
    const Pose pose(desk.scene.visuals.at(solid)->getWorldPose());
    const PosD position = rob::TransformPoint(pose, vector.getPos(on.edge));
    Json json;
    json["position"] = VectorJson(position.asVec3());
    json["direction"] = VectorJson(pose.rotation * vector.getDir(on.edge).asVec3());
    return json;
}

Json BandDrive::on(const drive::Band& a) {
    desk.ask([&] { show(a); });
    Json json;
    json["edges"] = a.edges.size();
    json["vectors"] = a.directions.size();
    return json;
}

Json BandDrive::on(const drive::BandPreview& a) {
    Json json;
    desk.ask([&] {
        const PathPoint point = pointOf(a.place);
        band->previewVector(shape, point);
        json = vectorJson(point);
    });
    return json;
}

Json BandDrive::on(const drive::BandSelect& a) {
    Json json;
    desk.ask([&] {
        const PathPoint point = pointOf(a.place);
        band->selectVector(shape, point);
        json = vectorJson(point);
    });
    return json;
}

Json BandDrive::on(const drive::BandRange& a) {
    Json json;
    desk.ask([&] {
        const PathPoint from = pointOf(a.from), to = pointOf(a.to);
        band->selectRange(shape, from, to);
        json["from"] = vectorJson(from)["position"];
        json["to"] = vectorJson(to)["position"];
    });
    return json;
}

Json BandDrive::on(const drive::BandClear& a) {
    using What = drive::BandClear::What;
    desk.ask([&] {
        if (a.what == What::Preview) band->clearPreviewVector();
        if (a.what == What::Selected) band->clearSelectedVector();
        if (a.what == What::Range) band->clearSelectedRange();
        if (a.what == What::All) remove();
    });
    return Json::object();
}

}  // namespace vrn::host
