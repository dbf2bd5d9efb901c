#include "selection/Box.h"
#include "selection/Ray.h"

#include <gtest/gtest.h>
#include <array>
#include <cfloat>
#include <cmath>
#include <limits>
#include <numbers>
#include <sstream>
#include <vector>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using Dir = rob::DirTemplate<float>;
using Line = rob::LineTemplate<float>;
using Triangle = rob::TriangleTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using Rotation = rob::RotationTemplate<float>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

const Box unitBox{-1, -1, -1, 1, 1, 1};

bool SameBounds(const Box& a, const Box& b) { return a.min == b.min && a.max == b.max; }

/// The wanted translation of the triangle, seen from which it meets or misses a box.
Triangle Moved(const Triangle& t, const Vec& by) { return {t.p0 + by, t.p1 + by, t.p2 + by}; }

}  // namespace

TEST(Box, EmptyBoxHoldsTheLargestFloatsSwappedAndIsNotValid) {
    const Box box;
    EXPECT_EQ(box.min, (Pos{FLT_MAX, FLT_MAX, FLT_MAX}));
    EXPECT_EQ(box.max, (Pos{-FLT_MAX, -FLT_MAX, -FLT_MAX}));
    EXPECT_EQ(box.center, (Pos{0, 0, 0}));
    EXPECT_FALSE(box.dirty);
    EXPECT_FALSE(box.isValid());
}

TEST(Box, SixNumbersSetBoundsAndCenterAtOnce) {
    Box box{1, 2, 3, 5, 8, 13};
    EXPECT_EQ(box.center, (Pos{3, 5, 8}));
    EXPECT_FALSE(box.dirty);
    box.addPoint({0, 0, 0});
    box.set(0, 0, 0, 2, 4, 6);
    EXPECT_EQ(box.center, (Pos{1, 2, 3}));
    EXPECT_FALSE(box.dirty);
}

TEST(Box, BoxOfOnePointIsValid) {
    Box box;
    box.addPoint({1, 2, 3});
    EXPECT_TRUE(box.isValid());
    EXPECT_EQ(box.min, box.max);
}

TEST(Box, BoundsSwappedOnOneAxisAreNotValid) {
    EXPECT_FALSE((Box{1, 0, 0, 0, 1, 1}).isValid());
    EXPECT_FALSE((Box{0, 1, 0, 1, 0, 1}).isValid());
    EXPECT_FALSE((Box{0, 0, 1, 1, 1, 0}).isValid());
    EXPECT_FALSE((Box{nan, 0, 0, 1, 1, 1}).isValid());
}

TEST(Box, AddPointGrowsBothBoundsAndLeavesTheCenterStale) {
    Box box{0, 0, 0, 2, 2, 2};
    box.addPoint({-4, 1, 10});
    EXPECT_TRUE(SameBounds(box, Box{-4, 0, 0, 2, 2, 10}));
    EXPECT_TRUE(box.dirty);
    EXPECT_EQ(box.center, (Pos{1, 1, 1}));
}

TEST(Box, GetCenterUpdatesAStaleCenterAndClearsTheMark) {
    Box box{0, 0, 0, 2, 2, 2};
    box.addPoint({4, 6, 8});
    EXPECT_EQ(box.getCenter(), (Pos{2, 3, 4}));
    EXPECT_FALSE(box.dirty);
}

TEST(Box, GetCenterReturnsTheStoredCenterWhileItIsNotMarkedStale) {
    Box box{0, 0, 0, 2, 2, 2};
    box.max.x = 100;  // written directly: nothing marks the center
    EXPECT_EQ(box.getCenter(), (Pos{1, 1, 1}));
}

TEST(Box, AddPointPassesANaNCoordinateOver) {
    Box box{0, 0, 0, 1, 1, 1};
    box.addPoint({nan, 5, nan});
    EXPECT_TRUE(SameBounds(box, Box{0, 0, 0, 1, 5, 1}));
}

