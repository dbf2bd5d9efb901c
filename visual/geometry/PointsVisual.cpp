#include "visual/geometry/PointsVisual.h"

#include <OgreManualObject.h>

#include "visual/geometry/PointPicture.h"

namespace vrn::visual {

namespace {

constexpr const char* previewLook = "PointPreview";

}  // namespace

PointsVisual::PointsVisual(Visual* parent, std::vector<rob::PosTemplate<float>> setPoints,
                           const rob::ColorTemplate<float>& color)
    : Visual(parent), points(std::move(setPoints)), manualObject(MakePointPicture(this)) {
    AddPoints(*manualObject, previewLook, points, color);
    setMaterial(previewLook, previewLook, previewLook);
}

PointsVisual::~PointsVisual() { DestroyPointPicture(manualObject); }

void PointsVisual::setColor(const rob::ColorTemplate<float>& color, float alpha) {
    SetPointColor(*manualObject, color, alpha);
}

}  // namespace vrn::visual
