#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "apps/vrnview/Looks.h"
#include "suite/rob/VectorTypes.h"

namespace vrn::host {

/// What to ask the selection, in pixels of the picture from its upper left corner. One question at
/// least.
struct PickRequest {
    using Pixel = rob::PosTemplate<float>;  ///< z is 0

    std::vector<Pixel> at;
    std::optional<std::pair<Pixel, Pixel>> box;  ///< two opposite corners
    std::vector<Pixel> lasso;                    ///< empty for none, else three corners at least
    std::optional<std::filesystem::path> picture;
};

/// The command line, read and checked.
struct Options {
    enum class Command { Demo, Render, Info, Pick, Drive, Run };

    Command command = Command::Demo;
    std::vector<std::filesystem::path> inputs;
    std::filesystem::path output = "demo.png";        ///< of drive and run: a folder
    std::optional<std::filesystem::path> saveFolder;  ///< where demo keeps the files that it makes
    std::optional<std::filesystem::path> tourFolder;  ///< of demo: the pictures of the tour instead
    int widthPx = 1280;
    int heightPx = 720;
    Looks looks;
    std::vector<JointValue> joints;
    bool json = false;
    PickRequest pick;
    std::filesystem::path script;                      ///< that drive replays
    std::optional<std::filesystem::path> paintReport;  ///< that drive writes
    std::optional<std::string> task;                   ///< that run runs; without one the first
    int frames = 100;                                  ///< of run
};

/// What to do instead of running: print `text` and end with `status`.
struct EarlyEnd {
    std::string text;
    int status;  ///< 0 for a wanted help text, usageError otherwise
};

inline constexpr int usageError = 2;
inline constexpr int maxSizePx = 8192;
inline constexpr int maxFrames = 10'000;

/// Exactly one of the two is there.
struct ParsedOptions {
    std::optional<Options> options;
    std::optional<EarlyEnd> end;
};
/// Reads the arguments behind the program's name. Thread: pure.
[[nodiscard]] ParsedOptions ParseOptions(const std::vector<std::string>& arguments);

}  // namespace vrn::host
