#include "visual/station/InstanceFrameVisual.h"

#include <gmock/gmock.h>

// The instance manager uses what this declares without including it.
#include <OgreIteratorWrapper.h>

#include <OgreException.h>
#include <OgreHardwareIndexBuffer.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreInstanceBatch.h>
#include <OgreInstancedEntity.h>
#include <OgreInstanceManager.h>
#include <OgreRenderOperation.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreVertexIndexData.h>

#include <memory>
#include <vector>

#include "selection/SelectableObject.h"
#include "selection/SensitiveLine.h"
#include "selection/VisualSelection.h"
#include "tests/visual/InstanceFixture.h"

namespace vrn::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::InstanceFrameVisual;
using visual::Visual;

constexpr const char* normalLook = "InstanceRobTarget";
constexpr const char* highlightedLook = "InstanceRobTargetHighlight";
constexpr const char* selectedLook = "InstanceRobTargetSelected";

class InstanceFrames : public InstanceVisuals {
protected:
    static Ogre::Vector3 scaleOf(const Target* target, const std::string& look) {
        return looksOf(target).at(look)->getScale();
    }
    /// Of the axis that is picked last, z.
    static float pickedAxisLength(Visual* target) {
        const auto* object = selection::VisualSelection::Get()->getObject(target);
        return dynamic_cast<selection::SensitiveLine&>(*object->primitives.back()).end.z;
    }
    static auto isUnknownKey() {
        return ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at"));
    }
};

TEST_F(InstanceFrames, ATargetCostsOneInstanceUntilItIsMarked) {
    const Target* target = addTarget(800001);
    EXPECT_EQ(target->type, VisualType::RobTarget);
    EXPECT_EQ(target->id, 800001u);
    EXPECT_EQ(target->getName(), "target 800001");
    EXPECT_EQ(instancesInUse(), 1u);
    EXPECT_THAT(shownLooks(target), ElementsAre(normalLook));
}

TEST_F(InstanceFrames, TheSizeIsTheSettingOfTheType) {
    scene().settings.robTargetFrameSize = 21;
    scene().settings.jointTargetFrameSize = 22;
    EXPECT_EQ(mainOf(addTarget(1))->getScale(), Ogre::Vector3(21));
    EXPECT_EQ(mainOf(addTarget(2, VisualType::JointTarget))->getScale(), Ogre::Vector3(22));
    EXPECT_EQ(mainOf(addTarget(3, VisualType::Sensor))->getScale(), Ogre::Vector3(0));
    EXPECT_EQ(addTarget(4)->getFrameSize(), 21.0f);
}

TEST_F(InstanceFrames, EveryLookIsDrawnInTheQueueGroupOfLines) {
    Target* target = addTarget(1);
    target->setSelected();
    target->setHighlighted();
    for (const auto& [material, look] : looksOf(target))
        EXPECT_EQ(look->_getOwner()->getRenderQueueGroup(), 60) << material;
}

TEST_F(InstanceFrames, EveryLookAsksForTheColoursOfTheMesh) {
    Target* target = addTarget(1);
    target->setSelected();
    target->setHighlighted();
    for (const auto& [material, look] : looksOf(target))
        EXPECT_LT(look->_getOwner()->getCustomParameter(0).w, 0) << material;
}

// --- refusals

TEST_F(InstanceFrames, AnUnknownMaterialThrowsAndNothingIsLeft) {
    const auto before = traces();
    EXPECT_THAT(
        [] { InstanceFrameVisual(root(), 1, "x", VisualType::RobTarget, "NoSuchMaterial"); },
        ThrowsMessage<Ogre::ItemIdentityException>(HasSubstr("NoSuchMaterial")));
    EXPECT_EQ(traces(), before);
    EXPECT_EQ(instancesInUse(), 0u);
    EXPECT_NO_THROW(frame());
}

TEST_F(InstanceFrames, AMissingManagerThrowsAndNothingIsLeft) {
    const auto before = traces();
    auto taken = scene().instanceManagers.extract("VRN_FrameInstanceManager");
    EXPECT_THAT([] { InstanceFrameVisual(root(), 1, "x", VisualType::RobTarget, normalLook); },
                isUnknownKey());
    scene().instanceManagers.insert(std::move(taken));
    EXPECT_EQ(traces(), before);
}

