#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <OgreSceneNode.h>

#include "selection/VisualSelection.h"
#include "tests/support/EngineFixture.h"
#include "visual/Visual.h"

namespace vrn::test {

using visual::Visual;
using Pos = rob::PosTemplate<float>;
using Rotation = rob::RotationTemplate<float>;
using Pose = rob::PoseTemplate<float>;

namespace {

constexpr std::uint32_t unknownId = 123456789;

Pose QuarterTurnAt(const Pos& at) {
    return {at, Rotation(1.5707964f, rob::Vec3Template<float>{0, 0, 1})};
}

void ExpectNear(const Pos& is, const Pos& expected) {
    EXPECT_NEAR(is.x, expected.x, 1e-3f);
    EXPECT_NEAR(is.y, expected.y, 1e-3f);
    EXPECT_NEAR(is.z, expected.z, 1e-3f);
}

void ExpectNear(const Pose& is, const Pose& expected) {
    ExpectNear(is.position, expected.position);
    const float cosine = is.rotation.w * expected.rotation.w + is.rotation.x * expected.rotation.x +
                         is.rotation.y * expected.rotation.y + is.rotation.z * expected.rotation.z;
    EXPECT_NEAR(std::abs(cosine), 1.0f, 1e-5f);
}

/// What the next batch throws is the strict look-up's.
void ExpectUnknownIdInBatch() {
    try {
        visual::Scene::Get()->processMsgs();
        FAIL() << "the unknown id went unnoticed";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "unordered_map::at");
    }
}

}  // namespace

/// Two visuals in the registry, `carrier` turned and away from the origin, and `load` at (10, 0,
/// 0).
class TreeOperations : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        carrier = add(scene().root, QuarterTurnAt({100, 0, 0}));
        load = add(scene().root, {{10, 0, 0}, {}});
    }
    static Visual* add(Visual* parent, const Pose& pose) {
        auto* visual = new Visual(parent);
        scene().visuals[visual->id] = visual;
        visual->setPose(pose);
        return visual;
    }
    Visual *carrier = nullptr, *load = nullptr;
};

// --- places

TEST_F(TreeOperations, AttachingKeepsTheLocalPose) {
    scene().attachVisual(carrier->id, load);
    EXPECT_EQ(load->getParent(), scene().root);
    pump();
    EXPECT_EQ(load->getParent(), carrier);
    EXPECT_EQ(load->getPosition(), (Pos{10, 0, 0}));
    ExpectNear(load->getWorldPosition(), {100, 10, 0});
    EXPECT_FALSE(load->attached);
}

TEST_F(TreeOperations, DetachingGoesToTheRootAndChangesTheWorldPose) {
    carrier->attachVisual(load);
    scene().detachVisual(load);
    EXPECT_EQ(load->getParent(), carrier);
    pump();
    EXPECT_EQ(load->getParent(), scene().root);
    ExpectNear(load->getWorldPosition(), {10, 0, 0});
}

TEST_F(TreeOperations, ReparentingLooksBothIdsUpInTheTask) {
    scene().reparentVisual(load->id, carrier->id);
    pump();
    EXPECT_EQ(load->getParent(), carrier);
    scene().reparentVisual(load->id, unknownId);
    ExpectUnknownIdInBatch();
    scene().reparentVisual(unknownId, carrier->id);
    ExpectUnknownIdInBatch();
    EXPECT_EQ(load->getParent(), carrier);
}

TEST_F(TreeOperations, MovingToAParentSetsTheWorldPoseThere) {
    const Pose target{{7, 8, 9}, Rotation(0.5f, rob::Vec3Template<float>{1, 0, 0})};
    scene().moveVisualToParent(load->id, carrier->id, target);
    pump();
    EXPECT_EQ(load->getParent(), carrier);
    ExpectNear(load->getWorldPose(), target);
    scene().moveVisualToParent(load->id, 0, target);
    pump();
    EXPECT_EQ(load->getParent(), scene().root);
    ExpectNear(load->getPose(), target);
}

TEST_F(TreeOperations, MovingToAnUnknownParentLeavesTheVisualWhereItIs) {
    scene().moveVisualToParent(load->id, unknownId, {{7, 8, 9}, {}});
    ExpectUnknownIdInBatch();
    EXPECT_EQ(load->getParent(), scene().root);
    EXPECT_EQ(load->getPosition(), (Pos{10, 0, 0}));
}

