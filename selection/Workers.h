#pragma once

#include "visual/VrnVisualApi.h"

#include <cstddef>
#include <functional>

namespace vrn::selection {

/// How many threads the machine runs at once; 4 where it does not tell. Thread: any.
[[nodiscard]] VRN_VISUAL_API unsigned ThreadCount();

/// Calls `work(0)` to `work(count - 1)`, each once and in no order, on ThreadCount threads of which
/// the caller is one, and returns when all are done. A single piece starts no thread. What a call
/// throws passes on after that; the thread that met it takes no further piece, so others may be
/// left out. Thread: any.
VRN_VISUAL_API void ShareOut(std::size_t count, const std::function<void(std::size_t)>& work);

}  // namespace vrn::selection
