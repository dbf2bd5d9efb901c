#include "visual/geometry/BodyModel.h"

#include "suite/layout/Body.h"

namespace vrn::visual {

BodyMaterials MaterialsOf(const layout::Body& body) {
    const std::string given = body.getMaterialName();
    const std::string base = given.empty() ? "Body" : given;
    return {base, base + "Selected", base + "Highlighted"};
}

}  // namespace vrn::visual
