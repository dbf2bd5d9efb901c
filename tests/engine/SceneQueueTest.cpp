#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "suite/broker/SignalBroker.h"
#include "tests/support/EngineFixture.h"

namespace vrn::test {

using broker::SignalBroker;
using visual::Scene;

class SceneQueue : public EngineTest {
protected:
    std::function<void()> note(char c) {
        return [this, c] { order += c; };
    }
    std::string order;
};

TEST_F(SceneQueue, KeyedPostReplacesTheEarlierOneAndRunsLast) {
    scene().addRenderTask(note('a'), 5);
    scene().addRenderTask(note('b'), 0);
    scene().addRenderTask(note('c'), 5);
    scene().processMsgs();
    EXPECT_EQ(order, "bc");
}

TEST_F(SceneQueue, KeyedPostRemovesEveryTaskOfThatKeyAndKeepsTheOrderOfTheRest) {
    scene().addRenderTask(note('a'), 7);
    scene().addRenderTask(note('b'), 8);
    scene().addRenderTask(note('c'), 0);
    scene().addRenderTask(note('d'), 9);
    scene().addRenderTask(note('e'), 7);
    scene().processMsgs();
    EXPECT_EQ(order, "bcde");
}

TEST_F(SceneQueue, KeyZeroNeitherDropsNorIsDropped) {
    for (const char c : {'a', 'b', 'c'}) scene().addRenderTask(note(c), 0);
    scene().processMsgs();
    EXPECT_EQ(order, "abc");
}

TEST_F(SceneQueue, WhatAReplacedTaskHoldsMayPostWhenItGoes) {
    struct Poster {
        explicit Poster(std::function<void()> taskToPost) : task(std::move(taskToPost)) {}
        Poster(const Poster&) = delete;
        Poster& operator=(const Poster&) = delete;
        ~Poster() { visual::Scene::Get()->addRenderTask(std::move(task), 0); }
        std::function<void()> task;
    };
    auto poster = std::make_shared<Poster>(note('p'));
    scene().addRenderTask([poster] {}, 5);
    poster.reset();
    scene().addRenderTask(note('b'), 5);
    scene().processMsgs();
    EXPECT_EQ(order, "bp");
}

TEST_F(SceneQueue, WhatATaskHoldsGoesBeforeTheNextTaskRuns) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    bool gone = false;
    scene().addRenderTask([kept = std::move(held)] {}, 0);
    scene().addRenderTask([&] { gone = watched.expired(); }, 0);
    scene().processMsgs();
    EXPECT_TRUE(gone);
}

TEST_F(SceneQueue, ATaskMayRunTheTasksThatWerePostedMeanwhile) {
    scene().addRenderTask(
        [this] {
            scene().addRenderTask(note('b'), 0);
            scene().processMsgs();
            order += 'c';
        },
        0);
    scene().addRenderTask(note('d'), 0);
    scene().processMsgs();
    EXPECT_EQ(order, "bcd");
}

TEST_F(SceneQueue, AQueueThatOnceHeldManyTasksRunsTheNextOnesInOrder) {
    constexpr int many = 300'000;
    int ran = 0;
    for (int i = 0; i < many; ++i) scene().addRenderTask([&ran] { ++ran; }, 0);
    scene().processMsgs();
    EXPECT_EQ(ran, many);
    for (const char c : {'a', 'b', 'c'}) scene().addRenderTask(note(c), 0);
    scene().processMsgs();
    EXPECT_EQ(order, "abc");
}

TEST_F(SceneQueue, EachPostSignalsUpdateSceneOnce) {
    int signals = 0;
    const auto subscription = SignalBroker::onUpdateScene([&] { ++signals; });
    scene().addRenderTask([] {}, 0);
    scene().addRenderTask([] {}, 3);
    scene().addRenderTask([] {}, 3);
    EXPECT_EQ(signals, 3);
    scene().processMsgs();
    EXPECT_EQ(signals, 3);
}

TEST_F(SceneQueue, AnEmptyQueueDoesNothing) {
    int signals = 0;
    const auto subscription = SignalBroker::onUpdateScene([&] { ++signals; });
    scene().processMsgs();
    EXPECT_EQ(signals, 0);
}

TEST_F(SceneQueue, AnEmptyQueueStillHonoursARequestedUpdate) {
    int signals = 0;
    const auto subscription = SignalBroker::onUpdateScene([&] { ++signals; });
    scene().requestUpdate();
    scene().processMsgs();
    EXPECT_EQ(signals, 1);
    scene().processMsgs();
    EXPECT_EQ(signals, 1);
}

TEST_F(SceneQueue, ATaskPostedByATaskRunsInTheNextBatch) {
    scene().addRenderTask(
        [this] {
            order += 'a';
            scene().addRenderTask(note('b'), 0);
        },
        0);
    scene().processMsgs();
    EXPECT_EQ(order, "a");
    scene().processMsgs();
    EXPECT_EQ(order, "ab");
}

