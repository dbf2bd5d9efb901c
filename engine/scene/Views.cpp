// Camera poses that frame the scene or a part of it.

#include <algorithm>
#include <array>
#include <cmath>

#include <OgreAxisAlignedBox.h>
#include <OgreCamera.h>
#include <OgreMovableObject.h>
#include <OgreSceneNode.h>

#include "engine/LiveSetting.h"
#include "engine/Scene.h"
#include "suite/sdf/SdfManager.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "view/Camera.h"
#include "view/Grid.h"
#include "view/UpAxis.h"
#include "visual/Visual.h"
#include "visual/VisualIterator.h"

namespace vrn::visual {

namespace {

using Box = Ogre::AxisAlignedBox;
using Vec = rob::Vec3Template<float>;
using Pos = rob::PosTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using Rotation = rob::RotationTemplate<float>;

/// A sphere of that radius is the least that is framed, so that a point is not stood in.
constexpr float leastRadius = 10.0f;
/// Half the size that an endless box counts with.
constexpr float endlessHalfSize = 10000.0f;
/// A view is along the vertical when the sine of the angle between them is below.
constexpr float parallelSine = 1e-4f;

enum class Count { Shown, All };

Vec FromOgre(const Ogre::Vector3& v) { return {v.x, v.y, v.z}; }

bool IsFinite(const Ogre::Vector3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

void MergeObjects(Box& box, const Visual* visual, Count count) {
    for (Ogre::MovableObject* object : visual->node->getAttachedObjects()) {
        if (count == Count::Shown && !object->getVisible()) continue;
        const Box& world = object->getWorldBoundingBox(/*derive=*/true);
        // A box that is no number would hide all others.
        if (world.isFinite() && !(IsFinite(world.getMinimum()) && IsFinite(world.getMaximum())))
            continue;
        box.merge(world);
    }
}

Box BoxBelow(Visual* start, Count count) {
    Box box;
    for (ForestIterator<Visual> it(start); it.next();) MergeObjects(box, it.value(), count);
    return box;
}

Ogre::Vector3 CentreOf(const Box& box) {
    return box.isFinite() ? box.getCenter() : Ogre::Vector3::ZERO;
}

Ogre::Vector3 HalfSizeOf(const Box& box) {
    if (box.isInfinite()) return Ogre::Vector3(endlessHalfSize);
    return box.isNull() ? Ogre::Vector3::ZERO : box.getHalfSize();
}

float NarrowerFov(const Camera& camera) {
    const float vertical = camera.getVFOV();
    const float horizontal = 2.0f * std::atan(std::tan(vertical / 2.0f) * camera.getAspectRatio());
    return std::min(vertical, horizontal);
}

// The sphere round the box touches the sides of the view.
Pos ComputeCameraFromPos(const Box& box, const Vec& dir, float fovRad) {
    const float radius = std::max(HalfSizeOf(box).length(), leastRadius);
    const float distance = radius / std::sin(fovRad / 2.0f);
    const Vec at = FromOgre(CentreOf(box)) - dir * distance;
    return {at.x, at.y, at.z};
}

// A camera looks along its -z; `x` need not be of unit length, nor quite across `dir`.
Rotation LookAlong(const Vec& dir, const Vec& x) {
    const Vec z = -dir;
    const Vec across = (x - z * x.dot(z)).normalized();
    return Rotation::FromAxes(across, z.cross(across), z);
}

// Level: the vertical is up, however the camera was rolled.
Rotation LevelLook(const Vec& dir, const Vec& up, const Rotation& present) {
    const Vec x = up.cross(-dir);
    if (x.length() >= parallelSine) return LookAlong(dir, x);
    const Vec presentX = present * Vec{1, 0, 0};
    // A camera lying on its side has an x axis along the vertical, which says nothing: its y axis
    // does.
    const bool lying = presentX.cross(dir).length() < parallelSine;
    return LookAlong(dir, lying ? present * Vec{0, 1, 0} : presentX);
}

Vec ViewDirection() { return FromOgre(gCamera->camera->getDerivedDirection()); }

Vec Vertical(const SceneSettings& settings) {
    return FromOgre(UpAxis(LoadLive(settings.verticalDir)));
}

template <class List, class Value>
bool Contains(const List& list, const Value& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

// Null unless the visual is that of a move with a target that is a pose.
const task::RobTargetDataItem* TargetOf(const Visual* visual) {
    if (visual->type != VisualType::MoveInstruction) return nullptr;
    const auto* move = dynamic_cast<task::MoveInst*>(sdf::SdfManager::inst()->find(visual->id));
    return move ? move->getRobTarget() : nullptr;
}

}  // namespace

bool Scene::isFurniture(const Visual* visual) const {
    constexpr std::array furnitureTypes{VisualType::Helper, VisualType::PreviewCurve,
                                        VisualType::UVIndicator};
    if (Contains(furnitureTypes, visual->type) || visual->copied) return true;
    if (visual == camMesh || (grid && visual == grid->visual)) return true;
    // The world frame and previewed ones belong to no model object, unlike all other frames there.
    if (visual->type == VisualType::Frame && visual->isTopLevel() &&
        visual->id >= sdf::SdfManager::firstTransientId)
        return true;
    return Contains(previewCurves_, visual) || Contains(previewPoints_, visual) ||
           Contains(previewFaces_, visual);
}

Ogre::AxisAlignedBox Scene::sceneBox() const {
    Box box;
    std::vector<Visual*> pending{root};
    while (!pending.empty()) {
        const Visual* visual = pending.back();
        pending.pop_back();
        if (isFurniture(visual)) continue;
        MergeObjects(box, visual, Count::Shown);
        for (Visual* child : visual->getChildren()) pending.push_back(child);
    }
    return box;
}

Pose Scene::getViewPoseForDir(const rob::DirTemplate<float>& dir) const {
    const Vec along = dir.asVec3().normalized();
    return {ComputeCameraFromPos(sceneBox(), along, NarrowerFov(*gCamera)),
            LevelLook(along, Vertical(settings), gCamera->getWorldRotation())};
}

Pose Scene::getViewPoseForDir(const rob::DirTemplate<float>& dir,
                              const rob::DirTemplate<float>& up) const {
    const Vec along = dir.asVec3().normalized();
    return {ComputeCameraFromPos(sceneBox(), along, NarrowerFov(*gCamera)),
            LookAlong(along, up.asVec3().normalized().cross(-along))};
}

Pose Scene::getViewAllPose() const {
    return getViewPoseForDir(rob::DirTemplate<float>(ViewDirection().normalized()));
}

Pose Scene::getViewCenterPose() const {
    const Pos from = gCamera->getWorldPosition();
    const Ogre::Vector3 centre = CentreOf(sceneBox());
    const Vec along = (Pos(centre.x, centre.y, centre.z) - from).normalized();
    return {from, LevelLook(along, Vertical(settings), gCamera->getWorldRotation())};
}

Pose Scene::getVisualFocusPose(std::uint32_t id) const {
    Visual* visual = visuals.at(id);
    Box box;
    if (const task::RobTargetDataItem* target = TargetOf(visual)) {
        const Pose pose(target->getPose());
        const Visual* parent = visual->getParent();
        const Pos at =
            parent ? rob::TransformPoint(parent->getWorldPose(), pose.position) : pose.position;
        box.merge(Ogre::Vector3(at.x, at.y, at.z));
    } else {
        box = BoxBelow(visual, Count::Shown);
        if (box.isNull()) box = BoxBelow(visual, Count::All);
        // What has no picture at all is looked for where it stands.
        if (box.isNull()) box.merge(visual->node->_getDerivedPosition());
    }
    return {ComputeCameraFromPos(box, ViewDirection(), NarrowerFov(*gCamera)),
            gCamera->getWorldRotation()};
}

}  // namespace vrn::visual
