#include "examples/cell/CellWriter.h"

#include <BRepTools.hxx>
#include <gp_Quaternion.hxx>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstddef>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "examples/cell/Cell.h"
#include "examples/cell/Livery.h"
#include "examples/StlWriter.h"

namespace vrn::examples {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* geometryFolder = "geometry";

void WriteBytes(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw std::runtime_error(file.string() + ": cannot be written");
}

/// Seven places are more than single precision keeps of a cell; they keep the text short, and free
/// of what the last bits of the arithmetic left.
double Rounded(double value) { return std::round(value * 1e7) / 1e7 + 0.0; }

Json ListOf(const gp_XYZ& v) { return {Rounded(v.X()), Rounded(v.Y()), Rounded(v.Z())}; }

/// An empty object for a place at the origin.
Json PoseOf(const gp_Trsf& place) {
    Json pose = Json::object();
    if (place.TranslationPart().Modulus() > 1e-9)
        pose["position"] = ListOf(place.TranslationPart());
    gp_Quaternion turn = place.GetRotation();
    // Of the two that mean the same turn always the same one.
    if (turn.W() < 0) turn = turn.Negated();
    if (std::abs(turn.W() - 1) > 1e-12)
        pose["quaternion"] = {Rounded(turn.W()), Rounded(turn.X()), Rounded(turn.Y()),
                              Rounded(turn.Z())};
    return pose;
}

void SetPose(Json& object, const char* key, const gp_Trsf& place) {
    if (Json pose = PoseOf(place); !pose.empty()) object[key] = std::move(pose);
}

bool HoldsStructures(const Json& json) {
    for (const Json& item : json)
        if (item.is_structured()) return true;
    return false;
}

/// Objects and lists on one line where they are short; else an item a line, or as many as go on it
/// where the items are plain.
void AppendText(std::string& text, const Json& json, std::size_t indent) {
    constexpr std::size_t lineLength = 100;
    const std::string whole = json.dump();
    if (!json.is_structured() || json.empty() || whole.size() + indent <= lineLength) {
        text += whole;
        return;
    }
    const std::string margin = '\n' + std::string(indent + 1, ' ');
    const bool fills = !HoldsStructures(json);
    text += (json.is_object() ? "{" : "[") + margin;
    std::size_t lineStart = text.size();
    for (const auto& [key, item] : json.items()) {
        if (&item != &json.front()) {
            const bool goesOn = fills && text.size() - lineStart + indent + 24 < lineLength;
            text += goesOn ? ", " : ',' + margin;
            if (!goesOn) lineStart = text.size();
        }
        if (json.is_object()) text += Json(key).dump() + ": ";
        AppendText(text, item, indent + 1);
    }
    text += '\n' + std::string(indent, ' ') + (json.is_object() ? "}" : "]");
}

class CellWriter {
public:
    CellWriter(const RobotCell& robotCell, std::filesystem::path target)
        : cell(robotCell), folder(std::move(target)) {}

    std::filesystem::path write() {
        std::filesystem::create_directories(folder / geometryFolder);
        const Json station{{"format", "vrn-station"},
                           {"version", 1},
                           {"name", "Propeller grinding cell"},
                           {"camera",
                            {{"position", ListOf(cell.cameraPosition.XYZ())},
                             {"target", ListOf(cell.cameraTarget.XYZ())}}},
                           {"objects", objects()},
                           {"tasks", Json::array({finishing(), grinding()})},
                           {"attachments", attachments()}};
        std::string text;
        AppendText(text, station, 0);
        const std::filesystem::path file = folder / "cell.station.json";
        WriteBytes(file, text + '\n');
        return file;
    }

private:
    /// Writes the body's shape, and tells its file and colours.
    Json body(const PaintedBody& body) const {
        const std::string file = std::string(geometryFolder) + '/' + body.name + ".brep";
        std::ostringstream bytes;
        BRepTools::Write(body.shape, bytes, /*theWithTriangles=*/false, /*theWithNormals=*/false,
                         TopTools_FormatVersion_CURRENT);
        WriteBytes(folder / file, std::move(bytes).str());
        Json json{{"file", file}, {"color", body.colour}};
        for (const auto& [face, colour] : body.faceColours)
            json["faceColors"][std::to_string(face)] = colour;
        return json;
    }

    Json bodies(const std::vector<PaintedBody>& list) const {
        Json json = Json::array();
        for (const PaintedBody& item : list) json.push_back(body(item));
        return json;
    }

    Json part(const PaintedBody& painted, const std::string& id, const gp_Trsf& place) const {
        Json json{{"type", "part"}, {"id", id}};
        SetPose(json, "pose", place);
        json.update(body(painted));
        return json;
    }