TEST(Box, AddPointsAddsEachPointAndNoneMarksNothing) {
    std::vector<Pos> points{{1, 2, 3}, {-1, 5, 0}};
    Box box;
    box.addPoints({});
    EXPECT_FALSE(box.dirty);
    box.addPoints(std::span<Pos>(points));
    EXPECT_TRUE(SameBounds(box, Box{-1, 2, 0, 1, 5, 3}));
    EXPECT_TRUE(box.dirty);
}

TEST(Box, AddBoxGrowsAndUpdatesTheCenterAtOnce) {
    Box box{0, 0, 0, 1, 1, 1};
    box.addPoint({2, 0, 0});
    box.addBox(Box{-2, -3, 0.5f, 0, 0, 9});
    EXPECT_TRUE(SameBounds(box, Box{-2, -3, 0, 2, 1, 9}));
    EXPECT_EQ(box.center, (Pos{0, -1, 4.5f}));
    EXPECT_FALSE(box.dirty);
}

TEST(Box, AddingAnEmptyBoxLeavesAValidBoxUnchanged) {
    Box box{0, 0, 0, 1, 2, 3};
    box.addBox(Box());
    EXPECT_TRUE(SameBounds(box, Box{0, 0, 0, 1, 2, 3}));
    EXPECT_TRUE(box.isValid());
}

TEST(Box, AddingABoxToAnEmptyBoxGivesThatBox) {
    Box box;
    box.addBox(Box{0, 0, 0, 1, 2, 3});
    EXPECT_TRUE(SameBounds(box, Box{0, 0, 0, 1, 2, 3}));
    EXPECT_EQ(box.center, (Pos{0.5f, 1, 1.5f}));
}

struct MaxDimRow {
    const char* name;
    float dx, dy, dz;
    unsigned axis;
};

class BoxMaxDim : public testing::TestWithParam<MaxDimRow> {};

TEST_P(BoxMaxDim, IsTheLargestExtentAndATieGoesToTheLaterAxis) {
    const auto& [name, dx, dy, dz, axis] = GetParam();
    EXPECT_EQ((Box{0, 0, 0, dx, dy, dz}).maxDim(), axis);
}

INSTANTIATE_TEST_SUITE_P(Rows, BoxMaxDim,
                         testing::Values(MaxDimRow{"Cube", 1, 1, 1, 2},
                                         MaxDimRow{"XEqualsYAboveZ", 2, 2, 1, 1},
                                         MaxDimRow{"YEqualsZAboveX", 1, 2, 2, 2},
                                         MaxDimRow{"XEqualsZAboveY", 2, 1, 2, 2},
                                         MaxDimRow{"X", 3, 2, 1, 0},
                                         MaxDimRow{"XThenZ", 3, 1, 2, 0},
                                         MaxDimRow{"Y", 1, 3, 2, 1}, MaxDimRow{"Z", 1, 2, 3, 2}),
                         [](const auto& row) { return row.param.name; });

TEST(Box, ExtentOfAnyOtherAxisIsThatOfZ) {
    const Box box{1, 2, 3, 2, 4, 7};
    EXPECT_EQ(box.getExtent(0), 1.0f);
    EXPECT_EQ(box.getExtent(1), 2.0f);
    EXPECT_EQ(box.getExtent(2), 4.0f);
    EXPECT_EQ(box.getExtent(3), 4.0f);
    EXPECT_EQ(box.getExtent(4000000000u), 4.0f);
}

TEST(Box, BothAreasAreTheWholeSurface) {
    const Box box{0, 0, 0, 2, 3, 5};
    EXPECT_FLOAT_EQ(box.getArea(), 62.0f);
    EXPECT_FLOAT_EQ(box.getSurfaceArea(), 62.0f);
    EXPECT_EQ((Box{0, 0, 0, 2, 3, 0}).getArea(), 12.0f);
}

