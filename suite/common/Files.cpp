#include "suite/common/Files.h"

#include "suite/common/Resources.h"
#include "suite/common/ZipPackage.h"

#include <charconv>
#include <mutex>
#include <stdexcept>

namespace vrn {

namespace {

std::mutex stationMutex;

std::filesystem::path& StationFolder() {
    static std::filesystem::path folder;
    return folder;
}

std::string PercentDecoded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned value = 0;
        const char* first = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(first, first + 2, value, 16).ptr == first + 2) {
            result += static_cast<char>(value);
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

}  // namespace

std::string ReadFileFromURI(const std::string& uri) {
    const auto entry = common::ResourceEntry(uri);
    if (!entry)
        throw std::runtime_error("cannot read " + uri + ": expected a URI of scheme resource://");
    try {
        common::ZipPackage package(common::GetResourcePath());
        if (!package.locate(*entry)) throw std::runtime_error("no such entry in the package");
        return package.readLocated();
    } catch (const std::runtime_error& e) {
        throw std::runtime_error("cannot read " + uri + ": " + e.what());
    }
}

std::filesystem::path UriToFilePath(std::string_view uri) {
    constexpr std::string_view mark = "://";
    const std::size_t at = uri.find(mark);
    if (at == std::string_view::npos) return uri;
    const std::string_view scheme = uri.substr(0, at);
    const std::string_view rest = uri.substr(at + mark.size());
    if (scheme == "station")
        return GetStationFolder() / std::filesystem::path(rest).relative_path();
    if (scheme == "file") return PercentDecoded(rest);
    throw std::runtime_error("no file path for " + std::string(uri) +
                             ": expected scheme station:// or file://, or a plain path");
}

void SetStationFolder(const std::filesystem::path& folder) {
    const std::lock_guard lock(stationMutex);
    StationFolder() = folder;
}

std::filesystem::path GetStationFolder() {
    const std::lock_guard lock(stationMutex);
    return StationFolder();
}

}  // namespace vrn