TEST_F(InstanceFrames, AMissingManagerOfALookThrowsAndTheShownOneStays) {
    Target* target = addTarget(1);
    auto taken = scene().instanceManagers.extract(selectedLook);
    EXPECT_THAT([&] { target->setSelected(); }, isUnknownKey());
    scene().instanceManagers.insert(std::move(taken));
    EXPECT_THAT(shownLooks(target), ElementsAre(normalLook));
}

TEST_F(InstanceFrames, ATakenNameThrowsAndTheFirstStays) {
    const Target* first = addTarget(1);
    EXPECT_THROW(
        InstanceFrameVisual(root(), 1, first->getName(), VisualType::RobTarget, normalLook),
        Ogre::ItemIdentityException);
    EXPECT_EQ(instancesInUse(), 1u);
}

// --- looks

TEST_F(InstanceFrames, OneOfThreeLooksIsShown) {
    Target* target = addTarget(1);
    target->setHighlighted();
    EXPECT_THAT(shownLooks(target), ElementsAre(highlightedLook));
    target->setSelected();
    EXPECT_THAT(shownLooks(target), ElementsAre(selectedLook));
    target->setHighlighted();
    EXPECT_THAT(shownLooks(target), ElementsAre(highlightedLook));
    target->resetAppearance();
    EXPECT_THAT(shownLooks(target), ElementsAre(normalLook));
}

TEST_F(InstanceFrames, ALookOnceMadeIsKept) {
    Target* target = addTarget(1);
    target->setSelected();
    target->resetAppearance();
    EXPECT_EQ(instancesInUse(), 2u);
    target->setSelected();
    target->setHighlighted();
    target->setHighlighted();
    EXPECT_EQ(instancesInUse(), 3u);
}

TEST_F(InstanceFrames, ALookFollowsSelectionAndHighlight) {
    Target* target = addTarget(1);
    scene().setVisualHighlighted(target);
    pump();
    EXPECT_THAT(shownLooks(target), ElementsAre(highlightedLook));
    scene().setVisualSelected(target);
    pump();
    EXPECT_THAT(shownLooks(target), ElementsAre(selectedLook));
    scene().clearSelections();
    pump();
    EXPECT_THAT(shownLooks(target), ElementsAre(normalLook));
}

TEST_F(InstanceFrames, ASelectedTargetHiddenAndShownAgainHasItsNormalLook) {
    Target* target = addTarget(1);
    target->setSelected();
    target->setHighlighted();
    target->setSelected();
    target->setVisible(false, /*cascade=*/false);
    EXPECT_THAT(shownLooks(target), ElementsAre());
    EXPECT_FALSE(target->visible);
    target->setVisible(true, /*cascade=*/false);
    EXPECT_THAT(shownLooks(target), ElementsAre(normalLook));
}

TEST_F(InstanceFrames, ClearingTheLookOfAHiddenTargetKeepsItHidden) {
    Target* target = addTarget(1);
    target->setVisible(false, false);
    target->clearHighlightOrSelect();
    EXPECT_THAT(shownLooks(target), ElementsAre());
    target->setVisible(true, false);
    target->setSelected();
    target->clearHighlightOrSelect();
    EXPECT_THAT(shownLooks(target), ElementsAre(normalLook));
}

TEST_F(InstanceFrames, ResettingLeavesTheFlagOfTheVisualAlone) {
    Target* target = addTarget(1);
    target->setVisible(false, false);
    target->resetAppearance();
    EXPECT_FALSE(target->visible);
    EXPECT_THAT(shownLooks(target), ElementsAre(normalLook));
}

TEST_F(InstanceFrames, ChildrenAreShownByCascadeOnly) {
    Target* target = addTarget(1);
    auto* child = new Visual(target);
    target->setVisible(false, /*cascade=*/false);
    EXPECT_TRUE(child->visible);
    target->setVisible(false, /*cascade=*/true);
    EXPECT_FALSE(child->visible);
}

TEST_F(InstanceFrames, ANewTargetIsNotBornIntoTheHiddenSlotOfAnOldOne) {
    Target* old = addTarget(1);
    old->setHighlighted();
    old->setSelected();
    old->setVisible(false, false);
    scene().deleteVisual(old);
    ASSERT_EQ(instancesInUse(), 0u);
    Target* target = addTarget(2);
    EXPECT_THAT(shownLooks(target), ElementsAre(normalLook));
    target->setSelected();
    EXPECT_THAT(shownLooks(target), ElementsAre(selectedLook));
    target->setHighlighted();
    EXPECT_THAT(shownLooks(target), ElementsAre(highlightedLook));
}

