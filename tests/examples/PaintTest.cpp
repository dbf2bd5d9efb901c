#include "examples/cell/Paint.h"

#include <gtest/gtest.h>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>

#include <cmath>
#include <numbers>
#include <stdexcept>

#include "examples/cell/Forms.h"
#include "tests/examples/ShapeFacts.h"

namespace vrn::examples {
namespace {

TEST(CellPaint, BodyWithoutASolidIsRefused) {
    EXPECT_THROW((void)Painted("none", {}), std::invalid_argument);
    EXPECT_THROW((void)Painted("empty", {{Compound({}), "#000000"}}), std::invalid_argument);
}

TEST(CellPaint, OneSolidStaysASolid) {
    const PaintedBody body = Painted("box", {{BoxAt({0, 0, 0}, 1, 2, 3), "#102030"}});
    EXPECT_EQ(body.shape.ShapeType(), TopAbs_SOLID);
    EXPECT_EQ(body.colour, "#102030");
    EXPECT_TRUE(body.faceColours.empty());
}

TEST(CellPaint, SeveralSolidsAreOneBodyAndTheLaterOnesPainted) {
    const PaintedBody body = Painted("two", {{BoxAt({0, 0, 0}, 1, 1, 1), "#111111"},
                                             {BoxAt({5, 0, 0}, 1, 1, 1), "#222222"},
                                             {BoxAt({9, 0, 0}, 1, 1, 1), "#111111"}});
    EXPECT_EQ(body.shape.ShapeType(), TopAbs_COMPSOLID);
    EXPECT_EQ(test::CountOf(body.shape, TopAbs_SOLID), 3);
    ASSERT_EQ(body.faceColours.size(), 6u);
    for (const auto& [face, colour] : body.faceColours) {
        EXPECT_GE(face, 7);
        EXPECT_LE(face, 12);
        EXPECT_EQ(colour, "#222222");
    }
}

TEST(CellPaint, FacesAreChosenByTheirLook) {
    PaintedBody body = Painted("can", {{CylinderAt({0, 0, 0}, {0, 0, 10}, 4), "#111111"}});
    EXPECT_EQ(PaintFaces(body, "#AA0000",
                         [](const FaceLook& face) {
                             return face.isCylinder && std::abs(face.radius - 4) < 1e-9;
                         }),
              1);
    EXPECT_EQ(PaintFaces(body, "#00AA00",
                         [](const FaceLook& face) {
                             return face.isPlane && face.normal.Z() > 0.9 &&
                                    std::abs(face.centre.Z() - 10) < 1e-9 &&
                                    std::abs(face.area - 16 * std::numbers::pi) < 1e-6;
                         }),
              1);
    EXPECT_EQ(PaintFaces(body, "#0000AA", [](const FaceLook&) { return false; }), 0);
    EXPECT_EQ(body.faceColours.size(), 2u);
}

TEST(CellPaint, NormalsOfAHolePointIntoIt) {
    PaintedBody tube = Painted(
        "tube",
        {{Cut(CylinderAt({0, 0, 0}, {0, 0, 10}, 8), {CylinderAt({0, 0, -1}, {0, 0, 12}, 4)}),
          "#111111"}});
    int faces = 0;
    PaintFaces(tube, "#FFFFFF", [&](const FaceLook& face) {
        if (!face.isCylinder) return false;
        ++faces;
        // The middle of the parameters of a whole cylinder lies at -X.
        EXPECT_NEAR(face.normal.X(), face.radius > 5 ? -1 : 1, 1e-9);
        return false;
    });
    EXPECT_EQ(faces, 2);
}

}  // namespace
}  // namespace vrn::examples
