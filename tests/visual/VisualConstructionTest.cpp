#include <memory>

#include <gmock/gmock.h>

#include <OgreAny.h>
#include <OgreException.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "selection/VisualSelection.h"
#include "suite/layout/Body.h"
#include "suite/sdf/SdfManager.h"
#include "tests/support/EngineFixture.h"
#include "visual/Visual.h"

namespace vrn::test {

using sdf::SdfManager;
using visual::SharedName;
using visual::Visual;

class VisualConstruction : public EngineTest {
protected:
    static Visual* root() { return scene().root; }
    static std::size_t children() { return root()->node->getChildren().size(); }

    static void expectFresh(const Visual* visual) {
        EXPECT_EQ(visual->type, VisualType::None);
        EXPECT_TRUE(visual->visible);
        EXPECT_FALSE(visual->copied);
        EXPECT_FALSE(visual->attached);
        EXPECT_FALSE(visual->walkStop);
        EXPECT_EQ(visual->material, "");
        EXPECT_EQ(visual->selectedMaterial, "");
        EXPECT_EQ(visual->highlightedMaterial, "");
        EXPECT_EQ(Visual::FromNode(visual->node), visual);
    }
    static bool isTransient(const Visual* visual) {
        return visual->id >= SdfManager::firstTransientId;
    }
};

TEST_F(VisualConstruction, TheWorldVisualStandsOnTheRootNode) {
    EXPECT_EQ(root()->type, VisualType::Root);
    EXPECT_EQ(root()->node, scene().sceneManager->getRootSceneNode());
    EXPECT_TRUE(isTransient(root()));
    EXPECT_EQ(Visual::FromNode(root()->node), root());
    EXPECT_EQ(root()->getParent(), nullptr);
    EXPECT_FALSE(root()->isTopLevel());
}

TEST_F(VisualConstruction, IdNameAndParentAreTakenAsGiven) {
    const Visual* visual = new Visual(77, "fixture plate", root());
    expectFresh(visual);
    EXPECT_EQ(visual->id, 77u);
    EXPECT_EQ(visual->getName(), "fixture plate");
    EXPECT_EQ(visual->node->getName(), "fixture plate");
    EXPECT_EQ(visual->getParent(), root());
}

TEST_F(VisualConstruction, TheEngineNamesWhatHasAnIdAlone) {
    const Visual* first = new Visual(78, root());
    const Visual* second = new Visual(78, root());
    expectFresh(first);
    EXPECT_EQ(first->id, 78u);
    EXPECT_EQ(second->id, 78u);
    EXPECT_EQ(first->getParent(), root());
    EXPECT_NE(first->node, second->node);
}

TEST_F(VisualConstruction, AFreeVisualHangsOnNothing) {
    const std::size_t before = children();
    auto free = std::make_unique<Visual>("free one");
    expectFresh(free.get());
    EXPECT_TRUE(isTransient(free.get()));
    EXPECT_EQ(free->getName(), "free one");
    EXPECT_EQ(free->node->getParent(), nullptr);
    EXPECT_EQ(free->getParent(), nullptr);
    EXPECT_FALSE(free->isTopLevel());
    EXPECT_EQ(children(), before);
    free.reset();
    EXPECT_FALSE(scene().sceneManager->hasSceneNode("free one"));
}

TEST_F(VisualConstruction, AParentAloneGivesANameFromTheTransientId) {
    const Visual* visual = new Visual(root());
    expectFresh(visual);
    EXPECT_TRUE(isTransient(visual));
    EXPECT_EQ(visual->getName(), "Visual_" + std::to_string(visual->id));
}

TEST_F(VisualConstruction, ANameAndAParentTakeTheIdBehindTheName) {
    const Visual* first = new Visual("marker", root());
    const Visual* second = new Visual("marker", root());
    expectFresh(first);
    EXPECT_TRUE(isTransient(first));
    EXPECT_EQ(first->getName(), "marker" + std::to_string(first->id));
    EXPECT_NE(first->id, second->id);
    EXPECT_NE(first->getName(), second->getName());
    EXPECT_NE(first->node->getName(), second->node->getName());
}

TEST_F(VisualConstruction, AModelObjectGivesIdNameAndPose) {
    layout::Part* part = makeBoxPart("bracket", {{1.5, 2.5, 3.5}, {0, 0, 0, 1}});
    const Visual* visual = new Visual(part, root());
    expectFresh(visual);
    EXPECT_EQ(visual->id, part->id);
    EXPECT_EQ(visual->getName(), "bracket_" + std::to_string(part->id));
    EXPECT_EQ(visual->getPosition(), (rob::PosTemplate<float>{1.5f, 2.5f, 3.5f}));
    EXPECT_TRUE(visual->getPose().rotation.isApprox({0, 0, 0, 1}));
}

TEST_F(VisualConstruction, AModelObjectWithoutAPoseStandsAtTheOrigin) {
    layout::Body* body = makeBoxPart("bracket")->bodies().front();
    ASSERT_EQ(body->element->get("pose"), nullptr);
    EXPECT_EQ((new Visual(body, root()))->getPose(), rob::PoseTemplate<float>{});
}

TEST_F(VisualConstruction, APoseOfAnotherTypeThrowsAndLeavesNoNode) {
    layout::Part* part = makeBoxPart("bracket");
    part->element->set("pose", std::string("at the door"));
    const std::size_t before = children();
    EXPECT_THROW(Visual(part, root()), std::bad_any_cast);
    EXPECT_EQ(children(), before);
    EXPECT_FALSE(scene().sceneManager->hasSceneNode("bracket_" + std::to_string(part->id)));
}

TEST_F(VisualConstruction, APoseThatIsNotFiniteInSinglePrecisionThrowsAndLeavesNoNode) {
    layout::Part* part = makeBoxPart("bracket", {{1e60, 0, 0}, {}});
    const std::size_t before = children();
    EXPECT_THROW(Visual(part, root()), std::invalid_argument);
    EXPECT_EQ(children(), before);
}

TEST_F(VisualConstruction, ATakenNameThrowsOutOfTheConstructor) {
    new Visual(1, "taken", root());
    const std::size_t before = children();
    EXPECT_THROW(Visual(2, "taken", root()), Ogre::ItemIdentityException);
    EXPECT_THROW(Visual("taken"), Ogre::ItemIdentityException);
    EXPECT_EQ(children(), before);
    layout::Part* part = makeBoxPart("bracket");
    new Visual(part, root());
    EXPECT_THROW(Visual(part, root()), Ogre::ItemIdentityException);
}

TEST_F(VisualConstruction, ASharedNameIsAnsweredByAllThatCarryIt) {
    const Visual* first = new Visual(0, SharedName{"Common Frame"}, root());
    const Visual* second = new Visual(0, SharedName{"Common Frame"}, root());
    const Visual* third = new Visual(5, SharedName{"Common Frame"}, root());
    expectFresh(second);
    for (const Visual* visual : {first, second, third})
        EXPECT_EQ(visual->getName(), "Common Frame");
    EXPECT_NE(first->node->getName(), second->node->getName());
    EXPECT_NE(second->node->getName(), third->node->getName());
    EXPECT_EQ(first->node->getName(), "Common Frame");
    EXPECT_THAT(second->node->getName(), testing::StartsWith("Common Frame"));
    EXPECT_EQ(third->id, 5u);
    EXPECT_EQ(second->getParent(), root());
}

TEST_F(VisualConstruction, ANullModelObjectIsRefused) {
    EXPECT_THROW(Visual(static_cast<sdf::SdfNode*>(nullptr), root()), std::invalid_argument);
}

TEST_F(VisualConstruction, ANullParentIsRefusedByEveryForm) {
    layout::Part* part = makeBoxPart("bracket");
    Visual* none = nullptr;
    EXPECT_THROW(Visual(1, "orphan", none), std::invalid_argument);
    EXPECT_THROW(Visual(1, SharedName{"orphan"}, none), std::invalid_argument);
    EXPECT_THROW(Visual(1, none), std::invalid_argument);
    EXPECT_THROW(Visual{none}, std::invalid_argument);
    EXPECT_THROW(Visual("orphan", none), std::invalid_argument);
    EXPECT_THROW(Visual(part, none), std::invalid_argument);
    EXPECT_FALSE(scene().sceneManager->hasSceneNode("orphan"));
}

TEST_F(VisualConstruction, TheDestructorTakesTheNodeAlongButNoChildren) {
    auto* visual = new Visual(1, "short-lived", root());
    auto child = std::make_unique<Visual>(2, "survivor", visual);
    delete visual;
    EXPECT_FALSE(scene().sceneManager->hasSceneNode("short-lived"));
    EXPECT_TRUE(scene().sceneManager->hasSceneNode("survivor"));
    EXPECT_EQ(child->getParent(), nullptr);
}

TEST_F(VisualConstruction, TheNumbersOfTheKindsNeverChange) {
    const std::vector<std::pair<VisualType, int>> numbers{{VisualType::None, 0},
                                                          {VisualType::Root, 1},
                                                          {VisualType::Manipulator, 2},
                                                          {VisualType::Tool, 3},
                                                          {VisualType::Device, 4},
                                                          {VisualType::Link, 5},
                                                          {VisualType::Assembly, 7},
                                                          {VisualType::PointCloud, 8},
                                                          {VisualType::Part, 9},
                                                          {VisualType::Solid, 10},
                                                          {VisualType::Curve, 11},
                                                          {VisualType::Edge, 12},
                                                          {VisualType::WireFrame, 13},
                                                          {VisualType::Mesh, 14},
                                                          {VisualType::Point, 15},
                                                          {VisualType::Path, 16},
                                                          {VisualType::MoveInstruction, 17},
                                                          {VisualType::Helper, 19},
                                                          {VisualType::Frame, 20},
                                                          {VisualType::Tcp, 21},
                                                          {VisualType::RobTarget, 22},
                                                          {VisualType::JointTarget, 23},
                                                          {VisualType::WObj, 24},
                                                          {VisualType::WObjUserFrame, 25},
                                                          {VisualType::WObjObjectFrame, 26},
                                                          {VisualType::UserComponent, 27},
                                                          {VisualType::Sensor, 28},
                                                          {VisualType::Paint, 29},
                                                          {VisualType::Wrist, 30},
                                                          {VisualType::PreviewCurve, 31},
                                                          {VisualType::GeneratedEdge, 32},
                                                          {VisualType::UVIndicator, 33},
                                                          {VisualType::WorkEnvelope, 34}};
    for (const auto& [type, number] : numbers) EXPECT_EQ(static_cast<int>(type), number);
    static_assert(sizeof(VisualType) == 4);
}

}  // namespace vrn::test
