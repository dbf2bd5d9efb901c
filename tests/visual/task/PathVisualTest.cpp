#include "visual/task/PathVisual.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include <OgreSceneNode.h>
#include <OgreSimpleRenderable.h>
#include <OgreTechnique.h>

#include "mesh/DynamicLines.h"
#include "suite/broker/SignalBroker.h"
#include "suite/smart/StationLogic.h"
#include "suite/task/Operation.h"
#include "tests/visual/task/ProgramFixture.h"

namespace vrn::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::PathLineType;
using visual::PathLineVisual;
using visual::PathVisual;
using visual::RenderOpType;
using visual::Visual;

class Paths : public Programs {
protected:
    std::vector<PathLineType> lineTypes() const {
        std::vector<PathLineType> types;
        for (const PathLineVisual* line : lines()) types.push_back(line->getType());
        return types;
    }
    static std::string materialOf(const PathLineVisual* line) {
        return dynamic_cast<Ogre::SimpleRenderable*>(line->node->getAttachedObject(0))
            ->getMaterial()
            ->getName();
    }
    static void expectNear(const Pos& a, const Pos& b) {
        EXPECT_LT((a - b).length(), 1e-3f) << a.x << ' ' << a.y << ' ' << a.z;
    }
};

// --- building

TEST_F(Paths, APathHangsUnderTheRootWhateverTheParent) {
    PathVisual::Build(objectFrameOf(wobj), path);
    EXPECT_EQ(pathVisual()->getParent(), root());
    EXPECT_EQ(pathVisual()->getName(), "Path_" + std::to_string(path->id));
    EXPECT_EQ(pathVisual()->type, VisualType::Path);
    EXPECT_EQ(pathVisual()->id, path->id);
}

TEST_F(Paths, OnlyAPathIsShownAsOne) {
    const auto before = traces();
    EXPECT_THROW(PathVisual(root(), nullptr), std::invalid_argument);
    EXPECT_THROW(PathVisual(root(), job), std::bad_cast);
    EXPECT_THROW(PathVisual::Build(nullptr, nullptr), std::invalid_argument);
    EXPECT_THROW(scene().addPath(nullptr), std::invalid_argument);
    EXPECT_EQ(traces(), before);
}

TEST_F(Paths, LinesHangUnderTheObjectFrameOfTheirTargets) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    addIn(otherWObj, {0, 0, 0});
    addIn(otherWObj, {0, 100, 0});
    showPath();
    ASSERT_THAT(lines(), SizeIs(2));
    EXPECT_EQ(lines()[0]->getParent(), objectFrameOf(wobj));
    EXPECT_EQ(lines()[1]->getParent(), objectFrameOf(otherWObj));
    EXPECT_TRUE(lines()[0]->getName().starts_with("PathLine_"));
    EXPECT_NE(lines()[0]->getName(), lines()[1]->getName());
}

TEST_F(Paths, MovingAWorkObjectMovesItsLinesWithoutARebuild) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    showPath();
    const PathLineVisual* line = lines()[0];
    scene().setVisualPose(wobj->id, {{0, 0, 500}, {}});
    pump();
    EXPECT_EQ(lines()[0], line);
    EXPECT_EQ(line->getWorldPosition(), (Pos{0, 0, 500}));
}

TEST_F(Paths, AnObjectFrameThatIsNotShownThrowsAndTheLinesBeforeItStay) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    PathVisual::Build(nullptr, path);
    auto* hidden = model.make<task::WObjDataItem>("hidden");
    hidden->setObjectFrame(*model.make<task::ObjectFrame>("frame"));
    addIn(hidden, {0, 0, 0});
    addIn(hidden, {100, 0, 0});
    EXPECT_THAT([&] { pathVisual()->rebuildPathLines(); },
                ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
    EXPECT_THAT(lines(), SizeIs(1));
    EXPECT_NO_THROW(frame());
}

TEST_F(Paths, AWorkObjectThatEndedOrHasNoFrameCountsAsNotShown) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    auto* bare = model.make<task::WObjDataItem>("bare");
    for (task::MoveInst* move : path->getMoveInstructions()) move->setWObj(*bare);
    EXPECT_THROW(PathVisual::Build(nullptr, path), std::out_of_range);
    for (task::MoveInst* move : path->getMoveInstructions())
        move->setWObj(task::WObjDataItem("gone"));
    EXPECT_THROW(pathVisual()->rebuildPathLines(), std::out_of_range);
}

// --- which moves share a line

