#include "visual/geometry/WireFrameVisual.h"

#include "mesh/DynamicLines.h"
#include "suite/sdf/SdfManager.h"
#include "visual/geometry/EdgePolygon.h"

#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopTools_MapOfShape.hxx>

#include <cfloat>
#include <cmath>

namespace vrn::visual {

namespace {

// False for NaN as well.
bool Fits(double coordinate) { return std::abs(coordinate) <= FLT_MAX; }

template <class Pos>
bool Fits(const Pos& p) {
    return Fits(static_cast<double>(p.x)) && Fits(static_cast<double>(p.y)) &&
           Fits(static_cast<double>(p.z));
}

rob::PosTemplate<double> ToPos(const gp_Pnt& p) { return {p.X(), p.Y(), p.Z()}; }

void AddEdge(WireFrameVisual& visual, const TopoDS_Edge& edge) {
    const std::vector<gp_Pnt> points = EdgePolygon(edge);
    for (std::size_t i = 1; i < points.size(); ++i)
        visual.addSegment(ToPos(points[i - 1]), rob::PosTemplate<float>(ToPos(points[i])));
}

}  // namespace

WireFrameVisual::WireFrameVisual(Visual* solid, std::uint32_t idIn, const std::string& name)
    : Visual(idIn, SharedName{name}, solid),
      lines(std::make_unique<DynamicLines>(RenderOpType::LineList)) {
    type = VisualType::WireFrame;
    attachObject(lines.get());
}

// The lines detach themselves when they die, so they may go before the node.
WireFrameVisual::~WireFrameVisual() = default;

WireFrameVisual* WireFrameVisual::Build(Visual* solid, const TopoDS_Shape& shape) {
    auto visual = std::make_unique<WireFrameVisual>(solid, sdf::SdfManager::GenerateTransientId(),
                                                    "WireFrame_" + std::to_string(solid->id));
    visual->setMaterial("WireFrame", "BodyCurveSelected", "BodyCurveHighlighted");
    visual->resetAppearance();
    TopTools_MapOfShape drawn;
    for (TopExp_Explorer it(shape, TopAbs_EDGE, TopAbs_VERTEX); it.More(); it.Next())
        if (drawn.Add(it.Current())) AddEdge(*visual, TopoDS::Edge(it.Current()));
    visual->update();
    return visual.release();
}

void WireFrameVisual::addSegment(const rob::PosTemplate<double>& a,
                                 const rob::PosTemplate<float>& b) {
    if (!Fits(a) || !Fits(b)) return;
    lines->addPoint(static_cast<float>(a.x), static_cast<float>(a.y), static_cast<float>(a.z));
    lines->addPoint(b.x, b.y, b.z);
}

void WireFrameVisual::update() { lines->update(); }

}  // namespace vrn::visual
