#include "examples/StlWriter.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <map>
#include <numbers>
#include <stdexcept>
#include <utility>
#include <vector>

#include "apps/vrnview/TempFolder.h"
#include "examples/Shapes.h"
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
    for (const auto& [a, b, c] : triangles)
        volume += a[0] * (double{b[1]} * c[2] - double{b[2]} * c[1]) -
                  a[1] * (double{b[0]} * c[2] - double{b[2]} * c[0]) +
                  a[2] * (double{b[0]} * c[1] - double{b[1]} * c[0]);
    return volume / 6;
}

TEST(StlWriter, SurfacesAreClosedAndLookOutward) {
    const host::TempFolder folder;
    const std::filesystem::path file = folder.getPath() / "ring.stl";
    const TopoDS_Shape plate =
        Cut(BoxAt({-50, -50, 0}, 100, 100, 20), {CylinderAt({0, 0, -1}, {0, 0, 30}, 30)});
    const std::size_t count = WriteStl(plate, file);
    const std::vector<Triangle> triangles = test::ReadBinaryStl(file);
    EXPECT_EQ(triangles.size(), count);
    EXPECT_EQ(OpenEdges(triangles), 0u);
    EXPECT_NEAR(Volume(triangles), 20 * (100 * 100 - std::numbers::pi * 30 * 30), 200);
}

TEST(StlWriter, FinenessBringsTrianglesCloserToTheSurface) {
    const host::TempFolder folder;
    const auto countAt = [&](const Fineness& fineness) {
        return WriteStl(CylinderAt({0, 0, 0}, {0, 0, 10}, 50), folder.getPath() / "pin.stl",
                        fineness);
    };
    EXPECT_GT(countAt({0.01, 2}), 3 * countAt({1, 30}));
}

TEST(StlWriter, UnwritableFileIsNamed) {
    try {
        WriteStl(BoxAt({0, 0, 0}, 1, 1, 1), "/nonexistent/box.stl");
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "/nonexistent/box.stl: cannot be written");
    }
}

}  // namespace
}  // namespace vrn::examples
