#include "apps/vrnview/readers/CadModel.h"

#include <Bnd_Box.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepTools.hxx>
#include <gp_Trsf.hxx>
#include <IGESCAFControl_Writer.hxx>
#include <IGESControl_Controller.hxx>
#include <Interface_Static.hxx>
#include <Quantity_Color.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

#include "apps/vrnview/readers/OcctGuard.h"
#include "suite/geom/ShapeTools.h"
#include "tests/readers/ReaderTest.h"

namespace vrn::host {
namespace {

using test::ErrorOf;

/// What stands in a tree, every placement counted.
struct Totals {
    std::size_t solids = 0, faces = 0, parts = 0;
    std::set<std::string> uris;
    Bnd_Box box;
};

void Count(const CadNode& node, const Pose& outer, Totals& totals) {
    const Pose pose = Compose(outer, node.pose);
    for (const CadNode& child : node.children) Count(child, pose, totals);
    if (!node.part) return;
    ++totals.parts;
    for (const CadBody& body : node.part->bodies) {
        totals.uris.insert(body.uri);
        for (TopExp_Explorer it(body.shape, TopAbs_SOLID); it.More(); it.Next()) ++totals.solids;
        TopTools_IndexedMapOfShape faces;
        TopExp::MapShapes(body.shape, TopAbs_FACE, faces);
        totals.faces += static_cast<std::size_t>(faces.Extent());
        // Vertices alone have no extent of the part's own.
        if (!faces.IsEmpty())
            BRepBndLib::Add(body.shape.Moved(TopLoc_Location(geometry::PoseToTrsf(pose))),
                            totals.box, /*useTriangulation=*/false);
    }
}

Totals TotalsOf(const CadModel& model) {
    Totals totals;
    for (const CadNode& root : model.roots) Count(root, {}, totals);
    return totals;
}

/// What an independent reader says of the sample.
struct SampleModel {
    const char* file;
    std::size_t solids, faces, parts;
    double x, y, z;  ///< extent in millimetres
};
void PrintTo(const SampleModel& sample, std::ostream* out) { *out << sample.file; }

class SampleModels : public testing::TestWithParam<SampleModel> {};

TEST_P(SampleModels, HaveTheirCountsAndExtent) {
    const SampleModel& sample = GetParam();
    VRN_NEEDS_SAMPLE(sample.file);
    const CadModel model = ReadCadFile(test::Sample(sample.file));
    EXPECT_THAT(model.problems, testing::IsEmpty());
    const Totals totals = TotalsOf(model);
    EXPECT_EQ(totals.solids, sample.solids);
    EXPECT_EQ(totals.faces, sample.faces);
    EXPECT_EQ(totals.parts, sample.parts);
    double x0 = 0, y0 = 0, z0 = 0, x1 = 0, y1 = 0, z1 = 0;
    totals.box.Get(x0, y0, z0, x1, y1, z1);
    const double tolerance = 0.02 + 0.002 * std::max({sample.x, sample.y, sample.z});
    EXPECT_NEAR(x1 - x0, sample.x, tolerance);
    EXPECT_NEAR(y1 - y0, sample.y, tolerance);
    EXPECT_NEAR(z1 - z0, sample.z, tolerance);
}

// The faces of the assembly are those of its five parts wherever they are placed.
INSTANTIATE_TEST_SUITE_P(
    All, SampleModels,
    testing::Values(
        SampleModel{"step/nist_ctc_02_asme1_ap242-e2.stp", 1, 637, 4, 680.02, 860.01, 400.17},
        SampleModel{"step/nist_ctc_04_asme1_rd.stp", 1, 518, 2, 500, 780, 130.64},
        SampleModel{"step/nist_ctc_05_asme1_rd.stp", 1, 209, 3, 527.16, 558.91, 482.71},
        SampleModel{"step/as1-oc-214.stp", 18, 160, 18, 200, 150, 84},
        SampleModel{"step/M6-1x12-countersunk-screw.step", 1, 28, 1, 10.35, 10.36, 12},
        SampleModel{"step/odri_lower_leg_structure_base.STEP", 1, 329, 1, 20.16, 29.23, 182.73},
        SampleModel{"brep/CrankArm.brep", 2, 53, 1, 154.19, 40.84, 72.02},
        SampleModel{"brep/Axis_of_bearing.brep", 18, 63, 1, 41, 130, 41}));

TEST(ReadStep, AssemblyKeepsNamesPlacesAndSharedParts) {
    VRN_NEEDS_SAMPLE("step/as1-oc-214.stp");
    const CadModel model = ReadCadFile(test::Sample("step/as1-oc-214.stp"));
    ASSERT_EQ(model.roots.size(), 1u);
    const CadNode& root = model.roots.front();
    EXPECT_EQ(root.name, "as1");
    ASSERT_EQ(root.children.size(), 4u);
    const CadNode& rod = root.children[0];
    EXPECT_EQ(rod.name, "rod-assembly");
    EXPECT_EQ(rod.pose.position, (rob::PosTemplate<double>{-10, 75, 60}));
    ASSERT_EQ(rod.children.size(), 3u);
    EXPECT_EQ(rod.children[0].name, "nut");
    EXPECT_EQ(rod.children[0].part, rod.children[1].part) << "one nut, placed twice";
    EXPECT_EQ(rod.children[0].part->bodies[0].colour, "#FF0000");
    EXPECT_EQ(TotalsOf(model).uris.size(), 5u) << "five parts, each with one name for its mesh";
}

/// A document to write files from.
class CadFile : public test::FileTest {
protected:
    CadFile() {
        XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document);
        shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
        colours = XCAFDoc_DocumentTool::ColorTool(document->Main());
    }
    ~CadFile() override { XCAFApp_Application::GetApplication()->Close(document); }