    static Json joint(const Linkage& linkage, std::size_t index) {
        const LinkBodies& link = linkage.links[index];
        Json json{{"name", link.joint.name},
                  {"type", link.joint.limits ? "revolute" : "fixed"},
                  {"parent", index == 0 ? "base" : linkage.links[index - 1].name},
                  {"child", link.name}};
        gp_Trsf origin;
        origin.SetRotation(link.joint.turn);
        origin.SetTranslationPart(link.joint.origin);
        SetPose(json, "origin", origin);
        if (!link.joint.limits) return json;
        json["axis"] = ListOf(link.joint.axis.XYZ());
        json["lower"] = link.joint.limits->lowerDegrees;
        json["upper"] = link.joint.limits->upperDegrees;
        return json;
    }

    Json mechanism(const char* type, const Linkage& linkage, const gp_Trsf& place) const {
        Json json{{"type", type}, {"id", linkage.name}};
        SetPose(json, "pose", place);
        json["links"].push_back({{"name", "base"}, {"bodies", bodies(linkage.base)}});
        for (std::size_t i = 0; i < linkage.links.size(); ++i) {
            const LinkBodies& link = linkage.links[i];
            json["links"].push_back({{"name", link.name}, {"bodies", bodies(link.bodies)}});
            json["joints"].push_back(joint(linkage, i));
            if (link.joint.limits)
                json["jointValues"][link.joint.name] = Rounded(linkage.valuesDegrees[i]);
        }
        return json;
    }

    Json robot() const {
        Json json = mechanism("robot", cell.arm, cell.armPlace);
        json["vendor"] = "";
        json["wrist"] = cell.arm.links.back().name;
        Json profile = Json::array();
        for (const gp_Pnt2d& at : WristReach())
            profile.push_back({Rounded(at.X()), Rounded(at.Y())});
        json["workEnvelope"] = {{"profile", std::move(profile)},
                                {"from", arm::limits[0].lowerDegrees},
                                {"to", arm::limits[0].upperDegrees}};
        return json;
    }

    Json positioner() const {
        Json json = mechanism("device", cell.positioner, cell.positionerPlace);
        json["frames"].push_back({{"name", "faceplate"},
                                  {"link", cell.positioner.links.back().name},
                                  {"pose", PoseOf(cell.fixtureOnFaceplate)}});
        return json;
    }

    Json tool() const {
        Json json{{"type", "tool"}, {"id", "spindle"}};
        SetPose(json, "pose", FlangePlace(cell));
        json["bodies"] = bodies(cell.tool);
        json["frames"].push_back({{"name", "cutter"}, {"pose", PoseOf(cell.cutterFrame)}});
        json["frames"].push_back({{"name", "probe"}, {"pose", PoseOf(cell.probeFrame)}});
        return json;
    }

    Json fixture() const {
        const std::string file = std::string(geometryFolder) + "/fixture.stl";
        WriteStl(cell.fixture, folder / file);
        Json json{{"type", "part"}, {"id", "fixture"}};
        SetPose(json, "pose", FaceplatePlace(cell) * cell.fixtureOnFaceplate);
        json["file"] = file;
        json["color"] = livery::darkSteel;
        return json;
    }

    Json scan() const {
        const std::string file = std::string(geometryFolder) + "/scan.ply";
        WritePly(cell.scan, folder / file);
        Json json{{"type", "cloud"}, {"id", "scan"}};
        SetPose(json, "pose", cell.scanPlace);
        json["file"] = file;
        json["unit"] = "m";
        return json;
    }

    /// All copies of a body name one file.
    Json copies(const StandingBody& standing) const {
        Json list = Json::array();
        Json one = body(standing.body);
        for (std::size_t i = 0; i < standing.places.size(); ++i) {
            const std::string number =
                standing.places.size() > 1 ? '_' + std::to_string(i + 1) : "";
            Json json{{"type", "part"}, {"id", standing.body.name + number}};
            SetPose(json, "pose", standing.places[i]);
            json.update(one);
            list.push_back(std::move(json));
        }
        return list;
    }

    Json objects() const {
        Json list = Json::array();
        for (const StandingBody& standing : cell.surroundings)
            for (Json& json : copies(standing)) list.push_back(std::move(json));
        Json fence{{"type", "assembly"}, {"id", "fence"}, {"children", Json::array()}};
        for (const StandingBody& standing : cell.fence)
            for (Json& json : copies(standing)) fence["children"].push_back(std::move(json));
        list.push_back(std::move(fence));
        list.push_back(robot());
        list.push_back(tool());
        list.push_back(positioner());
        list.push_back(fixture());
        list.push_back(part(cell.workpiece, cell.workpiece.name,
                            FaceplatePlace(cell) * cell.workpieceOnFaceplate));
        list.push_back(scan());
        list.push_back(
            {{"type", "frame"}, {"id", "stand_frame"}, {"pose", PoseOf(cell.scanPlace)}});
        for (const CellSensor& each : cell.sensors) list.push_back(sensor(each));
        return list;
    }

