#include "visual/station/FrameVisual.h"

#include <algorithm>
#include <cmath>
#include <format>
#include <memory>

#include <OgreMaterialManager.h>

#include "engine/Scene.h"
#include "mesh/DynamicLines.h"
#include "selection/VisualSelection.h"
#include "suite/sdf/SdfManager.h"
#include "suite/sdf/SdfNode.h"
#include "visual/ModelNode.h"
#include "visual/station/FrameSize.h"
#include "visual/station/ModelPose.h"

namespace vrn::visual {

namespace {

// Of the golden section: dashes read as dashes, not as dots.
constexpr double dashUnits = 1.618;

void UseMaterial(DynamicLines* line, const char* name) {
    const Ogre::MaterialPtr material = Ogre::MaterialManager::getSingleton().getByName(
        name, Ogre::ResourceGroupManager::AUTODETECT_RESOURCE_GROUP_NAME);
    if (material) line->setMaterial(material);
}

VisualType FrameType(VisualType type) {
    return type == VisualType::None ? VisualType::Frame : type;
}

std::string FrameName(const std::string& name, std::uint32_t id) {
    return name.empty() ? std::format("__FRAME_{}__", id) : name;
}

}  // namespace

FrameVisual::FrameVisual(Visual* parent, std::uint32_t idIn, const std::string& name,
                         VisualType frameType, const std::vector<float>& points)
    : LineVisual(idIn, SharedName{FrameName(name, idIn)}, parent) {
    type = frameType;
    createAxes(points);
}

FrameVisual::FrameVisual(Visual* parent, float size)
    : FrameVisual(parent, sdf::SdfManager::GenerateTransientId(), "", VisualType::Frame,
                  {0.0f, size}) {}

FrameVisual::FrameVisual(Visual* parent, std::uint32_t idIn, const std::string& name,
                         VisualType frameType)
    : FrameVisual(parent, idIn, name, FrameType(frameType),
                  {0.0f, FrameSizeOfType(FrameType(frameType))}) {}

FrameVisual::FrameVisual(Visual* parent, const std::string& name, VisualType frameType,
                         unsigned dashCount)
    : FrameVisual(parent, sdf::SdfManager::GenerateTransientId(), name, FrameType(frameType),
                  dashPoints(FrameSizeOfType(FrameType(frameType)), dashCount)) {}

std::vector<float> FrameVisual::dashPoints(double size, unsigned dashCount) {
    const unsigned n = std::max(dashCount, 1u);
    const double unit = size / (n * (dashUnits + 1) - 1);
    std::vector<float> points{0.0f};
    double p = 0;
    for (unsigned i = 1; i < n; ++i) {
        p = std::trunc(p + dashUnits * unit);
        points.push_back(static_cast<float>(p));
        p = std::trunc(p + unit);
        points.push_back(static_cast<float>(p));
    }
    points.push_back(static_cast<float>(size));
    return points;
}

void FrameVisual::createAxes(const std::vector<float>& points) {
    axisX = createDynamicLine(RenderOpType::LineList);
    axisY = createDynamicLine(RenderOpType::LineList);
    axisZ = createDynamicLine(RenderOpType::LineList);
    for (const float p : points) {
        axisX->addPoint(p, 0, 0);
        axisY->addPoint(0, p, 0);
        axisZ->addPoint(0, 0, p);
    }
    FrameVisual::resetAppearance();
    LineVisual::update();
}

FrameVisual* FrameVisual::Build(Visual* parent, unsigned dashCount) {
    auto* frame = new FrameVisual(parent, "frame", VisualType::Frame, dashCount);
    frame->setSelected();
    frame->setVisible(false, /*cascade=*/false);
    return frame;
}

void FrameVisual::Build(Visual* parent, std::uint32_t idIn, const rob::PoseTemplate<float>& pose) {
    // Ours until it has its place: a pose that is refused leaves nothing in the tree.
    auto frame =
        std::make_unique<FrameVisual>(parent, idIn, "task frame for controller", VisualType::Frame);
    frame->setPose(pose);
    Scene::Get()->visuals[idIn] = frame.get();
    frame.release();
}

void FrameVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    const rob::PoseTemplate<float> pose = ModelPose(RequireModelNode(modelNode));
    auto* frame = new FrameVisual(parent, modelNode->id, modelNode->name, VisualType::Frame);
    Scene::Get()->visuals[frame->id] = frame;
    frame->setPose(pose);
    selection::VisualSelection::Get()->addLineVisual(frame);
}

void FrameVisual::setFrameSize(unsigned size) {
    const auto length = static_cast<float>(size);
    axisX->setPoint(1, {length, 0, 0});
    axisY->setPoint(1, {0, length, 0});
    axisZ->setPoint(1, {0, 0, length});
    update();
}

void FrameVisual::resetAppearance() {
    UseMaterial(axisX, "RedFrameLine");
    UseMaterial(axisY, "GreenFrameLine");
    UseMaterial(axisZ, "BlueFrameLine");
}

void FrameVisual::setSelected() {
    UseMaterial(axisX, "RedFrameLineSelected");
    UseMaterial(axisY, "GreenFrameLineSelected");
    UseMaterial(axisZ, "BlueFrameLineSelected");
}

void FrameVisual::setHighlighted() {
    for (DynamicLines* axis : {axisX, axisY, axisZ}) UseMaterial(axis, "WhiteFrameLine");
}

}  // namespace vrn::visual
