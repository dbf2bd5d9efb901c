#include "visual/handle/RingHandle.h"

#include <cmath>
#include <format>
#include <stdexcept>
#include <utility>

#include <OgreEntity.h>
#include <OgreManualObject.h>
#include <OgreMaterialManager.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "suite/sdf/SdfManager.h"

namespace vrn::visual {

namespace {

using Vec = rob::Vec3Template<float>;

constexpr double pi = 3.14159265358979323846;
constexpr double leastDegrees = 1.0;
constexpr double degreesPerStep = 5.0;
constexpr double mostDegrees = 360'000.0;
constexpr float sectorRadius = 150.0f;  // that of the ring
constexpr std::size_t colourParameter = 0;

Ogre::Vector3 ToOgre(const Vec& v) { return {v.x, v.y, v.z}; }

}  // namespace

RingHandle::RingHandle(Look lookIn, Visual* parent)
    : HandleMeshVisual(sdf::SdfManager::GenerateTransientId(), lookIn.name, parent),
      look(std::move(lookIn)),
      sectorObject(node->getCreator()->createManualObject()) {
    attachObject(sectorObject);
    showHandleMesh(look.name);
    setMaterial("Axis", "", "HandleHighlight");
    RingHandle::resetAppearance();
}

RingHandle::~RingHandle() { node->getCreator()->destroyManualObject(sectorObject); }

void RingHandle::useOnRing(const std::string& materialName) {
    const Ogre::MaterialPtr found = Ogre::MaterialManager::getSingleton().getByName(materialName);
    if (found && getEntity()) getEntity()->setMaterial(found);
}

void RingHandle::setHighlighted() { useOnRing(highlightedMaterial); }

void RingHandle::resetAppearance() {
    useOnRing(material);
    setColor(look.color);
}

void RingHandle::drawSector(double radians) {
    const double degrees = std::abs(radians) * 180.0 / pi;
    if (!(degrees <= mostDegrees))
        throw std::invalid_argument(std::format("a ring cannot be turned by {} radians", radians));
    sectorObject->clear();
    if (degrees < leastDegrees) return;

    const int steps = static_cast<int>(degrees / degreesPerStep) + 1;
    const double stepAngle = -radians / steps;
    sectorObject->begin("TransparentHandle", Ogre::RenderOperation::OT_TRIANGLE_FAN,
                        Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
    const auto addVertex = [&](const Vec& position) {
        sectorObject->position(ToOgre(position));
        sectorObject->normal(ToOgre(look.axis));
    };
    addVertex({0, 0, 0});
    for (int i = 0; i <= steps; ++i) {
        const rob::RotationTemplate<float> turn(static_cast<float>(i * stepAngle), look.axis);
        addVertex(turn * Vec{0, 0, 1} * sectorRadius);
    }
    if (auto* section = sectorObject->end())
        section->setCustomParameter(colourParameter, look.sectorColor);
    sectorObject->setRenderQueueGroup(handleQueueGroup);
}

}  // namespace vrn::visual
