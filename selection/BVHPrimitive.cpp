#include "selection/BVHPrimitive.h"

namespace vrn::selection {

BVHPrimitive::~BVHPrimitive() = default;

}  // namespace vrn::selection
