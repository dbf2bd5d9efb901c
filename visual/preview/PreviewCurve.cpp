#include "visual/preview/PreviewCurve.h"

#include <memory>

#include "engine/Scene.h"
#include "mesh/DynamicLines.h"
#include "visual/geometry/MeshVisual.h"

namespace vrn::visual {

namespace {

constexpr const char* look = "PreviewCurve";

}  // namespace

PreviewCurve* PreviewCurve::Build(const std::string& name, std::uint32_t shownFor,
                                  const rob::PoseTemplate<float>& worldPose,
                                  const std::vector<rob::PosTemplate<double>>& points) {
    // Ours until it is whole: a pose that is refused must leave nothing in the tree.
    std::unique_ptr<PreviewCurve> curve(new PreviewCurve(name, Scene::Get()->root));
    curve->id = shownFor;
    curve->type = VisualType::PreviewCurve;
    DynamicLines* line = curve->createDynamicLine(RenderOpType::LineStrip);
    for (const rob::PosTemplate<double>& point : points) {
        const rob::PosTemplate<float> p(point);
        line->addPoint(p.x, p.y, p.z);
    }
    curve->setMaterial(look, look, look);
    curve->resetAppearance();
    curve->update();
    curve->setPose(worldPose);
    return curve.release();
}

PreviewCurve* PreviewCurve::Build(const std::string& name, std::uint32_t shownFor,
                                  const rob::PoseTemplate<float>& worldPose,
                                  const std::vector<rob::PosTemplate<double>>& points,
                                  const rob::Vec3Template<float>& direction, std::size_t arrowAt) {
    std::unique_ptr<PreviewCurve> curve(Build(name, shownFor, worldPose, points));
    if (arrowAt < points.size() && static_cast<double>(direction.length()) > rob::zeroLength)
        curve->addArrow(rob::PosTemplate<float>(points[arrowAt]),
                        rob::DirTemplate<float>(direction));
    return curve.release();
}

void PreviewCurve::addArrow(const rob::PosTemplate<float>& position,
                            const rob::DirTemplate<float>& direction) {
    MeshVisual* added = MeshVisual::BuildArrow(this, position, direction);
    if (arrow) Scene::Get()->deleteVisual(arrow);
    arrow = added;
}

void PreviewCurve::forgetChild(const Visual* child) {
    if (child == arrow) arrow = nullptr;
}

}  // namespace vrn::visual
