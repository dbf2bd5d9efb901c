#include "visual/geometry/Detectable.h"

#include "suite/sdf/SdfNode.h"

namespace vrn::visual {

bool IsDetectable(const sdf::SdfNode& modelNode) {
    const auto above = modelNode.element->getParent();
    const auto value = above ? above->get("detectable") : nullptr;
    return value ? value->as<bool>() : true;
}

}  // namespace vrn::visual
