// Poses and the places of visuals in the tree.

#include <format>
#include <stdexcept>

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "view/Camera.h"
#include "visual/FinitePose.h"
#include "visual/Visual.h"

namespace vrn::visual {

namespace {

using Pose = rob::PoseTemplate<float>;

Pose Inverse(const Pose& pose) {
    const auto back = pose.rotation.inverse();
    return {back * rob::PosTemplate<float>(-pose.position.x, -pose.position.y, -pose.position.z),
            back};
}

Pose Compose(const Pose& a, const Pose& b) {
    return {rob::TransformPoint(a, b.position), a.rotation * b.rotation};
}

Pose WithUnitRotation(const Pose& pose) { return {pose.position, UnitRotation(pose.rotation)}; }

// Before anything has changed: hung elsewhere with its old pose a visual would jump.
Pose RequireFinite(const Pose& pose, const Visual& visual) {
    if (!IsFinite(pose))
        throw std::invalid_argument(
            std::format("the pose of \"{}\" must be finite", visual.getName()));
    return pose;
}

Visual* RequireVisual(Visual* visual) {
    if (!visual) throw std::invalid_argument("the visual to move must not be null");
    return visual;
}

}  // namespace

void Scene::setVisualPose(std::uint32_t id, const Pose& pose) {
    postToVisual(id, [pose](Visual* visual) { visual->setPose(pose); });
}

void Scene::setVisualPose(Visual* visual, const Pose& pose) {
    post([visual = RequireVisual(visual), pose] { visual->setPose(pose); });
}

void Scene::setVisualWorldPose(std::uint32_t id, const Pose& pose) {
    postToVisual(id, [pose](Visual* visual) { visual->setWorldPose(pose); });
}

void Scene::setVisualWorldPose(Visual* visual, const Pose& pose) {
    post([visual = RequireVisual(visual), pose] { visual->setWorldPose(pose); });
}

void Scene::setVisualsOrientations(const std::vector<std::uint32_t>& ids,
                                   const std::vector<rob::OrientTemplate<double>>& orientations) {
    if (ids.size() != orientations.size())
        throw std::invalid_argument(std::format("{} ids need as many orientations, not {}",
                                                ids.size(), orientations.size()));
    post([this, ids, orientations] {
        for (std::size_t i = 0; i < ids.size(); ++i)
            visuals.at(ids[i])->setOrientation(orientations[i]);
    });
}

void Scene::setLocalOrigin(std::uint32_t id, const Pose& oldOrigin, const Pose& newOrigin) {
    post([this, id, oldOrigin, newOrigin] { doSetLocalOrigin(id, oldOrigin, newOrigin); });
}

void Scene::doSetLocalOrigin(std::uint32_t id, const Pose& oldOrigin, const Pose& newOrigin) {
    Visual* visual = visuals.at(id);
    RequireFinite(oldOrigin, *visual);
    RequireFinite(newOrigin, *visual);
    const Pose compensation =
        Compose(Inverse(WithUnitRotation(newOrigin)), WithUnitRotation(oldOrigin));
    for (Visual* child : visual->getChildren())
        child->setPose(Compose(compensation, child->getPose()));
    visual->setWorldPose(newOrigin);
}

void Scene::setCameraPose(const Pose& worldPose) {
    post([worldPose] {
        gCamera->setWorldPosition(worldPose.position);
        gCamera->setWorldRotation(worldPose.rotation);
    });
}

void Scene::attachVisual(std::uint32_t parentId, Visual* visual) {
    postToVisual(parentId, [visual](Visual* parent) { parent->attachVisual(visual); });
}

void Scene::detachVisual(Visual* visual) {
    post([this, visual] { root->attachVisual(visual); });
}

void Scene::reparentVisual(std::uint32_t id, std::uint32_t parentId) {
    post([this, id, parentId] { visuals.at(parentId)->attachVisual(visuals.at(id)); });
}

void Scene::moveVisualToParent(std::uint32_t id, std::uint32_t parentId, const Pose& worldPose) {
    post([this, id, parentId, worldPose] { doMoveVisualToParent(id, parentId, worldPose); });
}

void Scene::doMoveVisualToParent(std::uint32_t id, std::uint32_t parentId, const Pose& worldPose) {
    Visual* visual = visuals.at(id);
    Visual* parent = parentId == 0 ? root : visuals.at(parentId);
    RequireFinite(worldPose, *visual);
    parent->attachVisual(visual);
    visual->setWorldPose(worldPose);
    selection::VisualSelection::Get()->markDirty(visual);
}

void Scene::addAttachment(std::uint32_t childId, std::uint32_t parentId,
                          const rob::PoseTemplate<double>& pose) {
    post([this, childId, parentId, pose] { doAddAttachment(childId, parentId, pose); });
}

void Scene::doAddAttachment(std::uint32_t childId, std::uint32_t parentId,
                            const rob::PoseTemplate<double>& pose) {
    Visual* parent = visuals.at(parentId);
    Visual* child = visuals.at(childId);
    const Pose place = RequireFinite(Pose(pose), *child);
    parent->attachVisual(child);
    child->setPose(place);
    child->setAttachState(true);
}

void Scene::deleteAttachment(std::uint32_t childId, std::uint32_t /*oldParentId*/,
                             std::uint32_t newParentId, const rob::PoseTemplate<double>& pose) {
    post([this, childId, newParentId, pose] { doDeleteAttachment(childId, newParentId, pose); });
}

void Scene::doDeleteAttachment(std::uint32_t childId, std::uint32_t newParentId,
                               const rob::PoseTemplate<double>& pose) {
    Visual* child = visuals.at(childId);
    Visual* parent = newParentId == 0 ? root : visuals.at(newParentId);
    const Pose place = RequireFinite(Pose(pose), *child);
    parent->attachVisual(child);
    child->setPose(place);
    child->setAttachState(false);
}

}  // namespace vrn::visual
