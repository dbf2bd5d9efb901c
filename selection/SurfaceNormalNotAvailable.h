#pragma once

#include "visual/VrnVisualApi.h"

#include <stdexcept>

namespace vrn::selection {

/// A surface whose normal has no length, such as that of a triangle without area, was asked for a
/// distance.
class VRN_VISUAL_API SurfaceNormalNotAvailable : public std::logic_error {
public:
    SurfaceNormalNotAvailable() : std::logic_error("Surface normal is not available") {}
};

}  // namespace vrn::selection