    TDF_Label add(const TopoDS_Shape& shape, const char* name) {
        const TDF_Label label = shapes->AddShape(shape, /*makeAssembly=*/false);
        TDataStd_Name::Set(label, name);
        return label;
    }
    TDF_Label place(const TDF_Label& assembly, const TDF_Label& part, double x) {
        gp_Trsf move;
        move.SetTranslation(gp_Vec(x, 0, 0));
        return shapes->AddComponent(assembly, part, TopLoc_Location(move));
    }
    std::filesystem::path step(const std::string& name) {
        const QuietOcct quiet;
        shapes->UpdateAssemblies();
        STEPCAFControl_Writer writer;
        writer.SetNameMode(true);
        writer.SetColorMode(true);
        writer.Transfer(document);
        const std::filesystem::path path = folder.getPath() / name;
        writer.Write(path.c_str());
        return path;
    }
    std::filesystem::path iges(const std::string& name, const char* unit) {
        const QuietOcct quiet;
        IGESControl_Controller::Init();
        Interface_Static::SetCVal("write.iges.unit", unit);
        IGESCAFControl_Writer writer;
        writer.SetColorMode(true);
        writer.Transfer(document);
        writer.ComputeModel();
        const std::filesystem::path path = folder.getPath() / name;
        writer.Write(path.c_str());
        return path;
    }
    std::filesystem::path brep(const std::string& name, const TopoDS_Shape& shape) const {
        std::ostringstream text;
        BRepTools::Write(shape, text);
        return write(name, text.str());
    }

