// A complete host: shows one STL file in the engine's own window for a number of frames.
//
//     small_host FILE.stl FRAMES
#include <OgreRoot.h>

#include <cstdlib>
#include <exception>
#include <iostream>

#include "engine/RenderEngine.h"
#include "engine/Scene.h"
#include "engine/SceneSettings.h"
#include "engine/visualapi.h"
#include "selection/VisualSelection.h"
#include "suite/layout/Part.h"
#include "suite/sdf/ObjectStore.h"
#include "view/Camera.h"
#include "visual/Visual.h"

int main(int argc, char** argv) {
    using namespace vrn;
    if (argc != 3) {
        std::cerr << "usage: small_host FILE.stl FRAMES\n";
        return 2;
    }

    // Start: the selection registry first, then the engine with its window, then the camera's
    // target.
    selection::Init();
    visual::SceneSettings settings;  // millimetres, Z up
    settings.fromPos = {900, -1200, 800};
    visual::Init(1280, 720, settings);
    Ogre::Root& engine = *visual::gRenderEngine->root;
    visual::Camera::Get()->setRenderTarget(engine.getRenderTarget("ogrewindow"));

    // The model belongs to the host; the scene is told of it. Any thread may post.
    visual::Scene& scene = *visual::Scene::Get();
    sdf::ObjectStore model;
    layout::Part* const part = layout::MakeStlPart(model, "part", argv[1]);
    scene.addPart(part);

    // The frame loop, on the thread that called Init. What a posted task throws comes out of
    // processMsgs.
    try {
        for (int frame = 0; frame < std::atoi(argv[2]); ++frame) {
            scene.processMsgs();
            selection::VisualSelection::Get()->update();
            engine.renderOneFrame();
        }
        std::cout << scene.visuals.at(part->id)->getTrianglesNum() << " triangles\n";
    } catch (const std::exception& error) {
        std::cerr << argv[1] << ": " << error.what() << '\n';
        visual::ReleaseResources();
        return 1;
    }

    visual::ReleaseResources();
    return 0;
}
