#include "selection/SensitiveTriangleSet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <random>

#include "mesh/Mesh.h"
#include "selection/BVHBuilder.h"
#include "selection/Ray.h"
#include "selection/SensitiveMesh.h"
#include "selection/SensitiveTriangle.h"
#include "selection/SurfaceNormalNotAvailable.h"

namespace vrn::selection {

namespace {

using visual::Box;
using visual::Ray;
using Pos = rob::PosTemplate<float>;
using Line = rob::LineTemplate<float>;
using Triangle = rob::TriangleTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using testing::ElementsAre;

/// Triangles that are handed over as they stand.
class PlainSet : public SensitiveTriangleSet {
public:
    explicit PlainSet(std::vector<Triangle> someTriangles) : triangles(std::move(someTriangles)) {
        for (std::uint32_t i = 0; i < triangles.size(); ++i) {
            auto* triangle = new SensitiveIndexedTriangle(i);
            for (const Pos& p : {triangles[i].p0, triangles[i].p1, triangles[i].p2})
                triangle->box.addPoint(p);
            triangle->box.expand();
            triangle->box.updateCenter();
            primitives.push_back(triangle);
        }
        tree = BVHBuilder(this).build();
    }
    [[nodiscard]] Triangle getTriangleVertices(SensitiveTriangle* triangle) const override {
        return triangles.at(static_cast<SensitiveIndexedTriangle*>(triangle)->index);
    }

