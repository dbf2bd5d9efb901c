// Opening a station of 1000 and of 10,000 bodies, triangulated beforehand, each with a mesh of its
// own, and taking them out again, beside the least that shows the same: mesh, entity and node for
// each body in bare Ogre, without a tree, a registry, edges or picking.

#include <benchmark/benchmark.h>
#include <OgreEntity.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreResourceGroupManager.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "bench/BenchEngine.h"
#include "bench/HeapInUse.h"
#include "bench/Median.h"
#include "engine/Scene.h"
#include "examples/Shapes.h"
#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "suite/geom/ColorInfo.h"
#include "suite/geom/ShapeTools.h"
#include "suite/layout/Body.h"
#include "suite/layout/Layout.h"
#include "suite/layout/Part.h"
#include "suite/sdf/ObjectStore.h"
#include "visual/geometry/SolidVisual.h"

namespace {

using namespace vrn;
using bench::HeapInUse;
using bench::Median;
using bench::MillisecondsOf;
using visual::MeshManager;
using visual::Scene;

constexpr int rowLength = 100;
constexpr double spacing = 150;

/// A plate with round corners and four holes: what a station is full of.
TopoDS_Shape Plate() {
    using namespace examples;
    std::vector<TopoDS_Shape> holes;
    for (const double x : {20.0, 80.0})
        for (const double y : {15.0, 45.0}) holes.push_back(CylinderAt({x, y, -1}, {0, 0, 14}, 6));
    TopoDS_Shape plate = Cut(Filleted(BoxAt({0, 0, 0}, 100, 60, 12), 10, IsUpright), holes);
    geometry::GenerateMesh(plate, 0, 0);
    return plate;
}

/// What one way of showing the bodies took.
struct Cost {
    std::vector<double> load, removal;  ///< ms
    std::vector<double> memory;         ///< bytes
};

/// The library's way: a station that is opened, objects that are removed.
class Station {
public:
    Station(int count, const TopoDS_Shape& shape) {
        for (int i = 0; i < count; ++i) {
            const std::string name = "plate" + std::to_string(i);
            auto* part = model.make<layout::Part>(name);
            part->addBody(*model.make<layout::Body>(name, "bench://" + name, shape));
            part->setPose({{i % rowLength * spacing, i / rowLength * spacing, 0}, {}});
            layout::Layout::inst()->add(*part);
            ids.push_back(part->id);
        }
    }
    ~Station() { layout::Layout::inst()->clear(); }

    void measure(Cost& cost) const {
        const std::size_t before = HeapInUse();
        cost.load.push_back(MillisecondsOf([] {
            Scene::Get()->LoadStation();
            pump();
        }));
        cost.memory.push_back(static_cast<double>(HeapInUse() - before));
        cost.removal.push_back(MillisecondsOf([this] {
            for (const std::uint32_t id : ids) Scene::Get()->removeVisual(id);
            pump();
        }));
    }

private:
    static void pump() {
        Scene::Get()->processMsgs();
        selection::VisualSelection::Get()->update();
    }

    sdf::ObjectStore model;
    std::vector<std::uint32_t> ids;
};

/// The peer.
class BareBodies {
public:
    BareBodies(int bodyCount, const TopoDS_Shape& shape)
        : count(bodyCount),
          solid(std::make_unique<visual::SolidVisual>(shape, Scene::Get()->root)) {}

    void measure(Cost& cost) {
        const std::size_t before = HeapInUse();
        cost.load.push_back(MillisecondsOf([this] {
            for (int i = 0; i < count; ++i) show(i);
        }));
        cost.memory.push_back(static_cast<double>(HeapInUse() - before));
        cost.removal.push_back(MillisecondsOf([this] {
            for (Ogre::Entity* entity : entities) remove(entity);
            entities.clear();
        }));
    }

private:
    void show(int i) {
        static const ColorInfo colors{"#BFC5CC", {}};
        const auto mesh =
            MeshManager::getShapeMesh(solid->getShape(), solid->getFaceMap(), solid.get(), &colors);
        mesh->name = "bare" + std::to_string(i);
        MeshManager::Get()->loadToGpu(mesh.get());
        Ogre::SceneManager* scene = Scene::Get()->sceneManager;
        Ogre::SceneNode* node = scene->getRootSceneNode()->createChildSceneNode(
            Ogre::Vector3(static_cast<float>(i % rowLength), static_cast<float>(i / rowLength), 0) *
            static_cast<float>(spacing));
        entities.push_back(scene->createEntity(mesh->name));
        entities.back()->setMaterialName("Body");
        node->attachObject(entities.back());
    }
    static void remove(Ogre::Entity* entity) {
        Ogre::SceneManager* scene = Scene::Get()->sceneManager;
        const std::string name = entity->getMesh()->getName();
        scene->destroySceneNode(entity->getParentSceneNode());
        scene->destroyEntity(entity);
        Ogre::MeshManager::getSingleton().remove(name, Ogre::RGN_DEFAULT);
    }

    int count;
    std::unique_ptr<visual::SolidVisual> solid;
    std::vector<Ogre::Entity*> entities;
};

/// Median load time a body of the library, by number of bodies, for the last line.
std::vector<double> loadTimes;

void OpenStation(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const TopoDS_Shape shape = Plate();
    const Station station(count, shape);
    BareBodies bare(count, shape);
    Cost ours, peers;
    station.measure(ours);  // the first one fills pools and caches
    ours = {};
    for (auto _ : state) {
        station.measure(ours);
        bare.measure(peers);
        state.SetIterationTime(ours.load.back() / 1e3);
    }
    loadTimes.push_back(Median(ours.load) / count);
    std::printf(
        "%d bodies: a body is loaded in %.4f ms (aim: below 1; bare Ogre %.4f), removed in %.4f ms "
        "(bare Ogre %.4f), and takes %.1f kB (bare Ogre %.1f)\n",
        count, Median(ours.load) / count, Median(peers.load) / count, Median(ours.removal) / count,
        Median(peers.removal) / count, Median(ours.memory) / count / 1e3,
        Median(peers.memory) / count / 1e3);
}

}  // namespace

BENCHMARK(OpenStation)->Arg(1000)->UseManualTime()->Iterations(9)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenStation)->Arg(10'000)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    const vrn::bench::BenchEngine engine;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    if (loadTimes.size() == 2)
        std::printf(
            "a body of the larger station takes %.2f times as long as one of the smaller "
            "(aim: 1, that is linear)\n",
            loadTimes[1] / loadTimes[0]);
    return 0;
}
