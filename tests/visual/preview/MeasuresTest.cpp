// Measures, the directions of a face, free lines.

#include <gmock/gmock.h>
#include <OgreSceneNode.h>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <Geom_BezierSurface.hxx>
#include <gp_Ax3.hxx>
#include <gp_Pln.hxx>
#include <gp_Trsf.hxx>
#include <TColgp_Array2OfPnt.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "mesh/DynamicLines.h"
#include "suite/rob/ShapeTypes.h"
#include "tests/visual/preview/PreviewFixture.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/preview/DimensionVisual.h"
#include "visual/preview/PolylineVisual.h"
#include "visual/preview/UVIndicatorVisual.h"

namespace vrn::test {

using visual::DimensionVisual;
using visual::PolylineVisual;
using visual::UVIndicatorVisual;
using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using testing::ThrowsMessage;

namespace {

constexpr double pi = 3.14159265358979323846;

void ExpectNear(const Pos& is, const Pos& expected) {
    EXPECT_NEAR(is.x, expected.x, 1e-4f);
    EXPECT_NEAR(is.y, expected.y, 1e-4f);
    EXPECT_NEAR(is.z, expected.z, 1e-4f);
}

void Drain() { visual::Scene::Get()->processMsgs(); }

const char* const noLength = "0-length vector cannot be normalized.";

}  // namespace

class MeasuresTest : public PreviewTest {
protected:
    /// Of the only measure there is, its lines.
    const auto& lines() const { return addedOf<DimensionVisual>().at(0)->getLines(); }
    const std::vector<Pos>& points(std::size_t line) const { return lines().at(line)->getPoints(); }
};

TEST_F(MeasuresTest, ADistanceIsALine) {
    scene().createDistanceVisual({1, 2, 3}, {4, 5, 6});
    pump();
    ASSERT_EQ(added().size(), 1u);
    EXPECT_TRUE(added()[0]->getName().starts_with("dimension"));
    ASSERT_EQ(lines().size(), 1u);
    EXPECT_EQ(points(0), (std::vector<Pos>{{1, 2, 3}, {4, 5, 6}}));
    EXPECT_EQ(lines()[0]->getMaterial()->getName(), "FrameLine");
}

TEST_F(MeasuresTest, ADistanceOfNothingIsDrawnAllTheSame) {
    scene().createDistanceVisual({1, 2, 3}, {1, 2, 3});
    EXPECT_NO_THROW(pump());
    EXPECT_EQ(points(0), (std::vector<Pos>{{1, 2, 3}, {1, 2, 3}}));
    frame();
}

TEST_F(MeasuresTest, ADiameterIsTheArcInFiftyStepsAndALineAcross) {
    const rob::TPCircle circle({10, 0, 0}, {0, 10, 0}, {0, -10, 0});
    scene().createDiameterVisual(circle);
    pump();
    ASSERT_EQ(lines().size(), 2u);
    ASSERT_EQ(points(0).size(), 51u);
    ExpectNear(points(0).front(), {10, 0, 0});
    ExpectNear(points(0).back(), {0, -10, 0});
    for (int i = 0; i <= 50; ++i)
        EXPECT_EQ(points(0)[static_cast<std::size_t>(i)], circle.getPoint(i / 50.0));
    EXPECT_EQ(points(1), (std::vector<Pos>{circle.getPoint(0), circle.getPoint(0.5)}));
}

TEST_F(MeasuresTest, AnAngleIsItsLegsAndTheArcFromTheShorterOne) {
    scene().createAngleVisual({1, 1, 0}, {31, 1, 0}, {1, 11, 0}, pi / 2);
    pump();
    ASSERT_EQ(lines().size(), 3u);
    EXPECT_EQ(points(0), (std::vector<Pos>{{1, 1, 0}, {31, 1, 0}}));
    EXPECT_EQ(points(1), (std::vector<Pos>{{1, 1, 0}, {1, 11, 0}}));
    ASSERT_EQ(points(2).size(), 21u);
    ExpectNear(points(2).front(), {1, 11, 0});
    ExpectNear(points(2).back(), {11, 1, 0});
    for (const Pos& p : points(2)) EXPECT_NEAR((p - Pos{1, 1, 0}).length(), 10, 1e-4);
}

TEST_F(MeasuresTest, OfEqualLegsTheArcStartsAtTheFirst) {
    scene().createAngleVisual({0, 0, 0}, {10, 0, 0}, {0, 0, 10}, pi / 2);
    pump();
    ExpectNear(points(2).front(), {10, 0, 0});
    ExpectNear(points(2).back(), {0, 0, 10});
}

TEST_F(MeasuresTest, LegsInOneLineOrWithoutLengthEndTheBatchAndShowNothing) {
    scene().createAngleVisual({0, 0, 0}, {10, 0, 0}, {-5, 0, 0}, pi);
    EXPECT_THAT(Drain, ThrowsMessage<std::overflow_error>(noLength));
    scene().createAngleVisual({0, 0, 0}, {0, 0, 0}, {-5, 0, 0}, pi);
    EXPECT_THAT(Drain, ThrowsMessage<std::overflow_error>(noLength));
    EXPECT_TRUE(added().empty());
    frame();
}

TEST_F(MeasuresTest, RemovingTakesAllOfThemAndWithNothingDrawnDoesNothing) {
    scene().removeDimensionVisual();
    EXPECT_NO_THROW(pump());
    scene().createDistanceVisual({1, 2, 3}, {4, 5, 6});
    scene().createDistanceVisual({1, 2, 3}, {7, 5, 6});
    pump();
    scene().deleteVisual(added().front());
    scene().removeDimensionVisual();
    pump();
    EXPECT_TRUE(added().empty());
}

// --- free lines

TEST_F(MeasuresTest, APolylineRunsThroughItsPointsWithItsArrowAtTheStart) {
    scene().drawPolyline({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, 5, true);
    pump();
    const auto shown = addedOf<PolylineVisual>();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0]->getName(), "polyline" + std::to_string(shown[0]->id));
    EXPECT_EQ(shown[0]->getPoints(), (std::vector<Pos>{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}));
    for (const auto& name :
         {shown[0]->material, shown[0]->selectedMaterial, shown[0]->highlightedMaterial})
        EXPECT_EQ(name, "PreviewCurve");
    ASSERT_EQ(shown[0]->getChildren().size(), 1u);
    const visual::Visual* arrow = shown[0]->getChildren()[0];
    EXPECT_EQ(arrow->getPosition(), (Pos{0, 0, 0}));
    EXPECT_NEAR((arrow->getPose().rotation * Vec{0, 0, 1}).x, 1, 1e-6);
    frame();
}

