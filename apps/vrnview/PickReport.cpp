#include "apps/vrnview/PickReport.h"

#include <charconv>
#include <cmath>
#include <format>
#include <optional>

#include "apps/vrnview/PickJson.h"
#include "apps/vrnview/Report.h"

namespace vrn::host {

namespace {

using Json = nlohmann::ordered_json;

Json NameJson(const VisualName& visual) {
    Json json;
    json["id"] = visual.id;
    json["type"] = visual.type;
    json["name"] = visual.name;
    return json;
}

Json VisualJson(const FoundVisual& visual) {
    Json json = NameJson(visual);
    if (visual.owner) json["owner"] = NameJson(*visual.owner);
    return json;
}

Json SnapJson(const SnapReport& snap) {
    Json json;
    json["param"] = snap.param;
    json["position"] = Json::array({snap.position.x, snap.position.y, snap.position.z});
    return json;
}

template <class T>
Json OrNull(const std::optional<T>& value) {
    return value ? Json(*value) : Json(nullptr);
}

std::string NameText(const VisualName& visual) {
    return std::format("{} \"{}\" id {}", KindOf(visual.type), visual.name, visual.id);
}

std::string VisualText(const FoundVisual& visual) {
    return NameText(visual) + (visual.owner ? " of " + NameText(*visual.owner) : "");
}

template <class T>
std::string PointText(const rob::PosTemplate<T>& p) {
    return std::format("({:.6g}, {:.6g}, {:.6g})", p.x, p.y, p.z);
}

}  // namespace

Json NumberJson(float number) {
    if (!std::isfinite(number)) return nullptr;
    char text[32];
    const char* end = std::to_chars(text, text + sizeof text, number).ptr;
    double shortest = 0;
    std::from_chars(text, end, shortest);
    return shortest;
}

Json PositionJson(const rob::PosTemplate<float>& position) {
    return Json::array({NumberJson(position.x), NumberJson(position.y), NumberJson(position.z)});
}

std::string LineOf(const Json& json) {
    return json.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace) +
           "\n";
}

Json PickJson(const PickReport& report) {
    Json json;
    json["hit"] = report.hit;
    json["visual"] = report.visual ? VisualJson(*report.visual) : Json(nullptr);
    json["face"] = OrNull(report.face);
    json["edge"] = OrNull(report.edge);
    json["position"] = PositionJson(report.position);
    json["localPosition"] =
        report.localPosition ? PositionJson(*report.localPosition) : Json(nullptr);
    json["distance"] = report.distance ? NumberJson(*report.distance) : Json(nullptr);
    json["index"] = report.index;
    json["snap"] = report.snap ? SnapJson(*report.snap) : Json(nullptr);
    json["us"] = report.us;
    return json;
}

Json AreaJson(const AreaReport& report) {
    Json json;
    json["visuals"] = Json::array();
    for (const FoundVisual& visual : report.visuals) json["visuals"].push_back(VisualJson(visual));
    json["points"] = report.points;
    return json;
}

std::string JsonOf(const PickReport& report) { return LineOf(PickJson(report)); }

std::string JsonOf(const AreaReport& report) { return LineOf(AreaJson(report)); }

std::string TextOf(const PickReport& report) {
    const std::string time = std::format(" ({:.1f} us)\n", report.us);
    if (!report.hit) return "nothing; the ground at " + PointText(report.position) + time;
    std::string text = report.visual ? VisualText(*report.visual) : "something";
    if (report.face) text += std::format(", face {}", *report.face);
    if (report.index >= 0) text += std::format(", point {}", report.index);
    text += " at " + PointText(report.position);
    if (report.distance) text += std::format(", distance {:.6g}", *report.distance);
    if (report.snap) {
        text += ", snaps to ";
        if (report.edge) text += std::format("edge {} at ", *report.edge);
        text += PointText(report.snap->position);
    }
    return text + time;
}

std::string TextOf(const AreaReport& report) {
    std::string text = std::format("{} visual{}, {} point{}", report.visuals.size(),
                                   report.visuals.size() == 1 ? "" : "s", report.points,
                                   report.points == 1 ? "" : "s");
    const char* before = ": ";
    for (const FoundVisual& visual : report.visuals) {
        text += before + VisualText(visual);
        before = "; ";
    }
    return text + "\n";
}

}  // namespace vrn::host
