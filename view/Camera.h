#pragma once

#include <memory>
#include <string>

#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

namespace Ogre {
class Camera;
class RenderTarget;
class SceneNode;
class Viewport;
}  // namespace Ogre

namespace vrn::visual {

class GlobalFrame;
class OrbitViewController;
struct Plane;
struct Ray;
class Scene;

/// The viewport's camera: one Ogre camera on a node of its own. Angles are radians, screen
/// positions window pixels from the upper left corner, lengths model units.
///
/// The horizontal field of view is the held one: a resized window keeps it, and the vertical one
/// follows. Thread: render, but for the gestures, which post.
class VRN_VISUAL_API Camera {
public:
    /// Looks from the settings' `fromPos` (given for a Z-up world and turned for another vertical)
    /// at `targetPos`.
    Camera(const std::string& nameIn, Scene* scene);
    /// Gives up its viewport, and takes node and Ogre camera out of the scene.
    ~Camera();
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    /// The camera that Scene::Init made; null before it.
    static Camera* Get();

    /// Draws into `target` from now on, on a grey ground, through a viewport that fills it. The
    /// viewport on the former target goes, so that target must still exist: hand over null before
    /// destroying one.
    void setRenderTarget(Ogre::RenderTarget* target);

    void setHFOV(float radians);
    [[nodiscard]] float getHFOV() const { return hfov; }
    [[nodiscard]] float getVFOV() const;
    /// Clamped to 0.001 and 3.138451; NaN counts as the lower end. Thread: pure.
    [[nodiscard]] static float LimitFOV(float radians);
    /// Fits aspect ratio and vertical field of view to the viewport; does nothing without one. For
    /// the host to call after resizing.
    void updateFOV();
    /// Near and far plane; the far one is the rendering distance too, and 0 stands for none. Throws
    /// std::invalid_argument for a distance that is not finite or a far one below 0, and
    /// Ogre::InvalidParametersException for a near one of 0 or less.
    void setClipDist(float nearDistance, float farDistance);
    /// Width by height.
    [[nodiscard]] float getAspectRatio() const;
    /// "perspective" chooses the perspective projection; any other text changes nothing.
    void setCameraProjection(const std::string& projection);

    [[nodiscard]] rob::PosTemplate<float> getWorldPosition() const;
    [[nodiscard]] rob::RotationTemplate<float> getWorldRotation() const;
    /// Each call signals cameraMoved, also when nothing changes. A coordinate that is not finite
    /// throws std::invalid_argument; a zero quaternion counts as the identity.
    void setWorldPosition(const rob::PosTemplate<float>& position);
    void setWorldRotation(const rob::RotationTemplate<float>& rotation);
    void setFromPos(const rob::PosTemplate<float>& position) { fromPos = position; }
    [[nodiscard]] const rob::PosTemplate<float>& getFromPos() const { return fromPos; }
    void setTargetPos(const rob::PosTemplate<float>& position) { targetPos = position; }
    [[nodiscard]] const rob::PosTemplate<float>& getTargetPos() const { return targetPos; }
    /// The axis that stays upright: 0 X, 1 Y, 2 Z. The spelling is part of the interface.
    void setVerticleDir(int dir);

    /// In pixels; 0 without a render target.
    [[nodiscard]] int viewportWidth() const;
    [[nodiscard]] int viewportHeight() const;
    /// The ray under a pixel: origin on the near plane, direction not normalised. Throws
    /// std::logic_error without a render target.
    void cameraToViewportRay(float x, float y, rob::PosTemplate<float>& origin,
                             rob::Vec3Template<float>& direction) const;
    /// The same with a direction of length 1 and the largest float as its length. Throws
    /// std::overflow_error for a direction without length.
    [[nodiscard]] Ray getViewportRay(float x, float y) const;
    /// Where the line of that ray meets the plane, also behind the camera. False, with `point`
    /// untouched, if it runs along the plane: |normal . direction| below 0.001.
    bool getWorldPointOnPlane(float x, float y, const Plane& plane,
                              rob::PosTemplate<float>& point) const;

    /// Mouse gestures; each posts one task. Thread: any.
    void startRotating(float x, float y);
    void rotateScene(float dx, float dy);
    void translateScene(float x, float y, float dx, float dy);
    void zoom(float x, float y, float a, float delta);

    std::string name;
    Ogre::SceneNode* node = nullptr;
    Ogre::Camera* camera = nullptr;
    Ogre::Viewport* viewport = nullptr;  ///< null without a render target
    Ogre::RenderTarget* renderTarget = nullptr;
    std::unique_ptr<OrbitViewController> controller;
    std::unique_ptr<GlobalFrame> globalFrame;

private:
    void postGesture(void (OrbitViewController::*gesture)(float, float), float a, float b);
    void postGesture(void (OrbitViewController::*gesture)(float, float, float, float), float a,
                     float b, float c, float d);

    float hfov = 0;
    rob::PosTemplate<float> targetPos, fromPos;
};

/// Set by Scene::Init, null before it.
VRN_VISUAL_API extern Camera* gCamera;

}  // namespace vrn::visual
