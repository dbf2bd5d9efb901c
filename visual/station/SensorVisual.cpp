#include "visual/station/SensorVisual.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <gp_Ax2.hxx>
#include <gp_Dir.hxx>
#include <gp_Pnt.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "suite/geom/ShapeTools.h"
#include "suite/rob/ShapeTypes.h"
#include "suite/sdf/SdfManager.h"
#include "suite/smart/SmartComponent.h"
#include "visual/geometry/CurveVisual.h"
#include "visual/geometry/SolidVisual.h"
#include "visual/ModelNode.h"
#include "visual/station/Appearance.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/LocalFrame.h"

namespace vrn::visual {

namespace {

using Vec = rob::Vec3Template<double>;
using Pos = rob::PosTemplate<float>;
using smartcomp::SmartComponent;

/// From this radius on a segment is drawn as a cylinder.
constexpr double cylinderRadius = 0.5;

Vec ReadXyz(const SmartComponent& sensor, unsigned int number) {
    rob::XYZTemplate<double> xyz;
    sensor.getPropertyXYZ(number, xyz);
    return {xyz.x, xyz.y, xyz.z};
}

bool IsFinite(const Vec& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

bool IsZero(const Vec& v) {
    return std::max({std::abs(v.x), std::abs(v.y), std::abs(v.z)}) <= rob::zeroLength;
}

gp_Pnt ToPoint(const Vec& v) { return {v.x, v.y, v.z}; }

TopoDS_Edge EdgeBetween(const Vec& from, const Vec& to) {
    return BRepBuilderAPI_MakeEdge(ToPoint(from), ToPoint(to));
}

void Triangulate(const TopoDS_Shape& shape) {
    geometry::GenerateMesh(shape, 0.0, 0.0);
    for (TopExp_Explorer edge(shape, TopAbs_EDGE); edge.More(); edge.Next())
        geometry::GenerateMesh(edge.Current(), 0.0, 0.0);
}

TopoDS_Shape PlaneShape(const Vec& a, const Vec& b) {
    const Vec normal = a.cross(b);
    if (!IsFinite(normal) || IsZero(a) || IsZero(b) || IsZero(normal)) return {};
    const Vec origin, corner = a + b;
    BRepBuilderAPI_MakeWire border(EdgeBetween(origin, a), EdgeBetween(origin, b),
                                   EdgeBetween(a, corner), EdgeBetween(b, corner));
    return BRepBuilderAPI_MakeFace(border.Wire(), /*OnlyPlane=*/false).Face();
}

TopoDS_Shape SegmentShape(const Vec& start, const Vec& end, double radius) {
    // In single precision on purpose: what a picture cannot tell apart has no length.
    const auto narrow = [](const Vec& v) {
        return Pos(static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z));
    };
    if (!IsFinite(start) || !IsFinite(end) || !std::isfinite(radius)) return {};
    if (rob::LineTemplate<float>{narrow(start), narrow(end)}.isEmpty()) return {};
    const Vec span = end - start;
    if (radius < cylinderRadius) return EdgeBetween({}, span);
    const gp_Ax2 axis(gp_Pnt(0, 0, 0), gp_Dir(span.x, span.y, span.z));
    return BRepPrimAPI_MakeCylinder(axis, radius, span.length()).Shape();
}

bool TakesPart(const Visual* child) {
    return child->type == VisualType::Solid || child->type == VisualType::Curve;
}

}  // namespace

SensorVisual::SensorVisual(Visual* parent, sdf::SdfNode* modelNode)
    : Visual(modelNode, parent), node(modelNode) {
    type = VisualType::Sensor;
}

void SensorVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    const auto& sensor = dynamic_cast<const smartcomp::Sensor&>(
        *sdf::SdfManager::inst()->at(RequireModelNode(modelNode).id));
    auto* visual = new SensorVisual(parent, modelNode);
    Scene::Get()->visuals[visual->id] = visual;
    visual->setPosition(Pos(sensor.getPosition()));
    visual->buildChildren();
}

TopoDS_Shape SensorVisual::getSensorShape() const {
    const auto& sensor = dynamic_cast<const SmartComponent&>(*node);
    TopoDS_Shape shape;
    if (node->objectType == sdf::ObjectType::SegmentSensor) {
        double radius = 0;
        sensor.getPropertyDouble(3, radius);
        shape = SegmentShape(ReadXyz(sensor, 1), ReadXyz(sensor, 2), radius);
    } else {
        shape = PlaneShape(ReadXyz(sensor, 2), ReadXyz(sensor, 3));
    }
    if (!shape.IsNull()) Triangulate(shape);
    return shape;
}

void SensorVisual::buildChildren() {
    localFrame = new FrameVisual(this, 0, "Local Frame", VisualType::Frame);
    // By itself, since cascades leave it alone.
    if (!visible) HideOwnFrame(this, localFrame);
    const TopoDS_Shape shape = getSensorShape();
    if (shape.IsNull()) return;
    if (shape.ShapeType() == TopAbs_EDGE)
        CurveVisual::Build(this, shape);
    else
        SolidVisual::Build(this, shape, "Body", "BodyHighlighted", "BodySelected");
    if (!visible) SensorVisual::setVisible(false, /*cascade=*/true);
}

void SensorVisual::update() {
    clearChildren();
    localFrame = nullptr;
    buildChildren();
}

void SensorVisual::setVisible(bool show, bool cascade) {
    Visual::setVisible(show, cascade);
    if (!cascade) return;
    ForEachAdmittedChild(this, TakesPart, [show](Visual* child) {
        selection::VisualSelection::Get()->setObjectEnabled(child, show);
    });
}

void SensorVisual::resetAppearance() {
    ForEachAdmittedChild(this, TakesPart, [](Visual* child) { child->resetAppearance(); });
    HideOwnFrame(this, localFrame);
}

void SensorVisual::setSelected() {
    ForEachAdmittedChild(this, TakesPart, [](Visual* child) { child->setSelected(); });
    ShowLocalFrame(this, localFrame);
}

void SensorVisual::setHighlighted() { HighlightChildren(this, TakesPart); }

}  // namespace vrn::visual
