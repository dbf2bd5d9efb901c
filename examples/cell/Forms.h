#pragma once

#include <gp_Pnt.hxx>
#include <gp_Pnt2d.hxx>
#include <gp_Vec.hxx>
#include <TopoDS_Shape.hxx>

#include <vector>

#include "examples/Shapes.h"

/// More words for making parts, beside those of examples/Shapes.h. Millimetres and degrees.
namespace vrn::examples {

/// A disc of a plate's outline, in the plate's plane.
struct Disc {
    double u = 0;
    double v = 0;
    double radius = 0;
};

/// The plate whose outline is a tight band round `discs`, with u along X and v along Z, from `y0`
/// to `y1`. The discs are named counter-clockwise seen from -Y, and each touches the band. Throws
/// std::invalid_argument for fewer than two discs, and for two next to each other of which one lies
/// inside the other.
[[nodiscard]] TopoDS_Shape PlateAlongY(const std::vector<Disc>& discs, double y0, double y1);
/// The same with u along X and v along Y, named counter-clockwise seen from above.
[[nodiscard]] TopoDS_Shape PlateAlongZ(const std::vector<Disc>& discs, double z0, double z1);
/// PlateAlongY, with the edges of both its faces rounded.
[[nodiscard]] TopoDS_Shape RoundedPlateAlongY(const std::vector<Disc>& discs, double y0, double y1,
                                              double radius);
[[nodiscard]] TopoDS_Shape RoundedPlateAlongZ(const std::vector<Disc>& discs, double z0, double z1,
                                              double radius);

/// The closed half section (radius, height) turned about the upright axis through the origin.
[[nodiscard]] TopoDS_Shape TurnedUpright(const std::vector<gp_Pnt2d>& halfSection);

/// A ring of cylinders about the line through `centre` along `axis`, all `axis` long.
struct Ring {
    gp_Pnt centre;
    gp_Vec axis;
    double ringRadius = 0;
    double cylinderRadius = 0;
    int count = 0;
    double firstDegrees = 0;
};
[[nodiscard]] std::vector<TopoDS_Shape> CylindersIn(const Ring& ring);

/// A round tube without a hole, along a smooth curve through `points`, its ends flat.
[[nodiscard]] TopoDS_Shape HoseThrough(const std::vector<gp_Pnt>& points, double radius);

/// A servo motor along +Z, standing on z = 0, of two solids: a finned body with its cap, and a box
/// for its plugs towards +X.
[[nodiscard]] TopoDS_Shape Motor(double radius, double length);

/// A box with the edges rounded that stand upright, and then those of its top.
[[nodiscard]] TopoDS_Shape SoftBox(const gp_Pnt& corner, double dx, double dy, double dz,
                                   double uprightRadius, double topRadius);

/// `shape`, its Z axis turned to `axis`, then moved to `place`. Turned by the shortest way.
[[nodiscard]] TopoDS_Shape Stood(const TopoDS_Shape& shape, const gp_Pnt& place,
                                 const gp_Vec& axis);

[[nodiscard]] EdgeFilter AtDepth(double y);

}  // namespace vrn::examples
