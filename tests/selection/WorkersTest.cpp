#include "selection/Workers.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>

namespace vrn::test {

using selection::ShareOut;

TEST(Workers, EachPieceIsDoneOnce) {
    std::array<std::atomic<int>, 1000> times{};
    ShareOut(times.size(), [&](std::size_t i) { ++times.at(i); });
    for (const auto& count : times) EXPECT_EQ(count, 1);
}

TEST(Workers, NoPieceIsNoWork) {
    ShareOut(0, [](std::size_t) { FAIL(); });
}

TEST(Workers, ASinglePieceStaysWithTheCaller) {
    std::thread::id worker;
    ShareOut(1, [&](std::size_t) { worker = std::this_thread::get_id(); });
    EXPECT_EQ(worker, std::this_thread::get_id());
}

TEST(Workers, WhatAPieceThrowsPassesOnWhenAllThreadsAreDone) {
    std::atomic<int> running = 0;
    try {
        ShareOut(100, [&](std::size_t i) {
            ++running;
            std::this_thread::yield();
            --running;
            if (i == 50) throw std::runtime_error("the fiftieth");
        });
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "the fiftieth");
    }
    EXPECT_EQ(running, 0);
}

}  // namespace vrn::test
