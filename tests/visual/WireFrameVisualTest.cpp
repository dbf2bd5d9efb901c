#include "visual/geometry/WireFrameVisual.h"

#include <cfloat>
#include <limits>

#include <gmock/gmock.h>

#include <OgreSceneNode.h>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <gp_Circ.hxx>
#include <gp_Trsf.hxx>
#include <Poly_Polygon3D.hxx>
#include <TopExp.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopTools_IndexedMapOfShape.hxx>

#include "mesh/DynamicLines.h"
#include "suite/geom/ShapeTools.h"
#include "tests/support/SolidFixture.h"

namespace vrn::test {

namespace {

using testing::ElementsAre;
using visual::DynamicLines;
using visual::RenderOpType;
using visual::Visual;
using visual::WireFrameVisual;
using Pos = rob::PosTemplate<float>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

const std::vector<Pos>& PointsOf(const WireFrameVisual* wires) {
    return wires->getLines().getPoints();
}

}  // namespace

class WireFrames : public SolidTest {
protected:
    static WireFrameVisual* wiresOf(const TopoDS_Shape& shape) {
        return WireFrameVisual::Build(new Visual(scene().root), shape);
    }
    static WireFrameVisual* empty() { return new WireFrameVisual(scene().root, 1, "wires"); }
};

TEST_F(WireFrames, HangsBelowItsSolidAndCarriesItsId) {
    auto* solid = new Visual(scene().root);
    const WireFrameVisual* wires = WireFrameVisual::Build(solid, MeshedBox());
    EXPECT_EQ(wires->getParent(), solid);
    EXPECT_EQ(wires->getName(), "WireFrame_" + std::to_string(solid->id));
    EXPECT_NE(wires->id, solid->id);
    EXPECT_EQ(wires->type, VisualType::WireFrame);
    EXPECT_EQ(wires->getLines().getOpType(), RenderOpType::LineList);
    EXPECT_FALSE(scene().visuals.contains(wires->id));
    EXPECT_TRUE(wires->visible);
}

TEST_F(WireFrames, HasTheLooksOfCurves) {
    const WireFrameVisual* wires = wiresOf(MeshedBox());
    EXPECT_EQ(wires->material, "WireFrame");
    EXPECT_EQ(wires->selectedMaterial, "BodyCurveSelected");
    EXPECT_EQ(wires->highlightedMaterial, "BodyCurveHighlighted");
    EXPECT_EQ(wires->getLines().getMaterial()->getName(), "WireFrame");
}

TEST_F(WireFrames, AnEdgeOfTwoFacesIsDrawnOnce) {
    const WireFrameVisual* wires = wiresOf(MeshedBox());
    EXPECT_EQ(PointsOf(wires).size(), 24u);  // 12 edges of one segment
    EXPECT_FALSE(wires->getLines().isDirty());
}

TEST_F(WireFrames, TheTriangulationServesWhereTheEdgeHasNoPolygonOfItsOwn) {
    const TopoDS_Shape box = PlainBox();
    const BRepMesh_IncrementalMesh mesher(box, 1);  // leaves edges of faces without
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(box, TopAbs_EDGE, edges);
    TopLoc_Location location;
    ASSERT_TRUE(BRep_Tool::Polygon3D(TopoDS::Edge(edges(1)), location).IsNull());
    EXPECT_EQ(PointsOf(wiresOf(box)).size(), 24u);
}

TEST_F(WireFrames, AnEdgeWithoutAPolygonAddsNothing) {
    EXPECT_TRUE(PointsOf(wiresOf(PlainBox())).empty());
    EXPECT_TRUE(PointsOf(wiresOf(TopoDS_Shape())).empty());
    EXPECT_NO_THROW(frame());
}

TEST_F(WireFrames, ThePoleOfASphereIsNoEdge) {
    const TopoDS_Shape sphere = BRepPrimAPI_MakeSphere(50).Shape();
    geometry::GenerateMesh(sphere, 0.0, 0.0);
    const auto& points = PointsOf(wiresOf(sphere));
    ASSERT_GT(points.size(), 4u);  // the seam
    for (std::size_t i = 0; i < points.size(); i += 2) EXPECT_NE(points[i], points[i + 1]);
}

TEST_F(WireFrames, NeighbouringNodesMakeSegmentsAtTheirPlace) {
    const TopoDS_Edge edge = LineEdge({0, 0, 0}, {10, 0, 0});
    gp_Trsf shift;
    shift.SetTranslation(gp_Vec(1, 2, 3));
    EXPECT_THAT(PointsOf(wiresOf(edge.Moved(TopLoc_Location(shift)))),
                ElementsAre(Pos{1, 2, 3}, Pos{11, 2, 3}));
}

TEST_F(WireFrames, TheSameEdgeAtTwoPlacesIsDrawnTwice) {
    const TopoDS_Edge edge = LineEdge({0, 0, 0}, {10, 0, 0});
    gp_Trsf shift;
    shift.SetTranslation(gp_Vec(1, 2, 3));
    const TopoDS_Compound both =
        CompoundOf({edge, edge.Reversed(), edge.Moved(TopLoc_Location(shift))});
    EXPECT_EQ(PointsOf(wiresOf(both)).size(), 4u);
}

TEST_F(WireFrames, ASegmentWithACoordinateThatIsNoNumberAddsNeitherEnd) {
    WireFrameVisual* wires = empty();
    for (int i = 0; i < 3; ++i) {
        for (const float bad : {nan, infinity, -infinity}) {
            Pos p{1, 1, 1};
            (i == 0 ? p.x : i == 1 ? p.y : p.z) = bad;
            wires->addSegment(rob::PosTemplate<double>(p), {0, 0, 0});
            wires->addSegment({0, 0, 0}, p);
        }
    }
    wires->addSegment({1e39, 0, 0}, {0, 0, 0});  // beyond single precision
    EXPECT_TRUE(PointsOf(wires).empty());
    wires->addSegment({FLT_MAX, -FLT_MAX, 0}, {1, 2, 3});
    EXPECT_THAT(PointsOf(wires), ElementsAre(Pos{FLT_MAX, -FLT_MAX, 0}, Pos{1, 2, 3}));
}

TEST_F(WireFrames, ANodeThatIsNotFiniteTakesItsSegmentsAlong) {
    TopoDS_Edge edge = LineEdge({0, 0, 0}, {1, 0, 0});
    TColgp_Array1OfPnt nodes(1, 4);
    for (int i = 1; i <= 4; ++i) nodes.SetValue(i, gp_Pnt(i, 0, 0));
    nodes.ChangeValue(2).SetX(nan);
    BRep_Builder().UpdateEdge(edge, new Poly_Polygon3D(nodes));
    EXPECT_THAT(PointsOf(wiresOf(edge)), ElementsAre(Pos{3, 0, 0}, Pos{4, 0, 0}));
}

TEST_F(WireFrames, UpdatingSendsTheSegments) {
    WireFrameVisual* wires = empty();
    wires->addSegment({0, 0, 0}, {1, 0, 0});
    EXPECT_TRUE(wires->getLines().isDirty());
    wires->update();
    EXPECT_FALSE(wires->getLines().isDirty());
}

TEST_F(WireFrames, TwoOfOneSolidKeepTheirReadableName) {
    auto* solid = new Visual(scene().root);
    const WireFrameVisual* first = WireFrameVisual::Build(solid, MeshedBox());
    const WireFrameVisual* second = WireFrameVisual::Build(solid, MeshedBox());
    EXPECT_EQ(first->getName(), second->getName());
    EXPECT_NE(first->node->getName(), second->node->getName());
}

}  // namespace vrn::test
