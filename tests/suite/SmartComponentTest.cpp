#include "suite/smart/SmartComponent.h"

#include "suite/sdf/ObjectStore.h"
#include "suite/smart/StationLogic.h"

#include <gtest/gtest.h>

#include <any>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace {

using namespace vrn::smartcomp;
using vrn::rob::XYZTemplate;
using vrn::sdf::ObjectStore;
using vrn::sdf::ObjectType;
using vrn::sdf::SdfManager;

TEST(StationLogic, IsAnObjectOfItsOwnIdThatTheManagerKnows) {
    EXPECT_EQ(StationLogic::inst()->id, SdfManager::stationLogicId);
    EXPECT_EQ(SdfManager::inst()->at(StationLogic::inst()->id), StationLogic::inst());
    EXPECT_EQ(StationLogic::inst(), StationLogic::inst());
}

TEST(SmartComponent, IsTopLevelInTheStationButNotInsideAnother) {
    ObjectStore store;
    auto *outer = store.make<UserComponent>("outer"), *inner = store.make<UserComponent>("inner");
    EXPECT_TRUE(outer->isTopLevel());
    outer->addChild(*inner);
    EXPECT_FALSE(inner->isTopLevel());
    StationLogic::inst()->addChild(*inner);
    EXPECT_TRUE(inner->isTopLevel());
    EXPECT_EQ(inner->parentId, StationLogic::inst()->id);
    store.clear();
    EXPECT_TRUE(StationLogic::inst()->getChildren().empty());
}

TEST(SmartComponent, AreListedInOrderUntilTheyEnd) {
    ObjectStore store;
    auto* sensor = store.make<Sensor>("s", ObjectType::PlaneSensor);
    auto* spray = store.make<SprayComponent>("p");
    AddSmartComponent(*spray);
    AddSmartComponent(*sensor);
    AddSmartComponent(*spray);
    EXPECT_EQ(GetAllSmartComponents(), (std::vector<SmartComponent*>{spray, sensor}));
    store.erase(spray);
    EXPECT_EQ(GetAllSmartComponents(), std::vector<SmartComponent*>{sensor});
    RemoveSmartComponent(*sensor);
    EXPECT_TRUE(GetAllSmartComponents().empty());
}

TEST(SmartComponent, PropertiesAreReadByNumber) {
    Sensor sensor("s", ObjectType::SegmentSensor);
    sensor.setProperty(1, XYZTemplate<double>{1, 2, 3});
    sensor.setProperty(3, 0.5);
    XYZTemplate<double> xyz{9, 9, 9};
    EXPECT_TRUE(sensor.getPropertyXYZ(1, xyz));
    EXPECT_EQ(xyz, (XYZTemplate<double>{1, 2, 3}));
    double radius = 0;
    EXPECT_TRUE(sensor.getPropertyDouble(3, radius));
    EXPECT_EQ(radius, 0.5);
    sensor.setProperty(3, 0.75);
    EXPECT_TRUE(sensor.getPropertyDouble(3, radius));
    EXPECT_EQ(radius, 0.75);
    EXPECT_EQ(sensor.element->getChildren().size(), 2u);
}

TEST(SmartComponent, AbsentPropertyLeavesTheArgumentAlone) {
    const Sensor sensor("s", ObjectType::PlaneSensor);
    XYZTemplate<double> xyz{9, 9, 9};
    double number = 9;
    EXPECT_FALSE(sensor.getPropertyXYZ(2, xyz));
    EXPECT_FALSE(sensor.getPropertyDouble(2, number));
    EXPECT_EQ(xyz, (XYZTemplate<double>{9, 9, 9}));
    EXPECT_EQ(number, 9);
}

TEST(SmartComponent, PropertyOfAnotherTypeRaisesBadAnyCast) {
    Sensor sensor("s", ObjectType::PlaneSensor);
    sensor.setProperty(2, 1.0);
    XYZTemplate<double> xyz;
    EXPECT_THROW((void)sensor.getPropertyXYZ(2, xyz), std::bad_any_cast);
}

TEST(SprayComponent, PropertiesStandInTheElementAsChildrenWithIdAndValue) {
    SprayComponent spray("gun");
    spray.setProperty(1, std::uint32_t{7});
    spray.setProperty(6, 20.0);
    const auto children = spray.element->getChildren();
    ASSERT_EQ(children.size(), 2u);
    EXPECT_EQ(children[1]->getTypeName(), "property");
    EXPECT_EQ(children[1]->getId(/*ownOnly=*/true), 6u);
    EXPECT_EQ(children[1]->get("value")->as<double>(), 20.0);
    EXPECT_EQ(children[0]->get("value")->as<std::uint32_t>(), 7u);
    EXPECT_EQ(static_cast<int>(spray.objectType), 29);
}

TEST(Sensor, PositionIsThatOfItsPose) {
    Sensor sensor("s", ObjectType::SegmentSensor);
    sensor.setPose({{4, 5, 6}, {}});
    EXPECT_EQ(sensor.getPosition(), (vrn::rob::PosTemplate<double>{4, 5, 6}));
    EXPECT_TRUE(sensor.asType(ObjectType::Sensor));
    EXPECT_THROW(Sensor("s", ObjectType::Part), std::invalid_argument);
}

}  // namespace
