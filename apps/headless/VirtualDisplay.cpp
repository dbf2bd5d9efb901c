#include "apps/headless/VirtualDisplay.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <X11/Xlib.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

namespace vrn::headless {

namespace {

constexpr int notFoundStatus = 127;  // as a shell reports a command that is not there
constexpr int startAttempts = 3;
constexpr std::chrono::seconds startLimit{60};
constexpr std::chrono::seconds stopLimit{5};

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

std::system_error LastError(const char* what) { return {errno, std::generic_category(), what}; }

/// Both ends are closed on exec; the child opens its end again under another number.
std::array<int, 2> MakePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw LastError("virtual display: pipe");
    return ends;
}

/// Only calls that are safe between fork and exec.
[[noreturn]] void BecomeServer(int numberPipe, int messages, pid_t parent) {
    // The server must not outlive a parent that is killed or aborts.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) _exit(1);  // the parent died before the line above
    setpgid(0, 0);  // Ctrl-C reaches the parent, which stops the server in order
    dup2(messages, STDOUT_FILENO);
    dup2(messages, STDERR_FILENO);
    constexpr int displayFd = 3;
    if (numberPipe == displayFd) {
        fcntl(displayFd, F_SETFD, 0);
    } else {
        dup2(numberPipe, displayFd);
    }
    // -displayfd: the server takes a free number itself and writes it once it accepts clients.
    execlp("Xvfb", "Xvfb", "-displayfd", "3", "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
           "-noreset", static_cast<char*>(nullptr));
    _exit(notFoundStatus);
}

/// The line that the server writes, empty if it ended or stayed silent for `startLimit`.
std::string ReadDisplayNumber(int fd) {
    const auto deadline = std::chrono::steady_clock::now() + startLimit;
    std::string digits;
    while (true) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) return {};
        pollfd waiting{fd, POLLIN, 0};
        const int ready = poll(&waiting, 1, static_cast<int>(left.count()));
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) return {};
        char c = 0;
        const ssize_t got = read(fd, &c, 1);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return {};
        if (c == '\n') return digits;
        digits += c;
    }
}

/// What the server said last, for the error text.
std::string LastLine(std::FILE* messages) {
    std::rewind(messages);
    std::string last;
    std::array<char, 512> buffer{};
    while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), messages) != nullptr) {
        std::string line = buffer.data();
        while (!line.empty() &&
               std::string_view(" \t\r\n").find(line.back()) != std::string_view::npos)
            line.pop_back();
        if (!line.empty()) last = line;
    }
    return last;
}

/// Ends `pid`, by force if it does not listen, and returns its wait status.
int StopProcess(pid_t pid) {
    int status = 0;
    kill(pid, SIGTERM);
    const auto deadline = std::chrono::steady_clock::now() + stopLimit;
    while (std::chrono::steady_clock::now() < deadline) {
        const pid_t ended = waitpid(pid, &status, WNOHANG);
        if (ended == pid || (ended < 0 && errno != EINTR)) return status;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(pid, SIGKILL);
    waitpid(pid, &status, 0);
    return status;
}

}  // namespace

VirtualDisplay::VirtualDisplay() {
    if (const char* given = std::getenv("DISPLAY"); given != nullptr) formerName = given;
    if (formerName && isUsable(*formerName)) {
        name = *formerName;
        return;
    }
    // Where many servers start at once, one may lose its number to another after it has told it.
    for (int attempt = 1;; ++attempt) {
        startServer();
        if (isUsable(name)) break;
        StopProcess(std::exchange(serverPid, 0));
        if (attempt == startAttempts)
            throw std::runtime_error("Xvfb started, but its display " + name +
                                     " cannot be used: it does not answer or has no GLX");
    }
    setenv("DISPLAY", name.c_str(), /*overwrite=*/1);
}

VirtualDisplay::~VirtualDisplay() {
    if (serverPid == 0) return;
    StopProcess(serverPid);
    if (formerName) {
        setenv("DISPLAY", formerName->c_str(), /*overwrite=*/1);
    } else {
        unsetenv("DISPLAY");
    }
}

bool VirtualDisplay::isUsable(const std::string& displayName) {
    // An empty name would make Xlib read DISPLAY.
    if (displayName.empty()) return false;
    Display* const display = XOpenDisplay(displayName.c_str());
    if (display == nullptr) return false;
    int opcode = 0, event = 0, error = 0;
    const bool hasGlx = XQueryExtension(display, "GLX", &opcode, &event, &error) != 0;
    XCloseDisplay(display);
    return hasGlx;
}

void VirtualDisplay::startServer() {
    const File messages(std::tmpfile(), &std::fclose);
    if (!messages) throw LastError("virtual display: temporary file");
    const int messagesFd = fileno(messages.get());
    const auto [readEnd, writeEnd] = MakePipe();

    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) BecomeServer(writeEnd, messagesFd, parent);
    close(writeEnd);
    if (child < 0) {
        const std::system_error error = LastError("virtual display: fork");
        close(readEnd);
        throw error;
    }
    const std::string number = ReadDisplayNumber(readEnd);
    close(readEnd);
    if (number.empty()) {
        const int status = StopProcess(child);
        if (WIFEXITED(status) && WEXITSTATUS(status) == notFoundStatus)
            throw std::runtime_error(
                "no display is usable and Xvfb is not installed: set DISPLAY or install Xvfb "
                "(Debian: "
                "apt-get install xvfb)");
        const std::string said = LastLine(messages.get());
        throw std::runtime_error("Xvfb did not start" + (said.empty() ? said : ": " + said));
    }
    name = ":" + number;
    serverPid = child;
}

}  // namespace vrn::headless