// --- sizes

TEST_F(InstanceFrames, ASizeReachesAllLooks) {
    Target* target = addTarget(1);
    target->setSelected();
    target->setHighlighted();
    target->setFrameSize(77);
    for (const char* look : {normalLook, highlightedLook, selectedLook})
        EXPECT_EQ(scaleOf(target, look), Ogre::Vector3(77)) << look;
    EXPECT_EQ(target->getFrameSize(), 77.0f);
    EXPECT_EQ(scene().settings.robTargetFrameSize, 60);
}

TEST_F(InstanceFrames, ALookMadeLaterTakesTheSettingOfTheType) {
    Target* target = addTarget(1);
    target->setFrameSize(77);
    target->setSelected();
    EXPECT_EQ(scaleOf(target, selectedLook), Ogre::Vector3(60));
}

TEST_F(InstanceFrames, ZAxesAloneAreAHundredthThickWhateverTheSize) {
    scene().settings.drawTargetZAxisOnly = true;
    Target* target = addTarget(1);
    EXPECT_EQ(scaleOf(target, normalLook), Ogre::Vector3(0.01f, 0.01f, 60));
    target->setSelected();
    EXPECT_EQ(scaleOf(target, selectedLook), Ogre::Vector3(0.01f, 0.01f, 60));
    target->setFrameSize(500);
    EXPECT_EQ(scaleOf(target, normalLook), Ogre::Vector3(0.01f, 0.01f, 500));
    EXPECT_EQ(scaleOf(target, selectedLook), Ogre::Vector3(0.01f, 0.01f, 500));
    EXPECT_EQ(target->getFrameSize(), 500.0f);
}

TEST_F(InstanceFrames, UpdatingTheInstanceTakesSettingsAndIgnoresTheArgument) {
    Target* target = addTarget(1);
    target->setFrameSize(500);
    scene().settings.drawTargetZAxisOnly = true;
    target->updateEntity(false);
    EXPECT_EQ(scaleOf(target, normalLook), Ogre::Vector3(0.01f, 0.01f, 60));
    scene().settings.drawTargetZAxisOnly = false;
    target->updateEntity(true);
    EXPECT_EQ(scaleOf(target, normalLook), Ogre::Vector3(60));
}

TEST_F(InstanceFrames, ANewSizeMakesANewSelectableObject) {
    auto* picking = selection::VisualSelection::Get();
    Target* target = addTarget(1);
    target->setFrameSize(10);
    EXPECT_FALSE(isPickable(target));  // one that was never registered stays so
    picking->addFrameVisual(target);
    pump();
    EXPECT_EQ(pickedAxisLength(target), 10);
    target->setFrameSize(90);
    EXPECT_TRUE(picking->dirty);
    pump();
    EXPECT_EQ(pickedAxisLength(target), 90);
    EXPECT_EQ(pickableCount(), 1u);
}

TEST_F(InstanceFrames, WithANewSizeWhatCouldNotBePickedOrTouchedStillCannot) {
    auto* picking = selection::VisualSelection::Get();
    Target* target = addTarget(1);
    picking->addFrameVisual(target);
    for (const bool on : {false, true}) {
        picking->setObjectEnabled(target, on);
        picking->setDetectable(target, on);
        target->setFrameSize(90);
        target->updateEntity(false);
        EXPECT_EQ(picking->getObject(target)->enabled, on);
        EXPECT_EQ(picking->getObject(target)->detectable, on);
    }
}

// --- the end

TEST_F(InstanceFrames, DeletingGivesEveryInstanceBack) {
    const auto before = traces();
    for (std::uint32_t id = 1; id <= 20; ++id) {
        Target* target = addTarget(id);
        target->setSelected();
        target->setHighlighted();
        selection::VisualSelection::Get()->addFrameVisual(target);
    }
    EXPECT_EQ(instancesInUse(), 60u);
    for (std::uint32_t id = 1; id <= 20; ++id) scene().deleteVisual(scene().visuals.at(id));
    EXPECT_EQ(instancesInUse(), 0u);
    EXPECT_EQ(traces(), before);
}

TEST_F(InstanceFrames, DestroyedDirectlyATargetLeavesTheSelection) {
    auto* target = new InstanceFrameVisual(root(), 1, "direct", VisualType::RobTarget, normalLook);
    selection::VisualSelection::Get()->addFrameVisual(target);
    delete target;
    EXPECT_EQ(pickableCount(), 0u);
    EXPECT_EQ(instancesInUse(), 0u);
}

