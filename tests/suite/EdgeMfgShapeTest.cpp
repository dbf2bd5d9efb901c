#include "suite/task/EdgeMfgShape.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <gp_Pnt.hxx>
#include <TopoDS.hxx>

#include <cmath>
#include <stdexcept>
#include <vector>

namespace {

using vrn::geometry::MfgVector;
using vrn::geometry::MfgVectors;
using vrn::rob::DirTemplate;
using vrn::task::EdgeMfgShape;
using PathPoint = EdgeMfgShape::PathPoint;

/// From x = `from` to x = `to`; the parameter is the distance from the start.
TopoDS_Edge LineEdge(double from, double to) {
    return BRepBuilderAPI_MakeEdge(gp_Pnt(from, 0, 0), gp_Pnt(to, 0, 0));
}

MfgVectors Upright(const TopoDS_Edge& edge, std::vector<double> parameters = {5}) {
    MfgVectors set{edge, {}};
    for (const double p : parameters) set.vectors.push_back({p, {0, 0, 1}});
    return set;
}

TEST(MfgVectors, DirectionBetweenTwoStoredOnesIsMixedToUnitLength) {
    const MfgVectors set{LineEdge(0, 10), {{10, {0, 1, 0}}, {0, {0, 0, 1}}}};
    const MfgVector v = set.getVectorAtParam(5);
    EXPECT_EQ(v.parameter, 5);
    EXPECT_NEAR(v.direction.y, std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(v.direction.z, std::sqrt(0.5), 1e-12);
    EXPECT_EQ(set.getVectorAtParam(0).direction, (DirTemplate<double>{0, 0, 1}));
    EXPECT_EQ(set.getVectorAtParam(10).direction, (DirTemplate<double>{0, 1, 0}));
}

TEST(MfgVectors, BeyondTheOutermostVectorItsDirectionGoesOn) {
    const MfgVectors set{LineEdge(0, 10), {{2, {0, 0, 1}}, {4, {0, 1, 0}}}};
    EXPECT_EQ(set.getVectorAtParam(0).direction, (DirTemplate<double>{0, 0, 1}));
    EXPECT_EQ(set.getVectorAtParam(9).direction, (DirTemplate<double>{0, 1, 0}));
    EXPECT_EQ(set.getVectorAtParam(9).parameter, 9);
}

TEST(MfgVectors, WithoutVectorsOrHalfWayBetweenOppositeOnesThereIsNoDirection) {
    EXPECT_THROW((void)MfgVectors{}.getVectorAtParam(0), std::out_of_range);
    const MfgVectors set{LineEdge(0, 10), {{0, {0, 0, 1}}, {10, {0, 0, -1}}}};
    EXPECT_THAT(
        [&] { (void)set.getVectorAtParam(5); },
        testing::ThrowsMessage<std::overflow_error>("0-length vector cannot be normalized."));
}

TEST(MfgVector, PoseStandsOnTheEdgeWithZAlongTheDirection) {
    const TopoDS_Edge edge = LineEdge(100, 110);
    const MfgVector v{4, {0, 0, 1}};
    EXPECT_EQ(v.getPos(edge), (vrn::rob::PosTemplate<double>{104, 0, 0}));
    EXPECT_EQ(v.getDir(edge), (DirTemplate<double>{0, 0, 1}));
    EXPECT_EQ(v.getEdgeTangent(edge), (vrn::rob::Vec3Template<double>{1, 0, 0}));
    EXPECT_TRUE(v.getPose(edge).rotation.isApprox({}));
    EXPECT_EQ(v.getPose(edge).position, v.getPos(edge));
}

TEST(MfgVector, TangentFollowsTheDirectionOfTravel) {
    const TopoDS_Edge reversed = TopoDS::Edge(LineEdge(0, 10).Reversed());
    EXPECT_EQ((MfgVector{4, {0, 0, 1}}.getEdgeTangent(reversed)),
              (vrn::rob::Vec3Template<double>{-1, 0, 0}));
}

TEST(MfgVector, DirectionAlongTheTangentHasNoPose) {
    EXPECT_THROW((void)(MfgVector{4, {1, 0, 0}}.getPose(LineEdge(0, 10))), std::overflow_error);
}

TEST(EdgeMfgShape, RenderPointsRunThroughEveryUsedEdgeAndItsVectors) {
    EdgeMfgShape shape;
    shape.addEdge(Upright(LineEdge(0, 20), {5.5}));
    shape.addEdge(Upright(LineEdge(20, 30)), /*used=*/false);
    shape.addEdge(Upright(LineEdge(30, 40), {0}));
    EXPECT_EQ(shape.getMfgVectors().size(), 3u);
    EXPECT_EQ(shape.getUsedMfgVectors().size(), 2u);

    const auto points = shape.getPathPointsForRender();
    ASSERT_EQ(points.size(), 22u + 21u);
    EXPECT_EQ(points.front(), (PathPoint{0, 0}));
    EXPECT_THAT(points, testing::Contains(PathPoint{0, 5.5}));
    EXPECT_EQ(points[21], (PathPoint{0, 20}));
    EXPECT_EQ(points[22], (PathPoint{1, 0}));
    EXPECT_EQ(points.back(), (PathPoint{1, 10}));
}

TEST(EdgeMfgShape, ReversedEdgeIsRunThroughBackwards) {
    EdgeMfgShape shape;
    shape.addEdge(Upright(TopoDS::Edge(LineEdge(0, 10).Reversed())));
    const auto points = shape.getPathPointsForRender();
    EXPECT_EQ(points.front(), (PathPoint{0, 10}));
    EXPECT_EQ(points.back(), (PathPoint{0, 0}));
    EXPECT_EQ(shape.getStart(), (PathPoint{0, 10}));
    EXPECT_EQ(shape.getEnd(), (PathPoint{0, 0}));
}

TEST(EdgeMfgShape, RangeIncludesBothEndsInEitherOrder) {
    EdgeMfgShape shape;
    shape.addEdge(Upright(LineEdge(0, 20)));
    shape.addEdge(Upright(LineEdge(20, 40)));
    const auto points = shape.getPathPointsForRender({0, 18.5}, {1, 1.5});
    EXPECT_EQ(points,
              (std::vector<PathPoint>{{0, 18.5}, {0, 19}, {0, 20}, {1, 0}, {1, 1}, {1, 1.5}}));
    EXPECT_EQ(shape.getPathPointsForRender({1, 1.5}, {0, 18.5}), points);
    EXPECT_EQ(shape.getPathPointsForRender({0, 3}, {0, 3}), (std::vector<PathPoint>{{0, 3}}));
}

TEST(EdgeMfgShape, RangeOffTheUsedEdgesIsEmpty) {
    EdgeMfgShape shape;
    shape.addEdge(Upright(LineEdge(0, 20)));
    EXPECT_TRUE(shape.getPathPointsForRender({-1, 0}, {0, 1}).empty());
    EXPECT_TRUE(shape.getPathPointsForRender({0, 0}, {1, 1}).empty());
    EXPECT_TRUE(EdgeMfgShape().getPathPointsForRender({0, 0}, {0, 1}).empty());
}

TEST(EdgeMfgShape, EdgeWithoutVectorsIsNotDrawn) {
    EdgeMfgShape shape;
    shape.addEdge({LineEdge(0, 20), {}});
    shape.addEdge(Upright(LineEdge(20, 40)));
    const auto points = shape.getPathPointsForRender();
    EXPECT_EQ(points.size(), 21u);
    EXPECT_EQ(points.front().index, 1);
}

TEST(EdgeMfgShape, StartAndEndAreTheChainsEndsUntilARangeIsSet) {
    EdgeMfgShape shape;
    EXPECT_EQ(shape.getStart(), PathPoint{});
    EXPECT_EQ(shape.getEnd(), PathPoint{});
    shape.addEdge(Upright(LineEdge(0, 20)));
    shape.addEdge(Upright(LineEdge(20, 50)));
    EXPECT_EQ(shape.getStart(), (PathPoint{0, 0}));
    EXPECT_EQ(shape.getEnd(), (PathPoint{1, 30}));
    shape.setRange({0, 4}, {1, 2});
    EXPECT_EQ(shape.getStart(), (PathPoint{0, 4}));
    EXPECT_EQ(shape.getEnd(), (PathPoint{1, 2}));
}

TEST(EdgeMfgShape, EdgeWithoutCurveIsRefusedWhenItIsAskedFor) {
    EdgeMfgShape shape;
    shape.addEdge(Upright(TopoDS_Edge()));
    EXPECT_THROW((void)shape.getPathPointsForRender(), std::invalid_argument);
}

}  // namespace
