#include <gmock/gmock.h>

#include <OgreSceneNode.h>

#include "mesh/DynamicLines.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/TriangleMeshVisual.h"

namespace vrn::test {

namespace {

using Pos = rob::PosTemplate<float>;
using testing::ElementsAre;
using testing::IsEmpty;
using visual::DynamicLines;
using visual::LineVisual;
using visual::RenderOpType;
using visual::TriangleMeshVisual;
using visual::Visual;

}  // namespace

class LineVisuals : public EngineTest {
protected:
    static Visual* root() { return scene().root; }
};

TEST_F(LineVisuals, EachLineHangsOnTheNodeInOrderOfCreation) {
    auto* visual = new LineVisual("lines", root());
    EXPECT_THAT(visual->getLines(), IsEmpty());
    DynamicLines* first = visual->createDynamicLine(RenderOpType::LineStrip);
    DynamicLines* second = visual->createDynamicLine(RenderOpType::PointList);
    EXPECT_THAT(visual->node->getAttachedObjects(), ElementsAre(first, second));
    EXPECT_EQ(visual->getLines()[0].get(), first);
    EXPECT_EQ(visual->getLines()[1].get(), second);
    EXPECT_EQ(first->getOpType(), RenderOpType::LineStrip);
    EXPECT_EQ(second->getOpType(), RenderOpType::PointList);
    EXPECT_EQ(visual->type, VisualType::None);
}

TEST_F(LineVisuals, UpdateSendsTheLinesOfAVisibleVisual) {
    auto* visual = new LineVisual("lines", root());
    DynamicLines* line = visual->createDynamicLine(RenderOpType::LineList);
    line->addPoint(0, 0, 0);
    line->addPoint(1, 0, 0);
    visual->update();
    EXPECT_FALSE(line->isDirty());
}

TEST_F(LineVisuals, AHiddenVisualSendsItsLinesWhenItIsShownAgain) {
    auto* visual = new LineVisual("lines", root());
    DynamicLines* line = visual->createDynamicLine(RenderOpType::LineList);
    visual->setVisible(false, false);
    line->addPoint(0, 0, 0);
    line->addPoint(1, 0, 0);
    visual->update();
    EXPECT_TRUE(line->isDirty());
    visual->setVisible(true, false);
    EXPECT_FALSE(line->isDirty());
}

TEST_F(LineVisuals, DeletingTheVisualFreesItsLines) {
    auto* visual = new LineVisual("lines", root());
    DynamicLines* line = visual->createDynamicLine(RenderOpType::LineList);
    line->addPoint(0, 0, 0);
    line->addPoint(100, 0, 0);
    visual->update();
    frame();
    scene().deleteVisual(visual);
    EXPECT_NO_THROW(frame());
}

TEST_F(LineVisuals, SegmentsBecomePairsOfPoints) {
    const auto* visual = TriangleMeshVisual::Build(
        {{{0, 0, 0}, {1, 0, 0}}, {{1, 0, 0}, {1, 2, 0}}, {{1, 2, 0}, {0, 0, 3}}}, root());
    ASSERT_EQ(visual->getLines().size(), 1u);
    const DynamicLines& line = *visual->getLines().front();
    EXPECT_EQ(line.getOpType(), RenderOpType::LineList);
    EXPECT_THAT(line.getPoints(), ElementsAre(Pos{0, 0, 0}, Pos{1, 0, 0}, Pos{1, 0, 0},
                                              Pos{1, 2, 0}, Pos{1, 2, 0}, Pos{0, 0, 3}));
    EXPECT_FALSE(line.isDirty());
    EXPECT_EQ(line.getMaterial()->getName(), "PreviewCurve");
    for (const std::string& name :
         {visual->material, visual->selectedMaterial, visual->highlightedMaterial})
        EXPECT_EQ(name, "PreviewCurve");
    EXPECT_EQ(visual->getParent(), root());
}

TEST_F(LineVisuals, NoSegmentsDrawNothing) {
    const auto* visual = TriangleMeshVisual::Build({}, root());
    EXPECT_THAT(visual->getLines().front()->getPoints(), IsEmpty());
    EXPECT_NO_THROW(frame());
}

}  // namespace vrn::test
