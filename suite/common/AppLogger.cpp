#include "suite/common/AppLogger.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/basic_file_sink.h>

#include <mutex>
#include <stdexcept>
#include <utility>

namespace vrn {

namespace {

std::shared_ptr<spdlog::logger> OpenLog(const std::filesystem::path& path) {
    auto sink = std::make_shared<spdlog::sinks::basic_file_sink_mt>(path.string());
    auto log = std::make_shared<spdlog::logger>("vrnvisual", std::move(sink));
    log->set_level(spdlog::level::trace);
    log->flush_on(spdlog::level::trace);
    // The library's own handler prints to standard error, which belongs to the host.
    log->set_error_handler([](const std::string&) {});
    return log;
}

}  // namespace

struct FileLogger::State {
    mutable std::mutex mutex;
    std::shared_ptr<spdlog::logger> log;  // null: the file could not be opened
    std::filesystem::path path;

    std::shared_ptr<spdlog::logger> current() const {
        const std::lock_guard lock(mutex);
        return log;
    }
};

FileLogger::FileLogger() : state(std::make_unique<State>()) {
    std::error_code ignored;
    state->path = std::filesystem::temp_directory_path(ignored) / "vrnvisual.log";
    try {
        state->log = OpenLog(state->path);
    } catch (const spdlog::spdlog_ex&) {
        // Another user's file may lie there: go on without a log until setFile names a better one.
        state->log = nullptr;
    }
}

FileLogger::~FileLogger() = default;

void FileLogger::error(const std::string& message) {
    if (const auto log = state->current()) log->error(message);
}

void FileLogger::trace(const std::string& message) {
    if (const auto log = state->current()) log->trace(message);
}

void FileLogger::setFile(const std::filesystem::path& path) {
    std::shared_ptr<spdlog::logger> next;
    try {
        next = OpenLog(path);
    } catch (const spdlog::spdlog_ex& e) {
        throw std::runtime_error("cannot open the log file " + path.string() + ": " + e.what());
    }
    const std::lock_guard lock(state->mutex);
    state->log = std::move(next);
    state->path = path;
}

std::filesystem::path FileLogger::file() const {
    const std::lock_guard lock(state->mutex);
    return state->path;
}

FileLogger* AppLogger::inst() {
    // Never destroyed: destructors of statics elsewhere may still log.
    static auto* logger = new FileLogger;
    return logger;
}

}  // namespace vrn
