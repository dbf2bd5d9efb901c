#include "apps/vrnview/Commands.h"

#include <filesystem>
#include <format>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "apps/vrnview/Drive.h"
#include "apps/vrnview/drive/PaintReport.h"
#include "apps/vrnview/DriveScript.h"
#include "apps/vrnview/Failure.h"
#include "apps/vrnview/Picking.h"
#include "apps/vrnview/ProgramPlayer.h"
#include "apps/vrnview/ProgramRun.h"
#include "apps/vrnview/readers/OcctGuard.h"
#include "apps/vrnview/Report.h"
#include "apps/vrnview/TempFolder.h"
#include "apps/vrnview/tour/Tour.h"
#include "apps/vrnview/Viewer.h"
#include "apps/vrnview/ViewTarget.h"
#include "engine/Scene.h"
#include "examples/cell/Cell.h"
#include "examples/cell/CellWriter.h"

namespace vrn::host {

namespace {

std::vector<InputReport> OpenAll(Viewer& viewer, const std::vector<InputFile>& inputs) {
    std::vector<InputReport> reports;
    for (const InputFile& input : inputs) {
        reports.push_back(viewer.open(input));
        std::cerr << ErrorLines(reports.back());
    }
    return reports;
}

/// Names on the command line that stand for nothing get a line each; false if there is one.
bool NamesAreKnown(const Viewer& viewer, const Options& options) {
    bool known = true;
    const auto tell = [&known](std::string_view option, const std::string& name,
                               std::string_view what) {
        std::cerr << std::format("vrnview: {} {}: no input has {} of that name\n", option, name,
                                 what);
        known = false;
    };
    for (const std::string& joint : viewer.unknownJoints()) tell("--joint", joint, "a joint");
    const auto check = [&](std::string_view option, const std::vector<std::string>& names) {
        for (const std::string& name : names)
            if (!viewer.idOf(name)) tell(option, name, "an object");
    };
    check("--select", options.looks.select);
    check("--highlight", options.looks.highlight);
    for (const std::string& name : options.looks.hide)
        if (!viewer.switchOf(name)) tell("--hide", name, "an object");
    const auto& view = options.looks.foundView;
    const auto* object = view ? std::get_if<ViewOfObject>(&*view) : nullptr;
    if (object != nullptr && !viewer.idOf(object->name))
        tell("--view", "focus:" + object->name, "an object");
    return known;
}

int StatusOf(const std::vector<InputReport>& reports) {
    for (const InputReport& report : reports)
        if (!report.isOk() || !report.problems.empty()) return 1;
    return 0;
}

std::vector<InputFile> PlainInputs(const Options& options) {
    std::vector<InputFile> inputs;
    for (const std::filesystem::path& file : options.inputs) inputs.push_back({file, {}});
    return inputs;
}

/// As if the first task had run, and the robot then gone back to where it stands.
void ShowTrace(const Viewer& viewer) {
    const PlannedTask planned = PlanTask(viewer.getContents().front(), /*name=*/std::nullopt);
    ProgramPlayer player(*planned.robot, planned.plan);
    player.start();
    player.drawTrace();
}

int RenderInputs(const Options& options, const std::vector<InputFile>& inputs) {
    Viewer viewer;
    viewer.setJoints(options.joints);
    const std::vector<InputReport> reports = OpenAll(viewer, inputs);
    if (options.command == Options::Command::Demo) ShowTrace(viewer);
    const bool known = NamesAreKnown(viewer, options);
    viewer.takePicture(options.widthPx, options.heightPx, options.looks).savePng(options.output);
    std::cout << options.output.string() << '\n' << CountsLine(viewer.report().totals) << '\n';
    return known ? StatusOf(reports) : 1;
}

/// The pictures, and beside them the page that shows them.
int RunTour(const std::filesystem::path& folder, const Options& options) {
    RenderTour(folder, options.widthPx, options.heightPx);
    std::ofstream page(folder / "tour.md");
    page << TourPage(".");
    if (!page.flush())
        throw std::runtime_error(
            std::format("{}: cannot be written", (folder / "tour.md").string()));
    std::cout << (folder / "tour.md").string() << '\n';
    return 0;
}

int RunDemo(const Options& options) {
    if (options.tourFolder) return RunTour(*options.tourFolder, options);
    // By way of files, as a user's station would come.
    const TempFolder temporary;
    std::filesystem::path station;
    WithOcctErrors("the built-in station cannot be made", [&] {
        station = examples::WriteCell(examples::MakeCell(),
                                      options.saveFolder.value_or(temporary.getPath()));
    });
    return RenderInputs(options, {{station, {}}});
}

int RunInfo(const Options& options) {
    Viewer viewer;
    viewer.setJoints(options.joints);
    const std::vector<InputReport> inputs = OpenAll(viewer, PlainInputs(options));
    const bool known = NamesAreKnown(viewer, options);
    SceneReport report = viewer.report();
    report.inputs = inputs;
    std::cout << (options.json ? JsonOf(report) : TextOf(report));
    return known ? StatusOf(inputs) : 1;
}

/// A line for each question, as it is answered.
template <class Found>
void Print(const Found& found, bool json) {
    std::cout << (json ? JsonOf(found.report) : TextOf(found.report));
}

int RunPick(const Options& options) {
    Viewer viewer;
    viewer.setJoints(options.joints);
    const std::vector<InputReport> inputs = OpenAll(viewer, PlainInputs(options));
    const bool known = NamesAreKnown(viewer, options);
    const auto view = viewer.openView(options.widthPx, options.heightPx, options.looks);
    std::vector<Picked> picks;
    for (const PickRequest::Pixel& pixel : options.pick.at) {
        picks.push_back(PickAt(pixel.x, pixel.y));
        Print(picks.back(), options.json);
    }
    std::vector<PickedArea> areas;
    if (const auto& box = options.pick.box) {
        areas.push_back(PickBox(box->first.x, box->first.y, box->second.x, box->second.y));
        Print(areas.back(), options.json);
    }
    if (!options.pick.lasso.empty()) {
        areas.push_back(PickLasso(options.pick.lasso));
        Print(areas.back(), options.json);
    }
    if (options.pick.picture) {
        Mark(picks, areas);
        // What the first batch posts runs in the second.
        for (int batch = 0; batch < 2; ++batch) visual::Scene::Get()->processMsgs();
        view->takePicture().savePng(*options.pick.picture);
    }
    return known ? StatusOf(inputs) : 1;
}

int RunDrive(const Options& options) {
    // A mistake in the script shows before anything is read or written.
    const std::vector<DriveLine> lines = ReadDriveScript(options.script);
    sdf::ObjectStore made;
    Viewer viewer;
    viewer.setJoints(options.joints);
    const std::vector<InputReport> inputs = OpenAll(viewer, PlainInputs(options));
    const bool known = NamesAreKnown(viewer, options);
    std::filesystem::create_directories(options.output);
    const auto view = viewer.openView(options.widthPx, options.heightPx, options.looks);
    DriveStage stage{viewer, *view, options.output, made,
                     [](const std::string& answer) { std::cout << answer << std::flush; }};
    Drive(lines, options.script.string(), stage);
    if (options.paintReport)
        WritePaintReport(PaintedBodies(*visual::Scene::Get()->root), *options.paintReport);
    return known ? StatusOf(inputs) : 1;
}

int RunProgram(const Options& options) {
    Viewer viewer;
    viewer.setJoints(options.joints);
    const std::vector<InputReport> inputs = OpenAll(viewer, PlainInputs(options));
    if (!inputs.front().isOk()) return 1;
    const bool known = NamesAreKnown(viewer, options);
    // The whole program first: what it cannot reach shows before anything is written.
    PlannedTask planned;
    try {
        planned = PlanTask(viewer.getContents().front(), options.task);
    } catch (const std::exception& error) {
        throw std::runtime_error(
            std::format("{}: {}", options.inputs.front().string(), ReasonOf(error)));
    }
    std::filesystem::create_directories(options.output);
    const auto view = viewer.openView(options.widthPx, options.heightPx, options.looks);
    const RunReport report = RunTask(planned, {*view, options.output, options.frames});
    std::cout << (options.json ? JsonOf(report) : TextOf(report));
    return known ? StatusOf(inputs) : 1;
}

}  // namespace

int RunCommand(const Options& options) {
    switch (options.command) {
        case Options::Command::Demo:
            return RunDemo(options);
        case Options::Command::Render:
            return RenderInputs(options, PlainInputs(options));
        case Options::Command::Info:
            return RunInfo(options);
        case Options::Command::Pick:
            return RunPick(options);
        case Options::Command::Drive:
            return RunDrive(options);
        case Options::Command::Run:
            return RunProgram(options);
    }
    return usageError;
}

}  // namespace vrn::host
