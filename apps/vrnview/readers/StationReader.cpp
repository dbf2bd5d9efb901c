#include "apps/vrnview/readers/StationReader.h"

#include <algorithm>
#include <any>
#include <cmath>
#include <format>
#include <numbers>
#include <stdexcept>

#include "apps/vrnview/readers/FileBytes.h"
#include "apps/vrnview/readers/Words.h"
#include "suite/geom/BodyColorTool.h"
#include "suite/layout/Body.h"
#include "suite/layout/Frame.h"
#include "suite/layout/Mechanism.h"
#include "suite/layout/Part.h"
#include "suite/layout/PointCloud.h"
#include "suite/smart/SmartComponent.h"
#include "suite/task/DataItem.h"
#include "suite/task/Task.h"

namespace vrn::host {

namespace {

constexpr const char* formatName = "vrn-station";
constexpr double version = 1;
constexpr int maxDepth = 64;  // of assemblies in each other
constexpr double degree = std::numbers::pi / 180;

Joint::Kind JointKindOf(const std::string& type) {
    if (type == "fixed") return Joint::Kind::Fixed;
    if (type == "revolute" || type == "continuous") return Joint::Kind::Turning;
    if (type == "prismatic") return Joint::Kind::Sliding;
    throw std::runtime_error("'type' must be fixed, revolute, continuous or prismatic");
}

std::size_t LinkNamed(const std::map<std::string, std::size_t>& links, const std::string& name) {
    const auto found = links.find(name);
    if (found == links.end()) throw std::runtime_error(std::format("there is no link '{}'", name));
    return found->second;
}

Joint JointOf(const JsonFields& fields, const std::map<std::string, std::size_t>& links) {
    Joint joint;
    joint.name = fields.text("name");
    joint.kind = JointKindOf(fields.textOr("type", "revolute"));
    joint.parent = LinkNamed(links, fields.text("parent"));
    joint.child = LinkNamed(links, fields.text("child"));
    joint.origin = fields.pose("origin");
    if (joint.kind == Joint::Kind::Fixed) return joint;
    const auto axis =
        fields.has("axis") ? fields.position("axis").asVec3() : rob::Vec3Template<double>{0, 0, 1};
    if (!(axis.length() > rob::zeroLength)) throw std::runtime_error("'axis' has no direction");
    joint.axis = axis.normalized();
    const double unit = joint.kind == Joint::Kind::Turning ? degree : 1;
    if (fields.has("lower")) joint.lower = fields.number("lower") * unit;
    if (fields.has("upper")) joint.upper = fields.number("upper") * unit;
    if (joint.lower && joint.upper && *joint.lower > *joint.upper)
        throw std::runtime_error("'lower' is above 'upper'");
    return joint;
}

}  // namespace

StationReader::StationReader(std::filesystem::path stationFile) : file(std::move(stationFile)) {}

Content StationReader::read(const nlohmann::json& station) {
    const JsonFields fields(station);
    if (!fields.has("format") || fields.text("format") != formatName)
        throw std::runtime_error(std::format("not a station: 'format' must be {}", formatName));
    if (fields.number("version") != version)
        throw std::runtime_error(
            std::format("this is a station of version {}, only version {} is known",
                        fields.number("version"), version));
    warnUnknown(
        fields, "station",
        {"$schema", "format", "version", "name", "camera", "objects", "attachments", "tasks"});
    if (fields.has("camera")) {
        const JsonFields camera(fields.map("camera"));
        content.camera = CameraSpot{camera.position("position"), camera.position("target")};
    }
    const auto each = [this, &fields](const char* key, const char* kind, auto work) {
        forEach(fields.list(key), kind,
                [this, work](const JsonFields& item, const std::string& label) {
                    (this->*work)(item, label);
                });
    };
    each("objects", "object", &StationReader::addObject);
    each("tasks", "task", &StationReader::addTask);
    each("attachments", "attachment", &StationReader::addAttachment);
    placeJointTargets();
    return std::move(content);
}

/// Calls `work` with each item and what to call it in a message.
void StationReader::forEach(const nlohmann::json& list, const std::string& kind, const Work& work) {
    std::size_t number = 0;
    for (const nlohmann::json& item : list) {
        std::string label = std::format("{} {}", kind, ++number);
        try {
            const JsonFields fields(item);
            for (const char* key : {"name", "id"})
                if (fields.has(key) && item[key].is_string())
                    label = std::format("{} '{}'", kind, fields.text(key));
            work(fields, label);
        } catch (const std::exception& error) {
            builder.addProblem(label, error.what());
        }
    }
}

void StationReader::warnUnknown(const JsonFields& fields, const std::string& label,
                                std::initializer_list<std::string_view> known) {
    const std::string unknown = fields.firstUnknown(known);
    if (!unknown.empty())
        builder.addProblem(label, std::format("the key '{}' is not known here", unknown));
}

void StationReader::checkId(const JsonFields& fields) const {
    if (!fields.has("id")) return;
    if (content.ids.contains(fields.text("id"))) throw std::runtime_error("the id is used twice");
}

void StationReader::enter(const JsonFields& fields, sdf::SdfNode& object, const Placed& entry) {
    if (fields.flagOr("hidden", false)) content.hidden.insert(object.id);
    if (!fields.has("id")) return;
    Placed& kept = placed[fields.text("id")] = entry;
    kept.id = object.id;
    if (kept.mount == 0) kept.mount = object.id;
    kept.root = currentRoot;
    content.ids[fields.text("id")] = object.id;
}

std::filesystem::path StationReader::fileAt(const JsonFields& fields) const {
    return std::filesystem::absolute(file).parent_path() / fields.text("file");
}

const StationReader::Placed& StationReader::placedAt(const JsonFields& fields,
                                                     const char* key) const {
    const std::string name = fields.text(key);
    const auto found = placed.find(name);
    if (found == placed.end())
        throw std::runtime_error(std::format("'{}' names '{}', which is not there", key, name));
    return found->second;
}

void StationReader::addObject(const JsonFields& fields, const std::string& label) {
    currentRoot = fields.textOr("id", "");
    const std::string type = fields.text("type");
    checkId(fields);
    if (type == "part" || type == "assembly")
        builder.list(partOrAssembly(fields, label, 0));
    else if (type == "robot")
        addRobot(fields, label);
    else if (type == "tool")
        addTool(fields, label);
    else if (type == "device")
        addDevice(fields, label);
    else if (type == "cloud")
        addCloud(fields, label);
    else if (type == "frame")
        addFrame(fields, label);
    else if (type == "sensor")
        addSensor(fields, label);
    else if (type == "workObject")
        content.workObjects.push_back(&workObject(fields, label, nullptr));
    else
        throw std::runtime_error(
            "'type' must be part, assembly, robot, tool, device, cloud, frame, sensor or "
            "workObject");
}

sdf::SdfObject& StationReader::partOrAssembly(const JsonFields& fields, const std::string& label,
                                              int depth) {
    const std::string type = fields.text("type");
    if (type != "part" && type != "assembly")
        throw std::runtime_error("an assembly holds parts and assemblies alone");
    checkId(fields);
    sdf::SdfObject& object = type == "part" ? part(fields, label) : assembly(fields, label, depth);
    object.setPose(Compose(fields.pose("pose"), object.getPose()));
    if (fields.has("name") || fields.has("id"))
        object.name = fields.textOr("name", fields.textOr("id", ""));
    enter(fields, object, {});
    return object;
}

sdf::SdfObject& StationReader::part(const JsonFields& fields, const std::string& label) {
    warnUnknown(fields, label,
                {"type", "id", "name", "pose", "hidden", "file", "unit", "color", "faceColors",
                 "material", "bodies"});
    if (!fields.has("file")) {
        auto* part = content.objects.make<layout::Part>(fields.textOr("id", "part"));
        addBodies(*part, fields.list("bodies"), "", label);
        return *part;
    }
    if (fields.has("bodies")) throw std::runtime_error("has both 'file' and 'bodies'");
    const double unit = fields.unitMm("unit");
    const GeometryUse use{
        {unit, unit, unit}, fields.colour("color"), fields.textOr("material", "")};
    const std::filesystem::path geometry = fileAt(fields);
    try {
        sdf::SdfObject& object = builder.model(geometry, geometry.stem().string(), use);
        if (auto* part = dynamic_cast<layout::Part*>(&object))
            paintFaces(fields, part->bodies());
        else
            paintFaces(fields, {});
        return object;
    } catch (const std::exception& error) {
        throw std::runtime_error(std::format("{}: {}", fields.text("file"), error.what()));
    }
}

sdf::SdfObject& StationReader::assembly(const JsonFields& fields, const std::string& label,
                                        int depth) {
    warnUnknown(fields, label, {"type", "id", "name", "pose", "hidden", "children"});
    if (depth >= maxDepth) throw std::runtime_error("assemblies are nested too deep");
    auto* assembly = content.objects.make<layout::Assembly>(fields.textOr("id", "assembly"));
    forEach(fields.list("children"), "object",
            [&](const JsonFields& child, const std::string& childLabel) {
                assembly->addChild(partOrAssembly(child, childLabel, depth + 1));
            });
    return *assembly;
}

/// The bodies of a part, a tool or a link; one that cannot be read costs a line.
void StationReader::addBodies(layout::Part& part, const nlohmann::json& bodies,
                              const std::string& material, const std::string& label) {
    for (const nlohmann::json& item : bodies) {
        std::string name = label;
        try {
            const JsonFields body(item);
            warnUnknown(body, label, {"file", "unit", "color", "faceColors", "material", "pose"});
            name = std::format("{}: {}", label, body.text("file"));
            const double unit = body.unitMm("unit");
            const GeometryUse use{
                {unit, unit, unit}, body.colour("color"), body.textOr("material", material)};
            paintFaces(body, builder.addBodies(part, fileAt(body), use, body.pose("pose")));
        } catch (const std::exception& error) {
            builder.addProblem(name, error.what());
        }
    }
}

void StationReader::paintFaces(const JsonFields& fields, const std::vector<layout::Body*>& bodies) {
    const nlohmann::json& faces = fields.map("faceColors");
    if (faces.empty()) return;
    if (bodies.size() != 1 || bodies.front()->getShape().IsNull())
        throw std::runtime_error("'faceColors' needs a file of one body with faces");
    const auto count = static_cast<std::uint64_t>(bodies.front()->getFaceMap().Extent());
    const JsonFields colours(faces);
    for (const auto& [key, value] : faces.items()) {
        const std::optional<std::uint64_t> face = CountOf(key);
        if (!face || *face < 1 || *face > count)
            throw std::runtime_error(std::format("'faceColors' names face '{}' of {}", key, count));
        geometry::BodyColorTool::SetFaceColor(bodies.front()->element,
                                              static_cast<std::uint32_t>(*face),
                                              *colours.colour(key.c_str()));
    }
}

/// A robot's or device's links: those of a file, or those that stand here.
RobotDescription StationReader::description(const JsonFields& fields) {
    if (fields.has("file")) {
        if (fields.has("links")) throw std::runtime_error("has both 'file' and 'links'");
        const std::filesystem::path urdf = fileAt(fields);
        try {
            return ReadUrdf(ReadBytes(urdf));
        } catch (const std::exception& error) {
            throw std::runtime_error(std::format("{}: {}", fields.text("file"), error.what()));
        }
    }
    RobotDescription described;
    std::map<std::string, std::size_t> indices;
    std::vector<std::string> names;
    for (const nlohmann::json& item : fields.list("links")) {
        const std::string name = JsonFields(item).text("name");
        if (!indices.emplace(name, names.size()).second)
            throw std::runtime_error(std::format("there are two links '{}'", name));
        names.push_back(name);
        described.links.push_back({name, {}});
    }
    std::vector<Joint> joints;
    for (const nlohmann::json& item : fields.list("joints"))
        joints.push_back(JointOf(JsonFields(item), indices));
    described.kinematics = Kinematics(names, std::move(joints));
    return described;
}

void StationReader::addOwnLinkBodies(const JsonFields& fields, JointedObject& jointed,
                                     const std::string& material, const std::string& label) {
    std::size_t index = 0;
    for (const nlohmann::json& item : fields.list("links")) {
        layout::Link& link = *jointed.links.at(index++);
        const nlohmann::json& bodies = JsonFields(item).list("bodies");
        if (bodies.empty()) continue;
        auto* part = content.objects.make<layout::Part>(link.name);
        link.addChild(*part);
        addBodies(*part, bodies, material, std::format("{}: link '{}'", label, link.name));
    }
}

void StationReader::setJoints(const JsonFields& fields, JointedObject& jointed,
                              const std::string& label) {
    const nlohmann::json& values = fields.map("jointValues");
    for (const auto& [name, value] : values.items()) {
        try {
            const auto& joints = jointed.kinematics.getJoints();
            const auto joint = std::ranges::find(joints, name, &Joint::name);
            const bool turns = joint != joints.end() && joint->kind == Joint::Kind::Turning;
            const double number = JsonFields(values).number(name.c_str());
            jointed.kinematics.setValue(name, turns ? number * degree : number);
        } catch (const std::exception& error) {
            builder.addProblem(label, error.what());
        }
    }
    jointed.poseLinks();
}

JointedObject& StationReader::addLinks(const JsonFields& fields, layout::Mechanism& mechanism,
                                       RobotDescription links, const std::string& material,
                                       const std::string& label) {
    const std::filesystem::path from = fields.has("file") ? fileAt(fields) : file;
    JointedObject& jointed = builder.addLinks(mechanism, std::move(links), from, material);
    addOwnLinkBodies(fields, jointed, material, label);
    setJoints(fields, jointed, label);
    return jointed;
}

void StationReader::addRobot(const JsonFields& fields, const std::string& label) {
    warnUnknown(fields, label,
                {"type", "id", "name", "pose", "hidden", "file", "vendor", "links", "joints",
                 "jointValues", "wrist", "workEnvelope"});
    RobotDescription links = description(fields);
    const std::filesystem::path from = fields.has("file") ? fileAt(fields) : file;
    links.name = fields.textOr("name", fields.textOr("id", links.name));
    const std::string vendor =
        fields.has("vendor") ? Lower(fields.text("vendor")) : VendorOf(links.name, from);
    layout::Manipulator& robot = builder.robot(std::move(links), from, vendor, fields.pose("pose"),
                                               fields.textOr("wrist", ""));
    JointedObject& jointed = content.jointed.back();
    addOwnLinkBodies(fields, jointed, MaterialFamilyOf(vendor), label);
    setJoints(fields, jointed, label);
    Placed entry;
    entry.mount = robot.wrist()->id;
    entry.links = &robot;
    enter(fields, robot, entry);
    if (fields.has("workEnvelope")) addEnvelope(fields, robot, label);
}

void StationReader::addTool(const JsonFields& fields, const std::string& label) {
    warnUnknown(fields, label, {"type", "id", "name", "pose", "hidden", "bodies", "frames"});
    auto* tool =
        content.objects.make<layout::Tool>(fields.textOr("name", fields.textOr("id", "tool")));
    tool->setPose(fields.pose("pose"));
    auto* link = content.objects.make<layout::Link>(tool->name);
    auto* part = content.objects.make<layout::Part>(tool->name);
    tool->addLink(*link);
    link->addChild(*part);
    addBodies(*part, fields.list("bodies"), "", label);
    Placed entry;
    entry.links = tool;
    for (const nlohmann::json& item : fields.list("frames")) {
        const JsonFields frameFields(item);
        auto* frame = content.objects.make<layout::Frame>(frameFields.textOr("name", "frame"));
        frame->setPose(frameFields.pose("pose"));
        tool->addFrame(*frame);
    }
    content.tools.push_back(tool);
    enter(fields, *tool, entry);
}

void StationReader::addDevice(const JsonFields& fields, const std::string& label) {
    warnUnknown(fields, label,
                {"type", "id", "name", "pose", "hidden", "file", "links", "joints", "jointValues",
                 "frames"});
    RobotDescription links = description(fields);
    auto* device = content.objects.make<layout::Device>(
        fields.textOr("name", fields.textOr("id", links.name)));
    device->setPose(fields.pose("pose"));
    JointedObject& jointed = addLinks(fields, *device, std::move(links), "", label);
    Placed entry;
    entry.links = device;
    forEach(fields.list("frames"), label + ": frame",
            [&](const JsonFields& frameFields, const std::string&) {
                const sdf::SdfNode* carrier = device;
                if (frameFields.has("link")) {
                    const auto link = std::ranges::find(jointed.links, frameFields.text("link"),
                                                        &layout::Link::name);
                    if (link == jointed.links.end())
                        throw std::runtime_error("'link' names no link of the device");
                    carrier = *link;
                }
                auto* frame =
                    content.objects.make<layout::Frame>(frameFields.textOr("name", "frame"));
                frame->setPose(frameFields.pose("pose"));
                device->addFrame(*frame, *carrier);
            });
    content.devices.push_back(device);
    enter(fields, *device, entry);
}

void StationReader::addCloud(const JsonFields& fields, const std::string& label) {
    warnUnknown(fields, label, {"type", "id", "name", "pose", "hidden", "file", "unit"});
    const std::string name = fields.textOr("name", fields.textOr("id", "cloud"));
    const double unit = fields.unitMm("unit");
    const Pose pose = fields.pose("pose");
    const std::filesystem::path points = fileAt(fields);
    try {
        enter(fields, builder.cloud(points, name, unit, pose), {});
    } catch (const std::exception& error) {
        throw std::runtime_error(std::format("{}: {}", fields.text("file"), error.what()));
    }
}

void StationReader::addFrame(const JsonFields& fields, const std::string& label) {
    warnUnknown(fields, label, {"type", "id", "name", "pose", "hidden", "parent"});
    auto* frame =
        content.objects.make<layout::Frame>(fields.textOr("name", fields.textOr("id", "frame")));
    frame->setPose(fields.pose("pose"));
    if (fields.has("parent")) frame->parentId = placedAt(fields, "parent").mount;
    content.frames.push_back(frame);
    Placed entry;
    entry.attachedTo = fields.textOr("parent", "");
    enter(fields, *frame, entry);
}

/// Its shape starts at its pose: a parallelogram of two sides, or a line to a point.
void StationReader::addSensor(const JsonFields& fields, const std::string& label) {
    warnUnknown(fields, label,
                {"type", "id", "name", "pose", "hidden", "sideA", "sideB", "to", "radius"});
    const bool isPlane = fields.has("sideA") || fields.has("sideB");
    if (isPlane == fields.has("to"))
        throw std::runtime_error("a sensor needs either 'sideA' and 'sideB' or 'to'");
    const auto xyz = [&fields](const char* key) {
        const auto p = fields.position(key);
        return rob::XYZTemplate<double>{p.x, p.y, p.z};
    };
    // Read before the object is made: a mistake leaves none behind.
    const auto second = xyz(isPlane ? "sideA" : "to");
    const std::any third =
        isPlane ? std::any(xyz("sideB")) : std::any(fields.numberOr("radius", 0));
    auto* sensor = content.objects.make<smartcomp::Sensor>(
        fields.textOr("name", fields.textOr("id", "sensor")),
        isPlane ? sdf::ObjectType::PlaneSensor : sdf::ObjectType::SegmentSensor);
    sensor->setPose(fields.pose("pose"));
    sensor->setProperty(1, rob::XYZTemplate<double>{});
    sensor->setProperty(2, second);
    sensor->setProperty(3, third);
    content.sensors.push_back(sensor);
    enter(fields, *sensor, Placed{});
}

task::WObjDataItem& StationReader::workObject(const JsonFields& fields, const std::string& label,
                                              task::Task* task) {
    warnUnknown(
        fields, label,
        {"type", "id", "name", "pose", "hidden", "parent", "fixed", "objectFrame", "targets"});
    const std::string key = fields.textOr("id", fields.textOr("name", ""));
    auto* wobj = content.objects.make<task::WObjDataItem>(fields.textOr("name", key),
                                                          fields.flagOr("fixed", true));
    wobj->setPose(fields.pose("pose"));
    auto* objectFrame = content.objects.make<task::ObjectFrame>(wobj->name + " object frame");
    objectFrame->setPose(fields.pose("objectFrame"));
    wobj->setObjectFrame(*objectFrame);
    if (task) task->addChild(*wobj);
    wobj->parentId = fields.has("parent") ? placedAt(fields, "parent").mount : 0;
    addTargets(fields, *wobj, label, task);
    if (!key.empty()) workObjects.emplace(key, wobj);
    Placed entry;
    entry.attachedTo = fields.textOr("parent", "");
    enter(fields, *wobj, entry);
    return *wobj;
}

}  // namespace vrn::host
