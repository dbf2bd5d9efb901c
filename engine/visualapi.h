#pragma once

#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

class gp_Trsf;

namespace vrn::visual {

struct SceneSettings;

/// Brings up the whole viewport in a window of `width` by `height` pixels, named "ogrewindow".
///
/// Call once, after vrn::selection::Init(), on the thread that will render; the OpenGL context
/// belongs to that thread from then on. Then give Camera::Get() its render target and run, for each
/// frame, Scene::processMsgs(), VisualSelection::update() and one frame of gRenderEngine->root. An
/// engine that cannot start its render system or window is logged as an error and the process
/// aborts; other exceptions pass to the host. Throws std::logic_error before vrn::selection::Init()
/// and on a second call, which would replace every singleton, and std::invalid_argument for a size
/// that is not above 0.
VRN_VISUAL_API void Init(int width, int height, const SceneSettings& settings);

/// Call once before the process ends, on the render thread, while the engine still stands. Does
/// nothing before Init.
VRN_VISUAL_API void ReleaseResources();

/// Translation and rotation of a transformation, narrowed to float; a scale in it is left out.
/// Thread: pure.
[[nodiscard]] VRN_VISUAL_API rob::PoseTemplate<float> GP_Trsf2Posef(const gp_Trsf& transformation);

}  // namespace vrn::visual
