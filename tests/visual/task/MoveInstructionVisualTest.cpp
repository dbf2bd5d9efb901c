#include "visual/task/MoveInstructionVisual.h"

#include <limits>
#include <stdexcept>

#include <gmock/gmock.h>

#include <OgreException.h>
#include <OgreInstanceBatch.h>
#include <OgreInstancedEntity.h>
#include <OgreSceneNode.h>

#include "mesh/DynamicLines.h"
#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/broker/SignalBroker.h"
#include "suite/smart/StationLogic.h"
#include "tests/visual/task/ProgramFixture.h"
#include "visual/station/RobtargetVisual.h"
#include "visual/task/PathArrowVisual.h"

namespace vrn::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::InstanceFrameVisual;
using visual::MoveInstructionVisual;
using visual::PathArrowVisual;
using visual::Visual;

class Moves : public Programs {
protected:
    static const PathArrowVisual* arrowOf(const task::MoveInst* move) {
        return visualOfMove(move)->getPathArrow();
    }
    static float arrowScale(const task::MoveInst* move) {
        const Ogre::Vector3 scale = arrowOf(move)->getEntity()->getScale();
        EXPECT_EQ(scale.x, scale.y);
        EXPECT_EQ(scale.x, scale.z);
        return scale.x;
    }
    /// Where the arrow points to, in the object frame.
    static rob::Vec3Template<float> arrowDirection(const task::MoveInst* move) {
        return arrowOf(move)->getPose().rotation.rotated({0, 0, 1});
    }
    static void expectNear(const rob::Vec3Template<float>& a, const rob::Vec3Template<float>& b) {
        EXPECT_LT((a - b).length(), 1e-4f) << a.x << ' ' << a.y << ' ' << a.z;
    }
    static auto throwsZeroLength() {
        return ThrowsMessage<std::overflow_error>(StrEq("0-length vector cannot be normalized."));
    }
    static auto throwsUnknownKey() {
        return ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at"));
    }
};

// --- the anchor

TEST_F(Moves, AMoveIsAnAnchorOfItsOwnIdInTheObjectFrame) {
    const task::MoveInst* move = addLinear({100, 0, 0});
    showPath();
    const MoveInstructionVisual* shown = visualOfMove(move);
    EXPECT_EQ(shown->type, VisualType::MoveInstruction);
    EXPECT_EQ(shown->id, move->id);
    EXPECT_EQ(shown->getName(), "INSTRUCTION_" + std::to_string(move->id));
    EXPECT_EQ(shown->getParent(), objectFrameOf(wobj));
    EXPECT_EQ(shown->getPosition(), (Pos{0, 0, 0}));
    EXPECT_EQ(shown->getInstruction(), move);
    EXPECT_THAT(shown->getChildren(), IsEmpty());
}

TEST_F(Moves, NoMoveIsNoneAndNothingIsLeft) {
    const auto before = traces();
    EXPECT_THROW(MoveInstructionVisual(root(), nullptr), std::invalid_argument);
    EXPECT_THROW(MoveInstructionVisual::Build(root(), nullptr, nullptr), std::invalid_argument);
    EXPECT_THROW(scene().buildMoveInstruction(nullptr), std::invalid_argument);
    EXPECT_THROW(scene().updateInstruction(nullptr, nullptr), std::invalid_argument);
    EXPECT_THROW(scene().buildMoveInstructions({{nullptr, nullptr, 0}}), std::invalid_argument);
    EXPECT_EQ(traces(), before);
}

// --- targets

TEST_F(Moves, TargetsAreShownOnlyWhileTheSceneDrawsThem) {
    const task::MoveInst* move = addCircular({50, 50, 0}, {100, 0, 0});
    showPath();
    EXPECT_EQ(visualOfMove(move)->getTargetVisual(), nullptr);
    EXPECT_EQ(visualOfMove(move)->getCircleVisual(), nullptr);
    scene().setDrawTargetVisual(true);
    pump();
    const auto* target = visualOfMove(move)->getTargetVisual();
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(target->id, move->getTargetItemId());
    EXPECT_EQ(target->getPosition(), (Pos{100, 0, 0}));
    const auto* circle = visualOfMove(move)->getCircleVisual();
    ASSERT_NE(circle, nullptr);
    EXPECT_EQ(circle->id, move->getCircleItemId());
    EXPECT_EQ(circle->getPosition(), (Pos{50, 50, 0}));
    scene().setDrawTargetVisual(false);
    pump();
    EXPECT_EQ(visualOfMove(move)->getTargetVisual(), nullptr);
    EXPECT_EQ(visualOfMove(move)->getCircleVisual(), nullptr);
    EXPECT_THAT(visualOfMove(move)->getChildren(), IsEmpty());
    EXPECT_EQ(instancesInUse(), 0u);
}

