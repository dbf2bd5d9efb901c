#pragma once

#include <filesystem>
#include <string>

namespace vrn::host {

/// Throws std::runtime_error with the reason alone (no file name) if `file` is missing, no regular
/// file, unreadable or empty.
void RequireReadable(const std::filesystem::path& file);

/// The whole file. Throws what RequireReadable throws, and the same if reading stops half way.
[[nodiscard]] std::string ReadBytes(const std::filesystem::path& file);

/// The file's extension in lower case, with its dot; empty without one. Thread: pure.
[[nodiscard]] std::string LowerExtension(const std::filesystem::path& file);

/// `text` in lower case, letters of ASCII alone. Thread: pure.
[[nodiscard]] std::string Lower(std::string text);

}  // namespace vrn::host
