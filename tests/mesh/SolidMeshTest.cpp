// The meshes of bodies and the colours in them.

#include <cmath>
#include <limits>
#include <stdexcept>

#include <gmock/gmock.h>

#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreSubMesh.h>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <gp_Ax1.hxx>
#include <gp_Trsf.hxx>
#include <Standard_ConstructionError.hxx>
#include <Standard_OutOfRange.hxx>
#include <Standard_TypeMismatch.hxx>
#include <TopExp.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>

#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "mesh/NoTriangleMesh.h"
#include "selection/ShapeMesh.h"
#include "suite/geom/BodyColorTool.h"
#include "tests/support/SolidFixture.h"

namespace vrn::test {

namespace {

using geometry::BodyColorTool;
using testing::Each;
using testing::ElementsAre;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::FaceMap;
using visual::Mesh;
using visual::MeshManager;
using visual::NoTriangleMesh;
using visual::SolidVisual;
using Color = rob::ColorTemplate<float>;
using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

constexpr Color red{1, 0, 0};
constexpr Color green{0, 1, 0};
constexpr Color blue{0, 0, 1};
constexpr Color white{1, 1, 1};

MeshManager& Manager() { return *MeshManager::Get(); }

bool OgreKnows(const std::string& name) {
    return Ogre::MeshManager::getSingleton().getByName(name, Ogre::RGN_AUTODETECT) != nullptr;
}

FaceMap FacesOf(const TopoDS_Shape& shape) {
    FaceMap faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    return faces;
}

/// What an OpenCASCADE exception of the class says; these are no std::exception.
template <class Exception, class Action>
std::string MessageOf(Action action) {
    try {
        action();
    } catch (const Exception& error) {
        return error.GetMessageString();
    }
    return "nothing was thrown";
}

/// The same shape with its triangles as they were.
TopoDS_Face Oriented(const TopoDS_Face& face, TopAbs_Orientation orientation) {
    return TopoDS::Face(face.Oriented(orientation));
}

}  // namespace

class SolidMesh : public SolidTest {
protected:
    /// A solid without picture that tells which faces are visible.
    SolidVisual* bare(const TopoDS_Shape& shape) { return new SolidVisual(shape, scene().root); }

    std::unique_ptr<Mesh> meshOf(const TopoDS_Shape& shape, const ColorInfo* colors = nullptr) {
        return MeshManager::getShapeMesh(shape, FacesOf(shape), bare(shape), colors);
    }
};

// --- from a shape to a record

TEST_F(SolidMesh, AShapeWithoutFacesGivesNoMesh) {
    const TopoDS_Shape empty = CompoundOf({});
    EXPECT_EQ(meshOf(empty), nullptr);
    EXPECT_EQ(meshOf(TopoDS_Shape()), nullptr);
    SolidVisual* solid = bare(empty);
    EXPECT_THROW(Manager().loadShape(solid, {"#FFFFFF", {}}), NoTriangleMesh);
    EXPECT_THROW(Manager().loadShape(solid), NoTriangleMesh);
}

TEST_F(SolidMesh, AShapeThatWasNeverTriangulatedGivesNoMesh) {
    EXPECT_EQ(meshOf(PlainBox()), nullptr);
}

TEST_F(SolidMesh, AllFacesHiddenGiveNoMesh) {
    SolidVisual* solid = show(CompoundOf({FanFace(4), FanFace(5, 1)}));
    solid->setFaceVisible(1, false);
    EXPECT_THROW(solid->setFaceVisible(2, false), NoTriangleMesh);
    EXPECT_THROW(Manager().loadShape(solid), NoTriangleMesh);
}

TEST_F(SolidMesh, OneTriangleOnThreeNodesIsEnough) {
    const auto mesh = meshOf(FanFace(3));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->vertices.size(), 3u);
    EXPECT_THAT(mesh->indices, ElementsAre(0, 1, 2));
    EXPECT_THAT(mesh->normals, Each(Vec{0, 0, 1}));
}

