#include "apps/vrnview/InputFile.h"

#include <unistd.h>

#include <cerrno>
#include <format>
#include <stdexcept>
#include <system_error>

#include "apps/vrnview/readers/Content.h"

namespace vrn::host {

namespace {

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
    if (!IsSupported(file))
        throw std::runtime_error(
            std::format("unsupported file type (supported: {})", supportedFiles));
    if (access(file.c_str(), R_OK) != 0) throw std::runtime_error(ErrorText(errno));
    if (std::filesystem::file_size(file) == 0) throw std::runtime_error("the file is empty");
}

}  // namespace vrn::host