TEST(Box, ExpandMovesEachFaceByOneAndNeitherUpdatesNorMarksTheCenter) {
    Box box{0, 0, 0, 2, 4, 6};
    box.expand();
    EXPECT_TRUE(SameBounds(box, Box{-1, -1, -1, 3, 5, 7}));
    EXPECT_FALSE(box.dirty);
    EXPECT_EQ(box.getCenter(), (Pos{1, 2, 3}));  // right only because both sides grew alike

    box.center = {9, 9, 9};
    box.expand();
    EXPECT_EQ(box.center, (Pos{9, 9, 9}));

    box.addPoint({20, 0, 0});
    box.expand();
    EXPECT_TRUE(box.dirty);
}

TEST(Box, PointOnEachFaceIsInside) {
    const Box box{0, 0, 0, 1, 2, 3};
    EXPECT_TRUE(box.isPointInside(0, 0, 0));
    EXPECT_TRUE(box.isPointInside(1, 2, 3));
    EXPECT_TRUE(box.isPointInside(0.5f, 1, 1));
    EXPECT_FALSE(box.isPointInside(-0.001f, 1, 1));
    EXPECT_FALSE(box.isPointInside(1.001f, 1, 1));
    EXPECT_FALSE(box.isPointInside(0.5f, -0.001f, 1));
    EXPECT_FALSE(box.isPointInside(0.5f, 2.001f, 1));
    EXPECT_FALSE(box.isPointInside(0.5f, 1, -0.001f));
    EXPECT_FALSE(box.isPointInside(0.5f, 1, 3.001f));
    EXPECT_FALSE(box.isPointInside(nan, 1, 1));
    EXPECT_FALSE(Box().isPointInside(0, 0, 0));
}

TEST(Box, CornersGoRoundTheLowerFaceThenTheUpper) {
    const Box box{1, 2, 3, 4, 5, 6};
    const std::array<Pos, 8> corners{Pos{1, 2, 3}, {4, 2, 3}, {4, 5, 3}, {1, 5, 3},
                                     {1, 2, 6},    {4, 2, 6}, {4, 5, 6}, {1, 5, 6}};
    for (unsigned i = 0; i < 8; ++i) EXPECT_EQ(box.getCorner(i), corners[i]) << i;
}

TEST(Box, CornerOfAnyOtherNumberIsTheOrigin) {
    const Box box{1, 2, 3, 4, 5, 6};
    EXPECT_EQ(box.getCorner(8), (Pos{0, 0, 0}));
    EXPECT_EQ(box.getCorner(4294967295u), (Pos{0, 0, 0}));
}

TEST(Box, TransformedBoundsTheTurnedAndMovedCorners) {
    const Pose pose{{10, 0, 0}, Rotation(std::numbers::pi_v<float> / 2, Vec{0, 0, 1})};
    const Box box{0, 0, 0, 1, 2, 3};
    const Box moved = box.transformed(pose);
    EXPECT_NEAR(moved.min.x, 8, 1e-5);  // y of 2 becomes x of -2
    EXPECT_NEAR(moved.max.x, 10, 1e-5);
    EXPECT_NEAR(moved.min.y, 0, 1e-5);
    EXPECT_NEAR(moved.max.y, 1, 1e-5);
    EXPECT_EQ(moved.min.z, 0.0f);
    EXPECT_EQ(moved.max.z, 3.0f);
    EXPECT_FALSE(moved.dirty);
    EXPECT_NEAR(moved.center.x, 9, 1e-5);
    EXPECT_TRUE(SameBounds(box, Box{0, 0, 0, 1, 2, 3}));
}

TEST(Box, TransformAssignsTheTransformedBox) {
    const Pose pose{{1, 2, 3}, Rotation(0.5f, Vec{0, 1, 0})};
    Box box{0, 0, 0, 1, 2, 3};
    const Box wanted = box.transformed(pose);
    box.transform(pose);
    EXPECT_TRUE(SameBounds(box, wanted));
    EXPECT_EQ(box.center, wanted.center);
}

