#include "apps/vrnview/readers/JsonFields.h"

#include <algorithm>
#include <cmath>
#include <format>
#include <numbers>
#include <stdexcept>

namespace vrn::host {

namespace {

constexpr double degree = std::numbers::pi / 180;

[[noreturn]] void Expect(const char* key, const char* what) {
    throw std::runtime_error(std::format("'{}' must be {}", key, what));
}

rob::RotationTemplate<double> RotationOf(const std::array<double, 4>& wxyz) {
    const auto [w, x, y, z] = wxyz;
    const double length = std::hypot(std::hypot(w, x), std::hypot(y, z));
    if (!(length > rob::zeroLength)) Expect("quaternion", "longer than 0");
    return {w / length, x / length, y / length, z / length};
}

}  // namespace

JsonFields::JsonFields(const nlohmann::json& source) : json(source) {
    if (!json.is_object()) throw std::runtime_error("must be an object in braces");
}

std::string JsonFields::text(const char* key) const {
    const auto found = json.find(key);
    if (found == json.end() || !found->is_string()) Expect(key, "a text");
    return found->get<std::string>();
}

double JsonFields::number(const char* key) const {
    const auto found = json.find(key);
    if (found == json.end() || !found->is_number()) Expect(key, "a number");
    return found->get<double>();
}

std::string JsonFields::textOr(const char* key, const std::string& absent) const {
    return has(key) ? text(key) : absent;
}

double JsonFields::numberOr(const char* key, double absent) const {
    return has(key) ? number(key) : absent;
}

bool JsonFields::flagOr(const char* key, bool absent) const {
    const auto found = json.find(key);
    if (found == json.end()) return absent;
    if (!found->is_boolean()) Expect(key, "true or false");
    return found->get<bool>();
}

std::optional<std::string> JsonFields::colour(const char* key) const {
    if (!has(key)) return std::nullopt;
    const auto isHex = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    };
    const std::string text = this->text(key);
    if (text.size() != 7 || text[0] != '#' || !std::ranges::all_of(text.substr(1), isHex))
        Expect(key, "a colour as #RRGGBB");
    return text;
}

double JsonFields::unitMm(const char* key) const {
    const std::string unit = textOr(key, "mm");
    if (unit == "mm") return 1;
    if (unit == "cm") return 10;
    if (unit == "m") return 1000;
    if (unit == "in") return 25.4;
    Expect(key, "mm, cm, m or in");
}

template <std::size_t count>
std::array<double, count> JsonFields::numbers(const char* key) const {
    const auto found = json.find(key);
    std::array<double, count> values{};
    if (found == json.end() || !found->is_array() || found->size() != count ||
        !std::ranges::all_of(*found, [](const auto& item) { return item.is_number(); }))
        throw std::runtime_error(std::format("'{}' must be a list of {} numbers", key, count));
    for (std::size_t i = 0; i < count; ++i) values[i] = (*found)[i].template get<double>();
    return values;
}

rob::PosTemplate<double> JsonFields::position(const char* key) const {
    const auto [x, y, z] = numbers<3>(key);
    for (const double value : {x, y, z})
        if (!(std::abs(value) <= maxLength)) Expect(key, "at most 1e9 from the origin");
    return {x, y, z};
}

Pose JsonFields::pose(const char* key) const {
    if (!has(key)) return {};
    const JsonFields fields(map(key));
    if (const std::string unknown = fields.firstUnknown({"position", "rpy", "quaternion"});
        !unknown.empty())
        throw std::runtime_error(std::format("'{}' has the unknown key '{}'", key, unknown));
    Pose pose;
    if (fields.has("position")) pose.position = fields.position("position");
    if (fields.has("quaternion")) pose.rotation = RotationOf(fields.numbers<4>("quaternion"));
    if (fields.has("rpy")) {
        if (fields.has("quaternion")) Expect(key, "turned by rpy or quaternion, not by both");
        const auto [roll, pitch, yaw] = fields.numbers<3>("rpy");
        pose.rotation = rob::RotationTemplate<double>(roll * degree, pitch * degree, yaw * degree);
    }
    return pose;
}

std::vector<std::array<double, 2>> JsonFields::pairs(const char* key) const {
    std::vector<std::array<double, 2>> result;
    const auto isCoordinate = [](const nlohmann::json& item) {
        return item.is_number() && std::abs(item.get<double>()) <= maxLength;
    };
    for (const nlohmann::json& pair : list(key)) {
        if (!pair.is_array() || pair.size() != 2 || !std::ranges::all_of(pair, isCoordinate))
            Expect(key, "a list of pairs of numbers of at most 1e9");
        result.push_back({pair[0].get<double>(), pair[1].get<double>()});
    }
    return result;
}

const nlohmann::json& JsonFields::list(const char* key) const {
    static const nlohmann::json none = nlohmann::json::array();
    const auto found = json.find(key);
    if (found == json.end()) return none;
    if (!found->is_array()) Expect(key, "a list");
    return *found;
}

const nlohmann::json& JsonFields::map(const char* key) const {
    static const nlohmann::json none = nlohmann::json::object();
    const auto found = json.find(key);
    if (found == json.end()) return none;
    if (!found->is_object()) Expect(key, "an object in braces");
    return *found;
}

std::string JsonFields::firstUnknown(std::initializer_list<std::string_view> known) const {
    for (const auto& [key, value] : json.items())
        if (std::ranges::find(known, key) == known.end()) return key;
    return {};
}

}  // namespace vrn::host