    std::vector<Triangle> triangles;
};

const Triangle flat{{0, 0, 0}, {100, 0, 0}, {0, 100, 0}};

Ray Down(float x, float y, float z = 50) { return {{x, y, z}, {0, 0, -1}}; }

/// A pose that turns by a quarter about z and moves.
const Pose turned{{10, 20, 30}, {std::sqrt(0.5f), 0, 0, std::sqrt(0.5f)}};

}  // namespace

// --- a ray at triangles

TEST(SensitiveTriangleSet, BothWindingsOfATriangleAreHit) {
    const PlainSet set({flat});
    const PlainSet reversed({{flat.p0, flat.p2, flat.p1}});
    for (const PlainSet* some : {&set, &reversed}) {
        const Result hit = some->intersectTriangles(Down(10, 10));
        EXPECT_TRUE(hit.hit);
        EXPECT_FLOAT_EQ(hit.distance, 50);
        EXPECT_NEAR((hit.position - Pos{10, 10, 0}).length(), 0, 1e-4);
        EXPECT_EQ(hit.position, hit.localPosition);
    }
}

TEST(SensitiveTriangleSet, TheDistanceIsTheParameterOfARayOfAnyLength) {
    const PlainSet set({flat});
    EXPECT_FLOAT_EQ(set.intersectTriangles(Ray{{10, 10, 50}, {0, 0, -10}}).distance, 5);
}

TEST(SensitiveTriangleSet, ARayAlongASharedEdgeHitsNeitherTriangle) {
    const PlainSet set(
        {{{0, 0, 0}, {100, 0, 0}, {100, 100, 0}}, {{0, 0, 0}, {100, 100, 0}, {0, 100, 0}}});
    EXPECT_FALSE(set.intersectTriangles(Down(50, 50)).hit);
    EXPECT_TRUE(set.intersectTriangles(Down(50, 49.99f)).hit);
    EXPECT_TRUE(set.intersectTriangles(Down(50, 50.01f)).hit);
}

TEST(SensitiveTriangleSet, ARayThroughAVertexMisses) {
    const PlainSet set({flat});
    EXPECT_FALSE(set.intersectTriangles(Down(0, 0)).hit);
    EXPECT_FALSE(set.intersectTriangles(Down(100, 0)).hit);
    EXPECT_TRUE(set.intersectTriangles(Down(0.01f, 0.01f)).hit);
}

TEST(SensitiveTriangleSet, ARayFromThePlaneOfATriangleMisses) {
    const PlainSet set({flat});
    EXPECT_FALSE(set.intersectTriangles(Down(10, 10, 0)).hit);
    EXPECT_TRUE(set.intersectTriangles(Down(10, 10, 1e-3f)).hit);
    EXPECT_FALSE(set.intersectTriangles(Down(10, 10, -1)).hit);
}

TEST(SensitiveTriangleSet, ATriangleWithoutAreaIsNeverHit) {
    const PlainSet set({{{0, 0, 0}, {50, 0, 0}, {100, 0, 0}}, {{5, 5, 0}, {5, 5, 0}, {5, 5, 0}}});
    EXPECT_FALSE(set.intersectTriangles(Down(50, 0)).hit);
    EXPECT_FALSE(set.intersectTriangles(Down(5, 5)).hit);
}

TEST(SensitiveTriangleSet, TheNearestTriangleAnswersWhateverTheOrder) {
    std::vector<Triangle> stack;
    for (const float z : {-20.0f, 30.0f, 10.0f, -40.0f, 20.0f, 0.0f})
        stack.push_back({{0, 0, z}, {100, 0, z}, {0, 100, z}});
    for (int i = 0; i < 6; ++i) {
        const Result hit = PlainSet(stack).intersectTriangles(Down(10, 10));
        EXPECT_FLOAT_EQ(hit.distance, 20);
        std::ranges::rotate(stack, stack.begin() + 1);
    }
}

TEST(SensitiveTriangleSet, ARayAlongEachAxisAndDiagonalHits) {
    // A direction whose components tie is sheared along the later axis.
    for (float x : {-1.0f, 0.0f, 1.0f})
        for (float y : {-1.0f, 0.0f, 1.0f})
            for (float z : {-1.0f, 0.0f, 1.0f}) {
                const rob::Vec3Template<float> d{x, y, z};
                if (d.length() == 0) continue;
                const auto u = d.cross(std::abs(x) < 0.5f ? rob::Vec3Template<float>{1, 0, 0}
                                                          : rob::Vec3Template<float>{0, 1, 0});
                const auto v = d.cross(u);
                const Pos c{7, 8, 9};
                const PlainSet set(
                    {{c + u * 20.0f, c + v * 15.0f - u * 10.0f, c - u * 10.0f - v * 15.0f}});
                const Result hit = set.intersectTriangles(Ray{c - d * 40.0f, {x, y, z}});
                ASSERT_TRUE(hit.hit) << x << ' ' << y << ' ' << z;
                EXPECT_NEAR(hit.distance, 40, 1e-3);
            }
}

TEST(SensitiveTriangleSet, ARayWithoutDirectionOrOfNoNumbersHitsNothing) {
    const PlainSet set({flat});
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(set.intersectTriangles(Ray{{10, 10, 0}, {0, 0, 0}}).hit);
    EXPECT_FALSE(set.intersectTriangles(Ray{{10, 10, 50}, {nan, 0, -1}}).hit);
    EXPECT_FALSE(set.intersectTriangles(Ray{{nan, 10, 50}, {0, 0, -1}}).hit);
}

TEST(SensitiveTriangleSet, RaysAgreeWithDoublePrecisionAwayFromTheEdges) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(-100, 100);
    using V = rob::Vec3Template<double>;
    int hits = 0, misses = 0;
    for (int i = 0; i < 100'000; ++i) {
        std::array<V, 5> p;
        for (V& v : p)
            v = V{std::round(place(random)), std::round(place(random)), std::round(place(random))};
        const V a = p[0], e1 = p[1] - a, e2 = p[2] - a, d = p[4] - p[3];
        const double determinant = e1.dot(d.cross(e2));
        if (std::abs(determinant) < 1000) continue;
        const V s = p[3] - a;
        const double u = s.dot(d.cross(e2)) / determinant, v = d.dot(s.cross(e1)) / determinant;
        const double t = e2.dot(s.cross(e1)) / determinant;
        const double inside = std::min({u, v, 1 - u - v});
        // A band round the edges and the origin in which single precision may go either way.
        if (std::abs(inside) < 1e-3 || std::abs(t) < 1e-3) continue;
        const auto pos = [](const V& w) { return Pos(rob::PosTemplate<double>(w.x, w.y, w.z)); };
        const PlainSet set({{pos(p[0]), pos(p[1]), pos(p[2])}});
        const Result hit = set.intersectTriangles(
            Ray{pos(p[3]), rob::DirTemplate<float>(static_cast<float>(d.x), static_cast<float>(d.y),
                                                   static_cast<float>(d.z))});
        ASSERT_EQ(hit.hit, inside > 0 && t > 0) << i;
        ++(hit.hit ? hits : misses);
        if (!hit.hit) continue;
        ASSERT_NEAR(hit.distance, t, 1e-3 * std::max(1.0, t)) << i;
    }
    EXPECT_GT(hits, 1000);
    EXPECT_GT(misses, 1000);
}

