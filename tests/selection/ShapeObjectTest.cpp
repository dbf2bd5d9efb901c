#include "selection/ShapeObject.h"

#include <cfloat>
#include <cmath>
#include <limits>
#include <numbers>
#include <stdexcept>

#include <gmock/gmock.h>
#include <Poly_Triangulation.hxx>
#include <Standard_OutOfRange.hxx>
#include <TopoDS.hxx>

#include "mesh/NoTriangleMesh.h"
#include "selection/Ray.h"
#include "selection/SensitiveFace.h"
#include "selection/VisualSelection.h"
#include "tests/support/SolidFixture.h"
#include "visual/Visual.h"

namespace vrn::test {

namespace {

using selection::ObjectKind;
using selection::Result;
using selection::SelectableObject;
using selection::ShapeObject;
using selection::VisualSelection;
using testing::ElementsAre;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::SolidVisual;
using visual::Visual;
using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

}  // namespace

class ShapeObjects : public SolidTest {
protected:
    static VisualSelection& registry() { return *VisualSelection::Get(); }
    static SelectableObject* objectOf(Visual* visual) { return registry().getObject(visual); }
    static std::vector<int> faceNumbers(Visual* visual) {
        std::vector<int> numbers;
        for (auto* primitive : objectOf(visual)->primitives)
            numbers.push_back(dynamic_cast<selection::SensitiveFace&>(*primitive).faceIndex);
        return numbers;
    }
    static visual::Ray downAt(float x, float y) { return {{x, y, 1000}, {0, 0, -1}}; }
    /// The number of the horizontal face at that height.
    static std::uint32_t faceAt(const SolidVisual* solid, double z) {
        for (int i = 1; i <= solid->getFaceMap().Extent(); ++i) {
            const auto nodes = TriangulationOf(solid->getFace(i));
            bool all = true;
            for (int n = 1; n <= nodes->NbNodes(); ++n)
                all = all && std::abs(nodes->Node(n).Z() - z) < 1e-6;
            if (all) return static_cast<std::uint32_t>(i);
        }
        return 0;
    }
    static void expectNear(const Pos& got, const Pos& wanted) {
        EXPECT_LT((got - wanted).length(), 0.01f)
            << got.x << ", " << got.y << ", " << got.z << " and not " << wanted.x << ", "
            << wanted.y << ", " << wanted.z;
    }
};

TEST_F(ShapeObjects, StandsForItsSolid) {
    SolidVisual* solid = show(MeshedBox());
    const auto* object = dynamic_cast<ShapeObject*>(objectOf(solid));
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->kind, ObjectKind::Shape);
    EXPECT_EQ(object->visual, solid);
    EXPECT_EQ(object->getName(), solid->getName());
    EXPECT_TRUE(object->shape.IsEqual(solid->getShape()));
    EXPECT_FALSE(object->bvhBuilt);
}

TEST_F(ShapeObjects, TheWorldBoxFollowsTheSolid) {
    SolidVisual* solid = show(MeshedBox());
    pump();
    // A unit wider than the solid: as much as the boxes of its triangles.
    EXPECT_EQ(objectOf(solid)->box.min, (Pos{-1, -1, -1}));
    EXPECT_EQ(objectOf(solid)->box.max, (Pos{101, 61, 41}));
    solid->setPosition(5, 0, 0);
    pump();
    EXPECT_EQ(objectOf(solid)->box.min, (Pos{4, -1, -1}));
    EXPECT_EQ(objectOf(solid)->inverseWorldPose.position, (Pos{-5, 0, 0}));
}

TEST_F(ShapeObjects, ANodeThatIsNotFiniteBelongsToNoBox) {
    const TopoDS_Face face = FanFace(5);
    TriangulationOf(face)->SetNode(3, gp_Pnt(0, std::numeric_limits<double>::infinity(), 0));
    SolidVisual* solid = show(face);
    pump();
    EXPECT_LE(objectOf(solid)->box.max.y, 11);
}

TEST_F(ShapeObjects, WithoutTrianglesTheBoxIsEmpty) {
    for (const TopoDS_Shape& shape : {PlainBox(), TopoDS_Shape()}) {
        SolidVisual* solid = SolidVisual::Build(scene().root, shape, "Body", "", "");
        pump();
        EXPECT_FALSE(objectOf(solid)->box.isValid());
        EXPECT_EQ(objectOf(solid)->tree.root, nullptr);
        EXPECT_FALSE(objectOf(solid)->worldBoxDirty);
    }
}