    opencascade::handle<TDocStd_Document> document;
    opencascade::handle<XCAFDoc_ShapeTool> shapes;
    opencascade::handle<XCAFDoc_ColorTool> colours;
};

Quantity_Color Colour(const char* hex) {
    Quantity_Color colour;
    EXPECT_TRUE(Quantity_Color::ColorFromHex(hex, colour));
    return colour;
}

double LengthX(const TopoDS_Shape& shape) {
    Bnd_Box box;
    BRepBndLib::AddOptimal(shape, box, /*useTriangulation=*/false, /*useShapeTolerance=*/false);
    return box.CornerMax().X() - box.CornerMin().X();
}

TEST_F(CadFile, StepKeepsTheColoursOfBodiesAndFaces) {
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(10, 20, 30).Shape();
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(box, TopAbs_FACE, faces);
    const TDF_Label label = add(box, "crate");
    colours->SetColor(label, Colour("#336699"), XCAFDoc_ColorSurf);
    colours->SetColor(shapes->AddSubShape(label, faces(3)), Colour("#FF8800"), XCAFDoc_ColorSurf);

    const CadModel model = ReadCadFile(step("a.stp"));
    ASSERT_EQ(model.roots.size(), 1u);
    EXPECT_EQ(model.roots[0].name, "crate");
    ASSERT_EQ(model.roots[0].part->bodies.size(), 1u);
    const CadBody& body = model.roots[0].part->bodies[0];
    EXPECT_EQ(body.colour, "#336699");
    ASSERT_EQ(body.faceColours.size(), 1u);
    EXPECT_EQ(body.faceColours.begin()->second, "#FF8800");
    // It is the face of that place and not just any.
    TopTools_IndexedMapOfShape read;
    TopExp::MapShapes(body.shape, TopAbs_FACE, read);
    Bnd_Box wanted, got;
    BRepBndLib::Add(faces(3), wanted);
    BRepBndLib::Add(read(static_cast<int>(body.faceColours.begin()->first)), got);
    EXPECT_LT(wanted.CornerMin().Distance(got.CornerMin()), 1e-4);
    EXPECT_LT(wanted.CornerMax().Distance(got.CornerMax()), 1e-4);
}

TEST_F(CadFile, ColourThatAllFacesShareIsTheBodys) {
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(10, 20, 30).Shape();
    const TDF_Label label = add(box, "crate");
    for (TopExp_Explorer it(box, TopAbs_FACE); it.More(); it.Next())
        colours->SetColor(shapes->AddSubShape(label, it.Current()), Colour("#00FF00"),
                          XCAFDoc_ColorSurf);
    const CadModel model = ReadCadFile(step("a.stp"));
    const CadBody& body = model.roots.at(0).part->bodies.at(0);
    EXPECT_EQ(body.colour, "#00FF00");
    EXPECT_TRUE(body.faceColours.empty());
}

TEST_F(CadFile, StepKeepsAssembliesAndTheColourOfAPlacement) {
    const TDF_Label part = add(BRepPrimAPI_MakeBox(1, 1, 1).Shape(), "brick");
    const TDF_Label wall = shapes->NewShape();
    TDataStd_Name::Set(wall, "wall");
    place(wall, part, 0);
    colours->SetColor(place(wall, part, 5), Colour("#FF0000"), XCAFDoc_ColorSurf);

    const CadModel model = ReadCadFile(step("a.step"));
    ASSERT_EQ(model.roots.size(), 1u);
    EXPECT_EQ(model.roots[0].name, "wall");
    EXPECT_FALSE(model.roots[0].part);
    ASSERT_EQ(model.roots[0].children.size(), 2u);
    const CadNode &first = model.roots[0].children[0], &second = model.roots[0].children[1];
    EXPECT_EQ(first.part, second.part);
    EXPECT_DOUBLE_EQ(second.pose.position.x, 5);
    EXPECT_FALSE(first.colour);
    EXPECT_EQ(second.colour, "#FF0000");
}

TEST_F(CadFile, IgesIsReadInMillimetresAsOnePart) {
    add(BRepPrimAPI_MakeBox(25.4, 20, 30).Shape(), "box");
    for (const char* unit : {"MM", "IN", "M"}) {
        const CadModel model = ReadCadFile(iges(std::string(unit) + ".IGS", unit));
        ASSERT_EQ(model.roots.size(), 1u);
        EXPECT_EQ(model.roots[0].name, unit) << "the file's name";
        const Totals totals = TotalsOf(model);
        EXPECT_EQ(totals.faces, 6u);
        double x0 = 0, y0 = 0, z0 = 0, x1 = 0, y1 = 0, z1 = 0;
        totals.box.Get(x0, y0, z0, x1, y1, z1);
        EXPECT_NEAR(x1 - x0, 25.4, 1e-3) << unit;
        EXPECT_NEAR(z1 - z0, 30, 1e-3) << unit;
    }
}

TEST_F(CadFile, IgesKeepsColours) {
    const TDF_Label label = add(BRepPrimAPI_MakeBox(10, 20, 30).Shape(), "box");
    colours->SetColor(label, Colour("#FF0000"), XCAFDoc_ColorSurf);
    const CadModel model = ReadCadFile(iges("a.iges", "MM"));
    for (const CadBody& body : model.roots.at(0).part->bodies) EXPECT_EQ(body.colour, "#FF0000");
}

TEST_F(CadFile, BrepNumbersMayStandForAnotherUnit) {
    const auto file = brep("a.brep", BRepPrimAPI_MakeBox(1, 2, 3).Shape());
    add(BRepPrimAPI_MakeBox(1, 1, 1).Shape(), "box");
    const CadBody plain = ReadCadFile(file).roots.at(0).part->bodies.at(0);
    const CadBody metres = ReadCadFile(file, 1000).roots.at(0).part->bodies.at(0);
    EXPECT_NEAR(LengthX(plain.shape), 1, 1e-5);
    EXPECT_NEAR(LengthX(metres.shape), 1000, 1e-2);
    EXPECT_NE(plain.uri, metres.uri) << "they must not share a mesh";
    EXPECT_EQ(ErrorOf([&] { (void)ReadCadFile(step("a.stp"), 1000); }),
              "STEP and IGES files tell their own unit");
}

TEST_F(CadFile, ShapesAreTriangulated) {
    const CadModel model = ReadCadFile(brep("a.BREP", BRepPrimAPI_MakeCylinder(5, 10).Shape()));
    for (TopExp_Explorer it(model.roots.at(0).part->bodies.at(0).shape, TopAbs_FACE); it.More();
         it.Next()) {
        TopLoc_Location location;
        EXPECT_FALSE(BRep_Tool::Triangulation(TopoDS::Face(it.Current()), location).IsNull());
    }
}

TEST_F(CadFile, BrokenFilesSayWhatIsWrong) {
    add(BRepPrimAPI_MakeBox(1, 1, 1).Shape(), "box");
    const auto text = [](const std::filesystem::path& file) {
        std::ostringstream bytes;
        bytes << std::ifstream(file, std::ios::binary).rdbuf();
        return bytes.str();
    };
    const std::string stepText = text(step("whole.stp")), igesText = text(iges("whole.igs", "MM"));
    const std::string brepText = text(brep("whole.brep", BRepPrimAPI_MakeBox(1, 1, 1).Shape()));
    const std::vector<std::tuple<std::string, std::string, std::string>> wrong{
        {"empty.step", "", "the file is empty"},
        {"type.step", brepText, "not a STEP file"},
        {"noise.stp", std::string("\0\1\2\3\xff", 5), "not a STEP file"},
        {"cut.stp", stepText.substr(0, stepText.size() / 2), "the file ends too early"},
        {"type.igs", stepText, "not an IGES file"},
        {"noise.iges", std::string(500, '\xff'), "not an IGES file"},
        {"cut.igs", igesText.substr(0, igesText.size() / 2), "the file ends too early"},
        {"type.brep", stepText, "not a B-rep file"},
        {"cut.brep", brepText.substr(0, brepText.size() / 2), "the file ends too early"},
    };
    for (const auto& [name, bytes, message] : wrong)
        EXPECT_EQ(ErrorOf([&] { (void)ReadCadFile(write(name, bytes)); }), message) << name;
    EXPECT_EQ(ErrorOf([&] { (void)ReadCadFile(folder.getPath() / "no.step"); }),
              "No such file or directory");
    EXPECT_EQ(ErrorOf([&] { (void)ReadCadFile(write("a.stl", "solid")); }),
              "not a file of bodies (supported: .step, .stp, .iges, .igs, .brep)");
}

TEST_F(CadFile, StepWithoutShapesOrWithHolesIsRefusedOrReadInPart) {
    add(BRepPrimAPI_MakeBox(1, 1, 1).Shape(), "box");
    std::ostringstream whole;
    whole << std::ifstream(step("whole.stp")).rdbuf();
    const std::string text = whole.str();
    const std::string nothing =
        text.substr(0, text.find("DATA;") + 5) + "\nENDSEC;\nEND-ISO-10303-21;\n";
    EXPECT_NE(ErrorOf([&] { (void)ReadCadFile(write("nothing.stp", nothing)); }), "nothing");
    // Lines lost and numbers spoilt in a file that still ends as it should: whatever comes of it,
    // it is a model or one clear message.
    for (std::size_t at = text.find("DATA;") + 6; at + 400 < text.size(); at += text.size() / 12) {
        std::string holed = text;
        holed.erase(at, 200);
        std::string spoilt = text;
        spoilt.replace(at, 5, "1E999");
        for (const std::string& bytes : {holed, spoilt}) {
            const std::string error =
                ErrorOf([&] { (void)ReadCadFile(write("broken.stp", bytes)); });
            EXPECT_EQ(error.find('\n'), std::string::npos) << error;
        }
    }
}

TEST_F(CadFile, NothingIsWrittenToStandardOutput) {
    add(BRepPrimAPI_MakeBox(1, 1, 1).Shape(), "box");
    const auto good = step("a.stp"), cut = write("cut.stp", "ISO-10303-21;\nDATA;\n#1=X(");
    const auto bad = write("bad.stp", "ISO-10303-21;\nDATA;\n#1=X((;\nEND-ISO-10303-21;\n");
    testing::internal::CaptureStdout();
    (void)ReadCadFile(good);
    (void)ErrorOf([&] { (void)ReadCadFile(cut); });
    (void)ErrorOf([&] { (void)ReadCadFile(bad); });
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TopoDS_Compound Together(const std::vector<TopoDS_Shape>& shapes) {
    TopoDS_Compound compound;
    BRep_Builder().MakeCompound(compound);
    for (const TopoDS_Shape& shape : shapes) BRep_Builder().Add(compound, shape);
    return compound;
}

std::vector<TopAbs_ShapeEnum> KindsOf(const std::vector<CadBody>& bodies) {
    std::vector<TopAbs_ShapeEnum> kinds;
    for (const CadBody& body : bodies) kinds.push_back(body.shape.ShapeType());
    return kinds;
}

TEST(BodiesOf, EachSolidIsABodyAndWhatIsLooseIsJoined) {
    const TopoDS_Shape a = BRepPrimAPI_MakeBox(1, 1, 1).Shape();
    const TopoDS_Shape b = BRepPrimAPI_MakeBox(2, 2, 2).Shape();
    std::vector<TopoDS_Shape> pieces{a, Together({b})};
    for (TopExp_Explorer it(a, TopAbs_FACE); it.More(); it.Next()) pieces.push_back(it.Current());
    for (TopExp_Explorer it(b, TopAbs_EDGE); it.More(); it.Next()) pieces.push_back(it.Current());
    pieces.push_back(BRepBuilderAPI_MakeVertex(gp_Pnt(1, 2, 3)).Shape());
    const auto bodies = BodiesOf(Together(pieces), "thing", "file#1");
    EXPECT_EQ(KindsOf(bodies), (std::vector{TopAbs_SOLID, TopAbs_SOLID, TopAbs_COMPOUND,
                                            TopAbs_WIRE, TopAbs_VERTEX}));
    EXPECT_EQ(bodies[1].name, "thing 2");
    EXPECT_EQ(bodies[1].uri, "file#1/2");
}

TEST(BodiesOf, OnlyBodyKeepsNameAndUri) {
    const auto bodies = BodiesOf(BRepPrimAPI_MakeBox(1, 1, 1).Shape(), "thing", "file#1");
    ASSERT_EQ(bodies.size(), 1u);
    EXPECT_EQ(bodies[0].name, "thing");
    EXPECT_EQ(bodies[0].uri, "file#1");
}

TEST(BodiesOf, SingleEdgeAndFaceStayWhatTheyAre) {
    const TopoDS_Shape edge = BRepBuilderAPI_MakeEdge(gp_Pnt(0, 0, 0), gp_Pnt(1, 0, 0)).Shape();
    EXPECT_EQ(KindsOf(BodiesOf(Together({edge}), "e", "u")), (std::vector{TopAbs_EDGE}));
}

TEST(BodiesOf, NullAndEmptyShapesHaveNone) {
    EXPECT_TRUE(BodiesOf(TopoDS_Shape(), "n", "u").empty());
    EXPECT_TRUE(BodiesOf(Together({}), "n", "u").empty());
}

}  // namespace
}  // namespace vrn::host