TEST(Box, TransformedEmptyBoxStaysEmpty) {
    const Box moved = Box().transformed({{10, 0, 0}, Rotation(0.5f, Vec{0, 0, 1})});
    EXPECT_TRUE(SameBounds(moved, Box()));
}

TEST(Box, ABoxThatIsEmptyOnOneAxisIsEmptyOnceTransformed) {
    Box flat;
    flat.addPoint({std::numeric_limits<float>::quiet_NaN(), 0, 0});
    flat.addPoint({std::numeric_limits<float>::quiet_NaN(), 10, 5});
    EXPECT_TRUE(SameBounds(flat.transformed({}), Box()));
}

TEST(Box, AssignmentTakesTheBoundsAndUpdatesTheCenter) {
    Box stale{0, 0, 0, 2, 2, 2};
    stale.addPoint({4, 0, 0});
    Box box;
    box = stale;
    EXPECT_TRUE(SameBounds(box, stale));
    EXPECT_EQ(box.center, (Pos{2, 1, 1}));
    EXPECT_FALSE(box.dirty);
}

TEST(Box, SelfAssignmentDoesNotEvenUpdateTheCenter) {
    Box box{0, 0, 0, 2, 2, 2};
    box.addPoint({4, 0, 0});
    const Box& same = box;
    box = same;
    EXPECT_TRUE(box.dirty);
    EXPECT_EQ(box.center, (Pos{1, 1, 1}));
}

TEST(Box, DumpWritesTheBoundsLineByLine) {
    std::ostringstream out, shifted;
    const Box box{-1, 0.5f, 3, 4, 5, 6.25f};
    box.dump(out);
    EXPECT_EQ(out.str(), "box:\n-1, 0.5, 3\n4, 5, 6.25\n");
    shifted << box << "x";
    EXPECT_EQ(shifted.str(), out.str() + "x");
}

TEST(BoxRay, HitsAheadAndMissesBehind) {
    EXPECT_TRUE(unitBox.intersect(Ray{{-5, 0, 0}, {1, 0, 0}}));
    EXPECT_FALSE(unitBox.intersect(Ray{{-5, 0, 0}, {-1, 0, 0}}));
    EXPECT_TRUE(unitBox.intersect(Ray{{0, 0, 0}, {0, 0, -1}}));
}

TEST(BoxRay, MaxDistanceCountsInLengthsOfTheDirectionAndIsReachedInclusively) {
    EXPECT_TRUE(unitBox.intersect(Ray{{-5, 0, 0}, {1, 0, 0}, 4.0f}));
    EXPECT_FALSE(unitBox.intersect(Ray{{-5, 0, 0}, {1, 0, 0}, 3.999f}));
    EXPECT_TRUE(unitBox.intersect(Ray{{-5, 0, 0}, {2, 0, 0}, 2.0f}));
    EXPECT_FALSE(unitBox.intersect(Ray{{-5, 0, 0}, {2, 0, 0}, 1.999f}));
    EXPECT_FALSE(unitBox.intersect(Ray{{0, 0, 0}, {1, 0, 0}, -1.0f}));
}

TEST(BoxRay, GrazingAFaceHits) {
    EXPECT_TRUE(unitBox.intersect(Ray{{-5, 1, 0}, {1, 0, 0}}));
    EXPECT_FALSE(unitBox.intersect(Ray{{-5, 1.0001f, 0}, {1, 0, 0}}));
    EXPECT_TRUE(unitBox.intersect(Ray{{-3, -1, 0}, {1, 1, 0}, 2.0f}));  // ends on an edge
}

struct AxisRow {
    const char* name;
    unsigned axis;
};

class BoxRayAxis : public testing::TestWithParam<AxisRow> {
protected:
    /// A triple with `main` on the axis under test, `side` on the next one and 0 on the last.
    template <class Triple>
    static Triple On(float main, float side) {
        const unsigned axis = GetParam().axis;
        return {axis == 0   ? main
                : axis == 2 ? side
                            : 0.0f,
                axis == 1   ? main
                : axis == 0 ? side
                            : 0.0f,
                axis == 2   ? main
                : axis == 1 ? side
                            : 0.0f};
    }
};