TEST_F(SolidMesh, ATriangleOnTwoNodesIsNone) {
    const TopoDS_Face face = BareFace();
    const Handle(Poly_Triangulation) line = new Poly_Triangulation(2, 1, false, true);
    for (int i = 1; i <= 2; ++i) {
        line->SetNode(i, gp_Pnt(i, 0, 0));
        line->SetNormal(i, gp_Dir(0, 0, 1));
    }
    line->SetTriangle(1, Poly_Triangle(1, 2, 2));
    BRep_Builder().UpdateFace(face, line);
    EXPECT_EQ(meshOf(face), nullptr);
}

TEST_F(SolidMesh, FacesShareNoVertices) {
    const auto box = meshOf(MeshedBox());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->vertices.size(), 24u);
    EXPECT_EQ(box->normals.size(), 24u);
    EXPECT_EQ(box->indices.size(), 36u);
    EXPECT_EQ(box->getBox().min, (Pos{0, 0, 0}));
    EXPECT_EQ(box->getBox().max, (Pos{100, 60, 40}));
}

TEST_F(SolidMesh, EveryTriangleOfABoxFacesOutward) {
    const auto box = meshOf(MeshedBox());
    const Pos middle{50, 30, 20};
    for (std::size_t i = 0; i < box->indices.size(); i += 3) {
        const Pos& a = box->vertices[box->indices[i]];
        const Pos& b = box->vertices[box->indices[i + 1]];
        const Pos& c = box->vertices[box->indices[i + 2]];
        const Vec facing = (b - a).cross(c - a);
        EXPECT_GT(facing.dot(a - middle), 0) << "triangle " << i / 3;
        for (std::size_t k = 0; k < 3; ++k)
            EXPECT_GT(box->normals[box->indices[i + k]].dot(facing), 0) << "triangle " << i / 3;
    }
}

TEST_F(SolidMesh, TheFacesFollowOneAnotherInTheOrderOfTheMap) {
    const auto mesh = meshOf(CompoundOf({FanFace(4), FanFace(5, 1), FanFace(6, 2)}));
    ASSERT_EQ(mesh->vertices.size(), 15u);
    EXPECT_EQ(mesh->vertices[3].z, 0);
    EXPECT_EQ(mesh->vertices[4].z, 1);
    EXPECT_EQ(mesh->vertices[8].z, 1);
    EXPECT_EQ(mesh->vertices[9].z, 2);
    EXPECT_EQ(mesh->indices[6], 4u);  // behind the two triangles of the first face
}

TEST_F(SolidMesh, AFaceWithoutTriangulationHasNoVertices) {
    const auto mesh = meshOf(CompoundOf({BareFace(), FanFace(4)}));
    EXPECT_EQ(mesh->vertices.size(), 4u);
    EXPECT_EQ(mesh->indices.front(), 0u);
}

TEST_F(SolidMesh, ANodeThatIsNotFiniteKeepsItsVertexAndLosesItsTriangles) {
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(), 1e300}) {
        const TopoDS_Face first = FanFace(5);
        TriangulationOf(first)->SetNode(3, gp_Pnt(0, bad, 0));
        const auto mesh = meshOf(CompoundOf({first, FanFace(4, 1)}));
        ASSERT_NE(mesh, nullptr);
        EXPECT_EQ(mesh->vertices.size(), 9u);
        EXPECT_EQ(mesh->vertices[2], (Pos{0, 0, 0}));
        // Of the triangles (1 2 3), (1 3 4), (1 4 5) the last alone; the next face as ever.
        EXPECT_THAT(mesh->indices, ElementsAre(0, 3, 4, 5, 6, 7, 5, 7, 8));
        EXPECT_TRUE(std::isfinite(mesh->getBox().max.y));
    }
}

