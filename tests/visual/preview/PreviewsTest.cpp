// The previews of the facade, as a host asks for them.

#include <gmock/gmock.h>
#include <OgreEntity.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>
#include <BRep_Builder.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <gp_Pnt.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Wire.hxx>

#include <cmath>
#include <optional>
#include <stdexcept>

#include "mesh/DynamicLines.h"
#include "selection/VisualSelection.h"
#include "suite/broker/SignalBroker.h"
#include "suite/geom/ShapeTools.h"
#include "suite/geom/TMesh.h"
#include "tests/visual/preview/PreviewFixture.h"
#include "visual/geometry/CamMeshVisual.h"
#include "visual/geometry/EdgeVisual.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/geometry/PointsVisual.h"
#include "visual/geometry/TriangleMeshVisual.h"
#include "visual/preview/PreviewCurve.h"
#include "visual/preview/PreviewedJointVisual.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/RobtargetVisual.h"
#include "visual/VisualIterator.h"

namespace vrn::test {

using visual::EdgeVisual;
using visual::PreviewCurve;
using visual::PreviewedJointVisual;
using visual::Visual;
using Pos = rob::PosTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using Vec = rob::Vec3Template<float>;
using testing::ThrowsMessage;

namespace {

constexpr unsigned unknownId = 123456789;

/// Around `shape`'s first face.
TopoDS_Wire FirstWire(const TopoDS_Shape& shape) {
    return TopoDS::Wire(TopExp_Explorer(shape, TopAbs_WIRE).Current());
}

TopoDS_Face FirstFace(const TopoDS_Shape& shape) {
    return TopoDS::Face(TopExp_Explorer(shape, TopAbs_FACE).Current());
}

geometry::PointList TwoSequences() {
    return {{{{0, 0, 0}, {10, 0, 0}, {10, 20, 0}}, {{5, 5, 5}, {6, 6, 6}}}};
}

void Drain() { visual::Scene::Get()->processMsgs(); }

}  // namespace

class PreviewsTest : public PreviewTest {};

// --- edges and wires

TEST_F(PreviewsTest, AnEdgeIsShownInItsPoseOverTheScene) {
    scene().previewEdge(LineEdge({0, 0, 0}, {10, 0, 0}), {{0, 0, 500}, {}});
    pump();
    const auto edges = addedOf<EdgeVisual>();
    ASSERT_EQ(edges.size(), 1u);
    EXPECT_TRUE(edges[0]->getName().starts_with("_previewed_edge_"));
    EXPECT_EQ(edges[0]->getPose().position, (Pos{0, 0, 500}));
    EXPECT_EQ(edges[0]->material, "PreviewCurve");
    EXPECT_EQ(edges[0]->selectedMaterial, "PreviewCurve");
    EXPECT_EQ(edges[0]->highlightedMaterial, "PreviewCurve");
    EXPECT_EQ(edges[0]->node->getAttachedObject(0)->getRenderQueueGroup(), 80);
    EXPECT_EQ(pickableCount(), 0u);
}

TEST_F(PreviewsTest, AnEdgeThatWasNeverTriangulatedIsPassedOver) {
    scene().previewEdge(TopoDS_Edge(), {});
    scene().previewWire(TopoDS_Wire(), {});
    scene().previewWire(FirstWire(PlainBox()), {});
    pump();
    EXPECT_TRUE(added().empty());
}

TEST_F(PreviewsTest, AWireIsItsEdgesInTheirOrderWithARunningNumber) {
    scene().previewWire(FirstWire(MeshedBox()), {{7, 0, 0}, {}});
    pump();
    const auto edges = addedOf<EdgeVisual>();
    ASSERT_EQ(edges.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_TRUE(edges[i]->getName().starts_with("previewed_edge_" + std::to_string(i)));
        EXPECT_EQ(edges[i]->getPoints().back(), edges[(i + 1) % 4]->getPoints().front());
        EXPECT_EQ(edges[i]->getPosition(), (Pos{7, 0, 0}));
        EXPECT_EQ(edges[i]->node->getAttachedObject(0)->getRenderQueueGroup(), 80);
    }
}

TEST_F(PreviewsTest, AWireWithAGapIsShownWhole) {
    const BRep_Builder builder;
    TopoDS_Wire wire;
    builder.MakeWire(wire);
    builder.Add(wire, LineEdge({0, 0, 0}, {1, 0, 0}));
    builder.Add(wire, LineEdge({5, 0, 0}, {6, 0, 0}));
    scene().previewWire(wire, {});
    pump();
    EXPECT_EQ(addedOf<EdgeVisual>().size(), 2u);
}

TEST_F(PreviewsTest, SeveralWiresAndEdgesAreShownWithAll) {
    std::vector<TopoDS_Wire> wires{FirstWire(MeshedBox()), FirstWire(MeshedBox(20, 20, 20))};
    std::vector<TopoDS_Edge> edges{LineEdge({0, 0, 0}, {1, 0, 0}), LineEdge({0, 0, 0}, {0, 1, 0})};
    scene().previewCurves(&wires, {});
    scene().previewEdges(&edges, {});
    pump();
    EXPECT_EQ(addedOf<EdgeVisual>().size(), 10u);
    scene().removePreviewCurves();
    pump();
    EXPECT_TRUE(added().empty());
}

TEST_F(PreviewsTest, NullForAListIsRefusedOnTheCaller) {
    EXPECT_THROW(scene().previewEdges(nullptr, {}), std::invalid_argument);
    EXPECT_THROW(scene().previewCurves(nullptr, {}), std::invalid_argument);
    EXPECT_THROW(scene().addPreviewCurves(1, nullptr), std::invalid_argument);
    EXPECT_THROW(scene().addPreviewCurvesWithDirection(1, nullptr, {}), std::invalid_argument);
    EXPECT_THROW(scene().previewPoints(nullptr, 1, {}), std::invalid_argument);
    EXPECT_THROW(scene().debugViewCamMesh(nullptr), std::invalid_argument);
}

TEST_F(PreviewsTest, APoseThatIsNoPoseLeavesNothing) {
    const Pose nowhere{{std::nanf(""), 0, 0}, {}};
    std::vector<TopoDS_Wire> wires{FirstWire(MeshedBox())};
    std::vector<TopoDS_Edge> edges{LineEdge({0, 0, 0}, {1, 0, 0})};
    const std::vector<std::function<void()>> asks{[&] { scene().previewEdge(edges[0], nowhere); },
                                                  [&] { scene().previewEdges(&edges, nowhere); },
                                                  [&] { scene().previewWire(wires[0], nowhere); },
                                                  [&] { scene().previewCurves(&wires, nowhere); }};
    for (const auto& ask : asks) {
        ask();
        EXPECT_THROW(Drain(), std::invalid_argument);
        EXPECT_TRUE(added().empty());
    }
}

// --- lists of points

TEST_F(PreviewsTest, ACurveForEachSequenceStandsWhereTheVisualStandsInTheWorld) {
    Visual* part = showCarrier();
    geometry::PointList list = TwoSequences();
    scene().addPreviewCurves(part->id, &list);
    pump();
    const auto curves = addedOf<PreviewCurve>();
    ASSERT_EQ(curves.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        const std::string name = "previewed_curve_" + std::to_string(part->id) + "_";
        EXPECT_TRUE(curves[i]->getName().starts_with(name + std::to_string(i)));
        EXPECT_EQ(curves[i]->getWorldPosition(), (Pos{1000, 0, 0}));
        EXPECT_EQ(static_cast<int>(curves[i]->type), 31);
        EXPECT_EQ(curves[i]->id, part->id);
        EXPECT_EQ(curves[i]->getArrow(), nullptr);
        EXPECT_EQ(curves[i]->material, "PreviewCurve");
    }
    EXPECT_EQ(curves[0]->getLines().front()->getPoints(),
              (std::vector<Pos>{{0, 0, 0}, {10, 0, 0}, {10, 20, 0}}));
}

TEST_F(PreviewsTest, ACurveOfAVisualInsideAnotherStandsInTheWorldToo) {
    auto* inner = new Visual(showCarrier());
    scene().visuals[inner->id] = inner;
    inner->setPosition(0, 5, 0);
    geometry::PointList list = TwoSequences();
    scene().addPreviewCurves(inner->id, &list);
    pump();
    for (const PreviewCurve* curve : addedOf<PreviewCurve>())
        EXPECT_EQ(curve->getWorldPosition(), (Pos{1000, 5, 0}));
    EXPECT_EQ(addedOf<PreviewCurve>().size(), 2u);
}

TEST_F(PreviewsTest, ADirectionAddsAnArrowThatTheSizeLevelReaches) {
    Visual* part = showCarrier();
    geometry::PointList list = TwoSequences();
    scene().addPreviewCurvesWithDirection(part->id, &list, {0, 0, 2});
    pump();
    const auto curves = addedOf<PreviewCurve>();
    ASSERT_EQ(curves.size(), 2u);
    ASSERT_NE(curves[1]->getArrow(), nullptr);
    EXPECT_EQ(curves[1]->getArrow()->getPosition(), (Pos{5, 5, 5}));
    EXPECT_TRUE(curves[1]->getArrow()->getName().starts_with("mfg_arrow"));
    scene().setArrowSizeLevel(10);
    pump();
    EXPECT_FLOAT_EQ(curves[1]->getArrow()->node->getScale().x, 2.0f);
}

TEST_F(PreviewsTest, TheFurtherNumberIsTheArrowsPlaceInTheSequence) {
    Visual* part = showCarrier();
    geometry::PointList list = TwoSequences();
    scene().addPreviewCurvesWithDirection(part->id, &list, {0, 0, 2}, 2);
    pump();
    const auto curves = addedOf<PreviewCurve>();
    ASSERT_NE(curves[0]->getArrow(), nullptr);
    EXPECT_EQ(curves[0]->getArrow()->getPosition(), (Pos{10, 20, 0}));
    EXPECT_EQ(curves[1]->getArrow(), nullptr);  // it has no third point
}

TEST_F(PreviewsTest, AnotherArrowTakesThePlaceOfTheOneBefore) {
    Visual* part = showCarrier();
    geometry::PointList list = TwoSequences();
    scene().addPreviewCurvesWithDirection(part->id, &list, {0, 0, 2});
    pump();
    PreviewCurve* curve = addedOf<PreviewCurve>().front();
    curve->addArrow({1, 2, 3}, {1, 0, 0});
    EXPECT_THAT(curve->getChildren(), testing::ElementsAre(curve->getArrow()));
    EXPECT_EQ(curve->getArrow()->getPosition(), (Pos{1, 2, 3}));
}

TEST_F(PreviewsTest, ADirectionWithoutLengthIsSkipped) {
    Visual* part = showCarrier();
    geometry::PointList list = TwoSequences();
    list.sequences.push_back({});
    scene().addPreviewCurvesWithDirection(part->id, &list, {0, 0.9e-7f, 0});
    pump();
    ASSERT_EQ(addedOf<PreviewCurve>().size(), 3u);
    for (const PreviewCurve* curve : addedOf<PreviewCurve>()) EXPECT_EQ(curve->getArrow(), nullptr);
}

TEST_F(PreviewsTest, ACurveWhoseArrowHasNoPlaceLeavesNothing) {
    Visual* part = showCarrier();
    geometry::PointList list{{{{std::nan(""), 0, 0}, {1, 0, 0}}}};
    scene().addPreviewCurvesWithDirection(part->id, &list, {0, 0, 1});
    EXPECT_THROW(Drain(), std::invalid_argument);
    EXPECT_TRUE(added().empty());
}

TEST_F(PreviewsTest, ACurveOfAnIdGoesOneAtATimeFromTheFrontAndTheModelStays) {
    Visual* part = showCarrier();
    geometry::PointList list = TwoSequences();
    scene().addPreviewCurves(part->id, &list);
    pump();
    const auto curves = addedOf<PreviewCurve>();
    scene().removePreviewCurve(part->id);
    scene().removePreviewCurve(unknownId);
    pump();
    EXPECT_EQ(addedOf<PreviewCurve>(), std::vector{curves[1]});
    EXPECT_EQ(scene().visuals.at(part->id), part);
    scene().removePreviewCurve(part->id);
    scene().removePreviewCurve(part->id);
    pump();
    EXPECT_TRUE(added().empty());
    EXPECT_EQ(scene().visuals.at(part->id), part);
}

TEST_F(PreviewsTest, SegmentsOfTrianglesGoWithTheCurves) {
    scene().previewTriangleMesh({{{0, 0, 0}, {1, 0, 0}}});
    pump();
    EXPECT_EQ(addedOf<visual::TriangleMeshVisual>().size(), 1u);
    scene().removePreviewCurves();
    pump();
    EXPECT_TRUE(added().empty());
}

TEST_F(PreviewsTest, AMeshOfTheMachiningSideReplacesTheOneBefore) {
    cadcam::TMesh<double> mesh{{{{0, 0, 0}}, {{9, 0, 0}}, {{0, 9, 0}}}, {{{0, 1, 2}}}};
    scene().debugViewCamMesh(&mesh);
    scene().debugViewCamMesh(&mesh);
    pump();
    ASSERT_EQ(addedOf<visual::CamMeshVisual>().size(), 1u);
    frame();
    scene().deleteVisual(addedOf<visual::CamMeshVisual>().front());
    scene().debugViewCamMesh(&mesh);
    pump();
    EXPECT_EQ(addedOf<visual::CamMeshVisual>().size(), 1u);
}

// --- points, targets, faces

TEST_F(PreviewsTest, PointsAreShownInTheFrameOfTheVisual) {
    Visual* part = showCarrier();
    std::vector<gp_Pnt> points{{1, 2, 3}, {4, 5, 6}};
    scene().previewPoints(&points, part->id, {1, 0, 0});
    pump();
    const auto* shown = dynamic_cast<visual::PointsVisual*>(part->getChildren().back());
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->getPoints(), (std::vector<Pos>{{1, 2, 3}, {4, 5, 6}}));
}

