#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "apps/vrnview/TempFolder.h"
#include "tests/apps/Process.h"
#include "tests/support/GoldenPicture.h"

namespace vrn::test {
namespace {

using headless::Picture;
using headless::Rgba;
using testing::HasSubstr;

constexpr int width = 120, height = 90;
constexpr Rgba grey{100, 100, 100};

class GoldenPicture : public testing::Test {
protected:
    GoldenPicture() { Picture(width, height, grey).savePng(golden()); }

    [[nodiscard]] std::filesystem::path golden() const { return folder.getPath() / "kept.png"; }
    [[nodiscard]] std::filesystem::path differences() const { return folder.getPath() / "seen"; }
    [[nodiscard]] std::string compare(const Picture& picture) const {
        return CompareWithGolden(picture, golden(), differences());
    }
    static Picture withSquare(int side, Rgba colour) {
        Picture picture(width, height, grey);
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) picture.set(60 + x, 48 + y, colour);
        return picture;
    }

    host::TempFolder folder;
    ScopedVariable notRewriting{"VRN_REWRITE_GOLDEN", nullptr};
};

TEST_F(GoldenPicture, EqualAndSlightlyDifferentPicturesAgree) {
    EXPECT_EQ(compare(Picture(width, height, grey)), "");
    EXPECT_EQ(compare(Picture(width, height, {132, 68, 100})), "");
    EXPECT_EQ(compare(withSquare(4, {255, 255, 255})), "") << "16 of 10800 pixels";
    EXPECT_FALSE(std::filesystem::exists(differences() / "kept.png"));
}

TEST_F(GoldenPicture, ASmallThingTooMuchIsTold) {
    // 36 pixels of 144 in one tile, 0.3 percent of the whole picture.
    const std::string message = compare(withSquare(6, {100, 100, 133}));
    EXPECT_THAT(message, HasSubstr("36 of 10800 pixels differ, 36 of 144 in the tile at (60, 48)"));
    EXPECT_THAT(message, HasSubstr("difference: " + differences().string()));
    const Picture shown = Picture::loadPng(differences() / "kept.difference.png");
    EXPECT_EQ(shown.at(60, 48), (Rgba{255, 40, 40}));
    EXPECT_EQ(shown.at(59, 48), (Rgba{50, 50, 50}));
    EXPECT_TRUE(std::filesystem::exists(differences() / "kept.png"));
}

TEST_F(GoldenPicture, ManyScatteredPixelsAreTold) {
    Picture picture(width, height, grey);
    for (int i = 0; i < 33; ++i) picture.set(i * 97 % width, i * 53 % height, {0, 0, 0});
    EXPECT_THAT(compare(picture), HasSubstr("33 of 10800 pixels differ"));
}

TEST_F(GoldenPicture, OtherSizesAndMissingFilesAreTold) {
    EXPECT_EQ(compare(Picture(width, height + 1, grey)), "120 by 91 pixels instead of 120 by 90");
    std::filesystem::remove(golden());
    EXPECT_THAT(compare(Picture(width, height, grey)), HasSubstr("there is no"));
    EXPECT_FALSE(std::filesystem::exists(golden()));
}

TEST_F(GoldenPicture, TheVariableKeepsThePictureAsTheGoldenOne) {
    const ScopedVariable rewriting{"VRN_REWRITE_GOLDEN", "1"};
    EXPECT_EQ(compare(withSquare(40, {0, 0, 0})), "");
    EXPECT_EQ(Picture::loadPng(golden()).getPixels(), withSquare(40, {0, 0, 0}).getPixels());
}

}  // namespace
}  // namespace vrn::test
