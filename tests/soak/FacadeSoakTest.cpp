// Random calls of every public operation of the facade, from two threads, on the built-in station,
// with bad ids, empty lists and numbers that are none mixed in.

#include <gtest/gtest.h>
#include <OgreException.h>
#include <OgreRoot.h>
#include <OgreSceneNode.h>
#include <Standard_Failure.hxx>

#include <algorithm>
#include <any>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <thread>
#include <unordered_set>
#include <vector>

#include "apps/vrnview/ContentScene.h"
#include "apps/vrnview/readers/Content.h"
#include "apps/vrnview/TempFolder.h"
#include "bench/HeapInUse.h"
#include "engine/RenderEngine.h"
#include "examples/cell/Cell.h"
#include "examples/cell/CellWriter.h"
#include "mesh/NoTriangleMesh.h"
#include "selection/VisualSelection.h"
#include "suite/geom/TMesh.h"
#include "suite/layout/Layout.h"
#include "suite/task/Task.h"
#include "tests/soak/Script.h"
#include "tests/support/EngineFixture.h"
#include "tests/support/Population.h"
#include "view/Camera.h"
#include "visual/handle/DragHandle.h"
#include "visual/Visual.h"
#include "visual/VisualIterator.h"

namespace vrn::test {

namespace {

using Operation = Script::Operation;

constexpr int rounds = 10;
/// The first ones fill caches, pools and the free lists of the allocator.
constexpr int warmUp = 3;
/// What the heap may have grown by from the rounds behind the warm-up to the last ones. What is
/// kept between two rounds swings by some megabytes, the shaders that the software renderer
/// compiled among it, so it is the least of a few that counts.
constexpr std::size_t memoryMargin = 6u << 20;
constexpr int comparedRounds = 3;

/// A frame behind so many of the batches.
constexpr double frameChance = 0.2;

int FromEnvironment(const char* name, int standard) {
    const char* wanted = std::getenv(name);
    return wanted ? std::atoi(wanted) : standard;
}

/// All rounds together; VRN_SOAK_STEPS in the environment asks for another number.
int StepCount() { return FromEnvironment("VRN_SOAK_STEPS", 10'000); }

/// VRN_SOAK_SEED in the environment asks for other calls.
unsigned FirstSeed() { return static_cast<unsigned>(FromEnvironment("VRN_SOAK_SEED", 1)); }

/// What an operation may answer with, on the caller or out of its task; everything else fails.
/// Empty for an exception that is stated.
std::string UnstatedFailure(const std::function<void()>& call) {
    try {
        call();
    } catch (const std::out_of_range&) {          // unknown ids and numbers
    } catch (const std::invalid_argument&) {      // null, lists of unequal length, no numbers
    } catch (const std::overflow_error& error) {  // directions without length
        if (std::string(error.what()) != "0-length vector cannot be normalized.")
            return error.what();
    } catch (const std::bad_optional_access&) {     // faces and sprays of unknown ids
    } catch (const std::bad_function_call&) {       // an empty task
    } catch (const std::bad_cast&) {                // a model object or a value of another kind
    } catch (const visual::NoTriangleMesh&) {       // the last face hidden
    } catch (const Ogre::ItemIdentityException&) {  // a name or a light that is taken or missing
    } catch (const Standard_Failure&) {             // a face past the last, a body that is none
    } catch (const std::exception& error) {
        return error.what();
    }
    return {};
}

}  // namespace

class FacadeSoak : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        for (const visual::Visual* child : scene().root->getChildren()) furniture.insert(child);
        content = host::ReadContent(examples::WriteCell(examples::MakeCell(), files.getPath()));
        ASSERT_TRUE(content.problems.empty()) << content.problems.front();
    }
    void TearDown() override {
        removeStation();
        content = {};
        EngineTest::TearDown();
    }

    void buildStation() {
        static_cast<void>(host::ShowContent(content));
        pump();
        supplies.takeStation(content);
        supplies.showLasting();
    }
    /// Everything that a script can have made, and the settings that it can have changed.
    void removeStation() {
        using visual::Scene;
        // One by one: a highlighted face that the solid has not is refused once more when it is
        // cleared, and that takes the rest of the batch along.
        for (void (Scene::*clear)() :
             {&Scene::removePreviewCurves, &Scene::removePreviewedPoints,
              &Scene::removePreviewFaces, &Scene::removePreviewedJointVisual,
              &Scene::deleteCopiedVisual, &Scene::removeDimensionVisual, &Scene::removePolylines,
              &Scene::deleteUVIndicatorVisual, &Scene::removeAllPositionVisuals,
              &Scene::clearTcpTrace, &Scene::clearHighlightedVisual, &Scene::clearSelections,
              &Scene::clearAllCollisionContacts}) {
            (scene().*clear)();
            const std::string refused = UnstatedFailure([] { pump(); });
            if (!refused.empty()) failures["clearing up"] = refused;
        }
        const std::vector<visual::Visual*> all = scene().root->getChildren();
        for (visual::Visual* child : all)
            if (!furniture.contains(child)) scene().deleteVisual(child);
        visual::DragHandle::Get()->resetMode();
        visual::DragHandle::Get()->setAssistHandleVisible(false);
        layout::Layout::inst()->clear();
        for (const task::Task* job : content.tasks) task::RemoveTask(*job);
        scene().setDrawTargetVisual(true);
        scene().setDrawPathArrow(true);
        scene().cleanupInstanceBatches();
        pump();
    }

