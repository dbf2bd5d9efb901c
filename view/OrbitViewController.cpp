#include "view/OrbitViewController.h"

#include <algorithm>
#include <cmath>

#include "engine/LiveSetting.h"
#include "engine/Scene.h"
#include "selection/Ray.h"
#include "selection/VisualSelection.h"
#include "suite/broker/SignalBroker.h"
#include "view/Camera.h"

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

constexpr float radiansPerPixel = 0.004f;
constexpr float steepEnough =
    0.1f;  // least vertical part of a ray that is taken down to the ground
constexpr float rotateDistance = 100.0f;  // pivot along a ray that is not
constexpr float zoomDistance = 5000.0f;
constexpr float zoomStepBase = 80.0f;
constexpr float leastPanDistance = 10.0f;  // no standstill when the pivot is near the camera

float VerticalPart(const Vec& v) {
    const int axis = LoadLive(Scene::Get()->settings.verticalDir);
    if (axis == 0) return v.x;
    return axis == 1 ? v.y : v.z;
}

}  // namespace

OrbitViewController::OrbitViewController(Camera* cameraIn, const std::string& nameIn)
    : camera(cameraIn),
      zoomMaxStep(Scene::Get()->settings.zoomMaxStep),
      zoomMinDistance(Scene::Get()->settings.zoomMinDistance),
      zoomReserve(Scene::Get()->settings.zoomReserve),
      name(nameIn) {}

OrbitViewController::ViewRay OrbitViewController::rayAt(float x, float y) const {
    const Ray ray = camera->getViewportRay(x, y);
    const Vec direction = ray.direction.asVec3();
    const float up = VerticalPart(direction);
    return {ray.origin, direction, up, -VerticalPart(ray.origin.asVec3()) / up};
}

bool OrbitViewController::pickPivot(float x, float y) {
    auto* const selection = selection::VisualSelection::Get();
    if (selection == nullptr) return false;
    selection::Result found = selection->select(x, y);
    if (!found.hit) found = selection->selectPointInCloud(x, y);
    if (found.hit) pivot = found.position;
    return found.hit;
}

void OrbitViewController::startRotating(float x, float y) {
    const ViewRay ray = rayAt(x, y);
    if (pickPivot(x, y)) return;
    const float t = ray.up >= -steepEnough ? rotateDistance : ray.groundParam;
    pivot = ray.origin + ray.direction * t;
}

void OrbitViewController::rotateScene(float dx, float dy) {
    orbit(-dx * radiansPerPixel, -dy * radiansPerPixel);
}

void OrbitViewController::orbit(float yaw, float pitch) {
    using Rotation = rob::RotationTemplate<float>;
    const Rotation rotation = camera->getWorldRotation();
    const Vec offset = camera->getWorldPosition() - pivot;
    const Rotation inverse = rotation.inverse();
    const Rotation localRotation = inverse * rotation;
    const Vec localOffset = inverse * offset;
    const Rotation turned = rotation * Rotation(pitch, yaw, 0.0f);
    camera->setWorldPosition(pivot + turned * localOffset);
    camera->setWorldRotation(turned * localRotation);
    broker::SignalBroker::updateScene();
}

void OrbitViewController::zoom(float x, float y, float /*a*/, float delta) {
    const ViewRay ray = rayAt(x, y);
    const bool picked = pickPivot(x, y);
    if (!picked) {
        const bool meetsGround = std::abs(ray.up) > steepEnough && ray.groundParam > 0.0f;
        pivot = ray.origin + ray.direction * (meetsGround ? ray.groundParam : zoomDistance);
    }

    const Pos position = camera->getWorldPosition();
    const Vec towards = pivot - position;
    const float distance = towards.length();
    const float base = delta > 0.0f ? zoomStepBase : -zoomStepBase;
    const float step =
        std::max(-zoomMaxStep, std::min(base * 0.01f * distance / 5.0f, zoomMaxStep));
    float newDistance = distance - step;
    // On the pivot itself a step has no length, and yet the wheel asks to come closer.
    const bool closer = step > 0.0f || (delta > 0.0f && distance == 0.0f);
    if (newDistance < zoomMinDistance && closer) {
        if (picked) return;  // the camera does not go through the surface under the cursor
        newDistance = zoomMinDistance;
    }
    camera->setWorldPosition(pivot - towards.normalized() * newDistance);
}

void OrbitViewController::translateScene(float x, float y, float dx, float dy) {
    const ViewRay ray = rayAt(x, y);
    if (!pickPivot(x, y)) {
        const bool nearlyLevel = ray.up >= -steepEnough && ray.up < steepEnough;
        pivot = nearlyLevel ? Pos{} : ray.origin + ray.direction * ray.groundParam;
    }

    const Pos position = camera->getWorldPosition();
    const float distance = std::max(leastPanDistance, (pivot - position).length());
    const float vfov = camera->getVFOV();
    const float hfov = 2.0f * std::atan(std::tan(vfov / 2.0f) * camera->getAspectRatio());
    const auto width = static_cast<float>(camera->viewportWidth());
    const auto height = static_cast<float>(camera->viewportHeight());
    const Vec move{2.0f * (-dx / width) * distance * std::tan(hfov / 2.0f),
                   2.0f * (dy / height) * distance * std::tan(vfov / 2.0f), 0.0f};
    camera->setWorldPosition(position + camera->getWorldRotation() * move);
}

}  // namespace vrn::visual
