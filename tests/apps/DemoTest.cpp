#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <set>
#include <string>

#include "tests/apps/Vrnview.h"

namespace vrn::test {
namespace {

using headless::Picture;
using headless::Rgba;

double Share(const Picture& picture, const std::function<bool(const Rgba&)>& wanted) {
    const auto& pixels = picture.getPixels();
    return static_cast<double>(std::count_if(pixels.begin(), pixels.end(), wanted)) /
           static_cast<double>(pixels.size());
}

class Demo : public VrnviewTest {};

TEST_F(Demo, ShowsItsPartsInTheirColours) {
    const ProcessResult demo = vrnview({"demo", "-o", path("demo.png"), "--size", "640x360"});
    ASSERT_EQ(demo.status, 0) << demo.err;
    EXPECT_EQ(demo.err, "");
    const Picture picture = Picture::loadPng(path("demo.png"));
    EXPECT_EQ(picture.getWidth(), 640);
    EXPECT_EQ(picture.getHeight(), 360);
    // The angle plate, the gear, the housing and the V-blocks, however the light falls on them.
    EXPECT_GT(Share(picture, [](const Rgba& p) { return p.r > 2 * p.b && p.r > 3 * p.g / 2; }),
              0.02);
    EXPECT_GT(Share(picture, [](const Rgba& p) { return p.r > 2 * p.b && p.r < 3 * p.g / 2; }),
              0.015);
    EXPECT_GT(Share(picture, [](const Rgba& p) { return 2 * p.g > 5 * p.r && p.g >= p.b; }), 0.015);
    EXPECT_GT(Share(picture, [](const Rgba& p) { return 2 * p.b > 3 * p.r && p.b > 5 * p.g / 4; }),
              0.004);
    // The table, lighter than the ground, takes a good part, and the ground another.
    EXPECT_GT(Share(picture, [](const Rgba& p) { return std::min({p.r, p.g, p.b}) > 145; }), 0.1);
    EXPECT_GT(
        Share(picture, [](const Rgba& p) { return Difference(p, {115, 115, 115, 255}) <= 2; }),
        0.2);
}

TEST_F(Demo, PrintsThePathAndALineOfCounts) {
    const ProcessResult demo =
        vrnview({"demo", "-o", path("demo.png"), "--size", "64x36", "--save", path("parts")});
    ASSERT_EQ(demo.status, 0) << demo.err;
    EXPECT_THAT(demo.out,
                testing::MatchesRegex(
                    path("demo.png") +
                    "\n8 bodies, 8 faces, [0-9]+ triangles, [0-9]+ vertices, 0 points\n"));
}

TEST_F(Demo, SavedPartsOpenAsAUsersFiles) {
    ASSERT_EQ(vrnview({"demo", "-o", path("demo.png"), "--size", "64x36", "--save", path("parts")})
                  .status,
              0);
    std::vector<std::string> arguments{"info"};
    for (const auto& entry : std::filesystem::directory_iterator(path("parts")))
        arguments.push_back(entry.path());
    EXPECT_EQ(arguments.size(), 9u);
    const ProcessResult info = vrnview(arguments);
    EXPECT_EQ(info.status, 0) << info.err;
    EXPECT_THAT(info.out, testing::HasSubstr("\ntotals: 8 bodies, 8 faces, "));
}

TEST_F(Demo, UnwritablePictureIsOneLineAndFailure) {
    const ProcessResult demo = vrnview({"demo", "-o", path("no/demo.png"), "--size", "64x36"});
    EXPECT_EQ(demo.status, 1);
    EXPECT_EQ(demo.err, "vrnview: " + path("no/demo.png") + ": No such file or directory\n");
    EXPECT_EQ(demo.out, "");
}

}  // namespace
}  // namespace vrn::test
