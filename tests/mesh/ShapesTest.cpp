#include "mesh/Shapes.h"

#include "mesh/MeshManager.h"
#include "mesh/PaintMesh.h"
#include "mesh/ShapeTriangles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <BRep_Tool.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <Poly_Triangulation.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>

#include <cmath>
#include <limits>
#include <numbers>
#include <stdexcept>

namespace vrn::visual {
namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using testing::ElementsAre;

constexpr float pi = std::numbers::pi_v<float>;

Vec FaceNormal(const Mesh& mesh, std::size_t triangle) {
    const Pos& a = mesh.vertices[mesh.indices[3 * triangle]];
    const Pos& b = mesh.vertices[mesh.indices[3 * triangle + 1]];
    const Pos& c = mesh.vertices[mesh.indices[3 * triangle + 2]];
    return (b - a).cross(c - a);
}

/// Triangles without area face nowhere and pass; `flat` of them are expected, as at a seam.
void ExpectWindingFollowsNormals(const Mesh& mesh, std::size_t flat) {
    std::size_t found = 0;
    float largest = 0;
    for (std::size_t t = 0; t < mesh.indices.size() / 3; ++t)
        largest = std::max(largest, FaceNormal(mesh, t).length());
    for (std::size_t t = 0; t < mesh.indices.size() / 3; ++t) {
        const Vec face = FaceNormal(mesh, t);
        if (face.length() < largest * 1e-4f) {
            ++found;
            continue;
        }
        for (std::size_t corner = 0; corner < 3; ++corner)
            EXPECT_GT(face.dot(mesh.normals[mesh.indices[3 * t + corner]]), 0.0f) << t;
    }
    EXPECT_EQ(found, flat);
}

void ExpectWholeAndUnit(const Mesh& mesh) {
    ASSERT_EQ(mesh.normals.size(), mesh.vertices.size());
    EXPECT_EQ(mesh.indices.size() % 3, 0u);
    for (const std::uint32_t index : mesh.indices) EXPECT_LT(index, mesh.vertices.size());
    for (const Vec& normal : mesh.normals) EXPECT_NEAR(normal.length(), 1.0f, 1e-5f);
}

TEST(Sphere, Of16By16HasItsSeamTwice) {
    const auto mesh = MakeSphere("s", 6, 16, 16);
    EXPECT_EQ(mesh->vertices.size(), 17u * 17u);
    EXPECT_EQ(mesh->indices.size(), 16u * 17u * 6u);
    EXPECT_EQ(mesh->name, "s");
    ExpectWholeAndUnit(*mesh);
    ExpectWindingFollowsNormals(*mesh, 2 * 16 + 2 * 16);
    const Pos &first = mesh->vertices[8 * 17], &last = mesh->vertices[8 * 17 + 16];
    EXPECT_NEAR((last - first).length(), 0.0f, 1e-4f);
}

TEST(Sphere, StartsAtThePoleOnYAndTurnsFromZToX) {
    const auto mesh = MakeSphere("s", 2, 4, 4);
    EXPECT_EQ(mesh->vertices[0], (Pos{0, 2, 0}));
    const Pos& atZ = mesh->vertices[2 * 5];
    EXPECT_NEAR(atZ.z, 2.0f, 1e-5f);
    const Pos& atX = mesh->vertices[2 * 5 + 1];
    EXPECT_NEAR(atX.x, 2.0f, 1e-5f);
}

TEST(Sphere, EmitsSixIndicesForEachVertexOutsideTheLastRing) {
    const auto mesh = MakeSphere("s", 1, 2, 3);
    ASSERT_EQ(mesh->indices.size(), 2u * 4u * 6u);
    const auto second = mesh->indices.begin() + 6;
    EXPECT_THAT(std::vector(second, second + 6), ElementsAre(5, 1, 4, 5, 2, 1));
    const auto nextRing = mesh->indices.begin() + 4 * 6;
    EXPECT_THAT(std::vector(nextRing, nextRing + 6), ElementsAre(8, 4, 7, 8, 5, 4));
}

TEST(Sphere, OfNegativeOrNoCountsIsEmpty) {
    for (const auto& [stacks, slices] : {std::pair{-1, 16}, {16, -1}, {0, 16}, {16, 0}}) {
        const auto mesh = MakeSphere("s", 1, stacks, slices);
        EXPECT_TRUE(mesh->vertices.empty() && mesh->indices.empty());
    }
}

TEST(Sphere, WithoutRadiusHasNoNormals) {
    try {
        static_cast<void>(MakeSphere("s", 1e-8f, 4, 4));
        FAIL();
    } catch (const std::overflow_error& e) {
        EXPECT_STREQ(e.what(), "0-length vector cannot be normalized.");
    }
}

TEST(Cylinder, Of1By16Has70Vertices) {
    const auto mesh = MakeCylinder("c", 3, 200, 1, 16);
    EXPECT_EQ(mesh->vertices.size(), 70u);
    EXPECT_EQ(mesh->indices.size(), 17u * 6u + 2u * 16u * 3u);
    ExpectWholeAndUnit(*mesh);
    ExpectWindingFollowsNormals(*mesh, 2);
}

TEST(Cylinder, HasItsFirstCapAtHalfTheHeight) {
    const auto mesh = MakeCylinder("c", 3, 200, 1, 16);
    EXPECT_EQ(mesh->getBox().max.z, 200.0f);
    EXPECT_EQ(mesh->getBox().min.z, 0.0f);
    for (std::size_t i = 34; i < 52; ++i) {
        EXPECT_EQ(mesh->vertices[i].z, 100.0f);
        EXPECT_EQ(mesh->normals[i], (Vec{0, 0, 1}));
    }
    for (std::size_t i = 52; i < 70; ++i) {
        EXPECT_EQ(mesh->vertices[i].z, 0.0f);
        EXPECT_EQ(mesh->normals[i], (Vec{0, 0, -1}));
    }
    EXPECT_EQ(mesh->vertices[51], (Pos{0, 0, 100}));
    EXPECT_EQ(mesh->vertices[69], (Pos{0, 0, 0}));
}

TEST(Cylinder, StartsAtYAndTurnsToX) {
    const auto mesh = MakeCylinder("c", 3, 10, 1, 4);
    EXPECT_EQ(mesh->vertices[0], (Pos{0, 3, 0}));
    EXPECT_NEAR(mesh->vertices[1].x, 3.0f, 1e-6f);
    EXPECT_EQ(mesh->vertices[5].z, 10.0f);
}

TEST(Cylinder, OfNegativeCountsIsEmpty) {
    EXPECT_TRUE(MakeCylinder("c", 1, 1, -1, 16)->vertices.empty());
    EXPECT_TRUE(MakeCylinder("c", 1, 1, 1, -1)->vertices.empty());
}

TEST(Cylinder, WithoutRadiusHasNoNormals) {
    EXPECT_THROW(static_cast<void>(MakeCylinder("c", 0, 1, 1, 4)), std::overflow_error);
}

TEST(Torus, LiesAboutZ) {
    const auto mesh = MakeTorus("t", 150, 3, 32, 16);
    EXPECT_EQ(mesh->vertices.size(), 33u * 17u);
    EXPECT_EQ(mesh->indices.size(), 32u * 17u * 6u);
    ExpectWholeAndUnit(*mesh);
    ExpectWindingFollowsNormals(*mesh, 2 * 32);
    EXPECT_NEAR(mesh->getBox().max.x, 153.0f, 0.01f);
    EXPECT_NEAR(mesh->getBox().min.y, -153.0f, 0.01f);
    EXPECT_NEAR(mesh->getBox().max.z, 3.0f, 0.01f);
}

TEST(Torus, RaisesSegmentsToThree) {
    const auto mesh = MakeTorus("t", 10, 1, 2, -5);
    EXPECT_EQ(mesh->vertices.size(), 4u * 4u);
    EXPECT_EQ(mesh->vertices, MakeTorus("t", 10, 1, 3, 3)->vertices);
}

TEST(TorusSector, GoesFromXTowardsY) {
    const auto mesh = MakeTorusSector("t", pi / 2, 150, 3, 32, 16);
    EXPECT_EQ(mesh->vertices.size(), 33u * 17u);
    EXPECT_EQ(mesh->vertices[0], (Pos{153, 0, 0}));
    EXPECT_NEAR(mesh->vertices[32 * 17].y, 153.0f, 1e-3f);
    EXPECT_GT(mesh->getBox().min.x, -0.01f);
    EXPECT_GT(mesh->getBox().min.y, -0.01f);
    ExpectWindingFollowsNormals(*mesh, 2 * 32);
}

TEST(TorusSector, OfAFullTurnIsTheTorus) {
    const auto sector = MakeTorusSector("t", 2 * pi, 150, 3, 32, 16);
    const auto torus = MakeTorus("t", 150, 3, 32, 16);
    EXPECT_EQ(sector->indices, torus->indices);
    for (std::size_t i = 0; i < torus->vertices.size(); ++i)
        EXPECT_NEAR((sector->vertices[i] - torus->vertices[i]).length(), 0.0f, 1e-3f);
}

TEST(TorusSector, WithoutTubeHasNoNormals) {
    EXPECT_THROW(static_cast<void>(MakeTorusSector("t", pi, 10, 0, 4, 4)), std::overflow_error);
}

TEST(Cone, StandsOnItsBaseWithTheTipAtItsHeight) {
    const auto mesh = MakeCone("c", 10, 45);
    ASSERT_FALSE(mesh->indices.empty());
    ExpectWholeAndUnit(*mesh);
    EXPECT_FLOAT_EQ(mesh->getBox().min.z, 0.0f);
    EXPECT_FLOAT_EQ(mesh->getBox().max.z, 45.0f);
    EXPECT_NEAR(mesh->getBox().max.x, 10.0f, 0.3f);
    // Outward: away from a point inside. Triangles at the tip may have no area.
    for (std::size_t t = 0; t < mesh->indices.size() / 3; ++t) {
        const Pos& corner = mesh->vertices[mesh->indices[3 * t]];
        const Vec face = FaceNormal(*mesh, t);
        if (face.length() == 0) continue;
        EXPECT_GT(face.dot(corner - Pos{0, 0, 10}), 0.0f) << t;
    }
}

TEST(Cone, HasAtMost20DegreesBetweenNeighboursOnItsRim) {
    const auto mesh = MakeCone("c", 1, 3);
    std::size_t onRim = 0;
    for (std::size_t i = 0; i < mesh->vertices.size(); ++i)
        onRim += mesh->vertices[i].z == 0.0f && mesh->normals[i].z > -0.5f;
    EXPECT_GE(onRim, 19u);  // 18 pieces of 20 degrees, the seam twice
}

TEST(Cone, WithoutHeightIsRefused) {
    EXPECT_THROW(static_cast<void>(MakeCone("c", 1, 0)), Standard_Failure);
}

TopoDS_Face MeshedFace() {
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(10.0, 20.0, 30.0).Shape();
    BRepMesh_IncrementalMesh(box, 1.0);
    return TopoDS::Face(TopExp_Explorer(box, TopAbs_FACE).Current());
}

TEST(FaceTriangles, OfAFaceThatWasNeverMeshedAreNone) {
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(10.0, 20.0, 30.0).Shape();
    Mesh mesh("m");
    EXPECT_EQ(AppendFaceTriangles(TopoDS::Face(TopExp_Explorer(box, TopAbs_FACE).Current()), mesh),
              0u);
    EXPECT_TRUE(mesh.vertices.empty());
}

TEST(FaceTriangles, AreMovedByTheLocation) {
    TopoDS_Face face = MeshedFace();
    Mesh here("m"), there("m");
    EXPECT_EQ(AppendFaceTriangles(face, here), 4u);
    gp_Trsf move;
    move.SetTranslation(gp_Vec(1, 2, 3));
    face.Move(TopLoc_Location(move));
    AppendFaceTriangles(face, there);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(there.vertices[i], here.vertices[i] + (Vec{1, 2, 3}));
}

TEST(FaceTriangles, OfAReversedFaceTurnNormalsAndWinding) {
    const TopoDS_Face face = MeshedFace();
    Mesh forward("m"), reversed("m");
    AppendFaceTriangles(TopoDS::Face(face.Oriented(TopAbs_FORWARD)), forward);
    AppendFaceTriangles(TopoDS::Face(face.Oriented(TopAbs_REVERSED)), reversed);
    EXPECT_EQ(reversed.normals[0], -forward.normals[0]);
    EXPECT_EQ(reversed.indices[0], forward.indices[1]);
    EXPECT_EQ(reversed.indices[1], forward.indices[0]);
    EXPECT_EQ(reversed.indices[2], forward.indices[2]);
}

TEST(FaceTriangles, OfAnInternalFaceTurnTheWindingAlone) {
    const TopoDS_Face face = MeshedFace();
    Mesh forward("m"), internal("m");
    AppendFaceTriangles(TopoDS::Face(face.Oriented(TopAbs_FORWARD)), forward);
    AppendFaceTriangles(TopoDS::Face(face.Oriented(TopAbs_INTERNAL)), internal);
    EXPECT_EQ(internal.normals[0], forward.normals[0]);
    EXPECT_EQ(internal.indices[0], forward.indices[1]);
}

TEST(FaceTriangles, KeepTheVertexOfABrokenNodeAndDropItsTriangles) {
    const TopoDS_Face face = MeshedFace();
    TopLoc_Location location;
    const Handle(Poly_Triangulation) triangulation = BRep_Tool::Triangulation(face, location);
    Mesh whole("m"), broken("m");
    AppendFaceTriangles(face, whole);  // leaves the normals in the triangulation
    triangulation->SetNode(1, gp_Pnt(std::numeric_limits<double>::quiet_NaN(), 0, 0));
    EXPECT_EQ(AppendFaceTriangles(face, broken), 4u);
    EXPECT_EQ(broken.vertices[0], (Pos{0, 0, 0}));
    EXPECT_LT(broken.indices.size(), whole.indices.size());
    for (const std::uint32_t index : broken.indices) EXPECT_NE(index, 0u);
}

TEST(FaceTriangles, OfASecondFaceStartBehindTheFirst) {
    const TopoDS_Face face = MeshedFace();
    Mesh mesh("m");
    AppendFaceTriangles(face, mesh);
    AppendFaceTriangles(face, mesh);
    ASSERT_EQ(mesh.indices.size(), 12u);
    for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(mesh.indices[6 + i], mesh.indices[i] + 4);
}

TEST(CreateMesh, GivesEachTriangleItsOwnCornersAndNormal) {
    const std::unique_ptr<Mesh> mesh(MeshManager::CreateMesh(
        "flat", {{0, 0, 0}, {2, 0, 0}, {0, 3, 0}, {0, 0, 1}}, {0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(mesh->name, "flat");
    EXPECT_THAT(mesh->indices, ElementsAre(0, 1, 2, 3, 4, 5));
    ASSERT_EQ(mesh->vertices.size(), 6u);
    EXPECT_EQ(mesh->vertices[4], (Pos{0, 3, 0}));
    // The cross product as it is, without normalising.
    EXPECT_THAT(mesh->normals, ElementsAre(Vec{0, 0, 6}, Vec{0, 0, 6}, Vec{0, 0, 6}, Vec{3, 0, 0},
                                           Vec{3, 0, 0}, Vec{3, 0, 0}));
}

TEST(CreateMesh, RefusesAnIndexWithoutVertex) {
    EXPECT_THROW(static_cast<void>(MeshManager::CreateMesh("bad", {{}, {}, {}}, {0, 1, 3})),
                 std::out_of_range);
}

TEST(CreateMesh, PassesOverIndicesThatMakeNoTriangle) {
    const std::unique_ptr<Mesh> mesh(
        MeshManager::CreateMesh("rest", {{}, {1, 0, 0}, {0, 1, 0}}, {0, 1, 2, 0, 1}));
    EXPECT_EQ(mesh->vertices.size(), 3u);
    EXPECT_TRUE(std::unique_ptr<Mesh>(MeshManager::CreateMesh("none", {}, {}))->vertices.empty());
}

TEST(CreatePaintMesh, CopiesTheTrianglesUnderAnInvisibleBlue) {
    const auto source = MakeCylinder("barrel", 1, 2, 1, 8);
    const std::unique_ptr<PaintMesh> paint(MeshManager::createPaintMeshFromMesh(source.get()));
    EXPECT_EQ(paint->name, "barrel_paint");
    EXPECT_EQ(paint->vertices, source->vertices);
    EXPECT_EQ(paint->normals, source->normals);
    EXPECT_EQ(paint->indices, source->indices);
    EXPECT_THAT(paint->vertexColors, testing::Each(Color{0, 0, 1, 0}));
    EXPECT_EQ(paint->vertexColors.size(), source->vertices.size());
    EXPECT_TRUE(paint->changedVertices.empty());
}

TEST(CreatePaintMesh, RefusesNull) {
    EXPECT_THROW(static_cast<void>(MeshManager::createPaintMeshFromMesh(nullptr)),
                 std::invalid_argument);
}

}  // namespace
}  // namespace vrn::visual
