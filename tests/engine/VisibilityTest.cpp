#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/broker/SignalBroker.h"
#include "suite/layout/Frame.h"
#include "suite/layout/Layout.h"
#include "suite/task/DataItem.h"
#include "suite/task/Operation.h"
#include "suite/task/Task.h"
#include "tests/support/EngineFixture.h"
#include "visual/station/RobtargetVisual.h"
#include "visual/Visual.h"

namespace vrn::test {

using sdf::ObjectType;
using visual::Visual;

class Visibility : public EngineTest {
protected:
    void TearDown() override {
        layout::Layout::inst()->clear();
        EngineTest::TearDown();
    }
    /// A visual of the object's id, as a path's would be.
    static Visual* show(const sdf::SdfNode* object, VisualType type) {
        auto* visual = new Visual(object->id, scene().root);
        visual->type = type;
        scene().visuals[visual->id] = visual;
        return visual;
    }
    struct ShownPath {
        task::Path* path;
        Visual* visual;
    };
    ShownPath makePath(const std::string& name) {
        auto* path = model.make<task::Path>(name);
        return {path, show(path, VisualType::Path)};
    }
    task::PathOperation* makeOperation(std::uint32_t pathId,
                                       ObjectType kind = ObjectType::PathOperation) {
        return model.make<task::PathOperation>("operation", pathId, kind);
    }
    int postsOf(std::uint32_t id, bool visible) {
        int posts = 0;
        const auto subscription = broker::SignalBroker::onUpdateScene([&] { ++posts; });
        scene().setVisualVisible(id, visible);
        return posts;
    }
    Visual* addOfType(VisualType type, Visual* parent) {
        auto* visual = new Visual(parent);
        visual->type = type;
        scene().visuals[visual->id] = visual;
        return visual;
    }
};

// --- one object

TEST_F(Visibility, HidesAndShowsInTheTaskWithAllBelow) {
    layout::Part* part = makeBoxPart("blinking");
    scene().addPart(part);
    pump();
    Visual* visual = scene().visuals.at(part->id);
    Visual* body = findBelow(visual, VisualType::Mesh);
    ASSERT_NE(body, nullptr);
    scene().setVisualVisible(part->id, false);
    EXPECT_TRUE(visual->visible);
    pump();
    EXPECT_FALSE(visual->visible);
    EXPECT_FALSE(body->visible);
    scene().setVisualVisible(part->id, true);
    pump();
    EXPECT_TRUE(body->visible);
}

TEST_F(Visibility, OfAnIdThatTheModelDoesNotKnowPostsNothing) {
    EXPECT_EQ(postsOf(123456789, false), 0);
    EXPECT_EQ(postsOf(0, false), 0);
    // A visual alone does not do: the model is asked.
    Visual* unmodelled = addOfType(VisualType::Part, scene().root);
    EXPECT_EQ(postsOf(unmodelled->id, false), 0);
    pump();
    EXPECT_TRUE(unmodelled->visible);
}

TEST_F(Visibility, OfAModelObjectWithoutVisualIsTolerated) {
    auto* frame = model.make<layout::Frame>("unseen");
    EXPECT_EQ(postsOf(frame->id, false), 1);
    EXPECT_NO_THROW(pump());
}

TEST_F(Visibility, OfACompoundSwitchesThePickingOfAllBelow) {
    for (const auto type : {VisualType::Manipulator, VisualType::Tool, VisualType::Device,
                            VisualType::Link, VisualType::Assembly, VisualType::Part,
                            VisualType::Path, VisualType::MoveInstruction, VisualType::WObj}) {
        layout::Part* part = makeBoxPart("pickable");
        scene().addPart(part);
        pump();
        Visual* compound = scene().visuals.at(part->id);
        compound->type = type;
        auto* object =
            selection::VisualSelection::Get()->getObject(findBelow(compound, VisualType::Mesh));
        scene().setVisualVisible(part->id, false);
        pump();
        EXPECT_FALSE(object->enabled) << static_cast<int>(type);
        scene().setVisualVisible(part->id, true);
        pump();
        EXPECT_TRUE(object->enabled) << static_cast<int>(type);
        scene().deleteVisual(compound);
    }
}

TEST_F(Visibility, OfAnotherKindSwitchesItsOwnPickingAlone) {
    layout::Part* part = makeBoxPart("carried");
    auto* frame = model.make<layout::Frame>("carrier");
    scene().addFrame(frame);
    part->parentId = frame->id;
    scene().addPart(part);
    pump();
    auto* selection = selection::VisualSelection::Get();
    auto* own = selection->getObject(scene().visuals.at(frame->id));
    auto* below = selection->getObject(findBelow(scene().visuals.at(part->id), VisualType::Mesh));
    scene().setVisualVisible(frame->id, false);
    pump();
    EXPECT_FALSE(own->enabled);
    EXPECT_TRUE(below->enabled);
}

// --- paths of operations

TEST_F(Visibility, OfAPathIsThatOfAnyOtherObject) {
    const ShownPath one = makePath("one");
    EXPECT_EQ(postsOf(one.path->id, false), 1);
    pump();
    EXPECT_FALSE(one.visual->visible);
}

TEST_F(Visibility, OfAPathGroupIsThatOfItsPlainPathOperations) {
    const ShownPath one = makePath("one"), two = makePath("two"), alien = makePath("alien");
    auto* group = model.make<task::Operation>("group", ObjectType::PathGroup);
    group->addChild(*makeOperation(one.path->id));
    group->addChild(*makeOperation(0));  // has no path yet
    group->addChild(*makeOperation(two.path->id));
    group->addChild(*makeOperation(alien.path->id, ObjectType::SinglePathOperation));
    EXPECT_EQ(postsOf(group->id, false), 2);
    pump();
    EXPECT_FALSE(one.visual->visible);
    EXPECT_FALSE(two.visual->visible);
    EXPECT_TRUE(alien.visual->visible);
}

TEST_F(Visibility, OfASinglePathOperationClearsTheSelectionAndReachesItsPath) {
    for (const auto kind : {ObjectType::SinglePathOperation, ObjectType::ProcessPathOperation}) {
        const ShownPath one = makePath("one");
        auto* operation = makeOperation(one.path->id, kind);
        scene().setVisualSelected(one.path->id);
        pump();
        ASSERT_TRUE(scene().isSelected(one.visual));
        EXPECT_EQ(postsOf(operation->id, false), 2);
        pump();
        EXPECT_FALSE(scene().isSelected(one.visual));
        EXPECT_FALSE(one.visual->visible);
    }
}

TEST_F(Visibility, OfASinglePathOperationWithoutAPathOnlyClearsTheSelection) {
    auto* operation = makeOperation(0, ObjectType::SinglePathOperation);
    EXPECT_EQ(postsOf(operation->id, false), 1);
    EXPECT_NO_THROW(pump());
}

TEST_F(Visibility, OfAnOperationThatNamesAnOperationEndsWithoutReachingAnything) {
    auto* operation = makeOperation(1, ObjectType::SinglePathOperation);
    operation->setPathId(operation->id);
    EXPECT_EQ(postsOf(operation->id, false),
              postsOf(makeOperation(0, ObjectType::SinglePathOperation)->id, false));
    auto* group = model.make<task::Operation>("group", ObjectType::PathGroup);
    auto* inside = makeOperation(group->id);
    group->addChild(*inside);
    EXPECT_EQ(postsOf(group->id, false), 0);
}

TEST_F(Visibility, OfAGroupContainerReachesSingleOperationsAndThoseOfItsGroups) {
    const ShownPath single = makePath("single"), grouped = makePath("grouped"),
                    plain = makePath("plain"), process = makePath("process");
    auto* container = model.make<task::Operation>("container", ObjectType::PathGroupContainer);
    auto* group = model.make<task::Operation>("group", ObjectType::PathGroup);
    container->addChild(*makeOperation(plain.path->id));  // a plain one counts inside a group only
    container->addChild(*group);
    container->addChild(*makeOperation(process.path->id, ObjectType::ProcessPathOperation));
    container->addChild(*makeOperation(single.path->id, ObjectType::SinglePathOperation));
    group->addChild(*makeOperation(grouped.path->id));
    EXPECT_EQ(postsOf(container->id, false), 2);
    pump();
    EXPECT_FALSE(single.visual->visible);
    EXPECT_FALSE(grouped.visual->visible);
    EXPECT_TRUE(plain.visual->visible);
    EXPECT_TRUE(process.visual->visible);
    scene().setVisualVisible(container->id, true);
    pump();
    EXPECT_TRUE(single.visual->visible);
    EXPECT_TRUE(grouped.visual->visible);
}

TEST_F(Visibility, OfAGroupWithAVanishedPathDoesNothing) {
    auto* group = model.make<task::Operation>("group", ObjectType::PathGroup);
    group->addChild(*makeOperation(99999));
    EXPECT_EQ(postsOf(group->id, false), 0);
}

TEST_F(Visibility, AGroupThatIsHiddenWhenTheStationOpensHidesItsPaths) {
    const ShownPath one = makePath("one");
    auto* group = model.make<task::Operation>("group", ObjectType::PathGroup);
    group->addChild(*makeOperation(one.path->id));
    layout::Layout::inst()->setHidden(group->id, true);
    scene().LoadStation();
    pump();
    EXPECT_FALSE(one.visual->visible);
}

// --- all of a kind

TEST_F(Visibility, ClassWideSwitchesReachTheirKindAlone) {
    struct Row {
        VisualType type;
        void (visual::Scene::*setVisible)(bool);
    };
    constexpr std::array rows{Row{VisualType::Frame, &visual::Scene::setFrameVisualVisible},
                              Row{VisualType::Tcp, &visual::Scene::setTcpVisualVisible},
                              Row{VisualType::WObj, &visual::Scene::setWObjVisualVisible},
                              Row{VisualType::RobTarget, &visual::Scene::setTargetVisualVisible}};
    std::vector<Visual*> visuals;
    for (const Row& row : rows) visuals.push_back(addOfType(row.type, scene().root));
    Visual* jointTarget = addOfType(VisualType::JointTarget, scene().root);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        (scene().*rows[i].setVisible)(false);
        EXPECT_TRUE(visuals[i]->visible);
        pump();
        for (std::size_t k = 0; k < rows.size(); ++k) EXPECT_EQ(visuals[k]->visible, k != i);
        EXPECT_TRUE(jointTarget->visible);
        (scene().*rows[i].setVisible)(true);
        pump();
        EXPECT_TRUE(visuals[i]->visible);
    }
}

