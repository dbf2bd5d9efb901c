#include "selection/PrimitiveContainer.h"

#include "selection/BVHPrimitive.h"

#include <algorithm>
#include <stdexcept>

namespace vrn::selection {

PrimitiveContainer::~PrimitiveContainer() {
    for (BVHPrimitive* primitive : primitives) delete primitive;
}

void PrimitiveContainer::removePrimitive(BVHPrimitive* primitive) {
    const auto entry = std::ranges::find(primitives, primitive);
    if (entry == primitives.end()) throw std::out_of_range("the primitive is not in the container");
    primitives.erase(entry);
}

}  // namespace vrn::selection
