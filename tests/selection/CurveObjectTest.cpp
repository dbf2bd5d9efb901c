#include "selection/CurveObject.h"

#include <gtest/gtest.h>

#include "selection/MfgObject.h"
#include "selection/Ray.h"
#include "selection/SensitiveEdge.h"
#include "selection/VisualSelection.h"
#include "tests/support/SolidFixture.h"
#include "visual/geometry/CurveVisual.h"
#include "visual/geometry/EdgeVisual.h"

namespace vrn::test {

namespace {

using selection::CurveObject;
using selection::MfgObject;
using selection::Result;
using visual::CurveVisual;
using visual::EdgeVisual;
using visual::Ray;
using visual::Visual;
using Pos = rob::PosTemplate<float>;

}  // namespace

class CurveObjects : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        shape = LineEdge({0, 0, 0}, {100, 0, 0});
        curve = CurveVisual::Build(scene().root, shape);
        curve->setPosition(1000, 20, 30);
    }
    template <class Object>
    static void expectCurveHit(Object& object, const Visual* visual, const TopoDS_Shape& edge) {
        object.updateWorldBox();
        EXPECT_TRUE(object.box.isPointInside(1000, 20, 30));
        EXPECT_TRUE(object.box.isPointInside(1100, 20, 30));
        const Result hit = object.intersect(Ray{{1050, 20.5f, 130}, {0, 0, -1}});
        ASSERT_TRUE(hit.hit);
        EXPECT_EQ(hit.visual, visual);
        EXPECT_EQ(hit.pose, visual->getWorldPose());
        EXPECT_TRUE(hit.edge.IsSame(edge));
        EXPECT_TRUE(hit.face.IsNull());
        EXPECT_LT((hit.position - Pos{1050, 20, 30}).length(), 0.01f);
        const Result miss = object.intersect(Ray{{1050, 90, 130}, {0, 0, -1}});
        EXPECT_FALSE(miss.hit);
        EXPECT_EQ(miss.visual, nullptr);
    }

    TopoDS_Edge shape;
    CurveVisual* curve = nullptr;
};

TEST_F(CurveObjects, ARayTellsVisualPoseShapeEdgeAndPlaceInTheWorld) {
    CurveObject object(shape, curve);
    EXPECT_EQ(static_cast<int>(object.kind), 1);
    expectCurveHit(object, curve, shape);
    EXPECT_TRUE(object.intersect(Ray{{1050, 20, 130}, {0, 0, -1}}).shape.IsEqual(shape));
}

TEST_F(CurveObjects, AnMfgObjectDoesAsACurveWithoutTellingAShape) {
    MfgObject object(curve);
    EXPECT_EQ(static_cast<int>(object.kind), 6);
    expectCurveHit(object, curve, shape);
    EXPECT_TRUE(object.intersect(Ray{{1050, 20, 130}, {0, 0, -1}}).shape.IsNull());
}

TEST_F(CurveObjects, ContactTestsNeverMeetACurve) {
    CurveObject object(shape, curve);
    object.updateWorldBox();
    EXPECT_FALSE(object.intersect(rob::LineTemplate<float>{{1050, 20, 50}, {1050, 20, 0}}).hit);
    EXPECT_FALSE(
        object.intersect(rob::TriangleTemplate<float>{{1050, 20, 50}, {1050, 21, 0}, {1050, 19, 0}})
            .hit);
}

TEST_F(CurveObjects, OnlyEdgeVisualsBelowItMakePrimitives) {
    new Visual(curve);
    CurveObject object(shape, curve);
    EXPECT_TRUE(object.primitives.empty());
    object.buildBVH();
    ASSERT_EQ(object.primitives.size(), 1u);
    EXPECT_TRUE(dynamic_cast<selection::SensitiveEdge&>(*object.primitives[0]).edge.IsSame(shape));
    object.buildBVH();
    EXPECT_EQ(object.primitives.size(), 1u);
}

TEST_F(CurveObjects, AnEdgeCountsAtItsOwnPlaceBelowTheCurve) {
    curve->getEdges().front()->setPosition(0, 500, 0);
    CurveObject object(shape, curve);
    object.updateWorldBox();
    EXPECT_FALSE(object.intersect(Ray{{1050, 20, 130}, {0, 0, -1}}).hit);
    const Result hit = object.intersect(Ray{{1050, 520, 130}, {0, 0, -1}});
    ASSERT_TRUE(hit.hit);
    EXPECT_LT((hit.position - Pos{1050, 520, 30}).length(), 0.01f);
    EXPECT_TRUE(object.box.isPointInside(1050, 520, 30));
}

TEST_F(CurveObjects, WithoutEdgesTheBoxIsEmptyAndNothingIsHit) {
    auto* bare = new Visual(scene().root);
    bare->setPosition(1, 2, 3);
    CurveObject curveObject(shape, bare);
    MfgObject mfgObject(bare);
    for (selection::SelectableObject* object :
         {static_cast<selection::SelectableObject*>(&curveObject),
          static_cast<selection::SelectableObject*>(&mfgObject)}) {
        object->updateWorldBox();
        EXPECT_FALSE(object->box.isValid());
        EXPECT_FALSE(object->worldBoxDirty);
        EXPECT_TRUE(object->bvhBuilt);
        EXPECT_FALSE(object->intersect(Ray{{1, 2, 100}, {0, 0, -1}}).hit);
    }
}

}  // namespace vrn::test
