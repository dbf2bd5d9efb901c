#include "selection/ShapeMesh.h"

#include <BRep_Tool.hxx>
#include <gp_Trsf.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <TopTools_IndexedMapOfShape.hxx>

namespace vrn::selection {

namespace {

void AppendFacePoints(const TopoDS_Face& face, std::vector<rob::PosTemplate<float>>& points) {
    if (face.IsNull()) return;
    TopLoc_Location location;
    const Handle(Poly_Triangulation) & triangulation = BRep_Tool::Triangulation(face, location);
    if (triangulation.IsNull()) return;
    const bool moved = !location.IsIdentity();
    const gp_Trsf move = moved ? location.Transformation() : gp_Trsf();
    for (int i = 1; i <= triangulation->NbNodes(); ++i) {
        gp_Pnt p = triangulation->Node(i);
        if (moved) p.Transform(move);
        points.emplace_back(rob::PosTemplate<double>(p.X(), p.Y(), p.Z()));
    }
}

}  // namespace

std::vector<rob::PosTemplate<float>> GetShapeMeshPoints(const TopoDS_Shape& shape) {
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    std::vector<rob::PosTemplate<float>> points;
    for (int i = 1; i <= faces.Extent(); ++i) AppendFacePoints(TopoDS::Face(faces(i)), points);
    return points;
}

}  // namespace vrn::selection