TEST(SensitiveTriangleSet, AmongManyTrianglesTheAnswerIsThatOfAskingEachAlone) {
    std::mt19937 random(13);
    for (const float spread : {30.0f, 3000.0f, 2e6f}) {
        std::uniform_real_distribution<float> place(-spread, spread), side(-spread / 4, spread / 4);
        std::vector<Triangle> triangles;
        std::vector<std::unique_ptr<PlainSet>> alone;
        for (int i = 0; i < 400; ++i) {
            const Pos p{place(random), place(random), place(random)};
            const auto beside = [&] {
                return Pos{p.x + side(random), p.y + side(random), p.z + side(random)};
            };
            triangles.push_back({p, beside(), beside()});
            alone.push_back(std::make_unique<PlainSet>(std::vector{triangles.back()}));
        }
        const PlainSet all(triangles);
        for (int i = 0; i < 500; ++i) {
            const Ray ray{{place(random), place(random), place(random)},
                          {side(random) / spread, i % 3 ? side(random) / spread : 0.002f, 1}};
            Result nearest;
            for (const auto& one : alone) {
                const Result result = one->intersectTriangles(ray);
                if (result.hit && result.distance < nearest.distance) nearest = result;
            }
            const Result found = all.intersectTriangles(ray);
            ASSERT_EQ(found.hit, nearest.hit);
            ASSERT_EQ(found.distance, nearest.distance);
            ASSERT_EQ(found.position, nearest.position);
        }
    }
}

// --- triangles and lines at triangles

TEST(SensitiveTriangleSet, ATriangleThatTouchesOneHasNeitherDistanceNorPosition) {
    const PlainSet set({flat});
    const Result hit = set.intersectTriangles(Triangle{{10, 10, -5}, {10, 10, 5}, {12, 10, 5}});
    EXPECT_TRUE(hit.hit);
    EXPECT_EQ(hit.distance, FLT_MAX);
    EXPECT_EQ(hit.position, Pos{});
    EXPECT_FALSE(set.intersectTriangles(Triangle{{10, 10, 1}, {10, 10, 5}, {12, 10, 5}}).hit);
}

TEST(SensitiveTriangleSet, ALineMeetsTheNearestTriangleAtAParameterFromZeroToOne) {
    const PlainSet set({flat, {{0, 0, 10}, {100, 0, 10}, {0, 100, 10}}});
    const Result hit = set.intersectTriangles(Line{{10, 10, 50}, {10, 10, -50}});
    EXPECT_TRUE(hit.hit);
    EXPECT_FLOAT_EQ(hit.distance, 0.4f);
    EXPECT_NEAR((hit.position - Pos{10, 10, 10}).length(), 0, 1e-4);
    EXPECT_EQ(hit.position, hit.localPosition);
    EXPECT_FALSE(set.intersectTriangles(Line{{10, 10, 50}, {10, 10, 10.5f}}).hit);
}

TEST(SensitiveTriangleSet, ALineAtATriangleWithoutAreaThrows) {
    const PlainSet set({{{0, 0, 0}, {50, 0, 0}, {100, 0, 0}}});
    EXPECT_THROW((void)set.intersectTriangles(Line{{50, 0, 5}, {50, 0, -5}}),
                 SurfaceNormalNotAvailable);
}

