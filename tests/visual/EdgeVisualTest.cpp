#include "visual/geometry/EdgeVisual.h"

#include <limits>
#include <stdexcept>

#include <gmock/gmock.h>

#include <OgreMovableObject.h>
#include <OgreSceneNode.h>
#include <OgreSimpleRenderable.h>
#include <BRep_Builder.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <gp_Trsf.hxx>
#include <Poly_Polygon3D.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TopExp.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopTools_IndexedMapOfShape.hxx>

#include "tests/support/SolidFixture.h"
#include "visual/geometry/MeshVisual.h"

namespace vrn::test {

namespace {

using testing::ElementsAre;
using testing::StartsWith;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::EdgeVisual;
using visual::Visual;
using Pos = rob::PosTemplate<float>;

const auto isZeroVector =
    ThrowsMessage<std::overflow_error>(StrEq("0-length vector cannot be normalized."));

Ogre::SimpleRenderable* LinesOf(const Visual* edge) {
    return dynamic_cast<Ogre::SimpleRenderable*>(edge->node->getAttachedObject(0));
}

TopoDS_Edge EdgeThrough(std::initializer_list<gp_Pnt> points) {
    TColgp_Array1OfPnt nodes(1, static_cast<int>(points.size()));
    int i = 1;
    for (const gp_Pnt& p : points) nodes.SetValue(i++, p);
    TopoDS_Edge edge = BRepBuilderAPI_MakeEdge(gp_Pnt(0, 0, 0), gp_Pnt(1, 0, 0));
    BRep_Builder().UpdateEdge(edge, new Poly_Polygon3D(nodes));
    return edge;
}

}  // namespace

class Edges : public SolidTest {
protected:
    static EdgeVisual* build(const TopoDS_Edge& edge, bool generated = false) {
        return EdgeVisual::Build(scene().root, "edge", edge, "BodyCurve", "BodyCurveHighlighted",
                                 "BodyCurveSelected", generated);
    }
    static EdgeVisual* corner() {
        return build(EdgeThrough({gp_Pnt(0, 0, 0), gp_Pnt(10, 0, 0), gp_Pnt(10, 20, 0)}));
    }
    /// Where the arrow points to, its own direction being z.
    static Pos directionOf(const Visual* arrow) { return arrow->getPose().rotation * Pos{0, 0, 1}; }
};

TEST_F(Edges, RunsThroughTheNodesOfItsPolygon) {
    const TopoDS_Edge edge = EdgeThrough({gp_Pnt(0, 0, 0), gp_Pnt(10, 0, 0), gp_Pnt(10, 20, 0)});
    const EdgeVisual* visual = build(edge);
    EXPECT_THAT(visual->getPoints(), ElementsAre(Pos{0, 0, 0}, Pos{10, 0, 0}, Pos{10, 20, 0}));
    EXPECT_TRUE(visual->getEdge().IsEqual(edge));
    EXPECT_EQ(visual->type, VisualType::Edge);
    EXPECT_EQ(visual->getName(), "edge" + std::to_string(visual->id));
    EXPECT_EQ(visual->getParent(), scene().root);
    EXPECT_FALSE(scene().visuals.contains(visual->id));
}

TEST_F(Edges, TheLocationIsApplied) {
    gp_Trsf shift;
    shift.SetTranslation(gp_Vec(1, 2, 3));
    const TopoDS_Shape edge = LineEdge({0, 0, 0}, {10, 0, 0}).Moved(TopLoc_Location(shift));
    EXPECT_THAT(build(TopoDS::Edge(edge))->getPoints(), ElementsAre(Pos{1, 2, 3}, Pos{11, 2, 3}));
}

TEST_F(Edges, AReversedEdgeRunsAgainstItsCurve) {
    const TopoDS_Shape edge = LineEdge({0, 0, 0}, {10, 0, 0}).Reversed();
    EXPECT_THAT(build(TopoDS::Edge(edge))->getPoints(), ElementsAre(Pos{10, 0, 0}, Pos{0, 0, 0}));
}

TEST_F(Edges, AnEdgeOfAFaceTakesTheTriangulationsPoints) {
    const TopoDS_Shape box = PlainBox();
    const BRepMesh_IncrementalMesh mesher(box, 1);
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(box, TopAbs_EDGE, edges);
    for (int i = 1; i <= edges.Extent(); ++i)
        EXPECT_EQ(build(TopoDS::Edge(edges(i)))->getPoints().size(), 2u);
}

TEST_F(Edges, WithoutAPolygonNothingIsMade) {
    const std::size_t nodes = scene().root->node->getChildren().size();
    EXPECT_EQ(build(BRepBuilderAPI_MakeEdge(gp_Pnt(0, 0, 0), gp_Pnt(1, 0, 0))), nullptr);
    EXPECT_EQ(build(TopoDS_Edge()), nullptr);
    EXPECT_EQ(build(TopoDS_Edge(), /*generated=*/true), nullptr);
    EXPECT_EQ(scene().root->node->getChildren().size(), nodes);
}

TEST_F(Edges, ANodeThatIsNotFiniteIsPassedOver) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const EdgeVisual* visual = build(
        EdgeThrough({gp_Pnt(0, 0, 0), gp_Pnt(nan, 0, 0), gp_Pnt(0, 1e300, 0), gp_Pnt(2, 0, 0)}));
    EXPECT_THAT(visual->getPoints(), ElementsAre(Pos{0, 0, 0}, Pos{2, 0, 0}));
}

