#include <fstream>
#include <limits>

#include <gmock/gmock.h>

#include <OgreEntity.h>
#include <OgreException.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/geom/BodyColorTool.h"
#include "suite/layout/Body.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/MeshVisual.h"

namespace vrn::test {

namespace {

using geometry::BodyColorTool;
using selection::VisualSelection;
using testing::StartsWith;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::MeshManager;
using visual::MeshVisual;
using visual::Visual;

Ogre::Vector4 ColourOf(const MeshVisual* visual) {
    return visual->getEntity()->getSubEntity(0)->getCustomParameter(0);
}

std::string MaterialOf(const MeshVisual* visual) {
    return visual->getEntity()->getSubEntity(0)->getMaterialName();
}

Ogre::Vector4 Rgb(int r, int g, int b) {
    return {static_cast<float>(r) / 255.0f, static_cast<float>(g) / 255.0f,
            static_cast<float>(b) / 255.0f, 1.0f};
}

}  // namespace

class MeshVisuals : public EngineTest {
protected:
    static Visual* root() { return scene().root; }
    static std::size_t entities() {
        return scene().sceneManager->getMovableObjects("Entity").size();
    }
    /// The visual of a fresh STL body in a part.
    MeshVisual* showBody(const std::string& name) {
        return dynamic_cast<MeshVisual*>(findBelow(showBoxPart(name), VisualType::Mesh));
    }
    layout::Body* makeBody(const std::string& name, const std::string& uri) {
        return layout::MakeStlPart(model, name, uri)->bodies().front();
    }
    std::string writeText(const std::string& name, const std::string& text) {
        std::ofstream(folder() / name, std::ios::binary) << text;
        return (folder() / name).string();
    }
};

// --- attaching a mesh

TEST_F(MeshVisuals, ABuiltInMeshIsShownByItsName) {
    ASSERT_FALSE(MeshManager::Get()->hasMesh("mfg_arrow"));
    const visual::Mesh* record = MeshManager::Get()->getGlobalMesh("mfg_arrow");
    auto* visual = new MeshVisual("marker", root());
    visual->attachMesh("mfg_arrow");
    EXPECT_EQ(visual->getVerticesNum(), record->vertices.size());
    EXPECT_EQ(visual->getTrianglesNum(), record->indices.size() / 3);
    EXPECT_FALSE(MeshManager::Get()->hasMesh("mfg_arrow"));
}

TEST_F(MeshVisuals, ARegisteredMeshIsShownWithoutAFile) {
    auto* record = new visual::Mesh("a registered triangle");
    record->vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    record->indices = {0, 1, 2};
    MeshManager::Get()->addMesh(record);
    auto* visual = new MeshVisual("marker", root());
    visual->attachMesh("a registered triangle");
    EXPECT_EQ(visual->getMeshName(), "a registered triangle");
    EXPECT_EQ(visual->getTrianglesNum(), 1u);
    scene().deleteVisual(visual);
    MeshManager::Get()->deleteMesh(record);
}

TEST_F(MeshVisuals, AMeshWhoseRecordIsDeletedIsShownAndNothingHitsIt) {
    const std::string file = writeBoxStl("mv_deleted.stl", {0, 0, 0}, {100, 100, 100}).string();
    auto* visual = new MeshVisual("marker", root());
    visual->attachMesh(file);
    auto* picking = VisualSelection::Get();
    picking->addMeshVisual(visual, /*detectable=*/true, /*priority=*/false);
    lookFrom({500, 400, 300}, {50, 50, 50});
    frame();
    const auto center = project({50, 50, 50});
    const rob::LineTemplate<float> through{{50, 50, -10}, {50, 50, 110}};
    ASSERT_EQ(picking->select(center.x, center.y).visual, visual);
    ASSERT_TRUE(picking->sense(through).hit);
    MeshManager::Get()->deleteMesh(MeshManager::Get()->getMesh(file));
    EXPECT_FALSE(picking->select(center.x, center.y).hit);
    EXPECT_FALSE(picking->sense(through).hit);
    visual->setPosition(1, 0, 0);  // only the place is worked out anew
    EXPECT_NO_THROW(frame());
    EXPECT_FALSE(picking->select(center.x, center.y).hit);
    EXPECT_EQ(visual->getTrianglesNum(), 12u);
}

TEST_F(MeshVisuals, AnyOtherNameIsAnStlFile) {
    const std::string file = writeBoxStl("mv_file.stl", {0, 0, 0}, {1, 1, 1}).string();
    ASSERT_FALSE(MeshManager::Get()->hasMesh(file));
    auto* visual = new MeshVisual("marker", root());
    visual->attachMesh(file);
    EXPECT_TRUE(MeshManager::Get()->hasMesh(file));
    EXPECT_EQ(visual->getMeshName(), file);
    EXPECT_EQ(visual->getTrianglesNum(), 12u);
    EXPECT_EQ(visual->getVerticesNum(), 36u);
    EXPECT_EQ(visual->getFacesNum(), 1u);
    EXPECT_EQ(visual->getBodiesNum(), 1u);
}

TEST_F(MeshVisuals, ANameThatIsNoStlFileThrows) {
    auto* visual = new MeshVisual("marker", root());
    for (const char* name : {"no such mesh", "box.Stl", "box.obj", ""})
        EXPECT_THAT([&] { visual->attachMesh(name); },
                    ThrowsMessage<std::runtime_error>(StrEq("Not stl file")));
    EXPECT_EQ(visual->getEntity(), nullptr);
    EXPECT_EQ(visual->getMeshName(), "");
    for (const std::uint32_t count : {visual->getBodiesNum(), visual->getFacesNum(),
                                      visual->getTrianglesNum(), visual->getVerticesNum()})
        EXPECT_EQ(count, 0u);
}

TEST_F(MeshVisuals, AnotherMeshTakesThePlaceOfTheFirst) {
    auto* visual = new MeshVisual("marker", root());
    visual->attachMesh("mfg_arrow");
    const std::size_t before = entities();
    const std::uint32_t arrowVertices = visual->getVerticesNum();
    visual->attachMesh("path_arrow_head");
    EXPECT_EQ(entities(), before);
    EXPECT_EQ(visual->node->numAttachedObjects(), 1u);
    EXPECT_EQ(visual->getMeshName(), "path_arrow_head");
    EXPECT_NE(visual->getVerticesNum(), arrowVertices);
}

TEST_F(MeshVisuals, ARefusedMeshLeavesTheFormerOneShown) {
    auto* visual = new MeshVisual("marker", root());
    visual->attachMesh("mfg_arrow");
    EXPECT_THROW(visual->attachMesh((folder() / "absent.stl").string()), std::runtime_error);
    EXPECT_EQ(visual->getMeshName(), "mfg_arrow");
    EXPECT_EQ(visual->getBodiesNum(), 1u);
}

TEST_F(MeshVisuals, AFreshMeshIsWhiteAndDrawnWithTheSolids) {
    auto* visual = new MeshVisual("marker", root());
    visual->attachMesh("mfg_arrow");
    EXPECT_EQ(ColourOf(visual), Ogre::Vector4(1, 1, 1, 1));
    EXPECT_EQ(visual->getEntity()->getRenderQueueGroup(), 50);
}

TEST_F(MeshVisuals, TheKindIsMeshAndTheNameCarriesTheTransientId) {
    const auto* visual = new MeshVisual("marker", root());
    EXPECT_EQ(visual->type, VisualType::Mesh);
    EXPECT_EQ(visual->getName(), "marker" + std::to_string(visual->id));
}

// --- sharing

TEST_F(MeshVisuals, TwoVisualsOfOneFileShareRecordAndOgreMesh) {
    const std::string file = writeBoxStl("mv_shared.stl", {0, 0, 0}, {1, 1, 1}).string();
    auto* first = new MeshVisual("first", root());
    auto* second = new MeshVisual("second", root());
    first->attachMesh(file);
    const visual::Mesh* record = MeshManager::Get()->getMesh(file);
    std::filesystem::remove(file);  // so that a second reading would throw
    second->attachMesh(file);
    EXPECT_EQ(MeshManager::Get()->getMesh(file), record);
    EXPECT_EQ(first->getEntity()->getMesh(), second->getEntity()->getMesh());
    EXPECT_NE(first->getEntity(), second->getEntity());
    first->setColor("#112233");
    EXPECT_EQ(ColourOf(first), Rgb(0x11, 0x22, 0x33));
    EXPECT_EQ(ColourOf(second), Ogre::Vector4(1, 1, 1, 1));
    scene().deleteVisual(first);
    EXPECT_EQ(second->getTrianglesNum(), 12u);
}

TEST_F(MeshVisuals, VisualsOfOneFileShowTheirOwnColoursInThePicture) {
    const std::string file = writeBoxStl("mv_twins.stl", {-40, -40, -40}, {40, 40, 40}).string();
    layout::Body* red = makeBody("red", file);
    layout::Body* blue = makeBody("blue", file);
    BodyColorTool::SetBodyColor(red->element, "#C81414");
    BodyColorTool::SetBodyColor(blue->element, "#1414C8");
    MeshVisual::Build(root(), red)->setPosition(-100, 0, 0);
    MeshVisual::Build(root(), blue)->setPosition(100, 0, 0);
    lookFrom({0, -500, 100}, {0, 0, 0});
    const headless::Picture picture = frame();
    const auto at = [&](float x) {
        const auto pixel = project({x, -40, 0});
        return picture.at(static_cast<int>(pixel.x), static_cast<int>(pixel.y));
    };
    EXPECT_GT(at(-100).r, 3 * at(-100).b);
    EXPECT_GT(at(100).b, 3 * at(100).r);
}

// --- colour

TEST_F(MeshVisuals, ColoursAreAParameterOfEverySubEntity) {
    auto* visual = new MeshVisual("marker", root());
    visual->attachMesh("mfg_arrow");
    visual->setColor({0.25f, 0.5f, 0.75f}, 0.125f);
    EXPECT_EQ(ColourOf(visual), Ogre::Vector4(0.25f, 0.5f, 0.75f, 0.125f));
    visual->setBodyColor({0.5f, 0.25f, 1}, 0.5f);
    EXPECT_EQ(ColourOf(visual), Ogre::Vector4(0.5f, 0.25f, 1, 0.5f));
    visual->setColor("#0D8DDF");
    EXPECT_EQ(ColourOf(visual), Rgb(0x0D, 0x8D, 0xDF));
}

TEST_F(MeshVisuals, ABadColourTextThrowsAndKeepsTheColour) {
    auto* visual = new MeshVisual("marker", root());
    visual->attachMesh("mfg_arrow");
    visual->setColor("#0D8DDF");
    EXPECT_THROW(visual->setColor("red, please"), std::invalid_argument);
    EXPECT_THROW(visual->setColor("#F"), std::out_of_range);
    EXPECT_EQ(ColourOf(visual), Rgb(0x0D, 0x8D, 0xDF));
}

TEST_F(MeshVisuals, AColourWithoutAMeshDoesNothing) {
    auto* visual = new MeshVisual("marker", root());
    EXPECT_NO_THROW(visual->setColor({1, 0, 0}, 1));
    EXPECT_NO_THROW(visual->setColor("#0D8DDF"));
    EXPECT_NO_THROW(visual->resetColor());
}

TEST_F(MeshVisuals, ResetColorTakesTheStoredColourOfTheBody) {
    MeshVisual* visual = showBody("mv_reset");
    visual->setColor("#000000");
    visual->resetColor();
    EXPECT_EQ(ColourOf(visual), Rgb(0xBF, 0xC5, 0xCC));
    BodyColorTool::SetBodyColor(sdf::SdfManager::inst()->at(visual->id)->element, "#123456");
    visual->resetColor();
    EXPECT_EQ(ColourOf(visual), Rgb(0x12, 0x34, 0x56));
}

TEST_F(MeshVisuals, ResetColorWithoutAModelObjectGivesTheColourOfTheUnknown) {
    auto* visual = new MeshVisual("marker", root());
    visual->attachMesh("mfg_arrow");
    visual->resetColor();
    EXPECT_EQ(ColourOf(visual), Rgb(0xED, 0x1C, 0x24));
}

// --- from the model

TEST_F(MeshVisuals, ABodyBringsFileColourMaterialAndId) {
    layout::Body* body =
        makeBody("mv_body", writeBoxStl("mv_body.stl", {0, 0, 0}, {1, 1, 1}).string());
    body->setPose({{1, 2, 3}, {}});
    BodyColorTool::SetBodyColor(body->element, "#10C279");
    const MeshVisual* visual = MeshVisual::Build(root(), body);
    EXPECT_EQ(visual->id, body->id);
    EXPECT_EQ(visual->getName(), "mv_body_" + std::to_string(body->id));
    EXPECT_EQ(visual->getMeshName(), body->getGeometryUri());
    EXPECT_EQ(visual->getPosition(), (rob::PosTemplate<float>{1, 2, 3}));
    EXPECT_EQ(ColourOf(visual), Rgb(0x10, 0xC2, 0x79));
    EXPECT_EQ(scene().visuals.at(body->id), visual);
    EXPECT_EQ(visual->material, "Body");
    EXPECT_EQ(visual->selectedMaterial, "BodySelected");
    EXPECT_EQ(visual->highlightedMaterial, "BodyHighlighted");
    EXPECT_EQ(MaterialOf(visual), "Body");
}

TEST_F(MeshVisuals, AMaterialNameOfTheBodyIsTheBaseOfAllThree) {
    layout::Body* body =
        makeBody("mv_kuka", writeBoxStl("mv_kuka.stl", {0, 0, 0}, {1, 1, 1}).string());
    body->setMaterialName("KUKA");
    const MeshVisual* visual = MeshVisual::Build(root(), body);
    EXPECT_EQ(visual->material, "KUKA");
    EXPECT_EQ(visual->selectedMaterial, "KUKASelected");
    EXPECT_EQ(visual->highlightedMaterial, "KUKAHighlighted");
    EXPECT_EQ(MaterialOf(visual), "KUKA");
}

TEST_F(MeshVisuals, ABodyIsPickableAndDetectableUnlessItsPartSaysOtherwise) {
    const std::string file = writeBoxStl("mv_detect.stl", {0, 0, 0}, {1, 1, 1}).string();
    layout::Part* silent = layout::MakeStlPart(model, "silent", file);
    layout::Part* open = layout::MakeStlPart(model, "open", file);
    open->setDetectable(true);
    layout::Part* closed = layout::MakeStlPart(model, "closed", file);
    closed->setDetectable(false);
    const auto objectOf = [](layout::Part* part) {
        return VisualSelection::Get()->getObject(MeshVisual::Build(root(), part->bodies().front()));
    };
    for (layout::Part* part : {silent, open}) {
        const auto* object = objectOf(part);
        EXPECT_TRUE(object->detectable);
        EXPECT_FALSE(object->priority);
    }
    EXPECT_FALSE(objectOf(closed)->detectable);
}

TEST_F(MeshVisuals, WhatCannotBeBuiltLeavesNothing) {
    const std::string good = writeBoxStl("mv_good.stl", {0, 0, 0}, {1, 1, 1}).string();
    const std::size_t nodes = root()->node->getChildren().size();
    const std::size_t shown = entities();
    const auto registered = scene().visuals;
    const auto refuse = [&](layout::Body* body) {
        EXPECT_ANY_THROW(MeshVisual::Build(root(), body));
        EXPECT_EQ(root()->node->getChildren().size(), nodes);
        EXPECT_EQ(entities(), shown);
        EXPECT_EQ(scene().visuals, registered);
        EXPECT_EQ(pickableCount(), 0u);
    };
    refuse(makeBody("missing", (folder() / "missing.stl").string()));
    std::filesystem::create_directory(folder() / "folder.stl");
    refuse(makeBody("unreadable", (folder() / "folder.stl").string()));
    refuse(makeBody("nonsense", writeText("nonsense.stl", "this is no mesh")));
    refuse(
        makeBody("cut", writeText("cut.stl", "solid\nfacet normal 0 0 1\nouter loop\nvertex 0")));
    refuse(makeBody("wrong end", writeText("mesh.txt", "solid\nendsolid")));
    layout::Body* body = makeBody("bad detectable", good);
    body->element->getParent()->set("detectable", std::string("yes"));
    refuse(body);
    body = makeBody("bad material", good);
    body->element->set("visual/material/name", 7);
    refuse(body);
    body = makeBody("bad colour", good);
    body->element->set("visual/color", std::string("blue"));
    refuse(body);
}

TEST_F(MeshVisuals, OnlyABodyCanBeBuilt) {
    EXPECT_THROW(MeshVisual::Build(root(), makeBoxPart("mv_part")), std::bad_cast);
}

TEST_F(MeshVisuals, AnEmptyFileDrawsNothingAndSurvivesFrames) {
    const std::string binary = writeText("empty_binary.stl", std::string(84, '\0'));
    const std::string text = writeText("empty_text.stl", "solid nothing\nendsolid nothing\n");
    frame();
    for (const std::string& file : {binary, text}) {
        MeshVisual* visual = MeshVisual::Build(root(), makeBody("empty", file));
        EXPECT_EQ(visual->getTrianglesNum(), 0u);
        EXPECT_EQ(visual->getVerticesNum(), 0u);
        EXPECT_EQ(visual->getBodiesNum(), 1u);
        visual->setSelected();
        visual->setColor("#FF0000");
    }
    const std::vector<headless::Rgba> with = frame().getPixels();
    for (Visual* visual : root()->getChildren())
        if (visual->type == VisualType::Mesh) scene().deleteVisual(visual);
    EXPECT_EQ(frame().getPixels(), with);
}

// --- deleting

TEST_F(MeshVisuals, DeletingTakesTheEntityAlongAndKeepsTheMesh) {
    MeshVisual* visual = showBody("mv_deleted");
    const std::string file = visual->getMeshName();
    const std::size_t before = entities();
    scene().deleteVisual(visual);
    EXPECT_EQ(entities(), before - 1);
    EXPECT_TRUE(MeshManager::Get()->hasMesh(file));
    EXPECT_NE(Ogre::MeshManager::getSingleton().getByName(file), nullptr);
}

// --- copies

TEST_F(MeshVisuals, ACopyShowsTheSameMeshInThePreviewMaterial) {
    MeshVisual* source = showBody("mv_copied");
    source->setPose({{1, 2, 3}, {0, 0, 0, 1}});
    source->setColor({0.25f, 0.5f, 0.75f}, 0.5f);
    const auto registered = scene().visuals;
    auto* target = new Visual("target", root());
    const auto* copy = dynamic_cast<MeshVisual*>(*source->copy(target));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->getParent(), target);
    EXPECT_EQ(copy->type, VisualType::Mesh);
    EXPECT_EQ(copy->id, source->id);
    EXPECT_TRUE(copy->copied);
    EXPECT_TRUE(copy->visible);
    EXPECT_EQ(copy->getMeshName(), source->getMeshName());
    EXPECT_EQ(copy->getEntity()->getMesh(), source->getEntity()->getMesh());
    EXPECT_EQ(copy->getPose(), source->getPose());
    for (const std::string& name :
         {copy->material, copy->selectedMaterial, copy->highlightedMaterial, MaterialOf(copy)})
        EXPECT_EQ(name, "TransBody");
    EXPECT_EQ(ColourOf(copy), ColourOf(source));
    EXPECT_THAT(copy->getName(), StartsWith(source->getName()));
    EXPECT_EQ(scene().visuals, registered);
    EXPECT_FALSE(VisualSelection::Get()->hasVisual(const_cast<MeshVisual*>(copy)));
}

