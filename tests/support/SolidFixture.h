#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include <Poly_Triangulation.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>

#include "suite/geom/ColorInfo.h"
#include "suite/layout/Body.h"
#include "suite/rob/VectorTypes.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/SolidVisual.h"

namespace vrn::test {

/// From the origin; triangulated: 6 faces of 4 nodes and 2 triangles each, polygons on all 12
/// edges.
TopoDS_Shape MeshedBox(double dx = 100, double dy = 60, double dz = 40);
/// The same without triangles.
TopoDS_Shape PlainBox();
/// A flat face at height z whose triangulation is a fan of `nodes` nodes, nodes - 2 triangles,
/// normals along +z. The nodes lie on a circle of radius 10, the first one at (10, 0, z).
TopoDS_Face FanFace(int nodes, double z = 0);
/// A face without any triangulation.
TopoDS_Face BareFace();
opencascade::handle<Poly_Triangulation> TriangulationOf(const TopoDS_Face& face);
TopoDS_Compound CompoundOf(std::initializer_list<TopoDS_Shape> parts);
/// A straight edge, triangulated.
TopoDS_Edge LineEdge(const rob::PosTemplate<double>& from, const rob::PosTemplate<double>& to);

/// The colours in the vertex buffer of an Ogre mesh; empty without the mesh or without colours.
std::vector<rob::ColorTemplate<float>> ColorsInBuffer(const std::string& meshName);
/// How many references to a shape's mesh are counted.
std::uint32_t MeshCount(const std::string& meshName);
std::string MaterialOf(const visual::SolidVisual* solid);

/// Tests on solids. Mesh names outlive a test on purpose (hidden faces), so URIs are never the
/// same.
class SolidTest : public EngineTest {
protected:
    static std::string freshUri();
    /// A body in a part of its own, not shown yet.
    layout::Body* makeBody(const TopoDS_Shape& shape, const std::string& uri = freshUri());
    /// A solid of such a body, under the root.
    visual::SolidVisual* show(const TopoDS_Shape& shape, const std::string& uri = freshUri());
    static visual::SolidVisual* show(layout::Body* body);
};

}  // namespace vrn::test