TEST_F(PreviewsTest, RemovingPointsRemovesTargetsToo) {
    Visual* part = showCarrier();
    const std::size_t ownChildren = part->getChildren().size();
    scene().previewTargets({{}, {{1, 0, 0}, {}}});
    std::vector<gp_Pnt> points{{1, 2, 3}};
    scene().previewPoints(&points, part->id, {1, 0, 0});
    pump();
    EXPECT_EQ(addedOf<visual::RobtargetVisual>().size(), 2u);
    EXPECT_EQ(part->getChildren().size(), ownChildren + 1);
    scene().removePreviewedPoints();
    pump();
    EXPECT_TRUE(added().empty());
    EXPECT_EQ(part->getChildren().size(), ownChildren);
}

TEST_F(PreviewsTest, NoTargetsClearTheEarlierOnesAndAddNothing) {
    scene().previewTargets({{}, {{1, 0, 0}, {}}});
    scene().previewTargets({});
    pump();
    EXPECT_TRUE(added().empty());
}

TEST_F(PreviewsTest, NoTargetsClearPreviewedPointsToo) {
    Visual* part = showCarrier();
    const std::size_t ownChildren = part->getChildren().size();
    std::vector<gp_Pnt> points{{1, 2, 3}};
    scene().previewPoints(&points, part->id, {1, 0, 0});
    scene().previewTargets({});
    pump();
    EXPECT_EQ(part->getChildren().size(), ownChildren);
    EXPECT_TRUE(added().empty());
}

