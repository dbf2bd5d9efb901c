#include <iostream>
#include <sstream>

#include <gmock/gmock.h>

#include <OgreAny.h>
#include <OgreEntity.h>
#include <OgreException.h>
#include <OgreManualObject.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "tests/support/EngineFixture.h"
#include "tests/visual/ProbeVisual.h"
#include "visual/VisualIterator.h"

namespace vrn::test {

using selection::VisualSelection;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using visual::ForestIterator;
using visual::SharedName;
using visual::Visual;
using visual::VisualIterator;

class VisualTree : public EngineTest {
protected:
    static Visual* root() { return scene().root; }

    /// Two top-level visuals and a shown part, registered for picking, under the first.
    void SetUp() override {
        EngineTest::SetUp();
        first = new Visual("first", root());
        second = new Visual("second", root());
    }
    Visual* pickableUnder(Visual* parent) {
        Visual* part = showBoxPart("pickable");
        parent->attachVisual(part);
        settle();
        return part;
    }
    static void settle() { VisualSelection::Get()->update(); }
    static bool isMarked() { return VisualSelection::Get()->dirty; }

    Visual* first = nullptr;
    Visual* second = nullptr;
};

// --- attaching

TEST_F(VisualTree, AttachingMovesTheChildAndMarksIt) {
    Visual* part = pickableUnder(first);
    Visual* mesh = findBelow(part, VisualType::Mesh);
    ASSERT_FALSE(isMarked());
    second->attachVisual(part);
    EXPECT_EQ(part->getParent(), second);
    EXPECT_THAT(first->getChildren(), IsEmpty());
    EXPECT_THAT(second->getChildren(), ElementsAre(part));
    EXPECT_TRUE(isMarked());
    EXPECT_TRUE(VisualSelection::Get()->getObject(mesh)->worldBoxDirty);
}

TEST_F(VisualTree, AttachingToThePresentParentDoesNothingAndMarksNothing) {
    Visual* part = pickableUnder(first);
    auto* later = new Visual("later", first);
    first->attachVisual(part);
    EXPECT_THAT(first->getChildren(), ElementsAre(part, later));
    EXPECT_FALSE(isMarked());
}

TEST_F(VisualTree, AttachingKeepsTheLocalPose) {
    first->setPosition(10, 0, 0);
    second->setPosition(0, 20, 0);
    auto* child = new Visual("child", first);
    child->setPosition(1, 2, 3);
    child->attachTo(second);
    EXPECT_EQ(child->getPosition(), (rob::PosTemplate<float>{1, 2, 3}));
    EXPECT_EQ(child->getWorldPosition(), (rob::PosTemplate<float>{1, 22, 3}));
}

TEST_F(VisualTree, AFreeVisualCanBeAttached) {
    auto* free = new Visual("free");
    free->attachTo(first);
    EXPECT_EQ(free->getParent(), first);
}

TEST_F(VisualTree, DetachingMarksNothing) {
    Visual* part = pickableUnder(first);
    first->detachVisual(part);
    EXPECT_EQ(part->getParent(), nullptr);
    EXPECT_FALSE(isMarked());
    part->attachTo(root());  // so that the fixture finds it
}

TEST_F(VisualTree, DetachTakesTheVisualOutOfItsParentAndIsSilentWithoutOne) {
    auto* child = new Visual("child", first);
    child->detach();
    EXPECT_EQ(child->getParent(), nullptr);
    child->detach();
    EXPECT_THAT(first->getChildren(), IsEmpty());
    delete child;
}

TEST_F(VisualTree, DetachingAStrangerLeavesItWhereItIs) {
    auto* child = new Visual("child", first);
    second->detachVisual(child);
    second->detachVisual(nullptr);
    EXPECT_EQ(child->getParent(), first);
}

TEST_F(VisualTree, WhatWouldHangUnderItselfIsRefused) {
    auto* child = new Visual("child", first);
    auto* grandchild = new Visual("grandchild", child);
    EXPECT_THROW(first->attachVisual(first), std::invalid_argument);
    EXPECT_THROW(grandchild->attachVisual(first), std::invalid_argument);
    EXPECT_THROW(grandchild->attachVisual(root()), std::invalid_argument);
    EXPECT_THROW(first->attachVisual(nullptr), std::invalid_argument);
    EXPECT_THROW(first->attachTo(nullptr), std::invalid_argument);
    EXPECT_EQ(grandchild->getParent(), child);
    EXPECT_EQ(first->getParent(), root());
}

// --- asking

TEST_F(VisualTree, ChildrenComeInOrderOfInsertion) {
    std::vector<Visual*> made;
    for (int i = 0; i < 5; ++i) made.push_back(new Visual(first));
    EXPECT_EQ(first->getChildren(), made);
}

TEST_F(VisualTree, NodesWithoutAVisualAreNotSeen) {
    Ogre::SceneNode* bare = first->node->createChildSceneNode();
    auto* child = new Visual("child", first);
    auto* below = new Visual("below", first);
    first->node->removeChild(below->node);
    bare->addChild(below->node);
    EXPECT_THAT(first->getChildren(), ElementsAre(child));
    EXPECT_EQ(below->getParent(), nullptr);
    EXPECT_EQ(Visual::FromNode(bare), nullptr);
    below->attachTo(first);
    scene().sceneManager->destroySceneNode(bare);
}

TEST_F(VisualTree, ABindingOfAnotherKindThrowsBadCast) {
    Ogre::SceneNode* foreign = first->node->createChildSceneNode();
    auto* child = new Visual("child", first);
    first->node->removeChild(child->node);
    foreign->addChild(child->node);
    foreign->getUserObjectBindings().setUserAny(Ogre::Any(42));
    EXPECT_THROW((void)first->getChildren(), std::bad_cast);
    EXPECT_THROW((void)child->getParent(), std::bad_cast);
    EXPECT_THROW((void)Visual::FromNode(foreign), std::bad_cast);
    foreign->getUserObjectBindings().setUserAny(Ogre::Any(static_cast<void*>(child)));
    EXPECT_THROW((void)first->getChildren(), std::bad_cast);
    foreign->getUserObjectBindings().setUserAny(Ogre::Any());
    EXPECT_THAT(first->getChildren(), IsEmpty());
    child->attachTo(first);
    scene().sceneManager->destroySceneNode(foreign);
}

TEST_F(VisualTree, ADerivedVisualIsBoundAsItsBase) {
    auto* probe = new ProbeVisual("probe", first);
    EXPECT_THAT(first->getChildren(), ElementsAre(static_cast<Visual*>(probe)));
}

TEST_F(VisualTree, TopLevelIsWhatHangsDirectlyUnderTheRoot) {
    const Visual* child = new Visual("child", first);
    EXPECT_TRUE(first->isTopLevel());
    EXPECT_FALSE(child->isTopLevel());
    EXPECT_FALSE(root()->isTopLevel());
}

TEST_F(VisualTree, AttachedObjectsAreFoundByName) {
    Ogre::ManualObject* object = scene().sceneManager->createManualObject("triangle 1");
    EXPECT_FALSE(first->hasAttachedObject("triangle 1"));
    first->attachObject(object);
    EXPECT_TRUE(first->hasAttachedObject("triangle 1"));
    EXPECT_FALSE(first->hasAttachedObject("triangle"));
    EXPECT_FALSE(second->hasAttachedObject("triangle 1"));
    EXPECT_THROW(second->attachObject(object), Ogre::Exception);
    first->detachObject(object);
    EXPECT_FALSE(first->hasAttachedObject("triangle 1"));
    EXPECT_THROW(first->attachObject(nullptr), std::invalid_argument);
    scene().sceneManager->destroyManualObject(object);
}

// --- clearing

TEST_F(VisualTree, ClearChildrenDeletesTheWholeSubtreeFromEveryMap) {
    Visual* part = pickableUnder(first);
    new Visual("plain", part);
    ASSERT_TRUE(scene().visuals.contains(part->id));
    const std::uint32_t id = part->id;
    first->clearChildren();
    EXPECT_THAT(first->getChildren(), IsEmpty());
    EXPECT_EQ(first->node->getChildren().size(), 0u);
    EXPECT_FALSE(scene().visuals.contains(id));
    EXPECT_EQ(pickableCount(), 0u);
}

TEST_F(VisualTree, ClearChildrenEndsWithUnboundNodesBelow) {
    Ogre::SceneNode* bare = first->node->createChildSceneNode("bare node");
    for (int i = 0; i < 3; ++i) new Visual(first);
    first->clearChildren();
    EXPECT_THAT(first->getChildren(), IsEmpty());
    EXPECT_EQ(bare->getParent(), first->node);
    first->clearChildren();
    scene().sceneManager->destroySceneNode("bare node");
}

TEST_F(VisualTree, ClearCopiedChildrenDeletesTheSubtreeAndAsksNoMap) {
    auto* source = new Visual(4711, "source", first);
    scene().visuals[4711] = source;
    auto* twin = new Visual(4711, "twin", second);  // the id of the source, as copies have it
    auto* below = new Visual(4712, "below", twin);
    new Visual("deeper", below);
    second->clearCopiedChildren();
    EXPECT_THAT(second->getChildren(), IsEmpty());
    EXPECT_FALSE(scene().sceneManager->hasSceneNode("below"));
    EXPECT_EQ(scene().visuals.at(4711), source);
}

TEST_F(VisualTree, SetAttachStateStoresTheFlag) {
    first->setAttachState(true);
    EXPECT_TRUE(first->attached);
    first->setAttachState(false);
    EXPECT_FALSE(first->attached);
}

// --- dump

class StandardOutput {
public:
    StandardOutput() : former(std::cout.rdbuf(text.rdbuf())) {}
    ~StandardOutput() { std::cout.rdbuf(former); }
    [[nodiscard]] std::string get() const { return text.str(); }

private:
    std::ostringstream text;
    std::streambuf* former;
};

TEST_F(VisualTree, DumpWritesOneLineAVisualIndentedByLevel) {
    auto* top = new Visual(11, "top", first);
    auto* middle = new Visual(12, "middle", top);
    middle->type = VisualType::WorkEnvelope;
    new Visual(0, SharedName{"top"}, middle);
    new Visual(14, "last", top);
    const StandardOutput output;
    top->dump(0);
    EXPECT_EQ(output.get(),
              "Visual : top id: 11 type: 0\n"
              "  children:\n"
              "    Visual : middle id: 12 type: 34\n"
              "      children:\n"
              "        Visual : top id: 0 type: 0\n"
              "    Visual : last id: 14 type: 0\n");
}

TEST_F(VisualTree, DumpIndentsByFourBlanksALevel) {
    const Visual* leaf = new Visual(15, "leaf", first);
    const StandardOutput output;
    leaf->dump(2);
    EXPECT_EQ(output.get(), "        Visual : leaf id: 15 type: 0\n");
}

// --- walks

class VisualWalks : public VisualTree {
protected:
    /// first -> a (a1, a2), b (b1), c
    void SetUp() override {
        VisualTree::SetUp();
        a = new Visual("a", first);
        b = new Visual("b", first);
        c = new Visual("c", first);
        a1 = new Visual("a1", a);
        a2 = new Visual("a2", a);
        b1 = new Visual("b1", b);
    }
    template <class Iterator>
    static std::vector<Visual*> walk(Iterator it) {
        std::vector<Visual*> seen;
        while (it.next()) seen.push_back(it.value());
        EXPECT_FALSE(it.next());
        return seen;
    }

