#pragma once

#include <malloc.h>

#include <cstddef>

namespace vrn::bench {

/// Bytes that the program holds from the allocator, those of the software renderer included.
inline std::size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

}  // namespace vrn::bench