TEST_F(MeshVisuals, DeletingACopyLeavesTheSourceWhole) {
    MeshVisual* source = showBody("mv_source");
    Visual* copy = *source->copy(nullptr);
    EXPECT_EQ(copy->getParent(), root());
    scene().deleteVisual(copy);
    EXPECT_EQ(source->getTrianglesNum(), 12u);
    EXPECT_EQ(scene().visuals.at(source->id), source);
    EXPECT_NO_THROW(frame());
}

TEST_F(MeshVisuals, DeletingTheSourceLeavesTheCopyShown) {
    MeshVisual* source = showBody("mv_gone");
    const Visual* copy = *source->copy(nullptr);
    scene().deleteVisual(source);
    EXPECT_EQ(const_cast<Visual*>(copy)->getTrianglesNum(), 12u);
    EXPECT_NO_THROW(frame());
}

TEST_F(MeshVisuals, WithoutAMeshTheCopyHasNoneEither) {
    auto* source = new MeshVisual("marker", root());
    auto* copy = dynamic_cast<MeshVisual*>(*source->copy(nullptr));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->getEntity(), nullptr);
    EXPECT_EQ(copy->getBodiesNum(), 0u);
}

// --- looks

TEST_F(MeshVisuals, SelectedBodiesAreDrawnInAGroupOfTheirOwn) {
    MeshVisual* visual = showBody("mv_groups");
    visual->setHighlighted();
    EXPECT_EQ(visual->getEntity()->getRenderQueueGroup(), 50);
    visual->setSelected();
    EXPECT_EQ(MaterialOf(visual), "BodySelected");
    EXPECT_EQ(visual->getEntity()->getRenderQueueGroup(), 51);
    visual->resetAppearance();
    EXPECT_EQ(visual->getEntity()->getRenderQueueGroup(), 51);
    visual->clearHighlightOrSelect();
    EXPECT_EQ(MaterialOf(visual), "Body");
    EXPECT_EQ(visual->getEntity()->getRenderQueueGroup(), 50);
}