TEST_F(TreeOperations, MovingMarksTheSelectionDirtyAlsoWhereNothingChanges) {
    Visual* part = showBoxPart("movable");
    auto* selection = selection::VisualSelection::Get();
    ASSERT_FALSE(selection->dirty);
    scene().moveVisualToParent(part->id, 0, part->getWorldPose());
    scene().processMsgs();
    EXPECT_TRUE(selection->dirty);
}

// --- attachments

TEST_F(TreeOperations, AttachmentPlacesTheChildAndMarksIt) {
    scene().addAttachment(load->id, carrier->id, {{0, 0, 5}, {}});
    EXPECT_FALSE(load->attached);
    pump();
    EXPECT_TRUE(load->attached);
    EXPECT_EQ(load->getParent(), carrier);
    EXPECT_EQ(load->getPosition(), (Pos{0, 0, 5}));
}

TEST_F(TreeOperations, AnAttachedChildIsLeftOutOfTheCascadeOfItsParent) {
    scene().addAttachment(load->id, carrier->id, {});
    pump();
    carrier->setVisible(false, /*cascade=*/true);
    EXPECT_FALSE(carrier->visible);
    EXPECT_TRUE(load->visible);
}

TEST_F(TreeOperations, DeletingAnAttachmentToParent0GoesToTheRootAndClearsTheMark) {
    scene().addAttachment(load->id, carrier->id, {});
    scene().deleteAttachment(load->id, carrier->id, 0, {{1, 2, 3}, {}});
    pump();
    EXPECT_EQ(load->getParent(), scene().root);
    EXPECT_FALSE(load->attached);
    EXPECT_EQ(load->getPosition(), (Pos{1, 2, 3}));
}

TEST_F(TreeOperations, DeletingAnAttachmentGoesToTheNewParentWhateverTheOldOneIs) {
    Visual* next = add(scene().root, {{0, 50, 0}, {}});
    scene().addAttachment(load->id, carrier->id, {});
    scene().deleteAttachment(load->id, unknownId, next->id, {{1, 2, 3}, {}});
    pump();
    EXPECT_EQ(load->getParent(), next);
    EXPECT_FALSE(load->attached);
    EXPECT_EQ(load->getWorldPosition(), (Pos{1, 52, 3}));
}

TEST_F(TreeOperations, AttachmentsOfUnknownIdsThrowOutOfTheBatch) {
    scene().addAttachment(unknownId, carrier->id, {});
    ExpectUnknownIdInBatch();
    scene().addAttachment(load->id, unknownId, {});
    ExpectUnknownIdInBatch();
    scene().deleteAttachment(load->id, 0, unknownId, {});
    ExpectUnknownIdInBatch();
    EXPECT_FALSE(load->attached);
    EXPECT_EQ(load->getParent(), scene().root);
}

// --- poses

TEST_F(TreeOperations, PosesAreSetInTheTaskByIdAndByPointer) {
    carrier->attachVisual(load);
    const Pose local{{1, 2, 3}, Rotation(0.3f, rob::Vec3Template<float>{0, 1, 0})};
    scene().setVisualPose(load->id, local);
    EXPECT_EQ(load->getPosition(), (Pos{10, 0, 0}));
    pump();
    ExpectNear(load->getPose(), local);
    scene().setVisualWorldPose(load->id, local);
    pump();
    ExpectNear(load->getWorldPose(), local);
    scene().setVisualPose(load, {{4, 5, 6}, {}});
    pump();
    ExpectNear(load->getPose(), {{4, 5, 6}, {}});
    scene().setVisualWorldPose(load, {{4, 5, 6}, {}});
    pump();
    ExpectNear(load->getWorldPose(), {{4, 5, 6}, {}});
}

TEST_F(TreeOperations, PosesOfUnknownIdsThrowOutOfTheBatchAndNotOnTheCaller) {
    EXPECT_NO_THROW(scene().setVisualPose(unknownId, {}));
    ExpectUnknownIdInBatch();
    EXPECT_NO_THROW(scene().setVisualWorldPose(unknownId, {}));
    ExpectUnknownIdInBatch();
    EXPECT_NO_THROW(scene().setLocalOrigin(unknownId, {}, {}));
    ExpectUnknownIdInBatch();
}

TEST_F(TreeOperations, OrientationsGoToTheVisualsByIndex) {
    const double s = std::sqrt(0.5);
    scene().setVisualsOrientations({load->id, carrier->id}, {{s, s, 0, 0}, {s, 0, s, 0}});
    pump();
    ExpectNear(load->getPose(),
               {{10, 0, 0}, Rotation(1.5707964f, rob::Vec3Template<float>{1, 0, 0})});
    ExpectNear(carrier->getPose(),
               {{100, 0, 0}, Rotation(1.5707964f, rob::Vec3Template<float>{0, 1, 0})});
}