TEST_F(MeasuresTest, WithFewerThanTwoPointsThereIsNoArrow) {
    scene().drawPolyline({{1, 1, 1}}, 0, true);
    scene().drawPolyline({}, 0, true);
    pump();
    ASSERT_EQ(addedOf<PolylineVisual>().size(), 2u);
    for (const auto* line : addedOf<PolylineVisual>()) EXPECT_TRUE(line->getChildren().empty());
    frame();
}

TEST_F(MeasuresTest, AnArrowWithoutADirectionIsRefusedInTheTask) {
    scene().drawPolyline({{1, 1, 1}, {1, 1, 1}}, 0, true);
    EXPECT_THAT(Drain, ThrowsMessage<std::overflow_error>(noLength));
    EXPECT_TRUE(added().empty());
    scene().drawPolyline({{1, 1, 1}, {1, 1, 1}}, 0, false);
    EXPECT_NO_THROW(pump());
}

TEST_F(MeasuresTest, AnArrowThatHasNoPlaceOrDirectionInNumbersLeavesNothing) {
    constexpr float inf = std::numeric_limits<float>::infinity();
    const std::vector<std::vector<Pos>> lines{{{inf, 0, 0}, {0, 0, 0}},
                                              {{0, 0, 0}, {std::nanf(""), 0, 0}},
                                              {{3e38f, 0, 0}, {-3e38f, 0, 0}}};
    for (const std::vector<Pos>& line : lines) {
        scene().drawPolyline(line, 0, true);
        EXPECT_ANY_THROW(Drain());
        EXPECT_TRUE(added().empty());
        scene().drawPolyline(line, 0, false);
        EXPECT_NO_THROW(frame());
        scene().removePolylines();
        pump();
    }
}

TEST_F(MeasuresTest, ADistanceBeyondWhatBoundsCanHoldIsNoHarm) {
    scene().createDistanceVisual({3e38, 0, 0}, {-3e38, 3e38, 0});
    scene().createDistanceVisual({1e16, 0, 0}, {0, 0, 0});
    EXPECT_NO_THROW(frame());
    EXPECT_EQ(points(0), (std::vector<Pos>{{3e38f, 0, 0}, {-3e38f, 3e38f, 0}}));
}

