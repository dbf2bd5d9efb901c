// What previews and measures look like: pixels read back where the picture is the rule.

#include <gmock/gmock.h>
#include <Bnd_Box.hxx>
#include <BRepBndLib.hxx>
#include <gp_Pnt.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Wire.hxx>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>

#include "suite/geom/ShapeTools.h"
#include "suite/rob/ShapeTypes.h"
#include "tests/visual/preview/PreviewFixture.h"
#include "visual/preview/PreviewVisualsHelper.h"

namespace vrn::test {

using headless::Picture;
using headless::Rgba;
using visual::PreviewVisualsHelper;
using Pos = rob::PosTemplate<float>;

namespace {

constexpr double pi = std::numbers::pi;

int Distance(const Rgba& a, const Rgba& b) {
    return std::abs(a.r - b.r) + std::abs(a.g - b.g) + std::abs(a.b - b.b);
}

bool IsRed(const Rgba& c) { return c.r > c.g + 60 && c.r > c.b + 60; }
bool IsGreen(const Rgba& c) { return c.g > c.r + 50 && c.g > c.b + 40; }
bool IsBlue(const Rgba& c) { return c.b > c.r + 60 && c.b > c.g + 40; }
bool IsOrange(const Rgba& c) { return c.r > c.b + 60 && c.g > c.b + 20; }
bool IsBright(const Rgba& c) { return c.r > 200 && c.g > 200 && c.b > 180; }

/// The face of a box that the point lies on.
TopoDS_Face FaceAt(const TopoDS_Shape& box, const gp_Pnt& point) {
    for (TopExp_Explorer it(box, TopAbs_FACE); it.More(); it.Next()) {
        Bnd_Box bounds;
        BRepBndLib::Add(it.Current(), bounds, /*useTriangulation=*/false);
        if (!bounds.IsOut(point)) return TopoDS::Face(it.Current());
    }
    throw std::logic_error("the point lies on no face of the box");
}

}  // namespace

/// A box of 300 by 200 by 120 from the origin, seen from the front, the right and above.
class PreviewPictures : public PreviewTest {
protected:
    void SetUp() override {
        PreviewTest::SetUp();
        scene().setFrameVisualVisible(false);
        box = MeshedBox(300, 200, 120);
        solid = show(box);
        known.insert(solid);
        lookFrom({620, -760, 560}, {170, 60, 60});
    }
    void TearDown() override {
        scene().setFrameVisualVisible(true);
        PreviewTest::TearDown();
    }
    /// Whether a pixel within two of where the point is drawn is of that colour.
    static bool seen(const Picture& picture, const Pos& world, bool (*isColour)(const Rgba&)) {
        const auto pixel = project(world);
        for (int dy = -2; dy <= 2; ++dy)
            for (int dx = -2; dx <= 2; ++dx)
                if (isColour(
                        picture.at(static_cast<int>(pixel.x) + dx, static_cast<int>(pixel.y) + dy)))
                    return true;
        return false;
    }
    static Rgba at(const Picture& picture, const Pos& world) {
        const auto pixel = project(world);
        return picture.at(static_cast<int>(pixel.x), static_cast<int>(pixel.y));
    }
    /// Writes the picture where the environment variable VRN_KEEP_PICTURES names a folder.
    static void keep(const Picture& picture, const std::string& name) {
        if (const char* kept = std::getenv("VRN_KEEP_PICTURES"))
            picture.savePng(std::filesystem::path(kept) / (name + ".png"));
    }

