#include "selection/VisualSelection.h"

#include "mesh/DynamicLines.h"
#include "selection/LineObject.h"
#include "selection/MeshObject.h"
#include "suite/broker/SignalBroker.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/LineVisual.h"
#include "visual/geometry/MeshVisual.h"

#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>

namespace vrn::selection {

namespace {

using visual::DynamicLines;
using visual::LineVisual;
using visual::MeshVisual;
using visual::RenderOpType;
using visual::Visual;
using Pos = rob::PosTemplate<float>;

/// A registry of the test's own beside the library's, and visuals that go with the test.
class VisualSelectionTest : public test::EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        top = new Visual(scene().root);
    }

    LineVisual* line(Visual* parent) { return new LineVisual(parent); }
    LineVisual* line() { return line(top); }
    std::size_t count() const { return registry.containers[0].primitives.size(); }
    /// Whether `change` sets the mark.
    template <class Change>
    bool dirties(const Change& change) {
        registry.dirty = false;
        change();
        return registry.dirty;
    }

    Visual* top = nullptr;
    VisualSelection registry;
};

}  // namespace

TEST_F(VisualSelectionTest, StartsEmptyAndClean) {
    EXPECT_TRUE(registry.objects.empty());
    EXPECT_TRUE(registry.containers[0].primitives.empty());
    EXPECT_TRUE(registry.containers[1].primitives.empty());
    EXPECT_FALSE(registry.dirty);
}

TEST_F(VisualSelectionTest, GetAnswersTheOneThatInitMadeAlsoAfterFinish) {
    VisualSelection* made = gVisSelection;
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(VisualSelection::Get(), made);
    Finish();
    EXPECT_EQ(VisualSelection::Get(), made);
}

TEST_F(VisualSelectionTest, LineVisualGetsADetectableLineObject) {
    LineVisual* shown = line();
    EXPECT_FALSE(registry.hasVisual(shown));
    EXPECT_TRUE(dirties([&] { registry.addLineVisual(shown); }));
    EXPECT_TRUE(registry.hasVisual(shown));
    SelectableObject* object = registry.getObject(shown);
    EXPECT_EQ(object->visual, shown);
    EXPECT_EQ(object->kind, ObjectKind::Line);
    EXPECT_EQ(static_cast<int>(object->kind), 3);
    EXPECT_TRUE(object->detectable);
    EXPECT_TRUE(object->enabled);
    EXPECT_TRUE(object->worldBoxDirty);
    EXPECT_FALSE(object->priority);
    EXPECT_FALSE(object->bvhBuilt);
    EXPECT_EQ(object->worldPose, rob::PoseTemplate<float>());
    EXPECT_EQ(object->inverseWorldPose, rob::PoseTemplate<float>());
    EXPECT_EQ(object->getName(), "");
    EXPECT_EQ(registry.containers[0].primitives, std::vector<BVHPrimitive*>{object});
}

TEST_F(VisualSelectionTest, MeshVisualsOfTheSubtreeGetObjectsAndOthersDoNot) {
    auto* group = new Visual(top);
    auto* upper = new MeshVisual("upper", group);
    auto* lower = new MeshVisual("lower", upper);
    LineVisual* other = line(group);
    lower->attached = true;  // no filter
    EXPECT_TRUE(dirties([&] { registry.addMeshVisual(group, false, true); }));
    EXPECT_EQ(count(), 2u);
    EXPECT_FALSE(registry.hasVisual(group));
    EXPECT_FALSE(registry.hasVisual(other));
    for (Visual* shown : {upper, lower}) {
        EXPECT_EQ(static_cast<int>(registry.getObject(shown)->kind), 2);
        EXPECT_FALSE(registry.getObject(shown)->detectable);
        EXPECT_TRUE(registry.getObject(shown)->priority);
    }
}

TEST_F(VisualSelectionTest, PaintVisualsCountAsMeshes) {
    auto* paint = new Visual(top);
    paint->type = VisualType::Paint;
    registry.addMeshVisual(paint, true, false);
    EXPECT_TRUE(registry.hasVisual(paint));
    EXPECT_TRUE(registry.getObject(paint)->detectable);
    EXPECT_FALSE(registry.getObject(paint)->priority);
}

