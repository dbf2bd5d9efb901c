// How fast the picking hierarchy over a mesh of a million triangles is built, and asked by one ray,
// beside OpenCASCADE's binned builder with its traversal and Embree at medium quality, each on one
// thread.
//
// The mesh is a dented globe so large that a triangle is wide against the margin of its box. Ours
// counts from the mesh record to the finished tree; the peers start from their own arrays. Hits are
// compared, so that nobody is fast because of finding nothing.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <numbers>
#include <optional>
#include <random>
#include <span>
#include <string>
#include <vector>

#include <embree4/rtcore.h>
#include <BVH_BinnedBuilder.hxx>
#include <BVH_Tools.hxx>
#include <BVH_Traverse.hxx>
#include <BVH_Triangulation.hxx>

#include "bench/HeapInUse.h"
#include "bench/Median.h"
#include "mesh/Mesh.h"
#include "selection/Ray.h"
#include "selection/SensitiveMesh.h"

namespace {

using namespace vrn;
using bench::HeapInUse;
using bench::Median;
using bench::MillisecondsOf;
using Pos = rob::PosTemplate<float>;
using Rays = std::vector<visual::Ray>;

constexpr std::uint32_t rings = 500, segments = 1000;  // 2 * rings * segments triangles
constexpr float radius = 100'000;
constexpr int builds = 7, passes = 7;
constexpr int rayCount = 100'000;

visual::Mesh MakeGlobe() {
    visual::Mesh mesh("globe");
    for (std::uint32_t ring = 0; ring <= rings; ++ring)
        for (std::uint32_t segment = 0; segment <= segments; ++segment) {
            const float tilt = std::numbers::pi_v<float> * static_cast<float>(ring) / rings;
            const float turn =
                2 * std::numbers::pi_v<float> * static_cast<float>(segment) / segments;
            const float r = radius * (1 + 0.05f * std::sin(9 * tilt) * std::cos(7 * turn));
            mesh.vertices.push_back({r * std::sin(tilt) * std::cos(turn),
                                     r * std::sin(tilt) * std::sin(turn), r * std::cos(tilt)});
        }
    for (std::uint32_t ring = 0; ring < rings; ++ring)
        for (std::uint32_t segment = 0; segment < segments; ++segment) {
            const std::uint32_t a = ring * (segments + 1) + segment, b = a + segments + 1;
            for (const std::uint32_t index : {a, b, a + 1, a + 1, b, b + 1})
                mesh.indices.push_back(index);
        }
    return mesh;
}

/// Parallel rays in rows, as a picture asks; a third of them pass by.
Rays RowsFromOutside() {
    Rays rays;
    const int side = static_cast<int>(std::sqrt(rayCount));
    for (int row = 0; row < side; ++row)
        for (int column = 0; column < side; ++column) {
            const auto place = [side](int i) {
                return radius * 1.2f *
                       (2 * (static_cast<float>(i) + 0.37f) / static_cast<float>(side) - 1);
            };
            rays.push_back({{place(column), place(row), 3 * radius}, {0.01f, 0.02f, -1}});
        }
    return rays;
}

Rays AtRandom() {
    Rays rays;
    std::mt19937 random(1);
    std::uniform_real_distribution<float> place(-radius, radius);
    const auto point = [&] { return Pos{place(random), place(random), place(random)}; };
    while (rays.size() < rayCount) {
        const Pos from = point();
        const auto along = (point() - from).normalized();
        rays.push_back({from, {along.x, along.y, along.z}});
    }
    return rays;
}

// --- the peers

/// OpenCASCADE's triangles with the ray test that is usual for them.
class OcctMesh : public BVH_Traverse<float, 3, BVH_Triangulation<float, 3>, float> {
public:
    explicit OcctMesh(const visual::Mesh& mesh)
        : triangles(new BVH_Triangulation<float, 3>(
              new BVH_BinnedBuilder<float, 3>(BVH_Constants_LeafNodeSizeDefault))) {
        for (const Pos& p : mesh.vertices) triangles->Vertices.emplace_back(p.x, p.y, p.z);
        for (std::size_t i = 0; i < mesh.indices.size(); i += 3)
            triangles->Elements.emplace_back(static_cast<int>(mesh.indices[i]),
                                             static_cast<int>(mesh.indices[i + 1]),
                                             static_cast<int>(mesh.indices[i + 2]), 0);
        triangles->MarkDirty();
        SetBVHSet(triangles.get());
    }
    void build() { (void)triangles->BVH(); }

