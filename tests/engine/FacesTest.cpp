#include <stdexcept>

#include <gmock/gmock.h>

#include <OgreEntity.h>
#include <OgreMeshManager.h>
#include <BRep_Tool.hxx>
#include <BRepBndLib.hxx>
#include <Standard_OutOfRange.hxx>
#include <TopoDS.hxx>

#include "mesh/MeshManager.h"
#include "selection/VisualSelection.h"
#include "suite/broker/SignalBroker.h"
#include "suite/geom/BodyColorTool.h"
#include "tests/support/SolidFixture.h"
#include "visual/geometry/Hex2RGB.h"
#include "visual/Visual.h"

namespace vrn::test {

namespace {

using geometry::BodyColorTool;
using testing::Each;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::Hex2RGB;
using visual::SolidVisual;
using visual::Visual;
using Color = rob::ColorTemplate<float>;

constexpr std::uint32_t unknownId = 123456789;
constexpr Color stored{1, 1, 1};
constexpr Color lit{1.2f, 1.2f, 1.2f};
const Color base = Hex2RGB("#10C279");
const Color side = Hex2RGB("#0D8DDF");

const auto isUnknownId = ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at"));

template <class Action>
std::string OutOfRangeOf(Action action) {
    try {
        action();
    } catch (const Standard_OutOfRange& error) {
        return error.GetMessageString();
    }
    return "nothing was thrown";
}

}  // namespace

/// A white solid of three faces of 3 nodes each.
class SceneFaces : public SolidTest {
protected:
    void SetUp() override {
        SolidTest::SetUp();
        solid = showThree();
    }
    SolidVisual* showThree() {
        layout::Body* body = makeBody(CompoundOf({FanFace(3), FanFace(3, 1), FanFace(3, 2)}));
        BodyColorTool::SetBodyColor(body->element, "#FFFFFF");
        return show(body);
    }
    static Color colorOf(const SolidVisual* of, unsigned face) {
        return ColorsInBuffer(of->getCurrentMeshName()).at(3 * (face - 1));
    }
    [[nodiscard]] Color colorOf(unsigned face) const { return colorOf(solid, face); }

