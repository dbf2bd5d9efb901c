#include <gmock/gmock.h>

#include <OgreEntity.h>
#include <OgreException.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "selection/VisualSelection.h"
#include "suite/layout/Body.h"
#include "suite/smart/StationLogic.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/station/AssemblyVisual.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/PartVisual.h"

namespace vrn::test {

namespace {

using testing::ElementsAre;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::AssemblyVisual;
using visual::FrameVisual;
using visual::MeshVisual;
using visual::PartVisual;
using visual::Visual;

const auto isUnknownFormat =
    ThrowsMessage<std::runtime_error>(StrEq("File format is not brep or stl"));

Visual* LocalFrameOf(const Visual* owner) {
    for (Visual* child : owner->getChildren())
        if (child->getName() == "Local Frame") return child;
    return nullptr;
}

bool ShowsFrame(const Visual* owner) { return LocalFrameOf(owner)->visible; }

std::string LookOf(const Visual* part) {
    for (Visual* child : part->getChildren())
        if (auto* mesh = dynamic_cast<MeshVisual*>(child))
            return mesh->getEntity()->getSubEntity(0)->getMaterialName();
    return {};
}

void Select(const Visual* visual) { visual::Scene::Get()->setVisualSelected(visual->id); }

}  // namespace

class StationObjects : public EngineTest {
protected:
    static Visual* root() { return scene().root; }
    static Visual* visualOf(const sdf::SdfNode* object) { return scene().visuals.at(object->id); }

