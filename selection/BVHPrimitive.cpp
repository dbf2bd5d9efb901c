#include "selection/BVHPrimitive.h"

#include "selection/Result.h"

namespace vrn::selection {

BVHPrimitive::~BVHPrimitive() = default;

Result BVHPrimitive::intersect(const visual::Ray& /*ray*/) { return {}; }

Result BVHPrimitive::intersect(const rob::TriangleTemplate<float>& /*triangle*/) { return {}; }

Result BVHPrimitive::intersect(const rob::LineTemplate<float>& /*line*/) { return {}; }

void BVHPrimitive::processIntersectionsWith(const visual::Box& /*region*/,
                                            std::function<void(unsigned int)> /*visit*/) const {}

}  // namespace vrn::selection
