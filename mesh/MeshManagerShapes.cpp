#include "mesh/Letters.h"
#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "mesh/PaintMesh.h"
#include "mesh/Shapes.h"
#include "visual/geometry/FacetVisual.h"

#include <stdexcept>

namespace vrn::visual {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

Mesh* MeshManager::createSphereComponent(const std::string& name, float radius, int stacks,
                                         int slices) {
    return keepGlobal(MakeSphere(name, radius, stacks, slices));
}

Mesh* MeshManager::createCylinderComponent(const std::string& name, float radius, float height,
                                           int stacks, int slices) {
    return keepGlobal(MakeCylinder(name, radius, height, stacks, slices));
}

Mesh* MeshManager::createConeComponent(const std::string& name, float radius, float height) {
    return keepGlobal(MakeCone(name, radius, height));
}

Mesh* MeshManager::createTorusComponent(const std::string& name, float ringRadius, float tubeRadius,
                                        int ringSegments, int tubeSegments) {
    return keepGlobal(MakeTorus(name, ringRadius, tubeRadius, ringSegments, tubeSegments));
}

Mesh* MeshManager::createTorusSectorComponent(const std::string& name, float sweepAngle,
                                              float ringRadius, float tubeRadius, int ringSegments,
                                              int tubeSegments) {
    return keepGlobal(
        MakeTorusSector(name, sweepAngle, ringRadius, tubeRadius, ringSegments, tubeSegments));
}

Mesh* MeshManager::CreateMesh(const std::string& name, const std::vector<Pos>& vertices,
                              const std::vector<unsigned int>& indices) {
    auto mesh = std::make_unique<Mesh>(name);
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        const Pos& a = vertices.at(indices[i]);
        const Pos& b = vertices.at(indices[i + 1]);
        const Pos& c = vertices.at(indices[i + 2]);
        const Vec normal = (b - a).cross(c - a);
        for (const Pos& corner : {a, b, c}) {
            mesh->indices.push_back(static_cast<std::uint32_t>(mesh->vertices.size()));
            mesh->vertices.push_back(corner);
            mesh->normals.push_back(normal);
        }
    }
    return mesh.release();
}

Mesh* MeshManager::CreateTextMesh(const std::string& text, double /*unused*/) {
    constexpr float lineHeight = 1.4f;
    constexpr float blankWidth = 0.4f;
    auto mesh = std::make_unique<Mesh>(text);
    float x = 0.0f, y = 0.0f;
    for (const char c : text) {
        if (c == '\n') {
            x = 0.0f;
            y -= lineHeight;
        } else if (c == ' ') {
            x += blankWidth;
        } else if (const Letter* letter = FindLetter(c)) {
            const auto base = static_cast<std::uint32_t>(mesh->vertices.size());
            for (std::int32_t i = 0; i < letter->vertexCount; ++i) {
                mesh->vertices.emplace_back(x + letter->vertices[2 * i],
                                            y + letter->vertices[2 * i + 1], 0.0f);
                mesh->normals.emplace_back(0.0f, 0.0f, 1.0f);
            }
            for (std::int32_t i = 0; i < 3 * letter->triangleCount; ++i)
                mesh->indices.push_back(base + letter->indices[i]);
            x += letter->advance;
        }
    }
    return mesh.release();
}

PaintMesh* MeshManager::createPaintMesh(const FacetVisual* visual) const {
    if (visual == nullptr) throw std::invalid_argument("what is to be painted must not be null");
    return createPaintMeshFromMesh(getMesh(visual->getMeshName()));
}

PaintMesh* MeshManager::createPaintMeshFromMesh(const Mesh* source) {
    if (source == nullptr) throw std::invalid_argument("the mesh to paint must not be null");
    constexpr Color invisibleBlue{0, 0, 1, 0};
    auto mesh = std::make_unique<PaintMesh>(source->name + "_paint");
    mesh->vertices = source->vertices;
    mesh->normals = source->normals;
    mesh->indices = source->indices;
    mesh->vertexColors.assign(source->vertices.size(), invisibleBlue);
    return mesh.release();
}

}  // namespace vrn::visual
