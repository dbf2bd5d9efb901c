#include "apps/vrnview/readers/FileBytes.h"

#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace vrn::host {

void RequireReadable(const std::filesystem::path& file) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (error) throw std::runtime_error(error.message());
    if (std::filesystem::is_directory(status))
        throw std::runtime_error("is a directory, not a file");
    if (!std::filesystem::is_regular_file(status))
        throw std::runtime_error("is not a regular file");
    if (access(file.c_str(), R_OK) != 0)
        throw std::runtime_error(std::error_code(errno, std::generic_category()).message());
    if (std::filesystem::file_size(file) == 0) throw std::runtime_error("the file is empty");
}

std::string ReadBytes(const std::filesystem::path& file) {
    RequireReadable(file);
    std::ifstream in(file, std::ios::binary);
    std::string bytes(std::filesystem::file_size(file), '\0');
    if (!in.read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
        throw std::runtime_error("the file cannot be read");
    return bytes;
}

std::string Lower(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

std::string LowerExtension(const std::filesystem::path& file) {
    return Lower(file.extension().string());
}

}  // namespace vrn::host
