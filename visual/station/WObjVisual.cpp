#include "visual/station/WObjVisual.h"

#include <format>
#include <stdexcept>

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "suite/sdf/SdfManager.h"
#include "suite/task/DataItem.h"
#include "visual/ModelNode.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/ModelPose.h"

namespace vrn::visual {

namespace {

using Pose = rob::PoseTemplate<float>;

const task::ObjectFrame& ObjectFrameOf(const task::WObjDataItem& item) {
    const task::ObjectFrame* frame = item.getObjectFrame();
    if (!frame)
        throw std::invalid_argument(
            std::format("the work object \"{}\" (id {}) has no object frame", item.name, item.id));
    return *frame;
}

}  // namespace

WObjVisual::WObjVisual(Visual* parent, sdf::SdfNode* modelNode)
    : Visual(RequireModelNode(modelNode).id,
             std::format("__WOBJ_{}", RequireModelNode(modelNode).id), parent),
      node(modelNode) {
    // Read before anything is registered: a refused item must leave no pointer to this behind.
    const auto& item = dynamic_cast<const task::WObjDataItem&>(*modelNode);
    const task::ObjectFrame& objectFrame = ObjectFrameOf(item);
    const Pose userPose = ModelPose(item), objectPose = ModelPose(objectFrame);

    type = VisualType::WObj;
    walkStop = true;
    Scene* scene = Scene::Get();
    scene->visuals[id] = this;
    uframe = new FrameVisual(this, sdf::SdfManager::GenerateTransientId(),
                             std::format("uframe{}", id), VisualType::WObjUserFrame);
    oframe = new FrameVisual(uframe, objectFrame.id, std::format("oframe{}", objectFrame.id),
                             VisualType::WObjObjectFrame);
    objectFrameId = oframe->id;
    scene->visuals[objectFrameId] = oframe;
    if (item.hasFixedUFrame()) setPose(userPose);
    setObjectFrame(objectPose);
}

void WObjVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    auto* wobj = new WObjVisual(parent, modelNode);
    Scene::Get()->visuals[wobj->id] = wobj;
    selection::VisualSelection::Get()->addLineVisual(wobj->uframe);
    selection::VisualSelection::Get()->addLineVisual(wobj->oframe);
}

FrameVisual* WObjVisual::getObjectFrame() const {
    const auto& visuals = Scene::Get()->visuals;
    const auto found = visuals.find(objectFrameId);
    return found != visuals.end() && found->second == oframe ? oframe : nullptr;
}

void WObjVisual::forgetChild(const Visual* child) {
    if (child == uframe) uframe = nullptr;
}

std::vector<FrameVisual*> WObjVisual::frames() const {
    std::vector<FrameVisual*> present{uframe, getObjectFrame()};
    std::erase(present, nullptr);
    return present;
}

void WObjVisual::setFrameSize(unsigned size) {
    for (FrameVisual* frame : frames()) frame->setFrameSize(size);
}

void WObjVisual::setObjectFrame(const Pose& pose) {
    if (FrameVisual* frame = getObjectFrame()) frame->setPose(pose);
}

void WObjVisual::update() {
    const auto& item = dynamic_cast<const task::WObjDataItem&>(*node);
    const Pose userPose = ModelPose(item), objectPose = ModelPose(ObjectFrameOf(item));
    Scene::Get()->visuals.at(node->parentId)->attachVisual(this);
    setPose(userPose);
    setObjectFrame(objectPose);
    for (FrameVisual* frame : frames()) selection::VisualSelection::Get()->markDirty(frame);
}

void WObjVisual::resetAppearance() {
    for (FrameVisual* frame : frames()) frame->resetAppearance();
}

void WObjVisual::setSelected() {
    for (FrameVisual* frame : frames()) frame->setSelected();
}

void WObjVisual::setHighlighted() {
    for (FrameVisual* frame : frames()) frame->setHighlighted();
}

}  // namespace vrn::visual
