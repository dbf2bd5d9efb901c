#include "apps/vrnview/Framing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

namespace vrn::host {
namespace {

using Pos = rob::PosTemplate<double>;
using Vec = rob::Vec3Template<double>;

constexpr double sixtyDegrees = std::numbers::pi / 3;
constexpr std::array allViews{StandardView::Iso,   StandardView::Front, StandardView::Back,
                              StandardView::Left,  StandardView::Right, StandardView::Top,
                              StandardView::Bottom};

const Bounds grid({-10000, -10000, 0}, {10000, 10000, 0});

/// Where a point falls on the picture: both from -1 to 1 inside it; depth in front of the camera.
struct Seen {
    double x, y, depth;
};

Seen Project(const CameraPlacement& camera, const FieldOfView& fov, const Pos& p) {
    const Vec local = camera.pose.rotation.inverse() * (p - camera.pose.position);
    const double t = std::tan(fov.horizontalRad / 2);
    return {local.x / (-local.z * t), local.y / (-local.z * t) * fov.aspect, -local.z};
}

struct SizeCase {
    const char* name;
    Bounds box;
};

class FramingOfSizes : public testing::TestWithParam<SizeCase> {};

TEST_P(FramingOfSizes, FillsThePictureFromEverySide) {
    const Bounds& box = GetParam().box;
    for (const double aspect : {16.0 / 9, 1.0, 0.4}) {
        for (const StandardView view : allViews) {
            const FieldOfView fov{sixtyDegrees, aspect};
            const CameraPlacement camera = FramePoints(CornersOf(box), grid, view, fov);
            double left = 1, right = -1, low = 1, high = -1;
            for (const Pos& corner : CornersOf(box)) {
                const Seen seen = Project(camera, fov, corner);
                left = std::min(left, seen.x);
                right = std::max(right, seen.x);
                low = std::min(low, seen.y);
                high = std::max(high, seen.y);
                EXPECT_GT(seen.depth, camera.nearClip);
                EXPECT_LT(seen.depth, camera.farClip);
            }
            // The wider of the two directions takes 92 percent, the other is centred.
            EXPECT_NEAR(std::max({right, -left, high, -low}), 0.92, 1e-6);
            EXPECT_NEAR(left + right, 0, 1.0) << static_cast<int>(view);
            EXPECT_TRUE(std::abs(right - left - 1.84) < 1e-6 || std::abs(high - low - 1.84) < 1e-6);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Boxes, FramingOfSizes,
    testing::Values(SizeCase{"Unit", {{0, 0, 0}, {1, 1, 1}}},
                    SizeCase{"TenthOfAMillimetre", {{-0.05, -0.05, 0}, {0.05, 0.05, 0.1}}},
                    SizeCase{"Kilometres", {{-2e6, -1e6, 0}, {2e6, 1e6, 3e5}}},
                    SizeCase{"LongAndThin", {{0, 0, 0}, {5000, 3, 3}}},
                    SizeCase{"FarFromTheOrigin", {{5e5, 5e6, 200}, {5.01e5, 5.001e6, 400}}}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Framing, ViewsLookAlongTheirAxes) {
    const Bounds box({-1, -1, -1}, {1, 1, 1});
    const FieldOfView fov{sixtyDegrees, 1};
    const auto looks = [&](StandardView view) {
        const CameraPlacement camera = FramePoints(CornersOf(box), grid, view, fov);
        return std::pair{camera.pose.rotation * Vec{0, 0, -1}, camera.pose.rotation * Vec{0, 1, 0}};
    };
    const auto expect = [&](StandardView view, const Vec& forward, const Vec& up) {
        const auto [seenForward, seenUp] = looks(view);
        EXPECT_NEAR((seenForward - forward).length(), 0, 1e-9) << static_cast<int>(view);
        EXPECT_NEAR((seenUp - up).length(), 0, 1e-9) << static_cast<int>(view);
    };
    expect(StandardView::Front, {0, 1, 0}, {0, 0, 1});
    expect(StandardView::Back, {0, -1, 0}, {0, 0, 1});
    expect(StandardView::Left, {1, 0, 0}, {0, 0, 1});
    expect(StandardView::Right, {-1, 0, 0}, {0, 0, 1});
    expect(StandardView::Top, {0, 0, -1}, {0, 1, 0});
    expect(StandardView::Bottom, {0, 0, 1}, {0, -1, 0});
    const auto [forward, up] = looks(StandardView::Iso);
    EXPECT_NEAR((forward - Vec{-1, 1, -1} * (1 / std::sqrt(3.0))).length(), 0, 1e-9);
    EXPECT_GT(up.z, 0.8);
}

TEST(Framing, SinglePointIsSeenFromOutside) {
    const Bounds point({5, 6, 7}, {5, 6, 7});
    const FieldOfView fov{sixtyDegrees, 1.5};
    for (const StandardView view : allViews) {
        const CameraPlacement camera = FramePoints(CornersOf(point), Bounds(), view, fov);
        const Seen seen = Project(camera, fov, {5, 6, 7});
        EXPECT_NEAR(seen.x, 0, 1e-3);
        EXPECT_NEAR(seen.y, 0, 1e-3);
        EXPECT_GT(seen.depth, camera.nearClip);
        EXPECT_GT(camera.nearClip, 0);
        EXPECT_GT(camera.farClip, seen.depth);
    }
}

TEST(Framing, LineAlongTheViewIsSeenFromOutside) {
    const Bounds line({0, -100, 0}, {0, 100, 0});
    const FieldOfView fov{sixtyDegrees, 1.5};
    const CameraPlacement camera = FramePoints(CornersOf(line), Bounds(), StandardView::Front, fov);
    EXPECT_LT(camera.pose.position.y, -100 - camera.nearClip);
}

TEST(Framing, EmptySceneShowsTheMiddleOfTheFurniture) {
    const FieldOfView fov{sixtyDegrees, 1.5};
    const CameraPlacement camera = FramePoints({}, grid, StandardView::Iso, fov);
    const Seen seen = Project(camera, fov, {0, 0, 0});
    EXPECT_NEAR(seen.x, 0, 0.1);
    EXPECT_NEAR(seen.y, 0, 0.5);
    EXPECT_GT(seen.depth, camera.nearClip);
}

TEST(Framing, PointsThatAreNotFiniteArePassedOver) {
    const FieldOfView fov{sixtyDegrees, 1.5};
    std::vector<Pos> points = CornersOf(Bounds({0, 0, 0}, {1, 1, 1}));
    const CameraPlacement without = FramePoints(points, grid, StandardView::Iso, fov);
    points.push_back({std::numeric_limits<double>::quiet_NaN(), 0, 0});
    points.push_back({0, std::numeric_limits<double>::infinity(), 0});
    EXPECT_EQ(FramePoints(points, grid, StandardView::Iso, fov).pose, without.pose);
}

TEST(Framing, EmptyBoxHasNoCorners) {
    EXPECT_TRUE(CornersOf(Bounds()).empty());
    EXPECT_EQ(CornersOf(Bounds({0, 0, 0}, {1, 1, 1})).size(), 8u);
}

TEST(Framing, FurnitureBehindASmallSceneIsNotCutOff) {
    const FieldOfView fov{sixtyDegrees, 1.5};
    const CameraPlacement camera =
        FramePoints(CornersOf(Bounds({0, 0, 0}, {0.1, 0.1, 0.1})), grid, StandardView::Iso, fov);
    EXPECT_GT(camera.farClip, Project(camera, fov, {-10000, 10000, 0}).depth);
}

TEST(Framing, LooseScenesAreFramedByTheirOuterPoints) {
    const FieldOfView fov{sixtyDegrees, 1};
    const std::array points{Pos{-10, 0, 0.5}, Pos{0, 0, 0}, Pos{10, 0, 0.5}};
    const CameraPlacement camera = FramePoints(points, grid, StandardView::Front, fov);
    EXPECT_NEAR(Project(camera, fov, {-10, 0, 0.5}).x, -0.92, 1e-6);
    EXPECT_NEAR(Project(camera, fov, {10, 0, 0.5}).x, 0.92, 1e-6);
}

TEST(LookFrom, StandsAtTheSpotAndLooksAtTheTarget) {
    const CameraPlacement placement = LookFrom({{0, -100, 0}, {0, 0, 0}}, {}, {});
    EXPECT_EQ(placement.pose.position, (rob::PosTemplate<double>{0, -100, 0}));
    const auto forward = placement.pose.rotation.rotated({0, 0, -1});
    const auto up = placement.pose.rotation.rotated({0, 1, 0});
    EXPECT_NEAR(forward.y, 1, 1e-12);
    EXPECT_NEAR(up.z, 1, 1e-12);
}

TEST(LookFrom, StraightDownHasYUp) {
    for (const double height : {100.0, -100.0}) {
        const CameraPlacement placement = LookFrom({{5, 5, height}, {5, 5, 0}}, {}, {});
        EXPECT_NEAR(placement.pose.rotation.rotated({0, 1, 0}).y, 1, 1e-12);
    }
}

TEST(LookFrom, ClipDistancesHoldWhatIsInFront) {
    const std::vector<rob::PosTemplate<double>> points{{0, 10, 0}, {0, 500, 0}, {0, -50, 0}};
    const CameraPlacement placement = LookFrom({{0, 0, 0}, {0, 1, 0}}, points, {});
    EXPECT_GT(placement.nearClip, 0);
    EXPECT_LE(placement.nearClip, 10);
    EXPECT_GE(placement.farClip, 500);
}

TEST(LookFrom, SpotThatLooksAtItselfAndEmptyScenesStillGiveACamera) {
    const CameraPlacement placement = LookFrom({{1, 2, 3}, {1, 2, 3}}, {}, {});
    EXPECT_NEAR(placement.pose.rotation.rotated({0, 0, -1}).y, 1, 1e-12);
    EXPECT_GT(placement.nearClip, 0);
    EXPECT_GT(placement.farClip, placement.nearClip);
}

}  // namespace
}  // namespace vrn::host
