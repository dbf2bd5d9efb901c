#pragma once

#include <NCollection_IndexedMap.hxx>
#include <TopoDS_Shape.hxx>
#include <TopTools_ShapeMapHasher.hxx>

namespace vrn::visual {

/// The faces of a shape, counted from 1. That number is the only identity of a face; two
/// orientations of one face count as the same.
using FaceMap = NCollection_IndexedMap<TopoDS_Shape, TopTools_ShapeMapHasher>;

}  // namespace vrn::visual
