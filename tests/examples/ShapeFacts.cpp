#include "tests/examples/ShapeFacts.h"

#include <BRep_Builder.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepCheck_Analyzer.hxx>
#include <BRepClass3d_SolidClassifier.hxx>
#include <BRepExtrema_DistShapeShape.hxx>
#include <BRepGProp.hxx>
#include <GProp_GProps.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Compound.hxx>
#include <TopTools_IndexedMapOfShape.hxx>

#include <algorithm>
#include <limits>

namespace vrn::test {

bool IsSound(const TopoDS_Shape& shape) {
    if (!BRepCheck_Analyzer(shape).IsValid()) return false;
    TopExp_Explorer shells(shape, TopAbs_SHELL);
    if (!shells.More()) return false;
    for (; shells.More(); shells.Next())
        if (!shells.Current().Closed()) return false;
    return true;
}

int CountOf(const TopoDS_Shape& shape, TopAbs_ShapeEnum kind) {
    TopTools_IndexedMapOfShape found;
    TopExp::MapShapes(shape, kind, found);
    return found.Extent();
}

double VolumeOf(const TopoDS_Shape& shape) {
    GProp_GProps volume;
    BRepGProp::VolumeProperties(shape, volume);
    return volume.Mass();
}

double LeastVolume(const TopoDS_Shape& shape) {
    double least = std::numeric_limits<double>::infinity();
    for (TopExp_Explorer solids(shape, TopAbs_SOLID); solids.More(); solids.Next())
        least = std::min(least, VolumeOf(solids.Current()));
    return least;
}

double DistanceToSurface(const TopoDS_Shape& shape, const gp_Pnt& point) {
    // Of the faces: the distance to a solid is zero everywhere inside.
    BRep_Builder builder;
    TopoDS_Compound faces;
    builder.MakeCompound(faces);
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next())
        builder.Add(faces, it.Current());
    return BRepExtrema_DistShapeShape(BRepBuilderAPI_MakeVertex(point).Vertex(), faces).Value();
}

bool IsInside(const TopoDS_Shape& shape, const gp_Pnt& point) {
    for (TopExp_Explorer solids(shape, TopAbs_SOLID); solids.More(); solids.Next()) {
        BRepClass3d_SolidClassifier classifier(solids.Current(), point, 1e-6);
        if (classifier.State() == TopAbs_IN) return true;
    }
    return false;
}

}  // namespace vrn::test
