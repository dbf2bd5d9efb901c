#include "selection/Plane.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Dir = rob::DirTemplate<float>;

const Plane atFive{{0, 0, 1}, 5.0f};  // the points with z = 5

}  // namespace

TEST(Plane, HoldsThePointsWhoseProductWithTheNormalIsD) {
    EXPECT_EQ(atFive.distance({1, 2, 0}, {0, 0, 1}), 5.0f);
    EXPECT_EQ(atFive.intersection({1, 2, 0}, {0, 0, 1}), (Pos{1, 2, 5}));
}

TEST(Plane, DistanceCountsInLengthsOfTheDirection) {
    EXPECT_EQ(atFive.distance({0, 0, 0}, {0, 0, 2}), 2.5f);
    EXPECT_EQ(atFive.intersection({0, 0, 0}, {2, 0, 2}), (Pos{5, 0, 5}));
}

TEST(Plane, BehindTheOriginIsAnAnswerToo) {
    EXPECT_EQ(atFive.distance({0, 0, 7}, {0, 0, 1}), -2.0f);
    EXPECT_EQ(atFive.intersection({0, 0, 7}, {0, 0, 1}), (Pos{0, 0, 5}));
}

TEST(Plane, DistanceOfAParallelLineIsZero) {
    EXPECT_EQ(atFive.distance({0, 0, 0}, {1, 0, 0}), 0.0f);
    EXPECT_EQ(atFive.distance({0, 0, 0}, {1, 0, 0.0009f}), 0.0f);
    EXPECT_EQ(atFive.distance({0, 0, 0}, {1, 0, -0.0009f}), 0.0f);
}

TEST(Plane, IntersectionOfAParallelLineThrows) {
    for (const float slope : {0.0f, 0.0009f, -0.0009f}) {
        try {
            (void)atFive.intersection({0, 0, 0}, {1, 0, slope});
            FAIL() << "no exception for the slope " << slope;
        } catch (const std::logic_error& e) {
            EXPECT_STREQ(e.what(), "The line is parallel with the plane");
        }
    }
}

TEST(Plane, OneThousandthIsNotParallel) {
    // The float nearest to 0.001 lies just above it, and the comparison is in double.
    EXPECT_NEAR(atFive.distance({0, 0, 0}, {1, 0, 0.001f}), 5000, 0.01);
    EXPECT_NEAR(atFive.intersection({0, 0, 0}, {1, 0, -0.001f}).x, -5000, 0.01);
}

TEST(Plane, DefaultPlaneIsParallelToEverything) {
    EXPECT_EQ(Plane().distance({1, 2, 3}, {0, 0, 1}), 0.0f);
    EXPECT_THROW((void)Plane().intersection({1, 2, 3}, {0, 0, 1}), std::logic_error);
}

}  // namespace vrn::visual
