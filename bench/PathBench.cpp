// Programs of 10,000 moves: making the lines of their path anew, showing their targets beside the
// same triads as bare hardware instances of Ogre, a trace of 10,000 points, and poses posted for
// 10,000 visuals.

#include <benchmark/benchmark.h>
#include <OgreInstancedEntity.h>
#include <OgreIteratorWrapper.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include <OgreInstanceBatch.h>
#include <OgreInstanceManager.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/BenchEngine.h"
#include "bench/Median.h"
#include "engine/Scene.h"
#include "suite/sdf/ObjectStore.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "suite/task/Task.h"
#include "visual/task/PathVisual.h"
#include "visual/task/TcpTraceVisual.h"

namespace {

using namespace vrn;
using bench::Median;
using bench::MillisecondsOf;
using visual::Scene;

constexpr int moveCount = 10'000;
constexpr int tracePoints = 10'000;
constexpr int posesPerFrame = 1'000;

// A spiral that climbs.
rob::PosTemplate<double> PlaceOf(int i) {
    return {800 * std::cos(i * 0.05), 800 * std::sin(i * 0.05), i * 0.1};
}

/// A path of linear moves, of which every `arcEvery`th is circular, shown without targets.
class Program {
public:
    explicit Program(int arcEvery) {
        auto* wobj = model.make<task::WObjDataItem>("wobj");
        wobj->setObjectFrame(*model.make<task::ObjectFrame>("frame"));
        wobjId = wobj->id;
        path = model.make<task::Path>("path");
        for (int i = 0; i < moveCount; ++i) {
            const bool isArc = arcEvery > 0 && i % arcEvery == 0;
            auto* move = model.make<task::MoveInst>(
                "move", isArc ? sdf::ObjectType::CircularMove : sdf::ObjectType::LinearMove,
                *makeTarget(PlaceOf(i)), *wobj);
            if (isArc) {
                auto via = PlaceOf(i - 1);
                via.z += 5;
                move->setCirclePoint(makeTarget(via));
            }
            path->addChild(*move);
        }
        Scene::Get()->addWObj(wobj);
        Scene::Get()->processMsgs();
        Scene::Get()->addPath(path);
        Scene::Get()->processMsgs();
    }
    ~Program() {
        Scene::Get()->removePathVisual(path->id);
        Scene::Get()->removeVisual(wobjId);
        Scene::Get()->processMsgs();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    [[nodiscard]] visual::PathVisual& shown() const {
        return dynamic_cast<visual::PathVisual&>(*Scene::Get()->visuals.at(path->id));
    }
    [[nodiscard]] std::vector<std::uint32_t> moveIds() const { return path->getObjChildren(); }

private:
    task::RobTargetDataItem* makeTarget(const rob::PosTemplate<double>& place) {
        return model.make<task::RobTargetDataItem>("p", rob::PoseTemplate<double>{place, {}});
    }

    sdf::ObjectStore model;
    task::Path* path;
    std::uint32_t wobjId;
};

void RebuildLines(benchmark::State& state) {
    const Program program(static_cast<int>(state.range(0)));
    visual::PathVisual& path = program.shown();
    std::vector<double> times;
    for (auto _ : state) {
        times.push_back(MillisecondsOf([&] { path.rebuildPathLines(); }));
        state.SetIterationTime(times.back() / 1e3);
    }
    std::printf(
        "lines of %d moves, every %ldth an arc (0: none): %.2f ms (aim: under 10), %zu line "
        "objects\n",
        moveCount, static_cast<long>(state.range(0)), Median(times), path.getPathLines().size());
}

/// The peer: instances of Ogre with a node each, and nothing that knows of them. Brought to their
/// places in the world, as the scene's queue does with what it built.
class BareInstances {
public:
    BareInstances()
        : manager(Scene::Get()->sceneManager->createInstanceManager(
              "bench", "VRN_FrameMesh", Ogre::RGN_DEFAULT, Ogre::InstanceManager::HWInstancingBasic,
              5000, Ogre::IM_USEALL)),
          group(Scene::Get()->sceneManager->getRootSceneNode()->createChildSceneNode()) {}
    /// The same instances: each below the node of its move, under a name.
    void buildBelow(const std::vector<Ogre::SceneNode*>& moves) {
        for (int i = 0; i < moveCount; ++i)
            add(i, moves[i]->createChildSceneNode("BARETRIAD_" + std::to_string(i)));
        place();
    }
    /// As few nodes as will do: without names, below one that carries them all.
    void buildFlat() {
        for (int i = 0; i < moveCount; ++i) add(i, group->createChildSceneNode());
        place();
    }
    void remove() {
        for (Ogre::InstancedEntity* instance : instances) {
            Ogre::SceneNode* node = instance->getParentSceneNode();
            instance->_getOwner()->removeInstancedEntity(instance);
            node->getParent()->removeChild(node);
            Scene::Get()->sceneManager->destroySceneNode(node);
        }
        instances.clear();
    }

private:
    void add(int i, Ogre::SceneNode* node) {
        Ogre::InstancedEntity* instance = manager->createInstancedEntity("InstanceRobTarget");
        instance->setScale(Ogre::Vector3(50), /*doUpdate=*/false);
        instance->_getOwner()->setRenderQueueGroup(60);
        instance->_getOwner()->setCustomParameter(0, Ogre::Vector4(0, 0, 0, -1));
        const rob::PosTemplate<float> at(PlaceOf(i));
        node->setPosition(at.x, at.y, at.z);
        node->attachObject(instance);
        instances.push_back(instance);
    }
    static void place() {
        Scene::Get()->sceneManager->getRootSceneNode()->_update(/*updateChildren=*/true,
                                                                /*parentHasChanged=*/false);
    }