TEST(SensitiveTriangleSet, ARegionNamesTheTrianglesWhoseBoxesItOverlapsInOrder) {
    std::vector<Triangle> row;
    for (int i = 0; i < 10; ++i) {
        const auto x = 20.0f * static_cast<float>(i);
        row.push_back({{x, 0, 0}, {x + 10, 0, 0}, {x, 10, 0}});
    }
    const PlainSet set(row);
    std::vector<unsigned> numbers;
    // One unit of margin reaches the boxes on both sides.
    set.intersectTriangles(Box(51, 0, 0, 79.5f, 1, 1), [&](unsigned i) { numbers.push_back(i); });
    EXPECT_THAT(numbers, ElementsAre(2, 3, 4));
}

TEST(SensitiveTriangleSet, ALocationCarriesAHitOnlyIfTheSetHasOne) {
    PlainSet set({flat});
    set.setLocation(turned);
    EXPECT_NEAR((set.intersectTriangles(Down(10, 10)).position - Pos{10, 10, 0}).length(), 0, 1e-4);
    set.hasLocation = true;
    const Result hit = set.intersectTriangles(Down(10, 10));
    EXPECT_NEAR((hit.position - Pos{0, 30, 30}).length(), 0, 1e-4);
    EXPECT_EQ(hit.position, hit.localPosition);
    const Result line = set.intersectTriangles(Line{{10, 10, 50}, {10, 10, -50}});
    EXPECT_NEAR((line.position - Pos{0, 30, 30}).length(), 0, 1e-4);
}

// --- the triangles themselves

TEST(SensitiveTriangle, AnIndexedOneKnowsItsNumberAndKindAndAValuedOneItsPoints) {
    const SensitiveIndexedTriangle indexed(7);
    EXPECT_EQ(indexed.index, 7u);
    EXPECT_EQ(static_cast<int>(indexed.kind), 0);
    const SensitiveValuedTriangle valued({0, 0, 0}, {10, 0, 0}, {0, 20, 0});
    EXPECT_EQ(static_cast<int>(valued.kind), 1);
    EXPECT_TRUE(valued.enabled);
    EXPECT_EQ(valued.points[2], (Pos{0, 20, 0}));
    EXPECT_EQ(valued.box.min, (Pos{-1, -1, -1}));
    EXPECT_EQ(valued.box.max, (Pos{11, 21, 1}));
    EXPECT_FALSE(valued.box.dirty);
    EXPECT_EQ(valued.box.center, (Pos{5, 10, 0}));
}

TEST(SensitiveTriangle, ManyIndexedOnesMayGoInAnyOrder) {
    std::vector<std::unique_ptr<SensitiveIndexedTriangle>> triangles;
    for (std::uint32_t i = 0; i < 5000; ++i)
        triangles.push_back(std::make_unique<SensitiveIndexedTriangle>(i));
    std::ranges::shuffle(triangles, std::mt19937(3));
    std::uint64_t sum = 0;
    for (auto& triangle : triangles) {
        sum += triangle->index;
        triangle.reset();
    }
    EXPECT_EQ(sum, 4999u * 5000u / 2);
}

// --- a mesh

class SensitiveMeshTest : public testing::Test {
protected:
    SensitiveMeshTest() {
        mesh.vertices = {{0, 0, 0}, {100, 0, 0}, {0, 100, 0}, {100, 100, 40}};
        mesh.indices = {0, 1, 2, 1, 3, 2};
    }
    visual::Mesh mesh{"sheet"};
    visual::Visual* const shownBy = reinterpret_cast<visual::Visual*>(&mesh);  // only handed on
};

