#include "visual/geometry/CurveVisual.h"

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "suite/layout/Body.h"
#include "visual/geometry/Detectable.h"
#include "visual/geometry/EdgeVisual.h"
#include "visual/ModelNode.h"

#include <BRepTools_WireExplorer.hxx>
#include <Standard_TypeMismatch.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Wire.hxx>

#include <memory>
#include <stdexcept>
#include <string>

namespace vrn::visual {

namespace {

constexpr const char* normalLook = "BodyCurve";
constexpr const char* selectedLook = "BodyCurveSelected";
constexpr const char* highlightedLook = "BodyCurveHighlighted";

// OpenCASCADE's own casts let a null shape pass.
void Require(const TopoDS_Shape& shape, TopAbs_ShapeEnum type, const char* cast) {
    if (shape.IsNull() || shape.ShapeType() != type) throw Standard_TypeMismatch(cast);
}

std::vector<TopoDS_Edge> EdgesInOrder(const TopoDS_Shape& shape) {
    if (!shape.IsNull() && shape.ShapeType() == TopAbs_EDGE) return {TopoDS::Edge(shape)};
    Require(shape, TopAbs_WIRE, "TopoDS::Wire");
    std::vector<TopoDS_Edge> edges;
    for (BRepTools_WireExplorer it(TopoDS::Wire(shape)); it.More(); it.Next())
        edges.push_back(it.Current());
    return edges;
}

}  // namespace

CurveVisual::CurveVisual(const std::string& name, Visual* parent) : Visual(name, parent) {
    type = VisualType::Curve;
}

CurveVisual::CurveVisual(sdf::SdfNode* modelNode, Visual* parent) : Visual(modelNode, parent) {
    type = VisualType::Curve;
}

// What hangs below does not die with the node: a curve that is refused half-way takes its edges
// along.
CurveVisual::~CurveVisual() { clearChildren(); }

CurveVisual* CurveVisual::Build(Visual* parent, const TopoDS_Shape& shape) {
    if (!parent) throw std::invalid_argument("a curve needs a parent, got null");
    Require(shape, TopAbs_EDGE, "TopoDS::Edge");
    std::unique_ptr<CurveVisual> curve(new CurveVisual(parent->getName() + "_curve_", parent));
    curve->addEdge(curve->getName() + "_", shape);
    curve->enter(shape, /*detectable=*/false);
    return curve.release();
}

CurveVisual* CurveVisual::Build(Visual* parent, sdf::SdfNode* modelNode,
                                const TopoDS_Shape& shape) {
    const bool detectable = IsDetectable(RequireModelNode(modelNode));
    const std::string uri = dynamic_cast<layout::Body&>(*modelNode).getGeometryUri();
    const std::vector<TopoDS_Edge> shapeEdges = EdgesInOrder(shape);
    std::unique_ptr<CurveVisual> curve(new CurveVisual(modelNode, parent));
    for (std::size_t i = 0; i < shapeEdges.size(); ++i)
        curve->addEdge(uri + "_curve_" + std::to_string(i) + "_", shapeEdges[i]);
    curve->enter(shape, detectable);
    return curve.release();
}

void CurveVisual::addEdge(const std::string& name, const TopoDS_Shape& edge) {
    EdgeVisual* visual = EdgeVisual::Build(this, name, TopoDS::Edge(edge), normalLook,
                                           highlightedLook, selectedLook, /*generated=*/false);
    if (visual) edges.push_back(visual);
}

void CurveVisual::enter(const TopoDS_Shape& shape, bool detectable) {
    Scene::Get()->visuals[id] = this;
    selection::VisualSelection::Get()->addCurveVisual(shape, this, detectable);
}

void CurveVisual::resetAppearance() {
    for (EdgeVisual* edge : edges) edge->resetAppearance();
}

void CurveVisual::setSelected() {
    for (EdgeVisual* edge : edges) edge->setSelected();
}

void CurveVisual::setHighlighted() {
    for (EdgeVisual* edge : edges) edge->setHighlighted();
}

void CurveVisual::forgetChild(const Visual* child) { std::erase(edges, child); }

void CurveVisual::addArrow(bool atEnd) {
    if (!edges.empty()) (atEnd ? edges.back() : edges.front())->addArrow(atEnd);
}

void CurveVisual::clearArrow() {
    for (EdgeVisual* edge : edges) edge->clearArrow();
}

}  // namespace vrn::visual
