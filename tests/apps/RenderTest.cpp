#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <format>
#include <set>
#include <string>
#include <vector>

#include "tests/apps/TestFiles.h"
#include "tests/apps/Vrnview.h"

namespace vrn::test {
namespace {

using headless::Picture;
using headless::Rgba;

/// The viewport's ground.
constexpr Rgba ground{115, 115, 115, 255};

bool IsGround(const Rgba& pixel) { return Difference(pixel, ground) <= 2; }

/// How many pixels of a region are not ground.
int Covered(const Picture& picture, int left, int top, int right, int bottom) {
    int count = 0;
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            count += Difference(picture.at(x, y), ground) > 4 ? 1 : 0;
    return count;
}

class Render : public VrnviewTest {
protected:
    /// Renders one file of these triangles.
    Picture render(const std::vector<Triangle>& triangles, std::vector<std::string> options) const {
        WriteBinaryStl(path("shape.stl"), triangles);
        options.insert(options.begin(), {"render", path("shape.stl"), "-o", path("shape.png")});
        const ProcessResult result = vrnview(options);
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.err, "");
        return Picture::loadPng(path("shape.png"));
    }
};

TEST_F(Render, PictureHasTheSizeAskedForAndAWayBack) {
    WriteBinaryStl(path("box.stl"), BoxTriangles({0, 0, 0}, {1, 1, 1}));
    const ProcessResult result = vrnview({"render", path("box.stl"), "-o", path("box.png")});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out,
              path("box.png") + "\n1 body, 1 face, 12 triangles, 36 vertices, 0 points\n");
    EXPECT_EQ(Picture::loadPng(path("box.png")).getWidth(), 1280);
    EXPECT_EQ(Picture::loadPng(path("box.png")).getHeight(), 720);
    const Picture odd = render(BoxTriangles({0, 0, 0}, {1, 1, 1}), {"--size", "301x97"});
    EXPECT_EQ(odd.getWidth(), 301);
    EXPECT_EQ(odd.getHeight(), 97);
}

TEST_F(Render, TheCornerAxesOfASmallPictureAreAsMuchSmaller) {
    const auto axisPixels = [this](const std::string& size) {
        const Picture picture = render(BoxTriangles({0, 0, 0}, {1, 1, 1}), {"--size", size});
        int count = 0;
        // The corner axes lie at the lower left, over the ground or over the grey box.
        for (int y = picture.getHeight() / 2; y < picture.getHeight(); ++y)
            for (int x = 0; x < picture.getWidth() / 3; ++x) {
                const Rgba p = picture.at(x, y);
                count += std::max({p.r, p.g, p.b}) - std::min({p.r, p.g, p.b}) > 60;
            }
        return count;
    };
    const int usual = axisPixels("1280x720");
    EXPECT_NEAR(axisPixels("640x360"), usual, 0.15 * usual);
    EXPECT_NEAR(axisPixels("320x180"), usual / 4.0, 0.06 * usual);
}

class RenderOfSizes : public Render, public testing::WithParamInterface<float> {};

TEST_P(RenderOfSizes, CubeFillsThePictureAlmostToTheRim) {
    const float size = GetParam();
    constexpr int width = 640, height = 480;
    // Off the origin, so that no axis of the grid runs through the tested column.
    const Picture picture = render(BoxTriangles({size, size, size}, {2 * size, 2 * size, 2 * size}),
                                   {"--size", "640x480", "--view", "front"});
    const int column = width / 2 + width / 10;
    EXPECT_FALSE(IsGround(picture.at(width / 2, height / 2)));
    const int reach = static_cast<int>(0.89 * height / 2);
    EXPECT_FALSE(IsGround(picture.at(column, height / 2 - reach)));
    EXPECT_FALSE(IsGround(picture.at(column, height / 2 + reach)));
    EXPECT_TRUE(IsGround(picture.at(column, 2)));
    EXPECT_TRUE(IsGround(picture.at(width - 10, 10)));
}