TEST_F(VisualSelectionTest, AddingSetsTheMarkEvenWhereNothingIsAdded) {
    EXPECT_TRUE(dirties([&] { registry.addMeshVisual(line(), true, false); }));
    EXPECT_EQ(count(), 0u);
}

TEST_F(VisualSelectionTest, AddingNullIsRefused) {
    EXPECT_FALSE(dirties([&] {
        EXPECT_THROW(registry.addMeshVisual(nullptr, true, false), std::invalid_argument);
        EXPECT_THROW(registry.addLineVisual(nullptr), std::invalid_argument);
    }));
}

TEST_F(VisualSelectionTest, AddingAVisualTwiceLeavesTwoObjectsAndTheFirstInTheMap) {
    LineVisual* shown = line();
    registry.addLineVisual(shown);
    SelectableObject* first = registry.getObject(shown);
    EXPECT_TRUE(dirties([&] { registry.addLineVisual(shown); }));
    EXPECT_EQ(count(), 2u);
    EXPECT_EQ(registry.objects.size(), 1u);
    EXPECT_EQ(registry.getObject(shown), first);
}

TEST_F(VisualSelectionTest, RemovingAVisualAddedThreeTimesTakesAllItsObjectsAndNoOther) {
    LineVisual* shown = line();
    LineVisual* other = line();
    registry.addLineVisual(shown);
    registry.addLineVisual(other);
    registry.addLineVisual(shown);
    registry.addLineVisual(shown);
    EXPECT_TRUE(dirties([&] { registry.removeObject(shown); }));
    EXPECT_FALSE(registry.hasVisual(shown));
    EXPECT_EQ(registry.containers[0].primitives,
              std::vector<BVHPrimitive*>{registry.getObject(other)});
    registry.addLineVisual(shown);
    registry.removeObject(shown);
    EXPECT_EQ(count(), 1u);
}

TEST_F(VisualSelectionTest, RemovingKeepsTheOrderOfTheOthers) {
    LineVisual *a = line(), *b = line(), *c = line();
    for (LineVisual* shown : {a, b, c}) registry.addLineVisual(shown);
    registry.removeObject(b);
    EXPECT_EQ(registry.containers[0].primitives,
              (std::vector<BVHPrimitive*>{registry.getObject(a), registry.getObject(c)}));
}

TEST_F(VisualSelectionTest, RemovingAnUnregisteredVisualThrowsAndSetsTheMark) {
    LineVisual* shown = line();
    EXPECT_TRUE(dirties([&] { EXPECT_THROW(registry.removeObject(shown), std::out_of_range); }));
    registry.addLineVisual(shown);
    registry.removeObject(shown);
    EXPECT_THROW(registry.removeObject(shown), std::out_of_range);
    EXPECT_THROW(registry.removeObject(nullptr), std::out_of_range);
}

TEST_F(VisualSelectionTest, GetObjectOfAnUnknownVisualThrows) {
    try {
        (void)registry.getObject(top);
        FAIL() << "no exception";
    } catch (const std::out_of_range& e) {
        EXPECT_STREQ(e.what(), "unordered_map::at");
    }
}

TEST_F(VisualSelectionTest, SetObjectEnabledMarksARegisteredVisualAndIgnoresOthers) {
    LineVisual* shown = line();
    EXPECT_FALSE(dirties([&] { registry.setObjectEnabled(shown, false); }));
    EXPECT_FALSE(dirties([&] { registry.setObjectEnabled(nullptr, false); }));
    registry.addLineVisual(shown);
    EXPECT_TRUE(dirties([&] { registry.setObjectEnabled(shown, false); }));
    EXPECT_FALSE(registry.getObject(shown)->enabled);
    EXPECT_TRUE(dirties([&] { registry.setObjectEnabled(shown, false); }));
    registry.setObjectEnabled(shown, true);
    EXPECT_TRUE(registry.getObject(shown)->enabled);
}

