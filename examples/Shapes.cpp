#include "examples/Shapes.h"

#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepFilletAPI_MakeChamfer.hxx>
#include <BRepFilletAPI_MakeFillet.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeRevol.hxx>
#include <gp_Ax1.hxx>
#include <gp_Ax2.hxx>
#include <gp_Trsf.hxx>
#include <ShapeUpgrade_UnifySameDomain.hxx>
#include <TopExp.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_ListOfShape.hxx>

#include <cmath>
#include <numbers>
#include <stdexcept>

namespace vrn::examples {

namespace {

constexpr double samePlace = 1e-6;

double Radians(double degrees) { return degrees * std::numbers::pi / 180.0; }

TopTools_ListOfShape ListOf(const std::vector<TopoDS_Shape>& shapes) {
    TopTools_ListOfShape list;
    for (const TopoDS_Shape& shape : shapes) list.Append(shape);
    return list;
}

TopoDS_Face FaceOf(BRepBuilderAPI_MakePolygon& polygon) {
    polygon.Close();
    return BRepBuilderAPI_MakeFace(polygon.Wire(), /*OnlyPlane=*/true).Face();
}

/// Runs a boolean operation; faces of one surface that it left side by side become one face, so
/// that no seam shows and fillets find whole edges.
template <class Operation>
TopoDS_Shape Combined(const TopTools_ListOfShape& arguments, const TopTools_ListOfShape& tools) {
    Operation operation;
    operation.SetArguments(arguments);
    operation.SetTools(tools);
    operation.Build();
    if (operation.HasErrors())
        throw std::runtime_error("an example part's boolean operation failed");
    ShapeUpgrade_UnifySameDomain unify(operation.Shape());
    unify.Build();
    return unify.Shape();
}

/// Adds every edge that `takes` accepts and builds. Works for fillets and chamfers alike.
template <class Operation>
TopoDS_Shape OnEdges(const TopoDS_Shape& shape, double size, const EdgeFilter& takes) {
    Operation operation(shape);
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    for (int i = 1; i <= edges.Extent(); ++i) {
        const TopoDS_Edge& edge = TopoDS::Edge(edges(i));
        const gp_Pnt first = BRep_Tool::Pnt(TopExp::FirstVertex(edge));
        const gp_Pnt last = BRep_Tool::Pnt(TopExp::LastVertex(edge));
        if (takes(first, last)) operation.Add(size, edge);
    }
    operation.Build();
    if (!operation.IsDone())
        throw std::runtime_error("an example part's edges could not be rounded");
    return operation.Shape();
}

}  // namespace

TopoDS_Shape BoxAt(const gp_Pnt& corner, double dx, double dy, double dz) {
    return BRepPrimAPI_MakeBox(corner, dx, dy, dz).Shape();
}

TopoDS_Shape CylinderAt(const gp_Pnt& foot, const gp_Vec& axis, double radius) {
    return BRepPrimAPI_MakeCylinder(gp_Ax2(foot, gp_Dir(axis)), radius, axis.Magnitude()).Shape();
}

TopoDS_Shape TurnedAboutX(const std::vector<gp_Pnt2d>& halfSection) {
    BRepBuilderAPI_MakePolygon polygon;
    for (const gp_Pnt2d& p : halfSection) polygon.Add(gp_Pnt(p.X(), 0, p.Y()));
    return BRepPrimAPI_MakeRevol(FaceOf(polygon), gp_Ax1(gp_Pnt(0, 0, 0), gp_Dir(1, 0, 0))).Shape();
}

TopoDS_Shape Fused(const std::vector<TopoDS_Shape>& shapes) {
    return Combined<BRepAlgoAPI_Fuse>(ListOf({shapes.front()}),
                                      ListOf({shapes.begin() + 1, shapes.end()}));
}

TopoDS_Shape Cut(const TopoDS_Shape& body, const std::vector<TopoDS_Shape>& tools) {
    return Combined<BRepAlgoAPI_Cut>(ListOf({body}), ListOf(tools));
}

TopoDS_Shape Compound(const std::vector<TopoDS_Shape>& shapes) {
    BRep_Builder builder;
    TopoDS_Compound compound;
    builder.MakeCompound(compound);
    for (const TopoDS_Shape& shape : shapes) builder.Add(compound, shape);
    return compound;
}

TopoDS_Shape Moved(const TopoDS_Shape& shape, const gp_Vec& by) {
    gp_Trsf trsf;
    trsf.SetTranslation(by);
    return BRepBuilderAPI_Transform(shape, trsf).Shape();
}

TopoDS_Shape TurnedAboutZ(const TopoDS_Shape& shape, const gp_Pnt& centre, double degrees) {
    gp_Trsf trsf;
    trsf.SetRotation(gp_Ax1(centre, gp_Dir(0, 0, 1)), Radians(degrees));
    return BRepBuilderAPI_Transform(shape, trsf).Shape();
}

bool IsUpright(const gp_Pnt& first, const gp_Pnt& last) {
    return std::abs(first.X() - last.X()) < samePlace &&
           std::abs(first.Y() - last.Y()) < samePlace && std::abs(first.Z() - last.Z()) > samePlace;
}

EdgeFilter AtHeight(double z) {
    return [z](const gp_Pnt& first, const gp_Pnt& last) {
        return std::abs(first.Z() - z) < samePlace && std::abs(last.Z() - z) < samePlace;
    };
}

TopoDS_Shape Filleted(const TopoDS_Shape& shape, double radius, const EdgeFilter& takes) {
    return OnEdges<BRepFilletAPI_MakeFillet>(shape, radius, takes);
}

TopoDS_Shape Chamfered(const TopoDS_Shape& shape, double width, const EdgeFilter& takes) {
    return OnEdges<BRepFilletAPI_MakeChamfer>(shape, width, takes);
}

}  // namespace vrn::examples
