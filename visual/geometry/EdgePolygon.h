#pragma once

#include <gp_Pnt.hxx>

#include <vector>

class TopoDS_Edge;

namespace vrn::visual {

/// The points that an edge is drawn through, in the order of its curve and in the frame of its
/// shape: those of its own polygon, or else of the one on a face's triangulation, which is all that
/// the mesher leaves on the edges of faces. Empty for an edge that was never triangulated, for one
/// without extent (the pole of a sphere) and for a null edge. Thread: pure.
[[nodiscard]] std::vector<gp_Pnt> EdgePolygon(const TopoDS_Edge& edge);

}  // namespace vrn::visual
