// From the model's objects to visuals: the whole station, and single objects.

#include <OgreSceneNode.h>

#include "engine/Scene.h"
#include "suite/layout/Frame.h"
#include "suite/layout/Layout.h"
#include "suite/layout/Part.h"
#include "suite/sdf/SdfNode.h"
#include "suite/smart/StationLogic.h"
#include "view/Camera.h"
#include "visual/Visual.h"
#include "visual/station/AssemblyVisual.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/PartVisual.h"

namespace vrn::visual {

namespace {

// A view point that close to the origin, without any turn, was never saved.
constexpr double savedViewPointSquared = 1e-5;

bool IsSaved(const rob::PoseTemplate<double>& viewPoint) {
    return viewPoint.position.asVec3().squaredLength() >= savedViewPointSquared ||
           !viewPoint.rotation.isApprox(rob::RotationTemplate<double>{});
}

}  // namespace

Visual* Scene::resolveParentVisual(const sdf::SdfNode* modelNode) const {
    const std::uint32_t parentId = modelNode->parentId;
    if (parentId == 0 || parentId == smartcomp::StationLogic::inst()->id) return root;
    const auto found = visuals.find(parentId);
    return found == visuals.end() ? root : found->second;
}

void Scene::LoadStation() {
    post([this] { doLoadStation(); });
    // Posted behind the load, so that the visuals exist when these run.
    for (const std::uint32_t id : layout::Layout::inst()->visibilities()) setVisualVisible(id, false);
}

void Scene::doLoadStation() {
    const layout::Layout& layout = *layout::Layout::inst();
    for (layout::Assembly* assembly : layout.assemblies())
        if (assembly->isStandalone()) AssemblyVisual::Build(resolveParentVisual(assembly), assembly);
    for (layout::Part* part : layout.parts())
        if (part->isStandalone()) PartVisual::Build(resolveParentVisual(part), part);
    for (layout::Frame* frame : layout.frames())
        FrameVisual::Build(resolveParentVisual(frame), frame);
    doRestoreCamera();
    for (const layout::Attachment& attachment : layout.attachments())
        doAddAttachment(attachment.childId, attachment.parentId, attachment.pose);
    drainLoadTasks();
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

void Scene::addFrame(sdf::SdfNode* modelNode) {
    post([this, modelNode] {
        const std::uint32_t parentId = modelNode->parentId;
        FrameVisual::Build(parentId == 0 ? root : visuals.at(parentId), modelNode);
    });
}

void Scene::addTaskFrame(std::uint32_t id, const rob::PoseTemplate<double>& pose) {
    post([this, id, pose] { FrameVisual::Build(root, id, rob::PoseTemplate<float>(pose)); });
}

}  // namespace vrn::visual
