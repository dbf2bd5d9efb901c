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

/// A longer reason than the reader's, where the file itself tells one: a binary STL whose size is
/// not what its triangle count asks for. Otherwise `readerMessage`. Throws nothing but
/// std::bad_alloc.
[[nodiscard]] std::string ExplainStlFailure(const std::filesystem::path& file,
                                            const std::string& readerMessage);

/// The URI under which the library reads `file`: its absolute path.
[[nodiscard]] std::string GeometryUri(const std::filesystem::path& file);

}  // namespace vrn::host
