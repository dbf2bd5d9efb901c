// From the model's objects to visuals: the whole station, and single objects.

#include <OgreSceneNode.h>

#include <algorithm>
#include <stdexcept>

#include "engine/Scene.h"
#include "suite/layout/Frame.h"
#include "suite/layout/Layout.h"
#include "suite/layout/Mechanism.h"
#include "suite/layout/Part.h"
#include "suite/layout/PointCloud.h"
#include "suite/sdf/SdfNode.h"
#include "suite/smart/SmartComponent.h"
#include "suite/smart/StationLogic.h"
#include "suite/task/Task.h"
#include "view/Camera.h"
#include "visual/geometry/PointCloudVisual.h"
#include "visual/process/SprayVisual.h"
#include "visual/station/AssemblyVisual.h"
#include "visual/station/DeviceVisual.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/ManipulatorVisual.h"
#include "visual/station/PartVisual.h"
#include "visual/station/SensorVisual.h"
#include "visual/station/ToolVisual.h"
#include "visual/station/UserComponentVisual.h"
#include "visual/Visual.h"

namespace vrn::visual {

namespace {

// A view point that close to the origin, without any turn, was never saved.
constexpr double savedViewPointSquared = 1e-5;

bool IsSaved(const rob::PoseTemplate<double>& viewPoint) {
    return viewPoint.position.asVec3().squaredLength() >= savedViewPointSquared ||
           !viewPoint.rotation.isApprox(rob::RotationTemplate<double>{});
}

// Those that stand in the station itself; what stands inside a compound is built by it.
template <class Object, class Action>
void ForEachStandalone(const std::vector<Object*>& objects, Action action) {
    for (Object* object : objects)
        if (object->isStandalone()) action(object);
}

}  // namespace

Visual* Scene::resolveParentVisual(const sdf::SdfNode* modelNode) const {
    if (!modelNode) throw std::invalid_argument("the model object to show must not be null");
    const std::uint32_t parentId = modelNode->parentId;
    if (parentId == 0 || parentId == smartcomp::StationLogic::inst()->id) return root;
    const auto found = visuals.find(parentId);
    return found == visuals.end() ? root : found->second;
}

void Scene::LoadStation() {
    post([this] { doLoadStation(); });
    // Posted behind the load, so that the visuals exist when these run.
    for (const std::uint32_t id : layout::Layout::inst()->visibilities())
        setVisualVisible(id, false);
}

void Scene::doLoadStation() {
    const layout::Layout& layout = *layout::Layout::inst();
    for (layout::Manipulator* robot : layout.manipulators()) buildManipulator(robot);
    ForEachStandalone(layout.assemblies(), [this](layout::Assembly* assembly) {
        AssemblyVisual::Build(resolveParentVisual(assembly), assembly);
    });
    ForEachStandalone(layout.parts(), [this](layout::Part* part) {
        PartVisual::Build(resolveParentVisual(part), part);
    });
    ForEachStandalone(layout.pointclouds(), [this](layout::PointCloud* cloud) {
        PointCloudVisual::Build(resolveParentVisual(cloud), cloud);
    });
    const auto build = [this](sdf::SdfNode* mechanism) {
        buildMechanism(mechanism, /*buildChildren=*/true);
    };
    ForEachStandalone(layout.tools(), build);
    ForEachStandalone(layout.devices(), build);
    for (layout::Frame* frame : layout.frames())
        FrameVisual::Build(resolveParentVisual(frame), frame);
    for (smartcomp::SmartComponent* component : smartcomp::GetAllSmartComponents())
        if (component->isTopLevel()) buildSmartComponent(component);
    for (const task::Task* job : task::GetAllTasks()) buildTask(job->id);
    doRestoreCamera();
    for (const layout::Attachment& attachment : layout.attachments())
        doAddAttachment(attachment.childId, attachment.parentId, attachment.pose);
    drainLoadTasks();
}

void Scene::buildManipulator(layout::Manipulator* robot) {
    buildMechanism(robot, /*buildChildren=*/true);
    if (const layout::BaseFrame* base = robot->baseObject())
        FrameVisual::Build(root, base->id, rob::PoseTemplate<float>(base->getPose()));
}

void Scene::buildMechanism(sdf::SdfNode* modelNode, bool buildChildren) {
    Visual* parent = resolveParentVisual(modelNode);
    switch (modelNode->objectType) {
        case sdf::ObjectType::Manipulator:
            return ManipulatorVisual::Build(parent, modelNode, buildChildren);
        case sdf::ObjectType::Tool:
            return ToolVisual::Build(parent, modelNode, buildChildren);
        case sdf::ObjectType::Device:
            return DeviceVisual::Build(parent, modelNode, buildChildren);
        default:
            return;
    }
}

void Scene::buildSmartComponent(sdf::SdfNode* modelNode) {
    Visual* parent = resolveParentVisual(modelNode);  // first: it refuses null
    const auto& object = dynamic_cast<const sdf::SdfObject&>(*modelNode);
    if (object.asType(sdf::ObjectType::UserComponent))
        UserComponentVisual::Build(parent, modelNode);
    else if (object.asType(sdf::ObjectType::Sensor))
        SensorVisual::Build(parent, modelNode);
}

void Scene::doRestoreCamera() {
    const rob::PoseTemplate<double>& saved = layout::Layout::inst()->lastViewPointPose();
    if (!IsSaved(saved)) return;
    const rob::PoseTemplate<float> pose(saved);
    gCamera->setWorldPosition(pose.position);
    gCamera->setWorldRotation(pose.rotation);
}

void Scene::addPart(sdf::SdfNode* modelNode) {
    post([this, modelNode] { PartVisual::Build(resolveParentVisual(modelNode), modelNode); });
}

void Scene::addAssembly(sdf::SdfNode* modelNode) {
    post([this, modelNode] { AssemblyVisual::Build(resolveParentVisual(modelNode), modelNode); });
}

void Scene::addMechanism(sdf::SdfNode* modelNode, bool buildChildren) {
    post([this, modelNode, buildChildren] { buildMechanism(modelNode, buildChildren); });
}

void Scene::addSmartComponent(sdf::SdfNode* modelNode) {
    post([this, modelNode] {
        if (modelNode && modelNode->objectType == sdf::ObjectType::SprayComponent)
            SprayVisual::Build(resolveParentVisual(modelNode), modelNode);
        else
            buildSmartComponent(modelNode);
    });
}

void Scene::updateSensor(std::uint32_t id) {
    post([this, id] { doUpdateSensor(id); });
}

void Scene::doUpdateSensor(std::uint32_t id) {
    Visual* sensor = visuals.at(id);
    sensor->update();
    if (std::ranges::find(selectedVisuals, id) == selectedVisuals.end()) return;
    // The new children have not seen the selection.
    stateManager->setLayer(sensor, VisualStateLayer::Selected, /*on=*/true, "");
    stateManager->refresh(sensor);
}

void Scene::addPointCloud(sdf::SdfNode* modelNode) {
    post([this, modelNode] { PointCloudVisual::Build(resolveParentVisual(modelNode), modelNode); });
}

void Scene::addFrame(sdf::SdfNode* modelNode) {
    post([this, modelNode] { FrameVisual::Build(resolveParentVisual(modelNode), modelNode); });
}

void Scene::addTaskFrame(std::uint32_t id, const rob::PoseTemplate<double>& pose) {
    post([this, id, pose] { FrameVisual::Build(root, id, rob::PoseTemplate<float>(pose)); });
}

}  // namespace vrn::visual
