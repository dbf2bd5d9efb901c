#include "visual/geometry/ArrowVisual.h"

#include <memory>
#include <stdexcept>

#include <BRep_Tool.hxx>
#include <BRepAdaptor_Curve.hxx>
#include <gp_Pnt.hxx>
#include <gp_Vec.hxx>
#include <TopoDS_Edge.hxx>

namespace vrn::visual {

ArrowVisual::ArrowVisual(Visual* parent) : MarkVisual("ArrowAxis", parent) {}

ArrowVisual* ArrowVisual::Build(Visual* parent, const rob::PosTemplate<float>& position,
                                const rob::Vec3Template<float>& direction,
                                const std::string& hexColor) {
    const auto rotation = rob::RotationTemplate<float>::From2Dirs({0, 0, 1}, direction);
    std::unique_ptr<ArrowVisual> arrow(new ArrowVisual(parent));  // the tree's once it is placed
    arrow->attachMesh("mfg_arrow");
    arrow->setMaterial("Axis", "Axis", "Axis");
    arrow->resetAppearance();
    arrow->setColor(hexColor);
    arrow->setPosition(position);
    arrow->setRotation(rotation);
    return arrow.release();
}

ArrowVisual* ArrowVisual::Build(Visual* parent, const TopoDS_Edge& edge, bool atEnd) {
    if (edge.IsNull() || BRep_Tool::Degenerated(edge) || !BRep_Tool::IsGeometric(edge))
        throw std::invalid_argument("an arrow needs an edge with a curve");
    const BRepAdaptor_Curve curve(edge);
    // A reversed edge runs against its curve.
    const bool reversed = edge.Orientation() == TopAbs_REVERSED;
    gp_Pnt point;
    gp_Vec tangent;
    curve.D1(atEnd != reversed ? curve.LastParameter() : curve.FirstParameter(), point, tangent);
    if (reversed) tangent.Reverse();
    return Build(
        parent, rob::PosTemplate<float>(rob::PosTemplate<double>(point.X(), point.Y(), point.Z())),
        rob::Vec3Template<float>(rob::Vec3Template<double>(tangent.X(), tangent.Y(), tangent.Z())));
}

}  // namespace vrn::visual
