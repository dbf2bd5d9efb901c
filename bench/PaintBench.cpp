// A gun that goes along a mesh of a million triangles and sprays, its cone reaching one percent of
// them at a time, beside the same rules asked of every triangle, and beside a plain loop over just
// those triangles that the spray's box reaches: each with the upload of what it painted. Head on,
// and with everything turned, where the box holds far more than the cone. Then the upload of
// changed colours alone, beside writing the same colours to the same buffer. The program fails
// where what is painted differs.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <numbers>
#include <numeric>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreSubMesh.h>

#include "bench/BenchEngine.h"
#include "bench/Median.h"
#include "engine/Scene.h"
#include "mesh/MeshManager.h"
#include "selection/Cone.h"
#include "selection/SelectableObject.h"
#include "suite/sdf/ObjectStore.h"
#include "suite/smart/SmartComponent.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/process/PaintVisual.h"

namespace {

using namespace vrn;
using bench::Median;
using bench::MillisecondsOf;
using visual::Color;
using visual::PaintMesh;
using visual::PaintVisual;
using visual::Scene;
using Pos = rob::PosTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using Rotation = rob::RotationTemplate<float>;
using Triangles = std::vector<unsigned int>;
using Vec = rob::Vec3Template<float>;

constexpr int cellsX = 1000, cellsY = 500;  // two triangles each
constexpr float cellSize = 4;
constexpr const char* sheetName = "bench-sheet";
/// The gun stands this far off, and the box of its cone meets those of one percent of the
/// triangles.
constexpr float distance = 190;
constexpr double height = 200, diameter = 276;
/// It sprays at so many places in a row, an eighth of the diameter apart.
constexpr int places = 20;

float HeightAt(float x, float y) { return 8 * std::sin(x * 0.01f) * std::cos(y * 0.013f); }

/// A wavy sheet as an STL file gives it: each triangle with its own corners.
void AddSheet() {
    auto mesh = std::make_unique<visual::Mesh>(sheetName);
    const auto add = [&](int column, int row) {
        const float x = cellSize * static_cast<float>(column - cellsX / 2);
        const float y = cellSize * static_cast<float>(row - cellsY / 2);
        mesh->indices.push_back(static_cast<std::uint32_t>(mesh->vertices.size()));
        mesh->vertices.push_back({x, y, HeightAt(x, y)});
    };
    for (int row = 0; row < cellsY; ++row)
        for (int column = 0; column < cellsX; ++column)
            for (const auto& [right, up] :
                 {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}})
                add(column + right, row + up);
    for (std::size_t i = 0; i < mesh->vertices.size(); i += 3) {
        const auto& v = mesh->vertices;
        mesh->normals.insert(mesh->normals.end(), 3,
                             (v[i + 1] - v[i]).cross(v[i + 2] - v[i]).normalized());
    }
    visual::MeshManager::Get()->addMesh(mesh.release());
}

/// The sheet with paint on it and a gun over its middle; `turned`, both lie askew in the world.
class PaintShop {
public:
    explicit PaintShop(bool turned)
        : askew(turned ? 0.6f : 0.0f, Vec{1, 1, 1}.normalized()), reached(places) {
        target = new visual::MeshVisual("sheet", Scene::Get()->root);
        target->attachMesh(sheetName);
        target->setMaterial("Body", "BodySelected", "BodyHighlighted");
        target->resetAppearance();
        target->setPose({{}, askew});
        paint = PaintVisual::Build(target, 0);
        gun = store.make<smartcomp::SprayComponent>("gun");
        gun->setProperty(6, 0.0);
        gun->setProperty(7, height);
        gun->setProperty(8, diameter);
        Scene::Get()->addSmartComponent(gun);
        Scene::Get()->processMsgs();
        for (int place = 0; place < places; ++place) {
            goTo(place);
            spray();  // which builds the hierarchy at first
            reached[static_cast<std::size_t>(place)] = trianglesInReach();
        }
    }
    ~PaintShop() {
        Scene::Get()->deleteVisual(target);
        Scene::Get()->deleteVisual(gunVisual());
    }
    PaintShop(const PaintShop&) = delete;
    PaintShop& operator=(const PaintShop&) = delete;

    /// Puts the gun over a place, looking down at the sheet.
    void goTo(int place) {
        const auto x = static_cast<float>((place - places / 2) * diameter / 8);
        gunVisual()->setPose({askew * Pos{x, 0, distance},
                              askew * Rotation(std::numbers::pi_v<float>, Vec{1, 0, 0})});
    }

    void spray() { paint->spray(gun->id, 0, diameter / 2, height); }

    /// The rules of a spray, for just these triangles.
    void sprayPlainly(const Triangles& triangles) {
        const visual::Box box = reach();
        const visual::Cone cone{0, diameter / 2, height};
        const Pose sprayPose = gunVisual()->getWorldPose(), own = paint->getWorldPose();
        const Vec axis = sprayPose.rotation * Vec{0, 0, 1};
        PaintMesh& painted = mesh();
        for (const unsigned triangle : triangles)
            for (unsigned k = 0; k < 3; ++k) {
                const std::uint32_t v = painted.indices[3 * triangle + k];
                const Vec place =
                    own.rotation * painted.vertices[v].asVec3() + own.position.asVec3();
                if (!box.isPointInside(place.x, place.y, place.z)) break;
                if (axis.dot(own.rotation * painted.normals[v]) > 0) break;
                if (cone.isPointInside(sprayPose, place)) painted.setColor(v, Color{0, 0, 0, 255});
            }
        visual::MeshManager::Get()->updatePaintMeshColor(&painted);
    }

