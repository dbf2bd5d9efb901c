#pragma once

#include <gp_Pnt.hxx>
#include <TopoDS_Shape.hxx>

namespace vrn::test {

/// Whether the shape is free of errors, and each of its shells closed. False without a shell.
[[nodiscard]] bool IsSound(const TopoDS_Shape& shape);
[[nodiscard]] int CountOf(const TopoDS_Shape& shape, TopAbs_ShapeEnum kind);
[[nodiscard]] double VolumeOf(const TopoDS_Shape& shape);
/// Of the solid with the least one; negative for one that is inside out.
[[nodiscard]] double LeastVolume(const TopoDS_Shape& shape);
/// The shortest way from `point` to the shape's surface.
[[nodiscard]] double DistanceToSurface(const TopoDS_Shape& shape, const gp_Pnt& point);
/// Whether `point` lies in the material.
[[nodiscard]] bool IsInside(const TopoDS_Shape& shape, const gp_Pnt& point);

}  // namespace vrn::test
