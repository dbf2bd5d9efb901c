#pragma once

#include "visual/Visual.h"

namespace vrn::visual {

class FrameVisual;

/// What robots, tools and devices have in common: links, bare nodes that others hang on, and a
/// frame at the base that shows while the mechanism is selected.
///
/// Looks go to the links, except those attached from elsewhere, and to all frames that hang
/// directly on the mechanism, attached or not. Thread: render.
class VRN_VISUAL_API MechanismVisual : public Visual {
public:
    /// Links and nodes are entered in the registry; without `buildChildren` the links stay without
    /// parts. Throws std::invalid_argument for null, std::bad_cast for an object that is no
    /// mechanism, and what a part throws; then nothing of the mechanism is left.
    MechanismVisual(sdf::SdfNode* modelNode, Visual* parent, bool buildChildren);
    ~MechanismVisual() override;

    void resetAppearance() override;
    void setSelected() override;
    /// Leaves links alone that are selected.
    void setHighlighted() override;
    void clearHighlightOrSelect() override;

    /// Id 0; in neither the registry nor the selection.
    [[nodiscard]] FrameVisual* getBaseFrame() const { return baseFrame; }

private:
    MechanismVisual(sdf::SdfNode* modelNode, Visual* parent);

    FrameVisual* baseFrame = nullptr;  ///< a child
};

}  // namespace vrn::visual
