#include "engine/RenderEngine.h"

#include <filesystem>
#include <iostream>

#include <OgreArchiveManager.h>
#include <OgreGL3PlusPlugin.h>
#include <OgreLogManager.h>
#include <OgreRenderSystem.h>
#include <OgreRenderSystemCapabilities.h>
#include <OgreResourceGroupManager.h>
#include <OgreRoot.h>
#include <OgreTextureManager.h>

#include "engine/FallbackMaterials.h"
#include "engine/FrameTimer.h"
#include "engine/VerranoResourceArchive.h"

namespace vrn::visual {

RenderEngine* gRenderEngine = nullptr;

RenderEngine::RenderEngine() = default;
RenderEngine::~RenderEngine() = default;

void RenderEngine::load() {
    const std::string logFile = (std::filesystem::temp_directory_path() / "Ogre.log").string();
    // A log that the root makes itself writes every line to the console too; the manager made
    // before it, which the root takes over, writes to the file alone.
    auto* logManager = new Ogre::LogManager;
    logManager->createLog(logFile, /*defaultLog=*/true, /*debuggerOutput=*/false,
                          /*suppressFileOutput=*/false);
    root = new Ogre::Root("", "", logFile);
    root->createSceneManager(Ogre::SMT_DEFAULT, "VRN_SceneManager");
    loadPlugins();
    setupRenderSystem();
    root->initialise(/*autoCreateWindow=*/false, "OGRE Render Window");
    setupResources();
}

void RenderEngine::loadPlugins() { root->installPlugin(new Ogre::GL3PlusPlugin); }

void RenderEngine::setupRenderSystem() {
    for (Ogre::RenderSystem* renderer : root->getAvailableRenderers()) {
        if (renderer->getName() != "OpenGL 3+ Rendering Subsystem") continue;
        root->setRenderSystem(renderer);
        return;
    }
    // Flushed, for the process aborts right afterwards.
    std::cout << "Unable to find OpenGL rendering system.\n" << std::flush;
}

void RenderEngine::setupResources() {
    archiveFactory = std::make_unique<VerranoResourceArchiveFactory>();
    Ogre::ArchiveManager::getSingleton().addArchiveFactory(archiveFactory.get());
    auto& groups = Ogre::ResourceGroupManager::getSingleton();
    for (const char* location : {"resource://material", "resource://program"})
        groups.addResourceLocation(location, archiveFactory->getType(), "General",
                                   /*recursive=*/false, /*readOnly=*/true);
}

void RenderEngine::init() {
    Ogre::TextureManager::getSingleton().setDefaultNumMipmaps(5);
    Ogre::ResourceGroupManager::getSingleton().initialiseAllResourceGroups();
    MakeFallbackMaterialsDrawable();
    checkSystemCapabilities();
    initialised = true;
    if (frameTimer) root->removeFrameListener(frameTimer.get());
    frameTimer = std::make_unique<FrameTimer>();
    root->addFrameListener(frameTimer.get());
}

void RenderEngine::checkSystemCapabilities() {
    const Ogre::RenderSystem* renderer = root->getRenderSystem();
    const Ogre::RenderSystemCapabilities* capabilities = renderer->getCapabilities();
    for (const std::string& profile : capabilities->getSupportedShaderProfiles()) {
        if (profile == "glsl" && capabilities->hasCapability(Ogre::RSC_VERTEX_PROGRAM) &&
            capabilities->hasCapability(Ogre::RSC_HWRENDER_TO_TEXTURE))
            shaderLevel = 2;
    }
    const std::string notice = driverNotice(renderer->getDriverVersion());
    if (!notice.empty()) std::cout << notice << std::flush;
}

std::string RenderEngine::driverNotice(const Ogre::DriverVersion& version) {
    if (version.major >= 4 && version.minor >= 5) return {};
    return "GL_VERSION = " + version.toString() + "\n";
}

}  // namespace vrn::visual
