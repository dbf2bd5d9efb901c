#include <fstream>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <OgreEntity.h>
#include <OgreMaterialManager.h>
#include <OgreSubEntity.h>

#include "tests/resources/Stage.h"
#include "tests/support/EngineFixture.h"

namespace vrn::test {

namespace {

enum class Drawn { Surface, Veil, Paint, CornerFrame, Line, Point, Spokes, Arrow };

struct MaterialRow {
    const char* name;
    Drawn drawn;
    Colour colour;  // of the surface in full light; of a line or a marker exactly
};

// What an object brings: a colour of its own, and another one in its vertices.
const Colour own(0.2f, 0.4f, 0.8f);
const Colour ofVertices(0.7f, 0.2f, 0.6f);

// The two states that every family shows in the same way.
const Colour selected(0.12f, 0.52f, 1.0f);
const Colour highlighted(0.44f, 0.76f, 1.0f);

/// A state's colour over what is left of the surface's own, which is mostly how light it is.
Colour Tinted(const Colour& base, const Colour& tint, float share) {
    const float lightness = base.dotProduct({0.299f, 0.587f, 0.114f});
    return Mix(Mix(base, {lightness, lightness, lightness}, share), tint, share);
}
Colour Selected(const Colour& base) { return Tinted(base, selected, 0.78f); }
Colour Highlighted(const Colour& base) { return Tinted(base, highlighted, 0.7f); }
/// What is seen where a surface lets `1 - opacity` of the background through.
Colour Veiled(const Colour& colour, float opacity) {
    return Mix(Colour(stageBackground.data()), colour, opacity);
}

const Colour abb(0.86f, 0.87f, 0.88f);
const Colour fanuc(0.98f, 0.80f, 0.10f);
const Colour kuka(0.96f, 0.42f, 0.10f);
const Colour yaskawa(0.10f, 0.30f, 0.60f);
const Colour path(0.98f, 0.85f, 0.30f);
const Colour selectedLine(0.1f, 0.47f, 1.0f);
const Colour highlightedLine(0.15f, 0.85f, 1.0f);
const Colour white(1.0f, 1.0f, 1.0f);

// Every material that a visual, an operation of the scene or a host may name.
const std::vector<MaterialRow> materialRows{
    {"Body", Drawn::Surface, own},
    {"BodySelected", Drawn::Surface, Selected(own)},
    {"BodyHighlighted", Drawn::Surface, Highlighted(own)},
    {"Mechanism", Drawn::Surface, own},
    {"MechanismSelected", Drawn::Surface, Selected(own)},
    {"MechanismHighlighted", Drawn::Surface, Highlighted(own)},
    {"ABB", Drawn::Surface, abb},
    {"ABBSelected", Drawn::Surface, Selected(abb)},
    {"ABBHighlighted", Drawn::Surface, Highlighted(abb)},
    {"FANUC", Drawn::Surface, fanuc},
    {"FANUCSelected", Drawn::Surface, Selected(fanuc)},
    {"FANUCHighlighted", Drawn::Surface, Highlighted(fanuc)},
    {"KUKA", Drawn::Surface, kuka},
    {"KUKASelected", Drawn::Surface, Selected(kuka)},
    {"KUKAHighlighted", Drawn::Surface, Highlighted(kuka)},
    {"YASKAWA", Drawn::Surface, yaskawa},
    {"YASKAWASelected", Drawn::Surface, Selected(yaskawa)},
    {"YASKAWAHighlighted", Drawn::Surface, Highlighted(yaskawa)},
    {"EmphasizeCollisionGroupA", Drawn::Surface, Tinted(own, {0.16f, 0.72f, 0.56f}, 0.75f)},
    {"EmphasizeCollisionGroupB", Drawn::Surface, Tinted(own, {0.58f, 0.36f, 0.86f}, 0.75f)},
    {"CollisionNearMiss", Drawn::Surface, Tinted(own, {0.98f, 0.86f, 0.12f}, 0.8f)},
    {"CollisionContact", Drawn::Surface, Tinted(own, {0.92f, 0.08f, 0.12f}, 0.85f)},
    {"MeshBody", Drawn::Surface, {0.62f, 0.74f, 0.70f}},

    {"TransBody", Drawn::Veil, Veiled(Tinted(own, {0.62f, 0.80f, 1.0f}, 0.45f), 0.45f)},
    {"PreviewFace", Drawn::Veil, Veiled({0.30f, 0.95f, 0.45f}, 0.6f)},
    {"WorkEnvelope", Drawn::Veil, Veiled({0.36f, 0.72f, 0.94f}, 0.18f)},
    {"WorkEnvelope3D", Drawn::Veil, Veiled({0.36f, 0.72f, 0.94f}, 0.18f)},
    {"VectorBand", Drawn::Veil, Veiled(own, 0.5f)},
    {"SelectedBand", Drawn::Veil, Veiled(own, 0.5f)},
    {"TransparentHandle", Drawn::Veil, Veiled(own, 0.5f)},
    {"Spray", Drawn::Paint, ofVertices},

    {"Axis", Drawn::Surface, own},
    {"HandleHighlight", Drawn::Surface, {1.0f, 0.85f, 0.25f}},
    {"TiltHandle", Drawn::Surface, {0.949f, 0.047f, 0.0f}},
    {"TwistHandle", Drawn::Surface, {0.086f, 0.663f, 0.318f}},
    {"VectorHandle", Drawn::Surface, {0.88f, 0.90f, 0.92f}},
    {"VectorDirHandle", Drawn::Surface, {0.255f, 0.541f, 0.706f}},
    {"UVIndicator", Drawn::Surface, {1.0f, 0.78f, 0.16f}},
    {"GlobalFrame", Drawn::CornerFrame, own},

    {"WireFrame", Drawn::Line, {0.13f, 0.14f, 0.16f}},
    {"BodyCurve", Drawn::Line, {0.10f, 0.16f, 0.30f}},
    {"BodyCurveSelected", Drawn::Line, selectedLine},
    {"BodyCurveHighlighted", Drawn::Line, highlightedLine},
    {"PathLine", Drawn::Line, path},
    {"PathLineSelected", Drawn::Line, selectedLine},
    {"PathLineHighlighted", Drawn::Line, highlightedLine},
    {"PathBoundary", Drawn::Line, {0.92f, 0.94f, 0.96f}},
    {"RedFrameLine", Drawn::Line, {0.91f, 0.24f, 0.22f}},
    {"RedFrameLineSelected", Drawn::Line, {1.0f, 0.40f, 0.36f}},
    {"GreenFrameLine", Drawn::Line, {0.25f, 0.74f, 0.32f}},
    {"GreenFrameLineSelected", Drawn::Line, {0.46f, 0.96f, 0.46f}},
    {"BlueFrameLine", Drawn::Line, {0.26f, 0.50f, 0.96f}},
    {"BlueFrameLineSelected", Drawn::Line, {0.50f, 0.74f, 1.0f}},
    {"WhiteFrameLine", Drawn::Line, white},
    {"FrameLine", Drawn::Line, {0.98f, 0.96f, 0.88f}},
    {"PreviewCurve", Drawn::Line, {0.30f, 0.95f, 0.45f}},
    {"JointAxis", Drawn::Line, {1.0f, 0.655f, 0.145f}},
    {"BandVector", Drawn::Line, own},
    {"BandVectorSelect", Drawn::Line, own},
    {"BandVectorSelected", Drawn::Line, own},
    {"BandVectorHighlight", Drawn::Line, own},
    {"VertexColor", Drawn::Line, ofVertices},
    {"TcpTrace", Drawn::Line, ofVertices},

    {"Point", Drawn::Point, own},
    {"PointSelected", Drawn::Point, own},
    {"PointHighlighted", Drawn::Point, own},
    {"PointPreview", Drawn::Point, own},
    {"PointCloud", Drawn::Point, own},
    {"PointCloudSelected", Drawn::Point, own},

    {"InstanceRobTarget", Drawn::Spokes, {}},
    {"InstanceFrame", Drawn::Spokes, {}},
    {"InstanceRobTargetSelected", Drawn::Spokes, {}},
    {"InstanceRobTargetHighlight", Drawn::Spokes, white},
    {"RobTargetSelected", Drawn::Spokes, {}},
    {"RobTargetHighlight", Drawn::Spokes, white},
    {"InstanceArrow", Drawn::Arrow, path},
};

Ogre::Vector4 OwnWithAlpha(float alpha) { return {own.x, own.y, own.z, alpha}; }

const Ogre::ColourValue vertexColour(ofVertices.x, ofVertices.y, ofVertices.z);

void AddPaintedSquare(Stage& stage, const char* material) {
    std::vector<StageVertex> corners(4);
    corners[0].position = {-30, -30, 0};
    corners[1].position = {30, -30, 0};
    corners[2].position = {30, 30, 0};
    corners[3].position = {-30, 30, 0};
    for (StageVertex& v : corners) v.colour = {ofVertices.x, ofVertices.y, ofVertices.z, 255.0f};
    stage.addMesh(material, corners, {0, 1, 2, 0, 2, 3}, {.normals = true, .colourFloats = 4});
}

void AddSample(Stage& stage, const MaterialRow& row) {
    switch (row.drawn) {
        case Drawn::Surface:
            stage.addSquare(row.name, 60, OwnWithAlpha(1));
            break;
        case Drawn::Veil:
            stage.addSquare(row.name, 60,
                            OwnWithAlpha(row.name == std::string_view("TransBody") ? 1.0f : 0.5f));
            break;
        case Drawn::Paint:
            AddPaintedSquare(stage, row.name);
            break;
        case Drawn::CornerFrame: {
            Ogre::Entity* square = stage.addSquare(row.name, 10, OwnWithAlpha(1), {0, 0, -800});
            square->getSubEntity(0)->setCustomParameter(1, {80, 60, 0, 0});
            break;
        }
        case Drawn::Line:
            stage.addManual(row.name, Ogre::RenderOperation::OT_LINE_LIST,
                            {{-40, -20, 0}, {40, 25, 0}, {-40, 0, 0}, {40, 0, 0}}, OwnWithAlpha(1),
                            vertexColour);
            break;
        case Drawn::Point:
            stage.addManual(row.name, Ogre::RenderOperation::OT_POINT_LIST, {{0, 0, 0}, {20, 0, 0}},
                            OwnWithAlpha(1), vertexColour);
            break;
        case Drawn::Spokes:
            stage.addInstance("VRN_FrameMesh", row.name, Ogre::Vector3(40));
            stage.turnAll(
                Ogre::Quaternion(Ogre::Degree(30), Ogre::Vector3(1, -1, 0).normalisedCopy()));
            break;
        case Drawn::Arrow:
            stage.addInstance("path_arrow_head", row.name, Ogre::Vector3(3));
            stage.turnAll(Ogre::Quaternion(Ogre::Degree(-60), Ogre::Vector3::UNIT_X));
            break;
    }
}

std::string RowName(const ::testing::TestParamInfo<MaterialRow>& row) { return row.param.name; }

// Its bytes would be printed otherwise.
[[maybe_unused]] void PrintTo(const MaterialRow& row, std::ostream* out) { *out << row.name; }

}  // namespace

class MaterialTable : public EngineTest, public ::testing::WithParamInterface<MaterialRow> {};

TEST_P(MaterialTable, ShowsItsColourAndNothingIsLogged) {
    const MaterialRow& row = GetParam();
    ASSERT_TRUE(Ogre::MaterialManager::getSingleton().getByName(row.name));
    Stage stage;
    AddSample(stage, row);
    const headless::Picture picture = stage.render();
    EXPECT_THAT(Complaints(logLines()), ::testing::IsEmpty());
    switch (row.drawn) {
        case Drawn::Surface:
        case Drawn::CornerFrame:
        case Drawn::Paint:
            EXPECT_LT(LitDistance(ColourAt(picture, 90, 55), row.colour), 0.06f)
                << "seen: " << ColourAt(picture, 90, 55);
            break;
        case Drawn::Veil:
            EXPECT_LT(Distance(ColourAt(picture, 90, 55), row.colour), 0.06f)
                << "seen: " << ColourAt(picture, 90, 55);
            break;
        case Drawn::Line:
        case Drawn::Point:
            EXPECT_GE(CountOf(picture, row.colour), 15);
            break;
        case Drawn::Spokes:
            EXPECT_GE(CountDrawn(picture), 60);
            if (row.colour == white) {
                EXPECT_GE(CountOf(picture, white), 60);
            }
            break;
        case Drawn::Arrow:
            EXPECT_LT(LitDistance(ColourAt(picture, 80, 45), row.colour), 0.12f);
            break;
    }
    EXPECT_LT(Distance(ColourAt(picture, 3, 3), Colour(stageBackground.data())), 0.01f);
}

INSTANTIATE_TEST_SUITE_P(Names, MaterialTable, ::testing::ValuesIn(materialRows), RowName);

class MaterialScripts : public EngineTest {};

TEST_F(MaterialScripts, ThePackageHasTheMaterialsOfTheTableAndItsOwnHelpersOnly) {
    std::set<std::string> inTable;
    for (const MaterialRow& row : materialRows) inTable.insert(row.name);
    std::set<std::string> inPackage;
    for (const auto& [handle, resource] :
         Ogre::MaterialManager::getSingleton().getResourceIterator())
        if (resource->getOrigin().ends_with(".material") && !resource->getName().starts_with("Vrn"))
            inPackage.insert(resource->getName());
    EXPECT_EQ(inPackage, inTable);
}

TEST_F(MaterialScripts, StartingUpLogsNoScriptError) {
    std::ifstream log(folder() / "Ogre.log");
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);) lines.push_back(line);
    ASSERT_THAT(lines, ::testing::Contains(::testing::HasSubstr("Parsing script body.material")));
    EXPECT_THAT(Complaints(lines), ::testing::IsEmpty());
}

}  // namespace vrn::test
