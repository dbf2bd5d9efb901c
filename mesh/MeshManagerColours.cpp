// The colours that shape meshes show now, in their vertex buffers.

#include "mesh/MeshManager.h"
#include "mesh/PaintMesh.h"
#include "mesh/ShapeFaces.h"
#include "suite/geom/BodyColorTool.h"
#include "visual/geometry/SolidVisual.h"

#include <OgreHardwareVertexBuffer.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreSubMesh.h>

#include <TopExp.hxx>

#include <algorithm>
#include <cstring>
#include <format>
#include <stdexcept>

namespace vrn::visual {

namespace {

using BodyColor = rob::ColorTemplate<float>;
using PaintColor = visual::Color;
static_assert(sizeof(BodyColor) == 3 * sizeof(float), "a colour is sent as three floats");
static_assert(sizeof(PaintColor) == 4 * sizeof(float), "paint is sent as four floats");

/// A run of vertices in a mesh.
struct VertexRange {
    std::size_t first = 0;
    std::size_t count = 0;
};

/// The colours among the other elements of a mesh's vertices; `Value` is a colour in memory, and
/// `type` what the mesh has it as. What lies beyond the vertices is passed over: a mesh may have
/// been made of another triangulation than the one that is asked now.
template <class Value, Ogre::VertexElementType type>
class ColorElement {
public:
    /// Without vertices if there is no such mesh, or if its vertices have no colour of that type.
    explicit ColorElement(const std::string& meshName) {
        const Ogre::MeshPtr mesh =
            Ogre::MeshManager::getSingleton().getByName(meshName, Ogre::RGN_AUTODETECT);
        if (!mesh || mesh->getNumSubMeshes() == 0) return;
        const Ogre::VertexData* vertices = mesh->getSubMesh(0)->vertexData;
        if (!vertices || !vertices->vertexBufferBinding->isBufferBound(0)) return;
        for (const Ogre::VertexElement& element : vertices->vertexDeclaration->getElements()) {
            if (element.getSemantic() == Ogre::VES_DIFFUSE && element.getType() == type)
                count = vertices->vertexCount;
            if (count == 0) offset += element.getSize();
            vertexSize += element.getSize();
        }
        buffer = vertices->vertexBufferBinding->getBuffer(0);
    }

    [[nodiscard]] std::size_t vertexCount() const { return count; }

    void fill(VertexRange range, const Value& color) const {
        write(range, [&](std::size_t) { return color; });
    }

    /// Writes `colorOf(number)` to each vertex of the range and keeps all other bytes.
    template <class ColorOf>
    void write(VertexRange range, ColorOf colorOf) const {
        const std::size_t end = std::min(range.first + range.count, count);
        if (range.first >= end) return;
        const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_WRITE_ONLY);
        for (std::size_t i = range.first; i < end; ++i) writeOne(lock.pData, i, colorOf(i));
    }

    /// The same for the vertices that are listed, each as often as it is.
    template <class ColorOf>
    void writeListed(const std::vector<std::uint32_t>& numbers, ColorOf colorOf) const {
        if (count == 0) return;
        const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_WRITE_ONLY);
        for (const std::uint32_t i : numbers)
            if (i < count) writeOne(lock.pData, i, colorOf(i));
    }

    [[nodiscard]] Value read(std::size_t vertex) const {
        const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_READ_ONLY);
        Value color;
        std::memcpy(&color,
                    static_cast<const std::byte*>(lock.pData) + offset + vertex * vertexSize,
                    sizeof color);
        return color;
    }

private:
    void writeOne(void* vertices, std::size_t number, const Value& color) const {
        std::memcpy(static_cast<std::byte*>(vertices) + offset + number * vertexSize, &color,
                    sizeof color);
    }

    Ogre::HardwareVertexBufferSharedPtr buffer;
    std::size_t offset = 0;
    std::size_t vertexSize = 0;
    std::size_t count = 0;  // 0: no colours
};

using BodyColorElement = ColorElement<BodyColor, Ogre::VET_FLOAT3>;
using PaintColorElement = ColorElement<PaintColor, Ogre::VET_FLOAT4>;

/// Where the vertices of `face` stand; an empty range if it has none.
template <class IsShown>
VertexRange RangeOfFace(const FaceMap& faces, std::uint32_t face, IsShown isShown) {
    VertexRange range;
    ForEachMeshedFace(faces, face, isShown, [&](std::uint32_t index, const TopoDS_Face& shape) {
        (index < face ? range.first : range.count) += NodeCount(shape);
    });
    return range;
}

auto VisibleIn(const SolidVisual* solid) {
    return [solid](std::uint32_t index) { return solid->isFaceVisible(index); };
}

void CheckNotNull(const SolidVisual* solid) {
    if (solid == nullptr) throw std::invalid_argument("the solid must not be null");
}

}  // namespace

void MeshManager::SetColor(const std::string& meshName, const BodyColor& color) {
    const BodyColorElement colors(meshName);
    colors.fill({0, colors.vertexCount()}, color);
}

void MeshManager::SetFaceColor(SolidVisual* solid, std::uint32_t face, const BodyColor& color) {
    CheckNotNull(solid);
    if (!solid->isFaceVisible(face)) return;
    const BodyColorElement colors(solid->getCurrentMeshName());
    colors.fill(RangeOfFace(solid->getFaceMap(), face, VisibleIn(solid)), color);
}

BodyColor MeshManager::GetFaceColor(const std::string& meshName, const TopoDS_Shape& shape,
                                    std::uint32_t face) {
    FaceMap faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    const VertexRange range = RangeOfFace(faces, face, [](std::uint32_t) { return true; });
    const BodyColorElement colors(meshName);
    if (range.count == 0 || range.first >= colors.vertexCount())
        throw std::out_of_range(
            std::format("face {} has no coloured vertex in mesh \"{}\"", face, meshName));
    return colors.read(range.first);
}

void MeshManager::ColorReset(SolidVisual* solid) {
    CheckNotNull(solid);
    const ColorInfo info = geometry::BodyColorTool::GetColorInfo(solid->id);
    const BodyColors stored(info);
    const FaceMap& faces = solid->getFaceMap();
    std::vector<BodyColor> vertexColors;
    ForEachMeshedFace(faces, static_cast<std::uint32_t>(faces.Extent()), VisibleIn(solid),
                      [&](std::uint32_t index, const TopoDS_Face& face) {
                          vertexColors.insert(vertexColors.end(), NodeCount(face),
                                              stored.of(index));
                      });
    const BodyColorElement colors(solid->getCurrentMeshName());
    colors.write({0, vertexColors.size()}, [&](std::size_t i) { return vertexColors[i]; });
}

void MeshManager::updatePaintMeshColor(PaintMesh* mesh) {
    if (mesh == nullptr) throw std::invalid_argument("the painted mesh must not be null");
    const PaintColorElement colors(mesh->name);
    colors.writeListed(mesh->changedVertices,
                       [mesh](std::uint32_t vertex) { return mesh->vertexColors[vertex]; });
    mesh->changedVertices.clear();
}

}  // namespace vrn::visual
