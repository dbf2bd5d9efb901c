#pragma once

#include <gp_Pnt.hxx>
#include <gp_Pnt2d.hxx>
#include <gp_Vec.hxx>
#include <TopoDS_Shape.hxx>

#include <functional>
#include <vector>

class TopoDS_Edge;

/// Short words for making example parts. Lengths in millimetres, angles in degrees, Z up.
/// Everything throws what OpenCASCADE throws, and std::runtime_error where one of its operations
/// reports failure.
namespace vrn::examples {

/// A box with one corner at `corner` and sides along the axes.
[[nodiscard]] TopoDS_Shape BoxAt(const gp_Pnt& corner, double dx, double dy, double dz);
/// A cylinder that starts at `foot` and ends at `foot` + `axis`.
[[nodiscard]] TopoDS_Shape CylinderAt(const gp_Pnt& foot, const gp_Vec& axis, double radius);
/// The closed half section (axial position, radius) turned about the X axis.
[[nodiscard]] TopoDS_Shape TurnedAboutX(const std::vector<gp_Pnt2d>& halfSection);

[[nodiscard]] TopoDS_Shape Fused(const std::vector<TopoDS_Shape>& shapes);
[[nodiscard]] TopoDS_Shape Cut(const TopoDS_Shape& body, const std::vector<TopoDS_Shape>& tools);
[[nodiscard]] TopoDS_Shape Compound(const std::vector<TopoDS_Shape>& shapes);
[[nodiscard]] TopoDS_Shape Moved(const TopoDS_Shape& shape, const gp_Vec& by);
/// Turned by `degrees` about the upright axis through `centre`.
[[nodiscard]] TopoDS_Shape TurnedAboutZ(const TopoDS_Shape& shape, const gp_Pnt& centre,
                                        double degrees);

/// Which edges an operation takes, by their ends.
using EdgeFilter = std::function<bool(const gp_Pnt& first, const gp_Pnt& last)>;
[[nodiscard]] bool IsUpright(const gp_Pnt& first, const gp_Pnt& last);
[[nodiscard]] EdgeFilter AtHeight(double z);

[[nodiscard]] TopoDS_Shape Filleted(const TopoDS_Shape& shape, double radius,
                                    const EdgeFilter& takes);
[[nodiscard]] TopoDS_Shape Chamfered(const TopoDS_Shape& shape, double width,
                                     const EdgeFilter& takes);

}  // namespace vrn::examples