TEST_F(MeasuresTest, SeveralPolylinesAreOneVisualEachAndGoTogether) {
    scene().drawPolylines({{{0, 0, 0}, {1, 0, 0}}, {{0, 0, 0}, {0, 1, 0}}}, 0, false);
    pump();
    EXPECT_EQ(addedOf<PolylineVisual>().size(), 2u);
    scene().removePolylines();
    scene().removePolylines();
    pump();
    EXPECT_TRUE(added().empty());
}

// --- the directions of a face

TEST_F(MeasuresTest, TheIndicatorStandsInTheMiddleOfTheFaceAlongUAndV) {
    const gp_Ax3 place(gp_Pnt(0, 0, 50), gp_Dir(0, 0, 1), gp_Dir(0, 1, 0));
    scene().showUVIndicatorVisual(BRepBuilderAPI_MakeFace(gp_Pln(place), 0, 100, 0, 40).Face());
    pump();
    const auto shown = addedOf<UVIndicatorVisual>();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_TRUE(shown[0]->getName().starts_with("uvdirection"));
    EXPECT_EQ(static_cast<int>(shown[0]->type), 33);
    ExpectNear(shown[0]->getPosition(), {-20, 50, 50});
    const auto turn = shown[0]->getPose().rotation;
    EXPECT_NEAR((turn * Vec{1, 0, 0}).y, 1, 1e-6);
    EXPECT_NEAR((turn * Vec{0, 1, 0}).x, -1, 1e-6);
    const auto* arrows = dynamic_cast<visual::MeshVisual*>(shown[0]->getChildren().at(0));
    EXPECT_EQ(arrows->getMeshName(), "uv_indicator");
    EXPECT_TRUE(arrows->visible);
}

TEST_F(MeasuresTest, TheIndicatorGrowsWithTheFaceAndIsNeverSmallerThanItsMesh) {
    const auto scaleOn = [&](double side) {
        scene().showUVIndicatorVisual(BRepBuilderAPI_MakeFace(gp_Pln(), 0, 5e4, 0, side).Face());
        pump();
        const auto* indicator = addedOf<UVIndicatorVisual>().at(0);
        EXPECT_FLOAT_EQ(indicator->node->getScale().x, 1);
        return indicator->getChildren().at(0)->node->getScale().x;
    };
    EXPECT_FLOAT_EQ(scaleOn(10), 1);
    EXPECT_FLOAT_EQ(scaleOn(500), 10);
    EXPECT_FLOAT_EQ(scaleOn(50), 1);
    EXPECT_FLOAT_EQ(scaleOn(4e4), 100);
    scene().showUVIndicatorVisual(BRepBuilderAPI_MakeFace(gp_Pln()).Face());
    EXPECT_NO_THROW(frame());
}

TEST_F(MeasuresTest, ThePlaceOfTheFaceCounts) {
    gp_Trsf moved;
    moved.SetTranslation(gp_Vec(0, 0, 500));
    TopoDS_Face face = BRepBuilderAPI_MakeFace(gp_Pln(), -10, 10, -10, 10).Face();
    face.Location(TopLoc_Location(moved));
    scene().showUVIndicatorVisual(face);
    pump();
    ExpectNear(addedOf<UVIndicatorVisual>().at(0)->getPosition(), {0, 0, 500});
}

TEST_F(MeasuresTest, AReversedFaceHasTheSameDirections) {
    const TopoDS_Face face = BRepBuilderAPI_MakeFace(gp_Pln(), -10, 10, -30, 10).Face();
    scene().showUVIndicatorVisual(face);
    pump();
    const auto pose = addedOf<UVIndicatorVisual>().at(0)->getPose();
    scene().showUVIndicatorVisual(TopoDS::Face(face.Reversed()));
    pump();
    EXPECT_EQ(addedOf<UVIndicatorVisual>().at(0)->getPose(), pose);
    ExpectNear(pose.position, {0, -10, 0});
}

TEST_F(MeasuresTest, WhatIsDeletedByItselfIsForgotten) {
    const TopoDS_Face face = BRepBuilderAPI_MakeFace(gp_Pln(), -10, 10, -10, 10).Face();
    scene().drawPolyline({{0, 0, 0}, {1, 0, 0}}, 0, true);
    scene().showUVIndicatorVisual(face);
    scene().createDistanceVisual({0, 0, 0}, {1, 0, 0});
    pump();
    for (visual::Visual* shown : added()) scene().deleteVisual(shown);
    scene().removePolylines();
    scene().removeDimensionVisual();
    scene().hideUVIndicatorVisual();
    scene().deleteUVIndicatorVisual();
    EXPECT_NO_THROW(pump());
    scene().showUVIndicatorVisual(face);
    pump();
    EXPECT_EQ(addedOf<UVIndicatorVisual>().size(), 1u);
}