    /// The parameter of the nearest hit; FLT_MAX for none.
    float pick(const visual::Ray& ray) {
        origin = BVH_Vec3f(ray.origin.x, ray.origin.y, ray.origin.z);
        direction = BVH_Vec3f(ray.direction.x, ray.direction.y, ray.direction.z);
        nearest = FLT_MAX;
        Select();
        return nearest;
    }

    bool RejectNode(const BVH_Vec3f& low, const BVH_Vec3f& high, float& metric) const override {
        float leave = 0;
        return !BVH_Tools<float, 3>::RayBoxIntersection(origin, direction, low, high, metric,
                                                        leave) ||
               metric > nearest;
    }
    bool IsMetricBetter(const float& left, const float& right) const override {
        return left < right;
    }
    bool RejectMetric(const float& metric) const override { return metric > nearest; }
    /// Moeller and Trumbore, "Fast, minimum storage ray-triangle intersection", 1997.
    bool Accept(const int index, const float& /*metric*/) override {
        const BVH_Vec4i element = triangles->Elements[static_cast<std::size_t>(index)];
        const BVH_Vec3f& a = triangles->Vertices[static_cast<std::size_t>(element[0])];
        const BVH_Vec3f e1 = triangles->Vertices[static_cast<std::size_t>(element[1])] - a;
        const BVH_Vec3f e2 = triangles->Vertices[static_cast<std::size_t>(element[2])] - a;
        const BVH_Vec3f p = BVH_Vec3f::Cross(direction, e2);
        const float determinant = e1.Dot(p);
        if (determinant == 0) return false;
        const BVH_Vec3f s = origin - a;
        const float u = s.Dot(p) / determinant;
        if (u < 0 || u > 1) return false;
        const BVH_Vec3f q = BVH_Vec3f::Cross(s, e1);
        const float v = direction.Dot(q) / determinant;
        if (v < 0 || u + v > 1) return false;
        const float t = e2.Dot(q) / determinant;
        if (t <= 0 || t >= nearest) return false;
        nearest = t;
        return true;
    }

private:
    opencascade::handle<BVH_Triangulation<float, 3>> triangles;
    BVH_Vec3f origin, direction;
    float nearest = FLT_MAX;
};

class EmbreeMesh {
public:
    explicit EmbreeMesh(const visual::Mesh& mesh) : device(rtcNewDevice("threads=1")) {
        rtcSetDeviceMemoryMonitorFunction(
            device,
            [](void* bytes, ssize_t change, bool /*done*/) {
                *static_cast<std::ptrdiff_t*>(bytes) += change;
                return true;
            },
            &bytesHeld);
        scene = rtcNewScene(device);
        rtcSetSceneBuildQuality(scene, RTC_BUILD_QUALITY_MEDIUM);
        RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
        auto* vertices = static_cast<float*>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                    3 * sizeof(float), mesh.vertices.size()));
        for (const Pos& p : mesh.vertices)
            for (const float value : {p.x, p.y, p.z}) *vertices++ = value;
        auto* indices = static_cast<unsigned*>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                    3 * sizeof(unsigned), mesh.indices.size() / 3));
        std::ranges::copy(mesh.indices, indices);
        rtcCommitGeometry(geometry);
        rtcAttachGeometry(scene, geometry);
        rtcReleaseGeometry(geometry);
        geometryBytes = bytesHeld;
    }
    ~EmbreeMesh() {
        rtcReleaseScene(scene);
        rtcReleaseDevice(device);
    }
    EmbreeMesh(const EmbreeMesh&) = delete;
    EmbreeMesh& operator=(const EmbreeMesh&) = delete;

    void build() { rtcCommitScene(scene); }
    [[nodiscard]] std::ptrdiff_t treeBytes() const { return bytesHeld - geometryBytes; }

    float pick(const visual::Ray& ray) {
        RTCRayHit asked{};
        asked.ray.org_x = ray.origin.x;
        asked.ray.org_y = ray.origin.y;
        asked.ray.org_z = ray.origin.z;
        asked.ray.dir_x = ray.direction.x;
        asked.ray.dir_y = ray.direction.y;
        asked.ray.dir_z = ray.direction.z;
        asked.ray.tfar = FLT_MAX;
        asked.ray.mask = ~0u;
        asked.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        rtcIntersect1(scene, &asked);
        return asked.hit.geomID == RTC_INVALID_GEOMETRY_ID ? FLT_MAX : asked.ray.tfar;
    }

