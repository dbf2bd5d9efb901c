#include "suite/geom/ShapeTools.h"

#include <gtest/gtest.h>
#include <BRep_Tool.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <Geom_CylindricalSurface.hxx>
#include <Geom_Plane.hxx>
#include <gp_Ax2.hxx>
#include <gp_Circ.hxx>
#include <Poly_Polygon3D.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Vertex.hxx>

#include <limits>
#include <numbers>
#include <stdexcept>

namespace {

using namespace vrn::geometry;
using vrn::rob::PosTemplate;

constexpr double pi = std::numbers::pi;

int CountTriangles(const TopoDS_Shape& shape) {
    int count = 0;
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next()) {
        TopLoc_Location location;
        const auto triangulation = BRep_Tool::Triangulation(TopoDS::Face(it.Current()), location);
        if (!triangulation.IsNull()) count += triangulation->NbTriangles();
    }
    return count;
}

TopoDS_Edge HalfCircle() {
    return BRepBuilderAPI_MakeEdge(gp_Circ(gp_Ax2(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1)), 10), 0, pi);
}

TEST(GenerateMesh, ZeroNegativeAndNanDeflectionsTakeItsOwn) {
    for (const double deflection : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        const TopoDS_Shape box = BRepPrimAPI_MakeBox(10, 20, 30).Shape();
        GenerateMesh(box, deflection, deflection);
        EXPECT_EQ(CountTriangles(box), 12);
    }
}

TEST(GenerateMesh, SmallerDeflectionGivesMoreTriangles) {
    const TopoDS_Shape coarse = BRepPrimAPI_MakeCylinder(100, 50).Shape();
    const TopoDS_Shape fine = BRepPrimAPI_MakeCylinder(100, 50).Shape();
    GenerateMesh(coarse, 20, 1);
    GenerateMesh(fine, 0.01, 0.05);
    EXPECT_GT(CountTriangles(fine), 2 * CountTriangles(coarse));
}

TEST(GenerateMesh, OwnDeflectionFollowsTheSize) {
    const TopoDS_Shape small = BRepPrimAPI_MakeCylinder(0.1, 0.05).Shape();
    const TopoDS_Shape large = BRepPrimAPI_MakeCylinder(10'000, 5'000).Shape();
    GenerateMesh(small, 0, 0);
    GenerateMesh(large, 0, 0);
    EXPECT_GT(CountTriangles(small), 30);
    EXPECT_LT(CountTriangles(large), 2 * CountTriangles(small));
}

TEST(GenerateMesh, EveryEdgeOfASolidGetsAPolygonBetweenItsVertices) {
    // Moved and turned, so that a location mixed up somewhere shows.
    gp_Trsf trsf;
    trsf.SetRotation(gp_Ax1(gp_Pnt(0, 0, 0), gp_Dir(1, 1, 1)), 0.7);
    trsf.SetTranslationPart(gp_Vec(100, 200, 300));
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(10, 20, 30).Shape().Moved(TopLoc_Location(trsf));
    GenerateMesh(box, 0, 0);
    int edges = 0;
    for (TopExp_Explorer it(box, TopAbs_EDGE); it.More(); it.Next(), ++edges) {
        const TopoDS_Edge edge = TopoDS::Edge(it.Current());
        TopLoc_Location location;
        const auto polygon = BRep_Tool::Polygon3D(edge, location);
        ASSERT_FALSE(polygon.IsNull());
        ASSERT_EQ(polygon->NbNodes(), 2);
        TopoDS_Vertex first, last;
        TopExp::Vertices(edge, first, last);
        const gp_Trsf toWorld = location.Transformation();
        EXPECT_LT(polygon->Nodes().First().Transformed(toWorld).Distance(BRep_Tool::Pnt(first)),
                  1e-6);
        EXPECT_LT(polygon->Nodes().Last().Transformed(toWorld).Distance(BRep_Tool::Pnt(last)),
                  1e-6);
    }
    EXPECT_EQ(edges, 24);  // twelve, each met from two faces
}

TEST(GenerateMesh, EdgeAloneGetsAPolygon) {
    const TopoDS_Edge edge = HalfCircle();
    GenerateMesh(edge, 0, 0);
    TopLoc_Location location;
    const auto polygon = BRep_Tool::Polygon3D(edge, location);
    ASSERT_FALSE(polygon.IsNull());
    EXPECT_GT(polygon->NbNodes(), 4);
}

