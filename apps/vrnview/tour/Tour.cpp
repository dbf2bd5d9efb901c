#include "apps/vrnview/tour/Tour.h"

#include <BRepPrimAPI_MakeTorus.hxx>

#include <format>
#include <ranges>
#include <stdexcept>

#include "apps/vrnview/ProgramPlayer.h"
#include "apps/vrnview/readers/OcctGuard.h"
#include "apps/vrnview/TempFolder.h"
#include "apps/vrnview/ViewTarget.h"
#include "engine/Scene.h"
#include "examples/cell/Cell.h"
#include "examples/cell/CellWriter.h"
#include "examples/StlWriter.h"
#include "selection/VisualSelection.h"
#include "visual/Visual.h"
#include "visual/VisualIterator.h"

namespace vrn::host {

namespace {

using visual::Scene;
using visual::Visual;

void Open(Viewer& viewer, const std::filesystem::path& file) {
    const InputReport report = viewer.open({file, {}});
    if (!report.isOk() || !report.problems.empty())
        throw std::runtime_error(std::format("the built-in {} cannot be shown", file.string()));
}

/// On the floor in front of the table.
const rob::PoseTemplate<float> ringPlace{{700, -1500, 45}, {}};
constexpr double ringRadius = 120, tubeRadius = 45;

}  // namespace

TourStage::TourStage(const std::filesystem::path& folder) {
    WithOcctErrors("the built-in station cannot be made", [&] {
        Open(viewer, examples::WriteCell(examples::MakeCell(), folder));
        examples::WriteStl(BRepPrimAPI_MakeTorus(ringRadius, tubeRadius).Shape(),
                           folder / "ring.stl", {0.05, 2});
    });
    Open(viewer, folder / "ring.stl");
    find("ring")->setPose(ringPlace);
    settle();
}

TourStage::~TourStage() = default;

Visual* TourStage::find(const std::string& object) const {
    const auto id = viewer.idOf(object);
    if (!id) throw std::out_of_range(std::format("the station has no {}", object));
    return Scene::Get()->visuals.at(*id);
}

Visual* TourStage::find(const std::string& object, VisualType kind) const {
    for (visual::ForestIterator<Visual> it(find(object)); it.next();)
        if (it.value()->type == kind) return it.value();
    throw std::logic_error(std::format("{} has no visual of that kind", object));
}

void TourStage::settle() {
    // What the first batch posts runs in the second.
    for (int batch = 0; batch < 2; ++batch) {
        Scene::Get()->processMsgs();
        selection::VisualSelection::Get()->update();
    }
}

headless::Picture TourStage::take(const TourStop& stop, int widthPx, int heightPx) {
    looks = Looks{};
    looks.mode = stop.mode;
    looks.camera = stop.camera;
    ViewTarget target(widthPx, heightPx);
    stop.show(*this);
    settle();
    headless::Picture picture = viewer.takePicture(target, looks);
    for (const std::string& object : looks.hide)
        Scene::Get()->setVisualVisible(find(object)->id, true);
    for (const auto& undo : std::views::reverse(undos)) undo();
    undos.clear();
    settle();
    return picture;
}

void RenderTour(const std::filesystem::path& folder, int widthPx, int heightPx) {
    std::filesystem::create_directories(folder);
    const TempFolder temporary;
    TourStage stage(temporary.getPath());
    for (const TourStop& stop : TourStops())
        stage.take(stop, widthPx, heightPx).savePng(folder / (stop.name + ".png"));
}

std::string TourPage(const std::string& imageFolder) {
    std::string page =
        "# A tour of the viewport\n\n"
        "One picture for each thing that the library shows, on the built-in station. "
        "`./vrn demo --tour DIR --size 640x360` makes them anew.\n";
    for (const TourStop& stop : TourStops())
        page += std::format("\n## {}\n\n{}\n\n![{}]({}/{}.png)\n", stop.title, stop.text,
                            stop.title, imageFolder, stop.name);
    return page;
}

}  // namespace vrn::host
