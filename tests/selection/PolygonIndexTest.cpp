#include "selection/PolygonIndex.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace vrn::selection {

namespace {

using Point = PolygonIndex::Point;
using Polygon = std::vector<Point>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

/// The plain crossing test: what the grid must answer to the bit.
bool EdgeByEdge(const Polygon& polygon, const Point& p) {
    if (polygon.size() < 3) return false;
    bool inside = false;
    const Point* a = &polygon.back();
    for (const Point& b : polygon) {
        if ((p.y < b.y) != (p.y < a->y) && p.x < (a->x - b.x) * (p.y - b.y) / (a->y - b.y) + b.x)
            inside = !inside;
        a = &b;
    }
    return inside;
}

class Random {
public:
    explicit Random(unsigned seed) : engine(seed) {}
    float number(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(engine);
    }
    int whole(int low, int high) { return std::uniform_int_distribution(low, high)(engine); }
    Point point(float size) { return {number(-size, size), number(-size, size)}; }

private:
    std::mt19937 engine;
};

Polygon Star(int corners, float inner, float outer) {
    Polygon result;
    for (int i = 0; i < corners; ++i) {
        const float angle = 6.2831853f * static_cast<float>(i) / static_cast<float>(corners);
        const float radius = i % 2 == 0 ? outer : inner;
        result.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    return result;
}

/// Where a grid could go wrong: at the corners and edges of the polygon, and one float beside.
Polygon DelicatePoints(const Polygon& polygon, Random& random) {
    Polygon result;
    const auto add = [&](const Point& p) {
        for (const float x : {p.x, std::nextafter(p.x, -infinite), std::nextafter(p.x, infinite)})
            for (const float y :
                 {p.y, std::nextafter(p.y, -infinite), std::nextafter(p.y, infinite)})
                result.push_back({x, y});
    };
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Point &a = polygon[i], &b = polygon[(i + 1) % polygon.size()];
        add(a);
        for (int k = 0; k < 20; ++k) {
            const float t = random.number(0, 1);
            add({a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t});
            add({a.x + (b.x - a.x) * t, a.y});
            add({a.x, a.y + (b.y - a.y) * t});
            add({random.number(-2, 2), a.y});
        }
    }
    return result;
}

/// Asks for all points, one by one and in batches.
void ExpectSameAsEdges(const Polygon& polygon, const Polygon& points) {
    const PolygonIndex index(polygon);
    for (std::size_t start = 0; start < points.size(); start += PolygonIndex::batchSize) {
        const std::size_t count = std::min(points.size() - start, PolygonIndex::batchSize);
        std::vector<float> x, y;
        for (std::size_t i = start; i < start + count; ++i) {
            x.push_back(points[i].x);
            y.push_back(points[i].y);
        }
        std::vector<std::uint8_t> inside(count, 7);
        index.contain(x, y, inside);
        for (std::size_t i = 0; i < count; ++i) {
            const Point& p = points[start + i];
            const bool expected = EdgeByEdge(polygon, p);
            ASSERT_EQ(inside[i], expected ? 1 : 0) << p.x << ", " << p.y;
            ASSERT_EQ(index.contains(p), expected) << p.x << ", " << p.y;
        }
    }
}

Polygon RandomPoints(Random& random, int count, float size) {
    Polygon result;
    for (int i = 0; i < count; ++i) result.push_back(random.point(size));
    return result;
}

}  // namespace

TEST(PolygonIndex, AnswersLikeTheEdgesForRandomOutlinesThatCrossThemselves) {
    Random random(1);
    for (int i = 0; i < 60; ++i) {
        const Polygon polygon = RandomPoints(random, random.whole(3, 100), 1);
        ASSERT_TRUE(PolygonIndex(polygon).hasGrid());
        ExpectSameAsEdges(polygon, RandomPoints(random, 20000, 1.1f));
        ExpectSameAsEdges(polygon, DelicatePoints(polygon, random));
    }
}

TEST(PolygonIndex, AnswersLikeTheEdgesForStarsCirclesAndOutlinesOnACoarseLattice) {
    Random random(2);
    for (int i = 0; i < 25; ++i) {
        Polygon lattice;  // level, upright, doubled and overlapping edges
        for (int k = random.whole(3, 40); k > 0; --k)
            lattice.push_back({static_cast<float>(random.whole(-4, 4)) * 0.25f,
                               static_cast<float>(random.whole(-4, 4)) * 0.25f});
        for (const Polygon& polygon :
             {lattice, Star(100, 0.3f, 0.9f), Star(100, 0.8f, 0.8f), Star(7, 0.01f, 1)}) {
            ExpectSameAsEdges(polygon, RandomPoints(random, 2000, 1.2f));
            ExpectSameAsEdges(polygon, DelicatePoints(polygon, random));
        }
    }
}

