#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "apps/vrnview/Looks.h"

namespace vrn::host {

/// The command line, read and checked.
struct Options {
    enum class Command { Demo, Render, Info };

    Command command = Command::Demo;
    std::vector<std::filesystem::path> inputs;
    std::filesystem::path output = "demo.png";
    std::optional<std::filesystem::path> saveFolder;  ///< where demo keeps the files that it makes
    int widthPx = 1280;
    int heightPx = 720;
    Looks looks;
    std::vector<JointValue> joints;
    bool json = false;
};

/// What to do instead of running: print `text` and end with `status`.
struct EarlyEnd {
    std::string text;
    int status;  ///< 0 for a wanted help text, usageError otherwise
};

inline constexpr int usageError = 2;
inline constexpr int maxSizePx = 8192;

/// Exactly one of the two is there.
struct ParsedOptions {
    std::optional<Options> options;
    std::optional<EarlyEnd> end;
};
/// Reads the arguments behind the program's name. Thread: pure.
[[nodiscard]] ParsedOptions ParseOptions(const std::vector<std::string>& arguments);

}  // namespace vrn::host