TEST_F(PreviewsTest, FacesHangUnderTheVisualAndLookLikePreviews) {
    Visual* part = showCarrier();
    const std::size_t ownChildren = part->getChildren().size();
    const TopoDS_Shape box = MeshedBox();
    scene().previewFace(FirstFace(box), part->id);
    scene().previewFaces({FirstFace(box), FirstFace(MeshedBox(5, 5, 5))}, part->id);
    pump();
    EXPECT_EQ(part->getChildren().size(), ownChildren + 3);
    const auto* face = dynamic_cast<visual::SolidVisual*>(part->getChildren().back());
    ASSERT_NE(face, nullptr);
    EXPECT_EQ(MaterialOf(face), "PreviewFace");
    frame();
    scene().removePreviewFaces();
    pump();
    EXPECT_EQ(part->getChildren().size(), ownChildren);
}

TEST_F(PreviewsTest, UnknownIdsThrowInTheTask) {
    geometry::PointList list = TwoSequences();
    std::vector<gp_Pnt> points{{1, 2, 3}};
    const std::vector<std::function<void()>> strict{
        [&] { scene().addPreviewCurves(unknownId, &list); },
        [&] { scene().addPreviewCurvesWithDirection(unknownId, &list, {0, 0, 1}); },
        [&] { scene().previewPoints(&points, unknownId, {}); },
        [&] { scene().removePreviewedFrameVisual(unknownId); },
        [&] { scene().setPreviewedFrameVisible(unknownId, {}); },
        [&] { scene().setPreviewedFrameInvisible(unknownId); },
        [&] { scene().showCopiedVisual(unknownId, {}); }};
    for (const auto& ask : strict) {
        EXPECT_NO_THROW(ask());
        EXPECT_THAT(Drain, ThrowsMessage<std::out_of_range>("unordered_map::at"));
    }
    scene().previewFace(FirstFace(MeshedBox()), unknownId);
    EXPECT_THROW(Drain(), std::bad_optional_access);
    scene().previewFaces({FirstFace(MeshedBox())}, unknownId);
    EXPECT_THROW(Drain(), std::bad_optional_access);
    EXPECT_TRUE(added().empty());
}

