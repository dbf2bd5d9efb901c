#include "apps/vrnview/drive/DriveDesk.h"

#include <TopExp.hxx>
#include <TopoDS.hxx>
#include <TopTools_IndexedMapOfShape.hxx>

#include <algorithm>
#include <cmath>
#include <format>
#include <stdexcept>

#include "apps/vrnview/Framing.h"
#include "apps/vrnview/PickJson.h"
#include "apps/vrnview/SceneReport.h"
#include "view/Camera.h"
#include "visual/geometry/SolidVisual.h"

namespace vrn::host {

namespace {

using Json = nlohmann::ordered_json;
using Pos = rob::PosTemplate<double>;

/// 0 inside.
double DistanceTo(const Bounds& box, const Pos& point) {
    const auto outside = [](double low, double value, double high) {
        return std::max({low - value, 0.0, value - high});
    };
    const Pos &low = box.getMin(), &high = box.getMax();
    return std::hypot(outside(low.x, point.x, high.x), outside(low.y, point.y, high.y),
                      outside(low.z, point.z, high.z));
}

double FarthestOf(const Bounds& box, const Pos& point) {
    double farthest = 0;
    for (const Pos& corner : CornersOf(box))
        farthest = std::max(farthest, (corner - point).length());
    return farthest;
}

visual::SolidVisual* FindSolid(visual::Visual& top) {
    if (auto* solid = dynamic_cast<visual::SolidVisual*>(&top)) return solid;
    for (visual::Visual* child : top.getChildren())
        if (visual::SolidVisual* solid = FindSolid(*child)) return solid;
    return nullptr;
}

}  // namespace

void DriveDesk::waitForDirection(std::string_view reason) {
    try {
        wait();
    } catch (const std::overflow_error&) {
        throw std::runtime_error(std::string(reason));
    }
}

Picked DriveDesk::pick(const Pixel& at) {
    Picked picked;
    ask([&] { picked = PickAt(at.x, at.y); });
    return picked;
}

Picked DriveDesk::pickSomething(const Pixel& at) {
    Picked picked = pick(at);
    if (!picked.report.hit)
        throw std::runtime_error(std::format("nothing lies under the pixel {}, {}", at.x, at.y));
    return picked;
}

std::vector<std::uint32_t> DriveDesk::idsOf(const std::vector<std::string>& names, LookUp lookUp) {
    std::vector<std::uint32_t> ids;
    ask([&] {
        for (const std::string& name : names) {
            const std::optional<std::uint32_t> id = (stage.viewer.*lookUp)(name);
            if (!id)
                throw std::runtime_error(
                    std::format("no input has an object of the name \"{}\"", name));
            ids.push_back(*id);
        }
    });
    return ids;
}

std::uint32_t DriveDesk::idOf(const std::string& name) { return idsOf({name}).front(); }

visual::SolidVisual& DriveDesk::solidOf(const std::string& name) const {
    const std::optional<std::uint32_t> id = stage.viewer.idOf(name);
    if (!id)
        throw std::runtime_error(std::format("no input has an object of the name \"{}\"", name));
    visual::SolidVisual* solid = FindSolid(*scene.visuals.at(*id));
    if (!solid)
        throw std::runtime_error(std::format("\"{}\" has no solid with faces and edges", name));
    return *solid;
}

void DriveDesk::measureScene() { bounds = stage.viewer.report().bounds; }

void DriveDesk::fitClipDistances() const {
    visual::Camera& camera = *visual::Camera::Get();
    const Pos eye(camera.getWorldPosition());
    // As many orders of magnitude as the depth buffer tells apart.
    constexpr double depthRange = 1e5;
    const double farthest =
        1.1 * std::max({FarthestOf(bounds, eye), FarthestOf(Viewer::furnitureBounds(), eye), 1.0});
    const double nearest = bounds.isEmpty() ? 0 : DistanceTo(bounds, eye) / 2;
    camera.setClipDist(static_cast<float>(std::max(nearest, farthest / depthRange)),
                       static_cast<float>(farthest));
}

TopoDS_Edge EdgeOf(const visual::SolidVisual& solid, std::uint32_t number) {
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(solid.getShape(), TopAbs_EDGE, edges);
    if (static_cast<int>(number) > edges.Extent())
        throw std::runtime_error(
            std::format("there is no edge {}: the solid has {}", number, edges.Extent()));
    return TopoDS::Edge(edges(static_cast<int>(number)));
}

TopoDS_Face FaceOf(const visual::SolidVisual& solid, std::uint32_t number) {
    const int count = solid.getFaceMap().Extent();
    if (static_cast<int>(number) > count)
        throw std::runtime_error(
            std::format("there is no face {}: the solid has {}", number, count));
    return solid.getFace(static_cast<int>(number));
}

Json PoseJson(const rob::PoseTemplate<float>& pose) {
    Json json;
    json["position"] = PositionJson(pose.position);
    const auto& q = pose.rotation;
    json["quaternion"] =
        Json::array({NumberJson(q.w), NumberJson(q.x), NumberJson(q.y), NumberJson(q.z)});
    return json;
}

Json VectorJson(const rob::Vec3Template<double>& vector) {
    return Json::array({vector.x, vector.y, vector.z});
}

}  // namespace vrn::host
