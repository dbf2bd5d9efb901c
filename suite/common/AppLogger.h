#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "suite/SuiteApi.h"

namespace vrn {

/// Writes lines to a log file; nothing reaches standard output or standard error.
///
/// A line is time, level ("error" or "trace") and message, and is in the file when the call
/// returns. A file that cannot be opened or written costs the line, never an exception: logging
/// must not break what it reports on. Thread: any, every operation.
class VRN_SUITE_API FileLogger {
public:
    ~FileLogger();
    FileLogger(const FileLogger&) = delete;
    FileLogger& operator=(const FileLogger&) = delete;

    void error(const std::string& message);
    void trace(const std::string& message);

    /// Appends to `path` from now on. Throws std::runtime_error if it cannot be opened, and then
    /// keeps the file it had.
    void setFile(const std::filesystem::path& path);
    /// The file that lines go to.
    [[nodiscard]] std::filesystem::path file() const;

private:
    friend class AppLogger;
    FileLogger();

    struct State;
    std::unique_ptr<State> state;
};

/// The application's one logger.
class VRN_SUITE_API AppLogger {
public:
    /// Never null; lives until the process ends. It starts on "vrnvisual.log" in the system's
    /// temporary directory. Thread: any.
    [[nodiscard]] static FileLogger* inst();
};

}  // namespace vrn
