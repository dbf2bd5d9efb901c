#include <algorithm>
#include <any>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "suite/sdf/ObjectType.h"
#include "suite/smart/SmartComponent.h"
#include "tests/support/GoldenPicture.h"
#include "tests/visual/task/ProgramFixture.h"
#include "visual/task/TcpTraceVisual.h"

namespace vrn::test {

namespace {

using headless::Picture;
using Xyz = rob::XYZTemplate<double>;

constexpr double pi = std::numbers::pi;

/// A profile in the plane of x and z, walked with its outside on the left.
struct Profile {
    std::vector<rob::PosTemplate<double>> points;

    /// About (0, 0, z), from one angle to another, in degrees from the x axis.
    void addArc(double radius, double z, double from, double to) {
        constexpr int steps = 24;
        for (int i = 0; i <= steps; ++i) {
            const double angle = (from + (to - from) * i / steps) * pi / 180;
            points.emplace_back(radius * std::cos(angle), 0, z + radius * std::sin(angle));
        }
    }
    /// One a point, across the way from the point before to the one behind.
    [[nodiscard]] std::vector<rob::DirTemplate<double>> normals() const {
        std::vector<rob::DirTemplate<double>> found;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const auto along =
                points[std::min(i + 1, points.size() - 1)] - points[i > 0 ? i - 1 : 0];
            found.emplace_back(rob::Vec3Template<double>{along.z, 0, -along.x}.normalized());
        }
        return found;
    }
};

}  // namespace

/// What belongs to a robot's program, on a plate as a user sees it, held against pictures that were
/// looked at.
class ProgramGoldens : public Programs {
protected:
    void SetUp() override {
        Programs::SetUp();
        scene().setFrameVisualVisible(false);
        scene().settings.drawPathArrow = true;
        scene().settings.drawTargetVisual = true;
        scene().settings.robTargetFrameSize = 30;
        scene().settings.jointTargetFrameSize = 30;
        pump();
    }
    void TearDown() override {
        scene().setFrameVisualVisible(true);
        Programs::TearDown();
    }
    /// Its upper side is the ground of what follows: programs run along surfaces.
    void addPlate() { scene().addPart(makeBoxPart("plate", {}, {-320, -220, -30}, {320, 220, 0})); }
    /// Straight, along arcs that lie and stand, over the air, and by a target in joint values.
    void addProgram() {
        addLinear({-260, -160, 0});
        addLinear({-40, -160, 0});
        addCircular({60, -60, 0}, {-40, 40, 0});
        addJoint({-260, 40, 120});
        addLinear({-260, 160, 0});
        addLinear({0, 160, 0});
        addCircular({70, 160, 70}, {140, 160, 0});
        addJoint({260, 160, 60});
        addLinear({260, 40, 0});
        addJointTarget({260, -60, 60});
        addLinear({260, -160, 0});
        addLinear({140, -160, 0});
        showPath();
    }
    void addSensor(sdf::ObjectType type, const Point& at, const Xyz& second,
                   const std::any& third) {
        auto* sensor = model.make<smartcomp::Sensor>("sensor", type);
        sensor->setPose({at, {}});
        sensor->setProperty(1, Xyz{});
        sensor->setProperty(2, second);
        sensor->setProperty(3, third);
        scene().addSmartComponent(sensor);
        pump();
        visualOf(sensor)->resetAppearance();  // without its frame
    }
    static void expectAsKept(const std::string& name, const PictureTolerance& tolerance = {}) {
        const std::filesystem::path golden =
            std::filesystem::path(VRN_SOURCE_FOLDER) / "tests/visual/golden" / (name + ".png");
        EXPECT_EQ(CompareWithGolden(frame(), golden, VRN_GOLDEN_DIFFERENCES, tolerance), "");
    }
};

TEST_F(ProgramGoldens, APathWithEveryKindOfSegmentIsAsKept) {
    lookFrom({330, -560, 520}, {0, -10, 0});
    addPlate();
    addProgram();
    // The gap between two dashes is a dozen pixels.
    expectAsKept("program_path", {.tileShare = 0.06});
}

TEST_F(ProgramGoldens, APlaneAThinAndAThickSegmentSensorAreAsKept) {
    lookFrom({330, -560, 520}, {0, -10, 40});
    addPlate();
    addSensor(sdf::ObjectType::PlaneSensor, {-200, -150, 0}, Xyz{0, 300, 0}, Xyz{0, 0, 180});
    addSensor(sdf::ObjectType::SegmentSensor, {-60, -150, 80}, Xyz{0, 300, 0}, 0.0);
    addSensor(sdf::ObjectType::SegmentSensor, {120, -150, 80}, Xyz{0, 300, 0}, 12.0);
    expectAsKept("program_sensors");
}

TEST_F(ProgramGoldens, ARobotsReachInBothFormsIsAsKept) {
    lookFrom({1900, -2600, 1900}, {0, 0, 300});
    auto* robot = model.make<layout::Manipulator>("robot", "kuka");
    auto* column = model.make<layout::Link>("column");
    robot->addLink(*column);
    column->addChild(*makeBoxPart("column", {}, {-110, -110, 0}, {110, 110, 400}));
    column->addChild(*makeBoxPart("arm", {}, {-60, -60, 400}, {500, 60, 500}));
    scene().addMechanism(robot, /*buildChildren=*/true);
    Profile profile;
    profile.addArc(850, 400, -50, 110);
    profile.addArc(330, 400, 110, -50);
    scene().addWorkEnvelopeVisual(robot->id, robot->id, profile.points, profile.normals(),
                                  static_cast<float>(-0.75 * pi), static_cast<float>(0.25 * pi));
    scene().updateWorkEnvelopeVisual(robot->id, /*show2D=*/true, /*show3D=*/true);
    // A veil changes what lies behind it by little.
    expectAsKept("program_reach", {.channel = 8});
}

TEST_F(ProgramGoldens, ATraceColouredBySpeedIsAsKept) {
    lookFrom({330, -560, 520}, {0, -10, 0});
    addPlate();
    addProgram();
    // Along the first moves: slow at their ends, fast between them.
    auto* trace = new visual::TcpTraceVisual(scene().root);
    const auto lead = [trace](auto placeAt) {
        constexpr int steps = 40;
        for (int i = 0; i <= steps; ++i) {
            const double s = static_cast<double>(i) / steps;
            const auto speed = static_cast<float>(std::sin(pi * s));
            trace->addColorPoint(placeAt(s), {speed, 0.2f, 1 - speed});
        }
    };
    lead([](double s) { return Point{-260 + 220 * s, -160, 0}; });
    lead([](double s) {
        const double angle = pi * (s - 0.5);
        return Point{-40 + 100 * std::cos(angle), -60 + 100 * std::sin(angle), 0};
    });
    // What joints interpolate sags beside the dashes.
    lead([](double s) { return Point{-40 - 220 * s, 40 + 50 * std::sin(pi * s), 120 * s}; });
    expectAsKept("program_trace");
}

}  // namespace vrn::test
