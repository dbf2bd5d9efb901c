#include "apps/vrnview/Commands.h"

#include <iostream>
#include <vector>

#include "apps/vrnview/Report.h"
#include "apps/vrnview/TempFolder.h"
#include "apps/vrnview/Viewer.h"
#include "examples/Workshop.h"

namespace vrn::host {

namespace {

std::vector<InputReport> OpenAll(Viewer& viewer, const std::vector<InputFile>& inputs) {
    std::vector<InputReport> reports;
    for (const InputFile& input : inputs) {
        reports.push_back(viewer.open(input));
        if (!reports.back().isOk()) std::cerr << ErrorLine(reports.back());
    }
    return reports;
}

int StatusOf(const std::vector<InputReport>& reports) {
    for (const InputReport& report : reports)
        if (!report.isOk()) return 1;
    return 0;
}

std::vector<InputFile> PlainInputs(const Options& options) {
    std::vector<InputFile> inputs;
    for (const std::filesystem::path& file : options.inputs) inputs.push_back({file, {}});
    return inputs;
}

int RenderInputs(const Options& options, const std::vector<InputFile>& inputs) {
    Viewer viewer;
    const std::vector<InputReport> reports = OpenAll(viewer, inputs);
    viewer.takePicture(options.widthPx, options.heightPx, options.view).savePng(options.output);
    std::cout << options.output.string() << '\n' << CountsLine(viewer.report().totals) << '\n';
    return StatusOf(reports);
}

int RunDemo(const Options& options) {
    const TempFolder temporary;
    std::vector<InputFile> inputs;
    for (const examples::ExampleFile& part :
         examples::WriteWorkshop(options.saveFolder.value_or(temporary.getPath())))
        inputs.push_back({part.file, part.colour});
    return RenderInputs(options, inputs);
}

int RunInfo(const Options& options) {
    Viewer viewer;
    const std::vector<InputReport> inputs = OpenAll(viewer, PlainInputs(options));
    SceneReport report = viewer.report();
    report.inputs = inputs;
    std::cout << (options.json ? JsonOf(report) : TextOf(report));
    return StatusOf(inputs);
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
    }
    return usageError;
}

}  // namespace vrn::host
