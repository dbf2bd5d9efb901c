#pragma once

#include <exception>

#include "visual/VrnVisualApi.h"

namespace vrn::visual {

/// Thrown when a shape gives no triangles; builders catch it and go on without a picture.
class VRN_VISUAL_API NoTriangleMesh : public std::exception {};

}  // namespace vrn::visual