TEST(GenerateMesh, NullShapeIsLeftAlone) { GenerateMesh(TopoDS_Shape(), 0, 0); }

TEST(PoseToTrsf, TurnsThenMovesAsThePoseDoes) {
    const vrn::rob::PoseTemplate<double> pose({10, 20, 30},
                                              {pi / 2, vrn::rob::Vec3Template<double>{0, 0, 1}});
    const gp_Pnt p = gp_Pnt(1, 2, 3).Transformed(PoseToTrsf(pose));
    EXPECT_LT(p.Distance(gp_Pnt(8, 21, 33)), 1e-12);
    const gp_Pnt q = gp_Pnt(1, 2, 3).Transformed(PoseToTrsf(vrn::rob::PoseTemplate<float>(pose)));
    EXPECT_LT(q.Distance(p), 1e-5);
}

TEST(ProjectPoint, GivesTheNearestPointAndItsParameters) {
    const opencascade::handle<Geom_Surface> plane =
        new Geom_Plane(gp_Pnt(0, 0, 5), gp_Dir(0, 0, 1));
    const auto foot = ProjectPoint(gp_Pnt(1, 2, 9), plane);
    ASSERT_TRUE(foot);
    EXPECT_LT(foot->point.Distance(gp_Pnt(1, 2, 5)), 1e-9);
    EXPECT_LT(plane->Value(foot->u, foot->v).Distance(foot->point), 1e-9);
}

TEST(ProjectPoint, OfACylinderTakesTheNearSide) {
    const opencascade::handle<Geom_Surface> cylinder =
        new Geom_CylindricalSurface(gp_Ax2(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1)), 10);
    const auto foot = ProjectPoint(gp_Pnt(12, 0, 4), cylinder);
    ASSERT_TRUE(foot);
    EXPECT_LT(foot->point.Distance(gp_Pnt(10, 0, 4)), 1e-6);
}

TEST(ProjectPoint, NullSurfaceGivesNothing) { EXPECT_FALSE(ProjectPoint(gp_Pnt(0, 0, 0), {})); }

TEST(GetPointAtParameter, FollowsTheCurveWithItsLocation) {
    const PosTemplate<double> p = GetPointAtParameter(HalfCircle(), pi / 2);
    EXPECT_NEAR(p.x, 0, 1e-9);
    EXPECT_NEAR(p.y, 10, 1e-9);
    gp_Trsf trsf;
    trsf.SetTranslation(gp_Vec(0, 0, 7));
    const TopoDS_Edge moved = TopoDS::Edge(HalfCircle().Moved(TopLoc_Location(trsf)));
    EXPECT_NEAR(GetPointAtParameter(moved, 0).z, 7, 1e-9);
}

TEST(GetPointAtParameter, EdgeWithoutCurveIsRefused) {
    EXPECT_THROW((void)GetPointAtParameter(TopoDS_Edge(), 0), std::invalid_argument);
    EXPECT_THROW((void)GetTangentAtParameter(TopoDS_Edge(), 0), std::invalid_argument);
}

TEST(GetEdgeStartPointInfo, ReversedEdgeStartsAtItsCurvesEnd) {
    PosTemplate<float> pos;
    vrn::rob::DirTemplate<float> dir{1, 0, 0};
    GetEdgeStartPointInfo(HalfCircle(), pos, dir);
    EXPECT_NEAR(pos.x, 10, 1e-5);
    EXPECT_NEAR(dir.y, 1, 1e-6);
    GetEdgeStartPointInfo(TopoDS::Edge(HalfCircle().Reversed()), pos, dir);
    EXPECT_NEAR(pos.x, -10, 1e-5);
    EXPECT_NEAR(dir.y, 1, 1e-6);  // down at the end, and turned round
}

TEST(GetEdgeStartPointInfo, EdgeWithoutCurveLeavesTheArguments) {
    PosTemplate<float> pos{1, 2, 3};
    vrn::rob::DirTemplate<float> dir{1, 0, 0};
    GetEdgeStartPointInfo(TopoDS_Edge(), pos, dir);
    EXPECT_EQ(pos, (PosTemplate<float>{1, 2, 3}));
    EXPECT_EQ(dir, (vrn::rob::DirTemplate<float>{1, 0, 0}));
}

}  // namespace
