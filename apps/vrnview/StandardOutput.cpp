#include "apps/vrnview/StandardOutput.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <system_error>

namespace vrn::host {

namespace {

void Flush() {
    std::cout.flush();
    std::fflush(stdout);
}

}  // namespace

StandardOutputAside::StandardOutputAside() {
    Flush();
    kept = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    if (kept < 0) throw std::system_error(errno, std::generic_category(), "standard output");
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

StandardOutputAside::~StandardOutputAside() {
    Flush();
    dup2(kept, STDOUT_FILENO);
    close(kept);
}

}  // namespace vrn::host
