#include "tests/apps/Process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>
#include <utility>

#include "apps/vrnview/TempFolder.h"

namespace vrn::test {

namespace {

std::string ReadAll(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

std::vector<std::string> ProcessResult::errLines() const {
    std::vector<std::string> lines;
    std::istringstream in(err);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

ProcessResult RunProgram(const std::string& program, const std::vector<std::string>& arguments) {
    const host::TempFolder folder;
    const std::string out = folder.getPath() / "out", err = folder.getPath() / "err";
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, out.c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, err.c_str(), O_WRONLY | O_CREAT, 0600);
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    pid_t pid = 0;
    const int error = posix_spawn(&pid, program.c_str(), &files, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    if (error != 0) throw std::system_error(error, std::generic_category(), program);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), ReadAll(out),
            ReadAll(err)};
}

ScopedVariable::ScopedVariable(std::string variable, const char* value)
    : name(std::move(variable)) {
    if (const char* now = std::getenv(name.c_str()); now != nullptr) {
        wasSet = true;
        former = now;
    }
    if (value != nullptr) {
        setenv(name.c_str(), value, 1);
    } else {
        unsetenv(name.c_str());
    }
}

ScopedVariable::~ScopedVariable() {
    if (wasSet) {
        setenv(name.c_str(), former.c_str(), 1);
    } else {
        unsetenv(name.c_str());
    }
}

}  // namespace vrn::test
