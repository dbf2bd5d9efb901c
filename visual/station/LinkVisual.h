#pragma once

#include "visual/Visual.h"

namespace vrn::visual {

/// One moving link of a mechanism. Looks are those of its parts and assemblies; it has no frame of
/// its own. Thread: render.
class VRN_VISUAL_API LinkVisual : public Visual {
public:
    LinkVisual(sdf::SdfNode* modelNode, Visual* parent);

    /// Makes the visual under `parent` and enters it in the registry; with `buildChildren` also the
    /// parts and assemblies among the link's children, each under the visual of its own parent id.
    /// Throws std::invalid_argument for null, std::bad_cast for an object that is no link, and what
    /// a part throws: the link then stays in the scene.
    static LinkVisual* Build(sdf::SdfNode* modelNode, Visual* parent, bool buildChildren);

    /// Assemblies and parts.
    [[nodiscard]] static bool canApplyMaterial(const Visual* child);

    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;
    void clearHighlightOrSelect() override;
};

}  // namespace vrn::visual