TEST_F(Moves, AMoveThatHangsBelowATargetGoesWithIt) {
    std::vector<const task::MoveInst*> moves;
    for (int i = 0; i < 4; ++i) moves.push_back(addLinear({10.0 * i, 0, 0}));
    showPath();
    scene().setDrawTargetVisual(true);
    pump();
    // Whichever the scene comes to first: each hangs below the target of the one before.
    for (std::size_t i = 1; i < moves.size(); ++i)
        visualOfMove(moves[i - 1])->getTargetVisual()->attachVisual(visualOfMove(moves[i]));
    scene().setDrawTargetVisual(false);
    EXPECT_NO_THROW(pump());
    EXPECT_EQ(visualOfMove(moves[0])->getTargetVisual(), nullptr);
    for (std::size_t i = 1; i < moves.size(); ++i)
        EXPECT_FALSE(scene().visuals.contains(moves[i]->id));
    EXPECT_EQ(instancesInUse(), 0u);
}

TEST_F(Moves, AJointTargetHasATriadOfItsKindAndNoCirclePoint) {
    scene().settings.drawTargetVisual = true;
    task::MoveInst* move = addJointTarget({10, 20, 30});
    move->setCirclePoint(makeTarget({1, 2, 3}));
    showPath();
    ASSERT_NE(visualOfMove(move)->getTargetVisual(), nullptr);
    EXPECT_EQ(visualOfMove(move)->getTargetVisual()->type, VisualType::JointTarget);
    EXPECT_EQ(visualOfMove(move)->getCircleVisual(), nullptr);
}

TEST_F(Moves, BuildingTriadsAsksForAFurtherFrameAndDeletingThemDoesNot) {
    addLinear({0, 0, 0});
    showPath();
    int signals = 0;
    const auto subscription = broker::SignalBroker::onUpdateScene([&] { ++signals; });
    scene().setDrawTargetVisual(true);
    EXPECT_EQ(signals, 1);
    scene().processMsgs();
    EXPECT_EQ(signals, 2);
    scene().setDrawTargetVisual(false);
    scene().processMsgs();
    EXPECT_EQ(signals, 3);
}

TEST_F(Moves, SwitchingTargetsOnTwiceMakesASecondPairAndTheFirstStays) {
    const task::MoveInst* move = addCircular({50, 50, 0}, {100, 0, 0});
    showPath();
    scene().setDrawTargetVisual(true);
    pump();
    const InstanceFrameVisual* first = visualOfMove(move)->getTargetVisual();
    scene().setDrawTargetVisual(true);
    pump();
    EXPECT_NE(visualOfMove(move)->getTargetVisual(), first);
    EXPECT_THAT(visualOfMove(move)->getChildren(), SizeIs(4));
    scene().setDrawTargetVisual(false);
    pump();
    EXPECT_THAT(visualOfMove(move)->getChildren(), SizeIs(2));
    scene().removePathVisual(path->id);
    pump();
    EXPECT_EQ(instancesInUse(), 0u);
}

TEST_F(Moves, SeveralMovesMayGoToOneTarget) {
    scene().settings.drawTargetVisual = true;
    const task::MoveInst* first = addLinear({100, 0, 0});
    task::MoveInst* second = addLinear({0, 0, 0});
    second->setTarget(*first->getTargetItem());
    showPath();
    const auto* a = visualOfMove(first)->getTargetVisual();
    const auto* b = visualOfMove(second)->getTargetVisual();
    ASSERT_NE(a, b);
    EXPECT_EQ(a->getName(), b->getName());
}

TEST_F(Moves, ATargetThatHasEndedThrowsAndNothingIsLeft) {
    scene().settings.drawTargetVisual = true;
    task::MoveInst* move = addLinear({0, 0, 0});
    move->setTarget(task::RobTargetDataItem("gone"));
    const auto before = traces();
    EXPECT_THAT([&] { MoveInstructionVisual::Build(root(), nullptr, move); }, throwsUnknownKey());
    EXPECT_EQ(traces(), before);
}

TEST_F(Moves, ACirclePointThatIsNotFiniteThrowsAndNoTriadIsLeft) {
    scene().settings.drawTargetVisual = true;
    task::MoveInst* move = addCircular({std::numeric_limits<double>::quiet_NaN(), 0, 0}, {1, 0, 0});
    const auto before = traces();
    EXPECT_THROW(MoveInstructionVisual::Build(root(), nullptr, move), std::invalid_argument);
    EXPECT_EQ(traces(), before);
    EXPECT_EQ(instancesInUse(), 0u);
}