    static Json sensor(const CellSensor& source) {
        Json json{{"type", "sensor"}, {"id", source.name}};
        json["pose"] = {{"position", ListOf(source.place.XYZ())}};
        if (source.b) {
            json["sideA"] = ListOf(source.a.XYZ());
            json["sideB"] = ListOf(source.b->XYZ());
        } else {
            json["to"] = ListOf(source.a.XYZ());
            json["radius"] = source.radius;
        }
        return json;
    }

    static std::string TargetName(std::size_t row, std::size_t place) {
        return 'r' + std::to_string(row + 1) + 'p' + std::to_string(place + 1);
    }

    /// The blades' own are many: they are there, and not shown.
    Json workObject(const BladeTargets& blade) const {
        Json json{{"id", blade.name}, {"parent", cell.workpiece.name}, {"hidden", true}};
        SetPose(json, "pose", blade.userFrame);
        SetPose(json, "objectFrame", blade.objectFrame);
        for (std::size_t row = 0; row < blade.rows.size(); ++row)
            for (std::size_t place = 0; place < blade.rows[row].size(); ++place)
                json["targets"].push_back(
                    {{"name", TargetName(row, place)}, {"pose", PoseOf(blade.rows[row][place])}});
        return json;
    }

    /// Along each row, the next one back again.
    static Json path(const BladeTargets& blade) {
        Json moves = Json::array();
        for (std::size_t row = 0; row < blade.rows.size(); ++row) {
            const std::size_t count = blade.rows[row].size();
            for (std::size_t i = 0; i < count; ++i)
                moves.push_back({{"type", moves.empty() ? "joint" : "linear"},
                                 {"workObject", blade.name},
                                 {"target", TargetName(row, row % 2 == 0 ? i : count - 1 - i)}});
        }
        return {{"name", "grind_" + blade.name}, {"moves", std::move(moves)}};
    }

    void addTool(Json& task, const char* name, const gp_Trsf& frame) const {
        task["tools"].push_back({{"name", name}, {"tool", "spindle"}, {"pose", PoseOf(frame)}});
    }

    Json grinding() const {
        Json json{{"name", "grinding"}, {"robot", cell.arm.name}};
        Json group{{"type", "pathGroup"}, {"id", "grinding_rows"}, {"hidden", true}};
        for (const BladeTargets& blade : cell.blades) {
            json["workObjects"].push_back(workObject(blade));
            json["paths"].push_back(path(blade));
            group["operations"].push_back({{"path", json["paths"].back()["name"]}});
        }
        addTool(json, "probe", cell.probeFrame);
        json["operations"].push_back(std::move(group));
        return json;
    }

    Json finishing() const {
        const Finishing& program = cell.finishing;
        Json wobj{{"id", program.workObject}, {"parent", cell.workpiece.name}};
        SetPose(wobj, "pose", program.userFrame);
        for (const auto& [name, place] : program.targets)
            wobj["targets"].push_back({{"name", name}, {"pose", PoseOf(place)}});
        Json home{{"name", program.home}, {"values", Json::object()}};
        for (std::size_t i = 0; i < program.homeDegrees.size(); ++i)
            home["values"][cell.arm.links[i].joint.name] = program.homeDegrees[i];
        Json json{{"name", "finishing"},
                  {"robot", cell.arm.name},
                  {"workObjects", Json::array({std::move(wobj)})},
                  {"jointTargets", Json::array({std::move(home)})}};
        addTool(json, "cutter", cell.cutterFrame);
        for (const CellPath& path : program.paths) {
            Json moves = Json::array();
            for (const CellMove& move : path.moves) moves.push_back(moveOf(program, move));
            json["paths"].push_back({{"name", path.name}, {"moves", std::move(moves)}});
        }
        return json;
    }

    static Json moveOf(const Finishing& program, const CellMove& move) {
        Json json{{"type", move.type}, {"workObject", program.workObject}};
        json[move.isToJoints ? "jointTarget" : "target"] = move.target;
        if (!move.via.empty()) json["circle"] = move.via;
        json["speed"] = move.speed;
        return json;
    }

    Json attachments() const {
        const std::string faceplate = cell.positioner.links.back().name;
        const auto onFaceplate = [&](const std::string& child, const gp_Trsf& place) {
            return Json{{"child", child},
                        {"parent", cell.positioner.name},
                        {"link", faceplate},
                        {"pose", PoseOf(place)}};
        };
        return {Json{{"child", "spindle"}, {"parent", cell.arm.name}},
                onFaceplate("fixture", cell.fixtureOnFaceplate),
                onFaceplate(cell.workpiece.name, cell.workpieceOnFaceplate)};
    }

    const RobotCell& cell;
    std::filesystem::path folder;
};

}  // namespace

std::filesystem::path WriteCell(const RobotCell& cell, const std::filesystem::path& folder) {
    return CellWriter(cell, folder).write();
}

}  // namespace vrn::examples