TEST_F(Visibility, TheSwitchOfTargetsReachesEachMoveThatSharesOne) {
    const std::uint32_t id = model.make<task::RobTargetDataItem>("shared")->id;
    std::vector<Visual*> triads;
    for (int i = 0; i < 3; ++i) triads.push_back(visual::RobtargetVisual::Build(scene().root, id));
    for (const bool show : {false, true}) {
        scene().setTargetVisualVisible(show);
        pump();
        for (const Visual* triad : triads) EXPECT_EQ(triad->visible, show);
    }
}

TEST_F(Visibility, ATargetHiddenByItsIdIsHiddenAndNotPickedForEachMoveThatSharesIt) {
    const std::uint32_t id = model.make<task::RobTargetDataItem>("shared")->id;
    std::vector<Visual*> triads;
    for (int i = 0; i < 3; ++i) triads.push_back(visual::RobtargetVisual::Build(scene().root, id));
    for (const bool show : {false, true}) {
        scene().setVisualVisible(id, show);
        pump();
        for (Visual* triad : triads) {
            EXPECT_EQ(triad->visible, show);
            EXPECT_EQ(selection::VisualSelection::Get()->getObject(triad)->enabled, show);
        }
    }
}

TEST_F(Visibility, OnlyTheSwitchOfWorkObjectsGoesDownIntoTheChildren) {
    Visual* wobj = addOfType(VisualType::WObj, scene().root);
    wobj->walkStop = true;
    Visual* userFrame = addOfType(VisualType::WObjUserFrame, wobj);
    Visual* tcp = addOfType(VisualType::Tcp, scene().root);
    Visual* belowTcp = addOfType(VisualType::None, tcp);
    scene().setWObjVisualVisible(false);
    scene().setTcpVisualVisible(false);
    pump();
    EXPECT_FALSE(userFrame->visible);
    EXPECT_FALSE(tcp->visible);
    EXPECT_TRUE(belowTcp->visible);
}

TEST_F(Visibility, AVisualOutsideOfTheRegistryIsNotReachedByClassWideSwitches) {
    auto* unregistered = new Visual(scene().root);
    unregistered->type = VisualType::Frame;
    scene().setFrameVisualVisible(false);
    pump();
    EXPECT_TRUE(unregistered->visible);
    scene().setFrameVisualVisible(true);
    pump();
}

}  // namespace vrn::test
