#include "visual/station/SensorVisual.h"

#include <any>
#include <cmath>
#include <limits>
#include <stdexcept>

#include <gmock/gmock.h>
#include <OgreMaterial.h>
#include <BRep_Tool.hxx>
#include <BRepGProp.hxx>
#include <GProp_GProps.hxx>
#include <Poly_Polygon3D.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>

#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/layout/Layout.h"
#include "suite/sdf/ObjectType.h"
#include "suite/smart/SmartComponent.h"
#include "tests/support/SolidFixture.h"
#include "tests/visual/StationFixture.h"
#include "visual/geometry/CurveVisual.h"
#include "visual/geometry/EdgeVisual.h"
#include "visual/geometry/SolidVisual.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/UserComponentVisual.h"

namespace vrn::test {

using sdf::ObjectType;
using smartcomp::Sensor;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::CurveVisual;
using visual::SensorVisual;
using visual::SolidVisual;
using visual::Visual;
using Xyz = rob::XYZTemplate<double>;

class Sensors : public StationVisuals {
protected:
    Sensor* makePlane(const Xyz& a, const Xyz& b) {
        auto* sensor = model.make<Sensor>("plane", ObjectType::PlaneSensor);
        sensor->setProperty(2, a);
        sensor->setProperty(3, b);
        return sensor;
    }
    Sensor* makeSegment(const Xyz& start, const Xyz& end, double radius) {
        auto* sensor = model.make<Sensor>("segment", ObjectType::SegmentSensor);
        sensor->setProperty(1, start);
        sensor->setProperty(2, end);
        sensor->setProperty(3, radius);
        return sensor;
    }
    static SensorVisual* build(Sensor* sensor) {
        SensorVisual::Build(root(), sensor);
        return dynamic_cast<SensorVisual*>(visualOf(sensor));
    }
    SensorVisual* buildPlane() { return build(makePlane({100, 0, 0}, {0, 60, 0})); }
    static SolidVisual* solidOf(const Visual* visual) {
        return dynamic_cast<SolidVisual*>(childOf(visual, VisualType::Solid));
    }
    static Visual* childOf(const Visual* visual, VisualType type) {
        for (Visual* child : visual->getChildren())
            if (child->type == type) return child;
        return nullptr;
    }
    static double areaOf(const TopoDS_Shape& shape) {
        GProp_GProps props;
        BRepGProp::SurfaceProperties(shape, props);
        return props.Mass();
    }
    static double volumeOf(const TopoDS_Shape& shape) {
        GProp_GProps props;
        BRepGProp::VolumeProperties(shape, props);
        return props.Mass();
    }
    TopoDS_Shape shapeOf(Sensor* sensor) { return build(sensor)->getSensorShape(); }
    /// The selected look where there is a solid.
    static std::string solidLook(const Visual* visual) { return MaterialOf(solidOf(visual)); }
};

// --- shapes

TEST_F(Sensors, APlaneIsTheParallelogramOfItsSides) {
    const TopoDS_Shape shape = shapeOf(makePlane({100, 0, 0}, {30, 40, 0}));
    ASSERT_EQ(shape.ShapeType(), TopAbs_FACE);
    EXPECT_NEAR(areaOf(shape), 4000.0, 1e-6);
    GProp_GProps props;
    BRepGProp::SurfaceProperties(shape, props);
    EXPECT_TRUE(props.CentreOfMass().IsEqual(gp_Pnt(65, 20, 0), 1e-9));  // from the origin
}

TEST_F(Sensors, APlaneIsTriangulatedAndSoAreItsEdges) {
    const TopoDS_Shape shape = shapeOf(makePlane({100, 0, 0}, {0, 60, 0}));
    EXPECT_FALSE(TriangulationOf(TopoDS::Face(shape)).IsNull());
    int edges = 0;
    for (TopExp_Explorer it(shape, TopAbs_EDGE); it.More(); it.Next(), ++edges) {
        TopLoc_Location location;
        EXPECT_FALSE(BRep_Tool::Polygon3D(TopoDS::Edge(it.Current()), location).IsNull());
    }
    EXPECT_EQ(edges, 4);
}

TEST_F(Sensors, APlaneOfParallelSidesShowsItsLocalFrameAlone) {
    Visual* visual = build(makePlane({100, 0, 0}, {-50, 0, 0}));
    ASSERT_EQ(visual->getChildren().size(), 1u);
    EXPECT_EQ(visual->getChildren().front()->getName(), "Local Frame");
    EXPECT_NO_THROW(frame());
}

TEST_F(Sensors, ASideIsZeroUpToATenMillionth) {
    const Xyz y{0, 60, 0};
    EXPECT_TRUE(shapeOf(makePlane({1e-7, -1e-7, 1e-7}, y)).IsNull());
    EXPECT_TRUE(shapeOf(makePlane(y, {1e-7, 0, 0})).IsNull());
    EXPECT_FALSE(shapeOf(makePlane({2e-7, 0, 0}, y)).IsNull());
    // Neither side is zero, but their product is.
    EXPECT_TRUE(shapeOf(makePlane({3e-4, 0, 0}, {0, 3e-4, 0})).IsNull());
}

TEST_F(Sensors, APlaneDoesNotReadItsFirstProperty) {
    Sensor* sensor = makePlane({100, 0, 0}, {0, 60, 0});
    sensor->setProperty(1, std::string("no point"));
    EXPECT_NEAR(areaOf(shapeOf(sensor)), 6000.0, 1e-6);
}

TEST_F(Sensors, AnyOtherKindOfSensorIsAPlane) {
    auto* sensor = model.make<Sensor>("plain", ObjectType::Sensor);
    sensor->setProperty(2, Xyz{10, 0, 0});
    sensor->setProperty(3, Xyz{0, 10, 0});
    EXPECT_EQ(shapeOf(sensor).ShapeType(), TopAbs_FACE);
}

TEST_F(Sensors, ARadiusOfAHalfIsACylinderAndLessIsALine) {
    const TopoDS_Shape thick = shapeOf(makeSegment({10, 0, 0}, {10, 0, 100}, 0.5));
    ASSERT_EQ(thick.ShapeType(), TopAbs_SOLID);
    EXPECT_NEAR(volumeOf(thick), 0.25 * 3.14159265358979 * 100, 1e-6);
    for (const double radius : {0.4, 0.0, -3.0, std::nextafter(0.5, 0.0)})
        EXPECT_EQ(shapeOf(makeSegment({10, 0, 0}, {10, 0, 100}, radius)).ShapeType(), TopAbs_EDGE)
            << radius;
}

TEST_F(Sensors, TheLineOfASegmentGoesFromTheOriginOfTheSensor) {
    const TopoDS_Edge edge = TopoDS::Edge(shapeOf(makeSegment({10, 20, 30}, {15, 20, 130}, 0.4)));
    EXPECT_TRUE(BRep_Tool::Pnt(TopExp::FirstVertex(edge)).IsEqual(gp_Pnt(0, 0, 0), 1e-9));
    EXPECT_TRUE(BRep_Tool::Pnt(TopExp::LastVertex(edge)).IsEqual(gp_Pnt(5, 0, 100), 1e-9));
}

TEST_F(Sensors, TheCylinderOfASegmentStandsOnTheOriginAlongIt) {
    const TopoDS_Shape shape = shapeOf(makeSegment({10, 20, 30}, {10, 80, 30}, 5));
    GProp_GProps props;
    BRepGProp::VolumeProperties(shape, props);
    EXPECT_TRUE(props.CentreOfMass().IsEqual(gp_Pnt(0, 30, 0), 1e-6));
}

TEST_F(Sensors, ASegmentWithoutLengthShowsItsLocalFrameAlone) {
    for (const double radius : {0.0, 5.0}) {
        Visual* visual = build(makeSegment({1, 2, 3}, {1, 2, 3}, radius));
        EXPECT_EQ(visual->getChildren().size(), 1u);
    }
}

TEST_F(Sensors, ALengthThatSinglePrecisionCannotTellIsNone) {
    EXPECT_TRUE(shapeOf(makeSegment({1e6, 0, 0}, {1e6 + 1e-3, 0, 0}, 5)).IsNull());
}

TEST_F(Sensors, NumbersThatAreNotFiniteShowNothing) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double endless = std::numeric_limits<double>::infinity();
    for (const double bad : {nan, endless}) {
        EXPECT_TRUE(shapeOf(makePlane({bad, 1, 0}, {0, 60, 0})).IsNull());
        EXPECT_TRUE(shapeOf(makeSegment({}, {0, 0, bad}, 5)).IsNull());
        EXPECT_TRUE(shapeOf(makeSegment({}, {0, 0, 9}, bad)).IsNull());
    }
}

