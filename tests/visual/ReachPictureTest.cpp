#include <algorithm>
#include <any>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "suite/sdf/ObjectType.h"
#include "suite/smart/SmartComponent.h"
#include "tests/visual/StationFixture.h"
#include "visual/station/SensorVisual.h"

namespace vrn::test {

using headless::Picture;
using headless::Rgba;
using sdf::ObjectType;
using smartcomp::Sensor;
using Pos = rob::PosTemplate<float>;
using Xyz = rob::XYZTemplate<double>;

namespace {

int Distance(const Rgba& a, const Rgba& b) {
    return std::abs(a.r - b.r) + std::abs(a.g - b.g) + std::abs(a.b - b.b);
}

bool IsRed(const Rgba& pixel) { return pixel.r > pixel.g + 60 && pixel.r > pixel.b + 60; }

}  // namespace

/// A robot's reach in both forms, a plane, a thin and a thick segment sensor, seen from the front.
class ReachPictures : public StationVisuals {
protected:
    void SetUp() override {
        StationVisuals::SetUp();
        scene().setFrameVisualVisible(false);
        lookFrom({0, -1500, 350}, {0, 0, 200});
        robot = model.make<layout::Manipulator>("robot", "kuka");
        addLink(robot, "base");
        scene().addMechanism(robot, /*buildChildren=*/true);
        pump();
    }
    void TearDown() override {
        scene().setFrameVisualVisible(true);
        StationVisuals::TearDown();
    }
    Sensor* addSensor(ObjectType type, const Pos& at, const Xyz& second, const std::any& third) {
        auto* sensor = model.make<Sensor>("sensor", type);
        sensor->setPose({{at.x, at.y, at.z}, {}});
        sensor->setProperty(1, Xyz{});
        sensor->setProperty(2, second);
        sensor->setProperty(3, third);
        scene().addSmartComponent(sensor);
        pump();
        visualOf(sensor)->resetAppearance();  // without its frame
        return sensor;
    }
    /// A half ring through (radius, 0, 0) that stands on the robot's axis.
    void addEnvelope(double radius) {
        std::vector<rob::PosTemplate<double>> points;
        std::vector<rob::DirTemplate<double>> normals;
        for (int i = 0; i <= 24; ++i) {
            const double angle = std::numbers::pi * (i / 24.0 - 0.5);
            normals.emplace_back(std::cos(angle), 0, std::sin(angle));
            points.emplace_back(radius * std::cos(angle), 0, 200 + radius * std::sin(angle));
        }
        const float half = std::numbers::pi_v<float>;
        scene().addWorkEnvelopeVisual(robot->id, robot->id, points, normals, -half, half);
        pump();
    }
    static Rgba at(const Picture& picture, const Pos& point) {
        const auto pixel = project(point);
        return picture.at(static_cast<int>(pixel.x), static_cast<int>(pixel.y));
    }
    /// The largest change in the pixels round a point.
    static int change(const Picture& before, const Picture& after, const Pos& point) {
        const auto pixel = project(point);
        int most = 0;
        for (int dy = -2; dy <= 2; ++dy)
            for (int dx = -2; dx <= 2; ++dx) {
                const int x = static_cast<int>(pixel.x) + dx, y = static_cast<int>(pixel.y) + dy;
                most = std::max(most, Distance(before.at(x, y), after.at(x, y)));
            }
        return most;
    }

    layout::Manipulator* robot = nullptr;
};

TEST_F(ReachPictures, SensorsAndReachAreSeenWhereTheyAre) {
    const Picture before = frame();
    addSensor(ObjectType::PlaneSensor, {-500, 0, 50}, Xyz{200, 0, 0}, Xyz{0, 0, 250});
    addSensor(ObjectType::SegmentSensor, {350, 0, 50}, Xyz{0, 0, 250}, 15.0);
    addSensor(ObjectType::SegmentSensor, {450, 0, 50}, Xyz{0, 0, 250}, 0.4);
    addEnvelope(400);
    const Picture outlined = frame();
    EXPECT_TRUE(IsRed(at(outlined, {-400, 0, 175})));  // in the plane
    EXPECT_TRUE(IsRed(at(outlined, {350, -15, 175})));
    EXPECT_GT(change(before, outlined, {450, 0, 175}), 40);
    EXPECT_GT(change(before, outlined, {282.84f, 0, 482.84f}), 40);  // on the outline
    EXPECT_EQ(change(before, outlined, {-282.84f, 0, 482.84f}), 0);  // it is one plane
    EXPECT_EQ(change(before, outlined, {0, -200, 400}), 0);          // the surface is hidden

    scene().updateWorkEnvelopeVisual(robot->id, /*show2D=*/true, /*show3D=*/true);
    const Picture swept = frame();
    EXPECT_GT(change(outlined, swept, {0, -200, 400}), 5);
    // What lies inside is seen through it: the robot keeps its colour, a little veiled.
    const Rgba bare = at(outlined, {0, -50, 0}), veiled = at(swept, {0, -50, 0});
    EXPECT_GT(Distance(bare, veiled), 5);
    EXPECT_LT(Distance(bare, veiled), 250);
    EXPECT_GT(veiled.r, veiled.b);  // still the orange of its maker
    if (const char* folder = std::getenv("VRN_KEEP_PICTURES"))
        swept.savePng(std::filesystem::path(folder) / "reach.png");
}

}  // namespace vrn::test