TEST_F(SolidMesh, AReversedFaceHasNegatedNormalsAndSwappedWinding) {
    const auto mesh = meshOf(Oriented(FanFace(3), TopAbs_REVERSED));
    EXPECT_THAT(mesh->normals, Each(Vec{0, 0, -1}));
    EXPECT_THAT(mesh->indices, ElementsAre(1, 0, 2));
}

TEST_F(SolidMesh, InternalAndExternalFacesHaveSwappedWindingAndTheirOwnNormals) {
    for (const auto orientation : {TopAbs_INTERNAL, TopAbs_EXTERNAL}) {
        const auto mesh = meshOf(Oriented(FanFace(3), orientation));
        EXPECT_THAT(mesh->normals, Each(Vec{0, 0, 1}));
        EXPECT_THAT(mesh->indices, ElementsAre(1, 0, 2));
    }
}

TEST_F(SolidMesh, TheLocationMovesNodesAndTurnsNormals) {
    gp_Trsf turn;  // z to x
    turn.SetRotation(gp_Ax1(gp_Pnt(0, 0, 0), gp_Dir(0, 1, 0)), 1.5707963267948966);
    gp_Trsf shift;
    shift.SetTranslation(gp_Vec(100, 0, 0));
    const auto mesh = meshOf(FanFace(3).Moved(TopLoc_Location(shift * turn)));
    EXPECT_NEAR(mesh->vertices[0].x, 100, 1e-4);
    EXPECT_NEAR(mesh->vertices[0].z, -10, 1e-4);
    EXPECT_NEAR(mesh->normals[0].x, 1, 1e-6);
    EXPECT_NEAR(mesh->normals[0].z, 0, 1e-6);
}

TEST_F(SolidMesh, SinglePrecisionNodesAreReadAsWell) {
    const Handle(Poly_Triangulation) single = new Poly_Triangulation();
    single->SetDoublePrecision(false);
    single->ResizeNodes(3, /*theToCopyOld=*/false);
    single->ResizeTriangles(1, /*theToCopyOld=*/false);
    single->AddNormals();
    for (int i = 1; i <= 3; ++i) {
        single->SetNode(i, gp_Pnt(i, i % 2, 0));
        single->SetNormal(i, gp_Dir(0, 0, 1));
    }
    single->SetTriangle(1, Poly_Triangle(1, 2, 3));
    ASSERT_FALSE(single->IsDoublePrecision());
    const TopoDS_Face face = BareFace();
    BRep_Builder().UpdateFace(face, single);
    EXPECT_THAT(meshOf(face)->vertices, ElementsAre(Pos{1, 1, 0}, Pos{2, 0, 0}, Pos{3, 1, 0}));
}

TEST_F(SolidMesh, MissingNormalsAreComputedOnceAndStay) {
    const TopoDS_Shape box = MeshedBox();
    const TopoDS_Face face = TopoDS::Face(FacesOf(box).FindKey(1));
    TriangulationOf(face)->RemoveNormals();
    ASSERT_FALSE(TriangulationOf(face)->HasNormals());
    EXPECT_NE(meshOf(box), nullptr);
    EXPECT_TRUE(TriangulationOf(face)->HasNormals());
}

TEST_F(SolidMesh, AZeroNormalIsRefused) {
    const TopoDS_Face face = FanFace(3);
    TriangulationOf(face)->SetNormal(2, gp_Vec3f(0, 0, 0));
    EXPECT_EQ(MessageOf<Standard_ConstructionError>([&] { (void)meshOf(face); }),
              "gp_Dir() - input vector has zero norm");
}

TEST_F(SolidMesh, AnEntryOfTheMapThatIsNoFaceIsRefused) {
    FaceMap faces;
    faces.Add(FanFace(3));
    faces.Add(PlainBox());
    const TopoDS_Shape shape = PlainBox();
    EXPECT_EQ(MessageOf<Standard_TypeMismatch>(
                  [&] { (void)MeshManager::getShapeMesh(shape, faces, bare(shape), nullptr); }),
              "TopoDS::Face");
}