TEST_P(BoxRayAxis, ComponentOfNineTenThousandthsCountsAsParallel) {
    // At 3 units away the slope would carry the ray into the slab far off, had it not been ignored.
    const Pos outside = On<Pos>(1.5f, -1000.0f);
    EXPECT_FALSE(unitBox.intersect(Ray{outside, On<Dir>(-0.0009f, 1.0f)}));
    // Inside the slab it stays inside for ever, though the slope would carry it out.
    const Pos inside = On<Pos>(0.5f, -10000.0f);
    EXPECT_TRUE(unitBox.intersect(Ray{inside, On<Dir>(-0.0009f, 1.0f)}));
}

TEST_P(BoxRayAxis, ComponentOfOneThousandthIsFollowed) {
    EXPECT_TRUE(unitBox.intersect(Ray{On<Pos>(1.5f, -1000.0f), On<Dir>(-0.001f, 1.0f)}));
    EXPECT_FALSE(unitBox.intersect(Ray{On<Pos>(0.5f, -10000.0f), On<Dir>(-0.001f, 1.0f)}));
    EXPECT_TRUE(unitBox.intersect(Ray{On<Pos>(-1.5f, -1000.0f), On<Dir>(0.001f, 1.0f)}));
}

INSTANTIATE_TEST_SUITE_P(Axes, BoxRayAxis,
                         testing::Values(AxisRow{"X", 0}, AxisRow{"Y", 1}, AxisRow{"Z", 2}),
                         [](const auto& row) { return row.param.name; });

TEST(BoxRay, SwappedBoundsCountOnAParallelAxisAndMissOnAnyOther) {
    const Box swapped{1, -1, -1, -1, 1, 1};  // x bounds the wrong way round
    EXPECT_TRUE(swapped.intersect(Ray{{0, 0, -5}, {0, 0, 1}}));
    EXPECT_FALSE(swapped.intersect(Ray{{1.5f, 0, -5}, {0, 0, 1}}));
    EXPECT_FALSE(swapped.intersect(Ray{{-5, 0, 0}, {1, 0, 0}}));
    EXPECT_FALSE(swapped.intersect(Ray{{5, 0, 0}, {-1, 0, 0}}));
}

TEST(BoxRay, ADirectionWithoutLengthAsksWhereTheOriginLies) {
    EXPECT_TRUE(unitBox.intersect(Ray{{0, 1, 0}, {0, 0, 0}}));
    EXPECT_FALSE(unitBox.intersect(Ray{{0, 1.5f, 0}, {0, 0, 0}}));
}

TEST(BoxRay, EmptyBoxIsMissed) { EXPECT_FALSE(Box().intersect(Ray{{0, 0, 0}, {0, 0, 1}})); }

TEST(BoxRay, ANaNAnywhereMisses) {
    EXPECT_FALSE(unitBox.intersect(Ray{{nan, 0, 0}, {1, 0, 0}}));
    EXPECT_FALSE(unitBox.intersect(Ray{{-5, nan, 0}, {1, 0, 0}}));
    EXPECT_FALSE(unitBox.intersect(Ray{{-5, 0, 0}, {nan, 1, 1}}));
    EXPECT_FALSE(unitBox.intersect(Ray{{0, 0, 0}, {1, 0, nan}}));
    EXPECT_FALSE(unitBox.intersect(Ray{{0, 0, 0}, {1, 0, 0}, nan}));
    EXPECT_FALSE((Box{nan, -1, -1, 1, 1, 1}).intersect(Ray{{0, 0, 0}, {1, 1, 1}}));
    EXPECT_FALSE((Box{-1, -1, -1, 1, 1, nan}).intersect(Ray{{0, 0, 0}, {1, 1, 1}}));
}

