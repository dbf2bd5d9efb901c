// A frame of 1000 mesh visuals, beside the same entities made in bare Ogre: same mesh, material,
// colours and places, in the same scene and window. The two sets are shown in turn, frame by frame,
// so that whatever else the machine does meets both alike.

#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <OgreEntity.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "bench/BenchEngine.h"
#include "bench/Median.h"
#include "engine/Scene.h"
#include "visual/geometry/MeshVisual.h"

namespace {

using namespace vrn;
using bench::Median;
using bench::MillisecondsOf;

constexpr int gridSide = 10;  // 10 x 10 x 10 objects
constexpr float spacing = 150.0f;
constexpr const char* meshName = "VectorSphere";
constexpr float meshScale = 8.0f;

Ogre::Vector3 PlaceOf(int i) {
    return Ogre::Vector3(static_cast<float>(i % gridSide),
                         static_cast<float>(i / gridSide % gridSide),
                         static_cast<float>(i / (gridSide * gridSide))) *
           spacing;
}

rob::ColorTemplate<float> ColourOf(int i) {
    return {static_cast<float>(i % 7) / 7.0f, static_cast<float>(i % 11) / 11.0f, 0.5f};
}

/// One of the two ways to show the objects.
class ObjectSet {
public:
    virtual ~ObjectSet() = default;
    virtual void show(bool on) = 0;
    virtual void frame() = 0;
};

class OfVisuals : public ObjectSet {
public:
    OfVisuals() : group("BenchVisuals", visual::Scene::Get()->root) {
        for (int i = 0; i < gridSide * gridSide * gridSide; ++i) {
            auto* visual = new visual::MeshVisual("bench", &group);
            visual->attachMesh(meshName);
            visual->setMaterial("Body", "BodySelected", "BodyHighlighted");
            visual->resetAppearance();
            visual->setColor(ColourOf(i), 1.0f);
            visual->setScale(meshScale, meshScale, meshScale);
            const Ogre::Vector3 place = PlaceOf(i);
            visual->setPosition(place.x, place.y, place.z);
            selection::VisualSelection::Get()->addMeshVisual(visual, /*detectable=*/true,
                                                             /*priority=*/false);
        }
    }
    ~OfVisuals() override { group.clearChildren(); }
    void show(bool on) override { group.setVisible(on, /*cascade=*/true); }
    void frame() override {
        visual::Scene::Get()->processMsgs();
        selection::VisualSelection::Get()->update();
        visual::gRenderEngine->root->renderOneFrame();
    }

private:
    visual::Visual group;
};

class OfBareEntities : public ObjectSet {
public:
    OfBareEntities() {
        Ogre::SceneManager* scene = visual::Scene::Get()->sceneManager;
        group = scene->getRootSceneNode()->createChildSceneNode();
        for (int i = 0; i < gridSide * gridSide * gridSide; ++i) {
            Ogre::Entity* entity = scene->createEntity(meshName);
            entity->setMaterialName("Body");
            const auto colour = ColourOf(i);
            entity->getSubEntity(0)->setCustomParameter(
                0, Ogre::Vector4(colour.r, colour.g, colour.b, 1.0f));
            Ogre::SceneNode* node = group->createChildSceneNode(PlaceOf(i));
            node->setScale(meshScale, meshScale, meshScale);
            node->attachObject(entity);
        }
    }
    void show(bool on) override { group->setVisible(on, /*cascade=*/true); }
    void frame() override { visual::gRenderEngine->root->renderOneFrame(); }

private:
    Ogre::SceneNode* group;
};

void CompareFrames(benchmark::State& state) {
    OfVisuals ours;
    OfBareEntities bare;
    std::vector<double> ourTimes, bareTimes;
    const auto measure = [&](ObjectSet& shown, ObjectSet& hidden, std::vector<double>& times) {
        hidden.show(false);
        shown.show(true);
        shown.frame();  // the change of sets is not part of the measure
        times.push_back(MillisecondsOf([&] { shown.frame(); }));
    };
    for (auto _ : state) {
        measure(ours, bare, ourTimes);
        measure(bare, ours, bareTimes);
        state.SetIterationTime(ourTimes.back() / 1e3);
    }
    state.counters["ours_ms"] = Median(ourTimes);
    state.counters["bare_ms"] = Median(bareTimes);
    state.counters["ratio"] = Median(ourTimes) / Median(bareTimes);
}

}  // namespace

BENCHMARK(CompareFrames)->UseManualTime()->Iterations(60)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    const vrn::bench::BenchEngine engine;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
