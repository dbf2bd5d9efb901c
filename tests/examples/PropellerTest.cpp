#include "examples/cell/Propeller.h"

#include <gtest/gtest.h>
#include <BRepClass3d_SolidClassifier.hxx>
#include <gp_Ax1.hxx>
#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>

#include <cmath>
#include <numbers>

#include "tests/examples/ShapeFacts.h"

namespace vrn::examples {
namespace {

constexpr int rows = 5, places = 9;

const PaintedBody& Made() {
    static const PaintedBody body = MakePropeller({});
    return body;
}

TEST(Propeller, IsOneSoundSolid) {
    EXPECT_EQ(Made().shape.ShapeType(), TopAbs_SOLID);
    EXPECT_TRUE(test::IsSound(Made().shape));
    EXPECT_GT(test::VolumeOf(Made().shape), 5e6);
}

TEST(Propeller, MachinedFacesAreBrighterThanTheCasting) {
    // Two ends of the hub and its bore.
    EXPECT_EQ(Made().faceColours.size(), 3u);
    for (const auto& [face, colour] : Made().faceColours) EXPECT_NE(colour, Made().colour);
}

TEST(Propeller, EachBladeHasItsRows) {
    const Propeller propeller;
    for (int blade = 0; blade < propeller.blades; ++blade) {
        const std::vector<SurfaceRow> made = RowsOnBlade(propeller, blade, rows, places);
        ASSERT_EQ(made.size(), static_cast<std::size_t>(rows));
        for (const SurfaceRow& row : made) EXPECT_EQ(row.size(), static_cast<std::size_t>(places));
    }
}

TEST(Propeller, PlacesLieOnTheSurfaceAndTheirNormalsLeadOut) {
    for (const SurfaceRow& row : RowsOnBlade({}, 1, rows, places)) {
        for (const SurfacePlace& place : row) {
            EXPECT_LT(test::DistanceToSurface(Made().shape, place.point), 1e-3);
            const gp_Vec out(place.normal);
            EXPECT_GT(place.normal.Z(), 0);
            // A millimetre along the normal leads straight away from the surface, and back into it.
            const gp_Pnt above = place.point.Translated(out), below = place.point.Translated(-out);
            EXPECT_NEAR(test::DistanceToSurface(Made().shape, above), 1, 0.01);
            EXPECT_FALSE(test::IsInside(Made().shape, above));
            EXPECT_TRUE(test::IsInside(Made().shape, below));
        }
    }
}

TEST(Propeller, RowsRunAlongTheirPlacesSquareToTheNormals) {
    for (const SurfaceRow& row : RowsOnBlade({}, 0, rows, 40)) {
        for (std::size_t i = 0; i + 1 < row.size(); ++i) {
            EXPECT_NEAR(row[i].along * row[i].normal, 0, 1e-9);
            const gp_Vec step(row[i].point, row[i + 1].point);
            EXPECT_GT(step * gp_Vec(row[i].along), 0.9 * step.Magnitude());
            EXPECT_GT(step.Magnitude(), 0.1);
        }
    }
}

TEST(Propeller, BladesAreAlike) {
    const Propeller propeller;
    const std::vector<SurfaceRow> first = RowsOnBlade(propeller, 0, 2, 2);
    const std::vector<SurfaceRow> third = RowsOnBlade(propeller, 2, 2, 2);
    gp_Trsf half;
    half.SetRotation(gp_Ax1({0, 0, 0}, {0, 0, 1}), std::numbers::pi);
    EXPECT_NEAR(first[1][1].point.Transformed(half).Distance(third[1][1].point), 0, 1e-9);
}

}  // namespace
}  // namespace vrn::examples
