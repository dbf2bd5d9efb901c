#include "visual/geometry/ArrowVisual.h"

#include <stdexcept>

#include <BRep_Tool.hxx>
#include <BRepAdaptor_Curve.hxx>
#include <gp_Pnt.hxx>
#include <gp_Vec.hxx>
#include <TopoDS_Edge.hxx>

namespace vrn::visual {

ArrowVisual::ArrowVisual(Visual* parent) : MeshVisual("ArrowAxis", parent) {}

ArrowVisual* ArrowVisual::Build(Visual* parent, const rob::PosTemplate<float>& position,
                                const rob::Vec3Template<float>& direction,
                                const std::string& hexColor) {
    const auto rotation = rob::RotationTemplate<float>::From2Dirs({0, 0, 1}, direction);
    auto* arrow = new ArrowVisual(parent);
    arrow->attachMesh("mfg_arrow");
    arrow->setMaterial("Axis", "Axis", "Axis");
    arrow->resetAppearance();
    arrow->setColor(hexColor);
    arrow->setPosition(position);
    arrow->setRotation(rotation);
    return arrow;
}

ArrowVisual* ArrowVisual::Build(Visual* parent, const TopoDS_Edge& edge, bool atEnd) {
    if (edge.IsNull() || BRep_Tool::Degenerated(edge))
        throw std::invalid_argument("an arrow needs an edge with a curve");
    const BRepAdaptor_Curve curve(edge);
    // A reversed edge runs against its curve.
    const bool reversed = edge.Orientation() == TopAbs_REVERSED;
    gp_Pnt point;
    gp_Vec tangent;
    curve.D1(atEnd != reversed ? curve.LastParameter() : curve.FirstParameter(), point, tangent);
    if (reversed) tangent.Reverse();
    return Build(parent,
                 rob::PosTemplate<float>(
                     rob::PosTemplate<double>(point.X(), point.Y(), point.Z())),
                 rob::Vec3Template<float>(
                     rob::Vec3Template<double>(tangent.X(), tangent.Y(), tangent.Z())));
}

}  // namespace vrn::visual
