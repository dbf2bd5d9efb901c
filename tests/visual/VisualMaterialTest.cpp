#include <gmock/gmock.h>

// The instance manager uses what this declares without including it.
#include <OgreIteratorWrapper.h>

#include <OgreEntity.h>
#include <OgreInstanceBatch.h>
#include <OgreInstancedEntity.h>
#include <OgreInstanceManager.h>
#include <OgreLight.h>
#include <OgreManualObject.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "mesh/DynamicLines.h"
#include "tests/support/EngineFixture.h"
#include "tests/visual/ProbeVisual.h"

namespace vrn::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using visual::DynamicLines;
using visual::Visual;

}  // namespace

class VisualMaterial : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        probe = new ProbeVisual("probe", scene().root);
        sceneManager = scene().sceneManager;
    }
    Ogre::Entity* hangEntity(Visual* visual) {
        Ogre::Entity* entity = sceneManager->createEntity("mfg_arrow");
        entity->getSubEntity(0)->setCustomParameter(0, Ogre::Vector4(1, 1, 1, 1));
        visual->attachObject(entity);
        objects.push_back(entity);
        return entity;
    }
    Ogre::ManualObject* hangManual(Visual* visual) {
        Ogre::ManualObject* manual = sceneManager->createManualObject();
        for (const float height : {0.0f, 10.0f}) {
            manual->begin("BaseWhiteNoLighting", Ogre::RenderOperation::OT_LINE_LIST);
            manual->position(0, 0, height);
            manual->position(10, 0, height);
            manual->end();
        }
        visual->attachObject(manual);
        objects.push_back(manual);
        return manual;
    }
    void TearDown() override {
        for (Ogre::MovableObject* object : objects) sceneManager->destroyMovableObject(object);
        EngineTest::TearDown();
    }
    static std::string materialOf(const Ogre::Entity* entity) {
        return entity->getSubEntity(0)->getMaterialName();
    }

    ProbeVisual* probe = nullptr;
    Ogre::SceneManager* sceneManager = nullptr;
    std::vector<Ogre::MovableObject*> objects;
};

// --- useMaterial

TEST_F(VisualMaterial, EveryKindOfObjectThatTakesAMaterialGetsIt) {
    const Ogre::Entity* entity = hangEntity(probe);
    const Ogre::Entity* another = hangEntity(probe);
    const Ogre::ManualObject* manual = hangManual(probe);
    DynamicLines lines(visual::RenderOpType::LineList);
    probe->attachObject(&lines);
    probe->useMaterial("CollisionContact");
    EXPECT_EQ(materialOf(entity), "CollisionContact");
    EXPECT_EQ(materialOf(another), "CollisionContact");
    EXPECT_EQ(lines.getMaterial()->getName(), "CollisionContact");
    for (const Ogre::ManualObject::ManualObjectSection* section : manual->getSections())
        EXPECT_EQ(section->getMaterialName(), "CollisionContact");
    EXPECT_EQ(manual->getNumSections(), 2u);
}

TEST_F(VisualMaterial, InstancesAndLightsArePassedOver) {
    Ogre::InstancedEntity* instance = scene()
                                          .instanceManagers.at("VRN_FrameInstanceManager")
                                          ->createInstancedEntity("InstanceFrame");
    Ogre::Light* light = sceneManager->createLight();
    objects.push_back(light);
    probe->attachObject(instance);
    probe->attachObject(light);
    const Ogre::Entity* entity = hangEntity(probe);
    probe->useMaterial("CollisionContact");
    EXPECT_EQ(instance->_getOwner()->getMaterial()->getName(), "InstanceFrame");
    EXPECT_EQ(materialOf(entity), "CollisionContact");
    probe->detachObject(instance);
    instance->_getOwner()->removeInstancedEntity(instance);
    scene().instanceManagers.at("VRN_FrameInstanceManager")->cleanupEmptyBatches();
}

