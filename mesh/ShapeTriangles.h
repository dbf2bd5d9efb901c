#pragma once

#include "mesh/Mesh.h"

#include <TopoDS_Face.hxx>

namespace vrn::visual {

/// Appends the triangulation of `face` with its location applied: one vertex and one normal a node,
/// in node order, shared by the triangles of this face and with no other face. Returns the number
/// of vertices.
///
/// Nothing is appended, and 0 returned, for a face that was never triangulated. Missing normals are
/// computed and stay in the triangulation, which may be shared. A node that is NaN or infinite
/// keeps its vertex, at the origin, and loses its triangles. A reversed face has its normals
/// negated; the winding is swapped on any face that is not forward. Throws
/// Standard_ConstructionError for a node whose normal is zero. Thread: pure, but for the
/// triangulation's normals.
VRN_VISUAL_API std::size_t AppendFaceTriangles(const TopoDS_Face& face, Mesh& mesh);

}  // namespace vrn::visual