TEST_F(Moves, ATriadThatIsRemovedOrTakenAwayIsForgotten) {
    scene().settings.drawTargetVisual = true;
    scene().settings.drawPathArrow = true;
    addLinear({-100, 0, 0});
    task::MoveInst* move = addCircular({50, 50, 0}, {100, 0, 0});
    showPath();
    scene().removeVisual(move->getTargetItemId());
    scene().reparentVisual(move->getCircleItemId(), wobj->id);
    pump();
    EXPECT_EQ(visualOfMove(move)->getTargetVisual(), nullptr);
    EXPECT_EQ(visualOfMove(move)->getCircleVisual(), nullptr);
    scene().deleteVisual(visualOfMove(move)->getPathArrow());
    EXPECT_EQ(visualOfMove(move)->getPathArrow(), nullptr);
    visualOfMove(move)->setVisible(false, false);
    visualOfMove(move)->setSelected();
    visualOfMove(move)->setHighlighted();
    visualOfMove(move)->clearHighlightOrSelect();
    visualOfMove(move)->resetAppearance();
    EXPECT_NO_THROW(visualOfMove(move)->update(nullptr, move));
}

TEST_F(Moves, OfTriadsThatShareATargetOneStaysRegisteredWhileThereIsOne) {
    scene().settings.drawTargetVisual = true;
    std::vector<task::MoveInst*> moves;
    for (int i = 0; i < 3; ++i) moves.push_back(addLinear({100.0 * i, 0, 0}));
    for (task::MoveInst* move : moves) move->setTarget(*moves.front()->getTargetItem());
    showPath();
    const std::uint32_t id = moves.front()->getTargetItemId();
    const auto triadOf = [](const task::MoveInst* move) -> Visual* {
        return visualOfMove(move)->getTargetVisual();
    };
    EXPECT_EQ(scene().visuals.at(id), triadOf(moves[2]));  // the last one built
    scene().removeVisual(moves[1]->id);                    // not the registered one
    pump();
    EXPECT_EQ(scene().visuals.at(id), triadOf(moves[2]));
    scene().removeVisual(moves[2]->id);
    pump();
    EXPECT_EQ(scene().visuals.at(id), triadOf(moves[0]));
    scene().setVisualPose(id, {{7, 8, 9}, {}});  // by its id it is reached as before
    pump();
    EXPECT_EQ(triadOf(moves[0])->getPosition(), (Pos{7, 8, 9}));
    scene().removeVisual(moves[0]->id);
    pump();
    EXPECT_FALSE(scene().visuals.contains(id));
}

TEST_F(Moves, ATriadThatIsReplacedWhileAnotherSharesItsTargetIsRegisteredAgain) {
    scene().settings.drawTargetVisual = true;
    task::MoveInst* first = addLinear({0, 0, 0});
    task::MoveInst* second = addLinear({100, 0, 0});
    second->setTarget(*first->getTargetItem());
    showPath();
    scene().removeVisual(first->id);
    pump();
    scene().buildMoveInstruction(first);
    pump();
    const std::uint32_t id = first->getTargetItemId();
    EXPECT_EQ(scene().visuals.at(id), visualOfMove(first)->getTargetVisual());
    scene().removeVisual(first->id);
    pump();
    EXPECT_EQ(scene().visuals.at(id), visualOfMove(second)->getTargetVisual());
}

// --- arrows

TEST_F(Moves, ArrowsAreOffAtFirst) {
    addLinear({0, 0, 0});
    const task::MoveInst* move = addLinear({100, 0, 0});
    showPath();
    EXPECT_EQ(arrowOf(move), nullptr);
}

TEST_F(Moves, TheFirstMoveOfAPathHasNoArrow) {
    scene().settings.drawPathArrow = true;
    const task::MoveInst* first = addLinear({100, 0, 0});
    const task::MoveInst* second = addLinear({200, 0, 0});
    showPath();
    EXPECT_EQ(arrowOf(first), nullptr);
    EXPECT_NE(arrowOf(second), nullptr);
}

TEST_F(Moves, AnArrowStandsInTheMiddleOfItsSegmentAndPointsAlongIt) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    const task::MoveInst* move = addLinear({0, 300, 400});
    showPath();
    EXPECT_EQ(arrowOf(move)->getPosition(), (Pos{0, 150, 200}));
    expectNear(arrowDirection(move), {0, 0.6f, 0.8f});
    EXPECT_FALSE(scene().visuals.contains(arrowOf(move)->id));
}

TEST_F(Moves, AnArrowAgainstTheZAxisIsTurnedByHalf) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    const task::MoveInst* move = addLinear({0, 0, -400});
    showPath();
    expectNear(arrowDirection(move), {0, 0, -1});
}