TEST_F(MeshVisuals, TheGroupFollowsTheSelectionOfTheScene) {
    MeshVisual* visual = showBody("mv_selected");
    scene().setVisualSelected(visual->getParent()->id);
    pump();
    EXPECT_EQ(visual->getEntity()->getRenderQueueGroup(), 51);
    scene().clearSelections();
    pump();
    EXPECT_EQ(visual->getEntity()->getRenderQueueGroup(), 50);
}

TEST_F(MeshVisuals, ANamedMaterialIsShownDirectly) {
    MeshVisual* visual = showBody("mv_named");
    visual->useNamedMaterial("CollisionContact");
    EXPECT_EQ(MaterialOf(visual), "CollisionContact");
    visual->useNamedMaterial("no such material");
    EXPECT_EQ(MaterialOf(visual), "CollisionContact");
}

TEST_F(MeshVisuals, AScaledMeshIsDrawnLarger) {
    const std::string file = writeBoxStl("mv_scaled.stl", {-10, -10, -10}, {10, 10, 10}).string();
    auto* visual = new MeshVisual("box", root());
    visual->attachMesh(file);
    visual->setMaterial("Body", "", "");
    visual->resetAppearance();
    visual->setColor("#C81414");
    lookFrom({0, -500, 0}, {0, 0, 0});
    const auto isRed = [&](const headless::Picture& picture, const rob::PosTemplate<float>& at) {
        const auto p = project(at);
        const auto pixel = picture.at(static_cast<int>(p.x), static_cast<int>(p.y));
        return pixel.r > 2 * pixel.b;
    };
    const headless::Picture small = frame();
    EXPECT_TRUE(isRed(small, {5, 0, 5}));
    EXPECT_FALSE(isRed(small, {40, 0, 5}));
    visual->setScale(6, 1, 1);
    const headless::Picture wide = frame();
    EXPECT_TRUE(isRed(wide, {40, 0, 5}));
    EXPECT_FALSE(isRed(wide, {40, 0, 40}));
}

