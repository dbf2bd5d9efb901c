// Posting to the render-task queue from 1, 2 and 4 threads, beside the least that could do the job:
// a mutex, a deque and the same signal. Times are per post, with all threads posting at once.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <latch>
#include <mutex>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/BenchEngine.h"
#include "engine/Scene.h"
#include "suite/broker/SignalBroker.h"

namespace {

using vrn::broker::SignalBroker;
using vrn::visual::Scene;

constexpr int postsPerThread = 50'000;

/// The peer: no keys, no scene.
class BareQueue {
public:
    void post(std::function<void()>&& fn) {
        const std::lock_guard lock(mutex);
        tasks.push_back(std::move(fn));
        SignalBroker::updateScene();
    }
    void drain() {
        std::deque<std::function<void()>> batch;
        {
            const std::lock_guard lock(mutex);
            batch.swap(tasks);
        }
        for (auto& fn : batch) fn();
    }

private:
    std::mutex mutex;
    std::deque<std::function<void()>> tasks;
};

std::uint64_t ran = 0;

// What a typical operation captures: a pointer, an id and a pose.
template <class Post>
void PostMany(Post& post) {
    struct Pose {
        float values[7];
    };
    for (int i = 0; i < postsPerThread; ++i) {
        const Pose pose{};
        post([counter = &ran, i, pose] {
            *counter += static_cast<std::uint64_t>(i) + (pose.values[0] > 0);
        });
    }
}

// Seconds a post, with `threadCount` threads posting at once: from the first thread's start to the
// last one's end, each by its own clock, since this thread may be kept waiting.
template <class Post>
double SecondsOfPost(int threadCount, Post& post) {
    using Clock = std::chrono::steady_clock;
    std::latch start(threadCount);
    std::vector<Clock::time_point> begins(threadCount), ends(threadCount);
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t)
        threads.emplace_back([&, t] {
            start.arrive_and_wait();
            begins[t] = Clock::now();
            PostMany(post);
            ends[t] = Clock::now();
        });
    for (auto& thread : threads) thread.join();
    const std::chrono::duration<double> elapsed = *std::max_element(ends.begin(), ends.end()) -
                                                  *std::min_element(begins.begin(), begins.end());
    return elapsed.count() / (static_cast<double>(postsPerThread) * threadCount);
}

double Median(std::vector<double>& times) {
    std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
    return times[times.size() / 2];
}

// In turn, and each of them first as often as the other, so that whatever else the machine does
// meets both alike.
void ComparePosts(benchmark::State& state) {
    const auto threadCount = static_cast<int>(state.range(0));
    BareQueue bareQueue;
    auto postToScene = [](std::function<void()>&& fn) {
        Scene::Get()->addRenderTask(std::move(fn), 0);
    };
    auto postToBare = [&](std::function<void()>&& fn) { bareQueue.post(std::move(fn)); };
    std::vector<double> ours, bare;
    const auto measureOurs = [&] {
        ours.push_back(SecondsOfPost(threadCount, postToScene));
        Scene::Get()->processMsgs();
    };
    const auto measureBare = [&] {
        bare.push_back(SecondsOfPost(threadCount, postToBare));
        bareQueue.drain();
    };
    for (bool oursFirst = true; auto _ : state) {
        if (oursFirst) measureOurs();
        measureBare();
        if (!oursFirst) measureOurs();
        oursFirst = !oursFirst;
        state.SetIterationTime(ours.back());
    }
    state.counters["ours_ns"] = Median(ours) * 1e9;
    state.counters["bare_ns"] = Median(bare) * 1e9;
    state.counters["ratio"] = Median(ours) / Median(bare);
}

}  // namespace

BENCHMARK(ComparePosts)->Arg(1)->Arg(2)->Arg(4)->UseManualTime()->Iterations(60);

int main(int argc, char** argv) {
    const vrn::bench::BenchEngine engine;
    // A host that listens, as one does.
    std::uint64_t signals = 0;
    const auto subscription = SignalBroker::onUpdateScene([&] { ++signals; });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return signals > 0 ? 0 : 1;
}
