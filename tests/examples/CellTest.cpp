#include "examples/cell/Cell.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <gp_Quaternion.hxx>

#include <cmath>
#include <map>
#include <numbers>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/examples/ShapeFacts.h"

namespace vrn::examples {
namespace {

class RobotCellTest : public testing::Test {
protected:
    static void SetUpTestSuite() { made = new RobotCell(MakeCell()); }
    static void TearDownTestSuite() { delete made; }

    static std::vector<PaintedBody> allBodies() {
        std::vector<PaintedBody> all;
        for (const Linkage* linkage : {&made->arm, &made->positioner}) {
            all.insert(all.end(), linkage->base.begin(), linkage->base.end());
            for (const LinkBodies& link : linkage->links)
                all.insert(all.end(), link.bodies.begin(), link.bodies.end());
        }
        all.insert(all.end(), made->tool.begin(), made->tool.end());
        all.push_back(made->workpiece);
        for (const auto* group : {&made->surroundings, &made->fence})
            for (const StandingBody& standing : *group) all.push_back(standing.body);
        return all;
    }

    static inline RobotCell* made = nullptr;
};

TEST_F(RobotCellTest, EveryBodyIsSoundAndTheRightWayOut) {
    for (const PaintedBody& body : allBodies()) {
        EXPECT_TRUE(test::IsSound(body.shape)) << body.name;
        EXPECT_GT(test::LeastVolume(body.shape), 100) << body.name;
    }
    EXPECT_TRUE(test::IsSound(made->fixture));
    EXPECT_EQ(test::CountOf(made->fixture, TopAbs_SOLID), 1);
}

TEST_F(RobotCellTest, BodiesHaveNamesOfTheirOwn) {
    std::set<std::string> names;
    for (const PaintedBody& body : allBodies())
        EXPECT_TRUE(names.insert(body.name).second) << body.name;
    EXPECT_EQ(names.size(), 23u);
}

TEST_F(RobotCellTest, ColoursAreColoursOfFacesThatExist) {
    const std::regex colourForm("#[0-9A-F]{6}");
    std::set<std::string> colours;
    int painted = 0;
    for (const PaintedBody& body : allBodies()) {
        EXPECT_TRUE(std::regex_match(body.colour, colourForm)) << body.name;
        colours.insert(body.colour);
        const int faces = test::CountOf(body.shape, TopAbs_FACE);
        for (const auto& [face, colour] : body.faceColours) {
            EXPECT_GE(face, 1) << body.name;
            EXPECT_LE(face, faces) << body.name;
            EXPECT_TRUE(std::regex_match(colour, colourForm)) << body.name;
            colours.insert(colour);
            ++painted;
        }
    }
    EXPECT_GE(colours.size(), 10u);
    EXPECT_GT(painted, 300);
}

TEST_F(RobotCellTest, CastingsOfTheArmHaveAPaintedFaceEach) {
    std::set<std::string> plain;
    for (const LinkBodies& link : made->arm.links)
        for (const PaintedBody& body : link.bodies)
            if (body.faceColours.empty()) plain.insert(body.name);
    EXPECT_THAT(plain, testing::IsEmpty());
}

TEST_F(RobotCellTest, HasAFewThousandTargets) {
    std::size_t count = 0;
    for (const BladeTargets& blade : made->blades)
        for (const auto& row : blade.rows) count += row.size();
    EXPECT_EQ(made->blades.size(), 4u);
    EXPECT_EQ(count, 3072u);
}

TEST_F(RobotCellTest, TargetsLieOnTheWorkpieceWithTheirZOutOfIt) {
    for (const BladeTargets& blade : made->blades) {
        for (const auto& row : blade.rows) {
            for (std::size_t i = 0; i < row.size(); i += 19) {
                const gp_Trsf place = blade.userFrame * blade.objectFrame * row[i];
                const gp_Pnt on(place.TranslationPart());
                EXPECT_LT(test::DistanceToSurface(made->workpiece.shape, on), 1e-3);
                const gp_Pnt above = gp_Pnt(0, 0, 1).Transformed(place);
                EXPECT_NEAR(test::DistanceToSurface(made->workpiece.shape, above), 1, 0.01);
                EXPECT_FALSE(test::IsInside(made->workpiece.shape, above));
            }
        }
    }
}

TEST_F(RobotCellTest, CutterStandsOnATargetOfItsProgram) {
    const gp_Trsf cutter = FlangePlace(*made) * made->cutterFrame;
    double nearest = 1e9, turned = 0;
    for (const auto& [name, target] : made->finishing.targets) {
        const gp_Trsf place = TargetPlace(*made, made->finishing, name);
        const double distance = (place.TranslationPart() - cutter.TranslationPart()).Modulus();
        if (distance > nearest) continue;
        nearest = distance;
        turned = (place.Inverted() * cutter).GetRotation().GetRotationAngle();
    }
    EXPECT_LT(nearest, 1e-6);
    EXPECT_NEAR(std::remainder(turned, 2 * std::numbers::pi), 0, 1e-6);
}

TEST_F(RobotCellTest, ProgramRunsRoundTheWorkpieceOnItsSurface) {
    std::set<std::string> used;
    for (const CellPath& path : made->finishing.paths)
        for (const CellMove& move : path.moves) {
            if (!move.isToJoints) used.insert(move.target);
            if (!move.via.empty()) used.insert(move.via);
        }
    int onSurface = 0;
    for (const auto& [name, target] : made->finishing.targets) {
        EXPECT_EQ(used.count(name), 1u) << name;
        const gp_Trsf place = made->finishing.userFrame * target;
        const gp_Pnt at(place.TranslationPart());
        EXPECT_FALSE(test::IsInside(made->workpiece.shape, at)) << name;
        const double height = test::DistanceToSurface(made->workpiece.shape, at);
        if (name.ends_with("above")) {
            EXPECT_GT(height, 60) << name;
            continue;
        }
        EXPECT_NEAR(height, 1, 0.05) << name;
        ++onSurface;
    }
    EXPECT_EQ(onSurface, 28);
    EXPECT_THROW((void)TargetPlace(*made, made->finishing, "no"), std::out_of_range);
}

TEST_F(RobotCellTest, ProgramHasMovesOfAllKinds) {
    std::map<std::string, int> kinds;
    for (const CellPath& path : made->finishing.paths)
        for (const CellMove& move : path.moves) {
            ++kinds[move.type];
            EXPECT_EQ(move.type == "circular", !move.via.empty()) << move.target;
            EXPECT_GT(move.speed, 0) << move.target;
        }
    EXPECT_GE(kinds["joint"], 5);
    EXPECT_GE(kinds["linear"], 15);
    EXPECT_GE(kinds["circular"], 8);
}

TEST_F(RobotCellTest, HasAPlaneAndASegmentSensor) {
    ASSERT_EQ(made->sensors.size(), 2u);
    EXPECT_FALSE(made->sensors[0].b);
    EXPECT_GE(made->sensors[0].radius, 0.5);
    EXPECT_TRUE(made->sensors[1].b);
}

TEST_F(RobotCellTest, WorkpieceSitsOnTheFixtureAndTheFixtureOnTheFaceplate) {
    EXPECT_NEAR(gp_Vec(made->fixtureOnFaceplate.TranslationPart()).Z(), 48, 1e-9);
    const gp_Trsf fixtureFromWorkpiece =
        made->fixtureOnFaceplate.Inverted() * made->workpieceOnFaceplate;
    // The hub's foot beside the bore, on the arbor's shoulder.
    const gp_Pnt foot = gp_Pnt(60, 0, 0).Transformed(fixtureFromWorkpiece);
    EXPECT_NEAR(test::DistanceToSurface(made->fixture, foot), 0, 1e-6);
    // The arbor stays inside the bore.
    for (const double z : {10.0, 120.0, 215.0}) {
        const gp_Pnt wall = gp_Pnt(0, 45, z).Transformed(fixtureFromWorkpiece);
        EXPECT_FALSE(test::IsInside(made->fixture, wall));
        EXPECT_NEAR(test::DistanceToSurface(made->fixture, wall), 1, 0.01);
    }
}

TEST_F(RobotCellTest, ScanLiesOnTheWorkpieceWithinItsNoise) {
    EXPECT_GT(made->scan.size(), 20'000u);
    EXPECT_LT(made->scan.size(), 60'000u);
    for (std::size_t i = 0; i < made->scan.size(); i += 997)
        EXPECT_LT(test::DistanceToSurface(made->workpiece.shape, made->scan[i].point), 1.5);
}

TEST_F(RobotCellTest, NothingOfTheToolIsInTheWorkpiece) {
    const gp_Trsf workpieceFromFlange =
        (FaceplatePlace(*made) * made->workpieceOnFaceplate).Inverted() * FlangePlace(*made);
    // Middle of the spindle's nose, of its motor, and the probe's tip.
    for (const gp_Pnt& p : {gp_Pnt(230, 0, 138), gp_Pnt(0, 0, 138), gp_Pnt(214, 0, 262)}) {
        const gp_Pnt inside = p.Transformed(workpieceFromFlange);
        EXPECT_FALSE(test::IsInside(made->workpiece.shape, inside));
        EXPECT_GT(test::DistanceToSurface(made->workpiece.shape, inside), 20);
    }
}

}  // namespace
}  // namespace vrn::examples
