#include "selection/Result.h"

#include "suite/geom/ShapeTools.h"

#include <gtest/gtest.h>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <BRepAdaptor_Curve.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <Geom_BezierSurface.hxx>
#include <Geom_BSplineSurface.hxx>
#include <Geom_CylindricalSurface.hxx>
#include <Geom_SphericalSurface.hxx>
#include <GeomConvert.hxx>
#include <gp_Circ.hxx>
#include <gp_Lin.hxx>
#include <TColgp_Array2OfPnt.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>

#include <cfloat>
#include <cmath>
#include <limits>
#include <numbers>

namespace vrn::selection {

namespace {

using Pos = rob::PosTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using Rotation = rob::RotationTemplate<float>;
constexpr double pi = std::numbers::pi;

/// The square from (0, 0, 0) to (side, side, 0).
TopoDS_Face Square(double side) {
    return BRepBuilderAPI_MakeFace(gp_Pln(gp::Origin(), gp::DZ()), 0, side, 0, side).Face();
}

/// The first face on a surface of the kind.
template <class Surface>
TopoDS_Face FaceOn(const TopoDS_Shape& shape) {
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next())
        if (!opencascade::handle<Surface>::DownCast(
                 BRep_Tool::Surface(TopoDS::Face(faces.Current())))
                 .IsNull())
            return TopoDS::Face(faces.Current());
    ADD_FAILURE() << "no such face";
    return {};
}

Result HitOn(const TopoDS_Shape& face, const Pos& position) {
    Result result;
    result.hit = true;
    result.face = face;
    result.position = position;
    return result;
}

Result HitOnEdge(const TopoDS_Shape& edge, const Pos& position) {
    Result result;
    result.hit = true;
    result.edge = edge;
    result.position = position;
    return result;
}

gp_Pnt PointOf(const EdgePoint& snap) { return BRepAdaptor_Curve(snap.edge).Value(snap.param); }

void ExpectSnap(const Result& result, const gp_Pnt& expected, double tolerance = 1e-4) {
    const auto snap = result.getFaceEdge();
    ASSERT_TRUE(snap.has_value());
    EXPECT_LT(PointOf(*snap).Distance(expected), tolerance);
}

TopoDS_Edge Segment(double length) {
    return BRepBuilderAPI_MakeEdge(gp_Pnt(0, 0, 0), gp_Pnt(length, 0, 0)).Edge();
}

TopoDS_Edge Arc(double from, double to) {
    return BRepBuilderAPI_MakeEdge(gp_Circ(gp::XOY(), 10), from, to).Edge();
}

}  // namespace

TEST(Result, TheEmptyRecordIsValidAndHitsNothing) {
    const Result empty;
    EXPECT_TRUE(empty.valid);
    EXPECT_FALSE(empty.hit);
    EXPECT_EQ(empty.distance, FLT_MAX);
    EXPECT_TRUE(empty.edge.IsNull());
    EXPECT_TRUE(empty.face.IsNull());
    EXPECT_TRUE(empty.shape.IsNull());
    EXPECT_EQ(empty.visual, nullptr);
    EXPECT_EQ(empty.position, Pos{});
    EXPECT_EQ(empty.localPosition, Pos{});
    EXPECT_EQ(empty.pose, Pose{});
    EXPECT_EQ(empty.index, -1);
}

TEST(Result, EmptyShapesAreOfExternalOrientation) {
    const Result empty;
    for (const TopoDS_Shape* shape : {&empty.edge, &empty.face, &empty.shape})
        EXPECT_EQ(static_cast<int>(shape->Orientation()), 3);
}

TEST(Result, ItHoldsItsShapesUntilItGoes) {
    const TopoDS_Face face = Square(1);
    const int before = face.TShape()->GetRefCount();
    {
        Result result = HitOn(face, {});
        const Result copy = result;
        EXPECT_EQ(face.TShape()->GetRefCount(), before + 2);
    }
    EXPECT_EQ(face.TShape()->GetRefCount(), before);
}