TEST_F(ShapeObjects, NothingIsBuiltBeforeTheFirstUpdateAndNothingAnewAfterIt) {
    SolidVisual* solid = show(MeshedBox());
    SelectableObject* object = objectOf(solid);
    EXPECT_TRUE(object->primitives.empty());
    pump();
    EXPECT_TRUE(object->bvhBuilt);
    const auto built = object->primitives;
    const auto* root = object->tree.root;
    solid->setPosition(5, 0, 0);
    pump();
    EXPECT_EQ(objectOf(solid), object);
    EXPECT_EQ(object->primitives, built);
    EXPECT_EQ(object->tree.root, root);
}

TEST_F(ShapeObjects, FacesBecomePrimitivesInTheOrderOfTheirNumbers) {
    SolidVisual* solid = show(MeshedBox());
    pump();
    EXPECT_THAT(faceNumbers(solid), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(ShapeObjects, HiddenFacesAndFacesWithoutTrianglesAreNotThere) {
    SolidVisual* solid = show(CompoundOf({FanFace(3), BareFace(), FanFace(4, 10), FanFace(5, 20)}));
    pump();
    EXPECT_THAT(faceNumbers(solid), ElementsAre(1, 3, 4));
    solid->setFaceVisible(3, false);
    pump();
    EXPECT_THAT(faceNumbers(solid), ElementsAre(1, 4));
    solid->setFaceVisible(3, true);
    pump();
    EXPECT_THAT(faceNumbers(solid), ElementsAre(1, 3, 4));
}

TEST_F(ShapeObjects, BuildingAgainReplacesWhatWasBuilt) {
    SolidVisual* solid = show(MeshedBox());
    pump();
    auto* object = dynamic_cast<ShapeObject*>(objectOf(solid));
    object->buildBVH();
    EXPECT_THAT(faceNumbers(solid), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_TRUE(object->intersect(downAt(50, 25)).hit);
}

TEST_F(ShapeObjects, ASolidWhoseFacesAreAllHiddenIsNoCandidateOfAnyQuery) {
    SolidVisual* solid = show(FanFace(8));
    EXPECT_THROW(solid->setFaceVisible(1, false), visual::NoTriangleMesh);
    pump();
    SelectableObject* object = objectOf(solid);
    EXPECT_EQ(object->tree.root, nullptr);
    EXPECT_FALSE(object->box.isValid());
    EXPECT_FALSE(object->intersect(downAt(1, 2)).hit);
    EXPECT_FALSE(object->intersect(rob::LineTemplate<float>{{1, 2, 5}, {1, 2, -5}}).hit);
    lookFrom({1, 2, 300}, {1, 2, 0});
    EXPECT_FALSE(registry().select(320.5f, 240.5f).hit);
    EXPECT_TRUE(registry().boxSelect(0, 0, windowWidth, windowHeight).empty());
    solid->setPosition(5, 0, 0);
    pump();
    EXPECT_FALSE(object->box.isValid());
}

TEST_F(ShapeObjects, ARayTellsVisualPoseShapeAndFaceAndWhereItHitsInTheWorld) {
    SolidVisual* solid = show(MeshedBox());
    // The box's z axis points along the world's x.
    solid->setPose(
        {{1000, 0, 0}, rob::RotationTemplate<float>(std::numbers::pi_v<float> / 2, Vec{0, 1, 0})});
    pump();
    const Result hit = objectOf(solid)->intersect(visual::Ray{{2000, 25, -30}, {-1, 0, 0}});
    ASSERT_TRUE(hit.hit);
    EXPECT_TRUE(hit.valid);
    EXPECT_NEAR(hit.distance, 960, 0.01);
    expectNear(hit.position, {1040, 25, -30});
    expectNear(hit.localPosition, {30, 25, 40});
    EXPECT_EQ(hit.visual, solid);
    EXPECT_EQ(hit.pose, solid->getWorldPose());
    EXPECT_TRUE(hit.shape.IsEqual(solid->getShape()));
    ASSERT_FALSE(hit.face.IsNull());
    EXPECT_EQ(solid->getFaceIndex(TopoDS::Face(hit.face)), faceAt(solid, 40));
    EXPECT_TRUE(hit.edge.IsNull());
    EXPECT_EQ(hit.index, -1);
}

TEST_F(ShapeObjects, ALineTellsVisualAndPlaceAndNeitherPoseNorShape) {
    SolidVisual* solid = show(MeshedBox());
    solid->setPosition(1000, 0, 0);
    pump();
    const Result hit =
        objectOf(solid)->intersect(rob::LineTemplate<float>{{1050, 25, 140}, {1050, 25, -60}});
    ASSERT_TRUE(hit.hit);
    EXPECT_FLOAT_EQ(hit.distance, 0.5f);  // a share of the line, not a length
    expectNear(hit.position, {1050, 25, 40});
    EXPECT_EQ(hit.visual, solid);
    EXPECT_EQ(hit.pose, rob::PoseTemplate<float>());
    EXPECT_TRUE(hit.shape.IsNull());
}

TEST_F(ShapeObjects, ATriangleTellsTheVisualAlone) {
    SolidVisual* solid = show(MeshedBox());
    solid->setPosition(1000, 0, 0);
    pump();
    const Result hit = objectOf(solid)->intersect(
        rob::TriangleTemplate<float>{{1050, 25, 30}, {1051, 25, 50}, {1052, 28, 50}});
    ASSERT_TRUE(hit.hit);
    EXPECT_EQ(hit.visual, solid);
    EXPECT_EQ(hit.distance, FLT_MAX);
    EXPECT_EQ(hit.position, (Pos{0, 0, 0}));
    EXPECT_EQ(hit.pose, rob::PoseTemplate<float>());
    EXPECT_TRUE(hit.shape.IsNull());
    EXPECT_FALSE(
        objectOf(solid)
            ->intersect(rob::TriangleTemplate<float>{{50, 25, 30}, {51, 25, 50}, {52, 28, 50}})
            .hit);
}

TEST_F(ShapeObjects, AMissTellsNeitherVisualNorShape) {
    SolidVisual* solid = show(MeshedBox());
    pump();
    const Result miss = objectOf(solid)->intersect(downAt(500, 500));
    EXPECT_FALSE(miss.hit);
    EXPECT_TRUE(miss.valid);
    EXPECT_EQ(miss.visual, nullptr);
    EXPECT_TRUE(miss.shape.IsNull());
    EXPECT_EQ(miss.distance, FLT_MAX);
}

TEST_F(ShapeObjects, ARayOfNaNHitsNothing) {
    SolidVisual* solid = show(MeshedBox());
    pump();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(objectOf(solid)->intersect(visual::Ray{{nan, nan, nan}, {nan, nan, nan}}).hit);
    EXPECT_FALSE(objectOf(solid)->intersect(visual::Ray{{50, 25, 100}, {0, 0, nan}}).hit);
    EXPECT_FALSE(objectOf(solid)->intersect(visual::Ray{{50, nan, 100}, {0, 0, -1}}).hit);
}

TEST_F(ShapeObjects, ChangedFacesGiveANewObjectWithTheOldFlags) {
    SolidVisual* solid = show(MeshedBox());
    registry().setDetectable(solid, false);
    registry().setObjectEnabled(solid, false);
    pump();
    registry().updateShapeFaces(solid);
    EXPECT_TRUE(registry().dirty);
    EXPECT_FALSE(objectOf(solid)->bvhBuilt);
    EXPECT_FALSE(objectOf(solid)->detectable);
    EXPECT_FALSE(objectOf(solid)->enabled);
    EXPECT_EQ(registry().containers[0].primitives.size(), registry().objects.size());
    EXPECT_EQ(pickableCount(), 1u);
}

TEST_F(ShapeObjects, WhatHangsBelowASolidStaysRegisteredWhenItsFacesChange) {
    SolidVisual* solid = show(MeshedBox());
    SolidVisual* carried = show(MeshedBox());
    solid->attachVisual(carried);
    solid->setFaceVisible(1, false);
    EXPECT_TRUE(registry().hasVisual(carried));
}

TEST_F(ShapeObjects, OnlyWhatIsRegisteredCanChangeItsFaces) {
    SolidVisual* solid = SolidVisual::Build(scene().root, MeshedBox(), "Body");
    EXPECT_THAT([&] { registry().updateShapeFaces(solid); },
                ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
}

TEST_F(ShapeObjects, NullIsRefused) {
    EXPECT_THROW(registry().addShape(MeshedBox(), nullptr, true), std::invalid_argument);
    EXPECT_THROW(registry().addCurveVisual(MeshedBox(), nullptr, true), std::invalid_argument);
}

// Both are built at the same update, side by side where the machine can.
TEST_F(ShapeObjects, ABrokenTriangulationEndsTheUpdateWithTheMarkSetAndTheOthersAreThereAfterIt) {
    SolidVisual* broken = show(MeshedBox());
    SolidVisual* sound = show(MeshedBox());
    const auto nodes = TriangulationOf(broken->getFace(1));
    int first = 0, second = 0, third = 0;
    nodes->Triangle(1).Get(first, second, third);
    nodes->SetTriangle(1, Poly_Triangle(first, second, nodes->NbNodes() + 1));
    EXPECT_THROW(registry().update(), Standard_OutOfRange);
    EXPECT_TRUE(registry().dirty);
    nodes->SetTriangle(1, Poly_Triangle(first, second, third));
    registry().update();
    EXPECT_FALSE(registry().dirty);
    for (SolidVisual* solid : {broken, sound}) EXPECT_EQ(objectOf(solid)->primitives.size(), 6u);
}

}  // namespace vrn::test
