#include <stdexcept>

#include <gmock/gmock.h>

#include "visual/geometry/Hex2RGB.h"

namespace vrn::test {

using testing::StrEq;
using testing::ThrowsMessage;
using visual::Hex2RGB;
using Color = rob::ColorTemplate<float>;

TEST(Hex2RGB, EachPairOfDigitsIsAShareOf255) {
    EXPECT_EQ(Hex2RGB("#FFA725"), (Color{1.0f, 167 / 255.0f, 37 / 255.0f}));
    EXPECT_EQ(Hex2RGB("#000000"), (Color{0, 0, 0}));
    EXPECT_EQ(Hex2RGB("#010203"), (Color{1 / 255.0f, 2 / 255.0f, 3 / 255.0f}));
}

TEST(Hex2RGB, SmallLettersCount) { EXPECT_EQ(Hex2RGB("#ffa725"), Hex2RGB("#FFA725")); }

TEST(Hex2RGB, TheFirstCharacterIsNotLookedAt) {
    EXPECT_EQ(Hex2RGB("xFFA725"), Hex2RGB("#FFA725"));
    EXPECT_EQ(Hex2RGB("FFA725"), (Color{0xFA / 255.0f, 0x72 / 255.0f, 5 / 255.0f}));
}

TEST(Hex2RGB, WhatFollowsIsNotLookedAt) { EXPECT_EQ(Hex2RGB("#FFA72580"), Hex2RGB("#FFA725")); }

TEST(Hex2RGB, TooShortATextThrows) {
    EXPECT_THROW((void)Hex2RGB(""), std::out_of_range);
    EXPECT_THROW((void)Hex2RGB("#FF"), std::invalid_argument);  // an empty pair is no number
    EXPECT_THROW((void)Hex2RGB("#F"), std::out_of_range);  // the second pair begins behind the end
    EXPECT_THROW((void)Hex2RGB("#FFA"), std::out_of_range);
    EXPECT_THROW((void)Hex2RGB("#FFA7"), std::invalid_argument);
}

TEST(Hex2RGB, OtherDigitsThrowWithTheConversionsWord) {
    EXPECT_THAT([] { (void)Hex2RGB("#FFGG00"); },
                ThrowsMessage<std::invalid_argument>(StrEq("stoi")));
}

}  // namespace vrn::test
