#pragma once

#include <filesystem>

namespace vrn::host {

/// A new folder under the system's temporary directory, removed with all it holds when the object
/// goes.
class TempFolder {
public:
    /// Throws std::system_error if it cannot be made.
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& getPath() const { return path; }

private:
    std::filesystem::path path;
};

}  // namespace vrn::host
