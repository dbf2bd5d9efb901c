#include "visual/handle/FixedSizeHandle.h"

#include <cmath>
#include <memory>

#include <gtest/gtest.h>
#include <OgreEntity.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "tests/support/EngineFixture.h"
#include "visual/handle/HandleMeshVisual.h"

namespace vrn::test {

using selection::VisualSelection;
using visual::FixedSizeHandle;
using visual::HandleMeshVisual;

class FixedSizeHandleTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        handle = std::make_unique<FixedSizeHandle>("probe", scene().root);
        part = new HandleMeshVisual("knob", handle.get());
        part->showHandleMesh("DragHandleX");
        part->setMaterial("Axis", "", "HandleHighlight");
        part->resetAppearance();
        lookFrom({4000, 0, 0}, {0, 0, 0});
    }
    void TearDown() override {
        if (handle) drop();
        EngineTest::TearDown();
    }
    void drop() {
        handle->unregisterFromSelection();
        handle->clearChildren();
        handle.reset();
    }
    /// After a picture.
    float scale() {
        frame();
        return handle->node->getScale().x;
    }

    std::unique_ptr<FixedSizeHandle> handle;
    HandleMeshVisual* part = nullptr;
};

TEST_F(FixedSizeHandleTest, IsOneFourThousandUnitsAwayAndGrowsWithTheDistance) {
    EXPECT_FLOAT_EQ(scale(), 1.0f);
    EXPECT_EQ(handle->node->getScale(), Ogre::Vector3(handle->node->getScale().x));
    lookFrom({8000, 0, 0}, {0, 0, 0});
    EXPECT_FLOAT_EQ(scale(), 2.0f);
    handle->setPosition(6000, 0, 0);
    EXPECT_FLOAT_EQ(scale(), 0.5f);
}

TEST_F(FixedSizeHandleTest, TheSettingMultipliesTheSizeFromAHalfToTen) {
    for (const float setting : {0.5f, 2.0f, 10.0f}) {
        scene().setHandleScale(setting);
        EXPECT_FLOAT_EQ(scale(), setting);
    }
}

TEST_F(FixedSizeHandleTest, ASettingOutOfRangeIsIgnoredAndNotClamped) {
    for (const float setting : {0.4f, 0.0f, -1.0f, 10.5f, NAN}) {
        scene().setHandleScale(setting);
        EXPECT_FLOAT_EQ(scale(), 1.0f) << setting;
    }
}

TEST_F(FixedSizeHandleTest, GrowsWithAScaledParent) {
    visual::Visual carrier(scene().root);
    carrier.setScale(2, 2, 2);
    handle->attachTo(&carrier);
    EXPECT_FLOAT_EQ(scale(), 1.0f);
    EXPECT_FLOAT_EQ(handle->node->_getDerivedScale().x, 2.0f);
    handle->attachTo(scene().root);
}

TEST_F(FixedSizeHandleTest, IsRegisteredOnceAndItsMeshesAreNotDetectable) {
    EXPECT_FALSE(handle->isRegisteredInSelection());
    handle->registerToSelection(true);
    const auto* object = VisualSelection::Get()->getObject(part);
    handle->registerToSelection(false);
    EXPECT_TRUE(handle->isRegisteredInSelection());
    EXPECT_EQ(VisualSelection::Get()->getObject(part), object);
    EXPECT_TRUE(object->priority);
    EXPECT_FALSE(object->detectable);
    const auto& all = VisualSelection::Get()->containers[0].primitives;
    int times = 0;
    for (const auto* primitive : all)
        times += static_cast<const selection::SelectableObject*>(primitive)->visual == part;
    EXPECT_EQ(times, 1);

    handle->unregisterFromSelection();
    EXPECT_FALSE(handle->isRegisteredInSelection());
    EXPECT_FALSE(VisualSelection::Get()->hasVisual(part));
    handle->unregisterFromSelection();
}

TEST_F(FixedSizeHandleTest, APictureThatLeavesTheScaleLeavesPickingUpToDate) {
    handle->registerToSelection(true);
    scale();
    pump();
    frame();
    EXPECT_FALSE(VisualSelection::Get()->dirty);
    lookFrom({5000, 0, 0}, {0, 0, 0});
    VisualSelection::Get()->update();
    scale();
    EXPECT_TRUE(VisualSelection::Get()->dirty);
}