TEST_F(Sensors, PropertiesThatAreNotSetShowNothing) {
    EXPECT_TRUE(shapeOf(model.make<Sensor>("bare", ObjectType::PlaneSensor)).IsNull());
    EXPECT_TRUE(shapeOf(model.make<Sensor>("bare", ObjectType::SegmentSensor)).IsNull());
}

TEST_F(Sensors, APropertyOfAnotherTypeThrowsAndTheSensorStays) {
    Sensor* sensor = makePlane({100, 0, 0}, {0, 60, 0});
    sensor->setProperty(3, 7.0);
    EXPECT_THROW(SensorVisual::Build(root(), sensor), std::bad_any_cast);
    EXPECT_EQ(visualOf(sensor)->getChildren().size(), 1u);
}

// --- building

TEST_F(Sensors, ASensorIsRegisteredAtItsPosition) {
    Sensor* sensor = makePlane({100, 0, 0}, {0, 60, 0});
    sensor->setPose({{1, 2, 3}, {}});
    SensorVisual* visual = build(sensor);
    EXPECT_EQ(visual->Visual::type, VisualType::Sensor);
    EXPECT_EQ(visual->getPosition(), (rob::PosTemplate<float>{1, 2, 3}));
    EXPECT_EQ(visual->getParent(), root());
    EXPECT_TRUE(isPickable(solidOf(visual)));
}