TEST(FaceEdge, WithoutAFaceTheAnswerIsEmpty) {
    EXPECT_FALSE(Result{}.getFaceEdge());
    EXPECT_FALSE(HitOn(TopoDS_Face(), {1, 2, 3}).getFaceEdge());
    EXPECT_FALSE(HitOn(Segment(10), {1, 0, 0}).getFaceEdge());  // no face at all
}

TEST(FaceEdge, TheNearestEdgeOfAPlaneWins) {
    ExpectSnap(HitOn(Square(40), {12, 3, 0}), {12, 0, 0});
    ExpectSnap(HitOn(Square(40), {12, 38, 0}), {12, 40, 0});
    ExpectSnap(HitOn(Square(40), {1, 15, 0}), {0, 15, 0});
    ExpectSnap(HitOn(Square(40), {39, 15, 0}), {40, 15, 0});
}

TEST(FaceEdge, AHitExactly25FromTheNearestEdgeStillSnaps) {
    ExpectSnap(HitOn(Square(1000), {500, 25, 0}), {500, 0, 0});
    EXPECT_FALSE(HitOn(Square(1000), {500, 25.001f, 0}).getFaceEdge());
    EXPECT_EQ(Result::snapReach, 25.0);
}

TEST(FaceEdge, TheHitIsProjectedOnTheSurfaceFirst) {
    // 30 above the plane is no distance to its edges.
    ExpectSnap(HitOn(Square(1000), {500, 20, 30}), {500, 0, 0});
}

TEST(FaceEdge, OfAMovedPartTheHitIsCarriedBack) {
    Result result = HitOn(Square(40), {});
    result.pose = {{1000, -500, 70}, Rotation(0.7f, rob::Vec3Template<float>{0, 0, 1})};
    result.position = TransformPoint(result.pose, Pos{12, 3, 0});
    ExpectSnap(result, {12, 0, 0}, 1e-3);
    result.pose.rotation = Rotation(1.1f, rob::Vec3Template<float>{0.6f, 0, 0.8f});
    result.position = TransformPoint(result.pose, Pos{39, 15, 0});
    ExpectSnap(result, {40, 15, 0}, 1e-3);
}

TEST(FaceEdge, ACylinderSnapsToItsRims) {
    const auto wall = FaceOn<Geom_CylindricalSurface>(BRepPrimAPI_MakeCylinder(50, 200).Shape());
    // A little inside, as the triangles are.
    const auto at = [](double angle, double radius, double z) {
        return Pos{static_cast<float>(radius * std::cos(angle)),
                   static_cast<float>(radius * std::sin(angle)), static_cast<float>(z)};
    };
    ExpectSnap(HitOn(wall, at(2, 49.5, 10)), {50 * std::cos(2), 50 * std::sin(2), 0});
    ExpectSnap(HitOn(wall, at(2, 49.5, 190)), {50 * std::cos(2), 50 * std::sin(2), 200});
    ExpectSnap(HitOn(wall, at(0.1, 49.5, 100)), {50, 0, 100});  // the seam
    EXPECT_FALSE(HitOn(wall, at(2, 49.5, 100)).getFaceEdge());
}

TEST(FaceEdge, ASphereSnapsToItsSeamAndPassesItsPolesOver) {
    const auto ball = FaceOn<Geom_SphericalSurface>(BRepPrimAPI_MakeSphere(50).Shape());
    ExpectSnap(HitOn(ball, {49, 5, 0}), {50, 0, 0}, 0.3);
    EXPECT_FALSE(HitOn(ball, {-49, 0, 0}).getFaceEdge());
    // At the pole there is a degenerated edge without a curve; the seam ends there.
    EXPECT_NO_THROW((void)HitOn(ball, {0, 0, 50}).getFaceEdge());
}