TEST_F(VisualSelectionTest, SetDetectableWritesAndNeverMarks) {
    LineVisual* shown = line();
    registry.setDetectable(shown, false);
    registry.addLineVisual(shown);
    EXPECT_FALSE(dirties([&] { registry.setDetectable(shown, false); }));
    EXPECT_FALSE(registry.getObject(shown)->detectable);
}

TEST_F(VisualSelectionTest, SetLineEnabledSwitchesLinesAloneAndMarksOnlyAChange) {
    LineVisual* shown = line();
    auto* mesh = new MeshVisual("mesh", top);
    registry.addLineVisual(shown);
    registry.addMeshVisual(mesh, true, false);
    EXPECT_TRUE(dirties([&] { registry.setLineEnabled(false); }));
    EXPECT_FALSE(registry.getObject(shown)->enabled);
    EXPECT_TRUE(registry.getObject(mesh)->enabled);
    EXPECT_FALSE(dirties([&] { registry.setLineEnabled(false); }));
    EXPECT_TRUE(dirties([&] { registry.setLineEnabled(true); }));
    EXPECT_TRUE(registry.getObject(shown)->enabled);
    EXPECT_FALSE(dirties([&] { registry.setLineEnabled(true); }));
}

TEST_F(VisualSelectionTest, LinesThatAreSwitchedOnCatchUpAtOnceAndThoseSwitchedOffDoNot) {
    LineVisual* shown = line();
    DynamicLines* lines = shown->createDynamicLine(RenderOpType::LineStrip);
    lines->addPoint(1, 2, 3);
    lines->addPoint(4, 5, 6);
    registry.addLineVisual(shown);
    registry.setLineEnabled(false);
    EXPECT_TRUE(registry.getObject(shown)->worldBoxDirty);
    registry.setLineEnabled(true);
    EXPECT_FALSE(registry.getObject(shown)->worldBoxDirty);
    EXPECT_TRUE(registry.getObject(shown)->box.isPointInside(1, 2, 3));
}

TEST_F(VisualSelectionTest, CompoundSwitchReachesEveryRegisteredVisualOfTheSubtree) {
    auto* group = new Visual(top);
    auto* attachedGroup = new Visual(group);
    attachedGroup->attached = true;
    LineVisual *deep = line(attachedGroup), *near = line(group), *outside = line();
    for (LineVisual* shown : {deep, near, outside}) registry.addLineVisual(shown);
    EXPECT_TRUE(dirties([&] { registry.setCompoundObjectEnabled(group, false); }));
    EXPECT_FALSE(registry.getObject(deep)->enabled);
    EXPECT_FALSE(registry.getObject(near)->enabled);
    EXPECT_TRUE(registry.getObject(outside)->enabled);
}

TEST_F(VisualSelectionTest, CompoundOperationsSetTheMarkInAnyCase) {
    EXPECT_TRUE(dirties([&] { registry.setCompoundObjectEnabled(top, false); }));
    EXPECT_TRUE(dirties([&] { registry.removeCompoundObject(top); }));
    EXPECT_TRUE(dirties([&] { registry.setCompoundObjectEnabled(nullptr, false); }));
    EXPECT_TRUE(dirties([&] { registry.removeCompoundObject(nullptr); }));
}

TEST_F(VisualSelectionTest, CompoundRemovalSkipsUnregisteredVisuals) {
    auto* group = new Visual(top);
    auto* plain = new Visual(group);
    LineVisual *deep = line(plain), *unknown = line(plain), *outside = line();
    registry.addLineVisual(deep);
    registry.addLineVisual(outside);
    registry.removeCompoundObject(group);
    EXPECT_FALSE(registry.hasVisual(deep));
    EXPECT_FALSE(registry.hasVisual(unknown));
    EXPECT_TRUE(registry.hasVisual(outside));
    EXPECT_EQ(count(), 1u);
}

