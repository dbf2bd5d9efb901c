#include <stdexcept>

#include <gmock/gmock.h>

#include <OgreSceneNode.h>
#include <OgreSimpleRenderable.h>
#include <TopExp.hxx>
#include <TopoDS.hxx>
#include <TopTools_IndexedMapOfShape.hxx>

#include "tests/support/SolidFixture.h"
#include "visual/geometry/CurveVisual.h"
#include "visual/geometry/EdgeVisual.h"
#include "visual/geometry/MeshVisual.h"

namespace vrn::test {

namespace {

using testing::StrEq;
using testing::ThrowsMessage;
using visual::CurveVisual;
using visual::EdgeVisual;
using visual::SolidVisual;
using visual::Visual;

constexpr std::uint32_t unknownId = 123456789;
const auto isUnknownId = ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at"));

std::vector<EdgeVisual*> EdgesBelow(const Visual* owner) {
    std::vector<EdgeVisual*> edges;
    for (Visual* child : owner->getChildren())
        if (auto* edge = dynamic_cast<EdgeVisual*>(child)) edges.push_back(edge);
    return edges;
}

std::string LookOf(const EdgeVisual* edge) {
    return dynamic_cast<Ogre::SimpleRenderable*>(edge->node->getAttachedObject(0))
        ->getMaterial()
        ->getName();
}

}  // namespace

class SceneEdges : public SolidTest {
protected:
    void SetUp() override {
        SolidTest::SetUp();
        solid = show(MeshedBox());
        TopExp::MapShapes(solid->getShape(), TopAbs_EDGE, edges);
    }
    [[nodiscard]] TopoDS_Edge edge(int index) const { return TopoDS::Edge(edges(index)); }
    /// The one edge visual below the solid; null if there is none.
    [[nodiscard]] EdgeVisual* only() const {
        const auto below = EdgesBelow(solid);
        EXPECT_LE(below.size(), 1u);
        return below.empty() ? nullptr : below.front();
    }

