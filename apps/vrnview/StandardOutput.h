#pragma once

namespace vrn::host {

/// While it lives, what anything in the process writes to standard output goes to standard error.
///
/// For start-up: the library names an old OpenGL driver on standard output, where the host's
/// results go. Not for several at once. Thread: any one, with no other one writing.
class StandardOutputAside {
public:
    /// Throws std::system_error if the process is out of file descriptors.
    StandardOutputAside();
    ~StandardOutputAside();
    StandardOutputAside(const StandardOutputAside&) = delete;
    StandardOutputAside& operator=(const StandardOutputAside&) = delete;

private:
    int kept;
};

}  // namespace vrn::host