TEST_F(InstanceFrames, FiveThousandTargetsFillOneBatch) {
    for (std::uint32_t id = 1; id <= 5001; ++id) addTarget(id);
    const auto* first = mainOf(dynamic_cast<Target*>(scene().visuals.at(1)))->_getOwner();
    EXPECT_EQ(mainOf(dynamic_cast<Target*>(scene().visuals.at(5000)))->_getOwner(), first);
    EXPECT_NE(mainOf(dynamic_cast<Target*>(scene().visuals.at(5001)))->_getOwner(), first);
}

TEST_F(InstanceFrames, EmptyBatchesStayUntilTheyAreCleanedUp) {
    for (std::uint32_t id = 1; id <= 3; ++id) addTarget(id);
    scene().deleteVisual(scene().visuals.at(3));
    scene().cleanupInstanceBatches();
    pump();
    // Batches in use were not touched.
    EXPECT_THAT(shownLooks(dynamic_cast<Target*>(scene().visuals.at(1))), ElementsAre(normalLook));
    for (std::uint32_t id = 1; id <= 2; ++id) scene().deleteVisual(scene().visuals.at(id));
    scene().cleanupInstanceBatches();
    pump();
    EXPECT_NO_THROW(addTarget(4));
    EXPECT_NO_THROW(frame());
}

class CleanedUpBatches : public InstanceFrames {
protected:
    void SetUp() override {
        InstanceFrames::SetUp();
        manager = scene().sceneManager->createInstanceManager(
            "CleanedUpBatches", "VRN_FrameMesh", Ogre::RGN_DEFAULT,
            Ogre::InstanceManager::HWInstancingBasic, batchSize, Ogre::IM_USEALL);
        scene().instanceManagers["tested"] = manager;
    }
    void TearDown() override {
        scene().instanceManagers.erase("tested");
        scene().sceneManager->destroyInstanceManager(manager);
        InstanceFrames::TearDown();
    }

    std::vector<Ogre::InstancedEntity*> add(std::size_t count, const char* look = normalLook) {
        std::vector<Ogre::InstancedEntity*> added;
        while (added.size() < count) {
            added.push_back(manager->createInstancedEntity(look));
            added.back()->setScale(Ogre::Vector3::UNIT_SCALE, /*doUpdate=*/true);
        }
        return added;
    }
    void removeAndCleanUp(const std::vector<Ogre::InstancedEntity*>& instances) {
        for (auto* instance : instances) instance->_getOwner()->removeInstancedEntity(instance);
        scene().cleanupInstanceBatches();
        pump();
    }
    static Ogre::RenderOperation drawnBy(const Ogre::InstancedEntity* instance) {
        Ogre::RenderOperation drawn;
        instance->_getOwner()->getRenderOperation(drawn);
        return drawn;
    }
    static std::weak_ptr<Ogre::HardwareIndexBuffer> indicesOf(const Ogre::InstancedEntity* one) {
        return drawnBy(one).indexData->indexBuffer;
    }
    /// What the batch of an instance has for itself: where its instances stand.
    static std::weak_ptr<Ogre::HardwareVertexBuffer> placesOf(const Ogre::InstancedEntity* one) {
        const auto& binding = *drawnBy(one).vertexData->vertexBufferBinding;
        return binding.getBuffer(static_cast<std::uint16_t>(binding.getLastBoundIndex() - 1));
    }
    [[nodiscard]] std::size_t batchCount() const {
        std::size_t count = 0;
        for (auto it = manager->getInstanceBatchMapIterator(); it.hasMoreElements();)
            count += it.getNext().size();
        return count;
    }

    static constexpr std::size_t batchSize = 10;
    Ogre::InstanceManager* manager = nullptr;
};

TEST_F(CleanedUpBatches, WhatThoseInUseDrawStays) {
    const auto first = add(batchSize), second = add(1);
    const auto indices = indicesOf(second[0]);
    removeAndCleanUp(first);
    EXPECT_FALSE(indices.expired());
    removeAndCleanUp(second);
}

TEST_F(CleanedUpBatches, WhatFurtherOnesAreCopiedFromStays) {
    auto used = add(batchSize);
    const std::size_t indexCount = drawnBy(used[0]).indexData->indexCount;
    // The last material to get its first batch is the one that all others are copied from.
    const auto other = add(1, "InstanceFrame");
    const auto copied = placesOf(other[0]);
    removeAndCleanUp(other);
    ASSERT_FALSE(copied.expired());
    used.push_back(add(1)[0]);
    EXPECT_EQ(drawnBy(used.back()).indexData->indexCount, indexCount);
    removeAndCleanUp(used);
}

