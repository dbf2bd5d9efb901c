#pragma once

#include <span>
#include <string>

#include "suite/rob/VectorTypes.h"

namespace Ogre {
class ManualObject;
}

namespace vrn::visual {

class Visual;

/// Whether a picture shows the point: false if it is not finite or lies beyond 1e15 on an axis.
/// Thread: pure.
[[nodiscard]] bool IsDrawable(const rob::PosTemplate<float>& point);
[[nodiscard]] bool IsDrawable(const rob::PosTemplate<double>& point);

/// A picture of points on the visual's node, empty yet. The visual owns it and has to destroy it.
/// Thread: render.
Ogre::ManualObject* MakePointPicture(Visual* visual);
/// Does nothing for null. Thread: render.
void DestroyPointPicture(Ogre::ManualObject* picture);

/// Appends the points, in the frame of the visual, as a section of its own in one colour. Points
/// that are not finite, or lie beyond 1e15 on an axis, are left out; without any point there is no
/// section. Thread: render.
void AddPoints(Ogre::ManualObject& picture, const std::string& materialName,
               std::span<const rob::PosTemplate<float>> points,
               const rob::ColorTemplate<float>& color);

/// The same with a colour for each point by its height: from `low` at the smallest z to `high` at
/// the largest, so that the shape of a surface can be seen in points that have no shade. Thread:
/// render.
void AddPointsByHeight(Ogre::ManualObject& picture, const std::string& materialName,
                       std::span<const rob::PosTemplate<float>> points,
                       const rob::ColorTemplate<float>& low, const rob::ColorTemplate<float>& high);

/// The colour of all sections; `alpha` is 1 for opaque. Thread: render.
void SetPointColor(Ogre::ManualObject& picture, const rob::ColorTemplate<float>& color,
                   float alpha);

}  // namespace vrn::visual
