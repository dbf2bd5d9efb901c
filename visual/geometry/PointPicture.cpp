#include "visual/geometry/PointPicture.h"

#include <algorithm>
#include <cmath>

#include <OgreManualObject.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "visual/Visual.h"

namespace vrn::visual {

namespace {

constexpr std::size_t colourParameter = 0;

// The engine takes sums and differences of bounds, turns and scales them, and aborts on what
// overflows.
constexpr double farthest = 1e15;

// Each comparison is false for a coordinate that is no number.
template <class T>
bool IsNear(const rob::PosTemplate<T>& p) {
    constexpr auto most = static_cast<T>(farthest);
    return std::abs(p.x) <= most && std::abs(p.y) <= most && std::abs(p.z) <= most;
}

Ogre::Vector4 Parameter(const rob::ColorTemplate<float>& color, float alpha) {
    return {color.r, color.g, color.b, alpha};
}

// Asks for the colours of the vertices.
const Ogre::Vector4 vertexColours(0, 0, 0, -1);

void BeginPoints(Ogre::ManualObject& picture, const std::string& materialName, std::size_t count) {
    picture.estimateVertexCount(static_cast<Ogre::uint32>(count));
    picture.begin(materialName, Ogre::RenderOperation::OT_POINT_LIST);
}

void EndPoints(Ogre::ManualObject& picture, const Ogre::Vector4& parameter) {
    // Null for a section without points.
    if (auto* section = picture.end()) section->setCustomParameter(colourParameter, parameter);
}

/// The range of heights of those points that are drawn.
class Heights {
public:
    explicit Heights(std::span<const rob::PosTemplate<float>> points) {
        for (const rob::PosTemplate<float>& p : points) {
            if (!IsDrawable(p)) continue;
            lowest = std::min(lowest, p.z);
            highest = std::max(highest, p.z);
        }
    }
    /// 0 at the lowest, 1 at the highest; half-way where there is no difference.
    [[nodiscard]] float shareOf(float height) const {
        const float range = highest - lowest;
        return range > 0 ? (height - lowest) / range : 0.5f;
    }

private:
    float lowest = static_cast<float>(farthest);
    float highest = static_cast<float>(-farthest);
};

}  // namespace

bool IsDrawable(const rob::PosTemplate<float>& point) { return IsNear(point); }
bool IsDrawable(const rob::PosTemplate<double>& point) { return IsNear(point); }

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
    BeginPoints(picture, materialName, points.size());
    for (const rob::PosTemplate<float>& p : points)
        if (IsDrawable(p)) picture.position(p.x, p.y, p.z);
    EndPoints(picture, Parameter(color, 1.0f));
}

void AddPointsByHeight(Ogre::ManualObject& picture, const std::string& materialName,
                       std::span<const rob::PosTemplate<float>> points,
                       const rob::ColorTemplate<float>& low,
                       const rob::ColorTemplate<float>& high) {
    const Heights heights(points);
    BeginPoints(picture, materialName, points.size());
    for (const rob::PosTemplate<float>& p : points) {
        if (!IsDrawable(p)) continue;
        const float share = heights.shareOf(p.z);
        picture.position(p.x, p.y, p.z);
        picture.colour(std::lerp(low.r, high.r, share), std::lerp(low.g, high.g, share),
                       std::lerp(low.b, high.b, share));
    }
    EndPoints(picture, vertexColours);
}

void SetPointColor(Ogre::ManualObject& picture, const rob::ColorTemplate<float>& color,
                   float alpha) {
    for (auto* section : picture.getSections())
        section->setCustomParameter(colourParameter, Parameter(color, alpha));
}

}  // namespace vrn::visual
