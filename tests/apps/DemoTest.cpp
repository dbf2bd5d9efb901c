#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
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

TEST_F(Demo, ShowsTheCellInItsColours) {
    const ProcessResult demo = vrnview({"demo", "-o", path("demo.png"), "--size", "640x360"});
    ASSERT_EQ(demo.status, 0) << demo.err;
    EXPECT_EQ(demo.err, "");
    const Picture picture = Picture::loadPng(path("demo.png"));
    EXPECT_EQ(picture.getWidth(), 640);
    EXPECT_EQ(picture.getHeight(), 360);
    // Ivory castings, petrol covers, and what is yellow: posts and the border of the floor.
    EXPECT_GT(Share(picture, [](const Rgba& p) { return p.b > 125 && p.r > p.b + 8 && p.g > p.b; }),
              0.03);
    EXPECT_GT(Share(picture, [](const Rgba& p) { return p.g > 2 * p.r && p.b > 2 * p.r; }), 0.015);
    EXPECT_GT(Share(picture, [](const Rgba& p) { return p.r > 3 * p.b && p.g > 2 * p.b; }), 0.01);
    // The floor, bluish grey, takes a good part, and the ground another.
    EXPECT_GT(Share(picture, [](const Rgba& p) { return p.r > 125 && p.b > p.g && p.g > p.r; }),
              0.1);
    EXPECT_GT(
        Share(picture, [](const Rgba& p) { return Difference(p, {115, 115, 115, 255}) <= 2; }),
        0.1);
}

TEST_F(Demo, ProgramLiesOnTheBladesInTheColoursOfItsSpeed) {
    ASSERT_EQ(vrnview({"demo", "-o", path("demo.png"), "--size", "640x480", "--camera",
                       "3100,-1500,2150,2050,-50,1020"})
                  .status,
              0);
    const Picture picture = Picture::loadPng(path("demo.png"));
    const auto share = [&](const std::function<bool(const Rgba&)>& wanted) {
        return Share(picture, wanted);
    };
    // Slow over the tips, at work along the edges, fast from blade to blade.
    EXPECT_GT(share([](const Rgba& p) { return p.b > 180 && p.g > 100 && p.r < 80; }), 0.0005);
    EXPECT_GT(share([](const Rgba& p) { return p.g > 180 && p.r < 160 && p.b < 130; }), 0.0005);
    EXPECT_GT(share([](const Rgba& p) { return p.r > 220 && p.g > 90 && p.g < 190 && p.b < 60; }),
              0.0002);
    // The bronze is seen between.
    EXPECT_GT(share([](const Rgba& p) {
                  return p.r > 90 && p.r > p.g + 25 && p.g > p.b + 25 && p.r < 2.8 * p.b;
              }),
              0.01);
}

TEST_F(Demo, PrintsThePathAndALineOfCounts) {
    const ProcessResult demo =
        vrnview({"demo", "-o", path("demo.png"), "--size", "64x36", "--save", path("cell")});
    ASSERT_EQ(demo.status, 0) << demo.err;
    EXPECT_THAT(demo.out, testing::MatchesRegex(
                              path("demo.png") +
                              "\n[0-9]+ bodies, [0-9]+ faces, [0-9]+ triangles, [0-9]+ vertices, "
                              "[0-9]+ points\n"));
}

TEST_F(Demo, SavedStationOpensAsAUsersFile) {
    const ProcessResult demo =
        vrnview({"demo", "-o", path("demo.png"), "--size", "320x180", "--save", path("cell")});
    ASSERT_EQ(demo.status, 0) << demo.err;
    const ProcessResult render = vrnview(
        {"render", path("cell/cell.station.json"), "-o", path("again.png"), "--size", "320x180"});
    EXPECT_EQ(render.status, 0);
    EXPECT_EQ(render.err, "");
    // The same way to the same picture, but for the trace, which no file holds. Where axes of two
    // frames coincide either may be on top.
    EXPECT_EQ(demo.out.substr(demo.out.find('\n')), render.out.substr(render.out.find('\n')));
    const Picture first = Picture::loadPng(path("demo.png"));
    const Picture second = Picture::loadPng(path("again.png"));
    ASSERT_EQ(first.getPixels().size(), second.getPixels().size());
    std::size_t different = 0;
    for (std::size_t i = 0; i < first.getPixels().size(); ++i)
        if (Difference(first.getPixels()[i], second.getPixels()[i]) > 2) ++different;
    EXPECT_LT(different, first.getPixels().size() / 40);
    EXPECT_GT(different, 0u);
}

TEST_F(Demo, UnwritablePictureIsOneLineAndFailure) {
    const ProcessResult demo = vrnview({"demo", "-o", path("no/demo.png"), "--size", "64x36"});
    EXPECT_EQ(demo.status, 1);
    EXPECT_EQ(demo.err, "vrnview: " + path("no/demo.png") + ": No such file or directory\n");
    EXPECT_EQ(demo.out, "");
}

}  // namespace
}  // namespace vrn::test
