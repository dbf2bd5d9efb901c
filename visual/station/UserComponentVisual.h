#pragma once

#include "visual/Visual.h"

namespace vrn::visual {

class FrameVisual;

/// A component that a user put together out of station objects, and a frame at its origin.
/// Manipulators inside one are not built with it. Thread: render.
class VRN_VISUAL_API UserComponentVisual : public Visual {
public:
    UserComponentVisual(Visual* parent, sdf::SdfNode* modelNode);

    /// Makes the visual under `parent`, enters it in the registry, and builds its children, each
    /// under the visual of its own parent id: assemblies, parts, tools, devices, components,
    /// sprays and sensors; others are skipped. Throws std::invalid_argument for null, and then
    /// leaves the tree as it was; std::out_of_range for a child that the model does not know, and
    /// what a child throws: the component and the children so far then stay in the scene.
    static void Build(Visual* parent, sdf::SdfNode* modelNode);

    /// Tools, devices, assemblies, parts and components.
    [[nodiscard]] static bool canApplyMaterial(const Visual* child);

    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;

private:
    FrameVisual* localFrame;  ///< a child; shown while this is the outermost selected object
};

}  // namespace vrn::visual
