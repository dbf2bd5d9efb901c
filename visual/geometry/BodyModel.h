#pragma once

#include <string>

namespace vrn::layout {
class Body;
}

namespace vrn::visual {

/// The materials of a body's three looks.
struct BodyMaterials {
    std::string normal;
    std::string selected;
    std::string highlighted;
};

/// The name that the body's "visual/material/name" gives, "Body" if that is empty or absent, and
/// with "Selected" and "Highlighted" behind it. Throws std::bad_any_cast for a name that is no
/// text. Thread: any.
[[nodiscard]] BodyMaterials MaterialsOf(const layout::Body& body);

}  // namespace vrn::visual
