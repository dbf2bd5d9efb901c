#include "apps/vrnview/tour/Tour.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include "tests/apps/TestFiles.h"
#include "tests/apps/Vrnview.h"
#include "tests/support/GoldenPicture.h"

namespace vrn::test {
namespace {

using headless::Picture;

const std::filesystem::path docs = std::filesystem::path(VRN_SOURCE_FOLDER) / "docs";
const char* const imageFolder = "images/tour";

class Tour : public VrnviewTest {};

TEST_F(Tour, ThePageShowsEveryStopInItsOrder) {
    const std::filesystem::path page = docs / "tour.md";
    if (std::getenv("VRN_REWRITE_GOLDEN")) WriteBytes(page, host::TourPage(imageFolder));
    EXPECT_EQ(ReadBytes(page), host::TourPage(imageFolder));
    EXPECT_GE(host::TourStops().size(), 30u);
    std::set<std::string> names;
    for (const host::TourStop& stop : host::TourStops())
        EXPECT_TRUE(names.insert(stop.name).second) << stop.name;
}

TEST_F(Tour, WhatIsSelectedHasTheOutlineThatTheCaptionTellsOf) {
    constexpr headless::Rgba outline{138, 212, 244, 255};
    const auto outlinePixels = [&](const char* stop) {
        const Picture picture = Picture::loadPng(docs / imageFolder / stop);
        return std::ranges::count_if(picture.getPixels(), [&](const headless::Rgba& pixel) {
            return Difference(pixel, outline) <= 12;
        });
    };
    EXPECT_LT(outlinePixels("shaded.png"), 20);
    EXPECT_GT(outlinePixels("selected.png"), 400);
    EXPECT_GT(outlinePixels("sensors.png"), 200);
}

TEST_F(Tour, EveryPictureIsTheOneThatWasLookedAtAndThePageLiesBeside) {
    const ProcessResult result = vrnview({"demo", "--tour", path("tour"), "--size", "640x360"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, path("tour") + "/tour.md\n");
    EXPECT_EQ(ReadBytes(path("tour") + "/tour.md"), host::TourPage("."));
    for (const host::TourStop& stop : host::TourStops()) {
        const std::string file = stop.name + ".png";
        EXPECT_EQ(CompareWithGolden(Picture::loadPng(path("tour") + "/" + file),
                                    docs / imageFolder / file, VRN_GOLDEN_DIFFERENCES),
                  "");
    }
}

}  // namespace
}  // namespace vrn::test
