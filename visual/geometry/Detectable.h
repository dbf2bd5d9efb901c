#pragma once

namespace vrn::sdf {
class SdfNode;
}

namespace vrn::visual {

/// Whether contact tests see a body or a cloud: "detectable" in the element above its own, true if
/// that is absent. Throws std::bad_any_cast for a value that is no bool. Thread: any.
[[nodiscard]] bool IsDetectable(const sdf::SdfNode& modelNode);

}  // namespace vrn::visual
