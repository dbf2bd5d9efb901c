#include <gmock/gmock.h>

// The compositor headers use what these two declare without including them.
#include <OgreIteratorWrapper.h>
#include <OgreTexture.h>

#include <OgreCompositorChain.h>
#include <OgreCompositorInstance.h>
#include <OgreCompositorManager.h>
#include <OgreEntity.h>
#include <OgreSceneManager.h>
#include <OgreSubEntity.h>

#include "suite/broker/SignalBroker.h"
#include "suite/layout/Body.h"
#include "suite/task/DataItem.h"
#include "suite/task/Operation.h"
#include "suite/task/Task.h"
#include "tests/support/EngineFixture.h"
#include "tests/visual/ProbeVisual.h"
#include "view/Camera.h"
#include "visual/geometry/MeshVisual.h"

namespace vrn::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Property;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::MeshVisual;
using visual::Scene;
using visual::Visual;
using visual::VisualStateLayer;

using enum VisualStateLayer;

const auto isUnknownId = ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at"));
constexpr std::uint32_t unknownId = 0x7FFF'0001;

std::string MaterialOf(const Visual* mesh) {
    return dynamic_cast<const MeshVisual&>(*mesh).getEntity()->getSubEntity(0)->getMaterialName();
}

Ogre::Vector4 ColourOf(const Visual* mesh) {
    return dynamic_cast<const MeshVisual&>(*mesh).getEntity()->getSubEntity(0)->getCustomParameter(
        0);
}

/// Counts the posts of its life.
class PostCounter {
public:
    [[nodiscard]] int get() const { return posts; }

private:
    int posts = 0;
    broker::Subscription counting = broker::SignalBroker::onUpdateScene([this] { ++posts; });
};

/// Notes in which order several visuals are selected.
class OrderProbe : public Visual {
public:
    OrderProbe(std::uint32_t idIn, std::vector<std::uint32_t>& orderIn)
        : Visual(idIn, Scene::Get()->root), order(orderIn) {
        Scene::Get()->visuals[idIn] = this;
    }
    void setSelected() override { order.push_back(id); }

private:
    std::vector<std::uint32_t>& order;
};

}  // namespace

class SceneAppearance : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        part = showBoxPart("bracket");
        mesh = findBelow(part, VisualType::Mesh);
    }
    Visual* showAnother() { return findBelow(showBoxPart("another"), VisualType::Mesh); }
    static bool has(const Visual* visual, VisualStateLayer layer) {
        return scene().stateManager->hasLayer(visual, layer);
    }
    static bool isOutlineOn() {
        auto& compositors = Ogre::CompositorManager::getSingleton();
        Ogre::Viewport* viewport = visual::Camera::Get()->viewport;
        if (!compositors.hasCompositorChain(viewport)) return false;
        Ogre::CompositorChain* chain = compositors.getCompositorChain(viewport);
        const std::size_t at = chain->getCompositorPosition("BorderHighlight");
        return at != Ogre::CompositorChain::NPOS && chain->getCompositor(at)->getEnabled();
    }

    Visual* part = nullptr;
    Visual* mesh = nullptr;
};

// --- highlight

TEST_F(SceneAppearance, HighlightingShowsTheBodiesAndClearingRestoresThem) {
    scene().setVisualHighlighted(part);
    EXPECT_EQ(MaterialOf(mesh), "Body");
    pump();
    EXPECT_EQ(MaterialOf(mesh), "BodyHighlighted");
    EXPECT_TRUE(has(part, Highlighted));
    scene().clearHighlightedVisual();
    pump();
    EXPECT_EQ(MaterialOf(mesh), "Body");
    EXPECT_FALSE(has(part, Highlighted));
}

TEST_F(SceneAppearance, HighlightingTheSameVisualTwicePostsOneTask) {
    const PostCounter posts;
    scene().setVisualHighlighted(part);
    scene().setVisualHighlighted(part);
    scene().setVisualHighlighted(part->id);
    EXPECT_EQ(posts.get(), 1);
}

TEST_F(SceneAppearance, AHighlightReplacesTheFormerOne) {
    const Visual* another = showAnother();
    scene().setVisualHighlighted(part);
    const PostCounter posts;
    scene().setVisualHighlighted(another->getParent());
    EXPECT_EQ(posts.get(), 2);  // the clearing and the new one
    pump();
    EXPECT_EQ(MaterialOf(mesh), "Body");
    EXPECT_EQ(MaterialOf(another), "BodyHighlighted");
}