TEST_F(Paths, APathOfOneMoveDrawsNoLine) {
    addLinear({100, 0, 0});
    showPath();
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(Paths, APathWithoutMovesDrawsNoLine) {
    addAction();
    PathVisual::Build(nullptr, path);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(Paths, AThousandLinearMovesAreOneLineObject) {
    for (int i = 0; i < 1000; ++i) addLinear({i * 10.0, 0, 0});
    PathVisual::Build(nullptr, path);
    ASSERT_THAT(lines(), SizeIs(1));
    EXPECT_THAT(pointsOf(lines()[0]), SizeIs(1000));
    EXPECT_EQ(lines()[0]->getLine()->getOpType(), RenderOpType::LineStrip);
    EXPECT_THAT(lines()[0]->getLines(), SizeIs(1));
}

TEST_F(Paths, LinearAndCircularMovesAndMovesOfNoFurtherKindShareALine) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    addCircular({150, 50, 0}, {200, 0, 0});
    addMove(Kind::MoveInstruction, {300, 0, 0});
    showPath();
    EXPECT_THAT(lineTypes(), ElementsAre(PathLineType::Solid));
    EXPECT_THAT(pointsOf(lines()[0]), SizeIs(2 + 20 + 1));
}

TEST_F(Paths, ALinearMoveAndThenAJointMoveAreTwoLinesSolidThenDashed) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    addJoint({200, 0, 0});
    showPath();
    EXPECT_THAT(lineTypes(), ElementsAre(PathLineType::Solid, PathLineType::Dashed));
}

TEST_F(Paths, TheKindOfTheMoveThatEndsTheSegmentCounts) {
    addJoint({0, 0, 0});
    addLinear({100, 0, 0});
    showPath();
    EXPECT_THAT(lineTypes(), ElementsAre(PathLineType::Solid));
}

TEST_F(Paths, AJointTargetBreaksTheLineAndDropsTheSegmentsOnEachSide) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    addJointTarget({200, 0, 0});
    addLinear({300, 0, 0});
    addLinear({400, 0, 0});
    showPath();
    ASSERT_THAT(lineTypes(), ElementsAre(PathLineType::Solid, PathLineType::Solid));
    EXPECT_THAT(pointsOf(lines()[0]), ElementsAre(Pos{0, 0, 0}, Pos{100, 0, 0}));
    EXPECT_THAT(pointsOf(lines()[1]), ElementsAre(Pos{300, 0, 0}, Pos{400, 0, 0}));
}

TEST_F(Paths, AnotherWorkObjectBreaksTheLineAndNoSegmentLeadsAcross) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    addIn(otherWObj, {0, 0, 0});
    addLinear({200, 0, 0});
    addLinear({300, 0, 0});
    showPath();
    ASSERT_THAT(lines(), SizeIs(2));
    EXPECT_THAT(pointsOf(lines()[0]), ElementsAre(Pos{0, 0, 0}, Pos{100, 0, 0}));
    EXPECT_THAT(pointsOf(lines()[1]), ElementsAre(Pos{200, 0, 0}, Pos{300, 0, 0}));
}

TEST_F(Paths, AnInstructionThatDoesNotMoveBreaksNothing) {
    addLinear({0, 0, 0});
    addAction();
    addLinear({100, 0, 0});
    addAction();
    addLinear({200, 0, 0});
    showPath();
    ASSERT_THAT(lines(), SizeIs(1));
    EXPECT_THAT(pointsOf(lines()[0]), SizeIs(3));
}

// --- segments

TEST_F(Paths, TwoMovesAtOnePlaceDrawNothingAndTheirLineObjectStaysEmpty) {
    addLinear({5, 5, 5});
    addLinear({5, 5, 5});
    showPath();
    ASSERT_THAT(lines(), SizeIs(1));
    EXPECT_EQ(lines()[0]->getLine(), nullptr);
    EXPECT_NO_THROW(frame());
}

TEST_F(Paths, ASegmentShorterThanAThousandthIsNoneAndOneOfAThousandthIs) {
    addLinear({0, 0, 0});
    addLinear({0.0009, 0, 0});
    showPath();
    EXPECT_THAT(pointsOf(lines()[0]), IsEmpty());
    addLinear({0.0009 + 0.0011, 0, 0});
    pathVisual()->rebuildPathLines();
    EXPECT_THAT(pointsOf(lines()[0]), SizeIs(2));
}

