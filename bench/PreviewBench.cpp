// 1000 preview curves of 20 points each, shown for a visual and removed again, beside the same line
// objects with the same material on bare nodes of Ogre. Removed from the end and from the front,
// where each one has to be found by the visual's id.

#include <cstdio>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>
#include <OgreMaterialManager.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "bench/BenchEngine.h"
#include "bench/Median.h"
#include "engine/Scene.h"
#include "mesh/DynamicLines.h"
#include "suite/geom/ShapeTools.h"
#include "visual/Visual.h"

namespace {

using namespace vrn;
using bench::Median;
using bench::MillisecondsOf;
using visual::DynamicLines;
using visual::Scene;

constexpr int curveCount = 1000;
constexpr int pointCount = 20;

geometry::PointList Curves() {
    geometry::PointList list;
    for (int i = 0; i < curveCount; ++i) {
        auto& points = list.sequences.emplace_back();
        for (int k = 0; k < pointCount; ++k) points.emplace_back(k * 10.0, i * 2.0, (k % 2) * 5.0);
    }
    return list;
}

/// The curves as a host asks for them, with the id of what they are shown for.
class Previews {
public:
    Previews() : owner("owner", Scene::Get()->root) { Scene::Get()->visuals[owner.id] = &owner; }
    ~Previews() { Scene::Get()->visuals.erase(owner.id); }
    Previews(const Previews&) = delete;
    Previews& operator=(const Previews&) = delete;

    void show(geometry::PointList& list) {
        Scene::Get()->addPreviewCurves(owner.id, &list);
        Scene::Get()->processMsgs();
    }
    void removeAll() {
        Scene::Get()->removePreviewCurves();
        Scene::Get()->processMsgs();
    }
    void removeOneByOne() {
        for (int i = 0; i < curveCount; ++i) Scene::Get()->removePreviewCurve(owner.id);
        Scene::Get()->processMsgs();
    }

private:
    visual::Visual owner;
};

/// The peer: a line object and a node for each, and nothing that knows of them. Brought to their
/// places in the world, as the scene's queue does with what it built.
class BareLines {
public:
    void show(const geometry::PointList& list) {
        Ogre::SceneNode* top = Scene::Get()->sceneManager->getRootSceneNode();
        const auto look = Ogre::MaterialManager::getSingleton().getByName("PreviewCurve");
        for (const auto& points : list.sequences) {
            auto line = std::make_unique<DynamicLines>(visual::RenderOpType::LineStrip);
            for (const auto& p : points)
                line->addPoint(static_cast<float>(p.x), static_cast<float>(p.y),
                               static_cast<float>(p.z));
            line->setMaterial(look);
            line->update();
            top->createChildSceneNode()->attachObject(line.get());
            lines.push_back(std::move(line));
        }
        top->_update(/*updateChildren=*/true, /*parentHasChanged=*/false);
    }
    void removeAll() {
        while (!lines.empty()) {
            Ogre::SceneNode* node = lines.back()->getParentSceneNode();
            lines.pop_back();
            Scene::Get()->sceneManager->destroySceneNode(node);
        }
    }

private:
    std::vector<std::unique_ptr<DynamicLines>> lines;
};

void ShowAndRemove(benchmark::State& state) {
    geometry::PointList list = Curves();
    Previews ours;
    BareLines bare;
    std::vector<double> shown, removed, removedSingly, bareShown, bareRemoved;
    for (auto _ : state) {
        shown.push_back(MillisecondsOf([&] { ours.show(list); }));
        removed.push_back(MillisecondsOf([&] { ours.removeAll(); }));
        bareShown.push_back(MillisecondsOf([&] { bare.show(list); }));
        bareRemoved.push_back(MillisecondsOf([&] { bare.removeAll(); }));
        ours.show(list);
        removedSingly.push_back(MillisecondsOf([&] { ours.removeOneByOne(); }));
        state.SetIterationTime((shown.back() + removed.back()) / 1e3);
    }
    const auto report = [](const char* what, double time, double peer) {
        std::printf("%d curves %s: %.2f ms, bare line objects %.2f ms, ratio %.2f\n", curveCount,
                    what, time, peer, time / peer);
    };
    report("shown", Median(shown), Median(bareShown));
    report("removed together", Median(removed), Median(bareRemoved));
    report("removed one by one from the front", Median(removedSingly), Median(bareRemoved));
}

}  // namespace

BENCHMARK(ShowAndRemove)->UseManualTime()->Iterations(40)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    const vrn::bench::BenchEngine engine;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