private:
    RTCDevice device;
    RTCScene scene = nullptr;
    std::ptrdiff_t bytesHeld = 0, geometryBytes = 0;
};

class OurMesh {
public:
    explicit OurMesh(visual::Mesh& someMesh) : mesh(someMesh) {}
    void build() { sensitive.emplace(&mesh, nullptr, rob::PoseTemplate<float>()); }
    float pick(const visual::Ray& ray) {
        const selection::Result result = sensitive->intersect(ray);
        return result.hit ? result.distance : FLT_MAX;
    }

private:
    visual::Mesh& mesh;
    std::optional<selection::SensitiveMesh> sensitive;
};

// --- measuring

struct Times {
    std::vector<double> ours, occt, embree;

    void print(const char* what, const char* unit, double scale) const {
        const double a = Median(ours) * scale, b = Median(occt) * scale, c = Median(embree) * scale;
        std::printf(
            "%-28s ours %8.2f %s, OpenCASCADE %8.2f (ours/it %.3f), Embree %8.2f (ours/it %.2f)\n",
            what, a, unit, b, a / b, c, a / c);
    }
};

template <class Some>
std::vector<float> Distances(Some& mesh, const Rays& rays) {
    std::vector<float> distances;
    distances.reserve(rays.size());
    for (const visual::Ray& ray : rays) distances.push_back(mesh.pick(ray));
    return distances;
}

int CountDifferent(std::span<const float> a, std::span<const float> b) {
    int different = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        different += (a[i] == FLT_MAX) != (b[i] == FLT_MAX) ||
                     (a[i] != FLT_MAX && std::abs(a[i] - b[i]) > 1e-3f * std::max(1000.0f, b[i]));
    return different;
}

void CompareRays(const char* what, const Rays& rays, OurMesh& ours, OcctMesh& occt,
                 EmbreeMesh& embree) {
    Times times;
    std::vector<float> a, b, c;
    for (int pass = 0; pass < passes; ++pass) {
        times.ours.push_back(MillisecondsOf([&] { a = Distances(ours, rays); }));
        times.occt.push_back(MillisecondsOf([&] { b = Distances(occt, rays); }));
        times.embree.push_back(MillisecondsOf([&] { c = Distances(embree, rays); }));
    }
    times.print(what, "us", 1000.0 / static_cast<double>(rays.size()));
    std::printf(
        "%-28s %td of %zu rays hit; other answers than OpenCASCADE's %d, than Embree's %d\n", "",
        std::ranges::count_if(a, [](float t) { return t != FLT_MAX; }), rays.size(),
        CountDifferent(a, b), CountDifferent(a, c));
}

}  // namespace

int main() {
    visual::Mesh mesh = MakeGlobe();
    std::printf("%zu triangles\n", mesh.indices.size() / 3);
    Times times;
    std::unique_ptr<OurMesh> ours;
    std::unique_ptr<OcctMesh> occt;
    std::unique_ptr<EmbreeMesh> embree;
    std::size_t ourBytes = 0, occtBytes = 0;
    for (int i = 0; i < builds; ++i) {
        ours.reset();
        std::size_t before = HeapInUse();
        ours = std::make_unique<OurMesh>(mesh);
        times.ours.push_back(MillisecondsOf([&] { ours->build(); }));
        ourBytes = HeapInUse() - before;
        occt = std::make_unique<OcctMesh>(mesh);
        before = HeapInUse();
        times.occt.push_back(MillisecondsOf([&] { occt->build(); }));
        occtBytes = HeapInUse() - before;
        embree = std::make_unique<EmbreeMesh>(mesh);
        times.embree.push_back(MillisecondsOf([&] { embree->build(); }));
    }
    times.print("built", "ms", 1);
    const auto perTriangle = [&](double bytes) {
        return bytes / static_cast<double>(mesh.indices.size() / 3);
    };
    std::printf(
        "bytes a triangle             ours %.0f, OpenCASCADE %.0f, Embree %.0f (trees; meshes "
        "apart)\n",
        perTriangle(static_cast<double>(ourBytes)), perTriangle(static_cast<double>(occtBytes)),
        perTriangle(static_cast<double>(embree->treeBytes())));
    CompareRays("a ray, rows from outside", RowsFromOutside(), *ours, *occt, *embree);
    CompareRays("a ray, at random", AtRandom(), *ours, *occt, *embree);
    return 0;
}
