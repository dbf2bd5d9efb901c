#include "apps/vrnview/readers/Probe.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <system_error>

namespace vrn::host {

namespace {

/// Ends the copy without what a process does at its end: its files and display are the original's.
[[noreturn]] void RunAndEnd(const std::function<void()>& work, unsigned seconds) {
    const rlimit limit{seconds, seconds};
    setrlimit(RLIMIT_CPU, &limit);
    // The crash is expected: no report and no core file of it.
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
        std::signal(signal, [](int) { _exit(1); });
    try {
        work();
    } catch (...) {
        // It will throw again, and be told, in the original.
    }
    _exit(0);
}

}  // namespace

unsigned ProbeSeconds(const std::filesystem::path& file) {
    constexpr std::uintmax_t megabyte = 1'000'000;
    return static_cast<unsigned>(20 + 5 * std::filesystem::file_size(file) / megabyte);
}

bool Survives(const std::function<void()>& work, unsigned seconds) {
    const pid_t copy = fork();
    if (copy < 0) throw std::system_error(errno, std::generic_category(), "fork");
    if (copy == 0) RunAndEnd(work, seconds);
    int status = 0;
    while (waitpid(copy, &status, 0) < 0)
        if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "waitpid");
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace vrn::host
