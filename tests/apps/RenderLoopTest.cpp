#include "apps/vrnview/RenderLoop.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "selection/VisualSelection.h"
#include "tests/support/EngineFixture.h"
#include "visual/Visual.h"

namespace vrn::test {
namespace {

using host::RenderLoop;

class RenderLoopTest : public EngineTest {
protected:
    /// The message of what the call throws; empty if it throws nothing.
    template <class Call>
    static std::string failureOf(const Call& call) {
        try {
            call();
        } catch (const std::exception& error) {
            return error.what();
        }
        return {};
    }
    static void post(std::function<void()> task) {
        scene().addRenderTask(std::move(task), /*key=*/0);
    }
};

TEST_F(RenderLoopTest, WorkHasAThreadOfItsOwnAndQuestionsTheCallersOne) {
    const auto caller = std::this_thread::get_id();
    std::thread::id worker, asked;
    RenderLoop loop;
    loop.runBeside([&] {
        worker = std::this_thread::get_id();
        loop.ask([&] { asked = std::this_thread::get_id(); });
    });
    EXPECT_NE(worker, caller);
    EXPECT_EQ(asked, caller);
}

TEST_F(RenderLoopTest, AQuestionIsAnsweredBehindAllThatWasPosted) {
    std::vector<int> order;
    RenderLoop loop;
    loop.runBeside([&] {
        for (int i = 0; i < 1000; ++i) post([&order, i] { order.push_back(i); });
        loop.ask([&] { EXPECT_EQ(order.size(), 1000u); });
    });
    ASSERT_EQ(order.size(), 1000u);
    EXPECT_EQ(order.back(), 999);
}

TEST_F(RenderLoopTest, AQuestionFindsTheSelectionUpToDate) {
    visual::Visual* box = showBoxPart("box");
    RenderLoop loop;
    loop.runBeside([&] {
        post([&] {
            box->setPosition(0, 0, 10);
            EXPECT_TRUE(selection::VisualSelection::Get()->dirty);
        });
        loop.ask([] { EXPECT_FALSE(selection::VisualSelection::Get()->dirty); });
    });
}

TEST_F(RenderLoopTest, WhatAQuestionThrowsReachesWhoAsked) {
    RenderLoop loop;
    bool went = false;
    loop.runBeside([&] {
        EXPECT_EQ(failureOf([&] { loop.ask([] { throw std::runtime_error("asked"); }); }), "asked");
        loop.ask([&] { went = true; });
    });
    EXPECT_TRUE(went);
}

TEST_F(RenderLoopTest, WhatAPostedTaskThrowsReachesTheNextQuestionOnce) {
    RenderLoop loop;
    bool went = false;
    loop.runBeside([&] {
        for (int i = 0; i < 50; ++i) {  // in one batch with the question, or in one before it
            post([] { throw std::runtime_error("posted"); });
            EXPECT_EQ(failureOf([&] { loop.ask([] {}); }), "posted");
        }
        loop.ask([&] { went = true; });
    });
    EXPECT_TRUE(went);
}

TEST_F(RenderLoopTest, WhatTheWorkThrowsEndsTheLoop) {
    RenderLoop loop;
    EXPECT_EQ(failureOf([&] { loop.runBeside([] { throw std::runtime_error("work"); }); }), "work");
    bool went = false;
    RenderLoop().runBeside([&] { went = true; });
    EXPECT_TRUE(went);
}

}  // namespace
}  // namespace vrn::test
