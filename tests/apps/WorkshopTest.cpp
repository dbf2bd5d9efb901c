#include "examples/Workshop.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include "apps/vrnview/TempFolder.h"
#include "examples/Gear.h"
#include "examples/StlWriter.h"
#include "tests/apps/TestFiles.h"

namespace vrn::examples {
namespace {

using test::Point;
using test::Triangle;

/// Edges that do not have as many triangles on their one side as on the other: none in a closed
/// surface.
std::size_t OpenEdges(const std::vector<Triangle>& triangles) {
    std::map<std::pair<Point, Point>, int> balance;
    for (const Triangle& t : triangles) {
        for (std::size_t i = 0; i < 3; ++i) {
            const Point &a = t[i], &b = t[(i + 1) % 3];
            if (a < b) ++balance[{a, b}];
            if (b < a) --balance[{b, a}];
        }
    }
    std::size_t open = 0;
    for (const auto& [edge, count] : balance) open += count != 0 ? 1 : 0;
    return open;
}

/// Positive if the triangles look outward.
double Volume(const std::vector<Triangle>& triangles) {
    double volume = 0;
    for (const Triangle& t : triangles) {
        const auto [a, b, c] = t;
        volume += a[0] * (double{b[1]} * c[2] - double{b[2]} * c[1]) -
                  a[1] * (double{b[0]} * c[2] - double{b[2]} * c[0]) +
                  a[2] * (double{b[0]} * c[1] - double{b[1]} * c[0]);
    }
    return volume / 6;
}

class WorkshopTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        folder = new host::TempFolder;
        files = WriteWorkshop(folder->getPath() / "new");
    }
    static void TearDownTestSuite() { delete folder; }

    static inline host::TempFolder* folder = nullptr;
    static inline std::vector<ExampleFile> files;
};

TEST_F(WorkshopTest, HasEightPartsInColoursOfTheirOwn) {
    std::set<std::string> names, colours;
    for (const ExampleFile& part : files) {
        names.insert(part.file.filename());
        colours.insert(part.colour);
    }
    EXPECT_EQ(names.size(), 8u);
    EXPECT_EQ(colours.size(), 8u);
}

TEST_F(WorkshopTest, PartsAreClosedAndLookOutward) {
    for (const ExampleFile& part : files) {
        const std::vector<Triangle> triangles = test::ReadBinaryStl(part.file);
        EXPECT_GT(triangles.size(), 500u) << part.file;
        EXPECT_EQ(OpenEdges(triangles), 0u) << part.file;
        EXPECT_GT(Volume(triangles), 1e5) << part.file;  // a tenth of a litre
    }
}

TEST_F(WorkshopTest, StandsOnTheFloor) {
    float lowest = 1e9f;
    for (const ExampleFile& part : files)
        for (const Triangle& t : test::ReadBinaryStl(part.file))
            for (const Point& p : t) lowest = std::min(lowest, p[2]);
    EXPECT_NEAR(lowest, 0, 1e-3);
}

TEST(Gear, ToothCountAndSizeAreAsAsked) {
    const host::TempFolder folder;
    const Gear gear{
        .module = 5, .teeth = 24, .width = 30, .boreRadius = 15, .hubRadius = 25, .webWidth = 12};
    WriteStl(MakeGear(gear), folder.getPath() / "gear.stl");
    const std::vector<Triangle> triangles = test::ReadBinaryStl(folder.getPath() / "gear.stl");
    EXPECT_EQ(OpenEdges(triangles), 0u);
    float reach = 0;
    std::set<int> tips;  // by the tooth's number
    for (const Triangle& t : triangles) {
        for (const Point& p : t) {
            const float radius = std::hypot(p[0], p[1]);
            reach = std::max(reach, radius);
            const double turn = std::atan2(p[1], p[0]) / (2 * 3.14159265358979);
            if (radius > 64.9f) tips.insert(static_cast<int>(std::lround(turn * 24) + 24) % 24);
        }
    }
    EXPECT_NEAR(reach, 5.0 * 24 / 2 + 5, 0.05);
    EXPECT_EQ(tips.size(), 24u);
}

TEST(Gear, TooFewTeethAreRefused) {
    EXPECT_THROW((void)MakeGear({.teeth = 17}), std::invalid_argument);
}

TEST(StlWriter, UnwritableFileIsNamed) {
    try {
        WriteStl(MakeGear({}), "/nonexistent/gear.stl");
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "/nonexistent/gear.stl: cannot be written");
    }
}

}  // namespace
}  // namespace vrn::examples
