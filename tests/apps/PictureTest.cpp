#include "apps/headless/Picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "apps/vrnview/TempFolder.h"
#include "tests/apps/TestFiles.h"

namespace vrn::headless {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

TEST(Picture, StartsWithoutPixels) {
    const Picture picture;
    EXPECT_EQ(picture.getWidth(), 0);
    EXPECT_TRUE(picture.getPixels().empty());
}

TEST(Picture, SizesBelowOneAreRefused) {
    EXPECT_THROW(Picture(0, 5), std::invalid_argument);
    EXPECT_THROW(Picture(5, -1), std::invalid_argument);
}

TEST(Picture, RowsRunFromTheTop) {
    Picture picture(3, 2, {1, 2, 3, 4});
    picture.set(2, 1, {9, 8, 7, 6});
    EXPECT_EQ(picture.getPixels()[5], (Rgba{9, 8, 7, 6}));
    EXPECT_EQ(picture.at(2, 1), (Rgba{9, 8, 7, 6}));
    EXPECT_EQ(picture.at(1, 1), (Rgba{1, 2, 3, 4}));
}

TEST(Picture, OutsideIsRefused) {
    Picture picture(3, 2);
    EXPECT_THROW((void)picture.at(3, 0), std::out_of_range);
    EXPECT_THROW((void)picture.at(0, 2), std::out_of_range);
    EXPECT_THROW((void)picture.at(-1, 0), std::out_of_range);
    EXPECT_THROW(picture.set(0, -1, {}), std::out_of_range);
    EXPECT_THROW((void)Picture().at(0, 0), std::out_of_range);
}

TEST(Picture, PngKeepsEveryPixel) {
    const host::TempFolder folder;
    Picture picture(5, 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x)
            picture.set(x, y,
                        {static_cast<std::uint8_t>(50 * x), static_cast<std::uint8_t>(100 * y), 7,
                         static_cast<std::uint8_t>(255 - x)});
    picture.savePng(folder.getPath() / "a.png");
    const Picture loaded = Picture::loadPng(folder.getPath() / "a.png");
    EXPECT_EQ(loaded.getWidth(), 5);
    EXPECT_EQ(loaded.getHeight(), 3);
    EXPECT_EQ(loaded.getPixels(), picture.getPixels());
}

TEST(Picture, SavingReplacesAFileAndLeavesNoOther) {
    const host::TempFolder folder;
    test::WriteBytes(folder.getPath() / "a.png", "old");
    Picture(2, 2).savePng(folder.getPath() / "a.png");
    EXPECT_EQ(Picture::loadPng(folder.getPath() / "a.png").getWidth(), 2);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.getPath()), {}), 1);
}

TEST(Picture, FailedSaveNamesTheFileAndLeavesNothing) {
    const host::TempFolder folder;
    const auto missing = folder.getPath() / "no" / "a.png";
    EXPECT_THAT([&] { Picture(2, 2).savePng(missing); },
                ThrowsMessage<std::runtime_error>(HasSubstr("no/a.png: No such file")));
    std::filesystem::create_directory(folder.getPath() / "dir.png");
    EXPECT_THAT([&] { Picture(2, 2).savePng(folder.getPath() / "dir.png"); },
                ThrowsMessage<std::runtime_error>(HasSubstr("dir.png: ")));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.getPath()), {}), 1);
    EXPECT_THROW(Picture().savePng(folder.getPath() / "b.png"), std::runtime_error);
}

TEST(Picture, WhatIsNoPngIsRefusedByName) {
    const host::TempFolder folder;
    test::WriteBytes(folder.getPath() / "text.png", "hello, this is a text");
    EXPECT_THAT([&] { (void)Picture::loadPng(folder.getPath() / "text.png"); },
                ThrowsMessage<std::runtime_error>(HasSubstr("text.png: Not a PNG file")));
    EXPECT_THAT([&] { (void)Picture::loadPng(folder.getPath() / "no.png"); },
                ThrowsMessage<std::runtime_error>(HasSubstr("no.png: No such file")));
    EXPECT_THROW((void)Picture::loadPng(folder.getPath()), std::runtime_error);
}

TEST(Picture, DownscalingTakesTheRoundedMean) {
    Picture picture(4, 2, {10, 0, 0, 255});
    picture.set(0, 0, {250, 0, 3, 255});
    const Picture small = picture.downscaled(2);
    ASSERT_EQ(small.getWidth(), 2);
    ASSERT_EQ(small.getHeight(), 1);
    EXPECT_EQ(small.at(0, 0), (Rgba{70, 0, 1, 255}));  // (250 + 3 * 10) / 4, 3 / 4 rounded
    EXPECT_EQ(small.at(1, 0), (Rgba{10, 0, 0, 255}));
    EXPECT_EQ(picture.downscaled(1).getPixels(), picture.getPixels());
}

TEST(Picture, DownscalingNeedsADivisor) {
    const Picture picture(4, 2);
    EXPECT_THROW((void)picture.downscaled(3), std::invalid_argument);
    EXPECT_THROW((void)picture.downscaled(4), std::invalid_argument);
    EXPECT_THROW((void)picture.downscaled(0), std::invalid_argument);
}

}  // namespace
}  // namespace vrn::headless