TEST_F(SceneAppearance, HighlightingNullClears) {
    scene().setVisualHighlighted(part);
    pump();
    scene().setVisualHighlighted(nullptr);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "Body");
    const PostCounter posts;
    scene().setVisualHighlighted(nullptr);
    scene().clearHighlightedVisual();
    scene().clearHighlightedBody();
    EXPECT_EQ(posts.get(), 0);
}

TEST_F(SceneAppearance, ClearingForgetsAtOnceSoThatTheSameVisualCanBeHighlightedAgain) {
    scene().setVisualHighlighted(part);
    scene().clearHighlightedBody();
    scene().setVisualHighlighted(part);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "BodyHighlighted");
}

TEST_F(SceneAppearance, WhatIsSelectedDoesNotHighlight) {
    scene().setVisualSelected(part->id);
    pump();
    const PostCounter posts;
    scene().setVisualHighlighted(part);
    scene().setVisualHighlighted(mesh);  // the child of a selected part
    EXPECT_EQ(posts.get(), 0);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "BodySelected");
    EXPECT_FALSE(has(mesh, Highlighted));
}

TEST_F(SceneAppearance, AimingAtWhatIsSelectedClearsTheFormerHighlight) {
    const Visual* another = showAnother();
    scene().setVisualSelected(part->id);
    pump();
    scene().setVisualHighlighted(another->getParent());
    pump();
    scene().setVisualHighlighted(part);
    pump();
    EXPECT_EQ(MaterialOf(another), "Body");
}

TEST_F(SceneAppearance, AVisualRemovedBeforeItsTurnIsNotFollowed) {
    scene().removeVisual(part->id);
    scene().setVisualHighlighted(part);
    scene().bodyVisualUseMaterial(part->id, "Glass");
    scene().bodyVisualUseDefaultMaterial(part->id);
    scene().setVisualCollisionEmphasizeState(part->id, Scene::VisualCollisionState::GroupA);
    scene().setCollision(part->id, true);
    scene().setCollisionHighlights({part->id}, true);
    EXPECT_NO_THROW(pump());
    scene().clearHighlightedVisual();
    scene().clearAllCollisionContacts();
    EXPECT_NO_THROW(pump());
}

// --- selection

TEST_F(SceneAppearance, SelectingIsSeenAfterTheTaskRan) {
    scene().setVisualSelected(part);
    EXPECT_FALSE(scene().isSelected(part));
    pump();
    EXPECT_TRUE(scene().isSelected(part));
    EXPECT_TRUE(scene().isSelected(mesh));
    EXPECT_TRUE(has(part, Selected));
    EXPECT_EQ(MaterialOf(mesh), "BodySelected");
    EXPECT_TRUE(isOutlineOn());
}

TEST_F(SceneAppearance, ClearingTheSelectionRestoresTheLookAndTurnsTheOutlineOff) {
    scene().setVisualSelected(part->id);
    pump();
    scene().clearSelectedVisuals();
    pump();
    EXPECT_FALSE(scene().isSelected(part));
    EXPECT_FALSE(has(part, Selected));
    EXPECT_EQ(MaterialOf(mesh), "Body");
    EXPECT_FALSE(isOutlineOn());
}

TEST_F(SceneAppearance, ASelectionReplacesTheFormerOne) {
    const Visual* another = showAnother();
    scene().setVisualSelected(part->id);
    scene().setVisualSelected(another->getParent()->id);
    pump();
    EXPECT_FALSE(scene().isSelected(part));
    EXPECT_TRUE(scene().isSelected(another));
    EXPECT_EQ(MaterialOf(mesh), "Body");
    EXPECT_EQ(MaterialOf(another), "BodySelected");
}

TEST_F(SceneAppearance, SelectingClearsTheHighlight) {
    const Visual* another = showAnother();
    scene().setVisualHighlighted(another->getParent());
    pump();
    scene().setVisualSelected(part->id);
    pump();
    EXPECT_EQ(MaterialOf(another), "Body");
}