TEST(BoxLine, ReachesAsFarAsTheLineIsLong) {
    EXPECT_TRUE(unitBox.intersect(Line{{-5, 0, 0}, {-1, 0, 0}}));
    EXPECT_FALSE(unitBox.intersect(Line{{-5, 0, 0}, {-1.001f, 0, 0}}));
    EXPECT_TRUE(unitBox.intersect(Line{{0, 0, 0}, {0.1f, 0, 0}}));
    EXPECT_FALSE(unitBox.intersect(Line{{5, 0, 0}, {9, 0, 0}}));
}

TEST(BoxLine, EmptyLineHasNoDirection) {
    try {
        (void)unitBox.intersect(Line{{0, 0, 0}, {0, 0, 0}});
        FAIL() << "no exception";
    } catch (const std::overflow_error& e) {
        EXPECT_STREQ(e.what(), "0-length vector cannot be normalized.");
    }
    EXPECT_THROW((void)unitBox.intersect(Line{{nan, 0, 0}, {1, 0, 0}}), std::overflow_error);
}

TEST(BoxBox, TouchingBoxesOverlap) {
    EXPECT_TRUE(unitBox.intersect(Box{1, 1, 1, 2, 2, 2}));
    EXPECT_TRUE(unitBox.intersect(Box{-2, -2, -2, -1, -1, -1}));
    EXPECT_TRUE(unitBox.intersect(Box{-9, -9, -9, 9, 9, 9}));
}

TEST(BoxBox, AGapOnOneAxisIsEnough) {
    EXPECT_FALSE(unitBox.intersect(Box{1.001f, -1, -1, 2, 1, 1}));
    EXPECT_FALSE(unitBox.intersect(Box{-1, 1.001f, -1, 1, 2, 1}));
    EXPECT_FALSE(unitBox.intersect(Box{-1, -1, -2, 1, 1, -1.001f}));
    EXPECT_FALSE(unitBox.intersect(Box()));
    EXPECT_FALSE(unitBox.intersect(Box{nan, -1, -1, 1, 1, 1}));
}

TEST(BoxPlane, LooksAtTheExtentsAsIfTheCenterWereTheOrigin) {
    const Box far{100, 100, 100, 102, 104, 106};  // half extents 1, 2, 3
    EXPECT_TRUE(far.intersect(Vec{1, 0, 0}, Pos{1, 50, 50}));
    EXPECT_FALSE(far.intersect(Vec{1, 0, 0}, Pos{1.001f, 50, 50}));
    EXPECT_FALSE(far.intersect(Vec{-1, 0, 0}, Pos{1.001f, 50, 50}));
    EXPECT_TRUE(far.intersect(Vec{0, 0, -7}, Pos{0, 0, -3}));
    EXPECT_FALSE(far.intersect(Vec{0, 0, 7}, Pos{0, 0, -3.001f}));
    EXPECT_TRUE(far.intersect(Vec{1, 1, 1}, Pos{1, 2, 3}));
    EXPECT_FALSE(far.intersect(Vec{1, 1, 1}, Pos{1.01f, 2, 3}));
}

TEST(BoxPlane, AZeroNormalMeetsAndANaNMisses) {
    EXPECT_TRUE(unitBox.intersect(Vec{0, 0, 0}, Pos{9, 9, 9}));
    EXPECT_FALSE(unitBox.intersect(Vec{nan, 0, 0}, Pos{0, 0, 0}));
    EXPECT_FALSE(unitBox.intersect(Vec{1, 0, 0}, Pos{0, nan, 0}));
}

TEST(BoxTriangle, InsideAcrossAndRoundTheBoxMeet) {
    EXPECT_TRUE(unitBox.intersect(Triangle{{0, 0, 0}, {0.1f, 0, 0}, {0, 0.1f, 0}}));
    EXPECT_TRUE(unitBox.intersect(Triangle{{0, 0, 0}, {9, 0, 0}, {0, 9, 0}}));
    EXPECT_TRUE(unitBox.intersect(Triangle{{-99, -99, 0.5f}, {99, -99, 0.5f}, {0, 99, 0.5f}}));
}

