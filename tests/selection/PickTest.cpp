// The questions that VisualSelection answers, asked on the real engine.

#include <cfloat>
#include <cmath>
#include <limits>
#include <stdexcept>

#include <gmock/gmock.h>
#include <OgreCamera.h>
#include <TopoDS.hxx>

#include "mesh/DynamicLines.h"
#include "mesh/NoTriangleMesh.h"
#include "selection/BVHNode.h"
#include "selection/CurveObject.h"
#include "selection/PointCloudObject.h"
#include "selection/Ray.h"
#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/layout/PointCloud.h"
#include "tests/support/SolidFixture.h"
#include "view/Camera.h"
#include "visual/geometry/CurveVisual.h"
#include "visual/geometry/LineVisual.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/geometry/PointCloudVisual.h"
#include "visual/geometry/PointVisual.h"
#include "visual/geometry/SolidVisual.h"

namespace vrn::test {

namespace {

using selection::CloudPoints;
using selection::Result;
using selection::VisualSelection;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using visual::MeshVisual;
using visual::PointCloudVisual;
using visual::SolidVisual;
using visual::Visual;
using Line = rob::LineTemplate<float>;
using Pos = rob::PosTemplate<float>;
using Triangle = rob::TriangleTemplate<float>;
using Vec = rob::Vec3Template<float>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float inf = std::numeric_limits<float>::infinity();

/// A primitive that answers what it is told to, to see what the walk makes of it.
class ToldObject : public selection::SelectableObject {
public:
    ToldObject(Visual* shown, float hitDistance, bool first)
        : SelectableObject(shown, selection::ObjectKind::Mfg), distance(hitDistance) {
        priority = first;
        box.set(-1000, -1000, -1000, 1000, 1000, 1000);
        worldBoxDirty = false;
    }
    using SelectableObject::intersect;
    void updateWorldBox() override {}
    Result intersect(const visual::Ray& /*ray*/) override {
        ++asked;
        Result result;
        result.hit = !std::isnan(distance);
        result.distance = result.hit ? distance : FLT_MAX;
        result.visual = visual;
        return result;
    }
    float distance;  ///< NaN: a miss
    int asked = 0;
};

}  // namespace

class Picks : public SolidTest {
protected:
    static VisualSelection& picking() { return *VisualSelection::Get(); }
    static Result pick(const Pos& world) {
        const auto pixel = project(world);
        return picking().select(pixel.x, pixel.y);
    }
    static Result pickCloud(const Pos& world) {
        const auto pixel = project(world);
        return picking().selectPointInCloud(pixel.x, pixel.y);
    }
    /// A meshed box of 100 x 60 x 40 from `at`.
    SolidVisual* showAt(const Pos& at) {
        SolidVisual* solid = show(MeshedBox());
        solid->setPosition(at);
        return solid;
    }
    PointCloudVisual* showCloud(std::vector<Pos> points) {
        return PointCloudVisual::Build(scene().root,
                                       model.make<layout::PointCloud>("scan", std::move(points)));
    }
    /// A handle-like arrow: beats everything when it is hit.
    MeshVisual* showHandle(const Pos& at) {
        auto* handle = new MeshVisual("handle", scene().root);
        handle->attachMesh("VectorSphere");
        handle->setPosition(at);
        picking().addMeshVisual(handle, /*detectable=*/false, /*priority=*/true);
        return handle;
    }
    static void lookDown() { lookFrom({50, 30, 1000}, {50, 30, 0}); }
    static void expectNear(const Pos& got, const Pos& wanted, float tolerance = 0.1f) {
        EXPECT_LT((got - wanted).length(), tolerance)
            << got.x << ", " << got.y << ", " << got.z << " and not " << wanted.x << ", "
            << wanted.y << ", " << wanted.z;
    }
};

// --- select

TEST_F(Picks, AClickTellsTheNearestVisualItsFaceAndThePlace) {
    SolidVisual* lower = showAt({0, 0, 0});
    SolidVisual* upper = showAt({0, 0, 100});
    lookDown();
    pump();
    const Result hit = pick({40, 25, 140});
    ASSERT_TRUE(hit.hit);
    EXPECT_EQ(hit.visual, upper);
    expectNear(hit.position, {40, 25, 140});
    EXPECT_FALSE(hit.face.IsNull());
    EXPECT_TRUE(hit.shape.IsEqual(upper->getShape()));
    scene().deleteVisual(upper);
    pump();
    EXPECT_EQ(pick({40, 25, 40}).visual, lower);
}

TEST_F(Picks, WhatMovedIsFoundAtItsNewPlaceAndNoMoreAtTheOld) {
    SolidVisual* solid = showAt({0, 0, 0});
    lookDown();
    pump();
    ASSERT_EQ(pick({40, 25, 40}).visual, solid);
    solid->setPosition(150, 0, 0);
    pump();
    EXPECT_FALSE(pick({40, 25, 40}).hit);
    EXPECT_EQ(pick({190, 25, 40}).visual, solid);
}

TEST_F(Picks, RightAfterAMoveAndBeforeTheUpdateNothingIsHit) {
    SolidVisual* moved = showAt({0, 0, 0});
    SolidVisual* still = showAt({0, 100, 0});
    lookDown();
    pump();
    ASSERT_EQ(pick({40, 125, 40}).visual, still);
    moved->setPosition(0, 0, 1);
    const Result dirty = pick({40, 125, 40});
    EXPECT_FALSE(dirty.hit);
    EXPECT_TRUE(dirty.valid);
    EXPECT_EQ(dirty.position, (Pos{0, 0, 0}));  // not even the ground
    EXPECT_EQ(dirty.distance, FLT_MAX);
    EXPECT_EQ(dirty.visual, nullptr);
    picking().update();
    EXPECT_EQ(pick({40, 125, 40}).visual, still);
}

TEST_F(Picks, UpdatingBeforeAndAfterTheQueueLetsAPostedTaskPick) {
    SolidVisual* solid = showAt({0, 0, 0});
    lookDown();
    pump();
    solid->setPosition(0, 0, 1);
    Result inTask;
    scene().addRenderTask([&] { inTask = pick({40, 25, 41}); }, 0);
    picking().update();
    scene().processMsgs();
    picking().update();
    EXPECT_EQ(inTask.visual, solid);
}

TEST_F(Picks, OfEquallyDistantHitsTheFirstVisitedStays) {
    auto* top = new Visual(scene().root);
    VisualSelection own;
    auto *first = new ToldObject(top, 5, false), *second = new ToldObject(scene().root, 5, false);
    own.containers[0].primitives = {first, second};
    own.dirty = true;
    own.update();
    std::vector<selection::BVHPrimitive*> order;
    own.containers[0].tree.intersect(visual::Camera::Get()->getViewportRay(320, 240), order);
    ASSERT_THAT(order, SizeIs(2));
    EXPECT_EQ(own.select(320, 240).visual,
              dynamic_cast<selection::SelectableObject*>(order[0])->visual);
}

TEST_F(Picks, OnlyAStrictlyNearerHitReplacesTheBest) {
    auto* top = new Visual(scene().root);
    VisualSelection own;
    auto *far = new ToldObject(scene().root, 5, false), *near = new ToldObject(top, 4.999f, false);
    own.containers[0].primitives = {far, near, new ToldObject(scene().root, 4.999f, false)};
    own.dirty = true;
    own.update();
    EXPECT_EQ(own.select(320, 240).visual, top);
    EXPECT_EQ(own.select(320, 240).distance, 4.999f);
}

TEST_F(Picks, AHitWithPriorityBeatsEveryDistanceAndEndsTheWalk) {
    auto* top = new Visual(scene().root);
    VisualSelection own;
    auto *near = new ToldObject(scene().root, 1, false), *handle = new ToldObject(top, 900, true),
         *behind = new ToldObject(scene().root, 0.5f, false);
    own.containers[0].primitives = {near, handle, behind};
    own.dirty = true;
    own.update();
    const Result hit = own.select(320, 240);
    EXPECT_EQ(hit.visual, top);
    EXPECT_EQ(hit.distance, 900);
    EXPECT_EQ(near->asked, 1);
    EXPECT_EQ(behind->asked, 0);
    handle->distance = nan;
    EXPECT_EQ(own.select(320, 240).distance, 0.5f);
}

TEST_F(Picks, OfTwoHitsWithPriorityTheFirstVisitedWinsThoughFarther) {
    auto* top = new Visual(scene().root);
    VisualSelection own;
    own.containers[0].primitives = {new ToldObject(top, 900, true),
                                    new ToldObject(scene().root, 1, true)};
    own.dirty = true;
    own.update();
    EXPECT_EQ(own.select(320, 240).visual, top);
}

TEST_F(Picks, AHandleBehindAPartWins) {
    SolidVisual* part = showAt({0, 0, 100});
    MeshVisual* handle = showHandle({40, 25, 0});
    lookDown();
    pump();
    const auto pixel = project({40.3f, 25.2f, 0});
    const Result hit = picking().select(pixel.x, pixel.y);
    EXPECT_EQ(hit.visual, handle);
    EXPECT_LT(hit.position.z, 10);
    picking().setObjectEnabled(handle, false);
    pump();
    EXPECT_EQ(picking().select(pixel.x, pixel.y).visual, part);
}

TEST_F(Picks, WhatIsSwitchedOffIsNotFoundUntilItIsSwitchedOn) {
    SolidVisual* solid = showAt({0, 0, 0});
    lookDown();
    pump();
    picking().setObjectEnabled(solid, false);
    pump();
    EXPECT_FALSE(pick({40, 25, 40}).hit);
    EXPECT_THAT(picking().boxSelect(0, 0, windowWidth, windowHeight), IsEmpty());
    picking().setObjectEnabled(solid, true);
    pump();
    EXPECT_EQ(pick({40, 25, 40}).visual, solid);
}

TEST_F(Picks, SelectIgnoresWhetherAnObjectIsDetectable) {
    SolidVisual* solid = showAt({0, 0, 0});
    lookDown();
    pump();
    picking().setDetectable(solid, false);
    EXPECT_EQ(pick({40, 25, 40}).visual, solid);
}

TEST_F(Picks, AHiddenFaceLetsTheRayThrough) {
    SolidVisual* solid = showAt({0, 0, 0});
    lookDown();
    pump();
    const Result top = pick({40, 25, 40});
    ASSERT_TRUE(top.hit);
    solid->setFaceVisible(solid->getFaceIndex(TopoDS::Face(top.face)), false);
    pump();
    const Result bottom = pick({40, 25, 0});
    ASSERT_TRUE(bottom.hit);
    EXPECT_FALSE(bottom.face.IsSame(top.face));
    expectNear(bottom.position, {40, 25, 0});
    solid->setVisible(true, true);
    pump();
    EXPECT_TRUE(pick({40, 25, 40}).face.IsSame(top.face));
}

TEST_F(Picks, HidingAFaceOfASolidThatIsNotRegisteredRegistersNothing) {
    SolidVisual* plain = SolidVisual::Build(scene().root, MeshedBox(), "Body");
    const auto copied = showAt({500, 0, 0})->copy(scene().root);
    ASSERT_TRUE(copied);
    plain->setFaceVisible(1, false);
    plain->setVisible(true, true);
    (*copied)->setVisible(false, true);
    (*copied)->setVisible(true, true);
    pump();
    EXPECT_FALSE(picking().hasVisual(plain));
    EXPECT_FALSE(picking().hasVisual(*copied));
    delete *copied;
}

TEST_F(Picks, CopiesForPreviewsAreNotPicked) {
    SolidVisual* solid = showAt({0, 0, 0});
    const auto copied = solid->copy(scene().root);
    ASSERT_TRUE(copied);
    (*copied)->setPosition(0, 0, 200);  // above the original
    lookDown();
    pump();
    EXPECT_EQ(pick({40, 25, 240}).visual, solid);
    delete *copied;
    pump();
    EXPECT_EQ(pick({40, 25, 40}).visual, solid);
}

TEST_F(Picks, EdgesOfCurvesPointsAndLinesAreFoundWithTheirTolerances) {
    auto* curve = visual::CurveVisual::Build(scene().root, LineEdge({0, 0, 0}, {100, 0, 0}));
    auto* part = model.make<layout::Part>("part");
    auto* body = model.make<layout::Body>("body", freshUri(), TopoDS_Shape());
    part->addBody(*body);
    auto* point = visual::PointVisual::Build(scene().root, body, {50, 60, 0});
    auto* line = new visual::LineVisual(scene().root);
    auto* strip = line->createDynamicLine(visual::RenderOpType::LineStrip);
    strip->addPoint(0, 100, 0);
    strip->addPoint(100, 100, 0);
    picking().addLineVisual(line);
    lookDown();
    pump();
    const Result onCurve = pick({40, 1, 0});
    EXPECT_EQ(onCurve.visual, curve);
    EXPECT_FALSE(onCurve.edge.IsNull());
    expectNear(onCurve.position, {40, 0, 0});
    EXPECT_EQ(pick({51, 60, 0}).visual, point);
    EXPECT_FALSE(pick({53, 60, 0}).hit);
    EXPECT_EQ(pick({70, 101, 0}).visual, line);
}

// --- ground

TEST_F(Picks, AMissOfTheEmptySceneTellsTheGroundPoint) {
    lookDown();
    pump();
    const Result miss = pick({70, 10, 0});
    EXPECT_FALSE(miss.hit);
    EXPECT_TRUE(miss.valid);
    EXPECT_EQ(miss.visual, nullptr);
    expectNear(miss.position, {70, 10, 0});
}

TEST_F(Picks, ARayAlongTheGroundTellsTheOrigin) {
    // The line of sight through the middle of the window is level to the last bit.
    lookFrom({1000, 0, 300}, {0, 0, 300});
    pump();
    EXPECT_EQ(std::abs(visual::Camera::Get()->getViewportRay(320, 240).direction.z), 0);
    EXPECT_EQ(picking().select(320, 240).position, (Pos{0, 0, 0}));
}

TEST_F(Picks, TheGroundBehindTheCameraCountsToo) {
    lookFrom({0, 0, 300}, {100, 0, 400});  // up and away
    pump();
    const Result miss = picking().select(320, 240);
    EXPECT_FALSE(miss.hit);
    expectNear(miss.position, {-300, 0, 0}, 2);
}

TEST_F(Picks, TheGroundStandsOnTheVerticalOfTheSettings) {
    lookFrom({300, 400, 500}, {0, 0, 0});
    pump();
    scene().settings.verticalDir = 0;
    EXPECT_NEAR(picking().select(100, 100).position.x, 0, 0.01);
    scene().settings.verticalDir = 1;
    EXPECT_NEAR(picking().select(100, 100).position.y, 0, 0.01);
    for (const int other : {2, 3, -1}) {
        scene().settings.verticalDir = other;
        EXPECT_NEAR(picking().select(100, 100).position.z, 0, 0.01);
    }
}

// --- clouds

TEST_F(Picks, AnOrdinaryPickSeesNoCloudAndACloudPickNothingElse) {
    SolidVisual* solid = showAt({0, 0, 0});
    PointCloudVisual* cloud = showCloud({{40, 25, 0}, {40, 25, 200}, {200, 25, 0}});
    lookDown();
    pump();
    EXPECT_EQ(pick({40, 25, 40}).visual, solid);
    EXPECT_FALSE(pick({200, 25, 0}).hit);
    const Result point = pickCloud({40, 25, 200});
    EXPECT_EQ(point.visual, cloud);
    EXPECT_EQ(point.index, 1);
    expectNear(point.position, {40, 25, 200});
    const Result miss = pickCloud({100, 50, 0});
    EXPECT_FALSE(miss.hit);
    expectNear(miss.position, {100, 50, 0});
    cloud->setPosition(1, 0, 0);
    const Result dirty = pickCloud({40, 25, 200});
    EXPECT_FALSE(dirty.hit);
    EXPECT_TRUE(dirty.valid);
    EXPECT_EQ(dirty.position, (Pos{0, 0, 0}));
}

TEST_F(Picks, ABoxTellsThePointsUnderItByTheIdOfTheirCloud) {
    PointCloudVisual* cloud = showCloud({{0, 0, 0}, {10, 0, 0}, {100, 0, 0}, {10, 5, 3}});
    PointCloudVisual* other = showCloud({{12, 2, 0}});
    PointCloudVisual* outside = showCloud({{500, 500, 0}});
    cloud->setPosition(0, 1, 0);
    lookDown();
    pump();
    const auto a = project({5, -10, 0}), b = project({50, 20, 0});
    EXPECT_THAT(
        picking().boxSelectPointCloud(a.x, a.y, b.x, b.y),
        UnorderedElementsAre(Pair(cloud->id, ElementsAre(1, 3)), Pair(other->id, ElementsAre(0))));
    EXPECT_THAT(picking().boxSelectPointCloud(b.x, a.y, a.x, b.y), SizeIs(2));
    EXPECT_THAT(picking().boxSelectPointCloud(0, 0, 1, 1), IsEmpty());
    outside->setPosition(1, 1, 1);
    EXPECT_THAT(picking().boxSelectPointCloud(a.x, a.y, b.x, b.y), IsEmpty());  // dirty
}

TEST_F(Picks, PointsOfObjectsWithOneIdAreGatheredUnderIt) {
    PointCloudVisual* cloud = showCloud({{0, 0, 0}, {10, 0, 0}});
    picking().addPointCloudVisual(cloud, true);  // a second object of the same visual
    lookDown();
    pump();
    EXPECT_THAT(picking().boxSelectPointCloud(0, 0, windowWidth, windowHeight),
                ElementsAre(Pair(cloud->id, ElementsAre(0, 1, 0, 1))));
}

TEST_F(Picks, LassoAndConvexPolygonGiveTheSamePoints) {
    std::vector<Pos> points;
    for (int i = 0; i < 5000; ++i)
        points.push_back({static_cast<float>(i % 100), static_cast<float>(i / 100), 0});
    PointCloudVisual* cloud = showCloud(points);
    lookDown();
    pump();
    std::vector<Pos> polygon;
    for (const Pos& corner :
         {Pos{20.5f, 10.5f, 0}, Pos{60.5f, 10.5f, 0}, Pos{60.5f, 30.5f, 0}, Pos{20.5f, 30.5f, 0}}) {
        const auto pixel = project(corner);
        polygon.push_back({pixel.x, pixel.y, 0});
    }
    const CloudPoints lasso = picking().lassoSelectPointCloud(polygon);
    ASSERT_THAT(lasso, SizeIs(1));
    EXPECT_THAT(lasso.at(cloud->id), SizeIs(40 * 20));
    for (const unsigned long i : lasso.at(cloud->id)) {
        EXPECT_TRUE(points[i].x > 20 && points[i].x < 61) << i;
        EXPECT_TRUE(points[i].y > 10 && points[i].y < 31) << i;
    }
    EXPECT_EQ(picking().convexSelectPointCloud(polygon), lasso);
    cloud->setPosition(0, 0, 1);
    EXPECT_THAT(picking().lassoSelectPointCloud(polygon), IsEmpty());
    EXPECT_THAT(picking().convexSelectPointCloud(polygon), IsEmpty());
}

// --- box

TEST_F(Picks, ABoxTellsTheVisualsWhoseWorldBoxIsAtLeastPartlyUnderIt) {
    SolidVisual* inside = showAt({0, 0, 0});
    SolidVisual* partly = showAt({150, 0, 0});
    SolidVisual* outside = showAt({0, 200, 0});
    PointCloudVisual* cloud = showCloud({{40, 25, 0}});
    lookFrom({50, 30, 2000}, {50, 30, 0});
    pump();
    const auto a = project({-10, -10, 0}), b = project({200, 80, 0});
    EXPECT_THAT(picking().boxSelect(a.x, a.y, b.x, b.y), UnorderedElementsAre(inside, partly));
    EXPECT_THAT(picking().boxSelect(b.x, b.y, a.x, a.y), UnorderedElementsAre(inside, partly));
    EXPECT_THAT(picking().boxSelect(0, 0, windowWidth, windowHeight),
                UnorderedElementsAre(inside, partly, outside));
    cloud->setPosition(1, 0, 0);
    EXPECT_THAT(picking().boxSelect(0, 0, windowWidth, windowHeight), IsEmpty());  // dirty
}

TEST_F(Picks, ABoxSelectsByTheWorldBoxAndNotByTheGeometry) {
    SolidVisual* fan = show(FanFace(4));  // a square on its corner: its box is twice as large
    lookFrom({0, 0, 200}, {0, 0, 0});
    pump();
    const auto a = project({8, 8, 0}), b = project({9.5f, 9.5f, 0});
    EXPECT_FALSE(pick({8.7f, 8.6f, 0}).hit);
    EXPECT_THAT(picking().boxSelect(a.x, a.y, b.x, b.y), ElementsAre(fan));
}

TEST_F(Picks, ABoxWithoutAnExtentTellsWhatMayLieUnderItsLine) {
    SolidVisual* solid = showAt({0, 0, 0});
    lookDown();
    pump();
    const auto at = project({40, 25, 40});
    EXPECT_THAT(picking().boxSelect(at.x, at.y, at.x, at.y), ElementsAre(solid));
}

TEST_F(Picks, AnObjectWithoutABoxIsInNoSelection) {
    SolidVisual* hidden = show(FanFace(8));
    EXPECT_THROW(hidden->setFaceVisible(1, false), visual::NoTriangleMesh);
    SolidVisual* bare = SolidVisual::Build(scene().root, BareFace(), "Body", "", "");
    auto* line = new visual::LineVisual(scene().root);
    picking().addLineVisual(line);
    SolidVisual* solid = showAt({0, 0, 0});
    lookDown();
    pump();
    ASSERT_TRUE(picking().hasVisual(bare));
    EXPECT_THAT(picking().boxSelect(0, 0, windowWidth, windowHeight), ElementsAre(solid));
    EXPECT_EQ(pick({40, 25, 40}).visual, solid);
    EXPECT_FALSE(picking().sense(Triangle{{0, 0, 500}, {10, 0, 500}, {0, 10, 500}}).hit);
    EXPECT_FALSE(picking().sense(Line{{0, 0, 500}, {0, 0, 400}}).hit);
}

// --- contact tests

TEST_F(Picks, SenseTellsADetectableObjectThatIsTouched) {
    SolidVisual* solid = showAt({1000, 0, 0});
    pump();
    const Triangle through{{1050, 25, 30}, {1051, 25, 50}, {1052, 28, 50}};
    const Line down{{1050, 25, 140}, {1050, 25, -60}};
    EXPECT_EQ(picking().sense(through).visual, solid);
    const Result onLine = picking().sense(down);
    EXPECT_EQ(onLine.visual, solid);
    EXPECT_TRUE(onLine.valid);
    EXPECT_FLOAT_EQ(onLine.distance, 0.5f);
    expectNear(onLine.position, {1050, 25, 40});
    EXPECT_FALSE(picking().sense(Triangle{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}).hit);
    EXPECT_FALSE(picking().sense(Line{{1050, 25, 140}, {1050, 25, 50}}).hit);

    picking().setDetectable(solid, false);
    EXPECT_FALSE(picking().dirty);
    EXPECT_FALSE(picking().sense(through).hit);
    EXPECT_TRUE(picking().sense(through).valid);
    EXPECT_FALSE(picking().sense(down).hit);
}

TEST_F(Picks, SenseWhileDirtyIsNotValid) {
    SolidVisual* solid = showAt({0, 0, 0});
    pump();
    solid->setPosition(0, 0, 1);
    const Result onLine = picking().sense(Line{{50, 25, 140}, {50, 25, -60}});
    EXPECT_FALSE(onLine.valid);
    EXPECT_FALSE(onLine.hit);
    EXPECT_FALSE(picking().sense(Triangle{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}).valid);
}

TEST_F(Picks, SenseTakesTheFirstThatIsTouchedAndNotTheNearest) {
    SolidVisual* far = showAt({0, 0, 0});
    SolidVisual* near = showAt({0, 0, 100});
    pump();
    const Line down{{50, 25, 300}, {50, 25, -60}};
    std::vector<selection::BVHPrimitive*> order;
    picking().containers[0].tree.intersect(down, order);
    ASSERT_THAT(order, SizeIs(2));
    auto* first = dynamic_cast<selection::SelectableObject*>(order[0])->visual;
    EXPECT_EQ(picking().sense(down).visual, first);
    picking().setDetectable(first, false);
    EXPECT_EQ(picking().sense(down).visual, first == far ? near : far);
}

TEST_F(Picks, SenseSeesNoLinesCurvesAndClouds) {
    auto* line = new visual::LineVisual(scene().root);
    auto* strip = line->createDynamicLine(visual::RenderOpType::LineStrip);
    strip->addPoint(0, 0, 0);
    strip->addPoint(100, 0, 0);
    picking().addLineVisual(line);
    visual::CurveVisual::Build(scene().root, LineEdge({0, 0, 0}, {100, 0, 0}));
    showCloud({{50, 0, 0}});
    pump();
    EXPECT_FALSE(picking().sense(Line{{50, 0, 10}, {50, 0, -10}}).hit);
}

TEST_F(Picks, ALineWithoutLengthIsRefusedWhereThereIsAnythingToTest) {
    pump();
    EXPECT_FALSE(picking().sense(Line{{0, 0, 0}, {0, 0, 0}}).hit);
    showAt({0, 0, 0});
    pump();
    EXPECT_THROW((void)picking().sense(Line{{0, 0, 0}, {0, 0, 0}}), std::overflow_error);
    EXPECT_THROW((void)picking().sense(Line{{0, 0, nan}, {0, 0, 0}}), std::overflow_error);
    EXPECT_FALSE(picking().sense(Triangle{{nan, 0, 0}, {0, 0, 0}, {1, 1, 1}}).hit);
}

// --- update

TEST_F(Picks, TheTreesHoldTheEnabledObjectsAfterAnUpdate) {
    SolidVisual* on = showAt({0, 0, 0});
    SolidVisual* off = showAt({200, 0, 0});
    PointCloudVisual* cloud = showCloud({{0, 0, 0}});
    picking().setObjectEnabled(off, false);
    pump();
    for (const auto& [container, wanted] :
         {std::pair<int, Visual*>{0, on}, std::pair<int, Visual*>{1, cloud}}) {
        std::vector<selection::BVHPrimitive*> held;
        picking()
            .containers.at(static_cast<std::size_t>(container))
            .tree.root->collectPrimitives(held);
        EXPECT_THAT(held, ElementsAre(picking().getObject(wanted)));
    }
}

TEST_F(Picks, WithoutEnabledObjectsThereIsNoTree) {
    SolidVisual* solid = showAt({0, 0, 0});
    picking().setObjectEnabled(solid, false);
    pump();
    EXPECT_EQ(picking().containers[0].tree.root, nullptr);
    EXPECT_EQ(picking().containers[1].tree.root, nullptr);
    EXPECT_FALSE(picking().select(320, 240).hit);
    EXPECT_FALSE(picking().selectPointInCloud(320, 240).hit);
    EXPECT_THAT(picking().boxSelect(0, 0, 640, 480), IsEmpty());
    EXPECT_THAT(picking().boxSelectPointCloud(0, 0, 640, 480), IsEmpty());
    EXPECT_THAT(picking().lassoSelectPointCloud({{0, 0, 0}, {640, 0, 0}, {640, 480, 0}}),
                IsEmpty());
}

TEST_F(Picks, AnUpdateWithoutAChangeKeepsTheTrees) {
    showAt({0, 0, 0});
    pump();
    const auto* root = picking().containers[0].tree.root;
    picking().update();
    EXPECT_EQ(picking().containers[0].tree.root, root);
}

// --- degenerate views

TEST_F(Picks, AnImageWithoutNumbersHitsNothing) {
    showAt({0, 0, 0});
    showCloud({{40, 25, 200}});
    lookDown();
    pump();
    for (const float bad : {nan, inf, -inf}) {
        EXPECT_FALSE(picking().select(bad, 240).hit);
        EXPECT_EQ(picking().select(320, bad).position, (Pos{0, 0, 0}));
        EXPECT_TRUE(picking().select(320, bad).valid);
        EXPECT_FALSE(picking().selectPointInCloud(bad, bad).hit);
        EXPECT_THAT(picking().boxSelect(0, 0, bad, 480), IsEmpty());
        EXPECT_THAT(picking().boxSelectPointCloud(bad, 0, 640, 480), IsEmpty());
        EXPECT_THAT(picking().lassoSelectPointCloud({{0, 0, 0}, {bad, 0, 0}, {640, 480, 0}}),
                    IsEmpty());
    }
}

TEST_F(Picks, PixelsFarOutsideTheWindowAreAnswered) {
    showAt({0, 0, 0});
    lookDown();
    pump();
    for (const float far : {1e4f, -1e4f, 1e9f, 1e30f, -FLT_MAX, FLT_MAX}) {
        EXPECT_FALSE(picking().select(far, 240).hit) << far;
        EXPECT_NO_THROW((void)picking().boxSelect(0, 0, far, far)) << far;
    }
}

TEST_F(Picks, ACameraWithoutARenderTargetSeesNothing) {
    showAt({0, 0, 0});
    showCloud({{40, 25, 200}});
    lookDown();
    pump();
    visual::Camera::Get()->setRenderTarget(nullptr);
    const Result blind = picking().select(320, 240);
    EXPECT_FALSE(blind.hit);
    EXPECT_TRUE(blind.valid);
    EXPECT_EQ(blind.position, (Pos{0, 0, 0}));
    EXPECT_FALSE(picking().selectPointInCloud(320, 240).hit);
    EXPECT_THAT(picking().boxSelect(0, 0, 640, 480), IsEmpty());
    EXPECT_THAT(picking().boxSelectPointCloud(0, 0, 640, 480), IsEmpty());
    EXPECT_THAT(picking().lassoSelectPointCloud({{0, 0, 0}, {640, 0, 0}, {640, 480, 0}}),
                IsEmpty());
    picking().dirty = true;
    EXPECT_NO_THROW(picking().update());
    EXPECT_TRUE(picking().sense(Line{{50, 25, 140}, {50, 25, -60}}).hit);  // needs no view
    visual::Camera::Get()->setRenderTarget(&window());
    EXPECT_TRUE(pick({40, 25, 40}).hit);
}

TEST_F(Picks, WithoutACameraNothingIsSeen) {
    showAt({0, 0, 0});
    pump();
    visual::Camera* camera = std::exchange(visual::gCamera, nullptr);
    EXPECT_FALSE(picking().select(320, 240).hit);
    EXPECT_THAT(picking().boxSelect(0, 0, 640, 480), IsEmpty());
    EXPECT_THAT(picking().lassoSelectPointCloud({{0, 0, 0}, {640, 0, 0}, {640, 480, 0}}),
                IsEmpty());
    visual::gCamera = camera;
}

}  // namespace vrn::test
