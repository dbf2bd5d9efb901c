// A frame of a station of 1000 meshes with the drag handle on one of them, beside the same frame
// without it. The two are drawn in turn, so that whatever else the machine does meets both alike;
// once with the camera at rest, and once with a camera that moves before each frame, where the
// handle takes a new size and picking is brought up to date with it.

#include <cmath>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/BenchEngine.h"
#include "bench/Median.h"
#include "engine/Scene.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/handle/DragHandle.h"

namespace {

using namespace vrn;
using bench::Median;
using bench::MillisecondsOf;
using visual::DragHandle;
using visual::MeshVisual;
using visual::Scene;
using visual::Visual;

constexpr int gridSide = 10;  // 10 x 10 x 10 objects
constexpr float spacing = 150.0f;
constexpr const char* meshName = "VectorSphere";
constexpr float meshScale = 8.0f;
const rob::PosTemplate<float> start{2500, -2500, 2000};

void Frame() {
    Scene::Get()->processMsgs();
    selection::VisualSelection::Get()->update();
    visual::gRenderEngine->root->renderOneFrame();
}

/// The meshes, in the registry of what can be picked as those of a station are.
class Station {
public:
    Station() : group("BenchStation", Scene::Get()->root) {
        for (int i = 0; i < gridSide * gridSide * gridSide; ++i) {
            auto* mesh = new MeshVisual("bench", &group);
            mesh->attachMesh(meshName);
            mesh->setMaterial("Body", "BodySelected", "BodyHighlighted");
            mesh->resetAppearance();
            mesh->setColor(
                {static_cast<float>(i % 7) / 7.0f, static_cast<float>(i % 11) / 11.0f, 0.5f}, 1.0f);
            mesh->setScale(meshScale, meshScale, meshScale);
            mesh->setPosition(static_cast<float>(i % gridSide) * spacing,
                              static_cast<float>(i / gridSide % gridSide) * spacing,
                              static_cast<float>(i / (gridSide * gridSide)) * spacing);
            selection::VisualSelection::Get()->addMeshVisual(mesh, /*detectable=*/true,
                                                             /*priority=*/false);
            // In the front upper corner, where the whole handle is seen.
            if (i == gridSide * gridSide * (gridSide - 1) + gridSide - 1) corner = mesh;
        }
    }
    ~Station() { group.clearChildren(); }
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    Visual group;
    Visual* corner = nullptr;
};

/// On the mesh and ready to be picked, as a host does for a selected object, or as after Init.
void ShowHandle(bool on, Visual* carrier) {
    DragHandle* handle = DragHandle::Get();
    if (on)
        Scene::Get()->attachGuiTo(handle, carrier, {});
    else
        Scene::Get()->detachGui(handle);
    selection::VisualSelection::Get()->setCompoundObjectEnabled(handle, on);
}

/// Frames with and without the handle in turn; `beforeFrame` gets the number of the pair, so that
/// both of a pair are seen from one place.
template <class BeforeFrame>
void CompareFrames(benchmark::State& state, BeforeFrame beforeFrame) {
    const Station station;
    std::vector<double> with, without;
    int pair = 0;
    const auto measure = [&](bool shown, std::vector<double>& times) {
        ShowHandle(shown, station.corner);
        beforeFrame(2 * pair);
        Frame();  // the change is not part of the measure
        beforeFrame(2 * pair + 1);
        times.push_back(MillisecondsOf(Frame));
    };
    for (auto _ : state) {
        measure(true, with);
        measure(false, without);
        ++pair;
        state.SetIterationTime(with.back() / 1e3);
    }
    visual::Camera::Get()->setWorldPosition(start);
    state.counters["with_ms"] = Median(with);
    state.counters["without_ms"] = Median(without);
    state.counters["ratio"] = Median(with) / Median(without);
}

void CameraAtRest(benchmark::State& state) {
    CompareFrames(state, [](int) {});
}

void CameraMoving(benchmark::State& state) {
    CompareFrames(state, [](int number) {
        const float way = 50.0f * std::sin(0.1f * static_cast<float>(number));
        visual::Camera::Get()->setWorldPosition({start.x + way, start.y + way, start.z});
    });
}

}  // namespace

BENCHMARK(CameraAtRest)->UseManualTime()->Iterations(60)->Unit(benchmark::kMillisecond);
BENCHMARK(CameraMoving)->UseManualTime()->Iterations(60)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    const vrn::bench::BenchEngine engine;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