TEST_F(Moves, ASegmentShorterThanOneHasNoArrowButALine) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    const task::MoveInst* near = addLinear({0.99, 0, 0});
    const task::MoveInst* far = addLinear({0.99, 1.0, 0});
    showPath();
    EXPECT_EQ(arrowOf(near), nullptr);
    EXPECT_NE(arrowOf(far), nullptr);
    EXPECT_THAT(pointsOf(lines()[0]), SizeIs(3));
}

TEST_F(Moves, AnArrowShrinksWithASegmentBelowTwoHundred) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    const task::MoveInst* hundred = addLinear({100, 0, 0});
    const task::MoveInst* twoHundred = addLinear({300, 0, 0});
    const task::MoveInst* thousand = addLinear({1300, 0, 0});
    showPath();
    EXPECT_EQ(arrowScale(hundred), 0.5f);
    EXPECT_EQ(arrowScale(twoHundred), 1.0f);
    EXPECT_EQ(arrowScale(thousand), 1.0f);
}

TEST_F(Moves, AnArrowOnAnArcStandsOnItAndPointsAlongItsTangent) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    const task::MoveInst* move = addCircular({20, 20, 0}, {40, 0, 0});
    showPath();
    expectNear(arrowOf(move)->getPosition().asVec3(), {20, 20, 0});
    expectNear(arrowDirection(move), {1, 0, 0});
    // Half a circle of radius 20, along the arc.
    EXPECT_NEAR(arrowScale(move), 3.14159265f * 20 / 200, 1e-5f);
}

TEST_F(Moves, AnArcIsToldByTheCirclePointWhateverKindTheMoveIsOf) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    task::MoveInst* move = addLinear({40, 0, 0});
    move->setCirclePoint(makeTarget({20, 20, 0}));
    showPath();
    expectNear(arrowOf(move)->getPosition().asVec3(), {20, 20, 0});
    EXPECT_THAT(pointsOf(lines()[0]), SizeIs(2));
}

TEST_F(Moves, AnArcThroughCollinearPointsHasAStraightArrow) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    const task::MoveInst* move = addCircular({10, 0, 0}, {40, 0, 0});
    showPath();
    EXPECT_EQ(arrowOf(move)->getPosition(), (Pos{20, 0, 0}));
}

TEST_F(Moves, AnArcShorterThanOneHasNoArrow) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    const task::MoveInst* move = addCircular({0.15, 0.15, 0}, {0.3, 0, 0});
    showPath();
    EXPECT_EQ(arrowOf(move), nullptr);
}

TEST_F(Moves, ACirclePointOrATargetAtTheStartThrowsAndThereIsNoArrow) {
    scene().settings.drawPathArrow = true;
    task::MoveInst* start = addLinear({0, 0, 0});
    task::MoveInst* viaAtStart = addCircular({0, 0, 0}, {40, 0, 0});
    task::MoveInst* endAtStart = addCircular({20, 20, 0}, {0, 0, 0});
    for (task::MoveInst* move : {viaAtStart, endAtStart}) {
        EXPECT_THAT([&] { MoveInstructionVisual::Build(root(), start, move); }, throwsZeroLength());
        EXPECT_EQ(arrowOf(move), nullptr);
    }
}

TEST_F(Moves, AJointMoveHasADashedLineAndAnArrowInTheMiddleOfTheChord) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    const task::MoveInst* move = addJoint({100, 0, 0});
    showPath();
    EXPECT_EQ(lines()[0]->getType(), visual::PathLineType::Dashed);
    EXPECT_EQ(arrowOf(move)->getPosition(), (Pos{50, 0, 0}));
}

TEST_F(Moves, WhereThereIsNoSegmentThereIsNoArrow) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    const task::MoveInst* joint = addJointTarget({100, 0, 0});
    const task::MoveInst* after = addLinear({200, 0, 0});
    const task::MoveInst* other = addIn(otherWObj, {300, 0, 0});
    showPath();
    for (const task::MoveInst* move : {joint, after, other}) EXPECT_EQ(arrowsOf(move), 0u);
    scene().setDrawPathArrow(false);
    scene().setDrawPathArrow(true);
    pump();
    for (const task::MoveInst* move : {joint, after, other}) EXPECT_EQ(arrowsOf(move), 0u);
}

TEST_F(Moves, TurningArrowsOffAndOnLeavesNoneAndThenOneForEachSegment) {
    std::vector<const task::MoveInst*> moves;
    for (int i = 0; i < 5; ++i) moves.push_back(addLinear({i * 100.0, 0, 0}));
    addAction();
    showPath();
    for (int round = 0; round < 3; ++round) {
        scene().setDrawPathArrow(true);
        pump();
        EXPECT_EQ(arrowsOf(moves[0]), 0u);
        for (std::size_t i = 1; i < moves.size(); ++i) EXPECT_EQ(arrowsOf(moves[i]), 1u);
        EXPECT_EQ(instancesInUse(), 4u);
        scene().setDrawPathArrow(false);
        pump();
        for (const task::MoveInst* move : moves) EXPECT_EQ(arrowsOf(move), 0u);
        EXPECT_EQ(instancesInUse(), 0u);
    }
}

