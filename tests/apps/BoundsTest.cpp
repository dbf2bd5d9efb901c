#include "apps/vrnview/Bounds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vrn::host {
namespace {

TEST(Bounds, StartEmpty) {
    const Bounds bounds;
    EXPECT_TRUE(bounds.isEmpty());
    EXPECT_EQ(bounds.getRadius(), 0);
}

TEST(Bounds, GrowByPointsAndBoxes) {
    Bounds bounds;
    bounds.add({1, 2, 3});
    EXPECT_FALSE(bounds.isEmpty());
    EXPECT_EQ(bounds.getRadius(), 0);
    bounds.add(Bounds({-1, 5, 0}, {0, 4, 9}));
    EXPECT_EQ(bounds.getMin(), (rob::PosTemplate<double>{-1, 2, 0}));
    EXPECT_EQ(bounds.getMax(), (rob::PosTemplate<double>{1, 5, 9}));
    EXPECT_EQ(bounds.getCentre(), (rob::PosTemplate<double>{0, 3.5, 4.5}));
    EXPECT_DOUBLE_EQ(bounds.getRadius(), std::sqrt(4.0 + 9.0 + 81.0) / 2);
}

TEST(Bounds, AddingAnEmptyBoxChangesNothing) {
    Bounds bounds({1, 1, 1}, {2, 2, 2});
    bounds.add(Bounds());
    EXPECT_EQ(bounds.getMin(), (rob::PosTemplate<double>{1, 1, 1}));
}

TEST(Bounds, PassOverWhatIsNotFinite) {
    const double nan = std::numeric_limits<double>::quiet_NaN(),
                 inf = std::numeric_limits<double>::infinity();
    Bounds bounds({0, 0, 0}, {1, inf, 1});
    EXPECT_TRUE(bounds.isEmpty());
    bounds.add({0, nan, 0});
    bounds.add({-inf, 0, 0});
    EXPECT_TRUE(bounds.isEmpty());
}

}  // namespace
}  // namespace vrn::host
