#include "view/Grid.h"

#include <array>
#include <cmath>
#include <memory>

#include <gtest/gtest.h>
#include <OgreManualObject.h>
#include <OgreMaterial.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "suite/layout/Part.h"
#include "tests/support/EngineFixture.h"
#include "view/UpAxis.h"
#include "visual/Visual.h"

namespace vrn::test {

using headless::Picture;
using headless::Rgba;
using Pos = rob::PosTemplate<float>;

namespace {

constexpr Rgba ground{115, 115, 115, 255};  // 0.45 of white

int Distance(const Rgba& a, const Rgba& b) {
    return std::abs(a.r - b.r) + std::abs(a.g - b.g) + std::abs(a.b - b.b);
}

}  // namespace

class Grid : public EngineTest {
protected:
    void TearDown() override {
        scene().setFrameVisualVisible(true);
        scene().grid->setNormalDir(visual::Grid::NormalDir::Z);
        EngineTest::TearDown();
    }
    static visual::Grid& grid() { return *scene().grid; }
    static std::size_t vertices(const Ogre::ManualObject* lines, std::size_t section) {
        return lines->getSection(section)->getRenderOperation()->vertexData->vertexCount;
    }
    /// The pixel round a world point that differs most from the empty ground.
    static Rgba strongest(const Picture& picture, const Pos& at) {
        const auto pixel = project(at);
        const int x = static_cast<int>(pixel.x), y = static_cast<int>(pixel.y);
        Rgba best = ground;
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx)
                if (Distance(picture.at(x + dx, y + dy), ground) > Distance(best, ground))
                    best = picture.at(x + dx, y + dy);
        return best;
    }
    /// Straight down from above the ground point, so high that a cell is many pixels wide.
    static void lookDownOn(const Pos& point) {
        lookFrom({point.x, point.y, point.z + 2000}, point);
    }
};

TEST_F(Grid, HasTwentyCellsOfAThousand) {
    EXPECT_EQ(grid().name, "Grid");
    const Ogre::AxisAlignedBox& bounds = grid().lines->getBoundingBox();
    EXPECT_EQ(bounds.getMinimum(), Ogre::Vector3(-10000, -10000, 0));
    EXPECT_EQ(bounds.getMaximum(), Ogre::Vector3(10000, 10000, 0));
    EXPECT_EQ(grid().visual->getParent(), scene().root);
}

TEST_F(Grid, DrawsLinesAndTheTwoAxesInSectionsOfTheirOwn) {
    ASSERT_EQ(grid().lines->getNumSections(), 3u);
    EXPECT_EQ(vertices(grid().lines, 0), 2u * 20 * 2);
    EXPECT_EQ(vertices(grid().lines, 1), 2u);
    EXPECT_EQ(vertices(grid().lines, 2), 2u);
    for (std::size_t section = 0; section < 3; ++section) {
        EXPECT_EQ(grid().lines->getSection(section)->getMaterial()->getName(), "VertexColor");
        EXPECT_EQ(grid().lines->getSection(section)->getRenderOperation()->operationType,
                  Ogre::RenderOperation::OT_LINE_LIST);
    }
}

TEST_F(Grid, DrawnAnewItIsTheSame) {
    grid().create();
    EXPECT_EQ(grid().lines->getNumSections(), 3u);
    EXPECT_EQ(vertices(grid().lines, 0), 2u * 20 * 2);
}

TEST_F(Grid, OddAndEmptyGridsKeepTheirAxes) {
    struct Row {
        unsigned cells;
        std::size_t lineVertices;
        float half;
    };
    for (const Row& row : {Row{3, 2 * 2 * 4, 15.0f}, Row{1, 2 * 2 * 2, 5.0f}}) {
        const visual::Grid other(&scene(), row.cells, 10);
        EXPECT_EQ(other.lines->getNumSections(), 3u);
        EXPECT_EQ(vertices(other.lines, 0), row.lineVertices);
        EXPECT_EQ(other.lines->getBoundingBox().getMaximum(), Ogre::Vector3(row.half, row.half, 0));
        scene().deleteVisual(other.visual);
        scene().sceneManager->destroyManualObject(other.lines);
    }
}

TEST_F(Grid, AGridOfNothingSurvivesAFrame) {
    for (const auto [cells, size] : {std::array{0u, 10u}, std::array{4u, 0u}}) {
        const visual::Grid other(&scene(), cells, size);
        EXPECT_NO_THROW((void)frame());
        scene().deleteVisual(other.visual);
        scene().sceneManager->destroyManualObject(other.lines);
    }
}

TEST_F(Grid, LinesStandOnWholeCells) {
    scene().setFrameVisualVisible(false);
    lookDownOn({2500, 3500, 0});
    const Picture picture = frame();
    for (const Pos& on :
         {Pos{2000, 3300, 0}, Pos{3000, 3700, 0}, Pos{2300, 3000, 0}, Pos{2600, 4000, 0}})
        EXPECT_GT(Distance(strongest(picture, on), ground), 20) << on.x << ' ' << on.y;
    for (const Pos& off : {Pos{2500, 3500, 0}, Pos{2300, 3300, 0}, Pos{2800, 3800, 0}})
        EXPECT_EQ(strongest(picture, off), ground) << off.x << ' ' << off.y;
}

TEST_F(Grid, EndsAtItsHalfExtent) {
    scene().setFrameVisualVisible(false);
    lookDownOn({9500, 9500, 0});
    const Picture picture = frame();
    EXPECT_GT(Distance(strongest(picture, {10000, 9700, 0}), ground), 20);
    EXPECT_EQ(strongest(picture, {10100, 9000, 0}), ground);
}

TEST_F(Grid, XAxisIsReddishAndYAxisGreenish) {
    scene().setFrameVisualVisible(false);
    lookDownOn({5500, 0, 0});
    const Rgba onX = strongest(frame(), {5500, 0, 0});
    EXPECT_GT(onX.r, onX.g + 40);
    EXPECT_GT(onX.r, onX.b + 40);
    lookDownOn({0, -5500, 0});
    const Rgba onY = strongest(frame(), {0, -5500, 0});
    EXPECT_GT(onY.g, onY.r + 40);
    EXPECT_GT(onY.g, onY.b + 40);
}

TEST_F(Grid, PlainLinesAreGrey) {
    scene().setFrameVisualVisible(false);
    lookDownOn({5500, 3000, 0});
    const Rgba line = strongest(frame(), {5500, 3000, 0});
    EXPECT_LT(std::abs(line.r - line.g), 8);
    EXPECT_LT(std::abs(line.r - line.b), 8);
}

TEST_F(Grid, NormalTurnsItAsTheVerticalTurnsTheLights) {
    for (const int dir : {0, 1, 2}) {
        grid().setNormalDir(static_cast<visual::Grid::NormalDir>(dir));
        EXPECT_EQ(grid().visual->node->getOrientation(), visual::UpAxisTurn(dir));
    }
    grid().setNormalDir(static_cast<visual::Grid::NormalDir>(7));
    EXPECT_EQ(grid().visual->node->getOrientation(), Ogre::Quaternion::IDENTITY);
}

TEST_F(Grid, ABodyStandsBeforeIt) {
    scene().setFrameVisualVisible(false);
    layout::Part* part = makeBoxPart("cover", {}, {4900, -200, -50}, {6100, 200, 50});
    scene().addPart(part);
    lookDownOn({5500, 0, 0});
    const Rgba covered = strongest(frame(), {5500, 0, 0});
    EXPECT_LT(std::abs(covered.r - covered.g), 40);  // the red line is not seen
}

}  // namespace vrn::test