TEST_F(TreeOperations, UnequalListsOfOrientationsThrowOnTheCallerAndPostNothing) {
    EXPECT_THROW(scene().setVisualsOrientations({load->id}, {}), std::invalid_argument);
    EXPECT_THROW(scene().setVisualsOrientations({}, {{}}), std::invalid_argument);
    EXPECT_NO_THROW(scene().setVisualsOrientations({}, {}));
    EXPECT_NO_THROW(pump());
}

TEST_F(TreeOperations, AnUnknownIdAmongOrientationsLosesThoseBehindIt) {
    scene().setVisualsOrientations({carrier->id, unknownId, load->id},
                                   {{0, 1, 0, 0}, {}, {0, 1, 0, 0}});
    ExpectUnknownIdInBatch();
    ExpectNear(carrier->getPose(), {{100, 0, 0}, {0, 1, 0, 0}});
    ExpectNear(load->getPose(), {{10, 0, 0}, {}});
}

TEST_F(TreeOperations, NewLocalOriginKeepsTheChildrenInPlace) {
    Visual* inner = add(carrier, {{5, 6, 7}, Rotation(0.4f, rob::Vec3Template<float>{1, 0, 0})});
    Visual* innermost = add(inner, {{1, 1, 1}, {}});
    const Pose before = inner->getWorldPose(), innermostBefore = innermost->getWorldPose();
    const Pose next{{-30, 40, 50}, Rotation(1.1f, rob::Vec3Template<float>{0, 1, 0})};
    scene().setLocalOrigin(carrier->id, carrier->getWorldPose(), next);
    pump();
    ExpectNear(carrier->getWorldPose(), next);
    ExpectNear(inner->getWorldPose(), before);
    ExpectNear(innermost->getWorldPose(), innermostBefore);
}

TEST_F(TreeOperations, ALocalOriginsRotationNeedsNoUnitLengthAndAZeroOneIsNoTurn) {
    Visual* inner = add(load, QuarterTurnAt({5, 6, 7}));
    for (const Rotation& turn : {Rotation{0, 0, 0, 0}, Rotation{2, 0, 0, 0}}) {
        const Pose before = inner->getWorldPose();
        scene().setLocalOrigin(load->id, {load->getPosition(), turn}, {{-30, 40, 50}, turn});
        pump();
        ExpectNear(inner->getWorldPose(), before);
    }
}

TEST_F(TreeOperations, APoseThatIsRefusedLeavesAVisualWhereItHangs) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const Pose before = load->getWorldPose();
    scene().moveVisualToParent(load->id, carrier->id, {{nan, 0, 0}, {}});
    EXPECT_THROW(scene().processMsgs(), std::invalid_argument);
    scene().addAttachment(load->id, carrier->id, {{nan, 0, 0}, {}});
    EXPECT_THROW(scene().processMsgs(), std::invalid_argument);
    EXPECT_EQ(load->getParent(), scene().root);
    EXPECT_FALSE(load->attached);
    EXPECT_EQ(load->getWorldPose(), before);

    scene().addAttachment(load->id, carrier->id, {});
    pump();
    scene().deleteAttachment(load->id, carrier->id, 0, {{nan, 0, 0}, {}});
    EXPECT_THROW(scene().processMsgs(), std::invalid_argument);
    EXPECT_EQ(load->getParent(), carrier);
    EXPECT_TRUE(load->attached);
}

TEST_F(TreeOperations, NewLocalOriginOfAVisualUnderATurnedParentIsAWorldPose) {
    Visual* middle = add(carrier, QuarterTurnAt({0, 20, 0}));
    Visual* inner = add(middle, {{5, 6, 7}, {}});
    const Pose before = inner->getWorldPose();
    const Pose next{{1, 2, 3}, Rotation(0.7f, rob::Vec3Template<float>{0, 0, 1})};
    scene().setLocalOrigin(middle->id, middle->getWorldPose(), next);
    pump();
    ExpectNear(middle->getWorldPose(), next);
    ExpectNear(inner->getWorldPose(), before);
}

// --- removing

