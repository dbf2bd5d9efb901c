#include "visual/handle/DragHandle.h"

#include <array>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <OgreEntity.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "tests/support/EngineFixture.h"
#include "view/Camera.h"
#include "visual/geometry/Hex2RGB.h"
#include "visual/handle/HandleMeshVisual.h"
#include "visual/handle/PathEndsHandle.h"
#include "visual/handle/VectorHandle.h"

namespace vrn::test {

using selection::VisualSelection;
using visual::DragHandle;
using visual::MeshVisual;
using visual::Visual;
using Type = DragHandle::HandleType;
using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using Pixel = rob::Vec2Template<float>;

namespace {

Ogre::Vector4 ColourOf(const MeshVisual* part) {
    return part->getEntity()->getSubEntity(0)->getCustomParameter(0);
}

Ogre::Vector4 Opaque(const std::string& hex) {
    const auto c = visual::Hex2RGB(hex);
    return {c.r, c.g, c.b, 1};
}

bool IsDrawn(const MeshVisual* part) { return part->getEntity()->isVisible(); }

}  // namespace

/// The one handle, attached to nothing and as at its start.
class DragHandleTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        handle = DragHandle::Get();
    }
    void TearDown() override {
        handle->detach();
        scene().attachedGui = nullptr;
        handle->resetMode();
        handle->setAssistHandleVisible(false);
        VisualSelection::Get()->setCompoundObjectEnabled(handle, false);
        EngineTest::TearDown();
    }
    std::vector<MeshVisual*> mains() const {
        return {handle->handleX,    handle->handleY,     handle->handleZ,
                handle->handleRoll, handle->handlePitch, handle->handleYaw};
    }
    std::vector<MeshVisual*> assists() const {
        return {handle->assistRoll, handle->assistPitch, handle->assistYaw};
    }
    /// Of all nine, in the order of their numbers.
    std::string shownParts() const {
        std::string shown;
        for (const MeshVisual* part : mains()) shown += IsDrawn(part) ? 'x' : '-';
        for (const MeshVisual* part : assists()) shown += IsDrawn(part) ? 'x' : '-';
        return shown;
    }

    DragHandle* handle = nullptr;
};

TEST_F(DragHandleTest, ThereIsOneWithItsNameAttachedToNothing) {
    EXPECT_EQ(DragHandle::Get(), handle);
    EXPECT_EQ(handle->getName(), "DragHandle");
    EXPECT_EQ(handle->getParent(), nullptr);
}

TEST_F(DragHandleTest, InitRegistersItWithPriorityAndNotToBePicked) {
    EXPECT_TRUE(handle->isRegisteredInSelection());
    for (MeshVisual* part : mains()) {
        const auto* object = VisualSelection::Get()->getObject(part);
        EXPECT_TRUE(object->priority);
        EXPECT_FALSE(object->detectable);
        EXPECT_FALSE(object->enabled);
    }
}

TEST_F(DragHandleTest, BuiltAnewItIsNotPickedUntilItIsEnabled) {
    VisualSelection::Get()->setCompoundObjectEnabled(handle, true);
    DragHandle::Build();
    for (MeshVisual* part : mains()) EXPECT_FALSE(VisualSelection::Get()->getObject(part)->enabled);
}

TEST_F(DragHandleTest, TheNamesAndColoursAreThoseOfTheHostsVocabulary) {
    EXPECT_EQ(DragHandle::MATERIAL_AXIS, "Axis");
    const std::vector<std::pair<MeshVisual*, std::string>> meshes{
        {handle->handleX, "DragHandleX"},         {handle->handleY, "DragHandleY"},
        {handle->handleZ, "DragHandleZ"},         {handle->handleRoll, "DragHandleRoll"},
        {handle->handlePitch, "DragHandlePitch"}, {handle->handleYaw, "DragHandleYaw"},
        {handle->assistRoll, "RollHandleAssist"}, {handle->assistPitch, "PitchHandleAssist"},
        {handle->assistYaw, "YawHandleAssist"}};
    const std::array<std::string, 9> colours{"#F20c00", "#16A951", "#418AB4", "#F20c00", "#16A951",
                                             "#418AB4", "#F20c00", "#16A951", "#418AB4"};
    for (std::size_t i = 0; i < meshes.size(); ++i) {
        const auto& [part, mesh] = meshes[i];
        EXPECT_EQ(part->getMeshName(), mesh);
        auto expected = Opaque(colours[i]);
        if (i >= 6) expected.w = 0.1f;
        EXPECT_EQ(ColourOf(part), expected) << mesh;
        EXPECT_EQ(part->getEntity()->getRenderQueueGroup(), 80) << mesh;
        EXPECT_EQ(part->getEntity()->getSubEntity(0)->getMaterialName(), "Axis");
        EXPECT_EQ(part->getParent(), handle);
    }
}

