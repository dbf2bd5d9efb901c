#include "selection/Math.h"

#include "selection/SurfaceNormalNotAvailable.h"

#include <gtest/gtest.h>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

namespace vrn::selection {

namespace {

using Pos = Math::Pos;
using Vec = Math::Vec;
using Vec2 = Math::Vec2;
using Line = Math::Line;
using Triangle = Math::Triangle;
using Dir = rob::DirTemplate<float>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
const Triangle ground{{0, 0, 0}, {10, 0, 0}, {0, 10, 0}};

Triangle Raised(const Triangle& t, float z) {
    return {{t.p0.x, t.p0.y, z}, {t.p1.x, t.p1.y, z}, {t.p2.x, t.p2.y, z}};
}

template <class Error, class Call>
std::string MessageOf(const Call& call) {
    try {
        call();
    } catch (const Error& error) {
        return error.what();
    }
    return "nothing was thrown";
}

}  // namespace

TEST(Math, SortPutsTheSmallerValueFirst) {
    float a = 3, b = -1;
    Math::sort(a, b);
    EXPECT_EQ(a, -1);
    EXPECT_EQ(b, 3);
    Math::sort(a, b);
    EXPECT_EQ(a, -1);
    EXPECT_EQ(b, 3);
}

TEST(Math, ValuesAreEqualUpToButNotAtAThousandth) {
    EXPECT_TRUE(Math::isEqual(0, 0.0009999f));
    EXPECT_TRUE(Math::isEqual(0.0009999f, 0));
    EXPECT_FALSE(Math::isEqual(0, 0.001f));
    EXPECT_FALSE(Math::isEqual(0.001f, 0));
    EXPECT_FALSE(Math::isEqual(nan, nan));
}

TEST(TriangleTriangle, CrossingTrianglesTouchAndDistantOnesDoNot) {
    const Triangle upright{{2, 2, -5}, {3, 2, -5}, {2, 2, 5}};
    EXPECT_TRUE(Math::Intersect(ground, upright));
    EXPECT_TRUE(Math::Intersect(upright, ground));
    const Triangle beside{{20, 2, -5}, {21, 2, -5}, {20, 2, 5}};
    EXPECT_FALSE(Math::Intersect(ground, beside));
    EXPECT_FALSE(Math::Intersect(beside, ground));
}

TEST(TriangleTriangle, TrianglesThatShareOneVertexTouch) {
    const Triangle upright{{10, 0, 0}, {15, 0, 5}, {15, 0, -5}};
    EXPECT_TRUE(Math::Intersect(ground, upright));
    const Triangle standing{{10, 0, 0}, {12, 1, 5}, {14, -1, 5}};
    EXPECT_TRUE(Math::Intersect(ground, standing));
    EXPECT_TRUE(Math::Intersect(standing, ground));
}

TEST(TriangleTriangle, AllStrictlyOnOneSideMissesBeforeTheToleranceCounts) {
    EXPECT_FALSE(Math::Intersect(ground, Raised(ground, 1e-5f)));
    EXPECT_FALSE(Math::Intersect(ground, Raised(ground, -1e-5f)));
}

/// Lies over a corner of the other triangle, half its height above and half below; the line in
/// which the planes cross leads through both, but through this one far beyond the other. So they
/// touch only if they count as lying in one plane.
class NearlyFlat : public ::testing::Test {
protected:
    static bool touches(float height, float size) {
        const Triangle flat{{-size, 0, 0}, {size, 0, 0}, {0, size, 0}};
        const Triangle tilted{{0.4f * size, 0.2f * size, height},
                              {-0.4f * size, 6 * size, -height},
                              {0.5f * size, 3 * size, height}};
        return Math::Intersect(flat, tilted);
    }
};

TEST_F(NearlyFlat, VerticesNearerThanAThousandthLieInThePlane) {
    EXPECT_TRUE(touches(std::nextafter(0.001f, 0.0f), 1));
    EXPECT_FALSE(touches(0.001f, 1));
    EXPECT_FALSE(touches(std::nextafter(0.001f, 1.0f), 1));
}

TEST_F(NearlyFlat, TheThousandthIsADistanceWhateverTheSizeOfTheTriangle) {
    for (const float size : {1.0f, 10.0f, 100.0f, 1000.0f}) {
        EXPECT_TRUE(touches(0.00099f, size)) << size;
        EXPECT_FALSE(touches(0.00101f, size)) << size;
    }
}

TEST(TriangleTriangle, TheSquareOfTheThousandthIsThatOfSinglePrecision) {
    EXPECT_EQ(std::bit_cast<std::uint32_t>(0.001f * 0.001f), 0x358637BEu);
}

TEST(TriangleTriangle, LargeTrianglesDoNotOverflow) {
    // Four distances and a coordinate multiplied would pass the largest float, and the infinities
    // would compare as touching.
    const Triangle big{{0, 0, 0}, {50000, 0, 0}, {0, 50000, 0}};
    const Triangle beside{{90000, 10000, -30000}, {95000, 10000, -30000}, {90000, 11000, 40000}};
    EXPECT_FALSE(Math::Intersect(big, beside));
    EXPECT_FALSE(Math::Intersect(beside, big));
    const Triangle through{{10000, 10000, -30000}, {15000, 10000, -30000}, {10000, 11000, 40000}};
    EXPECT_TRUE(Math::Intersect(big, through));
}

TEST(TriangleTriangle, CoplanarTrianglesTouchWhereEdgesCrossOrOneHoldsTheOther) {
    EXPECT_TRUE(Math::Intersect(ground, {{5, -5, 0}, {6, -5, 0}, {5, 5, 0}}));
    const Triangle inner{{1, 1, 0}, {2, 1, 0}, {1, 2, 0}};
    EXPECT_TRUE(Math::Intersect(ground, inner));
    EXPECT_TRUE(Math::Intersect(inner, ground));
    EXPECT_TRUE(Math::Intersect(ground, ground));
    EXPECT_FALSE(Math::Intersect(ground, {{11, 11, 0}, {12, 11, 0}, {11, 12, 0}}));
}

TEST(TriangleTriangle, ATriangleWithoutAreaCountsAsCoplanar) {
    const Triangle point{{1, 1, 0}, {1, 1, 0}, {1, 1, 0}};
    EXPECT_TRUE(Math::Intersect(ground, point));
    EXPECT_FALSE(Math::Intersect(point, Raised(point, 1)));  // no edge crosses, nothing is inside
}

TEST(TriangleTriangle, ANanNeverThrows) {
    const Triangle broken{{nan, 0, 0}, {1, nan, 0}, {0, 1, nan}};
    EXPECT_NO_THROW((void)Math::Intersect(ground, broken));
    EXPECT_NO_THROW((void)Math::Intersect(broken, ground));
}

TEST(TriangleTriangle, ANanMeetsNothing) {
    const Triangle broken{{nan, 100, 500}, {100, 100, 500}, {100, 101, 500}};
    EXPECT_FALSE(Math::Intersect(ground, broken));
    EXPECT_FALSE(Math::Intersect(broken, ground));
}

TEST(TrianIntervals, TheVertexAloneOnItsSideLeads) {
    const auto lead = [](float d0, float d1, float d2) {
        return Math::computeTrianIntervals(10, 20, 40, d0, d1, d2, d0 * d1 > 0, d0 * d2 > 0);
    };
    EXPECT_EQ(lead(1, 1, -1).a, 40);
    EXPECT_EQ(lead(1, 1, 0).a, 40);
    EXPECT_EQ(lead(1, -1, 1).a, 20);
    EXPECT_EQ(lead(1, -1, -1).a, 10);
    EXPECT_EQ(lead(1, 0, 0).a, 10);
    EXPECT_EQ(lead(0, 1, 1).a, 10);
    EXPECT_EQ(lead(1, 0, -1).a, 10);
    EXPECT_EQ(lead(0, 1, -1).a, 20);
    EXPECT_EQ(lead(0, 1, 0).a, 20);
    EXPECT_EQ(lead(0, 0, 1).a, 40);
}

TEST(TrianIntervals, TheTermsGiveTheEndsWithoutADivision) {
    const auto i = Math::computeTrianIntervals(10, 20, 40, 3, -1, -2, false, false);
    EXPECT_EQ(i.a, 10);
    EXPECT_EQ(i.b, (20 - 10) * 3);
    EXPECT_EQ(i.c, (40 - 10) * 3);
    EXPECT_EQ(i.x0, 3 - -1);
    EXPECT_EQ(i.x1, 3 - -2);
    EXPECT_FLOAT_EQ(i.a + i.b / i.x0, 17.5f);
    EXPECT_FLOAT_EQ(i.a + i.c / i.x1, 28);
}

TEST(TrianIntervals, AllDistancesZeroThrows) {
    EXPECT_EQ(MessageOf<std::logic_error>(
                  [] { (void)Math::computeTrianIntervals(1, 2, 3, 0, 0, 0, false, false); }),
              "Two triangles are on the same plane");
}

TEST(Edges2D, TheEdgeTestIsClosedAtItsBoundsAndBlindToParallels) {
    EXPECT_TRUE(Math::edge2Edge2D({0, 0}, {2, 2}, {0, 2}, {2, 0}));
    EXPECT_TRUE(Math::edge2Edge2D({0, 0}, {2, 0}, {2, 0}, {2, 5}));
    EXPECT_TRUE(Math::edge2Edge2D({0, 0}, {2, 0}, {1, 0}, {1, 5}));
    EXPECT_FALSE(Math::edge2Edge2D({0, 0}, {2, 0}, {1, 0.001f}, {1, 5}));
    EXPECT_FALSE(Math::edge2Edge2D({0, 0}, {2, 0}, {2.001f, -1}, {2.001f, 1}));
    EXPECT_FALSE(Math::edge2Edge2D({0, 0}, {2, 0}, {0, 0}, {2, 0}));
    EXPECT_FALSE(Math::edge2Edge2D({0, 0}, {2, 0}, {nan, -1}, {1, 1}));
}

TEST(Edges2D, AnEdgeMeetsATriangleOnAnyOfItsThreeEdges) {
    const Vec2 a{0, 0}, b{10, 0}, c{0, 10};
    EXPECT_TRUE(Math::edge2TrianEdges({5, -1}, {5, 1}, a, b, c));
    EXPECT_TRUE(Math::edge2TrianEdges({4, 4}, {6, 6}, a, b, c));
    EXPECT_TRUE(Math::edge2TrianEdges({-1, 5}, {1, 5}, a, b, c));
    EXPECT_FALSE(Math::edge2TrianEdges({1, 1}, {2, 2}, a, b, c));  // wholly inside
}

TEST(PointInTriangle2D, HoldsInBothWindingsAndNotOnAnEdge) {
    const Vec2 a{0, 0}, b{10, 0}, c{0, 10};
    EXPECT_TRUE(Math::pointInTriangle2D({1, 1}, a, b, c));
    EXPECT_TRUE(Math::pointInTriangle2D({1, 1}, a, c, b));
    EXPECT_FALSE(Math::pointInTriangle2D({5, 0}, a, b, c));
    EXPECT_FALSE(Math::pointInTriangle2D({0, 0}, a, b, c));
    EXPECT_FALSE(Math::pointInTriangle2D({5, 5}, a, b, c));
    EXPECT_FALSE(Math::pointInTriangle2D({6, 6}, a, b, c));
    EXPECT_FALSE(Math::pointInTriangle2D({nan, 1}, a, b, c));
}

TEST(CoplanarTriangles, TheAxisOfTheLargestNormalComponentIsDropped) {
    // The same overlap in each of the three planes; dropping another axis would flatten it.
    const Triangle xy = ground, xyOther{{1, 1, 0}, {20, 1, 0}, {1, 20, 0}};
    const auto turn = [](const Triangle& t) {
        const auto p = [](const Pos& v) { return Pos{v.y, v.z, v.x}; };
        return Triangle{p(t.p0), p(t.p1), p(t.p2)};
    };
    EXPECT_TRUE(Math::trian2Trian2D({0, 0, 1}, xy, xyOther));
    EXPECT_TRUE(Math::trian2Trian2D({0, -1, 0}, turn(xy), turn(xyOther)));
    EXPECT_TRUE(Math::trian2Trian2D({1, 0, 0}, turn(turn(xy)), turn(turn(xyOther))));
    EXPECT_FALSE(Math::trian2Trian2D({1, 0, 0}, xy, Raised(xyOther, 1)));
}

TEST(CoplanarTriangles, ATieBetweenComponentsDropsZ) {
    const Triangle first{{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}, apart{{1, 1, 9}, {2, 1, 9}, {1, 2, 9}};
    EXPECT_TRUE(Math::trian2Trian2D({1, 1, 1}, first, apart));
    EXPECT_TRUE(Math::trian2Trian2D({1, 1, 0}, first, apart));
    EXPECT_TRUE(Math::trian2Trian2D({1, 0, 1}, first, apart));
    EXPECT_FALSE(Math::trian2Trian2D({1.001f, 1, 1}, first, apart));
    EXPECT_FALSE(Math::trian2Trian2D({1, 1.001f, 1}, first, apart));
}

TEST(LineTriangle, TheParameterRunsFromZeroAtTheStartToOneAtTheEnd) {
    const Result hit = Math::Intersect(Line{{2, 3, 4}, {2, 3, -12}}, ground);
    ASSERT_TRUE(hit.hit);
    EXPECT_FLOAT_EQ(hit.distance, 0.25f);
    EXPECT_EQ(hit.position, (Pos{2, 3, 0}));
    EXPECT_EQ(hit.localPosition, (Pos{2, 3, 0}));
}

TEST(LineTriangle, AnEndOnTheTriangleHitsAtOneAndAStartAtZero) {
    EXPECT_EQ(Math::Intersect(Line{{2, 3, 4}, {2, 3, 0}}, ground).distance, 1);
    EXPECT_EQ(Math::Intersect(Line{{2, 3, 0}, {2, 3, 4}}, ground).distance, 0);
    EXPECT_FALSE(Math::Intersect(Line{{2, 3, 4}, {2, 3, 0.01f}}, ground).hit);
    EXPECT_FALSE(Math::Intersect(Line{{2, 3, 4}, {2, 3, 8}}, ground).hit);
}

TEST(LineTriangle, AMissIsTheEmptyResult) {
    const Result miss = Math::Intersect(Line{{20, 3, 4}, {20, 3, -4}}, ground);
    EXPECT_TRUE(miss.valid);
    EXPECT_FALSE(miss.hit);
    EXPECT_EQ(miss.distance, std::numeric_limits<float>::max());
    EXPECT_EQ(miss.position, Pos{});
}

TEST(LineTriangle, CornersAndEdgesOfTheTriangleAreHit) {
    for (const Pos& p :
         {Pos{0, 0, 0}, Pos{10, 0, 0}, Pos{0, 10, 0}, Pos{5, 0, 0}, Pos{0, 5, 0}, Pos{5, 5, 0}})
        EXPECT_TRUE(Math::Intersect(Line{{p.x, p.y, 1}, {p.x, p.y, -1}}, ground).hit)
            << p.x << ' ' << p.y;
}

TEST(LineTriangle, BothSidesOfTheTriangleAreHit) {
    EXPECT_TRUE(Math::Intersect(Line{{2, 3, -4}, {2, 3, 4}}, ground).hit);
    EXPECT_TRUE(Math::Intersect(Line{{2, 3, 4}, {2, 3, -4}}, ground).hit);
}

TEST(LineTriangle, TwoThousandthsAboveMissesHalfAThousandthTakesTheCoplanarPath) {
    EXPECT_FALSE(Math::Intersect(Line{{-5, 2, 0.002f}, {5, 2, 0.002f}}, ground).hit);
    const Result hit = Math::Intersect(Line{{-5, 2, 0.0005f}, {5, 2, 0.0005f}}, ground);
    ASSERT_TRUE(hit.hit);
    EXPECT_FLOAT_EQ(hit.distance, 0.5f);
    EXPECT_EQ(hit.position, (Pos{0, 2, 0.0005f}));
    EXPECT_EQ(hit.localPosition, (Pos{0, 2, 0.0005f}));
}

TEST(LineTriangle, TheDistanceOfExactlyAThousandthStillCounts) {
    EXPECT_TRUE(Math::Intersect(Line{{-5, 2, 0.001f}, {5, 2, 0.001f}}, ground).hit);
    EXPECT_FALSE(Math::Intersect(Line{{-5, 2, 0.00101f}, {5, 2, 0.00101f}}, ground).hit);
}

TEST(LineTriangle, ADeterminantOfAThousandthIsNotParallelWhateverTheSize) {
    // Straight through the middle of a triangle so small that its determinant is its double area.
    const auto small = [](float doubleArea) {
        return Triangle{{0, 0, 0}, {1, 0, 0}, {0, doubleArea, 0}};
    };
    const auto through = [&](float doubleArea) {
        const Pos inside{0.25f, doubleArea * 0.25f, 0};
        return Math::Intersect(Line{inside + Vec{0, 0, 1}, inside - Vec{0, 0, 1}},
                               small(doubleArea));
    };
    EXPECT_TRUE(through(0.001f).hit);
    EXPECT_TRUE(through(-0.001f).hit);
    EXPECT_FALSE(through(0.00099f).hit);  // taken for parallel, and it starts off the plane
    EXPECT_FALSE(through(-0.00099f).hit);
}

TEST(LineTriangle, ATriangleWithoutAreaThrowsOutOfTheCall) {
    const Triangle flat{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
    EXPECT_EQ(MessageOf<SurfaceNormalNotAvailable>(
                  [&] { (void)Math::Intersect(Line{{0, 0, 1}, {0, 0, -1}}, flat); }),
              "Surface normal is not available");
}

TEST(LineTriangle, ALineWithoutLengthThrows) {
    EXPECT_THROW((void)Math::Intersect(Line{{1, 1, 0}, {1, 1, 0}}, ground), std::overflow_error);
}

TEST(LineTriangle, ANanInTheTriangleDoesNotHit) {
    EXPECT_FALSE(
        Math::Intersect(Line{{1, 1, 1}, {1, 1, -1}}, {{nan, 0, 0}, {10, 0, 0}, {0, 10, 0}}).hit);
}

TEST(LineTriangle, ALineFarFromATriangleWithANanDoesNotCrossItsOtherEdges) {
    EXPECT_FALSE(
        Math::Intersect(Line{{5, 0, 100}, {5, 10, 200}}, {{nan, 0, 0}, {10, 0, 0}, {0, 10, 0}})
            .hit);
}

TEST(LineInPlane, ALineThatStartsInsideHitsAtZero) {
    const Result hit = Math::lineToTriangle2D({{1, 1, 0}, {20, 1, 0}}, ground);
    ASSERT_TRUE(hit.hit);
    EXPECT_EQ(hit.distance, 0);
}

TEST(LineInPlane, TheSmallestParameterOfTheThreeEdgesIsTheHit) {
    const Result hit = Math::lineToTriangle2D({{-10, 5, 0}, {10, 5, 0}}, ground);
    ASSERT_TRUE(hit.hit);
    EXPECT_FLOAT_EQ(hit.distance, 0.5f);
    const Result back = Math::lineToTriangle2D({{10, 5, 0}, {-10, 5, 0}}, ground);
    ASSERT_TRUE(back.hit);
    EXPECT_FLOAT_EQ(back.distance, 0.25f);
    EXPECT_FALSE(Math::lineToTriangle2D({{-10, 11, 0}, {10, 11, 0}}, ground).hit);
    EXPECT_FALSE(Math::lineToTriangle2D({{-10, 5, 0}, {-1, 5, 0}}, ground).hit);
}

TEST(LineInPlane, ALineAlongAnEdgeHitsWhereTheEdgeBegins) {
    const Result hit = Math::lineToTriangle2D({{-10, 0, 0}, {10, 0, 0}}, ground);
    ASSERT_TRUE(hit.hit);
    EXPECT_FLOAT_EQ(hit.distance, 0.5f);
}

TEST(SegmentSegment, TheParameterIsOnTheFirstAndBoundsAreClosed) {
    const Result hit = Math::edgeToEdge2D({0, 0}, {4, 0}, {1, -1}, {1, 3});
    ASSERT_TRUE(hit.hit);
    EXPECT_FLOAT_EQ(hit.distance, 0.25f);
    EXPECT_FLOAT_EQ(Math::edgeToEdge2D({0, 0}, {4, 0}, {1, 3}, {1, -1}).distance, 0.25f);
    EXPECT_EQ(Math::edgeToEdge2D({0, 0}, {4, 0}, {0, 0}, {0, 3}).distance, 0);
    EXPECT_EQ(Math::edgeToEdge2D({0, 0}, {4, 0}, {4, 3}, {4, 0}).distance, 1);
    EXPECT_FALSE(Math::edgeToEdge2D({0, 0}, {4, 0}, {4.01f, 3}, {4.01f, -1}).hit);
    EXPECT_FALSE(Math::edgeToEdge2D({0, 0}, {4, 0}, {1, 0.01f}, {1, 3}).hit);
    EXPECT_FALSE(Math::edgeToEdge2D({0, 0}, {4, 0}, {nan, 0}, {1, 3}).hit);
}

TEST(SegmentSegment, ParallelSegmentsBesideEachOtherDoNotHit) {
    EXPECT_FALSE(Math::edgeToEdge2D({0, 0}, {4, 0}, {0, 1}, {4, 1}).hit);
    EXPECT_FALSE(Math::edgeToEdge2D({0, 0}, {4, 0}, {0, 1e-6f}, {4, 1e-6f}).hit);
}

TEST(SegmentSegment, SegmentsOnOneLineHitAtTheNearerEndClampedToTheStart) {
    const auto at = [](Vec2 p3, Vec2 p4) { return Math::edgeToEdge2D({0, 0}, {4, 0}, p3, p4); };
    EXPECT_FLOAT_EQ(at({1, 0}, {2, 0}).distance, 0.25f);
    EXPECT_FLOAT_EQ(at({2, 0}, {1, 0}).distance, 0.25f);
    EXPECT_EQ(at({-1, 0}, {2, 0}).distance, 0);
    EXPECT_EQ(at({4, 0}, {9, 0}).distance, 1);
    EXPECT_EQ(at({-9, 0}, {0, 0}).distance, 0);
    EXPECT_FALSE(at({5, 0}, {9, 0}).hit);
    EXPECT_FALSE(at({-5, 0}, {-9, 0}).hit);
}

TEST(SegmentSegment, TheParameterOnOneLineIsByYUnlessDyIsBelowAThousandth) {
    // Along x by 1 and y by just over or under 0.001; the second segment's y would give another
    // parameter than its x, were it not on the same line.
    const Result upright = Math::edgeToEdge2D({0, 0}, {0, 8}, {0, 2}, {0, 4});
    EXPECT_FLOAT_EQ(upright.distance, 0.25f);
    const Result level = Math::edgeToEdge2D({0, 0}, {8, 0}, {2, 0}, {4, 0});
    EXPECT_FLOAT_EQ(level.distance, 0.25f);
    const Result slanted = Math::edgeToEdge2D({0, 0}, {1, 0.5f}, {0.5f, 0.25f}, {2, 1});
    EXPECT_FLOAT_EQ(slanted.distance, 0.5f);
}

TEST(SegmentSegment, APointOnTheLineWithinAThousandthCountsAsOnIt) {
    // A second segment without extent makes both numerators 0: the cross product alone decides.
    const auto pointAt = [](float y) {
        return Math::edgeToEdge2D({0, 0}, {1, 0}, {0.5f, y}, {0.5f, y}).hit;
    };
    EXPECT_TRUE(pointAt(0.0009f));
    EXPECT_TRUE(pointAt(-0.0009f));
    EXPECT_FALSE(pointAt(0.001f));
    EXPECT_FALSE(pointAt(-0.001f));
}

TEST(SegmentSegment, TwoSegmentsAtOnePointAreNoHit) {
    EXPECT_FALSE(Math::edgeToEdge2D({1, 0}, {1, 0}, {1, 0}, {1, 0}).hit);
}

TEST(PointInTriangle3D, TheLargestComponentDecidesWhichAxisIsDropped) {
    EXPECT_TRUE(Math::pointInTriangle3D({1, 1, 0}, {0, 0, 0}, {10, 0, 0}, {0, 10, 0}));
    EXPECT_TRUE(Math::pointInTriangle3D({1, 0, 1}, {0, 0, 0}, {10, 0, 0}, {0, 0, 10}));
    EXPECT_TRUE(Math::pointInTriangle3D({0, 1, 1}, {0, 0, 0}, {0, 10, 0}, {0, 0, 10}));
    EXPECT_FALSE(Math::pointInTriangle3D({5, 0, 0}, {0, 0, 0}, {10, 0, 0}, {0, 10, 0}));
    // What lies off the plane is judged as if it lay in it.
    EXPECT_TRUE(Math::pointInTriangle3D({1, 1, 99}, {0, 0, 0}, {10, 0, 0}, {0, 10, 0}));
}

TEST(PointInTriangle3D, TiesBetweenComponentsAreSettled) {
    // Equal components of x and y, above z: the xz plane, so that y does not matter.
    const Pos a{0, 0, 0}, b{4, -4, 0}, c{2, -2, 4};
    EXPECT_TRUE(Math::pointInTriangle3D({2, 77, 1}, a, b, c));
    EXPECT_FALSE(Math::pointInTriangle3D({77, -2, 1}, a, b, c));
    // Equal components of x and z, and of all three: the xy plane, so that z does not matter.
    const Pos e{4, 0, -4}, f{2, 4, -2};
    EXPECT_TRUE(Math::pointInTriangle3D({2, 1, 77}, a, e, f));
    EXPECT_FALSE(Math::pointInTriangle3D({77, 1, -2}, a, e, f));
    EXPECT_TRUE(Math::pointInTriangle3D({1, 1, 77}, {3, 0, 0}, {0, 3, 0}, {0, 0, 3}));
    // Equal components of y and z, above x: xy as well.
    const Pos g{0, 4, -4}, h{4, 2, -2};
    EXPECT_TRUE(Math::pointInTriangle3D({1, 2, 77}, a, g, h));
}

TEST(Distances, ToASurfaceIsSignedAndInUnitsOfTheNormal) {
    EXPECT_FLOAT_EQ(Math::distanceOfPointToSurface({1, 2, 5}, {0, 0, 2}, {0, 0, 7}), 3);
    EXPECT_FLOAT_EQ(Math::distanceOfPointToSurface({1, 2, -5}, {0, 0, 2}, {0, 0, 7}), -7);
    EXPECT_EQ(MessageOf<SurfaceNormalNotAvailable>(
                  [] { (void)Math::distanceOfPointToSurface({1, 2, 5}, {0, 0, 2}, {0, 0, 0}); }),
              "Surface normal is not available");
    EXPECT_NO_THROW((void)Math::distanceOfPointToSurface({1, 2, 5}, {0, 0, 2}, {0, 0, 1e-9f}));
}

TEST(Distances, SurfaceNormalNotAvailableIsALogicError) {
    EXPECT_THROW((void)Math::distanceOfPointToSurface({}, {}, {}), std::logic_error);
}

TEST(Distances, ToALineAreToTheEndlessOne) {
    EXPECT_FLOAT_EQ(Math::DistancePointLine(Pos{50, 3, 4}, Pos{0, 0, 0}, Pos{10, 0, 0}), 5);
    EXPECT_FLOAT_EQ(Math::DistancePointLine(Pos{-50, 3, 4}, Pos{0, 0, 0}, Pos{10, 0, 0}), 5);
    EXPECT_FLOAT_EQ(Math::DistancePointLine(Pos{50, 3, 4}, Pos{0, 0, 0}, Dir{7, 0, 0}), 5);
}

TEST(Distances, ToALineAreMeasuredFromTheNearerEnd) {
    // A far end has no digits left for the small distance.
    const Pos far{1e7f, 1e7f, 3e6f}, near{0.3f, 0.3f, 0.1f}, p{0.31f, 0.29f, 0.1f};
    EXPECT_NEAR(Math::DistancePointLine(p, near, far), 0.01414f, 1e-4f);
    EXPECT_NEAR(Math::DistancePointLine(p, far, near), 0.01414f, 1e-4f);
}

TEST(Distances, ToAPlaneFollowTheWinding) {
    const Pos a{0, 0, 2}, b{10, 0, 2}, c{0, 10, 2}, p{3, 3, 7};
    EXPECT_FLOAT_EQ(Math::SignedDistancePointPlane(p, a, b, c), 5);
    EXPECT_FLOAT_EQ(Math::SignedDistancePointPlane(p, a, c, b), -5);
    EXPECT_FLOAT_EQ(Math::DistancePointPlane(p, a, b, c), 5);
    EXPECT_FLOAT_EQ(Math::DistancePointPlane(p, a, c, b), 5);
}

TEST(Distances, VectorsOfAtMostATenMillionthCannotBeNormalised) {
    const std::string message = "0-length vector cannot be normalized.";
    using Error = std::overflow_error;
    const Pos o{}, p{1, 2, 3};
    EXPECT_EQ(MessageOf<Error>([&] { (void)Math::DistancePointLine(p, o, o); }), message);
    EXPECT_EQ(MessageOf<Error>([&] { (void)Math::DistancePointLine(p, o, Dir{9e-8f, 0, 0}); }),
              message);
    EXPECT_EQ(MessageOf<Error>([&] { (void)Math::DistancePointPlane(p, o, o, o); }), message);
    EXPECT_EQ(MessageOf<Error>([&] { (void)Math::SignedDistancePointPlane(p, o, o, o); }), message);
    // 1e-7f lies above the double 1e-7.
    EXPECT_NO_THROW((void)Math::DistancePointLine(p, o, Dir{1.0001e-7f, 0, 0}));
}

TEST(OutsideOfPlane, TellsTheDistanceOnThePositiveSideOnly) {
    const Pos a{0, 0, 0}, b{10, 0, 0}, c{0, 10, 0};
    const auto above = Math::PointOutsideOfPlane({3, 4, 5}, a, b, c);
    EXPECT_TRUE(above.first);
    EXPECT_FLOAT_EQ(above.second, 5);
    EXPECT_FALSE(Math::PointOutsideOfPlane({3, 4, -5}, a, b, c).first);
    EXPECT_FALSE(Math::PointOutsideOfPlane({3, 4, 0}, a, b, c).first);
}

TEST(OutsideOfPlane, ShortNormalsAndWaysAreNotOutside) {
    const Pos a{0, 0, 0}, b{1, 0, 0};
    EXPECT_FALSE(Math::PointOutsideOfPlane({0, 0, 5}, a, b, {0, 0.0009f, 0}).first);
    EXPECT_TRUE(Math::PointOutsideOfPlane({0, 0, 5}, a, b, {0, 0.001f, 0}).first);
    EXPECT_FALSE(Math::PointOutsideOfPlane({0, 0, 0.0009f}, a, b, {0, 1, 0}).first);
    EXPECT_TRUE(Math::PointOutsideOfPlane({0, 0, 0.001f}, a, b, {0, 1, 0}).first);
    EXPECT_FALSE(Math::PointOutsideOfPlane({nan, 0, 5}, a, b, {0, 1, 0}).first);
}

TEST(OutsideOfPlane, TheCosineHasToBeAboveAThousandth) {
    const Pos a{0, 0, 0}, b{1, 0, 0}, c{0, 1, 0};
    EXPECT_FALSE(Math::PointOutsideOfPlane({1000, 0, 0.9f}, a, b, c).first);
    EXPECT_TRUE(Math::PointOutsideOfPlane({1000, 0, 1.1f}, a, b, c).first);
}

TEST(OutsideOfPlane, ByPointAndNormalIsStrict) {
    EXPECT_TRUE(Math::PointOutsideOfPlane({0, 0, 1e-6f}, {5, 5, 0}, {0, 0, 1}));
    EXPECT_FALSE(Math::PointOutsideOfPlane({0, 0, 0}, {5, 5, 0}, {0, 0, 1}));
    EXPECT_FALSE(Math::PointOutsideOfPlane({0, 0, -1}, {5, 5, 0}, {0, 0, 1}));
}

class IntersectionPoint : public ::testing::Test {
protected:
    static std::pair<bool, Pos> of(const Triangle& t, const Triangle& s) {
        return Math::GetIntersectionPoint(t.p0, t.p1, t.p2, s.p0, s.p1, s.p2);
    }
};

TEST_F(IntersectionPoint, AVertexOfTheFirstInTheSecondComesFirst) {
    // Both a vertex of each in the other's inside and edges through it.
    const Triangle first{{1, 1, 0.0009f}, {2, 1, 5}, {1, 2, 5}};
    const auto found = of(first, ground);
    EXPECT_TRUE(found.first);
    EXPECT_EQ(found.second, first.p0);
    const Triangle second{{3, 3, 4}, {2, 2, 0}, {1, 1, 0}};
    EXPECT_EQ(of(second, ground).second, second.p1);  // b before c
}

TEST_F(IntersectionPoint, AVertexOfTheSecondComesNext) {
    const Triangle second{{2, 1, 5}, {1, 1, 0}, {1, 2, 5}};
    const auto found = of(ground, second);
    EXPECT_TRUE(found.first);
    EXPECT_EQ(found.second, second.p1);
}

TEST_F(IntersectionPoint, ThenWhereAnEdgeOfTheFirstPassesThroughTheSecond) {
    const Triangle upright{{2, 2, -1}, {2, 2, 3}, {3, 20, 1}};
    const auto found = of(upright, ground);
    EXPECT_TRUE(found.first);
    EXPECT_FLOAT_EQ(found.second.x, 2);
    EXPECT_FLOAT_EQ(found.second.y, 2);
    EXPECT_NEAR(found.second.z, 0, 1e-6f);
}

TEST_F(IntersectionPoint, ThenWhereAnEdgeOfTheSecondPassesThroughTheFirst) {
    // Wide enough that none of its edges passes through the ground triangle's inside.
    const Triangle wall{{4, -100, -100}, {4, 100, -100}, {4, 0, 300}};
    const auto found = of(wall, ground);
    EXPECT_TRUE(found.first);
    EXPECT_FLOAT_EQ(found.second.x, 4);
    EXPECT_FLOAT_EQ(found.second.y, 0);  // the first edge of the second
}

TEST_F(IntersectionPoint, NoneIsFalseAtTheOrigin) {
    const auto found = of(ground, Raised(ground, 5));
    EXPECT_FALSE(found.first);
    EXPECT_EQ(found.second, Pos{});
}

TEST_F(IntersectionPoint, AVertexJustBeyondAThousandthDoesNotCount) {
    const Triangle near{{1, 1, 0.0011f}, {2, 1, 5}, {1, 2, 5}};
    EXPECT_FALSE(of(near, ground).first);
}

TEST_F(IntersectionPoint, ATriangleWithoutAreaThrows) {
    const Triangle point{{1, 1, 0}, {1, 1, 0}, {1, 1, 0}};
    EXPECT_THROW((void)of(ground, point), std::overflow_error);
}

}  // namespace vrn::selection