TEST_F(SceneAppearance, SeveralAreSelectedInOnePlace) {
    const Visual* another = showAnother();
    scene().setVisualsSelected({part->id, another->id});
    pump();
    EXPECT_TRUE(scene().isSelected(part));
    EXPECT_TRUE(scene().isSelected(another));
    EXPECT_FALSE(scene().isSelected(another->getParent()));
}

TEST_F(SceneAppearance, AnEmptyListStillTurnsTheOutlineOn) {
    scene().setVisualSelected(part->id);
    scene().setVisualsSelected({});
    pump();
    EXPECT_FALSE(scene().isSelected(part));
    EXPECT_TRUE(isOutlineOn());
}

TEST_F(SceneAppearance, AStaleIdIsSkippedWhenTheSelectionClears) {
    const Visual* another = showAnother();
    scene().setVisualsSelected({part->id, another->id});
    scene().removeVisual(part->id);
    pump();
    scene().clearSelectedVisuals();
    EXPECT_NO_THROW(pump());
    EXPECT_EQ(MaterialOf(another), "Body");
}

TEST_F(SceneAppearance, TheWalkForSelectionStopsAtTheFirstTopLevelVisual) {
    Visual* root = scene().root;
    scene().visuals[root->id] = root;
    scene().setVisualSelected(root->id);
    pump();
    EXPECT_TRUE(scene().isSelected(root));
    EXPECT_FALSE(scene().isSelected(part));
    EXPECT_FALSE(scene().isSelected(nullptr));
    scene().clearSelections();
    pump();
    scene().visuals.erase(root->id);
}

TEST_F(SceneAppearance, AnUnknownIdThrowsInsideTheBatch) {
    EXPECT_NO_THROW(scene().setVisualSelected(unknownId));
    EXPECT_THAT([] { pump(); }, isUnknownId);
}

TEST_F(SceneAppearance, NullIsNoVisualToSelect) {
    EXPECT_THROW(scene().setVisualSelected(nullptr), std::invalid_argument);
}

TEST_F(SceneAppearance, ATaskStandsForItsPathsToolsWorkObjectsJointTargetsAndRobot) {
    auto* job = model.make<task::Task>("job");
    std::vector<std::uint32_t> order;
    const auto add = [&]<class T>(const char* name) {
        auto* item = model.make<T>(name);
        job->addChild(*item);
        new OrderProbe(item->id, order);
        return item->id;
    };
    // Deliberately not in the order of selection.
    const auto joint1 = add.operator()<task::JointTargetDataItem>("j1");
    const auto wobj1 = add.operator()<task::WObjDataItem>("w1");
    const auto tool1 = add.operator()<task::ToolDataItem>("t1");
    const auto path1 = add.operator()<task::Path>("p1");
    add.operator()<task::RobTargetDataItem>("target");
    const auto path2 = add.operator()<task::Path>("p2");
    const auto tool2 = add.operator()<task::ToolDataItem>("t2");
    const auto wobj2 = add.operator()<task::WObjDataItem>("w2");
    const auto joint2 = add.operator()<task::JointTargetDataItem>("j2");
    const std::uint32_t robot = sdf::SdfManager::inst()->generateId();
    new OrderProbe(robot, order);
    job->setManipulatorId(robot);

    scene().setVisualSelected(job->id);
    pump();
    EXPECT_THAT(order,
                ElementsAre(path1, path2, tool1, tool2, wobj1, wobj2, joint1, joint2, robot));
    scene().clearSelections();
    pump();
}

TEST_F(SceneAppearance, ATaskWithoutARobotOrVisualsSelectsNothing) {
    auto* job = model.make<task::Task>("job");
    job->addChild(*model.make<task::Path>("never shown"));
    scene().setVisualSelected(job->id);
    EXPECT_NO_THROW(pump());
    EXPECT_TRUE(isOutlineOn());
}

TEST_F(SceneAppearance, ATaskThatNamesATaskAsItsRobotIsNotGoneThroughForEver) {
    auto* job = model.make<task::Task>("job");
    auto* other = model.make<task::Task>("other");
    job->setManipulatorId(other->id);
    other->setManipulatorId(job->id);
    scene().setVisualSelected(job->id);
    EXPECT_NO_THROW(pump());
    job->setManipulatorId(job->id);
    scene().setVisualSelected(job->id);
    EXPECT_NO_THROW(pump());
}

