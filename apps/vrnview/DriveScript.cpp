#include "apps/vrnview/DriveScript.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <format>
#include <fstream>
#include <functional>
#include <iterator>
#include <span>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "apps/vrnview/drive/LineFields.h"
#include "apps/vrnview/Looks.h"
#include "apps/vrnview/readers/Words.h"

namespace vrn::host {

namespace {

using Json = nlohmann::json;

drive::Action ReadMode(LineFields& f) {
    const std::string name = f.text("mode");
    const auto& names = DisplayModeNames();
    const auto found = std::ranges::find(names, name);
    if (found == names.end())
        throw std::runtime_error(
            std::format("the mode \"{}\" is not one of shaded, edges, lines, triangles", name));
    return drive::Mode{static_cast<visual::Scene::DisplayMode>(found - names.begin())};
}

drive::Action ReadPicture(LineFields& f) {
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

// The braces read the keys from left to right.
constexpr Verb<drive::Action> viewVerbs[] = {
    {"press",
     [](LineFields& f) -> drive::Action { return drive::Press{f.number("x"), f.number("y")}; }},
    {"drag",
     [](LineFields& f) -> drive::Action {
         // With a place it is the handle's, with a way the camera's.
         if (f.has("x") || f.has("y")) return drive::HandleAction(drive::DragTo{f.pixel()});
         return drive::Drag{f.number("dx"), f.number("dy")};
     }},
    {"pan",
     [](LineFields& f) -> drive::Action {
         return drive::Pan{f.number("x"), f.number("y"), f.number("dx"), f.number("dy")};
     }},
    {"wheel",
     [](LineFields& f) -> drive::Action {
         return drive::Wheel{f.number("x"), f.number("y"), f.number("delta")};
     }},
    {"hover",
     [](LineFields& f) -> drive::Action { return drive::Hover{f.number("x"), f.number("y")}; }},
    {"click",
     [](LineFields& f) -> drive::Action { return drive::Click{f.number("x"), f.number("y")}; }},
    {"box",
     [](LineFields& f) -> drive::Action {
         return drive::Box{f.number("x0"), f.number("y0"), f.number("x1"), f.number("y1")};
     }},
    {"lasso", [](LineFields& f) -> drive::Action { return drive::Lasso{f.corners("points")}; }},
    {"select", [](LineFields& f) -> drive::Action { return drive::Select{f.texts("objects")}; }},
    {"hide", [](LineFields& f) -> drive::Action { return drive::Show{f.texts("objects"), false}; }},
    {"show", [](LineFields& f) -> drive::Action { return drive::Show{f.texts("objects"), true}; }},
    {"mode", ReadMode},
    {"picture", ReadPicture},
};

struct AnyVerb {
    std::string_view name;
    std::function<drive::Action(LineFields&)> read;
};

template <class Family>
void Append(std::vector<AnyVerb>& all, std::span<const Verb<Family>> family) {
    for (const Verb<Family>& verb : family)
        all.push_back(
            {verb.name, [read = verb.read](LineFields& f) { return drive::Action(read(f)); }});
}

const std::vector<AnyVerb>& Verbs() {
    static const std::vector<AnyVerb> verbs = [] {
        std::vector<AnyVerb> all;
        Append(all, std::span<const Verb<drive::Action>>(viewVerbs));
        Append(all, HandleVerbs());
        Append(all, PreviewVerbs());
        Append(all, MeasureVerbs());
        Append(all, PaintVerbs());
        Append(all, BandVerbs());
        return all;
    }();
    return verbs;
}

std::string VerbNames() {
    std::string names;
    for (const AnyVerb& verb : Verbs())
        names += (names.empty() ? "" : ", ") + std::string(verb.name);
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
    const auto verb = std::ranges::find(Verbs(), read.verb, &AnyVerb::name);
    if (verb == Verbs().end())
        throw std::runtime_error(std::format("\"{}\" is not one of {}", read.verb, VerbNames()));
    LineFields fields(object, read.verb);
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
