#pragma once

#include <cstdint>
#include <string>

#include "visual/Visual.h"

namespace Ogre {
class ManualObject;
}

namespace vrn::visual {

/// One point, shown as a small marker of fixed size on the screen: white, yellow when highlighted,
/// orange when selected. The point stands in the frame of the visual, whose own pose stays what its
/// model object says. A point that is not finite, or lies beyond 1e15 on an axis, shows
/// nothing. Thread: render.
class VRN_VISUAL_API PointVisual : public Visual {
public:
    ~PointVisual() override;

    /// A preview point under `parent`; in no registry.
    static PointVisual* Build(Visual* parent, const rob::PosTemplate<float>& position);
    /// A preview point of that id under the root, in the registry; narrowed to float.
    static PointVisual* Build(std::uint32_t idIn, double x, double y, double z);
    /// A body of one vertex, in the registry and in the selection. Throws
    /// std::invalid_argument for null, and what IsDetectable and the stored pose throw; then
    /// nothing is left.
    static PointVisual* Build(Visual* parent, sdf::SdfNode* modelNode,
                              const rob::PosTemplate<float>& position);

    /// Components 0 to 1; `alpha` is 1 for opaque.
    void setColor(const rob::ColorTemplate<float>& color, float alpha);
    /// In the frame of the visual.
    [[nodiscard]] rob::PosTemplate<float> getPntPos() const { return point; }

    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;

    static constexpr rob::ColorTemplate<float> normalColor{1, 1, 1};
    static constexpr rob::ColorTemplate<float> selectedColor{1, 0.5f, 0};
    static constexpr rob::ColorTemplate<float> highlightedColor{1, 1, 0};

private:
    PointVisual(Visual* parent, const rob::PosTemplate<float>& position);
    PointVisual(std::uint32_t idIn, Visual* parent, const rob::PosTemplate<float>& position);
    PointVisual(sdf::SdfNode* modelNode, Visual* parent, const rob::PosTemplate<float>& position);
    void show();
    void usePreviewLook();

    Ogre::ManualObject* manualObject = nullptr;
    rob::PosTemplate<float> point;
};

}  // namespace vrn::visual
