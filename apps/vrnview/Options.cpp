#include "apps/vrnview/Options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <format>
#include <map>
#include <sstream>
#include <string_view>

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

void AddPictureOptions(CLI::App& command, Options& options) {
    command
        .add_option_function<std::string>(
            "--size", [&options](const std::string& text) { ReadSize(text, options); },
            "size of the picture in pixels (default 1280x720)")
        ->type_name("WxH");
    std::map<std::string, StandardView> views;
    std::string names;
    for (std::size_t i = 0; i < StandardViewNames().size(); ++i) {
        const std::string name(StandardViewNames()[i]);
        views.emplace(name, static_cast<StandardView>(i));
        names += (i == 0 ? "" : "|") + name;
    }
    command
        .add_option_function<std::string>(
            "--view",
            [&options, views, names](const std::string& name) {
                const auto found = views.find(name);
                if (found == views.end())
                    throw CLI::ValidationError("--view",
                                               std::format("'{}' is not one of {}", name, names));
                options.view = found->second;
            },
            "where to look from (default iso)")
        ->type_name(names);
}

}  // namespace

ParsedOptions ParseOptions(const std::vector<std::string>& arguments) {
    Options options;
    CLI::App app("Shows parts as pictures and figures.", "vrnview");
    app.require_subcommand(1);

    CLI::App* demo = app.add_subcommand("demo", "render the built-in station");
    demo->add_option("-o,--output", options.output, "the picture (default demo.png)")
        ->type_name("FILE.png");
    demo->add_option("--save", options.saveFolder, "keep the station's STL files in this folder")
        ->type_name("DIR");
    AddPictureOptions(*demo, options);

    CLI::App* render = app.add_subcommand("render", "render files");
    render->add_option("inputs", options.inputs, "STL files")->required()->type_name("INPUT");
    render->add_option("-o,--output", options.output, "the picture")
        ->required()
        ->type_name("FILE.png");
    AddPictureOptions(*render, options);

    CLI::App* info = app.add_subcommand("info", "tell what files hold");
    info->add_option("inputs", options.inputs, "STL files")->required()->type_name("INPUT");
    info->add_flag("--json", options.json, "as JSON");

    try {
        // The library takes the arguments from the last to the first.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        std::ostringstream text;
        const bool wanted = app.exit(error, text, text) == 0;
        return {.options = {}, .end = EarlyEnd{text.str(), wanted ? 0 : usageError}};
    }
    options.command = demo->parsed()     ? Options::Command::Demo
                      : render->parsed() ? Options::Command::Render
                                         : Options::Command::Info;
    return {.options = options, .end = {}};
}

}  // namespace vrn::host
