#include "suite/common/ZipPackage.h"

#include <stdexcept>

namespace vrn::common {

ZipPackage::ZipPackage(const std::filesystem::path& package) : zip(unzOpen64(package.c_str())) {
    if (zip) return;
    std::error_code error;
    const bool present = std::filesystem::exists(package, error);
    throw std::runtime_error("resource package " + package.string() +
                             (present ? " is not a readable zip file" : " does not exist"));
}

bool ZipPackage::locate(const std::string& entry) {
    constexpr int caseSensitive = 1;
    return unzLocateFile(zip.get(), entry.c_str(), caseSensitive) == UNZ_OK;
}

std::string ZipPackage::readLocated() {
    // By pieces: the size that the directory promises may be a lie and is not allocated up front.
    constexpr std::size_t pieceSize = 64 * 1024;
    std::string bytes;
    if (unzOpenCurrentFile(zip.get()) != UNZ_OK) throw std::runtime_error("entry cannot be opened");
    int got = 0;
    do {
        const std::size_t size = bytes.size();
        bytes.resize(size + pieceSize);
        got = unzReadCurrentFile(zip.get(), bytes.data() + size, static_cast<unsigned>(pieceSize));
        bytes.resize(size + static_cast<std::size_t>(got > 0 ? got : 0));
    } while (got > 0);
    // Closing is what compares the checksum.
    if (const int closed = unzCloseCurrentFile(zip.get()); got < 0 || closed != UNZ_OK)
        throw std::runtime_error("entry is damaged");
    return bytes;
}

std::optional<std::string> ResourceEntry(std::string_view uri) {
    constexpr std::string_view scheme = "resource://";
    if (!uri.starts_with(scheme)) return std::nullopt;
    return std::string(uri.substr(scheme.size()));
}

}  // namespace vrn::common
