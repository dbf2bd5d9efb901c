#include "apps/headless/WholeFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <format>
#include <stdexcept>
#include <string>
#include <system_error>

namespace vrn::headless {

namespace {

[[noreturn]] void Fail(const std::filesystem::path& file, int reason) {
    throw std::runtime_error(
        std::format("{}: {}", file.string(), std::generic_category().message(reason)));
}

/// What a chain of symbolic links leads to, whether it is there or not.
std::filesystem::path LinkTarget(std::filesystem::path file) {
    constexpr int mostLinks = 40;  // as many as the system follows
    std::error_code error;
    for (int i = 0; std::filesystem::is_symlink(file, error); ++i) {
        if (i == mostLinks) Fail(file, ELOOP);
        file = file.parent_path() / std::filesystem::read_symlink(file);
    }
    return file;
}

}  // namespace

WholeFile::WholeFile(std::filesystem::path wanted) : file(std::move(wanted)) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (std::filesystem::is_directory(status)) Fail(file, EISDIR);
    if (std::filesystem::is_other(status)) {
        out.open(file, std::ios::binary);
        if (!out) Fail(file, errno);
        return;
    }
    target = LinkTarget(file);
    openBeside();
}

void WholeFile::openBeside() {
    for (int number = 1; part.empty(); ++number) {
        const std::filesystem::path name =
            target.parent_path() / std::format(".{}-{}.part", getpid(), number);
        const int made = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (made < 0 && errno != EEXIST) Fail(file, errno);
        if (made < 0) continue;
        close(made);
        part = name;
    }
    out.open(part, std::ios::binary);
}

WholeFile::~WholeFile() {
    if (part.empty()) return;
    out.close();
    std::error_code ignored;  // of a file that nobody asked for
    std::filesystem::remove(part, ignored);
}

void WholeFile::commit() {
    out.close();
    if (!out) Fail(file, errno != 0 ? errno : EIO);  // set by the write that failed
    if (part.empty()) return;
    std::error_code error;
    std::filesystem::rename(part, target, error);
    if (error) Fail(file, error.value());
    part.clear();
}

}  // namespace vrn::headless