    SolidVisual* solid = nullptr;
};

// --- highlight

TEST_F(SceneFaces, AFaceIsHighlightedWhenTheTaskHasRun) {
    scene().highlightFace(solid, 2);
    EXPECT_EQ(colorOf(2), stored);
    pump();
    EXPECT_EQ(colorOf(2), lit);
    EXPECT_EQ(colorOf(1), stored);
    scene().clearHighlightedFace();
    pump();
    EXPECT_EQ(colorOf(2), stored);
}

TEST_F(SceneFaces, TheSameFaceTwicePostsOneTask) {
    scene().highlightFace(solid, 2);
    pump();
    solid->setFaceColor(2, Color{0, 0, 0});
    scene().highlightFace(solid, 2);
    pump();
    EXPECT_EQ(colorOf(2), (Color{0, 0, 0}));
}

TEST_F(SceneFaces, AnotherFaceReplacesTheHighlight) {
    scene().highlightFace(solid, 2);
    scene().highlightFace(solid, 3);
    pump();
    EXPECT_EQ(colorOf(2), stored);
    EXPECT_EQ(colorOf(3), lit);
}

TEST_F(SceneFaces, AFaceReplacesAHighlightedBodyAndTheOtherWayRound) {
    scene().setVisualHighlighted(solid);
    pump();
    EXPECT_EQ(MaterialOf(solid), "BodyHighlighted");
    scene().highlightFace(solid, 1);
    pump();
    EXPECT_EQ(MaterialOf(solid), "Body");
    EXPECT_EQ(colorOf(1), lit);
    scene().setVisualHighlighted(solid);
    pump();
    EXPECT_EQ(MaterialOf(solid), "BodyHighlighted");
    EXPECT_EQ(colorOf(1), stored);
}

TEST_F(SceneFaces, HighlightingNoSolidClears) {
    scene().highlightFace(solid, 1);
    scene().highlightFace(nullptr, 0);
    pump();
    EXPECT_EQ(colorOf(1), stored);
    EXPECT_NO_THROW(scene().clearHighlightedFace());
}

TEST_F(SceneFaces, ASelectedFaceIsNotHighlighted) {
    scene().selectBaseFace(solid->id, 1);
    scene().highlightFace(solid, 2);
    scene().highlightFace(solid, 1);
    pump();
    EXPECT_EQ(colorOf(1), base);
    EXPECT_EQ(colorOf(2), stored);  // the highlight before it goes all the same
}

TEST_F(SceneFaces, ANumberPastTheFacesThrowsInsideTheBatchAndNotOnceMoreWhenItIsCleared) {
    scene().highlightFace(solid, 4);
    EXPECT_EQ(OutOfRangeOf([] { pump(); }), "NCollection_IndexedMap::FindKey");
    scene().clearHighlightedVisual();
    EXPECT_NO_THROW(pump());
    scene().selectBaseFace(solid->id, 4);
    EXPECT_EQ(OutOfRangeOf([] { pump(); }), "NCollection_IndexedMap::FindKey");
    scene().clearSelections();
    EXPECT_NO_THROW(pump());
}

// --- selection

TEST_F(SceneFaces, BaseAndSideFacesHaveTheirOwnColours) {
    scene().selectBaseFace(solid->id, 1);
    scene().selectSideFace(solid->id, 3);
    EXPECT_TRUE(scene().faceIsSelected(solid, 1));
    EXPECT_FALSE(scene().faceIsSelected(solid, 2));
    EXPECT_TRUE(scene().faceIsSelected(solid, 3));
    EXPECT_EQ(colorOf(1), stored);
    pump();
    EXPECT_EQ(colorOf(1), base);
    EXPECT_EQ(colorOf(2), stored);
    EXPECT_EQ(colorOf(3), side);
}

TEST_F(SceneFaces, AFaceKeepsTheColourItWasSelectedIn) {
    scene().selectBaseFace(solid->id, 1);
    scene().selectSideFace(solid->id, 1);
    pump();
    EXPECT_EQ(colorOf(1), base);
}

TEST_F(SceneFaces, SelectingAFaceClearsTheHighlight) {
    scene().highlightFace(solid, 2);
    scene().selectBaseFace(solid->id, 2);
    pump();
    EXPECT_EQ(colorOf(2), base);
    scene().clearHighlightedVisual();
    pump();
    EXPECT_EQ(colorOf(2), base);
}

TEST_F(SceneFaces, AnythingButASolidIsLeftAlone) {
    Visual* part = showBoxPart("bracket");
    scene().selectBaseFace(part->id, 1);
    scene().selectSideFace(part->id, 1);
    scene().clearSelectedFace(part->id, 1);
    // A plain visual of the type, as the base class copies them, is none either.
    auto* plain = new Visual(scene().root);
    plain->type = VisualType::Solid;
    scene().visuals[plain->id] = plain;
    scene().selectBaseFace(plain->id, 1);
    EXPECT_NO_THROW(pump());
    EXPECT_FALSE(scene().faceIsSelected(nullptr, 1));
}

TEST_F(SceneFaces, AnUnknownIdThrowsOnTheCaller) {
    EXPECT_THAT([] { scene().selectBaseFace(unknownId, 1); }, isUnknownId);
    EXPECT_THAT([] { scene().selectSideFace(unknownId, 1); }, isUnknownId);
    EXPECT_THAT([] { scene().clearSelectedFace(unknownId, 1); }, isUnknownId);
}

TEST_F(SceneFaces, ClearingOneFaceLeavesTheOthers) {
    scene().selectBaseFace(solid->id, 1);
    scene().selectSideFace(solid->id, 2);
    scene().clearSelectedFace(solid->id, 1);
    scene().clearSelectedFace(solid->id, 3);  // never selected
    pump();
    EXPECT_EQ(colorOf(1), stored);
    EXPECT_EQ(colorOf(2), side);
    EXPECT_FALSE(scene().faceIsSelected(solid, 1));
    EXPECT_TRUE(scene().faceIsSelected(solid, 2));
}

TEST_F(SceneFaces, ClearingAFaceThatIsNotSelectedKeepsWhatIsShown) {
    solid->setFaceColor(1, Color{0, 0, 0});
    scene().clearSelectedFace(solid->id, 1);
    pump();
    EXPECT_EQ(colorOf(1), (Color{0, 0, 0}));
}

TEST_F(SceneFaces, ClearingAllFacesReachesEverySolid) {
    SolidVisual* other = showThree();
    scene().selectBaseFace(solid->id, 1);
    scene().selectSideFace(other->id, 2);
    pump();
    scene().clearSelectedFaces();
    EXPECT_FALSE(scene().faceIsSelected(solid, 1));
    pump();
    EXPECT_EQ(colorOf(1), stored);
    EXPECT_EQ(colorOf(other, 2), stored);
}

TEST_F(SceneFaces, SelectingAVisualClearsTheSelectedFaces) {
    scene().selectBaseFace(solid->id, 1);
    pump();
    scene().setVisualSelected(solid->id);
    pump();
    EXPECT_EQ(colorOf(1), stored);
    EXPECT_FALSE(scene().faceIsSelected(solid, 1));
    EXPECT_EQ(MaterialOf(solid), "BodySelected");
}

// --- solids that go

TEST_F(SceneFaces, ARemovedSolidIsForgotten) {
    scene().highlightFace(solid, 1);
    scene().selectBaseFace(solid->id, 2);
    scene().highlightFace(solid, 3);
    scene().removeVisual(solid->id);
    pump();
    EXPECT_FALSE(scene().faceIsSelected(solid, 2));
    int posts = 0;
    const auto counting = broker::SignalBroker::onUpdateScene([&posts] { ++posts; });
    scene().clearHighlightedFace();
    scene().clearSelectedFaces();
    EXPECT_EQ(posts, 0);
}

TEST_F(SceneFaces, ASolidRemovedBeforeItsTurnIsNotFollowed) {
    scene().removeVisual(solid->id);
    scene().highlightFace(solid, 1);
    scene().selectBaseFace(solid->id, 2);
    scene().clearSelectedFace(solid->id, 2);
    scene().selectSideFace(solid->id, 3);
    scene().clearSelections();
    EXPECT_NO_THROW(pump());
}

TEST_F(SceneFaces, AHiddenFaceIsHighlightedAsNothing) {
    solid->setFaceVisible(2, false);
    scene().highlightFace(solid, 2);
    EXPECT_NO_THROW(pump());
    EXPECT_THAT(ColorsInBuffer(solid->getCurrentMeshName()), Each(stored));
}

// --- look-up

TEST_F(SceneFaces, AFaceIsFoundByTheIdOfItsBodyAndItsNumber) {
    EXPECT_TRUE(scene().GetBodyFace(solid->id, 2).IsSame(solid->getFace(2)));
    EXPECT_EQ(OutOfRangeOf([&] { (void)scene().GetBodyFace(solid->id, 4); }),
              "NCollection_IndexedMap::FindKey");
    EXPECT_EQ(OutOfRangeOf([&] { (void)scene().GetBodyFace(solid->id, -1); }),
              "NCollection_IndexedMap::FindKey: negative index");
    EXPECT_THAT([] { (void)scene().GetBodyFace(unknownId, 1); }, isUnknownId);
    EXPECT_THROW((void)scene().GetBodyFace(showBoxPart("bracket")->id, 1), std::bad_cast);
}

TEST_F(SceneFaces, AFaceInTheWorldStandsWhereItsSolidStands) {
    auto* carrier = new Visual(scene().root);
    carrier->setPose(
        {{100, 0, 0}, rob::RotationTemplate<float>(1.5707964f, rob::Vec3Template<float>{0, 0, 1})});
    carrier->attachVisual(solid);
    solid->setPosition(10, 0, 0);
    const TopoDS_Face face = scene().GetBodyFaceInWorld(solid->id, 3);
    TopLoc_Location location;
    const auto triangulation = BRep_Tool::Triangulation(face, location);
    const gp_Pnt first = triangulation->Node(1).Transformed(location.Transformation());
    EXPECT_NEAR(first.X(), 100, 1e-4);  // (10 + 10, 0, 2), turned and moved
    EXPECT_NEAR(first.Y(), 20, 1e-4);
    EXPECT_NEAR(first.Z(), 2, 1e-4);
    EXPECT_THAT([] { (void)scene().GetBodyFaceInWorld(unknownId, 1); }, isUnknownId);
}

// --- solids that change

class ChangedSolids : public SolidTest {
protected:
    static SolidVisual* solidOf(const layout::Body* body) {
        return dynamic_cast<SolidVisual*>(scene().visuals.at(body->id));
    }
};

TEST_F(ChangedSolids, AnotherShapeIsShownWhereTheSolidHangs) {
    auto* carrier = new Visual(scene().root);
    layout::Body* body = makeBody(MeshedBox());
    carrier->attachVisual(show(body));
    scene().updateSolidVisual(body, FanFace(5));
    EXPECT_EQ(solidOf(body)->getTrianglesNum(), 12u);
    pump();
    EXPECT_EQ(solidOf(body)->getTrianglesNum(), 3u);
    EXPECT_EQ(solidOf(body)->getFacesNum(), 1u);
    EXPECT_EQ(solidOf(body)->getParent(), carrier);
    EXPECT_TRUE(selection::VisualSelection::Get()->hasVisual(solidOf(body)));
    EXPECT_EQ(MeshCount(body->getGeometryUri()), 1u);
}

TEST_F(ChangedSolids, WhatHidingAndShowingLeftBehindIsNotShownAgain) {
    layout::Body* body = makeBody(MeshedBox());
    SolidVisual* solid = show(body);
    solid->setFaceVisible(2, false);
    solid->setVisible(true, false);
    const std::string uri = body->getGeometryUri();
    ASSERT_EQ(MeshCount(uri), 2u);
    ASSERT_EQ(MeshCount(uri + "_2"), 1u);
    scene().updateSolidVisual(body, CompoundOf({FanFace(5), FanFace(4)}));
    pump();
    EXPECT_EQ(solidOf(body)->getTrianglesNum(), 5u);
    EXPECT_EQ(MeshCount(uri), 1u);
    EXPECT_EQ(MeshCount(uri + "_2"), 0u);
    solidOf(body)->setFaceVisible(2, false);
    EXPECT_EQ(solidOf(body)->getTrianglesNum(), 3u);
}

TEST_F(ChangedSolids, NullIsRefusedInTheTask) {
    EXPECT_NO_THROW(scene().updateSolidVisual(nullptr, MeshedBox()));
    EXPECT_THROW(pump(), std::invalid_argument);
}

TEST_F(ChangedSolids, AMeshThatAnotherSolidShowsIsKept) {
    const std::string uri = freshUri();
    const TopoDS_Shape shape = MeshedBox();
    layout::Body* body = makeBody(shape, uri);
    show(body);
    SolidVisual* other = show(shape, uri);
    other->setFaceVisible(3, false);
    scene().updateSolidVisual(body, shape);
    pump();
    EXPECT_EQ(other->getTrianglesNum(), 10u);
    EXPECT_TRUE(Ogre::MeshManager::getSingleton().getByName(uri + "_3"));
    EXPECT_EQ(MeshCount(uri), 2u);
}

TEST_F(ChangedSolids, AnUnknownSolidThrowsInsideTheBatch) {
    layout::Body* body = makeBody(MeshedBox());
    scene().updateSolidVisual(body, FanFace(3));
    EXPECT_THAT([] { pump(); }, isUnknownId);
}

TEST_F(ChangedSolids, ASolidThatLosesItsShapeKeepsItsPlaceInTheRegistry) {
    layout::Body* body = makeBody(MeshedBox());
    show(body);
    scene().updateSolidVisual(body, TopoDS_Shape());
    pump();
    EXPECT_EQ(solidOf(body)->getBodiesNum(), 0u);
    scene().updateSolidVisual(body, MeshedBox());
    pump();
    EXPECT_EQ(solidOf(body)->getTrianglesNum(), 12u);
}

}  // namespace vrn::test
