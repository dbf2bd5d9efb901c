#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vrn::host {

/// A file to open.
struct InputFile {
    std::filesystem::path file;
    std::optional<std::string> colour;  ///< "#RRGGBB"; none means the model's default
};

/// Throws std::runtime_error with the reason alone (no file name) if `file` cannot be opened as an
/// input: it is missing, no regular file, unreadable, empty, or of a type that the host does not
/// know.
void CheckInput(const std::filesystem::path& file);

}  // namespace vrn::host