TEST_F(SensitiveMeshTest, TrianglesAreNumberedFromZeroAndTheirBoxesAreAUnitWider) {
    const SensitiveMesh sensitive(&mesh, shownBy, Pose{});
    ASSERT_EQ(sensitive.primitives.size(), 2u);
    for (std::uint32_t i = 0; i < 2; ++i)
        EXPECT_EQ(static_cast<SensitiveIndexedTriangle*>(sensitive.primitives[i])->index, i);
    EXPECT_EQ(sensitive.primitives[0]->box.min, (Pos{-1, -1, -1}));
    EXPECT_EQ(sensitive.primitives[0]->box.max, (Pos{101, 101, 1}));
    // The box of the whole is that of the mesh itself.
    EXPECT_EQ(sensitive.box.min, (Pos{0, 0, 0}));
    EXPECT_EQ(sensitive.box.max, (Pos{100, 100, 40}));
}

TEST_F(SensitiveMeshTest, VerticesComeThirdFirst) {
    const SensitiveMesh sensitive(&mesh, shownBy, Pose{});
    SensitiveIndexedTriangle triangle(1);
    EXPECT_EQ(sensitive.getTriangleVertices(&triangle),
              (Triangle{mesh.vertices[2], mesh.vertices[3], mesh.vertices[1]}));
    SensitiveIndexedTriangle beyond(2);
    EXPECT_THROW((void)sensitive.getTriangleVertices(&beyond), std::out_of_range);
}

TEST_F(SensitiveMeshTest, ThePoseIsUsedOnceForTheHitAndNotForTheLocalPosition) {
    SensitiveMesh sensitive(&mesh, shownBy, turned);
    EXPECT_FALSE(sensitive.hasLocation);
    const Result hit = sensitive.intersect(Down(0, 30, 90));
    ASSERT_TRUE(hit.hit);
    EXPECT_NEAR((hit.localPosition - Pos{10, 10, 0}).length(), 0, 1e-4);
    EXPECT_NEAR((hit.position - Pos{0, 30, 30}).length(), 0, 1e-4);
    EXPECT_EQ(hit.visual, shownBy);
    const Result line = sensitive.intersect(Line{{0, 30, 90}, {0, 30, -90}});
    EXPECT_NEAR((line.position - Pos{0, 30, 30}).length(), 0, 1e-4);
    EXPECT_EQ(line.visual, shownBy);
    const Result touched = sensitive.intersect(Triangle{{0, 30, 90}, {0, 30, -90}, {1, 30, 90}});
    EXPECT_TRUE(touched.hit);
    EXPECT_EQ(touched.visual, nullptr);
    EXPECT_EQ(sensitive.intersect(Down(500, 500)).visual, nullptr);
}

TEST_F(SensitiveMeshTest, ARegionArrivesInTheSpaceOfTheMesh) {
    const SensitiveMesh sensitive(&mesh, shownBy, turned);
    std::vector<unsigned> numbers;
    // About the corner at (0, 0, 0) of the mesh, which the second triangle does not have.
    sensitive.processIntersectionsWith(Box(0, 10, 29, 10, 21, 31),
                                       [&](unsigned i) { numbers.push_back(i); });
    EXPECT_THAT(numbers, ElementsAre(0, 1));
    numbers.clear();
    sensitive.processIntersectionsWith(Box(200, 10, 29, 210, 21, 31),
                                       [&](unsigned i) { numbers.push_back(i); });
    EXPECT_THAT(numbers, ElementsAre());
}

TEST_F(SensitiveMeshTest, AnIndexWithoutAVertexIsRefused) {
    mesh.indices.push_back(9);
    mesh.indices.push_back(0);
    mesh.indices.push_back(1);
    EXPECT_THROW(SensitiveMesh(&mesh, shownBy, Pose{}), std::out_of_range);
}

TEST_F(SensitiveMeshTest, AMeshWithoutTrianglesIsNeverHit) {
    visual::Mesh empty("empty");
    SensitiveMesh sensitive(&empty, shownBy, Pose{});
    EXPECT_FALSE(sensitive.box.isValid());
    EXPECT_FALSE(sensitive.intersect(Down(0, 0)).hit);
    EXPECT_FALSE(sensitive.intersect(Line{{0, 0, 1}, {0, 0, -1}}).hit);
    EXPECT_FALSE(sensitive.intersect(flat).hit);
}

}  // namespace vrn::selection