// --- joint

TEST_F(PreviewsTest, AJointBeforeItIsCreatedIsNotEvenPosted) {
    int signals = 0;
    const auto counted = broker::SignalBroker::onUpdateScene([&] { ++signals; });
    scene().setPreviewedJointVisible({0, 0, 0}, {1, 0, 0});
    EXPECT_EQ(signals, 0);
    scene().setPreviewedJointInvisible();
    scene().removePreviewedJointVisual();
    EXPECT_NO_THROW(pump());
}

TEST_F(PreviewsTest, AJointRunsFromStartToEndWithTheArrowThere) {
    scene().createPreviewedJointVisual();
    pump();
    ASSERT_EQ(addedOf<PreviewedJointVisual>().size(), 1u);
    const PreviewedJointVisual* joint = addedOf<PreviewedJointVisual>()[0];
    EXPECT_FALSE(joint->visible);
    EXPECT_EQ(joint->getLine().getPoints(), (std::vector<Pos>{{-1000, 0, 0}, {1000, 0, 0}}));
    EXPECT_EQ(joint->getArrow()->getMeshName(), "joint_arrow_head");
    EXPECT_EQ(joint->getArrow()->getEntity()->getRenderQueueGroup(), 80);
    EXPECT_EQ(joint->material, "JointAxis");

    scene().setPreviewedJointVisible({0, 0, 0}, {0, 300, 0});
    pump();
    EXPECT_TRUE(joint->visible);
    EXPECT_EQ(joint->getLine().getPoints(), (std::vector<Pos>{{0, 0, 0}, {0, 300, 0}}));
    EXPECT_EQ(joint->getArrow()->getPosition(), (Pos{0, 300, 0}));
    const Vec along = joint->getArrow()->getPose().rotation * Vec{0, 0, 1};
    EXPECT_NEAR(along.y, 1, 1e-6);
    scene().setPreviewedJointInvisible();
    pump();
    EXPECT_FALSE(joint->visible);
    EXPECT_FALSE(joint->getArrow()->visible);
    scene().removePreviewedJointVisual();
    pump();
    EXPECT_TRUE(added().empty());
}

