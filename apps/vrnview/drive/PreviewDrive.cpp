#include "apps/vrnview/drive/PreviewDrive.h"

#include <BRepTools.hxx>
#include <gp_Pnt.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Wire.hxx>

#include <format>
#include <stdexcept>

#include "visual/geometry/SolidVisual.h"

namespace vrn::host {

namespace {

using Json = nlohmann::ordered_json;
using PoseF = rob::PoseTemplate<float>;

Json CountJson(const char* what, std::size_t count) {
    Json json;
    json[what] = count;
    return json;
}

}  // namespace

Json PreviewDrive::perform(const drive::PreviewAction& action) {
    Json answer = std::visit([this](const auto& a) { return on(a); }, action);
    desk.wait();
    return answer;
}

Json PreviewDrive::on(const drive::PreviewEdges& a) {
    std::vector<TopoDS_Edge> edges;
    PoseF pose;
    desk.ask([&] {
        const visual::SolidVisual& solid = desk.solidOf(a.object);
        pose = solid.getWorldPose();
        for (const std::uint32_t number : a.edges) edges.push_back(EdgeOf(solid, number));
    });
    desk.scene.previewEdges(&edges, pose);
    desk.wait();
    return CountJson("edges", edges.size());
}

Json PreviewDrive::on(const drive::PreviewWire& a) {
    TopoDS_Wire wire;
    PoseF pose;
    desk.ask([&] {
        const visual::SolidVisual& solid = desk.solidOf(a.object);
        pose = solid.getWorldPose();
        wire = BRepTools::OuterWire(FaceOf(solid, a.face));
        if (wire.IsNull()) throw std::runtime_error(std::format("face {} has no boundary", a.face));
    });
    desk.scene.previewWire(wire, pose);
    return CountJson("edges", static_cast<std::size_t>(wire.NbChildren()));
}

Json PreviewDrive::on(const drive::PreviewFaces& a) {
    std::vector<TopoDS_Face> faces;
    std::uint32_t id = 0;
    desk.ask([&] {
        const visual::SolidVisual& solid = desk.solidOf(a.object);
        id = solid.id;
        for (const std::uint32_t number : a.faces) faces.push_back(FaceOf(solid, number));
    });
    desk.scene.previewFaces(faces, id);
    return CountJson("faces", faces.size());
}

Json PreviewDrive::on(const drive::PreviewPoints& a) {
    const std::uint32_t id = desk.idOf(a.object);
    std::vector<gp_Pnt> points;
    for (const auto& p : a.points) points.emplace_back(p.x, p.y, p.z);
    desk.scene.previewPoints(&points, id, a.colour);
    desk.wait();
    return CountJson("points", points.size());
}

Json PreviewDrive::on(const drive::PreviewTargets& a) {
    desk.scene.previewTargets({a.poses.begin(), a.poses.end()});
    return CountJson("targets", a.poses.size());
}

Json PreviewDrive::on(const drive::PreviewJoint& a) {
    desk.scene.createPreviewedJointVisual();
    desk.wait();
    desk.scene.setPreviewedJointVisible(a.from, a.to);
    desk.waitForDirection("\"from\" and \"to\" fall together: the joint has no axis");
    Json json;
    json["length"] = (a.to - a.from).length();
    return json;
}

Json PreviewDrive::on(const drive::PreviewFrame& a) {
    desk.scene.createPreviewedFrameVisual(a.key, !a.dashed);
    desk.scene.setPreviewedFrameVisible(a.key, a.pose);
    frames.insert(a.key);
    return CountJson("key", a.key);
}

Json PreviewDrive::on(const drive::PreviewCopy& a) {
    const std::uint32_t id = desk.idOf(a.object);
    desk.scene.showCopiedVisual(id, PoseF(a.pose));
    return CountJson("object", id);
}

void PreviewDrive::removeFrame(std::uint32_t key) {
    if (frames.erase(key) == 0)
        throw std::runtime_error(std::format("no frame is previewed under the key {}", key));
    desk.scene.removePreviewedFrameVisual(key);
}

Json PreviewDrive::on(const drive::Remove& a) {
    using What = drive::Remove::What;
    switch (a.what) {
        case What::Curves:
            desk.scene.removePreviewCurves();
            break;
        case What::Points:
            desk.scene.removePreviewedPoints();
            break;
        case What::Faces:
            desk.scene.removePreviewFaces();
            break;
        case What::Joint:
            desk.scene.removePreviewedJointVisual();
            break;
        case What::Frame:
            removeFrame(a.key);
            break;
        case What::Copy:
            desk.scene.deleteCopiedVisual();
            break;
        case What::Measures:
            desk.scene.removeDimensionVisual();
            break;
        case What::Uv:
            desk.scene.deleteUVIndicatorVisual();
            break;
        case What::Polylines:
            desk.scene.removePolylines();
            break;
    }
    return Json::object();
}

}  // namespace vrn::host
