#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace vrn::headless {

/// A display to render on: the one that DISPLAY names if it can be used, else an Xvfb server of its
/// own.
///
/// Make it first thing in main, before the engine's Init and before other threads start: it may
/// change the environment. Keep it until the last frame is done.
///
///     int main() {
///         const vrn::headless::VirtualDisplay display;
///         ...
///     }
///
/// An own server ends with the object. It also ends, by the kernel's hand, with the thread that
/// made the object, so that a program that is killed or calls abort() leaves no server behind.
class VirtualDisplay {
public:
    /// Throws std::runtime_error if no display is usable and none could be started; the text tells
    /// what to do where Xvfb is not installed.
    VirtualDisplay();
    /// Stops an own server and gives DISPLAY its former value.
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    /// The display's name as in DISPLAY, for example ":99".
    [[nodiscard]] const std::string& getName() const { return name; }
    /// The process of the own server; 0 if a display that was there is used.
    [[nodiscard]] pid_t getServerPid() const { return serverPid; }

    /// True if the X server named `displayName` answers and offers GLX, which the engine needs.
    [[nodiscard]] static bool isUsable(const std::string& displayName);

private:
    void startServer();

    std::string name;
    pid_t serverPid = 0;
    std::optional<std::string> formerName;  ///< DISPLAY before an own server was started
};

}  // namespace vrn::headless
