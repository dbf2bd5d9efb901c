#include "mesh/Shapes.h"

#include "mesh/ShapeTriangles.h"

#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <NCollection_IndexedMap.hxx>
#include <TopExp.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <TopTools_ShapeMapHasher.hxx>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

/// 2 pi or part of it in equal steps: divided in double, used in single precision.
float Step(double angle, int count) { return static_cast<float>(angle / count); }

/// Joins `rows` + 1 rows of `columns` + 1 vertices, which start at vertex 0. The pairs of triangles
/// lean over the seam: those at the first and last column have no area there.
void StitchRows(Mesh& mesh, int rows, int columns) {
    const auto width = static_cast<std::uint32_t>(columns);
    std::uint32_t i = 0;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column <= columns; ++column, ++i) {
            for (const std::uint32_t index : {i + width + 1, i, i + width, i + width + 1, i + 1, i})
                mesh.indices.push_back(index);
        }
    }
}

void AppendCap(Mesh& mesh, float radius, float z, int slices, const Vec& normal) {
    const float step = Step(2 * std::numbers::pi, slices);
    const auto rim = static_cast<std::uint32_t>(mesh.vertices.size());
    const std::uint32_t center = rim + static_cast<std::uint32_t>(slices) + 1;
    for (int seg = 0; seg <= slices; ++seg) {
        const float theta = static_cast<float>(seg) * step;
        mesh.vertices.emplace_back(radius * std::sin(theta), radius * std::cos(theta), z);
        mesh.normals.push_back(normal);
    }
    mesh.vertices.emplace_back(0.0f, 0.0f, z);
    mesh.normals.push_back(normal);
    // The rim runs from +Y to +X: clockwise seen from +Z.
    for (std::uint32_t i = rim; i + 1 < center; ++i) {
        const std::uint32_t first = normal.z > 0 ? i + 1 : i;
        const std::uint32_t second = normal.z > 0 ? i : i + 1;
        for (const std::uint32_t index : {center, first, second}) mesh.indices.push_back(index);
    }
}

/// Part of a ring about Z, from +X towards +Y.
std::unique_ptr<Mesh> MakeRing(const std::string& name, double sweepAngle, float ringRadius,
                               float tubeRadius, int ringSegments, int tubeSegments) {
    constexpr int fewestSegments = 3;
    const int rows = std::max(ringSegments, fewestSegments);
    const int columns = std::max(tubeSegments, fewestSegments);
    const float ringStep = Step(sweepAngle, rows);
    const float tubeStep = Step(2 * std::numbers::pi, columns);
    auto mesh = std::make_unique<Mesh>(name);
    for (int row = 0; row <= rows; ++row) {
        const float u = static_cast<float>(row) * ringStep;
        for (int column = 0; column <= columns; ++column) {
            const float v = static_cast<float>(column) * tubeStep;
            const float outward = tubeRadius * std::cos(v);
            const Vec tube{outward * std::cos(u), outward * std::sin(u), tubeRadius * std::sin(v)};
            mesh->vertices.emplace_back(ringRadius * std::cos(u) + tube.x,
                                        ringRadius * std::sin(u) + tube.y, tube.z);
            mesh->normals.push_back(tube.normalized());
        }
    }
    StitchRows(*mesh, rows, columns);
    return mesh;
}

}  // namespace

std::unique_ptr<Mesh> MakeSphere(const std::string& name, float radius, int stacks, int slices) {
    auto mesh = std::make_unique<Mesh>(name);
    if (stacks < 1 || slices < 1) return mesh;
    const float phiStep = Step(std::numbers::pi, stacks);
    const float thetaStep = Step(2 * std::numbers::pi, slices);
    for (int ring = 0; ring <= stacks; ++ring) {
        const float phi = static_cast<float>(ring) * phiStep;
        for (int seg = 0; seg <= slices; ++seg) {
            const float theta = static_cast<float>(seg) * thetaStep;
            const Pos p{radius * std::sin(phi) * std::sin(theta), radius * std::cos(phi),
                        radius * std::sin(phi) * std::cos(theta)};
            mesh->vertices.push_back(p);
            mesh->normals.push_back(p.asVec3().normalized());
        }
    }
    StitchRows(*mesh, stacks, slices);
    return mesh;
}

std::unique_ptr<Mesh> MakeCylinder(const std::string& name, float radius, float height, int stacks,
                                   int slices) {
    auto mesh = std::make_unique<Mesh>(name);
    if (stacks < 1 || slices < 1) return mesh;
    const float thetaStep = Step(2 * std::numbers::pi, slices);
    for (int ring = 0; ring <= stacks; ++ring) {
        const float z = static_cast<float>(ring) * height / static_cast<float>(stacks);
        for (int seg = 0; seg <= slices; ++seg) {
            const float theta = static_cast<float>(seg) * thetaStep;
            const Vec out{radius * std::sin(theta), radius * std::cos(theta), 0.0f};
            mesh->vertices.emplace_back(out.x, out.y, z);
            mesh->normals.push_back(out.normalized());
        }
    }
    StitchRows(*mesh, stacks, slices);
    // Half the height is where this mesh has its upper cap, although the side goes on above it.
    AppendCap(*mesh, radius, height * 0.5f, slices, {0, 0, 1});
    AppendCap(*mesh, radius, 0.0f, slices, {0, 0, -1});
    return mesh;
}

std::unique_ptr<Mesh> MakeCone(const std::string& name, float radius, float height) {
    constexpr double linearDeflection = 0.25;
    constexpr double angularDeflection = 0.3490658503988659;  // 20 degrees
    const TopoDS_Shape shape = BRepPrimAPI_MakeCone(radius, 0.0, height).Shape();
    const BRepMesh_IncrementalMesh tessellation(shape, linearDeflection, /*isRelative=*/false,
                                                angularDeflection, /*isInParallel=*/false);
    NCollection_IndexedMap<TopoDS_Shape, TopTools_ShapeMapHasher> faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    auto mesh = std::make_unique<Mesh>(name);
    for (int i = 1; i <= faces.Extent(); ++i)
        AppendFaceTriangles(TopoDS::Face(faces.FindKey(i)), *mesh);
    return mesh;
}

std::unique_ptr<Mesh> MakeTorus(const std::string& name, float ringRadius, float tubeRadius,
                                int ringSegments, int tubeSegments) {
    return MakeRing(name, 2 * std::numbers::pi, ringRadius, tubeRadius, ringSegments, tubeSegments);
}

std::unique_ptr<Mesh> MakeTorusSector(const std::string& name, float sweepAngle, float ringRadius,
                                      float tubeRadius, int ringSegments, int tubeSegments) {
    return MakeRing(name, sweepAngle, ringRadius, tubeRadius, ringSegments, tubeSegments);
}

}  // namespace vrn::visual
