// A program that runs over and over while another thread edits it: nothing grows, nothing is lost.

#include <gtest/gtest.h>
#include <malloc.h>

#include <OgreManualObject.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "apps/vrnview/ProgramPlayer.h"
#include "apps/vrnview/RenderLoop.h"
#include "engine/RenderEngine.h"
#include "selection/VisualSelection.h"
#include "suite/layout/Mechanism.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "suite/task/Task.h"
#include "tests/apps/ProgramStage.h"

namespace vrn::test {
namespace {

/// How often the program runs: VRN_SOAK_RUNS, without it 20.
int Runs() {
    const char* text = std::getenv("VRN_SOAK_RUNS");
    const int runs = text == nullptr ? 0 : std::atoi(text);
    return runs > 0 ? runs : 20;
}

constexpr int warmUp = 20;  // fills caches, pools and the free lists of the allocator
constexpr int stepsARun = 40;
// What the heap may have grown by in all, and for each run: a visual that stayed behind each time
// would take more.
constexpr std::size_t memoryMargin = 96 * 1024, memoryPerRun = 64;

std::size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

class ProgramSoak : public ProgramStage {
protected:
    enum class Frames { None, Drawn };
    using Population = std::map<std::string, std::size_t>;

    [[nodiscard]] static Population population() {
        Ogre::SceneManager& engine = *scene().sceneManager;
        return {{"visuals", scene().visuals.size()},
                {"temporary visuals", scene().tempVisuals.size()},
                {"children of the root", scene().root->getChildren().size()},
                {"pickable objects", selection::VisualSelection::Get()->objects.size()},
                {"entities", engine.getMovableObjects("Entity").size()},
                {"manual objects", engine.getMovableObjects("ManualObject").size()},
                {"model objects", sdf::SdfManager::inst()->size()}};
    }

    /// One edit after the other, as a user makes them while the robot runs; each round ends as it
    /// began.
    void editRound(int round) {
        const task::Task& task = *content.tasks.at(0);
        task::Path& path = *task.getPaths().at(0);
        const auto moves = path.getMoveInstructions();
        const std::uint32_t part = robot().links.at(static_cast<std::size_t>(round % 5) + 2)->id;
        visual::Scene& to = scene();
        to.setVisualVisible(path.id, false);
        to.updatePath(path.id);
        to.setVisualVisible(path.id, true);
        to.setVisualSelected(part);
        to.updateInstruction(moves[2], moves[3]);
        to.clearSelections();
        to.updateWObj(task.getWObjDataItems().at(0)->id);
        to.updateToolData(task.getToolDataItems().at(0)->id);
        to.previewTargets({{}, {}});
        to.setDrawPathArrow(true);
        to.setDrawPathArrow(false);
        to.removePreviewedPoints();
        to.setFrameSize(20U + static_cast<unsigned>(round % 3), VisualType::RobTarget);
        to.removePathVisual(path.id);
        addAgain(path);
    }
    /// On the render thread, for that is where parents of moves are looked up; waits until it has
    /// been done, so that the next edit finds the path.
    static void addAgain(task::Path& path) {
        auto done = std::make_shared<std::promise<void>>();
        std::future<void> isDone = done->get_future();
        scene().addRenderTask(
            [&path, done = std::move(done)]() mutable {
                scene().addPath(&path);
                scene().addRenderTask([done = std::move(done)] { done->set_value(); }, /*key=*/0);
            },
            /*key=*/0);
        isDone.get();
    }

    /// `runs` times the whole program, with edits from a second thread all the while.
    void play(int runs, Frames frames) {
        host::RenderLoop loop;
        loop.runBeside([&] {
            host::ProgramPlayer player(robot(), plan);
            for (int run = 0; run < runs; ++run) {
                std::atomic<bool> ended = false;
                const auto edit = [&] {
                    for (int round = 0; round == 0 || !ended; ++round) editRound(round);
                };
                std::future<void> editor = std::async(std::launch::async, edit);
                const std::shared_ptr<void> atEnd(nullptr, [&](void*) { ended = true; });
                player.start();
                for (int step = 0; step <= stepsARun; ++step) {
                    player.goTo(plan.getSeconds() * step / stepsARun);
                    loop.ask([&] {
                        if (frames == Frames::Drawn && step % 8 == 0)
                            visual::gRenderEngine->root->renderOneFrame();
                    });
                }
                ended = true;
                editor.get();
                expectEnd(loop);
                player.clearTrace();
                loop.ask([] {});
                loop.ask([] {});  // what tasks posted
            }
        });
    }

    /// The trace is whole, and the robot where the program ends.
    void expectEnd(host::RenderLoop& loop) {
        loop.ask([&] {
            ASSERT_NE(findTrace(), nullptr);
            EXPECT_EQ(findTrace()->getPointCount(), plan.tracePoints().size());
            host::Kinematics kinematics = robot().kinematics;
            const auto values = plan.valuesAt(plan.getSeconds());
            for (std::size_t i = 0; i < values.size(); ++i)
                kinematics.setValue(kinematics.getJoints()[i].name, values[i]);
            const auto wanted = kinematics.linkPoses();
            for (std::size_t i = 0; i < wanted.size(); ++i) {
                const host::Pose there(scene().visuals.at(robot().links[i]->id)->getPose());
                EXPECT_LT(host::DistanceOf(there, wanted[i]).mm, 0.01);
            }
        });
    }
};

TEST_F(ProgramSoak, RunningOverAndOverBesideEditsLeavesEverythingAsItWas) {
    const int runs = Runs();
    play(warmUp, Frames::None);
    const Population before = population();
    const std::size_t heapBefore = HeapInUse();
    play(runs, Frames::None);
    EXPECT_EQ(population(), before);
    const std::size_t heapAfter = HeapInUse();
    EXPECT_LE(heapAfter, heapBefore + memoryMargin + memoryPerRun * static_cast<std::size_t>(runs));
    RecordProperty("runs", runs);
    RecordProperty("grownBytes", static_cast<int>(heapAfter) - static_cast<int>(heapBefore));
    std::printf("%d runs: heap %+lld bytes\n", runs,
                static_cast<long long>(heapAfter) - static_cast<long long>(heapBefore));
}

/// Apart, for what a driver keeps for its frames comes and goes by the megabyte.
TEST_F(ProgramSoak, FramesDrawnOnTheWayFindNothingHalfMade) {
    play(1, Frames::Drawn);
    const Population before = population();
    play(Runs(), Frames::Drawn);
    EXPECT_EQ(population(), before);
    EXPECT_THAT(logLines(), testing::Not(testing::Contains(testing::HasSubstr("rror"))));
}

}  // namespace
}  // namespace vrn::test