TEST_F(SolidMesh, ANullSolidIsRefused) {
    EXPECT_THROW(Manager().loadShape(nullptr), std::invalid_argument);
    EXPECT_THROW((void)MeshManager::getShapeMesh(PlainBox(), FacesOf(PlainBox()), nullptr, nullptr),
                 std::invalid_argument);
    EXPECT_THROW(Manager().SetFaceColor(nullptr, 1, red), std::invalid_argument);
    EXPECT_THROW(Manager().ColorReset(nullptr), std::invalid_argument);
}

// --- colours of the record

TEST_F(SolidMesh, WithoutColourInformationThereAreNoColours) {
    EXPECT_TRUE(meshOf(MeshedBox())->colors.empty());
}

TEST_F(SolidMesh, AFaceColourIsForItsVerticesAndTheBodyColourForAllOthers) {
    const ColorInfo colors{"#FFFFFF", {{3, "#FF0000"}}};
    const auto mesh =
        meshOf(CompoundOf({FanFace(4), FanFace(5, 1), FanFace(6, 2), FanFace(3, 3)}), &colors);
    ASSERT_EQ(mesh->colors.size(), 18u);
    for (std::size_t i = 0; i < 18; ++i)
        EXPECT_EQ(mesh->colors[i], i >= 9 && i < 15 ? red : white) << i;
}

TEST_F(SolidMesh, ColoursAreDividedInDouble) {
    const ColorInfo colors{"#0A59E1", {}};
    const auto mesh = meshOf(FanFace(3), &colors);
    EXPECT_EQ(mesh->colors[0].r, static_cast<float>(10 / 255.0));
    EXPECT_EQ(mesh->colors[0].g, static_cast<float>(89 / 255.0));
    EXPECT_EQ(mesh->colors[0].b, static_cast<float>(225 / 255.0));
}

TEST_F(SolidMesh, ColoursThatDoNotParseAreRefused) {
    const auto load = [&](const ColorInfo& colors) { (void)meshOf(FanFace(3), &colors); };
    EXPECT_THAT([&] { load({"#GG0000", {}}); },
                ThrowsMessage<std::invalid_argument>(StrEq("stoi")));
    EXPECT_THROW(load({"", {}}), std::out_of_range);
    EXPECT_THROW(load({"#FFFFFF", {{1, "#FF00"}}}), std::logic_error);
    EXPECT_NO_THROW(load({"#FFFFFF", {{2, "no face has this number"}}}));
}

// --- upload and counts

TEST_F(SolidMesh, HiddenFacesStandInTheNameInTheOrderOfHiding) {
    SolidVisual* first = show(MeshedBox());
    SolidVisual* second = show(MeshedBox());
    first->setFaceVisible(3, false);
    first->setFaceVisible(5, false);
    second->setFaceVisible(5, false);
    second->setFaceVisible(3, false);
    EXPECT_EQ(first->getCurrentMeshName(), first->getMeshName() + "_3_5");
    EXPECT_EQ(second->getCurrentMeshName(), second->getMeshName() + "_5_3");
    EXPECT_TRUE(OgreKnows(first->getMeshName() + "_3_5"));
    EXPECT_TRUE(OgreKnows(second->getMeshName() + "_5_3"));
}

TEST_F(SolidMesh, ASecondLoadCountsAndBuildsNothing) {
    SolidVisual* solid = bare(CompoundOf({FanFace(3)}));
    const std::string name = solid->getCurrentMeshName();
    Manager().loadShape(solid, {"#FF0000", {}});
    EXPECT_EQ(MeshCount(name), 1u);
    Manager().loadShape(solid, {"#00FF00", {}});
    EXPECT_EQ(MeshCount(name), 2u);
    EXPECT_THAT(ColorsInBuffer(name), Each(red));
    Manager().removeOgreMesh(name);
    EXPECT_TRUE(OgreKnows(name));
    Manager().removeOgreMesh(name);
    EXPECT_FALSE(OgreKnows(name));
    EXPECT_EQ(MeshCount(name), 0u);
}