// --- the built-in arrow

TEST_F(MeshVisuals, AnArrowStandsAtItsPlaceAlongItsDirection) {
    scene().settings.arrowSizeLevel = 4;
    const MeshVisual* arrow = MeshVisual::BuildArrow(root(), {10, 20, 30}, {0, 3, 0});
    EXPECT_THAT(arrow->getName(), StartsWith("mfg_arrow"));
    EXPECT_EQ(arrow->getName(), "mfg_arrow" + std::to_string(arrow->id));
    EXPECT_EQ(arrow->getMeshName(), "mfg_arrow");
    EXPECT_EQ(arrow->getPosition(), (rob::PosTemplate<float>{10, 20, 30}));
    const auto up = arrow->getPose().rotation.rotated({0, 0, 1});
    EXPECT_NEAR(up.y, 1, 1e-5f);
    EXPECT_EQ(arrow->node->getScale(), Ogre::Vector3(4 / 5.0f));
    EXPECT_EQ(ColourOf(arrow), Rgb(0xFF, 0xA7, 0x25));
    EXPECT_EQ(arrow->material, "Axis");
    EXPECT_EQ(arrow->selectedMaterial, "");
    EXPECT_EQ(arrow->highlightedMaterial, "");
    EXPECT_EQ(MaterialOf(arrow), "Axis");
    EXPECT_FALSE(scene().visuals.contains(arrow->id));
    EXPECT_EQ(pickableCount(), 0u);
}

