#include "apps/vrnview/Report.h"

#include <nlohmann/json.hpp>

#include <array>
#include <format>
#include <string_view>
#include <utility>

#include "visual/VisualType.h"

namespace vrn::host {

namespace {

using Json = nlohmann::ordered_json;

constexpr auto kindNames = std::to_array<std::pair<VisualType, std::string_view>>({
    {VisualType::None, "None"},
    {VisualType::Root, "Root"},
    {VisualType::Manipulator, "Manipulator"},
    {VisualType::Tool, "Tool"},
    {VisualType::Device, "Device"},
    {VisualType::Link, "Link"},
    {VisualType::Assembly, "Assembly"},
    {VisualType::PointCloud, "PointCloud"},
    {VisualType::Part, "Part"},
    {VisualType::Solid, "Solid"},
    {VisualType::Curve, "Curve"},
    {VisualType::Edge, "Edge"},
    {VisualType::WireFrame, "WireFrame"},
    {VisualType::Mesh, "Mesh"},
    {VisualType::Point, "Point"},
    {VisualType::Path, "Path"},
    {VisualType::MoveInstruction, "MoveInstruction"},
    {VisualType::Helper, "Helper"},
    {VisualType::Frame, "Frame"},
    {VisualType::Tcp, "Tcp"},
    {VisualType::RobTarget, "RobTarget"},
    {VisualType::JointTarget, "JointTarget"},
    {VisualType::WObj, "WObj"},
    {VisualType::WObjUserFrame, "WObjUserFrame"},
    {VisualType::WObjObjectFrame, "WObjObjectFrame"},
    {VisualType::UserComponent, "UserComponent"},
    {VisualType::Sensor, "Sensor"},
    {VisualType::Paint, "Paint"},
    {VisualType::Wrist, "Wrist"},
    {VisualType::PreviewCurve, "PreviewCurve"},
    {VisualType::GeneratedEdge, "GeneratedEdge"},
    {VisualType::UVIndicator, "UVIndicator"},
    {VisualType::WorkEnvelope, "WorkEnvelope"},
});

std::string Quantity(std::uint64_t count, std::string_view one, std::string_view many) {
    return std::format("{} {}", count, count == 1 ? one : many);
}

std::string PointText(const rob::PosTemplate<double>& p) {
    return std::format("({:.6g}, {:.6g}, {:.6g})", p.x, p.y, p.z);
}

void AppendTree(std::string& text, const std::vector<VisualReport>& visuals, int depth) {
    for (const VisualReport& visual : visuals) {
        text += std::format("{:{}}{} \"{}\" id {}\n", "", 2 * depth, KindOf(visual.type),
                            visual.name, visual.id);
        AppendTree(text, visual.children, depth + 1);
    }
}

void AddCounts(Json& json, const Counts& counts) {
    json["bodies"] = counts.bodies;
    json["faces"] = counts.faces;
    json["triangles"] = counts.triangles;
    json["vertices"] = counts.vertices;
    json["points"] = counts.points;
}

Json InputJson(const InputReport& input) {
    Json json;
    json["file"] = input.file;
    json["ok"] = input.isOk();
    json["error"] = input.isOk() ? Json(nullptr) : Json(input.error);
    json["problems"] = input.problems;
    json["ms"] = input.ms;
    AddCounts(json, input.counts);
    return json;
}

Json TreeJson(const std::vector<VisualReport>& visuals) {
    Json list = Json::array();
    for (const VisualReport& visual : visuals) {
        Json json;
        json["id"] = visual.id;
        json["type"] = visual.type;
        json["name"] = visual.name;
        json["children"] = TreeJson(visual.children);
        list.push_back(std::move(json));
    }
    return list;
}

Json BoundsJson(const Bounds& bounds) {
    if (bounds.isEmpty()) return nullptr;
    const auto triple = [](const rob::PosTemplate<double>& p) {
        return Json::array({p.x, p.y, p.z});
    };
    Json json;
    json["min"] = triple(bounds.getMin());
    json["max"] = triple(bounds.getMax());
    return json;
}

}  // namespace

std::string KindOf(std::int32_t type) {
    for (const auto& [kind, name] : kindNames)
        if (static_cast<std::int32_t>(kind) == type) return std::string(name);
    return std::to_string(type);
}

std::string CountsLine(const Counts& counts) {
    return std::format("{}, {}, {}, {}, {}", Quantity(counts.bodies, "body", "bodies"),
                       Quantity(counts.faces, "face", "faces"),
                       Quantity(counts.triangles, "triangle", "triangles"),
                       Quantity(counts.vertices, "vertex", "vertices"),
                       Quantity(counts.points, "point", "points"));
}

std::string TextOf(const SceneReport& report) {
    std::string text;
    for (const InputReport& input : report.inputs) {
        text += input.isOk() ? std::format("{}: read in {:.1f} ms: {}\n", input.file, input.ms,
                                           CountsLine(input.counts))
                             : std::format("{}: not read: {}\n", input.file, input.error);
    }
    text += "\nvisuals:\n";
    AppendTree(text, report.visuals, 1);
    text += "\ntotals: " + CountsLine(report.totals) + "\n";
    if (report.bounds.isEmpty()) {
        text += "bounds: none\n";
    } else {
        text += std::format("bounds: {} to {}\n", PointText(report.bounds.getMin()),
                            PointText(report.bounds.getMax()));
    }
    return text;
}

std::string JsonOf(const SceneReport& report) {
    Json json;
    json["inputs"] = Json::array();
    for (const InputReport& input : report.inputs) json["inputs"].push_back(InputJson(input));
    AddCounts(json["totals"], report.totals);
    json["bounds"] = BoundsJson(report.bounds);
    json["visuals"] = TreeJson(report.visuals);
    return json.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace) +
           "\n";
}

std::string ErrorLines(const InputReport& input) {
    std::string lines;
    const auto add = [&](const std::string& reason) {
        std::string line = std::format("vrnview: {}: {}", input.file, reason);
        for (char& c : line)
            if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
        lines += line + '\n';
    };
    if (!input.isOk()) add(input.error);
    for (const std::string& problem : input.problems) add(problem);
    return lines;
}

}  // namespace vrn::host