INSTANTIATE_TEST_SUITE_P(Sizes, RenderOfSizes, testing::Values(0.001f, 0.1f, 100.0f, 2e4f, 3e6f),
                         [](const auto& test) { return "Case" + std::to_string(test.index); });

TEST_F(Render, CloudsFillThePictureAlmostToTheRim) {
    // A ball: the box around it would ask for more room than it takes.
    std::string points;
    constexpr int count = 20'000;
    for (int i = 0; i < count; ++i) {
        const double z = 1 - 2 * (i + 0.5) / count, r = std::sqrt(1 - z * z), turn = 2.399963 * i;
        points += std::format("{} {} {}\n", 5 + r * std::cos(turn), 5 + r * std::sin(turn), 5 + z);
    }
    WriteBytes(path("ball.xyz"), points);
    const ProcessResult result = vrnview({"render", path("ball.xyz"), "-o", path("ball.png"),
                                          "--size", "640x480", "--view", "front"});
    ASSERT_EQ(result.status, 0) << result.err;
    const Picture picture = Picture::loadPng(path("ball.png"));
    EXPECT_GT(Covered(picture, 300, 20, 340, 30), 0);
    EXPECT_EQ(Covered(picture, 300, 2, 340, 12), 0);
}

TEST_F(Render, TheViewOfAllFramesTheSphereRoundTheScene) {
    const Picture picture = render(BoxTriangles({500, 500, 500}, {600, 600, 600}),
                                   {"--size", "640x480", "--view", "dir:0,1,0"});
    // The near face of the cube: half 50, its sphere 86.6, which fills the height.
    EXPECT_FALSE(IsGround(picture.at(320, 240)));
    EXPECT_GT(Covered(picture, 300, 90, 340, 130), 0);
    EXPECT_EQ(Covered(picture, 300, 2, 340, 40), 0);
    const Picture all = render(BoxTriangles({500, 500, 500}, {600, 600, 600}),
                               {"--size", "640x480", "--view", "all"});
    EXPECT_FALSE(IsGround(all.at(320, 240)));
}

TEST_F(Render, FocusFramesOneObjectAndAnUnknownOneFails) {
    WriteBinaryStl(path("near.stl"), BoxTriangles({0, 0, 0}, {100, 100, 100}));
    WriteBinaryStl(path("far.stl"), BoxTriangles({20000, 0, 0}, {20100, 100, 100}));
    const auto focus = [&](const std::string& name) {
        return vrnview({"render", path("near.stl"), path("far.stl"), "-o", path("focus.png"),
                        "--size", "320x240", "--view", "focus:" + name});
    };
    ASSERT_EQ(focus("far").status, 0);
    EXPECT_FALSE(IsGround(Picture::loadPng(path("focus.png")).at(160, 120)));
    const ProcessResult unknown = focus("nothing");
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.err, "vrnview: --view focus:nothing: no input has an object of that name\n");
}

TEST_F(Render, FlatAndLonelyShapesAreShown) {
    const Picture triangle =
        render({{{{0, 0, 0}, {100, 0, 0}, {0, 100, 0}}}}, {"--size", "640x480", "--view", "top"});
    EXPECT_FALSE(IsGround(triangle.at(280, 280)));
    // A single point, three times: nothing to see, but neither a failure.
    render({{{{5, 5, 5}, {5, 5, 5}, {5, 5, 5}}}}, {"--size", "160x120"});
}

TEST_F(Render, EmptyStlGivesAPictureOfTheGround) {
    const Picture picture = render({}, {"--size", "640x480", "--view", "top"});
    EXPECT_LT(Covered(picture, 0, 0, 640, 480), 640 * 480 / 10);
}

/// A cube with a thin arm along an axis; the cube's half of the picture has the most of it.
struct ViewCase {
    const char* view;
    int axis;         ///< of the arm
    int right, down;  ///< where the arm points on the picture
};

class RenderOfViews : public Render, public testing::WithParamInterface<ViewCase> {};

