#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <format>
#include <map>
#include <stdexcept>

#include "apps/vrnview/readers/FileBytes.h"
#include "apps/vrnview/readers/Robot.h"
#include "apps/vrnview/readers/Words.h"

namespace vrn::host {

namespace {

constexpr double millimetres = 1000;  // a metre
constexpr double largest = 1e6;       // metres; single precision ends long before
using Vec = rob::Vec3Template<double>;

/// The element's line in words, for the messages.
std::string PlaceOf(const pugi::xml_node& node) {
    for (pugi::xml_node up = node; up; up = up.parent())
        if (const pugi::xml_attribute name = up.attribute("name"))
            return std::format("{} '{}'", up.name(), name.value());
    return node.name();
}

double NumberIn(const pugi::xml_node& node, std::string_view word) {
    const std::optional<double> value = NumberOf(word);
    if (!value || !std::isfinite(*value))
        throw std::runtime_error(
            std::format("{}: '{}' is not a number", PlaceOf(node), word.substr(0, 40)));
    return *value;
}

double NumberAt(const pugi::xml_node& node, const char* attribute) {
    return NumberIn(node, node.attribute(attribute).value());
}

template <std::size_t count>
std::array<double, count> NumbersAt(const pugi::xml_node& node, const char* attribute) {
    Words words(node.attribute(attribute).value());
    std::array<double, count> numbers{};
    for (double& number : numbers) number = NumberIn(node, words.next());
    if (!words.next().empty())
        throw std::runtime_error(
            std::format("{}: {} has more than {} numbers", PlaceOf(node), attribute, count));
    return numbers;
}

Vec VectorAt(const pugi::xml_node& node, const char* attribute, const Vec& absent) {
    if (!node.attribute(attribute)) return absent;
    const auto [x, y, z] = NumbersAt<3>(node, attribute);
    if (std::max({std::abs(x), std::abs(y), std::abs(z)}) > largest)
        throw std::runtime_error(std::format("{}: {} is too large", PlaceOf(node), attribute));
    return {x, y, z};
}

/// The child "origin"; identity without one.
Pose OriginOf(const pugi::xml_node& node) {
    const pugi::xml_node origin = node.child("origin");
    const Vec move = VectorAt(origin, "xyz", {}) * millimetres;
    const Vec turn = VectorAt(origin, "rpy", {});
    return {{move.x, move.y, move.z}, rob::RotationTemplate<double>(turn.x, turn.y, turn.z)};
}

std::string ColourText(const std::array<double, 4>& rgba) {
    const auto byte = [](double part) {
        return static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * 255));
    };
    return std::format("#{:02X}{:02X}{:02X}", byte(rgba[0]), byte(rgba[1]), byte(rgba[2]));
}

class UrdfReader {
public:
    explicit UrdfReader(const pugi::xml_node& robotNode) : robot(robotNode) {
        description.name = robot.attribute("name").value();
    }

    RobotDescription read() {
        for (const pugi::xml_node& material : robot.children("material"))
            if (const pugi::xml_node colour = material.child("color"))
                materials[material.attribute("name").value()] =
                    ColourText(NumbersAt<4>(colour, "rgba"));
        std::vector<std::string> linkNames;
        for (const pugi::xml_node& link : robot.children("link")) {
            addLink(link);
            linkNames.push_back(description.links.back().name);
        }
        std::vector<Joint> joints;
        for (const pugi::xml_node& joint : robot.children("joint"))
            joints.push_back(jointOf(joint));
        description.kinematics = Kinematics(linkNames, std::move(joints));
        return std::move(description);
    }

private:
    void addLink(const pugi::xml_node& node) {
        RobotLink link{node.attribute("name").value(), {}};
        if (!linkIndices.emplace(link.name, description.links.size()).second)
            throw std::runtime_error(std::format("there are two links '{}'", link.name));
        for (const pugi::xml_node& visual : node.children("visual")) {
            if (std::optional<LinkShape> shape = shapeOf(visual.child("geometry"))) {
                shape->origin = OriginOf(visual);
                shape->colour = colourOf(visual.child("material"));
                link.shapes.push_back(std::move(*shape));
            } else {
                description.problems.push_back(
                    std::format("link '{}': its shape is of no known kind", link.name));
            }
        }
        description.links.push_back(std::move(link));
    }

    static std::optional<LinkShape> shapeOf(const pugi::xml_node& geometry) {
        LinkShape shape;
        if (const pugi::xml_node mesh = geometry.child("mesh")) {
            shape.file = mesh.attribute("filename").value();
            shape.size = VectorAt(mesh, "scale", {1, 1, 1}) * millimetres;
            return shape;
        }
        if (const pugi::xml_node box = geometry.child("box")) {
            shape.kind = LinkShape::Kind::Box;
            const auto [x, y, z] = NumbersAt<3>(box, "size");
            shape.size = Vec{x, y, z} * millimetres;
            return shape;
        }
        if (const pugi::xml_node cylinder = geometry.child("cylinder")) {
            shape.kind = LinkShape::Kind::Cylinder;
            shape.size =
                Vec{NumberAt(cylinder, "radius"), NumberAt(cylinder, "length"), 0} * millimetres;
            return shape;
        }
        if (const pugi::xml_node sphere = geometry.child("sphere")) {
            shape.kind = LinkShape::Kind::Sphere;
            shape.size = Vec{NumberAt(sphere, "radius"), 0, 0} * millimetres;
            return shape;
        }
        return std::nullopt;
    }

