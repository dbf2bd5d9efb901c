#include "apps/vrnview/Options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <format>
#include <sstream>
#include <string_view>

#include "apps/vrnview/drive/LineFields.h"
#include "apps/vrnview/readers/Content.h"
#include "apps/vrnview/readers/JsonFields.h"
#include "apps/vrnview/readers/Words.h"

namespace vrn::host {

namespace {

/// 0 for a text that is not a number from 1 to maxSizePx.
int PixelsOf(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc{} && end == text.data() + text.size();
    return whole && value >= 1 && value <= maxSizePx ? value : 0;
}

void ReadSize(const std::string& text, Options& options) {
    const std::size_t x = text.find('x');
    options.widthPx = x == std::string::npos ? 0 : PixelsOf(std::string_view(text).substr(0, x));
    options.heightPx = x == std::string::npos ? 0 : PixelsOf(std::string_view(text).substr(x + 1));
    if (options.widthPx == 0 || options.heightPx == 0)
        throw CLI::ValidationError(
            "--size",
            std::format("'{}' is not WIDTHxHEIGHT in pixels, each from 1 to {}", text, maxSizePx));
}

/// The numbers of a text that has exactly `count` of them between commas; else nothing.
std::optional<std::vector<double>> NumbersOf(std::string_view text, std::size_t count) {
    std::vector<double> numbers;
    while (true) {
        const std::size_t comma = text.find(',');
        const std::optional<double> number = NumberOf(text.substr(0, comma));
        if (!number || !std::isfinite(*number)) return std::nullopt;
        numbers.push_back(*number);
        if (comma == std::string_view::npos) break;
        text.remove_prefix(comma + 1);
    }
    return numbers.size() == count ? std::optional(numbers) : std::nullopt;
}

/// As the command line takes them.
std::string ViewNames() {
    std::string names;
    for (const std::string_view name : StandardViewNames()) names += std::string(name) + '|';
    return names + "all|focus:ID|dir:x,y,z";
}

void ReadMode(const std::string& name, Options& options) {
    const auto& names = DisplayModeNames();
    const auto found = std::ranges::find(names, name);
    if (found == names.end())
        throw CLI::ValidationError(
            "--mode", std::format("'{}' is not one of shaded|edges|lines|triangles", name));
    options.looks.mode = static_cast<visual::Scene::DisplayMode>(found - names.begin());
}

void ReadCamera(const std::string& text, Options& options) {
    const auto numbers = NumbersOf(text, 6);
    constexpr double farthest = JsonFields::maxLength;  // as in a station file
    if (!numbers || std::ranges::any_of(*numbers, [](double n) { return std::abs(n) > farthest; }))
        throw CLI::ValidationError(
            "--camera",
            std::format("'{}' is not px,py,pz,tx,ty,tz in millimetres, each of at most {:g}", text,
                        farthest));
    const auto& n = *numbers;
    const CameraSpot spot{{n[0], n[1], n[2]}, {n[3], n[4], n[5]}};
    if (!((spot.target - spot.position).length() > rob::zeroLength))
        throw CLI::ValidationError("--camera", "it stands where it looks at");
    options.looks.camera = spot;
}

void ReadView(const std::string& text, Options& options) {
    constexpr std::string_view focus = "focus:", along = "dir:";
    const auto& names = StandardViewNames();
    if (const auto found = std::ranges::find(names, text); found != names.end()) {
        options.looks.view = static_cast<StandardView>(found - names.begin());
    } else if (text == "all") {
        options.looks.foundView = ViewOfAll{};
    } else if (text.starts_with(focus) && text.size() > focus.size()) {
        options.looks.foundView = ViewOfObject{text.substr(focus.size())};
    } else if (text.starts_with(along)) {
        const auto n = NumbersOf(std::string_view(text).substr(along.size()), 3);
        const rob::Vec3Template<double> dir =
            n ? rob::Vec3Template<double>{(*n)[0], (*n)[1], (*n)[2]} : rob::Vec3Template<double>{};
        if (!(dir.length() > rob::zeroLength) || !std::isfinite(dir.length()))
            throw CLI::ValidationError(
                "--view",
                std::format("'{}' is not dir:x,y,z with a direction of some length", text));
        options.looks.foundView = ViewAlong{rob::DirTemplate<double>(dir.normalized())};
    } else {
        throw CLI::ValidationError("--view",
                                   std::format("'{}' is not one of {}", text, ViewNames()));
    }
}

void ReadJoint(const std::string& text, Options& options) {
    const std::size_t equals = text.rfind('=');
    const auto value = equals == std::string::npos
                           ? std::nullopt
                           : NumberOf(std::string_view(text).substr(equals + 1));
    if (!value || !std::isfinite(*value) || equals == 0)
        throw CLI::ValidationError("--joint", std::format("'{}' is not NAME=DEGREES", text));
    options.joints.push_back({text.substr(0, equals), *value});
}

PickRequest::Pixel PixelOf(const std::string& option, const std::string& text) {
    const auto n = NumbersOf(text, 2);
    if (!n || std::ranges::any_of(*n, [](double v) { return std::abs(v) > maxPixel; }))
        throw CLI::ValidationError(option, std::format("'{}' is not X,Y in pixels", text));
    return {static_cast<float>((*n)[0]), static_cast<float>((*n)[1]), 0};
}

void ReadBox(const std::string& text, Options& options) {
    std::size_t comma = text.find(',');
    if (comma != std::string::npos) comma = text.find(',', comma + 1);
    if (comma == std::string::npos || !NumbersOf(text, 4))
        throw CLI::ValidationError("--box", std::format("'{}' is not x0,y0,x1,y1", text));
    options.pick.box = {PixelOf("--box", text.substr(0, comma)),
                        PixelOf("--box", text.substr(comma + 1))};
}

std::string EmptyError(const std::string& text) { return text.empty() ? "it is empty" : ""; }

/// A PNG is what is written, so no other kind is promised. Devices and pipes have no ending.
std::string PngError(const std::string& text) {
    std::string ending = std::filesystem::path(text).extension().string();
    std::ranges::transform(ending, ending.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending.empty() || ending == ".png"
               ? ""
               : std::format("'{}' does not end in .png: pictures are PNG files", text);
}

void RefuseEmptyTexts(CLI::App& app) {
    for (CLI::Option* option : app.get_options()) option->check(EmptyError, "");
    for (CLI::App* command : app.get_subcommands({})) RefuseEmptyTexts(*command);
}

/// The tour has looks and views of its own, and writes nothing but itself.
void ExcludeFromTour(CLI::App& demo) {
    for (const char* other : {"--output", "--save", "--view", "--camera", "--mode", "--joint",
                              "--select", "--highlight", "--hide"})
        demo.get_option("--tour")->excludes(other);
}

void AddJointOption(CLI::App& command, Options& options) {
    command
        .add_option_function<std::vector<std::string>>(
            "--joint",
            [&options](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) ReadJoint(text, options);
            },
            "pose a robot: degrees, millimetres for a sliding joint (repeatable)")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->type_name("NAME=DEG");
}

void AddLookOptions(CLI::App& command, Options& options) {
    AddJointOption(command, options);
    command
        .add_option_function<std::string>(
            "--mode", [&options](const std::string& name) { ReadMode(name, options); },
            "what is drawn of bodies (default shaded)")
        ->type_name("shaded|edges|lines|triangles");
    command
        .add_option_function<std::string>(
            "--camera", [&options](const std::string& text) { ReadCamera(text, options); },
            "where to stand and what to look at, in millimetres, Z up")
        ->type_name("px,py,pz,tx,ty,tz")
        ->excludes("--view");
    const auto addObjects = [&command](const char* name, std::vector<std::string>& ids,
                                       const char* text) {
        command.add_option(name, ids, text)
            ->expected(1)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
            ->type_name("ID");
    };
    addObjects("--select", options.looks.select, "show an object as selected (repeatable)");
    addObjects("--highlight", options.looks.highlight,
               "show an object as highlighted (repeatable)");
    addObjects("--hide", options.looks.hide, "leave an object out (repeatable)");
}

void AddPictureOptions(CLI::App& command, Options& options) {
    command
        .add_option_function<std::string>(
            "--size", [&options](const std::string& text) { ReadSize(text, options); },
            "size of the picture in pixels (default 1280x720)")
        ->type_name("WxH");
    command
        .add_option_function<std::string>(
            "--view", [&options](const std::string& text) { ReadView(text, options); },
            "where to look from (default iso)")
        ->type_name(ViewNames());
    AddLookOptions(command, options);
}

void AddRunOptions(CLI::App& command, Options& options) {
    command.add_option("--task", options.task, "the task (default the first)")->type_name("NAME");
    command.add_option("-o,--output", options.output, "the folder for the pictures")
        ->required()
        ->type_name("DIR");
    command
        .add_option_function<std::string>(
            "--frames",
            [&options](const std::string& text) {
                const auto count = CountOf(text);
                if (!count || *count < 1 || *count > maxFrames)
                    throw CLI::ValidationError(
                        "--frames",
                        std::format("'{}' is not a number from 1 to {}", text, maxFrames));
                options.frames = static_cast<int>(*count);
            },
            "how many pictures, evenly over the program (default 100)")
        ->type_name("N");
    command.add_flag("--json", options.json, "the summary as a line of JSON");
}

void AddPickOptions(CLI::App& command, Options& options) {
    PickRequest& pick = options.pick;
    command
        .add_option_function<std::vector<std::string>>(
            "--at",
            [&pick](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) pick.at.push_back(PixelOf("--at", text));
            },
            "what lies under a pixel (repeatable)")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->type_name("X,Y");
    command
        .add_option_function<std::string>(
            "--box", [&options](const std::string& text) { ReadBox(text, options); },
            "what lies under a rectangle between two corners")
        ->type_name("x0,y0,x1,y1");
    command
        .add_option_function<std::vector<std::vector<std::string>>>(
            "--lasso",
            [&pick](const std::vector<std::vector<std::string>>& lassos) {
                if (lassos.size() > 1)
                    throw CLI::ArgumentMismatch::AtMost("--lasso", 1, lassos.size());
                if (lassos.front().size() < 3)
                    throw CLI::ArgumentMismatch::AtLeast("--lasso", 3, lassos.front().size());
                for (const std::string& text : lassos.front())
                    pick.lasso.push_back(PixelOf("--lasso", text));
            },
            "what lies inside a polygon of three or more corners")
        ->expected(3, CLI::detail::expected_max_vector_size)
        // A file behind the corners is told as a wrong corner before it is missed as an input.
        ->callback_priority(CLI::CallbackPriority::PreRequirementsCheck)
        ->type_name("x,y");
    command.add_option("--picture", pick.picture, "show what was found in a picture")
        ->check(PngError)
        ->type_name("FILE.png");
    command.add_flag("--json", options.json, "a line of JSON for each question");
    command.callback([&pick] {
        if (pick.at.empty() && !pick.box && pick.lasso.empty())
            throw CLI::RequiredError("--at, --box or --lasso");
    });
}

}  // namespace