TEST_F(DragHandleTest, EachPartHasItsNumberAndAnyOtherVisualNine) {
    int number = 0;
    for (const MeshVisual* part : mains())
        EXPECT_EQ(static_cast<int>(handle->getHandleType(part)), number++);
    for (const MeshVisual* part : assists())
        EXPECT_EQ(static_cast<int>(handle->getHandleType(part)), number++);
    EXPECT_EQ(static_cast<int>(handle->getHandleType(scene().root)), 9);
    EXPECT_EQ(static_cast<int>(handle->getHandleType(nullptr)), 9);
}

TEST_F(DragHandleTest, AnArrowEngagedChangesTheModeOnly) {
    const std::string before = shownParts();
    for (int i = 0; i < 3; ++i) {
        handle->setMode(static_cast<Type>(i));
        EXPECT_EQ(handle->getMode(), i + 1);
        EXPECT_EQ(shownParts(), before);
    }
}

TEST_F(DragHandleTest, ARingEngagedIsAloneWithItsBandAndTakesItsLongerForm) {
    handle->setMode(Type::Roll);
    EXPECT_EQ(handle->getMode(), 4);
    EXPECT_EQ(shownParts(), "---x--x--");
    EXPECT_EQ(handle->handleRoll->getMeshName(), "RollHandleMain");
    handle->resetMode();
    handle->setAssistHandleVisible(false);
    handle->setMode(handle->handlePitch);
    EXPECT_EQ(handle->getMode(), 5);
    EXPECT_EQ(shownParts(), "----x--x-");
    EXPECT_EQ(handle->handlePitch->getMeshName(), "PitchHandleMain");
    EXPECT_EQ(ColourOf(handle->handlePitch), Opaque("#16A951"));
    handle->setMode(Type::Yaw);
    EXPECT_EQ(handle->getMode(), 6);
    EXPECT_EQ(shownParts(), "-----x--x");
    EXPECT_EQ(handle->handleYaw->getMeshName(), "YawHandleMain");
    EXPECT_EQ(ColourOf(handle->handleYaw), Opaque("#418AB4"));
}

TEST_F(DragHandleTest, TheRollRingHasAColourOfItsOwnWhileItIsEngaged) {
    handle->setMode(Type::Roll);
    EXPECT_EQ(ColourOf(handle->handleRoll), Opaque("#C91F37"));
    EXPECT_EQ(handle->handleRoll->getEntity()->getRenderQueueGroup(), 80);
    handle->resetMode();
    EXPECT_EQ(ColourOf(handle->handleRoll), Opaque("#F20c00"));
}

TEST_F(DragHandleTest, WhatIsNeitherArrowNorRingEngagesNothing) {
    std::vector<const Visual*> others{scene().root, nullptr};
    for (const MeshVisual* assist : assists()) others.push_back(assist);
    for (const Visual* other : others) {
        handle->setMode(Type::X);
        handle->setMode(other);
        EXPECT_EQ(handle->getMode(), 0);
    }
}

TEST_F(DragHandleTest, ResetShowsAllArrowsAndRingsAtRestAndLeavesTheBand) {
    handle->setMode(Type::Roll);
    handle->resetMode();
    EXPECT_EQ(handle->getMode(), 0);
    EXPECT_TRUE(handle->isShown());
    EXPECT_EQ(handle->handleRoll->getMeshName(), "DragHandleRoll");
    EXPECT_EQ(shownParts(), "xxxxxxx--");
}

TEST_F(DragHandleTest, HideLeavesTheBandOfAnEngagedRing) {
    handle->setMode(Type::Yaw);
    handle->hide();
    EXPECT_FALSE(handle->isShown());
    EXPECT_EQ(shownParts(), "--------x");
    handle->setAssistHandleVisible(false);
    handle->show();
    EXPECT_EQ(shownParts(), "xxxxxx---");
}

