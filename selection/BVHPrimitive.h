#pragma once

#include "selection/Box.h"
#include "visual/VrnVisualApi.h"

namespace vrn::selection {

/// An element of a hierarchy: something with bounds that can be switched off. Thread: render.
class VRN_VISUAL_API BVHPrimitive {
public:
    BVHPrimitive() = default;
    BVHPrimitive(const BVHPrimitive&) = delete;
    BVHPrimitive& operator=(const BVHPrimitive&) = delete;
    virtual ~BVHPrimitive();

    /// The bounds, in the coordinate space of the container that holds the primitive.
    visual::Box box;
    /// What is switched off takes no part in queries.
    bool enabled = true;
};

}  // namespace vrn::selection
