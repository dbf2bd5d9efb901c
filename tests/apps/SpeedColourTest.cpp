#include "apps/vrnview/program/SpeedColour.h"

#include <gtest/gtest.h>

#include <limits>

namespace vrn::host {
namespace {

TEST(SpeedColour, GoesFromBlueOverGreenToRed) {
    const auto rest = SpeedColour(0, 100), middle = SpeedColour(50, 100),
               top = SpeedColour(100, 100);
    EXPECT_GT(rest.b, rest.r + 0.5f);
    EXPECT_GT(middle.g, middle.r + 0.3f);
    EXPECT_GT(middle.g, middle.b + 0.3f);
    EXPECT_GT(top.r, top.b + 0.5f);
}

TEST(SpeedColour, HasNoJumps) {
    auto before = SpeedColour(0, 1);
    for (int i = 1; i <= 1000; ++i) {
        const auto now = SpeedColour(i / 1000.0, 1);
        EXPECT_NEAR(now.r, before.r, 0.005f);
        EXPECT_NEAR(now.g, before.g, 0.005f);
        EXPECT_NEAR(now.b, before.b, 0.005f);
        before = now;
    }
}

TEST(SpeedColour, WhatIsNoSpeedCountsAsRestAndNothingIsFasterThanTheFastest) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(SpeedColour(-1, 100), SpeedColour(0, 100));
    EXPECT_EQ(SpeedColour(nan, 100), SpeedColour(0, 100));
    EXPECT_EQ(SpeedColour(5, 0), SpeedColour(0, 100));
    EXPECT_EQ(SpeedColour(5, nan), SpeedColour(0, 100));
    EXPECT_EQ(SpeedColour(1e300, 100), SpeedColour(100, 100));
}

}  // namespace
}  // namespace vrn::host
