#include "view/Camera.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

// The compositor headers use what this one declares without including it.
#include <OgreTexture.h>

#include <OgreCamera.h>
#include <OgreCompositorManager.h>
#include <OgreRenderTarget.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreViewport.h>

#include "engine/Scene.h"
#include "selection/Plane.h"
#include "selection/Ray.h"
#include "suite/broker/SignalBroker.h"
#include "view/GlobalFrame.h"
#include "view/OrbitViewController.h"
#include "view/UpAxis.h"
#include "visual/FinitePose.h"

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Rotation = rob::RotationTemplate<float>;

constexpr float startHfov = 1.0471976f;  // 60 degrees
constexpr float globalFrameScale = 1.5f;
constexpr float lowestFov = 0.001f;
constexpr float highestFov = 3.138451f;

Ogre::Vector3 ToOgre(const Pos& p) { return {p.x, p.y, p.z}; }
Pos FromOgre(const Ogre::Vector3& v) { return {v.x, v.y, v.z}; }

// The settings give the camera's place for a Z-up world.
Ogre::Vector3 StartPosition(const Pos& from, int verticalDir) {
    if (verticalDir == 0) return {from.x, -from.y, -from.z};
    if (verticalDir == 1) return {-from.x, -from.y, from.z};
    return ToOgre(from);
}

void RequireFinite(bool finite) {
    if (!finite) throw std::invalid_argument("the camera's pose must be finite");
}

}  // namespace

Camera* gCamera = nullptr;

Camera* Camera::Get() { return gCamera; }

Camera::Camera(const std::string& nameIn, Scene* scene)
    : name(nameIn),
      node(scene->sceneManager->getRootSceneNode()->createChildSceneNode(nameIn)),
      camera(scene->sceneManager->createCamera(nameIn)),
      targetPos(scene->settings.targetPos),
      fromPos(scene->settings.fromPos) {
    node->attachObject(camera);
    node->setFixedYawAxis(true, UpAxis(scene->settings.verticalDir));
    node->setPosition(StartPosition(fromPos, scene->settings.verticalDir));
    node->lookAt(ToOgre(targetPos), Ogre::Node::TS_WORLD, Ogre::Vector3::NEGATIVE_UNIT_Z);
    camera->setAutoAspectRatio(true);
    node->setInheritScale(false);
    setHFOV(startHfov);
    camera->setAutoAspectRatio(false);  // from here on updateFOV alone sets it
    setClipDist(scene->settings.nearClip, scene->settings.farClip);
    controller = std::make_unique<OrbitViewController>(this, "OrbitViewController");
    globalFrame = std::make_unique<GlobalFrame>(this);
    globalFrame->setScale(globalFrameScale);
}

Camera::~Camera() {
    setRenderTarget(nullptr);
    globalFrame.reset();  // listens to the Ogre camera
    Ogre::SceneManager* scene = node->getCreator();
    scene->destroyCamera(camera);
    scene->destroySceneNode(node);
}

void Camera::setRenderTarget(Ogre::RenderTarget* target) {
    if (viewport) {
        // A second viewport of the same depth order on one target would be refused, and a
        // compositor chain must not outlive the viewport it hangs on.
        Ogre::CompositorManager::getSingleton().removeCompositorChain(viewport);
        renderTarget->removeViewport(viewport->getZOrder());
        viewport = nullptr;
    }
    renderTarget = target;
    if (!target) return;
    viewport = target->addViewport(camera, /*ZOrder=*/0, 0.0f, 0.0f, 1.0f, 1.0f);
    viewport->setClearEveryFrame(true, Ogre::FBT_COLOUR | Ogre::FBT_DEPTH);
    viewport->setBackgroundColour(Ogre::ColourValue(0.45f, 0.45f, 0.45f, 1.0f));
    updateFOV();
}

void Camera::setHFOV(float radians) {
    hfov = radians;
    updateFOV();
}

float Camera::getVFOV() const { return camera->getFOVy().valueRadians(); }

float Camera::LimitFOV(float radians) {
    // In this order: std::clamp would let NaN through to the projection.
    return std::max(lowestFov, std::min(radians, highestFov));
}

void Camera::updateFOV() {
    if (!viewport) return;
    viewport->setDimensions(0.0f, 0.0f, 1.0f, 1.0f);
    if (viewportWidth() <= 0 || viewportHeight() <= 0) return;  // a minimised window
    const float aspect = static_cast<float>(viewportWidth()) / static_cast<float>(viewportHeight());
    const float vertical = 2.0f * std::atan(std::tan(hfov / 2.0f) / aspect);
    camera->setAspectRatio(aspect);
    camera->setFOVy(Ogre::Radian(LimitFOV(vertical)));
}

