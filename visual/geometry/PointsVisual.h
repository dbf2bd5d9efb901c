#pragma once

#include <vector>

#include "visual/Visual.h"

namespace Ogre {
class ManualObject;
}

namespace vrn::visual {

/// A set of preview points under `parent`, in one colour; in no registry and not pickable. Points
/// that are not finite, or lie beyond 1e15 on an axis, are not drawn. Thread: render.
class VRN_VISUAL_API PointsVisual : public Visual {
public:
    PointsVisual(Visual* parent, std::vector<rob::PosTemplate<float>> setPoints,
                 const rob::ColorTemplate<float>& color);
    ~PointsVisual() override;

    /// Components 0 to 1; `alpha` is 1 for opaque.
    void setColor(const rob::ColorTemplate<float>& color, float alpha);
    /// In the frame of the visual, as given.
    [[nodiscard]] const std::vector<rob::PosTemplate<float>>& getPoints() const { return points; }

private:
    std::vector<rob::PosTemplate<float>> points;
    Ogre::ManualObject* manualObject;
};

}  // namespace vrn::visual