TEST_F(VisualSelectionTest, MovedAssemblyMarksEveryObjectBelowIt) {
    auto* group = new Visual(top);
    auto* stopped = new Visual(group);
    stopped->walkStop = true;
    LineVisual *deep = line(stopped), *outside = line();
    registry.addLineVisual(deep);
    registry.addLineVisual(outside);
    registry.update();
    EXPECT_TRUE(dirties([&] { registry.markDirty(group); }));
    EXPECT_TRUE(registry.getObject(deep)->worldBoxDirty);
    EXPECT_FALSE(registry.getObject(outside)->worldBoxDirty);
}

TEST_F(VisualSelectionTest, MovedRegisteredVisualIsMarkedItself) {
    LineVisual* shown = line();
    registry.addLineVisual(shown);
    registry.update();
    EXPECT_TRUE(dirties([&] { registry.markDirty(shown); }));
    EXPECT_TRUE(registry.getObject(shown)->worldBoxDirty);
}

TEST_F(VisualSelectionTest, MovingAnUnregisteredVisualMarksNothing) {
    LineVisual* shown = line();
    registry.addLineVisual(line());
    EXPECT_FALSE(dirties([&] { registry.markDirty(shown); }));
    EXPECT_FALSE(dirties([&] { registry.markDirty(nullptr); }));
}

TEST_F(VisualSelectionTest, SettingThePoseOfAVisualMarksTheLibrarysOwnRegistry) {
    LineVisual* shown = line();
    gVisSelection->addLineVisual(shown);
    gVisSelection->update();
    top->setPosition(1, 2, 3);
    EXPECT_TRUE(gVisSelection->dirty);
    EXPECT_TRUE(gVisSelection->getObject(shown)->worldBoxDirty);
    scene().deleteVisual(shown);
    EXPECT_FALSE(gVisSelection->hasVisual(shown));
}

TEST_F(VisualSelectionTest, UpdateClearsTheMarkThenSignalsAndOnlyIfTheMarkIsSet) {
    int signals = 0;
    bool dirtyInSignal = true;
    const auto subscription = broker::SignalBroker::onSnapResultInvalidated([&] {
        ++signals;
        dirtyInSignal = registry.dirty;
    });
    registry.update();
    EXPECT_EQ(signals, 0);
    registry.addLineVisual(line());
    registry.update();
    EXPECT_EQ(signals, 1);
    EXPECT_FALSE(dirtyInSignal);
    EXPECT_FALSE(registry.dirty);
    registry.update();
    EXPECT_EQ(signals, 1);
}

TEST_F(VisualSelectionTest, UpdateReachesRepeatedAndDisabledObjects) {
    LineVisual* shown = line();
    registry.addLineVisual(shown);
    registry.addLineVisual(shown);
    registry.setObjectEnabled(shown, false);
    registry.update();
    for (BVHPrimitive* primitive : registry.containers[0].primitives)
        EXPECT_FALSE(static_cast<SelectableObject*>(primitive)->worldBoxDirty);
}

TEST_F(VisualSelectionTest, DestroyedRegistryFreesItsObjects) {
    // The address sanitizer's leak check is the judge.
    auto owned = std::make_unique<VisualSelection>();
    owned->addLineVisual(line());
    owned->addLineVisual(line());
    EXPECT_EQ(owned->objects.size(), 2u);
}

TEST(PrimitiveContainer, RemovesTheFirstEqualEntryAndDeletesNothing) {
    PrimitiveContainer container;
    auto *a = new BVHPrimitive, *b = new BVHPrimitive;
    container.primitives = {a, b, nullptr};
    container.removePrimitive(a);
    EXPECT_EQ(container.primitives, (std::vector<BVHPrimitive*>{b, nullptr}));
    EXPECT_TRUE(a->enabled);
    EXPECT_THROW(container.removePrimitive(a), std::out_of_range);
    delete a;
}

TEST_F(VisualSelectionTest, ObjectNeedsAVisual) {
    EXPECT_THROW(MeshObject(nullptr), std::invalid_argument);
    EXPECT_THROW(LineObject(nullptr), std::invalid_argument);
}

}  // namespace vrn::selection