TEST_F(TreeOperations, RemovingTakesTheSubtreeOutOfTheRegistryAndTheTree) {
    Visual* inner = add(load, {});
    const std::uint32_t loadId = load->id, innerId = inner->id;
    scene().removeVisual(loadId);
    EXPECT_TRUE(scene().visuals.contains(loadId));
    pump();
    EXPECT_FALSE(scene().visuals.contains(loadId));
    EXPECT_FALSE(scene().visuals.contains(innerId));
    EXPECT_TRUE(scene().visuals.contains(carrier->id));
}

TEST_F(TreeOperations, RemovingTakesPickableObjectsAndLayersAlong) {
    Visual* part = showBoxPart("removable");
    const std::uint32_t id = part->id;
    Visual* body = findBelow(part, VisualType::Mesh);
    ASSERT_NE(body, nullptr);
    EXPECT_GT(pickableCount(), 0u);
    scene().setCollision(id, true);
    pump();
    scene().removeVisual(id);
    pump();
    EXPECT_EQ(pickableCount(), 0u);
    scene().clearAllCollisionContacts();  // would refresh what is gone
    EXPECT_NO_THROW(pump());
}

TEST_F(TreeOperations, RemovingTheSameIdTwiceInABatchThrowsAtTheSecond) {
    const std::uint32_t id = load->id;
    scene().removeVisual(id);
    scene().removeVisual(id);
    ExpectUnknownIdInBatch();
    EXPECT_FALSE(scene().visuals.contains(id));
}

TEST_F(TreeOperations, ClearingTheHighlightOfARemovedVisualTouchesNothing) {
    scene().setVisualHighlighted(load);
    pump();
    scene().removeVisual(load->id);
    pump();
    scene().clearHighlightedBody();
    EXPECT_NO_THROW(pump());
}

TEST_F(TreeOperations, RemovingASelectedVisualLeavesAStaleIdThatClearingSkips) {
    scene().setVisualSelected(load->id);
    pump();
    scene().removeVisual(load->id);
    pump();
    scene().clearSelectedVisuals();
    EXPECT_NO_THROW(pump());
}

TEST_F(TreeOperations, TemporaryVisualsHaveARegistryOfTheirOwn) {
    auto* temporary = new Visual(scene().root);
    auto* inner = new Visual(temporary);
    scene().visuals[inner->id] = inner;
    const std::uint32_t id = temporary->id, innerId = inner->id;
    scene().addTempVisual(temporary);
    EXPECT_EQ(scene().tempVisuals.at(id), temporary);
    EXPECT_FALSE(scene().visuals.contains(id));
    scene().removeTempVisual(id);
    EXPECT_TRUE(scene().tempVisuals.contains(id));
    pump();
    EXPECT_FALSE(scene().tempVisuals.contains(id));
    EXPECT_FALSE(scene().visuals.contains(innerId));
}

TEST_F(TreeOperations, RemovingAnAbsentTemporaryVisualThrowsOutOfTheBatch) {
    scene().removeTempVisual(load->id);  // registered, but not as a temporary one
    ExpectUnknownIdInBatch();
    EXPECT_TRUE(scene().visuals.contains(load->id));
}

TEST_F(TreeOperations, DeletingAVisualThatStandsInNoMapIsSilent) {
    const auto before = scene().visuals;
    EXPECT_NO_THROW(scene().deleteVisual(new Visual(scene().root)));
    EXPECT_NO_THROW(scene().deleteVisual(new Visual("attached to nothing")));
    EXPECT_EQ(scene().visuals, before);
}

TEST_F(TreeOperations, DeletingACopyKeepsItsSourceRegistered) {
    load->type = VisualType::Part;
    Visual* copy = load->copy(nullptr).value();
    ASSERT_EQ(copy->id, load->id);
    scene().deleteVisual(copy);
    EXPECT_EQ(scene().visuals.at(load->id), load);
}

TEST_F(TreeOperations, DeletingNullDoesNothing) {
    const auto before = scene().visuals;
    scene().deleteVisual(nullptr);
    EXPECT_EQ(scene().visuals, before);
}

TEST_F(TreeOperations, AddingANullModelObjectIsRefusedInTheTask) {
    scene().addPart(nullptr);
    EXPECT_THROW(pump(), std::invalid_argument);
    scene().addFrame(nullptr);
    EXPECT_THROW(pump(), std::invalid_argument);
}

TEST_F(TreeOperations, NullForTheVisualToMoveIsRefusedOnTheCaller) {
    EXPECT_THROW(scene().setVisualPose(nullptr, Pose()), std::invalid_argument);
    EXPECT_THROW(scene().setVisualWorldPose(nullptr, Pose()), std::invalid_argument);
    EXPECT_NO_THROW(pump());
}

}  // namespace vrn::test
