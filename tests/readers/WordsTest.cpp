#include "apps/vrnview/readers/Words.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vrn::host {
namespace {

TEST(Words, RunOverLineEnds) {
    Words words(" 1\t2.5\r\n\n3");
    EXPECT_EQ(words.next(), "1");
    EXPECT_EQ(words.next(), "2.5");
    EXPECT_EQ(words.next(), "3");
    EXPECT_EQ(words.next(), "");
    EXPECT_TRUE(words.atEnd());
}

TEST(Words, LinesLoseTheirEnds) {
    Words words("a b\r\n\nlast");
    EXPECT_EQ(words.line(), "a b");
    EXPECT_EQ(words.line(), "");
    EXPECT_EQ(words.line(), "last");
    EXPECT_TRUE(words.atEnd());
    EXPECT_EQ(words.line(), "");
}

TEST(Words, EmptyTextHasNothing) {
    Words words("");
    EXPECT_TRUE(words.atEnd());
    EXPECT_EQ(words.next(), "");
}

TEST(NumberOf, TakesCNotationWithASign) {
    EXPECT_EQ(NumberOf("1"), 1.0);
    EXPECT_EQ(NumberOf("-2.5e3"), -2500.0);
    EXPECT_EQ(NumberOf("+.5"), 0.5);
    EXPECT_TRUE(std::isnan(NumberOf("nan").value()));
    EXPECT_EQ(NumberOf("-inf"), -std::numeric_limits<double>::infinity());
}

TEST(NumberOf, RefusesWhatIsNoWholeNumber) {
    for (const char* word : {"", "+", "-", "+-1", "++1", "1,5", "1x", "0x10", "one", "1 2"})
        EXPECT_FALSE(NumberOf(word)) << word;
}

TEST(NumberOf, WhatIsOutOfRangeBecomesInfiniteOrZero) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(NumberOf("1e999"), infinite);
    EXPECT_EQ(NumberOf("-1e999"), -infinite);
    EXPECT_EQ(NumberOf("1e-999"), 0.0);
    EXPECT_EQ(NumberOf("0." + std::string(400, '0') + "1"), 0.0);
    EXPECT_EQ(NumberOf("1" + std::string(400, '0')), infinite);
    EXPECT_EQ(NumberOf("1" + std::string(400, '0') + ".5"), infinite);
}

TEST(CountOf, TakesDigitsAlone) {
    EXPECT_EQ(CountOf("0"), 0u);
    EXPECT_EQ(CountOf("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
    for (const char* word : {"", "-1", "+1", "1.0", "18446744073709551616", "1 "})
        EXPECT_FALSE(CountOf(word)) << word;
}

}  // namespace
}  // namespace vrn::host
