#include "suite/broker/SignalBroker.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <semaphore>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace {

using vrn::broker::SignalBroker;
using vrn::broker::Subscription;

TEST(SignalBroker, EachSignalReachesItsOwnHandlersOnly) {
    int scene = 0, camera = 0, snap = 0;
    double ms = 0;
    const auto a = SignalBroker::onUpdateScene([&] { ++scene; });
    const auto b = SignalBroker::onCameraMoved([&] { ++camera; });
    const auto c = SignalBroker::onSnapResultInvalidated([&] { ++snap; });
    const auto d = SignalBroker::onFrameTicked([&](double value) { ms = value; });

    SignalBroker::updateScene();
    EXPECT_EQ(scene, 1);
    SignalBroker::cameraMoved();
    SignalBroker::cameraMoved();
    EXPECT_EQ(camera, 2);
    for (int i = 0; i < 3; ++i) SignalBroker::snapResultInvalidated();
    EXPECT_EQ(snap, 3);
    SignalBroker::frameTicked(16.5);
    EXPECT_EQ(ms, 16.5);
    EXPECT_EQ(scene, 1);
}

TEST(SignalBroker, EmittingWithoutHandlersDoesNothing) {
    SignalBroker::updateScene();
    SignalBroker::frameTicked(1);
}

TEST(SignalBroker, HandlersRunInTheOrderOfSubscription) {
    std::vector<int> order;
    const auto a = SignalBroker::onUpdateScene([&] { order.push_back(1); });
    const auto b = SignalBroker::onUpdateScene([&] { order.push_back(2); });
    const auto c = SignalBroker::onUpdateScene([&] { order.push_back(3); });
    SignalBroker::updateScene();
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TEST(SignalBroker, EmptyHandlerIsRefused) {
    EXPECT_THROW((void)SignalBroker::onUpdateScene({}), std::invalid_argument);
    EXPECT_THROW((void)SignalBroker::onFrameTicked({}), std::invalid_argument);
}

TEST(Subscription, EndsWithItsScopeOrReset) {
    int calls = 0;
    auto outer = SignalBroker::onUpdateScene([&] { ++calls; });
    {
        const auto inner = SignalBroker::onUpdateScene([&] { calls += 10; });
        SignalBroker::updateScene();
        EXPECT_EQ(calls, 11);
    }
    SignalBroker::updateScene();
    EXPECT_EQ(calls, 12);
    EXPECT_TRUE(outer);
    outer.reset();
    EXPECT_FALSE(outer);
    outer.reset();  // once more does nothing
    SignalBroker::updateScene();
    EXPECT_EQ(calls, 12);
}

TEST(Subscription, MovingHandsTheHandlerOn) {
    int calls = 0;
    Subscription kept;
    {
        auto made = SignalBroker::onUpdateScene([&] { ++calls; });
        kept = std::move(made);
        EXPECT_FALSE(
            made);  // NOLINT(bugprone-use-after-move): what is left is part of the contract
    }
    SignalBroker::updateScene();
    EXPECT_EQ(calls, 1);
    kept = Subscription{};  // assigning ends the earlier one
    SignalBroker::updateScene();
    EXPECT_EQ(calls, 1);
}

TEST(Subscription, HandlerMayEndItself) {
    int calls = 0;
    Subscription own;
    own = SignalBroker::onUpdateScene([&] {
        ++calls;
        own.reset();
    });
    SignalBroker::updateScene();
    SignalBroker::updateScene();
    EXPECT_EQ(calls, 1);
}

TEST(Subscription, HandlerEndedByAnEarlierOneIsNotCalled) {
    int calls = 0;
    Subscription second;
    const auto first = SignalBroker::onUpdateScene([&] { second.reset(); });
    second = SignalBroker::onUpdateScene([&] { ++calls; });
    SignalBroker::updateScene();
    EXPECT_EQ(calls, 0);
}

TEST(Subscription, HandlerAddedByAHandlerIsCalledFromTheNextEmissionOn) {
    int calls = 0;
    Subscription added;
    const auto adder = SignalBroker::onUpdateScene([&] {
        if (!added) added = SignalBroker::onUpdateScene([&] { ++calls; });
    });
    SignalBroker::updateScene();
    EXPECT_EQ(calls, 0);
    SignalBroker::updateScene();
    EXPECT_EQ(calls, 1);
}

TEST(SignalBroker, HandlerMayEmitAgain) {
    int depth = 0;
    const auto handler = SignalBroker::onUpdateScene([&] {
        if (++depth < 3) SignalBroker::updateScene();
    });
    SignalBroker::updateScene();
    EXPECT_EQ(depth, 3);
}

TEST(SignalBroker, HandlersExceptionReachesTheEmitterAndTheSignalGoesOnWorking) {
    int calls = 0;
    auto thrower = SignalBroker::onUpdateScene([] { throw std::runtime_error("handler"); });
    const auto behind = SignalBroker::onUpdateScene([&] { ++calls; });
    EXPECT_THROW(SignalBroker::updateScene(), std::runtime_error);
    EXPECT_EQ(calls, 0);
    thrower.reset();  // would wait for ever if the throwing call were still counted
    SignalBroker::updateScene();
    EXPECT_EQ(calls, 1);
}

TEST(Subscription, CapturedObjectIsFreedWithoutAFurtherEmission) {
    auto captured = std::make_shared<int>(1);
    const std::weak_ptr<int> watch = captured;
    Subscription own;
    // Ended in the middle of its own call, when the list that holds it is still being read.
    own = SignalBroker::onUpdateScene([captured = std::move(captured), &own] { own.reset(); });
    SignalBroker::updateScene();
    EXPECT_TRUE(watch.expired());
}

TEST(Subscription, ResetWaitsForACallOnAnotherThread) {
    std::binary_semaphore inside{0}, goOn{0};
    std::atomic<bool> finished{false};
    auto subscription = SignalBroker::onUpdateScene([&] {
        inside.release();
        goOn.acquire();
        finished = true;
    });
    std::thread emitter([] { SignalBroker::updateScene(); });
    inside.acquire();
    std::thread opener([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        goOn.release();
    });
    subscription.reset();
    EXPECT_TRUE(finished);
    emitter.join();
    opener.join();
}

TEST(SignalBroker, EmissionsAndSubscriptionsOfSeveralThreadsDoNotDisturbEachOther) {
    constexpr int emissions = 2000, rounds = 300;
    std::atomic<int> steady{0};
    const auto always = SignalBroker::onUpdateScene([&] { ++steady; });
    std::atomic<int> callsAfterEnd{0};

    std::vector<std::thread> threads;
    for (int t = 0; t < 2; ++t)
        threads.emplace_back([] {
            for (int i = 0; i < emissions; ++i) SignalBroker::updateScene();
        });
    for (int t = 0; t < 2; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < rounds; ++i) {
                // Freed right after reset: an address sanitizer sees a call that comes too late.
                auto alive = std::make_unique<std::atomic<bool>>(true);
                auto own = SignalBroker::onUpdateScene([&callsAfterEnd, flag = alive.get()] {
                    if (!*flag) ++callsAfterEnd;
                });
                std::this_thread::yield();
                own.reset();
                *alive = false;
            }
        });
    for (std::thread& t : threads) t.join();
    EXPECT_EQ(steady, 2 * emissions);
    EXPECT_EQ(callsAfterEnd, 0);
}

}  // namespace
