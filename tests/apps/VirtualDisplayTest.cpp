#include "apps/headless/VirtualDisplay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/apps/Process.h"

namespace vrn::headless {
namespace {

using test::ScopedVariable;

bool IsRunning(pid_t pid) { return kill(pid, 0) == 0; }

bool EndsSoon(pid_t pid) {
    for (int i = 0; i < 500 && IsRunning(pid); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return !IsRunning(pid);
}

TEST(VirtualDisplay, StartsAServerWithoutDisplayAndStopsItAgain) {
    const ScopedVariable none("DISPLAY", nullptr);
    pid_t server = 0;
    {
        const VirtualDisplay display;
        server = display.getServerPid();
        ASSERT_GT(server, 0);
        EXPECT_TRUE(IsRunning(server));
        EXPECT_EQ(std::getenv("DISPLAY"), display.getName());
        EXPECT_TRUE(VirtualDisplay::isUsable(display.getName()));
    }
    EXPECT_FALSE(IsRunning(server));
    EXPECT_EQ(std::getenv("DISPLAY"), nullptr);
}

TEST(VirtualDisplay, UnusableDisplayIsReplacedAndPutBack) {
    const ScopedVariable wrong("DISPLAY", ":54321");
    {
        const VirtualDisplay display;
        EXPECT_GT(display.getServerPid(), 0);
        EXPECT_NE(display.getName(), ":54321");
    }
    EXPECT_STREQ(std::getenv("DISPLAY"), ":54321");
}

TEST(VirtualDisplay, EmptyDisplayCountsAsUnusable) {
    const ScopedVariable empty("DISPLAY", "");
    const VirtualDisplay display;
    EXPECT_GT(display.getServerPid(), 0);
}

TEST(VirtualDisplay, UsableDisplayIsTakenAsItIs) {
    const ScopedVariable none("DISPLAY", nullptr);
    const VirtualDisplay outer;
    {
        const VirtualDisplay inner;
        EXPECT_EQ(inner.getServerPid(), 0);
        EXPECT_EQ(inner.getName(), outer.getName());
    }
    EXPECT_TRUE(IsRunning(outer.getServerPid()));
    EXPECT_EQ(std::getenv("DISPLAY"), outer.getName());
}

TEST(VirtualDisplay, TwoServersTakeTwoDisplays) {
    const ScopedVariable none("DISPLAY", nullptr);
    const VirtualDisplay first;
    const ScopedVariable again("DISPLAY", nullptr);
    const VirtualDisplay second;
    EXPECT_NE(first.getName(), second.getName());
}

TEST(VirtualDisplay, ServerEndsWhenAnExceptionLeavesTheScope) {
    const ScopedVariable none("DISPLAY", nullptr);
    pid_t server = 0;
    try {
        const VirtualDisplay display;
        server = display.getServerPid();
        throw std::runtime_error("the program gives up");
    } catch (const std::runtime_error&) {
    }
    ASSERT_GT(server, 0);
    EXPECT_FALSE(IsRunning(server));
}

TEST(VirtualDisplay, ServerEndsWithAProcessThatIsKilled) {
    const ScopedVariable none("DISPLAY", nullptr);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        // No destructor runs in this process: it waits to be killed.
        const VirtualDisplay display;
        const pid_t server = display.getServerPid();
        if (write(ends[1], &server, sizeof server) != sizeof server) _exit(1);
        pause();
        _exit(0);
    }
    ASSERT_GT(child, 0);
    close(ends[1]);
    pid_t server = 0;
    ASSERT_EQ(read(ends[0], &server, sizeof server), static_cast<ssize_t>(sizeof server));
    close(ends[0]);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(EndsSoon(server));
}

TEST(VirtualDisplay, MissingServerProgramIsNamedWithTheRemedy) {
    const ScopedVariable none("DISPLAY", nullptr);
    const ScopedVariable nowhere("PATH", "/nonexistent");
    EXPECT_THAT(
        [] { const VirtualDisplay display; },
        testing::ThrowsMessage<std::runtime_error>(testing::HasSubstr("Xvfb is not installed")));
    EXPECT_EQ(std::getenv("DISPLAY"), nullptr);
}

}  // namespace
}  // namespace vrn::headless
