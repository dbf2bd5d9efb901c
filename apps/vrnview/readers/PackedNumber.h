#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace vrn::host {

/// A number as it lies in a binary file.
struct PackedNumber {
    enum class Kind { Signed, Unsigned, Real };

    Kind kind = Kind::Real;
    std::uint8_t size = 4;  ///< bytes: 1, 2, 4 or 8; 4 or 8 for Real

    /// The number at `bytes`, which need not be aligned. 64-bit integers lose what a double cannot
    /// hold. Thread: pure.
    [[nodiscard]] double read(const char* bytes, std::endian order) const {
        if (kind == Kind::Real)
            return size == 4 ? std::bit_cast<float>(raw<std::uint32_t>(bytes, order))
                             : std::bit_cast<double>(raw<std::uint64_t>(bytes, order));
        switch (size) {
            case 1:
                return integer<std::uint8_t, std::int8_t>(bytes, order);
            case 2:
                return integer<std::uint16_t, std::int16_t>(bytes, order);
            case 4:
                return integer<std::uint32_t, std::int32_t>(bytes, order);
            default:
                return integer<std::uint64_t, std::int64_t>(bytes, order);
        }
    }

private:
    template <class T>
    static T raw(const char* bytes, std::endian order) {
        T value = 0;
        for (std::size_t i = 0; i < sizeof(T); ++i) {
            const std::size_t shift = order == std::endian::little ? i : sizeof(T) - 1 - i;
            value = static_cast<T>(value | static_cast<T>(static_cast<unsigned char>(bytes[i]))
                                               << (8 * shift));
        }
        return value;
    }
    template <class U, class S>
    double integer(const char* bytes, std::endian order) const {
        const U value = raw<U>(bytes, order);
        return kind == Kind::Signed ? static_cast<double>(static_cast<S>(value))
                                    : static_cast<double>(value);
    }
};

}  // namespace vrn::host