TEST_P(RenderOfViews, ArmPointsTheWayTheAxisDoes) {
    const auto [view, axis, right, down] = GetParam();
    Point low{4.5f, 4.5f, 4.5f}, high{5.5f, 5.5f, 5.5f};
    low[static_cast<std::size_t>(axis)] = 10;
    high[static_cast<std::size_t>(axis)] = 20;
    std::vector<Triangle> shape = BoxTriangles({0, 0, 0}, {10, 10, 10});
    for (const Triangle& t : BoxTriangles(low, high)) shape.push_back(t);
    const Picture picture = render(shape, {"--size", "600x600", "--view", view});
    // The corner axes stand in the lower left third, which both comparisons leave out.
    const int left = Covered(picture, 0, 0, 300, 400),
              rightHalf = Covered(picture, 300, 0, 600, 400);
    const int top = Covered(picture, 200, 0, 600, 300),
              bottom = Covered(picture, 200, 300, 600, 600);
    if (right > 0) {
        EXPECT_GT(left, 2 * rightHalf);
    }
    if (right < 0) {
        EXPECT_GT(rightHalf, 2 * left);
    }
    if (down > 0) {
        EXPECT_GT(top, 2 * bottom);
    }
    if (down < 0) {
        EXPECT_GT(bottom, 2 * top);
    }
}

INSTANTIATE_TEST_SUITE_P(Views, RenderOfViews,
                         testing::Values(ViewCase{"front", 0, 1, 0}, ViewCase{"front", 2, 0, -1},
                                         ViewCase{"back", 0, -1, 0}, ViewCase{"left", 1, -1, 0},
                                         ViewCase{"left", 2, 0, -1}, ViewCase{"right", 1, 1, 0},
                                         ViewCase{"top", 0, 1, 0}, ViewCase{"top", 1, 0, -1},
                                         ViewCase{"bottom", 0, 1, 0}, ViewCase{"bottom", 1, 0, 1},
                                         ViewCase{"iso", 2, 0, -1}),
                         [](const auto& test) {
                             return std::string(test.param.view) + "xyz"[test.param.axis];
                         });

TEST_F(Render, EdgesAreSmooth) {
    // A slanted edge against the ground: on the way across it many shades occur, more than the 8
    // that multisampling alone has.
    const Picture picture =
        render({{{{0, 0, 0}, {100, 0, 0}, {0, 70, 0}}}}, {"--size", "400x300", "--view", "top"});
    std::set<int> lifts;  // over the ground
    for (int y = 100; y < 200; ++y)
        for (int x = 100; x < 300; ++x) lifts.insert(picture.at(x, y).g - ground.g);
    const int inside = *lifts.rbegin();
    ASSERT_GT(inside, 40);
    const auto between =
        std::distance(lifts.upper_bound(inside / 10), lifts.lower_bound(inside * 8 / 10));
    EXPECT_GT(between, 12);
}

TEST_F(Render, BadInputLeavesTheOthersAsTheyWere) {
    WriteBinaryStl(path("box.stl"), BoxTriangles({0, 0, 0}, {1, 1, 1}));
    WriteBytes(path("prose.stl"), "This is no mesh.\n");
    const ProcessResult both =
        vrnview({"render", path("prose.stl"), path("box.stl"), path("missing.stl"), "-o",
                 path("both.png"), "--size", "160x120"});
    EXPECT_EQ(both.status, 1);
    EXPECT_EQ(both.err, "vrnview: " + path("prose.stl") + ": Bad STL File\nvrnview: " +
                            path("missing.stl") + ": No such file or directory\n");
    ASSERT_EQ(
        vrnview({"render", path("box.stl"), "-o", path("one.png"), "--size", "160x120"}).status, 0);
    EXPECT_EQ(Picture::loadPng(path("both.png")).getPixels(),
              Picture::loadPng(path("one.png")).getPixels());
}

}  // namespace
}  // namespace vrn::test
