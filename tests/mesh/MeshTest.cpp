#include "mesh/Mesh.h"

#include "mesh/PaintMesh.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <limits>
#include <memory>
#include <numbers>
#include <sstream>
#include <stdexcept>

namespace vrn::visual {
namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using Rotation = rob::RotationTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using testing::ElementsAre;

constexpr float halfPi = std::numbers::pi_v<float> / 2;

/// Two triangles on four vertices, in the XY plane.
Mesh Square() {
    Mesh mesh("square");
    mesh.vertices = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    mesh.normals.assign(4, Vec{0, 0, 1});
    mesh.indices = {0, 1, 2, 0, 2, 3};
    return mesh;
}

Pose Moved(float x) { return {{x, 0, 0}, Rotation()}; }

TEST(Mesh, StartsEmptyWithBoundsUnknown) {
    const Mesh mesh("name");
    EXPECT_EQ(mesh.name, "name");
    EXPECT_TRUE(mesh.vertices.empty() && mesh.normals.empty() && mesh.colors.empty());
    EXPECT_TRUE(mesh.indices.empty() && mesh.changedVertices.empty());
    EXPECT_FALSE(mesh.boxValid);
}

TEST(Mesh, BoundsEncloseAllVertices) {
    Mesh mesh = Square();
    const Box& box = mesh.getBox();
    EXPECT_TRUE(mesh.boxValid);
    EXPECT_EQ(box.min, (Pos{0, 0, 0}));
    EXPECT_EQ(box.max, (Pos{1, 1, 0}));
}

TEST(Mesh, BoundsOfNoVerticesAreTheEmptyBox) {
    Mesh mesh("empty");
    EXPECT_FALSE(mesh.getBox().isValid());
    EXPECT_EQ(mesh.getBox().min.x, FLT_MAX);
}

TEST(Mesh, BoundsPassOverVerticesThatAreNotFinite) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float inf = std::numeric_limits<float>::infinity();
    Mesh mesh("broken");
    mesh.vertices = {{1, 2, 3}, {nan, 9, 9}, {9, -inf, 9}, {4, 5, 6}};
    EXPECT_EQ(mesh.getBox().min, (Pos{1, 2, 3}));
    EXPECT_EQ(mesh.getBox().max, (Pos{4, 5, 6}));
}

TEST(Mesh, BoundsAskedForBeforeAddSubMeshStayTheEarlierOnes) {
    Mesh mesh = Square();
    static_cast<void>(mesh.getBox());
    const Mesh other = Square();
    mesh.addSubMesh(&other, Moved(10));
    EXPECT_EQ(mesh.getBox().max.x, 1.0f);
}

TEST(Mesh, AddSubMeshLeavesTheBoundsToTheFirstQuestion) {
    Mesh mesh = Square();
    const Mesh other = Square();
    mesh.addSubMesh(&other, Moved(10));
    EXPECT_FALSE(mesh.boxValid);
    EXPECT_EQ(mesh.getBox().max.x, 11.0f);
}

TEST(Mesh, DumpReportsAThirdOfTheVerticesAsTriangles) {
    std::ostringstream out;
    Square().dump(out);
    EXPECT_EQ(out.str(), "Vertex number: 4\nTriangle number: 1\n");
}

TEST(Mesh, AddSubMeshAppendsAndShiftsTheIndices) {
    Mesh mesh = Square();
    Mesh other = Square();
    other.colors.assign(4, {1, 0, 0});
    mesh.addSubMesh(&other, Moved(10));
    ASSERT_EQ(mesh.vertices.size(), 8u);
    EXPECT_EQ(mesh.vertices[0], (Pos{0, 0, 0}));
    EXPECT_EQ(mesh.vertices[6], (Pos{11, 1, 0}));
    EXPECT_THAT(mesh.indices, ElementsAre(0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7));
    EXPECT_EQ(other.vertices[2], (Pos{1, 1, 0}));
}

TEST(Mesh, AddSubMeshRotatesBeforeItMovesAndTurnsTheNormals) {
    Mesh mesh("composite");
    const Mesh other = Square();
    mesh.addSubMesh(&other, {{0, 0, 5}, Rotation(halfPi, Vec{0, 1, 0})});
    EXPECT_NEAR(mesh.vertices[1].x, 0.0f, 1e-6f);
    EXPECT_NEAR(mesh.vertices[1].z, 4.0f, 1e-6f);
    EXPECT_NEAR(mesh.normals[1].x, 1.0f, 1e-6f);
    EXPECT_NEAR(mesh.normals[1].z, 0.0f, 1e-6f);
}

TEST(Mesh, AddSubMeshWithoutColoursLeavesColoursShort) {
    Mesh mesh("composite");
    Mesh coloured = Square();
    coloured.colors.assign(4, {1, 0, 0});
    const Mesh plain = Square();
    mesh.addSubMesh(&plain, Pose());
    mesh.addSubMesh(&coloured, Pose());
    EXPECT_EQ(mesh.vertices.size(), 8u);
    EXPECT_EQ(mesh.colors.size(), 4u);
}

