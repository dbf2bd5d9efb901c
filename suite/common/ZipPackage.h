#pragma once

#include <minizip/unzip.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace vrn::common {

/// Reading one zip file; internal to this library. Thread: one object, one thread.
class ZipPackage {
public:
    /// Throws std::runtime_error if there is no such zip file.
    explicit ZipPackage(const std::filesystem::path& package);

    /// Goes to the entry of exactly this name; false if there is none.
    [[nodiscard]] bool locate(const std::string& entry);
    /// The bytes of the entry gone to last. Throws std::runtime_error if they cannot be unpacked.
    [[nodiscard]] std::string readLocated();

private:
    struct Closer {
        void operator()(void* file) const { unzClose(file); }
    };
    std::unique_ptr<std::remove_pointer_t<unzFile>, Closer> zip;
};

/// The entry name in "resource://name"; nothing for another scheme.
[[nodiscard]] std::optional<std::string> ResourceEntry(std::string_view uri);

}  // namespace vrn::common
