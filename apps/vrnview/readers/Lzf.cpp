#include <stdexcept>

#include "apps/vrnview/readers/CloudPoints.h"

namespace vrn::host {

namespace {

/// A reference of three bytes gives 264 at most.
constexpr std::uint64_t highestRatio = 88;

[[noreturn]] void Broken() { throw std::runtime_error("the compressed points are broken"); }

unsigned Take(std::string_view& packed) {
    if (packed.empty()) Broken();
    const auto byte = static_cast<unsigned char>(packed.front());
    packed.remove_prefix(1);
    return byte;
}

}  // namespace

// The format: a control byte below 32 is followed by that many bytes and one more, to be taken as
// they are. Any other refers back: its upper three bits are the length (7: plus the next byte), its
// lower five and the byte behind are the distance less one; what is copied is two longer.
std::vector<char> UnpackLzf(std::string_view packed, std::uint64_t size) {
    if (size / highestRatio > packed.size()) Broken();
    std::vector<char> out;
    out.reserve(size);
    while (!packed.empty()) {
        const unsigned control = Take(packed);
        if (control < 32) {
            const std::size_t length = control + 1;
            if (length > packed.size() || length > size - out.size()) Broken();
            out.insert(out.end(), packed.begin(), packed.begin() + length);
            packed.remove_prefix(length);
            continue;
        }
        std::size_t length = control >> 5;
        if (length == 7) length += Take(packed);
        length += 2;
        const std::size_t distance = ((control & 31u) << 8 | Take(packed)) + 1;
        if (distance > out.size() || length > size - out.size()) Broken();
        // One by one: the copy may run into what it has just written.
        for (std::size_t i = 0; i < length; ++i) out.push_back(out[out.size() - distance]);
    }
    if (out.size() != size) Broken();
    return out;
}

}  // namespace vrn::host
