// What is picked within a tolerance of the screen, or of the world, on the real engine.
#include <cmath>

#include <gtest/gtest.h>

#include "selection/Ray.h"
#include "selection/Result.h"
#include "selection/SensitiveEdge.h"
#include "selection/SensitiveLine.h"
#include "selection/SensitivePoints.h"
#include "suite/layout/PointCloud.h"
#include "tests/support/SolidFixture.h"
#include "view/Camera.h"
#include "visual/geometry/EdgeVisual.h"
#include "visual/geometry/PointCloudVisual.h"

namespace vrn::test {

namespace {

using selection::Result;
using selection::SensitiveEdge;
using selection::SensitiveLine;
using selection::SensitivePoints;
using visual::EdgeVisual;
using visual::PointCloudVisual;
using visual::Ray;
using Pos = rob::PosTemplate<float>;

Ray Down(float x, float y, float z = 50) { return {{x, y, z}, {0, 0, -1}}; }

}  // namespace

class SensitivePicks : public EngineTest {
protected:
    EdgeVisual* showEdge(const TopoDS_Edge& edge) {
        return EdgeVisual::Build(scene().root, "edge", edge, "BodyCurve", "BodyCurveHighlighted",
                                 "BodyCurveSelected", /*generated=*/false);
    }
    PointCloudVisual* showCloud(std::vector<Pos> points) {
        return PointCloudVisual::Build(scene().root,
                                       model.make<layout::PointCloud>("scan", std::move(points)));
    }
};

TEST_F(SensitivePicks, TheToleranceOfALineIsFivePixelsAtItsDistance) {
    const visual::Camera& camera = *visual::Camera::Get();
    const float pixel = 2 * 1000 * std::tan(camera.getVFOV() / 2) / windowHeight;
    EXPECT_NEAR(SensitiveLine::computeThreshold(1000), 5 * pixel, 1e-3);
    EXPECT_NEAR(SensitiveLine::computeThreshold(2000), 10 * pixel, 1e-3);
    // The box is as wide as the tolerance ten thousand units away.
    const SensitiveLine line({0, 0, 0}, {100, 0, 0}, 3.0);
    EXPECT_NEAR(line.box.max.y, 50 * pixel, 1e-2);
    EXPECT_NEAR(line.box.max.z, 50 * pixel, 1e-2);
    EXPECT_EQ(line.box.max.x, 100);
}

TEST_F(SensitivePicks, ALineIsPickedFourPixelsBesideItAndNotSix) {
    lookFrom({50, 0, 1000}, {50, 0.001f, 0});
    SensitiveLine line({0, 0, 0}, {100, 0, 0}, 3.0);
    const auto at = project({50, 0, 0});
    const visual::Camera& camera = *visual::Camera::Get();
    EXPECT_TRUE(line.intersect(camera.getViewportRay(at.x, at.y + 4)).hit);
    EXPECT_FALSE(line.intersect(camera.getViewportRay(at.x, at.y + 6)).hit);
    EXPECT_TRUE(line.intersect(camera.getViewportRay(at.x, at.y - 4)).hit);
    EXPECT_FALSE(line.intersect(camera.getViewportRay(at.x, at.y - 6)).hit);
}

TEST_F(SensitivePicks, AnEdgeIsItsPolylineAndTellsItself) {
    const TopoDS_Edge shape = LineEdge({0, 0, 0}, {100, 0, 0});
    SensitiveEdge sensitive(showEdge(shape), shape);
    EXPECT_FALSE(sensitive.hasLocation);
    ASSERT_EQ(sensitive.primitives.size(), 1u);
    const Result hit = sensitive.intersect(Down(40, 0.05f));
    ASSERT_TRUE(hit.hit);
    EXPECT_TRUE(hit.edge.IsSame(shape));
    EXPECT_NEAR((hit.position - Pos{40, 0, 0}).length(), 0, 1e-3);
    EXPECT_TRUE(sensitive.intersect(Down(40, 90)).edge.IsNull());
    EXPECT_FALSE(sensitive.intersect(rob::LineTemplate<float>{{40, 0, 1}, {40, 0, -1}}).hit);
    EXPECT_FALSE(
        sensitive.intersect(rob::TriangleTemplate<float>{{40, 0, 1}, {40, 0, -1}, {41, 0, 1}}).hit);
}

TEST_F(SensitivePicks, PointsOfAnEdgeCloserThanAMillionthAreMerged) {
    const TopoDS_Edge shape = LineEdge({0, 0, 0}, {100, 0, 0});
    EdgeVisual* edge = showEdge(shape);
    edge->addPoint(100, 0.5e-6f, 0);
    edge->addPoint(100, 0.9e-6f, 0);
    edge->addPoint(100, 50, 0);
    const SensitiveEdge sensitive(edge, shape);
    ASSERT_EQ(sensitive.primitives.size(), 2u);
    EXPECT_EQ(static_cast<SensitiveLine*>(sensitive.primitives[1])->start, (Pos{100, 0, 0}));
}

TEST_F(SensitivePicks, AnEdgeThatStandsElsewhereCarriesItsHitsThere) {
    const TopoDS_Edge shape = LineEdge({0, 0, 0}, {100, 0, 0});
    EdgeVisual* edge = showEdge(shape);
    edge->setPosition(0, 500, 0);
    SensitiveEdge sensitive(edge, shape);
    EXPECT_TRUE(sensitive.hasLocation);
    EXPECT_TRUE(sensitive.box.isPointInside(50, 500, 0));
    const Result hit = sensitive.intersect(Down(40, 500));
    ASSERT_TRUE(hit.hit);
    EXPECT_NEAR((hit.position - Pos{40, 500, 0}).length(), 0, 1e-3);
    EXPECT_NEAR((hit.localPosition - Pos{40, 0, 0}).length(), 0, 1e-3);
    edge->setPosition(0, 0.009f, 0);
    EXPECT_FALSE(SensitiveEdge(edge, shape).hasLocation);
    edge->setPosition(0, 0.011f, 0);
    EXPECT_TRUE(SensitiveEdge(edge, shape).hasLocation);
}

TEST_F(SensitivePicks, APointLessThanThreeUnitsFromTheRayIsHitWhateverTheZoom) {
    PointCloudVisual* cloud = showCloud({{0, 0, 0}});
    SensitivePoints points(cloud, {0});
    for (const float height : {5.0f, 5e4f}) {
        EXPECT_TRUE(points.intersect(Down(2.99f, 0, height)).hit);
        EXPECT_FALSE(points.intersect(Down(3.0f, 0, height)).hit);
    }
}

TEST_F(SensitivePicks, TheNearestPointAnswersAndOfEqualOnesTheEarlierIndex) {
    PointCloudVisual* cloud = showCloud({{0, 0, 0}, {1, 0, 10}, {-1, 0, 10}, {0, 0, 5}});
    SensitivePoints points(cloud, {0, 1, 2, 3});
    const Result hit = points.intersect(Down(0, 0));
    EXPECT_EQ(hit.index, 1);
    EXPECT_FLOAT_EQ(hit.distance, std::sqrt(40.0f * 40 + 1));
    EXPECT_EQ(hit.position, (Pos{1, 0, 10}));
    EXPECT_EQ(hit.localPosition, hit.position);
    EXPECT_EQ(hit.visual, cloud);
    EXPECT_EQ(SensitivePoints(cloud, {2, 1}).intersect(Down(0, 0)).index, 2);
    EXPECT_EQ(SensitivePoints(cloud, {0}).intersect(Down(0, 0)).index, 0);
}

TEST_F(SensitivePicks, ARayWithoutDirectionIsRefusedByPoints) {
    SensitivePoints points(showCloud({{0, 0, 0}}), {0});
    EXPECT_THROW((void)points.intersect(Ray{{0, 0, 0}, {0, 0, 0}}), std::overflow_error);
}

}  // namespace vrn::test