    /// A colour of its own, or the robot's material of that name.
    std::optional<std::string> colourOf(const pugi::xml_node& material) const {
        if (const pugi::xml_node colour = material.child("color"))
            return ColourText(NumbersAt<4>(colour, "rgba"));
        const auto named = materials.find(material.attribute("name").value());
        return named == materials.end() ? std::nullopt : std::optional(named->second);
    }

    std::size_t linkAt(const pugi::xml_node& joint, const char* end) const {
        const char* const name = joint.child(end).attribute("link").value();
        const auto found = linkIndices.find(name);
        if (found == linkIndices.end())
            throw std::runtime_error(
                std::format("{}: there is no {} link '{}'", PlaceOf(joint), end, name));
        return found->second;
    }

    Joint jointOf(const pugi::xml_node& node) const {
        Joint joint;
        joint.name = node.attribute("name").value();
        joint.parent = linkAt(node, "parent");
        joint.child = linkAt(node, "child");
        joint.origin = OriginOf(node);
        const std::string type = node.attribute("type").value();
        const bool turns = type == "revolute" || type == "continuous";
        if (turns) joint.kind = Joint::Kind::Turning;
        if (type == "prismatic") joint.kind = Joint::Kind::Sliding;
        if (joint.kind == Joint::Kind::Fixed) {
            if (type != "fixed" && type != "floating" && type != "planar")
                throw std::runtime_error(
                    std::format("{}: '{}' is no type of joint", PlaceOf(node), type));
            return joint;
        }
        const Vec axis = VectorAt(node.child("axis"), "xyz", {1, 0, 0});
        if (!(axis.length() > rob::zeroLength))
            throw std::runtime_error(std::format("{}: its axis has no direction", PlaceOf(node)));
        joint.axis = axis.normalized();
        addLimits(node, turns ? 1 : millimetres, type == "continuous", joint);
        return joint;
    }

    static void addLimits(const pugi::xml_node& node, double unit, bool isEndless, Joint& joint) {
        const pugi::xml_node limit = node.child("limit");
        if (limit && !isEndless) {
            joint.lower = limit.attribute("lower") ? NumberAt(limit, "lower") * unit : 0;
            joint.upper = limit.attribute("upper") ? NumberAt(limit, "upper") * unit : 0;
            if (*joint.lower > *joint.upper)
                throw std::runtime_error(
                    std::format("{}: its lower limit is above the upper one", PlaceOf(node)));
        }
        const pugi::xml_node mimic = node.child("mimic");
        if (!mimic) return;
        joint.mimic = Joint::Mimic{mimic.attribute("joint").value()};
        if (mimic.attribute("multiplier")) joint.mimic->factor = NumberAt(mimic, "multiplier");
        if (mimic.attribute("offset")) joint.mimic->offset = NumberAt(mimic, "offset") * unit;
    }

    pugi::xml_node robot;
    RobotDescription description;
    std::map<std::string, std::string> materials;
    std::map<std::string, std::size_t> linkIndices;
};

/// The maker that one of the words of `text` names; words are runs of letters.
std::string MakerIn(std::string_view text) {
    static const std::map<std::string, std::string, std::less<>> makers{
        {"abb", "abb"},         {"kuka", "kuka"},       {"fanuc", "fanuc"},
        {"yaskawa", "yaskawa"}, {"motoman", "yaskawa"},
    };
    std::string word;
    const std::string lower = Lower(std::string(text)) + '/';
    for (const char c : lower) {
        if (c >= 'a' && c <= 'z') {
            word += c;
            continue;
        }
        const auto maker = makers.find(word);
        if (maker != makers.end()) return maker->second;
        word.clear();
    }
    return {};
}

}  // namespace

RobotDescription ReadUrdf(std::string_view text) {
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_buffer(text.data(), text.size());
    if (!result)
        throw std::runtime_error(
            std::format("not XML: {} at byte {}", result.description(), result.offset));
    const pugi::xml_node robot = document.child("robot");
    if (!robot) throw std::runtime_error("not a URDF file: it has no robot");
    if (!robot.child("link")) throw std::runtime_error("the robot has no links");
    return UrdfReader(robot).read();
}

std::string VendorOf(std::string_view robotName, const std::filesystem::path& file) {
    std::string maker = MakerIn(robotName);
    if (maker.empty()) maker = MakerIn(file.filename().string());
    std::filesystem::path folder = std::filesystem::absolute(file).parent_path();
    for (; maker.empty() && folder.has_relative_path(); folder = folder.parent_path())
        maker = MakerIn(folder.filename().string());
    return maker;
}

std::string MaterialFamilyOf(std::string_view vendor) {
    if (vendor == "abb") return "ABB";
    if (vendor == "kuka") return "KUKA";
    if (vendor == "fanuc") return "FANUC";
    if (vendor == "yaskawa") return "YASKAWA";
    return "Mechanism";
}

std::filesystem::path FindMesh(const std::string& name, const std::filesystem::path& description) {
    constexpr std::string_view filePrefix = "file://", packagePrefix = "package://";
    const std::filesystem::path folder = std::filesystem::absolute(description).parent_path();
    if (name.starts_with(filePrefix)) return name.substr(filePrefix.size());
    if (!name.starts_with(packagePrefix)) return folder / name;

    const std::filesystem::path inside = name.substr(packagePrefix.size());
    if (inside.empty()) return folder / inside;
    const std::filesystem::path package = *inside.begin();
    std::error_code ignored;
    for (std::filesystem::path up = folder; up.has_relative_path(); up = up.parent_path()) {
        if (std::filesystem::exists(up / inside, ignored)) return up / inside;
        if (up.filename() != package) continue;
        const std::filesystem::path found = up.parent_path() / inside;
        if (std::filesystem::exists(found, ignored)) return found;
    }
    return folder / inside;
}

}  // namespace vrn::host