TEST_F(MeshVisuals, AnArrowIsNoBodyOfWhatItHangsOn) {
    Visual* edge = new Visual(root());
    scene().visuals[edge->id] = edge;
    const MeshVisual* arrow = MeshVisual::BuildArrow(edge, {}, {0, 0, 1});
    EXPECT_EQ(edge->getBodiesNum(), 0u);
    EXPECT_EQ(edge->getFacesNum(), 0u);
    EXPECT_EQ(edge->getTrianglesNum(), 0u);
    EXPECT_EQ(edge->getVerticesNum(), 0u);
    scene().setCollision(edge->id, true);
    pump();
    EXPECT_EQ(arrow->getEntity()->getSubEntity(0)->getMaterialName(), "Axis");
    scene().setVisualColor(edge->id, {0, 0, 1}, 1.0f);
    pump();
    EXPECT_EQ(ColourOf(arrow), Rgb(0xFF, 0xA7, 0x25));
    scene().resetColor(edge->id);
    pump();
    EXPECT_EQ(ColourOf(arrow), Rgb(0xFF, 0xA7, 0x25));
}

TEST_F(MeshVisuals, AnArrowMayPointStraightDown) {
    const MeshVisual* arrow = MeshVisual::BuildArrow(root(), {}, {0, 0, -1});
    EXPECT_NEAR(arrow->getPose().rotation.rotated({0, 0, 1}).z, -1, 1e-5f);
}

TEST_F(MeshVisuals, AnArrowWithoutADirectionOrAPlaceThrowsAndLeavesNothing) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    const std::size_t nodes = root()->node->getChildren().size();
    EXPECT_THAT([] { MeshVisual::BuildArrow(root(), {}, {0, 0, 0}); },
                ThrowsMessage<std::overflow_error>(StrEq("0-length vector cannot be normalized.")));
    EXPECT_THROW(MeshVisual::BuildArrow(root(), {}, {nan, 0, 0}), std::overflow_error);
    EXPECT_THROW(MeshVisual::BuildArrow(root(), {nan, 0, 0}, {0, 0, 1}), std::invalid_argument);
    EXPECT_EQ(root()->node->getChildren().size(), nodes);
}

}  // namespace vrn::test
