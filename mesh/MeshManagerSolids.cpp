// From triangulated shapes to meshes, one for all faces of a body.

#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "mesh/NoTriangleMesh.h"
#include "mesh/ShapeFaces.h"
#include "mesh/ShapeTriangles.h"
#include "mesh/UnfinishedOgreMesh.h"
#include "suite/geom/BodyColorTool.h"
#include "visual/geometry/SolidVisual.h"

#include <OgreMeshManager.h>
#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopLoc_Location.hxx>

#include <optional>
#include <stdexcept>
#include <string_view>

namespace vrn::visual {

namespace {

constexpr std::size_t fewestVertices = 3;

void CheckNotNull(const SolidVisual* solid) {
    if (solid == nullptr) throw std::invalid_argument("the solid must not be null");
}

/// How much room the faces of a body take in its mesh.
class ShapeSize {
public:
    void add(const TopoDS_Face& face) {
        TopLoc_Location unused;
        const Handle(Poly_Triangulation) & triangulation = BRep_Tool::Triangulation(face, unused);
        nodes += static_cast<std::size_t>(triangulation->NbNodes());
        triangles += static_cast<std::size_t>(triangulation->NbTriangles());
    }
    void reserveIn(Mesh& mesh, bool withColors) const {
        mesh.vertices.reserve(nodes);
        mesh.normals.reserve(nodes);
        if (withColors) mesh.colors.reserve(nodes);
        mesh.indices.reserve(3 * triangles);
    }

private:
    std::size_t nodes = 0, triangles = 0;
};

/// Whether `name` is `base`, or `base` followed by the numbers of hidden faces.
bool IsVariantOf(std::string_view name, std::string_view base) {
    if (!name.starts_with(base)) return false;
    const std::string_view rest = name.substr(base.size());
    return rest.empty() ||
           (rest[0] == '_' && rest.find_first_not_of("_0123456789") == std::string_view::npos);
}

}  // namespace

void MeshManager::loadShape(SolidVisual* solid) {
    CheckNotNull(solid);
    loadShape(solid, geometry::BodyColorTool::GetColorInfo(solid->id));
}

void MeshManager::loadShape(SolidVisual* solid, const ColorInfo& colorInfo) {
    CheckNotNull(solid);
    const std::string name = solid->getCurrentMeshName();
    if (OgreMeshExists(name)) {
        // A mesh of that name that no shape brought is shown and not counted: nobody here owns it.
        if (const auto found = shapeMeshRefs.find(name); found != shapeMeshRefs.end())
            ++found->second;
        return;
    }
    shapeMeshRefs.try_emplace(name, 1u);
    const auto mesh = getShapeMesh(solid->getShape(), solid->getFaceMap(), solid, &colorInfo);
    if (!mesh) throw NoTriangleMesh();
    mesh->name = name;
    loadToGpu(mesh.get());
}

std::unique_ptr<Mesh> MeshManager::getShapeMesh(const TopoDS_Shape& /*shape*/, const FaceMap& faces,
                                                SolidVisual* solid, const ColorInfo* colorInfo) {
    CheckNotNull(solid);
    if (faces.IsEmpty()) return nullptr;
    std::optional<BodyColors> colors;
    if (colorInfo) colors.emplace(*colorInfo);

    auto mesh = std::make_unique<Mesh>(solid->getCurrentMeshName());
    const auto forEachFace = [&](auto action) {
        ForEachMeshedFace(
            faces, static_cast<std::uint32_t>(faces.Extent()),
            [&](std::uint32_t index) { return solid->isFaceVisible(index); }, action);
    };
    ShapeSize size;
    forEachFace([&](std::uint32_t, const TopoDS_Face& face) { size.add(face); });
    size.reserveIn(*mesh, /*withColors=*/colors.has_value());
    forEachFace([&](std::uint32_t index, const TopoDS_Face& face) {
        rob::ColorTemplate<float> color;
        if (colors) color = colors->of(index);
        const std::size_t count = AppendFaceTriangles(face, *mesh);
        if (colors) mesh->colors.insert(mesh->colors.end(), count, color);
    });
    if (mesh->indices.empty() || mesh->vertices.size() < fewestVertices) return nullptr;
    return mesh;
}

void MeshManager::dropShapeMeshes(const std::string& meshName,
                                  const std::unordered_set<std::string>& inUse) {
    auto& ogreMeshes = Ogre::MeshManager::getSingleton();
    for (auto entry = shapeMeshRefs.begin(); entry != shapeMeshRefs.end();) {
        if (!IsVariantOf(entry->first, meshName) || inUse.contains(entry->first)) {
            ++entry;
            continue;
        }
        if (OgreMeshExists(entry->first)) ogreMeshes.remove(entry->first, Ogre::RGN_DEFAULT);
        entry = shapeMeshRefs.erase(entry);
    }
}

}  // namespace vrn::visual