TEST_F(FixedSizeHandleTest,
       WhatCannotBePickedLeavesPickingUpToDateAndIsFoundInItsNewSizeOnceItCan) {
    auto* const selection = VisualSelection::Get();
    handle->registerToSelection(true);
    selection->setCompoundObjectEnabled(handle.get(), false);
    scale();
    lookFrom({0, -8000, 0}, {0, 0, 0});
    pump();
    EXPECT_FLOAT_EQ(scale(), 2.0f);
    EXPECT_FALSE(selection->dirty);

    // The arrow's head is there only in the new size.
    const auto at = project({2 * 230.0f, 0, 0});
    EXPECT_FALSE(selection->select(at.x, at.y).hit);
    selection->setCompoundObjectEnabled(handle.get(), true);
    pump();
    EXPECT_EQ(selection->select(at.x, at.y).visual, part);
}

TEST_F(FixedSizeHandleTest, ANewSizeThatNoPictureHasShownYetIsPickedAtOnce) {
    handle->registerToSelection(true);
    frame();
    pump();
    lookFrom({0, -8000, 0}, {0, 0, 0});
    handle->updateScale();
    VisualSelection::Get()->update();
    const auto at = project({2 * 230.0f, 0, 0});
    EXPECT_EQ(VisualSelection::Get()->select(at.x, at.y).visual, part);
}

TEST_F(FixedSizeHandleTest, AHandleTooFarAwayForASizeKeepsTheOneItHasAndEndsNoPicture) {
    const float before = scale();
    handle->setPosition(1e20f, 0, 0);
    EXPECT_NO_THROW(frame());
    EXPECT_EQ(handle->node->getScale().x, before);
}

TEST_F(FixedSizeHandleTest, AHandleOfTheHostThatDiesIsTheAttachedOneNoMore) {
    auto* own = new FixedSizeHandle("own", nullptr);
    scene().attachGuiTo(own, scene().root, {});
    pump();
    scene().deleteVisual(own);
    EXPECT_EQ(scene().attachedGui, nullptr);
    EXPECT_FALSE(scene().sceneManager->hasSceneNode("own"));

    auto second = std::make_unique<FixedSizeHandle>("own", nullptr);
    scene().attachGuiTo(second.get(), scene().root, {});
    pump();
    second.reset();
    EXPECT_EQ(scene().attachedGui, nullptr);
}

TEST_F(FixedSizeHandleTest, AHiddenPartTakesAnotherFormWithoutBeingShown) {
    part->setVisible(false, true);
    part->showHandleMesh("DragHandleY");
    EXPECT_FALSE(part->getEntity()->isVisible());
    part->setVisible(true, true);
    EXPECT_TRUE(part->getEntity()->isVisible());
}

TEST_F(FixedSizeHandleTest, ADeletedHandleIsAskedForNoSizeAndIsRegisteredNoMore) {
    handle->registerToSelection(true);
    frame();
    handle->clearChildren();
    handle.reset();
    EXPECT_FALSE(VisualSelection::Get()->hasVisual(part));
    lookFrom({5000, 0, 0}, {0, 0, 0});
    EXPECT_NO_THROW(frame());
}

TEST_F(FixedSizeHandleTest, AMeshOfAHandleStaysOverTheSceneWhenItIsPointedAtOrSelected) {
    const auto group = [&] { return static_cast<int>(part->getEntity()->getRenderQueueGroup()); };
    EXPECT_EQ(group(), 80);
    part->setSelected();
    EXPECT_EQ(group(), 80);
    part->setHighlighted();
    part->clearHighlightOrSelect();
    EXPECT_EQ(group(), 80);
    EXPECT_EQ(part->getEntity()->getSubEntity(0)->getMaterialName(), "Axis");
}

TEST_F(FixedSizeHandleTest, IsNoBodyOfWhatItHangsOnAndKeepsItsColour) {
    visual::Visual* carrier = showBoxPart("carrier");
    const auto bodies = carrier->getBodiesNum(), faces = carrier->getFacesNum(),
               triangles = carrier->getTrianglesNum(), vertices = carrier->getVerticesNum();
    const auto colour = [&] { return part->getEntity()->getSubEntity(0)->getCustomParameter(0); };
    const Ogre::Vector4 before = colour();
    handle->attachTo(carrier);
    EXPECT_EQ(carrier->getBodiesNum(), bodies);
    EXPECT_EQ(carrier->getFacesNum(), faces);
    EXPECT_EQ(carrier->getTrianglesNum(), triangles);
    EXPECT_EQ(carrier->getVerticesNum(), vertices);
    scene().setVisualColor(carrier->id, {0.1f, 0.2f, 0.3f}, 0.5f);
    pump();
    EXPECT_EQ(colour(), before);
    scene().resetColor(carrier->id);
    pump();
    EXPECT_EQ(colour(), before);
    handle->attachTo(scene().root);
}

}  // namespace vrn::test