TEST_F(Paths, EveryPointOfAStripStandsInItOnce) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    addLinear({100, 100, 0});
    showPath();
    EXPECT_THAT(pointsOf(lines()[0]), ElementsAre(Pos{0, 0, 0}, Pos{100, 0, 0}, Pos{100, 100, 0}));
}

TEST_F(Paths, AJointMoveIsFiveDashesOfFifteenPerCentWithGapsOfFive) {
    addLinear({0, 0, 0});
    addJoint({100, 0, 0});
    showPath();
    ASSERT_THAT(lineTypes(), ElementsAre(PathLineType::Dashed));
    EXPECT_EQ(lines()[0]->getLine()->getOpType(), RenderOpType::LineList);
    const std::vector<Pos> points = pointsOf(lines()[0]);
    ASSERT_THAT(points, SizeIs(10));
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_FLOAT_EQ(points[2 * i].x, 20.0f * static_cast<float>(i));
        EXPECT_FLOAT_EQ(points[2 * i + 1].x, 20.0f * static_cast<float>(i) + 15.0f);
    }
}

TEST_F(Paths, AnArcIsTwentyChordsWhateverItsLength) {
    addLinear({0, 0, 0});
    addCircular({50, 50, 0}, {100, 0, 0});
    addLinear({0, 0, 1000});
    showPath();
    const std::vector<Pos> points = pointsOf(lines()[0]);
    ASSERT_THAT(points, SizeIs(22));
    expectNear(points[0], {0, 0, 0});
    expectNear(points[10], {50, 50, 0});
    expectNear(points[20], {100, 0, 0});
    for (std::size_t i = 0; i <= 20; ++i)
        EXPECT_NEAR((points[i] - Pos{50, 0, 0}).length(), 50.0f, 1e-3f) << i;
}

TEST_F(Paths, AnArcAfterAStraightSegmentDoesNotDoubleTheJunction) {
    addLinear({-100, 0, 0});
    addLinear({0, 0, 0});
    addCircular({50, 50, 0}, {100, 0, 0});
    showPath();
    const std::vector<Pos> points = pointsOf(lines()[0]);
    ASSERT_THAT(points, SizeIs(2 + 20));
    EXPECT_EQ(points[1], (Pos{0, 0, 0}));
    EXPECT_GT((points[2] - points[1]).length(), 1.0f);
    expectNear(points.back(), {100, 0, 0});
}

TEST_F(Paths, ACircularMoveThroughCollinearPointsIsOneStraightSegment) {
    addLinear({0, 0, 0});
    addCircular({50, 0, 0}, {100, 0, 0});
    showPath();
    EXPECT_THAT(pointsOf(lines()[0]), ElementsAre(Pos{0, 0, 0}, Pos{100, 0, 0}));
}

TEST_F(Paths, CollinearIsASquaredSineBelowAHundredThousandth) {
    addLinear({0, 0, 0});
    task::MoveInst* move = addCircular({50, 0.155, 0}, {100, 0, 0});  // the sine is 0.0031
    showPath();
    EXPECT_THAT(pointsOf(lines()[0]), SizeIs(2));
    move->getCircleItem()->setPose({{50, 0.16, 0}, {}});  // 0.0032
    pathVisual()->rebuildPathLines();
    EXPECT_THAT(pointsOf(lines()[0]), SizeIs(21));
}

TEST_F(Paths, CollinearIsTooAWayFromTheCirclePointThatHardlyLeavesTheFirstOne) {
    // Turned by far enough, but what is left of the way is shorter than 0.00316.
    addLinear({0, 0, 0});
    task::MoveInst* move = addCircular({0, 0.5, 0}, {0.003, 0.5, 0});
    showPath();
    EXPECT_THAT(pointsOf(lines()[0]), SizeIs(2));
    move->getRobTarget()->setPose({{0.0033, 0.5, 0}, {}});
    pathVisual()->rebuildPathLines();
    EXPECT_THAT(pointsOf(lines()[0]), SizeIs(21));
}

TEST_F(Paths, ACirclePointAtTheEndMakesAStraightSegment) {
    addLinear({0, 0, 0});
    addCircular({100, 0, 0}, {100, 0, 0});
    showPath();
    EXPECT_THAT(pointsOf(lines()[0]), ElementsAre(Pos{0, 0, 0}, Pos{100, 0, 0}));
}

TEST_F(Paths, ACirclePointAtTheStartThrows) {
    addLinear({0, 0, 0});
    addCircular({0, 0, 0}, {100, 0, 0});
    EXPECT_THAT([&] { PathVisual::Build(nullptr, path); },
                ThrowsMessage<std::overflow_error>(StrEq("0-length vector cannot be normalized.")));
    EXPECT_NO_THROW(frame());
}

