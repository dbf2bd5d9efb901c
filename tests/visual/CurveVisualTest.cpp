#include "visual/geometry/CurveVisual.h"

#include <any>
#include <stdexcept>

#include <gmock/gmock.h>

#include <OgreSceneNode.h>
#include <OgreSimpleRenderable.h>
#include <BRep_Builder.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Standard_TypeMismatch.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TopExp.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Vertex.hxx>
#include <TopoDS_Wire.hxx>

#include "selection/CurveObject.h"
#include "selection/VisualSelection.h"
#include "suite/geom/ShapeTools.h"
#include "tests/support/SolidFixture.h"
#include "visual/geometry/EdgeVisual.h"

namespace vrn::test {

namespace {

using selection::VisualSelection;
using testing::Each;
using testing::ElementsAre;
using testing::StartsWith;
using visual::CurveVisual;
using visual::EdgeVisual;
using visual::Visual;
using Pos = rob::PosTemplate<float>;

/// Gives the edge a polygon that names a node which its triangulation does not have.
void Break(const TopoDS_Edge& edge) {
    TColStd_Array1OfInteger nodes(1, 2);
    nodes(1) = 1;
    nodes(2) = 100000;
    BRep_Builder().UpdateEdge(edge, new Poly_PolygonOnTriangulation(nodes),
                              TriangulationOf(FanFace(3)));
}

/// From (0, 0, 0) to (100, 0, 0), (100, 100, 0), (0, 100, 0); three edges, the middle one of a
/// curve that runs the other way.
TopoDS_Wire OpenWire() {
    const gp_Pnt a(0, 0, 0), b(100, 0, 0), c(100, 100, 0), d(0, 100, 0);
    BRepBuilderAPI_MakeWire maker;
    maker.Add(BRepBuilderAPI_MakeEdge(a, b));
    maker.Add(BRepBuilderAPI_MakeEdge(c, b));
    maker.Add(BRepBuilderAPI_MakeEdge(c, d));
    const TopoDS_Wire wire = maker;
    geometry::GenerateMesh(wire, 0.0, 0.0);
    return wire;
}

std::vector<std::string> MaterialsOf(const CurveVisual* curve) {
    std::vector<std::string> names;
    for (const EdgeVisual* edge : curve->getEdges())
        names.push_back(dynamic_cast<Ogre::SimpleRenderable*>(edge->node->getAttachedObject(0))
                            ->getMaterial()
                            ->getName());
    return names;
}

template <class Action>
std::string TypeMismatchOf(Action action) {
    try {
        action();
    } catch (const Standard_TypeMismatch& error) {
        return error.GetMessageString();
    }
    return "nothing was thrown";
}

}  // namespace

class Curves : public SolidTest {
protected:
    static Visual* root() { return scene().root; }
    static VisualSelection* picking() { return VisualSelection::Get(); }
    CurveVisual* showBody(const TopoDS_Shape& shape) {
        layout::Body* body = makeBody(shape);
        return CurveVisual::Build(root(), body, body->getShape());
    }
};

TEST_F(Curves, AnEdgeIsNamedAfterItsParent) {
    auto* parent = new Visual("parent", root());
    const TopoDS_Edge edge = LineEdge({0, 0, 0}, {10, 0, 0});
    CurveVisual* curve = CurveVisual::Build(parent, edge);
    EXPECT_EQ(curve->type, VisualType::Curve);
    EXPECT_EQ(curve->getName(), parent->getName() + "_curve_" + std::to_string(curve->id));
    EXPECT_EQ(curve->getParent(), parent);
    EXPECT_EQ(scene().visuals.at(curve->id), curve);
    ASSERT_EQ(curve->getEdges().size(), 1u);
    EXPECT_TRUE(curve->getEdges()[0]->getEdge().IsEqual(edge));
    EXPECT_EQ(picking()->getObject(curve)->kind, selection::ObjectKind::Curve);
    EXPECT_FALSE(picking()->getObject(curve)->detectable);
}

TEST_F(Curves, AnythingButAnEdgeIsRefused) {
    const std::size_t nodes = root()->node->getChildren().size();
    for (const TopoDS_Shape& shape : {TopoDS_Shape(OpenWire()), PlainBox(), TopoDS_Shape()})
        EXPECT_EQ(TypeMismatchOf([&] { CurveVisual::Build(root(), shape); }), "TopoDS::Edge");
    EXPECT_EQ(root()->node->getChildren().size(), nodes);
}

TEST_F(Curves, ABodyOfAWireHasAnEdgeVisualForEachEdgeInOrder) {
    layout::Body* body = makeBody(OpenWire());
    CurveVisual* curve = CurveVisual::Build(root(), body, body->getShape());
    EXPECT_EQ(curve->id, body->id);
    EXPECT_EQ(curve->getName(), "body_" + std::to_string(body->id));
    EXPECT_EQ(scene().visuals.at(body->id), curve);
    ASSERT_EQ(curve->getEdges().size(), 3u);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_THAT(curve->getEdges()[i]->getName(),
                    StartsWith(body->getGeometryUri() + "_curve_" + std::to_string(i)));
    // Each goes on where the one before it ends.
    EXPECT_THAT(curve->getEdges()[0]->getPoints(), ElementsAre(Pos{0, 0, 0}, Pos{100, 0, 0}));
    EXPECT_THAT(curve->getEdges()[1]->getPoints(), ElementsAre(Pos{100, 0, 0}, Pos{100, 100, 0}));
    EXPECT_THAT(curve->getEdges()[2]->getPoints(), ElementsAre(Pos{100, 100, 0}, Pos{0, 100, 0}));
    EXPECT_TRUE(picking()->getObject(curve)->detectable);
}

TEST_F(Curves, ABodyOfASingleEdgeIsACurveAsWell) {
    EXPECT_EQ(showBody(LineEdge({0, 0, 0}, {10, 0, 0}))->getEdges().size(), 1u);
}

TEST_F(Curves, ABodyOfAnotherShapeIsRefused) {
    const std::size_t nodes = root()->node->getChildren().size();
    for (const TopoDS_Shape& shape : {PlainBox(), TopoDS_Shape()})
        EXPECT_EQ(TypeMismatchOf([&] { showBody(shape); }), "TopoDS::Wire");
    EXPECT_EQ(root()->node->getChildren().size(), nodes);
}

TEST_F(Curves, DetectableIsReadFromTheElementAbove) {
    layout::Body* body = makeBody(OpenWire());
    body->element->getParent()->set("detectable", false);
    EXPECT_FALSE(
        picking()->getObject(CurveVisual::Build(root(), body, body->getShape()))->detectable);
    layout::Body* odd = makeBody(OpenWire());
    odd->element->getParent()->set("detectable", 1);
    EXPECT_THROW(CurveVisual::Build(root(), odd, odd->getShape()), std::bad_any_cast);
    layout::Body* nowhere = makeBody(OpenWire());
    nowhere->element->set("geometry/uri", 1);
    EXPECT_THROW(CurveVisual::Build(root(), nowhere, nowhere->getShape()), std::bad_any_cast);
}

TEST_F(Curves, WhatWasNeverTriangulatedShowsNothing) {
    CurveVisual* curve = CurveVisual::Build(
        root(), BRepBuilderAPI_MakeEdge(gp_Pnt(0, 0, 0), gp_Pnt(1, 0, 0)).Shape());
    EXPECT_TRUE(curve->getEdges().empty());
    EXPECT_TRUE(picking()->hasVisual(curve));
    EXPECT_NO_THROW(curve->addArrow(true));
    EXPECT_NO_THROW(curve->clearArrow());
    pump();
    EXPECT_FALSE(picking()->getObject(curve)->box.isValid());
}

TEST_F(Curves, LooksAreThoseOfTheEdges) {
    CurveVisual* curve = showBody(OpenWire());
    EXPECT_THAT(MaterialsOf(curve), Each(std::string("BodyCurve")));
    scene().setVisualHighlighted(curve);
    pump();
    EXPECT_THAT(MaterialsOf(curve), Each(std::string("BodyCurveHighlighted")));
    scene().setVisualSelected(curve->id);
    pump();
    EXPECT_THAT(MaterialsOf(curve), Each(std::string("BodyCurveSelected")));
    scene().clearSelections();
    pump();
    EXPECT_THAT(MaterialsOf(curve), Each(std::string("BodyCurve")));
}

TEST_F(Curves, ArrowsStandAtTheEndsOfTheWholeCurve) {
    CurveVisual* curve = showBody(OpenWire());
    curve->addArrow(true);
    EXPECT_EQ(curve->getEdges()[0]->getArrow(), nullptr);
    ASSERT_NE(curve->getEdges()[2]->getArrow(), nullptr);
    EXPECT_EQ(curve->getEdges()[2]->getChildren().at(0)->getPosition(), (Pos{0, 100, 0}));
    curve->addArrow(false);
    ASSERT_NE(curve->getEdges()[0]->getArrow(), nullptr);
    EXPECT_EQ(curve->getEdges()[0]->getChildren().at(0)->getPosition(), (Pos{0, 0, 0}));
    curve->clearArrow();
    EXPECT_EQ(curve->getEdges()[0]->getArrow(), nullptr);
    EXPECT_EQ(curve->getEdges()[2]->getArrow(), nullptr);
}

TEST_F(Curves, AnEdgeThatAHostDeletedIsForgotten) {
    layout::Body* body = makeBody(OpenWire());
    CurveVisual* curve = CurveVisual::Build(root(), body, body->getShape());
    EdgeVisual* const first = curve->getEdges()[0];
    scene().deleteVisual(curve->getEdges()[1]);
    EXPECT_EQ(curve->getEdges().size(), 2u);
    EXPECT_EQ(curve->getEdges()[0], first);
    EXPECT_NO_THROW(curve->setSelected());
    EXPECT_NO_THROW(curve->clearArrow());
    EXPECT_NO_THROW(frame());
}

TEST_F(Curves, TheWorldBoxHoldsTheEdgesWhereTheyStand) {
    CurveVisual* curve = showBody(OpenWire());
    pump();
    const auto* object = dynamic_cast<selection::CurveObject*>(picking()->getObject(curve));
    ASSERT_NE(object, nullptr);
    EXPECT_TRUE(object->box.isPointInside(0, 0, 0));
    EXPECT_TRUE(object->box.isPointInside(100, 100, 0));
    EXPECT_EQ(object->shape.ShapeType(), TopAbs_WIRE);
    const float before = object->box.min.z;
    curve->setPosition(0, 0, 5000);
    pump();
    EXPECT_NEAR(object->box.min.z, before + 5000, 0.01);
}

TEST_F(Curves, AnEdgeThatWasMovedTakesTheBoxAlong) {
    CurveVisual* curve = showBody(LineEdge({0, 0, 0}, {10, 0, 0}));
    curve->getEdges()[0]->setPosition(0, 0, 7000);
    pump();
    EXPECT_TRUE(picking()->getObject(curve)->box.isPointInside(10, 0, 7000));
    EXPECT_FALSE(picking()->getObject(curve)->box.isPointInside(10, 0, 0));
}

TEST_F(Curves, ACurveWithARefusedEdgeLeavesNothing) {
    const TopoDS_Edge shown = LineEdge({0, 0, 0}, {100, 0, 0});
    const TopoDS_Edge refused =
        BRepBuilderAPI_MakeEdge(TopExp::LastVertex(shown), BRepBuilderAPI_MakeVertex({200, 0, 0}));
    const TopoDS_Wire wire = BRepBuilderAPI_MakeWire(shown, refused);
    Break(refused);
    layout::Body* body = makeBody(wire);
    const auto registered = scene().visuals;
    const std::vector<Visual*> children = scene().root->getChildren();
    EXPECT_ANY_THROW(CurveVisual::Build(scene().root, body, wire));
    EXPECT_ANY_THROW(CurveVisual::Build(scene().root, refused));
    EXPECT_EQ(scene().visuals, registered);
    EXPECT_EQ(scene().root->getChildren(), children);
    EXPECT_NO_THROW(CurveVisual::Build(scene().root, body, OpenWire()));
}

}  // namespace vrn::test
