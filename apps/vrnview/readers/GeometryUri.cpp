#include "apps/vrnview/readers/GeometryUri.h"

#include <format>

namespace vrn::host {

std::string GeometryUri(const std::filesystem::path& file) {
    // Element by element: doubled slashes go, and with them all that could look like a URI's
    // scheme. Links and ".." stay as they are, for the file's name decides how it is read.
    std::filesystem::path clean;
    for (const std::filesystem::path& element : std::filesystem::absolute(file)) clean /= element;
    return clean.string();
}

std::string UnitSuffix(double unitMm) {
    return unitMm == 1 ? std::string() : std::format("*{}", unitMm);
}

}  // namespace vrn::host