TEST_F(SceneAppearance, AnOperationStandsForItsChildrenInListOrder) {
    auto* operation = model.make<task::Operation>("weld");
    auto* inner = model.make<task::Operation>("inner");
    std::vector<std::uint32_t> order;
    const auto add = [&](task::Operation* to) {
        auto* path = model.make<task::Path>("path");
        to->addChild(*path);
        new OrderProbe(path->id, order);
        return path->id;
    };
    const auto first = add(operation);
    operation->addChild(*inner);
    const auto nested = add(inner);
    const auto last = add(operation);
    scene().setVisualSelected(operation->id);
    pump();
    EXPECT_THAT(order, ElementsAre(first, nested, last));
    scene().clearSelections();
    pump();
}

// --- layers under one another

TEST_F(SceneAppearance, ContactUnderASelectionAppearsWhenItClears) {
    scene().setVisualSelected(mesh->id);
    scene().setCollision(part->id, true);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "BodySelected");
    scene().clearSelectedVisuals();
    pump();
    EXPECT_EQ(MaterialOf(mesh), "CollisionContact");
}

TEST_F(SceneAppearance, GroupAOutranksGroupB) {
    scene().stateManager->setLayer(mesh, EmphasizeGroupB, true, {});
    scene().stateManager->setLayer(mesh, EmphasizeGroupA, true, {});
    scene().stateManager->refresh(mesh);
    EXPECT_EQ(MaterialOf(mesh), "EmphasizeCollisionGroupA");
}

// --- materials

TEST_F(SceneAppearance, ABodyShowsACustomMaterialUntilItIsTakenBack) {
    scene().bodyVisualUseMaterial(mesh->id, "Axis");
    EXPECT_EQ(MaterialOf(mesh), "Body");
    pump();
    EXPECT_EQ(MaterialOf(mesh), "Axis");
    scene().bodyVisualUseDefaultMaterial(mesh->id);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "Body");
    EXPECT_FALSE(has(mesh, Material));
}

TEST_F(SceneAppearance, AnUnknownCustomMaterialShowsTheNormalLook) {
    scene().bodyVisualUseMaterial(mesh->id, "no such material");
    pump();
    EXPECT_EQ(MaterialOf(mesh), "Body");
}

TEST_F(SceneAppearance, AMaterialOnAPartShowsNothing) {
    scene().bodyVisualUseMaterial(part->id, "Axis");
    pump();
    EXPECT_TRUE(has(part, Material));
    EXPECT_EQ(MaterialOf(mesh), "Body");
}

// --- collision

TEST_F(SceneAppearance, TheEmphasisIsOfOneGroupOrNone) {
    using enum Scene::VisualCollisionState;
    static_assert(static_cast<int>(Scene::VisualCollisionState::None) == 0 &&
                  static_cast<int>(GroupA) == 1 && static_cast<int>(GroupB) == 2);
    scene().setVisualCollisionEmphasizeState(mesh->id, GroupA);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "EmphasizeCollisionGroupA");
    scene().setVisualCollisionEmphasizeState(mesh->id, GroupB);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "EmphasizeCollisionGroupB");
    EXPECT_FALSE(has(mesh, EmphasizeGroupA));
    scene().clearVisualCollisionEmphasizeState(mesh->id);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "Body");
}

TEST_F(SceneAppearance, ACollisionMarksTheBodiesBelow) {
    scene().setCollision(part->id, true);
    EXPECT_FALSE(has(mesh, Contact));
    pump();
    EXPECT_TRUE(has(mesh, Contact));
    EXPECT_FALSE(has(part, Contact));
    EXPECT_EQ(MaterialOf(mesh), "CollisionContact");
    scene().setCollision(part->id, false);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "Body");
}

TEST_F(SceneAppearance, BodiesOfASelectedPartAreShownSelectedAgainAfterACollision) {
    scene().setVisualSelected(part->id);
    pump();
    const std::string selected = MaterialOf(mesh);
    scene().setCollision(part->id, true);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "CollisionContact");
    scene().setCollision(part->id, false);
    pump();
    EXPECT_EQ(MaterialOf(mesh), selected);
    scene().setCollision(part->id, true);
    pump();
    scene().clearAllCollisionContacts();
    pump();
    EXPECT_EQ(MaterialOf(mesh), selected);
    scene().clearSelections();
    pump();
    EXPECT_EQ(MaterialOf(mesh), "Body");
}