TEST_F(Paths, ACirclePointAtTheStartDoesNotMatterToTargetsAtOnePlace) {
    addLinear({0, 0, 0});
    addCircular({0, 0, 0}, {0, 0, 0});
    EXPECT_NO_THROW(PathVisual::Build(nullptr, path));
}

TEST_F(Paths, ACirclePointOfALinearMoveAndACircularMoveWithoutOneAreStraight) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0})->setCirclePoint(makeTarget({50, 50, 0}));
    addMove(Kind::CircularMove, {200, 0, 0});
    showPath();
    EXPECT_THAT(pointsOf(lines()[0]), SizeIs(3));
}

TEST_F(Paths, ATargetThatHasEndedThrows) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0})->setTarget(task::RobTargetDataItem("gone"));
    EXPECT_THROW(PathVisual::Build(nullptr, path), std::out_of_range);
    EXPECT_THROW(PathLineVisual(root(), PathLineType::Solid).addSegment(nullptr, nullptr),
                 std::invalid_argument);
}

// --- looks

TEST_F(Paths, LinesHaveTheThreeLooksOfPathsAndShowTheNormalOne) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    addJoint({200, 0, 0});
    showPath();
    for (PathLineVisual* line : lines()) {
        EXPECT_EQ(line->material, "PathLine");
        EXPECT_EQ(line->selectedMaterial, "PathLineSelected");
        EXPECT_EQ(line->highlightedMaterial, "PathLineHighlighted");
        EXPECT_EQ(materialOf(line), "PathLine");
        EXPECT_FALSE(line->getLine()->isDirty());
    }
}

TEST_F(Paths, ALookOfThePathShowsOnItsTargetsAndLeavesTheLinesAlone) {
    scene().settings.drawTargetVisual = true;
    const task::MoveInst* first = addLinear({0, 0, 0});
    const task::MoveInst* second = addLinear({100, 0, 0});
    addAction();
    PathVisual* shown = showPath();
    const auto expectLook = [&](const char* look) {
        for (const task::MoveInst* move : {first, second})
            EXPECT_THAT(shownLooks(visualOfMove(move)->getTargetVisual()), ElementsAre(look));
        EXPECT_EQ(materialOf(lines()[0]), "PathLine");
    };
    expectLook("InstanceRobTarget");
    shown->setSelected();
    expectLook("InstanceRobTargetSelected");
    shown->setHighlighted();
    expectLook("InstanceRobTargetHighlight");
    shown->clearHighlightOrSelect();
    expectLook("InstanceRobTarget");
    shown->setSelected();
    shown->resetAppearance();
    expectLook("InstanceRobTarget");
}

TEST_F(Paths, ALookOfAPathWhoseMoveIsNotShownThrows) {
    addLinear({0, 0, 0});
    PathVisual::Build(nullptr, path);
    for (const auto look : {&Visual::setSelected, &Visual::setHighlighted, &Visual::resetAppearance,
                            &Visual::clearHighlightOrSelect})
        EXPECT_THAT([&] { (pathVisual()->*look)(); },
                    ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
}

TEST_F(Paths, HidingAPathHidesMovesAndLinesButNotInstructionsThatDoNotMove) {
    const task::MoveInst* first = addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    const task::ActionInst* action = addAction();  // has no visual, and is not looked up
    showPath();
    scene().setVisualVisible(path->id, false);
    pump();
    EXPECT_FALSE(pathVisual()->visible);
    EXPECT_FALSE(visualOf(first)->visible);
    EXPECT_FALSE(lines()[0]->visible);
    EXPECT_FALSE(isDrawn(lines()[0]));
    EXPECT_FALSE(scene().visuals.contains(action->id));
    scene().setVisualVisible(path->id, true);
    pump();
    EXPECT_TRUE(visualOf(first)->visible);
    EXPECT_TRUE(isDrawn(lines()[0]));
}

TEST_F(Paths, AGroupOfPathsHidesThem) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    showPath();
    auto* group = model.make<task::Operation>("group", Kind::PathGroup);
    group->addChild(*model.make<task::PathOperation>("operation", path->id));
    scene().setVisualVisible(group->id, false);
    pump();
    EXPECT_FALSE(isDrawn(lines()[0]));
}