TEST_F(Moves, OffAndOnWithinOneFrameStartFromNothing) {
    scene().settings.drawPathArrow = true;
    scene().settings.drawTargetVisual = true;
    addLinear({0, 0, 0});
    const task::MoveInst* move = addLinear({100, 0, 0});
    showPath();
    for (const bool on : {false, true}) {
        scene().setDrawPathArrow(on);
        scene().setDrawTargetVisual(on);
    }
    pump();
    EXPECT_EQ(arrowsOf(move), 1u);
    EXPECT_THAT(visualOfMove(move)->getChildren(), SizeIs(2));
    for (const bool on : {false, true, false}) {
        scene().setDrawPathArrow(on);
        scene().setDrawTargetVisual(on);
    }
    pump();
    EXPECT_THAT(visualOfMove(move)->getChildren(), IsEmpty());
}

TEST_F(Moves, TurningArrowsOnTwiceLeavesTheFirstOnesInPlace) {
    addLinear({0, 0, 0});
    const task::MoveInst* move = addLinear({100, 0, 0});
    showPath();
    scene().setDrawPathArrow(true);
    scene().setDrawPathArrow(true);
    pump();
    EXPECT_EQ(arrowsOf(move), 2u);
    scene().removeVisual(move->id);
    pump();
    EXPECT_EQ(instancesInUse(), 0u);
}

TEST_F(Moves, AnArrowIsNotBornIntoTheHiddenAndScaledSlotOfAnEarlierOne) {
    auto* first = new PathArrowVisual(root());
    first->setScale(0.1, 0.1, 0.1);
    first->setVisible(false, false);
    delete first;
    auto* second = new PathArrowVisual(root());
    EXPECT_TRUE(second->getEntity()->getVisible());
    EXPECT_EQ(second->getEntity()->getScale(), Ogre::Vector3::UNIT_SCALE);
}

TEST_F(Moves, HidingAnArrowHidesTheInstanceAloneAndScalingLeavesTheNode) {
    auto* arrow = new PathArrowVisual(root());
    auto* child = new Visual(arrow);
    arrow->setVisible(false, /*cascade=*/true);
    EXPECT_FALSE(arrow->getEntity()->getVisible());
    EXPECT_TRUE(arrow->visible);
    EXPECT_TRUE(child->visible);
    arrow->setScale(0.5, 0.5, 0.5);
    EXPECT_EQ(arrow->getEntity()->getScale(), Ogre::Vector3(0.5f));
    EXPECT_EQ(arrow->node->getScale(), Ogre::Vector3::UNIT_SCALE);
}

TEST_F(Moves, AScaleThatCannotBeDrawnIsRefusedByAnArrowToo) {
    auto* arrow = new PathArrowVisual(root());
    arrow->setScale(0.5, 0.5, 0.5);
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(), 1e300, 2e38, -1.001e15})
        EXPECT_THROW(arrow->setScale(1, bad, 1), std::invalid_argument) << bad;
    EXPECT_EQ(arrow->getEntity()->getScale(), Ogre::Vector3(0.5f));
    arrow->setScale(1e15, 1e15, 1e15);
    EXPECT_NO_THROW(frame());
}

TEST_F(Moves, FiveHundredArrowsFillABatchOfTheirMaterial) {
    auto* first = new PathArrowVisual(root());
    for (int i = 1; i < 500; ++i) new PathArrowVisual(root());
    const auto* last = new PathArrowVisual(root());
    EXPECT_NE(last->getEntity()->_getOwner(), first->getEntity()->_getOwner());
    EXPECT_EQ(first->getEntity()->_getOwner()->getMaterial()->getName(), "InstanceArrow");
}

TEST_F(Moves, AMissingManagerOfArrowsThrowsAndNothingIsLeft) {
    const auto before = traces();
    auto taken = scene().instanceManagers.extract("InstancePathArrow");
    EXPECT_THAT([] { PathArrowVisual{root()}; }, throwsUnknownKey());
    scene().instanceManagers.insert(std::move(taken));
    EXPECT_EQ(traces(), before);
}

TEST_F(Moves, PositionsAreThoseOfTheTargetsAndTheOriginWithoutOne) {
    task::MoveInst* first = addLinear({1, 2, 3});
    task::MoveInst* second = addCircular({4, 5, 6}, {7, 8, 9});
    showPath();
    const MoveInstructionVisual* shown = visualOfMove(second);
    EXPECT_EQ(shown->getStartPos(first), (Pos{1, 2, 3}));
    EXPECT_EQ(shown->getStartPos(nullptr), (Pos{0, 0, 0}));
    EXPECT_EQ(shown->getEndPos(), (Pos{7, 8, 9}));
    EXPECT_EQ(shown->getCirclePos(), (Pos{4, 5, 6}));
    EXPECT_EQ(visualOfMove(first)->getCirclePos(), (Pos{0, 0, 0}));
}