TEST_F(SolidMesh, WithoutTrianglesTheCountStaysAndTheNextLoadKeepsIt) {
    const TopoDS_Face face = BareFace();
    SolidVisual* solid = bare(face);
    const std::string name = solid->getCurrentMeshName();
    EXPECT_THROW(Manager().loadShape(solid), NoTriangleMesh);
    EXPECT_EQ(MeshCount(name), 1u);
    EXPECT_FALSE(OgreKnows(name));
    BRep_Builder().UpdateFace(face, TriangulationOf(FanFace(3)));
    Manager().loadShape(solid);
    EXPECT_EQ(MeshCount(name), 1u);
    EXPECT_TRUE(OgreKnows(name));
    Manager().removeOgreMesh(name);
}

TEST_F(SolidMesh, AMeshThatNoShapeBroughtIsNotCounted) {
    SolidVisual solid("mfg_arrow", FanFace(3), scene().root);
    Manager().loadShape(&solid);
    EXPECT_EQ(MeshCount("mfg_arrow"), 0u);
    EXPECT_NO_THROW(Manager().SetColor("mfg_arrow", red));  // it has no colours
    EXPECT_TRUE(ColorsInBuffer("mfg_arrow").empty());
}

TEST_F(SolidMesh, DroppingTakesAllVariantsThatNobodyUses) {
    const std::string uri = freshUri();
    SolidVisual* solid = bare(FanFace(3));
    const auto load = [&](const std::string& name) {
        SolidVisual named(name, FanFace(3), solid);
        Manager().loadShape(&named);
    };
    for (const char* suffix : {"", "_3", "_3_15", "_4", "_old", "2"}) load(uri + suffix);
    Manager().dropShapeMeshes(uri, {uri + "_4"});
    EXPECT_FALSE(OgreKnows(uri));
    EXPECT_FALSE(OgreKnows(uri + "_3"));
    EXPECT_FALSE(OgreKnows(uri + "_3_15"));
    EXPECT_EQ(MeshCount(uri), 0u);
    for (const char* kept : {"_4", "_old", "2"}) {
        EXPECT_TRUE(OgreKnows(uri + kept)) << kept;
        Manager().removeOgreMesh(uri + kept);
    }
}

// --- points of a shape

TEST_F(SolidMesh, PointsOfAShapeAreTheNodesOfItsFacesInOrder) {
    const TopoDS_Shape shape = CompoundOf({FanFace(3), BareFace(), FanFace(4, 1)});
    const auto points = selection::GetShapeMeshPoints(shape);
    ASSERT_EQ(points.size(), 7u);
    EXPECT_EQ(points[0], (Pos{10, 0, 0}));
    EXPECT_EQ(points[3], (Pos{10, 0, 1}));
    EXPECT_EQ(selection::GetShapeMeshPoints(MeshedBox()).size(), 24u);
    EXPECT_TRUE(selection::GetShapeMeshPoints(TopoDS_Shape()).empty());
    gp_Trsf shift;
    shift.SetTranslation(gp_Vec(100, 0, 0));
    EXPECT_EQ(selection::GetShapeMeshPoints(FanFace(3).Moved(TopLoc_Location(shift)))[0],
              (Pos{110, 0, 0}));
}

// --- colours in the buffer

class SolidColours : public SolidMesh {
protected:
    /// Faces 1, 2, 3 with 4, 5, 6 nodes, all in `stored`.
    SolidVisual* showThree(const std::string& stored = "#FFFFFF") {
        layout::Body* body = makeBody(CompoundOf({FanFace(4), FanFace(5, 1), FanFace(6, 2)}));
        BodyColorTool::SetBodyColor(body->element, stored);
        return show(body);
    }
    static std::vector<Color> colorsOf(const SolidVisual* solid) {
        return ColorsInBuffer(solid->getCurrentMeshName());
    }
    /// Exactly the vertices from `first` to `last` have `color`.
    static void expectOnly(const SolidVisual* solid, std::size_t first, std::size_t last,
                           const Color& color) {
        const auto colors = colorsOf(solid);
        for (std::size_t i = 0; i < colors.size(); ++i)
            EXPECT_EQ(colors[i] == color, i >= first && i <= last) << i;
    }
};

