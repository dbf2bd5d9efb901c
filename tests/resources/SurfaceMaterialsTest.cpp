#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <OgreCamera.h>
#include <OgreEntity.h>
#include <OgreLight.h>
#include <OgreManualObject.h>
#include <OgreRenderTarget.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "tests/resources/Stage.h"
#include "tests/support/EngineFixture.h"

namespace vrn::test {

namespace {

const Colour red(1, 0, 0);
const Colour blue(0.2f, 0.4f, 0.8f);

Ogre::Vector4 Opaque(const Colour& colour) { return {colour.x, colour.y, colour.z, 1.0f}; }

float Brightness(const Colour& colour) { return (colour.x + colour.y + colour.z) / 3.0f; }

Colour Centre(const headless::Picture& picture) {
    return ColourAt(picture, picture.getWidth() / 2, picture.getHeight() / 2);
}

/// A square of 60 units whose vertices have `colour`.
Ogre::Entity* AddColouredSquare(Stage& stage, const std::string& material,
                                const Ogre::Vector4& colour, StageLayout layout,
                                const Ogre::Vector4& objectColour) {
    std::vector<StageVertex> corners(4);
    corners[0].position = {-30, -30, 0};
    corners[1].position = {30, -30, 0};
    corners[2].position = {30, 30, 0};
    corners[3].position = {-30, 30, 0};
    for (StageVertex& v : corners) v.colour = colour;
    return stage.addMesh(material, corners, {0, 1, 2, 0, 2, 3}, layout, objectColour);
}

void AddBandRectangle(Stage& stage, const std::string& material, const Ogre::Vector4& colour) {
    stage.addManual(material, Ogre::RenderOperation::OT_TRIANGLE_STRIP,
                    {{-30, -30, 0}, {-30, 30, 0}, {30, -30, 0}, {30, 30, 0}}, colour);
}

}  // namespace

class SurfaceMaterials : public EngineTest {
protected:
    Stage stage;
};

TEST_F(SurfaceMaterials, ARedBodyThatFacesTheLightReadsAsRed) {
    stage.addSquare("Body", 60, Opaque(red));
    const Colour seen = Centre(stage.render());
    EXPECT_GT(seen.x, 0.85f);
    EXPECT_LT(seen.y, 0.05f);
    EXPECT_LT(seen.z, 0.05f);
}

TEST_F(SurfaceMaterials, TwoObjectsOfOneMaterialShowTheirOwnColours) {
    stage.addSquare("Body", 40, Opaque(red), {-40, 0, 0});
    stage.addSquare("Body", 40, Opaque(blue), {40, 0, 0});
    const headless::Picture picture = stage.render();
    EXPECT_LT(LitDistance(ColourAt(picture, 40, 60), red), 0.05f);
    EXPECT_LT(LitDistance(ColourAt(picture, 120, 60), blue), 0.05f);
}

TEST_F(SurfaceMaterials, ANegativeAlphaAsksForTheColoursOfTheVertices) {
    AddColouredSquare(stage, "Body", {0.2f, 0.7f, 0.3f, 1}, {.normals = true, .colourFloats = 3},
                      Stage::vertexColours);
    EXPECT_LT(LitDistance(Centre(stage.render()), {0.2f, 0.7f, 0.3f}), 0.05f);
}

TEST_F(SurfaceMaterials, AnObjectsColourCoversThoseOfItsVertices) {
    AddColouredSquare(stage, "Body", {0.2f, 0.7f, 0.3f, 1}, {.normals = true, .colourFloats = 3},
                      Opaque(blue));
    EXPECT_LT(LitDistance(Centre(stage.render()), blue), 0.05f);
}

TEST_F(SurfaceMaterials, BlackVerticesStayBlackBesideAMeshWithoutColours) {
    stage.addSquare("Body", 40, Opaque(blue), {-60, 0, 0});
    AddColouredSquare(stage, "Body", {0, 0, 0, 1}, {.normals = true, .colourFloats = 3},
                      Stage::vertexColours);
    const headless::Picture picture = stage.render();
    EXPECT_LT(Brightness(Centre(picture)), 0.05f);
    EXPECT_LT(LitDistance(ColourAt(picture, 20, 60), blue), 0.05f);
}

TEST_F(SurfaceMaterials, AMeshWithoutNormalsIsLitByItsFacets) {
    const Ogre::Entity* square = AddColouredSquare(
        stage, "Body", {0, 0, 0, 1}, {.normals = false, .colourFloats = 0}, Opaque(blue));
    EXPECT_LT(LitDistance(Centre(stage.render()), blue), 0.05f);
    const Colour ahead = Centre(stage.render());
    square->getParentSceneNode()->setOrientation({Ogre::Degree(60), Ogre::Vector3::UNIT_X});
    EXPECT_GT(Distance(Centre(stage.render()), ahead), 0.05f);
}

TEST_F(SurfaceMaterials, BothSidesOfAFaceAreLit) {
    stage.addSquare("Body", 60, Opaque(blue));
    const Colour front = Centre(stage.render());
    stage.turnAll({Ogre::Degree(180), Ogre::Vector3::UNIT_Y});
    EXPECT_LT(Distance(Centre(stage.render()), front), 0.02f);
}

TEST_F(SurfaceMaterials, ATextureAndAMirroredNodeAreLitAlike) {
    Ogre::Entity* square = stage.addSquare("Body", 60, Opaque(blue));
    const Colour plain = Centre(stage.render());
    square->getParentSceneNode()->setScale(-1, 1, 1);
    EXPECT_LT(Distance(Centre(stage.render()), plain), 0.02f);
}

TEST_F(SurfaceMaterials, SwitchingLightsOffDarkensStepByStepDownToTheAmbientTerm) {
    stage.addSquare("Body", 60, Opaque({1, 1, 1}));
    float last = Brightness(Centre(stage.render()));
    // Light 1 hardly reaches a face that looks up, and light 4 shines from below.
    for (const int light : {1, 2}) {
        stage.lights[light]->setVisible(false);
        const float now = Brightness(Centre(stage.render()));
        EXPECT_LT(now, last - 0.1f);
        last = now;
    }
    for (Ogre::Light* light : stage.lights) light->setVisible(false);
    EXPECT_NEAR(Brightness(Centre(stage.render())), 1.25f * 0.3f, 0.02f);
    stage.sceneManager->setAmbientLight(Ogre::ColourValue::Black);
    EXPECT_FLOAT_EQ(Brightness(Centre(stage.render())), 0.0f);
}

TEST_F(SurfaceMaterials, ALightsDirectionPointsToWhereItStands) {
    stage.addSquare("Body", 60, Opaque({1, 1, 1}));
    for (Ogre::Light* light : stage.lights) light->setVisible(false);
    Ogre::Light* light = stage.lights[0];
    light->setVisible(true);
    const auto seenWith = [&](const Ogre::Vector3& direction) {
        light->getParentSceneNode()->setDirection(direction, Ogre::Node::TS_PARENT,
                                                  Ogre::Vector3::NEGATIVE_UNIT_Z);
        return Brightness(Centre(stage.render()));
    };
    EXPECT_GT(seenWith({0, 0, 1}), seenWith({0, 0, -1}) + 0.2f);
}

TEST_F(SurfaceMaterials, ALightsColourTintsWhatItReaches) {
    stage.addSquare("Body", 60, Opaque({1, 1, 1}));
    stage.lights[1]->setDiffuseColour(0.4f, 0.0f, 0.0f);
    const Colour seen = Centre(stage.render());
    EXPECT_GT(seen.x, seen.y + 0.15f);
}

TEST_F(SurfaceMaterials, AllLightsAtOnceDoNotBleachAColour) {
    stage.addSquare("Body", 60, Opaque(blue));
    for (Ogre::Light* light : stage.lights) light->setDiffuseColour(1, 1, 1);
    const Colour seen = Centre(stage.render());
    EXPECT_LT(LitDistance(seen, blue), 0.06f) << seen;
}

TEST_F(SurfaceMaterials, AMakersColourPaintsColouredAndLightPartsAndLeavesGreyAndBlackOnes) {
    stage.addSquare("KUKA", 40, {0.6f, 0.6f, 0.6f, 1}, {-50, 0, 0});
    stage.addSquare("KUKA", 40, {0.05f, 0.05f, 0.05f, 1});
    stage.addSquare("KUKA", 40, Opaque({0.93f, 0.11f, 0.14f}), {50, 0, 0});
    stage.addSquare("KUKA", 40, Opaque({0.75f, 0.77f, 0.80f}), {50, 45, 0});
    const headless::Picture picture = stage.render();
    EXPECT_LT(LitDistance(ColourAt(picture, 30, 60), {0.6f, 0.6f, 0.6f}), 0.05f);
    EXPECT_LT(LitDistance(ColourAt(picture, 80, 60), {0.05f, 0.05f, 0.05f}), 0.05f);
    EXPECT_LT(LitDistance(ColourAt(picture, 130, 60), {0.96f, 0.42f, 0.10f}), 0.05f);
    EXPECT_LT(LitDistance(ColourAt(picture, 130, 15), {0.96f, 0.42f, 0.10f}), 0.05f);
}

TEST_F(SurfaceMaterials, ACopyShowsWhatIsBehindItAndOneOfItsWallsOnly) {
    stage.addSquare("TransBody", 60, Opaque(blue));
    const Colour oneWall = Centre(stage.render());
    stage.addSquare("TransBody", 60, Opaque(blue), {0, 0, -10});
    // The walls of one mesh: nearer ones hide the others, so a second wall changes nothing.
    Stage block;
    std::vector<StageVertex> corners(8);
    for (int wall = 0; wall < 2; ++wall) {
        const float z = wall ? 0.0f : -10.0f;
        corners[wall * 4 + 0].position = {-30, -30, z};
        corners[wall * 4 + 1].position = {30, -30, z};
        corners[wall * 4 + 2].position = {30, 30, z};
        corners[wall * 4 + 3].position = {-30, 30, z};
    }
    block.addMesh("TransBody", corners, {0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7}, {}, Opaque(blue));
    EXPECT_LT(Distance(Centre(block.render()), oneWall), 0.01f);

    Stage hiding;
    hiding.addSquare("Body", 20, Opaque(red), {0, 0, -20});
    hiding.addSquare("TransBody", 60, Opaque(blue));
    EXPECT_GT(Centre(hiding.render()).x, oneWall.x + 0.1f);
}

TEST_F(SurfaceMaterials, WhatIsLaidOverAFaceHidesIt) {
    stage.addSquare("Body", 60, Opaque(red));
    stage.addSquare("PreviewFace", 40, Opaque(red));
    // Its triangles are others, so that its depth differs from the face's in the last digits.
    for (const float tilt : {0.0f, 40.0f, 65.0f}) {
        stage.turnAll({Ogre::Degree(tilt), Ogre::Vector3(1, 0.3f, 0).normalisedCopy()});
        const headless::Picture picture = stage.render();
        int gaps = 0;
        for (int x = 70; x < 90; ++x)
            for (int y = 58; y < 63; ++y)
                if (ColourAt(picture, x, y).x > ColourAt(picture, x, y).y) ++gaps;
        EXPECT_EQ(gaps, 0) << tilt;
    }
}

TEST_F(SurfaceMaterials, TheSelectedRangeShowsOnTheBandThatItLiesOn) {
    AddBandRectangle(stage, "VectorBand", {0.345f, 0.988f, 0.992f, 0.5f});
    const Colour band = Centre(stage.render());
    AddBandRectangle(stage, "SelectedBand", {0.988f, 0.392f, 0.212f, 0.5f});
    EXPECT_GT(Centre(stage.render()).x, band.x + 0.2f);
}

TEST_F(SurfaceMaterials, PaintCoversWhereItsAlphaIsPositiveHoweverSmall) {
    stage.addSquare("Body", 60, Opaque(red));
    const StageLayout layout{.normals = true, .colourFloats = 4};
    Ogre::Entity* paint =
        AddColouredSquare(stage, "Spray", {0, 0.7f, 0.2f, 0.01f}, layout, Stage::vertexColours);
    EXPECT_LT(LitDistance(Centre(stage.render()), {0, 0.7f, 0.2f}), 0.06f);
    paint->setVisible(false);
    AddColouredSquare(stage, "Spray", {0, 0, 1, 0}, layout, Stage::vertexColours);
    EXPECT_LT(LitDistance(Centre(stage.render()), red), 0.05f);
}

TEST_F(SurfaceMaterials, BareVerticesLendPaintNothingOfTheirHiddenColour) {
    stage.addSquare("Body", 100, Opaque({1, 1, 1}));
    std::vector<StageVertex> corners(4);
    corners[0] = {{-30, -30, 0}, {0, 0, 1}, {1, 0, 0, 255}};
    corners[1] = {{30, -30, 0}, {0, 0, 1}, {0, 0, 1, 0}};
    corners[2] = {{30, 30, 0}, {0, 0, 1}, {0, 0, 1, 0}};
    corners[3] = {{-30, 30, 0}, {0, 0, 1}, {1, 0, 0, 255}};
    stage.addMesh("Spray", corners, {0, 1, 2, 0, 2, 3}, {.normals = true, .colourFloats = 4});
    const headless::Picture picture = stage.render();
    for (int x = 50; x < 110; x += 5) {
        const Colour seen = ColourAt(picture, x, 60);
        EXPECT_NEAR(seen.y, seen.z, 0.03f) << x;  // between red and white, never towards blue
    }
}

TEST_F(SurfaceMaterials, HandlesAreSeeThroughByTheAlphaOfTheirColour) {
    stage.addSquare("Axis", 60, {1, 0, 0, 0.1f});
    const Colour seen = Centre(stage.render());
    EXPECT_NEAR(seen.x, 0.5f, 0.03f);
    EXPECT_NEAR(seen.y, 0.405f, 0.03f);
}

TEST_F(SurfaceMaterials, PicturesOfSeeThroughThingsHaveNoHoles) {
    stage.addSquare("Axis", 60, {1, 0, 0, 0.1f});
    std::vector<Ogre::uint8> bytes(160 * 120 * 4);
    stage.render();
    stage.target->copyContentsToMemory(Ogre::Box(0, 0, 160, 120),
                                       {160, 120, 1, Ogre::PF_BYTE_RGBA, bytes.data()});
    EXPECT_EQ(bytes[(60 * 160 + 80) * 4 + 3], 255);
}

class CornerFrame : public EngineTest {
protected:
    /// A square of 4 units at the frame's node, moved `offset` units from it.
    Ogre::Entity* addPart(const Ogre::Vector3& offset, const Colour& colour, float scale = 1.0f) {
        Ogre::Entity* part = stage.addSquare("GlobalFrame", 4, Opaque(colour), offset);
        part->getSubEntity(0)->setCustomParameter(1, {40, 30, 0, 0});
        part->getParentSceneNode()->setPosition(0, 0, -800);
        part->getParentSceneNode()->setScale(Ogre::Vector3(scale));
        part->getParentSceneNode()->setInheritScale(true);
        // Where the frame really stands has nothing to do with where it is drawn.
        part->setRenderQueueGroup(90);
        return part;
    }
    Stage stage;
};

TEST_F(CornerFrame, StandsAtItsPixelFromTheLowerLeftCorner) {
    addPart({0, 0, 0}, red);
    const headless::Picture picture = stage.render();
    EXPECT_LT(LitDistance(ColourAt(picture, 40, 120 - 30), red), 0.1f);
    EXPECT_EQ(CountDrawn(picture), 20 * 20);  // 4 units, 5 pixels each
}

TEST_F(CornerFrame, KeepsItsSizeAndPlaceWhateverTheCameraSees) {
    addPart({0, 0, 0}, red);
    stage.camera->setFOVy(Ogre::Degree(70));
    const headless::Picture picture = stage.render();
    EXPECT_LT(LitDistance(ColourAt(picture, 40, 120 - 30), red), 0.1f);
    EXPECT_EQ(CountDrawn(picture), 20 * 20);
}

TEST_F(CornerFrame, GrowsWithItsNode) {
    addPart({0, 0, 0}, red, 1.5f);
    EXPECT_EQ(CountDrawn(stage.render()), 30 * 30);
}

TEST_F(CornerFrame, PointsUpAndToTheRightOnTheScreen) {
    addPart({0, 8, 0}, red);
    addPart({8, 0, 0}, blue);
    const headless::Picture picture = stage.render();
    EXPECT_LT(LitDistance(ColourAt(picture, 40, 120 - 30 - 40), red), 0.1f);
    EXPECT_LT(LitDistance(ColourAt(picture, 40 + 40, 120 - 30), blue), 0.1f);
}

TEST_F(CornerFrame, HidesTheSceneAndItsOwnFartherParts) {
    stage.addSquare("Body", 200, Opaque({0, 1, 0}), {0, 0, 300});
    addPart({0, 0, 2}, red);
    addPart({0, 0, -2}, blue);
    EXPECT_LT(LitDistance(ColourAt(stage.render(), 40, 120 - 30), red), 0.1f);
}

}  // namespace vrn::test