// --- update

TEST_F(Moves, AnUpdateWithoutAPredecessorRemovesTheArrowAndDrawsNone) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    task::MoveInst* move = addLinear({100, 0, 0});
    showPath();
    visualOfMove(move)->update(nullptr, move);
    EXPECT_EQ(arrowOf(move), nullptr);
    EXPECT_EQ(arrowsOf(move), 0u);
    EXPECT_EQ(instancesInUse(), 0u);
}

TEST_F(Moves, AnUpdateMovesTriadsAndMakesTheArrowAnew) {
    scene().settings.drawPathArrow = true;
    scene().settings.drawTargetVisual = true;
    task::MoveInst* first = addLinear({0, 0, 0});
    task::MoveInst* move = addCircular({20, 20, 0}, {40, 0, 0});
    showPath();
    const InstanceFrameVisual* target = visualOfMove(move)->getTargetVisual();
    move->getRobTarget()->setPose({{0, 400, 0}, {}});
    move->getCircleItem()->setPose({{0, 200, 0}, {}});
    scene().updateInstruction(first, move);
    pump();
    EXPECT_EQ(visualOfMove(move)->getTargetVisual(), target);
    EXPECT_EQ(target->getPosition(), (Pos{0, 400, 0}));
    EXPECT_EQ(visualOfMove(move)->getCircleVisual()->getPosition(), (Pos{0, 200, 0}));
    EXPECT_EQ(arrowsOf(move), 1u);
    EXPECT_EQ(arrowOf(move)->getPosition(), (Pos{0, 200, 0}));
    EXPECT_EQ(pointsOf(lines()[0])[1], (Pos{0, 400, 0}));
}

TEST_F(Moves, AnUpdateDoesNotMakeATriadForACirclePointThatTheMoveHasGained) {
    scene().settings.drawTargetVisual = true;
    task::MoveInst* move = addLinear({40, 0, 0});
    showPath();
    move->setCirclePoint(makeTarget({20, 20, 0}));
    visualOfMove(move)->update(nullptr, move);
    EXPECT_EQ(visualOfMove(move)->getCircleVisual(), nullptr);
}

TEST_F(Moves, AnUpdateTakesTheMoveThatItIsGiven) {
    task::MoveInst* move = addLinear({40, 0, 0});
    task::MoveInst* other = addLinear({80, 0, 0});
    showPath();
    visualOfMove(move)->update(nullptr, other);
    EXPECT_EQ(visualOfMove(move)->getInstruction(), other);
    EXPECT_EQ(visualOfMove(move)->getEndPos(), (Pos{80, 0, 0}));
}

TEST_F(Moves, AnUpdateAcrossWorkObjectsDrawsNoArrow) {
    scene().settings.drawPathArrow = true;
    task::MoveInst* first = addLinear({0, 0, 0});
    task::MoveInst* move = addLinear({100, 0, 0});
    showPath();
    move->setWObj(*otherWObj);
    scene().updateInstruction(first, move);
    pump();
    EXPECT_EQ(arrowsOf(move), 0u);
}

TEST_F(Moves, AnUpdatedInstructionAndItsPathMustBeShown) {
    task::MoveInst* move = addLinear({0, 0, 0});
    scene().updateInstruction(nullptr, move);
    expectUnknownKeyInTask();
    scene().buildMoveInstruction(move);
    scene().updateInstruction(nullptr, move);  // of a path that is not
    expectUnknownKeyInTask();
}

// --- single moves

TEST_F(Moves, ASingleMoveIsShownWithoutArrowAndItsPathIsNotRebuilt) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    showPath();
    task::MoveInst* move = addLinear({100, 0, 0});
    scene().buildMoveInstruction(move);
    pump();
    EXPECT_EQ(visualOf(move)->getParent(), objectFrameOf(wobj));
    EXPECT_EQ(arrowOf(move), nullptr);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(Moves, ASingleMoveInAWorkObjectThatIsNotShownThrowsInTheTask) {
    auto* hidden = model.make<task::WObjDataItem>("hidden");
    hidden->setObjectFrame(*model.make<task::ObjectFrame>("frame"));
    scene().buildMoveInstruction(addIn(hidden, {0, 0, 0}));
    expectUnknownKeyInTask();
}