TEST_F(SceneAppearance, ACollisionOfAMeshItselfMarksNothing) {
    scene().setCollision(mesh->id, true);
    pump();
    EXPECT_FALSE(has(mesh, Contact));
}

class CollisionBodies : public SceneAppearance {
protected:
    /// A visual of a type below `parent`, registered, with or without something to see.
    Visual* add(Visual* parent, VisualType type, bool withPicture) {
        const std::uint32_t id = sdf::SdfManager::GenerateTransientId();
        auto* visual = new Visual(id, parent);
        visual->type = type;
        scene().visuals[id] = visual;
        if (withPicture) {
            pictures.push_back(scene().sceneManager->createEntity("mfg_arrow"));
            pictures.back()->getSubEntity(0)->setCustomParameter(0, Ogre::Vector4(1, 1, 1, 1));
            visual->attachObject(pictures.back());
        }
        return visual;
    }
    void TearDown() override {
        for (Ogre::Entity* picture : pictures) scene().sceneManager->destroyEntity(picture);
        SceneAppearance::TearDown();
    }
    std::vector<Ogre::Entity*> pictures;
};

TEST_F(CollisionBodies, ASolidIsMarkedItselfIfItHasAPicture) {
    const Visual* shown = add(scene().root, VisualType::Solid, /*withPicture=*/true);
    const Visual* empty = add(scene().root, VisualType::Solid, /*withPicture=*/false);
    scene().setCollision(shown->id, true);
    scene().setCollision(empty->id, true);
    pump();
    EXPECT_TRUE(has(shown, Contact));
    EXPECT_FALSE(has(empty, Contact));
}

TEST_F(CollisionBodies, SolidsAndMeshesAtAnyDepthAreMarked) {
    Visual* link = add(scene().root, VisualType::Link, /*withPicture=*/true);
    const Visual* curve = add(link, VisualType::Curve, /*withPicture=*/true);
    Visual* solid = add(link, VisualType::Solid, /*withPicture=*/true);
    const Visual* deepMesh = add(solid, VisualType::Mesh, /*withPicture=*/true);
    const Visual* emptyMesh = add(solid, VisualType::Mesh, /*withPicture=*/false);
    Visual* attached = add(link, VisualType::Tool, /*withPicture=*/false);
    attached->attached = true;
    const Visual* attachedMesh = add(attached, VisualType::Mesh, /*withPicture=*/true);
    scene().setCollision(link->id, true);
    pump();
    for (const Visual* body : {static_cast<const Visual*>(solid), deepMesh, attachedMesh})
        EXPECT_TRUE(has(body, Contact));
    for (const Visual* other : {static_cast<const Visual*>(link), curve, emptyMesh})
        EXPECT_FALSE(has(other, Contact));
}

TEST_F(CollisionBodies, TheBodiesAreThoseOfTheMomentOfTheCall) {
    Visual* link = add(scene().root, VisualType::Link, /*withPicture=*/false);
    const Visual* before = add(link, VisualType::Mesh, /*withPicture=*/true);
    scene().setCollision(link->id, true);
    const Visual* after = add(link, VisualType::Mesh, /*withPicture=*/true);
    pump();
    EXPECT_TRUE(has(before, Contact));
    EXPECT_FALSE(has(after, Contact));
}

TEST_F(CollisionBodies, ABodyThatMovedToAnotherParentMeanwhileIsMarked) {
    Visual* link = add(scene().root, VisualType::Link, /*withPicture=*/false);
    auto* loose = new MeshVisual("loose", link);  // stands in no registry
    loose->attachMesh("mfg_arrow");
    scene().attachVisual(part->id, loose);
    scene().setCollision(link->id, true);
    pump();
    EXPECT_TRUE(has(loose, Contact));
}

TEST_F(SceneAppearance, NearMissesOfSeveralAreMarkedInOnePost) {
    const Visual* another = showAnother();
    const PostCounter posts;
    scene().setCollisionHighlights({part->id, another->getParent()->id}, true);
    EXPECT_EQ(posts.get(), 1);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "CollisionNearMiss");
    EXPECT_EQ(MaterialOf(another), "CollisionNearMiss");
    scene().setCollisionHighlights({part->id}, false);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "Body");
    EXPECT_EQ(MaterialOf(another), "CollisionNearMiss");
}