TEST_F(Sensors, WithoutChildrenThereIsNoLocalFrame) {
    SensorVisual visual(root(), makePlane({100, 0, 0}, {0, 60, 0}));
    EXPECT_EQ(visual.getLocalFrame(), nullptr);
    EXPECT_TRUE(visual.getChildren().empty());
    EXPECT_NO_THROW(visual.resetAppearance());
    EXPECT_NO_THROW(visual.setSelected());
}

TEST_F(Sensors, AnObjectThatIsNoSensorLeavesNothing) {
    auto* other = model.make<smartcomp::UserComponent>("other");
    const auto before = traces();
    EXPECT_THROW(SensorVisual::Build(root(), other), std::bad_cast);
    EXPECT_EQ(traces(), before);
}

TEST_F(Sensors, TheLineOfASegmentIsACurveAndItsCylinderASolid) {
    EXPECT_NE(childOf(build(makeSegment({}, {0, 0, 100}, 0.4)), VisualType::Curve), nullptr);
    Visual* thick = build(makeSegment({}, {0, 0, 100}, 0.5));
    EXPECT_NE(solidOf(thick), nullptr);
    EXPECT_EQ(childOf(thick, VisualType::Curve), nullptr);
}

TEST_F(Sensors, TheLocalFrameShowsAfterEachRebuildUntilTheNextReset) {
    SensorVisual* visual = buildPlane();
    EXPECT_EQ(visual->getLocalFrame()->id, 0u);
    EXPECT_TRUE(isDrawn(visual->getLocalFrame()));
    visual->resetAppearance();
    EXPECT_FALSE(isDrawn(visual->getLocalFrame()));
    visual->update();
    EXPECT_TRUE(isDrawn(visual->getLocalFrame()));
}