    Visual *a = nullptr, *b = nullptr, *c = nullptr, *a1 = nullptr, *a2 = nullptr, *b1 = nullptr;
};

TEST_F(VisualWalks, TheWalkGoesBreadthFirstFromTheStartItself) {
    EXPECT_THAT(walk(VisualIterator(first, false)), ElementsAre(first, a, b, c, a1, a2, b1));
}

TEST_F(VisualWalks, ThereIsNoValueBeforeTheFirstStep) {
    EXPECT_EQ(VisualIterator(first, false).value(), nullptr);
    EXPECT_EQ(ForestIterator<Visual>(first).value(), nullptr);
}

TEST_F(VisualWalks, AttachedAndWalkStopChildrenAreLeftOutWithAllBelowThem) {
    a->attached = true;
    b->walkStop = true;
    EXPECT_THAT(walk(VisualIterator(first, false)), ElementsAre(first, c));
}

TEST_F(VisualWalks, TheFlagTakesThemIn) {
    a->attached = true;
    b->walkStop = true;
    EXPECT_THAT(walk(VisualIterator(first, true)), ElementsAre(first, a, b, c, a1, a2, b1));
}

TEST_F(VisualWalks, TheStartIsNeverLeftOut) {
    a->attached = true;
    a->walkStop = true;
    EXPECT_THAT(walk(VisualIterator(a, false)), ElementsAre(a, a1, a2));
}

TEST_F(VisualWalks, AForestWalkFiltersNothing) {
    a->attached = true;
    b->walkStop = true;
    EXPECT_THAT(walk(ForestIterator<Visual>(first)), ElementsAre(first, a, b, c, a1, a2, b1));
}

TEST_F(VisualWalks, AForestWalkTakesAllStartsBeforeTheirChildren) {
    EXPECT_THAT(walk(ForestIterator<Visual>(std::vector<Visual*>{b, a})),
                ElementsAre(b, a, b1, a1, a2));
}

TEST_F(VisualWalks, NothingIsWalkedFromNothing) {
    EXPECT_THAT(walk(VisualIterator(nullptr, true)), IsEmpty());
    EXPECT_THAT(walk(ForestIterator<Visual>(nullptr)), IsEmpty());
    EXPECT_THAT(walk(ForestIterator<Visual>(std::vector<Visual*>{})), IsEmpty());
    EXPECT_THAT(walk(ForestIterator<Visual>(std::vector<Visual*>{nullptr, c, nullptr})),
                ElementsAre(c));
}

// --- what cascades

class VisualCascade : public VisualTree {
protected:
    void SetUp() override {
        VisualTree::SetUp();
        probe = new ProbeVisual("probe", first);
    }
    /// Something that can be shown or hidden, on the node of `visual`.
    static Ogre::MovableObject* hangObjectOn(Visual* visual) {
        Ogre::Entity* object = scene().sceneManager->createEntity("mfg_arrow");
        visual->attachObject(object);
        return object;
    }

