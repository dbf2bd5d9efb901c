#pragma once

#include "visual/Visual.h"

namespace vrn::visual {

class FrameVisual;

/// A group of parts and of further assemblies, with a frame at its origin. Thread: render.
class VRN_VISUAL_API AssemblyVisual : public Visual {
public:
    AssemblyVisual(Visual* parent, sdf::SdfNode* modelNode);

    /// Makes the visual under `parent`, enters it in the registry and builds what the assembly
    /// holds: an assembly as such, anything else as a part, each under the visual that its own
    /// parent id names. Throws std::out_of_range, "unordered_map::at", for an id that the model
    /// does not hold, and std::invalid_argument for null.
    static void Build(Visual* parent, sdf::SdfNode* modelNode);

    /// Assemblies and parts. The capital letter is part of the name.
    [[nodiscard]] static bool CanApplyMaterial(const Visual* child);

    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;
    void clearHighlightOrSelect() override;

private:
    FrameVisual* localFrame;  ///< a child; shown while this is the outermost selected object
};

}  // namespace vrn::visual
