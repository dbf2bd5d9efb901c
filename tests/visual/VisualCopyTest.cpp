#include <gmock/gmock.h>

#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "selection/VisualSelection.h"
#include "tests/support/EngineFixture.h"
#include "tests/visual/ProbeVisual.h"
#include "visual/VisualIterator.h"

namespace vrn::test {

namespace {

using Pose = rob::PoseTemplate<float>;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using visual::Visual;

const std::vector<VisualType> copiedTypes{
    VisualType::Manipulator, VisualType::Tool, VisualType::Link,
    VisualType::Assembly,    VisualType::Part, VisualType::Solid,
    VisualType::Curve,       VisualType::Mesh, VisualType::Frame};

constexpr int lastType = 34;

}  // namespace

class VisualCopy : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        source = new Visual(8001, "source", scene().root);
        source->type = VisualType::Part;
        target = new Visual("target", scene().root);
    }

    Visual* source = nullptr;
    Visual* target = nullptr;
};

TEST_F(VisualCopy, ExactlyNineKindsAreCopied) {
    for (int number = 0; number <= lastType; ++number) {
        source->type = static_cast<VisualType>(number);
        const bool expected = testing::Matches(testing::Contains(source->type))(copiedTypes);
        const auto copy = source->copy(target);
        EXPECT_EQ(copy.has_value(), expected) << number;
        if (copy) {
            EXPECT_EQ((*copy)->type, source->type);
        }
    }
    EXPECT_EQ(target->getChildren().size(), copiedTypes.size());
}

TEST_F(VisualCopy, ThePathOfATaskIsNotCopied) {
    source->type = VisualType::Path;
    EXPECT_EQ(source->copy(target), std::nullopt);
    EXPECT_THAT(target->getChildren(), IsEmpty());
}

TEST_F(VisualCopy, ACopyHasTheIdTypeAndPoseOfItsSourceAndANameOfItsOwn) {
    source->setPose({{1, 2, 3}, {0, 1, 0, 0}});
    source->setVisible(false, true);
    scene().visuals[8001] = source;
    Visual* copy = *source->copy(target);
    EXPECT_EQ(copy->getParent(), target);
    EXPECT_EQ(copy->id, 8001u);
    EXPECT_EQ(copy->type, VisualType::Part);
    EXPECT_TRUE(copy->visible);
    EXPECT_TRUE(copy->copied);
    EXPECT_FALSE(source->copied);
    EXPECT_EQ(copy->getPose(), source->getPose());
    EXPECT_THAT(copy->getName(), StartsWith("source_Copied__"));
    EXPECT_GT(copy->getName().size(), std::string("source_Copied__").size());
    EXPECT_EQ(scene().visuals.at(8001), source);
    EXPECT_TRUE(scene().tempVisuals.empty());
}

TEST_F(VisualCopy, WithoutAParentTheCopyGoesUnderTheRoot) {
    EXPECT_EQ((*source->copy(nullptr))->getParent(), scene().root);
}

TEST_F(VisualCopy, ChildrenAreCopiedByTheirOwnRule) {
    auto* link = new Visual(8002, "link", source);
    link->type = VisualType::Link;
    link->setPosition(5, 6, 7);
    auto* path = new Visual(8003, "path", source);
    path->type = VisualType::Path;
    auto* below = new Visual(8004, "below the path", path);
    below->type = VisualType::Part;
    auto* attached = new Visual(8005, "attached", link);
    attached->type = VisualType::Tool;
    attached->attached = true;
    Visual* copy = *source->copy(target);
    ASSERT_EQ(copy->getChildren().size(), 1u);
    Visual* linkCopy = copy->getChildren().front();
    EXPECT_EQ(linkCopy->id, 8002u);
    EXPECT_EQ(linkCopy->getPosition(), (rob::PosTemplate<float>{5, 6, 7}));
    EXPECT_THAT(linkCopy->getName(), StartsWith("link_Copied__"));
    ASSERT_EQ(linkCopy->getChildren().size(), 1u);
    EXPECT_EQ(linkCopy->getChildren().front()->id, 8005u);
    EXPECT_TRUE(linkCopy->getChildren().front()->copied);
}

TEST_F(VisualCopy, DeletingACopyLeavesTheSourceRegistered) {
    Visual* part = showBoxPart("bracket");
    const auto registered = scene().visuals;
    const auto selectable = selection::VisualSelection::Get()->objects;
    Visual* copy = *part->copy(target);
    EXPECT_EQ(scene().visuals, registered);
    EXPECT_EQ(selection::VisualSelection::Get()->objects, selectable);
    scene().deleteVisual(copy);
    EXPECT_EQ(scene().visuals, registered);
    EXPECT_EQ(selection::VisualSelection::Get()->objects, selectable);
    EXPECT_THAT(target->getChildren(), IsEmpty());
}

TEST_F(VisualCopy, ClearingCopiedChildrenLeavesTheSourceRegistered) {
    Visual* part = showBoxPart("bracket");
    const auto registered = scene().visuals;
    Visual* copy = *part->copy(target);
    ASSERT_NE(findBelow(copy, VisualType::Mesh), nullptr);
    copy->clearCopiedChildren();
    EXPECT_THAT(copy->getChildren(), IsEmpty());
    EXPECT_EQ(scene().visuals, registered);
    EXPECT_EQ(part->getBodiesNum(), 1u);
}

TEST_F(VisualCopy, StatesAreNotCopied) {
    Visual* part = showBoxPart("bracket");
    scene().setVisualSelected(part->id);
    pump();
    Visual* copy = *part->copy(target);
    EXPECT_TRUE(scene().stateManager->hasLayer(part, visual::VisualStateLayer::Selected));
    EXPECT_FALSE(scene().stateManager->hasLayer(copy, visual::VisualStateLayer::Selected));
}

TEST_F(VisualCopy, ACopyInsideOfItsSourceIsRefused) {
    auto* below = new Visual("below", source);
    for (Visual* parent : {source, below}) {
        EXPECT_THROW(source->copy(parent), std::invalid_argument);
        EXPECT_THAT(below->getChildren(), IsEmpty());
    }
    EXPECT_THAT(source->getChildren(), ElementsAre(below));
}

TEST_F(VisualCopy, ACopyIsCopiedAgain) {
    Visual* copy = *source->copy(target);
    Visual* second = *copy->copy(target);
    EXPECT_EQ(second->id, source->id);
    EXPECT_TRUE(second->copied);
    EXPECT_NE(second->getName(), copy->getName());
}

}  // namespace vrn::test
