#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "apps/headless/Picture.h"
#include "apps/vrnview/Looks.h"
#include "apps/vrnview/Viewer.h"

namespace vrn::host {

class TourStage;

/// One picture of the tour: a capability of the library, shown on the built-in station.
struct TourStop {
    std::string name;   ///< of the picture's file, without its ending
    std::string title;  ///< a few words
    std::string text;   ///< what there is to see, a sentence or two
    CameraSpot camera;
    visual::Scene::DisplayMode mode = visual::Scene::DisplayMode::Shaded;
    /// Brings it about. The stage takes it back after the picture.
    std::function<void(TourStage&)> show;
};

/// Every stop, in the order of the page.
[[nodiscard]] const std::vector<TourStop>& TourStops();

/// The built-in station opened, with a trace of its program and a ring of plain triangles beside
/// it: where the stops take place. One a process. Thread: render.
class TourStage {
public:
    /// Throws std::runtime_error if the station cannot be written to `folder` or shown.
    explicit TourStage(const std::filesystem::path& folder);
    ~TourStage();
    TourStage(const TourStage&) = delete;
    TourStage& operator=(const TourStage&) = delete;

    /// The picture of one stop; afterwards the stage is as before.
    [[nodiscard]] headless::Picture take(const TourStop& stop, int widthPx, int heightPx);

    // --- for the stops

    /// The visual of an object by the id that the station file gives it, or the first of a kind
    /// below it. Throws std::out_of_range for an unknown id, std::logic_error for nothing of that
    /// kind.
    [[nodiscard]] visual::Visual* find(const std::string& object) const;
    [[nodiscard]] visual::Visual* find(const std::string& object, VisualType kind) const;
    /// Done after the picture, the last one first.
    void afterwards(std::function<void()> undo) { undos.push_back(std::move(undo)); }
    /// Leaves an object out of the picture.
    void hide(const std::string& object) { looks.hide.push_back(object); }
    /// In place of the stop's own camera.
    void lookFrom(const CameraSpot& spot) { looks.camera = spot; }
    /// Runs what was posted, and brings picking up to date.
    static void settle();
    /// A visual under the root that goes after the picture.
    template <class VisualClass, class... Args>
    VisualClass* add(Args&&... args) {
        auto* made = new VisualClass(std::forward<Args>(args)...);
        afterwards([made] { visual::Scene::Get()->deleteVisual(made); });
        return made;
    }
    [[nodiscard]] const Viewer& getViewer() const { return viewer; }

private:
    Viewer viewer;
    Looks looks;  ///< of the stop that is taken
    std::vector<std::function<void()>> undos;
};

/// Renders every stop into `folder` as PNG files named by it.
void RenderTour(const std::filesystem::path& folder, int widthPx, int heightPx);

/// The page that shows the pictures of `imageFolder`, Markdown. Thread: pure.
[[nodiscard]] std::string TourPage(const std::string& imageFolder);

}  // namespace vrn::host