    TopoDS_Shape box;
    visual::SolidVisual* solid = nullptr;
};

TEST_F(PreviewPictures, PreviewsStandOutFromTheBodyAndTheCopyIsSeenThrough) {
    const Picture bare = frame();
    const TopoDS_Face top = FaceAt(box, {150, 100, 120});
    scene().previewWire(TopoDS::Wire(TopExp_Explorer(top, TopAbs_WIRE).Current()), {});
    scene().previewFace(FaceAt(box, {150, 0, 60}), solid->id);
    std::vector<gp_Pnt> points{{250, 50, 120}, {250, 100, 120}, {250, 150, 120}};
    scene().previewPoints(&points, solid->id, {1, 0, 0});
    scene().createPreviewedJointVisual();
    scene().createPreviewedFrameVisual(1, /*plain=*/true);
    scene().setPreviewedFrameVisible(1, {{-120, -60, 0}, {}});
    scene().showCopiedVisual(solid->id, {{330, 60, 60}, {}});
    geometry::PointList curve{{{{20, 40, 121}, {60, 160, 121}, {120, 40, 121}, {180, 160, 121}}}};
    scene().addPreviewCurvesWithDirection(solid->id, &curve, {0, 0, 1});
    pump();
    scene().setPreviewedJointVisible({-90, 220, 0}, {-90, 220, 260});
    const Picture picture = frame();
    keep(picture, "prev-previews");

    EXPECT_TRUE(seen(picture, {100, 0, 120}, IsGreen));  // the wire
    EXPECT_TRUE(seen(picture, {100, 0, 60}, IsGreen));   // the face
    EXPECT_FALSE(IsGreen(at(picture, {300, 100, 60})));  // not the one beside it
    EXPECT_TRUE(seen(picture, {250, 100, 120}, IsRed));
    EXPECT_TRUE(seen(picture, {90, 100, 121}, IsGreen));  // half way along the curve
    EXPECT_TRUE(seen(picture, {-90, 220, 200}, IsOrange));
    EXPECT_TRUE(seen(picture, {-120 + 20, -60, 0}, IsRed));  // the frame's x axis
    // The copy veils what stands behind it.
    const Pos behind{299, 190, 118};
    EXPECT_GT(Distance(at(bare, behind), at(picture, behind)), 10);

    scene().deleteCopiedVisual();
    scene().removePreviewedFrameVisual(1);
    scene().removePreviewedJointVisual();
    scene().removePreviewCurves();
    scene().removePreviewedPoints();
    scene().removePreviewFaces();
    EXPECT_EQ(frame().getPixels(), bare.getPixels());
}

TEST_F(PreviewPictures, TargetsAreSeenAsFrames) {
    const Picture bare = frame();
    scene().previewTargets({{{150, -80, 0}, {}}, {{-60, 100, 160}, {}}});
    const Picture picture = frame();
    keep(picture, "prev-targets");
    EXPECT_GT(Distance(at(bare, {150, -80, 0}), at(picture, {150, -80, 0})), 40);
    EXPECT_GT(Distance(at(bare, {-60, 100, 160}), at(picture, {-60, 100, 160})), 40);
}

TEST_F(PreviewPictures, MeasuresAreBrightLinesAndTheDirectionsOfAFaceLieOnIt) {
    const Picture bare = frame();
    scene().createDistanceVisual({0, -40, 120}, {300, -40, 120});
    scene().createAngleVisual({330, 0, 0}, {330, 0, 150}, {330, 200, 0}, pi / 2);
    scene().createDiameterVisual(rob::TPCircle({80, 60, 121}, {40, 100, 121}, {80, 140, 121}));
    scene().drawPolyline({{-40, 0, 0}, {-40, 200, 0}, {-40, 200, 150}}, 0, /*withArrow=*/true);
    scene().showUVIndicatorVisual(FaceAt(box, {150, 100, 120}));
    pump();
    const Picture picture = frame();
    keep(picture, "prev-measures");

    EXPECT_TRUE(seen(picture, {150, -40, 120}, IsBright));
    EXPECT_TRUE(seen(picture, {330, 0, 75}, IsBright));
    const float middle = 150 * std::numbers::sqrt2_v<float> / 2;
    EXPECT_TRUE(seen(picture, {330, middle, middle}, IsBright));  // on the arc
    EXPECT_TRUE(seen(picture, {40, 100, 121}, IsBright));
    EXPECT_TRUE(seen(picture, {-40, 200, 140}, IsGreen));
    EXPECT_TRUE(seen(picture, {180, 100, 120}, IsOrange));  // along U
    EXPECT_TRUE(seen(picture, {150, 130, 120}, IsOrange));  // along V

    lookFrom({170, 20, 330}, {170, 110, 120});
    const Picture near = frame();
    keep(near, "prev-uv");
    EXPECT_TRUE(seen(near, {190, 100, 120}, IsOrange));
    lookFrom({620, -760, 560}, {170, 60, 60});
    scene().removeDimensionVisual();
    scene().removePolylines();
    scene().hideUVIndicatorVisual();
    EXPECT_EQ(frame().getPixels(), bare.getPixels());
}

TEST_F(PreviewPictures, AFramePickedByThreePointsHasAColourForEachSide) {
    const Picture bare = frame();
    PreviewVisualsHelper* helper = PreviewVisualsHelper::Get();
    helper->doAddSelectFramePoint1({60, 40, 121});
    helper->doAddSelectFramePoint2({260, 40, 121});
    helper->doAddSelectFramePoint3({60, 160, 121});
    helper->doAddPreviewUserFrame({{-80, 0, 0}, {}});
    const Picture picture = frame();
    keep(picture, "prev-picking");
    EXPECT_TRUE(seen(picture, {160, 40, 121}, IsRed));
    EXPECT_TRUE(seen(picture, {160, 100, 121}, IsGreen));
    EXPECT_TRUE(seen(picture, {60, 100, 121}, IsBlue));
    EXPECT_TRUE(seen(picture, {260, 40, 140}, IsBright));  // upright, out of the face
    EXPECT_TRUE(seen(picture, {-60, 0, 0}, IsBright));
    helper->doRemoveAllVisuals();
    EXPECT_EQ(frame().getPixels(), bare.getPixels());
}

}  // namespace vrn::test