TEST_F(PreviewsTest, AJointWithoutLengthThrowsInTheTask) {
    scene().createPreviewedJointVisual();
    scene().createPreviewedJointVisual();
    pump();
    EXPECT_EQ(addedOf<PreviewedJointVisual>().size(), 1u);
    scene().setPreviewedJointVisible({5, 5, 5}, {5, 5, 5});
    EXPECT_THAT(Drain, ThrowsMessage<std::overflow_error>("0-length vector cannot be normalized."));
}

TEST_F(PreviewsTest, AJointWhoseArrowAHostDeletedIsShownWithoutIt) {
    scene().createPreviewedJointVisual();
    pump();
    const PreviewedJointVisual* joint = addedOf<PreviewedJointVisual>().at(0);
    scene().deleteVisual(joint->getArrow());
    EXPECT_EQ(joint->getArrow(), nullptr);
    scene().setPreviewedJointVisible({0, 0, 0}, {1, 0, 0});
    EXPECT_NO_THROW(pump());
    EXPECT_EQ(joint->getLine().getPoints().back(), (Pos{1, 0, 0}));
}

TEST_F(PreviewsTest, AJointRemovedBeforeItIsShownIsPassedOver) {
    scene().createPreviewedJointVisual();
    pump();
    scene().removePreviewedJointVisual();
    scene().setPreviewedJointVisible({0, 0, 0}, {1, 0, 0});
    EXPECT_NO_THROW(pump());
}