TEST_F(SceneQueue, AThrowingTaskLosesTheRestOfItsBatchAndNothingElse) {
    scene().addRenderTask(note('a'), 0);
    scene().addRenderTask(
        [this] {
            scene().addRenderTask(note('z'), 0);
            throw std::runtime_error("refused");
        },
        0);
    scene().addRenderTask(note('b'), 0);
    EXPECT_THROW(scene().processMsgs(), std::runtime_error);
    EXPECT_EQ(order, "a");
    scene().processMsgs();
    EXPECT_EQ(order, "az");
}

TEST_F(SceneQueue, AThrowingTaskKeepsTheRequestedUpdateForTheNextBatch) {
    scene().addRenderTask([] { throw std::runtime_error("refused"); }, 0);
    scene().requestUpdate();
    int signals = 0;
    const auto subscription = SignalBroker::onUpdateScene([&] { ++signals; });
    EXPECT_THROW(scene().processMsgs(), std::runtime_error);
    EXPECT_EQ(signals, 0);
    scene().processMsgs();
    EXPECT_EQ(signals, 1);
}

TEST_F(SceneQueue, TheRequestIsClearedBeforeItsSignal) {
    int signals = 0;
    const auto subscription = SignalBroker::onUpdateScene([&] {
        if (++signals == 1) scene().requestUpdate();  // a handler may ask again
    });
    scene().requestUpdate();
    scene().processMsgs();
    scene().processMsgs();
    EXPECT_EQ(signals, 2);
}

TEST_F(SceneQueue, AnEmptyTaskThrowsBadFunctionCallWhenItsTurnComes) {
    scene().addRenderTask({}, 0);
    EXPECT_THROW(scene().processMsgs(), std::bad_function_call);
}

TEST_F(SceneQueue, AnUnknownIdInATaskThrowsOutOfTheBatch) {
    scene().removeVisual(123456789u);
    try {
        scene().processMsgs();
        FAIL() << "the unknown id went unnoticed";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "unordered_map::at");
    }
}

TEST_F(SceneQueue, SwitchingPathArrowsOnAsksForOneMoreFrameSwitchingThemOffDoesNot) {
    int signals = 0;
    const auto subscription = SignalBroker::onUpdateScene([&] { ++signals; });
    scene().setDrawPathArrow(false);
    EXPECT_EQ(signals, 1);
    scene().processMsgs();
    EXPECT_EQ(signals, 1);
    scene().setDrawPathArrow(true);
    EXPECT_EQ(signals, 2);
    scene().processMsgs();
    EXPECT_EQ(signals, 3);
}

TEST_F(SceneQueue, PostsOfSeveralThreadsAllRunEachThreadInItsOwnOrder) {
    constexpr int threadCount = 4, postsEach = 1000;
    std::vector<std::vector<int>> seen(threadCount);
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < postsEach; ++i)
                scene().addRenderTask([&seen, t, i] { seen[t].push_back(i); }, 0);
        });
    for (auto& thread : threads) thread.join();
    scene().processMsgs();
    for (const auto& numbers : seen) {
        ASSERT_EQ(numbers.size(), static_cast<std::size_t>(postsEach));
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    }
}

TEST_F(SceneQueue, PostingWhileTheRenderThreadDrainsLosesNothing) {
    constexpr int threadCount = 4, postsEach = 2000;
    std::atomic<int> signals = 0;
    const auto subscription = SignalBroker::onUpdateScene([&] { ++signals; });
    int ran = 0;  // tasks run on this thread alone
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < postsEach; ++i)
                scene().addRenderTask([&ran] { ++ran; }, /*key=*/i % 3 == 0 ? 0 : t + 1 + i * 8);
        });
    while (ran < threadCount * postsEach) scene().processMsgs();
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(ran, threadCount * postsEach);
    EXPECT_EQ(signals, threadCount * postsEach);
}

TEST_F(SceneQueue, LoadTasksWaitForTheNextStationLoad) {
    scene().addLoadTask(note('l'));
    scene().processMsgs();
    EXPECT_EQ(order, "");
    scene().LoadStation();
    scene().processMsgs();
    EXPECT_EQ(order, "l");
}

TEST_F(SceneQueue, AThrowingLoadTaskStaysAtTheHeadUntilItReturns) {
    int attempts = 0;
    scene().addLoadTask([&] {
        if (++attempts == 1) throw std::runtime_error("not yet");
        order += 'a';
    });
    scene().addLoadTask(note('b'));
    scene().LoadStation();
    EXPECT_THROW(scene().processMsgs(), std::runtime_error);
    scene().LoadStation();
    scene().processMsgs();
    EXPECT_EQ(attempts, 2);
    EXPECT_EQ(order, "ab");
}

}  // namespace vrn::test
