#include "apps/vrnview/drive/PaintReport.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "apps/vrnview/TempFolder.h"
#include "mesh/PaintMesh.h"
#include "tests/apps/TestFiles.h"

namespace vrn::test {
namespace {

using host::CoverOf;
using host::PaintCover;
using visual::Color;

constexpr Color covered{1, 0, 0, 255}, bare{1, 0, 0, 0};

/// Two triangles of areas 50 and 100 that share an edge.
visual::PaintMesh MakeMesh(const std::vector<Color>& colours) {
    visual::PaintMesh mesh("m");
    mesh.vertices = {{0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {10, 20, 0}};
    mesh.indices = {0, 1, 2, 1, 3, 2};
    mesh.vertexColors = colours;
    return mesh;
}

TEST(PaintReport, ATriangleIsCoveredByAsManyThirdsAsItHasPaintedCorners) {
    const PaintCover cover = CoverOf(MakeMesh({covered, covered, bare, bare}));
    EXPECT_EQ(cover.vertices, 4u);
    EXPECT_EQ(cover.painted, 2u);
    EXPECT_DOUBLE_EQ(cover.area, 150);
    EXPECT_DOUBLE_EQ(cover.covered, 50 * 2.0 / 3 + 100 / 3.0);
}

TEST(PaintReport, BareAndWhollyPaintedMeshesAreTheEnds) {
    EXPECT_EQ(CoverOf(MakeMesh({bare, bare, bare, bare})).covered, 0);
    EXPECT_DOUBLE_EQ(CoverOf(MakeMesh({covered, covered, covered, covered})).covered, 150);
}

TEST(PaintReport, WhatIsMissingIsNoPaintAndNoArea) {
    visual::PaintMesh mesh = MakeMesh({covered});
    mesh.indices.insert(mesh.indices.end(), {0, 1, 9, 0, 1});
    const PaintCover cover = CoverOf(mesh);
    EXPECT_DOUBLE_EQ(cover.area, 150);
    EXPECT_DOUBLE_EQ(cover.covered, 50 / 3.0);
    EXPECT_EQ(CoverOf(visual::PaintMesh("none")).vertices, 0u);
}

TEST(PaintReport, EachBodyIsALineAndNamesAreQuotedWhereTheyMust) {
    EXPECT_EQ(host::CsvOf({}), "body,name,vertices,painted,area,covered\n");
    EXPECT_EQ(host::CsvOf({{7, "a_7", {4, 2, 150, 66.6666667}}, {9, "a \"b\", c", {}}}),
              "body,name,vertices,painted,area,covered\n"
              "7,a_7,4,2,150,66.6667\n"
              "9,\"a \"\"b\"\", c\",0,0,0,0\n");
}

TEST(PaintReport, AFileThatCannotBeWrittenIsTold) {
    const host::TempFolder folder;
    const std::filesystem::path file = folder.getPath() / "r.csv";
    host::WritePaintReport({}, file);
    EXPECT_EQ(ReadBytes(file), host::CsvOf({}));
    EXPECT_THROW(host::WritePaintReport({}, folder.getPath() / "none" / "r.csv"),
                 std::runtime_error);
}

}  // namespace
}  // namespace vrn::test
