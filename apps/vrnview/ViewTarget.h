#pragma once

#include <OgreTexture.h>

#include "apps/headless/Picture.h"
#include "apps/vrnview/Framing.h"

namespace vrn::host {

/// An offscreen picture that the camera renders into, antialiased in two ways at once: the target
/// is multisampled as far as the driver can, and a picture is the mean of several frames between
/// which the camera turns by fractions of a pixel. So the frames have the picture's own size, and
/// what is measured in pixels (lines, the corner axes, outlines) keeps its width, which a larger
/// target scaled down would halve.
///
/// In a picture of less than 640 by 360 pixels the corner axes are as much smaller as it is, so
/// that they do not hide it.
///
/// Make it once, after the library's Init; the camera draws into it from then on. Thread: render.
class ViewTarget {
public:
    /// Throws Ogre::Exception if the driver has no target of this size.
    ViewTarget(int widthPx, int heightPx);
    /// Takes the target away from the camera.
    ~ViewTarget();
    ViewTarget(const ViewTarget&) = delete;
    ViewTarget& operator=(const ViewTarget&) = delete;

    [[nodiscard]] double getAspect() const;
    /// Runs frames and returns what the camera sees from `placement`.
    [[nodiscard]] headless::Picture takePicture(const CameraPlacement& placement);
    /// The same from where the camera stands.
    [[nodiscard]] headless::Picture takePicture();
    /// Lets the camera stand there.
    static void place(const CameraPlacement& placement);

private:
    [[nodiscard]] headless::Picture averageOver(const rob::RotationTemplate<double>& rotation);

    Ogre::TexturePtr texture;
    float axesScale = 1;                   ///< of the corner axes, before
    Ogre::RenderTarget* target = nullptr;  ///< of the texture
};

}  // namespace vrn::host
