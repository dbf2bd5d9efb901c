#pragma once

#include <string>

#include <OgreHardwarePixelBuffer.h>
#include <OgreRenderTexture.h>
#include <OgreResourceGroupManager.h>
#include <OgreTexture.h>
#include <OgreTextureManager.h>

#include "tests/support/EngineFixture.h"
#include "view/Camera.h"

namespace vrn::test {

/// A texture to draw into, of any shape, unlike the window. Gone with the object; the window's
/// camera goes back to the window first.
class OffscreenTarget {
public:
    OffscreenTarget(const std::string& name, unsigned widthPx, unsigned heightPx)
        : texture(Ogre::TextureManager::getSingleton().createManual(
              name, Ogre::RGN_INTERNAL, Ogre::TEX_TYPE_2D, widthPx, heightPx, /*num_mips=*/0,
              Ogre::PF_BYTE_RGBA, Ogre::TU_RENDERTARGET)) {}
    ~OffscreenTarget() {
        visual::Camera* camera = visual::Camera::Get();
        if (camera->renderTarget == get()) camera->setRenderTarget(nullptr);
        Ogre::TextureManager::getSingleton().remove(texture);
    }
    OffscreenTarget(const OffscreenTarget&) = delete;
    OffscreenTarget& operator=(const OffscreenTarget&) = delete;

    [[nodiscard]] Ogre::RenderTarget* get() const {
        return texture->getBuffer()->getRenderTarget();
    }

private:
    Ogre::TexturePtr texture;
};

}  // namespace vrn::test