TEST_F(CleanedUpBatches, FurtherOnesGoWhileTheFirstIsInUse) {
    const auto first = add(batchSize), second = add(1);
    const auto places = placesOf(second[0]);
    removeAndCleanUp(second);
    EXPECT_TRUE(places.expired());
    EXPECT_EQ(batchCount(), 1u);
    removeAndCleanUp(first);
}

TEST_F(CleanedUpBatches, WithoutAnInstanceInUseAllGo) {
    auto all = add(batchSize + 1);
    all.push_back(add(1, "InstanceFrame")[0]);
    ASSERT_EQ(batchCount(), 3u);
    const auto indices = indicesOf(all[0]);
    removeAndCleanUp(all);
    EXPECT_EQ(batchCount(), 0u);
    EXPECT_TRUE(indices.expired());
}

TEST_F(InstanceFrames, WithANewSizeWhatHangsBelowStaysInTheSelection) {
    auto* picking = selection::VisualSelection::Get();
    Target *target = addTarget(1), *below = addTarget(2);
    picking->addFrameVisual(target);
    picking->addFrameVisual(below);
    target->attachVisual(below);
    target->setFrameSize(70);
    EXPECT_TRUE(picking->hasVisual(below));
    EXPECT_EQ(pickableCount(), 2u);
}

// --- the picture

class InstancePictures : public InstanceFrames {
protected:
    /// How much of the picture differs between two frames, in pixels.
    static int difference(const headless::Picture& a, const headless::Picture& b) {
        int count = 0;
        for (int y = 0; y < a.getHeight(); ++y)
            for (int x = 0; x < a.getWidth(); ++x) {
                const auto p = a.at(x, y), q = b.at(x, y);
                if (p.r != q.r || p.g != q.g || p.b != q.b) ++count;
            }
        return count;
    }
};

TEST_F(InstancePictures, ATargetIsInTheFirstFrameAndEachLookShowsADifferentPicture) {
    const headless::Picture empty = frame();
    auto* target = new InstanceFrameVisual(root(), 1, "seen", VisualType::RobTarget, normalLook);
    scene().visuals[1] = target;
    target->setPosition(0, 0, 150);
    scene().addRenderTask([] {}, 0);
    const headless::Picture normal = frame();
    EXPECT_GT(difference(empty, normal), 50);
    target->setSelected();
    const headless::Picture selected = frame();
    EXPECT_GT(difference(normal, selected), 50);
    target->setHighlighted();
    EXPECT_GT(difference(selected, frame()), 50);
    target->setVisible(false, false);
    EXPECT_EQ(difference(empty, frame()), 0);
}

TEST_F(InstancePictures, SelectedTargetsAreOrangeAmongTheOthers) {
    const auto orange = [](const headless::Picture& picture) {
        int count = 0;
        for (int y = 0; y < picture.getHeight(); ++y)
            for (int x = 0; x < picture.getWidth(); ++x) {
                const auto c = picture.at(x, y);
                if (c.r > c.g + 60 && c.g > c.b + 30) ++count;
            }
        return count;
    };
    addTarget(1)->setPosition(0, 0, 150);
    Target* chosen = addTarget(2);
    chosen->setPosition(60, 0, 150);
    scene().addRenderTask([] {}, 0);
    EXPECT_EQ(orange(frame()), 0);
    chosen->setSelected();
    EXPECT_GT(orange(frame()), 100);
}

TEST_F(InstancePictures, ATargetThatMovesBackIntoViewIsInTheNextFrame) {
    const headless::Picture empty = frame();
    Target* target = addTarget(1);
    scene().setVisualPose(1, {{0, 0, 150}, {}});
    const int seen = difference(empty, frame());
    EXPECT_GT(seen, 50);
    scene().setVisualPose(1, {{0, 0, 500000}, {}});
    EXPECT_EQ(difference(empty, frame()), 0);
    EXPECT_EQ(difference(empty, frame()), 0);
    scene().setVisualPose(1, {{0, 0, 150}, {}});
    EXPECT_EQ(difference(empty, frame()), seen);
    EXPECT_EQ(target->getWorldPosition(), (rob::PosTemplate<float>{0, 0, 150}));
}

}  // namespace vrn::test