    SolidVisual* solid = nullptr;
    TopTools_IndexedMapOfShape edges;
};

// --- highlight

TEST_F(SceneEdges, AHighlightedEdgeIsDrawnBelowItsVisual) {
    scene().highlightEdge(solid, edge(1));
    EXPECT_EQ(only(), nullptr);
    pump();
    ASSERT_NE(only(), nullptr);
    EXPECT_TRUE(only()->getEdge().IsSame(edge(1)));
    EXPECT_EQ(LookOf(only()), "BodyCurveHighlighted");
    EXPECT_EQ(only()->selectedMaterial, "BodyCurveSelected");
    EXPECT_EQ(only()->highlightedMaterial, "BodyCurveHighlighted");
    EXPECT_EQ(only()->type, VisualType::Edge);
    EXPECT_FALSE(scene().visuals.contains(only()->id));
    scene().clearHighlightedEdge();
    pump();
    EXPECT_EQ(only(), nullptr);
}

TEST_F(SceneEdges, TheSameEdgeTwiceIsDrawnOnce) {
    scene().highlightEdge(solid, edge(1));
    pump();
    const EdgeVisual* first = only();
    scene().highlightEdge(solid, TopoDS::Edge(edge(1).Reversed()));
    pump();
    EXPECT_EQ(only(), first);
}

TEST_F(SceneEdges, AnotherEdgeReplacesTheHighlight) {
    scene().highlightEdge(solid, edge(1));
    scene().highlightEdge(solid, edge(2));
    pump();
    ASSERT_NE(only(), nullptr);
    EXPECT_TRUE(only()->getEdge().IsSame(edge(2)));
}

TEST_F(SceneEdges, TheSameEdgeOfAnotherVisualIsAnotherEdge) {
    SolidVisual* other = show(MeshedBox());
    scene().highlightEdge(solid, edge(1));
    pump();
    scene().highlightEdge(other, edge(1));
    pump();
    EXPECT_EQ(only(), nullptr);
    EXPECT_EQ(EdgesBelow(other).size(), 1u);
}

TEST_F(SceneEdges, HighlightingAnEdgeLeavesFaceAndBodyHighlighted) {
    scene().setVisualHighlighted(solid);
    scene().highlightEdge(solid, edge(1));
    pump();
    EXPECT_EQ(MaterialOf(solid), "BodyHighlighted");
}

TEST_F(SceneEdges, HighlightingAFaceOrABodyClearsTheEdge) {
    scene().highlightEdge(solid, edge(1));
    scene().highlightFace(solid, 1);
    pump();
    EXPECT_EQ(only(), nullptr);
    scene().highlightEdge(solid, edge(1));
    scene().setVisualHighlighted(solid);
    pump();
    EXPECT_EQ(only(), nullptr);
}

TEST_F(SceneEdges, NoVisualOrAnEdgeWithoutPolygonShowsNothing) {
    scene().highlightEdge(solid, edge(1));
    scene().highlightEdge(nullptr, edge(1));
    pump();
    EXPECT_EQ(only(), nullptr);
    scene().highlightEdge(solid, TopoDS_Edge());
    pump();
    EXPECT_EQ(only(), nullptr);
    scene().clearHighlightedEdge();
    EXPECT_NO_THROW(pump());
}

TEST_F(SceneEdges, ClearingForgetsAtOnceSoThatTheSameEdgeCanBeHighlightedAgain) {
    scene().highlightEdge(solid, edge(1));
    scene().clearHighlightedVisual();
    scene().highlightEdge(solid, edge(1));
    pump();
    EXPECT_NE(only(), nullptr);
}

TEST_F(SceneEdges, ARemovedOwnerIsForgottenWithItsHighlight) {
    scene().highlightEdge(solid, edge(1));
    pump();
    scene().removeVisual(solid->id);
    pump();
    scene().clearHighlightedEdge();
    EXPECT_NO_THROW(pump());
    SolidVisual* another = show(MeshedBox());
    scene().highlightEdge(another, edge(1));
    pump();
    EXPECT_EQ(EdgesBelow(another).size(), 1u);
}

TEST_F(SceneEdges, AnOwnerRemovedBeforeItsTurnIsNotFollowed) {
    scene().removeVisual(solid->id);
    scene().highlightEdge(solid, edge(1));
    EXPECT_NO_THROW(pump());
    scene().clearHighlightedEdge();
    EXPECT_NO_THROW(pump());
}

TEST_F(SceneEdges, AHighlightThatIsDeletedFromOutsideIsForgotten) {
    scene().highlightEdge(solid, edge(1));
    pump();
    scene().deleteVisual(only());
    scene().clearHighlightedEdge();
    EXPECT_NO_THROW(pump());
    EXPECT_EQ(only(), nullptr);
}

// --- generated edges

TEST_F(SceneEdges, AGeneratedEdgeStaysUntilItIsRemoved) {
    scene().addGeneratedEdge(solid->id, edge(3));
    pump();
    ASSERT_NE(only(), nullptr);
    EXPECT_EQ(only()->type, VisualType::GeneratedEdge);
    EXPECT_EQ(LookOf(only()), "BodyCurve");
    EXPECT_EQ(scene().visuals.at(only()->id), only());
    scene().removeGeneratedEdge(solid->id, edge(4));  // none of it
    pump();
    EXPECT_NE(only(), nullptr);
    scene().removeGeneratedEdge(solid->id, edge(3));
    pump();
    EXPECT_EQ(only(), nullptr);
}

TEST_F(SceneEdges, AGeneratedEdgeWithoutPolygonIsPassedOver) {
    scene().addGeneratedEdge(solid->id, TopoDS_Edge());
    EXPECT_NO_THROW(pump());
    EXPECT_EQ(only(), nullptr);
}

TEST_F(SceneEdges, AGeneratedEdgeIsSelectedByItsShape) {
    scene().addGeneratedEdge(solid->id, edge(3));
    scene().selectGeneratedEdge(solid->id, edge(3));
    pump();
    EXPECT_EQ(LookOf(only()), "BodyCurveSelected");
    EXPECT_TRUE(scene().isSelected(only()));
    scene().clearSelections();
    pump();
    EXPECT_EQ(LookOf(only()), "BodyCurve");
}

TEST_F(SceneEdges, OnlyAGeneratedEdgeIsSelectedOrRemoved) {
    scene().highlightEdge(solid, edge(3));
    scene().selectGeneratedEdge(solid->id, edge(3));
    scene().removeGeneratedEdge(solid->id, edge(3));
    pump();
    ASSERT_NE(only(), nullptr);
    EXPECT_EQ(LookOf(only()), "BodyCurveHighlighted");
    EXPECT_FALSE(scene().isSelected(only()));
}

TEST_F(SceneEdges, UnknownIdsThrowInsideTheBatch) {
    const auto expectUnknown = [](const auto& post) {
        EXPECT_NO_THROW(post());
        EXPECT_THAT([] { pump(); }, isUnknownId);
    };
    expectUnknown([&] { scene().addGeneratedEdge(unknownId, edge(1)); });
    expectUnknown([&] { scene().removeGeneratedEdge(unknownId, edge(1)); });
    expectUnknown([&] { scene().selectGeneratedEdge(unknownId, edge(1)); });
    expectUnknown([&] { scene().addEdgeArrow(unknownId, edge(1), true); });
    expectUnknown([&] { scene().clearEdgeArrow(unknownId, edge(1)); });
    expectUnknown([&] { scene().addCurveArrow(unknownId, true); });
    expectUnknown([&] { scene().clearCurveArrow(unknownId); });
}

// --- arrows

TEST_F(SceneEdges, AnArrowStandsOnTheEdgeOfThatShape) {
    scene().addGeneratedEdge(solid->id, edge(3));
    scene().addEdgeArrow(solid->id, edge(3), true);
    scene().addEdgeArrow(solid->id, edge(4), true);  // none of it
    pump();
    ASSERT_NE(only()->getArrow(), nullptr);
    EXPECT_EQ(only()->getArrow()->getPosition(), only()->getPoints().back());
    scene().addEdgeArrow(solid->id, edge(3), false);
    pump();
    EXPECT_EQ(only()->getArrow()->getPosition(), only()->getPoints().front());
    scene().clearEdgeArrow(solid->id, edge(4));
    pump();
    EXPECT_NE(only()->getArrow(), nullptr);
    scene().clearEdgeArrow(solid->id, edge(3));
    pump();
    EXPECT_EQ(only()->getArrow(), nullptr);
}

TEST_F(SceneEdges, AHighlightTakesNoArrow) {
    scene().highlightEdge(solid, edge(3));
    scene().addEdgeArrow(solid->id, edge(3), true);
    pump();
    EXPECT_EQ(only()->getArrow(), nullptr);
}

TEST_F(SceneEdges, ACurveTakesAnArrowAtEitherEnd) {
    layout::Body* body = makeBody(LineEdge({0, 0, 0}, {10, 0, 0}));
    CurveVisual* curve = CurveVisual::Build(scene().root, body, body->getShape());
    scene().addCurveArrow(body->id, true);
    pump();
    ASSERT_NE(curve->getEdges()[0]->getArrow(), nullptr);
    EXPECT_EQ(curve->getEdges()[0]->getArrow()->getPosition().x, 10);
    scene().addCurveArrow(body->id, false);
    pump();
    EXPECT_EQ(curve->getEdges()[0]->getArrow()->getPosition().x, 0);
    scene().clearCurveArrow(body->id);
    pump();
    EXPECT_EQ(curve->getEdges()[0]->getArrow(), nullptr);
}

TEST_F(SceneEdges, OnlyACurveTakesACurvesArrow) {
    scene().addCurveArrow(solid->id, true);
    scene().clearCurveArrow(solid->id);
    EXPECT_NO_THROW(pump());
}

TEST_F(SceneEdges, RemovingAnOwnerTakesGeneratedEdgesAndArrowsAlong) {
    scene().addGeneratedEdge(solid->id, edge(3));
    scene().addEdgeArrow(solid->id, edge(3), true);
    pump();
    const std::uint32_t generated = only()->id;
    scene().removeVisual(solid->id);
    pump();
    EXPECT_FALSE(scene().visuals.contains(generated));
}

}  // namespace vrn::test
