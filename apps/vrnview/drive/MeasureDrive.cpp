#include "apps/vrnview/drive/MeasureDrive.h"

#include <BRepAdaptor_Curve.hxx>
#include <gp_Circ.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>

#include <cmath>
#include <format>
#include <numbers>
#include <stdexcept>

#include "visual/geometry/SolidVisual.h"

namespace vrn::host {

namespace {

using Json = nlohmann::ordered_json;
using Pos = rob::PosTemplate<double>;
using Vec = rob::Vec3Template<double>;

constexpr double degree = std::numbers::pi / 180;

Json PositionsJson(const std::vector<Pos>& positions) {
    Json list = Json::array();
    for (const Pos& position : positions) list.push_back(VectorJson(position.asVec3()));
    return list;
}

/// In the frame of the edge.
Circle CircleOf(const TopoDS_Edge& edge, std::uint32_t number) {
    const BRepAdaptor_Curve curve(edge);
    if (curve.GetType() != GeomAbs_Circle)
        throw std::runtime_error(std::format("edge {} is no circle", number));
    const gp_Circ circle = curve.Circle();
    const gp_Pnt centre = circle.Location();
    const gp_Dir x = circle.XAxis().Direction(), axis = circle.Axis().Direction();
    return {{centre.X(), centre.Y(), centre.Z()},
            Vec{x.X(), x.Y(), x.Z()} * circle.Radius(),
            {axis.X(), axis.Y(), axis.Z()}};
}

}  // namespace

Json MeasureDrive::perform(const drive::MeasureAction& action) {
    Json answer = std::visit([this](const auto& a) { return on(a); }, action);
    desk.wait();
    return answer;
}

std::vector<Pos> MeasureDrive::find(const drive::PickedPlaces& places) {
    std::vector<Pos> found;
    for (const Pixel& pixel : places.pixels) {
        const PickReport report = desk.pickSomething(pixel).report;
        if (places.snap && !report.snap)
            throw std::runtime_error(
                std::format("no edge is near the pixel {}, {}", pixel.x, pixel.y));
        found.push_back(places.snap ? report.snap->position : Pos(report.position));
    }
    return found;
}

Json MeasureDrive::on(const drive::MeasureDistance& a) {
    const std::vector<Pos> places = find(a.places);
    desk.scene.createDistanceVisual(places[0], places[1]);
    Json json;
    json["positions"] = PositionsJson(places);
    json["distance"] = (places[1] - places[0]).length();
    return json;
}

Json MeasureDrive::on(const drive::MeasureAngle& a) {
    const std::vector<Pos> places = find(a.places);
    const Vec first = places[1] - places[0], second = places[2] - places[0];
    const double angle = std::atan2(first.cross(second).length(), first.dot(second));
    desk.scene.createAngleVisual(places[0], places[1], places[2], angle);
    desk.waitForDirection("the \"points\" make no angle: two fall together, or all lie in line");
    Json json;
    json["positions"] = PositionsJson(places);
    json["angle"] = angle / degree;
    return json;
}

Json MeasureDrive::draw(const Circle& circle) {
    desk.scene.createDiameterVisual(WholeArc(circle));
    Json json;
    json["centre"] = VectorJson(circle.centre.asVec3());
    json["diameter"] = 2 * circle.toStart.length();
    return json;
}

Json MeasureDrive::on(const drive::MeasureDiameter& a) {
    const std::vector<Pos> places = find(a.places);
    return draw(CircleThrough(places[0], places[1], places[2]));
}

Json MeasureDrive::on(const drive::MeasureEdge& a) {
    Circle circle;
    desk.ask([&] {
        const visual::SolidVisual& solid = desk.solidOf(a.object);
        const Pose pose(solid.getWorldPose());
        circle = CircleOf(EdgeOf(solid, a.edge), a.edge);
        circle.centre = rob::TransformPoint(pose, circle.centre);
        circle.toStart = pose.rotation * circle.toStart;
        circle.normal = pose.rotation * circle.normal;
    });
    return draw(circle);
}

Json MeasureDrive::on(const drive::ShowUv& a) {
    const Picked picked = desk.pickSomething(a.at);
    if (!picked.report.face)
        throw std::runtime_error(
            std::format("no face of a solid lies under the pixel {}, {}", a.at.x, a.at.y));
    const std::uint32_t id = picked.report.visual->id, face = *picked.report.face;
    TopoDS_Face inWorld;
    desk.ask([&] { inWorld = desk.scene.GetBodyFaceInWorld(id, static_cast<int>(face)); });
    desk.scene.showUVIndicatorVisual(inWorld);
    Json json;
    json["object"] = id;
    json["face"] = face;
    return json;
}

Json MeasureDrive::on(const drive::Polyline& a) {
    desk.scene.drawPolyline({a.points.begin(), a.points.end()}, 0, a.arrow);
    desk.waitForDirection("the first two \"points\" fall together: the \"arrow\" has no direction");
    Json json;
    json["points"] = a.points.size();
    return json;
}

}  // namespace vrn::host
