#include "visual/preview/PreviewedJointVisual.h"

#include <OgreEntity.h>

#include "mesh/DynamicLines.h"
#include "visual/geometry/MeshVisual.h"

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;

constexpr float firstReach = 1000;
constexpr unsigned char overSceneQueueGroup = 80;

}  // namespace

PreviewedJointVisual::PreviewedJointVisual(Visual* parent)
    : Visual(parent), line(std::make_unique<DynamicLines>(RenderOpType::LineStrip)) {
    type = VisualType::Helper;
    attachObject(line.get());
    line->addPoint(-firstReach, 0, 0);
    line->addPoint(firstReach, 0, 0);
    line->update();
    setMaterial("JointAxis", "", "");
    Visual::resetAppearance();

    const char* const mesh = "joint_arrow_head";
    arrow = new MeshVisual(mesh, this);
    arrow->attachMesh(mesh);
    arrow->getEntity()->setRenderQueueGroup(overSceneQueueGroup);
    arrow->setMaterial("Axis", "Axis", "Axis");
    arrow->resetAppearance();
    arrow->setColor("#FFA725");
}

// The line detaches itself when it dies, so it may go before the node.
PreviewedJointVisual::~PreviewedJointVisual() = default;

void PreviewedJointVisual::setStartAndEnd(const Pos& start, const Pos& end) {
    line->setPoint(0, start);
    line->setPoint(1, end);
    line->update();
    const rob::Vec3Template<float> along = (end - start).normalized();
    if (!arrow) return;
    arrow->setRotation(rob::RotationTemplate<float>::From2Dirs({0, 0, 1}, along));
    arrow->setPosition(end);
}

void PreviewedJointVisual::forgetChild(const Visual* child) {
    if (child == arrow) arrow = nullptr;
}

}  // namespace vrn::visual
