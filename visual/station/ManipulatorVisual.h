#pragma once

#include "visual/station/MechanismVisual.h"

namespace vrn::visual {

/// A robot arm, in the colours of its maker. Thread: render.
class VRN_VISUAL_API ManipulatorVisual : public MechanismVisual {
public:
    /// As MechanismVisual. The element's "vendor" chooses the materials: "abb", "kuka", "fanuc" and
    /// "yaskawa" those of the maker, any other text those of "Mechanism". Throws std::bad_any_cast
    /// if it is absent or no text; then nothing is left.
    ManipulatorVisual(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren);

    /// Makes the visual under `parent` and enters it in the registry; then the wrist, under the
    /// visual of its parent id, which is looked up strictly. A robot without wrist gets none.
    /// Throws std::bad_cast for an object that is no manipulator, and what the constructor throws.
    static void Build(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren);
};

}  // namespace vrn::visual