TEST_F(Paths, NewLinesOfAHiddenPathAreHidden) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    showPath();
    scene().setVisualVisible(path->id, false);
    scene().updatePath(path->id);
    pump();
    ASSERT_THAT(lines(), SizeIs(1));
    EXPECT_FALSE(isDrawn(lines()[0]));
    scene().setVisualVisible(path->id, true);
    pump();
    EXPECT_TRUE(isDrawn(lines()[0]));
}

TEST_F(Paths, ANormalSelectionOfATaskReachesItsPath) {
    scene().settings.drawTargetVisual = true;
    const task::MoveInst* move = addLinear({0, 0, 0});
    showPath();
    scene().setVisualSelected(job->id);
    pump();
    EXPECT_THAT(shownLooks(visualOfMove(move)->getTargetVisual()),
                ElementsAre("InstanceRobTargetSelected"));
}

// --- the switch of lines, and updates

TEST_F(Paths, WithoutSegmentsAllLinesGoAndTheTargetsRemain) {
    scene().settings.drawTargetVisual = true;
    const task::MoveInst* move = addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    showPath();
    scene().setDrawSegVisual(false);
    pump();
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_NE(visualOfMove(move)->getTargetVisual(), nullptr);
    scene().setDrawSegVisual(true);
    pump();
    EXPECT_THAT(lines(), SizeIs(1));
}

TEST_F(Paths, AnUpdateFollowsTheTargetsOfTheModel) {
    scene().settings.drawTargetVisual = true;
    addLinear({0, 0, 0});
    task::MoveInst* move = addLinear({100, 0, 0});
    showPath();
    move->getRobTarget()->setPose({{100, 70, 0}, {}});
    scene().updatePaths({path->id, path->id});
    pump();
    EXPECT_EQ(pointsOf(lines()[0])[1], (Pos{100, 70, 0}));
    EXPECT_EQ(visualOfMove(move)->getTargetVisual()->getPosition(), (Pos{100, 70, 0}));
}

TEST_F(Paths, AnUpdatePassesOverMovesThatAreNotShown) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    showPath();
    addLinear({200, 0, 0});
    scene().updatePath(path->id);
    EXPECT_NO_THROW(pump());
    EXPECT_THAT(pointsOf(lines()[0]), SizeIs(3));
}

TEST_F(Paths, APathThatHasLostAllItsMovesKeepsItsOldLines) {
    task::MoveInst* first = addLinear({0, 0, 0});
    task::MoveInst* second = addLinear({100, 0, 0});
    showPath();
    path->removeChild(*first);
    path->removeChild(*second);
    scene().updatePath(path->id);
    pump();
    EXPECT_THAT(lines(), SizeIs(1));
}

TEST_F(Paths, AnUpdateOfAPathThatTheModelOrTheSceneDoesNotKnowThrowsInTheTask) {
    scene().updatePath(unknownId);
    expectUnknownKeyInTask();
    addLinear({0, 0, 0});
    scene().updatePath(path->id);
    expectUnknownKeyInTask();
    scene().updatePath(job->id);
    EXPECT_THROW(scene().processMsgs(), std::bad_cast);
}

// --- adding and removing

TEST_F(Paths, AnAddedPathBringsItsMovesUnderTheirObjectFrames) {
    const task::MoveInst* first = addLinear({0, 0, 0});
    const task::MoveInst* other = addIn(otherWObj, {0, 0, 0});
    showPath();
    EXPECT_EQ(visualOf(first)->getParent(), objectFrameOf(wobj));
    EXPECT_EQ(visualOf(other)->getParent(), objectFrameOf(otherWObj));
}

TEST_F(Paths, AddingPostsATaskForThePathAndForEachMove) {
    addLinear({0, 0, 0});
    addAction();
    addLinear({100, 0, 0});
    int posts = 0;
    const auto subscription = broker::SignalBroker::onUpdateScene([&] { ++posts; });
    scene().addPath(path);
    EXPECT_EQ(posts, 3);
    pump();
}

