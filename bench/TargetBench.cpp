// A frame with 10,000 targets, beside the same triads as bare hardware instances of Ogre: same
// mesh, material, batch size and places. The two sets are shown in turn, frame by frame.

#include <benchmark/benchmark.h>
#include <OgreInstancedEntity.h>
#include <OgreIteratorWrapper.h>
#include <OgreRenderTarget.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include <OgreInstanceBatch.h>
#include <OgreInstanceManager.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench/BenchEngine.h"
#include "bench/HeapInUse.h"
#include "bench/Median.h"
#include "engine/Scene.h"
#include "suite/sdf/ObjectStore.h"
#include "suite/task/DataItem.h"
#include "suite/task/Task.h"
#include "visual/station/RobtargetVisual.h"
#include "visual/station/WObjVisual.h"

namespace {

using namespace vrn;
using bench::HeapInUse;
using bench::Median;
using bench::MillisecondsOf;
using visual::Scene;

constexpr int targetCount = 10'000;
constexpr int rowLength = 100;
constexpr float spacing = 25, size = 15;
constexpr std::size_t instancesPerBatch = 5000;

rob::PosTemplate<double> PlaceOf(int i) {
    return {static_cast<double>(i % rowLength) * spacing,
            static_cast<double>(i / rowLength) * spacing, 0};
}

/// Targets of one work object.
class OfTargets {
public:
    OfTargets() {
        auto* item = model.make<task::WObjDataItem>("wobj");
        item->setObjectFrame(*model.make<task::ObjectFrame>("oframe"));
        visual::WObjVisual::Build(Scene::Get()->root, item);
        wobj = Scene::Get()->visuals.at(item->id);
        frame = Scene::Get()->visuals.at(item->getObjectFrame()->id);
        for (int i = 0; i < targetCount; ++i)
            targets.push_back(model.make<task::RobTargetDataItem>(
                "target", rob::PoseTemplate<double>{PlaceOf(i), {}}));
    }
    ~OfTargets() { Scene::Get()->deleteVisual(wobj); }

    void build() {
        for (const task::RobTargetDataItem* target : targets)
            visual::RobtargetVisual::Build(frame, target->id);
        selection::VisualSelection::Get()->update();
    }
    void remove() {
        frame->clearChildren();
        selection::VisualSelection::Get()->update();
    }
    void resize(unsigned length) {
        Scene::Get()->setFrameSize(length, VisualType::RobTarget);
        Scene::Get()->processMsgs();
        selection::VisualSelection::Get()->update();
    }
    void show(bool on) const {
        for (visual::Visual* target : frame->getChildren()) target->setVisible(on, false);
    }
    void drawFrame() const {
        Scene::Get()->processMsgs();
        selection::VisualSelection::Get()->update();
        visual::gRenderEngine->root->renderOneFrame();
    }

private:
    sdf::ObjectStore model;
    visual::Visual* wobj;
    visual::Visual* frame;
    std::vector<task::RobTargetDataItem*> targets;
};

/// The peer.
class OfInstances {
public:
    OfInstances()
        : manager(Scene::Get()->sceneManager->createInstanceManager(
              "bench", "VRN_FrameMesh", Ogre::RGN_DEFAULT, Ogre::InstanceManager::HWInstancingBasic,
              instancesPerBatch, Ogre::IM_USEALL)),
          group(Scene::Get()->sceneManager->getRootSceneNode()->createChildSceneNode()) {}

    void build() {
        for (int i = 0; i < targetCount; ++i) {
            Ogre::InstancedEntity* instance = manager->createInstancedEntity("InstanceRobTarget");
            instance->setScale(Ogre::Vector3(size), /*doUpdate=*/true);
            instance->_getOwner()->setRenderQueueGroup(60);
            instance->_getOwner()->setCustomParameter(0, Ogre::Vector4(0, 0, 0, -1));
            const auto place = PlaceOf(i);
            Ogre::SceneNode* node = group->createChildSceneNode(
                Ogre::Vector3(static_cast<float>(place.x), static_cast<float>(place.y), 0));
            node->attachObject(instance);
            instances.push_back(instance);
        }
    }
    void remove() {
        for (Ogre::InstancedEntity* instance : instances) {
            Ogre::SceneNode* node = instance->getParentSceneNode();
            instance->_getOwner()->removeInstancedEntity(instance);
            Scene::Get()->sceneManager->destroySceneNode(node);
        }
        instances.clear();
    }
    void show(bool on) const {
        for (Ogre::InstancedEntity* instance : instances) instance->setVisible(on);
    }
    void drawFrame() const { visual::gRenderEngine->root->renderOneFrame(); }

private:
    Ogre::InstanceManager* manager;
    Ogre::SceneNode* group;
    std::vector<Ogre::InstancedEntity*> instances;
};

std::size_t BatchesOfLastFrame() {
    return visual::gRenderEngine->root->getRenderTarget("ogrewindow")->getStatistics().batchCount;
}

/// One of the two sets through its life, and what that cost.
template <class Set>
struct Contender {
    Set set;
    std::vector<double> builds, removals, frames;  ///< ms
    double bytes = 0;
    std::size_t batches = 0;

    void build() {
        const std::size_t before = HeapInUse();
        builds.push_back(MillisecondsOf([this] { set.build(); }));
        bytes = static_cast<double>(HeapInUse() - before);
    }
    void remove() {
        removals.push_back(MillisecondsOf([this] { set.remove(); }));
    }
    template <class Other>
    void measureFrame(const Other& hidden) {
        hidden.show(false);
        set.show(true);
        set.drawFrame();  // the change of sets is not part of the measure
        frames.push_back(MillisecondsOf([this] { set.drawFrame(); }));
        batches = BatchesOfLastFrame();
    }
};

void ShowTargets(benchmark::State& state) {
    Scene::Get()->settings.robTargetFrameSize = static_cast<int>(size);
    Contender<OfTargets> ours;
    Contender<OfInstances> bare;
    for (int i = 0; i < 4; ++i) {
        if (i > 0) {
            ours.remove();
            bare.remove();
        }
        ours.build();
        bare.build();
    }
    for (auto _ : state) {
        ours.measureFrame(bare.set);
        bare.measureFrame(ours.set);
        state.SetIterationTime(ours.frames.back() / 1e3);
    }
    std::vector<double> resizes;
    for (unsigned i = 0; i < 5; ++i)
        resizes.push_back(MillisecondsOf([&] { ours.set.resize(16 + i); }));
    std::printf(
        "a frame of %d targets: %.2f ms, bare instances %.2f ms: %.3f times (aim: at most 1.05)\n"
        "batches: %zu, bare instances %zu (aim: as many)\n"
        "built in %.1f ms, bare %.1f; removed in %.1f ms, bare %.1f; resized in %.1f ms\n"
        "a target takes %.0f bytes, a bare instance %.0f\n",
        targetCount, Median(ours.frames), Median(bare.frames),
        Median(ours.frames) / Median(bare.frames), ours.batches, bare.batches, Median(ours.builds),
        Median(bare.builds), Median(ours.removals), Median(bare.removals), Median(resizes),
        ours.bytes / targetCount, bare.bytes / targetCount);
}

}  // namespace

BENCHMARK(ShowTargets)->UseManualTime()->Iterations(100)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    const vrn::bench::BenchEngine engine;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