TEST(FaceEdge, ABSplineFaceSnapsToItsBorder) {
    TColgp_Array2OfPnt poles(1, 4, 1, 4);
    for (int i = 1; i <= 4; ++i)
        for (int k = 1; k <= 4; ++k)
            poles(i, k) = gp_Pnt(i * 40.0, k * 40.0, (i == 2 && k == 2) ? 60.0 : 0.0);
    const auto surface = GeomConvert::SurfaceToBSplineSurface(new Geom_BezierSurface(poles));
    const TopoDS_Face face = BRepBuilderAPI_MakeFace(surface, 1e-6).Face();
    ExpectSnap(HitOn(face, {45, 100, 5}), {40, 100, 0}, 1.0);
    ExpectSnap(HitOn(face, {100, 155, 0}), {100, 160, 0}, 1.0);
    EXPECT_FALSE(HitOn(face, {100, 100, 10}).getFaceEdge());
}

TEST(FaceEdge, EveryFaceOfABoxAnswersWithAnEdgeOfItsOwn) {
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(20, 20, 20).Shape();
    int faces = 0;
    for (TopExp_Explorer it(box, TopAbs_FACE); it.More(); it.Next(), ++faces) {
        const auto snap = HitOn(it.Current(), {9, 8, 7}).getFaceEdge();
        ASSERT_TRUE(snap);
        bool own = false;
        for (TopExp_Explorer edges(it.Current(), TopAbs_EDGE); edges.More(); edges.Next())
            own = own || edges.Current().IsSame(snap->edge);
        EXPECT_TRUE(own);
    }
    EXPECT_EQ(faces, 6);
}

TEST(FaceEdge, AFaceWithoutSurfaceOrEdgesIsEmpty) {
    TopoDS_Face bare;
    BRep_Builder().MakeFace(bare);
    EXPECT_FALSE(HitOn(bare, {1, 2, 3}).getFaceEdge());
}

TEST(FaceEdge, AHitWithoutCoordinatesIsEmpty) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(HitOn(Square(10), {nan, 0, 0}).getFaceEdge());
    EXPECT_FALSE(HitOnEdge(Segment(10), {nan, 0, 0}).getEdgeParam());
}

TEST(EdgeParam, WithoutAnEdgeTheAnswerIsEmptyAndNothingIsThrown) {
    EXPECT_FALSE(Result{}.getEdgeParam());
    EXPECT_FALSE(HitOnEdge(TopoDS_Edge(), {1, 2, 3}).getEdgeParam());
    EXPECT_FALSE(HitOnEdge(Square(10), {1, 2, 3}).getEdgeParam());
}

TEST(EdgeParam, AnEdgeWithoutCurveIsEmpty) {
    TopoDS_Edge bare;
    BRep_Builder().MakeEdge(bare);
    EXPECT_FALSE(HitOnEdge(bare, {1, 2, 3}).getEdgeParam());
}

TEST(EdgeParam, ADegeneratedEdgeIsEmpty) {
    int degenerated = 0;
    const TopoDS_Shape ball = BRepPrimAPI_MakeSphere(50).Shape();
    for (TopExp_Explorer edges(ball, TopAbs_EDGE); edges.More(); edges.Next())
        if (BRep_Tool::Degenerated(TopoDS::Edge(edges.Current()))) {
            ++degenerated;
            EXPECT_FALSE(HitOnEdge(edges.Current(), {0, 0, 50}).getEdgeParam());
        }
    EXPECT_GE(degenerated, 2);
}

TEST(EdgeParam, TheFootOnALineIsItsParameter) {
    EXPECT_NEAR(HitOnEdge(Segment(10), {3, 4, 5}).getEdgeParam().value(), 3, 1e-9);
}

TEST(EdgeParam, AFootBeyondAnEndTakesTheNearerEnd) {
    EXPECT_EQ(HitOnEdge(Segment(10), {-3, 4, 5}).getEdgeParam().value(), 0);
    EXPECT_EQ(HitOnEdge(Segment(10), {13, 4, 5}).getEdgeParam().value(), 10);
}