TEST_F(DragHandleTest, AMeshClearedTwiceIsGoneAndComesBack) {
    handle->clearHandleMesh(handle->handleX);
    handle->clearHandleMesh(handle->handleX);
    EXPECT_EQ(handle->handleX->getEntity(), nullptr);
    MeshVisual* const part = handle->handleX;
    handle->resetHandle(handle->handleX, "DragHandleX", "#F20c00");
    EXPECT_EQ(handle->handleX, part);
    EXPECT_EQ(ColourOf(part), Opaque("#F20c00"));
    EXPECT_EQ(part->getEntity()->getRenderQueueGroup(), 80);
}

TEST_F(DragHandleTest, APartThatIsNullIsRefused) {
    MeshVisual* none = nullptr;
    EXPECT_THROW(handle->clearHandleMesh(none), std::invalid_argument);
    EXPECT_THROW(handle->resetHandle(none, "DragHandleX", "#F20c00"), std::invalid_argument);
    EXPECT_THROW(handle->setRotationStyle(none, "DragHandleX", "#F20c00"), std::invalid_argument);
    EXPECT_EQ(shownParts(), "xxxxxx---");
}

TEST_F(DragHandleTest, APartOfAnUnknownMeshIsNotMade) {
    MeshVisual* none = nullptr;
    const std::size_t children = handle->getChildren().size();
    EXPECT_ANY_THROW(handle->setHandle(none, "NoSuchMesh", "#F20c00"));
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(handle->getChildren().size(), children);
}

TEST_F(DragHandleTest, AfterInitNoHandleHangsInTheScene) {
    EXPECT_FALSE(handle->node->isInSceneGraph());
    EXPECT_FALSE(visual::VectorHandle::Get()->node->isInSceneGraph());
    EXPECT_FALSE(visual::PathEndsHandle::Get()->node->isInSceneGraph());
}

TEST_F(DragHandleTest, ViewsOfTheSceneDoNotFrameIt) {
    Visual* part = showBoxPart("carrier");
    lookFrom({900, -1200, 700}, {0, 0, 0});
    frame();
    const auto before = scene().getViewAllPose();
    scene().attachGuiTo(handle, part->id, {{400, 0, 0}, {}});
    frame();
    EXPECT_EQ(scene().getViewAllPose(), before);
}

TEST_F(DragHandleTest, TheFacadeShowsHidesAndResetsInItsTurn) {
    scene().hideDragHandle();
    EXPECT_EQ(shownParts(), "xxxxxx---");
    pump();
    EXPECT_EQ(shownParts(), "---------");
    scene().showDragHandle();
    pump();
    EXPECT_EQ(shownParts(), "xxxxxx---");
    handle->setMode(Type::Pitch);
    scene().resetDragHandle();
    pump();
    EXPECT_EQ(handle->getMode(), 0);
}

TEST_F(DragHandleTest, AttachingHangsItUnderAVisualInALocalPose) {
    Visual* part = showBoxPart("carrier", {{100, 0, 0}, {}});
    scene().attachGuiTo(handle, part->id, {{0, 0, 50}, {}});
    pump();
    EXPECT_EQ(handle->getParent(), part);
    EXPECT_EQ(handle->getWorldPosition(), (Pos{100, 0, 50}));
    EXPECT_EQ(scene().attachedGui, handle);
    scene().detachGui(handle);
    pump();
    EXPECT_EQ(handle->getParent(), nullptr);
    EXPECT_EQ(scene().attachedGui, nullptr);
    scene().attachGuiTo(handle, part, {});
    pump();
    EXPECT_EQ(handle->getParent(), part);
}

TEST_F(DragHandleTest, AttachingToAnUnknownIdThrowsInTheTask) {
    scene().attachGuiTo(handle, 987654321u, {});
    EXPECT_THAT([] { scene().processMsgs(); },
                testing::ThrowsMessage<std::out_of_range>("unordered_map::at"));
    EXPECT_EQ(scene().attachedGui, nullptr);
}