TEST_F(Moves, AMoveInAWorkObjectThatEndedOrHasNoFrameIsNotShownUnderTheRoot) {
    task::MoveInst* bare = addIn(model.make<task::WObjDataItem>("bare"), {0, 0, 0});
    task::MoveInst* gone = addLinear({0, 0, 0});
    gone->setWObj(task::WObjDataItem("gone"));
    for (task::MoveInst* move : {bare, gone}) {
        scene().buildMoveInstruction(move);
        expectUnknownKeyInTask();
        EXPECT_FALSE(scene().visuals.contains(move->id));
    }
}

TEST_F(Moves, AParentIdOfZeroIsTheRootForAMoveToAJointTargetAlone) {
    task::MoveInst* joints = addJointTarget({0, 0, 0});
    scene().buildMoveInstructions({{nullptr, joints, 0}});
    pump();
    EXPECT_EQ(visualOf(joints)->getParent(), root());
    for (const std::uint32_t parentId : {0u, smartcomp::StationLogic::inst()->id}) {
        task::MoveInst* move = addLinear({0, 0, 0});
        scene().buildMoveInstructions({{nullptr, move, parentId}});
        expectUnknownKeyInTask();
        EXPECT_FALSE(scene().visuals.contains(move->id));
    }
}

TEST_F(Moves, SeveralMovesAreShownInOrderAndThePathOfTheLastIsRebuilt) {
    scene().settings.drawPathArrow = true;
    showPath();
    task::MoveInst* first = addLinear({0, 0, 0});
    task::MoveInst* second = addLinear({100, 0, 0});
    const std::uint32_t parentId = objectFrameOf(wobj)->id;
    scene().buildMoveInstructions({{nullptr, first, parentId}, {first, second, parentId}});
    pump();
    EXPECT_EQ(visualOf(second)->getParent(), objectFrameOf(wobj));
    EXPECT_NE(arrowOf(second), nullptr);
    EXPECT_THAT(lines(), SizeIs(1));
}

TEST_F(Moves, SeveralMovesOfAPathThatIsNotShownOrOfNoneRebuildNothing) {
    task::MoveInst* move = addLinear({0, 0, 0});
    auto* loose =
        model.make<task::MoveInst>("loose", Kind::LinearMove, *makeTarget({0, 0, 0}), *wobj);
    const std::uint32_t parentId = objectFrameOf(wobj)->id;
    scene().buildMoveInstructions({{nullptr, move, parentId}});
    scene().buildMoveInstructions({{nullptr, loose, parentId}});
    scene().buildMoveInstructions({});
    EXPECT_NO_THROW(pump());
    EXPECT_FALSE(scene().visuals.contains(path->id));
    scene().buildMoveInstructions({{nullptr, addLinear({1, 0, 0}), unknownId}});
    expectUnknownKeyInTask();
}

TEST_F(Moves, AMoveIsHungUnderAnotherParent) {
    const task::MoveInst* move = addLinear({0, 0, 0});
    showPath();
    scene().upadateInstructionParent(move->id, objectFrameOf(otherWObj)->id);
    pump();
    EXPECT_EQ(visualOf(move)->getParent(), objectFrameOf(otherWObj));
    scene().upadateInstructionParent(move->id, unknownId);
    expectUnknownKeyInTask();
    scene().upadateInstructionParent(unknownId, wobj->id);
    expectUnknownKeyInTask();
    scene().upadateInstructionParent(wobj->id, path->id);
    EXPECT_THROW(scene().processMsgs(), std::bad_cast);
}

TEST_F(Moves, ASecondVisualOfAMoveIsRefused) {
    task::MoveInst* move = addLinear({0, 0, 0});
    showPath();
    EXPECT_THROW(MoveInstructionVisual::Build(root(), nullptr, move), Ogre::ItemIdentityException);
}

// --- visibility and looks

TEST_F(Moves, AHiddenMoveHidesTriadsAndArrowAndIsNotPickedUntilItIsShown) {
    scene().settings.drawPathArrow = true;
    scene().settings.drawTargetVisual = true;
    addLinear({0, 0, 0});
    const task::MoveInst* move = addCircular({20, 20, 0}, {40, 0, 0});
    showPath();
    MoveInstructionVisual* shown = visualOfMove(move);
    auto* picking = selection::VisualSelection::Get();
    for (const bool show : {false, true}) {
        shown->setVisible(show, false);
        EXPECT_EQ(shown->visible, show);
        EXPECT_EQ(shown->getTargetVisual()->visible, show);
        EXPECT_EQ(shown->getCircleVisual()->visible, show);
        EXPECT_EQ(shown->getPathArrow()->getEntity()->getVisible(), show);
        EXPECT_EQ(picking->getObject(shown->getTargetVisual())->enabled, show);
        EXPECT_EQ(picking->getObject(shown->getCircleVisual())->enabled, show);
    }
}

