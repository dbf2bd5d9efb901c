#include "visual/preview/UVIndicatorVisual.h"

#include <BRep_Tool.hxx>
#include <BRepTools.hxx>
#include <Geom_Surface.hxx>
#include <gp_Pnt.hxx>
#include <gp_Vec.hxx>
#include <TopoDS_Face.hxx>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include <OgreEntity.h>

#include "visual/geometry/MeshVisual.h"

namespace vrn::visual {

namespace {

constexpr unsigned char overSceneQueueGroup = 80;

rob::Vec3Template<double> ToVec(const gp_Vec& v) { return {v.X(), v.Y(), v.Z()}; }

// The mesh reaches 20 from its middle; on a face of a metre that would be a dot. Endless faces
// count as large ones.
double ScaleFor(double uExtent, double vExtent) {
    constexpr double reach = 20, share = 0.4, largest = 100;
    const double shorter = std::min(uExtent, vExtent);
    return std::isfinite(shorter) ? std::clamp(shorter * share / reach, 1.0, largest) : 1.0;
}

}  // namespace

UVIndicatorVisual* UVIndicatorVisual::Build(Visual* parent) {
    auto* indicator = new UVIndicatorVisual("uvdirection", parent);
    indicator->type = VisualType::UVIndicator;
    const char* const mesh = "uv_indicator";
    auto* arrows = new MeshVisual(mesh, indicator);
    arrows->attachMesh(mesh);
    arrows->getEntity()->setRenderQueueGroup(overSceneQueueGroup);
    arrows->setMaterial("UVIndicator", "UVIndicator", "UVIndicator");
    arrows->resetAppearance();
    indicator->setVisible(false, /*cascade=*/true);
    return indicator;
}

void UVIndicatorVisual::show(const TopoDS_Face& face) {
    const auto surface = face.IsNull() ? nullptr : BRep_Tool::Surface(face);
    if (surface.IsNull())
        throw std::invalid_argument("the directions of a face need a face with a surface");
    double uMin = 0, uMax = 0, vMin = 0, vMax = 0;
    BRepTools::UVBounds(face, uMin, uMax, vMin, vMax);
    gp_Pnt point;
    gp_Vec alongU, alongV;
    surface->D1((uMin + uMax) * 0.5, (vMin + vMax) * 0.5, point, alongU, alongV);
    const auto u = ToVec(alongU).normalized(), v = ToVec(alongV).normalized();
    const auto normal = u.cross(v).normalized();
    using Vec = rob::Vec3Template<float>;
    setPose({rob::PosTemplate<float>(rob::PosTemplate<double>(point.X(), point.Y(), point.Z())),
             rob::RotationTemplate<float>::FromAxes(Vec(u), Vec(normal.cross(u)), Vec(normal))});
    if (getChildren().empty()) return;
    const double scale =
        ScaleFor(alongU.Magnitude() * (uMax - uMin), alongV.Magnitude() * (vMax - vMin));
    getChildren().front()->setScale(scale, scale, scale);
}

}  // namespace vrn::visual
