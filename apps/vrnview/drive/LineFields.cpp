#include "apps/vrnview/drive/LineFields.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <format>
#include <limits>
#include <stdexcept>
#include <utility>

#include "apps/vrnview/readers/JsonFields.h"

namespace vrn::host {

namespace {

using Json = nlohmann::json;
using Pos = rob::PosTemplate<double>;

}  // namespace

LineFields::LineFields(const Json& lineObject, std::string verbOfLine)
    : object(lineObject), verb(std::move(verbOfLine)) {}

void LineFields::refuse(const char* key, std::string_view wanted) const {
    throw std::runtime_error(std::format("{} needs \"{}\", {}", verb, key, wanted));
}

const Json& LineFields::at(const char* key, std::string_view wanted) {
    const auto found = object.find(key);
    if (found == object.end()) refuse(key, wanted);
    used.insert(key);
    return *found;
}

const Json& LineFields::listAt(const char* key, std::string_view wanted) {
    const Json& list = at(key, wanted);
    if (!list.is_array()) refuse(key, wanted);
    return list;
}

float LineFields::floatOf(const Json& value, const char* key) const {
    constexpr std::string_view wanted = "a number of at most 1e6";
    if (!value.is_number()) refuse(key, wanted);
    const double number = value.get<double>();
    if (!(std::abs(number) <= maxPixel)) refuse(key, wanted);
    return static_cast<float>(number);
}

float LineFields::number(const char* key) {
    return floatOf(at(key, "a number of at most 1e6"), key);
}

std::optional<float> LineFields::numberIfAny(const char* key, float least, float most) {
    if (!has(key)) return std::nullopt;
    const std::string wanted = std::format("a number from {} to {}", least, most);
    const Json& value = at(key, wanted);
    if (!value.is_number()) refuse(key, wanted);
    const auto number = value.get<float>();
    if (!(number >= least && number <= most)) refuse(key, wanted);
    return number;
}

float LineFields::numberIn(const char* key, float least, float most) {
    const std::optional<float> number = numberIfAny(key, least, most);
    if (!number) refuse(key, std::format("a number from {} to {}", least, most));
    return *number;
}

double LineFields::length(const char* key) {
    constexpr std::string_view wanted = "a length above 0 and of at most 1e9";
    const double value = lengthOrNone(key);
    if (!(value > 0)) refuse(key, wanted);
    return value;
}

double LineFields::lengthOrNone(const char* key) {
    constexpr std::string_view wanted = "a length of at most 1e9";
    const Json& value = at(key, wanted);
    if (!value.is_number()) refuse(key, wanted);
    const double number = value.get<double>();
    if (!(number >= 0 && number <= JsonFields::maxLength)) refuse(key, wanted);
    return number;
}

std::uint32_t LineFields::ordinalOf(const Json& value, const char* key,
                                    std::string_view wanted) const {
    if (!value.is_number_unsigned()) refuse(key, wanted);
    const auto number = value.get<std::uint64_t>();
    if (number < 1 || number > std::numeric_limits<std::int32_t>::max()) refuse(key, wanted);
    return static_cast<std::uint32_t>(number);
}

std::uint32_t LineFields::ordinal(const char* key) {
    constexpr std::string_view wanted = "a whole number from 1";
    return ordinalOf(at(key, wanted), key, wanted);
}

std::vector<std::uint32_t> LineFields::ordinals(const char* key) {
    constexpr std::string_view wanted = "a list of whole numbers from 1";
    std::vector<std::uint32_t> list;
    for (const Json& item : listAt(key, wanted)) list.push_back(ordinalOf(item, key, wanted));
    if (list.empty()) refuse(key, wanted);
    return list;
}

bool LineFields::flagOr(const char* key, bool absent) {
    if (!has(key)) return absent;
    const Json& value = at(key, "true or false");
    if (!value.is_boolean()) refuse(key, "true or false");
    return value.get<bool>();
}

std::string LineFields::text(const char* key) {
    const Json& value = at(key, "a text");
    if (!value.is_string()) refuse(key, "a text");
    return value.get<std::string>();
}

std::size_t LineFields::choice(const char* key, const std::vector<std::string_view>& choices) {
    std::string wanted = "one of";
    for (const std::string_view name : choices)
        wanted += std::string(name == choices.front() ? " " : ", ") + std::string(name);
    const Json& value = at(key, wanted);
    if (!value.is_string()) refuse(key, wanted);
    const auto found = std::ranges::find(choices, value.get<std::string>());
    if (found == choices.end()) refuse(key, wanted);
    return static_cast<std::size_t>(found - choices.begin());
}

std::vector<std::string> LineFields::texts(const char* key) {
    constexpr std::string_view wanted = "a list of texts";
    std::vector<std::string> list;
    for (const Json& item : listAt(key, wanted)) {
        if (!item.is_string()) refuse(key, wanted);
        list.push_back(item.get<std::string>());
    }
    return list;
}

Pixel LineFields::pixel() {
    const float x = number("x");
    return {x, number("y")};
}

std::vector<Pixel> LineFields::pixels(const char* key, std::size_t count) {
    const std::string wanted = std::format("a list of {} [x, y]", count);
    std::vector<Pixel> list;
    for (const Json& item : listAt(key, wanted)) {
        if (!item.is_array() || item.size() != 2) refuse(key, wanted);
        list.push_back({floatOf(item[0], key), floatOf(item[1], key)});
    }
    if (list.size() != count) refuse(key, wanted);
    return list;
}

std::vector<rob::PosTemplate<float>> LineFields::corners(const char* key) {
    constexpr std::string_view wanted = "a list of three or more [x, y]";
    std::vector<rob::PosTemplate<float>> list;
    for (const Json& item : listAt(key, wanted)) {
        if (!item.is_array() || item.size() != 2) refuse(key, wanted);
        list.push_back({floatOf(item[0], key), floatOf(item[1], key), 0});
    }
    if (list.size() < 3) refuse(key, wanted);
    return list;
}

Pos LineFields::positionOf(const Json& value, const char* key, std::string_view wanted) const {
    const auto isCoordinate = [](const Json& item) {
        return item.is_number() && std::abs(item.get<double>()) <= JsonFields::maxLength;
    };
    if (!value.is_array() || value.size() != 3 || !std::ranges::all_of(value, isCoordinate))
        refuse(key, wanted);
    return {value[0].get<double>(), value[1].get<double>(), value[2].get<double>()};
}

Pos LineFields::position(const char* key) {
    constexpr std::string_view wanted = "[x, y, z] of at most 1e9";
    return positionOf(at(key, wanted), key, wanted);
}

std::vector<Pos> LineFields::positions(const char* key, std::size_t least) {
    const std::string wanted = std::format("a list of {} or more [x, y, z] of at most 1e9", least);
    std::vector<Pos> list;
    for (const Json& item : listAt(key, wanted)) list.push_back(positionOf(item, key, wanted));
    if (list.size() < least) refuse(key, wanted);
    return list;
}

Pose LineFields::poseOf(const Json& value, const char* key) const {
    const Json holder{{key, value}};
    try {
        return JsonFields(holder).pose(key);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(
            std::format("{} needs \"{}\", a pose: {}", verb, key, error.what()));
    }
}

Pose LineFields::pose(const char* key) { return poseOf(at(key, "a pose"), key); }

Pose LineFields::poseOr(const char* key, const Pose& absent) {
    return has(key) ? pose(key) : absent;
}

std::vector<Pose> LineFields::poses(const char* key) {
    constexpr std::string_view wanted = "a list of one or more poses";
    std::vector<Pose> list;
    for (const Json& item : listAt(key, wanted)) list.push_back(poseOf(item, key));
    if (list.empty()) refuse(key, wanted);
    return list;
}

std::optional<rob::ColorTemplate<float>> LineFields::colourIfAny(const char* key) {
    if (!has(key)) return std::nullopt;
    return colour(key);
}

rob::ColorTemplate<float> LineFields::colour(const char* key) {
    constexpr std::string_view wanted = "[r, g, b], each from 0 to 1";
    const Json& value = at(key, wanted);
    const auto isPart = [](const Json& item) {
        return item.is_number() && item.get<double>() >= 0 && item.get<double>() <= 1;
    };
    if (!value.is_array() || value.size() != 3 || !std::ranges::all_of(value, isPart))
        refuse(key, wanted);
    return {value[0].get<float>(), value[1].get<float>(), value[2].get<float>()};
}

rob::DirTemplate<double> LineFields::direction(const char* key) {
    constexpr std::string_view wanted = "[x, y, z], not all 0";
    const rob::Vec3Template<double> way = positionOf(at(key, wanted), key, wanted).asVec3();
    if (!(way.length() > rob::zeroLength)) refuse(key, wanted);
    return rob::DirTemplate<double>(way.normalized());
}

LineFields LineFields::inner(const char* key) {
    constexpr std::string_view wanted = "an object in braces";
    const Json& value = at(key, wanted);
    if (!value.is_object()) refuse(key, wanted);
    return {value, std::format("{}, in \"{}\",", verb, key)};
}

std::vector<LineFields> LineFields::inners(const char* key) {
    constexpr std::string_view wanted = "a list of one or more objects in braces";
    std::vector<LineFields> list;
    for (const Json& item : listAt(key, wanted)) {
        if (!item.is_object()) refuse(key, wanted);
        list.emplace_back(item, std::format("{}, in \"{}\",", verb, key));
    }
    if (list.empty()) refuse(key, wanted);
    return list;
}

void LineFields::finish() const {
    for (const auto& [key, value] : object.items())
        if (!used.contains(key))
            throw std::runtime_error(std::format("{} knows no \"{}\"", verb, key));
}

}  // namespace vrn::host
