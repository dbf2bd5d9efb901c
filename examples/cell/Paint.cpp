#include "examples/cell/Paint.h"

#include <BRep_Builder.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepGProp.hxx>
#include <gp_Cylinder.hxx>
#include <gp_Vec.hxx>
#include <GProp_GProps.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_CompSolid.hxx>
#include <TopoDS_Face.hxx>
#include <TopTools_IndexedMapOfShape.hxx>

#include <stdexcept>

namespace vrn::examples {

namespace {

TopTools_IndexedMapOfShape FacesOf(const TopoDS_Shape& shape) {
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    return faces;
}

gp_Dir OutwardNormal(const TopoDS_Face& face, const BRepAdaptor_Surface& surface) {
    gp_Pnt point;
    gp_Vec alongU, alongV;
    surface.D1((surface.FirstUParameter() + surface.LastUParameter()) / 2,
               (surface.FirstVParameter() + surface.LastVParameter()) / 2, point, alongU, alongV);
    const gp_Vec normal = alongU ^ alongV;
    return gp_Dir(face.Orientation() == TopAbs_REVERSED ? -normal : normal);
}

FaceLook LookOf(const TopoDS_Face& face) {
    const BRepAdaptor_Surface surface(face);
    GProp_GProps area;
    BRepGProp::SurfaceProperties(face, area);
    FaceLook look{area.CentreOfMass(),
                  OutwardNormal(face, surface),
                  area.Mass(),
                  surface.GetType() == GeomAbs_Plane,
                  surface.GetType() == GeomAbs_Cylinder,
                  0};
    if (look.isCylinder) look.radius = surface.Cylinder().Radius();
    return look;
}

/// One solid as it is, several as the solids of one body: a compound would be taken for several
/// bodies where it is read.
TopoDS_Shape OneBody(const std::vector<Coloured>& pieces) {
    BRep_Builder builder;
    TopoDS_CompSolid body;
    builder.MakeCompSolid(body);
    int count = 0;
    TopoDS_Shape last;
    for (const Coloured& piece : pieces) {
        for (TopExp_Explorer solids(piece.shape, TopAbs_SOLID); solids.More(); solids.Next()) {
            last = solids.Current();
            builder.Add(body, last);
            ++count;
        }
    }
    if (count == 0) throw std::invalid_argument("a body needs a solid");
    return count == 1 ? last : body;
}

}  // namespace

PaintedBody Painted(const std::string& name, const std::vector<Coloured>& pieces) {
    PaintedBody body{name, OneBody(pieces), pieces.at(0).colour, {}};
    const TopTools_IndexedMapOfShape all = FacesOf(body.shape);
    for (const Coloured& piece : pieces) {
        if (piece.colour == body.colour) continue;
        const TopTools_IndexedMapOfShape faces = FacesOf(piece.shape);
        for (int i = 1; i <= faces.Extent(); ++i)
            body.faceColours[all.FindIndex(faces(i))] = piece.colour;
    }
    return body;
}

int PaintFaces(PaintedBody& body, const std::string& colour,
               const std::function<bool(const FaceLook&)>& takes) {
    const TopTools_IndexedMapOfShape faces = FacesOf(body.shape);
    int painted = 0;
    for (int i = 1; i <= faces.Extent(); ++i) {
        if (!takes(LookOf(TopoDS::Face(faces(i))))) continue;
        body.faceColours[i] = colour;
        ++painted;
    }
    return painted;
}

}  // namespace vrn::examples