// --- frames

TEST_F(PreviewsTest, FramesAreKeptByTheHostsKeyAndShownWithoutWhatHangsBelow) {
    scene().createPreviewedFrameVisual(7, true);
    scene().createPreviewedFrameVisual(8, false);
    scene().createPreviewedFrameVisual(7, true);
    pump();
    const auto frames = addedOf<visual::FrameVisual>();
    ASSERT_EQ(frames.size(), 2u);
    for (const auto* shown : frames) EXPECT_FALSE(shown->visible);
    scene().setPreviewedFrameVisible(8, {{1, 2, 3}, {}});
    pump();
    const auto visible = std::ranges::find_if(frames, [](const Visual* v) { return v->visible; });
    ASSERT_NE(visible, frames.end());
    EXPECT_EQ((*visible)->getWorldPosition(), (Pos{1, 2, 3}));
    scene().setPreviewedFrameInvisible(8);
    pump();
    EXPECT_FALSE((*visible)->visible);
    scene().removePreviewedFrameVisual(7);
    scene().removePreviewedFrameVisual(8);
    pump();
    EXPECT_TRUE(added().empty());
}

TEST_F(PreviewsTest, APlainFrameHasOneDashAnAxisAndAnyOtherThree) {
    const auto pointsOfNext = [&](bool plain) {
        scene().createPreviewedFrameVisual(7, plain);
        pump();
        return addedOf<visual::FrameVisual>().at(0)->getLines().front()->getPoints().size();
    };
    EXPECT_EQ(pointsOfNext(true), 2u);
    EXPECT_EQ(pointsOfNext(false), 6u);
    scene().removePreviewedFrameVisual(7);
    pump();
}

// --- copy

TEST_F(PreviewsTest, ACopyOfTheSameIdMovesAndIsMadeOnce) {
    Visual* part = showCarrier();
    scene().showCopiedVisual(part->id, {{0, 0, 100}, {}});
    pump();
    ASSERT_EQ(added().size(), 1u);
    Visual* copy = added()[0];
    const std::string name = copy->getName();  // another copy's ends in another number
    scene().hideCopiedVisual();
    pump();
    EXPECT_FALSE(copy->visible);
    scene().showCopiedVisual(part->id, {{0, 0, 200}, {}});
    pump();
    ASSERT_EQ(added(), std::vector{copy});
    EXPECT_EQ(copy->getName(), name);
    EXPECT_TRUE(copy->visible);
    EXPECT_EQ(copy->getWorldPosition(), (Pos{0, 0, 200}));
    EXPECT_EQ(part->getWorldPosition(), (Pos{1000, 0, 0}));
}

TEST_F(PreviewsTest, ACopyOfAnotherIdReplacesIt) {
    Visual* part = showCarrier();
    Visual* other = showBoxPart("other");
    known.insert(other);
    scene().showCopiedVisual(part->id, {});
    scene().showCopiedVisual(other->id, {});
    pump();
    ASSERT_EQ(added().size(), 1u);
    EXPECT_EQ(added()[0]->id, other->id);
}

TEST_F(PreviewsTest, ACopyIsTranslucentThroughoutAndCannotBePicked) {
    Visual* part = showCarrier();
    const std::size_t pickable = pickableCount();
    scene().showCopiedVisual(part->id, {});
    pump();
    const auto* body = dynamic_cast<visual::MeshVisual*>(findBelow(added()[0], VisualType::Mesh));
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(body->getEntity()->getSubEntity(0)->getMaterialName(), "TransBody");
    EXPECT_EQ(pickableCount(), pickable);
    frame();
}

TEST_F(PreviewsTest, ACopyGivesNothingOfItsSourceBack) {
    auto* solid = show(MeshedBox());
    known.insert(solid);
    const std::string mesh = solid->getMeshName();
    const auto count = MeshCount(mesh);
    scene().showCopiedVisual(solid->id, {{0, 0, 100}, {}});
    pump();
    ASSERT_EQ(added().size(), 1u);
    scene().deleteCopiedVisual();
    scene().deleteCopiedVisual();
    pump();
    EXPECT_TRUE(added().empty());
    EXPECT_EQ(MeshCount(mesh), count);
    EXPECT_EQ(scene().visuals.at(solid->id), solid);
    frame();
}