TEST_F(SolidColours, SetColorWritesEveryVertexAndNothingElse) {
    SolidVisual* solid = showThree();
    const auto positions = [&] {
        const auto& data = *Ogre::MeshManager::getSingleton()
                                .getByName(solid->getMeshName())
                                ->getSubMesh(0)
                                ->vertexData;
        const auto buffer = data.vertexBufferBinding->getBuffer(0);
        const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_READ_ONLY);
        std::vector<Pos> all;
        for (std::size_t i = 0; i < data.vertexCount; ++i) {
            const auto* p = reinterpret_cast<const float*>(static_cast<const char*>(lock.pData) +
                                                           i * buffer->getVertexSize());
            all.emplace_back(p[0], p[1], p[2]);
        }
        return all;
    };
    const auto before = positions();
    Manager().SetColor(solid->getMeshName(), {0.25f, 0.5f, 1.5f});
    EXPECT_EQ(colorsOf(solid).size(), 15u);
    EXPECT_THAT(colorsOf(solid), Each(Color{0.25f, 0.5f, 1.5f}));
    EXPECT_EQ(positions(), before);
}

TEST_F(SolidColours, WhatHasNoMeshTakesNoColour) {
    EXPECT_NO_THROW(Manager().SetColor("nobody knows this mesh", red));
    SolidVisual* solid = bare(FanFace(3));
    EXPECT_NO_THROW(Manager().SetFaceColor(solid, 1, red));
    EXPECT_NO_THROW(Manager().ColorReset(solid));
}

TEST_F(SolidColours, AFaceIsAddressedByItsNumber) {
    SolidVisual* solid = showThree();
    Manager().SetFaceColor(solid, 2, red);
    expectOnly(solid, 4, 8, red);
    Manager().SetFaceColor(solid, 1, blue);
    expectOnly(solid, 0, 3, blue);
    Manager().SetFaceColor(solid, 3, green);
    expectOnly(solid, 9, 14, green);
}

TEST_F(SolidColours, AHiddenFaceBeforeTheTargetIsSkipped) {
    SolidVisual* solid = showThree();
    solid->setFaceVisible(2, false);
    Manager().SetFaceColor(solid, 3, red);
    ASSERT_EQ(colorsOf(solid).size(), 10u);
    expectOnly(solid, 4, 9, red);
}

TEST_F(SolidColours, AHiddenFaceTakesNoColour) {
    SolidVisual* solid = showThree();
    solid->setFaceVisible(2, false);
    EXPECT_NO_THROW(Manager().SetFaceColor(solid, 2, red));
    EXPECT_THAT(colorsOf(solid), Each(white));
}

TEST_F(SolidColours, FaceZeroWritesNothing) {
    SolidVisual* solid = showThree();
    Manager().SetFaceColor(solid, 0, red);
    EXPECT_THAT(colorsOf(solid), Each(white));
}

TEST_F(SolidColours, ANumberPastTheFacesIsRefused) {
    SolidVisual* solid = showThree();
    EXPECT_EQ(MessageOf<Standard_OutOfRange>([&] { Manager().SetFaceColor(solid, 4, red); }),
              "NCollection_IndexedMap::FindKey");
    EXPECT_THAT(colorsOf(solid), Each(white));
}

TEST_F(SolidColours, AFaceWithoutTriangulationShiftsNothing) {
    SolidVisual* solid = show(CompoundOf({FanFace(4), BareFace(), FanFace(5, 1)}));
    Manager().SetFaceColor(solid, 3, red);
    expectOnly(solid, 4, 8, red);
    Manager().SetFaceColor(solid, 2, blue);
    expectOnly(solid, 99, 99, blue);
}

