#pragma once

#include "selection/Box.h"
#include "selection/BVHTree.h"
#include "visual/VrnVisualApi.h"

#include <cstdint>
#include <iosfwd>
#include <vector>

namespace vrn::selection {

class BVHNode;
class BVHPrimitive;
class PrimitiveContainer;

/// Builds a hierarchy over the enabled primitives of a container, top down, by the surface-area
/// cost of 8 equal buckets along the widest axis of the centroids. Lives for one build.
/// Thread: that of the container.
class VRN_VISUAL_API BVHBuilder {
public:
    struct VRN_VISUAL_API BucketInfo {
        std::uint32_t count = 0;
        visual::Box box;

        void add(BVHPrimitive* primitive);
        /// Writes "Bucket count: ", the count and a newline, then the box.
        void dump(std::ostream& out) const;
    };

    explicit BVHBuilder(PrimitiveContainer* primitiveContainer);

    /// A tree without a root if no primitive is enabled.
    [[nodiscard]] BVHTree build();
    /// The node over order[first..last). Throws std::runtime_error "prim num = 0" for an empty
    /// range and std::out_of_range for one that does not lie in `order`.
    [[nodiscard]] BVHNode* buildNodes(unsigned first, unsigned last, Arena* arena);

    PrimitiveContainer* container;
    std::vector<unsigned int> order;  ///< indices into the container's primitives
};

}  // namespace vrn::selection
