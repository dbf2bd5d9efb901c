#include "visual/geometry/PointPicture.h"

#include <cmath>

#include <OgreManualObject.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "visual/Visual.h"

namespace vrn::visual {

namespace {

constexpr std::size_t colourParameter = 0;

// One such point would take the bounds, and with them the whole picture, out of sight.
bool IsFinite(const rob::PosTemplate<float>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

Ogre::Vector4 Parameter(const rob::ColorTemplate<float>& color, float alpha) {
    return {color.r, color.g, color.b, alpha};
}

}  // namespace

Ogre::ManualObject* MakePointPicture(Visual* visual) {
    Ogre::ManualObject* picture = visual->node->getCreator()->createManualObject();
    visual->attachObject(picture);
    return picture;
}

void DestroyPointPicture(Ogre::ManualObject* picture) {
    if (picture) picture->_getManager()->destroyManualObject(picture);
}

void AddPoints(Ogre::ManualObject& picture, const std::string& materialName,
               std::span<const rob::PosTemplate<float>> points,
               const rob::ColorTemplate<float>& color) {
    picture.estimateVertexCount(static_cast<Ogre::uint32>(points.size()));
    picture.begin(materialName, Ogre::RenderOperation::OT_POINT_LIST);
    for (const rob::PosTemplate<float>& p : points)
        if (IsFinite(p)) picture.position(p.x, p.y, p.z);
    // Null for a section without points.
    if (auto* section = picture.end())
        section->setCustomParameter(colourParameter, Parameter(color, 1.0f));
}

void SetPointColor(Ogre::ManualObject& picture, const rob::ColorTemplate<float>& color,
                   float alpha) {
    for (auto* section : picture.getSections())
        section->setCustomParameter(colourParameter, Parameter(color, alpha));
}

}  // namespace vrn::visual
