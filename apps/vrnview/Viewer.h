#pragma once

#include <string>

#include "apps/headless/Picture.h"
#include "apps/headless/VirtualDisplay.h"
#include "apps/vrnview/Framing.h"
#include "apps/vrnview/InputFile.h"
#include "apps/vrnview/SceneReport.h"
#include "suite/sdf/ObjectStore.h"

namespace vrn::host {

/// One session of the library: a display, the engine, and a scene that inputs are added to.
///
///     Viewer viewer;
///     const InputReport report = viewer.open({"bracket.stl", {}});
///     viewer.takePicture(1280, 720, StandardView::Iso).savePng("bracket.png");
///
/// One a process, since the engine is. Thread: the one that made it.
class Viewer {
public:
    /// Throws std::runtime_error if there is no display and none can be started.
    Viewer();
    ~Viewer();
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    /// Shows the file as a part of one body. What goes wrong is told in the report, and then
    /// nothing of the input stays in the scene.
    InputReport open(const InputFile& input);

    /// The scene as it stands, framed from `view`; see ViewTarget for how it is rendered.
    [[nodiscard]] headless::Picture takePicture(int widthPx, int heightPx, StandardView view);

    /// The scene as it stands; `inputs` is left empty.
    [[nodiscard]] SceneReport report() const;

private:
    Counts show(const InputFile& input, sdf::SdfNode& part);
    void discard(sdf::SdfNode& part);
    void scaleFurniture(const Bounds& scene);

    headless::VirtualDisplay display;  ///< before all that draws on it
    sdf::ObjectStore model;
};

}  // namespace vrn::host
