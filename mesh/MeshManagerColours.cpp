// The colours that shape meshes show now, in their vertex buffers.

#include "mesh/MeshManager.h"
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

using Color = rob::ColorTemplate<float>;
static_assert(sizeof(Color) == 3 * sizeof(float), "a colour is sent as three floats");

/// A run of vertices in a mesh.
struct VertexRange {
    std::size_t first = 0;
    std::size_t count = 0;
};

/// The colours among the other elements of a mesh's vertices. What lies beyond the vertices is
/// passed over: a mesh may have been made of another triangulation than the one that is asked now.
class ColorElement {
public:
    /// Without vertices if there is no such mesh, or if its vertices have no colour of three
    /// floats.
    explicit ColorElement(const std::string& meshName) {
        const Ogre::MeshPtr mesh =
            Ogre::MeshManager::getSingleton().getByName(meshName, Ogre::RGN_AUTODETECT);
        if (!mesh || mesh->getNumSubMeshes() == 0) return;
        const Ogre::VertexData* vertices = mesh->getSubMesh(0)->vertexData;
        if (!vertices || !vertices->vertexBufferBinding->isBufferBound(0)) return;
        for (const Ogre::VertexElement& element : vertices->vertexDeclaration->getElements()) {
            if (element.getSemantic() == Ogre::VES_DIFFUSE && element.getType() == Ogre::VET_FLOAT3)
                count = vertices->vertexCount;
            if (count == 0) offset += element.getSize();
            vertexSize += element.getSize();
        }
        buffer = vertices->vertexBufferBinding->getBuffer(0);
    }

    [[nodiscard]] std::size_t vertexCount() const { return count; }

    void fill(VertexRange range, const Color& color) const {
        write(range, [&](std::size_t) { return color; });
    }

    /// Writes `colorOf(number)` to each vertex of the range and keeps all other bytes.
    template <class ColorOf>
    void write(VertexRange range, ColorOf colorOf) const {
        const std::size_t end = std::min(range.first + range.count, count);
        if (range.first >= end) return;
        const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_WRITE_ONLY);
        auto* bytes = static_cast<std::byte*>(lock.pData) + offset;
        for (std::size_t i = range.first; i < end; ++i) {
            const Color color = colorOf(i);
            std::memcpy(bytes + i * vertexSize, &color, sizeof color);
        }
    }

    [[nodiscard]] Color read(std::size_t vertex) const {
        const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_READ_ONLY);
        Color color;
        std::memcpy(&color,
                    static_cast<const std::byte*>(lock.pData) + offset + vertex * vertexSize,
                    sizeof color);
        return color;
    }

private:
    Ogre::HardwareVertexBufferSharedPtr buffer;
    std::size_t offset = 0;
    std::size_t vertexSize = 0;
    std::size_t count = 0;  // 0: no colours
};

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

void MeshManager::SetColor(const std::string& meshName, const Color& color) {
    const ColorElement colors(meshName);
    colors.fill({0, colors.vertexCount()}, color);
}

void MeshManager::SetFaceColor(SolidVisual* solid, std::uint32_t face, const Color& color) {
    CheckNotNull(solid);
    if (!solid->isFaceVisible(face)) return;
    const ColorElement colors(solid->getCurrentMeshName());
    colors.fill(RangeOfFace(solid->getFaceMap(), face, VisibleIn(solid)), color);
}

Color MeshManager::GetFaceColor(const std::string& meshName, const TopoDS_Shape& shape,
                                std::uint32_t face) {
    FaceMap faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    const VertexRange range = RangeOfFace(faces, face, [](std::uint32_t) { return true; });
    const ColorElement colors(meshName);
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
    std::vector<Color> vertexColors;
    ForEachMeshedFace(faces, static_cast<std::uint32_t>(faces.Extent()), VisibleIn(solid),
                      [&](std::uint32_t index, const TopoDS_Face& face) {
                          vertexColors.insert(vertexColors.end(), NodeCount(face),
                                              stored.of(index));
                      });
    const ColorElement colors(solid->getCurrentMeshName());
    colors.write({0, vertexColors.size()}, [&](std::size_t i) { return vertexColors[i]; });
}

}  // namespace vrn::visual
