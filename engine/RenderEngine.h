#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "visual/VrnVisualApi.h"

namespace Ogre {
class Root;
struct DriverVersion;
}  // namespace Ogre

namespace vrn::visual {

class FrameTimer;
class VerranoResourceArchiveFactory;

/// Owns the engine's root: render system, scene manager "VRN_SceneManager", resource locations,
/// frame timer. The host runs its frames through `root`. Thread: the one that renders.
class VRN_VISUAL_API RenderEngine {
public:
    RenderEngine();
    ~RenderEngine();
    RenderEngine(const RenderEngine&) = delete;
    RenderEngine& operator=(const RenderEngine&) = delete;

    /// Makes the root, logging to "Ogre.log" in the system's temporary directory and nowhere else,
    /// the scene manager and the OpenGL 3+ render system, without a window. Throws Ogre::Exception
    /// when there is no such render system.
    void load();
    /// Parses the resources and starts the frame timer; needs a render window.
    void init();

    void setupRenderSystem();
    void setupResources();
    void loadPlugins();
    /// Notes the shader level, and names a driver below OpenGL 4.5 on standard output: an old
    /// driver is told, not refused.
    void checkSystemCapabilities();

    /// The line that checkSystemCapabilities prints for a driver version, with its line end; empty
    /// for one that is new enough: major at least 4 and minor at least 5, tested separately.
    /// Thread: pure.
    [[nodiscard]] static std::string driverNotice(const Ogre::DriverVersion& version);

    bool initialised = false;      ///< true once init has finished
    Ogre::Root* root = nullptr;    ///< lives until the process ends
    std::int32_t shaderLevel = 0;  ///< 2 when GLSL is there; read by nothing yet
    std::unique_ptr<VerranoResourceArchiveFactory> archiveFactory;
    std::unique_ptr<FrameTimer> frameTimer;
};

/// Set by vrn::visual::Init, null before it.
VRN_VISUAL_API extern RenderEngine* gRenderEngine;

}  // namespace vrn::visual