const std::vector<std::string_view>& DisplayModeNames() {
    static const std::vector<std::string_view> names{"shaded", "edges", "lines", "triangles"};
    return names;
}

ParsedOptions ParseOptions(const std::vector<std::string>& arguments) {
    Options options;
    CLI::App app("Shows parts as pictures and figures.", "vrnview");
    app.require_subcommand(0, 1);

    CLI::App* demo = app.add_subcommand("demo", "render the built-in station");
    demo->add_option("-o,--output", options.output, "the picture (default demo.png)")
        ->check(PngError)
        ->type_name("FILE.png");
    demo->add_option(
            "--tour", options.tourFolder,
            "in place of the picture: one for each thing that the viewport shows, and a page")
        ->type_name("DIR");
    demo->add_option("--save", options.saveFolder, "keep the station's files in this folder")
        ->type_name("DIR");
    AddPictureOptions(*demo, options);
    ExcludeFromTour(*demo);

    const std::string inputsText = std::format("files ({})", supportedFiles);
    CLI::App* render = app.add_subcommand("render", "render files");
    render->add_option("inputs", options.inputs, inputsText)->required()->type_name("INPUT");
    render->add_option("-o,--output", options.output, "the picture")
        ->required()
        ->check(PngError)
        ->type_name("FILE.png");
    AddPictureOptions(*render, options);

    CLI::App* info = app.add_subcommand("info", "tell what files hold");
    info->add_option("inputs", options.inputs, inputsText)->required()->type_name("INPUT");
    info->add_flag("--json", options.json, "as JSON");
    AddJointOption(*info, options);

    CLI::App* pick = app.add_subcommand("pick", "tell what lies under pixels of the picture");
    pick->add_option("inputs", options.inputs, inputsText)->required()->type_name("INPUT");
    AddPickOptions(*pick, options);
    AddPictureOptions(*pick, options);

    CLI::App* drive = app.add_subcommand("drive", "replay a script of gestures and clicks");
    drive->add_option("inputs", options.inputs, inputsText)->required()->type_name("INPUT");
    drive->add_option("--script", options.script, "a JSON object a line, see docs/driving.md")
        ->required()
        ->type_name("FILE");
    drive->add_option("-o,--output", options.output, "the folder for the pictures")
        ->required()
        ->type_name("DIR");
    drive
        ->add_option("--paint-report", options.paintReport,
                     "how much of each body is painted at the end")
        ->type_name("FILE.csv");
    AddPictureOptions(*drive, options);

    CLI::App* run = app.add_subcommand("run", "run a robot's program, as pictures");
    run->add_option("station", options.inputs, "a station file with a task, see docs/running.md")
        ->required()
        ->expected(1)
        ->type_name("STATION");
    AddRunOptions(*run, options);
    AddPictureOptions(*run, options);

    RefuseEmptyTexts(app);
    try {
        // The library takes the arguments from the last to the first.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        // Only now: before, a word that is no command would not be told.
        if (app.get_subcommands().empty()) throw CLI::RequiredError("A subcommand");
    } catch (const CLI::ParseError& error) {
        std::ostringstream text;
        const bool wanted = app.exit(error, text, text) == 0;
        return {.options = {}, .end = EarlyEnd{text.str(), wanted ? 0 : usageError}};
    }
    options.command = demo->parsed()     ? Options::Command::Demo
                      : render->parsed() ? Options::Command::Render
                      : info->parsed()   ? Options::Command::Info
                      : pick->parsed()   ? Options::Command::Pick
                      : drive->parsed()  ? Options::Command::Drive
                                         : Options::Command::Run;
    return {.options = options, .end = {}};
}

}  // namespace vrn::host