TEST_F(Moves, WhatAHiddenMoveGainsIsHiddenAndNotPickedUntilItIsShown) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    task::MoveInst* linear = addCircular({20, 20, 0}, {40, 0, 0});
    task::MoveInst* joints = addJointTarget({10, 20, 30});
    showPath();
    for (const bool show : {false, true}) {
        scene().setVisualVisible(path->id, show);
        if (!show) scene().updatePath(path->id);
        if (!show) scene().setDrawTargetVisual(true);
        pump();
        EXPECT_EQ(arrowOf(linear)->getEntity()->getVisible(), show);
        for (InstanceFrameVisual* triad : std::initializer_list<InstanceFrameVisual*>{
                 visualOfMove(linear)->getTargetVisual(), visualOfMove(linear)->getCircleVisual(),
                 visualOfMove(joints)->getTargetVisual()}) {
            EXPECT_EQ(triad->visible, show);
            EXPECT_EQ(mainOf(triad)->getVisible(), show);
            EXPECT_EQ(selection::VisualSelection::Get()->getObject(triad)->enabled, show);
        }
    }
}

TEST_F(Moves, AHighlightLeavesTheArrowAloneAndASelectionFindsNothingToChangeInIt) {
    scene().settings.drawPathArrow = true;
    scene().settings.drawTargetVisual = true;
    addLinear({0, 0, 0});
    const task::MoveInst* move = addCircular({20, 20, 0}, {40, 0, 0});
    showPath();
    MoveInstructionVisual* shown = visualOfMove(move);
    const auto expectLook = [&](const char* look) {
        EXPECT_THAT(shownLooks(shown->getTargetVisual()), ElementsAre(look));
        EXPECT_THAT(shownLooks(shown->getCircleVisual()), ElementsAre(look));
        EXPECT_EQ(arrowOf(move)->getEntity()->_getOwner()->getMaterial()->getName(),
                  "InstanceArrow");
        EXPECT_TRUE(arrowOf(move)->getEntity()->getVisible());
    };
    shown->setHighlighted();
    expectLook("InstanceRobTargetHighlight");
    shown->clearHighlightOrSelect();
    expectLook("InstanceRobTarget");
    shown->setSelected();
    expectLook("InstanceRobTargetSelected");
    shown->resetAppearance();
    expectLook("InstanceRobTarget");
}

TEST_F(Moves, SelectionAndResetReachTheArrowAndHighlightDoesNot) {
    scene().settings.drawPathArrow = true;
    addLinear({0, 0, 0});
    const task::MoveInst* move = addLinear({100, 0, 0});
    showPath();
    // Whatever hangs on the arrow's node takes part in what reaches the arrow.
    PathArrowVisual* arrow = visualOfMove(move)->getPathArrow();
    arrow->setMaterial("PathLine", "PathLineSelected", "PathLineHighlighted");
    visual::DynamicLines probe(visual::RenderOpType::LineStrip);
    arrow->attachObject(&probe);
    const auto look = [&] { return probe.getMaterial()->getName(); };
    visualOfMove(move)->setSelected();
    EXPECT_EQ(look(), "PathLineSelected");
    visualOfMove(move)->setHighlighted();
    EXPECT_EQ(look(), "PathLineSelected");
    visualOfMove(move)->clearHighlightOrSelect();
    EXPECT_EQ(look(), "PathLineSelected");
    visualOfMove(move)->resetAppearance();
    EXPECT_EQ(look(), "PathLine");
    arrow->detachObject(&probe);
}

// --- previews

TEST_F(Moves, PreviewedTargetsStandInTheWorldAndAreNeitherRegisteredNorPicked) {
    const auto before = traces();
    scene().previewTargets({{{1, 2, 3}, {}}, {{4, 5, 6}, {0, 0, 0, 1}}});
    pump();
    EXPECT_EQ(traces().registered, before.registered);
    EXPECT_EQ(traces().pickable, before.pickable);
    EXPECT_EQ(traces().topLevel, before.topLevel + 2);
    EXPECT_EQ(instancesInUse(), 2u);
    scene().previewTargets({{{7, 8, 9}, {}}});
    pump();
    EXPECT_EQ(traces().topLevel, before.topLevel + 1);
    scene().previewTargets({});
    pump();
    EXPECT_EQ(traces(), before);
    scene().previewTargets({{{7, 8, 9}, {}}});
    scene().removePreviewedPoints();
    pump();
    EXPECT_EQ(traces(), before);
}

TEST_F(Moves, APreviewedTargetThatIsDeletedLeavesTheList) {
    scene().previewTargets({{{1, 2, 3}, {}}});
    pump();
    scene().deleteVisual(findBelow(root(), VisualType::RobTarget));
    scene().removePreviewedPoints();
    EXPECT_NO_THROW(pump());
}

}  // namespace vrn::test
