#include "examples/cell/Scanner.h"

#include <gtest/gtest.h>
#include <BRepMesh_IncrementalMesh.hxx>

#include <cmath>
#include <stdexcept>

#include "apps/vrnview/readers/CloudPoints.h"
#include "apps/vrnview/TempFolder.h"
#include "examples/cell/Forms.h"

namespace vrn::examples {
namespace {

TopoDS_Shape Triangulated(const TopoDS_Shape& shape) {
    BRepMesh_IncrementalMesh(shape, 0.5);
    return shape;
}

TopoDS_Shape Block() { return Triangulated(BoxAt({-50, -50, 0}, 100, 100, 40)); }

Scanner Exact(const gp_Pnt& place) {
    return {.places = {place}, .stepDegrees = 0.2, .noise = 0, .dropout = 0};
}

TEST(Scanner, ShapeWithoutTrianglesIsRefused) {
    EXPECT_THROW((void)Scan(BoxAt({0, 0, 0}, 1, 1, 1), Exact({0, 0, 100})), std::invalid_argument);
}

TEST(Scanner, NoPlaceNoPoints) { EXPECT_TRUE(Scan(Block(), Scanner{}).empty()); }

TEST(Scanner, SeesTheSideThatItLooksAt) {
    const std::vector<ScanPoint> points = Scan(Block(), Exact({0, 0, 1000}));
    // 960 mm off, a ray every 3.4 mm.
    EXPECT_NEAR(static_cast<double>(points.size()), std::pow(100 / 3.39, 2), 120);
    for (const ScanPoint& p : points) {
        EXPECT_NEAR(p.point.Z(), 40, 1e-9);
        EXPECT_LE(std::abs(p.point.X()), 50 + 1e-9);
        EXPECT_LE(std::abs(p.point.Y()), 50 + 1e-9);
    }
}

TEST(Scanner, WhatStandsInFrontHidesWhatStandsBehind) {
    const TopoDS_Shape both = Triangulated(
        Compound({BoxAt({-50, -50, 0}, 100, 100, 40), BoxAt({-20, -20, 100}, 40, 40, 10)}));
    int onTop = 0;
    for (const ScanPoint& p : Scan(both, Exact({0, 0, 1000}))) {
        if (p.point.Z() > 99)
            ++onTop;
        else
            EXPECT_GT(std::max(std::abs(p.point.X()), std::abs(p.point.Y())), 20);
    }
    EXPECT_GT(onTop, 100);
}

TEST(Scanner, NoiseStaysWithinItsBoundAlongTheRays) {
    Scanner scanner = Exact({0, 0, 1000});
    scanner.noise = 0.5;
    double largest = 0;
    for (const ScanPoint& p : Scan(Block(), scanner)) {
        EXPECT_LE(std::abs(p.point.Z() - 40), 0.5);
        largest = std::max(largest, std::abs(p.point.Z() - 40));
    }
    EXPECT_GT(largest, 0.4);
}

TEST(Scanner, DropoutTakesItsPart) {
    Scanner scanner = Exact({0, 0, 1000});
    const double all = static_cast<double>(Scan(Block(), scanner).size());
    scanner.dropout = 0.25;
    EXPECT_NEAR(static_cast<double>(Scan(Block(), scanner).size()) / all, 0.75, 0.05);
}

TEST(Scanner, GrazedSurfacesBringNothingBack) {
    // Half a metre beside a block, hardly above its top.
    for (const ScanPoint& p : Scan(Block(), Exact({1000, 0, 60})))
        EXPECT_LT(p.point.Z(), 40 - 1e-6);
}

TEST(Scanner, SurfacesMetHeadOnAreBrightest) {
    const std::vector<ScanPoint> above = Scan(Block(), Exact({0, 0, 1000}));
    const std::vector<ScanPoint> aslant = Scan(Block(), Exact({900, 0, 600}));
    const auto brightest = [](const std::vector<ScanPoint>& points, double z) {
        int value = 0;
        for (const ScanPoint& p : points)
            if (std::abs(p.point.Z() - z) < 1e-6) value = std::max<int>(value, p.colour[0]);
        return value;
    };
    EXPECT_GT(brightest(above, 40), brightest(aslant, 40) + 20);
}

TEST(Scanner, SecondScanIsTheSame) {
    Scanner scanner = Exact({200, 300, 1000});
    scanner.noise = 1;
    scanner.dropout = 0.1;
    const std::vector<ScanPoint> a = Scan(Block(), scanner), b = Scan(Block(), scanner);
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_EQ(a[i].point.Distance(b[i].point), 0);
        EXPECT_EQ(a[i].colour, b[i].colour);
    }
}

TEST(Scanner, PlyIsReadBackInMetres) {
    const host::TempFolder folder;
    const std::filesystem::path file = folder.getPath() / "cloud.ply";
    WritePly({{{1000, -2000, 500}, {1, 2, 3}}, {{0, 250, 0}, {255, 0, 255}}}, file);
    const host::CloudPoints cloud = host::ReadCloudFile(file);
    ASSERT_EQ(cloud.points.size(), 2u);
    EXPECT_DOUBLE_EQ(cloud.points[0].x, 1);
    EXPECT_DOUBLE_EQ(cloud.points[0].y, -2);
    EXPECT_DOUBLE_EQ(cloud.points[0].z, 0.5);
    EXPECT_DOUBLE_EQ(cloud.points[1].y, 0.25);
}

TEST(Scanner, UnwritablePlyIsNamed) {
    try {
        WritePly({}, "/nonexistent/cloud.ply");
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "/nonexistent/cloud.ply: cannot be written");
    }
}

}  // namespace
}  // namespace vrn::examples