    Ogre::InstanceManager* manager;
    Ogre::SceneNode* group;
    std::vector<Ogre::InstancedEntity*> instances;
};

void SwitchTargetsOn(benchmark::State& state) {
    const Program program(0);
    std::vector<Ogre::SceneNode*> moves;
    for (const std::uint32_t id : program.moveIds())
        moves.push_back(Scene::Get()->visuals.at(id)->node);
    static BareInstances bare;  // an instance manager's name can be had once
    std::vector<double> times, sameTimes, flatTimes;
    const auto switchTargets = [](bool on) {
        Scene::Get()->setDrawTargetVisual(on);
        Scene::Get()->processMsgs();
    };
    for (auto _ : state) {
        times.push_back(MillisecondsOf([&] { switchTargets(true); }));
        switchTargets(false);
        sameTimes.push_back(MillisecondsOf([&] { bare.buildBelow(moves); }));
        bare.remove();
        flatTimes.push_back(MillisecondsOf([] { bare.buildFlat(); }));
        bare.remove();
        state.SetIterationTime(times.back() / 1e3);
    }
    const double time = Median(times), same = Median(sameTimes), flat = Median(flatTimes);
    std::printf(
        "targets of %d moves switched on in %.1f ms, the same instances bare %.1f ms: %.2f times "
        "(aim: at most 2); without names, below one node %.1f ms: %.2f times\n",
        moveCount, time, same, time / same, flat, time / flat);
}

void GrowTrace(benchmark::State& state) {
    std::vector<double> totals, lastPoints;
    for (auto _ : state) {
        auto* trace = new visual::TcpTraceVisual(Scene::Get()->root);
        const auto add = [&](int i) {
            trace->addColorPoint(PlaceOf(i), {static_cast<float>(i) / tracePoints, 0.5f, 0.2f});
        };
        totals.push_back(MillisecondsOf([&] {
            for (int i = 0; i < tracePoints; ++i) add(i);
        }));
        lastPoints.push_back(MillisecondsOf([&] { add(tracePoints); }));
        Scene::Get()->deleteVisual(trace);
        state.SetIterationTime(totals.back() / 1e3);
    }
    std::printf("a trace of %d points grown in %.0f ms; the last point took %.3f ms\n", tracePoints,
                Median(totals), Median(lastPoints));
}

void PostPoses(benchmark::State& state) {
    const Program program(0);
    const std::vector<std::uint32_t> ids = program.moveIds();
    std::vector<double> posts, frames;
    std::size_t next = 0;
    for (auto _ : state) {
        posts.push_back(MillisecondsOf([&] {
            for (int i = 0; i < posesPerFrame; ++i, ++next)
                Scene::Get()->setVisualPose(ids[next % ids.size()],
                                            {{static_cast<float>(next % 97), 0, 0}, {}});
        }));
        frames.push_back(MillisecondsOf([] { Scene::Get()->processMsgs(); }));
        state.SetIterationTime((posts.back() + frames.back()) / 1e3);
    }
    std::printf(
        "%d poses of %d visuals posted in %.3f ms and run in %.3f ms (a frame at 60 a "
        "second has 16.7)\n",
        posesPerFrame, moveCount, Median(posts), Median(frames));
}

}  // namespace

BENCHMARK(RebuildLines)
    ->Arg(0)
    ->Arg(4)
    ->UseManualTime()
    ->Iterations(50)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(SwitchTargetsOn)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(GrowTrace)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(PostPoses)->UseManualTime()->Iterations(200)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    const vrn::bench::BenchEngine engine;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
