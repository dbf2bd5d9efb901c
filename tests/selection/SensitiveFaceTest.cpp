#include "selection/SensitiveFace.h"

#include <gtest/gtest.h>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <gp_Trsf.hxx>
#include <Standard_OutOfRange.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>

#include <cmath>
#include <limits>

#include "selection/Ray.h"
#include "selection/SensitiveTriangle.h"

namespace vrn::selection {

namespace {

using visual::Ray;
using Pos = rob::PosTemplate<float>;
using Line = rob::LineTemplate<float>;
using Triangle = rob::TriangleTemplate<float>;

/// The top of a box of 100 by 100 by 50 at the origin.
TopoDS_Face TopFace(bool meshed = true) {
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(100, 100, 50).Shape();
    if (meshed) BRepMesh_IncrementalMesh(box, 1.0);
    TopoDS_Face last;
    for (TopExp_Explorer faces(box, TopAbs_FACE); faces.More(); faces.Next())
        last = TopoDS::Face(faces.Current());
    return last;
}

const Ray down{{30, 60, 200}, {0, 0, -1}};
const Line through{{30, 60, 200}, {30, 60, -200}};
const Triangle across{{30, 60, 200}, {30, 60, -200}, {31, 60, 200}};

}  // namespace

TEST(SensitiveFaces, AFaceIsHitAndTellsItself) {
    const TopoDS_Face face = TopFace();
    SensitiveFace sensitive(face, 6);
    EXPECT_EQ(sensitive.faceIndex, 6);
    EXPECT_EQ(sensitive.primitives.size(), 2u);
    const Result hit = sensitive.intersect(down);
    ASSERT_TRUE(hit.hit);
    EXPECT_NEAR((hit.position - Pos{30, 60, 50}).length(), 0, 1e-4);
    EXPECT_FLOAT_EQ(hit.distance, 150);
    EXPECT_TRUE(hit.face.IsSame(face));
    EXPECT_TRUE(sensitive.intersect(through).face.IsSame(face));
    EXPECT_FLOAT_EQ(sensitive.intersect(through).distance, 0.375f);
    EXPECT_TRUE(sensitive.intersect(across).hit);
}

TEST(SensitiveFaces, TheFaceIsToldByAMissToo) {
    SensitiveFace sensitive(TopFace(), 6);
    const Result miss = sensitive.intersect(Ray{{500, 0, 200}, {0, 0, -1}});
    EXPECT_FALSE(miss.hit);
    EXPECT_FALSE(miss.face.IsNull());
}

TEST(SensitiveFaces, AFaceThatWasNeverMeshedIsNeverHitAndHasTheEmptyBox) {
    for (const TopoDS_Face& face : {TopFace(false), TopoDS_Face()}) {
        SensitiveFace sensitive(face, 1);
        EXPECT_FALSE(sensitive.box.isValid());
        EXPECT_FALSE(sensitive.intersect(down).hit);
        EXPECT_TRUE(sensitive.intersect(down).face.IsNull());
        EXPECT_FALSE(sensitive.intersect(through).hit);
        EXPECT_FALSE(sensitive.intersect(across).hit);
    }
}

TEST(SensitiveFaces, TrianglesAreNumberedFromOneAndTheirBoxesAreAUnitWider) {
    SensitiveFace sensitive(TopFace(), 6);
    EXPECT_EQ(static_cast<SensitiveIndexedTriangle*>(sensitive.primitives[0])->index, 1u);
    EXPECT_EQ(static_cast<SensitiveIndexedTriangle*>(sensitive.primitives[1])->index, 2u);
    EXPECT_EQ(sensitive.box.min, (Pos{-1, -1, 49}));
    EXPECT_EQ(sensitive.box.max, (Pos{101, 101, 51}));
}

TEST(SensitiveFaces, VerticesComeThirdFirstAndANumberBeyondIsRefused) {
    SensitiveFace sensitive(TopFace(), 6);
    int a = 0, b = 0, c = 0;
    sensitive.triangulation->Triangle(1).Get(a, b, c);
    SensitiveIndexedTriangle first(1), none(0), beyond(3);
    const auto node = [&](int i) {
        const gp_Pnt p = sensitive.triangulation->Node(i);
        return Pos(rob::PosTemplate<double>(p.X(), p.Y(), p.Z()));
    };
    EXPECT_EQ(sensitive.getTriangleVertices(&first), (Triangle{node(c), node(b), node(a)}));
    EXPECT_THROW((void)sensitive.getTriangleVertices(&none), Standard_OutOfRange);
    EXPECT_THROW((void)sensitive.getTriangleVertices(&beyond), Standard_OutOfRange);
}

TEST(SensitiveFaces, NodesInSinglePrecisionAreReadAlike) {
    const TopoDS_Face face = TopFace();
    TopLoc_Location location;
    const auto wide = BRep_Tool::Triangulation(face, location);
    const opencascade::handle<Poly_Triangulation> narrow = new Poly_Triangulation;
    narrow->SetDoublePrecision(false);
    narrow->ResizeNodes(wide->NbNodes(), false);
    narrow->ResizeTriangles(wide->NbTriangles(), false);
    for (int i = 1; i <= wide->NbNodes(); ++i) narrow->SetNode(i, wide->Node(i));
    for (int i = 1; i <= wide->NbTriangles(); ++i) narrow->SetTriangle(i, wide->Triangle(i));
    BRep_Builder().UpdateFace(face, narrow);
    SensitiveFace sensitive(face, 6);
    EXPECT_FALSE(sensitive.triangulation->IsDoublePrecision());
    EXPECT_TRUE(sensitive.intersect(down).hit);
}

TEST(SensitiveFaces, ATriangleWithANodeThatIsNoNumberIsAbsentAndTheRestWorks) {
    for (const double broken : {std::nan(""), std::numeric_limits<double>::infinity(), 1e39}) {
        const TopoDS_Face face = TopFace();
        TopLoc_Location location;
        const auto triangulation = BRep_Tool::Triangulation(face, location);
        // A node of the first triangle that the second does not have.
        int a = 0, b = 0, c = 0, d = 0, e = 0, f = 0;
        triangulation->Triangle(1).Get(a, b, c);
        triangulation->Triangle(2).Get(d, e, f);
        for (const int node : {a, b, c})
            if (node != d && node != e && node != f)
                triangulation->SetNode(node, gp_Pnt(broken, 0, 50));
        SensitiveFace sensitive(face, 6);
        ASSERT_EQ(sensitive.primitives.size(), 1u);
        EXPECT_EQ(static_cast<SensitiveIndexedTriangle*>(sensitive.primitives[0])->index, 2u);
        EXPECT_TRUE(sensitive.box.isValid());
        EXPECT_LT(sensitive.box.max.x, 102);
        int hits = 0;
        for (float x = 5; x < 100; x += 10)
            hits += sensitive.intersect(Ray{{x, 100 - x + 3, 200}, {0, 0, -1}}).hit ||
                    sensitive.intersect(Ray{{x, x + 3, 200}, {0, 0, -1}}).hit;
        EXPECT_GT(hits, 0);
    }
}

TEST(SensitiveFaces, ATriangleThatNamesANodeBeyondIsRefused) {
    for (const int corner : {0, 4}) {
        SCOPED_TRACE(corner);
        const Handle(Poly_Triangulation) mesh = new Poly_Triangulation(3, 1, false);
        mesh->SetTriangle(1, Poly_Triangle(1, 2, corner));
        TopoDS_Face face;
        BRep_Builder().MakeFace(face, mesh);
        EXPECT_THROW(SensitiveFace(face, 1), Standard_OutOfRange);
    }
}

TEST(SensitiveFaces, ALocationIsAppliedToTheBoxAndToHits) {
    gp_Trsf move;
    move.SetRotation(gp_Ax1(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1)), std::acos(-1.0) / 2);
    move.SetTranslationPart(gp_Vec(1000, 0, 0));
    const TopoDS_Face face = TopoDS::Face(TopFace().Moved(TopLoc_Location(move)));
    SensitiveFace sensitive(face, 6);
    EXPECT_TRUE(sensitive.hasLocation);
    EXPECT_TRUE(sensitive.box.isPointInside(940, 30, 50));
    EXPECT_FALSE(sensitive.box.isPointInside(30, 60, 50));
    const Result hit = sensitive.intersect(Ray{{940, 30, 200}, {0, 0, -1}});
    ASSERT_TRUE(hit.hit);
    EXPECT_NEAR((hit.position - Pos{940, 30, 50}).length(), 0, 1e-2);
    EXPECT_FALSE(sensitive.intersect(down).hit);
    EXPECT_FALSE(SensitiveFace(TopFace(), 6).hasLocation);
}

}  // namespace vrn::selection
