#include "apps/vrnview/DriveScript.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <format>
#include <fstream>
#include <iterator>
#include <limits>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "apps/vrnview/Looks.h"
#include "apps/vrnview/readers/Words.h"

namespace vrn::host {

namespace {

using Json = nlohmann::json;

/// The keys of one line, each to be asked for once.
class Fields {
public:
    Fields(const Json& lineObject, std::string verbOfLine)
        : object(lineObject), verb(std::move(verbOfLine)) {}

    [[nodiscard]] float number(const char* key) { return floatOf(at(key, "a number"), key); }

    [[nodiscard]] std::string text(const char* key) {
        const Json& value = at(key, "a text");
        if (!value.is_string()) refuse(key, "a text");
        return value.get<std::string>();
    }

    [[nodiscard]] std::vector<std::string> texts(const char* key) {
        constexpr const char* wanted = "a list of texts";
        std::vector<std::string> list;
        for (const Json& item : listAt(key, wanted)) {
            if (!item.is_string()) refuse(key, wanted);
            list.push_back(item.get<std::string>());
        }
        return list;
    }

    [[nodiscard]] std::vector<rob::PosTemplate<float>> corners(const char* key) {
        constexpr const char* wanted = "a list of three or more [x, y]";
        std::vector<rob::PosTemplate<float>> list;
        for (const Json& item : listAt(key, wanted)) {
            if (!item.is_array() || item.size() != 2) refuse(key, wanted);
            list.push_back({floatOf(item[0], key), floatOf(item[1], key), 0});
        }
        if (list.size() < 3) refuse(key, wanted);
        return list;
    }

    /// Throws for a key that nothing asked for: a misspelt one would go unnoticed.
    void finish() const {
        for (const auto& [key, value] : object.items())
            if (!used.contains(key))
                throw std::runtime_error(std::format("{} knows no \"{}\"", verb, key));
    }

private:
    [[noreturn]] void refuse(const char* key, const char* wanted) const {
        throw std::runtime_error(std::format("{} needs \"{}\", {}", verb, key, wanted));
    }
    const Json& at(const char* key, const char* wanted) {
        const auto found = object.find(key);
        if (found == object.end()) refuse(key, wanted);
        used.insert(key);
        return *found;
    }
    const Json& listAt(const char* key, const char* wanted) {
        const Json& list = at(key, wanted);
        if (!list.is_array()) refuse(key, wanted);
        return list;
    }
    [[nodiscard]] float floatOf(const Json& value, const char* key) const {
        if (!value.is_number()) refuse(key, "a number");
        const double number = value.get<double>();
        if (!(std::abs(number) <= std::numeric_limits<float>::max()))
            refuse(key, "a number that is not too large");
        return static_cast<float>(number);
    }

    const Json& object;
    std::string verb;
    std::set<std::string> used{"do"};
};

drive::Action ReadMode(Fields& f) {
    const std::string name = f.text("mode");
    const auto& names = DisplayModeNames();
    const auto found = std::ranges::find(names, name);
    if (found == names.end())
        throw std::runtime_error(
            std::format("the mode \"{}\" is not one of shaded, edges, lines, triangles", name));
    return drive::Mode{static_cast<visual::Scene::DisplayMode>(found - names.begin())};
}

drive::Action ReadPicture(Fields& f) {
    std::string name = f.text("name");
    // A script writes into its output folder and nowhere else.
    const auto isBad = [](char c) {
        return c == '/' || c == '\\' || static_cast<unsigned char>(c) < 0x20;
    };
    if (name.empty() || name.front() == '.' || std::ranges::any_of(name, isBad))
        throw std::runtime_error(
            std::format("\"{}\" is no name for a picture: a file's, without a folder", name));
    return drive::TakePicture{std::move(name)};
}

struct Verb {
    std::string_view name;
    drive::Action (*read)(Fields&);
};

// The braces read the keys from left to right.
constexpr Verb verbs[] = {
    {"press",
     [](Fields& f) -> drive::Action { return drive::Press{f.number("x"), f.number("y")}; }},
    {"drag",
     [](Fields& f) -> drive::Action { return drive::Drag{f.number("dx"), f.number("dy")}; }},
    {"pan",
     [](Fields& f) -> drive::Action {
         return drive::Pan{f.number("x"), f.number("y"), f.number("dx"), f.number("dy")};
     }},
    {"wheel",
     [](Fields& f) -> drive::Action {
         return drive::Wheel{f.number("x"), f.number("y"), f.number("delta")};
     }},
    {"hover",
     [](Fields& f) -> drive::Action { return drive::Hover{f.number("x"), f.number("y")}; }},
    {"click",
     [](Fields& f) -> drive::Action { return drive::Click{f.number("x"), f.number("y")}; }},
    {"box",
     [](Fields& f) -> drive::Action {
         return drive::Box{f.number("x0"), f.number("y0"), f.number("x1"), f.number("y1")};
     }},
    {"lasso", [](Fields& f) -> drive::Action { return drive::Lasso{f.corners("points")}; }},
    {"select", [](Fields& f) -> drive::Action { return drive::Select{f.texts("objects")}; }},
    {"hide", [](Fields& f) -> drive::Action { return drive::Show{f.texts("objects"), false}; }},
    {"show", [](Fields& f) -> drive::Action { return drive::Show{f.texts("objects"), true}; }},
    {"mode", ReadMode},
    {"picture", ReadPicture},
};

std::string VerbNames() {
    std::string names;
    for (const Verb& verb : verbs) names += (names.empty() ? "" : ", ") + std::string(verb.name);
    return names;
}

Json ParseLine(std::string_view line) {
    try {
        return Json::parse(line.begin(), line.end());
    } catch (const Json::exception&) {
        throw std::runtime_error("the line is not JSON");
    }
}

DriveLine ReadLine(std::string_view line) {
    const Json object = ParseLine(line);
    if (!object.is_object() || !object.contains("do") || !object["do"].is_string())
        throw std::runtime_error("the line is not an object with a text \"do\"");
    DriveLine read;
    read.verb = object["do"].get<std::string>();
    const auto verb = std::ranges::find(verbs, read.verb, &Verb::name);
    if (verb == std::end(verbs))
        throw std::runtime_error(std::format("\"{}\" is not one of {}", read.verb, VerbNames()));
    Fields fields(object, read.verb);
    read.action = verb->read(fields);
    fields.finish();
    return read;
}

bool IsPassedOver(std::string_view line) {
    const std::size_t first = line.find_first_not_of(" \t");
    return first == std::string_view::npos || line[first] == '#';
}

}  // namespace

std::vector<DriveLine> ParseDriveScript(std::string_view text, const std::string& name) {
    std::vector<DriveLine> lines;
    Words words(text);
    for (int number = 1; !words.atEnd(); ++number) {
        const std::string_view line = words.line();
        if (IsPassedOver(line)) continue;
        try {
            lines.push_back(ReadLine(line));
        } catch (const std::runtime_error& error) {
            throw std::runtime_error(std::format("{}:{}: {}", name, number, error.what()));
        }
        lines.back().number = number;
    }
    return lines;
}

std::vector<DriveLine> ReadDriveScript(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::error_code ignored;
    if (!in || std::filesystem::is_directory(file, ignored))
        throw std::runtime_error(std::format("{}: the script cannot be read", file.string()));
    const std::string text(std::istreambuf_iterator<char>(in), {});
    return ParseDriveScript(text, file.string());
}

}  // namespace vrn::host
