#include "selection/SensitiveLine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "selection/Ray.h"
#include "selection/Result.h"

namespace vrn::selection {

namespace {

using visual::Ray;
using Pos = rob::PosTemplate<float>;

Ray Down(float x, float y, float z = 50) { return {{x, y, z}, {0, 0, -1}}; }

}  // namespace

// Without a camera, as here, the tolerance is 5 units everywhere.

TEST(SensitiveLines, WithoutACameraTheToleranceIsFiveUnits) {
    EXPECT_EQ(SensitiveLine::computeThreshold(10), 5.0f);
    EXPECT_EQ(SensitiveLine::computeThreshold(1e6f), 5.0f);
}

TEST(SensitiveLines, ARayStrictlyWithinTheToleranceHits) {
    SensitiveLine line({0, 0, 0}, {100, 0, 0}, 3.0);
    EXPECT_TRUE(line.intersect(Down(50, 4.99f)).hit);
    EXPECT_FALSE(line.intersect(Down(50, 5.0f)).hit);
    EXPECT_TRUE(line.intersect(Down(104.9f, 0)).hit);
    EXPECT_FALSE(line.intersect(Down(105, 0)).hit);
    EXPECT_TRUE(line.intersect(Down(-4.9f, 0)).hit);
    EXPECT_FALSE(line.intersect(Down(-5, 0)).hit);
}

TEST(SensitiveLines, AHitLiesOnTheSegmentAndItsDistanceIsTheRaysParameter) {
    SensitiveLine line({0, 0, 0}, {100, 0, 0}, 3.0);
    const Result hit = line.intersect(Down(30, 2));
    EXPECT_NEAR((hit.position - Pos{30, 0, 0}).length(), 0, 1e-5);
    EXPECT_EQ(hit.distance, 50.0f);
    EXPECT_NEAR((hit.localPosition - Pos{30, 0, 0}).length(), 0, 1e-4);
    EXPECT_EQ(line.intersect(Ray{{30, 2, 50}, {0, 0, -2}}).distance, 25.0f);
    // Beyond an end the end answers, and with it the ray's own nearest point.
    const Result beyond = line.intersect(Down(103, 0));
    EXPECT_EQ(beyond.position, (Pos{100, 0, 0}));
    EXPECT_EQ(beyond.distance, 50.0f);
    EXPECT_NEAR((beyond.localPosition - Pos{100, 0, 0}).length(), 0, 1e-4);
}

TEST(SensitiveLines, ARayThatLeavesTheLineBehindIsAskedAtItsOrigin) {
    SensitiveLine line({0, 0, 0}, {100, 0, 0}, 3.0);
    EXPECT_FALSE(line.intersect(Ray{{30, 0, 10}, {0, 0, 1}}).hit);
    const Result hit = line.intersect(Ray{{30, 0, 4}, {0, 0, 1}});
    EXPECT_TRUE(hit.hit);
    EXPECT_EQ(hit.distance, 0.0f);
    EXPECT_NEAR((hit.position - Pos{30, 0, 0}).length(), 0, 1e-5);
}

TEST(SensitiveLines, ARayAlongTheLineIsAskedAtItsOrigin) {
    // The parameter of a parallel ray is cut off at 0: a line ahead of it is out of reach.
    SensitiveLine line({10, 0, 0}, {20, 0, 0}, 3.0);
    EXPECT_FALSE(line.intersect(Ray{{0, 0, 0}, {1, 0, 0}}).hit);
    const Result near = line.intersect(Ray{{12, 1, 0}, {1, 0, 0}});
    EXPECT_TRUE(near.hit);
    EXPECT_EQ(near.position, (Pos{12, 0, 0}));
}

TEST(SensitiveLines, ASegmentWithoutLengthHasABoxOfTheToleranceAndAnswersWithItsStart) {
    SensitiveLine line({1, 2, 3}, {1, 2, 3}, 3.0);
    EXPECT_EQ(line.box.min, (Pos{1, -3, -2}));
    EXPECT_EQ(line.box.max, (Pos{1, 7, 8}));
    const Result hit = line.intersect(Ray{{1, 2, 6}, {0, 0, -1}});
    ASSERT_TRUE(hit.hit);
    EXPECT_EQ(hit.localPosition, (Pos{1, 2, 3}));
    EXPECT_EQ(hit.distance, 0.0f);
    EXPECT_FALSE(line.intersect(Ray{{1, 2, 9}, {0, 0, -1}}).hit);
}

TEST(SensitiveLines, TheBoxIsAPrismAboutTheSegment) {
    // Along x: u = x cross y = z and w = x cross z = -y.
    const SensitiveLine alongX({0, 0, 0}, {100, 0, 0}, 3.0);
    EXPECT_EQ(alongX.box.min, (Pos{0, -5, -5}));
    EXPECT_EQ(alongX.box.max, (Pos{100, 5, 5}));
    EXPECT_EQ(alongX.box.center, (Pos{50, 0, 0}));
    EXPECT_FALSE(alongX.box.dirty);
    const SensitiveLine alongZ({0, 0, 0}, {0, 0, 100}, 3.0);
    EXPECT_EQ(alongZ.box.min, (Pos{-5, -5, 0}));
    EXPECT_EQ(alongZ.box.max, (Pos{5, 5, 100}));
}

TEST(SensitiveLines, TheClosestPointsAreThoseOfDoublePrecision) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> place(-30, 30);
    using V = rob::Vec3Template<double>;
    const auto wide = [](const Pos& p) { return V{p.x, p.y, p.z}; };
    int hits = 0;
    for (int i = 0; i < 20'000; ++i) {
        const auto point = [&] { return Pos{place(random), place(random), place(random)}; };
        SensitiveLine line(point(), point(), 3.0);
        const Pos origin = point();
        const auto d = (point() - origin).normalized();
        const V a = wide(line.start), segment = wide(line.end) - a, o = wide(origin),
                u{d.x, d.y, d.z};
        if (segment.cross(u).length() < 1) continue;
        // Where the endless lines come closest behind the ray and beside the segment, the origin
        // alone is asked.
        const V w = o - a;
        const double b = segment.dot(u), e = segment.dot(segment), denominator = e - b * b;
        const double t = (w.dot(segment) * b - w.dot(u) * e) / denominator;
        const double along = (w.dot(segment) - w.dot(u) * b) / denominator;
        if (t < 0.01 && (along < 0 || along > 1)) continue;
        // The distance of the ray to the segment, by fine steps and then finer ones.
        double best = 1e9, centre = 0.5, reach = 0.5;
        for (int round = 0; round < 4; ++round) {
            const double from = centre - reach;
            for (int k = 0; k <= 100; ++k) {
                const double s = std::clamp(from + reach * k / 50.0, 0.0, 1.0);
                const V p = a + segment * s;
                const double gap = (p - (o + u * std::max(0.0, (p - o).dot(u)))).length();
                if (gap >= best) continue;
                best = gap;
                centre = s;
            }
            reach /= 25;
        }
        if (std::abs(best - 5) < 0.01) continue;
        const Result hit = line.intersect(Ray{origin, {d.x, d.y, d.z}});
        ASSERT_EQ(hit.hit, best < 5) << i;
        if (!hit.hit) continue;
        ++hits;
        ASSERT_NEAR((wide(hit.position) - (o + u * static_cast<double>(hit.distance))).length(),
                    best, 0.02)
            << i;
    }
    EXPECT_GT(hits, 500);
}

}  // namespace vrn::selection
