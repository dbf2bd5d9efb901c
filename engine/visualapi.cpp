#include "engine/visualapi.h"

#include <cstdlib>
#include <format>
#include <stdexcept>

#include <OgreException.h>
#include <OgreRoot.h>
#include <gp_Quaternion.hxx>
#include <gp_Trsf.hxx>

#include "engine/RenderEngine.h"
#include "engine/Scene.h"
#include "engine/SceneSettings.h"
#include "mesh/MeshManager.h"
#include "selection/VisualSelection.h"
#include "suite/common/AppLogger.h"
#include "visual/handle/DragHandle.h"
#include "visual/handle/PathEndsHandle.h"
#include "visual/handle/VectorHandle.h"
#include "visual/preview/PreviewVisualsHelper.h"

namespace vrn::visual {

namespace {

// The viewport cannot run without its render system and window: there is no partial mode.
template <class Step>
void RunOrAbort(Step step) {
    try {
        step();
    } catch (const Ogre::Exception& error) {
        AppLogger::inst()->error(std::format("{}", error.what()));
        std::abort();
    }
}

}  // namespace

void Init(int width, int height, const SceneSettings& settings) {
    if (gRenderEngine) throw std::logic_error("vrn::visual::Init runs once in a process");
    if (width <= 0 || height <= 0)
        throw std::invalid_argument(
            std::format("the window needs a size above 0, not {} x {}", width, height));
    if (!selection::gVisSelection)
        throw std::logic_error("vrn::selection::Init() must run before vrn::visual::Init()");
    RunOrAbort([&] {
        gRenderEngine = new RenderEngine;
        gRenderEngine->load();
        gRenderEngine->root->createRenderWindow("ogrewindow", static_cast<unsigned>(width),
                                                static_cast<unsigned>(height), /*fullScreen=*/false,
                                                nullptr);
    });
    RunOrAbort([] { gRenderEngine->init(); });
    gMeshMgr = new MeshManager;
    Scene::Init(settings);
    gPreviewVisualsHelper = new PreviewVisualsHelper;
    Scene::Get()->setGrid(true);
    DragHandle::Build();
    gVectorHandle = new VectorHandle;
    PathEndsHandle::Init();
}

void ReleaseResources() {
    if (PreviewVisualsHelper::Get()) delete gPreviewVisualsHelper;
}

rob::PoseTemplate<float> GP_Trsf2Posef(const gp_Trsf& transformation) {
    const gp_XYZ& p = transformation.TranslationPart();
    const gp_Quaternion q = transformation.GetRotation();
    return rob::PoseTemplate<float>(
        rob::PoseTemplate<double>({p.X(), p.Y(), p.Z()}, {q.W(), q.X(), q.Y(), q.Z()}));
}

}  // namespace vrn::visual