TEST_F(Edges, HasThreeLooks) {
    EdgeVisual* visual = corner();
    EXPECT_EQ(LinesOf(visual)->getMaterial()->getName(), "BodyCurve");
    visual->setSelected();
    EXPECT_EQ(LinesOf(visual)->getMaterial()->getName(), "BodyCurveSelected");
    visual->setHighlighted();
    EXPECT_EQ(LinesOf(visual)->getMaterial()->getName(), "BodyCurveHighlighted");
    visual->resetAppearance();
    EXPECT_EQ(LinesOf(visual)->getMaterial()->getName(), "BodyCurve");
}

TEST_F(Edges, AGeneratedEdgeStandsInTheRegistry) {
    const EdgeVisual* visual = build(LineEdge({0, 0, 0}, {1, 0, 0}), /*generated=*/true);
    EXPECT_EQ(visual->type, VisualType::GeneratedEdge);
    EXPECT_EQ(scene().visuals.at(visual->id), visual);
}

TEST_F(Edges, PointsAreAddedOneByOne) {
    EdgeVisual* visual = corner();
    visual->addPoint(1, 2, 3);
    visual->update();
    EXPECT_EQ(visual->getPoints().back(), (Pos{1, 2, 3}));
    EXPECT_NO_THROW(frame());
}

TEST_F(Edges, TheQueueGroupGoesToTheLines) {
    EdgeVisual* visual = corner();
    EXPECT_EQ(LinesOf(visual)->getRenderQueueGroup(), 60);
    visual->setRenderQueueGroup(80);
    EXPECT_EQ(LinesOf(visual)->getRenderQueueGroup(), 80);
}

// --- arrows

TEST_F(Edges, TheArrowStandsAtTheEndAlongTheLastSegment) {
    EdgeVisual* visual = corner();
    visual->addArrow(true);
    const Visual* arrow = visual->getArrow();
    ASSERT_NE(arrow, nullptr);
    EXPECT_EQ(arrow->getParent(), visual);
    EXPECT_THAT(arrow->getName(), StartsWith("mfg_arrow"));
    EXPECT_EQ(arrow->getPosition(), (Pos{10, 20, 0}));
    EXPECT_NEAR(directionOf(arrow).y, 1, 1e-6);
}

TEST_F(Edges, TheArrowStandsAtTheStartAlongTheFirstSegment) {
    EdgeVisual* visual = corner();
    visual->addArrow(false);
    EXPECT_EQ(visual->getArrow()->getPosition(), (Pos{0, 0, 0}));
    EXPECT_NEAR(directionOf(visual->getArrow()).x, 1, 1e-6);
}

TEST_F(Edges, AnArrowThatAHostDeletedIsForgotten) {
    EdgeVisual* visual = corner();
    visual->addArrow(true);
    scene().deleteVisual(visual->getArrow());
    EXPECT_EQ(visual->getArrow(), nullptr);
    EXPECT_NO_THROW(visual->clearArrow());
    EXPECT_NO_THROW(visual->addArrow(false));
    EXPECT_EQ(visual->getChildren().size(), 1u);
}

TEST_F(Edges, ASecondArrowReplacesTheFirst) {
    EdgeVisual* visual = corner();
    visual->addArrow(true);
    visual->addArrow(false);
    EXPECT_EQ(visual->getChildren().size(), 1u);
    EXPECT_EQ(visual->getArrow()->getPosition(), (Pos{0, 0, 0}));
    visual->clearArrow();
    EXPECT_TRUE(visual->getChildren().empty());
    EXPECT_EQ(visual->getArrow(), nullptr);
    EXPECT_NO_THROW(visual->clearArrow());
}

TEST_F(Edges, WithoutADirectionThereIsNoArrow) {
    EdgeVisual* folded = build(EdgeThrough({gp_Pnt(0, 0, 0), gp_Pnt(1, 0, 0), gp_Pnt(1, 0, 0)}));
    folded->addArrow(false);
    EXPECT_THAT([&] { folded->addArrow(true); }, isZeroVector);
    ASSERT_NE(folded->getArrow(), nullptr);  // the one at the start
    EXPECT_EQ(folded->getArrow()->getPosition(), (Pos{0, 0, 0}));
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    EdgeVisual* single = build(EdgeThrough({gp_Pnt(0, 0, 0), gp_Pnt(nan, 0, 0)}));
    EXPECT_THAT([&] { single->addArrow(true); }, isZeroVector);
    EXPECT_THAT([&] { single->addArrow(false); }, isZeroVector);
}

}  // namespace vrn::test