    /// `steps` operations, half of them by a thread that posts only, the other half by one that
    /// also does what belongs to a single interactive thread; beside them the render thread runs
    /// what waits, and its own share.
    void runScript(unsigned seed, int steps) {
        std::atomic<int> running = 2;
        std::thread poster([&] {
            post(seed, steps / 2,
                 [](Operation::Thread thread) { return thread == Operation::Thread::Any; });
            --running;
        });
        std::thread interactive([&] {
            post(seed + 1000, steps / 2,
                 [](Operation::Thread thread) { return thread != Operation::Thread::Render; });
            --running;
        });
        Script script(seed + 2000, supplies);
        while (running > 0) {
            render(script);
            // Locked again at once it would never be free for who waits for it.
            while (waitingCallers > 0) std::this_thread::yield();
        }
        poster.join();
        interactive.join();
        render(script);
    }

    template <class Admits>
    void post(unsigned seed, int steps, Admits admits) {
        Script script(seed, supplies);
        const std::vector<Operation>& all = Script::operations();
        for (int i = 0; i < steps; ++i) {
            const Operation& operation = all[script.choose(all.size())];
            if (!admits(operation.thread)) continue;
            {
                // What reads the scene on the caller is for a host to keep apart from its render
                // thread.
                std::unique_lock lock(sceneMutex, std::defer_lock);
                if (operation.thread == Operation::Thread::Caller) {
                    ++waitingCallers;
                    lock.lock();
                    --waitingCallers;
                }
                note(operation, UnstatedFailure([&] { operation.run(script, scene()); }));
            }
            // A task that throws takes the rest of its batch along, so batches are kept short.
            if (!script.chance(0.6)) continue;
            for (const int seen = batches; batches == seen;) std::this_thread::yield();
        }
    }

    void render(Script& script) {
        const std::lock_guard lock(sceneMutex);
        const std::vector<Operation>& all = Script::operations();
        const Operation& own = all[script.choose(all.size())];
        if (own.thread == Operation::Thread::Render)
            note(own, UnstatedFailure([&] { own.run(script, scene()); }));
        const std::string inTask = UnstatedFailure([] { scene().processMsgs(); });
        if (!inTask.empty()) failures["a task"] = inTask;
        ++batches;
        checkPlaces();
        auto* picking = selection::VisualSelection::Get();
        const std::string inPick = UnstatedFailure([&] {
            picking->update();
            static_cast<void>(picking->select(static_cast<float>(script.choose(windowWidth)),
                                              static_cast<float>(script.choose(windowHeight))));
        });
        if (!inPick.empty()) failures["a pick"] = inPick;
        if (failures.empty() && script.chance(frameChance))
            visual::gRenderEngine->root->renderOneFrame();
    }

    /// The engine stops at a place that is none.
    void checkPlaces() {
        for (visual::ForestIterator<visual::Visual> it(scene().root); it.next();) {
            const Ogre::SceneNode& node = *it.value()->node;
            const Ogre::Vector3 place = node._getDerivedPosition(), scale = node._getDerivedScale();
            const float sum = place.x + place.y + place.z + scale.x + scale.y + scale.z;
            const std::lock_guard lock(noteMutex);
            if (!std::isfinite(sum) || node._getDerivedOrientation().isNaN())
                failures["the place of " + node.getName()] = "behind " + recent;
        }
        const std::lock_guard lock(noteMutex);
        recent.clear();
    }

    void note(const Operation& operation, const std::string& failure) {
        const std::lock_guard lock(noteMutex);
        ++counts[operation.name];
        recent += std::string(operation.name) + ' ';
        if (!failure.empty()) failures[operation.name] = failure;
    }

    host::TempFolder files;
    host::Content content;
    Supplies supplies;
    std::unordered_set<const visual::Visual*> furniture;
    std::atomic<int> batches = 0;         ///< that were run
    std::atomic<int> waitingCallers = 0;  ///< for the scene
    std::mutex sceneMutex, noteMutex;
    std::map<std::string, int> counts;
    std::string recent;  ///< the operations since the last batch
    std::map<std::string, std::string> failures;
};

TEST_F(FacadeSoak, RandomCallsOfEveryOperationThrowWhatIsStatedAndLeaveNothing) {
    // The manager keeps the record of the last one shown.
    cadcam::TMesh<double> machined{{{{0, 0, 0}}, {{90, 0, 0}}, {{0, 90, 0}}}, {{{0, 1, 2}}}};
    scene().debugViewCamMesh(&machined);
    std::map<std::string, std::size_t> populationBefore;
    std::vector<std::size_t> heaps;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        buildStation();
        runScript(FirstSeed() * rounds + static_cast<unsigned>(round), StepCount() / rounds);
        removeStation();
        if (round < warmUp) continue;
        heaps.push_back(bench::HeapInUse());
        if (round == warmUp) populationBefore = Population();
        EXPECT_EQ(Population(), populationBefore);
    }
    const std::size_t heapBefore = std::ranges::min(std::span(heaps).first<comparedRounds>());
    const std::size_t heapAfter = std::ranges::min(std::span(heaps).last<comparedRounds>());
    EXPECT_LE(heapAfter, heapBefore + memoryMargin);
    RecordProperty("grownBytes", static_cast<int>(heapAfter) - static_cast<int>(heapBefore));
    for (const auto& [name, what] : failures) ADD_FAILURE() << name << ": " << what;
    if (StepCount() < 10'000) return;
    EXPECT_GT(Script::ranTasks(), 0u);
    for (const Operation& operation : Script::operations())
        EXPECT_GT(counts[operation.name], 0) << operation.name << " never had its turn";
}

}  // namespace vrn::test
