#include "apps/vrnview/Viewer.h"

#include <OgreException.h>
#include <OgreRenderWindow.h>
#include <OgreRoot.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>

#include "apps/vrnview/StandardOutput.h"
#include "apps/vrnview/ViewTarget.h"
#include "engine/RenderEngine.h"
#include "engine/Scene.h"
#include "engine/SceneSettings.h"
#include "engine/visualapi.h"
#include "selection/VisualSelection.h"
#include "suite/geom/BodyColorTool.h"
#include "suite/layout/Body.h"
#include "suite/layout/Part.h"
#include "view/Camera.h"
#include "visual/Visual.h"

namespace vrn::host {

namespace {

/// The window that the engine starts with; pictures are taken offscreen, so it stays small and
/// unseen.
constexpr int windowWidth = 320, windowHeight = 240;

/// Half the side of the library's grid: 20 cells of 1000 in the plane z = 0.
constexpr double gridHalf = 10'000;

Bounds GridBounds() { return {{-gridHalf, -gridHalf, 0}, {gridHalf, gridHalf, 0}}; }

/// What an exception says to a user: the engine's own adds the place in its source to what().
std::string ReasonOf(const std::exception& error) {
    if (const auto* engineError = dynamic_cast<const Ogre::Exception*>(&error))
        return engineError->getDescription();
    return error.what();
}

}  // namespace

Viewer::Viewer() {
    const StandardOutputAside aside;
    selection::Init();
    visual::Init(windowWidth, windowHeight, visual::SceneSettings{});
    // A frame is for the picture alone; drawing the empty window as well would only cost time.
    visual::gRenderEngine->root->getRenderTarget("ogrewindow")->setAutoUpdated(false);
}

Viewer::~Viewer() { visual::ReleaseResources(); }

InputReport Viewer::open(const InputFile& input) {
    InputReport report;
    report.file = input.file.string();
    const auto start = std::chrono::steady_clock::now();
    try {
        CheckInput(input.file);
        layout::Part* const part =
            layout::MakeStlPart(model, input.file.stem().string(), GeometryUri(input.file));
        report.counts = show(input, *part);
    } catch (const std::exception& error) {
        report.error = ReasonOf(error);
    }
    report.ms =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    return report;
}

Counts Viewer::show(const InputFile& input, sdf::SdfNode& part) {
    auto* const scene = visual::Scene::Get();
    try {
        if (input.colour) {
            for (layout::Body* body : dynamic_cast<layout::Part&>(part).bodies())
                geometry::BodyColorTool::SetBodyColor(body->element, *input.colour);
        }
        scene->addPart(&part);
        // One input a batch: what the task throws ends the batch and comes out here.
        scene->processMsgs();
        visual::Visual& shown = *scene->visuals.at(part.id);
        // Such a picture could not be framed.
        if (!HasUsableCoordinates(shown))
            throw std::runtime_error("has coordinates beyond 1e15, too large to be shown");
        return CountsOf(shown);
    } catch (const std::exception& error) {
        const std::string reason = ExplainStlFailure(input.file, ReasonOf(error));
        discard(part);
        throw std::runtime_error(reason);
    }
}

void Viewer::discard(sdf::SdfNode& part) {
    auto* const scene = visual::Scene::Get();
    // A part that could not be finished is in the scene as far as it came.
    if (scene->visuals.contains(part.id)) {
        scene->removeVisual(part.id);
        scene->processMsgs();
    }
    model.erase(&part);
}

headless::Picture Viewer::takePicture(int widthPx, int heightPx, StandardView view) {
    auto* const scene = visual::Scene::Get();
    scaleFurniture(BoundsOf(*scene->root));

    ViewTarget target(widthPx, heightPx);
    const FieldOfView fov{visual::Camera::Get()->getHFOV(), target.getAspect()};
    return target.takePicture(FramePoints(OutlineOf(*scene->root), GridBounds(), view, fov));
}

/// The world frame's axes are a tenth of the scene long; where even the shortest would hide the
/// scene, no frame is shown.
void Viewer::scaleFurniture(const Bounds& whole) {
    auto* const scene = visual::Scene::Get();
    const double wanted = std::floor(whole.getRadius() / 5);
    if (!whole.isEmpty()) {
        scene->setFrameVisualVisible(wanted >= 1);
        scene->setFrameSize(static_cast<unsigned>(std::clamp(wanted, 1.0, 1e6)), VisualType::Frame);
    }
    scene->processMsgs();
}

SceneReport Viewer::report() const {
    visual::Visual& root = *visual::Scene::Get()->root;
    SceneReport report;
    report.totals = CountsOf(root);
    report.bounds = BoundsOf(root);
    report.visuals = TreeOf(root).children;
    return report;
}

}  // namespace vrn::host