TEST_F(SceneAppearance, ClearingAllContactsLeavesTheNearMisses) {
    scene().setCollision(part->id, true);
    scene().setCollisionHighlights({part->id}, true);
    pump();
    EXPECT_EQ(MaterialOf(mesh), "CollisionContact");
    scene().clearAllCollisionContacts();
    pump();
    EXPECT_EQ(MaterialOf(mesh), "CollisionNearMiss");
    EXPECT_TRUE(has(mesh, NearMiss));
}

TEST_F(SceneAppearance, UnknownIdsThrowOnTheCallerAndPostNothing) {
    const PostCounter posts;
    EXPECT_THAT([] { scene().setVisualHighlighted(unknownId); }, isUnknownId);
    EXPECT_THAT([] { scene().bodyVisualUseMaterial(unknownId, "Axis"); }, isUnknownId);
    EXPECT_THAT([] { scene().bodyVisualUseDefaultMaterial(unknownId); }, isUnknownId);
    EXPECT_THAT([] { scene().clearVisualCollisionEmphasizeState(unknownId); }, isUnknownId);
    EXPECT_THAT([] { scene().setCollision(unknownId, true); }, isUnknownId);
    EXPECT_THAT([this] { scene().setCollisionHighlights({part->id, unknownId}, true); },
                isUnknownId);
    EXPECT_THAT(
        [] {
            scene().setVisualCollisionEmphasizeState(unknownId,
                                                     Scene::VisualCollisionState::GroupA);
        },
        isUnknownId);
    EXPECT_EQ(posts.get(), 0);
}

// --- colours

TEST_F(SceneAppearance, AColourReachesEveryBodyBelow) {
    scene().setVisualColor(part->id, {0.25f, 0.5f, 0.75f}, 0.5f);
    EXPECT_EQ(ColourOf(mesh), Ogre::Vector4(0xBF / 255.0f, 0xC5 / 255.0f, 0xCC / 255.0f, 1));
    pump();
    EXPECT_EQ(ColourOf(mesh), Ogre::Vector4(0.25f, 0.5f, 0.75f, 0.5f));
    scene().setVisualColor(mesh, {1, 0, 0}, 1);
    pump();
    EXPECT_EQ(ColourOf(mesh), Ogre::Vector4(1, 0, 0, 1));
    scene().resetColor(part);
    pump();
    EXPECT_EQ(ColourOf(mesh), Ogre::Vector4(0xBF / 255.0f, 0xC5 / 255.0f, 0xCC / 255.0f, 1));
    scene().resetColor(part->id);
    EXPECT_NO_THROW(pump());
}

TEST_F(SceneAppearance, AColourForAnUnknownIdThrowsInsideTheBatch) {
    scene().setVisualColor(unknownId, {1, 0, 0}, 1);
    EXPECT_THAT([] { pump(); }, isUnknownId);
    scene().resetColor(unknownId);
    EXPECT_THAT([] { pump(); }, isUnknownId);
}

// --- the small records of what is picked

TEST(PickedThings, AnEdgeIsNullWithoutItsVisual) {
    Scene::VisEdge edge;
    EXPECT_TRUE(edge.isNull());
    int anything = 0;
    edge.visual = reinterpret_cast<Visual*>(&anything);
    EXPECT_FALSE(edge.isNull());
    edge.clear();
    EXPECT_TRUE(edge.isNull());
    EXPECT_TRUE(edge.edge.IsNull());
}

TEST(PickedThings, AFaceIsASolidAndAnIndex) {
    Scene::VisFace face;
    EXPECT_TRUE(face.isNull());
    EXPECT_EQ(face.faceIndex, 0u);
    int anything = 0;
    face = {reinterpret_cast<visual::SolidVisual*>(&anything), 3};
    EXPECT_FALSE(face.isNull());
    EXPECT_EQ(face, (Scene::VisFace{face.solid, 3}));
    EXPECT_NE(face, (Scene::VisFace{face.solid, 4}));
    EXPECT_NE(face, (Scene::VisFace{nullptr, 3}));
    face.clear();
    EXPECT_EQ(face, Scene::VisFace{});
}

}  // namespace vrn::test