TEST(BoxTriangle, TouchingACornerOrAFaceMeets) {
    EXPECT_TRUE(unitBox.intersect(Triangle{{1, 1, 1}, {2, 1, 1}, {1, 2, 1}}));
    EXPECT_TRUE(unitBox.intersect(Triangle{{-9, -9, 1}, {9, -9, 1}, {0, 9, 1}}));
    EXPECT_FALSE(unitBox.intersect(Triangle{{-9, -9, 1.001f}, {9, -9, 1.001f}, {0, 9, 1.001f}}));
}

TEST(BoxTriangle, OnlyAnEdgeAxisSeparates) {
    // Close past the box's edge x = y = 1 with its plane across the box and its extent over it.
    const Triangle past{{2.5f, 0, -0.2f}, {0, 2.5f, 0.2f}, {2.5f, 2.5f, 0}};
    EXPECT_FALSE(unitBox.intersect(past));
    EXPECT_TRUE(unitBox.intersect(Moved(past, {-0.3f, -0.3f, 0})));
}

TEST(BoxTriangle, OnlyThePlaneSeparates) {
    // Cuts all three axes at 3.1: the corner (1, 1, 1) has the sum 3.
    const Triangle corner{{9.3f, -3.1f, -3.1f}, {-3.1f, 9.3f, -3.1f}, {-3.1f, -3.1f, 9.3f}};
    EXPECT_FALSE(unitBox.intersect(corner));
    EXPECT_TRUE(unitBox.intersect(Moved(corner, {-0.05f, -0.05f, -0.05f})));
}

TEST(BoxTriangle, OnlyABoxAxisSeparates) {
    for (const Vec& side : {Vec{4, 0, 0}, Vec{0, 4, 0}, Vec{0, 0, 4}}) {
        // A triangle without extent has neither edge axes nor a normal.
        EXPECT_FALSE(unitBox.intersect(Moved(Triangle{}, side)));
        EXPECT_FALSE(unitBox.intersect(Moved(Triangle{}, -side)));
    }
    EXPECT_TRUE(unitBox.intersect(Triangle{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}));
}

TEST(BoxTriangle, ReadsTheStaleCenterAfterAddPoint) {
    Box box{0, 0, 0, 2, 2, 2};
    box.addPoint({20, 0, 0});  // true center 10, stored center still 1
    const Triangle nearTheEnd{{18, 1, 1}, {19, 1, 1}, {18, 1.5f, 1}};
    const Triangle leftOutside{{-8, 1, 1}, {-7, 1, 1}, {-8, 1.5f, 1}};
    EXPECT_FALSE(box.intersect(nearTheEnd));
    EXPECT_TRUE(box.intersect(leftOutside));
    EXPECT_TRUE(box.dirty);
    box.updateCenter();
    EXPECT_TRUE(box.intersect(nearTheEnd));
    EXPECT_FALSE(box.intersect(leftOutside));
}

TEST(BoxTriangle, ANaNInAnyVertexMisses) {
    const Triangle inside{{0, 0, 0}, {0.1f, 0, 0}, {0, 0.1f, 0}};
    for (const auto vertex : {&Triangle::p0, &Triangle::p1, &Triangle::p2}) {
        for (const auto coordinate : {&Pos::x, &Pos::y, &Pos::z}) {
            Triangle broken = inside;
            (broken.*vertex).*coordinate = nan;
            EXPECT_FALSE(unitBox.intersect(broken));
        }
    }
    EXPECT_FALSE((Box{nan, -1, -1, 1, 1, 1}).intersect(inside));
}

TEST(BoxComponent, AnyOtherAxisIsZ) {
    constexpr Vec v{1, 2, 3};
    EXPECT_EQ(component(v, 0), 1.0f);
    EXPECT_EQ(component(v, 1), 2.0f);
    EXPECT_EQ(component(v, 2), 3.0f);
    EXPECT_EQ(component(v, 77), 3.0f);
}

}  // namespace vrn::visual