TEST(EdgeParam, OfSeveralFeetTheNearestCounts) {
    const TopoDS_Edge circle = Arc(0, 2 * pi);
    EXPECT_NEAR(HitOnEdge(circle, {0, 9, 1}).getEdgeParam().value(), pi / 2, 1e-6);
    EXPECT_NEAR(HitOnEdge(circle, {-11, 0, 1}).getEdgeParam().value(), pi, 1e-6);
}

TEST(EdgeParam, TheFarSideOfAnArcDoesNotBeatItsEnd) {
    // Just beyond the start; the only foot within the arc lies opposite.
    const auto beyond = Pos{10 * std::cos(-0.05f), 10 * std::sin(-0.05f), 0};
    EXPECT_NEAR(HitOnEdge(Arc(0, 1.2 * pi), beyond).getEdgeParam().value(), 0, 1e-9);
}

TEST(EdgeParam, OfAMovedPartTheHitIsCarriedBack) {
    Result result = HitOnEdge(Segment(10), {});
    result.pose = {{1000, -500, 70}, Rotation(1.1f, rob::Vec3Template<float>{0.6f, 0, 0.8f})};
    result.position = TransformPoint(result.pose, Pos{3, 1, 0});
    EXPECT_NEAR(result.getEdgeParam().value(), 3, 1e-3);
}

TEST(EdgeParam, ALocatedEdgeIsSeenWhereItsLocationPutsIt) {
    gp_Trsf shift;
    shift.SetTranslation(gp_Vec(100, 0, 0));
    const TopoDS_Shape moved = Segment(10).Moved(TopLoc_Location(shift));
    EXPECT_NEAR(HitOnEdge(moved, {104, 1, 0}).getEdgeParam().value(), 4, 1e-9);
}

TEST(EdgeParam, AnEndlessLineAnswersToo) {
    const TopoDS_Edge line = BRepBuilderAPI_MakeEdge(gp_Lin(gp::Origin(), gp::DX())).Edge();
    EXPECT_NEAR(HitOnEdge(line, {-77, 3, 0}).getEdgeParam().value(), -77, 1e-6);
}

TEST(EdgeParam, CurvesOfEveryKindGiveTheNearestOfTheirPoints) {
    // All edges of a cylinder and of a curved patch, held against the nearest of many of their
    // points.
    TColgp_Array2OfPnt poles(1, 3, 1, 3);
    for (int i = 1; i <= 3; ++i)
        for (int k = 1; k <= 3; ++k)
            poles(i, k) = gp_Pnt(i * 10.0, k * 10.0, (i == 2 || k == 2) ? 12.0 : 0.0);
    const TopoDS_Face patch = BRepBuilderAPI_MakeFace(new Geom_BezierSurface(poles), 1e-6).Face();
    int edges = 0;
    for (const TopoDS_Shape& shape :
         {TopoDS_Shape(patch), BRepPrimAPI_MakeCylinder(10, 30).Shape()})
        for (TopExp_Explorer it(shape, TopAbs_EDGE); it.More(); it.Next(), ++edges)
            for (const Pos& p : {Pos{1, 2, 3}, Pos{-20, 4, 9}, Pos{14, 25, 40}, Pos{25, 12, -3}}) {
                const BRepAdaptor_Curve curve(TopoDS::Edge(it.Current()));
                const gp_Pnt point(p.x, p.y, p.z);
                double nearest = DBL_MAX;
                for (int i = 0; i <= 10000; ++i) {
                    const double t = curve.FirstParameter() +
                                     (curve.LastParameter() - curve.FirstParameter()) * i / 10000;
                    nearest = std::min(nearest, point.Distance(curve.Value(t)));
                }
                const auto param = HitOnEdge(it.Current(), p).getEdgeParam();
                ASSERT_TRUE(param);
                EXPECT_LE(point.Distance(curve.Value(*param)), nearest + 1e-6);
                EXPECT_GE(*param, curve.FirstParameter() - 1e-9);
                EXPECT_LE(*param, curve.LastParameter() + 1e-9);
            }
    EXPECT_GE(edges, 7);
}

}  // namespace vrn::selection