TEST_F(DragHandleTest, NullForAHandleOrWhatItHangsOnIsRefusedOnTheCaller) {
    EXPECT_THROW(scene().attachGuiTo(nullptr, scene().root, {}), std::invalid_argument);
    EXPECT_THROW(scene().attachGuiTo(handle, static_cast<Visual*>(nullptr), {}),
                 std::invalid_argument);
    EXPECT_THROW(scene().attachGuiTo(nullptr, 1u, {}), std::invalid_argument);
    EXPECT_THROW(scene().detachGui(nullptr), std::invalid_argument);
}

TEST_F(DragHandleTest, SurvivesTheRemovalOfWhatItHangsOnUnattachedAndNotToBePicked) {
    Visual* part = showBoxPart("carrier");
    Visual* body = findBelow(part, VisualType::Mesh);
    scene().attachGuiTo(handle, body->id, {});
    VisualSelection::Get()->setCompoundObjectEnabled(handle, true);
    pump();
    scene().removeVisual(part->id);
    pump();
    EXPECT_EQ(handle->getParent(), nullptr);
    EXPECT_EQ(scene().attachedGui, nullptr);
    EXPECT_FALSE(VisualSelection::Get()->getObject(handle->handleX)->enabled);
    EXPECT_EQ(DragHandle::Get()->handleX->getMeshName(), "DragHandleX");
}

TEST_F(DragHandleTest, SurvivesAlsoWhenAnotherHandleHasTakenItsPlaceAsTheAttachedOne) {
    Visual* part = showBoxPart("carrier");
    auto* const other = visual::VectorHandle::Get();
    scene().attachGuiTo(handle, part->id, {});
    scene().attachGuiTo(other, scene().root, {});
    VisualSelection::Get()->setCompoundObjectEnabled(handle, true);
    scene().removeVisual(part->id);
    pump();
    EXPECT_EQ(handle->getParent(), nullptr);
    EXPECT_FALSE(VisualSelection::Get()->getObject(handle->handleX)->enabled);
    EXPECT_EQ(scene().attachedGui, other);
    EXPECT_EQ(other->getParent(), scene().root);
    other->detach();
}

TEST_F(DragHandleTest, SurvivesItsOwnDeletionAlsoWhileItCarriesAnotherHandle) {
    auto* const other = visual::VectorHandle::Get();
    scene().attachGuiTo(other, scene().root, {});
    scene().attachGuiTo(handle, other, {});
    pump();
    scene().deleteVisual(other);
    EXPECT_EQ(visual::VectorHandle::Get(), other);
    EXPECT_TRUE(scene().sceneManager->hasSceneNode("VectorHandle"));
    EXPECT_EQ(other->getParent(), nullptr);
    EXPECT_EQ(handle->getParent(), nullptr);
    EXPECT_EQ(scene().attachedGui, nullptr);
}

TEST_F(DragHandleTest, DetachingAnyHandleLeavesTheSceneWithoutAnAttachedOne) {
    auto* const other = visual::VectorHandle::Get();
    scene().attachGuiTo(other, scene().root, {});
    scene().attachGuiTo(handle, scene().root, {});
    scene().detachGui(other);
    pump();
    EXPECT_EQ(other->getParent(), nullptr);
    EXPECT_EQ(handle->getParent(), scene().root);
    EXPECT_EQ(scene().attachedGui, nullptr);
}

TEST_F(DragHandleTest, HidingAndShowingWhatItHangsOnSwitchesNoneOfItsParts) {
    Visual* part = showBoxPart("carrier");
    scene().attachGuiTo(handle, part->id, {});
    scene().hideDragHandle();
    scene().setVisualVisible(part->id, false);
    scene().setVisualVisible(part->id, true);
    pump();
    EXPECT_EQ(shownParts(), "---------");
    EXPECT_FALSE(VisualSelection::Get()->getObject(handle->handleX)->enabled);

    scene().showDragHandle();
    VisualSelection::Get()->setCompoundObjectEnabled(handle, true);
    scene().setVisualVisible(part->id, false);
    pump();
    EXPECT_EQ(shownParts(), "xxxxxx---");
    EXPECT_TRUE(VisualSelection::Get()->getObject(handle->handleX)->enabled);
}

