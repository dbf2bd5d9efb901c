#include "apps/vrnview/ViewTarget.h"

#include <OgreHardwarePixelBuffer.h>
#include <OgreRenderTexture.h>
#include <OgreResourceGroupManager.h>
#include <OgreRoot.h>
#include <OgreTextureManager.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "engine/RenderEngine.h"
#include "selection/VisualSelection.h"
#include "view/Camera.h"
#include "view/GlobalFrame.h"

namespace vrn::host {

namespace {

constexpr unsigned samplesWanted = 8;  // of the target; a driver that has fewer gives what it has

/// How many samples a pixel of the picture gets in all. The larger a picture, the less a single
/// pixel shows and the longer it takes.
int SamplesPerPixel(double pixelCount) { return pixelCount > 4e6 ? 8 : 24; }

/// Of their usual size, which the corner axes have in a picture.
float AxesPart(int widthPx, int heightPx) {
    constexpr float leastWidth = 640, leastHeight = 360;  // where they still leave enough room
    return std::min({1.0f, static_cast<float>(widthPx) / leastWidth,
                     static_cast<float>(heightPx) / leastHeight});
}

int FrameCount(const Ogre::RenderTarget& target) {
    const int samples =
        SamplesPerPixel(static_cast<double>(target.getWidth()) * target.getHeight());
    const int perFrame = std::max(1, static_cast<int>(target.getFSAA()));
    return (samples + perFrame - 1) / perFrame;
}

/// Sums pictures of one size and gives their mean.
class Average {
public:
    void add(const headless::Picture& picture) {
        const auto& pixels = picture.getPixels();
        sums.resize(pixels.size());
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            sums[i][0] += pixels[i].r;
            sums[i][1] += pixels[i].g;
            sums[i][2] += pixels[i].b;
        }
        ++count;
    }
    [[nodiscard]] headless::Picture result(int width, int height) const {
        headless::Picture mean(width, height);
        const auto rounded = [this](std::uint32_t sum) {
            return static_cast<std::uint8_t>((sum + count / 2) / count);
        };
        std::size_t i = 0;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x, ++i)
                mean.set(x, y, {rounded(sums[i][0]), rounded(sums[i][1]), rounded(sums[i][2])});
        return mean;
    }

private:
    std::vector<std::array<std::uint32_t, 3>> sums;
    std::uint32_t count = 0;
};

/// The i-th of a sequence that fills 0..1 evenly at every length (Halton, "On the efficiency of
/// certain quasi-random sequences", 1960); `base` is a prime.
double Halton(int i, int base) {
    double result = 0, fraction = 1.0 / base;
    for (; i > 0; i /= base, fraction /= base) result += fraction * (i % base);
    return result;
}

/// `rotation` turned so that the picture's middle moves by (dx, dy) pixels of `radPerPixel`.
rob::RotationTemplate<float> Nudged(const rob::RotationTemplate<double>& rotation, double dx,
                                    double dy, double radPerPixel) {
    using Rotation = rob::RotationTemplate<double>;
    using Vec = rob::Vec3Template<double>;
    return rob::RotationTemplate<float>(rotation * Rotation(dx * radPerPixel, Vec{0, 1, 0}) *
                                        Rotation(dy * radPerPixel, Vec{1, 0, 0}));
}

}  // namespace

ViewTarget::ViewTarget(int widthPx, int heightPx) {
    texture = Ogre::TextureManager::getSingleton().createManual(
        "vrnview_target", Ogre::RGN_INTERNAL, Ogre::TEX_TYPE_2D, static_cast<Ogre::uint>(widthPx),
        static_cast<Ogre::uint>(heightPx), /*numMipmaps=*/0, Ogre::PF_BYTE_RGBA,
        Ogre::TU_RENDERTARGET,
        /*loader=*/nullptr, /*hwGammaCorrection=*/false, samplesWanted);
    target = texture->getBuffer()->getRenderTarget();
    visual::Camera::Get()->setRenderTarget(target);
    visual::GlobalFrame& axes = *visual::Camera::Get()->globalFrame;
    axesScale = axes.getScale();
    axes.setScale(axesScale * AxesPart(widthPx, heightPx));
}

ViewTarget::~ViewTarget() {
    visual::Camera::Get()->globalFrame->setScale(axesScale);
    visual::Camera::Get()->setRenderTarget(nullptr);
    Ogre::TextureManager::getSingleton().remove(texture);
}

double ViewTarget::getAspect() const {
    return static_cast<double>(target->getWidth()) / target->getHeight();
}

void ViewTarget::place(const CameraPlacement& placement) {
    visual::Camera* const camera = visual::Camera::Get();
    camera->setClipDist(static_cast<float>(placement.nearClip),
                        static_cast<float>(placement.farClip));
    camera->setWorldPosition(rob::PosTemplate<float>(placement.pose.position));
    camera->setWorldRotation(rob::RotationTemplate<float>(placement.pose.rotation));
}

headless::Picture ViewTarget::takePicture(const CameraPlacement& placement) {
    place(placement);
    return averageOver(placement.pose.rotation);
}

headless::Picture ViewTarget::takePicture() {
    return averageOver(rob::RotationTemplate<double>(visual::Camera::Get()->getWorldRotation()));
}

headless::Picture ViewTarget::averageOver(const rob::RotationTemplate<double>& rotation) {
    visual::Camera* const camera = visual::Camera::Get();
    const double radPerPixel = 2.0 * std::tan(camera->getHFOV() / 2.0) / target->getWidth();
    const int frameCount = FrameCount(*target);
    Average average;
    for (int i = 1; i <= frameCount; ++i) {
        const double dx = Halton(i, 2) - 0.5, dy = Halton(i, 3) - 0.5;
        camera->setWorldRotation(Nudged(rotation, dx, dy, radPerPixel));
        selection::VisualSelection::Get()->update();
        visual::gRenderEngine->root->renderOneFrame();
        average.add(headless::Picture::readBack(*target));
    }
    camera->setWorldRotation(rob::RotationTemplate<float>(rotation));
    return average.result(static_cast<int>(target->getWidth()),
                          static_cast<int>(target->getHeight()));
}

}  // namespace vrn::host