    ProbeVisual* probe = nullptr;
};

TEST_F(VisualCascade, WithoutCascadeOnlyTheOwnObjectsChange) {
    Ogre::MovableObject* own = hangObjectOn(first);
    Ogre::MovableObject* childs = hangObjectOn(probe);
    first->setVisible(false, false);
    EXPECT_FALSE(first->visible);
    EXPECT_FALSE(own->getVisible());
    EXPECT_TRUE(childs->getVisible());
    EXPECT_TRUE(probe->visible);
    EXPECT_THAT(probe->calls, IsEmpty());
    for (Ogre::MovableObject* object : {own, childs})
        scene().sceneManager->destroyMovableObject(object);
}

TEST_F(VisualCascade, ChildrenAreToldWithCascadeBeforeTheOwnFlagIsStored) {
    first->setVisible(false, true);
    EXPECT_THAT(probe->calls, ElementsAre("setVisible false cascade"));
    EXPECT_TRUE(probe->parentFlagSeen);  // still the old value
    EXPECT_FALSE(probe->visible);
    first->setVisible(true, true);
    EXPECT_THAT(probe->calls, ElementsAre("setVisible false cascade", "setVisible true cascade"));
    EXPECT_FALSE(probe->parentFlagSeen);
    EXPECT_TRUE(first->visible);
}

TEST_F(VisualCascade, TheCascadeGoesThroughTheWholeSubtree) {
    auto* grandchild = new ProbeVisual("grandchild", probe);
    Ogre::MovableObject* object = hangObjectOn(grandchild);
    first->setVisible(false, true);
    EXPECT_FALSE(grandchild->visible);
    EXPECT_FALSE(object->getVisible());
    scene().sceneManager->destroyMovableObject(object);
}

TEST_F(VisualCascade, AttachedAndWalkStopChildrenKeepTheirState) {
    auto* workObject = new ProbeVisual("workObject", first);
    workObject->walkStop = true;
    probe->attached = true;
    first->setVisible(false, true);
    EXPECT_THAT(probe->calls, IsEmpty());
    EXPECT_THAT(workObject->calls, IsEmpty());
    EXPECT_TRUE(probe->visible);
    EXPECT_TRUE(workObject->visible);
}

TEST_F(VisualCascade, LocalFramesKeepTheirState) {
    std::vector<ProbeVisual*> frames;
    for (const char* name : {"Local Frame", "My Local Frame 2", "Local Frame"})
        frames.push_back(new ProbeVisual(0, SharedName{name}, first));
    auto* other = new ProbeVisual(0, SharedName{"local frame"}, first);
    first->setVisible(false, true);
    for (const ProbeVisual* frame : frames) EXPECT_THAT(frame->calls, IsEmpty());
    EXPECT_THAT(other->calls, ElementsAre("setVisible false cascade"));
    EXPECT_FALSE(other->visible);
}

TEST_F(VisualCascade, ALocalFrameCanStillBeSwitchedByItself) {
    auto* frame = new ProbeVisual(0, SharedName{"Local Frame"}, first);
    frame->setVisible(false, true);
    EXPECT_FALSE(frame->visible);
}

TEST_F(VisualCascade, CountsAreSumsThatLeaveAttachedChildrenOut) {
    auto* second2 = new ProbeVisual("second", first);
    new ProbeVisual("below", second2);
    auto* attached = new ProbeVisual("attached", first);
    attached->attached = true;
    new ProbeVisual("belowAttached", attached);
    auto* walkStop = new ProbeVisual("walkStop", first);
    walkStop->walkStop = true;
    EXPECT_EQ(first->getBodiesNum(), 4u);
    EXPECT_EQ(first->getFacesNum(), 40u);
    EXPECT_EQ(first->getTrianglesNum(), 400u);
    EXPECT_EQ(first->getVerticesNum(), 4000u);
    EXPECT_EQ(second->getBodiesNum(), 0u);
}

TEST_F(VisualCascade, UpdateOfTheBaseDoesNothing) {
    first->update();
    EXPECT_THAT(probe->calls, IsEmpty());
}

}  // namespace vrn::test