    /// Those that the hierarchy hands out.
    [[nodiscard]] Triangles trianglesInReach() const {
        Triangles found;
        selection::VisualSelection::Get()->getObject(paint)->processIntersectionsWith(
            reach(), [&](unsigned triangle) { found.push_back(triangle); });
        return found;
    }

    [[nodiscard]] PaintMesh& mesh() const { return *paint->getMesh(); }

    const Rotation askew;
    PaintVisual* paint;
    std::vector<Triangles> reached;  ///< at each place

private:
    [[nodiscard]] visual::Visual* gunVisual() const { return Scene::Get()->visuals.at(gun->id); }
    [[nodiscard]] visual::Box reach() const {
        auto* object = selection::VisualSelection::Get()->getObject(gunVisual());
        object->updateWorldBox();
        return object->box;
    }

    sdf::ObjectStore store;
    visual::MeshVisual* target;
    smartcomp::SprayComponent* gun;
};

void CompareSprays(benchmark::State& state, bool turned) {
    PaintShop shop(turned);
    const std::size_t triangles = shop.mesh().indices.size() / 3;
    Triangles all(triangles);
    std::iota(all.begin(), all.end(), 0u);
    std::vector<double> ours, brute, plain;
    // All places in a row; the mean of what `action(place)` takes.
    const auto measure = [&](std::vector<double>& times, auto&& action) {
        shop.paint->reset();
        double sum = 0;
        for (int place = 0; place < places; ++place) {
            shop.goTo(place);
            sum += MillisecondsOf([&] { action(static_cast<std::size_t>(place)); });
        }
        times.push_back(sum / places);
        return shop.mesh().vertexColors;
    };
    for (auto _ : state) {
        const auto ourColors = measure(ours, [&](std::size_t) { shop.spray(); });
        const auto plainColors =
            measure(plain, [&](std::size_t place) { shop.sprayPlainly(shop.reached[place]); });
        const auto bruteColors = measure(brute, [&](std::size_t) { shop.sprayPlainly(all); });
        if (ourColors != bruteColors || ourColors != plainColors) {
            std::fprintf(stderr, "what is painted differs\n");
            std::exit(1);
        }
        state.SetIterationTime(ours.back() / 1e3);
    }
    std::size_t reached = 0;
    for (const Triangles& there : shop.reached) reached += there.size();
    state.counters["reached_percent"] =
        100.0 * static_cast<double>(reached) / static_cast<double>(triangles * places);
    state.counters["ours_ms"] = Median(ours);
    state.counters["every_triangle_ms"] = Median(brute);
    state.counters["reached_alone_ms"] = Median(plain);
    state.counters["of_every_triangle"] = Median(ours) / Median(brute);
    state.counters["of_reached_alone"] = Median(ours) / Median(plain);
}

/// The colours of the vertices, each written once, by a loop that knows where they stand.
void WriteColours(const PaintMesh& mesh, const std::vector<std::uint32_t>& vertices) {
    constexpr std::size_t vertexSize = 40, offset = 24;
    const auto shown = Ogre::MeshManager::getSingleton().getByName(mesh.name, Ogre::RGN_AUTODETECT);
    const auto buffer = shown->getSubMesh(0)->vertexData->vertexBufferBinding->getBuffer(0);
    const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_WRITE_ONLY);
    for (const std::uint32_t v : vertices)
        std::memcpy(static_cast<std::byte*>(lock.pData) + vertexSize * v + offset,
                    &mesh.vertexColors[v], sizeof(Color));
}

void CompareUploads(benchmark::State& state) {
    PaintShop shop(/*turned=*/false);
    const std::size_t corners = shop.mesh().vertices.size();
    std::vector<std::uint32_t> changed(corners / 100 * static_cast<std::size_t>(state.range(0)));
    std::iota(changed.begin(), changed.end(), 0u);
    std::vector<double> ours, bare;
    for (auto _ : state) {
        for (const std::uint32_t v : changed) shop.mesh().setColor(v, Color{1, 0, 0, 255});
        ours.push_back(MillisecondsOf(
            [&] { visual::MeshManager::Get()->updatePaintMeshColor(&shop.mesh()); }));
        bare.push_back(MillisecondsOf([&] { WriteColours(shop.mesh(), changed); }));
        state.SetIterationTime(ours.back() / 1e3);
    }
    state.counters["ours_ms"] = Median(ours);
    state.counters["bare_ms"] = Median(bare);
    state.counters["ratio"] = Median(ours) / Median(bare);
}

void SprayHeadOn(benchmark::State& state) { CompareSprays(state, /*turned=*/false); }
void SprayTurned(benchmark::State& state) { CompareSprays(state, /*turned=*/true); }

}  // namespace

BENCHMARK(SprayHeadOn)->UseManualTime()->Iterations(9)->Unit(benchmark::kMillisecond);
BENCHMARK(SprayTurned)->UseManualTime()->Iterations(9)->Unit(benchmark::kMillisecond);
BENCHMARK(CompareUploads)
    ->Arg(1)
    ->Arg(100)
    ->ArgName("percent")
    ->UseManualTime()
    ->Iterations(30)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    const vrn::bench::BenchEngine engine;
    AddSheet();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
