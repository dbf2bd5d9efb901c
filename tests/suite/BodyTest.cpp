#include "suite/layout/Body.h"

#include "suite/layout/Part.h"
#include "suite/sdf/ObjectStore.h"
#include "tests/suite/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <BRep_Tool.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepTools.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>

#include <any>
#include <stdexcept>

namespace {

using namespace vrn::layout;
using vrn::sdf::ObjectStore;

TopoDS_Shape MakeBox() { return BRepPrimAPI_MakeBox(10, 20, 30).Shape(); }

bool IsTriangulated(const TopoDS_Shape& shape) {
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next()) {
        TopLoc_Location location;
        if (BRep_Tool::Triangulation(TopoDS::Face(it.Current()), location).IsNull()) return false;
    }
    return true;
}

TEST(Body, ElementCarriesWhatTheConstructorsWereGiven) {
    const Body stl("shell", "file:///a.stl", std::string("stl"));
    EXPECT_EQ(stl.element->touch("geometry/uri")->as<std::string>(), "file:///a.stl");
    EXPECT_EQ(stl.element->touch("geometry")->touch("file_type")->as<std::string>(), "stl");
    EXPECT_EQ(stl.getGeometryUri(), "file:///a.stl");
    const Body brep("solid", "memory:box", MakeBox());
    EXPECT_EQ(brep.element->touch("geometry/file_type")->as<std::string>(), "brep");
}

TEST(Body, AbsentTextsAreEmptyAndWrongTypesThrow) {
    Body body("shell", "a.stl", std::string("stl"));
    EXPECT_EQ(body.getMaterialName(), "");
    body.setMaterialName("Steel");
    EXPECT_EQ(body.getMaterialName(), "Steel");
    EXPECT_EQ(body.element->touch("visual/material/name")->as<std::string>(), "Steel");
    body.element->set("geometry/uri", 5);
    body.element->set("visual/material/name", 5);
    EXPECT_THROW((void)body.getGeometryUri(), std::bad_any_cast);
    EXPECT_THROW((void)body.getMaterialName(), std::bad_any_cast);
}

TEST(Body, FaceMapCountsTheFacesFromOne) {
    Body body("solid", "memory:box", MakeBox());
    EXPECT_EQ(body.getFaceMap().Extent(), 6);
    EXPECT_EQ(body.getFaceMap().FindKey(1).ShapeType(), TopAbs_FACE);
}

TEST(Body, SettingTheSameShapeKeepsTheFaceMapAndAnotherReplacesIt) {
    Body body("solid", "memory:box", MakeBox());
    const FaceMap& faces = body.getFaceMap();
    const TopoDS_Shape first = faces.FindKey(1);
    body.setShape(body.getShape());
    EXPECT_TRUE(faces.FindKey(1).IsEqual(first));
    EXPECT_EQ(faces.Extent(), 6);
    body.setShape(first);
    EXPECT_EQ(body.getFaceMap().Extent(), 1);
    body.setShape({});
    EXPECT_TRUE(body.getFaceMap().IsEmpty());
    EXPECT_TRUE(body.getShape().IsNull());
}

TEST(Body, ShapeIsReadFromItsFileAndTriangulated) {
    const TemporaryFolder folder;
    const auto file = folder.path / "box.brep";
    ASSERT_TRUE(BRepTools::Write(MakeBox(), file.c_str()));
    Body body("solid", "file://" + file.string(), std::string("brep"));
    EXPECT_TRUE(body.getShape().IsNull());
    EXPECT_TRUE(body.getFaceMap().IsEmpty());
    body.ensureShapeLoaded();
    EXPECT_EQ(body.getFaceMap().Extent(), 6);
    EXPECT_TRUE(IsTriangulated(body.getShape()));
    const TopoDS_Shape loaded = body.getShape();
    body.ensureShapeLoaded();  // not once more
    EXPECT_TRUE(body.getShape().IsEqual(loaded));
}

TEST(Body, ShapeAtHandIsNotLookedForInAFile) {
    Body body("solid", "file:///nowhere/box.brep", MakeBox());
    body.ensureShapeLoaded();
    EXPECT_FALSE(body.getShape().IsNull());
}

