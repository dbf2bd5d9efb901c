#include "selection/ShapeObject.h"

#include <limits>
#include <stdexcept>

#include <gmock/gmock.h>

#include "selection/VisualSelection.h"
#include "tests/support/SolidFixture.h"
#include "visual/Visual.h"

namespace vrn::test {

namespace {

using selection::ObjectKind;
using selection::SelectableObject;
using selection::ShapeObject;
using selection::VisualSelection;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::SolidVisual;
using visual::Visual;
using Pos = rob::PosTemplate<float>;

}  // namespace

class ShapeObjects : public SolidTest {
protected:
    static VisualSelection& registry() { return *VisualSelection::Get(); }
    static SelectableObject* objectOf(Visual* visual) { return registry().getObject(visual); }
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
    EXPECT_EQ(objectOf(solid)->box.min, (Pos{0, 0, 0}));
    EXPECT_EQ(objectOf(solid)->box.max, (Pos{100, 60, 40}));
    solid->setPosition(5, 0, 0);
    pump();
    EXPECT_EQ(objectOf(solid)->box.min, (Pos{5, 0, 0}));
    EXPECT_EQ(objectOf(solid)->inverseWorldPose.position, (Pos{-5, 0, 0}));
}

TEST_F(ShapeObjects, ANodeThatIsNotFiniteBelongsToNoBox) {
    const TopoDS_Face face = FanFace(5);
    TriangulationOf(face)->SetNode(3, gp_Pnt(0, std::numeric_limits<double>::infinity(), 0));
    SolidVisual* solid = show(face);
    pump();
    EXPECT_LE(objectOf(solid)->box.max.y, 10);
}

TEST_F(ShapeObjects, WithoutTrianglesTheBoxIsEmpty) {
    for (const TopoDS_Shape& shape : {PlainBox(), TopoDS_Shape()}) {
        SolidVisual* solid = SolidVisual::Build(scene().root, shape, "Body", "", "");
        pump();
        EXPECT_FALSE(objectOf(solid)->box.isValid());
    }
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
    EXPECT_EQ(registry().containers[0].primitives.size(), 1u);
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

}  // namespace vrn::test
