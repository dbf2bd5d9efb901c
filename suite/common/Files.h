#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "suite/SuiteApi.h"

namespace vrn {

/// The bytes of the entry that `uri` ("resource://material/Solid.material") names in the resource
/// package, whose place common::GetResourcePath tells. Throws std::runtime_error naming the URI and
/// the reason if the scheme is another one, or the package or the entry is missing or broken.
/// Thread: any.
[[nodiscard]] VRN_SUITE_API std::string ReadFileFromURI(const std::string& uri);

/// The file that a URI of the station means:
/// - "station://parts/a.stl": relative to the station folder, taken literally;
/// - "file:///data/a%20b.stl": an absolute path, with %XX decoded (a malformed %XX stays as it is);
/// - no "://" at all: a path, taken literally.
/// Any other scheme throws std::runtime_error naming the URI. The file need not exist. Thread: any.
[[nodiscard]] VRN_SUITE_API std::filesystem::path UriToFilePath(std::string_view uri);

/// The folder that "station://" stands for; at the start the empty path, which is the process's
/// working directory. Thread: any.
VRN_SUITE_API void SetStationFolder(const std::filesystem::path& folder);
[[nodiscard]] VRN_SUITE_API std::filesystem::path GetStationFolder();

}  // namespace vrn
