#include "tests/support/SolidFixture.h"

#include <cmath>
#include <cstring>
#include <numbers>

#include <OgreEntity.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreSubEntity.h>
#include <OgreSubMesh.h>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <Geom_Plane.hxx>
#include <TopLoc_Location.hxx>

#include "mesh/MeshManager.h"
#include "suite/geom/ShapeTools.h"

namespace vrn::test {

namespace {

constexpr double fanRadius = 10;

struct MeshCounts : visual::MeshManager {
    static auto member() { return &MeshCounts::shapeMeshRefs; }
};

}  // namespace

TopoDS_Shape PlainBox() { return BRepPrimAPI_MakeBox(100, 60, 40).Shape(); }

TopoDS_Shape MeshedBox(double dx, double dy, double dz) {
    TopoDS_Shape box = BRepPrimAPI_MakeBox(dx, dy, dz).Shape();
    geometry::GenerateMesh(box, 0.0, 0.0);
    return box;
}

TopoDS_Face BareFace() {
    TopoDS_Face face;
    BRep_Builder().MakeFace(face, new Geom_Plane(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1)), 1e-6);
    return face;
}

TopoDS_Face FanFace(int nodes, double z) {
    const Handle(Poly_Triangulation) fan =
        new Poly_Triangulation(nodes, nodes - 2, /*theHasUVNodes=*/false, /*theHasNormals=*/true);
    for (int i = 1; i <= nodes; ++i) {
        const double angle = 2 * std::numbers::pi * (i - 1) / nodes;
        fan->SetNode(i, gp_Pnt(fanRadius * std::cos(angle), fanRadius * std::sin(angle), z));
        fan->SetNormal(i, gp_Dir(0, 0, 1));
    }
    for (int t = 1; t <= nodes - 2; ++t) fan->SetTriangle(t, Poly_Triangle(1, t + 1, t + 2));
    TopoDS_Face face;
    BRep_Builder().MakeFace(face, new Geom_Plane(gp_Pnt(0, 0, z), gp_Dir(0, 0, 1)), 1e-6);
    BRep_Builder().UpdateFace(face, fan);
    return face;
}

opencascade::handle<Poly_Triangulation> TriangulationOf(const TopoDS_Face& face) {
    TopLoc_Location location;
    return BRep_Tool::Triangulation(face, location);
}

TopoDS_Compound CompoundOf(std::initializer_list<TopoDS_Shape> parts) {
    TopoDS_Compound compound;
    BRep_Builder().MakeCompound(compound);
    for (const TopoDS_Shape& part : parts) BRep_Builder().Add(compound, part);
    return compound;
}

TopoDS_Edge LineEdge(const rob::PosTemplate<double>& from, const rob::PosTemplate<double>& to) {
    TopoDS_Edge edge =
        BRepBuilderAPI_MakeEdge(gp_Pnt(from.x, from.y, from.z), gp_Pnt(to.x, to.y, to.z));
    geometry::GenerateMesh(edge, 0.0, 0.0);
    return edge;
}

std::vector<rob::ColorTemplate<float>> ColorsInBuffer(const std::string& meshName) {
    const Ogre::MeshPtr mesh =
        Ogre::MeshManager::getSingleton().getByName(meshName, Ogre::RGN_AUTODETECT);
    if (!mesh) return {};
    const Ogre::VertexData& data = *mesh->getSubMesh(0)->vertexData;
    const auto* element = data.vertexDeclaration->findElementBySemantic(Ogre::VES_DIFFUSE);
    if (!element) return {};
    const auto buffer = data.vertexBufferBinding->getBuffer(0);
    const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_READ_ONLY);
    std::vector<rob::ColorTemplate<float>> colors(data.vertexCount);
    for (std::size_t i = 0; i < colors.size(); ++i)
        std::memcpy(&colors[i],
                    static_cast<const char*>(lock.pData) + i * buffer->getVertexSize() +
                        element->getOffset(),
                    3 * sizeof(float));
    return colors;
}

std::uint32_t MeshCount(const std::string& meshName) {
    const auto& counts = visual::MeshManager::Get()->*MeshCounts::member();
    const auto found = counts.find(meshName);
    return found == counts.end() ? 0 : found->second;
}

std::string MaterialOf(const visual::SolidVisual* solid) {
    return solid->getEntity()->getSubEntity(0)->getMaterialName();
}

std::string SolidTest::freshUri() {
    static int count = 0;
    return "test://shape" + std::to_string(++count) + ".brep";
}

layout::Body* SolidTest::makeBody(const TopoDS_Shape& shape, const std::string& uri) {
    auto* part = model.make<layout::Part>("part");
    auto* body = model.make<layout::Body>("body", uri, shape);
    part->addBody(*body);
    return body;
}

visual::SolidVisual* SolidTest::show(layout::Body* body) {
    return visual::SolidVisual::Build(scene().root, body, body->getShape());
}

visual::SolidVisual* SolidTest::show(const TopoDS_Shape& shape, const std::string& uri) {
    return show(makeBody(shape, uri));
}

}  // namespace vrn::test