TEST(PolygonIndex, AnswersLikeTheEdgesForSmallOutlinesFarFromTheOrigin) {
    Random random(3);
    for (const float size : {0.3f, 0.02f, 0.003f, 1e-5f, 1e-7f})
        for (int i = 0; i < 20; ++i) {
            Polygon polygon = RandomPoints(random, 30, size);
            for (Point& p : polygon) p = {p.x + 0.9f, p.y - 0.7f};
            Polygon points = DelicatePoints(polygon, random);
            for (int k = 0; k < 2000; ++k) {
                const Point p = random.point(size * 1.2f);
                points.push_back({p.x + 0.9f, p.y - 0.7f});
            }
            ExpectSameAsEdges(polygon, points);
        }
    // The smallest are too small for a grid to keep its promise.
    const Polygon tiny{{0.9f, 0.9f}, {0.90001f, 0.9f}, {0.9f, 0.90001f}};
    EXPECT_FALSE(PolygonIndex(tiny).hasGrid());
}

TEST(PolygonIndex, AnswersLikeTheEdgesForPointsFarOutsideAndWithoutValue) {
    Random random(4);
    const Polygon polygon = Star(100, 0.3f, 0.9f);
    Polygon points;
    for (const float x : {0.0f, 0.5f, 2.0f, -2.0f, 1e30f, -1e30f, infinite, -infinite, nan})
        for (const float y : {0.0f, 0.5f, 2.0f, -2.0f, 1e30f, -1e30f, infinite, -infinite, nan})
            points.push_back({x, y});
    ExpectSameAsEdges(polygon, points);
}

TEST(PolygonIndex, OddPolygonsAreAnsweredEdgeByEdge) {
    Random random(5);
    const Polygon points = RandomPoints(random, 500, 1.5f);
    const Polygon level{{-1, 0.5f}, {0, 0.5f}, {1, 0.5f}};
    const Polygon broken{{-1, -1}, {nan, 1}, {1, -1}, {0, 1}};
    const Polygon endless{{-1, -1}, {infinite, 1}, {1, -1}, {0, 1}};
    const Polygon huge{{-1e20f, -1}, {1e20f, 1}, {1, -1}, {0, 1}};
    for (const Polygon& polygon : {level, broken, endless, huge}) {
        EXPECT_FALSE(PolygonIndex(polygon).hasGrid());
        ExpectSameAsEdges(polygon, points);
    }
}

TEST(PolygonIndex, FewerThanThreeCornersHoldNothing) {
    for (const Polygon& polygon : {Polygon{}, Polygon{{0, 0}}, Polygon{{-1, -1}, {1, 1}}}) {
        const PolygonIndex index(polygon);
        EXPECT_FALSE(index.contains({0, 0}));
        ExpectSameAsEdges(polygon, {{0, 0}, {-1, -1}, {0.5f, 0.5f}});
    }
}

TEST(PolygonIndex, TheEvenOddRuleHoldsAgainstExactCountingAlongTheOtherAxis) {
    // Whole numbers, so that crossings are exact; the ray goes towards -y where ours goes to +x.
    Random random(6);
    int inside = 0, outside = 0;
    for (int i = 0; i < 300; ++i) {
        std::vector<std::pair<int, int>> corners;
        Polygon polygon;
        for (int k = random.whole(3, 30); k > 0; --k) {
            corners.emplace_back(random.whole(-50, 50), random.whole(-50, 50));
            polygon.push_back({static_cast<float>(corners.back().first),
                               static_cast<float>(corners.back().second)});
        }
        const PolygonIndex index(polygon);
        for (int k = 0; k < 300; ++k) {
            const int x = random.whole(-55, 55), y = random.whole(-55, 55);
            bool odd = false, onEdge = false;
            for (std::size_t j = 0; j < corners.size(); ++j) {
                const auto [ax, ay] = corners[j];
                const auto [bx, by] = corners[(j + 1) % corners.size()];
                const int turn = (bx - ax) * (y - ay) - (by - ay) * (x - ax);
                onEdge = onEdge || (turn == 0 && x >= std::min(ax, bx) && x <= std::max(ax, bx) &&
                                    y >= std::min(ay, by) && y <= std::max(ay, by));
                if ((ax <= x) != (bx <= x) && (ax < bx ? turn > 0 : turn < 0)) odd = !odd;
            }
            if (onEdge) continue;
            ASSERT_EQ(index.contains({static_cast<float>(x), static_cast<float>(y)}), odd)
                << "polygon " << i << " at " << x << ", " << y;
            ++(odd ? inside : outside);
        }
    }
    EXPECT_GE(inside, 10000);
    EXPECT_GE(outside, 10000);
}

}  // namespace vrn::selection