TEST(Body, WithoutUriThereIsNoShapeAndNoError) {
    Body body("nothing", "", std::string("brep"));
    body.ensureShapeLoaded();
    EXPECT_TRUE(body.getShape().IsNull());
}

TEST(Body, UnreadableShapesAreReportedByUri) {
    Body missing("solid", "file:///nowhere/box.brep", std::string("brep"));
    EXPECT_THAT([&] { missing.ensureShapeLoaded(); },
                testing::ThrowsMessage<std::runtime_error>(
                    "cannot load the shape file:///nowhere/box.brep: the file cannot be opened"));
}

TEST(Body, FileOfAnotherFormatIsReportedWithoutAWordOnStandardOutput) {
    const TemporaryFolder folder;
    const std::string file = (folder.path / "bad.brep").string();
    WriteWhole(file, "solid no brep\n");
    Body bad("solid", file, std::string("brep"));
    testing::internal::CaptureStdout();
    EXPECT_THAT([&] { bad.ensureShapeLoaded(); },
                testing::ThrowsMessage<std::runtime_error>("cannot load the shape " + file +
                                                           ": not a B-rep file"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_TRUE(bad.getShape().IsNull());
}

TEST(Body, FileThatEndsEarlyIsReported) {
    const TemporaryFolder folder;
    const auto file = folder.path / "box.brep";
    ASSERT_TRUE(BRepTools::Write(MakeBox(), file.c_str()));
    const std::string whole = ReadWhole(file);
    testing::internal::CaptureStdout();
    // Each cut but those in the blanks at the end; a cut file once sent the reader round for ever.
    for (std::size_t size = 0; size + 4 < whole.size(); size += 7) {
        WriteWhole(file, whole.substr(0, size));
        Body body("solid", file.string(), std::string("brep"));
        EXPECT_THROW(body.ensureShapeLoaded(), std::runtime_error) << size;
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(Body, FilesOfACadSystemAreRead) {
    const std::filesystem::path file = VRN_SHARED_DATA "/brep/CrankArm.brep";
    if (!std::filesystem::exists(file)) GTEST_SKIP() << file << " is not here";
    Body body("crank", file.string(), std::string("brep"));
    body.ensureShapeLoaded();
    EXPECT_GT(body.getFaceMap().Extent(), 0);
    EXPECT_TRUE(IsTriangulated(body.getShape()));
}

TEST(Part, DetectableStandsInThePartsElement) {
    ObjectStore store;
    auto* part = store.make<Part>("bracket");
    auto* body = store.make<Body>("shell", "a.stl", std::string("stl"));
    part->addBody(*body);
    EXPECT_EQ(body->element->getParent()->get("detectable"), nullptr);
    part->setDetectable(false);
    EXPECT_FALSE(body->element->getParent()->touch("detectable")->as<bool>());
}

TEST(Part, BodiesAreListedInOrderWithoutOtherChildren) {
    ObjectStore store;
    auto* part = store.make<Part>("bracket");
    auto* one = store.make<Body>("1", "1.stl", std::string("stl"));
    auto* two = store.make<Body>("2", "2.stl", std::string("stl"));
    part->addBody(*one);
    part->addChild(*store.make<Part>("inner"));
    part->addBody(*two);
    EXPECT_EQ(part->bodies(), (std::vector{one, two}));
}

TEST(MakeStlPart, GivesAPartWithOneStlBodyAndAPose) {
    ObjectStore store;
    const Part* part = MakeStlPart(store, "table", "file:///t.stl", {{1, 2, 3}, {}});
    EXPECT_EQ(part->name, "table");
    EXPECT_EQ(part->getPose().position.z, 3);
    EXPECT_EQ(vrn::sdf::SdfManager::inst()->find(part->id), part);
    ASSERT_EQ(part->bodies().size(), 1u);
    EXPECT_EQ(part->bodies()[0]->getGeometryUri(), "file:///t.stl");
    EXPECT_EQ(part->bodies()[0]->parentId, part->id);
}

}  // namespace
