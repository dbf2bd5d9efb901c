#include "visual/geometry/PointCloudVisual.h"

#include <OgreManualObject.h>

#include "engine/Scene.h"
#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/layout/PointCloud.h"
#include "visual/geometry/Detectable.h"
#include "visual/geometry/PointPicture.h"
#include "visual/ModelNode.h"

namespace vrn::visual {

namespace {

constexpr const char* cloudLook = "PointCloud";
constexpr const char* selectedLook = "PointCloudSelected";

}  // namespace

PointCloudVisual::PointCloudVisual(Visual* parent, sdf::SdfNode* modelNode)
    : Visual(&RequireModelNode(modelNode), parent),
      cloud(dynamic_cast<const layout::PointCloud&>(*modelNode).points),
      detectable(IsDetectable(*modelNode)) {
    type = VisualType::PointCloud;
    setMaterial(cloudLook, selectedLook, "");
}

PointCloudVisual::~PointCloudVisual() { DestroyPointPicture(manualObject); }

PointCloudVisual* PointCloudVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    auto* visual = new PointCloudVisual(parent, modelNode);
    Scene::Get()->visuals[visual->id] = visual;
    visual->updateRenderPrimitive();
    return visual;
}

void PointCloudVisual::setSelectedIndices(const std::vector<unsigned long>& indices) {
    selectedIndices = {indices.begin(), indices.end()};
    draw();
}

void PointCloudVisual::setUnselectedVisible(bool show) { unselectedHidden = !show; }

void PointCloudVisual::updateRenderPrimitive() {
    draw();
    selection::VisualSelection::Get()->rebuild(this);
}

void PointCloudVisual::draw() {
    if (manualObject)
        manualObject->clear();
    else
        manualObject = MakePointPicture(this);
    const std::vector<rob::PosTemplate<float>> selected = selectedPoints();
    AddPointsByHeight(*manualObject, cloudLook, unselectedHidden ? selected : cloud, lowColor,
                      highColor);
    AddPoints(*manualObject, selectedLook, selected, selectedColor);
    updateRegistration();
}

std::vector<rob::PosTemplate<float>> PointCloudVisual::selectedPoints() const {
    std::vector<rob::PosTemplate<float>> selected;
    selected.reserve(selectedIndices.size());
    for (const std::uint64_t index : selectedIndices)
        if (index < cloud.size()) selected.push_back(cloud[index]);
    return selected;
}

void PointCloudVisual::updateRegistration() {
    auto* picking = selection::VisualSelection::Get();
    const bool registered = picking->hasVisual(this);
    if (cloud.empty() && registered) {
        detectable = picking->getObject(this)->detectable;  // a host may have set it
        picking->removeObject(this);
    }
    if (!cloud.empty() && !registered) {
        picking->addPointCloudVisual(this, detectable);
        picking->setObjectEnabled(this, visible);
    }
}

void PointCloudVisual::resetAppearance() {
    selectedIndices.clear();
    draw();
}

Box PointCloudVisual::getBoundingBox() const {
    if (!manualObject) return {};
    const Ogre::AxisAlignedBox& bounds = manualObject->getBoundingBox();
    if (bounds.isNull()) return {};  // would answer a box of one unit
    const Ogre::Vector3 &min = bounds.getMinimum(), &max = bounds.getMaximum();
    return {min.x, min.y, min.z, max.x, max.y, max.z};
}

}  // namespace vrn::visual
