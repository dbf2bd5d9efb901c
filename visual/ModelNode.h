#pragma once

#include <stdexcept>

namespace vrn::sdf {
class SdfNode;
}

namespace vrn::visual {

/// The model object that a builder was given. Throws std::invalid_argument for null: asked before
/// anything is made. Thread: any.
inline sdf::SdfNode& RequireModelNode(sdf::SdfNode* modelNode) {
    if (!modelNode) throw std::invalid_argument("a visual needs a model object, got null");
    return *modelNode;
}

}  // namespace vrn::visual