TEST_F(Sensors, AnUpdateReplacesAllChildren) {
    SensorVisual* visual = buildPlane();
    const std::uint32_t before = solidOf(visual)->id;
    visual->update();
    EXPECT_EQ(visual->getChildren().size(), 2u);
    EXPECT_NE(solidOf(visual)->id, before);
    EXPECT_FALSE(scene().visuals.contains(before));
}

TEST_F(Sensors, AnUpdateOfAHiddenSensorShowsAndEnablesNothingUntilItIsShown) {
    Sensor* sensor = makePlane({100, 0, 0}, {0, 60, 0});
    SensorVisual* visual = build(sensor);
    visual->resetAppearance();
    for (const bool show : {false, true}) {
        scene().setVisualVisible(sensor->id, show);
        if (!show) scene().updateSensor(sensor->id);
        pump();
        SolidVisual* solid = solidOf(visual);
        EXPECT_EQ(isDrawn(solid), show);
        EXPECT_EQ(isDrawn(childOf(solid, VisualType::WireFrame)), show);
        EXPECT_FALSE(isDrawn(visual->getLocalFrame()));
        EXPECT_EQ(selection::VisualSelection::Get()->getObject(solid)->enabled, show);
    }
    scene().setVisualSelected(sensor->id);
    pump();
    EXPECT_TRUE(isDrawn(visual->getLocalFrame()));
}

TEST_F(Sensors, ASensorInsideAHiddenComponentIsNotPicked) {
    auto* component = model.make<smartcomp::UserComponent>("component");
    component->addChild(*makeSegment({}, {0, 0, 100}, 0.1));
    visual::UserComponentVisual::Build(root(), component);
    const Visual* visual = childOf(visualOf(component), VisualType::Sensor);
    Visual* curve = childOf(visual, VisualType::Curve);
    for (const bool show : {false, true}) {
        scene().setVisualVisible(component->id, show);
        pump();
        EXPECT_EQ(selection::VisualSelection::Get()->getObject(curve)->enabled, show);
    }
}

TEST_F(Sensors, TheSceneUpdatesASensorAfterItsPropertiesChanged) {
    Sensor* sensor = makePlane({100, 0, 0}, {0, 60, 0});
    Visual* visual = build(sensor);
    sensor->setProperty(2, Xyz{300, 0, 0});
    scene().updateSensor(sensor->id);
    EXPECT_NEAR(areaOf(solidOf(visual)->getShape()), 6000.0, 1e-6);  // posted, not done
    pump();
    EXPECT_NEAR(areaOf(solidOf(visual)->getShape()), 18000.0, 1e-6);
}

