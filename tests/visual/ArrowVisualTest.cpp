#include <limits>

#include <BRep_Builder.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <Geom_BezierCurve.hxx>
#include <gp_Circ.hxx>
#include <gp_Lin.hxx>
#include <NCollection_Array1.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>

#include <gmock/gmock.h>

#include <OgreEntity.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "tests/support/EngineFixture.h"
#include "visual/geometry/ArrowVisual.h"

namespace vrn::test {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using visual::ArrowVisual;
using visual::Visual;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

Vec DirectionOf(const ArrowVisual* arrow) { return arrow->getPose().rotation.rotated({0, 0, 1}); }

void ExpectNear(const Vec& a, const Vec& b) {
    EXPECT_NEAR(a.x, b.x, 1e-4f);
    EXPECT_NEAR(a.y, b.y, 1e-4f);
    EXPECT_NEAR(a.z, b.z, 1e-4f);
}

TopoDS_Edge Line() { return BRepBuilderAPI_MakeEdge(gp_Pnt(1, 2, 3), gp_Pnt(11, 2, 3)).Edge(); }

TopoDS_Edge Reversed(const TopoDS_Edge& edge) { return TopoDS::Edge(edge.Reversed()); }

/// A quarter of a circle about +Z, from (10, 0, 0) to (0, 10, 0).
TopoDS_Edge Quarter() {
    const gp_Circ circle(gp_Ax2(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1), gp_Dir(1, 0, 0)), 10);
    return BRepBuilderAPI_MakeEdge(circle, 0, M_PI / 2).Edge();
}

}  // namespace

class ArrowVisuals : public EngineTest {
protected:
    static Visual* root() { return scene().root; }
    static void expectArrow(const ArrowVisual* arrow, const Pos& position, const Vec& direction) {
        ExpectNear(arrow->getPosition().asVec3(), position.asVec3());
        ExpectNear(DirectionOf(arrow), direction);
    }
};

TEST_F(ArrowVisuals, AnArrowStandsAtItsPlaceAlongItsDirection) {
    const ArrowVisual* arrow = ArrowVisual::Build(root(), {1, 2, 3}, Vec{0, -4, 0});
    expectArrow(arrow, {1, 2, 3}, {0, -1, 0});
    EXPECT_EQ(arrow->getMeshName(), "mfg_arrow");
    EXPECT_EQ(arrow->node->getScale(), Ogre::Vector3::UNIT_SCALE);
    const Ogre::SubEntity* shown = arrow->getEntity()->getSubEntity(0);
    EXPECT_EQ(shown->getCustomParameter(0), Ogre::Vector4(1, 167 / 255.0f, 37 / 255.0f, 1));
    for (const std::string& name : {arrow->material, arrow->selectedMaterial,
                                    arrow->highlightedMaterial, shown->getMaterialName()})
        EXPECT_THAT(name, testing::EndsWith("Axis"));
    EXPECT_EQ(arrow->type, VisualType::Mesh);
}

TEST_F(ArrowVisuals, TheColourMayBeGiven) {
    const ArrowVisual* arrow = ArrowVisual::Build(root(), {}, Vec{0, 0, 1}, "#0D8DDF");
    EXPECT_EQ(arrow->getEntity()->getSubEntity(0)->getCustomParameter(0),
              Ogre::Vector4(0x0D / 255.0f, 0x8D / 255.0f, 0xDF / 255.0f, 1));
}

TEST_F(ArrowVisuals, TheEndsOfALineGetItsDirection) {
    expectArrow(ArrowVisual::Build(root(), Line(), /*atEnd=*/false), {1, 2, 3}, {1, 0, 0});
    expectArrow(ArrowVisual::Build(root(), Line(), /*atEnd=*/true), {11, 2, 3}, {1, 0, 0});
}

TEST_F(ArrowVisuals, AReversedEdgeRunsAgainstItsCurve) {
    const TopoDS_Edge edge = Reversed(Line());
    expectArrow(ArrowVisual::Build(root(), edge, /*atEnd=*/false), {11, 2, 3}, {-1, 0, 0});
    expectArrow(ArrowVisual::Build(root(), edge, /*atEnd=*/true), {1, 2, 3}, {-1, 0, 0});
}

TEST_F(ArrowVisuals, ACurveGivesTheTangentOfItsEnd) {
    expectArrow(ArrowVisual::Build(root(), Quarter(), /*atEnd=*/false), {10, 0, 0}, {0, 1, 0});
    expectArrow(ArrowVisual::Build(root(), Quarter(), /*atEnd=*/true), {0, 10, 0}, {-1, 0, 0});
    const TopoDS_Edge back = Reversed(Quarter());
    expectArrow(ArrowVisual::Build(root(), back, /*atEnd=*/false), {0, 10, 0}, {1, 0, 0});
    expectArrow(ArrowVisual::Build(root(), back, /*atEnd=*/true), {10, 0, 0}, {0, -1, 0});
}

TEST_F(ArrowVisuals, TheLocationOfAnEdgeCounts) {
    gp_Trsf move;
    move.SetTranslation(gp_Vec(0, 0, 100));
    const TopoDS_Edge edge = TopoDS::Edge(Line().Moved(TopLoc_Location(move)));
    expectArrow(ArrowVisual::Build(root(), edge, /*atEnd=*/false), {1, 2, 103}, {1, 0, 0});
}

TEST_F(ArrowVisuals, WhatHasNoPlaceOrDirectionThrowsAndLeavesNothing) {
    const std::size_t nodes = root()->node->getChildren().size();
    EXPECT_THROW(ArrowVisual::Build(root(), {}, Vec{0, 0, 0}), std::overflow_error);
    EXPECT_THROW(ArrowVisual::Build(root(), {}, Vec{nan, 0, 0}), std::overflow_error);
    EXPECT_THROW(ArrowVisual::Build(root(), {nan, 0, 0}, Vec{0, 0, 1}), std::invalid_argument);
    EXPECT_THROW(ArrowVisual::Build(root(), {}, Vec{0, 0, 1}, "red"), std::exception);
    EXPECT_THROW(ArrowVisual::Build(root(), TopoDS_Edge(), true), std::invalid_argument);
    TopoDS_Edge bare;
    BRep_Builder().MakeEdge(bare);
    EXPECT_THROW(ArrowVisual::Build(root(), bare, true), std::invalid_argument);
    BRep_Builder().Degenerated(bare, true);
    EXPECT_THROW(ArrowVisual::Build(root(), bare, true), std::invalid_argument);
    const TopoDS_Edge endless = BRepBuilderAPI_MakeEdge(gp_Lin(gp::OX())).Edge();
    EXPECT_THROW(ArrowVisual::Build(root(), endless, true), std::invalid_argument);
    EXPECT_EQ(root()->node->getChildren().size(), nodes);
}

TEST_F(ArrowVisuals, ACurveThatEndsWithoutATangentThrows) {
    NCollection_Array1<gp_Pnt> poles(1, 3);
    poles(1) = gp_Pnt(0, 0, 0);
    poles(2) = gp_Pnt(10, 0, 0);
    poles(3) = gp_Pnt(10, 0, 0);  // the curve comes to rest here
    const TopoDS_Edge edge = BRepBuilderAPI_MakeEdge(new Geom_BezierCurve(poles)).Edge();
    EXPECT_THROW(ArrowVisual::Build(root(), edge, /*atEnd=*/true), std::overflow_error);
    expectArrow(ArrowVisual::Build(root(), edge, /*atEnd=*/false), {0, 0, 0}, {1, 0, 0});
}

}  // namespace vrn::test