TEST_F(PreviewsTest, AKindThatCannotBeCopiedShowsNothing) {
    auto* plain = new Visual(scene().root);
    scene().visuals[plain->id] = plain;
    known.insert(plain);
    scene().showCopiedVisual(plain->id, {});
    scene().hideCopiedVisual();
    EXPECT_NO_THROW(pump());
    EXPECT_TRUE(added().empty());
}

// --- all of them

TEST_F(PreviewsTest, WhatGoesWithItsParentIsForgotten) {
    Visual* part = showBoxPart("short-lived");
    std::vector<gp_Pnt> points{{1, 2, 3}};
    scene().previewPoints(&points, part->id, {1, 0, 0});
    scene().previewFace(FirstFace(MeshedBox()), part->id);
    scene().showCopiedVisual(part->id, {});
    pump();
    scene().attachVisual(part->id, added().back());  // the copy, where a host should not hang it
    scene().removeVisual(part->id);
    pump();
    scene().hideCopiedVisual();
    scene().removePreviewedPoints();
    scene().removePreviewFaces();
    EXPECT_NO_THROW(pump());
}

TEST_F(PreviewsTest, AStationThatIsLoadedLeavesThem) {
    scene().previewEdge(LineEdge({0, 0, 0}, {10, 0, 0}), {});
    pump();
    const auto shown = added();
    scene().LoadStation();
    pump();
    EXPECT_EQ(added(), shown);
}

TEST_F(PreviewsTest, ALoadedStationLeavesThemAndNoneOfThemCanBePicked) {
    auto* solid = show(MeshedBox());
    known.insert(solid);
    const std::size_t pickable = pickableCount();
    const TopoDS_Shape box = MeshedBox();
    std::vector<TopoDS_Edge> edges{LineEdge({0, 0, 0}, {1, 0, 0})};
    std::vector<gp_Pnt> points{{1, 2, 3}};
    geometry::PointList list = TwoSequences();
    cadcam::TMesh<double> mesh{{{{0, 0, 0}}, {{9, 0, 0}}, {{0, 9, 0}}}, {{{0, 1, 2}}}};
    scene().previewTargets({{}, {{1, 0, 0}, {}}});
    scene().previewPoints(&points, solid->id, {1, 0, 0});
    scene().previewFace(FirstFace(box), solid->id);
    scene().previewEdges(&edges, {});
    scene().previewWire(FirstWire(box), {});
    scene().addPreviewCurvesWithDirection(solid->id, &list, {0, 0, 1});
    scene().previewTriangleMesh({{{0, 0, 0}, {1, 0, 0}}});
    scene().debugViewCamMesh(&mesh);
    scene().createPreviewedJointVisual();
    scene().createPreviewedFrameVisual(7, true);
    scene().setPreviewedFrameVisible(7, {});
    scene().showCopiedVisual(solid->id, {});
    pump();
    scene().setPreviewedJointVisible({0, 0, 0}, {0, 0, 9});
    pump();
    const auto shown = added();
    // 2 targets, 1 and 4 edges, 2 curves, triangles, mesh, joint, frame, copy.
    EXPECT_EQ(shown.size(), 14u);
    EXPECT_EQ(solid->getChildren().size(), 3u);  // points and face beside the wire frame
    EXPECT_EQ(pickableCount(), pickable);
    scene().LoadStation();
    pump();
    EXPECT_EQ(added(), shown);
    scene().removePreviewedFrameVisual(7);
    pump();
}