TEST_F(Sensors, UpdatingAnUnknownSensorThrowsOutOfTheQueue) {
    scene().updateSensor(123456789);
    EXPECT_THAT([] { scene().processMsgs(); },
                ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
}

TEST_F(Sensors, ThePositionMovesTheShapeWithoutARebuild) {
    SensorVisual* visual = buildPlane();
    const SolidVisual* solid = solidOf(visual);
    visual->setPosition(500, 0, 0);
    EXPECT_EQ(solidOf(visual), solid);
    EXPECT_EQ(solid->getWorldPosition(), (rob::PosTemplate<float>{500, 0, 0}));
}

// --- looks

TEST_F(Sensors, ASelectedSensorShowsTheSelectedLookAndItsFrame) {
    Sensor* sensor = makePlane({100, 0, 0}, {0, 60, 0});
    SensorVisual* visual = build(sensor);
    EXPECT_EQ(solidLook(visual), "Body");
    scene().setVisualSelected(sensor->id);
    pump();
    EXPECT_EQ(solidLook(visual), "BodySelected");
    EXPECT_TRUE(isDrawn(visual->getLocalFrame()));
    scene().clearSelections();
    pump();
    EXPECT_EQ(solidLook(visual), "Body");
    EXPECT_FALSE(isDrawn(visual->getLocalFrame()));
}

TEST_F(Sensors, ASelectedSensorIsStillSelectedAfterAnUpdate) {
    Sensor* sensor = makePlane({100, 0, 0}, {0, 60, 0});
    SensorVisual* visual = build(sensor);
    scene().setVisualSelected(sensor->id);
    pump();
    scene().updateSensor(sensor->id);
    pump();
    EXPECT_EQ(solidLook(visual), "BodySelected");
    EXPECT_TRUE(isDrawn(visual->getLocalFrame()));
    EXPECT_TRUE(scene().stateManager->hasLayer(visual, visual::VisualStateLayer::Selected));
    scene().clearSelections();
    pump();
    EXPECT_EQ(solidLook(visual), "Body");
}

TEST_F(Sensors, ASensorThatIsNotSelectedIsNotAfterAnUpdate) {
    Sensor* sensor = makePlane({100, 0, 0}, {0, 60, 0});
    SensorVisual* visual = build(sensor);
    scene().updateSensor(sensor->id);
    pump();
    EXPECT_EQ(solidLook(visual), "Body");
    EXPECT_FALSE(scene().stateManager->hasLayer(visual, visual::VisualStateLayer::Selected));
}

TEST_F(Sensors, HighlightSparesWhatIsSelected) {
    SensorVisual* visual = buildPlane();
    scene().setVisualHighlighted(visual);
    pump();
    EXPECT_EQ(solidLook(visual), "BodyHighlighted");
    scene().clearHighlightedVisual();
    pump();
    scene().setVisualSelected(solidOf(visual)->id);
    pump();
    visual->setHighlighted();
    EXPECT_EQ(solidLook(visual), "BodySelected");
}

TEST_F(Sensors, OnlyTheOutermostSelectedObjectShowsItsFrame) {
    auto* component = model.make<smartcomp::UserComponent>("component");
    component->addChild(*makePlane({100, 0, 0}, {0, 60, 0}));
    visual::UserComponentVisual::Build(root(), component);
    auto* visual = dynamic_cast<SensorVisual*>(childOf(visualOf(component), VisualType::Sensor));
    ASSERT_NE(visual, nullptr);
    visual->resetAppearance();
    scene().setVisualSelected(component->id);
    pump();
    EXPECT_EQ(solidLook(visual), "Body");  // a component leaves its sensors alone
    visual->setSelected();
    EXPECT_EQ(solidLook(visual), "BodySelected");
    EXPECT_FALSE(isDrawn(visual->getLocalFrame()));
}

// --- the station

TEST_F(Sensors, AddingOneAsASmartComponentShowsIt) {
    Sensor* sensor = makeSegment({}, {0, 0, 100}, 2);
    scene().addSmartComponent(sensor);
    pump();
    EXPECT_NE(solidOf(visualOf(sensor)), nullptr);
}

TEST_F(Sensors, AStationShowsTheSensorsThatStandInIt) {
    Sensor* alone = makeSegment({}, {0, 0, 100}, 2);
    auto* component = model.make<smartcomp::UserComponent>("component");
    Sensor* inside = makePlane({100, 0, 0}, {0, 60, 0});
    component->addChild(*inside);
    for (smartcomp::SmartComponent* each :
         std::initializer_list<smartcomp::SmartComponent*>{alone, component, inside})
        smartcomp::AddSmartComponent(*each);
    scene().LoadStation();
    pump();
    EXPECT_EQ(visualOf(alone)->getParent(), root());
    EXPECT_EQ(visualOf(inside)->getParent(), visualOf(component));
}

}  // namespace vrn::test