TEST_F(DragHandleTest, ACollisionOfWhatItHangsOnLeavesItsLooks) {
    Visual* part = showBoxPart("carrier");
    scene().attachGuiTo(handle, part->id, {});
    pump();
    scene().setCollision(part->id, true);
    pump();
    EXPECT_EQ(handle->handleX->getEntity()->getSubEntity(0)->getMaterialName(), "Axis");
}

TEST_F(DragHandleTest, AnEngagedRingIsPickedInItsLongerForm) {
    scene().attachGuiTo(handle, scene().root, {});
    pump();
    auto& ring = *VisualSelection::Get()->getObject(handle->handleRoll);
    const float atRest = ring.box.getArea();
    handle->setMode(Type::Roll);
    pump();
    EXPECT_GT(ring.box.getArea(), 1.5f * atRest);
    handle->resetMode();
    pump();
    EXPECT_FLOAT_EQ(ring.box.getArea(), atRest);
}

TEST_F(DragHandleTest, DeletingTheAttachedHandleItselfOnlyDetachesIt) {
    scene().attachGuiTo(handle, scene().root, {});
    pump();
    scene().deleteVisual(handle);
    EXPECT_EQ(scene().attachedGui, nullptr);
    EXPECT_EQ(handle->getParent(), nullptr);
    EXPECT_EQ(handle->handleX->getMeshName(), "DragHandleX");
}

TEST_F(DragHandleTest, APersonMovesATurnedPartByItsArrowsWhichStayUnderTheCursor) {
    const rob::RotationTemplate<double> turn(0.5, rob::DirTemplate<double>{0, 0.6, 0.8});
    Visual* part = showBoxPart("carrier", {{30, 20, 0}, turn});
    lookFrom({900, -1200, 700}, {0, 0, 0});
    scene().attachGuiTo(handle, part->id, {});
    VisualSelection::Get()->setCompoundObjectEnabled(handle, true);
    frame();
    pump();

    const std::vector<std::pair<MeshVisual*, Vec>> arrows{
        {handle->handleX, {1, 0, 0}}, {handle->handleY, {0, 1, 0}}, {handle->handleZ, {0, 0, 1}}};
    for (const auto& [arrow, axis] : arrows) {
        const Vec along = handle->getWorldRotation() * axis;
        Pos grabbed = handle->getWorldPosition() + along * (100 * handle->node->getScale().x);
        Pixel cursor = project(grabbed);
        const auto hit = VisualSelection::Get()->select(cursor.x, cursor.y);
        ASSERT_EQ(hit.visual, arrow);
        handle->setMode(hit.visual);
        for (int step = 0; step < 5; ++step) {
            const Pixel ahead = project(grabbed + along * 37.0f);
            const Vec way =
                visual::GuiVisual::MouseDisplacement(cursor, ahead, handle->getWorldPose(), axis);
            part->setWorldPosition(part->getWorldPosition() + way);
            grabbed = grabbed + way;
            cursor = ahead;
            const Pixel seen = project(grabbed);
            EXPECT_NEAR(seen.x, cursor.x, 0.5f);
            EXPECT_NEAR(seen.y, cursor.y, 0.5f);
            EXPECT_NEAR(way.dot(along), 37.0f, 0.5f);
        }
        handle->resetMode();
        frame();
        pump();
        EXPECT_EQ(VisualSelection::Get()->select(cursor.x, cursor.y).visual, arrow);
    }
}

TEST_F(DragHandleTest, TheArrowsAreDrawnInTheirColoursInFrontOfThePart) {
    Visual* part = showBoxPart("carrier");
    lookFrom({900, -1200, 700}, {0, 0, 0});
    scene().attachGuiTo(handle, part->id, {});
    scene().setHandleScale(6);
    frame();
    const auto picture = frame();
    const float scale = handle->node->getScale().x;
    const auto colourAt = [&](const Pos& world) {
        const Pixel at = project(world);
        return picture.at(static_cast<int>(at.x), static_cast<int>(at.y));
    };
    // The part's half-width is 50: the arrows' roots are inside of it, and yet are seen.
    const auto red = colourAt({100 * scale, 0, 0}), green = colourAt({0, 100 * scale, 0}),
               blue = colourAt({0, 0, 100 * scale});
    EXPECT_GT(red.r, red.g + 60);
    EXPECT_GT(green.g, green.r + 60);
    EXPECT_GT(blue.b, blue.r + 60);
}

}  // namespace vrn::test