    Visual* buildPart(layout::Part* part) {
        PartVisual::Build(root(), part);
        return visualOf(part);
    }
    /// An assembly of `children`, built under the root.
    layout::Assembly* makeAssembly(const std::string& name,
                                   const std::vector<sdf::SdfObject*>& children) {
        auto* assembly = model.make<layout::Assembly>(name);
        for (sdf::SdfObject* child : children) assembly->addChild(*child);
        return assembly;
    }
};

// --- parts

class PartVisuals : public StationObjects {};

TEST_F(PartVisuals, APartHasItsBodiesAndAHiddenLocalFrame) {
    layout::Part* part = makeBoxPart("bracket", {{1, 2, 3}, {}});
    part->addBody(*model.make<layout::Body>(
        "second", writeBoxStl("pv_second.stl", {0, 0, 0}, {1, 1, 1}).string(), "stl"));
    Visual* visual = buildPart(part);
    EXPECT_EQ(visual->type, VisualType::Part);
    EXPECT_EQ(visual->id, part->id);
    EXPECT_EQ(visual->getName(), "bracket_" + std::to_string(part->id));
    EXPECT_EQ(visual->getPosition(), (rob::PosTemplate<float>{1, 2, 3}));
    EXPECT_EQ(visual->getParent(), root());
    std::vector<Visual*> expected{LocalFrameOf(visual)};
    for (layout::Body* body : part->bodies()) expected.push_back(visualOf(body));
    EXPECT_EQ(visual->getChildren(), expected);
    EXPECT_EQ(visual->getBodiesNum(), 2u);
    EXPECT_EQ(visual->getTrianglesNum(), 24u);
    const Visual* frame = LocalFrameOf(visual);
    EXPECT_EQ(frame->id, 0u);
    EXPECT_EQ(frame->type, VisualType::Frame);
    EXPECT_FALSE(frame->visible);
    EXPECT_FALSE(frame->node->getAttachedObject(0)->getVisible());
    EXPECT_FALSE(scene().visuals.contains(0));
}

TEST_F(PartVisuals, APartWithoutBodiesIsEmptyAndNoError) {
    Visual* visual = buildPart(model.make<layout::Part>("empty"));
    EXPECT_THAT(visual->getChildren(), ElementsAre(LocalFrameOf(visual)));
    EXPECT_EQ(visual->getBodiesNum(), 0u);
}

TEST_F(PartVisuals, AnUnknownFileTypeThrowsAndThePartRemains) {
    for (const char* type : {"STL", "Stl", "", "step", "stl "}) {
        auto* part = model.make<layout::Part>("part");
        part->addBody(*model.make<layout::Body>("body", "file.stl", type));
        EXPECT_THAT([&] { PartVisual::Build(root(), part); }, isUnknownFormat) << type;
        EXPECT_EQ(visualOf(part)->getBodiesNum(), 0u);
        EXPECT_NE(LocalFrameOf(visualOf(part)), nullptr);
    }
}

TEST_F(PartVisuals, AFileTypeThatIsNoTextThrowsBadAnyCast) {
    for (const std::any& value : {std::any(1), std::any("stl"), std::any()}) {
        layout::Part* part = makeBoxPart("part");
        part->bodies().front()->element->set("geometry/file_type", value);
        EXPECT_THROW(PartVisual::Build(root(), part), std::bad_any_cast);
        EXPECT_TRUE(scene().visuals.contains(part->id));
    }
}

TEST_F(PartVisuals, TheBodiesBeforeARefusedOneStayAndThoseBehindItAreNotBuilt) {
    layout::Part* part = makeBoxPart("bracket");
    auto* bad = model.make<layout::Body>("bad", "file.igs", "igs");
    auto* late = model.make<layout::Body>(
        "late", writeBoxStl("pv_late.stl", {0, 0, 0}, {1, 1, 1}).string(), "stl");
    part->addBody(*bad);
    part->addBody(*late);
    EXPECT_THAT([&] { PartVisual::Build(root(), part); }, isUnknownFormat);
    EXPECT_TRUE(scene().visuals.contains(part->bodies().front()->id));
    EXPECT_FALSE(scene().visuals.contains(bad->id));
    EXPECT_FALSE(scene().visuals.contains(late->id));
    EXPECT_EQ(visualOf(part)->getBodiesNum(), 1u);
}

TEST_F(PartVisuals, AMissingFileThrowsThePartRemainsAndTheBodyDoesNot) {
    layout::Part* part = layout::MakeStlPart(model, "gone", (folder() / "gone.stl").string());
    EXPECT_THROW(PartVisual::Build(root(), part), std::runtime_error);
    EXPECT_THAT(visualOf(part)->getChildren(), ElementsAre(LocalFrameOf(visualOf(part))));
    EXPECT_FALSE(scene().visuals.contains(part->bodies().front()->id));
}

TEST_F(PartVisuals, OnlyAPartCanBeBuiltAsOne) {
    const std::size_t nodes = root()->node->getChildren().size();
    EXPECT_THROW(PartVisual::Build(root(), model.make<layout::Assembly>("group")), std::bad_cast);
    EXPECT_EQ(root()->node->getChildren().size(), nodes);
}

TEST_F(PartVisuals, BuildingTheSamePartTwiceThrowsAndKeepsTheFirst) {
    layout::Part* part = makeBoxPart("bracket");
    const Visual* first = buildPart(part);
    EXPECT_THROW(PartVisual::Build(root(), part), Ogre::ItemIdentityException);
    EXPECT_EQ(visualOf(part), first);
}

TEST_F(PartVisuals, SolidsCurvesMeshesAndPointsTakePartInTheLook) {
    Visual child("plain");
    for (int type = 0; type <= 34; ++type) {
        child.type = static_cast<VisualType>(type);
        EXPECT_EQ(PartVisual::canApplyMaterial(&child),
                  type == 10 || type == 11 || type == 14 || type == 15)
            << type;
        EXPECT_EQ(AssemblyVisual::CanApplyMaterial(&child), type == 7 || type == 9) << type;
    }
}

TEST_F(PartVisuals, SelectingShowsBodiesAndLocalFrameAndClearingHidesThem) {
    Visual* part = buildPart(makeBoxPart("bracket"));
    Select(part);
    pump();
    EXPECT_EQ(LookOf(part), "BodySelected");
    EXPECT_TRUE(ShowsFrame(part));
    EXPECT_TRUE(LocalFrameOf(part)->node->getAttachedObject(0)->getVisible());
    scene().clearSelections();
    pump();
    EXPECT_EQ(LookOf(part), "Body");
    EXPECT_FALSE(ShowsFrame(part));
}

TEST_F(PartVisuals, HighlightingLeavesTheLocalFrameAsItIs) {
    Visual* part = buildPart(makeBoxPart("bracket"));
    part->setHighlighted();
    EXPECT_EQ(LookOf(part), "BodyHighlighted");
    EXPECT_FALSE(ShowsFrame(part));
    LocalFrameOf(part)->setVisible(true, true);
    part->setHighlighted();
    EXPECT_TRUE(ShowsFrame(part));
    part->resetAppearance();
    EXPECT_EQ(LookOf(part), "Body");
    EXPECT_FALSE(ShowsFrame(part));
}

TEST_F(PartVisuals, APartWhoseChildrenWereClearedTakesEveryLookWithoutHarm) {
    Visual* part = buildPart(makeBoxPart("bracket"));
    part->clearChildren();
    part->setSelected();
    part->setHighlighted();
    part->resetAppearance();
    part->clearHighlightOrSelect();
    EXPECT_THAT(part->getChildren(), ElementsAre());
}

TEST_F(PartVisuals, HidingAPartLeavesItsLocalFrameAlone) {
    Visual* part = buildPart(makeBoxPart("bracket"));
    LocalFrameOf(part)->setVisible(true, true);
    part->setVisible(false, true);
    EXPECT_TRUE(ShowsFrame(part));
    EXPECT_FALSE(findBelow(part, VisualType::Mesh)->visible);
    LocalFrameOf(part)->setVisible(false, true);
    part->setVisible(true, true);
    EXPECT_FALSE(ShowsFrame(part));
}

TEST_F(PartVisuals, AnAttachedPartKeepsItsLook) {
    Visual* carrier = buildPart(makeBoxPart("carrier"));
    Visual* carried = buildPart(makeBoxPart("carried"));
    scene().addAttachment(carried->id, carrier->id, {});
    pump();
    ASSERT_TRUE(carried->attached);
    Select(carrier);
    pump();
    EXPECT_EQ(LookOf(carrier), "BodySelected");
    EXPECT_EQ(LookOf(carried), "Body");
    scene().clearSelections();
    scene().setVisualHighlighted(carrier);
    pump();
    EXPECT_EQ(LookOf(carried), "Body");
    EXPECT_EQ(carrier->getBodiesNum(), 1u);
}

TEST_F(PartVisuals, ABodyThatIsAttachedKeepsItsLook) {
    Visual* part = buildPart(makeBoxPart("bracket"));
    findBelow(part, VisualType::Mesh)->attached = true;
    part->setSelected();
    part->setHighlighted();
    EXPECT_EQ(LookOf(part), "Body");
}

TEST_F(PartVisuals, AMaterialOfAPartTouchesNoBody) {
    Visual* part = buildPart(makeBoxPart("bracket"));
    part->useMaterial("CollisionContact");
    EXPECT_EQ(LookOf(part), "Body");
}

TEST_F(PartVisuals, DeletingAPartTakesTheLocalFrameAlong) {
    const std::size_t nodes = root()->node->getChildren().size();
    Visual* part = buildPart(makeBoxPart("bracket"));
    const std::uint32_t body = findBelow(part, VisualType::Mesh)->id;
    scene().removeVisual(part->id);
    pump();
    EXPECT_EQ(root()->node->getChildren().size(), nodes);
    EXPECT_FALSE(scene().visuals.contains(body));
}

// --- assemblies

class AssemblyVisuals : public StationObjects {};

TEST_F(AssemblyVisuals, PartsAndAssembliesStandUnderTheAssembly) {
    layout::Part* part = makeBoxPart("bracket");
    layout::Part* deep = makeBoxPart("deep");
    layout::Assembly* inner = makeAssembly("inner", {deep});
    layout::Assembly* outer = makeAssembly("outer", {part, inner});
    outer->setPose({{10, 0, 0}, {}});
    AssemblyVisual::Build(root(), outer);
    Visual* visual = visualOf(outer);
    EXPECT_EQ(visual->type, VisualType::Assembly);
    EXPECT_EQ(visual->getName(), "outer_" + std::to_string(outer->id));
    EXPECT_EQ(visual->getPosition(), (rob::PosTemplate<float>{10, 0, 0}));
    EXPECT_THAT(visual->getChildren(),
                ElementsAre(LocalFrameOf(visual), visualOf(part), visualOf(inner)));
    EXPECT_EQ(visualOf(inner)->type, VisualType::Assembly);
    EXPECT_EQ(visualOf(deep)->getParent(), visualOf(inner));
    EXPECT_EQ(visual->getBodiesNum(), 2u);
    for (const Visual* owner : {visual, visualOf(inner), visualOf(part), visualOf(deep)}) {
        EXPECT_EQ(LocalFrameOf(owner)->getName(), "Local Frame");
        EXPECT_FALSE(ShowsFrame(owner));
    }
}

TEST_F(AssemblyVisuals, AnEmptyAssemblyIsNoError) {
    layout::Assembly* assembly = makeAssembly("empty", {});
    AssemblyVisual::Build(root(), assembly);
    EXPECT_THAT(visualOf(assembly)->getChildren(), ElementsAre(LocalFrameOf(visualOf(assembly))));
}

TEST_F(AssemblyVisuals, AChildStandsWhereItsOwnParentIdSays) {
    layout::Part* free = makeBoxPart("free");
    layout::Part* ofTheStation = makeBoxPart("of the station");
    layout::Part* dangling = makeBoxPart("dangling");
    layout::Part* elsewhere = makeBoxPart("elsewhere");
    layout::Part* kept = makeBoxPart("kept");
    layout::Assembly* assembly =
        makeAssembly("group", {free, ofTheStation, dangling, elsewhere, kept});
    Visual* other = buildPart(makeBoxPart("other"));
    free->parentId = 0;
    ofTheStation->parentId = smartcomp::StationLogic::inst()->id;
    dangling->parentId = 0x7FFF'0001;
    elsewhere->parentId = other->id;
    AssemblyVisual::Build(root(), assembly);
    EXPECT_EQ(visualOf(free)->getParent(), root());
    EXPECT_EQ(visualOf(ofTheStation)->getParent(), root());
    EXPECT_EQ(visualOf(dangling)->getParent(), root());
    EXPECT_EQ(visualOf(elsewhere)->getParent(), other);
    EXPECT_EQ(visualOf(kept)->getParent(), visualOf(assembly));
}

TEST_F(AssemblyVisuals, EverythingThatIsNoAssemblyIsTakenForAPart) {
    layout::Assembly* assembly = makeAssembly("group", {});
    assembly->addChild(*model.make<layout::Body>("loose body", "x.stl", "stl"));
    EXPECT_THROW(AssemblyVisual::Build(root(), assembly), std::bad_cast);
    EXPECT_TRUE(scene().visuals.contains(assembly->id));
}

TEST_F(AssemblyVisuals, AnIdThatTheModelDoesNotHoldThrows) {
    layout::Part* part = makeBoxPart("bracket");
    layout::Assembly* assembly = makeAssembly("group", {part});
    sdf::SdfManager::inst()->remove(*part);
    EXPECT_THAT([&] { AssemblyVisual::Build(root(), assembly); },
                ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
    EXPECT_TRUE(scene().visuals.contains(assembly->id));
    EXPECT_FALSE(scene().visuals.contains(part->id));
}

TEST_F(AssemblyVisuals, ARefusedPartEndsTheAssembly) {
    layout::Part* bad = layout::MakeStlPart(model, "bad", "bad.obj");
    layout::Part* late = makeBoxPart("late");
    layout::Assembly* assembly = makeAssembly("group", {bad, late});
    EXPECT_THAT([&] { AssemblyVisual::Build(root(), assembly); },
                ThrowsMessage<std::runtime_error>(StrEq("Not stl file")));
    EXPECT_TRUE(scene().visuals.contains(bad->id));
    EXPECT_FALSE(scene().visuals.contains(late->id));
}

TEST_F(AssemblyVisuals, OnlyAContainerCanBeBuilt) {
    const std::size_t nodes = root()->node->getChildren().size();
    sdf::SdfNode bare(sdf::ObjectType::Assembly, "bare", "assembly");
    EXPECT_THROW(AssemblyVisual::Build(root(), &bare), std::bad_cast);
    EXPECT_EQ(root()->node->getChildren().size(), nodes);
}

class NestedAssembly : public StationObjects {
protected:
    void SetUp() override {
        StationObjects::SetUp();
        layout::Part* firstModel = makeBoxPart("first");
        layout::Part* deepModel = makeBoxPart("deep");
        layout::Assembly* innerModel = makeAssembly("inner", {deepModel});
        layout::Assembly* outerModel = makeAssembly("outer", {firstModel, innerModel});
        AssemblyVisual::Build(root(), outerModel);
        first = visualOf(firstModel);
        deep = visualOf(deepModel);
        inner = visualOf(innerModel);
        outer = visualOf(outerModel);
    }
    [[nodiscard]] std::vector<Visual*> withFrames() const {
        std::vector<Visual*> shown;
        for (Visual* owner : {outer, inner, first, deep})
            if (ShowsFrame(owner)) shown.push_back(owner);
        return shown;
    }

    Visual *first = nullptr, *deep = nullptr, *inner = nullptr, *outer = nullptr;
};

TEST_F(NestedAssembly, SelectingTurnsEveryPartAndShowsTheOutermostFrameAlone) {
    Select(outer);
    pump();
    EXPECT_EQ(LookOf(first), "BodySelected");
    EXPECT_EQ(LookOf(deep), "BodySelected");
    EXPECT_THAT(withFrames(), ElementsAre(outer));
    scene().clearSelections();
    pump();
    EXPECT_EQ(LookOf(first), "Body");
    EXPECT_EQ(LookOf(deep), "Body");
    EXPECT_THAT(withFrames(), ElementsAre());
}

TEST_F(NestedAssembly, APartSelectedByItselfShowsItsOwnFrame) {
    Select(deep);
    pump();
    EXPECT_THAT(withFrames(), ElementsAre(deep));
    EXPECT_EQ(LookOf(first), "Body");
    Select(outer);
    pump();
    EXPECT_THAT(withFrames(), ElementsAre(outer));
    Select(inner);
    pump();
    EXPECT_THAT(withFrames(), ElementsAre(inner));
}

TEST_F(NestedAssembly, SelectingAnAssemblyAndAPartInsideShowsTheOuterFrame) {
    scene().setVisualsSelected({outer->id, first->id});
    pump();
    EXPECT_THAT(withFrames(), ElementsAre(outer));
    scene().clearSelections();
    pump();
    EXPECT_THAT(withFrames(), ElementsAre());
}

TEST_F(NestedAssembly, HighlightingLeavesASelectedPartAlone) {
    Select(deep);
    pump();
    scene().setVisualHighlighted(outer);
    pump();
    EXPECT_EQ(LookOf(first), "BodyHighlighted");
    EXPECT_EQ(LookOf(deep), "BodySelected");
    EXPECT_THAT(withFrames(), ElementsAre(deep));
    scene().clearHighlightedVisual();
    pump();
    EXPECT_EQ(LookOf(first), "Body");
    EXPECT_EQ(LookOf(deep), "BodySelected");
    EXPECT_THAT(withFrames(), ElementsAre(deep));
}

TEST_F(NestedAssembly, AContactBelowComesBackWhenHighlightAndSelectionGo) {
    scene().setCollision(deep->id, true);
    scene().setVisualHighlighted(outer);
    pump();
    EXPECT_EQ(LookOf(deep), "BodyHighlighted");
    scene().clearHighlightedVisual();
    pump();
    EXPECT_EQ(LookOf(deep), "CollisionContact");
    EXPECT_EQ(LookOf(first), "Body");
    Select(inner);
    pump();
    EXPECT_EQ(LookOf(deep), "BodySelected");
    scene().clearSelections();
    pump();
    EXPECT_EQ(LookOf(deep), "CollisionContact");
}

TEST_F(NestedAssembly, AMaterialOnACompoundLeavesTheStatesBelowInPlace) {
    scene().setCollision(deep->id, true);
    scene().bodyVisualUseMaterial(outer->id, "Axis");
    scene().bodyVisualUseMaterial(findBelow(first, VisualType::Mesh)->id, "KUKA");
    scene().setVisualCollisionEmphasizeState(inner->id,
                                             visual::Scene::VisualCollisionState::GroupA);
    pump();
    EXPECT_EQ(LookOf(deep), "CollisionContact");
    EXPECT_EQ(LookOf(first), "KUKA");
}

TEST_F(NestedAssembly, HighlightingLeavesASelectedBodyAlone) {
    Visual* body = findBelow(first, VisualType::Mesh);
    Select(body);
    pump();
    first->setHighlighted();
    EXPECT_EQ(LookOf(first), "BodySelected");
}

TEST_F(NestedAssembly, AnAttachedPartKeepsItsLookInASelectedAssembly) {
    deep->attached = true;
    Select(outer);
    pump();
    EXPECT_EQ(LookOf(deep), "Body");
    EXPECT_EQ(LookOf(first), "BodySelected");
}

TEST_F(NestedAssembly, ResettingGoesAllTheWayDown) {
    outer->setHighlighted();
    EXPECT_EQ(LookOf(deep), "BodyHighlighted");
    outer->resetAppearance();
    EXPECT_EQ(LookOf(deep), "Body");
    EXPECT_EQ(LookOf(first), "Body");
}

TEST_F(NestedAssembly, ACopyHasTheWholeTreeInThePreviewLook) {
    auto* target = new Visual("target", root());
    Visual* copy = *outer->copy(target);
    EXPECT_EQ(copy->getBodiesNum(), 2u);
    EXPECT_EQ(copy->getTrianglesNum(), 24u);
    const auto* mesh = dynamic_cast<MeshVisual*>(findBelow(copy, VisualType::Mesh));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getEntity()->getSubEntity(0)->getMaterialName(), "TransBody");
    EXPECT_TRUE(mesh->copied);
    copy->clearCopiedChildren();
    EXPECT_EQ(outer->getBodiesNum(), 2u);
}

}  // namespace vrn::test
