#include "apps/vrnview/InputFile.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <format>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace vrn::host {

namespace {

constexpr std::size_t headerSize =
    84;  // of a binary STL: 80 free bytes, then the number of triangles
constexpr std::uint64_t triangleSize = 50;

std::string ErrorText(int number) {
    return std::error_code(number, std::generic_category()).message();
}

}  // namespace

void CheckInput(const std::filesystem::path& file) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (error) throw std::runtime_error(error.message());
    if (std::filesystem::is_directory(status))
        throw std::runtime_error("is a directory, not a file");
    if (!std::filesystem::is_regular_file(status))
        throw std::runtime_error("is not a regular file");
    // The reader's own rule: all lower or all upper case.
    const std::string extension = file.extension().string();
    if (extension != ".stl" && extension != ".STL")
        throw std::runtime_error("unsupported file type (supported: .stl, .STL)");
    if (access(file.c_str(), R_OK) != 0) throw std::runtime_error(ErrorText(errno));
    if (std::filesystem::file_size(file) == 0) throw std::runtime_error("the file is empty");
}

std::string ExplainStlFailure(const std::filesystem::path& file, const std::string& readerMessage) {
    std::ifstream in(file, std::ios::binary);
    std::array<char, headerSize> header{};
    if (!in.read(header.data(), header.size())) return readerMessage;
    const std::string_view bytes(header.data(), header.size());
    // A text has no zero bytes, while a binary count or header nearly always does.
    if (bytes.find('\0') == std::string_view::npos) return readerMessage;
    std::uint64_t triangles = 0;
    for (std::size_t i = 0; i < 4; ++i)
        triangles |= std::uint64_t{static_cast<unsigned char>(header[80 + i])} << (8 * i);
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    const std::uint64_t expected = headerSize + triangleSize * triangles;
    if (error || size == expected) return readerMessage;
    return std::format("{}: a binary STL of {} triangles has {} bytes, this file has {}",
                       readerMessage, triangles, expected, size);
}

std::string GeometryUri(const std::filesystem::path& file) {
    // Element by element: doubled slashes go, and with them all that could look like a URI's
    // scheme. Links and ".." stay as they are, for the file's name decides how it is read.
    std::filesystem::path clean;
    for (const std::filesystem::path& element : std::filesystem::absolute(file)) clean /= element;
    return clean.string();
}

}  // namespace vrn::host
