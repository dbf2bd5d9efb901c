#pragma once

#include "visual/VrnVisualApi.h"

#include <vector>

namespace vrn::selection {

class BVHPrimitive;

/// Owns primitives, in the order in which they were added. Thread: render.
class VRN_VISUAL_API PrimitiveContainer {
public:
    PrimitiveContainer() = default;
    PrimitiveContainer(const PrimitiveContainer&) = delete;
    PrimitiveContainer& operator=(const PrimitiveContainer&) = delete;
    /// Deletes the primitives; null entries are passed over.
    virtual ~PrimitiveContainer();

    /// Takes the first entry equal to `primitive` out, keeping the order of the others. Deletes
    /// nothing: the caller owns it from here. Throws std::out_of_range if there is no such entry.
    void removePrimitive(BVHPrimitive* primitive);

    std::vector<BVHPrimitive*> primitives;  ///< owned
};

}  // namespace vrn::selection
