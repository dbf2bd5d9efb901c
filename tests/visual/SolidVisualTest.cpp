#include <any>
#include <stdexcept>

#include <gmock/gmock.h>

#include <OgreEntity.h>
#include <OgreException.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>
#include <BRep_Builder.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <Standard_OutOfRange.hxx>
#include <TopoDS.hxx>

#include "mesh/DynamicLines.h"
#include "mesh/MeshManager.h"
#include "mesh/NoTriangleMesh.h"
#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/geom/BodyColorTool.h"
#include "suite/geom/ShapeTools.h"
#include "tests/support/SolidFixture.h"
#include "visual/geometry/CurveVisual.h"
#include "visual/geometry/Hex2RGB.h"
#include "visual/geometry/PointVisual.h"
#include "visual/geometry/WireFrameVisual.h"
#include "visual/station/PartVisual.h"

namespace vrn::test {

namespace {

using geometry::BodyColorTool;
using selection::VisualSelection;
using testing::Contains;
using testing::Each;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::CurveVisual;
using visual::Hex2RGB;
using visual::MeshManager;
using visual::NoTriangleMesh;
using visual::PartVisual;
using visual::PointVisual;
using visual::SolidVisual;
using visual::Visual;
using visual::WireFrameVisual;
using Color = rob::ColorTemplate<float>;
using Pos = rob::PosTemplate<float>;

bool OgreKnows(const std::string& name) {
    return Ogre::MeshManager::getSingleton().getByName(name, Ogre::RGN_AUTODETECT) != nullptr;
}

std::vector<Color> ColorsOf(const SolidVisual* solid) {
    return ColorsInBuffer(solid->getCurrentMeshName());
}

WireFrameVisual* WiresOf(const Visual* solid) {
    for (Visual* child : solid->getChildren())
        if (auto* wires = dynamic_cast<WireFrameVisual*>(child)) return wires;
    return nullptr;
}

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

class SolidVisuals : public SolidTest {
protected:
    static Visual* root() { return scene().root; }
    static VisualSelection* picking() { return VisualSelection::Get(); }
    static std::size_t nodeCount() { return root()->node->getChildren().size(); }
};

// --- building

TEST_F(SolidVisuals, ABodyIsShownRegisteredAndCanBePicked) {
    layout::Body* body = makeBody(MeshedBox());
    SolidVisual* solid = show(body);
    EXPECT_EQ(solid->type, VisualType::Solid);
    EXPECT_EQ(solid->id, body->id);
    EXPECT_EQ(solid->getName(), "body_" + std::to_string(body->id));
    EXPECT_EQ(scene().visuals.at(body->id), solid);
    EXPECT_EQ(solid->getMeshName(), body->getGeometryUri());
    ASSERT_NE(solid->getEntity(), nullptr);
    EXPECT_EQ(solid->getEntity()->getName(), solid->getName());
    EXPECT_EQ(solid->getEntity()->getMesh()->getName(), solid->getMeshName());
    EXPECT_EQ(solid->getEntity()->getRenderQueueGroup(), 50);
    EXPECT_EQ(solid->getEntity()->getSubEntity(0)->getCustomParameter(0),
              Ogre::Vector4(1, 1, 1, -1));
    EXPECT_EQ(MaterialOf(solid), "Body");
    EXPECT_EQ(picking()->getObject(solid)->kind, selection::ObjectKind::Shape);
    EXPECT_TRUE(picking()->getObject(solid)->detectable);
    EXPECT_NE(WiresOf(solid), nullptr);
}

TEST_F(SolidVisuals, ABodyStandsWhereItsPoseSays) {
    layout::Body* body = makeBody(MeshedBox());
    body->setPose({{10, 20, 30}, {}});
    EXPECT_EQ(show(body)->getPosition(), (Pos{10, 20, 30}));
}

TEST_F(SolidVisuals, TheCountsAreThoseOfTheShape) {
    SolidVisual* solid = show(MeshedBox());
    EXPECT_EQ(solid->getBodiesNum(), 1u);
    EXPECT_EQ(solid->getFacesNum(), 6u);
    EXPECT_EQ(solid->getTrianglesNum(), 12u);
    EXPECT_EQ(solid->getVerticesNum(), 24u);
}

TEST_F(SolidVisuals, ABodyWithoutTrianglesIsRegisteredAndNothingMore) {
    layout::Body* body = makeBody(PlainBox());
    body->element->set("visual/material/name", 5);  // not even looked at
    SolidVisual* solid = show(body);
    EXPECT_EQ(scene().visuals.at(body->id), solid);
    EXPECT_EQ(solid->getEntity(), nullptr);
    EXPECT_FALSE(picking()->hasVisual(solid));
    EXPECT_TRUE(solid->getChildren().empty());
    EXPECT_EQ(solid->material, "");
    EXPECT_EQ(solid->getBodiesNum(), 0u);
    EXPECT_EQ(solid->getTrianglesNum(), 0u);
    EXPECT_EQ(solid->getVerticesNum(), 0u);
    EXPECT_EQ(solid->getFacesNum(), 6u);
}

TEST_F(SolidVisuals, ABodyWithoutTrianglesLeavesNoCountBehind) {
    const SolidVisual* solid = show(TopoDS_Shape());
    EXPECT_EQ(MeshCount(solid->getMeshName()), 0u);
    SolidVisual* face = SolidVisual::Build(scene().root, TopoDS_Shape(), "PreviewFace");
    EXPECT_EQ(MeshCount(face->getMeshName()), 0u);
}

TEST_F(SolidVisuals, ABodyWithoutTrianglesTakesColoursAndVisibilityAsNothing) {
    SolidVisual* solid = show(PlainBox());
    EXPECT_NO_THROW(solid->setBodyColor({1, 0, 0}, 1));
    EXPECT_NO_THROW(solid->resetColor());
    EXPECT_NO_THROW(solid->highLightFace(1));
    EXPECT_NO_THROW(solid->setVisible(false, true));
    EXPECT_NO_THROW(solid->setVisible(true, true));
    EXPECT_THROW(solid->setFaceVisible(1, false), NoTriangleMesh);
}

TEST_F(SolidVisuals, TheMaterialOfTheBodyGivesThreeLooks) {
    layout::Body* body = makeBody(MeshedBox());
    body->setMaterialName("KUKA");
    SolidVisual* solid = show(body);
    EXPECT_EQ(solid->material, "KUKA");
    EXPECT_EQ(solid->selectedMaterial, "KUKASelected");
    EXPECT_EQ(solid->highlightedMaterial, "KUKAHighlighted");
    EXPECT_EQ(MaterialOf(solid), "KUKA");
}

TEST_F(SolidVisuals, AnEmptyMaterialNameIsBody) {
    layout::Body* body = makeBody(MeshedBox());
    body->setMaterialName("");
    const SolidVisual* solid = show(body);
    EXPECT_EQ(solid->material, "Body");
    EXPECT_EQ(solid->selectedMaterial, "BodySelected");
    EXPECT_EQ(solid->highlightedMaterial, "BodyHighlighted");
}

TEST_F(SolidVisuals, TheWireFrameKeepsItsOwnMaterials) {
    const WireFrameVisual* wires = WiresOf(show(MeshedBox()));
    EXPECT_EQ(wires->material, "WireFrame");
    EXPECT_EQ(wires->selectedMaterial, "BodyCurveSelected");
    EXPECT_EQ(wires->highlightedMaterial, "BodyCurveHighlighted");
}

TEST_F(SolidVisuals, WhatContactTestsShallNotSeeIsNotDetectable) {
    layout::Body* body = makeBody(MeshedBox());
    body->element->getParent()->set("detectable", false);
    EXPECT_FALSE(picking()->getObject(show(body))->detectable);
}

TEST_F(SolidVisuals, ValuesOfTheWrongTypeAreRefusedAndLeaveNothing) {
    const std::size_t nodes = nodeCount();
    layout::Body* undetectable = makeBody(MeshedBox());
    undetectable->element->getParent()->set("detectable", 1);
    EXPECT_THROW(show(undetectable), std::bad_any_cast);
    layout::Body* nowhere = makeBody(MeshedBox());
    nowhere->element->set("geometry/uri", 5);
    EXPECT_THROW(show(nowhere), std::bad_any_cast);
    layout::Body* odd = makeBody(MeshedBox());
    odd->element->set("visual/material/name", 5);
    const std::string uri = odd->getGeometryUri();
    EXPECT_THROW(show(odd), std::bad_any_cast);
    EXPECT_FALSE(OgreKnows(uri));
    EXPECT_EQ(MeshCount(uri), 0u);
    EXPECT_EQ(nodeCount(), nodes);
    EXPECT_FALSE(scene().visuals.contains(odd->id));
}

TEST_F(SolidVisuals, OnlyABodyCanBeBuiltFromTheModel) {
    const std::size_t nodes = nodeCount();
    layout::Part* part = model.make<layout::Part>("no body");
    EXPECT_THROW(SolidVisual::Build(root(), part, MeshedBox()), std::bad_cast);
    EXPECT_EQ(nodeCount(), nodes);
}

TEST_F(SolidVisuals, ColoursThatDoNotParsePassOutOfTheBuilder) {
    layout::Body* body = makeBody(MeshedBox());
    body->element->set("visual/color", std::string("#XYZ"));
    const std::size_t nodes = nodeCount();
    EXPECT_THAT([&] { show(body); }, ThrowsMessage<std::invalid_argument>(StrEq("stoi")));
    EXPECT_EQ(nodeCount(), nodes);
}

TEST_F(SolidVisuals, ABodyHandsItsShapeOver) {
    layout::Body* body = makeBody(PlainBox());
    const TopoDS_Shape shape = MeshedBox();
    const SolidVisual* solid = SolidVisual::Build(root(), body, shape);
    EXPECT_TRUE(body->getShape().IsEqual(shape));
    EXPECT_TRUE(solid->getShape().IsEqual(shape));
    EXPECT_EQ(&solid->getFaceMap(), &body->getFaceMap());
}

TEST_F(SolidVisuals, BodiesOfOneUriShareOneMesh) {
    const std::string uri = freshUri();
    const TopoDS_Shape shape = MeshedBox();
    SolidVisual* one = show(shape, uri);
    SolidVisual* other = show(shape, uri);
    EXPECT_EQ(MeshCount(uri), 2u);
    EXPECT_EQ(one->getEntity()->getMesh(), other->getEntity()->getMesh());
    scene().deleteVisual(one);
    EXPECT_EQ(MeshCount(uri), 1u);
    EXPECT_EQ(other->getTrianglesNum(), 12u);
    EXPECT_TRUE(OgreKnows(uri));
    scene().deleteVisual(other);
    EXPECT_FALSE(OgreKnows(uri));
}

TEST_F(SolidVisuals, BodiesWithoutUriShareNothing) {
    SolidVisual* one = show(MeshedBox(), "");
    SolidVisual* other = show(MeshedBox(1, 1, 1), "");
    EXPECT_NE(one->getMeshName(), other->getMeshName());
    EXPECT_NE(one->getEntity()->getMesh(), other->getEntity()->getMesh());
}

TEST_F(SolidVisuals, AShapeToLookAtIsRedAndNothingElse) {
    SolidVisual* solid = SolidVisual::Build(root(), MeshedBox(), "TransBody");
    EXPECT_EQ(scene().visuals.at(solid->id), solid);
    EXPECT_EQ(solid->getMeshName(), solid->getName());
    EXPECT_THAT(ColorsOf(solid), Each(Hex2RGB("#ED1C24")));
    EXPECT_EQ(MaterialOf(solid), "TransBody");
    EXPECT_EQ(solid->selectedMaterial, "");
    EXPECT_EQ(solid->highlightedMaterial, "");
    EXPECT_FALSE(picking()->hasVisual(solid));
    EXPECT_TRUE(solid->getChildren().empty());
    EXPECT_EQ(solid->getFacesNum(), 6u);
}

TEST_F(SolidVisuals, AShapeOfThreeLooksTakesThemInItsOwnOrder) {
    SolidVisual* solid =
        SolidVisual::Build(root(), MeshedBox(), "Body", "BodyHighlighted", "BodySelected");
    EXPECT_EQ(solid->selectedMaterial, "BodySelected");
    EXPECT_EQ(solid->highlightedMaterial, "BodyHighlighted");
    EXPECT_THAT(ColorsOf(solid), Each(Hex2RGB("#ED1C24")));
    EXPECT_EQ(scene().visuals.at(solid->id), solid);
    EXPECT_FALSE(picking()->getObject(solid)->detectable);
    EXPECT_NE(WiresOf(solid), nullptr);
}

TEST_F(SolidVisuals, ShapesWithoutTrianglesAreBuiltAllTheSame) {
    for (const TopoDS_Shape& shape : {PlainBox(), TopoDS_Shape()}) {
        SolidVisual* plain = SolidVisual::Build(root(), shape, "Body");
        EXPECT_EQ(plain->getEntity(), nullptr);
        EXPECT_EQ(plain->material, "Body");
        SolidVisual* full = SolidVisual::Build(root(), shape, "Body", "", "");
        EXPECT_EQ(full->getEntity(), nullptr);
        EXPECT_TRUE(picking()->hasVisual(full));
        EXPECT_NE(WiresOf(full), nullptr);
    }
    EXPECT_NO_THROW(pump());
    EXPECT_NO_THROW(frame());
}

TEST_F(SolidVisuals, TheMeshOfAShapeGoesWithItsVisual) {
    SolidVisual* solid = SolidVisual::Build(root(), MeshedBox(), "Body");
    const std::string mesh = solid->getMeshName();
    EXPECT_EQ(MeshCount(mesh), 1u);
    scene().deleteVisual(solid);
    EXPECT_FALSE(OgreKnows(mesh));
    EXPECT_EQ(MeshCount(mesh), 0u);
}

// --- faces

TEST_F(SolidVisuals, FacesAreAddressedByTheirNumberInTheMap) {
    SolidVisual* solid = show(MeshedBox());
    const TopoDS_Face third = solid->getFace(3);
    EXPECT_EQ(solid->getFaceIndex(third), 3u);
    EXPECT_EQ(solid->getFaceIndex(TopoDS::Face(third.Reversed())), 3u);
    EXPECT_EQ(solid->getFaceIndex(FanFace(3)), 0u);
    EXPECT_EQ(solid->getFaceIndex(TopoDS_Face()), 0u);
    EXPECT_EQ(show(TopoDS_Shape())->getFaceIndex(third), 0u);
}

TEST_F(SolidVisuals, ANumberWithoutAFaceIsRefused) {
    SolidVisual* solid = show(MeshedBox());
    EXPECT_EQ(OutOfRangeOf([&] { (void)solid->getFace(-1); }),
              "NCollection_IndexedMap::FindKey: negative index");
    EXPECT_EQ(OutOfRangeOf([&] { (void)solid->getFace(0); }), "NCollection_IndexedMap::FindKey");
    EXPECT_EQ(OutOfRangeOf([&] { (void)solid->getFace(7); }), "NCollection_IndexedMap::FindKey");
}

TEST_F(SolidVisuals, HidingFacesNamesTheMeshInTheOrderOfHiding) {
    SolidVisual* solid = show(MeshedBox());
    solid->setFaceVisible(3, false);
    solid->setFaceVisible(5, false);
    solid->setFaceVisible(3, false);  // once is enough
    EXPECT_EQ(solid->getCurrentMeshName(), solid->getMeshName() + "_3_5");
    EXPECT_EQ(solid->getEntity()->getMesh()->getName(), solid->getCurrentMeshName());
    EXPECT_FALSE(solid->isFaceVisible(3));
    EXPECT_TRUE(solid->isFaceVisible(4));
    EXPECT_EQ(solid->getTrianglesNum(), 8u);
    EXPECT_EQ(solid->getFacesNum(), 6u);
    solid->setFaceVisible(3, true);
    EXPECT_EQ(solid->getCurrentMeshName(), solid->getMeshName() + "_5");
    EXPECT_EQ(MaterialOf(solid), "Body");
    EXPECT_EQ(solid->getEntity()->getSubEntity(0)->getCustomParameter(0),
              Ogre::Vector4(1, 1, 1, -1));
    EXPECT_EQ(solid->getEntity()->getRenderQueueGroup(), 50);
}

TEST_F(SolidVisuals, ShowingAFaceThatIsVisibleStillRebuilds) {
    SolidVisual* solid = show(MeshedBox());
    EXPECT_EQ(MeshCount(solid->getMeshName()), 1u);
    solid->setFaceVisible(2, true);
    EXPECT_EQ(MeshCount(solid->getMeshName()), 2u);  // loaded again, and not given back
    EXPECT_EQ(solid->getTrianglesNum(), 12u);
}

TEST_F(SolidVisuals, TheFormerMeshKeepsItsReference) {
    SolidVisual* solid = show(MeshedBox());
    const std::string base = solid->getMeshName();
    solid->setFaceVisible(2, false);
    EXPECT_EQ(MeshCount(base), 1u);
    EXPECT_EQ(MeshCount(base + "_2"), 1u);
    scene().deleteVisual(solid);  // gives up the base name
    EXPECT_EQ(MeshCount(base), 0u);
    EXPECT_EQ(MeshCount(base + "_2"), 1u);
    MeshManager::Get()->removeOgreMesh(base + "_2");
}

TEST_F(SolidVisuals, HidingTheLastFaceThrowsAndLeavesNoPicture) {
    SolidVisual* solid = show(FanFace(3));
    EXPECT_THROW(solid->setFaceVisible(1, false), NoTriangleMesh);
    EXPECT_EQ(solid->getEntity(), nullptr);
    EXPECT_EQ(solid->getBodiesNum(), 0u);
    pump();
    EXPECT_FALSE(picking()->getObject(solid)->box.isValid());
    EXPECT_NO_THROW(frame());
    solid->setFaceVisible(1, true);
    EXPECT_EQ(solid->getTrianglesNum(), 1u);
    pump();
    EXPECT_TRUE(picking()->getObject(solid)->box.isValid());
}

TEST_F(SolidVisuals, AHighlightDoesNotSurviveInTheMeshThatWasShared) {
    const std::string uri = freshUri();
    const TopoDS_Shape shape = MeshedBox();
    SolidVisual* one = show(shape, uri);
    SolidVisual* other = show(shape, uri);
    const auto before = ColorsOf(other);
    one->highLightFace(2);
    one->setFaceVisible(2, false);
    EXPECT_EQ(ColorsOf(other), before);
}

TEST_F(SolidVisuals, ShowingASolidBringsItsHiddenFacesBack) {
    SolidVisual* solid = show(MeshedBox());
    solid->setFaceVisible(3, false);
    solid->setVisible(false, false);
    EXPECT_FALSE(solid->isFaceVisible(3));
    EXPECT_EQ(solid->getTrianglesNum(), 10u);
    solid->setVisible(true, false);
    EXPECT_TRUE(solid->isFaceVisible(3));
    EXPECT_EQ(solid->getTrianglesNum(), 12u);
    EXPECT_EQ(solid->getCurrentMeshName(), solid->getMeshName());
    EXPECT_TRUE(solid->getEntity()->getVisible());
}

TEST_F(SolidVisuals, ADisplayModeThatShowsSolidsBringsHiddenFacesBack) {
    SolidVisual* solid = show(MeshedBox());
    solid->setFaceVisible(3, false);
    scene().setDisplayMode(visual::Scene::DisplayMode::EdgesOnly);
    pump();
    EXPECT_FALSE(solid->isFaceVisible(3));
    EXPECT_FALSE(solid->visible);
    EXPECT_TRUE(WiresOf(solid)->visible);
    scene().setDisplayMode(visual::Scene::DisplayMode::Shaded);
    pump();
    EXPECT_TRUE(solid->isFaceVisible(3));
    EXPECT_FALSE(WiresOf(solid)->visible);
}

TEST_F(SolidVisuals, AHiddenSolidStaysHiddenWhenAFaceChanges) {
    SolidVisual* solid = show(MeshedBox());
    solid->setVisible(false, true);
    solid->setFaceVisible(3, false);
    EXPECT_FALSE(solid->getEntity()->getVisible());
    EXPECT_FALSE(solid->visible);
}

TEST_F(SolidVisuals, PickingLearnsWhichFacesAreVisible) {
    SolidVisual* solid = show(CompoundOf({FanFace(4), FanFace(4, 500)}));
    picking()->setDetectable(solid, false);
    picking()->setObjectEnabled(solid, false);
    pump();
    EXPECT_EQ(picking()->getObject(solid)->box.max.z, 501);
    solid->setFaceVisible(2, false);
    EXPECT_TRUE(picking()->dirty);
    pump();
    EXPECT_EQ(picking()->getObject(solid)->box.max.z, 1);
    EXPECT_FALSE(picking()->getObject(solid)->detectable);
    EXPECT_FALSE(picking()->getObject(solid)->enabled);
    solid->setVisible(true, false);
    pump();
    EXPECT_EQ(picking()->getObject(solid)->box.max.z, 501);
}

TEST_F(SolidVisuals, ASolidThatCannotBePickedHidesFacesAsWell) {
    SolidVisual* solid = SolidVisual::Build(root(), MeshedBox(), "Body");
    solid->setFaceVisible(1, false);
    EXPECT_FALSE(picking()->hasVisual(solid));
    EXPECT_NO_THROW(solid->setVisible(true, true));
    EXPECT_EQ(solid->getTrianglesNum(), 12u);
}

// --- colours

TEST_F(SolidVisuals, StoredColoursAreShown) {
    layout::Body* body = makeBody(CompoundOf({FanFace(4), FanFace(3, 1)}));
    BodyColorTool::SetBodyColor(body->element, "#00FF00");
    BodyColorTool::SetFaceColor(body->element, 2, "#0000FF");
    SolidVisual* solid = show(body);
    const Color green{0, 1, 0}, blue{0, 0, 1};
    EXPECT_THAT(ColorsOf(solid),
                testing::ElementsAre(green, green, green, green, blue, blue, blue));
    EXPECT_EQ(solid->getFaceColor(1), green);
    EXPECT_EQ(solid->getFaceColor(2), blue);
}

TEST_F(SolidVisuals, TheStoredColourIsToldWhateverIsShown) {
    SolidVisual* solid = show(FanFace(3));
    const Color stored = solid->getFaceColor(1);
    EXPECT_EQ(stored, Hex2RGB(std::string(BodyColorTool::defaultBodyColor)));
    solid->setFaceColor(1, "#10C279");
    EXPECT_EQ(solid->getFaceColor(1), stored);
    EXPECT_THAT(ColorsOf(solid), Each(Hex2RGB("#10C279")));
}

TEST_F(SolidVisuals, HighlightingAWhiteFaceWritesMoreThanWhite) {
    layout::Body* body = makeBody(CompoundOf({FanFace(3), FanFace(3, 1)}));
    BodyColorTool::SetBodyColor(body->element, "#FFFFFF");
    SolidVisual* solid = show(body);
    solid->highLightFace(2);
    const auto colors = ColorsOf(solid);
    EXPECT_EQ(colors[0], (Color{1, 1, 1}));
    EXPECT_EQ(colors[3], (Color{1.2f, 1.2f, 1.2f}));
    solid->clearHighLightFace(2);
    EXPECT_THAT(ColorsOf(solid), Each(Color{1, 1, 1}));
}

TEST_F(SolidVisuals, ClearingASelectedFaceShowsItsStoredColour) {
    SolidVisual* solid = show(CompoundOf({FanFace(3), FanFace(3, 1)}));
    const auto before = ColorsOf(solid);
    solid->setFaceColor(1, "#000000");
    solid->setFaceColor(2, "#000000");
    solid->clearSelectedFace(1u);
    solid->clearSelectedFace(solid->getFace(2));
    EXPECT_EQ(ColorsOf(solid), before);
    EXPECT_NO_THROW(solid->clearSelectedFace(FanFace(3)));  // a face of another shape
}

TEST_F(SolidVisuals, ABodyColourCoversAllFacesAndItsAlphaHasNoEffect) {
    SolidVisual* solid = show(MeshedBox());
    solid->setFaceVisible(1, false);
    const auto before = ColorsOf(solid);
    solid->setBodyColor({0, 1, 0}, 0.1f);
    EXPECT_THAT(ColorsOf(solid), Each(Color{0, 1, 0}));
    EXPECT_EQ(solid->getEntity()->getSubEntity(0)->getCustomParameter(0),
              Ogre::Vector4(1, 1, 1, -1));
    solid->resetColor();
    EXPECT_EQ(ColorsOf(solid), before);
}

TEST_F(SolidVisuals, SceneColoursReachTheSolidsOfAPart) {
    layout::Body* body = makeBody(MeshedBox());
    auto* part = dynamic_cast<layout::Part*>(body->getContainer());
    PartVisual::Build(root(), part);
    auto* solid = dynamic_cast<SolidVisual*>(scene().visuals.at(body->id));
    const auto before = ColorsOf(solid);
    scene().setVisualColor(part->id, {1, 0, 0}, 1);
    pump();
    EXPECT_THAT(ColorsOf(solid), Each(Color{1, 0, 0}));
    scene().resetColor(part->id);
    pump();
    EXPECT_EQ(ColorsOf(solid), before);
}

// --- looks

TEST_F(SolidVisuals, ASelectedSolidIsDrawnBehindTheRest) {
    SolidVisual* solid = show(MeshedBox());
    scene().setVisualSelected(solid->id);
    pump();
    EXPECT_EQ(MaterialOf(solid), "BodySelected");
    EXPECT_EQ(solid->getEntity()->getRenderQueueGroup(), 51);
    scene().clearSelections();
    pump();
    EXPECT_EQ(MaterialOf(solid), "Body");
    EXPECT_EQ(solid->getEntity()->getRenderQueueGroup(), 50);
}

TEST_F(SolidVisuals, ARebuiltPictureHasTheNormalLookUntilTheNextRefresh) {
    SolidVisual* solid = show(MeshedBox());
    scene().setVisualSelected(solid->id);
    pump();
    solid->setFaceVisible(1, false);
    EXPECT_EQ(MaterialOf(solid), "Body");
    scene().stateManager->refresh(solid);
    EXPECT_EQ(MaterialOf(solid), "BodySelected");
}

TEST_F(SolidVisuals, ASolidCanBeSeen) {
    show(MeshedBox());
    lookFrom({300, -300, 300}, {50, 30, 20});
    const auto without = [&] {
        for (Visual* child : root()->getChildren())
            if (child->type == VisualType::Solid) child->setVisible(false, true);
        return frame();
    };
    const auto with = frame();
    const auto at = project({50, 30, 40});
    const auto seen = with.at(static_cast<int>(at.x), static_cast<int>(at.y));
    const auto background = without().at(static_cast<int>(at.x), static_cast<int>(at.y));
    EXPECT_NE(seen, background);
}

// --- copies

TEST_F(SolidVisuals, ACopyShowsTheSameMeshInThePreviewLook) {
    SolidVisual* solid = show(MeshedBox());
    solid->setPose({{1, 2, 3}, {}});
    solid->setFaceVisible(1, false);
    auto* copy = dynamic_cast<SolidVisual*>(*solid->copy(nullptr));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->type, VisualType::Solid);
    EXPECT_TRUE(copy->copied);
    EXPECT_EQ(copy->id, solid->id);
    EXPECT_EQ(scene().visuals.at(solid->id), solid);
    EXPECT_EQ(copy->getMeshName(), solid->getMeshName());
    EXPECT_EQ(copy->getCurrentMeshName(), solid->getMeshName());
    EXPECT_EQ(copy->getTrianglesNum(), 12u);
    EXPECT_EQ(copy->getPosition(), (Pos{1, 2, 3}));
    EXPECT_TRUE(copy->getShape().IsNull());
    EXPECT_EQ(MaterialOf(copy), "TransBody");
    EXPECT_EQ(copy->selectedMaterial, "TransBody");
    EXPECT_EQ(copy->highlightedMaterial, "TransBody");
    EXPECT_EQ(copy->getEntity()->getSubEntity(0)->getCustomParameter(0),
              Ogre::Vector4(1, 1, 1, -1));
    EXPECT_EQ(copy->getParent(), root());
    EXPECT_FALSE(picking()->hasVisual(copy));
}

TEST_F(SolidVisuals, ACopyOwnsNoReferenceToTheMesh) {
    SolidVisual* solid = show(MeshedBox());
    const std::string mesh = solid->getMeshName();
    Visual* first = *solid->copy(nullptr);
    Visual* second = *solid->copy(nullptr);  // of another name than the first
    EXPECT_EQ(MeshCount(mesh), 1u);
    scene().deleteVisual(first);
    EXPECT_EQ(MeshCount(mesh), 1u);
    EXPECT_TRUE(OgreKnows(mesh));
    scene().deleteVisual(solid);
    EXPECT_FALSE(OgreKnows(mesh));
    EXPECT_EQ(second->getTrianglesNum(), 12u);
    EXPECT_NO_THROW(frame());
}

TEST_F(SolidVisuals, ACopyOfAShapeKeepsTheShape) {
    SolidVisual* solid = SolidVisual::Build(root(), MeshedBox(), "Body");
    const auto* copy = dynamic_cast<SolidVisual*>(*solid->copy(nullptr));
    EXPECT_TRUE(copy->getShape().IsEqual(solid->getShape()));
}

TEST_F(SolidVisuals, ACopyOfAnEmptyBodyHasNoPicture) {
    SolidVisual* solid = show(PlainBox());
    auto* copy = dynamic_cast<SolidVisual*>(*solid->copy(nullptr));
    EXPECT_EQ(copy->getEntity(), nullptr);
}

TEST_F(SolidVisuals, AnEntityOnAnotherMeshReplacesTheOneThatWasShown) {
    SolidVisual* solid = show(MeshedBox());
    SolidVisual* other = show(FanFace(3));
    Visual* copy = *solid->copy(nullptr);
    dynamic_cast<SolidVisual*>(copy)->attachEntity(other->getMeshName());
    EXPECT_EQ(copy->getTrianglesNum(), 1u);
    EXPECT_EQ(copy->node->numAttachedObjects(), 1u);
}

TEST_F(SolidVisuals, AnEntityOnAMeshThatNobodyKnowsIsRefusedAndNothingChanges) {
    SolidVisual* solid = show(MeshedBox());
    auto* copy = dynamic_cast<SolidVisual*>(*solid->copy(nullptr));
    const Ogre::Entity* entity = copy->getEntity();
    EXPECT_THROW(copy->attachEntity("no such mesh"), Ogre::FileNotFoundException);
    EXPECT_EQ(copy->getEntity(), entity);
    EXPECT_EQ(copy->getMeshName(), solid->getMeshName());
    EXPECT_FALSE(Ogre::MeshManager::getSingleton().getByName("no such mesh", Ogre::RGN_AUTODETECT));
}

TEST_F(SolidVisuals, AnEntityOnAnotherMeshIsHiddenWithItsSolidAndWearsItsLook) {
    SolidVisual* solid = show(MeshedBox());
    const SolidVisual* other = show(FanFace(3));
    auto* copy = dynamic_cast<SolidVisual*>(*solid->copy(nullptr));
    copy->setVisible(false, /*cascade=*/false);
    copy->attachEntity(other->getMeshName());
    EXPECT_FALSE(copy->getEntity()->getVisible());
    EXPECT_EQ(MaterialOf(copy), "TransBody");
}

// --- bodies of parts

class BodiesOfParts : public SolidVisuals {
protected:
    Visual* build(const TopoDS_Shape& shape) {
        layout::Body* body = makeBody(shape);
        PartVisual::Build(root(), dynamic_cast<layout::Part*>(body->getContainer()));
        const auto found = scene().visuals.find(body->id);
        return found == scene().visuals.end() ? nullptr : found->second;
    }
};

TEST_F(BodiesOfParts, TheTypeOfTheShapeDecidesWhatIsBuilt) {
    const TopoDS_Shape box = MeshedBox();
    BRep_Builder builder;
    TopoDS_Compound compound = CompoundOf({box});
    for (const TopoDS_Shape& solid : {TopoDS_Shape(compound), box, TopoDS_Shape(FanFace(3))}) {
        Visual* visual = build(solid);
        EXPECT_NE(dynamic_cast<SolidVisual*>(visual), nullptr) << solid.ShapeType();
        EXPECT_EQ(visual->getParent()->type, VisualType::Part);
    }
    TopoDS_Wire wire;
    builder.MakeWire(wire);
    builder.Add(wire, LineEdge({0, 0, 0}, {10, 0, 0}));
    EXPECT_NE(dynamic_cast<CurveVisual*>(build(wire)), nullptr);
    EXPECT_NE(dynamic_cast<CurveVisual*>(build(LineEdge({0, 0, 0}, {10, 0, 0}))), nullptr);
    TopoDS_Vertex vertex;
    builder.MakeVertex(vertex, gp_Pnt(1, 2, 3), 1e-6);
    const auto* point = dynamic_cast<PointVisual*>(build(vertex));
    ASSERT_NE(point, nullptr);
    EXPECT_EQ(point->getPntPos(), (Pos{1, 2, 3}));
}

TEST_F(BodiesOfParts, ANullShapeBuildsNothing) {
    layout::Part* part = model.make<layout::Part>("part");
    part->addBody(*model.make<layout::Body>("body", "", TopoDS_Shape()));
    PartVisual::Build(root(), part);
    EXPECT_EQ(scene().visuals.at(part->id)->getBodiesNum(), 0u);
    EXPECT_EQ(findBelow(scene().visuals.at(part->id), VisualType::Solid), nullptr);
}

TEST_F(BodiesOfParts, AFileThatIsMissingKeepsThePart) {
    layout::Part* part = model.make<layout::Part>("part");
    part->addBody(*model.make<layout::Body>("body", "/nowhere/at/all.brep", std::string("brep")));
    EXPECT_THROW(PartVisual::Build(root(), part), std::runtime_error);
    EXPECT_TRUE(scene().visuals.contains(part->id));
}

}  // namespace vrn::test
