#include "visual/handle/PathEndsHandle.h"

#include <gtest/gtest.h>
#include <OgreEntity.h>
#include <OgreSubEntity.h>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <gp_Pnt.hxx>
#include <TopoDS_Edge.hxx>

#include "mesh/DynamicLines.h"
#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/task/EdgeMfgShape.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/LineVisual.h"
#include "visual/handle/HandleMeshVisual.h"
#include "visual/handle/PathEndHandle.h"

namespace vrn::test {

using selection::VisualSelection;
using task::EdgeMfgShape;
using visual::PathEndHandle;
using visual::PathEndsHandle;
using Pos = rob::PosTemplate<float>;

namespace {

/// From x 0 to 100 and on to 200, the tool upright.
EdgeMfgShape TwoEdges() {
    EdgeMfgShape shape;
    for (const double from : {0.0, 100.0}) {
        const TopoDS_Edge edge =
            BRepBuilderAPI_MakeEdge(gp_Pnt(from, 0, 0), gp_Pnt(from + 100, 0, 0));
        shape.addEdge({edge, {{0, {0, 0, 1}}, {100, {0, 0, 1}}}});
    }
    return shape;
}

void ExpectNear(const Pos& is, const Pos& expected) {
    EXPECT_NEAR(is.x, expected.x, 1e-3);
    EXPECT_NEAR(is.y, expected.y, 1e-3);
    EXPECT_NEAR(is.z, expected.z, 1e-3);
}

}  // namespace

class PathEndsHandleTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        handle = PathEndsHandle::Get();
        ASSERT_NE(handle, nullptr);
    }
    void TearDown() override {
        handle->disableSelection();
        handle->setVisible(false, true);
        handle->startHandle->setPose({});
        handle->endHandle->setPose({});
        handle->detach();
        EngineTest::TearDown();
    }
    PathEndsHandle* handle = nullptr;
};

TEST_F(PathEndsHandleTest, ThereIsOnePairHiddenAtFirst) {
    PathEndsHandle::Init();
    EXPECT_EQ(PathEndsHandle::Get(), handle);
    EXPECT_EQ(handle->getName(), "PathEnd");
    EXPECT_EQ(static_cast<int>(handle->type), 19);
    EXPECT_FALSE(handle->visible);
    EXPECT_FALSE(handle->startHandle->marker->getEntity()->isVisible());
}

TEST_F(PathEndsHandleTest, AnEndIsALineAcrossTheBandWithAMarkerOnItsFarEnd) {
    for (const auto& [end, mesh, colour] :
         {std::tuple(handle->startHandle, "PathStartHandle", Ogre::Vector4(1, 0, 0, 1)),
          std::tuple(handle->endHandle, "PathEndHandle", Ogre::Vector4(0, 1, 0, 1))}) {
        const auto& lines = end->boundaryLine->getLines();
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_EQ(lines[0]->getPoints()[0], (Pos{0, 0, 0}));
        EXPECT_EQ(lines[0]->getPoints()[1], (Pos{0, 0, 37.5f}));
        EXPECT_EQ(end->boundaryLine->material, "PathBoundary");
        EXPECT_EQ(end->marker->getMeshName(), mesh);
        EXPECT_EQ(end->marker->getPosition(), (Pos{0, 0, 37.5f}));
        EXPECT_EQ(end->marker->material, "Axis");
        EXPECT_EQ(end->marker->highlightedMaterial, "HandleHighlight");
        EXPECT_EQ(end->marker->getEntity()->getSubEntity(0)->getCustomParameter(0), colour);
        EXPECT_TRUE(VisualSelection::Get()->getObject(end->marker)->priority);
        EXPECT_FALSE(VisualSelection::Get()->getObject(end->marker)->detectable);
    }
}

TEST_F(PathEndsHandleTest, TheEndsGoWhereTheProcessStartsAndEnds) {
    EdgeMfgShape shape = TwoEdges();
    handle->updatePosition(shape);
    ExpectNear(handle->startWorldPos(), {0, 0, 0});
    ExpectNear(handle->endWorldPos(), {200, 0, 0});
    shape.setRange({0, 30}, {1, 40});
    handle->updatePosition(shape);
    ExpectNear(handle->startWorldPos(), {30, 0, 0});
    ExpectNear(handle->endWorldPos(), {140, 0, 0});
    // z along the tool, so the marker stands over the edge.
    ExpectNear(handle->endHandle->marker->getWorldPosition(), {140, 0, 37.5f});
}

TEST_F(PathEndsHandleTest, WorldPositionsAreThoseOfTheEndsOnTheEdge) {
    handle->updatePosition(TwoEdges());
    visual::Visual carrier(scene().root);
    carrier.setPosition(0, 500, 0);
    handle->attachTo(&carrier);
    ExpectNear(handle->startWorldPos(), {0, 500, 0});
    ExpectNear(handle->endWorldPos(), {200, 500, 0});
    handle->detach();
}

TEST_F(PathEndsHandleTest, AShapeWithoutVectorsMovesNothing) {
    handle->updatePosition(TwoEdges());
    handle->updatePosition(EdgeMfgShape());
    ExpectNear(handle->endWorldPos(), {200, 0, 0});
}

TEST_F(PathEndsHandleTest, AnEndOnNoUsedEdgeStaysWhereItIs) {
    handle->updatePosition(TwoEdges());
    EdgeMfgShape shape = TwoEdges();
    shape.setRange({0, 20}, {7, 40});
    handle->updatePosition(shape);
    ExpectNear(handle->startWorldPos(), {20, 0, 0});
    ExpectNear(handle->endWorldPos(), {200, 0, 0});
    shape.setRange({-1, 20}, {0, 40});
    handle->updatePosition(shape);
    ExpectNear(handle->startWorldPos(), {20, 0, 0});
    ExpectNear(handle->endWorldPos(), {40, 0, 0});
}

TEST_F(PathEndsHandleTest, AMarkerCanBePickedOnlyWhileSelectionIsEnabled) {
    handle->attachTo(scene().root);
    handle->setVisible(true, true);
    handle->updatePosition(TwoEdges());
    lookFrom({100, -400, 20}, {100, 0, 20});
    pump();
    frame();
    const auto at = project(handle->endHandle->marker->getWorldPosition());
    EXPECT_FALSE(VisualSelection::Get()->select(at.x, at.y).hit);
    handle->enableSelection();
    pump();
    EXPECT_EQ(VisualSelection::Get()->select(at.x, at.y).visual, handle->endHandle->marker);
    handle->disableSelection();
    pump();
    EXPECT_FALSE(VisualSelection::Get()->select(at.x, at.y).hit);
}

}  // namespace vrn::test
