#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <OgreCamera.h>
#include <OgreInstancedEntity.h>
#include <OgreManualObject.h>
#include <OgreMaterialManager.h>
#include <OgreSceneManager.h>
#include <OgreTechnique.h>

#include "tests/resources/Stage.h"
#include "tests/support/EngineFixture.h"

namespace vrn::test {

namespace {

constexpr auto lineList = Ogre::RenderOperation::OT_LINE_LIST;
constexpr auto lineStrip = Ogre::RenderOperation::OT_LINE_STRIP;
constexpr auto pointList = Ogre::RenderOperation::OT_POINT_LIST;

const Colour white(1, 1, 1);
const Colour wire(0.13f, 0.14f, 0.16f);

/// How many pixels of column `x` are drawn.
int DrawnInColumn(const headless::Picture& picture, int x) {
    int count = 0;
    for (int y = 0; y < picture.getHeight(); ++y)
        if (Distance(ColourAt(picture, x, y), Colour(stageBackground.data())) > 0.02f) ++count;
    return count;
}

}  // namespace

class LineMaterials : public EngineTest {
protected:
    Stage stage;
};

TEST_F(LineMaterials, ALineIsAsManyPixelsWideAsItsMaterialSays) {
    stage.addManual("BodyCurveSelected", lineList, {{-60, 0, 0}, {60, 0, 0}});
    const headless::Picture picture = stage.render();
    const int width = DrawnInColumn(picture, 80);
    EXPECT_GE(width, 3);
    EXPECT_LE(width, 4);
}

TEST_F(LineMaterials, WidthIsTheSameNearAndFar) {
    stage.addManual("RedFrameLineSelected", lineList, {{-60, 0, 400}, {60, 0, 400}});
    const int near = DrawnInColumn(stage.render(), 80);
    Stage far;
    far.addManual("RedFrameLineSelected", lineList, {{-9000, 0, -9000}, {9000, 0, -9000}});
    EXPECT_NEAR(DrawnInColumn(far.render(), 80), near, 1);
}

TEST_F(LineMaterials, AStripHasNoGapAtItsJoints) {
    stage.addManual("PathLineSelected", lineStrip, {{-40, -30, 0}, {0, 30, 0}, {40, -30, 0}});
    const headless::Picture picture = stage.render();
    for (int x = 41; x < 119; ++x) EXPECT_GE(DrawnInColumn(picture, x), 1) << x;
}

TEST_F(LineMaterials, ALineOfNoLengthIsADot) {
    stage.addManual("FrameLine", lineList, {{0, 0, 0}, {0, 0, 0}});
    const int drawn = CountDrawn(stage.render());
    EXPECT_GE(drawn, 1);
    EXPECT_LE(drawn, 9);
}

TEST_F(LineMaterials, ALineThatPassesTheCameraIsDrawnUpToIt) {
    const Ogre::Vector3 start(-40, -40, 0);
    const Ogre::Vector3 behind(160, 140, 2000);
    stage.addManual("WhiteFrameLine", lineList, {start, behind});
    // The same line, ended out of sight before it reaches the camera: what lies behind turns
    // nothing.
    Stage ended;
    ended.addManual("WhiteFrameLine", lineList, {start, start + (behind - start) * 0.24f});
    const int drawn = CountDrawn(ended.render());
    EXPECT_GE(drawn, 100);
    EXPECT_NEAR(CountDrawn(stage.render()), drawn, 3);
}

TEST_F(LineMaterials, ALineBehindTheCameraIsNotDrawn) {
    stage.addManual("WhiteFrameLine", lineList, {{-50, 10, 900}, {50, 20, 2000}});
    EXPECT_EQ(CountDrawn(stage.render()), 0);
}

TEST_F(LineMaterials, AnEdgeOnATiltedFaceIsNotBroken) {
    const Ogre::Vector4 grey(0.8f, 0.8f, 0.8f, 1);
    stage.addSquare("Body", 100, grey);
    stage.addManual("WireFrame", lineList, {{-45, -17, 0}, {45, 23, 0}});
    for (const float tilt : {0.0f, 35.0f, 70.0f, 80.0f}) {
        stage.turnAll(
            Ogre::Quaternion(Ogre::Degree(tilt), Ogre::Vector3(1, 0.4f, 0).normalisedCopy()));
        const headless::Picture picture = stage.render();
        int broken = 0;
        for (int x = 60; x < 100; ++x) {
            int dark = 0;
            for (int y = 0; y < 120; ++y)
                if (Distance(ColourAt(picture, x, y), wire) < 0.02f) ++dark;
            if (dark == 0) ++broken;
        }
        EXPECT_EQ(broken, 0) << tilt;
    }
}

TEST_F(LineMaterials, AFaceHidesALineBehindIt) {
    stage.addSquare("Body", 100, {0.8f, 0.8f, 0.8f, 1});
    stage.addManual("WireFrame", lineList, {{-40, 0, -5}, {40, 0, -5}});
    EXPECT_EQ(CountOf(stage.render(), wire), 0);
}

TEST_F(LineMaterials, LinesStaySolidInTheWireMode) {
    stage.addManual("RedFrameLineSelected", lineList, {{-40, -20, 0}, {40, 20, 0}});
    const int solid = CountDrawn(stage.render());
    stage.camera->setPolygonMode(Ogre::PM_WIREFRAME);
    EXPECT_EQ(CountDrawn(stage.render()), solid);
}

TEST_F(LineMaterials, ATraceBlendsTheColoursOfItsPoints) {
    Ogre::ManualObject* trace = stage.addManual("TcpTrace", lineStrip, {{0, 0, 0}, {1, 0, 0}});
    trace->beginUpdate(0);
    trace->position(-40, 0, 0);
    trace->normal(0, 0, 1);
    trace->colour(1, 0, 0);
    trace->position(40, 0, 0);
    trace->normal(0, 0, 1);
    trace->colour(0, 0, 1);
    trace->end();
    const headless::Picture picture = stage.render();
    EXPECT_LT(Distance(ColourAt(picture, 80, 60), {0.5f, 0, 0.5f}), 0.03f);
    EXPECT_LT(Distance(ColourAt(picture, 60, 60), {0.75f, 0, 0.25f}), 0.03f);
}

TEST_F(LineMaterials, VertexColorDrawsAnyPrimitive) {
    stage.addManual("VertexColor", Ogre::RenderOperation::OT_TRIANGLE_LIST,
                    {{-30, -30, 0}, {30, -30, 0}, {0, 30, 0}}, Stage::vertexColours,
                    Ogre::ColourValue(0.2f, 0.9f, 0.3f));
    stage.addManual("VertexColor", pointList, {{-60, 0, 0}}, Stage::vertexColours,
                    Ogre::ColourValue(0.9f, 0.2f, 0.3f));
    const headless::Picture picture = stage.render();
    EXPECT_GE(CountOf(picture, {0.2f, 0.9f, 0.3f}), 1500);
    EXPECT_GE(CountOf(picture, {0.9f, 0.2f, 0.3f}), 1);
}

TEST_F(LineMaterials, EveryLineHasALookWithoutGeometryPrograms) {
    const auto material = Ogre::MaterialManager::getSingleton().getByName("RedFrameLineSelected");
    material->load();
    ASSERT_EQ(material->getTechniques().size(), 2u);
    const auto plain = material->clone("RedFrameLineSelectedWithoutGeometry");
    plain->removeTechnique(0);
    stage.addManual(plain->getName(), lineList, {{-40, 0, 0}, {40, 0, 0}});
    const headless::Picture picture = stage.render();
    EXPECT_GE(CountOf(picture, {1.0f, 0.40f, 0.36f}), 70);
    EXPECT_GE(DrawnInColumn(picture, 80), 1);
    Ogre::MaterialManager::getSingleton().remove(plain);
}

TEST_F(LineMaterials, APointIsADiscWithADarkRim) {
    stage.addManual("Point", pointList, {{0, 0, 0}}, {1, 1, 1, 1});
    const headless::Picture picture = stage.render();
    EXPECT_EQ(ColourAt(picture, 80, 60), white);
    EXPECT_NEAR(CountOf(picture, white), 38, 8);  // 7 pixels across
    EXPECT_NEAR(CountDrawn(picture), 64, 12);     // 9 with the rim
    EXPECT_EQ(DrawnInColumn(picture, 70), 0);
}

TEST_F(LineMaterials, SelectedPointsOfACloudCoverThoseThatLieThereToo) {
    stage.addManual("PointCloudSelected", pointList, {{0, 0, 0}}, {1, 0.5f, 0, 1});
    stage.addManual("PointCloud", pointList, {{0, 0, 0}, {30, 0, 0}}, {0, 0, 1, 1});
    const headless::Picture picture = stage.render();
    EXPECT_EQ(CountOf(picture, {0, 0, 1}), 9);
    EXPECT_EQ(CountOf(picture, {1, 0.5f, 0}), 25);
}

class InstanceMaterials : public EngineTest {
protected:
    Stage stage;
};

TEST_F(InstanceMaterials, AFrameShowsThreeAxesInTheThreeColours) {
    stage.addInstance("VRN_FrameMesh", "InstanceRobTarget", Ogre::Vector3(40));
    stage.turnAll(Ogre::Quaternion(Ogre::Degree(35), Ogre::Vector3(1, -1, 0).normalisedCopy()));
    const headless::Picture picture = stage.render();
    int reddish = 0;
    int greenish = 0;
    int bluish = 0;
    for (int x = 0; x < 160; ++x) {
        for (int y = 0; y < 120; ++y) {
            const Colour c = ColourAt(picture, x, y);
            if (c.x > c.y + 0.1f && c.x > c.z + 0.1f) ++reddish;
            if (c.y > c.x + 0.1f && c.y > c.z + 0.1f) ++greenish;
            if (c.z > c.x + 0.1f && c.z > c.y + 0.1f) ++bluish;
        }
    }
    EXPECT_GE(reddish, 30);
    EXPECT_GE(greenish, 30);
    EXPECT_GE(bluish, 15);
}

TEST_F(InstanceMaterials, AFrameThatShowsItsZAxisOnlyStillShowsIt) {
    stage.addInstance("VRN_FrameMesh", "InstanceRobTarget", {0.01f, 0.01f, 40});
    stage.turnAll(Ogre::Quaternion(Ogre::Degree(-90), Ogre::Vector3::UNIT_X));
    const headless::Picture picture = stage.render();
    for (int y = 22; y < 58; ++y)
        EXPECT_GT(Distance(ColourAt(picture, 80, y), Colour(stageBackground.data())), 0.05f) << y;
    EXPECT_EQ(DrawnInColumn(picture, 90), 0);
}

TEST_F(InstanceMaterials, SelectedFramesAreBolderThanHighlightedAndThoseThanPlainOnes) {
    int last = 0;
    for (const char* material :
         {"InstanceRobTarget", "InstanceRobTargetHighlight", "InstanceRobTargetSelected"}) {
        Stage one;
        one.addInstance("VRN_FrameMesh", material, Ogre::Vector3(40));
        one.turnAll(Ogre::Quaternion(Ogre::Degree(20), Ogre::Vector3::UNIT_Z));
        const int drawn = CountDrawn(one.render());
        EXPECT_GT(drawn, last) << material;
        last = drawn;
    }
}

TEST_F(InstanceMaterials, TheNamesOfTheManagersShowTheSameLooks) {
    for (const char* state : {"Selected", "Highlight"}) {
        std::vector<headless::Rgba> first;
        for (const std::string family : {"InstanceRobTarget", "RobTarget"}) {
            Stage one;
            one.addInstance("VRN_FrameMesh", family + state, Ogre::Vector3(40));
            const auto pixels = one.render().getPixels();
            if (first.empty()) first = pixels;
            EXPECT_TRUE(pixels == first) << state;
        }
    }
}

TEST_F(InstanceMaterials, AFrameIsAsLongAsItsScale) {
    stage.addInstance("VRN_FrameMesh", "InstanceRobTargetHighlight", Ogre::Vector3(40));
    const headless::Picture picture = stage.render();
    EXPECT_GE(DrawnInColumn(picture, 118), 1);
    EXPECT_EQ(DrawnInColumn(picture, 124), 0);
}

}  // namespace vrn::test
