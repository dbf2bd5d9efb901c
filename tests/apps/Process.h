#pragma once

#include <string>
#include <vector>

namespace vrn::test {

/// What a program left behind.
struct ProcessResult {
    int status = 0;  ///< exit status; 128 and the signal's number for one that a signal ended
    std::string out;
    std::string err;

    /// The lines of `err`, without line ends.
    [[nodiscard]] std::vector<std::string> errLines() const;
};

/// Runs `program` with `arguments` in this process's environment and waits for its end. Throws
/// std::system_error if it cannot be started.
[[nodiscard]] ProcessResult RunProgram(const std::string& program,
                                       const std::vector<std::string>& arguments);

/// Sets or, with null, removes an environment variable, and puts the former state back.
class ScopedVariable {
public:
    ScopedVariable(std::string variable, const char* value);
    ~ScopedVariable();
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    std::string name;
    bool wasSet = false;
    std::string former;
};

}  // namespace vrn::test