TEST(Mesh, AddSubMeshTurnsOnlyTheNormalsThereAre) {
    Mesh mesh("composite");
    Mesh bare = Square();
    bare.normals.clear();
    mesh.addSubMesh(&bare, Moved(10));
    const Mesh square = Square();
    mesh.addSubMesh(&square, {{0, 0, 0}, Rotation(halfPi, Vec{0, 1, 0})});
    ASSERT_EQ(mesh.normals.size(), 4u);
    EXPECT_EQ(mesh.normals[0], (Vec{0, 0, 1}));  // stands at a vertex of the first part
}

TEST(Mesh, AddSubMeshOfItselfDoublesTheMesh) {
    Mesh mesh = Square();
    mesh.addSubMesh(&mesh, Moved(2));
    EXPECT_EQ(mesh.vertices.size(), 8u);
    EXPECT_THAT(mesh.indices, ElementsAre(0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7));
    EXPECT_EQ(mesh.vertices[5], (Pos{3, 0, 0}));
}

TEST(Mesh, AddSubMeshRefusesNull) {
    Mesh mesh = Square();
    EXPECT_THROW(mesh.addSubMesh(nullptr, Pose()), std::invalid_argument);
}

struct PoseCase {
    const char* name;
    Pose pose;
    bool counts;  ///< whether the pose moves the vertices
};

void PrintTo(const PoseCase& c, std::ostream* out) { *out << c.name; }

class NearIdentity : public testing::TestWithParam<PoseCase> {};

TEST_P(NearIdentity, DecidesWhetherVerticesMove) {
    Mesh mesh("composite");
    const Mesh other = Square();
    mesh.addSubMesh(&other, GetParam().pose);
    EXPECT_EQ(mesh.vertices != other.vertices, GetParam().counts);
}

INSTANTIATE_TEST_SUITE_P(
    Mesh, NearIdentity,
    testing::Values(
        PoseCase{"Identity", Pose(), false},
        PoseCase{"OffsetOf0005IsDropped", Moved(0.005f), false},
        PoseCase{"OffsetJustBelow001IsDropped", Moved(0.00999f), false},
        // The nearest float to 0.01 lies below it in double; the next one is above.
        PoseCase{"OffsetJustAbove001Counts", Moved(0.0100001f), true},
        PoseCase{"OffsetBackwardsCounts", Moved(-0.02f), true},
        PoseCase{"DiagonalOffsetIsMeasuredByItsLength", {{0.008f, 0.008f, 0}, Rotation()}, true},
        PoseCase{"SmallXOfTheQuaternionIsDropped", {{}, {1, 0.0009f, 0, 0}}, false},
        PoseCase{"XOfTheQuaternionCounts", {{}, {1, 0.0011f, 0, 0}}, true},
        PoseCase{"YOfTheQuaternionCounts", {{}, {1, 0, -0.0011f, 0}}, true},
        PoseCase{"ZOfTheQuaternionCounts", {{}, {1, 0, 0, 0.0011f}}, true},
        PoseCase{"WOfTheQuaternionCounts", {{}, {0.99f, 0.0005f, 0, 0.0005f}}, true}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Mesh, MinusOneForWIsNotNearTheIdentity) {
    // The same turn as the identity, but the offset of 0.005 must then show.
    Mesh mesh("composite");
    const Mesh other = Square();
    mesh.addSubMesh(&other, {{0.005f, 0, 0}, {-1, 0, 0, 0}});
    EXPECT_FLOAT_EQ(mesh.vertices[0].x, 0.005f);
}

TEST(Mesh, ItsLifeEndsWithItAndNoCopyProlongsIt) {
    Mesh other("other");
    std::weak_ptr<const void> life, lifeOfCopy;
    {
        const Mesh mesh = Square();
        const Mesh copy = mesh;
        other = mesh;
        life = mesh.getLife();
        lifeOfCopy = copy.getLife();
        EXPECT_FALSE(life.expired());
    }
    EXPECT_TRUE(life.expired());
    EXPECT_TRUE(lifeOfCopy.expired());
    EXPECT_FALSE(other.getLife().expired());
}

TEST(PaintMesh, SetColorStoresAndNotesTheVertexEachTime) {
    PaintMesh mesh("paint");
    mesh.vertexColors.resize(3);
    mesh.setColor(2, {1, 0, 0, 255});
    mesh.setColor(2, {0, 1, 0, 255});
    EXPECT_EQ(mesh.vertexColors[2], (Color{0, 1, 0, 255}));
    EXPECT_THAT(mesh.changedVertices, ElementsAre(2, 2));
}

TEST(PaintMesh, SetColorOfAVertexThatIsNotThereThrowsAndNotesNothing) {
    PaintMesh mesh("paint");
    mesh.vertexColors.resize(3);
    EXPECT_THROW(mesh.setColor(3, {}), std::out_of_range);
    EXPECT_TRUE(mesh.changedVertices.empty());
}

}  // namespace
}  // namespace vrn::visual