void Camera::setClipDist(float nearDistance, float farDistance) {
    if (!std::isfinite(nearDistance) || !std::isfinite(farDistance) || farDistance < 0)
        throw std::invalid_argument("clip distances must be finite, the far one 0 or more");
    camera->setNearClipDistance(nearDistance);
    camera->setFarClipDistance(farDistance);
    camera->setRenderingDistance(farDistance);
}

float Camera::getAspectRatio() const { return camera->getAspectRatio(); }

void Camera::setCameraProjection(const std::string& projection) {
    if (projection == "perspective") camera->setProjectionType(Ogre::PT_PERSPECTIVE);
}

Pos Camera::getWorldPosition() const { return FromOgre(node->_getDerivedPosition()); }

Rotation Camera::getWorldRotation() const {
    const Ogre::Quaternion& q = node->_getDerivedOrientation();
    return {q.w, q.x, q.y, q.z};
}

void Camera::setWorldPosition(const Pos& position) {
    RequireFinite(std::isfinite(position.x) && std::isfinite(position.y) &&
                  std::isfinite(position.z));
    node->_setDerivedPosition(ToOgre(position));
    node->_update(/*updateChildren=*/true, /*parentHasChanged=*/false);
    broker::SignalBroker::cameraMoved();
}

void Camera::setWorldRotation(const Rotation& rotation) {
    RequireFinite(IsFinite(rotation));
    const Rotation unit = UnitRotation(rotation);
    node->_setDerivedOrientation(Ogre::Quaternion(unit.w, unit.x, unit.y, unit.z));
    node->_update(/*updateChildren=*/true, /*parentHasChanged=*/false);
    broker::SignalBroker::cameraMoved();
}

void Camera::setVerticleDir(int dir) { node->setFixedYawAxis(true, UpAxis(dir)); }

int Camera::viewportWidth() const { return viewport ? viewport->getActualWidth() : 0; }

int Camera::viewportHeight() const { return viewport ? viewport->getActualHeight() : 0; }

void Camera::cameraToViewportRay(float x, float y, Pos& origin,
                                 rob::Vec3Template<float>& direction) const {
    if (viewportWidth() <= 0 || viewportHeight() <= 0)
        throw std::logic_error("the camera has no render target to cast a ray from");
    const Ogre::Ray ray = camera->getCameraToViewportRay(x / static_cast<float>(viewportWidth()),
                                                         y / static_cast<float>(viewportHeight()));
    const Ogre::Vector3& d = ray.getDirection();
    origin = FromOgre(ray.getOrigin());
    direction = {d.x, d.y, d.z};
}

Ray Camera::getViewportRay(float x, float y) const {
    Pos origin;
    rob::Vec3Template<float> direction;
    cameraToViewportRay(x, y, origin, direction);
    Ray ray;
    ray.origin = origin;
    ray.direction = rob::DirTemplate<float>(direction.normalized());
    ray.maxDistance = std::numeric_limits<float>::max();
    return ray;
}

bool Camera::getWorldPointOnPlane(float x, float y, const Plane& plane, Pos& point) const {
    const Ray ray = getViewportRay(x, y);
    const float towards = plane.normal.asVec3().dot(ray.direction.asVec3());
    if (std::abs(static_cast<double>(towards)) < 0.001) return false;
    point = plane.intersection(ray.origin, ray.direction);
    return true;
}

void Camera::postGesture(void (OrbitViewController::*gesture)(float, float), float a, float b) {
    Scene::Get()->addRenderTask([this, gesture, a, b] { (controller.get()->*gesture)(a, b); }, 0);
}

void Camera::postGesture(void (OrbitViewController::*gesture)(float, float, float, float), float a,
                         float b, float c, float d) {
    Scene::Get()->addRenderTask([=, this] { (controller.get()->*gesture)(a, b, c, d); }, 0);
}

void Camera::startRotating(float x, float y) {
    postGesture(&OrbitViewController::startRotating, x, y);
}

void Camera::rotateScene(float dx, float dy) {
    postGesture(&OrbitViewController::rotateScene, dx, dy);
}

void Camera::translateScene(float x, float y, float dx, float dy) {
    postGesture(&OrbitViewController::translateScene, x, y, dx, dy);
}

void Camera::zoom(float x, float y, float a, float delta) {
    postGesture(&OrbitViewController::zoom, x, y, a, delta);
}

}  // namespace vrn::visual
