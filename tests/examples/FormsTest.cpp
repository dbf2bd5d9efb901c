#include "examples/cell/Forms.h"

#include <gtest/gtest.h>
#include <Bnd_Box.hxx>
#include <BRepBndLib.hxx>

#include <numbers>
#include <stdexcept>

#include "tests/examples/ShapeFacts.h"

namespace vrn::examples {
namespace {

using test::IsSound;
using test::VolumeOf;

constexpr double pi = std::numbers::pi;

Bnd_Box BoundsOf(const TopoDS_Shape& shape) {
    Bnd_Box box;
    BRepBndLib::AddOptimal(shape, box, /*useTriangulation=*/false, /*useShapeTolerance=*/false);
    return box;
}

TEST(CellForms, BandNeedsTwoDiscs) {
    EXPECT_THROW((void)PlateAlongZ({}, 0, 1), std::invalid_argument);
    EXPECT_THROW((void)PlateAlongZ({{0, 0, 5}}, 0, 1), std::invalid_argument);
}

TEST(CellForms, DiscInsideItsNeighbourIsRefused) {
    EXPECT_THROW((void)PlateAlongZ({{0, 0, 50}, {10, 0, 5}}, 0, 1), std::invalid_argument);
    EXPECT_THROW((void)PlateAlongZ({{0, 0, 50}, {0, 0, 50}}, 0, 1), std::invalid_argument);
}

TEST(CellForms, BandOfTwoEqualDiscsIsASlot) {
    const TopoDS_Shape plate = PlateAlongZ({{0, 0, 10}, {30, 0, 10}}, 5, 9);
    EXPECT_TRUE(IsSound(plate));
    EXPECT_NEAR(VolumeOf(plate), 4 * (30 * 20 + pi * 100), 1e-6);
    EXPECT_NEAR(BoundsOf(plate).CornerMin().Z(), 5, 1e-6);
    EXPECT_NEAR(BoundsOf(plate).CornerMax().Z(), 9, 1e-6);
}

TEST(CellForms, BandOfFourDiscsIsARoundedSquare) {
    const TopoDS_Shape plate = PlateAlongZ({{0, 0, 5}, {40, 0, 5}, {40, 40, 5}, {0, 40, 5}}, 0, 2);
    EXPECT_TRUE(IsSound(plate));
    EXPECT_NEAR(VolumeOf(plate), 2 * (50.0 * 50 - (4 - pi) * 25), 1e-6);
}

TEST(CellForms, PlateAlongYStandsInTheXzPlane) {
    const TopoDS_Shape plate = PlateAlongY({{0, 0, 10}, {0, 100, 5}}, -7, 3);
    EXPECT_TRUE(IsSound(plate));
    EXPECT_GT(VolumeOf(plate), 0);
    const Bnd_Box box = BoundsOf(plate);
    EXPECT_NEAR(box.CornerMin().Z(), -10, 1e-6);
    EXPECT_NEAR(box.CornerMax().Z(), 105, 1e-6);
    EXPECT_NEAR(box.CornerMin().Y(), -7, 1e-6);
    EXPECT_NEAR(box.CornerMax().Y(), 3, 1e-6);
    EXPECT_NEAR(box.CornerMax().X(), 10, 1e-6);
}

TEST(CellForms, RoundingTakesMaterialOffBothFaces) {
    const std::vector<Disc> discs{{0, 0, 20}, {60, 0, 12}};
    const TopoDS_Shape sharp = PlateAlongY(discs, 0, 20);
    const TopoDS_Shape rounded = RoundedPlateAlongY(discs, 0, 20, 4);
    EXPECT_TRUE(IsSound(rounded));
    EXPECT_LT(VolumeOf(rounded), VolumeOf(sharp));
    // The same at both faces: the middle of gravity stays.
    EXPECT_NEAR(BoundsOf(rounded).CornerMin().Y(), 0, 1e-6);
    EXPECT_NEAR(BoundsOf(rounded).CornerMax().Y(), 20, 1e-6);
    EXPECT_TRUE(test::IsInside(rounded, {0, 10, 19.5}));
    EXPECT_FALSE(test::IsInside(rounded, {0, 0.3, 19.5}));
    EXPECT_FALSE(test::IsInside(rounded, {0, 19.7, 19.5}));
}

TEST(CellForms, RingStandsRoundItsAxis) {
    const std::vector<TopoDS_Shape> ring = CylindersIn({{10, 0, 0}, {0, 0, 4}, 50, 3, 6, 30});
    ASSERT_EQ(ring.size(), 6u);
    for (const TopoDS_Shape& cylinder : ring) {
        EXPECT_NEAR(VolumeOf(cylinder), pi * 9 * 4, 1e-6);
        const Bnd_Box box = BoundsOf(cylinder);
        const gp_Pnt middle((box.CornerMin().XYZ() + box.CornerMax().XYZ()) / 2);
        EXPECT_NEAR(middle.Distance({10, 0, 2}), 50, 1e-6);
    }
}

TEST(CellForms, HoseFollowsItsPoints) {
    const std::vector<gp_Pnt> points{{0, 0, 0}, {0, 0, 100}, {60, 0, 160}, {160, 0, 160}};
    const TopoDS_Shape hose = HoseThrough(points, 8);
    EXPECT_TRUE(IsSound(hose));
    for (const gp_Pnt& p : {points[1], points[2]})
        EXPECT_NEAR(test::DistanceToSurface(hose, p), 8, 0.05);
}

TEST(CellForms, MotorIsTwoSolidsOfTheAskedSize) {
    const TopoDS_Shape motor = Motor(60, 200);
    EXPECT_TRUE(IsSound(motor));
    EXPECT_EQ(test::CountOf(motor, TopAbs_SOLID), 2);
    EXPECT_GT(test::LeastVolume(motor), 0);
    EXPECT_NEAR(BoundsOf(motor).CornerMax().Z(), 200, 1e-6);
    EXPECT_NEAR(BoundsOf(motor).CornerMin().X(), -60, 1e-6);
}

TEST(CellForms, StandingOnItsHeadIsAHalfTurn) {
    const TopoDS_Shape stood = Stood(CylinderAt({0, 0, 0}, {0, 0, 30}, 5), {1, 2, 3}, {0, 0, -1});
    EXPECT_NEAR(BoundsOf(stood).CornerMin().Z(), -27, 1e-6);
    EXPECT_NEAR(BoundsOf(stood).CornerMax().Z(), 3, 1e-6);
    EXPECT_GT(VolumeOf(stood), 0);
}

}  // namespace
}  // namespace vrn::examples