TEST_F(PreviewsTest, WhatIsDeletedByItselfIsForgotten) {
    Visual* part = showCarrier();
    geometry::PointList list = TwoSequences();
    scene().addPreviewCurves(part->id, &list);
    scene().previewTargets({{}});
    scene().createPreviewedJointVisual();
    scene().createPreviewedFrameVisual(7, true);
    scene().showCopiedVisual(part->id, {});
    pump();
    for (Visual* shown : added()) scene().deleteVisual(shown);
    scene().removePreviewCurve(part->id);
    scene().removePreviewCurves();
    scene().removePreviewedPoints();
    scene().setPreviewedJointVisible({0, 0, 0}, {0, 0, 9});
    scene().setPreviewedJointInvisible();
    scene().removePreviewedJointVisual();
    scene().deleteCopiedVisual();
    EXPECT_NO_THROW(pump());
    scene().setPreviewedFrameInvisible(7);
    EXPECT_THAT(Drain, ThrowsMessage<std::out_of_range>("unordered_map::at"));
    EXPECT_TRUE(added().empty());
}

TEST_F(PreviewsTest, ACopyOutlivesItsSource) {
    auto* solid = show(MeshedBox());
    scene().showCopiedVisual(solid->id, {{0, 0, 100}, {}});
    pump();
    scene().deleteVisual(solid);
    ASSERT_EQ(added().size(), 1u);
    frame();
    scene().deleteCopiedVisual();
    pump();
    EXPECT_TRUE(added().empty());
    frame();
}

TEST_F(PreviewsTest, EveryBodyOfACopyIsTranslucentHoweverDeep) {
    auto* assembly = new Visual("assembly", scene().root);
    assembly->type = VisualType::Assembly;
    scene().visuals[assembly->id] = assembly;
    known.insert(assembly);
    for (int i = 0; i < 2; ++i) {
        Visual* part = showBoxPart("part " + std::to_string(i));
        scene().attachVisual(assembly->id, part);
    }
    pump();
    scene().showCopiedVisual(assembly->id, {});
    pump();
    ASSERT_EQ(added().size(), 1u);
    int bodies = 0;
    for (visual::ForestIterator<Visual> it(added()[0]); it.next();) {
        EXPECT_EQ(it.value()->material, "TransBody");
        EXPECT_EQ(it.value()->selectedMaterial, "TransBody");
        EXPECT_EQ(it.value()->highlightedMaterial, "TransBody");
        if (const auto* body = dynamic_cast<visual::MeshVisual*>(it.value())) {
            ++bodies;
            EXPECT_EQ(body->getEntity()->getSubEntity(0)->getMaterialName(), "TransBody");
        }
    }
    EXPECT_EQ(bodies, 2);
}

TEST_F(PreviewsTest, AFaceWithoutTrianglesShowsNothingAndIsRemovedLikeAnyOther) {
    Visual* part = showCarrier();
    const std::size_t ownChildren = part->getChildren().size();
    scene().previewFace(FirstFace(PlainBox()), part->id);
    scene().previewFace(TopoDS_Face(), part->id);
    EXPECT_NO_THROW(frame());
    scene().removePreviewFaces();
    pump();
    EXPECT_EQ(part->getChildren().size(), ownChildren);
}

TEST_F(PreviewsTest, TheyDoNotCountForViews) {
    Visual* part = showCarrier();
    const Pose without = scene().getViewAllPose();
    cadcam::TMesh<double> mesh{{{{0, 0, 0}}, {{9e4, 0, 0}}, {{0, 9e4, 0}}}, {{{0, 1, 2}}}};
    std::vector<gp_Pnt> points{{9e4, 0, 0}};
    scene().debugViewCamMesh(&mesh);
    scene().previewPoints(&points, part->id, {1, 0, 0});
    scene().previewTargets({{{9e4f, 0, 0}, {}}});
    scene().previewFace(FirstFace(MeshedBox(9e4, 9e4, 9e4)), part->id);
    scene().createPreviewedFrameVisual(7, true);
    scene().setPreviewedFrameVisible(7, {{0, 9e4, 0}, {}});
    scene().previewEdge(LineEdge({0, 0, 0}, {9e4, 0, 0}), {});
    geometry::PointList list{{{{0, 0, 0}, {0, 9e4, 0}}}};
    scene().addPreviewCurves(part->id, &list);
    scene().createPreviewedJointVisual();
    pump();
    scene().setPreviewedJointVisible({0, 0, 0}, {0, 0, 9e4});
    scene().showCopiedVisual(part->id, {{9e4f, 0, 0}, {}});
    pump();
    EXPECT_EQ(scene().getViewAllPose(), without);
    scene().removePreviewedFrameVisual(7);
    pump();
}

}  // namespace vrn::test