TEST_F(SolidColours, ATriangulationThatGrewSinceTheUploadWritesInsideTheBufferOnly) {
    const TopoDS_Face last = FanFace(4, 1);
    SolidVisual* solid = show(CompoundOf({FanFace(4), last}));
    BRep_Builder().UpdateFace(last, TriangulationOf(FanFace(4000)));
    Manager().SetFaceColor(solid, 2, red);
    expectOnly(solid, 4, 7, red);
    EXPECT_NO_THROW(Manager().ColorReset(solid));
}

TEST_F(SolidColours, TheColourOfAFaceIsReadFromItsFirstVertex) {
    SolidVisual* solid = showThree();
    Manager().SetFaceColor(solid, 3, green);
    const TopoDS_Shape shape = solid->getShape();
    EXPECT_EQ(Manager().GetFaceColor(solid->getMeshName(), shape, 3), green);
    EXPECT_EQ(Manager().GetFaceColor(solid->getMeshName(), shape, 2), white);
}

TEST_F(SolidColours, ReadingKnowsNoHiddenFaces) {
    SolidVisual* solid = showThree();
    solid->setFaceVisible(1, false);
    Manager().SetFaceColor(solid, 2, red);    // vertices 0 to 4 of the mesh that is shown
    Manager().SetFaceColor(solid, 3, green);  // vertices 5 to 10
    // Counted with face 1, face 2 begins at vertex 4 and face 3 at 9.
    const TopoDS_Shape shape = solid->getShape();
    EXPECT_EQ(Manager().GetFaceColor(solid->getCurrentMeshName(), shape, 2), red);
    EXPECT_EQ(Manager().GetFaceColor(solid->getCurrentMeshName(), shape, 3), green);
    EXPECT_EQ(Manager().GetFaceColor(solid->getCurrentMeshName(), shape, 1), red);
}

TEST_F(SolidColours, AFaceWithoutAVertexHasNoColourToRead) {
    SolidVisual* solid = show(CompoundOf({FanFace(4), BareFace()}));
    const TopoDS_Shape shape = solid->getShape();
    const std::string name = solid->getMeshName();
    EXPECT_THROW((void)Manager().GetFaceColor(name, shape, 0), std::out_of_range);
    EXPECT_THROW((void)Manager().GetFaceColor(name, shape, 2), std::out_of_range);
    EXPECT_THROW((void)Manager().GetFaceColor("no such mesh", shape, 1), std::out_of_range);
    EXPECT_EQ(MessageOf<Standard_OutOfRange>([&] { (void)Manager().GetFaceColor(name, shape, 3); }),
              "NCollection_IndexedMap::FindKey");
}

TEST_F(SolidColours, ResettingBringsTheStoredColoursOfAllVisibleFacesBack) {
    layout::Body* body = makeBody(CompoundOf({FanFace(4), FanFace(5, 1), FanFace(6, 2)}));
    BodyColorTool::SetBodyColor(body->element, "#FFFFFF");
    BodyColorTool::SetFaceColor(body->element, 3, "#0000FF");
    SolidVisual* solid = show(body);
    solid->setFaceVisible(1, false);
    const auto before = colorsOf(solid);
    expectOnly(solid, 5, 10, blue);
    solid->highLightFace(2);
    solid->highLightFace(3);
    EXPECT_NE(colorsOf(solid), before);
    Manager().ColorReset(solid);
    EXPECT_EQ(colorsOf(solid), before);
}

TEST_F(SolidColours, SolidsOfOneMeshShareItsColours) {
    const std::string uri = freshUri();
    const TopoDS_Shape shape = CompoundOf({FanFace(4), FanFace(5, 1)});
    SolidVisual* one = show(shape, uri);
    SolidVisual* other = show(shape, uri);
    Manager().SetFaceColor(one, 2, green);
    expectOnly(other, 4, 8, green);
}

}  // namespace vrn::test
