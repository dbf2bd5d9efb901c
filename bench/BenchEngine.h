#pragma once

#include <OgreRoot.h>

#include "apps/headless/VirtualDisplay.h"
#include "engine/RenderEngine.h"
#include "engine/SceneSettings.h"
#include "engine/visualapi.h"
#include "selection/VisualSelection.h"
#include "view/Camera.h"

namespace vrn::bench {

/// One engine for a benchmark program, in a window of 640 by 480 pixels. Thread: render.
class BenchEngine {
public:
    BenchEngine() {
        selection::Init();
        visual::SceneSettings settings;
        settings.fromPos = {2500, -2500, 2000};
        visual::Init(640, 480, settings);
        visual::Camera::Get()->setRenderTarget(
            visual::gRenderEngine->root->getRenderTarget("ogrewindow"));
    }
    ~BenchEngine() { visual::ReleaseResources(); }
    BenchEngine(const BenchEngine&) = delete;
    BenchEngine& operator=(const BenchEngine&) = delete;

private:
    headless::VirtualDisplay display;
};

}  // namespace vrn::bench
