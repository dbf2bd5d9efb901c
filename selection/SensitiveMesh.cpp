#include "selection/SensitiveMesh.h"

#include "mesh/Mesh.h"
#include "selection/BVHBuilder.h"
#include "selection/Ray.h"
#include "selection/SensitiveTriangle.h"

#include <memory>
#include <utility>

namespace vrn::selection {

SensitiveMesh::SensitiveMesh(visual::Mesh* shownMesh, visual::Visual* meshVisual,
                             const rob::PoseTemplate<float>& meshPose)
    : mesh(shownMesh), visual(meshVisual), meshLife(shownMesh->getLife()) {
    setLocation(meshPose);
    box = mesh->getBox().transformed(meshPose);
    const auto count = static_cast<std::uint32_t>(mesh->indices.size() / 3);
    primitives.reserve(count);
    for (std::uint32_t number = 0; number < count; ++number) {
        auto triangle = std::make_unique<SensitiveIndexedTriangle>(number);
        for (std::size_t i = 0; i < 3; ++i)
            triangle->box.addPoint(mesh->vertices.at(mesh->indices[3 * number + i]));
        triangle->box.expand();
        triangle->box.updateCenter();
        primitives.push_back(triangle.release());
    }
    tree = BVHBuilder(this).build();
}

Result SensitiveMesh::intersect(const visual::Ray& ray) {
    if (meshLife.expired()) return {};
    Result result = intersectTriangles(ray.transformed(inverseLocation));
    if (!result.hit) return result;
    result.position = TransformPoint(location, result.position);
    result.visual = visual;
    return result;
}

Result SensitiveMesh::intersect(const rob::TriangleTemplate<float>& triangle) {
    if (meshLife.expired()) return {};
    return intersectTriangles(triangle.transformed(inverseLocation));
}

Result SensitiveMesh::intersect(const rob::LineTemplate<float>& line) {
    if (meshLife.expired()) return {};
    Result result = intersectTriangles(line.transformed(inverseLocation));
    if (!result.hit) return result;
    result.position = TransformPoint(location, result.position);
    result.visual = visual;
    return result;
}

void SensitiveMesh::processIntersectionsWith(const visual::Box& region,
                                             std::function<void(unsigned int)> visit) const {
    if (meshLife.expired()) return;
    intersectTriangles(region.transformed(inverseLocation), visit);
}

rob::TriangleTemplate<float> SensitiveMesh::getTriangleVertices(SensitiveTriangle* triangle) const {
    const std::size_t first =
        std::size_t{3} * static_cast<const SensitiveIndexedTriangle*>(triangle)->index;
    const auto vertex = [&](std::size_t i) { return mesh->vertices.at(mesh->indices.at(i)); };
    return {vertex(first + 2), vertex(first + 1), vertex(first)};
}

}  // namespace vrn::selection