TEST_F(MeasuresTest, NoneOfThemCanBePicked) {
    scene().createDistanceVisual({0, 0, 0}, {1, 0, 0});
    scene().createAngleVisual({0, 0, 0}, {10, 0, 0}, {0, 0, 10}, pi / 2);
    scene().createDiameterVisual(rob::TPCircle({10, 0, 0}, {0, 10, 0}, {0, -10, 0}));
    scene().drawPolyline({{0, 0, 0}, {10, 0, 0}}, 5, true);
    scene().showUVIndicatorVisual(BRepBuilderAPI_MakeFace(gp_Pln(), -10, 10, -10, 10).Face());
    pump();
    EXPECT_EQ(added().size(), 5u);
    EXPECT_EQ(pickableCount(), 0u);
}

TEST_F(MeasuresTest, SkewedParametersGiveAProperRotation) {
    TColgp_Array2OfPnt poles(1, 2, 1, 2);
    poles.SetValue(1, 1, gp_Pnt(0, 0, 0));
    poles.SetValue(2, 1, gp_Pnt(10, 0, 0));
    poles.SetValue(1, 2, gp_Pnt(6, 8, 0));
    poles.SetValue(2, 2, gp_Pnt(16, 8, 0));
    const opencascade::handle<Geom_BezierSurface> skewed = new Geom_BezierSurface(poles);
    scene().showUVIndicatorVisual(BRepBuilderAPI_MakeFace(skewed, 1e-6).Face());
    pump();
    const auto turn = addedOf<UVIndicatorVisual>().at(0)->getPose().rotation;
    const Vec x = turn * Vec{1, 0, 0}, y = turn * Vec{0, 1, 0}, z = turn * Vec{0, 0, 1};
    EXPECT_NEAR(x.x, 1, 1e-6);
    EXPECT_NEAR(y.y, 1, 1e-6);
    EXPECT_NEAR(z.z, 1, 1e-6);
    EXPECT_NEAR(x.dot(y), 0, 1e-6);
}

TEST_F(MeasuresTest, TheIndicatorIsHiddenShownAgainAndDeleted) {
    const TopoDS_Face face = BRepBuilderAPI_MakeFace(gp_Pln(), -10, 10, -10, 10).Face();
    scene().hideUVIndicatorVisual();
    scene().deleteUVIndicatorVisual();
    scene().showUVIndicatorVisual(face);
    pump();
    const auto* shown = addedOf<UVIndicatorVisual>().at(0);
    scene().hideUVIndicatorVisual();
    pump();
    EXPECT_FALSE(shown->visible);
    scene().showUVIndicatorVisual(face);
    pump();
    EXPECT_EQ(addedOf<UVIndicatorVisual>().at(0), shown);
    EXPECT_TRUE(shown->visible);
    scene().deleteUVIndicatorVisual();
    pump();
    EXPECT_TRUE(added().empty());
}

TEST_F(MeasuresTest, AFaceWithoutASurfaceOrDirectionsIsRefusedInTheTask) {
    scene().showUVIndicatorVisual(TopoDS_Face());
    EXPECT_THROW(Drain(), std::invalid_argument);
    ASSERT_EQ(addedOf<UVIndicatorVisual>().size(), 1u);
    EXPECT_FALSE(addedOf<UVIndicatorVisual>().front()->visible) << "it has no place to stand at";
    TColgp_Array2OfPnt poles(1, 2, 1, 2);  // all at one point
    poles.Init(gp_Pnt(1, 1, 1));
    poles.SetValue(2, 2, gp_Pnt(1, 2, 1));
    poles.SetValue(1, 2, gp_Pnt(1, 2, 1));
    const opencascade::handle<Geom_BezierSurface> collapsed = new Geom_BezierSurface(poles);
    BRepBuilderAPI_MakeFace maker(collapsed, 1e-9);
    ASSERT_TRUE(maker.IsDone());
    scene().showUVIndicatorVisual(maker.Face());
    EXPECT_THAT(Drain, ThrowsMessage<std::overflow_error>(noLength));
}

}  // namespace vrn::test
