#include "selection/VisualSelection.h"

#include "mesh/DynamicLines.h"
#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "selection/LineObject.h"
#include "selection/MeshObject.h"
#include "suite/broker/SignalBroker.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/LineVisual.h"
#include "visual/geometry/MeshVisual.h"

#include <OgreSceneNode.h>

#include <gtest/gtest.h>
#include <numbers>
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

/// A mesh visual on a record whose box is (0, 0, 0) to (2, 4, 6).
class MeshObjectTest : public VisualSelectionTest {
protected:
    void SetUp() override {
        VisualSelectionTest::SetUp();
        mesh = new visual::Mesh("MeshObjectTest mesh");
        mesh->vertices = {{0, 0, 0}, {2, 4, 0}, {2, 4, 6}};
        mesh->indices = {0, 1, 2};
        visual::MeshManager::Get()->addMesh(mesh);
        shown = new MeshVisual("MeshObjectTest", top);
        shown->attachMesh(mesh->name);
    }
    void TearDown() override {
        top->clearChildren();  // before the mesh that they show
        visual::MeshManager::Get()->deleteMesh(mesh);
        VisualSelectionTest::TearDown();
    }

    visual::Mesh* mesh = nullptr;
    MeshVisual* shown = nullptr;
};

void ExpectNear(const Pos& got, const Pos& wanted) {
    EXPECT_NEAR(got.x, wanted.x, 1e-4);
    EXPECT_NEAR(got.y, wanted.y, 1e-4);
    EXPECT_NEAR(got.z, wanted.z, 1e-4);
}

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
    EXPECT_EQ(registry.getObject(shown)->box.min, (Pos{1, 2, 3}));
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

TEST_F(MeshObjectTest, BoxIsThatOfTheMeshAtTheWorldPlaceOfTheVisual) {
    top->setPosition(100, 0, 0);
    shown->setPose({{0, 10, 0},
                    rob::RotationTemplate<float>(std::numbers::pi_v<float> / 2,
                                                 rob::Vec3Template<float>{0, 0, 1})});
    MeshObject object(shown);
    object.updateWorldBox();
    ExpectNear(object.box.min, {96, 10, 0});
    ExpectNear(object.box.max, {100, 12, 6});
    ExpectNear(object.box.center, {98, 11, 3});
    EXPECT_FALSE(object.box.dirty);
    EXPECT_FALSE(object.worldBoxDirty);
    EXPECT_TRUE(object.bvhBuilt);
}

TEST_F(MeshObjectTest, InversePoseLeadsFromTheWorldToTheVisual) {
    shown->setPose({{1, 2, 3}, rob::RotationTemplate<float>(0.7f, Pos{0, 0.6f, 0.8f}.asVec3())});
    MeshObject object(shown);
    object.updateWorldBox();
    const Pos local{4, 5, 6};
    ExpectNear(TransformPoint(object.inverseWorldPose, TransformPoint(object.worldPose, local)),
               local);
    EXPECT_EQ(object.worldPose, shown->getWorldPose());
}

TEST_F(MeshObjectTest, BoxTakesTheDerivedScaleAndTheInversePoseDoesNot) {
    top->setScale(2, 1, 1);
    shown->setScale(5, 3, 1);
    shown->setPosition(1, 1, 1);
    MeshObject object(shown);
    object.updateWorldBox();
    ExpectNear({object.scale.x, object.scale.y, object.scale.z}, {10, 3, 1});
    const Pos at = shown->getWorldPosition();
    ExpectNear(object.box.min, at);
    ExpectNear(object.box.max, {at.x + 20, at.y + 12, at.z + 6});
    ExpectNear(TransformPoint(object.inverseWorldPose, at), {0, 0, 0});
}

TEST_F(MeshObjectTest, NothingHappensUntilTheVisualMoved) {
    MeshObject object(shown);
    object.updateWorldBox();
    shown->setPosition(50, 0, 0);
    object.updateWorldBox();
    ExpectNear(object.box.min, {0, 0, 0});
    object.worldBoxDirty = true;
    object.updateWorldBox();
    ExpectNear(object.box.min, {50, 0, 0});
}

TEST_F(MeshObjectTest, VisualWithoutAMeshHasTheEmptyBox) {
    auto* bare = new MeshVisual("bare", top);
    bare->setPosition(1, 2, 3);
    MeshObject object(bare);
    object.updateWorldBox();
    EXPECT_FALSE(object.box.isValid());
    EXPECT_FALSE(object.worldBoxDirty);
}

TEST_F(MeshObjectTest, GlobalMeshIsFoundBeforeTheRegistry) {
    visual::Mesh* arrow = visual::MeshManager::Get()->getGlobalMesh("mfg_arrow");
    ASSERT_NE(arrow, nullptr);
    shown->attachMesh("mfg_arrow");
    MeshObject object(shown);
    object.updateWorldBox();
    ExpectNear(object.box.min, arrow->getBox().min);
    ExpectNear(object.box.max, arrow->getBox().max);
}

TEST_F(VisualSelectionTest, LineBoxBoundsTheSegmentsOfAllSectionsInTheWorld) {
    LineVisual* shown = line();
    DynamicLines* list = shown->createDynamicLine(RenderOpType::LineList);
    list->addPoint(0, 0, 0);
    list->addPoint(1, 0, 0);
    list->addPoint(-999, 0, 0);  // without a partner
    DynamicLines* strip = shown->createDynamicLine(RenderOpType::LineStrip);
    strip->addPoint(0, 5, 0);
    strip->addPoint(0, 6, 0);
    strip->addPoint(0, 7, 2);
    shown->createDynamicLine(RenderOpType::LineStrip)->addPoint(0, -999, 0);  // a single point
    DynamicLines* points = shown->createDynamicLine(RenderOpType::PointList);
    points->addPoint(0, 0, -999);
    points->addPoint(0, 0, 999);
    shown->setPosition(10, 20, 30);
    LineObject object(shown);
    object.updateWorldBox();
    ExpectNear(object.box.min, {10, 20, 30});
    ExpectNear(object.box.max, {11, 27, 32});
    ExpectNear(object.box.center, {10.5f, 23.5f, 31});
    ExpectNear(object.inverseWorldPose.position, {-10, -20, -30});
}

TEST_F(VisualSelectionTest, LineBoxStaysUntilTheVisualMoved) {
    LineVisual* shown = line();
    DynamicLines* lines = shown->createDynamicLine(RenderOpType::LineStrip);
    lines->addPoint(0, 0, 0);
    lines->addPoint(1, 2, 3);
    LineObject object(shown);
    object.updateWorldBox();
    shown->setPosition(10, 0, 0);
    object.updateWorldBox();
    EXPECT_EQ(object.box.max, (Pos{1, 2, 3}));
    object.worldBoxDirty = true;
    object.updateWorldBox();
    EXPECT_EQ(object.box.max, (Pos{11, 2, 3}));
}

TEST_F(VisualSelectionTest, LineVisualWithoutSegmentsHasTheEmptyBox) {
    LineVisual* shown = line();
    shown->setPosition(10, 20, 30);
    LineObject object(shown);
    object.updateWorldBox();
    EXPECT_FALSE(object.box.isValid());
}

}  // namespace vrn::selection