TEST_F(VisualMaterial, AnUnknownNameChangesNothingAndThrowsNothing) {
    const Ogre::Entity* entity = hangEntity(probe);
    probe->useMaterial("Axis");
    probe->useMaterial("no such material");
    probe->useMaterial("");
    EXPECT_EQ(materialOf(entity), "Axis");
}

TEST_F(VisualMaterial, OnlyTheOwnNodeIsTouched) {
    auto* child = new ProbeVisual("child", probe);
    const Ogre::Entity* below = hangEntity(child);
    const std::string before = materialOf(below);
    probe->useMaterial("CollisionContact");
    EXPECT_EQ(materialOf(below), before);
    EXPECT_THAT(child->calls, IsEmpty());
}

// --- looks

TEST_F(VisualMaterial, EachLookUsesItsName) {
    probe->setMaterial("Body", "BodySelected", "BodyHighlighted");
    EXPECT_THAT(probe->calls, IsEmpty());  // stored, not shown
    probe->resetAppearance();
    probe->setSelected();
    probe->setHighlighted();
    EXPECT_THAT(probe->calls, ElementsAre("resetAppearance", "useMaterial Body", "setSelected",
                                          "useMaterial BodySelected", "setHighlighted",
                                          "useMaterial BodyHighlighted"));
}

TEST_F(VisualMaterial, EmptyNamesShowNothing) {
    const Ogre::Entity* entity = hangEntity(probe);
    probe->useMaterial("Axis");
    probe->calls.clear();
    probe->setMaterial("", "", "");
    probe->setSelected();
    probe->setHighlighted();
    probe->resetAppearance();
    EXPECT_THAT(probe->calls, ElementsAre("setSelected", "setHighlighted", "resetAppearance"));
    EXPECT_EQ(materialOf(entity), "Axis");
}

TEST_F(VisualMaterial, ClearingALookResetsThroughTheVirtualTable) {
    probe->setMaterial("Body", "", "");
    probe->clearHighlightOrSelect();
    EXPECT_THAT(probe->calls,
                ElementsAre("clearHighlightOrSelect", "resetAppearance", "useMaterial Body"));
}

// --- setMaterial

TEST_F(VisualMaterial, NamesReachEveryDescendantAttachedOnesToo) {
    auto* child = new ProbeVisual("child", probe);
    auto* grandchild = new ProbeVisual("grandchild", child);
    grandchild->attached = true;
    auto* workObject = new ProbeVisual("workObject", probe);
    workObject->walkStop = true;
    probe->setMaterial("A", "B", "C");
    for (const Visual* visual : {probe, child, grandchild, workObject}) {
        EXPECT_EQ(visual->material, "A");
        EXPECT_EQ(visual->selectedMaterial, "B");
        EXPECT_EQ(visual->highlightedMaterial, "C");
    }
}

TEST_F(VisualMaterial, AMemberGivenAsItsOwnArgumentIsLeftAlone) {
    probe->setMaterial("A", "B", "C");
    probe->setMaterial(probe->material, "D", probe->highlightedMaterial);
    EXPECT_EQ(probe->material, "A");
    EXPECT_EQ(probe->selectedMaterial, "D");
    EXPECT_EQ(probe->highlightedMaterial, "C");
}

TEST_F(VisualMaterial, NamesMayBeSwappedAndTakenFromBelow) {
    auto* child = new ProbeVisual("child", probe);
    auto* sibling = new ProbeVisual("sibling", probe);
    probe->setMaterial("A", "B", "C");
    probe->setMaterial(probe->selectedMaterial, probe->material, "C");
    EXPECT_EQ(probe->material, "B");
    EXPECT_EQ(probe->selectedMaterial, "A");
    probe->setMaterial(child->selectedMaterial, child->highlightedMaterial, child->material);
    for (const Visual* visual : {probe, child, sibling}) {
        EXPECT_EQ(visual->material, "A");
        EXPECT_EQ(visual->selectedMaterial, "C");
        EXPECT_EQ(visual->highlightedMaterial, "B");
    }
}

}  // namespace vrn::test
