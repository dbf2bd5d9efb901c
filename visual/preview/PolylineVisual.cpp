#include "visual/preview/PolylineVisual.h"

#include <format>
#include <memory>

#include "suite/sdf/SdfManager.h"
#include "visual/geometry/MeshVisual.h"

namespace vrn::visual {

PolylineVisual::PolylineVisual(std::uint32_t idIn, Visual* parent)
    : Visual(idIn, std::format("polyline{}", idIn), parent), line(RenderOpType::LineStrip) {
    attachObject(&line);
}

PolylineVisual* PolylineVisual::Build(Visual* parent,
                                      const std::vector<rob::PosTemplate<float>>& points,
                                      bool withArrow) {
    constexpr const char* look = "PreviewCurve";
    const bool hasArrow = withArrow && points.size() >= 2;
    rob::Vec3Template<float> along;
    if (hasArrow) along = (points[1] - points[0]).normalized();

    // Ours until it is whole: an arrow that is refused must leave nothing in the tree.
    std::unique_ptr<PolylineVisual> polyline(
        new PolylineVisual(sdf::SdfManager::GenerateTransientId(), parent));
    polyline->setMaterial(look, look, look);
    polyline->resetAppearance();
    for (const rob::PosTemplate<float>& point : points) polyline->addPoint(point);
    polyline->update();
    if (hasArrow)
        MeshVisual::BuildArrow(polyline.get(), points.front(), rob::DirTemplate<float>(along));
    return polyline.release();
}

void PolylineVisual::addPoint(const rob::PosTemplate<float>& point) {
    line.addPoint(point.x, point.y, point.z);
}

void PolylineVisual::update() { line.update(); }

}  // namespace vrn::visual
