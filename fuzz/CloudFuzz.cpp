// Feeds any bytes to the readers of point clouds: each must end in finite points or in one of its
// errors, and must not make room for more than so few bytes can hold.

#include "apps/vrnview/readers/CloudPoints.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace {

using vrn::host::CloudPoints;

void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

template <class Reader>
void Check(Reader reader, std::string_view bytes) {
    try {
        const CloudPoints cloud = reader(bytes);
        Require(!cloud.points.empty(), "a cloud that was read has points");
        // A byte of packed data gives 88 at most, and a point takes three at least.
        Require(cloud.points.size() + cloud.holes <= 88 * bytes.size() / 3 + 1,
                "no more points than the bytes can hold");
        for (const auto& p : cloud.points)
            Require(std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z),
                    "points are finite");
    } catch (const std::runtime_error& error) {
        Require(std::string_view(error.what()).find('\0') == std::string_view::npos &&
                    *error.what() != '\0',
                "errors say something");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    Check(vrn::host::ReadPly, bytes);
    Check(vrn::host::ReadPcd, bytes);
    Check(vrn::host::ReadPointText, bytes);
    return 0;
}