TEST_F(Paths, AnObjectFrameThatIsNotShownThrowsToTheCallerOfAddPath) {
    auto* hidden = model.make<task::WObjDataItem>("hidden");
    hidden->setObjectFrame(*model.make<task::ObjectFrame>("frame"));
    addIn(hidden, {0, 0, 0});
    EXPECT_THAT([&] { scene().addPath(path); },
                ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
    pump();  // the path itself is posted by then
    EXPECT_TRUE(scene().visuals.contains(path->id));
}

TEST_F(Paths, AnObjectFrameThatGoesBeforeTheMoveIsBuiltThrowsInTheTask) {
    addLinear({0, 0, 0});
    scene().removeVisual(wobj->id);
    scene().addPath(path);
    expectUnknownKeyInTask();
}

TEST_F(Paths, AMoveToAJointTargetHangsUnderTheParentOfItsTask) {
    Visual* robot = addPlain(VisualType::Manipulator);
    const task::MoveInst* move = addJointTarget({0, 0, 0});
    job->parentId = robot->id;
    showPath();
    EXPECT_EQ(visualOf(move)->getParent(), robot);
}

TEST_F(Paths, AMoveToAJointTargetOfATaskOfTheStationHangsUnderTheRoot) {
    const task::MoveInst* first = addJointTarget({0, 0, 0});
    showPath();
    EXPECT_EQ(visualOf(first)->getParent(), root());
    job->parentId = smartcomp::StationLogic::inst()->id;
    task::MoveInst* second = addJointTarget({0, 0, 0});
    scene().buildMoveInstruction(second);
    pump();
    EXPECT_EQ(visualOf(second)->getParent(), root());
    job->parentId = unknownId;
    scene().buildMoveInstruction(addJointTarget({0, 0, 0}));
    expectUnknownKeyInTask();
}

TEST_F(Paths, AMoveWithoutAnObjectFrameThrowsAlsoBehindOneThatHangsUnderTheRoot) {
    const task::MoveInst* joints = addJointTarget({0, 0, 0});
    const task::MoveInst* bare = addIn(model.make<task::WObjDataItem>("bare"), {0, 0, 0});
    scene().addTask(job->id);
    expectUnknownKeyInTask();
    EXPECT_EQ(visualOf(joints)->getParent(), root());
    EXPECT_FALSE(scene().visuals.contains(bare->id));
}

TEST_F(Paths, ATaskBringsItsPathsAfterItsWorkObjects) {
    auto* whole = model.make<task::Task>("whole");
    auto* item = model.make<task::WObjDataItem>("wobj");
    item->setObjectFrame(*model.make<task::ObjectFrame>("frame"));
    whole->addChild(*path);
    whole->addChild(*item);
    item->parentId = 0;
    const task::MoveInst* first = addIn(item, {0, 0, 0});
    const task::MoveInst* second = addIn(otherWObj, {100, 0, 0});
    const task::MoveInst* third = addIn(item, {0, 100, 0});
    scene().settings.drawPathArrow = true;
    const task::MoveInst* fourth = addIn(item, {0, 300, 0});
    scene().addTask(whole->id);
    pump();
    EXPECT_EQ(visualOf(first)->getParent(), objectFrameOf(item));
    EXPECT_EQ(visualOf(second)->getParent(), objectFrameOf(otherWObj));
    EXPECT_EQ(visualOf(third)->getParent(), objectFrameOf(item));
    EXPECT_THAT(lines(), SizeIs(1));
    EXPECT_EQ(arrowsOf(fourth), 1u);
}

TEST_F(Paths, RemovingAPathRemovesItsMovesAndLines) {
    scene().settings.drawTargetVisual = true;
    scene().settings.drawPathArrow = true;
    const auto before = traces();
    addLinear({0, 0, 0});
    addAction();
    addCircular({150, 50, 0}, {200, 0, 0});
    addJointTarget({0, 0, 0});
    showPath();
    scene().removePathVisual(path->id);
    EXPECT_TRUE(scene().visuals.contains(path->id));
    pump();
    EXPECT_EQ(traces(), before);
    EXPECT_THAT(objectFrameOf(wobj)->getChildren(), IsEmpty());
    EXPECT_EQ(instancesInUse(), 0u);
}

TEST_F(Paths, RemovingAPathThatTheModelDoesNotKnowThrowsToTheCaller) {
    EXPECT_THAT([] { scene().removePathVisual(unknownId); },
                ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
}

TEST_F(Paths, AWorkObjectThatGoesTakesItsLinesOutOfThePath) {
    addLinear({0, 0, 0});
    addLinear({100, 0, 0});
    addIn(otherWObj, {0, 0, 0});
    addIn(otherWObj, {100, 0, 0});
    showPath();
    scene().removeVisual(wobj->id);
    pump();
    ASSERT_THAT(lines(), SizeIs(1));
    EXPECT_EQ(lines()[0]->getParent(), objectFrameOf(otherWObj));
    scene().removeVisual(path->id);
    EXPECT_NO_THROW(pump());
}

}  // namespace vrn::test
